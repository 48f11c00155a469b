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

TEST(AngularText, WholeTurnsOfALongitudeLoseNoDigits) {
    const auto atTurn = [](std::uint32_t unit, const char* text, double near) {
        return AngularText(unit, std::nullopt).parseAtTurn(text, near);
    };
    EXPECT_EQ(atTurn(TQUnitDegree, "540.25", pi), parsed(TQUnitDegree, "180.25"));
    EXPECT_EQ(atTurn(TQUnitDegree, "180.25", -pi), parsed(TQUnitDegree, "-179.75"));
    EXPECT_EQ(atTurn(TQUnitDegree, "-719.5", 0.0), parsed(TQUnitDegree, "0.5"));
    EXPECT_EQ(atTurn(TQUnitGon, "402.5", 0.0), parsed(TQUnitGon, "2.5"));
    EXPECT_EQ(atTurn(TQUnitDegreeMinuteSecond, "362:30:00E", 0.0),
              parsed(TQUnitDegreeMinuteSecond, "2:30:00"));
    EXPECT_NEAR(atTurn(TQUnitRadian, "6.5331853071795865", 0.0), 0.25, 1e-15);
    EXPECT_LE(std::abs(atTurn(TQUnitDegree, "1e300", 0.0)), pi);
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
