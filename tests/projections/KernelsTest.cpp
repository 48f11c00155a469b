// Many points on every instruction set that the machine has, beside the same points one by one.

#include "projection/TQProjection.h"
#include "support/TQUnit.h"
#include "testing/Batches.h"
#include "testing/CapturedMessages.h"
#include "testing/InstructionSets.h"
#include "testing/MadeProjection.h"
#include "testing/ProcessState.h"
#include "testing/RandomNumbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

using testing::Each;

namespace {

enum class Way { ToPlane, ToGeographic };

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kOneOf = 5; // points, which take so much longer under the sanitizer
#else
constexpr std::size_t kOneOf = 1;
#endif

/// An ellipsoid for which the series in the eccentricity do not hold.
constexpr EllipsoidSize kFlat{"Flat", 6378137.0, 0.3};

/// A projection of a class with kernels, and an area that it is good in, in degrees.
struct KernelCase {
    const char* name;
    int typeCode;
    EllipsoidSize size;
    std::vector<MadeProjection::Parameter> parameters;
    double west, east, south, north;
    bool isVariant = false; ///< of a class that is tested with more points already

    friend void PrintTo(const KernelCase& test, std::ostream* out) { *out << test.name; }
};

const std::vector<MadeProjection::Parameter> kSecantCone{
    {"Tangent", 0.0}, {"lambda0", 3.0}, {"latitudeOrigin", 46.5}, {"stdPar1", 49.0}, {"stdPar2", 44.0}};
const std::vector<MadeProjection::Parameter> kHotine{
    {"HotineFlag", 1.0},           {"longitudeCenter", 102.25},   {"latitudeCenter", 4.0},
    {"azimuth", 323.025796466667}, {"bearing", 323.130102361111}, {"kc", 0.99984}};
const std::vector<MadeProjection::Parameter> kHotineFromCentre{{"AzimuthAtOriginFlag", 1.0},
                                                               {"longitudeCenter", 115.0},
                                                               {"latitudeCenter", 4.0},
                                                               {"azimuth", 53.0},
                                                               {"bearing", 53.0},
                                                               {"kc", 0.99984}};
const std::vector<MadeProjection::Parameter> kSwiss{
    {"longitudeCenter", 7.43958333333333}, {"latitudeCenter", 46.9524055555556}, {"kc", 1.0}};

std::vector<KernelCase> kernelCases() {
    return {
        {"TransverseMercator", 4, airy1830, {{"lambda0", -2.0}, {"phi0", 49.0}}, -9.0, 3.0, -80.0, 84.0},
        {"TransverseMercatorFlat",
         4,
         kFlat,
         {{"lambda0", -2.0}, {"phi0", 49.0}},
         -9.0,
         3.0,
         -80.0,
         84.0,
         true},
        {"GaussKruger", 1, bessel1841, {{"lambda0", 9.0}, {"X0", 3500000.0}}, 5.0, 13.0, -80.0, 84.0},
        {"Utm", 3, wgs84, {{"lambda0", 3.0}, {"hemisphere", 1.0}}, -3.0, 9.0, -80.0, 84.0},
        {"DirectMercator", 5, wgs84, {{"X0", 0.0}}, -180.0, 180.0, -80.0, 84.0},
        {"DirectMercatorFlat", 5, kFlat, {{"X0", 0.0}}, -180.0, 180.0, -80.0, 84.0, true},
        {"GctpMercator", 15, wgs84, {{"X0", 0.0}, {"phi0", 42.0}}, -180.0, 180.0, -80.0, 84.0},
        {"ModifiedMercator",
         7,
         wgs84,
         {{"X0", 0.0}, {"_latitudeScaleFactor", 0.9}},
         -180.0,
         180.0,
         -80.0,
         84.0},
        {"Lambert", 2, grs1980, kSecantCone, -9.0, 10.0, 41.0, 51.0},
        {"LambertFlat", 2, kFlat, kSecantCone, -9.0, 10.0, 41.0, 51.0, true},
        {"Bonne", 0, wgs84, {{"lambda0", 2.0}, {"standardParallel", 45.0}}, -5.0, 8.0, 42.0, 51.0},
        {"BonneSouth",
         0,
         wgs84,
         {{"lambda0", 2.0}, {"standardParallel", -45.0}},
         -5.0,
         8.0,
         -51.0,
         -42.0,
         true},
        {"ObliqueMercator", 6, everest1830, kHotine, 99.0, 105.0, 1.0, 7.0},
        {"ObliqueMercatorFromCentre", 6, everest1830, kHotineFromCentre, 109.0, 120.0, 1.0, 8.0, true},
        {"SwissObliqueMercator", 12, bessel1841, kSwiss, 5.9, 10.5, 45.8, 47.8},
        {"CassiniSoldner", 13, wgs84, {{"lambda0", -61.5}, {"phi0", 10.5}}, -62.0, -60.0, 9.8, 11.5},
        {"EquiRectangular",
         11,
         wgs84,
         {{"isFactor", 0.0}, {"factor_phiRef", 40.0}},
         -180.0,
         180.0,
         -89.0,
         89.0},
        {"PolarStereographic", 8, wgs84, {{"k0", 0.994}}, -180.0, 180.0, 60.0, 89.9},
        {"PolarStereographicSouth",
         8,
         wgs84,
         {{"isNorth", 0.0}, {"k0", 0.994}},
         -180.0,
         180.0,
         -89.9,
         -60.0,
         true},
        {"PolarStereographicFlat", 8, kFlat, {{"k0", 0.994}}, -180.0, 180.0, 60.0, 89.9, true},
        {"PolarAzimuthal", 10, wgs84, {}, -180.0, 180.0, 0.0, 89.9},
        {"PolarAzimuthalSouth", 10, wgs84, {{"isNorth", 0.0}}, -180.0, 180.0, -89.9, 0.0, true},
        {"Gnomonic", 9, wgs84, {}, -180.0, 180.0, 30.0, 89.9},
    };
}

std::unique_ptr<TQProjection> copyOf(const TQProjection& projection) {
    return std::unique_ptr<TQProjection>(dynamic_cast<TQProjection*>(projection.copy().release()));
}

class Kernels : public testing::TestWithParam<KernelCase> {
  protected:
    const TQProjection& projection() const { return *_projection; }

    std::vector<TQPoint> pointsInTheArea(std::size_t count) const {
        RandomNumbers random(7);
        const KernelCase& test = GetParam();
        std::vector<TQPoint> points;
        points.reserve(count);
        while (points.size() < count) {
            points.push_back({tq_deg2rad(random.between(test.west, test.east)),
                              tq_deg2rad(random.between(test.south, test.north))});
        }
        return points;
    }

    std::vector<TQPoint> imagesOf(const std::vector<TQPoint>& points) const {
        std::vector<TQPoint> images(points.size());
        EXPECT_EQ(projection().convertGeoPts(points, images), points.size());
        return images;
    }

    std::vector<TQPoint> originalsOf(const std::vector<TQPoint>& points) const {
        std::vector<TQPoint> originals(points.size());
        EXPECT_EQ(projection().convertGlobalPts(points, originals), points.size());
        return originals;
    }

    std::size_t convert(Way way, std::span<const TQPoint> in, std::span<TQPoint> out,
                        std::span<signed char> statuses = {}) const {
        return way == Way::ToPlane ? projection().convertGeoPts(in, out, statuses)
                                   : projection().convertGlobalPts(in, out, statuses);
    }

    SingleResult alone(Way way, const TQPoint& in) const {
        TQPoint result;
        if (way == Way::ToPlane) {
            return projection().convertGeoPt(in, result) == 0 ? taken(result) : refused();
        }
        const bool has = projection().convertGlobalPt(in, result) == 0 && std::isfinite(result.x) &&
                         std::isfinite(result.y);
        return has ? taken(result) : refused();
    }

    void expectEachAsAlone(Way way, const std::vector<TQPoint>& points) const {
        std::vector<TQPoint> out(points.size());
        std::vector<signed char> statuses(points.size(), 99);
        const std::size_t converted = convert(way, points, out, statuses);
        expectLikeSingle(points, out, statuses, converted,
                         [&](const TQPoint& point) { return alone(way, point); });
        std::vector<TQPoint> inPlace = points;
        EXPECT_EQ(convert(way, inPlace, inPlace), converted);
        EXPECT_TRUE(std::ranges::equal(inPlace, out, [](const TQPoint& one, const TQPoint& other) {
            return isSame(one.x, other.x) && isSame(one.y, other.y);
        }));
    }

    void shiftDatum(TQEllipsoid::DatumShiftKind kind) {
        _projection.ellipsoid().setDatumShift(kind, 6378137.0, 1.0 / 298.257223563,
                                              {598.1, 73.7, 418.2, 1e-6, 2e-7, -1.2e-5, 6.7});
    }

    void takeEllipsoidAway() { _projection->setEllipsoid(nullptr); }

  private:
    MadeProjection _projection{GetParam().typeCode, GetParam().size, GetParam().parameters};
};

// A million points for each class, half of them in the area and half of them anywhere or nowhere.
TEST_P(Kernels, GiveEveryPointTheBitsThatItGetsAlone) {
    const CapturedMessages messages;
    const struct {
        TQEllipsoid::DatumShiftKind kind;
        std::size_t count;
    } runs[] = {{TQEllipsoid::NoDatumShift, 300'000},
                {TQEllipsoid::ThreeParameterShift, 100'000},
                {TQEllipsoid::SevenParameterShift, 100'000}};
    for (const auto& [kind, count] : runs) {
        shiftDatum(kind);
        const std::size_t half = count / kOneOf / (GetParam().isVariant ? 10 : 1);
        const std::vector<TQPoint> ordinary = pointsInTheArea(half);
        for (const TQInstructionSet set : instructionSetsHere()) {
            const InstructionSetInUse inUse(set);
            for (const Way way : {Way::ToPlane, Way::ToGeographic}) {
                expectEachAsAlone(way, ordinary);
                expectEachAsAlone(way, mixedPoints(half, 11));
            }
        }
    }
}

TEST_P(Kernels, GiveAPointTheSameWhereverItStands) {
    constexpr std::size_t count = 67;
    const std::vector<TQPoint> geo = pointsInTheArea(count);
    const std::vector<TQPoint> global = imagesOf(geo);
    struct Shifted { // points that begin at a multiple of 16 bytes, and those that do not
        alignas(16) double before = 0.0;
        TQPoint points[count];
    };
    static_assert(offsetof(Shifted, points) % 16 == 8);
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        for (const Way way : {Way::ToPlane, Way::ToGeographic}) {
            const std::vector<TQPoint>& points = way == Way::ToPlane ? geo : global;
            std::vector<TQPoint> alone = points;
            for (TQPoint& point : alone) {
                EXPECT_EQ(convert(way, {&point, 1}, {&point, 1}), 1U);
            }
            for (std::size_t length = 0; length <= count; ++length) {
                for (std::size_t begin = 0; begin + length <= count && begin < 9; ++begin) {
                    const std::span<const TQPoint> in = std::span(points).subspan(begin, length);
                    Shifted shifted;
                    std::ranges::copy(in, shifted.points);
                    const std::span<TQPoint> inPlace = std::span(shifted.points).first(length);
                    EXPECT_EQ(convert(way, inPlace, inPlace), length);
                    std::vector<TQPoint> out(length);
                    EXPECT_EQ(convert(way, in, out), length);
                    for (std::size_t index = 0; index < length; ++index) {
                        ASSERT_EQ(inPlace[index], alone[begin + index]);
                        ASSERT_EQ(out[index], alone[begin + index]);
                    }
                }
            }
        }
    }
}

// Each thread has a copy of its own, as some classes compute their constants when they are first needed.
TEST_P(Kernels, ServeSeveralThreads) {
    const std::vector<TQPoint> points = pointsInTheArea(2000);
    const std::vector<TQPoint> images = imagesOf(points);
    const std::vector<TQPoint> originals = originalsOf(images);
    std::vector<std::thread> threads;
    std::vector<char> agrees(4, 0);
    for (char& agreed : agrees) {
        threads.emplace_back([&, copy = copyOf(projection())] {
            std::vector<TQPoint> out(points.size());
            copy->convertGeoPts(points, out);
            agreed = out == images ? 1 : 0;
            copy->convertGlobalPts(images, out);
            agreed = agreed != 0 && out == originals ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(agrees, Each(1));
}

// What is left between the library of the platform and SLEEF is their rounding: some units in the last place
// of intermediate numbers of the size of the ellipsoid.
TEST_P(Kernels, AgreeOnEveryInstructionSet) {
    constexpr double metres = 3e-15 * 6378137.0;
    constexpr double radians = 1e-14;
    for (const auto kind :
         {TQEllipsoid::NoDatumShift, TQEllipsoid::ThreeParameterShift, TQEllipsoid::SevenParameterShift}) {
        shiftDatum(kind);
        const std::vector<TQPoint> points = pointsInTheArea(20'000);
        const InstructionSetInUse baseline(TQInstructionSet::Baseline);
        const std::vector<TQPoint> images = imagesOf(points);
        const std::vector<TQPoint> originals = originalsOf(images);
        for (const TQInstructionSet set : instructionSetsHere()) {
            const InstructionSetInUse inUse(set);
            const std::vector<TQPoint> imagesHere = imagesOf(points);
            const std::vector<TQPoint> originalsHere = originalsOf(images);
            for (std::size_t index = 0; index < points.size(); ++index) {
                ASSERT_NEAR(images[index].x, imagesHere[index].x, metres);
                ASSERT_NEAR(images[index].y, imagesHere[index].y, metres);
                ASSERT_NEAR(originals[index].x, originalsHere[index].x, radians);
                ASSERT_NEAR(originals[index].y, originalsHere[index].y, radians);
            }
        }
    }
}

TEST_P(Kernels, RefuseEveryPointWithoutAnEllipsoid) {
    const bool needsOne = GetParam().typeCode != 11;
    const std::vector<TQPoint> points = pointsInTheArea(20);
    takeEllipsoidAway();
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        std::vector<TQPoint> out(points.size());
        std::vector<signed char> statuses(points.size(), 99);
        EXPECT_EQ(projection().convertGeoPts(points, out, statuses), needsOne ? 0U : points.size());
        EXPECT_THAT(statuses, Each(needsOne ? -1 : 0));
        EXPECT_EQ(projection().convertGlobalPts(points, out, statuses), needsOne ? 0U : points.size());
        EXPECT_THAT(statuses, Each(needsOne ? -1 : 0));
    }
}

INSTANTIATE_TEST_SUITE_P(Classes, Kernels, testing::ValuesIn(kernelCases()),
                         [](const auto& test) { return std::string(test.param.name); });

/// One point through the entry point of single ones.
TQPoint imageOf(const MadeProjection& projection, double longitude, double latitude) {
    TQPoint image{-1.0, -1.0};
    EXPECT_EQ(projection->convertGeoPt({longitude, latitude}, image), 0);
    return image;
}

TQPoint originalOf(const MadeProjection& projection, double x, double y) {
    TQPoint original{-1.0, -1.0};
    EXPECT_EQ(projection->convertGlobalPt({x, y}, original), 0);
    return original;
}

// 5400 minutes of arc come out one unit in the last place beyond the double next to a right angle.
TEST(RoundedPoles, ALatitudeThatRoundingLedPastThePoleIsAtIt) {
    const double minutes = TQUnitConversion(TQUnitArcMinute, TQUnitRadian)(5400.0);
    const double pole = std::acos(-1.0) / 2.0;
    ASSERT_GT(minutes, pole);
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        for (const double sign : {1.0, -1.0}) {
            const MadeProjection stereographic(8, wgs84, {{"isNorth", sign == 1.0 ? 1.0 : 0.0}});
            const TQPoint centre = imageOf(stereographic, 0.3, sign * minutes);
            EXPECT_NEAR(centre.x, 0.0, 1e-8);
            EXPECT_NEAR(centre.y, 0.0, 1e-8);
            const MadeProjection hotine(6, everest1830, kHotine);
            EXPECT_TRUE(sign == 1.0 || std::isfinite(imageOf(hotine, 0.3, sign * minutes).x));
        }
        const MadeProjection lambert(2, grs1980, kSecantCone);
        EXPECT_NEAR(imageOf(lambert, 0.3, minutes).y, imageOf(lambert, 0.3, pole).y, 1e-3);
        const MadeProjection swiss(12, bessel1841, kSwiss);
        EXPECT_NEAR(imageOf(swiss, 0.3, minutes).x, imageOf(swiss, 0.3, pole).x, 1e-6);
        EXPECT_NEAR(imageOf(swiss, 0.3, minutes).y, imageOf(swiss, 0.3, pole).y, 1e-6);
    }
}

// The series do not hold there, but tanh of what they give is 1.
TEST(FarPoints, OfTheTransverseMercatorComeBackAtARightAngleFromTheCentralMeridian) {
    const MadeProjection utm(3, wgs84, {{"lambda0", 3.0}, {"hemisphere", 1.0}});
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        for (const double x : {5e7, -5e7, 1e8, -1e8}) {
            for (const double y : {0.0, 4e6, -7e6}) {
                const TQPoint original = originalOf(utm, x, y);
                EXPECT_NEAR(std::abs(original.x - tq_deg2rad(3.0)), std::acos(0.0), 1e-12);
                EXPECT_NEAR(original.y, 0.0, 1e-12);
            }
        }
    }
}

// asin of what is no number, or is not inside ±1, counts as ±90 degrees.
TEST(FarPoints, OfTheSwissObliqueMercatorAreHeldAtItsPoles) {
    const MadeProjection swiss(12, bessel1841, kSwiss);
    const MadeProjection withoutScale(12, bessel1841, {{"latitudeCenter", 46.95}, {"kc", 0.0}});
    const MadeProjection onTheEquator(12, bessel1841, {{"kc", 1.0}});
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        const TQPoint beyond = imageOf(swiss, 0.1, 1.6);
        EXPECT_NEAR(beyond.x / std::acos(0.0), 6378815.9, 0.1); // the radius of the sphere
        EXPECT_GT(beyond.y, 2.3e8);
        EXPECT_NEAR(originalOf(withoutScale, 0.0, 0.0).y, std::acos(0.0), 1e-12);
        EXPECT_EQ(imageOf(onTheEquator, 0.0, -std::acos(0.0)).x, 0.0);
        EXPECT_NEAR(originalOf(onTheEquator, 0.0, 5e9).x, 0.0, 1e-12);
        EXPECT_NEAR(originalOf(onTheEquator, 0.0, 5e9).y, std::acos(0.0), 1e-9);
    }
}

// Along a meridian and beyond the pole, where the longitude turns: with the sign that the published formula
// has.
TEST(FarPoints, OfTheObliqueMercatorBeyondThePoleAreWestOfIt) {
    const MadeProjection hotine(6, wgs84, {{"HotineFlag", 1.0}, {"longitudeCenter", 10.0}, {"kc", 1.0}});
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        EXPECT_LT(originalOf(hotine, 0.0, 1.2e7).x, 0.0);
        EXPECT_GT(originalOf(hotine, 0.0, 1.2e7).x, -std::acos(-1.0));
    }
}

TEST(KernelMessages, APoleOfTheGctpMercatorIsReportedOnceFromAmongManyPoints) {
    const MadeProjection projection(15, wgs84, {{"X0", 0.0}});
    const TQPoint pole{0.1, std::acos(-1.0) / 2.0};
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        const CapturedMessages messages;
        std::vector<TQPoint> points(21, TQPoint{0.1, 0.2});
        points[3] = points[20] = pole;
        std::vector<signed char> statuses(points.size());
        EXPECT_EQ(projection->convertGeoPts(points, points, statuses), 19U);
        for (std::size_t index = 0; index < points.size(); ++index) {
            EXPECT_EQ(statuses[index], index == 3 || index == 20 ? -1 : 0);
            EXPECT_EQ(std::isnan(points[index].x), index == 3 || index == 20);
        }
        EXPECT_THAT(
            messages.lines(),
            testing::ElementsAre(
                "TQPrMercDirectGCTP::convertGeoPt(): Transformation cannot be computed at the poles"));
    }
}

// Sixteen passes are too few on a needle; what is no number has not failed to converge.
TEST(KernelMessages, ALatitudeOfTheGctpMercatorThatDoesNotConvergeIsReportedOnceABatch) {
    constexpr EllipsoidSize needle{"Needle", 6378137.0, 0.9};
    const MadeProjection projection(15, needle, {{"X0", 0.0}});
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        const CapturedMessages messages;
        const double notANumber = refused().point.x;
        std::vector<TQPoint> points(1300, TQPoint{1e5, 1e6});
        std::vector<TQPoint> noNumbers(20, TQPoint{1e5, notANumber});
        EXPECT_EQ(projection->convertGlobalPts(noNumbers, noNumbers), 0U);
        EXPECT_THAT(messages.lines(), testing::IsEmpty());
        EXPECT_EQ(projection->convertGlobalPts(points, points), points.size());
        EXPECT_THAT(
            messages.lines(),
            testing::ElementsAre("phi2z(): Convergence error",
                                 "TQPrMercDirectGCTP::convertGlobalPt(): Transformation cannot be computed"));
    }
}

TEST(KernelExactness, FamiliarPlacesAreExact) {
    const MadeProjection mercator(5, wgs84, {{"X0", 0.0}});
    const MadeProjection utm(3, wgs84, {{"lambda0", 3.0}, {"hemisphere", 1.0}});
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        std::vector<TQPoint> points(9, TQPoint{0.0, 0.0});
        mercator->convertGeoPts(points, points);
        EXPECT_THAT(points, Each(TQPoint{0.0, 0.0}));
        points.assign(9, TQPoint{tq_deg2rad(3.0), 0.0});
        utm->convertGeoPts(points, points);
        EXPECT_THAT(points, Each(TQPoint{500000.0, 0.0}));
    }
}

// On the sphere of the polar azimuthal a point at a right angle to the central meridian has no northing, and
// the sine of 30 degrees is a half: exactly, as far as the angle in radians is.
TEST(KernelExactness, SinesAndCosinesOfFamiliarAnglesAreThoseOfThePlatform) {
    const MadeProjection azimuthal(10, {"Unit sphere", 1.0, 0.0});
    for (const double degrees : {0.0, 30.0, 45.0, 60.0, 90.0, 120.0, 135.0, 150.0, 180.0}) {
        for (const double angle : {tq_deg2rad(degrees), -tq_deg2rad(degrees)}) {
            const double distance = std::acos(-1.0) / 2.0;
            for (const TQInstructionSet set : instructionSetsHere()) {
                const InstructionSetInUse inUse(set);
                std::vector<TQPoint> points(9, TQPoint{angle, 0.0});
                azimuthal->convertGeoPts(points, points);
                EXPECT_THAT(points, Each(TQPoint{distance * std::sin(angle), -distance * std::cos(angle)}))
                    << degrees;
            }
        }
    }
}

TEST(InstructionSet, TheBaselineIsAlwaysThere) {
    EXPECT_TRUE(TQHasInstructionSet(TQInstructionSet::Baseline));
    EXPECT_TRUE(TQHasInstructionSet(TQGetInstructionSet()));
}

// In a process of its own each, which asks for the first time.
TEST(InstructionSetDeathTest, TheEnvironmentMayNameTheOneInUse) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto setNamed = [](const char* name) {
        const EnvironmentVariable variable("TQ_INSTRUCTION_SET", name);
        std::exit(static_cast<int>(TQGetInstructionSet()));
    };
    const std::vector<TQInstructionSet> sets = instructionSetsHere();
    const int best = static_cast<int>(sets.back());
    const auto orBest = [&](TQInstructionSet set) {
        return TQHasInstructionSet(set) ? static_cast<int>(set) : best;
    };
    EXPECT_EXIT(setNamed("baseline"), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(setNamed("avx2"), testing::ExitedWithCode(orBest(TQInstructionSet::AVX2)), "");
    EXPECT_EXIT(setNamed("avx512"), testing::ExitedWithCode(orBest(TQInstructionSet::AVX512)), "");
    EXPECT_EXIT(setNamed("abacus"), testing::ExitedWithCode(best), "");
}

TEST(InstructionSet, TheOneInUseCanBeChosen) {
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        EXPECT_EQ(TQGetInstructionSet(), set);
    }
}

TEST(InstructionSet, OneThatThereIsNotIsRefused) {
    const TQInstructionSet before = TQGetInstructionSet();
    for (const TQInstructionSet set : {TQInstructionSet::AVX2, TQInstructionSet::AVX512}) {
        if (!TQHasInstructionSet(set)) {
            EXPECT_FALSE(TQSetInstructionSet(set));
            EXPECT_EQ(TQGetInstructionSet(), before);
        }
    }
}

} // namespace
