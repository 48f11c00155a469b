#pragma once

#include "projections/formulas/MeridianArc.h"

namespace tq::formulas {

/// Cassini-Soldner projection of the ellipsoid by truncated series in the distance from the central
/// meridian (Snyder, equations 13-7 to 13-14; EPSG Guidance Note 7-2, method 9806), with the meridian arc
/// to e⁸.
struct CassiniSoldner {
    /// The divisor of the third coefficient of the way back, where Snyder has 96: documents of this library
    /// have been made with it.
    static constexpr double thirdDivisor = 696.0;

    double _lambda0Rad = 0.0; ///< central meridian
    double _e2 = 0.0;         ///< first eccentricity squared
    double _a = 0.0;          ///< semi-major axis, metres
    double _M0 = 0.0;         ///< length of the meridian from the equator to the latitude of origin, metres
    MeridianArc _arc;         ///< length of the meridian
    FootpointLatitude _footpoint; ///< latitude of a length

    /// Constants of an ellipsoid and the origin.
    /// @param a semi-major axis in metres
    /// @param e2 first eccentricity squared
    /// @param lambda0 central meridian in radians
    /// @param phi0 latitude of origin in radians
    void init(double a, double e2, double lambda0, double phi0) {
        _lambda0Rad = lambda0;
        _e2 = e2;
        _a = a;
        _arc = MeridianArc::toEighthPower(e2);
        _footpoint = FootpointLatitude::of(e2, thirdDivisor);
        _M0 = a * _arc.length(phi0);
    }

    /// The plane point of a geographic one; the longitude is not wrapped.
    /// @param point geographic point
    /// @param falseOrigin false easting and false northing
    template <class T>
    Plane<T> forward(const Geographic<T>& point, const Plane<double>& falseOrigin) const {
        const auto [sinPhi, cosPhi] = sinCos(point.phi);
        const T tanPhi = sinPhi / cosPhi;
        const T a = (point.lambda - _lambda0Rad) * cosPhi;
        const T a2 = a * a;
        const T t = tanPhi * tanPhi;
        const T c = _e2 * cosPhi * cosPhi / (1.0 - _e2);
        const T n = primeVerticalRadius(sinPhi);
        return {n * (a - t * a2 * a / 6.0 - (8.0 - t + 8.0 * c) * t * a2 * a2 * a / 120.0) + falseOrigin.x,
                _a * _arc.length(point.phi, sinPhi, cosPhi) + falseOrigin.y - _M0 +
                    n * tanPhi * (a2 / 2.0 + (5.0 - t + 6.0 * c) * a2 * a2 / 24.0)};
    }

    /// The geographic point of a plane one.
    /// @param point plane point
    /// @param falseOrigin false easting and false northing
    template <class T>
    Geographic<T> inverse(const Plane<T>& point, const Plane<double>& falseOrigin) const {
        const T phi1 = _footpoint.latitude(T((point.y - falseOrigin.y + _M0) / (_a * _arc._linear)));
        const auto [sinPhi1, cosPhi1] = sinCos(phi1);
        const T tanPhi1 = sinPhi1 / cosPhi1;
        const T t1 = tanPhi1 * tanPhi1;
        const T n1 = primeVerticalRadius(sinPhi1);
        // N1/R1, of the radii of curvature in the prime vertical and in the meridian.
        const T ratio = (1.0 - _e2 * sinPhi1 * sinPhi1) / (1.0 - _e2);
        const T d = (point.x - falseOrigin.x) / n1;
        const T d2 = d * d;
        return {_lambda0Rad + (d - t1 * d2 * d / 3.0 + (1.0 + 3.0 * t1) * t1 * d2 * d2 * d / 15.0) / cosPhi1,
                phi1 - ratio * tanPhi1 * (d2 / 2.0 - (1.0 + 3.0 * t1) * d2 * d2 / 24.0)};
    }

  private:
    template <class T>
    T primeVerticalRadius(const T& sinPhi) const {
        using std::sqrt;
        return _a / sqrt(1.0 - _e2 * sinPhi * sinPhi);
    }
};

} // namespace tq::formulas
