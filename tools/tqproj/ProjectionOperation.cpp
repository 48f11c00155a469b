#include "tools/tqproj/ProjectionOperation.h"

#include "proj/TQPrProj4.h"

namespace {

double angularUnitOf(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr ? defined->angularUnitInDegrees() : 1.0;
}

} // namespace

ProjectionOperation::ProjectionOperation(const TQProjection& projection, Direction direction)
    : _projection(projection), _direction(direction), _angularUnit(angularUnitOf(projection)) {}

std::string_view ProjectionOperation::convert(const TQPoint& in, TQPoint& out) const {
    const bool isForward = _direction == Direction::Forward;
    if (isForward ? !_projection.isGeoPtValid(in) : !_projection.isGlobalPtValid(in)) {
        return "the point lies outside the area of the projection";
    }
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
