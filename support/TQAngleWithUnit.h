#pragma once

#include "TQSystemWExport.h"
#include "support/TQUnit.h"

#include <cstdint>

class TQReadStream;
class TQWriteStream;

/// An angle: a value, the code of its unit and the base-360 flag.
///
/// With the flag set the value is kept within one turn, 0 to 360 degrees in the angle's own unit, after
/// every operation; exactly one turn stays one turn, infinities and NaN stay what they are. Without the
/// flag the value is any number.
///
/// Archived in 13 bytes: the value as a double, the unit code in 4 bytes, the flag in 1.
class TQSYSTEMW_EXPORT TQAngleWithUnit {
  public:
    /// 0 radians without the flag.
    TQAngleWithUnit() = default;

    /// An angle by its parts.
    /// @param value the value in the given unit
    /// @param unit the unit code
    /// @param base360 whether the value is kept within one turn
    explicit TQAngleWithUnit(double value, std::uint32_t unit = TQUnitRadian, bool base360 = false);

    /// The value in the angle's unit.
    double value() const { return _value; }

    /// The unit code.
    std::uint32_t unit() const { return _unit; }

    /// Whether the value is kept within one turn.
    bool base360() const { return _base360; }

    /// Sets the value in the angle's unit.
    /// @param value the new value
    void setValue(double value);

    /// Sets the base-360 flag. Setting it to true brings the value into one turn at once; setting it to
    /// false leaves the value as it is.
    /// @param base360 whether the value is kept within one turn
    void setBase360(bool base360);

    /// Changes the unit and keeps the angle; a code that is no angular unit takes the value unchanged.
    /// @param unit the new unit code
    void convert(std::uint32_t unit);

    /// The value in another unit; the angle itself stays as it is.
    /// @param unit the unit code wanted
    /// @param base360 whether the result is brought into one turn
    double valueInUnit(std::uint32_t unit, bool base360) const;

    /// Adds an angle, converted to this angle's unit. Unit and flag stay this angle's.
    /// @param other the angle to add
    void add(const TQAngleWithUnit& other);

    /// Subtracts an angle, converted to this angle's unit. Unit and flag stay this angle's.
    /// @param other the angle to subtract
    void substract(const TQAngleWithUnit& other);

    /// Divides the value. Division by 0 leaves the angle as it is.
    /// @param divisor the number to divide by
    void divide(int divisor);

    /// Whether this angle is the smaller one. Both are compared in degrees and neither is brought into one
    /// turn, so that angles of any units are in one order; false when either is NaN.
    /// @param other the angle to compare with
    bool operator<(const TQAngleWithUnit& other) const;

    /// Whether value, unit and flag are equal; the same angle in another unit is not.
    /// @param other the angle to compare with
    bool operator==(const TQAngleWithUnit& other) const = default;

    /// Writes the angle.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote. A value outside the turn that a set flag promises is brought into it;
    /// an angle that cannot be read whole becomes 0 radians without the flag.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);

  private:
    void keepWithinTurn();

    double _value = 0.0;
    std::uint32_t _unit = TQUnitRadian;
    bool _base360 = false;
};
