#pragma once

#include "support/TQPoint.h"
#include "support/TQUnit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <span>

// What every conversion of many points shares. Internal: the header is not installed.

/// Points that are converted together: 8 KiB of them, which stay in the cache.
inline constexpr std::size_t tq_longestRun = 512;

/// What a point is before it is converted, and after it failed.
inline constexpr TQPoint tq_noPoint{std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::quiet_NaN()};

/// Makes (NaN, NaN) of every point that failed.
/// @return how many did
inline std::size_t tq_takeFailuresAway(std::span<TQPoint> points, std::span<const signed char> statuses) {
    const auto hasFailed = [](signed char status) { return status < 0; };
    const auto failures = static_cast<std::size_t>(std::ranges::count_if(statuses, hasFailed));
    for (std::size_t index = 0; failures != 0 && index < points.size(); ++index) {
        if (hasFailed(statuses[index])) {
            points[index] = tq_noPoint;
        }
    }
    return failures;
}

/// Whether two spans have bytes in common.
inline bool tq_overlap(std::span<const std::byte> one, std::span<const std::byte> other) {
    const std::less<> isBefore; // an order of all pointers, which < need not be
    return !one.empty() && !other.empty() && isBefore(one.data(), other.data() + other.size()) &&
           isBefore(other.data(), one.data() + one.size());
}

/// Whether points can be converted from one span to another, with statuses: as many of each, the output in
/// the very place of the input or away from it, the statuses away from both.
inline bool tq_areSpansOfABatch(std::span<const TQPoint> in, std::span<const TQPoint> out,
                                std::span<const signed char> statuses) {
    const auto ins = std::as_bytes(in);
    const auto outs = std::as_bytes(out);
    const auto codes = std::as_bytes(statuses);
    return out.size() == in.size() && (statuses.empty() || statuses.size() == in.size()) &&
           (in.data() == out.data() || !tq_overlap(ins, outs)) && !tq_overlap(codes, ins) &&
           !tq_overlap(codes, outs);
}

/// Converts points run by run, each in the place of its results.
/// @param in the points
/// @param out receives as many results: (NaN, NaN) for a point that fails
/// @param statuses receives as many statuses, or none when it is empty
/// @param convert converts at most tq_longestRun points in place,
///        `void(std::span<TQPoint>, std::span<signed char>)`; a negative status is a failure
/// @return how many points did not fail; 0, and nothing is touched, when tq_areSpansOfABatch() refuses the
///         spans
template <class Convert>
std::size_t tq_convertInRuns(std::span<const TQPoint> in, std::span<TQPoint> out,
                             std::span<signed char> statuses, const Convert& convert) {
    if (!tq_areSpansOfABatch(in, out, statuses)) {
        return 0;
    }
    std::array<signed char, tq_longestRun> ownCodes;
    std::size_t converted = 0;
    for (std::size_t begin = 0; begin < in.size(); begin += tq_longestRun) {
        const std::size_t length = std::min(tq_longestRun, in.size() - begin);
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

/// Makes a failure of every point that is not a number.
inline void tq_refuseNotANumber(std::span<const TQPoint> points, std::span<signed char> statuses) {
    for (std::size_t index = 0; index < points.size(); ++index) {
        const TQPoint& point = points[index];
        const bool isNumber =
            static_cast<int>(point.x == point.x) + static_cast<int>(point.y == point.y) == 2;
        statuses[index] = isNumber ? statuses[index] : static_cast<signed char>(-1);
    }
}
