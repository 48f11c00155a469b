#pragma once

#include "support/TQPoint.h"

#include <cmath>
#include <string_view>

/// The way an operation goes.
enum class Direction {
    Forward, ///< from longitude and latitude to x and y, or from the source to the target
    Inverse  ///< back
};

/// What is done to the coordinates of a point between reading and writing them.
class PointOperation {
  public:
    virtual ~PointOperation() = default;

    /// Converts a point; angles are radians.
    /// @param in the point, finite
    /// @param out receives the result, finite if there is one
    /// @return why there is no result, of static storage; empty when there is one
    virtual std::string_view convert(const TQPoint& in, TQPoint& out) const = 0;
};

/// A point in a unit so many times as great.
inline TQPoint dividedBy(const TQPoint& point, double unit) { return {point.x / unit, point.y / unit}; }

/// A point in a unit so many times as small.
inline TQPoint multipliedBy(const TQPoint& point, double unit) { return {point.x * unit, point.y * unit}; }

/// The distance of two points of a plane.
inline double distanceBetween(const TQPoint& one, const TQPoint& other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

/// Whether both coordinates of a point are finite.
inline bool isFinite(const TQPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); }
