#pragma once

#include "TQProjectionExport.h"

#include "ellipsoid/TQEllipsoid.h"

#include <memory>
#include <string>

class TQEllMgr;
class TQFile;

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
    /// @param file the file, opened for reading when it is not open yet; its path gives the datum's name. The
    ///        last line read is the one that is wrong, or the one before it when it is missing
    /// @param registered the ellipsoids that the file may name
    /// @param shifted receives the local ellipsoid with the datum shift that leads from the reference datum
    ///        to the local one, under the name "<ellipsoid>/<datum>"; untouched on failure
    /// @param problem receives what is wrong, as the end of a sentence; untouched on success
    static Code read(TQFile& file, const TQEllMgr& registered, std::unique_ptr<TQEllipsoid>& shifted,
                     std::string& problem);
};
