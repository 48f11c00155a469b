#pragma once

#include "projections/formulas/IsometricLatitude.h"
#include "projections/formulas/PolarPlane.h"

namespace tq::formulas {

/// Polar stereographic projection of the ellipsoid with the scale factor at the pole (Snyder, equations
/// 21-33 to 21-40; EPSG Guidance Note 7-2, method 9810).
///
/// Latitudes are those of the north pole; for the south pole they are mirrored, by the caller.
struct PolarStereographic {
    double _eccentricity = -1.0;      ///< first eccentricity; negative as long as nothing is computed
    double _scaleRadius = 0.0;        ///< radius factor C: ρ = C·exp(-ψ), metres
    double _scaleRadiusSquared = 0.0; ///< C²

    /// Constants of an ellipsoid and the scale factor.
    /// @param a semi-major axis in metres
    /// @param e2 first eccentricity squared
    /// @param k0 scale factor at the pole
    void init(double a, double e2, double k0) {
        const double e = std::sqrt(e2);
        _eccentricity = e;
        _scaleRadius = std::pow((1.0 - e) / (1.0 + e), e / 2.0) * (2.0 * a * k0) / std::sqrt(1.0 - e2);
        _scaleRadiusSquared = _scaleRadius * _scaleRadius;
    }

    /// The plane point of a mirrored geographic one.
    template <class T>
    Plane<T> forward(const Geographic<T>& point, const PolarPlane& plane) const {
        using std::exp;
        return plane.point(T(exp(-isometricLatitudeToThePoles(point.phi, _eccentricity)) * _scaleRadius),
                           point.lambda);
    }

    /// The mirrored geographic point of a plane one, and how the iteration of its latitude ended: it stops
    /// when a pass changes the latitude by 1e-6 rad (6 m) at most. With the south pole the false northing
    /// is added where the way to the plane adds it too: a false northing other than 0 does not come back.
    /// @param point plane point
    /// @param plane pole and central meridian
    /// @param latitude receives the latitude, its last change and whether it converged
    template <class T>
    Geographic<T> inverse(const Plane<T>& point, const PolarPlane& plane, Iterated<T>& latitude) const {
        using std::atan2;
        const T dx = point.x - plane.falseOrigin.x;
        const T dy = plane.falseOrigin.y - (plane.isNorth ? point.y : T(-point.y));
        const T rho2 = dx * dx + dy * dy;
        latitude = latitudeOfSine((_scaleRadiusSquared - rho2) / (_scaleRadiusSquared + rho2));
        return {plane.lambda0 + atan2(dx, dy), latitude.value};
    }

    /// The largest change of the latitude, in radians, that ends its iteration.
    static constexpr double tolerance = 1e-6;

  private:
    /// The latitude whose conformal latitude has a sine.
    template <class T>
    Iterated<T> latitudeOfSine(const T& sinChi) const {
        using std::abs, std::log, std::sqrt;
        constexpr LatitudeStop stop{tolerance, 100001};
        const T w = sqrt((1.0 - abs(sinChi)) / (1.0 + abs(sinChi)));
        if (isSmallEccentricity(_eccentricity)) {
            const auto north = parabolicLatitude(T(abs(sinChi)), w, _eccentricity, stop);
            return {select(sinChi < 0.0, -north.value, north.value), north.change, north.converged};
        }
        const T psi = -log(w);
        return substitutedLatitude(T(select(sinChi < 0.0, -psi, psi)), _eccentricity, 1.0, stop);
    }
};

} // namespace tq::formulas
