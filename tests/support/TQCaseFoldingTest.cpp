#include "support/TQCaseFolding.h"

#include <gtest/gtest.h>

#include <string>

// Letters of the alphabets that have capitals, from the code charts of the Unicode Standard.
TEST(TQCaseFolding, CapitalAndSmallLettersAreOne) {
    struct Letter {
        const char* capital;
        const char* small;
    };
    for (const Letter& letter : {Letter{"AZ", "az"},
                                 {"\u00C4\u00C9\u00D8", "\u00E4\u00E9\u00F8"},
                                 {"\u0152\u0178", "\u0153\u00FF"},
                                 {"\u0141\u010C\u0139", "\u0142\u010D\u013A"},
                                 {"\u0386\u03A9", "\u03AC\u03C9"},
                                 {"\u0401\u0414", "\u0451\u0434"},
                                 {"\u0531", "\u0561"},
                                 {"\u1EA4", "\u1EA5"},
                                 {"\uFF21", "\uFF41"},
                                 {"\U00010400", "\U00010428"}}) {
        EXPECT_EQ(tq_caseFolded(letter.capital), letter.small);
        EXPECT_EQ(tq_caseFolded(letter.small), letter.small);
    }
    EXPECT_EQ(tq_caseFolded("\u03A3"), tq_caseFolded("\u03C2")) << "sigma at the end of a word";
}

TEST(TQCaseFolding, OtherCharactersStay) {
    for (const char* text : {"", "a1_-.", "\u00D7", "\u00DF", "\u0130", "\u5730\u56F3", "\U0001F5FA"}) {
        EXPECT_EQ(tq_caseFolded(text), text);
    }
}
