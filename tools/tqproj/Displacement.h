#pragma once

#include <string>

class TQProjection;

/// How far the coordinates of places lie apart in two projections, in metres.
struct Displacement {
    double inTheMiddle = 0.0; ///< in the middle of the area
    double greatest = 0.0;    ///< the greatest on a lattice over the area

    /// Compares two projections over the area in which the first one is good, or over the world when there is
    /// no such area. Places without an image in both do not count.
    /// @param one,other projections with coordinates in metres
    static Displacement between(const TQProjection& one, const TQProjection& other);
};

/// A distance for people: three digits and a fitting unit.
/// @param metres the distance, 0 or greater
std::string distanceText(double metres);
