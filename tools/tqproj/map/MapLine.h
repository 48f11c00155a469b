#pragma once

#include "tools/tqproj/map/CurveTracer.h"

#include <string>
#include <vector>

/// A line of a grid as it lies on the page.
struct MapLine {
    /// What the line is.
    enum class Kind {
        Meridian, ///< of a longitude, from south to north
        Parallel, ///< of a latitude, from west to east
        Easting,  ///< of an x, upwards
        Northing  ///< of a y, to the right
    };

    Kind kind;                      ///< what the line is
    double value;                   ///< its longitude, latitude, x or y
    std::vector<CurvePiece> pieces; ///< where it lies; none when it has no image in the extent

    /// Its coordinate for people: "2°30'W", "46°N", "700000"; in metres, and saying so, where the plane's
    /// unit is another one: "700000 m".
    /// @param metresOfUnit the metres of the plane's unit
    std::string coordinate(double metresOfUnit) const;
};
