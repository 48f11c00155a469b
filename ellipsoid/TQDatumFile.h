#pragma once

#include "TQProjectionExport.h"

#include "ellipsoid/TQEllipsoid.h"
#include "support/TQString.h"

#include <memory>

class TQEllMgr;

/// A datum file (`*.dtm`): four lines, of 254 characters at most, which make a shifted ellipsoid of two
/// registered ones. The name of the datum is that of the file.
///
///     # 1
///     Bessel 1841                     the local ellipsoid
///     -582 -105 -414                  dx dy dz in metres, perhaps rx ry rz in radians and the scale in ppm
///     WGS 84                          the reference ellipsoid
class TQPROJECTION_EXPORT TQDatumFile {
  public:
    /// What reading a datum file answers.
    enum Code : int {
        Read = 0,           ///< it was read
        NotOpened = 100,    ///< the file cannot be opened
        NotUnderstood = 101 ///< another version, an unknown ellipsoid, neither three nor seven numbers
    };

    /// Reads a datum file.
    /// @param path the file
    /// @param registered the ellipsoids that the file may name
    /// @param shifted receives the local ellipsoid with the datum shift that leads from the reference datum
    /// to
    ///        the local one, under the name "<ellipsoid>/<datum>"; untouched on failure
    static Code read(const TQString& path, const TQEllMgr& registered, std::unique_ptr<TQEllipsoid>& shifted);
};
