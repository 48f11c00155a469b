#include "support/TQPolyline.h"

#include "support/TQPath.h"

#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;

/// A temporary file that holds a text, at its beginning.
TQStreamHandle fileWith(const std::string& text) {
    TQStreamHandle file(std::tmpfile());
    EXPECT_NE(file, nullptr);
    EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file.get()), text.size());
    std::rewind(file.get());
    return file;
}

TQPolyline polyline(std::initializer_list<TQPoint> points) {
    TQPolyline line;
    for (const TQPoint& point : points) {
        line.add(point);
    }
    return line;
}

/// What a text gives; the status must be the one expected.
TQPolyline readText(const std::string& text, int status = 0) {
    const TQStreamHandle file = fileWith(text);
    TQPolyline line = polyline({{9, 9}});
    EXPECT_EQ(line.readFromFile(file.get()), status) << text;
    return line;
}

} // namespace

TEST(TQPolyline, HoldsItsPointsInOrder) {
    const TQPolyline line = polyline({{1, 2}, {3, 4}});
    EXPECT_EQ(line.count(), 2);
    EXPECT_EQ(line.pointAt(0), (TQPoint{1, 2}));
    EXPECT_EQ(line.pointAt(1), (TQPoint{3, 4}));
    EXPECT_EQ(line.points().size(), 2U);
}

TEST(TQPolyline, OutsideTheListThereIsTheOrigin) {
    const TQPolyline line = polyline({{1, 2}});
    EXPECT_EQ(line.pointAt(-1), TQPoint());
    EXPECT_EQ(line.pointAt(1), TQPoint());
    EXPECT_EQ(TQPolyline().pointAt(0), TQPoint());
}

TEST(TQPolyline, ReadsTheCountAndThenALineForEachPoint) {
    EXPECT_EQ(readText("3\n1 2\n-0.5 1e3\n+4 .25\n"), polyline({{1, 2}, {-0.5, 1000}, {4, 0.25}}));
    EXPECT_EQ(readText("0\n"), TQPolyline());
}

TEST(TQPolyline, ReadsEitherLineEndAndALastLineWithoutOne) {
    EXPECT_EQ(readText("2\r\n1 2\r\n3 4\r\n"), polyline({{1, 2}, {3, 4}}));
    EXPECT_EQ(readText("2\n1 2\n3 4"), polyline({{1, 2}, {3, 4}}));
    EXPECT_EQ(readText("0"), TQPolyline());
}

TEST(TQPolyline, BlanksAndWhateverFollowsTheNumbersDoNotMatter) {
    EXPECT_EQ(readText("  1 point\n\t 1\t 2 3 corner\n"), polyline({{1, 2}}));
}

TEST(TQPolyline, TheDecimalPointIsAPointUnderEveryLocale) {
    const CommaLocale locale;
    EXPECT_EQ(readText("1\n1.5 -2.25\n"), polyline({{1.5, -2.25}}));
}

TEST(TQPolyline, LeavesTheFileBehindItsLastLine) {
    const TQStreamHandle file = fileWith("1\n1 2\nnext\n");
    TQPolyline line;
    ASSERT_EQ(line.readFromFile(file.get()), 0);
    std::array<char, 16> next{};
    ASSERT_NE(std::fgets(next.data(), 16, file.get()), nullptr);
    EXPECT_STREQ(next.data(), "next\n");
}

TEST(TQPolyline, ACountThatIsNoneFailsAndLeavesTheList) {
    for (const char* text : {"", "\n", "x\n", "-1\n1 2\n", "1.5\n1 2\n", "nan\n1 2\n", "inf\n1 2\n",
                             "1e300\n1 2\n", "2147483648\n1 2\n", "\n1\n1 2\n"}) {
        EXPECT_EQ(readText(text, 1), polyline({{9, 9}})) << text;
    }
}

TEST(TQPolyline, APointThatIsMissingFailsAndLeavesTheList) {
    for (const char* text : {"1\n", "2\n1 2\n", "2\n1 2\n\n", "1\n1\n", "1\nx 2\n", "1\n1 x\n", "1\n1,2\n"}) {
        EXPECT_EQ(readText(text, 1), polyline({{9, 9}})) << text;
    }
}

TEST(TQPolyline, AHugeCountTakesNoMoreMemoryThanThereAreLines) {
    EXPECT_EQ(readText("2147483647\n1 2\n", 1), polyline({{9, 9}}));
}

TEST(TQPolyline, TheFirst1024CharactersOfALineCount) {
    EXPECT_EQ(readText("2\n1 2" + std::string(5000, ' ') + "7\n3 4\n"), polyline({{1, 2}, {3, 4}}));
    EXPECT_EQ(readText("1\n1" + std::string(1022, ' ') + "2\n"), polyline({{1, 2}}));
    EXPECT_EQ(readText("1\n1" + std::string(1022, ' ') + "23\n"), polyline({{1, 2}}));
    EXPECT_EQ(readText("1\n1" + std::string(1023, ' ') + "2\n", 1), polyline({{9, 9}}));
}

TEST(TQPolyline, NulsInTheFileCountAsBlanks) {
    EXPECT_EQ(readText(std::string("1\n1\0002\n", 6), 0), polyline({{1, 2}}));
}

TEST(TQPolyline, WithoutAFileReadingFails) {
    TQPolyline line = polyline({{1, 2}});
    EXPECT_EQ(line.readFromFile(nullptr), 1);
    EXPECT_EQ(line, polyline({{1, 2}}));
}

TEST(TQPolyline, ArchivesVersionCountAndPoints) {
    const std::string archive = bytes({10, 'T', 'Q', 'P', 'o', 'l', 'y', 'l', 'i', 'n', 'e', 0, 0}) +
                                bytes({1, 0, 0, 0}) + bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}) +
                                bytes({0, 0, 0, 0, 0, 0, 0x00, 0xC0});
    EXPECT_EQ(archiveOf(polyline({{1, -2}})), archive);
    const auto read = unarchive(archive, polyline({{9, 9}, {8, 8}}));
    EXPECT_EQ(read.value, polyline({{1, -2}}));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQPolyline, AnEmptyListArchives) {
    const auto read = unarchive(archiveOf(TQPolyline()), polyline({{9, 9}}));
    EXPECT_EQ(read.value, TQPolyline());
    EXPECT_FALSE(read.failed);
}

TEST(TQPolyline, AListThatIsCutOffIsEmpty) {
    const CapturedMessages printed;
    const std::string archive = archiveOf(polyline({{1, 2}, {3, 4}}));
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), polyline({{9, 9}}));
        EXPECT_EQ(read.value, TQPolyline()) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}

TEST(TQPolyline, ACountBeyondTheBytesFailsBeforeMemoryIsTaken) {
    const std::string archive =
        bytes({10, 'T', 'Q', 'P', 'o', 'l', 'y', 'l', 'i', 'n', 'e', 0, 0}) + bytes({0xFF, 0xFF, 0xFF, 0xFF});
    const auto read = unarchive(archive + std::string(32, '\0'), TQPolyline());
    EXPECT_EQ(read.value, TQPolyline());
    EXPECT_TRUE(read.failed);
}

TEST(TQPolyline, AnUnknownVersionIsReportedAndNotRead) {
    const std::string archive =
        bytes({10, 'T', 'Q', 'P', 'o', 'l', 'y', 'l', 'i', 'n', 'e', 1, 0}) + bytes({1, 0, 0, 0});
    const CapturedMessages printed;
    const auto read = unarchive(archive, polyline({{9, 9}}));
    EXPECT_EQ(printed.lines(),
              std::vector<std::string>{"TQPolyline::unarchiveFrom(TQReadStream *): version 1 is unknown.\n"});
    EXPECT_EQ(read.value, TQPolyline());
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 4U);
}
