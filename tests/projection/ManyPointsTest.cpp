// Conversions of many points at once: what TQProjection promises of them, whatever the class.

#include "projection/TQDummyProjection.h"
#include "support/TQMessages.h"
#include "testing/Batches.h"
#include "testing/CapturedMessages.h"
#include "testing/ProbeProjection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <numbers>
#include <span>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Doubles both coordinates; refuses points in the west.
int doubled(const TQPoint& from, TQPoint& to) {
    to = {2.0 * from.x, 2.0 * from.y};
    return from.x < 0.0 ? -1 : 0;
}

/// A probe of that in both directions.
ProbeProjection doublingProbe() {
    ProbeProjection probe(doubled);
    probe.inverse = doubled;
    return probe;
}

bool isRefused(const TQPoint& point) { return std::isnan(point.x) && std::isnan(point.y); }

} // namespace

TEST(ManyPoints, EachComesOutAsItDoesAlone) {
    const CapturedMessages messages;
    const ProbeProjection probe = doublingProbe();
    for (std::size_t count = 0; count <= 67; ++count) {
        expectBatchesLikeSinglePoints(probe, mixedPoints(count, count), TQUnitRadian);
    }
    for (const std::size_t count : {511U, 512U, 513U, 1024U, 3000U}) {
        expectBatchesLikeSinglePoints(probe, mixedPoints(count, count), TQUnitDegree);
    }
}

TEST(ManyPoints, APointThatFailsIsNotANumberAndNoOtherIsTouchedByIt) {
    const ProbeProjection probe = doublingProbe();
    const std::vector<TQPoint> points{{1.0, 2.0}, {-1.0, 2.0}, {3.0, kInfinity}};
    std::vector<TQPoint> out(3);
    std::vector<signed char> statuses(3, 99);
    EXPECT_EQ(probe.convertGeoPts(points, out, statuses), 2U);
    EXPECT_THAT(statuses, ElementsAre(0, -1, 0));
    EXPECT_EQ(out[0], (TQPoint{2.0, 4.0}));
    EXPECT_TRUE(isRefused(out[1]));
    EXPECT_EQ(out[2], (TQPoint{6.0, kInfinity}));
}

TEST(ManyPoints, AnOriginalThatIsNotFiniteIsAFailureWhichNobodyReports) {
    const CapturedMessages messages;
    const ProbeProjection probe = doublingProbe();
    const std::vector<TQPoint> points{{1.0, kInfinity}, {kNaN, 1.0}, {1.0, 1.0}};
    std::vector<TQPoint> out(3);
    std::vector<signed char> statuses(3, 99);
    EXPECT_EQ(probe.convertGlobalPts(points, out, statuses), 1U);
    EXPECT_THAT(statuses, ElementsAre(-1, -1, 0));
    EXPECT_TRUE(isRefused(out[0]));
    EXPECT_TRUE(isRefused(out[1]));
    EXPECT_EQ(out[2], (TQPoint{2.0, 2.0}));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(ManyPoints, SpansOfOtherLengthsAreRefusedUntouched) {
    const ProbeProjection probe = doublingProbe();
    const std::vector<TQPoint> points(3, TQPoint{1.0, 1.0});
    const TQPoint untouched{7.0, 8.0};
    std::vector<TQPoint> shorter(2, untouched);
    std::vector<TQPoint> out(3, untouched);
    std::vector<signed char> statuses(4, 99);
    EXPECT_EQ(probe.convertGeoPts(points, shorter), 0U);
    EXPECT_EQ(probe.convertGlobalPts(points, shorter), 0U);
    EXPECT_EQ(probe.convertGeoPts(points, out, statuses), 0U);
    EXPECT_EQ(probe.convertGlobalPts(points, out, statuses), 0U);
    EXPECT_THAT(shorter, Each(untouched));
    EXPECT_THAT(out, Each(untouched));
    EXPECT_THAT(statuses, Each(99));
    EXPECT_THAT(probe.converted, IsEmpty());
}

TEST(ManyPoints, AnglesHaveAUnit) {
    const ProbeProjection probe = doublingProbe();
    const std::vector<TQPoint> degrees{{90.0, 45.0}};
    std::vector<TQPoint> out(1);
    probe.convertGeoPts(degrees, TQUnitDegree, out);
    EXPECT_DOUBLE_EQ(out[0].x, std::numbers::pi);
    EXPECT_DOUBLE_EQ(out[0].y, std::numbers::pi / 2.0);
    const std::vector<TQPoint> quarters{{std::numbers::pi / 4.0, std::numbers::pi / 8.0}};
    probe.convertGlobalPts(quarters, out, TQUnitGon);
    EXPECT_DOUBLE_EQ(out[0].x, 100.0);
    EXPECT_DOUBLE_EQ(out[0].y, 50.0);
}

TEST(ManyPoints, PointsOfAClassThatConvertsNothingFail) {
    const ProbeProjection root;
    const TQDummyProjection placeholder;
    for (const TQProjection* projection :
         {static_cast<const TQProjection*>(&root), static_cast<const TQProjection*>(&placeholder)}) {
        const std::vector<TQPoint> points{{1.0, 2.0}};
        std::vector<TQPoint> out(1, TQPoint{3.0, 4.0});
        std::vector<signed char> statuses(1, 99);
        EXPECT_EQ(projection->convertGeoPts(points, out, statuses), 0U);
        EXPECT_THAT(statuses, ElementsAre(TQProjection::Failed));
        EXPECT_TRUE(isRefused(out[0]));
        EXPECT_EQ(projection->convertGlobalPts(points, out, statuses), 0U);
        EXPECT_THAT(statuses, ElementsAre(TQProjection::Failed));
        EXPECT_TRUE(isRefused(out[0]));
    }
}

TEST(ManyPoints, AnImageThatIsNotANumberIsAFailure) {
    const ProbeProjection probe = doublingProbe();
    const std::vector<TQPoint> points{{kNaN, 2.0}, {1.0, kNaN}, {1.0, 2.0}};
    std::vector<TQPoint> out(3);
    std::vector<signed char> statuses(3, 99);
    EXPECT_EQ(probe.convertGeoPts(points, out, statuses), 1U);
    EXPECT_THAT(statuses, ElementsAre(-1, -1, 0));
    EXPECT_TRUE(isRefused(out[0]));
    EXPECT_TRUE(isRefused(out[1]));
}

TEST(ManyPoints, SpansThatOverlapAreRefusedUntouched) {
    const ProbeProjection probe = doublingProbe();
    std::vector<TQPoint> memory(6, TQPoint{1.0, 2.0});
    const std::vector<TQPoint> before = memory;
    const std::span<TQPoint> all(memory);
    EXPECT_EQ(probe.convertGeoPts(all.first(5), all.last(5)), 0U);
    EXPECT_EQ(probe.convertGlobalPts(all.last(5), all.first(5)), 0U);
    EXPECT_EQ(probe.convertGeoPts(all.first(5), TQUnitDegree, all.last(5)), 0U);
    std::vector<TQPoint> out(1);
    const std::span<signed char> within(reinterpret_cast<signed char*>(memory.data()), 1);
    EXPECT_EQ(probe.convertGeoPts(all.first(1), out, within), 0U);
    EXPECT_EQ(memory, before);
    EXPECT_THAT(probe.converted, IsEmpty());
    EXPECT_EQ(probe.convertGeoPts(all.first(3), all.last(3)), 3U);
    EXPECT_EQ(probe.convertGeoPts(all, all), 6U);
}

TEST(ManyPoints, AMessageIsPrintedOnceABatch) {
    const CapturedMessages messages;
    const ProbeProjection probe([](const TQPoint& from, TQPoint& to) {
        tq_perror("somewhere");
        tq_perrorf("at %lf", from.x);
        to = from;
        return 0;
    });
    std::vector<TQPoint> points(1200, TQPoint{1.0, 2.0});
    points[700].x = 3.0;
    probe.convertGeoPts(points, points);
    EXPECT_THAT(messages.lines(), ElementsAre("somewhere", "at 1.000000"));
}

TEST(ManyPoints, OfAClassThatSaysNothingOfItHaveNoDomain) {
    const ProbeProjection probe = doublingProbe();
    const TQPoint anywhere{100.0, 50.0};
    EXPECT_EQ(probe.whyGeoPtIsBeyondDomain(anywhere), nullptr);
    EXPECT_EQ(probe.whyGlobalPtIsBeyondDomain(anywhere), nullptr);
    EXPECT_EQ(probe.atNearestTurn(anywhere), anywhere);
}

TEST(ManyPoints, NoPointsAreNoWork) {
    const ProbeProjection probe = doublingProbe();
    EXPECT_EQ(probe.convertGeoPts({}, {}), 0U);
    EXPECT_EQ(probe.convertGlobalPts({}, {}, TQUnitDegree), 0U);
    EXPECT_THAT(probe.converted, IsEmpty());
}
