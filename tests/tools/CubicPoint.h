#pragma once

#include "tools/tqproj/map/CurveTracer.h"

#include <cmath>
#include <vector>

// Points and directions of cubic Bézier curves, by the polynomials of Bernstein.

/// A point of an arc.
/// @param start where it begins
/// @param arc the arc
/// @param t from 0 to 1
inline TQPoint pointAt(const TQPoint& start, const CubicArc& arc, double t) {
    const double u = 1.0 - t;
    const double weights[]{u * u * u, 3.0 * u * u * t, 3.0 * u * t * t, t * t * t};
    const TQPoint points[]{start, arc.firstControl, arc.secondControl, arc.end};
    TQPoint sum;
    for (int index = 0; index < 4; ++index) {
        sum.x += weights[index] * points[index].x;
        sum.y += weights[index] * points[index].y;
    }
    return sum;
}

/// The points of a line at equal parameters, both ends of every arc included.
/// @param line the line
/// @param partsOfArc how many parts an arc has
inline std::vector<TQPoint> pointsOf(const CurvePiece& line, int partsOfArc) {
    std::vector<TQPoint> points{line.start};
    TQPoint start = line.start;
    for (const CubicArc& arc : line.arcs) {
        for (int part = 1; part <= partsOfArc; ++part) {
            points.push_back(pointAt(start, arc, static_cast<double>(part) / partsOfArc));
        }
        start = arc.end;
    }
    return points;
}

/// The distance of two points.
inline double distanceOf(const TQPoint& one, const TQPoint& other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

/// The angle by which a line turns where two of its arcs meet, in radians without sign.
/// @param before the arc before
/// @param after the arc after
inline double turnBetween(const CubicArc& before, const CubicArc& after) {
    const TQPoint in{before.end.x - before.secondControl.x, before.end.y - before.secondControl.y};
    const TQPoint out{after.firstControl.x - before.end.x, after.firstControl.y - before.end.y};
    return std::abs(std::atan2(in.x * out.y - in.y * out.x, in.x * out.x + in.y * out.y));
}
