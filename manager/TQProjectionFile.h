#pragma once

#include "TQProjectionExport.h"
#include "support/TQString.h"

#include <memory>

class TQProjection;

/// A projection file: the file version line, a line with the type code, and the projection's own text.
class TQPROJECTION_EXPORT TQProjectionFile {
  public:
    /// Reads a projection. What is wrong with a file is reported through the error printer.
    /// @param path the file
    /// @return the projection, which owns the ellipsoid of the file; null when the file cannot be opened
    ///         (without a report), has another version, an unknown type code or a text that cannot be read
    static std::unique_ptr<TQProjection> createProjectionFromPath(const TQString& path);

    /// Writes a projection. The file is complete or, after a failure, what it was before.
    /// @param projection the projection to write
    /// @param path the file
    /// @return whether the file was written; a failure of the projection's writer is reported, a file that
    ///         cannot be opened is not
    static bool write(const TQProjection& projection, const TQString& path);
};
