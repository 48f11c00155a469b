#pragma once

#include "support/TQAnglePair.h"
#include "support/TQPoint.h"

/// A geographic point: longitude and latitude, two angles that share a unit when the point is made.
///
/// Archived in 26 bytes: the longitude, then the latitude, each as a TQAngleWithUnit.
class TQSYSTEMW_EXPORT TQAnglePoint : public TQAnglePair {
  public:
    /// Longitude and latitude of 0 radians.
    TQAnglePoint() = default;

    /// A point by two values in one unit, without base-360 flags.
    /// @param longitude the longitude
    /// @param latitude the latitude
    /// @param unit the unit code of both
    TQAnglePoint(double longitude, double latitude, std::uint32_t unit);

    /// A point by a pair of values in one unit, without base-360 flags.
    /// @param point longitude in x, latitude in y
    /// @param unit the unit code of both
    TQAnglePoint(const TQPoint& point, std::uint32_t unit);

    /// A point by two angles, which keep their flags; the latitude is converted to the longitude's unit.
    /// @param longitude the longitude
    /// @param latitude the latitude
    TQAnglePoint(const TQAngleWithUnit& longitude, const TQAngleWithUnit& latitude);

    /// A point in degrees by degrees, minutes and seconds, longitudes in x and latitudes in y. The first
    /// part of a coordinate that is not zero decides the sign of the whole coordinate (a negative zero
    /// counts as negative); the signs of the other parts have no meaning.
    /// @param degrees the degrees
    /// @param minutes the minutes
    /// @param seconds the seconds
    TQAnglePoint(const TQPoint& degrees, const TQPoint& minutes, const TQPoint& seconds);

    /// A copy converted to another unit.
    /// @param other the point to copy
    /// @param unit the unit code of the copy
    TQAnglePoint(const TQAnglePoint& other, std::uint32_t unit);

    /// The longitude, to be read or changed.
    TQAngleWithUnit& longitude() { return _first; }
    /// The longitude.
    const TQAngleWithUnit& longitude() const { return _first; }

    /// The latitude, to be read or changed.
    TQAngleWithUnit& latitude() { return _second; }
    /// The latitude.
    const TQAngleWithUnit& latitude() const { return _second; }

    /// Longitude and latitude as a plain pair in the given unit.
    /// @param unit the unit code wanted
    /// @param base360Longitude whether the longitude is brought into one turn
    /// @param base360Latitude whether the latitude is brought into one turn
    TQPoint pointWithAngleUnit(std::uint32_t unit, bool base360Longitude, bool base360Latitude) const;
};
