#include "tools/tqproj/Diagnostics.h"

#include "tests/tools/CapturedStream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Diagnostics, LinesAreReportedWithFileAndNumber) {
    const CapturedStream stream;
    Diagnostics(stream.stream()).reportLine("cities.csv", 17, "the second number is missing");
    EXPECT_EQ(stream.text(), "cities.csv:17: the second number is missing\n");
}

TEST(Diagnostics, ProblemsAreReportedInTheCommandsName) {
    const CapturedStream stream;
    Diagnostics(stream.stream()).reportProblem("cannot read x");
    EXPECT_EQ(stream.text(), "tqproj: cannot read x\n");
}

TEST(Diagnostics, StatusCoversTheOneBefore) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    diagnostics.showStatus("100 lines");
    diagnostics.showStatus("9 lines");
    EXPECT_EQ(stream.text(), "\r100 lines\r9 lines  ");
}

TEST(Diagnostics, StatusGivesWayToAMessage) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    diagnostics.showStatus("50 %");
    diagnostics.reportProblem("x");
    EXPECT_EQ(stream.text(), "\r50 %\r    \rtqproj: x\n");
}

TEST(Diagnostics, NoStatusNeedsNoErasing) {
    const CapturedStream stream;
    Diagnostics(stream.stream()).eraseStatus();
    EXPECT_EQ(stream.text(), "");
}

TEST(PrintableText, ShowsControlCharactersAndKeepsTheRest) {
    EXPECT_EQ(printableText("Zürich"), "Zürich");
    EXPECT_EQ(printableText(std::string_view("a\x1B[1m\0b\x7F", 8)), "a\\x1B[1m\\x00b\\x7F");
}

// The characters from U+0080 to U+009F are two bytes of UTF-8; one byte of them alone is obeyed by terminals
// too.
TEST(PrintableText, ShowsWhatTerminalsObeyBeyondAscii) {
    EXPECT_EQ(printableText("a\xC2\x9B"
                            "2J"),
              "a\\xC2\\x9B"
              "2J");
    EXPECT_EQ(printableText("\xC2\xA0"), "\xC2\xA0") << "a blank that does not break";
    EXPECT_EQ(printableText("a\x9B"
                            "2J\xE9"),
              "a\\x9B"
              "2J\\xE9");
    EXPECT_EQ(withoutControlsInLines("a\tb\nc\n"), "a\\x09b\nc\n");
}

TEST(PrintableText, ClipsLongTextsBetweenCharacters) {
    EXPECT_EQ(printableText(std::string(60, 'x')), std::string(60, 'x'));
    EXPECT_EQ(printableText(std::string(61, 'x')), std::string(60, 'x') + "...");
    EXPECT_EQ(printableText(std::string(59, 'x') + "üü"), std::string(59, 'x') + "...");
}

} // namespace
