#include "grid/TQVirtualDrawingGrid.h"

#include "testing/CapturedMessages.h"
#include "tests/grid/GridCase.h"
#include "tests/support/ArchiveBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

using testing::ElementsAre;

namespace {

constexpr bool kCopy = true;
constexpr bool kAdopt = false;

constexpr const char* kUnknownVersion =
    "TQVirtualDrawingGrid::TQVirtualDrawingGrid(TQReadStream * ....): version %d is unknown.\n";

/// Memory as applications hand it over.
char* allocated(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(std::malloc(size), text, size));
}

} // namespace

TEST(TQVirtualDrawingGrid, CopiesBytes) {
    char bytes[] = {'a', '\0', 'b'};
    const TQVirtualDrawingGrid drawing(bytes, 3, kCopy);
    bytes[0] = 'x';
    EXPECT_EQ(bytesOf(drawing), std::string("a\0b", 3));
    EXPECT_NE(drawing.getInternalData(nullptr), bytes);
}

TEST(TQVirtualDrawingGrid, AdoptsAndFreesMemory) {
    char* const bytes = allocated("abc");
    const TQVirtualDrawingGrid drawing(bytes, 3, kAdopt);
    EXPECT_EQ(drawing.getInternalData(nullptr), bytes);
    EXPECT_EQ(bytesOf(drawing), "abc");
}

TEST(TQVirtualDrawingGrid, WithoutSizeOrDataItIsNull) {
    char byte = 'a';
    for (const int size : {0, -1, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(&byte, size, kCopy)), "(null)");
        const TQVirtualDrawingGrid adopted(allocated("freed"), size, kAdopt);
        int found = -1;
        EXPECT_EQ(adopted.getInternalData(&found), nullptr);
        EXPECT_EQ(found, 0);
    }
    EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(nullptr, 5, kCopy)), "(null)");
    EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(nullptr, 5, kAdopt)), "(null)");
}

TEST(TQVirtualDrawingGrid, ACopyHasItsOwnBytes) {
    auto drawing = drawingOf("abc");
    const TQVirtualDrawingGrid copy(*drawing);
    drawing.reset();
    EXPECT_EQ(bytesOf(copy), "abc");
    EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(*drawingOf(""))), "(null)");
}

TEST(TQVirtualDrawingGrid, ArchivesSizeAndBytes) {
    EXPECT_EQ(tqtest::archiveOf(*drawingOf("abc")),
              StreamBytes().tag("TQVirtualDrawingGrid", 0).integer(3).byte('a').byte('b').byte('c').bytes());
    EXPECT_EQ(tqtest::archiveOf(*drawingOf("")),
              StreamBytes().tag("TQVirtualDrawingGrid", 0).integer(0).bytes());
}

TEST(TQVirtualDrawingGrid, ReadsWhatItArchived) {
    for (const std::string& bytes : {std::string("abc"), std::string(100'000, 'x')}) {
        ByteStream stream(tqtest::archiveOf(*drawingOf(bytes)));
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(stream.get())), bytes);
        EXPECT_TRUE(stream.isReadExactly());
    }
}

TEST(TQVirtualDrawingGrid, ASizeBelowOneIsNull) {
    for (const int size : {0, -1, std::numeric_limits<int>::min()}) {
        ByteStream stream(StreamBytes().tag("TQVirtualDrawingGrid", 0).integer(size));
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(stream.get())), "(null)");
        EXPECT_TRUE(stream.isReadExactly());
    }
}

TEST(TQVirtualDrawingGrid, ASizeBeyondTheBytesThatAreLeftTakesNoMemory) {
    for (const int size : {4, std::numeric_limits<int>::max()}) {
        ByteStream stream(StreamBytes().tag("TQVirtualDrawingGrid", 0).integer(size).byte(1).byte(2).byte(3));
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(stream.get())), "(null)");
        EXPECT_TRUE(stream.get()->failed());
    }
}

TEST(TQVirtualDrawingGrid, AnUnknownVersionIsReportedAndNothingRead) {
    const CapturedMessages messages;
    for (const int version : {1, -2}) {
        ByteStream stream(StreamBytes().tag("TQVirtualDrawingGrid", version).counted("abc"));
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(stream.get())), "(null)");
        EXPECT_EQ(stream.get()->bytesLeft(), 7U);
    }
    EXPECT_THAT(messages.lines(), ElementsAre(tq_format(kUnknownVersion, 1), tq_format(kUnknownVersion, -2)));
}

TEST(TQVirtualDrawingGrid, AReaderOfWhatFollowsIsStoppedByAnUnknownVersion) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQVirtualDrawingGrid", 1).counted("abc"));
    EXPECT_EQ(TQVirtualDrawingGrid::newFromStream(stream.get()), nullptr);
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_THAT(messages.lines(), ElementsAre(tq_format(kUnknownVersion, 1)));
}

TEST(TQVirtualDrawingGrid, EveryCutIsNoticed) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(drawingBytes("abc").bytes(), [](TQReadStream* stream) {
        EXPECT_EQ(bytesOf(TQVirtualDrawingGrid(stream)), "(null)");
    });
}
