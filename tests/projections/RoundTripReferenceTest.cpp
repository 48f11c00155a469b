#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/ProjectionFiles.h"
#include "testing/RandomNumbers.h"
#include "testing/StreamBytes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

// Properties that hold for every choice of parameters: there and back is the same point; copies, archives,
// files and tables bring the projection back; every conversion ends.

namespace {

constexpr int kChoices = 400;
constexpr int kPointsPerChoice = 50;
constexpr double kPi = 3.14159265358979323846;

using Parameters = std::vector<MadeProjection::Parameter>;

/// A class with random parameters.
struct Choice {
    MadeProjection projection;
    double lambda0;  ///< degrees
    double latitude; ///< where the projection is at its best, degrees
};

bool coin(RandomNumbers& random) { return random.between(0.0, 1.0) < 0.5; }

/// A number of either sign by its size.
double signedBetween(RandomNumbers& random, double low, double high) {
    const double size = random.between(low, high);
    return coin(random) ? size : -size;
}

/// What a pass that is left out of the iteration of a latitude would change it by, the tolerance being what
/// the last one changed.
double stop(double e2, double tolerance) { return tolerance * e2 / (1.0 - e2); }

/// A class, its random parameters, the points that its way back is meant for, and how far these may come
/// back from where they were, as an angle on the ground, besides rounding.
struct Subject {
    int typeCode;
    std::function<Parameters(RandomNumbers& random, double lambda0, double latitude, double e2)> parameters;
    double latitudes;                                    ///< the largest central latitude, degrees
    double longitudesReach;                              ///< of points from the central meridian, degrees
    std::function<double(RandomNumbers&, double)> point; ///< a latitude by the central one, degrees
    std::function<double(double e2)> left;               ///< by the squared eccentricity
};

std::ostream& operator<<(std::ostream& out, const Subject& subject) {
    return out << "type " << subject.typeCode;
}

Parameters mercatorParameters(RandomNumbers& random, double lambda0, double latitude, double /*e2*/) {
    return {{"lambda0", lambda0},
            {"phi0", latitude},
            {"X0", random.between(-1e7, 1e7)},
            {"Y0", random.between(-1e7, 1e7)},
            {"k0", random.between(0.5, 2.0)},
            {"hemisphere", coin(random) ? 1.0 : 0.0},
            {"_latitudeScaleFactor", random.between(0.5, 1.5)}};
}

Parameters lambertParameters(RandomNumbers& random, double lambda0, double latitude, double /*e2*/) {
    const double width = random.between(3.0, 8.0);
    return {{"lambda0", lambda0},
            {"latitudeOrigin", latitude},
            {"X0", random.between(-1e7, 1e7)},
            {"Y0", random.between(-1e7, 1e7)},
            {"Tangent", coin(random) ? 1.0 : 0.0},
            {"k0", random.between(0.5, 2.0)},
            {"stdPar1", latitude - width},
            {"stdPar2", latitude + width}};
}

/// The bearing of the grid is the azimuth at the natural origin, as which the way back takes it (Snyder,
/// equations 9-12, 9-14 and 9-17 give that azimuth).
Parameters hotineParameters(RandomNumbers& random, double lambda0, double latitude, double e2) {
    const double phi = tq_deg2rad(latitude);
    const double azimuth = signedBetween(random, 20.0, 70.0);
    const double b = std::sqrt(1.0 + e2 * std::pow(std::cos(phi), 4) / (1.0 - e2));
    const double d = b * std::sqrt((1.0 - e2) / (1.0 - e2 * std::sin(phi) * std::sin(phi))) / std::cos(phi);
    return {{"longitudeCenter", lambda0},
            {"latitudeCenter", latitude},
            {"azimuth", azimuth},
            {"bearing", tq_rad2deg(std::asin(std::sin(tq_deg2rad(azimuth)) / d))},
            {"kc", random.between(0.5, 2.0)},
            {"falseEasting", random.between(-1e7, 1e7)},
            {"falseNorthing", random.between(-1e7, 1e7)},
            {"HotineFlag", 1.0}};
}

Parameters swissParameters(RandomNumbers& random, double lambda0, double latitude, double /*e2*/) {
    return {{"longitudeCenter", lambda0},
            {"latitudeCenter", latitude},
            {"kc", random.between(0.5, 2.0)},
            {"falseEasting", random.between(-1e7, 1e7)},
            {"falseNorthing", random.between(-1e7, 1e7)}};
}

Parameters bonneParameters(RandomNumbers& /*random*/, double lambda0, double latitude, double /*e2*/) {
    return {{"lambda0", lambda0}, {"standardParallel", std::abs(latitude)}};
}

Parameters equirectangularParameters(RandomNumbers& random, double, double, double) {
    return {{"isFactor", coin(random) ? 1.0 : 0.0}, {"factor_phiRef", random.between(0.5, 80.0)}};
}

/// In the south without a false northing, which the way back of the stereographic one takes the wrong way.
Parameters polarParameters(RandomNumbers& random, double lambda0, double latitude, double /*e2*/) {
    const bool isNorth = latitude > 0.0;
    return {{"lambda0", lambda0},
            {"isNorth", isNorth ? 1.0 : 0.0},
            {"k0", random.between(0.5, 2.0)},
            {"falseEasting", random.between(-1e7, 1e7)},
            {"falseNorthing", isNorth ? random.between(-1e7, 1e7) : 0.0}};
}

auto within(double latitudes) {
    return [latitudes](RandomNumbers& random, double) { return random.between(-latitudes, latitudes); };
}
auto near(double reach) {
    return
        [reach](RandomNumbers& random, double latitude) { return latitude + random.between(-reach, reach); };
}
/// From the central latitude's pole to a distance from it.
auto fromPole(double reach) {
    return [reach](RandomNumbers& random, double latitude) {
        return std::copysign(90.0 - random.between(0.0, reach), latitude);
    };
}

double nothing(double /*e2*/) { return 0.0; }
double mercatorStop(double e2) { return stop(e2, 1e-10); }
// Forward and inverse series are cut off separately, 0.02⁵ at the most, with coefficients that grow as
// cosh(8η) to 4 at 15 degrees and come to 1 at most.
double transverseSeries(double e2) { return mercatorStop(e2) + std::pow(e2, 5); }
// The latitude is taken before the pass that would change it by 1e-10.
double lambertStop(double e2) { return 1e-10 + stop(e2, 1e-10); }
// The arc and its inverse are cut off at e⁶ and e1⁴, coefficients below 0.1 each.
double bonneSeries(double e2) { return 0.2 * std::pow(e2, 4); }
double stereographicStop(double e2) { return stop(e2, 1e-6); }

/// The third coefficient of the footpoint latitude divided by 696 instead of 96, and terms of e²·D⁴ and D⁶
/// with coefficients below 20 for a distance D of a degree and latitudes to 60.
double cassiniDivisor(double e2) {
    const double b = std::sqrt(1.0 - e2);
    const double e1 = (1.0 - b) / (1.0 + b);
    const double distance = kPi / 180.0;
    return 1.01 * 151.0 * e1 * e1 * e1 * (1.0 / 96.0 - 1.0 / 696.0) +
           20.0 * (e2 * std::pow(distance, 4) + std::pow(distance, 6));
}

const std::vector<Subject>& subjects() {
    static const std::vector<Subject> all{
        {0, bonneParameters, 70.0, 60.0, within(85.0), bonneSeries},
        {1, mercatorParameters, 70.0, 15.0, within(88.0), transverseSeries},
        {2, lambertParameters, 55.0, 60.0, near(30.0), lambertStop},
        {3, mercatorParameters, 70.0, 15.0, within(88.0), transverseSeries},
        {4, mercatorParameters, 70.0, 15.0, within(88.0), transverseSeries},
        {5, mercatorParameters, 70.0, 179.0, within(88.0), mercatorStop},
        {6, hotineParameters, 60.0, 15.0, near(15.0), mercatorStop},
        // Within the clamp of 89 degrees over the largest latitude scale factor of 1.5.
        {7, mercatorParameters, 70.0, 179.0, within(59.0), mercatorStop},
        {8, polarParameters, 90.0, 179.0, fromPole(120.0), stereographicStop},
        {9, polarParameters, 90.0, 179.0, fromPole(70.0), nothing},
        {10, polarParameters, 90.0, 179.0, fromPole(170.0), nothing},
        {11, equirectangularParameters, 0.0, 179.0, within(89.0), nothing},
        {12, swissParameters, 45.0, 30.0, near(15.0), nothing},
        {13, mercatorParameters, 70.0, 1.0, within(60.0), cassiniDivisor},
        {15, mercatorParameters, 70.0, 179.0, within(88.0), mercatorStop},
    };
    return all;
}

Choice randomChoice(const Subject& subject, RandomNumbers& random) {
    const EllipsoidSize size{"Random", random.between(1e3, 1e8), random.between(0.0, 0.02)};
    const double lambda0 = random.between(-180.0, 180.0);
    const double latitude = signedBetween(random, 10.0, std::fmax(subject.latitudes, 10.0));
    MadeProjection projection(subject.typeCode, size, subject.parameters(random, lambda0, latitude, size.e2));
    // The modified direct Mercator takes its factor behind the constants, which need it.
    projection->initConstants();
    projection->rename(TQString("Random"));
    return {std::move(projection), lambda0, latitude};
}

TQPoint randomPoint(const Subject& subject, const Choice& choice, RandomNumbers& random) {
    const double fromMeridian = random.between(-subject.longitudesReach, subject.longitudesReach);
    return {tq_deg2rad(choice.lambda0 + fromMeridian), tq_deg2rad(subject.point(random, choice.latitude))};
}

std::uint64_t bits(double number) { return std::bit_cast<std::uint64_t>(number); }

} // namespace

class EveryProjection : public testing::TestWithParam<Subject> {
  protected:
    static int typeCode() { return GetParam().typeCode; }

    static void expectConvertsAlike(const TQProjection& one, const TQProjection& other, const TQPoint& geo) {
        TQPoint global;
        TQPoint otherGlobal;
        one.convertGeoPt(geo, global);
        other.convertGeoPt(geo, otherGlobal);
        ASSERT_EQ(bits(global.x), bits(otherGlobal.x));
        ASSERT_EQ(bits(global.y), bits(otherGlobal.y));
        TQPoint back;
        TQPoint otherBack;
        one.convertGlobalPt(global, back);
        other.convertGlobalPt(global, otherBack);
        ASSERT_EQ(bits(back.x), bits(otherBack.x));
        ASSERT_EQ(bits(back.y), bits(otherBack.y));
    }
};

// On the ground, as an angle: what the class leaves, and the rounding of plane coordinates of which false
// origins may be the larger part (1e7 m, 2e-9 m, over the radius).
TEST_P(EveryProjection, ThereAndBackIsTheSamePoint) {
    RandomNumbers random(7);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const double e2 = choice.projection.ellipsoid().eccentricitySquared();
        const double a = choice.projection.ellipsoid().semiMajorAxis();
        const double rounding = 1e-14 + 4.0 * 2e-9 / a / 0.3;
        const double allowed = GetParam().left(e2) + rounding;
        for (int j = 0; j < kPointsPerChoice; ++j) {
            const TQPoint geo = randomPoint(GetParam(), choice, random);
            TQPoint global;
            TQPoint back;
            ASSERT_EQ(choice.projection->convertGeoPt(geo, global), 0);
            ASSERT_EQ(choice.projection->convertGlobalPt(global, back), 0);
            ASSERT_LE(groundAngle(geo, back), allowed)
                << "longitude " << tq_rad2deg(geo.x) << ", latitude " << tq_rad2deg(geo.y) << ", e2 " << e2
                << ", a " << a << ", central " << choice.lambda0 << " " << choice.latitude;
        }
    }
}

TEST_P(EveryProjection, ACopyConvertsLikeItsSourceBitForBit) {
    RandomNumbers random(8);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const auto copy = tq_copyOf(*choice.projection);
        EXPECT_TRUE(copy->isEqual(&*choice.projection));
        for (int j = 0; j < kPointsPerChoice; ++j) {
            ASSERT_NO_FATAL_FAILURE(
                expectConvertsAlike(*choice.projection, *copy, randomPoint(GetParam(), choice, random)));
        }
    }
}

TEST_P(EveryProjection, ItsArchiveBringsItBackBitForBit) {
    RandomNumbers random(9);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const std::string bytes = archivedBytes(*choice.projection);
        ByteStream stream(bytes);
        const auto read = tq_newProjectionOfType(typeCode());
        read->unarchiveFrom(stream.get());
        read->setEllipsoid(&choice.projection.ellipsoid());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_TRUE(read->isEqual(&*choice.projection));
        EXPECT_EQ(archivedBytes(*read), bytes);
        ASSERT_NO_FATAL_FAILURE(
            expectConvertsAlike(*choice.projection, *read, randomPoint(GetParam(), choice, random)));
    }
}

// A file keeps ten or six decimals: the same definition comes back, and the same file is written again.
TEST_P(EveryProjection, ItsFileBringsItsDefinitionBack) {
    RandomNumbers random(10);
    for (int i = 0; i < kChoices / 10; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        const std::string text = writtenProjectionText(*choice.projection);
        const auto read = tq_newProjectionOfType(typeCode());
        ASSERT_EQ(readProjectionText(*read, text), 0);
        EXPECT_EQ(writtenProjectionText(*read), text);
        read->setEllipsoid(&choice.projection.ellipsoid());
        EXPECT_TRUE(read->isEqual(&*choice.projection));
    }
}

TEST_P(EveryProjection, ItsOwnParametersMakeItAnew) {
    RandomNumbers random(11);
    for (int i = 0; i < kChoices; ++i) {
        const Choice choice = randomChoice(GetParam(), random);
        HashTbl<TQProjParam> table(7);
        choice.projection->getParams(table);
        const auto made = tq_newProjectionOfType(typeCode());
        made->setEllipsoid(&choice.projection.ellipsoid());
        made->setParams(table);
        made->initConstants();
        EXPECT_TRUE(made->isEqual(&*choice.projection));
        EXPECT_EQ(archivedBytes(*made), archivedBytes(*choice.projection));
        ASSERT_NO_FATAL_FAILURE(
            expectConvertsAlike(*choice.projection, *made, randomPoint(GetParam(), choice, random)));
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
        convertAll({typeCode(), size});
    }
    for (const double k0 : {0.0, -1.0, 1e-300, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({typeCode(), wgs84, {{"k0", k0}}});
    }
    for (const double a : {0.0, -6378137.0, 1e-300, 1e300, HUGE_VAL, std::nan("")}) {
        const EllipsoidSize size{"Degenerate", a, 0.00669438};
        convertAll({typeCode(), size});
    }
    for (const double phi0 : {90.0, -90.0, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({typeCode(), wgs84, {{"phi0", phi0}}});
    }
    for (const double lambda0 : {1e5, 1e300, HUGE_VAL, std::nan("")}) {
        convertAll({typeCode(), wgs84, {{"lambda0", lambda0}}});
    }
}

// The abridged Molodensky formulas divide by the cosine of the latitude: at a pole a translation by 100 m
// becomes a longitude of some 1e11 rad, which must not be brought back turn by turn.
TEST_P(EveryProjection, ConversionsEndAtThePolesWithAThreeParameterShift) {
    const CapturedMessages messages;
    const MadeProjection projection(typeCode(), international1924);
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

INSTANTIATE_TEST_SUITE_P(TypeCodes, EveryProjection, testing::ValuesIn(subjects()),
                         [](const auto& instance) { return std::to_string(instance.param.typeCode); });

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
