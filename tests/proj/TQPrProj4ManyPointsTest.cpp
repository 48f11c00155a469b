// Many points through PROJ in one run.

#include "proj/TQPrProj4.h"

#include "testing/Batches.h"
#include "testing/CapturedMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using testing::Each;
using testing::SizeIs;

namespace {

std::unique_ptr<TQPrProj4> built(const char* definition, bool useWGS84Source = false) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->initFromPROJString(definition, useWGS84Source);
    return projection;
}

/// Points of Europe in radians, with some that no conic or cylinder has an image of.
std::vector<TQPoint> europeanPoints(std::size_t count) {
    RandomNumbers random(count);
    std::vector<TQPoint> points;
    points.reserve(count);
    while (points.size() < count) {
        points.push_back({random.between(-0.3, 0.6), random.between(0.6, 1.2)});
    }
    return points;
}

/// Converts otherwise than its parent.
class Turned : public TQPrProj4 {
  public:
    using TQPrProj4::convertGeoPt;
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override {
        TQPoint image;
        const int code = TQPrProj4::convertGeoPt(geo, image);
        global = {image.y, image.x};
        return code;
    }
};

class TQPrProj4ManyPoints : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(TQPrProj4ManyPoints, EachComesOutAsItDoesAlone) {
    const CapturedMessages messages;
    for (const bool useWGS84Source : {false, true}) {
        const auto projection = built(GetParam(), useWGS84Source);
        for (std::size_t count = 0; count <= 67; ++count) {
            expectBatchesLikeSinglePoints(*projection, mixedPoints(count, count), TQUnitRadian);
        }
        expectBatchesLikeSinglePoints(*projection, mixedPoints(2000, 1), TQUnitRadian);
        expectBatchesLikeSinglePoints(*projection, europeanPoints(2000), TQUnitRadian);
        expectBatchesLikeSinglePoints(*projection, mixedPoints(2000, 2), TQUnitDegree);
    }
}

INSTANTIATE_TEST_SUITE_P(Definitions, TQPrProj4ManyPoints,
                         testing::Values("EPSG:2154", "EPSG:32631", "EPSG:27700", "EPSG:27572", "EPSG:4326",
                                         "EPSG:3035", "EPSG:4978", "+proj=robin", "+proj=gnom +lat_0=40",
                                         "EPSG:999999"));

TEST(TQPrProj4ManyPoints, TheFirstPointThatPROJRefusesIsReported) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:32631");
    const std::vector<TQPoint> points(1000, TQPoint{0.1, 20.0});
    std::vector<TQPoint> out(points.size());
    std::vector<signed char> statuses(points.size(), 99);
    EXPECT_EQ(projection->convertGeoPts(points, out, statuses), 0U);
    EXPECT_THAT(statuses, Each(-1));
    EXPECT_THAT(messages.lines(), SizeIs(1));
    EXPECT_FALSE(projection->PROJErrorMessage().isEmpty());
}

TEST(TQPrProj4ManyPoints, ACopyHasTheRunsOfItsClass) {
    const auto projection = built("EPSG:2154");
    const TQPrProj4 copy(*projection);
    expectBatchesLikeSinglePoints(copy, europeanPoints(100), TQUnitRadian);
}

TEST(TQPrProj4ManyPoints, ADerivedClassConvertsInItsOwnWay) {
    Turned turned;
    turned.initFromPROJString("EPSG:2154", false);
    expectBatchesLikeSinglePoints(turned, europeanPoints(100), TQUnitRadian);
    TQPoint image;
    ASSERT_EQ(built("EPSG:2154")->convertGeoPt(TQPoint{0.05, 0.8}, image), 0);
    std::vector<TQPoint> points{{0.05, 0.8}};
    turned.convertGeoPts(points, points);
    EXPECT_EQ(points[0], (TQPoint{image.y, image.x}));
}
