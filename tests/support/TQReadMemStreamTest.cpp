#include "support/TQReadMemStream.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::bytes;
} // namespace

TEST(TQReadMemStream, BytesLeftCountsDownAsValuesAreRead) {
    const std::string archive = bytes({1, 2, 3, 4, 5, 6});
    TQReadMemStream stream(archive.data(), archive.size());
    EXPECT_EQ(stream.bytesLeft(), 6U);
    char first = 0;
    stream.read(first);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(stream.bytesLeft(), 5U);
    std::uint32_t number = 0;
    stream.read(number);
    EXPECT_EQ(number, 0x05040302U);
    EXPECT_EQ(stream.bytesLeft(), 1U);
    EXPECT_FALSE(stream.failed());
}

TEST(TQReadMemStream, VersionAndFlagsAreZeroUnlessGiven) {
    const TQReadMemStream plain("", 0);
    EXPECT_EQ(plain.streamVersion(), 0);
    EXPECT_EQ(plain.flags(), 0U);
    const TQReadMemStream given("", 0, 5, 9);
    EXPECT_EQ(given.streamVersion(), 5);
    EXPECT_EQ(given.flags(), 9U);
}

TEST(TQReadMemStream, ANullBlockIsEmpty) {
    TQReadMemStream stream(nullptr, 10);
    EXPECT_EQ(stream.bytesLeft(), 0U);
    EXPECT_FALSE(stream.failed());
    char byte = 'x';
    stream.read(byte);
    EXPECT_EQ(byte, '\0');
    EXPECT_TRUE(stream.failed());
}

TEST(TQReadMemStream, ReadsInPlaceWithoutTouchingTheBlock) {
    const std::string before = bytes({1, 'A', 2, 0, 3, 0, 0, 0, 'a', 'b', 'c'});
    std::string archive = before;
    TQReadMemStream stream(archive.data(), archive.size());
    EXPECT_EQ(stream.version("A"), 2);
    EXPECT_EQ(stream.readCString(), "abc");
    EXPECT_EQ(archive, before);
}
