#pragma once

#include "projections/formulas/PolarPlane.h"

namespace tq::formulas {

/// Equidistant azimuthal projection of the sphere about a pole (Snyder, equations 25-1 to 25-16 for the
/// polar aspects): distances from the pole are true.
struct PolarAzimuthal {
    PolarPlane plane; ///< pole and central meridian
    double a;         ///< radius of the sphere, metres

    /// The plane point of a geographic one.
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        const T c = plane.isNorth ? T(pi / 2.0 - point.phi) : T(point.phi + pi / 2.0);
        return plane.point(T(c * a), point.lambda);
    }

    /// The geographic point of a plane one.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        return plane.geographic(point, [this](const T& rho) { return rho / a; });
    }
};

} // namespace tq::formulas
