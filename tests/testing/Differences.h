#pragma once

#include "support/TQPoint.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

/// The largest and the root mean square of many differences.
class Differences {
  public:
    void add(double difference) {
        // std::max would pass over what is not a number.
        _max = std::isnan(difference) ? difference : std::max(_max, std::abs(difference));
        _sumOfSquares += difference * difference;
        ++_count;
    }

    double max() const { return _max; }
    double rms() const { return std::sqrt(_sumOfSquares / static_cast<double>(_count)); }

  private:
    double _max = 0.0;
    double _sumOfSquares = 0.0;
    std::size_t _count = 0;
};

/// The distance of two plane points.
inline double planeDistance(const TQPoint& one, const TQPoint& other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

/// The angle between two near geographic points in radians, as it shows on the ground: differences of
/// longitude count by the cosine of the latitude, whole turns not at all.
inline double groundAngle(const TQPoint& one, const TQPoint& other) {
    const double turn = 2.0 * std::numbers::pi;
    return std::hypot(std::remainder(one.x - other.x, turn) * std::cos(one.y), one.y - other.y);
}
