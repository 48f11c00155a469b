#pragma once

#include "support/TQAngleWithUnit.h"

/// Two angles made, converted and archived together: what TQAnglePoint and TQAngleSize have in common.
///
/// A pair is made with one unit for both angles. Archived in 26 bytes: the first angle, then the second.
class TQSYSTEMW_EXPORT TQAnglePair {
  public:
    /// The unit code of the pair: that of the first angle.
    std::uint32_t unit() const { return _first.unit(); }

    /// Converts both angles, each with its own base-360 flag.
    /// @param unit the new unit code
    void convert(std::uint32_t unit);

    /// Whether both angles are equal in value, unit and flag.
    /// @param other the pair to compare with
    bool operator==(const TQAnglePair& other) const = default;

    /// Writes both angles.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote; an angle that cannot be read becomes 0 radians.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);

  protected:
    /// 0 and 0 radians.
    TQAnglePair() = default;

    /// Two angles; the second is converted to the unit of the first.
    /// @param first the first angle
    /// @param second the second angle
    TQAnglePair(const TQAngleWithUnit& first, const TQAngleWithUnit& second);

    /// An angle in degrees from degrees, minutes and seconds.
    ///
    /// The first part that is not zero decides the sign of the whole angle, so that -7 degrees 30 minutes
    /// is -7.5 degrees and 0 degrees -30 minutes is -0.5; a negative zero counts as negative. The other
    /// parts' signs have no meaning.
    /// @param degrees the degrees
    /// @param minutes the minutes
    /// @param seconds the seconds
    static TQAngleWithUnit angleFromParts(double degrees, double minutes, double seconds);

    TQAngleWithUnit _first;  ///< longitude or width
    TQAngleWithUnit _second; ///< latitude or height
};
