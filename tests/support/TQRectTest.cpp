#include "support/TQRect.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;
} // namespace

TEST(TQRect, IsEmptyAtTheOriginUnlessGiven) { EXPECT_EQ(TQRect(), TQRect(0, 0, 0, 0)); }

TEST(TQRect, KeepsItsFourNumbers) {
    const TQRect rect(0, 10, 10, -10);
    EXPECT_EQ(rect.x, 0.0);
    EXPECT_EQ(rect.y, 10.0);
    EXPECT_EQ(rect.width, 10.0);
    EXPECT_EQ(rect.height, -10.0);
    EXPECT_EQ(rect.origin(), (TQPoint{0, 10}));
    EXPECT_EQ(rect.size(), (TQSize{10, -10}));
    EXPECT_EQ(rect.opposite(), (TQPoint{10, 0}));
}

TEST(TQRect, SpannedByTwoPointsKeepsTheDirection) {
    EXPECT_EQ(TQRect(TQPoint{1, 2}, TQPoint{4, 7}), TQRect(1, 2, 3, 5));
    EXPECT_EQ(TQRect(TQPoint{4, 7}, TQPoint{1, 2}), TQRect(4, 7, -3, -5));
    EXPECT_EQ(TQRect(TQPoint{0, 10}, TQPoint{10, 0}), TQRect(0, 10, 10, -10));
}

TEST(TQRect, IsEqualWhenAllFourNumbersAre) {
    const TQRect rect(1, 2, 3, 4);
    EXPECT_EQ(TQRect(rect), rect);
    EXPECT_NE(rect, TQRect(0, 2, 3, 4));
    EXPECT_NE(rect, TQRect(1, 0, 3, 4));
    EXPECT_NE(rect, TQRect(1, 2, 0, 4));
    EXPECT_NE(rect, TQRect(1, 2, 3, 0));
}

TEST(TQRect, ArchivesCornerThenExtent) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}) +
                                bytes({0, 0, 0, 0, 0, 0, 0x00, 0x40}) +
                                bytes({0, 0, 0, 0, 0, 0, 0x08, 0x40}) + bytes({0, 0, 0, 0, 0, 0, 0x10, 0xC0});
    EXPECT_EQ(archiveOf(TQRect(1, 2, 3, -4)), archive);
    const auto read = unarchive(archive, TQRect(9, 9, 9, 9));
    EXPECT_EQ(read.value, TQRect(1, 2, 3, -4));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQRect, NumbersThatAreCutOffBecomeZero) {
    const std::string archive = archiveOf(TQRect(1, 2, 3, -4));
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), TQRect(9, 9, 9, 9));
        const TQRect expected(length >= 8 ? 1.0 : 0.0, length >= 16 ? 2.0 : 0.0, length >= 24 ? 3.0 : 0.0,
                              0.0);
        EXPECT_EQ(read.value, expected) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
