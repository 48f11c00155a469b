#pragma once

#include "projections/formulas/MeridianArc.h"

namespace tq::formulas {

/// Bonne's equal-area projection of the ellipsoid (Snyder, equations 19-1 to 19-11; EPSG Guidance Note 7-2,
/// method 9827), with the meridian arc to e⁶. The plane's origin is the standard parallel on the central
/// meridian.
struct Bonne {
    double _lambda0Rad = 0.0;   ///< central meridian
    double _phi1 = 0.0;         ///< standard parallel
    double _e2 = 0.0;           ///< first eccentricity squared
    double _a = 0.0;            ///< semi-major axis, metres
    double _M1 = 0.0;           ///< length of the meridian from the equator to the standard parallel, metres
    double _apexNorthing = 0.0; ///< northing of the apex, metres
    MeridianArc _arc;           ///< length of the meridian
    FootpointLatitude _footpoint; ///< latitude of a length

    /// Constants of an ellipsoid and the parameters. A standard parallel of 0 has no apex: infinities.
    /// @param a semi-major axis in metres
    /// @param e2 first eccentricity squared
    /// @param lambda0 central meridian in radians
    /// @param phi1 standard parallel in radians
    void init(double a, double e2, double lambda0, double phi1) {
        const double sinPhi1 = std::sin(phi1);
        const double cosPhi1 = std::cos(phi1);
        _lambda0Rad = lambda0;
        _phi1 = phi1;
        _e2 = e2;
        _a = a;
        _apexNorthing = a * parallelRadius(sinPhi1, cosPhi1) / sinPhi1;
        _arc = MeridianArc::toSixthPower(e2);
        _M1 = a * _arc.length(phi1, sinPhi1, cosPhi1);
        _footpoint = FootpointLatitude::of(e2);
    }

    /// The plane point of a geographic one; the longitude is not wrapped.
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        const auto [sinPhi, cosPhi] = sinCos(point.phi);
        const T rho = _apexNorthing + _M1 - _a * _arc.length(point.phi, sinPhi, cosPhi);
        const T angle = _a * parallelRadius(sinPhi, cosPhi) * (point.lambda - _lambda0Rad) / rho;
        const auto [sinAngle, cosAngle] = sinCos(angle);
        return {rho * sinAngle, _apexNorthing - rho * cosAngle};
    }

    /// The geographic point of a plane one; at a pole the longitude is the central meridian. With a
    /// southern standard parallel the angle is taken between (-x, -Y - y), Y the northing of the apex, so
    /// that longitudes off the meridian do not come back.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        using std::abs, std::atan2, std::sqrt;
        constexpr double pole = 1e-6;
        const bool isSouthern = _phi1 < 0.0;
        const T toApex = _apexNorthing - point.y;
        const T distance = sqrt(point.x * point.x + toApex * toApex);
        const T rho = isSouthern ? T(-distance) : distance;
        const T phi = _footpoint.latitude(T((_apexNorthing + _M1 - rho) / (_a * _arc._linear)));
        const T angle = isSouthern ? T(atan2(-point.x, -_apexNorthing - point.y)) : T(atan2(point.x, toApex));
        const auto [sinPhi, cosPhi] = sinCos(phi);
        const T lambda = _lambda0Rad + rho * angle / (_a * parallelRadius(sinPhi, cosPhi));
        return {select(abs(abs(phi) - pi / 2.0) >= pole, lambda, T(_lambda0Rad)), phi};
    }

  private:
    /// Radius of a parallel on an ellipsoid with semi-major axis 1 (Snyder, equation 14-15).
    template <class T>
    T parallelRadius(const T& sinPhi, const T& cosPhi) const {
        using std::sqrt;
        return cosPhi / sqrt(1.0 - _e2 * sinPhi * sinPhi);
    }
};

} // namespace tq::formulas
