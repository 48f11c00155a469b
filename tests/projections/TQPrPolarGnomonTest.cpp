#include "projections/TQPrPolarGnomon.h"

#include "projections/PolarSample.h"
#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRadius = 6400000.0; // of the sample's ellipsoid, as a sphere
constexpr double kLambda0 = kPolarMeridian * kPi / 180.0;
constexpr TQPoint kUntouched{123.0, 456.0};

ProjectionClass gnomonic(bool isNorth) {
    ProjectionClass gnomonic = polarSample<TQPrPolarGnomon>("TQPrPolarGnomon", 9, "Gnomonic", isNorth);
    gnomonic.wktItems = std::string(",PROJECTION[\"Gnomonic\"],PARAMETER[\"latitude_of_origin\",") +
                        (isNorth ? "90" : "-90") +
                        "],PARAMETER[\"central_meridian\",-45.25],PARAMETER[\"false_easting\",2000000],"
                        "PARAMETER[\"false_northing\",-300000.5]";
    return gnomonic;
}

class TQPrPolarGnomonAt : public testing::TestWithParam<bool> {
  protected:
    TQPrPolarGnomonAt() {
        _projection.setEllipsoid(&_ellipsoid);
        takePolarSample(_projection, isNorth());
    }

    static bool isNorth() { return GetParam(); }

    /// The plane point at so many radians from the pole, so many east of the central meridian.
    static TQPoint pointAt(double distance, double azimuth) {
        const double down = kRadius * std::tan(distance) * std::cos(azimuth);
        return {kPolarFalseOrigin.x + kRadius * std::tan(distance) * std::sin(azimuth),
                kPolarFalseOrigin.y + (isNorth() ? -down : down)};
    }

    static double latitudeAt(double distance) { return (isNorth() ? 1.0 : -1.0) * (kPi / 2.0 - distance); }

    TQEllipsoid _ellipsoid = sampleEllipsoid();
    TQPrPolarGnomon _projection;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrPolarGnomonNorthern, ProjectionClassTest, testing::Values(gnomonic(true)));
INSTANTIATE_TEST_SUITE_P(TQPrPolarGnomonSouthern, ProjectionClassTest, testing::Values(gnomonic(false)));
INSTANTIATE_TEST_SUITE_P(Pole, TQPrPolarGnomonAt, testing::Bool());

TEST_P(TQPrPolarGnomonAt, RadiiAreTheTangentOfTheDistanceFromThePole) {
    for (const double distance : {1e-6, 0.3, kPi / 4.0, 1.2, 1.5}) {
        for (const double azimuth : {0.0, 0.7, 2.0, 3.1, -0.4, -1.9, -3.1}) {
            expectNear(pointAt(distance, azimuth),
                       imageOf(_projection, {kLambda0 + azimuth, latitudeAt(distance)}), 1e-6);
            expectNear({kLambda0 + azimuth, latitudeAt(distance)},
                       originalOf(_projection, pointAt(distance, azimuth)),
                       5e-10 / (kRadius * distance) + 1e-14);
        }
    }
}

TEST_P(TQPrPolarGnomonAt, FortyFiveDegreesOnTheCentralMeridianLieARadiusFromThePole) {
    expectNear({kPolarFalseOrigin.x, kPolarFalseOrigin.y + (isNorth() ? -kRadius : kRadius)},
               imageOf(_projection, {kLambda0, latitudeAt(kPi / 4.0)}), 1e-8);
}

TEST_P(TQPrPolarGnomonAt, TheEquatorHasNoImage) {
    for (const double latitude : {0.0, -0.0, 9e-9, -9e-9, kPi}) {
        TQPoint global = kUntouched;
        EXPECT_EQ(_projection.convertGeoPt(TQPoint{0.3, latitude}, global), -1) << latitude;
        EXPECT_EQ(global, kUntouched);
        EXPECT_EQ(_projection.convertGeoPt(TQAnglePoint(0.3, latitude, TQUnitRadian), global), -1);
        EXPECT_EQ(global, kUntouched);
    }
    for (const double latitude : {1.1e-8, -1.1e-8}) {
        const TQPoint image = imageOf(_projection, {0.3, latitude});
        EXPECT_NEAR(std::hypot(image.x - kPolarFalseOrigin.x, image.y - kPolarFalseOrigin.y) * 1.1e-8,
                    kRadius, 1.0);
    }
}

TEST_P(TQPrPolarGnomonAt, TheOtherHemisphereComesOutThroughThePole) {
    const TQPoint image = imageOf(_projection, {kLambda0 + 0.4, -latitudeAt(0.3)});
    expectNear(imageOf(_projection, {kLambda0 + 0.4 - kPi, latitudeAt(0.3)}), image, 1e-8);
    expectNear({kLambda0 + 0.4 - kPi, latitudeAt(0.3)}, originalOf(_projection, image), 1e-14);
}

TEST_P(TQPrPolarGnomonAt, GreatCirclesAreStraightLines) {
    // Two points of the unit sphere and one between them in their plane, by vectors.
    const auto directed = [](double lambda, double phi) {
        return std::array{std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
    };
    const TQPoint first{0.2, latitudeAt(0.9)};
    const TQPoint last{1.9, latitudeAt(0.4)};
    const auto a = directed(first.x, first.y);
    const auto b = directed(last.x, last.y);
    const std::array m{a[0] + 2.0 * b[0], a[1] + 2.0 * b[1], a[2] + 2.0 * b[2]};
    const TQPoint between{std::atan2(m[1], m[0]), std::atan2(m[2], std::hypot(m[0], m[1]))};
    const TQPoint p = imageOf(_projection, first);
    const TQPoint q = imageOf(_projection, last);
    const TQPoint r = imageOf(_projection, between);
    EXPECT_NEAR((q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x), 0.0, 1e-14 * kRadius * kRadius);
}

TEST_P(TQPrPolarGnomonAt, ReadsTheRadiusAtEveryCall) {
    imageOf(_projection, {0.3, 0.4});
    TQEllipsoid half(TQString("Half"), kRadius / 2.0, 0.0);
    _projection.setEllipsoid(&half);
    const TQPoint image = imageOf(_projection, {0.3, latitudeAt(kPi / 4.0)});
    EXPECT_NEAR(std::hypot(image.x - kPolarFalseOrigin.x, image.y - kPolarFalseOrigin.y), kRadius / 2.0,
                1e-8);
}
