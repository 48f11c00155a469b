#include "projections/TQPrPolarStereo.h"

#include "projections/PolarSample.h"
#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kA = 6400000.0; // of the sample's ellipsoid
constexpr double kE2 = 0.0199;   // the same
constexpr double kLambda0 = kPolarMeridian * kPi / 180.0;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

ProjectionClass stereographic(bool isNorth) {
    ProjectionClass stereographic =
        polarSample<TQPrPolarStereo>("TQPrPolarStereo", 8, "Polar Stereographic", isNorth);
    stereographic.wktItems =
        std::string(",PROJECTION[\"Polar_Stereographic\"],PARAMETER[\"latitude_of_origin\",") +
        (isNorth ? "90" : "-90") +
        "],PARAMETER[\"central_meridian\",-45.25],PARAMETER[\"scale_factor\",0.994],"
        "PARAMETER[\"false_easting\",2000000],PARAMETER[\"false_northing\",-300000.5]";
    return stereographic;
}

/// Snyder's equations 15-9 and 21-33: the radius of a latitude, positive towards the pole.
double radius(double phi, double a = kA, double e2 = kE2, double k0 = kPolarScale) {
    const double e = std::sqrt(e2);
    const double q = e * std::sin(phi);
    const double t = std::tan(kPi / 4.0 - phi / 2.0) / std::pow((1.0 - q) / (1.0 + q), e / 2.0);
    return 2.0 * a * k0 * t / std::sqrt(std::pow(1.0 + e, 1.0 + e) * std::pow(1.0 - e, 1.0 - e));
}

/// The plane point at a radius, so many radians east of the central meridian.
TQPoint pointAt(double rho, double azimuth, bool isNorth, double falseNorthing = kPolarFalseOrigin.y) {
    const double down = rho * std::cos(azimuth);
    return {kPolarFalseOrigin.x + rho * std::sin(azimuth), falseNorthing + (isNorth ? -down : down)};
}

void take(TQProjection& projection, const char* name, double value) {
    ParameterTable parameters;
    projection.setParams(parameters.with(name, value).table());
}

double radiusOf(const TQProjection& projection, double phi) {
    const TQPoint image = imageOf(projection, {0.0, phi});
    return std::hypot(image.x - kPolarFalseOrigin.x, image.y - kPolarFalseOrigin.y);
}

/// What is left of the latitude when its iteration stops at a change of 1e-6 rad, each pass changing it by
/// e²/(1 - e²) of the one before at most.
constexpr double kLatitudeStop = 1e-6 * kE2 / (1.0 - kE2) / (1.0 - kE2 / (1.0 - kE2));

class TQPrPolarStereoAt : public testing::TestWithParam<bool> {
  protected:
    TQPrPolarStereoAt() {
        _projection.setEllipsoid(&_ellipsoid);
        takePolarSample(_projection, isNorth());
    }

    static bool isNorth() { return GetParam(); }
    static double hemisphere() { return isNorth() ? 1.0 : -1.0; }

    TQEllipsoid _ellipsoid = sampleEllipsoid();
    TQPrPolarStereo _projection;
};

constexpr double kLatitudes[] = {1.57, 1.3, 0.9, 0.4, 0.0, -0.4, -0.9, -1.3};
constexpr double kAzimuths[] = {0.0, 0.7, 2.0, 3.1, -0.4, -1.9, -3.1};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrPolarStereoNorthern, ProjectionClassTest, testing::Values(stereographic(true)));
INSTANTIATE_TEST_SUITE_P(TQPrPolarStereoSouthern, ProjectionClassTest, testing::Values(stereographic(false)));
INSTANTIATE_TEST_SUITE_P(Pole, TQPrPolarStereoAt, testing::Bool());

// ---- formulas --------------------------------------------------------------------------------------------

TEST_P(TQPrPolarStereoAt, ImagesFollowThePublishedRadius) {
    for (const double phi : kLatitudes) {
        for (const double azimuth : kAzimuths) {
            const double rho = radius(phi);
            expectNear(pointAt(rho, azimuth, isNorth()),
                       imageOf(_projection, {kLambda0 + azimuth, hemisphere() * phi}), 1e-8 + 1e-14 * rho);
        }
    }
}

TEST_P(TQPrPolarStereoAt, PointsComeBackWithoutFalseNorthing) {
    take(_projection, "falseNorthing", 0.0);
    for (const double phi : kLatitudes) {
        for (const double azimuth : kAzimuths) {
            const TQPoint geo{kLambda0 + azimuth, hemisphere() * phi};
            expectNear(geo, originalOf(_projection, pointAt(radius(phi), azimuth, isNorth(), 0.0)),
                       kLatitudeStop + 1e-12);
        }
    }
}

// Snyder's equation 7-9 with the stop test, pass by pass.
TEST_P(TQPrPolarStereoAt, TheLatitudeIsThatOfThePassThatChangesItByAMillionthAtMost) {
    take(_projection, "falseNorthing", 0.0);
    for (const double e2 : {0.0066943799901413, kE2, 0.3}) {
        TQEllipsoid ellipsoid(TQString("Other"), kA, e2);
        _projection.setEllipsoid(&ellipsoid);
        _projection.computeConstants();
        const double e = std::sqrt(e2);
        for (const double phi : kLatitudes) {
            const double rho = radius(phi, kA, e2);
            const double c = radius(0.0, kA, e2);
            const double t = std::tan(std::asin((c * c - rho * rho) / (c * c + rho * rho)) / 2.0 + kPi / 4.0);
            double latitude = 2.0 * std::atan(t) - kPi / 2.0;
            double before = 0.0;
            do {
                before = latitude;
                const double s = e * std::sin(latitude);
                latitude = 2.0 * std::atan(t * std::pow((1.0 + s) / (1.0 - s), e / 2.0)) - kPi / 2.0;
            } while (std::abs(latitude - before) > 1e-6);
            EXPECT_NEAR(originalOf(_projection, pointAt(rho, 0.7, isNorth(), 0.0)).y, hemisphere() * latitude,
                        1e-12)
                << phi << " " << e2;
        }
    }
}

// On the sphere the passes change nothing, and the whole is a closed form.
TEST_P(TQPrPolarStereoAt, OnASphereRadiiAreTwiceTheTangentOfHalfTheDistance) {
    TQEllipsoid sphere(TQString("Sphere"), kA, 0.0);
    _projection.setEllipsoid(&sphere);
    take(_projection, "falseNorthing", 0.0);
    for (const double phi : kLatitudes) {
        const double rho = 2.0 * kA * kPolarScale * std::tan((kPi / 2.0 - phi) / 2.0);
        const TQPoint geo{kLambda0 + 0.7, hemisphere() * phi};
        expectNear(pointAt(rho, 0.7, isNorth(), 0.0), imageOf(_projection, geo), 1e-8 + 1e-14 * rho);
        expectNear(geo, originalOf(_projection, pointAt(rho, 0.7, isNorth(), 0.0)), 1e-13);
    }
}

TEST_P(TQPrPolarStereoAt, TheCentreComesBackAsThePole) {
    take(_projection, "falseNorthing", 0.0);
    EXPECT_NEAR(originalOf(_projection, {kPolarFalseOrigin.x, 0.0}).y, hemisphere() * kPi / 2.0, 1e-15);
}

TEST_P(TQPrPolarStereoAt, TheOtherPoleIsFarAway) {
    EXPECT_GT(radiusOf(_projection, -hemisphere() * kPi / 2.0), 1e20);
}

// ---- the south with a false northing ---------------------------------------------------------------------

// The way back adds the false northing where the way there added it too.
TEST(TQPrPolarStereo, TheWayBackFromTheSouthIsOffByTwiceTheFalseNorthing) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrPolarStereo projection;
    projection.setEllipsoid(&ellipsoid);
    takePolarSample(projection, false);
    const TQPoint global = pointAt(radius(1.2), 0.7, false);
    const TQPoint offBy{global.x, global.y + 2.0 * kPolarFalseOrigin.y};
    const TQPoint geo{kLambda0 + 0.7, -1.2};
    const TQPoint back = originalOf(projection, global);
    // The original is that of the point moved by twice the false northing.
    const TQPoint moved = {offBy.x - kPolarFalseOrigin.x, offBy.y - kPolarFalseOrigin.y};
    EXPECT_NEAR(back.x, kLambda0 + std::atan2(moved.x, moved.y), 1e-14);
    EXPECT_NEAR(radius(-back.y), std::hypot(moved.x, moved.y), 2.0 * kA * kLatitudeStop);
    EXPECT_GT(std::abs(back.y - geo.y), 0.01);
    // A point moved the other way comes back.
    expectNear(geo, originalOf(projection, {global.x, global.y - 2.0 * kPolarFalseOrigin.y}),
               kLatitudeStop + 1e-12);
}

TEST(TQPrPolarStereo, PointsOfTheNorthComeBackWithAFalseNorthing) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrPolarStereo projection;
    projection.setEllipsoid(&ellipsoid);
    takePolarSample(projection, true);
    expectNear({kLambda0 + 0.7, 1.2}, originalOf(projection, pointAt(radius(1.2), 0.7, true)),
               kLatitudeStop + 1e-12);
}

// ---- datum shift -----------------------------------------------------------------------------------------

TEST_P(TQPrPolarStereoAt, ShiftsTheMirroredLatitudeToTheDatumOfItsEllipsoid) {
    _ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 1.0 / 298.257223563,
                             {300.0, -200.0, 1000.0, 1e-5, 2e-5, -1e-5, 5.0});
    const TQPoint geo{0.3, hemisphere() * 1.1};
    TQPoint mirrored{0.3, 1.1};
    _ellipsoid.toLocalDatum(mirrored.x, mirrored.y);
    const TQPoint image = imageOf(_projection, geo);
    expectNear(pointAt(radius(mirrored.y), mirrored.x - kLambda0, isNorth()), image, 1e-7);

    TQPoint unmirrored = geo;
    _ellipsoid.toLocalDatum(unmirrored.x, unmirrored.y);
    EXPECT_EQ(std::abs(hemisphere() * unmirrored.y - mirrored.y) < 1e-12, isNorth());
}

TEST_P(TQPrPolarStereoAt, ShiftsTheLatitudeOfThePoleToTheReferenceDatum) {
    take(_projection, "falseNorthing", 0.0);
    const TQPoint global = pointAt(radius(1.1), 0.7, isNorth(), 0.0);
    TQPoint reference = originalOf(_projection, global);
    _ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 1.0 / 298.257223563,
                             {300.0, -200.0, 1000.0, 1e-5, 2e-5, -1e-5, 5.0});
    _ellipsoid.toReferenceDatum(reference.x, reference.y);
    expectNear(reference, originalOf(_projection, global), 1e-15);
}

// ---- constants -------------------------------------------------------------------------------------------

TEST_P(TQPrPolarStereoAt, ChangesActOnlyAfterTheConstantsAreComputed) {
    const double phi = hemisphere() * 1.1;
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
    take(_projection, "k0", 0.5);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
    TQEllipsoid other(TQString("Other"), 3000000.0, 0.3);
    _projection.setEllipsoid(&other);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
    EXPECT_EQ(_projection.initConstants(), 0);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
    _projection.computeConstants();
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1, 3000000.0, 0.3, 0.5), 1e-8);
}

TEST_P(TQPrPolarStereoAt, TheOtherParametersActAtOnce) {
    imageOf(_projection, {0.0, 1.0});
    take(_projection, "falseNorthing", 77.0);
    take(_projection, "lambda0", 0.0);
    expectNear(pointAt(radius(1.1), 0.7, isNorth(), 77.0), imageOf(_projection, {0.7, hemisphere() * 1.1}),
               1e-8);
}

TEST_P(TQPrPolarStereoAt, OnASphereChangesActAtOnce) {
    TQEllipsoid sphere(TQString("Sphere"), kA, 0.0);
    _projection.setEllipsoid(&sphere);
    const double phi = hemisphere() * 1.1;
    const double before = radiusOf(_projection, phi);
    take(_projection, "k0", 2.0 * kPolarScale);
    EXPECT_NEAR(radiusOf(_projection, phi), 2.0 * before, 1e-8);
    TQEllipsoid half(TQString("Half"), kA / 2.0, 0.0);
    _projection.setEllipsoid(&half);
    EXPECT_NEAR(radiusOf(_projection, phi), before, 1e-8);
}

TEST_P(TQPrPolarStereoAt, TheWayBackComputesTheConstantsToo) {
    take(_projection, "falseNorthing", 0.0);
    EXPECT_NEAR(originalOf(_projection, pointAt(radius(1.1), 0.7, isNorth(), 0.0)).y, hemisphere() * 1.1,
                kLatitudeStop + 1e-12);
}

TEST_P(TQPrPolarStereoAt, ACopyComputesItsConstantsItself) {
    const double phi = hemisphere() * 1.1;
    imageOf(_projection, {0.0, phi});
    take(_projection, "k0", 0.5);
    const TQPrPolarStereo copy(_projection);
    EXPECT_NEAR(radiusOf(copy, phi), radius(1.1, kA, kE2, 0.5), 1e-8);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
}

TEST_P(TQPrPolarStereoAt, ConstantsAreComputedAgainAfterAnArchiveWasRead) {
    const double phi = hemisphere() * 1.1;
    imageOf(_projection, {0.0, phi});
    take(_projection, "k0", 0.5);
    ByteStream stream(archivedBytes(_projection));
    _projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    _projection.setEllipsoid(&_ellipsoid);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1, kA, kE2, 0.5), 1e-8);
}

TEST_P(TQPrPolarStereoAt, ConstantsStayAfterAnArchiveOfAnUnknownVersion) {
    const CapturedMessages messages;
    const TQPoint image = imageOf(_projection, {0.3, 0.4});
    ParameterTable parameters;
    _projection.setParams(parameters.with("k0", 2.0 * kPolarScale).table());
    ByteStream stream(StreamBytes().tag("TQPrPolarStereo", 1));
    _projection.unarchiveFrom(stream.get());
    EXPECT_EQ(imageOf(_projection, {0.3, 0.4}), image);
}

TEST_P(TQPrPolarStereoAt, ConstantsAreComputedAgainAfterATextWasRead) {
    const double phi = hemisphere() * 1.1;
    imageOf(_projection, {0.0, phi});
    take(_projection, "k0", 0.5);
    EXPECT_EQ(readProjectionText(_projection, writtenProjectionText(_projection)), 0);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1, kA, kE2, 0.5), 1e-8);
}

TEST_P(TQPrPolarStereoAt, ComputingConstantsWithoutEllipsoidChangesNothing) {
    const double phi = hemisphere() * 1.1;
    imageOf(_projection, {0.0, phi});
    _projection.setEllipsoid(nullptr);
    _projection.computeConstants();
    _projection.setEllipsoid(&_ellipsoid);
    EXPECT_NEAR(radiusOf(_projection, phi), radius(1.1), 1e-8);
}

// ---- the iteration that does not end ---------------------------------------------------------------------

// On a needle each pass adds the isometric latitude of the sphere, ψ, once more: after n passes the latitude
// is gd((n + 1)ψ), and with ψ = 5e-6 it still changes by 4.4e-6 rad after 100001 of them.
TEST_P(TQPrPolarStereoAt, ReportsALatitudeThatDoesNotConverge) {
    constexpr double e2 = 1.0 - 1e-12;
    constexpr double psi = 5e-6;
    const double e = std::sqrt(e2);
    TQEllipsoid needle(TQString("Needle"), kA, e2);
    _projection.setEllipsoid(&needle);
    take(_projection, "falseNorthing", 0.0);
    const double c = std::pow((1.0 - e) / (1.0 + e), e / 2.0) * 2.0 * kA * kPolarScale / std::sqrt(1.0 - e2);
    const auto gudermannian = [](double x) { return std::atan(std::sinh(x)); };

    const CapturedMessages messages;
    const TQPoint geo = originalOf(_projection, pointAt(c * std::exp(-psi), 0.0, isNorth(), 0.0));
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQPrPolarStereo::latitude(): MAX_COUNT reached (delta=0.000004>0.000001)\n"));
    EXPECT_NEAR(hemisphere() * geo.y, gudermannian(100002.0 * psi), 1e-7);
    EXPECT_NEAR(geo.x, kLambda0, 1e-15);
}

TEST_P(TQPrPolarStereoAt, WhatIsNoNumberEndsTheIterationInSilence) {
    const CapturedMessages messages;
    for (const TQPoint& global : {TQPoint{kNaN, 0.0}, TQPoint{0.0, kNaN}, TQPoint{kNaN, kNaN}}) {
        TQPoint geo;
        EXPECT_EQ(_projection.convertGlobalPt(global, geo), 0);
        EXPECT_TRUE(std::isnan(geo.y));
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
    TQAnglePoint geo(1.0, 2.0, TQUnitRadian);
    EXPECT_EQ(_projection.convertGlobalPt(TQPoint{kNaN, 0.0}, geo, TQUnitRadian), -1);
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::convertGlobalPt: out od scope error"));
}

TEST_P(TQPrPolarStereoAt, AnEllipsoidThatIsNoneEndsInSilence) {
    for (const double e2 : {1.0, 2.0, -1.0, kNaN}) {
        const CapturedMessages messages;
        TQEllipsoid none(TQString("None"), kA, e2);
        TQPrPolarStereo projection;
        takePolarSample(projection, isNorth());
        projection.setEllipsoid(&none);
        TQPoint point;
        EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 1.2}, point), 0);
        EXPECT_FALSE(std::isfinite(point.x)) << e2;
        EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, point), 0);
        EXPECT_FALSE(std::isfinite(point.y)) << e2;
        EXPECT_THAT(messages.lines(), IsEmpty()) << e2;
    }
}
