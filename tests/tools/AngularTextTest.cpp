#include "tools/tqproj/AngularText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

namespace {

constexpr double pi = std::numbers::pi;

double parsed(std::uint32_t unit, const char* text) {
    double radians = std::nan("");
    EXPECT_TRUE(AngularText(unit, std::nullopt).parse(text, GeographicAxis::Latitude, radians)) << text;
    return radians;
}

std::string formatted(std::uint32_t unit, double radians, std::optional<int> precision = std::nullopt) {
    std::string text;
    AngularText(unit, precision).append(text, radians, GeographicAxis::Latitude);
    return text;
}

TEST(AngularText, ReadsEveryUnit) {
    EXPECT_DOUBLE_EQ(parsed(TQUnitDegree, "-45"), -pi / 4.0);
    EXPECT_DOUBLE_EQ(parsed(TQUnitRadian, "0.25"), 0.25);
    EXPECT_DOUBLE_EQ(parsed(TQUnitGon, "50"), pi / 4.0);
    EXPECT_DOUBLE_EQ(parsed(TQUnitDegreeMinuteSecond, "22:30:00S"), -pi / 8.0);
}

TEST(AngularText, WritesEveryUnitWithItsUsualDecimals) {
    EXPECT_EQ(formatted(TQUnitDegree, pi / 8.0), "22.500000000");
    EXPECT_EQ(formatted(TQUnitRadian, -0.25), "-0.25000000000");
    EXPECT_EQ(formatted(TQUnitGon, pi / 8.0), "25.000000000");
    EXPECT_EQ(formatted(TQUnitDegreeMinuteSecond, pi / 8.0), "22:30:00.00000N");
}

TEST(AngularText, PrecisionReplacesTheUsualOne) {
    EXPECT_EQ(formatted(TQUnitDegree, pi / 8.0, 2), "22.50");
    EXPECT_EQ(formatted(TQUnitDegree, pi / 8.0, NumberFormat::fullPrecision), "22.5");
    EXPECT_EQ(formatted(TQUnitDegreeMinuteSecond, pi / 8.0, 0), "22:30:00N");
}

TEST(AngularText, SexagesimalFormsBelongToTheirUnitAlone) {
    double radians = 7.0;
    for (const std::uint32_t unit : {TQUnitDegree, TQUnitRadian, TQUnitGon}) {
        EXPECT_FALSE(AngularText(unit, std::nullopt).parse("22:30:00", GeographicAxis::Latitude, radians));
    }
    EXPECT_EQ(radians, 7.0);
}

TEST(AngularText, WholeFieldMustBeTheNumber) {
    double radians = 7.0;
    for (const char* text : {"", "x", "1x", "1;2", "--1", "0x10"}) {
        EXPECT_FALSE(AngularText(TQUnitDegree, std::nullopt).parse(text, GeographicAxis::Latitude, radians))
            << text;
    }
    EXPECT_EQ(radians, 7.0);
}

TEST(AngularText, TooLargeNumberIsInfinite) {
    EXPECT_EQ(parsed(TQUnitDegree, "1e999"), std::numeric_limits<double>::infinity());
}

TEST(AngularText, UnitsHaveTheirNames) {
    EXPECT_EQ(AngularText::unitFromName("deg"), TQUnitDegree);
    EXPECT_EQ(AngularText::unitFromName("rad"), TQUnitRadian);
    EXPECT_EQ(AngularText::unitFromName("gon"), TQUnitGon);
    EXPECT_EQ(AngularText::unitFromName("dms"), TQUnitDegreeMinuteSecond);
    EXPECT_EQ(AngularText::unitFromName("m"), 0U);
    EXPECT_EQ(AngularText::unitFromName(""), 0U);
}

} // namespace
