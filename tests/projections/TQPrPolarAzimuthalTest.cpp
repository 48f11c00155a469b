#include "projections/TQPrPolarAzimuthal.h"

#include "projections/PolarSample.h"
#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRadius = 6400000.0; // of the sample's ellipsoid, as a sphere
constexpr double kLambda0 = kPolarMeridian * kPi / 180.0;

ProjectionClass azimuthal(bool isNorth) {
    ProjectionClass azimuthal =
        polarSample<TQPrPolarAzimuthal>("TQPrPolarAzimuthal", 10, "Polar Azimuthal", isNorth);
    azimuthal.wktItems = std::string(",PROJECTION[\"Lambert_Azimuthal_Equal_Area\"],"
                                     "PARAMETER[\"latitude_of_center\",") +
                         (isNorth ? "90" : "-90") +
                         "],PARAMETER[\"longitude_of_center\",-45.25],PARAMETER[\"false_easting\",2000000],"
                         "PARAMETER[\"false_northing\",-300000.5]";
    return azimuthal;
}

class TQPrPolarAzimuthalAt : public testing::TestWithParam<bool> {
  protected:
    TQPrPolarAzimuthalAt() {
        _projection.setEllipsoid(&_ellipsoid);
        takePolarSample(_projection, isNorth());
    }

    static bool isNorth() { return GetParam(); }

    /// The plane point at so many radians from the pole, so many east of the central meridian.
    static TQPoint pointAt(double distance, double azimuth) {
        const double down = kRadius * distance * std::cos(azimuth);
        return {kPolarFalseOrigin.x + kRadius * distance * std::sin(azimuth),
                kPolarFalseOrigin.y + (isNorth() ? -down : down)};
    }

    static double latitudeAt(double distance) { return (isNorth() ? 1.0 : -1.0) * (kPi / 2.0 - distance); }

    TQEllipsoid _ellipsoid = sampleEllipsoid();
    TQPrPolarAzimuthal _projection;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrPolarAzimuthalNorthern, ProjectionClassTest, testing::Values(azimuthal(true)));
INSTANTIATE_TEST_SUITE_P(TQPrPolarAzimuthalSouthern, ProjectionClassTest, testing::Values(azimuthal(false)));
INSTANTIATE_TEST_SUITE_P(Pole, TQPrPolarAzimuthalAt, testing::Bool());

TEST_P(TQPrPolarAzimuthalAt, ThePoleIsExactlyTheFalseOrigin) {
    EXPECT_EQ(imageOf(_projection, {1.0, latitudeAt(0.0)}), kPolarFalseOrigin);
}

TEST_P(TQPrPolarAzimuthalAt, DistancesFromThePoleAreTrueOnTheSphere) {
    for (const double distance : {1e-6, 0.3, kPi / 2.0, 2.5, kPi}) {
        for (const double azimuth : {0.0, 0.7, 2.0, 3.1, -0.4, -1.9, -3.1}) {
            expectNear(pointAt(distance, azimuth),
                       imageOf(_projection, {kLambda0 + azimuth, latitudeAt(distance)}), 2e-8);
            expectNear({kLambda0 + azimuth, latitudeAt(distance)},
                       originalOf(_projection, pointAt(distance, azimuth)),
                       5e-10 / (kRadius * distance) + 1e-14);
        }
    }
}

TEST_P(TQPrPolarAzimuthalAt, TheEquatorLiesAQuarterOfAMeridianFromThePole) {
    const TQPoint image = imageOf(_projection, {1.0, 0.0});
    EXPECT_NEAR(std::hypot(image.x - kPolarFalseOrigin.x, image.y - kPolarFalseOrigin.y), kRadius * kPi / 2.0,
                1e-8);
}

TEST_P(TQPrPolarAzimuthalAt, ReadsTheRadiusAtEveryCall) {
    imageOf(_projection, {0.3, 0.4});
    TQEllipsoid half(TQString("Half"), kRadius / 2.0, 0.0);
    _projection.setEllipsoid(&half);
    const TQPoint image = imageOf(_projection, {0.3, 0.0});
    EXPECT_NEAR(std::hypot(image.x - kPolarFalseOrigin.x, image.y - kPolarFalseOrigin.y), kRadius * kPi / 4.0,
                1e-8);
}
