#pragma once

#include "projections/formulas/PolarPlane.h"

namespace tq::formulas {

/// Gnomonic projection of the sphere about a pole (Snyder, equations 22-4 to 22-16 for the polar aspects):
/// great circles are straight lines. The other hemisphere comes out through the pole.
struct PolarGnomonic {
    PolarPlane plane; ///< pole and central meridian
    double a;         ///< radius of the sphere, metres

    /// Whether a latitude in radians is the equator, which has no image.
    template <class T>
    static Mask<T> isEquator(const T& phi) {
        using std::abs, std::sin;
        return abs(sin(phi)) <= 1e-8;
    }

    /// The plane point of a geographic one that does not lie on the equator.
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        const auto [sinPhi, cosPhi] = sinCos(point.phi);
        const T rho = a * cosPhi / sinPhi;
        return plane.point(plane.isNorth ? rho : T(-rho), point.lambda);
    }

    /// The geographic point of a plane one.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        return plane.geographic(point, [this](const T& rho) {
            using std::atan;
            return atan(rho / a);
        });
    }
};

} // namespace tq::formulas
