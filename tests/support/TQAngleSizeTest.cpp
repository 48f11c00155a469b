#include "support/TQAngleSize.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

namespace {
using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;
} // namespace

TEST(TQAngleSize, IsZeroRadiansUnlessGiven) {
    const TQAngleSize size;
    EXPECT_EQ(size.width(), TQAngleWithUnit());
    EXPECT_EQ(size.height(), TQAngleWithUnit());
    EXPECT_EQ(size.unit(), 0x11000001U);
}

TEST(TQAngleSize, IsMadeOfTwoValuesAndAUnit) {
    const TQAngleSize size(7.5, 2.5, TQUnitDegree);
    EXPECT_EQ(size.width(), TQAngleWithUnit(7.5, TQUnitDegree));
    EXPECT_EQ(size.height(), TQAngleWithUnit(2.5, TQUnitDegree));
    EXPECT_EQ(size, TQAngleSize(TQSize{7.5, 2.5}, TQUnitDegree));
}

TEST(TQAngleSize, IsMadeOfTwoAnglesInTheWidthsUnit) {
    const TQAngleSize size(TQAngleWithUnit(300, TQUnitGon, true), TQAngleWithUnit(45, TQUnitDegree));
    EXPECT_EQ(size.width(), TQAngleWithUnit(300, TQUnitGon, true));
    EXPECT_EQ(size.height(), TQAngleWithUnit(50, TQUnitGon));
}

TEST(TQAngleSize, IsMadeOfDegreesMinutesAndSeconds) {
    const TQAngleSize size(TQSize{0, 1}, TQSize{7, 30}, TQSize{30, 0});
    EXPECT_EQ(size.unit(), TQUnitDegree);
    EXPECT_EQ(size.width().value(), 0.125);
    EXPECT_EQ(size.height().value(), 1.5);
}

TEST(TQAngleSize, IsCopiedIntoAnotherUnit) {
    const TQAngleSize degrees(90, 0.9, TQUnitDegree);
    const TQAngleSize gon(degrees, TQUnitGon);
    EXPECT_EQ(gon, TQAngleSize(100, 1, TQUnitGon));
    EXPECT_EQ(degrees.unit(), TQUnitDegree);
}

TEST(TQAngleSize, BothAnglesCanBeChangedInPlace) {
    TQAngleSize size(10, 20, TQUnitDegree);
    size.width().setValue(1);
    size.height().setValue(2);
    EXPECT_EQ(size, TQAngleSize(1, 2, TQUnitDegree));
}

TEST(TQAngleSize, AsAPlainPairFollowsTheFlagsGiven) {
    const TQAngleSize size(360, -45, TQUnitDegree);
    EXPECT_EQ(size.sizeWithAngleUnit(TQUnitGon, false, false), (TQSize{400, -50}));
    EXPECT_EQ(size.sizeWithAngleUnit(TQUnitGon, true, true), (TQSize{400, 350}));
    EXPECT_EQ(size.sizeWithAngleUnit(TQUnitDegree, true, false), (TQSize{360, -45}));
}

TEST(TQAngleSize, ArchivesWidthThenHeight) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0x01, 0x00, 0x00, 0x14, 0x00}) +
                                bytes({0, 0, 0, 0, 0, 0, 0x00, 0x40, 0x01, 0x00, 0x00, 0x14, 0x00});
    EXPECT_EQ(archiveOf(TQAngleSize(1, 2, TQUnitGon)), archive);
    const auto read = unarchive(archive, TQAngleSize(9, 9, TQUnitDegree));
    EXPECT_EQ(read.value, TQAngleSize(1, 2, TQUnitGon));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQAngleSize, AnglesThatAreCutOffBecomeZeroRadians) {
    const std::string archive = archiveOf(TQAngleSize(1, 2, TQUnitGon));
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), TQAngleSize(9, 9, TQUnitDegree));
        EXPECT_EQ(read.value.width(), length >= 13 ? TQAngleWithUnit(1, TQUnitGon) : TQAngleWithUnit())
            << length;
        EXPECT_EQ(read.value.height(), TQAngleWithUnit()) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
