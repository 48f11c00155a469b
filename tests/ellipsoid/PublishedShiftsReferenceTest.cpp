#include "ellipsoid/formulas/AbridgedMolodensky.h"
#include "ellipsoid/formulas/Geocentric.h"
#include "ellipsoid/formulas/Helmert.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <gtest/gtest.h>

// Worked examples of datum shifts as International Association of Oil & Gas Producers, Geomatics Guidance
// Note 7, part 2 prints them, to its last digit.

using tq::formulas::AbridgedMolodensky;
using tq::formulas::Geocentric;
using tq::formulas::Geographic;
using tq::formulas::Helmert;

namespace {

constexpr double degrees(double degree, double minute, double second) {
    return degree + minute / 60.0 + second / 3600.0;
}

constexpr double kSecond = 1.0 / 3600.0;

Geographic<double> inRadians(double longitude, double latitude) {
    return {tq_deg2rad(longitude), tq_deg2rad(latitude)};
}

// Method 9605, abridged Molodensky, WGS 84 to ED50 (International 1924).
constexpr double kWgs84Longitude = degrees(2, 7, 46.38);
constexpr double kWgs84Latitude = degrees(53, 48, 33.82);
constexpr double kEd50Longitude = degrees(2, 7, 51.477);
constexpr double kEd50Latitude = degrees(53, 48, 36.563);
constexpr double kMolodenskyTolerance = 0.0005 * kSecond;

TQEllipsoid ed50() {
    TQEllipsoid ellipsoid(TQString(international1924.name), international1924.a, international1924.e2);
    ellipsoid.setDatumShift(TQEllipsoid::ThreeParameterShift, wgs84.a, 1.0 / 298.257223563,
                            {84.87, 96.49, 116.95});
    return ellipsoid;
}

// Method 9606, position vector transformation, WGS 72 to WGS 84; rotation 0.554", scale 0.219 ppm.
const double kRotation = tq_deg2rad(0.554 * kSecond);
constexpr double kScalePpm = 0.219;
const Helmert kWgs72ToWgs84{0.0, 0.0, 4.5, 0.0, 0.0, kRotation, 1.0 + kScalePpm * 1e-6};
constexpr Geocentric<double> kWgs72Point{3657660.66, 255768.55, 5201382.11};
constexpr Geocentric<double> kWgs84Point{3657660.78, 255778.43, 5201387.75};
// Coordinates given and printed are rounded to a hundredth each.
constexpr double kGeocentricTolerance = 0.01;

TQEllipsoid wgs84FromWgs72() {
    TQEllipsoid ellipsoid(TQString(wgs84.name), wgs84.a, wgs84.e2);
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, wgs72.a, 1.0 / 298.26,
                            {0.0, 0.0, 4.5, 0.0, 0.0, kRotation, kScalePpm});
    return ellipsoid;
}

} // namespace

// The note prints the differences of the ellipsoids: da = 251 m, df = 1.41927e-05.
TEST(PublishedShifts, AbridgedMolodensky) {
    const double flattening = 1.0 / 298.257223563;
    const AbridgedMolodensky shift{84.87,   96.49,   116.95, wgs84.a * 1.41927e-05 + flattening * 251.0,
                                   wgs84.a, wgs84.e2};
    const auto [lambda, phi] = shift.shifted(inRadians(kWgs84Longitude, kWgs84Latitude));
    EXPECT_NEAR(tq_rad2deg(lambda), kEd50Longitude, kMolodenskyTolerance);
    EXPECT_NEAR(tq_rad2deg(phi), kEd50Latitude, kMolodenskyTolerance);
}

// The shift of an ellipsoid leads from the reference datum to its own: from WGS 84 to ED50.
TEST(PublishedShifts, AbridgedMolodenskyOfAnEllipsoid) {
    auto [lambda, phi] = inRadians(kWgs84Longitude, kWgs84Latitude);
    ed50().toLocalDatum(lambda, phi);
    EXPECT_NEAR(tq_rad2deg(lambda), kEd50Longitude, kMolodenskyTolerance);
    EXPECT_NEAR(tq_rad2deg(phi), kEd50Latitude, kMolodenskyTolerance);
}

// The way back is the shift with the opposite signs on the other ellipsoid: the same point but for terms of
// the second order, 5" in angle times 1.6e-5 of the translation over the radius.
TEST(PublishedShifts, AbridgedMolodenskyOfAnEllipsoidBack) {
    auto [lambda, phi] = inRadians(kEd50Longitude, kEd50Latitude);
    ed50().toReferenceDatum(lambda, phi);
    EXPECT_NEAR(tq_rad2deg(lambda), kWgs84Longitude, 2.0 * kMolodenskyTolerance);
    EXPECT_NEAR(tq_rad2deg(phi), kWgs84Latitude, 2.0 * kMolodenskyTolerance);
}

TEST(PublishedShifts, PositionVectorTransformation) {
    const auto shifted = kWgs72ToWgs84.forward(kWgs72Point);
    EXPECT_NEAR(shifted.x, kWgs84Point.x, kGeocentricTolerance);
    EXPECT_NEAR(shifted.y, kWgs84Point.y, kGeocentricTolerance);
    EXPECT_NEAR(shifted.z, kWgs84Point.z, kGeocentricTolerance);
}

TEST(PublishedShifts, PositionVectorTransformationBack) {
    const auto shifted = kWgs72ToWgs84.inverse(kWgs84Point);
    EXPECT_NEAR(shifted.x, kWgs72Point.x, kGeocentricTolerance);
    EXPECT_NEAR(shifted.y, kWgs72Point.y, kGeocentricTolerance);
    EXPECT_NEAR(shifted.z, kWgs72Point.z, kGeocentricTolerance);
}

// The geocentric coordinates of the example are those of 55° N, 4° E at height 0.
TEST(PublishedShifts, GeocentricCoordinates) {
    const auto point = geocentricFromGeodetic(inRadians(4.0, 55.0), wgs72.a, wgs72.e2);
    EXPECT_NEAR(point.x, kWgs72Point.x, kGeocentricTolerance);
    EXPECT_NEAR(point.y, kWgs72Point.y, kGeocentricTolerance);
    EXPECT_NEAR(point.z, kWgs72Point.z, kGeocentricTolerance);
    const auto [lambda, phi] = geodeticFromGeocentric(kWgs72Point, wgs72.a, wgs72.e2);
    EXPECT_NEAR(tq_rad2deg(lambda), 4.0, 0.0005 * kSecond);
    EXPECT_NEAR(tq_rad2deg(phi), 55.0, 0.0005 * kSecond);
}

// 55° 00' 00.090" N, 4° 00' 00.554" E on WGS 84.
TEST(PublishedShifts, PositionVectorTransformationOfAnEllipsoid) {
    auto [lambda, phi] = inRadians(4.0, 55.0);
    const TQEllipsoid ellipsoid = wgs84FromWgs72();
    ellipsoid.toLocalDatum(lambda, phi);
    EXPECT_NEAR(tq_rad2deg(lambda), degrees(4, 0, 0.554), 0.0005 * kSecond);
    EXPECT_NEAR(tq_rad2deg(phi), degrees(55, 0, 0.090), 0.0005 * kSecond);
    // The height, 3 m on WGS 84, is lost: along the normal it hardly shows.
    ellipsoid.toReferenceDatum(lambda, phi);
    EXPECT_NEAR(tq_rad2deg(lambda), 4.0, 0.00001 * kSecond);
    EXPECT_NEAR(tq_rad2deg(phi), 55.0, 0.00001 * kSecond);
}
