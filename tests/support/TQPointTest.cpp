#include "support/TQPoint.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;
} // namespace

TEST(TQPoint, IsTheOriginUnlessGiven) {
    const TQPoint point;
    EXPECT_EQ(point.x, 0.0);
    EXPECT_EQ(point.y, 0.0);
}

TEST(TQPoint, IsEqualWhenBothCoordinatesAre) {
    EXPECT_EQ((TQPoint{1, 2}), (TQPoint{1, 2}));
    EXPECT_NE((TQPoint{1, 2}), (TQPoint{1, 3}));
    EXPECT_NE((TQPoint{1, 2}), (TQPoint{0, 2}));
}

TEST(TQPoint, ArchivesXThenY) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}) + bytes({0, 0, 0, 0, 0, 0, 0x00, 0xC0});
    EXPECT_EQ(archiveOf(TQPoint{1, -2}), archive);
    const auto read = unarchive(archive, TQPoint{9, 9});
    EXPECT_EQ(read.value, (TQPoint{1, -2}));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQPoint, CoordinatesThatAreCutOffBecomeZero) {
    const std::string archive = archiveOf(TQPoint{1, -2});
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), TQPoint{9, 9});
        EXPECT_EQ(read.value, (TQPoint{length >= 8 ? 1.0 : 0.0, 0.0})) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
