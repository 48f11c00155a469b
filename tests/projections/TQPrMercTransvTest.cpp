#include "projections/TQPrMercTransv.h"

#include "testing/CapturedMessages.h"
#include "testing/EvenSteps.h"
#include "testing/MercatorSample.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;

ProjectionClass mercTransv() {
    ProjectionClass transverse = mercatorClass<TQPrMercTransv>();
    transverse.lineage = {"TQPrMercTransv", "TQPrMercator", "TQProjection"};
    transverse.typeCode = 4;
    transverse.typeName = "Transverse Mercator";
    transverse.archive =
        StreamBytes().tag("TQPrMercTransv", 1).append(mercatorArchive()).append(mercatorValues());
    transverse.tags = {{"TQPrMercTransv", 0, 1}, {"TQPrMercator", 0, 0}, {"TQProjection", 0, 1}};
    transverse.wktItems = mercatorWktItems("Transverse_Mercator");
    return transverse;
}

double rad(double degrees) { return degrees * kPi / 180.0; }

TQPoint forward(const TQProjection& projection, double longitude, double latitude) {
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{longitude, latitude}, global), 0);
    return global;
}

TQPoint inverse(const TQProjection& projection, double x, double y) {
    TQPoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{x, y}, geo), 0);
    return geo;
}

void set(TQProjection& projection, const char* name, double value) {
    ParameterTable parameters;
    projection.setParams(parameters.with(name, value).table());
}

/// On a sphere of radius 1 without false easting: the closed formulas of the sphere hold.
class TQPrMercTransvOnUnitSphere : public testing::Test {
  protected:
    TQPrMercTransvOnUnitSphere() {
        set(projection, "X0", 0.0);
        projection.setEllipsoid(&sphere);
    }

    TQEllipsoid sphere{TQString("Unit sphere"), 1.0, 0.0};
    TQPrMercTransv projection;
};

// The constants of the ellipsoid, as the series in powers of its squared eccentricity give them.
constexpr double kE2 = 0.0199;
constexpr double kE4 = kE2 * kE2;
constexpr double kE6 = kE4 * kE2;
constexpr double kE8 = kE4 * kE4;
constexpr double kM1 = 1 - kE2 / 4 - 3 * kE4 / 64 - 5 * kE6 / 256 - 175 * kE8 / 16384;
constexpr double kM2 = -3 * kE2 / 8 - 3 * kE4 / 32 - 45 * kE6 / 1024 - 105 * kE8 / 4096;
constexpr double kM3 = 15 * kE4 / 256 + 45 * kE6 / 1024 + 525 * kE8 / 16384;
constexpr double kM4 = -35 * kE6 / 3072 - 175 * kE8 / 12288;
constexpr double kM5 = 315 * kE8 / 131072;
constexpr double kAlpha[] = {
    kE2 / 8 - kE4 / 96 - 9 * kE6 / 1024 - 901 * kE8 / 184320,
    13 * kE4 / 768 + 17 * kE6 / 5120 - 311 * kE8 / 737280,
    61 * kE6 / 15360 + 899 * kE8 / 430080,
    49561 * kE8 / 41287680,
};
constexpr double kBeta[] = {
    kE2 / 8 + kE4 / 48 + 7 * kE6 / 2048 + kE8 / 61440,
    kE4 / 768 + 3 * kE6 / 1280 + 559 * kE8 / 368640,
    17 * kE6 / 30720 + 283 * kE8 / 430080,
    4397 * kE8 / 41287680,
};
constexpr double kAxis = 6400000.0;

double meridianArc(double latitude) {
    return kM1 * latitude + kM2 * std::sin(2 * latitude) + kM3 * std::sin(4 * latitude) +
           kM4 * std::sin(6 * latitude) + kM5 * std::sin(8 * latitude);
}

double isometricLatitude(double latitude, double e) {
    const double limit = rad(89.0);
    const double held = std::min(std::max(latitude, -limit), limit);
    return std::log(std::tan(held / 2 + kPi / 4)) -
           e / 2 * std::log((1 + e * std::sin(held)) / (1 - e * std::sin(held)));
}

/// The forward formulas written out term by term, central meridian 0.
TQPoint writtenOut(double longitude, double latitude, double aK0, const TQPoint& falseOrigin) {
    const double q = isometricLatitude(latitude, std::sqrt(kE2));
    const double xi = std::atan(std::sinh(q) / std::cos(longitude));
    const double eta = isometricLatitude(std::asin(std::sin(longitude) / std::cosh(q)), 0.0);
    TQPoint global{falseOrigin.x + aK0 * kM1 * eta, falseOrigin.y + aK0 * kM1 * xi};
    for (int j = 1; j <= 4; ++j) {
        global.x += aK0 * kAlpha[j - 1] * std::cos(2 * j * xi) * std::sinh(2 * j * eta);
        global.y += aK0 * kAlpha[j - 1] * std::sin(2 * j * xi) * std::cosh(2 * j * eta);
    }
    return global;
}

/// The inverse formulas written out term by term up to the conformal latitude, central meridian 0.
TQPoint writtenOutToConformal(double u, double v, double aK0) {
    const double k = kM1 * aK0;
    double xi = v / k;
    double eta = u / k;
    for (int j = 1; j <= 4; ++j) {
        xi -= kBeta[j - 1] * std::sin(2 * j * v / k) * std::cosh(2 * j * u / k);
        eta -= kBeta[j - 1] * std::cos(2 * j * v / k) * std::sinh(2 * j * u / k);
    }
    return {std::atan2(std::sinh(eta), std::cos(xi)),
            isometricLatitude(std::asin(std::sin(xi) / std::cosh(eta)), 0.0)};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrMercTransv, ProjectionClassTest, testing::Values(mercTransv()));

TEST_F(TQPrMercTransvOnUnitSphere, IsTheClosedFormulaOfTheSphere) {
    for (const double latitude : {-1.2, -0.3, 0.0, 0.5, 1.4}) {
        for (const double longitude : {-1.0, -0.2, 0.0, 0.7}) {
            const TQPoint global = forward(projection, longitude, latitude);
            EXPECT_NEAR(global.x, std::atanh(std::cos(latitude) * std::sin(longitude)), 1e-14);
            EXPECT_NEAR(global.y, std::atan(std::tan(latitude) / std::cos(longitude)), 1e-14);
            const TQPoint geo = inverse(projection, global.x, global.y);
            EXPECT_NEAR(geo.x, longitude, 1e-13);
            EXPECT_NEAR(geo.y, latitude, 1e-11);
        }
    }
}

TEST_F(TQPrMercTransvOnUnitSphere, TheInverseDoesNotWrapLongitudes) {
    set(projection, "lambda0", 350.0);
    EXPECT_NEAR(inverse(projection, std::atanh(std::sin(0.5)), 0.0).x, rad(350.0) + 0.5, 1e-13);
}

TEST_F(TQPrMercTransvOnUnitSphere, PointsBesideThePoleOfTheProjectionAreHeld) {
    const double held = isometricLatitude(rad(89.0), 0.0);
    EXPECT_NEAR(forward(projection, kPi / 2.0, 0.0).x, held, 1e-12);
    EXPECT_NEAR(forward(projection, rad(89.5), 0.0).x, held, 1e-12);
    EXPECT_NEAR(forward(projection, -rad(89.5), 0.0).x, -held, 1e-12);
}

TEST_F(TQPrMercTransvOnUnitSphere, LatitudesComeBackNoHigherThanThatOfTheClamp) {
    EXPECT_NEAR(inverse(projection, 0.0, kPi / 2.0).y, rad(89.0), 1e-11);
    EXPECT_NEAR(inverse(projection, 0.0, -kPi / 2.0).y, -rad(89.0), 1e-11);
}

TEST(TQPrMercTransv, TheOriginIsTheFalseOrigin) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    set(projection, "lambda0", 9.0);
    set(projection, "Y0", -1234.5);
    EXPECT_EQ(forward(projection, rad(9.0), 0.0), (TQPoint{500000.0, -1234.5}));
}

TEST(TQPrMercTransv, ThePointOfTheCentralMeridianOnTheEquatorLiesTheArcOfTheOriginBelow) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    set(projection, "k0", 0.9996);
    set(projection, "phi0", 49.0);
    set(projection, "Y0", -100000.0);
    const TQPoint global = forward(projection, 0.0, 0.0);
    EXPECT_EQ(global.x, 500000.0);
    EXPECT_NEAR(global.y, -100000.0 - kAxis * 0.9996 * meridianArc(rad(49.0)), 1e-8);
}

TEST(TQPrMercTransv, IsTheSeriesWrittenOut) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    set(projection, "k0", 0.9996);
    set(projection, "Y0", 1e6);
    for (const double latitude : {-80.0, -45.0, -3.0, 0.0, 20.0, 60.0, 85.0, 89.5}) {
        for (const double longitude : {-60.0, -6.0, -0.5, 0.0, 3.0, 30.0, 75.0}) {
            const TQPoint global = forward(projection, rad(longitude), rad(latitude));
            const TQPoint expected =
                writtenOut(rad(longitude), rad(latitude), kAxis * 0.9996, TQPoint{500000.0, 1e6});
            EXPECT_NEAR(global.x, expected.x, 2e-8) << longitude << " " << latitude;
            EXPECT_NEAR(global.y, expected.y, 2e-8) << longitude << " " << latitude;
        }
    }
}

TEST(TQPrMercTransv, ItsInverseIsTheSeriesWrittenOut) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    set(projection, "k0", 0.9996);
    set(projection, "Y0", 1e6);
    for (const double v : {-8e6, -2e6, 0.0, 1e6, 5e6, 9e6}) {
        for (const double u : {-3e6, -5e5, 0.0, 1e5, 4e6}) {
            const TQPoint geo = inverse(projection, 500000.0 + u, 1e6 + v);
            const TQPoint expected = writtenOutToConformal(u, v, kAxis * 0.9996);
            EXPECT_NEAR(geo.x, expected.x, 1e-13) << u << " " << v;
            EXPECT_NEAR(isometricLatitude(geo.y, std::sqrt(kE2)), expected.y, 1e-9) << u << " " << v;
        }
    }
}

TEST(TQPrMercTransv, InvertsWithinItsDomain) {
    TQEllipsoid ellipsoid(TQString("WGS 84"), 6378137.0, 0.00669437999014);
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    for (const double latitude : evenSteps(-80.0, 80.0, 21)) {
        for (const double longitude : evenSteps(-30.0, 30.0, 13)) {
            const TQPoint global = forward(projection, rad(longitude), rad(latitude));
            const TQPoint geo = inverse(projection, global.x, global.y);
            EXPECT_NEAR(geo.x, rad(longitude), 1e-10);
            EXPECT_NEAR(geo.y, rad(latitude), 1e-10);
        }
    }
}

TEST(TQPrMercTransv, FarFromTheAxisTheInverseFailsInsteadOfRunningForEver) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    const CapturedMessages messages;
    TQAnglePoint geo(1.0, 1.0, 0x12000001);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1e12, 1e12}, geo, 0x12000001), -1);
    EXPECT_EQ(geo, TQAnglePoint(0.0, 0.0, 0x12000001));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::convertGlobalPt: out od scope error"));
}

TEST(TQPrMercTransv, ConvertsOnTheDatumOfItsEllipsoid) {
    TQEllipsoid sphere(TQString("Unit sphere"), 1.0, 0.0);
    sphere.setDatumShift(TQEllipsoid::ThreeParameterShift, 1.0, 0.0, {0.0, 0.0, 0.01});
    TQPrMercTransv projection;
    projection.setEllipsoid(&sphere);
    EXPECT_NEAR(forward(projection, 0.0, 0.0).y, 0.01, 1e-15);
    EXPECT_NEAR(inverse(projection, 500000.0, 0.0).y, -0.01, 1e-11);
}

TEST(TQPrMercTransv, ReadsTheArchiveOfVersionZero) {
    const CapturedMessages messages;
    ByteStream stream(
        StreamBytes().tag("TQPrMercTransv", 0).append(oldSampleBaseArchive()).append(mercatorValues()));
    TQPrMercTransv projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(), IsEmpty());
    ASSERT_NE(projection.name(), nullptr);
    EXPECT_EQ(*projection.name(), kSampleName);
    TQEllipsoid ellipsoid = sampleEllipsoid();
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(archivedBytes(projection), mercTransv().archive.bytes());
}

TEST(TQPrMercTransv, TheArchiveOfVersionZeroMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    const StreamBytes bytes =
        StreamBytes().tag("TQPrMercTransv", 0).append(oldSampleBaseArchive()).append(mercatorValues());
    expectEveryCutIsNoticed(bytes.bytes(),
                            [](TQReadStream* stream) { TQPrMercTransv().unarchiveFrom(stream); });
}

// The parameters stand twice; those behind the Mercator block are the last word.
TEST(TQPrMercTransv, TheSecondSetOfParametersInItsArchiveCounts) {
    ByteStream stream(
        StreamBytes().tag("TQPrMercTransv", 1).append(mercatorArchive()).numbers({1.0, 2.0, 3.0, 4.0, 0.5}));
    TQPrMercTransv projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    for (const auto& [name, value] :
         {std::pair{"lambda0", "1"}, {"phi0", "2"}, {"X0", "3"}, {"Y0", "4"}, {"k0", "0.5"}}) {
        EXPECT_EQ(parameterOf(projection, name), value);
    }
}

TEST(TQPrMercTransv, MeridiansAndParallelsAreCurves) {
    EXPECT_EQ(TQPrMercTransv().meridianShape(), 2);
    EXPECT_EQ(TQPrMercTransv().parallelShape(), 2);
}

TEST(TQPrMercTransv, LatitudesMayPassAPoleByATenMillionth) {
    const TQPrMercTransv projection;
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{100.0, kPi / 2.0 + 0.99e-7}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, kPi / 2.0 + 1.01e-7}));
}

TEST(TQPrMercTransv, ReadersLeaveTheConstantsToTheAttachingOfTheEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercTransv projection;
    projection.setEllipsoid(&ellipsoid);
    const double before = forward(projection, 0.1, 0.0).x;
    ByteStream stream(mercTransv().archive);
    projection.unarchiveFrom(stream.get());
    projection.setEllipsoid(nullptr);
    EXPECT_EQ(projection.ellipsoid(), nullptr);
    projection.setEllipsoid(&ellipsoid);
    EXPECT_NE(forward(projection, 0.1, 0.0).x, before);
}
