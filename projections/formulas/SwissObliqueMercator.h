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

/// Sine and cosine of a latitude by its sine, held as by heldArcsine(): at ±1 and beyond they are those of
/// ±π/2.
template <class T>
Direction<T> heldDirection(const T& sine, const T& cosine) {
    using std::abs;
    constexpr double cosineAtPole = 6.123233995736766e-17; // of the double next to π/2
    const Mask<T> isInside = abs(sine) < 1.0;
    return {select(isInside, sine, select(sine < 0.0, T(-1.0), T(1.0))),
            select(isInside, cosine, T(cosineAtPole))};
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
        _cosB0 = std::cos(heldArcsine(_sinB0));
        _K = sphericalIsometricLatitude(Direction<double>{_sinB0, _cosB0}) -
             _alpha * (sphericalIsometricLatitude(Direction<double>{sinPhi0, cosPhi0}) -
                       eccentricityTerm(sinPhi0, _e));
        _R = a * kc * std::sqrt(1.0 - e2) / (1.0 - e2 * sinPhi0 * sinPhi0);
    }

    /// Cosine of the angle, on the sphere, between a geographic point and the centre: negative where the
    /// arcsine of the way to the plane folds.
    /// @param point geographic point, its longitude counted from the centre
    double cosineFromCentre(const Geographic<double>& point) const {
        const Direction<double> b = ofIsometric(_alpha * isometricLatitudeToThePoles(point.phi, _e) + _K);
        return _cosB0 * b.cosine * std::cos(_alpha * point.lambda) + _sinB0 * b.sine;
    }

    /// The same of a plane point; negative as well where the arcsine of the way back folds.
    /// @param point plane point, counted from the centre
    double cosineFromCentre(const Plane<double>& point) const {
        const Direction<double> b = ofIsometric(point.y / _R);
        const double ahead = b.cosine * std::cos(point.x / _R);
        const bool folds = std::abs(point.x / _R) > pi / 2.0 || _cosB0 * ahead < _sinB0 * b.sine;
        return folds ? -1.0 : ahead;
    }

    /// The plane point of a geographic one, counted from the centre.
    /// @param point geographic point, its longitude counted from the centre
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        const Direction<T> b = ofIsometric(T(_alpha * isometricLatitudeToThePoles(point.phi, _e) + _K));
        const Turned<T> turned = turn(b, T(_alpha * point.lambda), -_sinB0);
        return {_R * turned.longitude, _R * sphericalIsometricLatitude(turned.latitude)};
    }

    /// The geographic point of a plane one, both counted from the centre. The latitude is iterated until it
    /// changes by 1e-10 rad at most, 6 passes at the most.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        const Turned<T> turned = turn(ofIsometric(T(point.y / _R)), T(point.x / _R), _sinB0);
        return {turned.longitude / _alpha, ellipsoidalLatitude(turned.latitude)};
    }

  private:
    /// A point of the sphere after its pole has been turned.
    template <class T>
    struct Turned {
        Direction<T> latitude;
        T longitude;
    };

    /// Turns the sphere by the colatitude of the centre; the sine of its latitude is negative for the way to
    /// the plane. Longitudes more than 90 degrees away come out on the near side.
    template <class T>
    Turned<T> turn(const Direction<T>& latitude, const T& longitude, double sinCentre) const {
        using std::sqrt;
        const auto [sinL, cosL] = sinCos(longitude);
        const T aside = latitude.cosine * sinL;
        const T ahead = latitude.cosine * cosL;
        const T sine = _cosB0 * latitude.sine + sinCentre * ahead;
        const T towards = _cosB0 * ahead - sinCentre * latitude.sine;
        const Direction<T> turned = heldDirection(sine, T(sqrt(aside * aside + towards * towards)));
        return {turned, heldArcsine(T(aside / turned.cosine))};
    }

    /// Sine and cosine of the latitude of an isometric latitude of the sphere.
    template <class T>
    static Direction<T> ofIsometric(const T& psi) {
        using std::abs, std::exp;
        const T d = exp(-abs(psi));
        const T r = 1.0 / (1.0 + d * d);
        const T sine = (1.0 - d * d) * r;
        return {select(psi < 0.0, -sine, sine), 2.0 * d * r};
    }

    /// The latitude on the ellipsoid of one on the sphere.
    template <class T>
    T ellipsoidalLatitude(const Direction<T>& b) const {
        constexpr double tolerance = 1e-10;
        constexpr int passLimit = 6;
        using std::abs;
        const T psi = sphericalIsometricLatitude(b);
        const T c = (_K - psi) / _alpha;
        const auto excess = [&](const Direction<T>& phi, const T& isometric) {
            const T q = _e * phi.sine;
            const T s = isometric + c - eccentricityTerm(phi.sine, _e);
            return s * (1.0 - q * q) * phi.cosine / (1.0 - _e * _e);
        };
        const auto improved = [&](const T& phi) {
            const Direction<T> direction = sinCos(phi);
            return phi - excess(direction, sphericalIsometricLatitude(direction));
        };
        // The first pass starts from the latitude on the sphere, all of which is at hand.
        const T firstChange = excess(b, psi);
        const T start = heldArcsine(b.sine);
        const T first = start - firstChange;
        const T last = iterate(first, T(tolerance), passLimit - 1, improved).value;
        return select(abs(first - start) <= tolerance, first, last);
    }
};

} // namespace tq::formulas
