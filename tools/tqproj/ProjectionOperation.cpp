#include "tools/tqproj/ProjectionOperation.h"

#include "proj/TQPrProj4.h"

#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double forwardTurn = 2.0 * std::numbers::pi;

double angularUnitOf(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr ? defined->angularUnitInDegrees() : 1.0;
}

double inverseTurnOf(const TQProjection& projection) {
    constexpr double degrees = 360.0;
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    const bool isGeographic =
        defined != nullptr && defined->coordinates() == TQPrProj4::Coordinates::Geographic;
    return isGeographic ? degrees / defined->coordinateUnitInDegrees() : 0.0;
}

bool isByArea(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr && defined->hasDatumShift();
}

} // namespace

ProjectionOperation::ProjectionOperation(const TQProjection& projection, Direction direction,
                                         BeyondDomain beyond)
    : _projection(projection), _direction(direction), _beyond(beyond), _isByArea(isByArea(projection)),
      _angularUnit(angularUnitOf(projection)), _inverseTurn(inverseTurnOf(projection)) {}

ProjectionOperation::ProjectionOperation(std::unique_ptr<const TQProjection> projection, Direction direction,
                                         BeyondDomain beyond)
    : _ownProjection(std::move(projection)), _projection(*_ownProjection), _direction(direction),
      _beyond(beyond), _isByArea(isByArea(_projection)), _angularUnit(angularUnitOf(_projection)),
      _inverseTurn(inverseTurnOf(_projection)) {}

ProjectionOperation::~ProjectionOperation() = default;

bool ProjectionOperation::isBeyondPole(const TQPoint& point) const {
    if (_direction == Direction::Forward) {
        return ::isBeyondPole(point.y, forwardTurn);
    }
    return _inverseTurn != 0.0 && ::isBeyondPole(point.y, _inverseTurn);
}

bool ProjectionOperation::accepts(const TQPoint& point) const {
    if (isBeyondPole(point)) {
        return false;
    }
    return _direction == Direction::Forward ? _projection.isGeoPtValid(point)
                                            : _projection.isGlobalPtValid(point);
}

TQPoint ProjectionOperation::atNearestTurn(const TQPoint& point) const {
    if (_direction == Direction::Inverse) {
        return point;
    }
    return _isByArea ? withinHalfTurn(point, forwardTurn) : _projection.atNearestTurn(point);
}

/// Null within the domain, or when it is not asked for.
const char* ProjectionOperation::whyBeyondDomain(const TQPoint& point) const {
    if (_beyond == BeyondDomain::Convert) {
        return nullptr;
    }
    return _direction == Direction::Forward ? _projection.whyGeoPtIsBeyondDomain(point)
                                            : _projection.whyGlobalPtIsBeyondDomain(point);
}

std::string ProjectionOperation::convert(const TQPoint& in, TQPoint& out) const {
    if (!accepts(in)) {
        return isBeyondPole(in) ? beyondPole : "the point lies outside the area of the projection";
    }
    out = {notANumber, notANumber}; // some projections convert nothing, with success
    const bool isForward = _direction == Direction::Forward;
    const int answer = isForward ? _projection.convertGeoPt(dividedBy(in, _angularUnit), out)
                                 : _projection.convertGlobalPt(in, out);
    if (!isForward) {
        out = multipliedBy(out, _angularUnit);
    }
    // After the conversion: what the library says of a point tells more.
    if (const char* const reason = whyBeyondDomain(in)) {
        return std::string("the point lies beyond the domain of the projection: ") + reason;
    }
    if (answer != 0 || !isFinite(out)) {
        return "the projection cannot convert the point";
    }
    return {};
}

void ProjectionOperation::convertAll(std::span<TQPoint> points) const {
    const bool asksDomain = _beyond == BeyondDomain::Refuse;
    std::vector<signed char> statuses(asksDomain ? points.size() : 0);
    convertAll(points, statuses);
    for (std::size_t index = 0; index < statuses.size(); ++index) {
        if (statuses[index] != TQProjection::Converted) {
            points[index] = {notANumber, notANumber};
        }
    }
}

/// The same with the status of each point, or without.
void ProjectionOperation::convertAll(std::span<TQPoint> points, std::span<signed char> statuses) const {
    if (_direction == Direction::Forward) {
        for (TQPoint& point : points) {
            point = dividedBy(point, _angularUnit);
        }
        _projection.convertGeoPts(points, points, statuses);
        return;
    }
    _projection.convertGlobalPts(points, points, statuses);
    for (TQPoint& point : points) {
        point = multipliedBy(point, _angularUnit);
    }
}

std::unique_ptr<PointOperation> ProjectionOperation::copy() const {
    return std::make_unique<ProjectionOperation>(tq_copyOf(_projection), _direction, _beyond);
}
