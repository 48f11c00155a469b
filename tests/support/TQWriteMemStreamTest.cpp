#include "support/TQWriteMemStream.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::bytes;
using tqtest::written;
} // namespace

TEST(TQWriteMemStream, ANewStreamHoldsNothing) {
    const TQWriteMemStream stream;
    EXPECT_TRUE(stream.getMemory().empty());
}

TEST(TQWriteMemStream, MemoryHoldsEverythingInTheOrderOfWriting) {
    TQWriteMemStream stream;
    stream.declareVersion("P", 2);
    stream.write(true);
    EXPECT_EQ(written(stream), bytes({1, 'P', 2, 0, 1}));
    stream.write(std::int32_t{7});
    EXPECT_EQ(written(stream), bytes({1, 'P', 2, 0, 1, 7, 0, 0, 0}));
}

TEST(TQWriteMemStream, MemoryGrowsWithoutLosingWhatItHeld) {
    TQWriteMemStream stream;
    constexpr std::uint32_t count = 100000;
    for (std::uint32_t i = 0; i < count; ++i) {
        stream.write(i);
    }
    ASSERT_EQ(stream.getMemory().size(), 4U * count);
    TQReadMemStream reader(stream.getMemory().data(), stream.getMemory().size());
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint32_t found = 0;
        reader.read(found);
        ASSERT_EQ(found, i);
    }
}
