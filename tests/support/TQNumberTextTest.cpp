#include "support/TQNumberText.h"

#include "testing/CommaLocale.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Doubles of every magnitude: random bits, and numbers of everyday size.
std::vector<double> variedDoubles(int count) {
    std::mt19937_64 random(20240229);
    std::uniform_real_distribution<double> everyday(-1.0e7, 1.0e7);
    std::vector<double> values = {0.0,
                                  -0.0,
                                  0.5,
                                  1.5,
                                  2.5,
                                  0.125,
                                  999999.5,
                                  1.0e15,
                                  1.0e16,
                                  1.0e22,
                                  1.0e23,
                                  std::numeric_limits<double>::min(),
                                  std::numeric_limits<double>::denorm_min(),
                                  std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::lowest(),
                                  infinity,
                                  -infinity};
    while (static_cast<int>(values.size()) < count) {
        const double anyBits = std::bit_cast<double>(random());
        if (!std::isnan(anyBits)) {
            values.push_back(anyBits);
        }
        values.push_back(everyday(random));
    }
    return values;
}

std::string printed(const char* format, int precision, double value) {
    const auto length = static_cast<std::size_t>(std::snprintf(nullptr, 0, format, precision, value));
    std::string text(length + 1, '\0');
    std::snprintf(text.data(), text.size(), format, precision, value);
    text.resize(length);
    return text;
}

void expectSameBits(double expected, double actual, const std::string& text) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(expected), std::bit_cast<std::uint64_t>(actual))
        << "\"" << text << "\": " << expected << " is not " << actual;
}

} // namespace

TEST(TQNumberText, ReadsDoublesAsTheCRuntimeDoes) {
    int precision = 0;
    for (const double value : variedDoubles(20000)) {
        precision = (precision + 1) % 20;
        for (const char* format : {"%.*e", "%.*g", "%.*f"}) {
            const std::string text = printed(format, precision, value);
            expectSameBits(std::strtod(text.c_str(), nullptr), tq_parseDouble(text), text);
        }
    }
}

TEST(TQNumberText, ReadsTheNumberThatATextBeginsWith) {
    for (const char* text : {"12.5",     "+12.5",  "-12.5",    " \t\n\v\f\r12.5",
                             "12.5abc",  "12.5.6", "12,5",     "1e3",
                             "1E+3",     "1e-3x",  "1e",       "1e+",
                             ".5",       "5.",     "-.5e1",    ".",
                             "",         " ",      "+",        "-",
                             "+-5",      "-+5",    "++5",      "--5",
                             "abc",      "e5",     "inf",      "-inf",
                             "+inf",     "INF",    "Infinity", "-infinity",
                             "infinite", "0",      "-0",       "+0",
                             "00012"}) {
        expectSameBits(std::strtod(text, nullptr), tq_parseDouble(text), text);
    }
    for (const char* text : {"nan", "NaN", "-nan", "+nan", " nan"}) {
        EXPECT_TRUE(std::isnan(tq_parseDouble(text))) << text;
    }
}

TEST(TQNumberText, DoublesBeyondTheRangeBecomeInfinityOrZero) {
    const std::string manyZeros(400, '0');
    for (const std::string& text : {std::string("1e309"),
                                    std::string("-1e309"),
                                    std::string("1e-400"),
                                    std::string("-1e-400"),
                                    std::string("1e99999999999999999999"),
                                    std::string("1e-99999999999999999999"),
                                    std::string("-1e99999999999999999999"),
                                    "1" + manyZeros,
                                    "-1" + manyZeros,
                                    "0." + manyZeros + "1",
                                    "-0." + manyZeros + "1",
                                    "0." + manyZeros + "1e401",
                                    "1" + manyZeros + "e-400",
                                    manyZeros + "1e400",
                                    "0." + manyZeros + "1e800",
                                    "1" + manyZeros + "e-800",
                                    std::string("0e999999"),
                                    std::string("-0e999999"),
                                    std::string("0.0e-999999"),
                                    std::string("1.7976931348623159e308"),
                                    std::string("2e-324"),
                                    std::string("3e-324"),
                                    std::string("4.9e-324")}) {
        expectSameBits(std::strtod(text.c_str(), nullptr), tq_parseDouble(text), text);
    }
}

TEST(TQNumberText, ReadsNoFurtherThanTheViewReaches) {
    const std::string text = "12345";
    EXPECT_EQ(tq_parseDouble(std::string_view(text).substr(0, 3)), 123.0);
    EXPECT_EQ(tq_parseLong(std::string_view(text).substr(0, 3)), 123);
}

TEST(TQNumberText, ReadsIntegersAndSaturatesAt32Bits) {
    EXPECT_EQ(tq_parseLong("42"), 42);
    EXPECT_EQ(tq_parseLong(" \t+42 apples"), 42);
    EXPECT_EQ(tq_parseLong("-42.9"), -42);
    EXPECT_EQ(tq_parseLong("007"), 7);
    EXPECT_EQ(tq_parseLong("0x1F"), 0);
    EXPECT_EQ(tq_parseLong(""), 0);
    EXPECT_EQ(tq_parseLong("+-1"), 0);
    EXPECT_EQ(tq_parseLong("- 1"), 0);
    EXPECT_EQ(tq_parseLong("x1"), 0);
    EXPECT_EQ(tq_parseLong("2147483647"), 2147483647);
    EXPECT_EQ(tq_parseLong("2147483648"), 2147483647);
    EXPECT_EQ(tq_parseLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(tq_parseLong("-2147483649"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(tq_parseLong("99999999999999999999999"), 2147483647);
    EXPECT_EQ(tq_parseLong("-99999999999999999999999"), std::numeric_limits<std::int32_t>::min());
}

TEST(TQNumberText, ScansLikeSscanf) {
    for (const char* text : {"1 2 3", "1 2", "1", "", "  ", "1.5e3\t-2\n+3 4", "1x2", "1 x 3", "1,2",
                             "-1-2-3", "1.2.3 4", "inf nan 5", "+-1"}) {
        std::array<double, 3> expected = {-7.0, -8.0, -9.0};
        std::array<double, 3> actual = expected;
        const int expectedCount = std::sscanf(text, "%lf %lf %lf", &expected[0], &expected[1], &expected[2]);
        const std::array<double*, 3> targets = {&actual[0], &actual[1], &actual[2]};
        EXPECT_EQ(tq_scanDoubles(text, targets), std::max(expectedCount, 0)) << text;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            if (std::isnan(expected[i])) {
                EXPECT_TRUE(std::isnan(actual[i])) << text;
            } else {
                EXPECT_EQ(expected[i], actual[i]) << text;
            }
        }
    }
}

TEST(TQNumberText, TakesNumbersOffATextAsSscanfDoes) {
    for (const char* text :
         {"7 1.5 8", " -7\t2e3 x", "1.5 2 3", "+7,1 2", "7", "7 x", "x 1 2", "", "99999999999 nan 1"}) {
        std::string_view rest = text;
        std::int32_t integer = -1;
        double number = -1.0;
        int scanned = -1;
        double scannedNumber = -1.0;
        int length = 0;
        const int expected =
            std::max(std::sscanf(text, "%d%n %lf%n", &scanned, &length, &scannedNumber, &length), 0);
        const int taken = tq_takeLong(rest, integer) ? 1 + (tq_takeDouble(rest, number) ? 1 : 0) : 0;
        EXPECT_EQ(taken, expected) << text;
        EXPECT_EQ(rest, std::string_view(text).substr(static_cast<std::size_t>(length))) << text;
        EXPECT_TRUE(number == scannedNumber || std::isnan(number)) << text;
        const bool isInRange = std::string_view(text).substr(0, 2) != "99";
        EXPECT_EQ(integer, isInRange ? scanned : std::numeric_limits<std::int32_t>::max()) << text;
    }
}

TEST(TQNumberText, ACompleteFieldIsOneNumberAndNothingElse) {
    for (const char* text : {"1.5", " 1.5", "1.5 ", "\t1.5\r", "+1.5", "15e-1"}) {
        double value = -1;
        EXPECT_TRUE(tq_parseCompleteDouble(text, value)) << text;
        EXPECT_EQ(value, 1.5) << text;
    }
    for (const char* text : {"", " ", "1.5x", "x1.5", "1.5 2", "1,5", "1e", "--1", "0x10", "1d"}) {
        double value = -1;
        EXPECT_FALSE(tq_parseCompleteDouble(text, value)) << text;
        EXPECT_EQ(value, -1) << text;
    }
    std::int32_t integer = -1;
    EXPECT_TRUE(tq_parseCompleteLong(" +12 ", integer));
    EXPECT_EQ(integer, 12);
    EXPECT_TRUE(tq_parseCompleteLong("99999999999", integer));
    EXPECT_EQ(integer, 2147483647);
    for (const char* text : {"", " ", "1.5", "12a", "1 2", "-", "one"}) {
        integer = -1;
        EXPECT_FALSE(tq_parseCompleteLong(text, integer)) << text;
        EXPECT_EQ(integer, -1) << text;
    }
}

// Fields of digits, a point and a sign, of every length, some with another character in them.
TEST(TQNumberText, ACompleteFieldIsReadToTheNearestDouble) {
    std::mt19937 random(3);
    const std::string others = "0123456789.-:/ ";
    for (int sample = 0; sample < 300000; ++sample) {
        std::string text(random() % 4 == 0 ? "-" : "");
        for (auto length = random() % 22; length > 0; --length) {
            text += others[random() % 10];
        }
        text.insert(random() % (text.size() + 1), 1, '.');
        if (sample % 3 == 0) {
            text[random() % text.size()] = others[random() % others.size()];
        }
        char* end = nullptr;
        const double expected = std::strtod(text.c_str(), &end);
        const std::size_t length = static_cast<std::size_t>(end - text.c_str());
        const bool isNumber = length > 0 && text.find_first_not_of(' ', length) == std::string::npos;
        double value = -1;
        ASSERT_EQ(tq_parseCompleteDouble(text, value), isNumber) << '"' << text << '"';
        if (isNumber) {
            expectSameBits(expected, value, text);
        }
    }
}

TEST(TQNumberText, ShortestTextReadsBackToTheSameDouble) {
    for (const double value : variedDoubles(20000)) {
        const std::string text = tq_shortestText(value);
        expectSameBits(value, std::strtod(text.c_str(), nullptr), text);
    }
    EXPECT_EQ(tq_shortestText(0.1), "0.1");
    EXPECT_EQ(tq_shortestText(-0.0), "-0");
    EXPECT_EQ(tq_shortestText(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(tq_shortestText(6378137.0), "6378137");
    EXPECT_EQ(tq_shortestText(infinity), "inf");
    EXPECT_EQ(tq_shortestText(-infinity), "-inf");
    EXPECT_EQ(tq_shortestText(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(tq_shortestText(-std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(tq_shortestText(std::numeric_limits<double>::lowest()), "-1.7976931348623157e+308");
}

TEST(TQNumberText, AppendsFixedNumbersAsTheCRuntimePrintsThem) {
    int precision = 0;
    for (const double value : variedDoubles(20000)) {
        precision = (precision + 1) % 25;
        std::string text = "x";
        tq_appendFixed(text, value, precision);
        EXPECT_EQ(text, "x" + printed("%.*f", precision, value));
    }
    std::string text;
    tq_appendFixed(text, 2.5, -3);
    tq_appendFixed(text, -std::numeric_limits<double>::quiet_NaN(), 2);
    tq_appendFixed(text, std::numeric_limits<double>::denorm_min(), 1100);
    EXPECT_EQ(text, "2nan" + printed("%.*f", 1100, std::numeric_limits<double>::denorm_min()));
}

TEST(TQNumberText, ALocaleWithADecimalCommaChangesNothing) {
    const CommaLocale commaLocale;
    std::ostringstream stream;
    stream << 1234.5;
    ASSERT_EQ(stream.str(), "1.234,5");
    if (commaLocale.hasCLocale()) {
        ASSERT_EQ(printed("%.*f", 1, 1.5), "1,5");
    }

    EXPECT_EQ(tq_parseDouble("1234.5"), 1234.5);
    EXPECT_EQ(tq_parseDouble("1,5"), 1.0);
    EXPECT_EQ(tq_parseLong("12345"), 12345);
    EXPECT_EQ(tq_shortestText(1234567.5), "1234567.5");
    double first = 0;
    double second = 0;
    const std::array<double*, 2> targets = {&first, &second};
    EXPECT_EQ(tq_scanDoubles("1.5 2.5", targets), 2);
    EXPECT_EQ(first, 1.5);
    EXPECT_EQ(second, 2.5);
    std::string text;
    tq_appendFixed(text, 1234567.125, 3);
    EXPECT_EQ(text, "1234567.125");
}

TEST(CommaLocale, HasACLocaleWhereTheBuildMadeOne) {
    if (!std::filesystem::exists(std::filesystem::path(TQ_TEST_LOCALES) / "de_DE.UTF-8")) {
        GTEST_SKIP() << "localedef is missing";
    }
    const CommaLocale commaLocale;
    EXPECT_TRUE(commaLocale.hasCLocale());
}
