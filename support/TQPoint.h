#pragma once

#include "TQSystemWExport.h"

class TQReadStream;
class TQWriteStream;

/// A point of the plane, or any pair of coordinates.
///
/// Archived in 16 bytes: x, then y, as doubles.
struct TQSYSTEMW_EXPORT TQPoint {
    double x = 0.0; ///< first coordinate; the longitude of a geographic pair
    double y = 0.0; ///< second coordinate; the latitude of a geographic pair

    /// Whether both coordinates are equal.
    /// @param other the point to compare with
    bool operator==(const TQPoint& other) const = default;

    /// Writes the point.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote; coordinates that cannot be read become 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);
};
