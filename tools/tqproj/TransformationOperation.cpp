#include "tools/tqproj/TransformationOperation.h"

#include "proj/TQGeoCSTrans.h"

std::string TransformationOperation::convert(const TQPoint& in, TQPoint& out) const {
    if (!accepts(in)) {
        return beyondPole;
    }
    const double sourceUnit = _transformation.sourceUnitInDegrees();
    const double targetUnit = _transformation.targetUnitInDegrees();
    const bool isForward = _direction == Direction::Forward;
    const TQPoint given = dividedBy(in, isForward ? sourceUnit : targetUnit);
    const bool isTransformed = isForward ? _transformation.forwardTransformationDecDeg(given, out)
                                         : _transformation.inverseTransformationDecDeg(given, out);
    out = multipliedBy(out, isForward ? targetUnit : sourceUnit);
    if (!isTransformed || !isFinite(out)) {
        return "the point cannot be transformed";
    }
    return {};
}
