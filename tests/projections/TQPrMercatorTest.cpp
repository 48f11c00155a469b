#include "projections/TQPrMercator.h"

#include "testing/MercatorSample.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

ProjectionClass mercator() {
    ProjectionClass mercator = mercatorClass<TQPrMercator>();
    mercator.lineage = {"TQPrMercator", "TQProjection"};
    mercator.typeCode = -1;
    mercator.typeName = "unknown";
    mercator.archive = mercatorArchive();
    mercator.tags = {{"TQPrMercator", 0, 0}, {"TQProjection", 0, 1}};
    mercator.codeWithoutEllipsoid = 0;
    return mercator;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrMercator, ProjectionClassTest, testing::Values(mercator()));

TEST(TQPrMercator, StartsOnTheEquatorWithAFalseEastingAndNoScaling) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "-1"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "0", kDegreesLabel},
        {"phi0", "Double", "0", kDegreesLabel},
        {"X0", "Double", "500000", "m"},
        {"Y0", "Double", "0", "m"},
        {"k0", "Double", "1"},
    };
    EXPECT_EQ(listedParameters(TQPrMercator()), expected);
}

TEST(TQPrMercator, ConvertsNothingItselfEvenOnAnEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercator projection;
    projection.setEllipsoid(&ellipsoid);
    TQPoint point{1.0, 2.0};
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.2}, point), 0);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{3.0, 4.0}, point), 0);
    EXPECT_EQ(point, (TQPoint{1.0, 2.0}));
}

TEST(TQPrMercator, LatitudesMayPassAPoleByATenMillionth) {
    const TQPrMercator projection;
    constexpr double pole = std::numbers::pi / 2.0;
    for (const double sign : {1.0, -1.0}) {
        EXPECT_TRUE(projection.isGeoPtValid(TQPoint{0.0, sign * pole}));
        EXPECT_TRUE(projection.isGeoPtValid(TQPoint{100.0, sign * (pole + 0.99e-7)}));
        EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, sign * (pole + 1.01e-7)}));
    }
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, std::nan("")}));
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{std::nan(""), 0.0}));
}

TEST(TQPrMercator, MeridiansAndParallelsAreStraight) {
    EXPECT_EQ(TQPrMercator().meridianShape(), 0);
    EXPECT_EQ(TQPrMercator().parallelShape(), 0);
}
