#pragma once

#include "projections/formulas/IsometricLatitude.h"

namespace tq::formulas {

/// An arcsine that takes an argument beyond ±1 as ±1.
template <class T>
T heldArcsine(const T& sine) {
    using std::abs, std::asin;
    const T limit = select(sine < 0.0, T(-pi / 2.0), T(pi / 2.0));
    return select(abs(sine) < 1.0, asin(sine), limit);
}

/// Swiss oblique Mercator: the ellipsoid conformally on a sphere, the sphere conformally on a cylinder that
/// touches it along the great circle through the centre with azimuth 90 degrees (Federal Office of
/// Topography swisstopo, Formulas and constants for the calculation of the Swiss conformal cylindrical
/// projection, rigorous formulas). Longitudes are counted from the centre.
struct SwissObliqueMercator {
    double _e = 0.0;          ///< first eccentricity
    double _lambda0Rad = 0.0; ///< longitude of the centre
    double _cosB0 = 0.0;      ///< cosine of the latitude of the centre on the sphere
    double _sinB0 = 0.0;      ///< its sine
    double _alpha = 0.0;      ///< ratio of longitudes on the sphere and the ellipsoid
    double _K = 0.0;          ///< constant of the latitudes on the sphere
    double _R = 0.0;          ///< radius of the sphere times the scale factor, metres

    /// Constants of an ellipsoid and the centre.
    /// @param a semi-major axis in metres
    /// @param e2 first eccentricity squared
    /// @param lambda0,phi0 centre in radians
    /// @param kc scale factor at the centre
    void init(double a, double e2, double lambda0, double phi0, double kc) {
        const double sinPhi0 = std::sin(phi0);
        const double cosPhi0 = std::cos(phi0);
        _e = std::sqrt(e2);
        _lambda0Rad = lambda0;
        _alpha = std::sqrt(1.0 + e2 * cosPhi0 * cosPhi0 * cosPhi0 * cosPhi0 / (1.0 - e2));
        _sinB0 = sinPhi0 / _alpha;
        const double b0 = heldArcsine(_sinB0);
        _cosB0 = std::cos(b0);
        _K = sphericalIsometricLatitude(b0) -
             _alpha * (sphericalIsometricLatitude(phi0) - eccentricityTerm(sinPhi0, _e));
        _R = a * kc * std::sqrt(1.0 - e2) / (1.0 - e2 * sinPhi0 * sinPhi0);
    }

    /// The plane point of a geographic one, counted from the centre.
    /// @param point geographic point, its longitude counted from the centre
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        using std::cos, std::sin;
        const T s =
            _alpha * (sphericalIsometricLatitude(point.phi) - eccentricityTerm(sin(point.phi), _e)) + _K;
        const Direction<T> b = ofIsometric(s);
        const T l = _alpha * point.lambda;
        const T turnedB = heldArcsine(_cosB0 * b.sine - _sinB0 * b.cosine * cos(l));
        const T turnedL = heldArcsine(sin(l) * b.cosine / cos(turnedB));
        return {_R * turnedL, _R * sphericalIsometricLatitude(turnedB)};
    }

    /// The geographic point of a plane one, both counted from the centre. The latitude is iterated until it
    /// changes by 1e-10 rad at most, 6 passes at the most.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        using std::cos, std::sin;
        const Direction<T> turnedB = ofIsometric(T(point.y / _R));
        const T turnedL = point.x / _R;
        const T b = heldArcsine(_sinB0 * turnedB.cosine * cos(turnedL) + _cosB0 * turnedB.sine);
        const T l = heldArcsine(sin(turnedL) * turnedB.cosine / cos(b));
        return {l / _alpha, ellipsoidalLatitude(b)};
    }

  private:
    /// Sine and cosine of a latitude.
    template <class T>
    struct Direction {
        T sine, cosine;
    };

    /// Those of the latitude of an isometric latitude of the sphere.
    template <class T>
    static Direction<T> ofIsometric(const T& psi) {
        using std::abs, std::exp;
        const T d = exp(-abs(psi));
        const T r = 1.0 / (1.0 + d * d);
        const T sine = (1.0 - d * d) * r;
        return {select(psi < 0.0, -sine, sine), 2.0 * d * r};
    }

    template <class T>
    T ellipsoidalLatitude(const T& b) const {
        using std::cos, std::sin;
        constexpr double tolerance = 1e-10;
        constexpr int passLimit = 6;
        const T c = (_K - sphericalIsometricLatitude(b)) / _alpha;
        const auto improved = [&](const T& phi) {
            const T q = _e * sin(phi);
            const T s = sphericalIsometricLatitude(phi) + c - eccentricityTerm(sin(phi), _e);
            return phi - s * (1.0 - q * q) * cos(phi) / (1.0 - _e * _e);
        };
        return iterate(b, T(tolerance), passLimit, improved).value;
    }
};

} // namespace tq::formulas
