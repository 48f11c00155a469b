#pragma once

#include "projections/formulas/IsometricLatitude.h"

namespace tq::formulas {

/// Radius of curvature in the prime vertical (Snyder, equation 4-20). An eccentricity outside [0, 1) gives
/// -1, a negative semi-major axis -2, an ellipsoid that has no such latitude -3.
/// @param e first eccentricity
/// @param a semi-major axis in metres
/// @param phi geodetic latitude in radians
inline double primeVerticalRadius(double e, double a, double phi) {
    const double q = e * std::sin(phi);
    if (!isEccentricity(e)) {
        return -1.0;
    }
    if (a < 0.0) {
        return -2.0;
    }
    return std::abs(q) >= 1.0 ? -3.0 : a / std::sqrt(1.0 - q * q);
}

/// Lambert conformal conic with one or two standard parallels (Snyder, equations 15-1 to 15-11; EPSG Guidance
/// Note 7-2, methods 9801 and 9802; Institut géographique national, note NTG 71).
struct LambertConformalConic {
    double _lambda0Rad = 0.0; ///< central meridian
    double _phi0Rad = 0.0;    ///< latitude of origin
    double _e = 0.0;          ///< first eccentricity
    double _n = 0.0;          ///< cone constant
    double _F = 0.0;          ///< radius factor: ρ(φ) = F·exp(-n·ψ(φ))

    /// The meridian, the origin and the ellipsoid, which both forms share.
    /// @param lambda0 central meridian in radians
    /// @param phi0 latitude of origin in radians
    /// @param e first eccentricity
    void initOrigin(double lambda0, double phi0, double e) {
        _lambda0Rad = lambda0;
        _phi0Rad = phi0;
        _e = e;
    }

    /// The cone that touches the ellipsoid at the latitude of origin. The equator and the poles have none:
    /// infinities and NaN.
    /// @param a semi-major axis in metres
    /// @param k0 scale factor on the latitude of origin
    /// @return the radius of the latitude of origin
    double initTangent(double a, double k0) {
        _n = std::sin(_phi0Rad);
        const double rho0 = primeVerticalRadius(_e, a, _phi0Rad) * k0 / std::tan(_phi0Rad);
        _F = rho0 * std::exp(isometricLatitudeToThePoles(_phi0Rad, _e) * std::sin(_phi0Rad));
        return rho0;
    }

    /// The cone that cuts the ellipsoid in two parallels. Equal parallels have none: NaN.
    /// @param a semi-major axis in metres
    /// @param phi1,phi2 standard parallels in radians
    /// @return the radius of the latitude of origin, 0 for a pole
    double initSecant(double a, double phi1, double phi2) {
        constexpr double pole = 1e-6;
        const double m1 = primeVerticalRadius(_e, a, phi1) * std::cos(phi1);
        const double m2 = primeVerticalRadius(_e, a, phi2) * std::cos(phi2);
        const double psi1 = isometricLatitudeToThePoles(phi1, _e);
        _n = std::log(m2 / m1) / (psi1 - isometricLatitudeToThePoles(phi2, _e));
        _F = std::exp(_n * psi1) * m1 / _n;
        return std::abs(std::abs(_phi0Rad) - pi / 2.0) > pole ? radius(_phi0Rad) : 0.0;
    }

    /// The plane point of a geographic one; the longitude is not wrapped.
    /// @param point geographic point
    /// @param apex the plane point of the pole
    template <class T>
    Plane<T> forward(const Geographic<T>& point, const Plane<double>& apex) const {
        const auto [sinTheta, cosTheta] = sinCos(T(_n * (point.lambda - _lambda0Rad)));
        const T rho = radius(point.phi);
        return {apex.x + rho * sinTheta, apex.y - rho * cosTheta};
    }

    /// The geographic point of a plane one. The longitude comes from the plain arctangent, so that a point
    /// behind the apex is off by π/n.
    /// @param point plane point
    /// @param apex the plane point of the pole
    template <class T>
    Geographic<T> inverse(const Plane<T>& point, const Plane<double>& apex) const {
        using std::abs, std::atan, std::log, std::sqrt;
        const T dy = apex.y - point.y;
        const T dx = point.x - apex.x;
        const T rho = sqrt(dy * dy + dx * dx);
        return {atan(dx / dy) / _n + _lambda0Rad, testedLatitude(-log(abs(rho / _F)) / _n, _e)};
    }

  private:
    template <class T>
    T radius(const T& phi) const {
        using std::exp;
        return _F * exp(-_n * isometricLatitudeToThePoles(phi, _e));
    }
};

} // namespace tq::formulas
