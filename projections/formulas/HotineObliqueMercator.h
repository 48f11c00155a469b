#pragma once

#include "projections/formulas/IsometricLatitude.h"

namespace tq::formulas {

/// Oblique Mercator as M. Hotine formulates it (Snyder, equations 9-11 to 9-48; EPSG Guidance Note 7-2,
/// methods 9812 and 9815). Plane coordinates are v across and u along the central line, turned by the
/// bearing of the grid.
struct HotineObliqueMercator {
    /// What a projection is defined by, in radians and metres.
    struct Definition {
        double lambdaC;            ///< longitude of the centre
        double phiC;               ///< latitude of the centre
        double azimuth;            ///< of the central line
        double bearing;            ///< of the grid
        double kc;                 ///< scale factor on the central line
        bool azimuthIsAtOrigin;    ///< whether the azimuth is that at the natural origin, not at the centre
        bool uIsFromCentre;        ///< whether u is counted from the centre, not from the natural origin
        Plane<double> falseOrigin; ///< false easting and false northing
    };

    Definition _definition{}; ///< as init() took it
    double _e = 0.0;          ///< first eccentricity
    double _A = 0.0;          ///< Hotine's constant A, metres
    double _B = 0.0;          ///< Hotine's constant B
    double _F = 0.0;          ///< Hotine's constant F
    double _logF = 0.0;       ///< its logarithm
    double _logT0 = 0.0;      ///< logarithm of t at the latitude of the centre
    double _lambda0 = 0.0;    ///< longitude of the natural origin
    double _sinGamma0 = 0.0;  ///< sine of the azimuth of the central line at the natural origin
    double _cosGamma0 = 0.0;  ///< its cosine
    double _cosBearing = 0.0; ///< cosine of the bearing of the grid
    double _sinBearing = 0.0; ///< sine of the bearing of the grid
    double _uc = 0.0;         ///< u of the centre, metres
    bool _nearNinety = false; ///< whether the azimuth at the centre lies within 1e-6 rad of 90 degrees

    /// Constants of an ellipsoid and a definition.
    /// @param a semi-major axis in metres
    /// @param e2 first eccentricity squared
    /// @param definition what the projection is defined by
    void init(double a, double e2, const Definition& definition) {
        _definition = definition;
        _e = std::sqrt(e2);
        const double sinPhiC = std::sin(definition.phiC);
        const double cosPhiC = std::cos(definition.phiC);
        const double b = std::sqrt(1.0 - e2);
        const double w2 = 1.0 - e2 * sinPhiC * sinPhiC;
        _B = std::sqrt(1.0 + e2 * cosPhiC * cosPhiC * cosPhiC * cosPhiC / (1.0 - e2));
        _A = _B * a * definition.kc * b / w2;
        _logT0 = logT(definition.phiC);
        const double steepness = _B * b / (cosPhiC * std::sqrt(w2));
        // Less than 1 by rounding only, next to the equator.
        const double d = steepness < 1.0 ? 1.0 : steepness;
        const double hemisphere = definition.phiC >= 0.0 ? 1.0 : -1.0;
        const double r = std::sqrt(d * d - 1.0);
        _F = hemisphere > 0.0 ? d + r : 1.0 / (d + r); // d + r and d - r, which would cancel
        _logF = std::log(_F);
        const auto [alphaC, gamma0] = azimuths(d);
        _sinGamma0 = std::sin(gamma0);
        _cosGamma0 = std::cos(gamma0);
        _cosBearing = std::cos(definition.bearing);
        _sinBearing = std::sin(definition.bearing);
        _lambda0 = definition.lambdaC - hemisphere * longitudeOfCentre(d, r, alphaC, _cosGamma0) / _B;
        constexpr double ninety = 1e-6;
        _nearNinety = std::abs(alphaC - pi / 2.0) < ninety;
        _uc = _nearNinety ? (definition.lambdaC - _lambda0) * _A
                          : std::atan2(r, std::cos(alphaC)) * (_A / _B) * hemisphere;
    }

    /// The angle from the azimuth of the central line at the natural origin to the bearing of the grid,
    /// radians.
    double bearingFromCentralLine() const {
        return std::atan2(_sinBearing * _cosGamma0 - _cosBearing * _sinGamma0,
                          _cosBearing * _cosGamma0 + _sinBearing * _sinGamma0);
    }

    /// Radius of the aposphere's plane, metres.
    double radius() const { return _A / _B; }

    /// Whether the offset of the centre, where there is one, is that of the centre: an azimuth beyond 90
    /// degrees takes the arctangent to another quadrant than the natural origin.
    bool hasOffsetOfCentre() const {
        return !_definition.uIsFromCentre || _nearNinety || std::abs(_uc) <= std::abs(radius()) * (pi / 2.0);
    }

    /// Whether a plane point lies so near that it is the image of one place: within half a turn along the
    /// central line, and short of its poles.
    bool isNear(const Plane<double>& point) const {
        constexpr double farthestAcross = 1.5; // 65 degrees
        const double dx = point.x - _definition.falseOrigin.x;
        const double dy = point.y - _definition.falseOrigin.y;
        const double v = dx * _cosBearing - dy * _sinBearing;
        const double u = dx * _sinBearing + dy * _cosBearing + (_definition.uIsFromCentre ? _uc : 0.0);
        return std::abs(u) <= std::abs(radius()) * pi && std::abs(v) <= std::abs(radius()) * farthestAcross;
    }

    /// Whether the offset of the centre is taken off on the way to the plane, as it is added on the way back,
    /// or there is none.
    /// @param lambda longitude in radians
    bool hasRightOffset(double lambda) const {
        return !_definition.uIsFromCentre || _nearNinety || lambda < _definition.lambdaC;
    }

    /// The plane point of a geographic one. Counted from the centre, u takes its offset by the side of the
    /// centre on which the point lies.
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        using std::atan2, std::exp;
        const T q = _F * exp(_B * (_logT0 - logT(point.phi)));
        const Turned<T> turned = turn(Hyperbolic<T>::ofLogarithm(q),
                                      sinCos(T(_B * (point.lambda - _lambda0))), {_sinGamma0, _cosGamma0});
        const T v = -_A / _B * sphericalIsometricLatitude(turned.latitude);
        const T u = _A / _B * turned.longitude + offset(point.lambda);
        return {u * _sinBearing + v * _cosBearing + _definition.falseOrigin.x,
                u * _cosBearing - v * _sinBearing + _definition.falseOrigin.y};
    }

    /// The geographic point of a plane one. The bearing of the grid stands for the azimuth at the natural
    /// origin, from which it may differ, and the offset of the centre has one sign.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        using std::exp;
        constexpr LatitudeStop stop{1e-10, 15};
        const T dx = point.x - _definition.falseOrigin.x;
        const T dy = point.y - _definition.falseOrigin.y;
        const T v = dx * _cosBearing - dy * _sinBearing;
        const T u = dx * _sinBearing + dy * _cosBearing + (_definition.uIsFromCentre ? _uc : 0.0);
        const T q = exp(-_B * v / _A);
        const auto [sinAngle, cosAngle] = sinCos(T(_B * u / _A));
        const Turned<T> turned = turn(Hyperbolic<T>::ofLogarithm(q), Direction<T>{-sinAngle, cosAngle},
                                      {_sinBearing, _cosBearing});
        const T isometric = (sphericalIsometricLatitude(turned.latitude) - _logF) / _B - _logT0;
        return {_lambda0 - turned.longitude / _B, inverseIsometricLatitude(isometric, _e, 1.0, stop).value};
    }

  private:
    struct Azimuths {
        double alphaC; ///< at the centre
        double gamma0; ///< at the natural origin
    };

    Azimuths azimuths(double d) const {
        const double given = _definition.azimuth;
        return _definition.azimuthIsAtOrigin ? Azimuths{roundedArcsine(std::sin(given) * d), given}
                                             : Azimuths{given, std::asin(std::sin(given) / d)};
    }

    /// An arcsine that takes an argument which passes ±1 by 1e-9 at the most, as rounding makes it, for ±1.
    static double roundedArcsine(double sine) {
        constexpr double rounding = 1e-9;
        const bool isOne = std::abs(sine) > 1.0 && std::abs(sine) <= 1.0 + rounding;
        return std::asin(isOne ? std::copysign(1.0, sine) : sine);
    }

    /// The longitude of a northern centre on the aposphere, from the natural origin: the arcsine of
    /// (F - 1/F)/2·tan γ0 (Snyder, equation 9-24), by the tangent of which no digit is lost towards ±90
    /// degrees and none can overstep them.
    /// @param d,r Hotine's D and √(D² - 1)
    /// @param alphaC azimuth of the central line at the centre; an arcsine where that at the natural origin
    /// is
    ///        given, which tells north from south then
    /// @param cosGamma0 cosine of the azimuth at the natural origin
    static double longitudeOfCentre(double d, double r, double alphaC, double cosGamma0) {
        const double sine = std::copysign(r, cosGamma0) * std::sin(alphaC);
        return std::atan2(sine, d * std::abs(std::cos(alphaC)));
    }

    /// Hyperbolic sine and cosine of an isometric latitude.
    template <class T>
    struct Hyperbolic {
        T sine, cosine;

        /// Those of the logarithm of a number.
        static Hyperbolic ofLogarithm(const T& q) {
            const T inverse = 1.0 / q;
            return {0.5 * (q - inverse), 0.5 * (q + inverse)};
        }
    };

    /// A point of the aposphere after its pole has been turned.
    template <class T>
    struct Turned {
        Direction<T> latitude;
        T longitude;
    };

    /// Turns the aposphere from one axis to the other.
    /// @param latitude hyperbolic functions of the isometric latitude about the one axis
    /// @param longitude sine and cosine of the longitude about it
    /// @param azimuth sine and cosine of the azimuth of the central line
    template <class T>
    static Turned<T> turn(const Hyperbolic<T>& latitude, const Direction<T>& longitude,
                          const Direction<double>& azimuth) {
        using std::atan2, std::sqrt;
        const T r = 1.0 / latitude.cosine;
        const T up = latitude.sine * azimuth.sine - longitude.sine * azimuth.cosine;
        const T ahead = latitude.sine * azimuth.cosine + longitude.sine * azimuth.sine;
        const T x = ahead * r;
        const T y = longitude.cosine * r;
        return {{up * r, sqrt(x * x + y * y)}, atan2(ahead, longitude.cosine)};
    }

    /// The logarithm of Hotine's t: the isometric latitude of the mirrored latitude, so that the north pole
    /// is exactly at minus infinity.
    template <class T>
    T logT(const T& phi) const {
        return isometricLatitudeToThePoles(T(-phi), _e);
    }

    /// What is added to u, by the longitude of the point.
    template <class T>
    T offset(const T& lambda) const {
        if (!_definition.uIsFromCentre) {
            return T(0.0);
        }
        return _nearNinety ? T(-_uc) : T(select(lambda - _definition.lambdaC < 0.0, T(-_uc), T(_uc)));
    }
};

} // namespace tq::formulas
