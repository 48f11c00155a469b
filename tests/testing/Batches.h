#pragma once

#include "projection/TQProjection.h"
#include "support/TQUnit.h"
#include "testing/RandomNumbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

// Conversions of many points beside those of single ones.

/// What became of one point.
struct SingleResult {
    signed char status;
    TQPoint point;
};

/// The same bits, or both not a number.
inline bool isSame(double one, double other) {
    return std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other) ||
           (std::isnan(one) && std::isnan(other));
}

inline SingleResult refused() {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    return {-1, {notANumber, notANumber}};
}

/// What a batch makes of a point that alone has come to a result: what is not a number is none.
inline SingleResult taken(const TQPoint& point) {
    return std::isnan(point.x) || std::isnan(point.y) ? refused() : SingleResult{0, point};
}

/// What the entry point of single points makes of one in an angular unit.
inline SingleResult singleImage(const TQProjection& projection, const TQPoint& geo, std::uint32_t unit) {
    TQPoint global = refused().point;
    const bool hasImage = projection.convertGeoPt(TQAnglePoint(geo, unit), global) == 0;
    return hasImage ? taken(global) : refused();
}

/// The way back, in an angular unit. A class that converts nothing leaves what it is given.
inline SingleResult singleOriginal(const TQProjection& projection, const TQPoint& global,
                                   std::uint32_t unit) {
    TQPoint radians = refused().point;
    TQAnglePoint geo;
    const bool hasOriginal = projection.convertGlobalPt(global, radians) == 0 && !std::isnan(radians.x) &&
                             projection.convertGlobalPt(global, geo, unit) == 0;
    return hasOriginal ? SingleResult{0, {geo.longitude().value(), geo.latitude().value()}} : refused();
}

/// Each point of a batch must have become what it becomes alone, within the domain or beyond.
template <class Single>
void expectLikeSingle(const std::vector<TQPoint>& in, const std::vector<TQPoint>& out,
                      const std::vector<signed char>& statuses, std::size_t converted, const Single& single) {
    std::size_t successes = 0;
    for (std::size_t index = 0; index < in.size(); ++index) {
        const SingleResult alone = single(in[index]);
        successes += alone.status == 0 ? 1 : 0;
        ASSERT_EQ(std::min(statuses[index], static_cast<signed char>(0)), alone.status)
            << "point " << index << ": " << in[index].x << ", " << in[index].y;
        ASSERT_TRUE(isSame(out[index].x, alone.point.x) && isSame(out[index].y, alone.point.y))
            << "point " << index << ": " << in[index].x << ", " << in[index].y << " became " << out[index].x
            << ", " << out[index].y << ", not " << alone.point.x << ", " << alone.point.y;
    }
    EXPECT_EQ(converted, successes);
}

/// The images of points, and the originals of the same numbers taken for images, must be those of each alone,
/// also in place.
inline void expectBatchesLikeSinglePoints(const TQProjection& projection, const std::vector<TQPoint>& points,
                                          std::uint32_t unit) {
    std::vector<TQPoint> out(points.size());
    std::vector<signed char> statuses(points.size(), 99);
    const auto image = [&](const TQPoint& point) { return singleImage(projection, point, unit); };
    expectLikeSingle(points, out, statuses, projection.convertGeoPts(points, unit, out, statuses), image);
    std::vector<TQPoint> inPlace = points;
    expectLikeSingle(points, inPlace, statuses, projection.convertGeoPts(inPlace, unit, inPlace), image);

    const auto original = [&](const TQPoint& point) { return singleOriginal(projection, point, unit); };
    expectLikeSingle(points, out, statuses, projection.convertGlobalPts(points, out, unit, statuses),
                     original);
    inPlace = points;
    expectLikeSingle(points, inPlace, statuses, projection.convertGlobalPts(inPlace, inPlace, unit),
                     original);
}

/// Points all over the world in radians, points of a plane of its size, and some that are neither.
inline std::vector<TQPoint> mixedPoints(std::size_t count, std::uint64_t seed) {
    constexpr double strange[] = {0.0,
                                  -0.0,
                                  1e-300,
                                  1.5707963267948966,
                                  -1.5707963267948966,
                                  3.141592653589793,
                                  1e17,
                                  1e308,
                                  std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()};
    RandomNumbers random(seed);
    const auto strangeNumber = [&] {
        return strange[static_cast<std::size_t>(random.between(0.0, std::size(strange)))];
    };
    std::vector<TQPoint> points;
    points.reserve(count);
    while (points.size() < count) {
        const double kind = random.between(0.0, 10.0);
        if (kind < 5.0) {
            points.push_back({random.between(-3.3, 3.3), random.between(-1.6, 1.6)});
        } else if (kind < 9.0) {
            points.push_back({random.between(-2e6, 3e6), random.between(-2e6, 9e6)});
        } else {
            points.push_back({strangeNumber(), kind < 9.5 ? strangeNumber() : random.between(-1.6, 1.6)});
        }
    }
    return points;
}
