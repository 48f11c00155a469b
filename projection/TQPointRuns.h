#pragma once

#include "support/TQPoint.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

// What every conversion of many points shares. Internal: the header is not installed.

/// Converts points run by run, in memory of its own, so that the results may take the place of the points.
/// @param in the points
/// @param out receives as many results: (NaN, NaN) for a point that fails
/// @param statuses receives as many statuses, or none when it is empty
/// @param convert converts points in place, `void(std::span<TQPoint>, std::span<signed char>)`; a status
///        other than 0 is a failure
/// @return how many points did not fail; 0, and nothing is touched, when the spans differ in length
template <class Convert>
std::size_t tq_convertInRuns(std::span<const TQPoint> in, std::span<TQPoint> out,
                             std::span<signed char> statuses, const Convert& convert) {
    if (out.size() != in.size() || (!statuses.empty() && statuses.size() != in.size())) {
        return 0;
    }
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr std::size_t longestRun = 512; // 8 KiB of points, which stay in the cache
    std::array<TQPoint, longestRun> points;
    std::array<signed char, longestRun> codes;
    std::size_t converted = 0;
    for (std::size_t begin = 0; begin < in.size(); begin += longestRun) {
        const std::size_t length = std::min(longestRun, in.size() - begin);
        std::ranges::copy(in.subspan(begin, length), points.begin());
        convert(std::span(points).first(length), std::span(codes).first(length));
        for (std::size_t index = 0; index < length; ++index) {
            const bool failed = codes[index] != 0;
            out[begin + index] = failed ? TQPoint{notANumber, notANumber} : points[index];
            converted += failed ? 0 : 1;
        }
        if (!statuses.empty()) {
            std::ranges::copy(std::span(codes).first(length),
                              statuses.begin() + static_cast<std::ptrdiff_t>(begin));
        }
    }
    return converted;
}

/// Converts both coordinates of points to another unit.
inline void tq_convertUnits(std::span<TQPoint> points, const TQUnitConversion& conversion) {
    for (TQPoint& point : points) {
        point = {conversion(point.x), conversion(point.y)};
    }
}

/// Makes a failure of every point that is not finite.
inline void tq_refuseNonFinite(std::span<const TQPoint> points, std::span<signed char> statuses) {
    for (std::size_t index = 0; index < points.size(); ++index) {
        if (!std::isfinite(points[index].x) || !std::isfinite(points[index].y)) {
            statuses[index] = -1;
        }
    }
}
