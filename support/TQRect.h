#pragma once

#include "support/TQPoint.h"
#include "support/TQSize.h"

/// A rectangle with sides along the axes: one corner and the signed way to the opposite one.
///
/// Width and height keep their sign, so a rectangle spanned downwards stays one.
/// Archived in 32 bytes: x, y, width, height, as doubles.
struct TQSYSTEMW_EXPORT TQRect {
    double x = 0.0;      ///< first coordinate of the corner
    double y = 0.0;      ///< second coordinate of the corner
    double width = 0.0;  ///< from the corner to the opposite one in x
    double height = 0.0; ///< from the corner to the opposite one in y

    /// The empty rectangle at (0, 0).
    TQRect() = default;

    /// A rectangle by its four numbers.
    /// @param cornerX first coordinate of the corner
    /// @param cornerY second coordinate of the corner
    /// @param signedWidth the way to the opposite corner in x
    /// @param signedHeight the way to the opposite corner in y
    TQRect(double cornerX, double cornerY, double signedWidth, double signedHeight);

    /// The rectangle spanned by two points; the first becomes the corner, whichever side it lies on.
    /// @param corner the corner
    /// @param opposite the opposite corner
    TQRect(const TQPoint& corner, const TQPoint& opposite);

    /// The corner.
    TQPoint origin() const;

    /// The corner opposite to the origin.
    TQPoint opposite() const;

    /// Width and height.
    TQSize size() const;

    /// Whether all four numbers are equal.
    /// @param other the rectangle to compare with
    bool operator==(const TQRect& other) const = default;

    /// Writes the rectangle.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote; numbers that cannot be read become 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);
};
