#pragma once

#include "TQSystemWExport.h"

class TQReadStream;
class TQWriteStream;

/// A width and a height; either may be negative.
///
/// Archived in 16 bytes: width, then height, as doubles.
struct TQSYSTEMW_EXPORT TQSize {
    double width = 0.0;  ///< extent in x
    double height = 0.0; ///< extent in y

    /// Whether both extents are equal.
    /// @param other the size to compare with
    bool operator==(const TQSize& other) const = default;

    /// Writes the size.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote; extents that cannot be read become 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);
};
