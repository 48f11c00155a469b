#include "grid/TQIndexParam.h"

#include "testing/CommaLocale.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

TQIndexNumbering letters(const char* start) { return {false, 0, TQString(start)}; }
TQIndexNumbering numbers(const char* start) { return {true, 0, TQString(start)}; }

std::string label(const TQIndexNumbering& numbering, int offset) { return numbering.label(offset).utf8(); }

/// The letters that follow others: the last one counts on and carries, as an odometer does.
void countOn(std::string& text) {
    for (auto place = text.rbegin(); place != text.rend(); ++place) {
        if (*place != 'Z') {
            ++*place;
            return;
        }
        *place = 'A';
    }
    text.insert(0, 1, 'A');
}

constexpr int kFirstOffset = -1000;
constexpr int kLastOffset = 1'000'000;
constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

/// The letters over all offsets, beside an odometer. Returns how many labels were empty.
int countEmptyLabels(const char* start, const std::string& first) {
    const TQIndexNumbering numbering = letters(start);
    int empty = 0;
    int offset = kFirstOffset;
    for (; offset <= kLastOffset && label(numbering, offset).empty(); ++offset) {
        ++empty;
    }
    std::string expected = first;
    for (; offset <= kLastOffset; ++offset) {
        const std::string actual = label(numbering, offset);
        if (actual != expected) {
            ADD_FAILURE() << start << " + " << offset << ": " << actual << ", not " << expected;
            break;
        }
        countOn(expected);
    }
    return empty;
}

} // namespace

TEST(TQIndexParam, NumbersCountOn) {
    EXPECT_EQ(label(numbers("1"), 4), "5");
    EXPECT_EQ(label(numbers("1"), 0), "1");
    EXPECT_EQ(label(numbers("1"), -1), "0");
    EXPECT_EQ(label(numbers("1"), -2), "-1");
    EXPECT_EQ(label(numbers(" +12 north"), 1), "13");
    EXPECT_EQ(label(numbers("north"), 3), "3");
}

TEST(TQIndexParam, NumbersOverAllOffsets) {
    const TQIndexNumbering numbering = numbers("-17");
    for (int offset = kFirstOffset; offset <= kLastOffset; ++offset) {
        ASSERT_EQ(label(numbering, offset), std::to_string(offset - 17));
    }
}

TEST(TQIndexParam, NumbersDoNotOverflow) {
    EXPECT_EQ(label(numbers("2147483647"), kLargest), "4294967294");
    EXPECT_EQ(label(numbers("-2147483648"), kSmallest), "-4294967296");
    EXPECT_EQ(label(numbers("99999999999999999999"), 1), "2147483648");
}

TEST(TQIndexParam, LettersCountOn) {
    EXPECT_EQ(label(letters("A"), 0), "A");
    EXPECT_EQ(label(letters("A"), 25), "Z");
    EXPECT_EQ(label(letters("A"), 26), "AA");
    EXPECT_EQ(label(letters("Z"), 1), "AA");
    EXPECT_EQ(label(letters("Y"), 3), "AB");
    EXPECT_EQ(label(letters("ZZ"), 1), "AAA");
    EXPECT_EQ(label(letters("AAA"), -1), "ZZ");
}

TEST(TQIndexParam, InFrontOfAThereIsNothing) {
    EXPECT_EQ(label(letters("A"), -1), "");
    EXPECT_EQ(label(letters("Y"), -25), "");
    EXPECT_EQ(label(letters("Y"), -24), "A");
    EXPECT_EQ(label(letters("A"), kSmallest), "");
}

TEST(TQIndexParam, LettersOverAllOffsets) {
    EXPECT_EQ(countEmptyLabels("A", "A"), 1000);                // -1000 to -1
    EXPECT_EQ(countEmptyLabels("ZZ", "A"), 1000 - 27 * 26 + 1); // ZZ is 27 * 26
    EXPECT_EQ(countEmptyLabels("BAAA", "AYNO"), 0);
}

TEST(TQIndexParam, NoLabelAndAnEmptyOneStandBeforeTheFirst) {
    for (const bool isNumeric : {false, true}) {
        for (const TQIndexNumbering& numbering :
             {TQIndexNumbering{isNumeric, 0, std::nullopt}, TQIndexNumbering{isNumeric, 0, TQString()}}) {
            EXPECT_EQ(label(numbering, 1), isNumeric ? "1" : "A");
            EXPECT_EQ(label(numbering, 0), isNumeric ? "0" : "");
            EXPECT_EQ(label(numbering, -3), isNumeric ? "-3" : "");
            EXPECT_EQ(label(numbering, 28), isNumeric ? "28" : "AB");
        }
    }
}

TEST(TQIndexParam, OtherCharactersCountByTheirCodes) {
    EXPECT_EQ(label(letters("a"), 0), "AG"); // 97 - 64 = 33 = 26 + 7
    EXPECT_EQ(label(letters("@"), 1), "A");  // 64 - 64 = 0
    EXPECT_EQ(label(letters("1"), 0), "");   // 49 - 64 = -15
    EXPECT_EQ(label(letters("1"), 16), "A");
    EXPECT_EQ(label(letters("B1"), 0), "AK");       // 2 * 26 - 15 = 37 = 26 + 11
    EXPECT_EQ(label(letters("\xC3\xA9"), 0), "FM"); // 0xE9 - 64 = 169 = 6 * 26 + 13
    // 0x1F600 - 64 = 128448 = ((7 * 26 + 7) * 26 + 26) * 26 + 8
    EXPECT_EQ(label(letters("\U0001F600"), 0), "GGZH");
}

// Reading each character from the beginning of the text would take minutes.
TEST(TQIndexParam, ALongStartLabelIsReadOnce) {
    EXPECT_EQ(label(letters((std::string(500000, '@') + "\u00E9").c_str()), 1), "FN");
}

TEST(TQIndexParam, LettersDoNotOverflow) {
    // CRPXNLSKVLJFHG is 2^63 - 1 in bijective base 26.
    constexpr const char* largest = "CRPXNLSKVLJFHG";
    const std::string longLabel(1000, 'Z');
    EXPECT_EQ(label(letters(longLabel.c_str()), 0), largest);
    EXPECT_EQ(label(letters(longLabel.c_str()), kLargest), largest);
    EXPECT_EQ(label(letters(std::string(1000, '1').c_str()), kLargest), "");
    EXPECT_EQ(label(letters(std::string(1000, '1').c_str()), kSmallest), "");
    EXPECT_EQ(label(letters("AAAAAAAAAAAAA"), 0), "AAAAAAAAAAAAA");
    EXPECT_EQ(label(letters("ZZZZZZZZZZZZ"), kLargest), "AAAAAAGYTISYW"); // beyond 32 bits
}

TEST(TQIndexParam, EachDirectionHasItsNumbering) {
    TQIndexParam parameters;
    parameters.horizontal = letters("A");
    parameters.vertical = numbers("1");
    EXPECT_EQ(parameters.indexString_horizontal(2).utf8(), "C");
    EXPECT_EQ(parameters.indexString_vertical(2).utf8(), "3");
}

TEST(TQIndexParam, ALocaleChangesNothing) {
    const CommaLocale locale;
    EXPECT_EQ(label(numbers("1000"), 234), "1234");
}
