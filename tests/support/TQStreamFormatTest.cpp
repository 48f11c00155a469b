#include "support/TQStreamFormat.h"

#include <gtest/gtest.h>

#include <string>

TEST(TQStreamFormat, IntegersGoLowestByteFirst) {
    EXPECT_EQ(TQStreamFormat::toBytes(std::uint32_t{0x01020384}),
              (std::array<char, 4>{static_cast<char>(0x84), 3, 2, 1}));
    EXPECT_EQ(TQStreamFormat::fromBytes<std::uint16_t>({static_cast<char>(0x80), static_cast<char>(0xFF)}),
              0xFF80);
    EXPECT_EQ(TQStreamFormat::fromBytes<std::uint64_t>({1, 0, 0, 0, 0, 0, 0, static_cast<char>(0x80)}),
              0x8000000000000001ULL);
}

TEST(TQStreamFormat, ATagNameIsCutTo255Bytes) {
    const std::string longName(300, 'x');
    EXPECT_EQ(TQStreamFormat::tagName(longName.c_str()), std::string(255, 'x'));
    EXPECT_EQ(TQStreamFormat::tagName("TQGrid"), "TQGrid");
    EXPECT_EQ(TQStreamFormat::tagName(nullptr), "");
}
