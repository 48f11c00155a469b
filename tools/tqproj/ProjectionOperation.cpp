#include "tools/tqproj/ProjectionOperation.h"

#include "proj/TQPrProj4.h"

#include <utility>

namespace {

double angularUnitOf(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr ? defined->angularUnitInDegrees() : 1.0;
}

} // namespace

ProjectionOperation::ProjectionOperation(const TQProjection& projection, Direction direction)
    : _projection(projection), _direction(direction), _angularUnit(angularUnitOf(projection)) {}

ProjectionOperation::ProjectionOperation(std::unique_ptr<const TQProjection> projection, Direction direction)
    : _ownProjection(std::move(projection)), _projection(*_ownProjection), _direction(direction),
      _angularUnit(angularUnitOf(_projection)) {}

ProjectionOperation::~ProjectionOperation() = default;

bool ProjectionOperation::accepts(const TQPoint& point) const {
    return _direction == Direction::Forward ? _projection.isGeoPtValid(point)
                                            : _projection.isGlobalPtValid(point);
}

std::string_view ProjectionOperation::convert(const TQPoint& in, TQPoint& out) const {
    if (!accepts(in)) {
        return "the point lies outside the area of the projection";
    }
    const bool isForward = _direction == Direction::Forward;
    const int answer = isForward ? _projection.convertGeoPt(dividedBy(in, _angularUnit), out)
                                 : _projection.convertGlobalPt(in, out);
    if (!isForward) {
        out = multipliedBy(out, _angularUnit);
    }
    if (answer != 0 || !isFinite(out)) {
        return "the projection cannot convert the point";
    }
    return {};
}

void ProjectionOperation::convertAll(std::span<TQPoint> points) const {
    if (_direction == Direction::Forward) {
        for (TQPoint& point : points) {
            point = dividedBy(point, _angularUnit);
        }
        _projection.convertGeoPts(points, points);
        return;
    }
    _projection.convertGlobalPts(points, points);
    for (TQPoint& point : points) {
        point = multipliedBy(point, _angularUnit);
    }
}

std::unique_ptr<PointOperation> ProjectionOperation::copy() const {
    return std::make_unique<ProjectionOperation>(tq_copyOf(_projection), _direction);
}
