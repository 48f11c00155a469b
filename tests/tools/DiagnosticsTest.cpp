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

TEST(PrintableText, ClipsLongTextsBetweenCharacters) {
    EXPECT_EQ(printableText(std::string(60, 'x')), std::string(60, 'x'));
    EXPECT_EQ(printableText(std::string(61, 'x')), std::string(60, 'x') + "...");
    EXPECT_EQ(printableText(std::string(59, 'x') + "üü"), std::string(59, 'x') + "...");
}

} // namespace
