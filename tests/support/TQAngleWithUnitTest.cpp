#include "support/TQAngleWithUnit.h"

#include "tests/support/ArchiveBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <type_traits>
#include <vector>

namespace {

using tqtest::archiveOf;
using tqtest::bytes;
using tqtest::unarchive;

constexpr double pi = std::numbers::pi;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TQAngleWithUnit degrees(double value, bool base360 = false) {
    return TQAngleWithUnit(value, TQUnitDegree, base360);
}

TQAngleWithUnit radians(double value) { return TQAngleWithUnit(value, TQUnitRadian); }

static_assert(!std::is_convertible_v<double, TQAngleWithUnit>, "a plain number has no unit");

} // namespace

TEST(TQAngleWithUnit, IsZeroRadiansUnlessGiven) {
    const TQAngleWithUnit angle;
    EXPECT_EQ(angle.value(), 0.0);
    EXPECT_EQ(angle.unit(), 0x11000001U);
    EXPECT_FALSE(angle.base360());
    EXPECT_EQ(TQAngleWithUnit(1.5), radians(1.5));
}

TEST(TQAngleWithUnit, WithoutTheFlagAnyValueStays) {
    for (const double value : {361.0, -1e-20, -720.0, 1e300, infinity}) {
        TQAngleWithUnit angle = degrees(value);
        EXPECT_EQ(angle.value(), value);
        angle.setBase360(false);
        EXPECT_EQ(angle.value(), value);
    }
}

TEST(TQAngleWithUnit, SettingTheFlagBringsTheValueIntoOneTurnAtOnce) {
    struct Case {
        double value;
        double expected;
    };
    for (const Case& each : {Case{360, 360}, Case{-360, 0}, Case{720, 0}, Case{-1e-20, 360}, Case{-90, 270},
                             Case{450, 90}, Case{infinity, infinity}, Case{-infinity, -infinity}}) {
        TQAngleWithUnit angle = degrees(each.value);
        angle.setBase360(true);
        EXPECT_EQ(angle.value(), each.expected) << each.value;
        EXPECT_EQ(angle, degrees(each.value, true)) << each.value;
    }
    EXPECT_TRUE(std::isnan(degrees(notANumber, true).value()));
}

TEST(TQAngleWithUnit, ClearingTheFlagKeepsTheValue) {
    TQAngleWithUnit angle = degrees(-90, true);
    angle.setBase360(false);
    EXPECT_EQ(angle, degrees(270));
}

TEST(TQAngleWithUnit, TheFlagHoldsForEveryNewValue) {
    TQAngleWithUnit angle = degrees(0, true);
    angle.setValue(-1);
    EXPECT_EQ(angle.value(), 359.0);
    angle.add(degrees(2));
    EXPECT_EQ(angle.value(), 1.0);
    angle.substract(degrees(2));
    EXPECT_EQ(angle.value(), 359.0);
    angle.divide(-359);
    EXPECT_EQ(angle.value(), 359.0);
    EXPECT_TRUE(angle.base360());
}

TEST(TQAngleWithUnit, ConvertKeepsTheAngle) {
    TQAngleWithUnit angle = degrees(90);
    angle.convert(TQUnitGon);
    EXPECT_EQ(angle, TQAngleWithUnit(100, TQUnitGon));
    angle.convert(TQUnitRadian);
    EXPECT_EQ(angle, radians(pi / 2));
    angle.convert(TQUnitDegree);
    EXPECT_EQ(angle, degrees(90));
}

TEST(TQAngleWithUnit, ConvertKeepsAWholeTurn) {
    TQAngleWithUnit angle = degrees(360, true);
    angle.convert(TQUnitRadian);
    EXPECT_EQ(angle.value(), 2 * pi);
    angle.convert(TQUnitGon);
    EXPECT_EQ(angle.value(), 400.0);
    angle.convert(TQUnitDegree);
    EXPECT_EQ(angle.value(), 360.0);
    EXPECT_TRUE(angle.base360());
}

TEST(TQAngleWithUnit, ConvertToALengthTakesTheValueUnchanged) {
    TQAngleWithUnit angle = degrees(90);
    angle.convert(TQUnitMetre);
    EXPECT_EQ(angle, TQAngleWithUnit(90, TQUnitMetre));
}

TEST(TQAngleWithUnit, ANumberThatBecomesAnAngleFollowsTheFlag) {
    TQAngleWithUnit angle(500, TQUnitMetre, true);
    EXPECT_EQ(angle.value(), 500.0);
    angle.convert(TQUnitDegree);
    EXPECT_EQ(angle.value(), 140.0);
}

TEST(TQAngleWithUnit, ValueInUnitFollowsItsOwnFlag) {
    const TQAngleWithUnit angle = degrees(-90);
    EXPECT_EQ(angle.valueInUnit(TQUnitDegree, false), -90.0);
    EXPECT_EQ(angle.valueInUnit(TQUnitDegree, true), 270.0);
    EXPECT_EQ(angle.valueInUnit(TQUnitGon, true), 300.0);
    EXPECT_EQ(angle.valueInUnit(TQUnitRadian, false), -pi / 2);
    EXPECT_EQ(angle, degrees(-90));
}

TEST(TQAngleWithUnit, AddAndSubstractConvertTheOtherAngle) {
    TQAngleWithUnit angle = degrees(10);
    angle.add(TQAngleWithUnit(100, TQUnitGon));
    EXPECT_EQ(angle, degrees(100));
    angle.substract(TQAngleWithUnit(60, TQUnitArcMinute));
    EXPECT_EQ(angle, degrees(99));
    angle.add(radians(pi));
    EXPECT_EQ(angle, degrees(279));
    angle.add(degrees(300));
    EXPECT_EQ(angle, degrees(579));
}

TEST(TQAngleWithUnit, AddKeepsTheFlagOfTheAngleAddedTo) {
    TQAngleWithUnit plain = degrees(300);
    plain.add(degrees(100, true));
    EXPECT_EQ(plain, degrees(400));
    TQAngleWithUnit flagged = degrees(300, true);
    flagged.add(degrees(100));
    EXPECT_EQ(flagged, degrees(40, true));
}

TEST(TQAngleWithUnit, AnAngleCanBeAddedToItself) {
    TQAngleWithUnit angle = degrees(200, true);
    angle.add(angle);
    EXPECT_EQ(angle.value(), 40.0);
    angle.substract(angle);
    EXPECT_EQ(angle.value(), 0.0);
}

TEST(TQAngleWithUnit, DivideKeepsUnitAndFlag) {
    TQAngleWithUnit angle = degrees(360, true);
    angle.divide(100);
    EXPECT_EQ(angle, degrees(3.6, true));
    TQAngleWithUnit negative = radians(1);
    negative.divide(-4);
    EXPECT_EQ(negative, radians(-0.25));
}

TEST(TQAngleWithUnit, DividingByZeroLeavesTheAngle) {
    TQAngleWithUnit angle = degrees(90);
    angle.divide(0);
    EXPECT_EQ(angle, degrees(90));
}

TEST(TQAngleWithUnit, TheWidthOfTheWholeWorldSurvivesTheSplittingIntoSteps) {
    TQAngleWithUnit width = degrees(180);
    width.substract(degrees(-180));
    width.setBase360(true);
    width.divide(100);
    EXPECT_EQ(width.value(), 3.6);
    TQAngleWithUnit inRadians = radians(pi);
    inRadians.substract(radians(-pi));
    inRadians.setBase360(true);
    EXPECT_EQ(inRadians.value(), 2 * pi);
}

TEST(TQAngleWithUnit, ComparesAcrossUnits) {
    EXPECT_TRUE(degrees(1) < radians(1));
    EXPECT_FALSE(radians(1) < degrees(1));
    EXPECT_TRUE(TQAngleWithUnit(99, TQUnitGon) < degrees(90));
    EXPECT_FALSE(TQAngleWithUnit(100, TQUnitGon) < degrees(90));
    EXPECT_FALSE(degrees(90) < TQAngleWithUnit(100, TQUnitGon));
    EXPECT_FALSE(degrees(180) < radians(pi));
    EXPECT_FALSE(radians(pi) < degrees(180));
}

TEST(TQAngleWithUnit, ComparesWithoutBringingIntoOneTurn) {
    EXPECT_TRUE(degrees(-10) < degrees(10));
    EXPECT_TRUE(degrees(10) < degrees(361));
    EXPECT_FALSE(degrees(10) < degrees(10));
}

TEST(TQAngleWithUnit, NothingIsSmallerOrLargerThanNaN) {
    EXPECT_FALSE(degrees(notANumber) < degrees(1));
    EXPECT_FALSE(degrees(1) < degrees(notANumber));
}

TEST(TQAngleWithUnit, AnglesOfMixedUnitsSort) {
    std::vector<TQAngleWithUnit> angles{radians(3), degrees(-5), TQAngleWithUnit(50, TQUnitGon), degrees(46),
                                        TQAngleWithUnit(30, TQUnitArcMinute)};
    std::sort(angles.begin(), angles.end());
    const std::vector<TQAngleWithUnit> expected{degrees(-5), TQAngleWithUnit(30, TQUnitArcMinute),
                                                TQAngleWithUnit(50, TQUnitGon), degrees(46), radians(3)};
    EXPECT_EQ(angles, expected);
}

TEST(TQAngleWithUnit, IsEqualWhenValueUnitAndFlagAre) {
    EXPECT_EQ(degrees(90), degrees(90));
    EXPECT_NE(degrees(90), degrees(91));
    EXPECT_NE(degrees(90), degrees(90, true));
    EXPECT_NE(degrees(90), TQAngleWithUnit(90, TQUnitDegreeMinuteSecond));
}

TEST(TQAngleWithUnit, ArchivesValueUnitAndFlag) {
    const std::string archive = bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0x01, 0x00, 0x00, 0x12, 0x01});
    EXPECT_EQ(archiveOf(degrees(1, true)), archive);
    const auto read = unarchive(archive, radians(9));
    EXPECT_EQ(read.value, degrees(1, true));
    EXPECT_FALSE(read.failed);
    EXPECT_EQ(read.bytesLeft, 0U);
}

TEST(TQAngleWithUnit, ArchivesAnyValueWithoutTheFlag) {
    for (const double value : {-720.5, 1e300, -infinity}) {
        EXPECT_EQ(unarchive(archiveOf(degrees(value)), radians(9)).value, degrees(value));
    }
}

TEST(TQAngleWithUnit, AnArchivedValueOutsideItsTurnIsBroughtIntoIt) {
    // -90 degrees with the flag, which no angle holds.
    const std::string archive = bytes({0, 0, 0, 0, 0, 0x80, 0x56, 0xC0, 0x01, 0x00, 0x00, 0x12, 0x01});
    EXPECT_EQ(unarchive(archive, radians(9)).value, degrees(270, true));
}

TEST(TQAngleWithUnit, AnAngleThatIsCutOffBecomesZeroRadians) {
    const std::string archive = archiveOf(degrees(1, true));
    for (std::size_t length = 0; length < archive.size(); ++length) {
        const auto read = unarchive(archive.substr(0, length), degrees(9, true));
        EXPECT_EQ(read.value, TQAngleWithUnit()) << length;
        EXPECT_TRUE(read.failed) << length;
    }
}
