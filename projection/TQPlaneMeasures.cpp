#include "projection/TQPlaneMeasures.h"

#include "projection/TQProjection.h"
#include "support/TQMessageScope.h"
#include "support/TQMessages.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double shortestChord = 1e-7;
constexpr double oneDegree = tq_deg2rad(1.0);

double distance(const TQPoint& from, const TQPoint& to) { return std::hypot(to.x - from.x, to.y - from.y); }

TQPoint moved(const TQPoint& point, const TQPoint& along, double step) {
    return {point.x + along.x * step, point.y + along.y * step};
}

/// The direction of a chord; 0 for one that is too short to have any, or not finite.
double direction(const TQPoint& from, const TQPoint& to) {
    const double length = distance(from, to);
    return std::isfinite(length) && length > shortestChord
               ? std::atan2((to.y - from.y) / length, (to.x - from.x) / length)
               : 0.0;
}

/// A geographic point in radians that goes by each angle's own base-360 flag.
TQPoint radiansOf(const TQAnglePoint& geo) {
    return geo.pointWithAngleUnit(TQUnitRadian, geo.longitude().base360(), geo.latitude().base360());
}

/// Bounds of points on the plane, from a first one on.
class Bounds {
  public:
    explicit Bounds(const TQPoint& first) : _min(first), _max(first) {}

    void widen(const TQPoint& point) {
        _min = {std::min(_min.x, point.x), std::min(_min.y, point.y)};
        _max = {std::max(_max.x, point.x), std::max(_max.y, point.y)};
    }

    TQRect withMargin(double margin) const {
        return TQRect(_min.x - margin, _min.y - margin, _max.x - _min.x + 2.0 * margin,
                      _max.y - _min.y + 2.0 * margin);
    }

  private:
    TQPoint _min;
    TQPoint _max;
};

} // namespace

// Checks the point and converts it; both tangents begin like this.
bool TQPlaneMeasures::begin(const TQAnglePoint& geo, const char* measure, TQPoint& point,
                            TQPoint& image) const {
    if (!_projection.isGeoPtValid(geo)) {
        tq_perrorf("TQProjection::%s(): no valid argument.\n", measure);
        return false;
    }
    point = radiansOf(geo);
    image = imageOf(point, TQPoint());
    return true;
}

// A conversion that fails leaves its output as it is.
TQPoint TQPlaneMeasures::imageOf(const TQPoint& geo, const TQPoint& whenFailed) const {
    TQPoint image = whenFailed;
    _projection.convertGeoPt(geo, image);
    return image;
}

// Nobody has asked for the places that are probed: what conversions say of them is not said.
TQPoint TQPlaneMeasures::probedImage(const TQPoint& geo, const TQPoint& whenFailed) const {
    const TQMessageScope silence(TQMessageScope::Rule::Silence);
    return imageOf(geo, whenFailed);
}

double TQPlaneMeasures::parallelTangentAt(const TQAnglePoint& geo) const {
    TQPoint point;
    TQPoint image;
    if (!begin(geo, "parallelTangentAt", point, image)) {
        return 0.0;
    }
    const TQPoint eastwards{1.0, 0.0};
    switch (_projection.parallelShape()) {
    case TQProjection::StraightLine:
        return direction(image, probedImage(moved(point, eastwards, oneDegree), image));
    case TQProjection::CircularArc:
        return arcDirection(image);
    case TQProjection::GeneralCurve:
        return curveDirection(point, image, eastwards);
    default:
        tq_perror("TQProjection::parallelTangentAt(): no valid projection type.\n");
        return 0.0;
    }
}

double TQPlaneMeasures::meridianTangentAt(const TQAnglePoint& geo) const {
    TQPoint point;
    TQPoint image;
    if (!begin(geo, "meridianTangentAt", point, image)) {
        return 0.0;
    }
    const TQPoint northwards{0.0, 1.0};
    switch (_projection.meridianShape()) {
    case TQProjection::StraightLine:
        if (point.y < oneDegree) {
            return direction(image, probedImage(moved(point, northwards, oneDegree), image));
        }
        return direction(probedImage(moved(point, northwards, -oneDegree), image), image);
    case TQProjection::CircularArc:
        tq_perror("TQProjection::meridianTangentAt(): no valid typeOfMeridianImage ????.\n");
        return 0.0;
    case TQProjection::GeneralCurve:
        return curveDirection(point, image, northwards);
    default:
        tq_perror("TQProjection::meridianTangentAt(): no valid projection type.\n");
        return 0.0;
    }
}

double TQPlaneMeasures::arcDirection(const TQPoint& image) const {
    const TQPoint center = _projection.center();
    const double quarterTurn = std::numbers::pi / 2.0;
    if (distance(image, center) <= shortestChord) {
        return -quarterTurn;
    }
    return std::atan2(center.y - image.y, center.x - image.x) - quarterTurn;
}

double TQPlaneMeasures::curveDirection(const TQPoint& point, const TQPoint& image,
                                       const TQPoint& along) const {
    TQPoint before;
    TQPoint after;
    const bool found = probe(point, image, {-along.x, -along.y}, before) && probe(point, image, along, after);
    return found ? direction(before, after) : 0.0;
}

// Halves the step until the probed image lies within a metre. Probes that have no finite image are passed
// over; where no step gives one, it comes down to 0 in the end.
bool TQPlaneMeasures::probe(const TQPoint& point, const TQPoint& image, const TQPoint& along,
                            TQPoint& probed) const {
    if (!std::isfinite(image.x) || !std::isfinite(image.y)) {
        return false;
    }
    constexpr double nearEnough = 1.0;
    constexpr int halvingsToZero = 1075;
    for (int halvings = 0; halvings < halvingsToZero; ++halvings) {
        probed = probedImage(moved(point, along, std::ldexp(1.0, -halvings)), probed);
        if (distance(image, probed) <= nearEnough) {
            return true;
        }
    }
    return false;
}

// The probe goes towards the equator and comes as near to the point as 1e-5 m keeps it.
double TQPlaneMeasures::northAngleAt(const TQPoint& geo) const {
    if (!_projection.isGeoPtValid(geo)) {
        return 0.0;
    }
    constexpr double nearEnough = 1e-5;
    constexpr double smallestStep = 1e-20;
    constexpr int passLimit = 500;
    const bool southwards = geo.y > 0.0;
    const TQPoint image = imageOf(geo, TQPoint());
    TQPoint probed = image;
    double latitude = geo.y;
    double step = southwards ? -0.01 : 0.01;
    for (int pass = 0; pass < passLimit && std::abs(step) > smallestStep; ++pass) {
        probed = probedImage({geo.x, latitude + step}, probed);
        if (distance(image, probed) < nearEnough) {
            latitude += step;
        }
        step /= 2.0;
    }
    return direction(image, probed) + (southwards ? std::numbers::pi : 0.0);
}

TQRect TQPlaneMeasures::planeExtent(const TQAnglePoint& geoMin, const TQAnglePoint& geoMax) const {
    constexpr int latticeSize = 100;
    const TQMessageScope once(TQMessageScope::Rule::OnceEach);
    const auto latticeStep = [](TQAngleWithUnit angle, const TQAngleWithUnit& from) {
        angle.substract(from);
        angle.setBase360(true);
        angle.divide(latticeSize);
        return angle.valueInUnit(TQUnitRadian, false);
    };
    const TQPoint corner = radiansOf(geoMin);
    const double stepEast = latticeStep(geoMax.longitude(), geoMin.longitude());
    const double stepNorth = latticeStep(geoMax.latitude(), geoMin.latitude());
    const TQPoint cornerImage = imageOf(corner, TQPoint());
    TQPoint image = cornerImage;
    Bounds bounds(cornerImage);
    double margin = 0.0;
    for (int row = 0; row < latticeSize; ++row) {
        for (int column = row == 0 ? 1 : 0; column < latticeSize; ++column) {
            image = imageOf({corner.x + column * stepEast, corner.y + row * stepNorth}, image);
            bounds.widen(image);
            if (row + column == 1) {
                margin = std::max(margin, distance(cornerImage, image));
            }
        }
    }
    return bounds.withMargin(margin);
}
