#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/ProbeProjection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kRadians = 0x11000001;
constexpr std::uint32_t kDegrees = 0x12000001;
constexpr double kOneDegree = kPi / 180.0;

TQAnglePoint radians(double longitude, double latitude) { return {longitude, latitude, kRadians}; }

/// An image in which east and north are turned by an angle and stretched by a factor.
ProbeProjection::Conversion turnedBy(double angle, double factor) {
    return [=](const TQPoint& geo, TQPoint& global) {
        global = {factor * (geo.x * std::cos(angle) - geo.y * std::sin(angle)),
                  factor * (geo.x * std::sin(angle) + geo.y * std::cos(angle))};
        return 0;
    };
}

/// An image with the same point everywhere.
ProbeProjection::Conversion everythingAt(const TQPoint& point) {
    return [=](const TQPoint& /*geo*/, TQPoint& global) {
        global = point;
        return 0;
    };
}

/// An image in which parallels are circles around the origin, north towards it.
ProbeProjection::Conversion circles(double radius) {
    return [=](const TQPoint& geo, TQPoint& global) {
        const double r = radius * (2.0 - geo.y);
        global = {r * std::cos(geo.x), r * std::sin(geo.x)};
        return 0;
    };
}

} // namespace

// ---- parallels -------------------------------------------------------------------------------------------

TEST(TQProjectionParallelTangent, OfAStraightLineIsTheDirectionToThePointOneDegreeEast) {
    for (const double angle : {0.0, 0.5, 2.0, -2.5, kPi}) {
        ProbeProjection projection(turnedBy(angle, 1e6));
        projection.parallel = 0;
        EXPECT_NEAR(projection.parallelTangentAt(radians(0.3, 0.7)), angle, 1e-9);
        EXPECT_THAT(projection.converted, ElementsAre(TQPoint{0.3, 0.7}, TQPoint{0.3 + kOneDegree, 0.7}));
    }
}

TEST(TQProjectionParallelTangent, OfAStraightLineWithoutLengthIsZero) {
    ProbeProjection projection(everythingAt({5.0, 6.0}));
    projection.parallel = 0;
    EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0);
}

TEST(TQProjectionParallelTangent, TakesChordsLongerThanATenMillionthOnly) {
    ProbeProjection projection(turnedBy(0.5, 0.99e-7 / kOneDegree));
    projection.parallel = 0;
    EXPECT_EQ(projection.parallelTangentAt(radians(0.0, 0.0)), 0.0);
    projection.forward = turnedBy(0.5, 1.01e-7 / kOneDegree);
    EXPECT_NEAR(projection.parallelTangentAt(radians(0.0, 0.0)), 0.5, 1e-9);
}

TEST(TQProjectionParallelTangent, OfAnArcIsSquareToTheDirectionOfItsCenter) {
    ProbeProjection projection(everythingAt({3.0, 4.0}));
    projection.parallel = 1;
    projection.itsCenter = {3.0, 10.0};
    EXPECT_NEAR(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0, 1e-15);
    projection.itsCenter = {3.0, -10.0};
    EXPECT_NEAR(projection.parallelTangentAt(radians(0.3, 0.7)), -kPi, 1e-15);
    projection.itsCenter = {-7.0, 4.0};
    EXPECT_NEAR(projection.parallelTangentAt(radians(0.3, 0.7)), kPi / 2.0, 1e-15);
}

TEST(TQProjectionParallelTangent, OfAnArcThroughItsCenterIsAQuarterTurnBack) {
    ProbeProjection projection(everythingAt({3.0, 4.0}));
    projection.parallel = 1;
    projection.itsCenter = {3.0, 4.0};
    EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), -kPi / 2.0);
    projection.itsCenter = {3.0, 4.0 + 0.9e-7};
    EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), -kPi / 2.0);
    projection.itsCenter = {3.0, 4.0 + 1.1e-7};
    EXPECT_NEAR(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0, 1e-9);
}

TEST(TQProjectionParallelTangent, OfACurveIsTheChordBetweenBothSides) {
    ProbeProjection projection(circles(1000.0));
    for (const double longitude : {-2.0, 0.0, 0.25, 1.0}) {
        EXPECT_NEAR(projection.parallelTangentAt(radians(longitude, 0.5)), longitude + kPi / 2.0, 1e-9);
    }
}

TEST(TQProjectionParallelTangent, OfACurveHalvesEachSideUntilTheChordIsAMetre) {
    // To the west the image is four times as large as to the east.
    ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        global = {geo.x < 2.0 ? 4.0 * (geo.x - 2.0) : geo.x - 2.0, 0.0};
        return 0;
    });
    EXPECT_EQ(projection.parallelTangentAt(radians(2.0, 0.5)), 0.0);
    EXPECT_THAT(projection.converted, ElementsAre(TQPoint{2.0, 0.5}, TQPoint{1.0, 0.5}, TQPoint{1.5, 0.5},
                                                  TQPoint{1.75, 0.5}, TQPoint{3.0, 0.5}));
}

TEST(TQProjectionParallelTangent, OfACurveWithoutLengthIsZero) {
    ProbeProjection projection(everythingAt({5.0, 6.0}));
    EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0);
}

TEST(TQProjectionParallelTangent, EndsWithZeroWhereNoImageIsFinite) {
    for (const double strange : {kNaN, kInfinity, -kInfinity}) {
        for (const int shape : {0, 2}) {
            ProbeProjection projection(everythingAt({strange, strange}));
            projection.parallel = shape;
            EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0) << strange << " " << shape;
            EXPECT_LT(projection.converted.size(), 3000U);
        }
    }
}

TEST(TQProjectionParallelTangent, EndsWithZeroWhereTheNeighboursAreNotFinite) {
    ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        global = {geo.x == 0.5 ? 0.0 : kInfinity, geo.x == 0.5 ? 0.0 : kNaN};
        return 0;
    });
    EXPECT_EQ(projection.parallelTangentAt(radians(0.5, 0.7)), 0.0);
}

TEST(TQProjectionParallelTangent, OfAnUnknownShapeIsReportedAndZero) {
    for (const int shape : {-1, 3, 99}) {
        const CapturedMessages messages;
        ProbeProjection projection(turnedBy(0.5, 1e6));
        projection.parallel = shape;
        EXPECT_EQ(projection.parallelTangentAt(radians(0.3, 0.7)), 0.0);
        EXPECT_THAT(messages.lines(),
                    ElementsAre("TQProjection::parallelTangentAt(): no valid projection type.\n"));
    }
}

TEST(TQProjectionParallelTangent, AtAnInvalidPointIsReportedAndZero) {
    for (const int shape : {0, 1, 2, 3}) {
        const CapturedMessages messages;
        ProbeProjection projection(turnedBy(0.5, 1e6));
        projection.parallel = shape;
        projection.valid = [](const TQPoint& /*geo*/) { return false; };
        EXPECT_EQ(projection.parallelTangentAt(TQAnglePoint(-90.0, 45.0, kDegrees)), 0.0);
        EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::parallelTangentAt(): no valid argument.\n"));
        EXPECT_THAT(projection.askedForValid, ElementsAre(TQPoint{-kPi / 2.0, kPi / 4.0}));
        EXPECT_THAT(projection.converted, IsEmpty());
    }
}

TEST(TQProjectionParallelTangent, ConvertsThePointByItsBase360Flags) {
    ProbeProjection projection(turnedBy(0.5, 1e6));
    projection.parallel = 0;
    projection.parallelTangentAt(
        TQAnglePoint(TQAngleWithUnit(-90.0, kDegrees, true), TQAngleWithUnit(-45.0, kDegrees, false)));
    EXPECT_EQ(projection.converted.at(0), (TQPoint{1.5 * kPi, -kPi / 4.0}));
}

// ---- meridians -------------------------------------------------------------------------------------------

TEST(TQProjectionMeridianTangent, OfAStraightLinePointsToTheHigherLatitude) {
    for (const double angle : {0.0, 0.5, 2.0, -2.5}) {
        for (const double latitude : {-1.0, 0.0, 0.5, 1.5}) {
            ProbeProjection projection(turnedBy(angle, 1e6));
            projection.meridian = 0;
            const double tangent = projection.meridianTangentAt(radians(0.3, latitude));
            EXPECT_NEAR(std::remainder(tangent - (angle + kPi / 2.0), 2.0 * kPi), 0.0, 1e-9);
        }
    }
}

TEST(TQProjectionMeridianTangent, OfAStraightLineLooksNorthBelowOneDegreeAndSouthFromThereOn) {
    const auto second = [](double latitude) {
        ProbeProjection projection(turnedBy(0.0, 1e6));
        projection.meridian = 0;
        projection.meridianTangentAt(radians(0.25, latitude));
        EXPECT_EQ(projection.converted.at(0), (TQPoint{0.25, latitude}));
        return projection.converted.at(1);
    };
    EXPECT_EQ(second(-1.5), (TQPoint{0.25, -1.5 + kOneDegree}));
    EXPECT_EQ(second(0.0), (TQPoint{0.25, kOneDegree}));
    const double justBelow = std::nextafter(kOneDegree, 0.0);
    EXPECT_EQ(second(justBelow), (TQPoint{0.25, justBelow + kOneDegree}));
    EXPECT_EQ(second(kOneDegree), (TQPoint{0.25, 0.0}));
    EXPECT_EQ(second(1.5), (TQPoint{0.25, 1.5 - kOneDegree}));
}

TEST(TQProjectionMeridianTangent, OfALineWithoutLengthIsZero) {
    for (const int shape : {0, 2}) {
        ProbeProjection projection(everythingAt({5.0, 6.0}));
        projection.meridian = shape;
        EXPECT_EQ(projection.meridianTangentAt(radians(0.3, 0.7)), 0.0);
        EXPECT_EQ(projection.meridianTangentAt(radians(0.3, -0.7)), 0.0);
    }
}

TEST(TQProjectionMeridianTangent, OfAnArcIsReportedAndZero) {
    const CapturedMessages messages;
    ProbeProjection projection(turnedBy(0.5, 1e6));
    projection.meridian = 1;
    EXPECT_EQ(projection.meridianTangentAt(radians(0.3, 0.7)), 0.0);
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQProjection::meridianTangentAt(): no valid typeOfMeridianImage ????.\n"));
}

TEST(TQProjectionMeridianTangent, OfACurveIsTheChordBetweenBothSides) {
    // Meridians are circles around the origin.
    ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        global = {1000.0 * std::cos(geo.y), 1000.0 * std::sin(geo.y)};
        return 0;
    });
    for (const double latitude : {-1.25, 0.0, 0.5}) {
        EXPECT_NEAR(projection.meridianTangentAt(radians(0.3, latitude)), latitude + kPi / 2.0, 1e-9);
    }
}

TEST(TQProjectionMeridianTangent, OfACurveHalvesEachSideUntilTheChordIsAMetre) {
    ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        global = {0.0, geo.y > 0.5 ? 2.0 * (geo.y - 0.5) : 4.0 * (geo.y - 0.5)};
        return 0;
    });
    EXPECT_EQ(projection.meridianTangentAt(radians(2.0, 0.5)), kPi / 2.0);
    EXPECT_THAT(projection.converted, ElementsAre(TQPoint{2.0, 0.5}, TQPoint{2.0, -0.5}, TQPoint{2.0, 0.0},
                                                  TQPoint{2.0, 0.25}, TQPoint{2.0, 1.5}, TQPoint{2.0, 1.0}));
}

TEST(TQProjectionMeridianTangent, EndsWithZeroWhereNoImageIsFinite) {
    for (const double strange : {kNaN, kInfinity, -kInfinity}) {
        for (const int shape : {0, 2}) {
            ProbeProjection projection(everythingAt({strange, strange}));
            projection.meridian = shape;
            EXPECT_EQ(projection.meridianTangentAt(radians(0.3, 0.7)), 0.0) << strange << " " << shape;
        }
    }
}

TEST(TQProjectionMeridianTangent, OfAnUnknownShapeIsReportedAndZero) {
    for (const int shape : {-1, 3, 99}) {
        const CapturedMessages messages;
        ProbeProjection projection(turnedBy(0.5, 1e6));
        projection.meridian = shape;
        EXPECT_EQ(projection.meridianTangentAt(radians(0.3, 0.7)), 0.0);
        EXPECT_THAT(messages.lines(),
                    ElementsAre("TQProjection::meridianTangentAt(): no valid projection type.\n"));
    }
}

TEST(TQProjectionMeridianTangent, AtAnInvalidPointIsReportedAndZero) {
    for (const int shape : {0, 1, 2, 3}) {
        const CapturedMessages messages;
        ProbeProjection projection(turnedBy(0.5, 1e6));
        projection.meridian = shape;
        projection.valid = [](const TQPoint& /*geo*/) { return false; };
        EXPECT_EQ(projection.meridianTangentAt(radians(0.3, 0.7)), 0.0);
        EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::meridianTangentAt(): no valid argument.\n"));
    }
}

// ---- north -----------------------------------------------------------------------------------------------

namespace {

/// turnedBy() around a point, so that distances there are exact.
ProbeProjection::Conversion turnedAround(const TQPoint& center, double angle, double factor) {
    return [=, turned = turnedBy(angle, factor)](const TQPoint& geo, TQPoint& global) {
        return turned({geo.x - center.x, geo.y - center.y}, global);
    };
}

} // namespace

TEST(TQProjectionNorthAngle, IsTheDirectionOfNorth) {
    for (const double latitude : {-0.75, 0.0, 0.75}) {
        for (const double angle : {-0.5, 0.0, 0.25, 1.0}) {
            const TQPoint point{0.5, latitude};
            const ProbeProjection projection(turnedAround(point, angle, 6.4e6));
            EXPECT_NEAR(projection.northAngleAt(point), kPi / 2.0 + angle, 1e-6) << latitude << " " << angle;
        }
    }
}

// The probe goes south and half a turn is added, so that the result may exceed half a turn.
TEST(TQProjectionNorthAngle, OfANorthernPointIsHalfATurnMoreThanTheDirectionOfSouth) {
    const double angle = -1.25 * kPi - kPi / 2.0; // north lies at -1.25 pi, south at -0.25 pi
    const ProbeProjection northern(turnedAround({0.0, 0.5}, angle, 6.4e6));
    EXPECT_NEAR(northern.northAngleAt({0.0, 0.5}), 0.75 * kPi, 1e-6);
    const ProbeProjection other(turnedAround({0.0, 0.5}, kPi / 4.0 + kPi / 2.0, 6.4e6));
    EXPECT_NEAR(other.northAngleAt({0.0, 0.5}), 1.25 * kPi, 1e-6);
    const ProbeProjection southern(turnedAround({0.0, -0.5}, kPi / 4.0 + kPi / 2.0, 6.4e6));
    EXPECT_NEAR(southern.northAngleAt({0.0, -0.5}), -0.75 * kPi, 1e-6);
}

TEST(TQProjectionNorthAngle, AtAnInvalidPointIsZero) {
    for (const double latitude : {-0.5, 0.5}) {
        ProbeProjection projection(turnedBy(0.5, 1e6));
        projection.valid = [](const TQPoint& /*geo*/) { return false; };
        EXPECT_EQ(projection.northAngleAt({0.0, latitude}), 0.0);
        EXPECT_THAT(projection.converted, IsEmpty());
    }
}

TEST(TQProjectionNorthAngle, WithoutDirectionIsZeroAndHalfATurnInTheNorth) {
    for (const double number : {5.0, kNaN}) {
        const ProbeProjection projection(everythingAt({number, 6.0}));
        EXPECT_EQ(projection.northAngleAt({0.0, 0.0}), 0.0);
        EXPECT_EQ(projection.northAngleAt({0.0, -0.5}), 0.0);
        EXPECT_EQ(projection.northAngleAt({0.0, 0.5}), kPi);
    }
}

TEST(TQProjectionNorthAngle, HalvesItsStepFromAHundredthOfARadianOn) {
    const ProbeProjection northern(turnedBy(0.0, 6.4e6));
    northern.northAngleAt({0.25, 0.5});
    EXPECT_EQ(northern.converted.at(0), (TQPoint{0.25, 0.5}));
    EXPECT_EQ(northern.converted.at(1), (TQPoint{0.25, 0.5 - 0.01}));
    EXPECT_EQ(northern.converted.at(2), (TQPoint{0.25, 0.5 - 0.005}));
    EXPECT_EQ(northern.converted.at(3), (TQPoint{0.25, 0.5 - 0.0025}));
    EXPECT_EQ(northern.converted.size(), 61U); // 0.01 is halved 60 times until it is 1e-20
    const ProbeProjection equatorial(turnedBy(0.0, 6.4e6));
    equatorial.northAngleAt({0.25, 0.0});
    EXPECT_EQ(equatorial.converted.at(1), (TQPoint{0.25, 0.01}));
}

TEST(TQProjectionNorthAngle, MovesOnWhileTheImageStaysNear) {
    // A step of 0.01 moves the image by 0.9e-5: near enough to go on from there.
    const ProbeProjection projection(turnedBy(0.0, 0.9e-3));
    projection.northAngleAt({0.0, 0.0});
    EXPECT_EQ(projection.converted.at(1), (TQPoint{0.0, 0.01}));
    EXPECT_EQ(projection.converted.at(2), (TQPoint{0.0, 0.01 + 0.005}));
    EXPECT_EQ(projection.converted.at(3), (TQPoint{0.0, 0.01 + 0.0025}));
}

// ---- plane extent ----------------------------------------------------------------------------------------

namespace {

/// The lattice that a rectangle is sampled at.
std::vector<TQPoint> samplesOf(const TQAnglePoint& geoMin, const TQAnglePoint& geoMax) {
    const ProbeProjection projection(turnedBy(0.0, 1.0));
    projection.computeKilographicalLimitFromGeo(geoMin, geoMax);
    return projection.converted;
}

ProbeProjection::Conversion stretched(double x, double y) {
    return [=](const TQPoint& geo, TQPoint& global) {
        global = {1e6 + x * geo.x, 2e6 + y * geo.y};
        return 0;
    };
}

void expectNear(const TQRect& actual, const TQRect& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-6);
    EXPECT_NEAR(actual.y, expected.y, 1e-6);
    EXPECT_NEAR(actual.width, expected.width, 1e-6);
    EXPECT_NEAR(actual.height, expected.height, 1e-6);
}

} // namespace

TEST(TQProjectionPlaneExtent, SamplesALatticeWithoutItsFarEdges) {
    const auto samples = samplesOf(TQAnglePoint(10.0, 40.0, kDegrees), TQAnglePoint(20.0, 45.0, kDegrees));
    ASSERT_EQ(samples.size(), 10000U);
    EXPECT_EQ(samples[0], (TQPoint{tq_deg2rad(10.0), tq_deg2rad(40.0)}));
    for (const std::size_t row : {0U, 1U, 50U, 99U}) {
        for (const std::size_t column : {0U, 1U, 50U, 99U}) {
            const TQPoint& sample = samples[100 * row + column];
            EXPECT_NEAR(sample.x, tq_deg2rad(10.0 + 0.1 * static_cast<double>(column)), 1e-14);
            EXPECT_NEAR(sample.y, tq_deg2rad(40.0 + 0.05 * static_cast<double>(row)), 1e-14);
        }
    }
}

TEST(TQProjectionPlaneExtent, IsTheBoundsWithTheLargerFirstStepAround) {
    const TQAnglePoint geoMin = radians(0.0, 0.0);
    const TQAnglePoint geoMax = radians(1.0, 0.5);
    const ProbeProjection wide(stretched(1000.0, 1000.0));
    expectNear(wide.computeKilographicalLimitFromGeo(geoMin, geoMax), // the step east is the larger
               TQRect(1e6 - 10.0, 2e6 - 10.0, 990.0 + 20.0, 495.0 + 20.0));
    const ProbeProjection high(stretched(1000.0, 4000.0));
    expectNear(high.computeKilographicalLimitFromGeo(geoMin, geoMax), // the step north is the larger
               TQRect(1e6 - 20.0, 2e6 - 20.0, 990.0 + 40.0, 1980.0 + 40.0));
    const ProbeProjection mirrored(stretched(-1000.0, -1000.0));
    expectNear(mirrored.computeKilographicalLimitFromGeo(geoMin, geoMax),
               TQRect(1e6 - 990.0 - 10.0, 2e6 - 495.0 - 10.0, 990.0 + 20.0, 495.0 + 20.0));
}

TEST(TQProjectionPlaneExtent, FindsBoundsInsideTheRectangle) {
    // The image bulges in the middle of the rectangle.
    const ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        global = {1000.0 * geo.x, geo.x == 0.5 && geo.y == 0.5 ? 777.0 : 0.0};
        return 0;
    });
    const TQRect extent = projection.computeKilographicalLimitFromGeo(radians(0.0, 0.0), radians(1.0, 1.0));
    EXPECT_NEAR(extent.y, -10.0, 1e-9);
    EXPECT_NEAR(extent.height, 797.0, 1e-9);
}

TEST(TQProjectionPlaneExtent, ASampleThatFailsRepeatsTheOneBefore) {
    // Only the first column can be converted; zero lies far away.
    const ProbeProjection projection([](const TQPoint& geo, TQPoint& global) {
        if (geo.x > 0.0) {
            return -1;
        }
        return stretched(1000.0, 1000.0)(geo, global);
    });
    expectNear(projection.computeKilographicalLimitFromGeo(radians(0.0, 0.0), radians(1.0, 1.0)),
               TQRect(1e6 - 10.0, 2e6 - 10.0, 20.0, 990.0 + 20.0));
}

TEST(TQProjectionPlaneExtent, WhereNothingCanBeConvertedItIsEmpty) {
    const ProbeProjection projection([](const TQPoint& /*geo*/, TQPoint& /*global*/) { return -1; });
    EXPECT_EQ(projection.computeKilographicalLimitFromGeo(radians(0.5, 0.5), radians(1.0, 1.0)),
              TQRect(0.0, 0.0, 0.0, 0.0));
}

TEST(TQProjectionPlaneExtent, CrossesTheAntimeridian) {
    const auto samples = samplesOf(TQAnglePoint(170.0, 0.0, kDegrees), TQAnglePoint(-170.0, 10.0, kDegrees));
    ASSERT_EQ(samples.size(), 10000U);
    EXPECT_NEAR(samples[0].x, tq_deg2rad(170.0), 1e-14);
    EXPECT_NEAR(samples[1].x, tq_deg2rad(170.2), 1e-14);
    EXPECT_NEAR(samples[99].x, tq_deg2rad(189.8), 1e-14);
}

TEST(TQProjectionPlaneExtent, TheWholeWorldKeepsItsWidth) {
    const auto samples =
        samplesOf(TQAnglePoint(-180.0, -80.0, kDegrees), TQAnglePoint(180.0, 80.0, kDegrees));
    ASSERT_EQ(samples.size(), 10000U);
    EXPECT_NEAR(samples[1].x, tq_deg2rad(-176.4), 1e-14);
    EXPECT_NEAR(samples[99].x, tq_deg2rad(176.4), 1e-14);
    EXPECT_NEAR(samples[9900].y, tq_deg2rad(78.4), 1e-14);
}

TEST(TQProjectionPlaneExtent, LatitudesInTheWrongOrderGoAroundTheTurn) {
    const auto samples = samplesOf(TQAnglePoint(0.0, 10.0, kDegrees), TQAnglePoint(1.0, 0.0, kDegrees));
    ASSERT_EQ(samples.size(), 10000U);
    EXPECT_NEAR(samples[100].y, tq_deg2rad(13.5), 1e-14);
}

TEST(TQProjectionPlaneExtent, TheCornerGoesByItsBase360Flags) {
    const auto samples = samplesOf(
        TQAnglePoint(TQAngleWithUnit(-10.0, kDegrees, true), TQAngleWithUnit(-20.0, kDegrees, false)),
        TQAnglePoint(10.0, 20.0, kDegrees));
    ASSERT_EQ(samples.size(), 10000U);
    EXPECT_NEAR(samples[0].x, tq_deg2rad(350.0), 1e-14);
    EXPECT_NEAR(samples[0].y, tq_deg2rad(-20.0), 1e-14);
    EXPECT_NEAR(samples[1].x, tq_deg2rad(350.2), 1e-14);
}

TEST(TQProjectionPlaneExtent, OfAnEmptyRectangleIsAPoint) {
    const ProbeProjection projection(stretched(1000.0, 1000.0));
    EXPECT_EQ(projection.computeKilographicalLimitFromGeo(radians(0.0, 0.0), radians(0.0, 0.0)),
              TQRect(1e6, 2e6, 0.0, 0.0));
}

TEST(TQProjectionTangents, AnImageThatIsNotFiniteIsNotProbed) {
    const ProbeProjection projection([](const TQPoint&, TQPoint& to) {
        to = {HUGE_VAL, HUGE_VAL};
        return -1;
    });
    EXPECT_EQ(projection.parallelTangentAt(TQAnglePoint(1.0, 1.0, TQUnitRadian)), 0.0);
    EXPECT_EQ(projection.meridianTangentAt(TQAnglePoint(1.0, 1.0, TQUnitRadian)), 0.0);
    EXPECT_EQ(projection.converted.size(), 2U);
}

// ---- messages --------------------------------------------------------------------------------------------

// The places beside a point are not those that anybody asked for.
TEST(TQPlaneMeasures, DirectionsPrintNothingOfTheirProbes) {
    const CapturedMessages messages;
    for (const int shape : {TQProjection::StraightLine, TQProjection::GeneralCurve}) {
        ProbeProjection probe([](const TQPoint& /*geo*/, TQPoint& /*global*/) {
            tq_perror("no image here");
            return -1;
        });
        probe.meridian = shape;
        probe.parallel = shape;
        probe.parallelTangentAt(radians(0.1, 0.2));
        probe.meridianTangentAt(radians(0.1, 0.2));
        probe.northAngleAt({0.1, 0.2});
    }
    const std::vector<std::string> ofThePointItself(6, "no image here");
    EXPECT_EQ(messages.lines(), ofThePointItself);
}

TEST(TQPlaneMeasures, TheExtentOfARectanglePrintsAMessageOfItsPointsOnce) {
    const CapturedMessages messages;
    const ProbeProjection probe([](const TQPoint& /*geo*/, TQPoint& /*global*/) {
        tq_perror("no image here");
        return -1;
    });
    probe.computeKilographicalLimitFromGeo(radians(0.1, 0.2), radians(0.2, 0.3));
    EXPECT_THAT(messages.lines(), ElementsAre("no image here"));
}
