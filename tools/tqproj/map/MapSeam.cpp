#include "tools/tqproj/map/MapSeam.h"

#include "tools/tqproj/PointOperation.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// A part of a parallel and the distance of the images of its ends; below 0 when one has none.
struct Part {
    double west;
    double east;
    double distance;
};

class Parallel {
  public:
    Parallel(const MapProjection& projection, double latitude)
        : _projection(projection), _latitude(latitude) {}

    Part part(double west, double east) const {
        const auto one = _projection.toPlane({west, _latitude});
        const auto other = _projection.toPlane({east, _latitude});
        const bool isThere = one && other;
        return {west, east, isThere ? distanceBetween(*one, *other) : -1.0};
    }

    /// The longitude at which a part jumps.
    double jumpIn(Part part) const {
        constexpr int halvings = 60; // until neighbouring numbers
        for (int halving = 0; halving < halvings; ++halving) {
            const double middle = 0.5 * (part.west + part.east);
            const Part western = this->part(part.west, middle);
            const Part eastern = this->part(middle, part.east);
            part = western.distance >= eastern.distance ? western : eastern;
        }
        return 0.5 * (part.west + part.east);
    }

  private:
    const MapProjection& _projection;
    double _latitude;
};

} // namespace

std::optional<double> seamOf(const GeographicExtent& extent, const MapProjection& projection) {
    constexpr int steps = 360;
    constexpr double ofOrdinarySteps = 36.0; // a tenth of the map of the world
    const Parallel parallel(projection, 0.5 * (extent.south + extent.north));
    const double width = extent.width() / steps;
    std::vector<Part> parts;
    parts.reserve(steps);
    for (int step = 0; step < steps; ++step) {
        parts.push_back(parallel.part(extent.west + step * width, extent.west + (step + 1) * width));
    }
    std::ranges::sort(parts, {}, &Part::distance);
    const bool jumps = parts.back().distance > ofOrdinarySteps * std::abs(parts[steps / 2].distance);
    return jumps ? std::optional(parallel.jumpIn(parts.back())) : std::nullopt;
}

GeographicExtent cutAtSeam(const GeographicExtent& extent, const MapProjection& projection) {
    const std::optional<double> seam = extent.isClosed() ? seamOf(extent, projection) : std::nullopt;
    if (!seam) {
        return extent;
    }
    const double west = std::remainder(*seam, 360.0);
    return {west + seamNearness, extent.south, west + 360.0 - seamNearness, extent.north};
}
