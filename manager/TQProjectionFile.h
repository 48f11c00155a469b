#pragma once

#include "TQProjectionExport.h"
#include "support/TQString.h"

#include <memory>
#include <system_error>

class TQFile;
class TQProjection;

/// A projection file: the file version line, a line with the type code, and the projection's own text.
class TQPROJECTION_EXPORT TQProjectionFile {
  public:
    /// What read() answers besides the codes of the projection's own reader, which are greater or negative.
    enum Code : int {
        Read = 0,           ///< it was read
        NotOpened = 1,      ///< the file cannot be opened
        VersionMissing = 2, ///< the file version line is missing
        VersionUnknown = 3, ///< another file version
        TypeMissing = 4,    ///< the line of the type code is missing
        TypeUnknown = 5     ///< a type code that there is not
    };

    /// How the numbers of a projection are written.
    enum class Numbers {
        Customary, ///< each in its class's format, which rounds
        Exact      ///< with as many digits as they have; every reader takes them
    };

    /// Reads a projection.
    /// @param file the file, opened for reading when it is not open yet; it tells how far the reading came
    /// @param projection receives the projection, which owns the ellipsoid of the file; half read when its
    ///        own reader failed, null when there is none
    /// @return Read; or another Code, or the code of the projection's reader, with the reason in
    ///         TQFile::problem()
    static int read(TQFile& file, std::unique_ptr<TQProjection>& projection);

    /// Reads a projection. What is wrong with a file is reported through the error printer.
    /// @param path the file
    /// @return the projection, which owns the ellipsoid of the file; null when the file cannot be opened
    ///         (without a report), has another version, an unknown type code or a text that cannot be read
    static std::unique_ptr<TQProjection> createProjectionFromPath(const TQString& path);

    /// Writes a projection. The file is complete or, after a failure, what it was before; but for a
    /// projection without a type code, such as a placeholder, of which only the file version line is
    /// written. One of a class that the factory does not make is not written. Both are reported.
    /// @param projection the projection to write
    /// @param path the file
    /// @param numbers how to write numbers
    /// @return whether the file was written; a failure of the projection's writer is reported, a file that
    ///         cannot be opened is not
    static bool write(const TQProjection& projection, const TQString& path,
                      Numbers numbers = Numbers::Customary);

    /// Writes a projection, as the other form does, and tells the system's reason of a failure.
    /// @param projection the projection to write
    /// @param path the file
    /// @param reason receives why the file could not be written; no error when it was, or when the projection
    ///        is the reason
    /// @param numbers how to write numbers
    /// @return whether the file was written
    static bool write(const TQProjection& projection, const TQString& path, std::error_code& reason,
                      Numbers numbers = Numbers::Customary);
};
