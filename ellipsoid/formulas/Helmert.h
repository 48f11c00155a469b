#pragma once

#include "ellipsoid/formulas/Geocentric.h"

namespace tq::formulas {

/// A seven-parameter shift between geocentric coordinates: translation, small-angle rotations and a scale.
///
/// Source: EPSG Guidance Note 7-2, position vector transformation (method 9606), whose matrix rows
/// these are.
struct Helmert {
    double dx;    ///< translation in metres
    double dy;    ///< translation in metres
    double dz;    ///< translation in metres
    double rx;    ///< rotation in radians
    double ry;    ///< rotation in radians
    double rz;    ///< rotation in radians
    double scale; ///< scale factor, 1 for none

    /// The shift from the reference datum to the local one.
    template <class T>
    Geocentric<T> forward(const Geocentric<T>& p) const {
        return {(p.x - p.y * rz + p.z * ry) * scale + dx, (p.x * rz + p.y - p.z * rx) * scale + dy,
                (p.y * rx - p.x * ry + p.z) * scale + dz};
    }

    /// The exact inverse of forward(): the small-angle matrix is inverted, not its sign changed.
    template <class T>
    Geocentric<T> inverse(const Geocentric<T>& p) const {
        const double d = scale * (1.0 + rx * rx + ry * ry + rz * rz);
        const T u = p.x - dx;
        const T v = p.y - dy;
        const T w = p.z - dz;
        return {((1.0 + rx * rx) * u + (rx * ry + rz) * v + (rx * rz - ry) * w) / d,
                ((rx * ry - rz) * u + (1.0 + ry * ry) * v + (ry * rz + rx) * w) / d,
                ((rx * rz + ry) * u + (ry * rz - rx) * v + (1.0 + rz * rz) * w) / d};
    }
};

} // namespace tq::formulas
