#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

namespace tq::formulas {

/// The plane of the polar projections: a distance from the pole and a longitude are its polar coordinates.
/// Looking at the north pole, the central meridian runs from the pole down; at the south pole, up.
struct PolarPlane {
    double lambda0;            ///< central meridian in radians
    Plane<double> falseOrigin; ///< false easting and false northing: the pole, metres
    bool isNorth;              ///< whether the pole is the north pole

    /// The plane point at a distance from the pole on a meridian.
    /// @param rho distance in metres
    /// @param lambda longitude in radians
    template <class T>
    Plane<T> point(const T& rho, const T& lambda) const {
        const auto [sine, cosine] = sinCos(T(lambda - lambda0));
        const T up = rho * cosine;
        return {rho * sine + falseOrigin.x, isNorth ? T(falseOrigin.y - up) : T(falseOrigin.y + up)};
    }

    /// The geographic point of a plane one, by the law of the distances. The pole itself, to 1e-8 m, is
    /// always the north pole: a quirk that documents rely on.
    /// @param point plane point
    /// @param polarDistance gives the angle from the pole, in radians, of a distance in metres
    template <class T, class PolarDistance>
    Geographic<T> geographic(const Plane<T>& point, PolarDistance polarDistance) const {
        using std::abs, std::atan2, std::sqrt;
        constexpr double pole = 1e-8;
        const T dx = point.x - falseOrigin.x;
        const T dy = point.y - falseOrigin.y;
        const T rho = sqrt(dx * dx + dy * dy);
        const T c = polarDistance(rho);
        const T phi = isNorth ? T(pi / 2.0 - c) : T(c - pi / 2.0);
        const T lambda = lambda0 + atan2(dx, isNorth ? T(-dy) : dy);
        const Mask<T> isPole = abs(rho) <= pole;
        return {select(isPole, T(lambda0), lambda), select(isPole, T(pi / 2.0), phi)};
    }
};

} // namespace tq::formulas
