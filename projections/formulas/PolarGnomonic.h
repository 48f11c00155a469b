#pragma once

#include "projections/formulas/PolarPlane.h"

namespace tq::formulas {

/// Gnomonic projection of the sphere about a pole (Snyder, equations 22-4 to 22-16 for the polar aspects):
/// great circles are straight lines. The other hemisphere comes out through the pole.
struct PolarGnomonic {
    PolarPlane plane; ///< pole and central meridian
    double a;         ///< radius of the sphere, metres

    /// The plane point of a geographic one, and whether that lies on the equator, which has no image.
    template <class T>
    Plane<T> forward(const Geographic<T>& point, Mask<T>& isOnEquator) const {
        using std::abs;
        const auto [sinPhi, cosPhi] = sinCos(point.phi);
        isOnEquator = abs(sinPhi) <= 1e-8;
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
