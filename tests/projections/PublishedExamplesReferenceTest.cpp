#include "projections/LiteralFormulas.h"
#include "projections/TQPrMercDirect.h"
#include "projections/TQPrMercDirectGCTP.h"
#include "projections/TQPrMercDirectModified.h"
#include "projections/TQPrMercTransv.h"
#include "projections/TQPrUtm.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <gtest/gtest.h>

#include <cmath>

// Worked examples as they are published, to the last digit that is printed.
//
// [G7-2]   International Association of Oil & Gas Producers, Geomatics Guidance Note 7, part 2: Coordinate
//          Conversions and Transformations including Formulas
// [Snyder] J. P. Snyder, Map Projections: A Working Manual, USGS Professional Paper 1395, 1987, appendix A

namespace {

/// An example: a point in degrees and its image in metres.
struct Example {
    double longitude, latitude;
    double easting, northing;
    double tolerance; ///< of the image in metres: half of the last digit
};

/// Forward to the tolerance of the image; inverse to that of the ground, which no map here shows smaller
/// than at 0.9.
void expectExample(const MadeProjection& projection, const Example& example) {
    TQPoint global;
    ASSERT_EQ(
        projection->convertGeoPt(TQAnglePoint(example.longitude, example.latitude, TQUnitDegree), global), 0);
    EXPECT_NEAR(global.x, example.easting, example.tolerance);
    EXPECT_NEAR(global.y, example.northing, example.tolerance);

    TQAnglePoint geo;
    const TQPoint given{example.easting, example.northing};
    ASSERT_EQ(projection->convertGlobalPt(given, geo, TQUnitDegree), 0);
    const double metresPerDegree = 100000.0;
    const double cosine = std::cos(tq_deg2rad(example.latitude));
    const double tolerance = example.tolerance / metresPerDegree;
    EXPECT_NEAR(geo.latitude().value(), example.latitude, tolerance);
    EXPECT_NEAR(geo.longitude().value(), example.longitude, tolerance / cosine);
}

constexpr EllipsoidSize kClarke1866OfSnyder{"Clarke 1866", 6378206.4, 0.00676866};

constexpr double kHundredth = 0.005;
constexpr double kTenth = 0.05;

/// [G7-2] Transverse Mercator, OSGB 1936 / British National Grid, with the scale factor as it is printed
/// there; 0.9996012717 moves the example by 5 mm.
const Example kBritishNationalGrid{0.5, 50.5, 577274.99, 69740.50, kHundredth};

/// [G7-2] Mercator variant A, Makassar / NEIEZ.
const Example kNeiez{120.0, -3.0, 5009726.58, 569150.82, kHundredth};

/// [G7-2] Mercator variant B, Pulkovo 1942 / Caspian Sea Mercator.
const Example kCaspian{53.0, 53.0, 165704.29, 5171848.07, kHundredth};

} // namespace

TEST(PublishedExamples, TransverseMercatorOfTheBritishNationalGrid) {
    const auto airy = EllipsoidSize::ofInverseFlattening("Airy 1830", 6377563.396, 299.32496);
    const MadeProjection grid(
        TQPrMercTransv::typeCode, airy,
        {{"lambda0", -2.0}, {"phi0", 49.0}, {"X0", 400000.0}, {"Y0", -100000.0}, {"k0", 0.9996013}});
    expectExample(grid, kBritishNationalGrid);
}

// [Snyder] page 269: 40°30' N, 73°30' W from the central meridian 75° W gives x = 127,106.5 m and
// y = 4,484,124.4 m.
TEST(PublishedExamples, TransverseMercatorOfSnyder) {
    const MadeProjection projection(TQPrMercTransv::typeCode, kClarke1866OfSnyder,
                                    {{"lambda0", -75.0}, {"X0", 0.0}, {"k0", 0.9996}});
    expectExample(projection, {-73.5, 40.5, 127106.5, 4484124.4, kTenth});
}

// The same point in its zone, 18 north, which adds the false easting of 500,000 m.
TEST(PublishedExamples, UtmOfSnyder) {
    const MadeProjection zone18(TQPrUtm::typeCode, kClarke1866OfSnyder,
                                {{"lambda0", -75.0}, {"hemisphere", 1.0}});
    expectExample(zone18, {-73.5, 40.5, 627106.5, 4484124.4, kTenth});
}

// The southern hemisphere is the mirror image with 10,000,000 m added.
TEST(PublishedExamples, UtmOfSnyderInTheSouth) {
    const MadeProjection zone18(TQPrUtm::typeCode, kClarke1866OfSnyder,
                                {{"lambda0", -75.0}, {"hemisphere", 0.0}});
    expectExample(zone18, {-73.5, -40.5, 627106.5, 10000000.0 - 4484124.4, kTenth});
}

TEST(PublishedExamples, MercatorWithScaleFactor) {
    const auto bessel = EllipsoidSize::ofInverseFlattening("Bessel 1841", 6377397.155, 299.15281);
    const MadeProjection direct(TQPrMercDirect::typeCode, bessel,
                                {{"lambda0", 110.0}, {"X0", 3900000.0}, {"Y0", 900000.0}, {"k0", 0.997}});
    expectExample(direct, kNeiez);
    const MadeProjection modified(TQPrMercDirectModified::typeCode, bessel,
                                  {{"lambda0", 110.0},
                                   {"X0", 3900000.0},
                                   {"Y0", 900000.0},
                                   {"k0", 0.997},
                                   {"_latitudeScaleFactor", 1.0}});
    expectExample(modified, kNeiez);
}

// Northings of the example count from the equator, as the package's do.
TEST(PublishedExamples, MercatorWithLatitudeOfTrueScale) {
    const MadeProjection gctp(TQPrMercDirectGCTP::typeCode, krassowsky1940,
                              {{"lambda0", 51.0}, {"phi0", 42.0}, {"X0", 0.0}});
    expectExample(gctp, kCaspian);
}

// The direct Mercator counts them from the latitude of true scale. The difference is the northing of that
// latitude, radius of its parallel times its isometric latitude: a·m·ψ, with m = cos φ / √(1 - e² sin² φ).
TEST(PublishedExamples, MercatorWithLatitudeOfTrueScaleFromThatLatitude) {
    const MadeProjection direct(TQPrMercDirect::typeCode, krassowsky1940,
                                {{"lambda0", 51.0}, {"phi0", 42.0}, {"X0", 0.0}});
    using literal::Real;
    const Real e = std::sqrt(Real(krassowsky1940.e2));
    const Real phi0 = tq_deg2rad(42.0);
    const Real m = std::cos(phi0) / std::sqrt(1.0L - e * e * std::sin(phi0) * std::sin(phi0));
    const Real northing = krassowsky1940.a * m * literal::isometricLatitude(phi0, e);
    Example example = kCaspian;
    example.northing -= static_cast<double>(northing);
    expectExample(direct, example);
}

// [Snyder] page 267: 35° N, 75° W from the central meridian 180° gives x = 11,688,673.7 m and
// y = 4,139,145.6 m, with the eccentricity rounded to e = 0.0822719.
TEST(PublishedExamples, MercatorOfSnyder) {
    const EllipsoidSize clarke1866{"Clarke 1866", 6378206.4, 0.0822719 * 0.0822719};
    const MadeProjection direct(TQPrMercDirect::typeCode, clarke1866, {{"lambda0", 180.0}, {"X0", 0.0}});
    // The inverse does not wrap: 75° W comes back as 285°.
    expectExample(direct, {285.0, 35.0, 11688673.7, 4139145.6, kTenth});
    TQPoint global;
    ASSERT_EQ(direct->convertGeoPt(TQAnglePoint(-75.0, 35.0, TQUnitDegree), global), 0);
    EXPECT_NEAR(global.x, 11688673.7, kTenth);
}
