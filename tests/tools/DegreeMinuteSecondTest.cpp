#include "tools/tqproj/DegreeMinuteSecond.h"

#include "tools/tqproj/NumberFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace {

constexpr GeographicAxis Longitude = GeographicAxis::Longitude;
constexpr GeographicAxis Latitude = GeographicAxis::Latitude;

double parsed(const std::string& text, GeographicAxis axis) {
    double degrees = std::nan("");
    EXPECT_TRUE(parseDegreeMinuteSecond(text, axis, degrees)) << text;
    return degrees;
}

std::string formatted(double degrees, GeographicAxis axis, int precision) {
    std::string text;
    appendDegreeMinuteSecond(text, degrees, axis, precision);
    return text;
}

TEST(DegreeMinuteSecond, EveryNotationReadsTheSame) {
    const double expected = 48.0 + 51.0 / 60.0 + 24.1 / 3600.0;
    for (const char* text :
         {"48:51:24.1N", "48:51:24.1n", "48:51:24.1", "+48:51:24.1", "48d51'24.1\"N", "48D51'24.1N",
          "48\xC2\xB0"
          "51'24.1\"N",
          "48\xC2\xB0"
          "51'24.1''",
          "48\xC2\xB0"
          "51\xE2\x80\xB2"
          "24.1\xE2\x80\xB3"
          "N"}) {
        EXPECT_DOUBLE_EQ(parsed(text, Latitude), expected) << text;
    }
}

TEST(DegreeMinuteSecond, SignOrLetterGivesTheHemisphere) {
    EXPECT_DOUBLE_EQ(parsed("-2:20:14", Longitude), -(2.0 + 20.0 / 60.0 + 14.0 / 3600.0));
    EXPECT_DOUBLE_EQ(parsed("2:20:14W", Longitude), -(2.0 + 20.0 / 60.0 + 14.0 / 3600.0));
    EXPECT_DOUBLE_EQ(parsed("2:20:14E", Longitude), 2.0 + 20.0 / 60.0 + 14.0 / 3600.0);
    EXPECT_DOUBLE_EQ(parsed("33:30s", Latitude), -33.5);
}

TEST(DegreeMinuteSecond, SignOfLessThanOneDegreeCounts) {
    EXPECT_EQ(parsed("-0:30:00", Longitude), -0.5);
    EXPECT_EQ(parsed("0:30:00W", Longitude), -0.5);
}

TEST(DegreeMinuteSecond, MinutesAndSecondsMayBeLeftOut) {
    EXPECT_EQ(parsed("48.5", Latitude), 48.5);
    EXPECT_EQ(parsed("48.1N", Latitude), 48.1);
    EXPECT_EQ(parsed("-48d", Latitude), -48.0);
    EXPECT_EQ(parsed("48\xC2\xB0S", Latitude), -48.0);
    EXPECT_EQ(parsed("48:30", Latitude), 48.5);
    EXPECT_EQ(parsed("48d30.75'N", Latitude), 48.5125);
}

TEST(DegreeMinuteSecond, OtherTextsAreRefusedAndChangeNothing) {
    for (const char* text : {"",
                             "-",
                             "N",
                             "48:",
                             "48:51:",
                             ":51",
                             "48::24",
                             "48:60",
                             "48:51:60",
                             "48.5:30",
                             "48:51.5:24",
                             "48:-1",
                             "48:51:24.1:0",
                             "48 51",
                             "--48",
                             "+-48",
                             "-48N",
                             "48:51:24.1E",
                             "48NN",
                             "48.1.2",
                             "48x",
                             "1e2",
                             "inf",
                             "nan",
                             "48:51:24.1\"\"N",
                             "48'30",
                             "48:51:24.1N ",
                             "48d51'24.1\"Nord"}) {
        double degrees = 7.0;
        EXPECT_FALSE(parseDegreeMinuteSecond(text, Latitude, degrees)) << text;
        EXPECT_EQ(degrees, 7.0) << text;
    }
}

TEST(DegreeMinuteSecond, LetterMustFitTheAxis) {
    double degrees = 7.0;
    EXPECT_FALSE(parseDegreeMinuteSecond("2:20:14N", Longitude, degrees));
    EXPECT_FALSE(parseDegreeMinuteSecond("2:20:14W", Latitude, degrees));
    EXPECT_EQ(degrees, 7.0);
}

TEST(DegreeMinuteSecond, NumberTooLargeForADoubleIsRefused) {
    double degrees = 7.0;
    EXPECT_FALSE(parseDegreeMinuteSecond(std::string(400, '9'), Latitude, degrees));
    EXPECT_EQ(degrees, 7.0);
}

TEST(DegreeMinuteSecond, IsWrittenWithTwoDigitsAndALetter) {
    EXPECT_EQ(formatted(48.5125, Latitude, 2), "48:30:45.00N");
    EXPECT_EQ(formatted(-33.0 - 1.0 / 60.0 - 2.5 / 3600.0, Latitude, 1), "33:01:02.5S");
    EXPECT_EQ(formatted(151.25, Longitude, 0), "151:15:00E");
    EXPECT_EQ(formatted(-0.5, Longitude, 3), "0:30:00.000W");
}

TEST(DegreeMinuteSecond, RoundingCarriesOver) {
    EXPECT_EQ(formatted(1.0 - 1e-12, Latitude, 3), "1:00:00.000N");
    EXPECT_EQ(formatted(59.0 / 60.0 + 59.9996 / 3600.0, Latitude, 3), "1:00:00.000N");
    EXPECT_EQ(formatted(10.0 + 29.0 / 60.0 + 59.9996 / 3600.0, Longitude, 3), "10:30:00.000E");
    EXPECT_EQ(formatted(9.99 / 3600.0, Latitude, 1), "0:00:10.0N");
}

TEST(DegreeMinuteSecond, NothingBelowZeroIsLostBesideZero) {
    EXPECT_EQ(formatted(-1e-12, Latitude, 3), "0:00:00.000N");
    EXPECT_EQ(formatted(-0.0, Longitude, 3), "0:00:00.000E");
}

TEST(DegreeMinuteSecond, ThirdsComeOutWhole) {
    EXPECT_EQ(formatted(20.0 / 60.0, Latitude, NumberFormat::fullPrecision), "0:20:00N");
    EXPECT_EQ(formatted(48.0 + 51.0 / 60.0 + 24.1 / 3600.0, Latitude, NumberFormat::fullPrecision),
              "48:51:24.1N");
}

TEST(DegreeMinuteSecond, FullPrecisionReadsBackToTheSameDouble) {
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    std::uniform_real_distribution<double> smallAngle(-1.0, 1.0);
    for (int sample = 0; sample < 20000; ++sample) {
        const double degrees = sample % 2 == 0 ? angle(random) : smallAngle(random);
        const std::string text = formatted(degrees, Longitude, NumberFormat::fullPrecision);
        if (std::abs(degrees) >= 1.0 / 60.0) {
            ASSERT_EQ(parsed(text, Longitude), degrees) << text;
        } else {
            ASSERT_DOUBLE_EQ(parsed(text, Longitude), degrees) << text;
        }
    }
}

TEST(DegreeMinuteSecond, FixedPrecisionReadsBackWithinHalfItsLastDigit) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> angle(-90.0, 90.0);
    for (int sample = 0; sample < 20000; ++sample) {
        const double degrees = angle(random);
        const double readBack = parsed(formatted(degrees, Latitude, 5), Latitude);
        ASSERT_NEAR(readBack, degrees, 0.500001e-5 / 3600.0);
    }
}

} // namespace
