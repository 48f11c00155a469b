#include "support/TQAnglePair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

/// Opens what the classes made of a pair use.
class Pair : public TQAnglePair {
  public:
    Pair(const TQAngleWithUnit& first, const TQAngleWithUnit& second) : TQAnglePair(first, second) {}
    using TQAnglePair::_first;
    using TQAnglePair::_second;
    using TQAnglePair::angleFromParts;
};

double degreesFromParts(double degrees, double minutes, double seconds) {
    const TQAngleWithUnit angle = Pair::angleFromParts(degrees, minutes, seconds);
    EXPECT_EQ(angle.unit(), TQUnitDegree);
    EXPECT_FALSE(angle.base360());
    return angle.value();
}

} // namespace

TEST(TQAnglePair, TakesTheUnitOfTheFirstAngle) {
    const Pair pair(TQAngleWithUnit(10, TQUnitGon, true), TQAngleWithUnit(90, TQUnitDegree));
    EXPECT_EQ(pair.unit(), TQUnitGon);
    EXPECT_EQ(pair._first, TQAngleWithUnit(10, TQUnitGon, true));
    EXPECT_EQ(pair._second, TQAngleWithUnit(100, TQUnitGon));
}

TEST(TQAnglePair, ConvertsEachAngleWithItsOwnFlag) {
    Pair pair(TQAngleWithUnit(360, TQUnitDegree, true), TQAngleWithUnit(-90, TQUnitDegree));
    pair.convert(TQUnitGon);
    EXPECT_EQ(pair._first, TQAngleWithUnit(400, TQUnitGon, true));
    EXPECT_EQ(pair._second, TQAngleWithUnit(-100, TQUnitGon));
}

TEST(TQAnglePair, PartsAddUp) {
    EXPECT_DOUBLE_EQ(degreesFromParts(7, 26, 22.5), 7.439583333333333333);
    EXPECT_EQ(degreesFromParts(46, 30, 0), 46.5);
    EXPECT_EQ(degreesFromParts(0, 0, 36), 0.01);
    EXPECT_EQ(degreesFromParts(0.1, 0, 0), 0.1);
    EXPECT_EQ(degreesFromParts(0, 90, 0), 1.5);
    EXPECT_EQ(degreesFromParts(0, 0, 0), 0.0);
}

TEST(TQAnglePair, TheFirstPartThatIsNotZeroDecidesTheSign) {
    EXPECT_EQ(degreesFromParts(-7, 30, 0), -7.5);
    EXPECT_EQ(degreesFromParts(-7, -30, 0), -7.5);
    EXPECT_EQ(degreesFromParts(7, -30, 0), 7.5);
    EXPECT_EQ(degreesFromParts(0, -30, 0), -0.5);
    EXPECT_EQ(degreesFromParts(0, 30, -36), 0.51);
    EXPECT_EQ(degreesFromParts(0, -30, 36), -0.51);
    EXPECT_EQ(degreesFromParts(0, 0, -36), -0.01);
    EXPECT_EQ(degreesFromParts(-0.0, 30, 0), -0.5);
    EXPECT_EQ(degreesFromParts(0, -0.0, 36), -0.01);
}

TEST(TQAnglePair, PartsThatAreNoNumbersGiveNone) {
    EXPECT_TRUE(std::isnan(degreesFromParts(1, std::numeric_limits<double>::quiet_NaN(), 0)));
    EXPECT_EQ(degreesFromParts(-std::numeric_limits<double>::infinity(), 1, 0),
              -std::numeric_limits<double>::infinity());
}
