#pragma once

#include "ellipsoid/formulas/Iteration.h"

namespace tq::formulas {

/// Geocentric Cartesian coordinates in metres.
template <class T>
struct Geocentric {
    T x; ///< towards longitude 0 on the equator
    T y; ///< towards 90 degrees east on the equator
    T z; ///< towards the north pole
};

/// The geocentric coordinates of a point on an ellipsoid, height 0 (EPSG Guidance Note 7-2, method 9602).
/// @param point the point on the ellipsoid
/// @param a semi-major axis
/// @param e2 first eccentricity squared
template <class T>
Geocentric<T> geocentricFromGeodetic(const Geographic<T>& point, double a, double e2) {
    using std::sqrt;
    const auto [sinPhi, cosPhi] = sinCos(point.phi);
    const auto [sinLambda, cosLambda] = sinCos(point.lambda);
    const T n = a / sqrt(1.0 - e2 * sinPhi * sinPhi);
    return {n * cosPhi * cosLambda, n * cosPhi * sinLambda, (1.0 - e2) * n * sinPhi};
}

/// The point of an ellipsoid below or above a geocentric point; the height is not computed.
///
/// The latitude is iterated until it changes by 1e-9 rad at most, 102 passes at the most. A point on the
/// axis gives longitude 0 and latitude 0.
/// @param point geocentric coordinates in metres
/// @param a semi-major axis
/// @param e2 first eccentricity squared
template <class T>
Geographic<T> geodeticFromGeocentric(const Geocentric<T>& point, double a, double e2) {
    using std::atan, std::atan2, std::sin, std::sqrt;
    constexpr double tolerance = 1e-9;
    constexpr int passLimit = 102;
    const T p = sqrt(point.x * point.x + point.y * point.y);
    const auto onAxis = p == 0.0;
    const T radius = select(onAxis, T(1.0), p);
    const auto improved = [&](const T& phi) {
        const T sinPhi = sin(phi);
        const T n = a / sqrt(1.0 - e2 * sinPhi * sinPhi);
        return atan((point.z + n * e2 * sinPhi) / radius);
    };
    const T start = atan(point.z / ((1.0 - e2) * radius));
    const T phi = iterate(start, tolerance, passLimit, improved).value;
    return {select(onAxis, T(0.0), atan2(point.y, point.x)), select(onAxis, T(0.0), phi)};
}

} // namespace tq::formulas
