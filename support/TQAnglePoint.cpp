#include "support/TQAnglePoint.h"

TQAnglePoint::TQAnglePoint(double longitude, double latitude, std::uint32_t unit)
    : TQAnglePair(TQAngleWithUnit(longitude, unit), TQAngleWithUnit(latitude, unit)) {}

TQAnglePoint::TQAnglePoint(const TQPoint& point, std::uint32_t unit) : TQAnglePoint(point.x, point.y, unit) {}

TQAnglePoint::TQAnglePoint(const TQAngleWithUnit& longitude, const TQAngleWithUnit& latitude)
    : TQAnglePair(longitude, latitude) {}

TQAnglePoint::TQAnglePoint(const TQPoint& degrees, const TQPoint& minutes, const TQPoint& seconds)
    : TQAnglePair(angleFromParts(degrees.x, minutes.x, seconds.x),
                  angleFromParts(degrees.y, minutes.y, seconds.y)) {}

TQAnglePoint::TQAnglePoint(const TQAnglePoint& other, std::uint32_t unit) : TQAnglePair(other) {
    convert(unit);
}

TQPoint TQAnglePoint::pointWithAngleUnit(std::uint32_t unit, bool base360Longitude,
                                         bool base360Latitude) const {
    return {longitude().valueInUnit(unit, base360Longitude), latitude().valueInUnit(unit, base360Latitude)};
}
