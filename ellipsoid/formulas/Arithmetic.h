#pragma once

#include <cmath>

/// The formulas of the library, apart from the classes that own the parameters: function templates over
/// the arithmetic type, which is double today and may be a pack of doubles. They branch on constants
/// only; where lanes differ they select.
namespace tq::formulas {

/// The number pi.
inline constexpr double pi = 3.14159265358979323846;

/// What a comparison of two values of an arithmetic type gives: one truth value a lane.
template <class T>
using Mask = decltype(T() > T());

/// A point on an ellipsoid.
template <class T>
struct Geographic {
    T lambda; ///< longitude in radians
    T phi;    ///< latitude in radians
};

/// A point on the projection plane, in metres.
template <class T>
struct Plane {
    T x; ///< easting
    T y; ///< northing
};

/// Sine and cosine of an angle.
template <class T>
struct Direction {
    T sine;   ///< of the angle
    T cosine; ///< of the angle
};

/// Sine and cosine of an angle in radians, together.
inline Direction<double> sinCos(double angle) { return {std::sin(angle), std::cos(angle)}; }

/// The one of two values that a condition chooses, lane by lane.
inline double select(bool condition, double whenTrue, double whenFalse) {
    return condition ? whenTrue : whenFalse;
}

/// Whether a condition holds in any lane.
inline bool anyLane(bool condition) { return condition; }

/// Degrees to radians, for the constants of a formula.
constexpr double radians(double degrees) { return degrees * pi / 180.0; }

} // namespace tq::formulas
