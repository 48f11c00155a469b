#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/RandomNumbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

// Properties that hold for every choice of parameters: there and back is the same point, a copy converts
// like its source, and every conversion ends.

namespace {

constexpr int kChoices = 400;
constexpr int kPointsPerChoice = 50;

/// A class with random parameters.
struct Choice {
    MadeProjection projection;
    double lambda0; ///< degrees
};

EllipsoidSize randomEllipsoid(RandomNumbers& random) {
    return {"Random", random.between(1e3, 1e8), random.between(0.0, 0.02)};
}

Choice randomChoice(int typeCode, RandomNumbers& random) {
    const double lambda0 = random.between(-180.0, 180.0);
    MadeProjection projection(typeCode, randomEllipsoid(random),
                              {{"lambda0", lambda0},
                               {"phi0", random.between(-70.0, 70.0)},
                               {"X0", random.between(-1e7, 1e7)},
                               {"Y0", random.between(-1e7, 1e7)},
                               {"k0", random.between(0.5, 2.0)},
                               {"hemisphere", random.between(0.0, 1.0) < 0.5 ? 0.0 : 1.0},
                               {"_latitudeScaleFactor", random.between(0.5, 1.5)}});
    // The modified direct Mercator computes its constants before it takes its factor.
    projection.set({});
    return {std::move(projection), lambda0};
}

std::uint64_t bits(double number) { return std::bit_cast<std::uint64_t>(number); }

} // namespace

class EveryProjection : public testing::TestWithParam<int> {
  protected:
    bool isTransverse() const { return GetParam() == 1 || GetParam() == 3 || GetParam() == 4; }

    /// A point where the projection is to be inverted: within its clamp of 89 degrees, over the largest
    /// latitude scale factor of 1.5; the transverse ones within 15 degrees of the central meridian.
    TQPoint randomPoint(const Choice& choice, RandomNumbers& random) const {
        const double reach = isTransverse() ? 15.0 : 179.0;
        const double latitudes = GetParam() == 7 ? 59.0 : 88.0;
        return {tq_deg2rad(choice.lambda0 + random.between(-reach, reach)),
                tq_deg2rad(random.between(-latitudes, latitudes))};
    }
};

// On the ground, as an angle: what the stop test of the latitude leaves (1e-10 times e²/(1 - e²), at most
// 0.02), the rounding of plane coordinates of which false origins may be the larger part (1e7 m, 2e-9 m,
// over the radius), and for the transverse ones the eighth power of the eccentricity: forward and inverse
// series are cut off separately, 0.02⁵ at the most, with coefficients that grow as cosh(8η) to 4 at 15
// degrees and come to 1 at most.
TEST_P(EveryProjection, ThereAndBackIsTheSamePoint) {
    RandomNumbers random(7);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const double e2 = choice.projection.ellipsoid().eccentricitySquared();
        const double a = choice.projection.ellipsoid().semiMajorAxis();
        const double stop = 1e-10 * e2 / (1.0 - e2);
        const double rounding = 1e-14 + 4.0 * 2e-9 / a / 0.3;
        const double series = isTransverse() ? std::pow(e2, 5) : 0.0;
        for (int j = 0; j < kPointsPerChoice; ++j) {
            const TQPoint geo = randomPoint(choice, random);
            TQPoint global;
            TQPoint back;
            ASSERT_EQ(choice.projection->convertGeoPt(geo, global), 0);
            ASSERT_EQ(choice.projection->convertGlobalPt(global, back), 0);
            ASSERT_LE(groundAngle(geo, back), stop + rounding + series)
                << "longitude " << geo.x << ", latitude " << geo.y << ", e2 " << e2 << ", a " << a;
        }
    }
}

TEST_P(EveryProjection, ACopyConvertsLikeItsSourceBitForBit) {
    RandomNumbers random(8);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const auto copied = choice.projection->copy();
        const auto& copy = dynamic_cast<const TQProjection&>(*copied);
        for (int j = 0; j < kPointsPerChoice; ++j) {
            const TQPoint geo = randomPoint(choice, random);
            TQPoint global;
            TQPoint globalOfCopy;
            choice.projection->convertGeoPt(geo, global);
            copy.convertGeoPt(geo, globalOfCopy);
            ASSERT_EQ(bits(global.x), bits(globalOfCopy.x));
            ASSERT_EQ(bits(global.y), bits(globalOfCopy.y));
            TQPoint back;
            TQPoint backOfCopy;
            choice.projection->convertGlobalPt(global, back);
            copy.convertGlobalPt(global, backOfCopy);
            ASSERT_EQ(bits(back.x), bits(backOfCopy.x));
            ASSERT_EQ(bits(back.y), bits(backOfCopy.y));
        }
    }
}

// Loops end whatever the parameters: the time limit of the test is what fails otherwise.
TEST_P(EveryProjection, ConversionsEndForDegenerateParameters) {
    const CapturedMessages messages;
    const double huge[] = {0.0, 1.0, -1e7, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")};
    const auto convertAll = [&huge](const MadeProjection& projection) {
        for (const double x : huge) {
            for (const double y : huge) {
                TQPoint result;
                EXPECT_LE(projection->convertGeoPt(TQPoint{x, y}, result), 0);
                EXPECT_LE(projection->convertGlobalPt(TQPoint{x, y}, result), 0);
            }
        }
    };
    for (const double e2 : {0.0, 0.00669438, 0.0100001, 0.5, 0.999999, 1.0, 1.5, -0.1, std::nan("")}) {
        const EllipsoidSize size{"Degenerate", 6378137.0, e2};
        convertAll({GetParam(), size});
    }
    for (const double k0 : {0.0, -1.0, 1e-300, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({GetParam(), wgs84, {{"k0", k0}}});
    }
    for (const double a : {0.0, -6378137.0, 1e-300, 1e300, HUGE_VAL, std::nan("")}) {
        const EllipsoidSize size{"Degenerate", a, 0.00669438};
        convertAll({GetParam(), size});
    }
    for (const double phi0 : {90.0, -90.0, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({GetParam(), wgs84, {{"phi0", phi0}}});
    }
    for (const double lambda0 : {1e5, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({GetParam(), wgs84, {{"lambda0", lambda0}}});
    }
}

// The abridged Molodensky formulas divide by the cosine of the latitude: at a pole a translation by 100 m
// becomes a longitude of some 1e11 rad, which must not be brought back turn by turn.
TEST_P(EveryProjection, ConversionsEndAtThePolesWithAThreeParameterShift) {
    const CapturedMessages messages;
    const MadeProjection projection(GetParam(), international1924);
    projection.ellipsoid().setDatumShift(TQEllipsoid::ThreeParameterShift, wgs84.a, 1.0 / 298.257223563,
                                         {84.87, 96.49, 116.95});
    for (const double latitude : {90.0, -90.0}) {
        TQPoint result;
        const int code = projection->convertGeoPt(TQPoint{0.5, tq_deg2rad(latitude)}, result);
        EXPECT_LE(code, 0);
        if (code == 0) {
            EXPECT_TRUE(std::isfinite(result.x) && std::isfinite(result.y));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(TypeCodes, EveryProjection, testing::Values(1, 3, 4, 5, 7, 15),
                         [](const auto& instance) { return std::to_string(instance.param); });

// A factor of the latitude that has no inverse in reach: the iteration ends with its pass limit, and that
// takes a while each time, so few points do.
TEST(ModifiedDirectMercatorWithoutInverse, TheIterationEnds) {
    for (const double s : {0.001, 1e-6, -1.0}) {
        const MadeProjection projection(7, wgs84, {{"_latitudeScaleFactor", s}});
        for (const double y : {0.0, 3e6, -9e6}) {
            TQPoint geo;
            EXPECT_EQ(projection->convertGlobalPt(TQPoint{500000.0, y}, geo), 0);
        }
    }
}

TEST(ModifiedDirectMercatorWithoutInverse, AFactorOfZeroGivesNothingFinite) {
    const CapturedMessages messages;
    const MadeProjection projection(7, wgs84, {{"_latitudeScaleFactor", 0.0}});
    TQPoint result;
    EXPECT_EQ(projection->convertGeoPt(TQPoint{0.1, 0.5}, result), 0);
    EXPECT_FALSE(std::isfinite(result.y));
    EXPECT_EQ(projection->convertGlobalPt(TQPoint{500000.0, 3e6}, result), 0);
    EXPECT_FALSE(std::isfinite(result.y));
}
