#pragma once

#include "projections/formulas/IsometricLatitude.h"

namespace tq::formulas {

/// Longitude adjustment of the General Cartographic Transformation Package (USGS): into [-pi, pi] where
/// at most five steps reach it.
/// @param longitude an angle in radians
template <class T>
T adjusted(T longitude) {
    using std::abs, std::trunc;
    constexpr double largestLong = 2147483647.0;
    constexpr double twoPi = 2.0 * pi;
    constexpr double longTurns = 13493037698.238832;
    constexpr double longLongTurns = 28976077779357650944.0;
    constexpr int passLimit = 5;
    const auto quotient = [](const T& value, double period) { return trunc(abs(value / period)); };
    const auto reduced = [](const T& value, double period) { return value - trunc(value / period) * period; };
    for (int pass = 0; pass < passLimit && anyLane(abs(longitude) > pi); ++pass) {
        const T oneTurn = longitude - select(longitude < 0.0, T(-twoPi), T(twoPi));
        T next = select(quotient(longitude, longLongTurns) < largestLong, reduced(longitude, longLongTurns),
                        oneTurn);
        next = select(quotient(longitude, longTurns) < largestLong, reduced(longitude, longTurns), next);
        next = select(quotient(longitude, twoPi) < largestLong, reduced(longitude, twoPi), next);
        next = select(quotient(longitude, pi) < 2.0, oneTurn, next);
        longitude = select(abs(longitude) > pi, next, longitude);
    }
    return longitude;
}

/// Direct Mercator as the General Cartographic Transformation Package formulates it: no scale factor,
/// northings from the equator (Snyder, equations 15-10, 7-7 and 7-10).
struct GctpMercator {
    /// Whether a latitude in radians is a pole, which has no image.
    template <class T>
    static Mask<T> isPole(const T& phi) {
        using std::abs;
        return abs(abs(phi) - pi / 2.0) <= 1e-10;
    }

    /// The plane point of a geographic one that is no pole; not a number beyond a pole, where the cosine of
    /// the latitude is negative.
    /// @param point geographic point
    /// @param lambda0 central meridian in radians
    /// @param falseOrigin false easting and false northing
    /// @param scale metres per radian of longitude
    /// @param e first eccentricity
    template <class T>
    static Plane<T> forward(const Geographic<T>& point, double lambda0, const Plane<double>& falseOrigin,
                            double scale, double e) {
        const Direction<T> phi = sinCos(point.phi);
        const T psi = sphericalIsometricLatitude(phi) - eccentricityTerm(phi.sine, e);
        return {falseOrigin.x + scale * adjusted(point.lambda - lambda0), falseOrigin.y + scale * psi};
    }

    /// The geographic point of a plane one, and whether the latitude converged to 1e-10 rad within 16
    /// passes; where it did not, the last latitude is kept. Parameters as for forward().
    template <class T>
    static Geographic<T> inverse(const Plane<T>& point, double lambda0, const Plane<double>& falseOrigin,
                                 double scale, double e, Mask<T>& converged) {
        constexpr LatitudeStop stop{1e-10, 16};
        const auto latitude = inverseIsometricLatitude((point.y - falseOrigin.y) / scale, e, 1.0, stop);
        converged = latitude.converged;
        return {adjusted(lambda0 + (point.x - falseOrigin.x) / scale), latitude.value};
    }
};

} // namespace tq::formulas
