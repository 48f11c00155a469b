#include "tools/tqproj/PointParser.h"

#include "support/TQUnit.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

#include <gtest/gtest.h>

#include <numbers>
#include <string>

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

/// Takes longitudes from 180 degrees on.
struct Eastern : PointOperation {
    std::string convert(const TQPoint& in, TQPoint& out) const override {
        out = in;
        return "";
    }

    TQPoint atNearestTurn(const TQPoint& point) const override {
        return point.x < std::numbers::pi ? TQPoint{point.x + 2.0 * std::numbers::pi, point.y} : point;
    }
};

/// The same, but leaves longitudes of many turns as they are.
struct EasternOfFewTurns : Eastern {
    TQPoint atNearestTurn(const TQPoint& point) const override {
        return point.x < -1e5 ? point : Eastern::atNearestTurn(point);
    }
};

PointParser degreeParser() { return PointParser(AngularText(TQUnitDegree, std::nullopt)); }

std::string reasonOf(PointParser parser, const std::string& line) {
    TQPoint point;
    EXPECT_FALSE(parser.parse(PointLine(line), point)) << line;
    return parser.reason();
}

TEST(PointParser, ReadsAnglesAsRadiansLongitudeFirst) {
    TQPoint point;
    ASSERT_TRUE(degreeParser().parse(PointLine("-180, 45.5 Nowhere"), point));
    EXPECT_DOUBLE_EQ(point.x, -std::numbers::pi);
    EXPECT_DOUBLE_EQ(point.y, 45.5 * kDegree);
}

TEST(PointParser, LongitudesAreAtTheTurnOfTheOperation) {
    TQPoint point;
    ASSERT_TRUE(degreeParser().parse(PointLine("-179.75 45"), Eastern(), point));
    TQPoint eastern;
    ASSERT_TRUE(degreeParser().parse(PointLine("180.25 45"), Eastern(), eastern));
    EXPECT_EQ(point, eastern);
    EXPECT_DOUBLE_EQ(eastern.x, 180.25 * kDegree);
    EXPECT_FALSE(degreeParser().parse(PointLine("x 45"), Eastern(), point));
}

TEST(PointParser, LongitudesThatLostTheirDigitsAreNone) {
    PointParser parser = degreeParser();
    TQPoint point;
    EXPECT_TRUE(parser.parse(PointLine("-360000 45"), Eastern(), point));
    EXPECT_FALSE(parser.parse(PointLine("-1e17 45"), Eastern(), point));
    EXPECT_EQ(parser.reason(), "'-1e17' is too many turns to tell the place");
    EXPECT_FALSE(parser.parse(PointLine("-1e17 45"), EasternOfFewTurns(), point));
    EXPECT_TRUE(parser.parse(PointLine("1e17 45"), Eastern(), point)) << "which it takes as it is";
}

TEST(PointParser, ReadsPlaneNumbersAsTheyAre) {
    TQPoint point;
    ASSERT_TRUE(PointParser(NumberFormat(3)).parse(PointLine("500000.25\t-1e6"), point));
    EXPECT_EQ(point, (TQPoint{500000.25, -1e6}));
}

TEST(PointParser, TellsWhatIsMissing) {
    EXPECT_EQ(reasonOf(degreeParser(), ""), "the first number is missing");
    EXPECT_EQ(reasonOf(degreeParser(), ",48"), "the first number is missing");
    EXPECT_EQ(reasonOf(degreeParser(), "2"), "the second number is missing");
    EXPECT_EQ(reasonOf(degreeParser(), "2,,Paris"), "the second number is missing");
}

TEST(PointParser, TellsWhatIsNoNumber) {
    EXPECT_EQ(reasonOf(degreeParser(), "2x 48"), "'2x' is not an angle");
    EXPECT_EQ(reasonOf(PointParser(NumberFormat(3)), "2 4-8"), "'4-8' is not a number");
    EXPECT_EQ(reasonOf(degreeParser(), "2 \x1B[31m"), "'\\x1B[31m' is not an angle");
}

TEST(PointParser, WhatIsNotFiniteIsNoCoordinate) {
    EXPECT_EQ(reasonOf(degreeParser(), "nan 48"), "'nan' is not a finite number");
    EXPECT_EQ(reasonOf(degreeParser(), "2 -inf"), "'-inf' is not a finite number");
    EXPECT_EQ(reasonOf(PointParser(NumberFormat(3)), "1e999 48"), "'1e999' is not a finite number");
}

} // namespace
