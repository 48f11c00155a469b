#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

namespace tq::formulas {

/// Equirectangular projection of the sphere (Snyder, equations 12-1 to 12-6): longitude and latitude times
/// a factor each.
struct Equirectangular {
    double xFactor; ///< metres, or plane units, per radian of longitude
    double yFactor; ///< the same per radian of latitude

    /// The plane point of a geographic one.
    template <class T>
    Plane<T> forward(const Geographic<T>& point) const {
        return {xFactor * point.lambda, yFactor * point.phi};
    }

    /// The geographic point of a plane one.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point) const {
        return {point.x / xFactor, point.y / yFactor};
    }
};

} // namespace tq::formulas
