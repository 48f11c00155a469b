#include "support/TQAnglePoint.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;
constexpr double pi = std::numbers::pi;
} // namespace

TEST(TQAnglePoint, IsZeroRadiansUnlessGiven) {
    const TQAnglePoint point;
    EXPECT_EQ(point.longitude(), TQAngleWithUnit());
    EXPECT_EQ(point.latitude(), TQAngleWithUnit());
    EXPECT_EQ(point.unit(), 0x11000001U);
}

TEST(TQAnglePoint, IsMadeOfTwoValuesAndAUnit) {
    const TQAnglePoint point(7.5, -46.25, TQUnitDegree);
    EXPECT_EQ(point.longitude(), TQAngleWithUnit(7.5, TQUnitDegree));
    EXPECT_EQ(point.latitude(), TQAngleWithUnit(-46.25, TQUnitDegree));
    EXPECT_EQ(point, TQAnglePoint(TQPoint{7.5, -46.25}, TQUnitDegree));
}

TEST(TQAnglePoint, IsMadeOfTwoAnglesInTheLongitudesUnit) {
    const TQAnglePoint point(TQAngleWithUnit(300, TQUnitGon, true), TQAngleWithUnit(45, TQUnitDegree));
    EXPECT_EQ(point.longitude(), TQAngleWithUnit(300, TQUnitGon, true));
    EXPECT_EQ(point.latitude(), TQAngleWithUnit(50, TQUnitGon));
}

TEST(TQAnglePoint, IsMadeOfDegreesMinutesAndSeconds) {
    const TQAnglePoint point(TQPoint{-7, 46}, TQPoint{30, 57}, TQPoint{0, 9});
    EXPECT_EQ(point.unit(), TQUnitDegree);
    EXPECT_EQ(point.longitude().value(), -7.5);
    EXPECT_DOUBLE_EQ(point.latitude().value(), 46.9525);
}

TEST(TQAnglePoint, IsCopiedIntoAnotherUnit) {
    const TQAnglePoint degrees(TQAngleWithUnit(360, TQUnitDegree, true), TQAngleWithUnit(-90, TQUnitDegree));
    const TQAnglePoint gon(degrees, TQUnitGon);
    EXPECT_EQ(gon.longitude(), TQAngleWithUnit(400, TQUnitGon, true));
    EXPECT_EQ(gon.latitude(), TQAngleWithUnit(-100, TQUnitGon));
    EXPECT_EQ(degrees.unit(), TQUnitDegree);
}

TEST(TQAnglePoint, BothAnglesCanBeChangedInPlace) {
    TQAnglePoint point(180, 45, TQUnitDegree);
    point.longitude().convert(TQUnitRadian);
    point.latitude().setValue(30);
    EXPECT_EQ(point.longitude(), TQAngleWithUnit(pi, TQUnitRadian));
    EXPECT_EQ(point.latitude(), TQAngleWithUnit(30, TQUnitDegree));
}

TEST(TQAnglePoint, AsAPlainPairFollowsTheFlagsGiven) {
    const TQAnglePoint point(-90, -45, TQUnitDegree);
    EXPECT_EQ(point.pointWithAngleUnit(TQUnitDegree, false, false), (TQPoint{-90, -45}));
    EXPECT_EQ(point.pointWithAngleUnit(TQUnitDegree, true, false), (TQPoint{270, -45}));
    EXPECT_EQ(point.pointWithAngleUnit(TQUnitDegree, false, true), (TQPoint{-90, 315}));
    EXPECT_EQ(point.pointWithAngleUnit(TQUnitRadian, false, false), (TQPoint{-pi / 2, -pi / 4}));
    EXPECT_EQ(point.pointWithAngleUnit(TQUnitGon, true, true), (TQPoint{300, 350}));
}

TEST(TQAnglePoint, IsEqualWhenBothAnglesAre) {
    const TQAnglePoint point(1, 2, TQUnitDegree);
    EXPECT_NE(point, TQAnglePoint(0, 2, TQUnitDegree));
    EXPECT_NE(point, TQAnglePoint(1, 0, TQUnitDegree));
    EXPECT_NE(point, TQAnglePoint(1, 2, TQUnitGon));
}

TEST(TQAnglePoint, ArchivesLongitudeThenLatitude) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0x01, 0x00, 0x00, 0x12, 0x00}) +
                                bytes({0, 0, 0, 0, 0, 0, 0x00, 0xC0, 0x01, 0x00, 0x00, 0x12, 0x00});
    EXPECT_EQ(archiveOf(TQAnglePoint(1, -2, TQUnitDegree)), archive);
    const auto read = unarchive(archive, TQAnglePoint(9, 9, TQUnitGon));
    EXPECT_EQ(read.value, TQAnglePoint(1, -2, TQUnitDegree));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQAnglePoint, AnglesThatAreCutOffBecomeZeroRadians) {
    const std::string archive = archiveOf(TQAnglePoint(1, -2, TQUnitDegree));
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), TQAnglePoint(9, 9, TQUnitGon));
        const TQAngleWithUnit longitude = length >= 13 ? TQAngleWithUnit(1, TQUnitDegree) : TQAngleWithUnit();
        EXPECT_EQ(read.value.longitude(), longitude) << length;
        EXPECT_EQ(read.value.latitude(), TQAngleWithUnit()) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
