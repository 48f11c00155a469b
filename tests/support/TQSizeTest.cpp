#include "support/TQSize.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;
} // namespace

TEST(TQSize, IsEmptyUnlessGiven) {
    const TQSize size;
    EXPECT_EQ(size.width, 0.0);
    EXPECT_EQ(size.height, 0.0);
}

TEST(TQSize, IsEqualWhenBothExtentsAre) {
    EXPECT_EQ((TQSize{1, 2}), (TQSize{1, 2}));
    EXPECT_NE((TQSize{1, 2}), (TQSize{1, 3}));
    EXPECT_NE((TQSize{1, 2}), (TQSize{0, 2}));
}

TEST(TQSize, ArchivesWidthThenHeight) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}) + bytes({0, 0, 0, 0, 0, 0, 0x00, 0xC0});
    EXPECT_EQ(archiveOf(TQSize{1, -2}), archive);
    const auto read = unarchive(archive, TQSize{9, 9});
    EXPECT_EQ(read.value, (TQSize{1, -2}));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQSize, ExtentsThatAreCutOffBecomeZero) {
    const std::string archive = archiveOf(TQSize{1, -2});
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), TQSize{9, 9});
        EXPECT_EQ(read.value, (TQSize{length >= 8 ? 1.0 : 0.0, 0.0})) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
