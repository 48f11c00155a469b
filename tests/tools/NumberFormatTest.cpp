#include "tools/tqproj/NumberFormat.h"

#include "support/TQNumberText.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace {

std::string formatted(double value, int precision) {
    std::string text;
    NumberFormat(precision).append(text, value);
    return text;
}

// What the C library prints, but for the sign of a number that rounds to zero.
std::string printed(double value, int precision) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", precision, value);
    const std::string plain = text.data();
    const bool isZero = plain.find_first_not_of("-0.") == std::string::npos;
    return isZero && plain.front() == '-' ? plain.substr(1) : plain;
}

TEST(NumberFormat, AppendsAfterWhatIsThere) {
    std::string text = "x=";
    NumberFormat(3).append(text, 261845.7062439);
    EXPECT_EQ(text, "x=261845.706");
}

TEST(NumberFormat, FixedDecimalsAreThoseOfTheCLibrary) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-30, 60);
    for (int sample = 0; sample < 200000; ++sample) {
        const double value = std::ldexp(mantissa(random), exponent(random));
        const int precision = sample % (NumberFormat::greatestPrecision + 1);
        ASSERT_EQ(formatted(value, precision), printed(value, precision)) << value << " " << precision;
    }
}

TEST(NumberFormat, FixedDecimalsAreExactAtAndBesideTies) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (int thousandths = -5001; thousandths <= 5001; ++thousandths) {
        const double tie = thousandths / 2000.0;
        for (const double value : {tie, std::nextafter(tie, Infinity), std::nextafter(tie, -Infinity)}) {
            for (const int precision : {0, 1, 2, 3}) {
                ASSERT_EQ(formatted(value, precision), printed(value, precision)) << precision;
            }
        }
    }
}

TEST(NumberFormat, FixedDecimalsCarryIntoTheIntegerPart) {
    for (int precision = 0; precision <= 12; ++precision) {
        for (const double integer : {0.0, 1.0, 8.0, 9.0, 10.0, 98.0, 99.0, 100.0, 999.0, 1000.0}) {
            for (const double share : {0.0, 0.4, 0.5, 0.6, 1.0, 5.0, 40.0}) {
                const double value = integer + 1.0 - share * std::pow(10.0, -precision);
                ASSERT_EQ(formatted(value, precision), printed(value, precision)) << precision;
                ASSERT_EQ(formatted(-value, precision), printed(-value, precision)) << precision;
            }
        }
    }
}

TEST(NumberFormat, FixedDecimalsOfHugeNumbersAreAllThere) {
    for (const double value : {8796093022.208, 8796093022208.0, 1e22, -1.5e300}) {
        EXPECT_EQ(formatted(value, 3), printed(value, 3));
    }
}

TEST(NumberFormat, ZeroHasNoSign) {
    EXPECT_EQ(formatted(-0.0, 3), "0.000");
    EXPECT_EQ(formatted(-0.0004, 3), "0.000");
    EXPECT_EQ(formatted(-0.0005000001, 3), "-0.001");
    EXPECT_EQ(formatted(-0.4, 0), "0");
    EXPECT_EQ(formatted(-1e-300, 9), "0.000000000");
    EXPECT_EQ(formatted(-0.0, NumberFormat::fullPrecision), "0");
}

TEST(NumberFormat, FullPrecisionWritesTheFewestDigits) {
    EXPECT_EQ(formatted(0.1, NumberFormat::fullPrecision), "0.1");
    EXPECT_EQ(formatted(-2.3522, NumberFormat::fullPrecision), "-2.3522");
    EXPECT_EQ(formatted(0.1 + 0.2, NumberFormat::fullPrecision), "0.30000000000000004");
    EXPECT_EQ(formatted(500000.0, NumberFormat::fullPrecision), "500000");
    EXPECT_EQ(formatted(1e-7, NumberFormat::fullPrecision), "0.0000001");
    EXPECT_EQ(formatted(5e-324, NumberFormat::fullPrecision), "5e-324");
    EXPECT_EQ(formatted(1e300, NumberFormat::fullPrecision), "1e+300");
}

TEST(NumberFormat, FullPrecisionReadsBackToTheSameDouble) {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-1070, 1023);
    for (int sample = 0; sample < 100000; ++sample) {
        const double value = std::ldexp(mantissa(random), sample % 2 == 0 ? exponent(random) : sample % 40);
        double readBack = 0.0;
        ASSERT_TRUE(tq_parseCompleteDouble(formatted(value, NumberFormat::fullPrecision), readBack));
        ASSERT_EQ(readBack, value);
    }
}

} // namespace
