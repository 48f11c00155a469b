#pragma once

#include "support/TQPoint.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>

// What every conversion of many points shares. Internal: the header is not installed.

/// Makes (NaN, NaN) of every point that failed.
/// @return how many did
inline std::size_t tq_takeFailuresAway(std::span<TQPoint> points, std::span<const signed char> statuses) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto failures = points.size() - static_cast<std::size_t>(std::ranges::count(statuses, 0));
    for (std::size_t index = 0; failures != 0 && index < points.size(); ++index) {
        if (statuses[index] != 0) {
            points[index] = {notANumber, notANumber};
        }
    }
    return failures;
}

/// Converts points run by run, each in the place of its results.
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
    constexpr std::size_t longestRun = 512; // 8 KiB of points, which stay in the cache
    std::array<signed char, longestRun> ownCodes;
    std::size_t converted = 0;
    for (std::size_t begin = 0; begin < in.size(); begin += longestRun) {
        const std::size_t length = std::min(longestRun, in.size() - begin);
        const std::span<TQPoint> points = out.subspan(begin, length);
        const std::span<signed char> codes =
            statuses.empty() ? std::span(ownCodes).first(length) : statuses.subspan(begin, length);
        if (in.data() != out.data()) {
            std::ranges::copy(in.subspan(begin, length), points.begin());
        }
        convert(points, codes);
        converted += length - tq_takeFailuresAway(points, codes);
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
        // What is not finite has no difference to itself: a test without branches.
        const TQPoint& point = points[index];
        const bool isFinite = (point.x - point.x) + (point.y - point.y) == 0.0;
        statuses[index] = isFinite ? statuses[index] : static_cast<signed char>(-1);
    }
}
