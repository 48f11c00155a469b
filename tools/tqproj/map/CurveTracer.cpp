#include "tools/tqproj/map/CurveTracer.h"

#include "tools/tqproj/PointOperation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace {

/// A point of a curve; none in a gap.
struct Sample {
    double parameter;
    std::optional<TQPoint> point;
};

TQPoint combined(double one, const TQPoint& point, double other, const TQPoint& otherPoint) {
    return {one * point.x + other * otherPoint.x, one * point.y + other * otherPoint.y};
}

/// A point of a cubic Bézier curve.
TQPoint pointOf(const TQPoint& start, const CubicArc& arc, double part) {
    const double rest = 1.0 - part;
    const TQPoint near = combined(rest * rest * rest, start, 3.0 * rest * rest * part, arc.firstControl);
    const TQPoint far = combined(3.0 * rest * part * part, arc.secondControl, part * part * part, arc.end);
    return combined(1.0, near, 1.0, far);
}

/// Follows one curve, from its first to its last parameter.
class Trace {
  public:
    Trace(const Curve& curve, double tolerance) : _curve(curve), _tolerance(tolerance) {}

    std::vector<CurvePiece> run(int parts) {
        Sample start = sampleAt(0.0);
        for (int part = 1; part <= parts; ++part) {
            const Sample end = sampleAt(static_cast<double>(part) / parts);
            follow(start, end, 0);
            start = end;
        }
        return std::move(_pieces);
    }

  private:
    /// The places between two samples where an arc is compared with the curve.
    using Between = std::array<Sample, 3>;

    Sample sampleAt(double parameter) {
        ++_samples;
        return {parameter, _curve(parameter)};
    }

    /// Draws the part between two samples, or halves it until an arc fits, it is empty or too short to
    /// matter.
    void follow(const Sample& start, const Sample& end, int depth) {
        constexpr int greatestDepth = 16;
        constexpr int mostSamples = 4'000; // a curve of noise would never be smooth
        const double quarter = 0.25 * (end.parameter - start.parameter);
        const Between between{sampleAt(start.parameter + quarter), sampleAt(start.parameter + 2.0 * quarter),
                              sampleAt(start.parameter + 3.0 * quarter)};
        if (const std::optional<CubicArc> arc = arcThrough(start, between, end)) {
            join(*start.point, *arc);
        } else if (depth == greatestDepth || _samples > mostSamples) {
            joinIfShort(start, end);
        } else if (depth == 0 || !isGap(start, between, end)) {
            follow(start, between[1], depth + 1);
            follow(between[1], end, depth + 1);
        }
    }

    static bool isGap(const Sample& start, const Between& between, const Sample& end) {
        return !start.point && !end.point &&
               std::ranges::none_of(between, [](const Sample& sample) { return sample.point.has_value(); });
    }

    /// The arc that has the points and tangents of two samples, if it is near the curve between them.
    std::optional<CubicArc> arcThrough(const Sample& start, const Between& between, const Sample& end) const {
        if (!start.point || !end.point) {
            return std::nullopt;
        }
        const double range = end.parameter - start.parameter;
        const std::optional<TQPoint> firstControl = controlOf(start, range);
        const std::optional<TQPoint> secondControl = controlOf(end, -range);
        if (!firstControl || !secondControl) {
            return std::nullopt;
        }
        const CubicArc arc{*firstControl, *secondControl, *end.point};
        return fits(*start.point, arc, between) ? std::optional(arc) : std::nullopt;
    }

    /// The control point that gives an arc the curve's tangent at a sample: a third of the range along it.
    /// The tangent is taken from the arc's side alone, as the curve may end or break at the sample.
    std::optional<TQPoint> controlOf(const Sample& sample, double range) const {
        constexpr double step = 1e-3; // of the range
        const std::optional<TQPoint> next = _curve(sample.parameter + step * range);
        const std::optional<TQPoint> afterNext = _curve(sample.parameter + 2.0 * step * range);
        if (!next || !afterNext) {
            return std::nullopt;
        }
        const TQPoint toNext = combined(1.0, *next, -1.0, *sample.point);
        const TQPoint toAfterNext = combined(1.0, *afterNext, -1.0, *sample.point);
        const TQPoint tangent = combined(2.0 / step, toNext, -0.5 / step, toAfterNext);
        return combined(1.0, *sample.point, 1.0 / 3.0, tangent);
    }

    bool fits(const TQPoint& start, const CubicArc& arc, const Between& between) const {
        constexpr double rest = 0.5; // of the tolerance is left for what lies between the places
        for (std::size_t index = 0; index < between.size(); ++index) {
            const double part = 0.25 * static_cast<double>(index + 1);
            const std::optional<TQPoint>& wanted = between[index].point;
            if (!wanted || !(distanceBetween(pointOf(start, arc, part), *wanted) <= rest * _tolerance)) {
                return false;
            }
        }
        return true;
    }

    /// Closes what is left at a corner of the curve; a jump stays open.
    void joinIfShort(const Sample& start, const Sample& end) {
        if (start.point && end.point && distanceBetween(*start.point, *end.point) <= _tolerance) {
            join(*start.point, {*start.point, *end.point, *end.point});
        }
    }

    void join(const TQPoint& start, const CubicArc& arc) {
        if (_pieces.empty() || !(_pieces.back().end() == start)) {
            _pieces.push_back({start, {}});
        }
        _pieces.back().arcs.push_back(arc);
    }

    const Curve& _curve;
    double _tolerance;
    int _samples = 0;
    std::vector<CurvePiece> _pieces;
};

} // namespace

std::vector<CurvePiece> CurveTracer::traced(const Curve& curve, int parts) const {
    return Trace(curve, _tolerance).run(parts);
}
