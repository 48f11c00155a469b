#include "tools/tqproj/map/MapProjection.h"

#include "ellipsoid/TQEllipsoid.h"
#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"

#include <cmath>
#include <numbers>

namespace {

/// A point with its longitude from -180 to 180 degrees.
TQPoint withinOneTurn(const TQPoint& geographic) {
    constexpr double halfTurn = 180.0;
    const bool isWithin = std::abs(geographic.x) <= halfTurn;
    return {isWithin ? geographic.x : std::remainder(geographic.x, 2.0 * halfTurn), geographic.y};
}

TQPoint directionOf(double angle) { return {std::cos(angle), std::sin(angle)}; }

} // namespace

MapProjection::MapProjection(const TQProjection& projection)
    : _projection(projection), _toPlane(projection, Direction::Forward, BeyondDomain::Convert),
      _toGeographic(projection, Direction::Inverse, BeyondDomain::Convert) {
    if (const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection)) {
        _isPlane = defined->coordinates() == TQPrProj4::Coordinates::Plane;
        _primeMeridian = defined->primeMeridian();
        _metresOfUnit = defined->lengthUnitInMetres();
        _angularUnit = defined->angularUnitInDegrees();
    }
}

std::optional<TQPoint> MapProjection::toPlane(const TQPoint& geographic) const {
    const auto [longitude, latitude] = withinOneTurn(geographic);
    TQPoint plane;
    const bool hasImage = _toPlane.convert({tq_deg2rad(longitude), tq_deg2rad(latitude)}, plane).empty();
    return hasImage ? std::optional(plane) : std::nullopt;
}

std::optional<TQPoint> MapProjection::toGeographic(const TQPoint& plane) const {
    TQPoint radians;
    if (!_toGeographic.convert(plane, radians).empty()) {
        return std::nullopt;
    }
    return TQPoint{tq_rad2deg(radians.x), tq_rad2deg(radians.y)};
}

TQPoint MapProjection::meridianDirection(const TQPoint& geographic) const {
    return directionOf(_projection.meridianTangentAt(asTaken(geographic)));
}

TQPoint MapProjection::parallelDirection(const TQPoint& geographic) const {
    return directionOf(_projection.parallelTangentAt(asTaken(geographic)));
}

/// A point as the projection takes it.
TQAnglePoint MapProjection::asTaken(const TQPoint& geographic) const {
    return {dividedBy(withinOneTurn(geographic), _angularUnit), TQUnitDegree};
}

double MapProjection::circumference() const {
    constexpr double equatorialRadius = 6378137.0; // of the Earth, where the projection has no ellipsoid
    const TQEllipsoid* const ellipsoid = _projection.ellipsoid();
    const double radius = ellipsoid != nullptr ? ellipsoid->semiMajorAxis() : equatorialRadius;
    return 2.0 * std::numbers::pi * radius / _metresOfUnit;
}
