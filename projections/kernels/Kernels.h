#pragma once

#include "projections/kernels/Conversions.h"
#include "support/TQPoint.h"

#include <cstddef>

namespace tq::kernels {

/// The way of a conversion.
enum class Way { ToPlane, ToGeographic };

/// Coordinates after a conversion.
template <class T>
struct Converted {
    T x{};                    ///< easting, or longitude
    T y{};                    ///< northing, or latitude
    Mask<T> isSpecial{false}; ///< whether the class has to see to the point
};

/// Converts a point, or a pack of them, by the formulas of a class.
/// @param conversion one of Conversions.h
/// @param x,y longitude and latitude in radians, or easting and northing in metres
template <Way way, class T, class Conversion>
Converted<T> convertedBy(const Conversion& conversion, const T& x, const T& y) {
    Converted<T> converted;
    if constexpr (way == Way::ToPlane) {
        const Geographic<T> point{x, y};
        Plane<T> image;
        if constexpr (requires { conversion.toPlane(point, converted.isSpecial); }) {
            image = conversion.toPlane(point, converted.isSpecial);
        } else {
            image = conversion.toPlane(point);
        }
        converted.x = image.x;
        converted.y = image.y;
    } else {
        const Plane<T> point{x, y};
        Geographic<T> original;
        if constexpr (requires { conversion.toGeographic(point, converted.isSpecial); }) {
            original = conversion.toGeographic(point, converted.isSpecial);
        } else {
            original = conversion.toGeographic(point);
        }
        converted.x = original.lambda;
        converted.y = original.phi;
    }
    return converted;
}

/// Converts points in place, four at once; to be called on a processor with AVX2 and FMA only.
/// @param conversion one of Conversions.h
/// @param points the points, not owned; a special one is left as it is
/// @param isSpecial receives for a special point 1; the others are left as they are
/// @param count the number of points
/// @return whether there was a special point
template <Way way, class Conversion>
bool runOnFour(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count);

/// The same, eight at once; to be called on a processor with AVX-512 F and DQ only.
template <Way way, class Conversion>
bool runOnEight(const Conversion& conversion, TQPoint* points, signed char* isSpecial, std::size_t count);

} // namespace tq::kernels
