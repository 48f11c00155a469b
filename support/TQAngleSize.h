#pragma once

#include "support/TQAnglePair.h"
#include "support/TQSize.h"

/// An angular width and height, two angles that share a unit when the size is made.
///
/// Archived in 26 bytes: the width, then the height, each as a TQAngleWithUnit.
class TQSYSTEMW_EXPORT TQAngleSize : public TQAnglePair {
  public:
    /// Width and height of 0 radians.
    TQAngleSize() = default;

    /// A size by two values in one unit, without base-360 flags.
    /// @param width the width
    /// @param height the height
    /// @param unit the unit code of both
    TQAngleSize(double width, double height, std::uint32_t unit);

    /// A size by a pair of values in one unit, without base-360 flags.
    /// @param size the two values
    /// @param unit the unit code of both
    TQAngleSize(const TQSize& size, std::uint32_t unit);

    /// A size by two angles, which keep their flags; the height is converted to the width's unit.
    /// @param width the width
    /// @param height the height
    TQAngleSize(const TQAngleWithUnit& width, const TQAngleWithUnit& height);

    /// A size in degrees by degrees, minutes and seconds. The first part of an extent that is not zero
    /// decides the sign of the whole extent (a negative zero counts as negative); the signs of the other
    /// parts have no meaning.
    /// @param degrees the degrees
    /// @param minutes the minutes
    /// @param seconds the seconds
    TQAngleSize(const TQSize& degrees, const TQSize& minutes, const TQSize& seconds);

    /// A copy converted to another unit.
    /// @param other the size to copy
    /// @param unit the unit code of the copy
    TQAngleSize(const TQAngleSize& other, std::uint32_t unit);

    /// The width, to be read or changed.
    TQAngleWithUnit& width() { return _first; }
    /// The width.
    const TQAngleWithUnit& width() const { return _first; }

    /// The height, to be read or changed.
    TQAngleWithUnit& height() { return _second; }
    /// The height.
    const TQAngleWithUnit& height() const { return _second; }

    /// Width and height as a plain pair in the given unit.
    /// @param unit the unit code wanted
    /// @param base360Width whether the width is brought into one turn
    /// @param base360Height whether the height is brought into one turn
    TQSize sizeWithAngleUnit(std::uint32_t unit, bool base360Width, bool base360Height) const;
};
