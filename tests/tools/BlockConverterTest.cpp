#include "tools/tqproj/BlockConverter.h"

#include "support/TQMessages.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/LineBlock.h"
#include "tools/tqproj/PointOperation.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace {

/// Doubles both numbers of a point, refuses a first one above 100, and has something to say of one above 200.
struct Doubled : PointOperation {
    std::string convert(const TQPoint& in, TQPoint& out) const override {
        if (in.x > 200.0) {
            tq_perror("much too great\n");
        }
        out = {2.0 * in.x, 2.0 * in.y};
        return in.x > 100.0 ? "too great" : "";
    }

    bool accepts(const TQPoint& point) const override { return point.y >= 0.0; }
};

struct BlockConverterCase {
    LibraryMessages messages;
    LineBlock block;
    BlockConverter converter{std::make_unique<Doubled>(), PointParser(NumberFormat(0)),
                             PointWriter(NumberFormat(0))};

    void convert(const std::string& lines) {
        block.lines = lines;
        converter.convert(block);
    }
};

TEST(BlockConverter, WritesWhatHasAResultAndWhatIsNoPoint) {
    BlockConverterCase test;
    test.convert("1 2 a\n# c\r\n\n3,4,b\r\n");
    EXPECT_EQ(test.block.results, "2 4 a\n# c\r\n\n6,8,b\r\n");
    EXPECT_EQ(test.block.lineCount, 4U);
    EXPECT_TRUE(test.block.openLines.empty());
}

TEST(BlockConverter, LeavesLinesWithoutResultOpenAndSaysNothing) {
    BlockConverterCase test;
    test.convert("1 2\nx 2\n3 4\n101 5\n1 -1\n");
    EXPECT_EQ(test.block.results, "2 4\n6 8\n");
    ASSERT_EQ(test.block.openLines.size(), 3U);
    EXPECT_EQ(test.block.openLines[0].position, 4U);
    EXPECT_EQ(test.block.openLines[0].number, 1U);
    EXPECT_EQ(test.block.openLines[0].line.text, "x 2");
    EXPECT_EQ(test.block.openLines[1].position, 8U);
    EXPECT_EQ(test.block.openLines[1].number, 3U);
    EXPECT_EQ(test.block.openLines[2].line.text, "1 -1");
    EXPECT_TRUE(test.messages.isEmpty());
}

TEST(BlockConverter, LeavesEveryPointOpenBesideOneThatTheLibrarySpokeOf) {
    BlockConverterCase test;
    test.convert("# c\n1 2\n201 3\n");
    EXPECT_EQ(test.block.results, "# c\n");
    EXPECT_EQ(test.block.openLines.size(), 2U);
    EXPECT_TRUE(test.messages.isEmpty());
}

TEST(BlockConverter, BlocksFollowEachOther) {
    BlockConverterCase test;
    test.convert("x\n201 1\n");
    test.convert("1 2\n");
    EXPECT_EQ(test.block.results, "2 4\n");
    EXPECT_EQ(test.block.lineCount, 1U);
    EXPECT_TRUE(test.block.openLines.empty());
}

} // namespace
