#include "projections/TQPrMercDirectGCTP.h"

#include "projections/formulas/GctpMercator.h"
#include "testing/CapturedMessages.h"
#include "testing/EvenSteps.h"
#include "testing/MercatorSample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr const char* kWktLine =
    "TQPrMercDirectGCTP::WKTProjectionStuff(): don't really know how to write this in WKT form\n";
constexpr const char* kPoleLine =
    "TQPrMercDirectGCTP::convertGeoPt(): Transformation cannot be computed at the poles";

ProjectionClass mercDirectGctp() {
    ProjectionClass gctp = mercatorClass<TQPrMercDirectGCTP>();
    gctp.lineage = {"TQPrMercDirectGCTP", "TQPrMercDirect", "TQPrMercator", "TQProjection"};
    gctp.typeCode = 15;
    gctp.typeName = "GCTP Direct Mercator";
    gctp.archive =
        StreamBytes().tag("TQPrMercDirectGCTP", 0).tag("TQPrMercDirect", 0).append(mercatorArchive());
    gctp.tags = {{"TQPrMercDirectGCTP", 0, 0},
                 {"TQPrMercDirect", 0, 0},
                 {"TQPrMercator", 0, 0},
                 {"TQProjection", 0, 1}};
    gctp.wktLines = {kWktLine};
    return gctp;
}

double rad(double degrees) { return degrees * kPi / 180.0; }

double northing(double latitude) { return std::log(std::tan(latitude / 2.0 + kPi / 4.0)); }

/// On a sphere of radius 1 without false easting.
class TQPrMercDirectGCTPOnUnitSphere : public testing::Test {
  protected:
    TQPrMercDirectGCTPOnUnitSphere() {
        set("X0", 0.0);
        projection.setEllipsoid(&sphere);
    }

    void set(const char* name, double value) {
        ParameterTable parameters;
        projection.setParams(parameters.with(name, value).table());
    }

    TQPoint forward(double longitude, double latitude) const {
        TQPoint global;
        EXPECT_EQ(projection.convertGeoPt(TQPoint{longitude, latitude}, global), 0);
        return global;
    }

    TQPoint inverse(double x, double y) const {
        TQPoint geo;
        EXPECT_EQ(projection.convertGlobalPt(TQPoint{x, y}, geo), 0);
        return geo;
    }

    TQEllipsoid sphere{TQString("Unit sphere"), 1.0, 0.0};
    TQPrMercDirectGCTP projection;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrMercDirectGCTP, ProjectionClassTest, testing::Values(mercDirectGctp()));

TEST_F(TQPrMercDirectGCTPOnUnitSphere, IsLongitudeAndIsometricLatitude) {
    for (const double latitude : {-1.55, -0.5, 0.0, 0.3, 1.57}) {
        const TQPoint global = forward(0.7, latitude);
        EXPECT_NEAR(global.x, 0.7, 1e-15);
        EXPECT_NEAR(global.y, northing(latitude), 1e-11);
        EXPECT_NEAR(inverse(0.7, global.y).y, latitude, 1e-10);
    }
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, NorthingsStartAtTheEquatorAndTheScaleFactorTakesNoPart) {
    set("phi0", 60.0);
    set("Y0", 1000.0);
    set("k0", 0.25);
    EXPECT_NEAR(forward(0.0, 0.0).y, 1000.0, 1e-12);
    EXPECT_NEAR(forward(1.0, 0.0).x, 0.5, 1e-15); // cos 60 degrees
    EXPECT_NEAR(forward(0.0, rad(60.0)).y, 1000.0 + 0.5 * northing(rad(60.0)), 1e-12);
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, FalseEastingAndCentralMeridianCountFromTheMeridian) {
    set("lambda0", 30.0);
    set("X0", 100.0);
    EXPECT_NEAR(forward(rad(30.0), 0.0).x, 100.0, 1e-13);
    EXPECT_NEAR(inverse(100.0, 0.0).x, rad(30.0), 1e-15);
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, PolesCannotBeConverted) {
    for (const double latitude : {kPi / 2.0, -kPi / 2.0, kPi / 2.0 - 0.9e-10, kPi / 2.0 + 0.9e-10,
                                  -kPi / 2.0 + 0.9e-10, -kPi / 2.0 - 0.9e-10}) {
        const CapturedMessages messages;
        TQPoint global{1.0, 2.0};
        EXPECT_EQ(projection.convertGeoPt(TQPoint{0.0, latitude}, global), -1);
        EXPECT_EQ(global, (TQPoint{1.0, 2.0}));
        EXPECT_THAT(messages.lines(), ElementsAre(kPoleLine));
    }
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, TheNeighbourhoodOfThePolesCanBeConverted) {
    const CapturedMessages messages;
    EXPECT_GT(forward(0.0, kPi / 2.0 - 1.1e-10).y, 20.0);
    EXPECT_LT(forward(0.0, -kPi / 2.0 + 1.1e-10).y, -20.0);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// There the logarithm is that of a negative number.
TEST_F(TQPrMercDirectGCTPOnUnitSphere, BeyondThePolesNorthingsAreNoNumbers) {
    const CapturedMessages messages;
    EXPECT_TRUE(std::isnan(forward(0.0, kPi / 2.0 + 1e-6).y));
    EXPECT_FALSE(std::isfinite(forward(0.0, -kPi / 2.0 - 1e-6).y));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, LongitudesAreAdjustedBothWays) {
    set("lambda0", 30.0);
    EXPECT_NEAR(forward(rad(30.0) + kPi + 2e-9, 0.0).x, -kPi + 2e-9, 1e-14);
    EXPECT_NEAR(forward(rad(30.0) + kPi + 5e-10, 0.0).x, -kPi + 5e-10, 1e-14);
    EXPECT_NEAR(forward(rad(30.0) + 1.0 - 6.0 * kPi, 0.0).x, 1.0, 1e-13);
    EXPECT_NEAR(inverse(kPi, 0.0).x, rad(30.0) - kPi, 1e-14);
    EXPECT_NEAR(inverse(-kPi, 0.0).x, rad(30.0) - kPi, 1e-14);
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, ConvertsOnTheDatumOfItsEllipsoid) {
    sphere.setDatumShift(TQEllipsoid::ThreeParameterShift, 1.0, 0.0, {0.0, 0.0, 0.01});
    EXPECT_NEAR(forward(0.0, 0.0).y, northing(0.01), 1e-14);
    EXPECT_NEAR(inverse(0.0, 0.0).y, -0.01, 1e-10);
}

TEST_F(TQPrMercDirectGCTPOnUnitSphere, APointThatTheShiftTakesToAPoleCannotBeConverted) {
    sphere.setDatumShift(TQEllipsoid::ThreeParameterShift, 1.0, 0.0, {-0.01, 0.0, 0.0});
    const CapturedMessages messages;
    // At longitude 0 the latitude grows by 0.01 times its sine.
    double latitude = 1.56;
    for (int pass = 0; pass < 100; ++pass) {
        latitude = kPi / 2.0 - 0.01 * std::sin(latitude);
    }
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.0, latitude}, global), -1);
    EXPECT_THAT(messages.lines(), ElementsAre(kPoleLine));
}

// An ellipsoid as flat as a plate needs more than 16 passes; the last latitude is kept all the same.
TEST(TQPrMercDirectGCTP, AnInverseThatDoesNotConvergeIsReportedAndAnsweredAllTheSame) {
    constexpr double e2 = 0.99999;
    const double e = std::sqrt(e2);
    TQEllipsoid plate(TQString("Plate"), 1.0, e2);
    TQPrMercDirectGCTP projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("X0", 0.0).table());
    projection.setEllipsoid(&plate);
    const auto iterated = [e](double ts, int passes) {
        double latitude = kPi / 2.0 - 2.0 * std::atan(ts);
        for (int pass = 0; pass < passes; ++pass) {
            const double q = e * std::sin(latitude);
            latitude = kPi / 2.0 - 2.0 * std::atan(ts * std::pow((1.0 - q) / (1.0 + q), e / 2.0));
        }
        return latitude;
    };
    const double y = 0.01;
    ASSERT_GT(std::abs(iterated(std::exp(-y), 16) - iterated(std::exp(-y), 15)), 1e-10);
    const CapturedMessages messages;
    TQPoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{0.5, y}, geo), 0);
    EXPECT_THAT(messages.lines(),
                ElementsAre("phi2z(): Convergence error",
                            "TQPrMercDirectGCTP::convertGlobalPt(): Transformation cannot be computed"));
    EXPECT_NEAR(geo.y, iterated(std::exp(-y), 16), 1e-14);
    EXPECT_NEAR(geo.x, 0.5, 1e-15);
}

TEST(TQPrMercDirectGCTP, AnInverseThatConvergesIsNotReported) {
    TQEllipsoid ellipsoid(TQString("WGS 84"), 6378137.0, 0.00669437999014);
    TQPrMercDirectGCTP projection;
    projection.setEllipsoid(&ellipsoid);
    const CapturedMessages messages;
    TQPoint geo;
    for (const double y : evenSteps(-3e7, 3e7, 61)) {
        EXPECT_EQ(projection.convertGlobalPt(TQPoint{500000.0, y}, geo), 0);
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// The message follows the text whatever the text is.
TEST(TQPrMercDirectGCTP, ReportsThatItHasNoWktEachTime) {
    const CapturedMessages messages;
    const TQPrMercDirectGCTP projection;
    EXPECT_FALSE(projection.WKTProjectionStuff().isEmpty());
    EXPECT_FALSE(projection.wktDefinition(false).isEmpty());
    EXPECT_THAT(messages.lines(), ElementsAre(kWktLine, kWktLine));
}

TEST(TQPrMercDirectGCTP, CopyKeepsTheScaleWithoutTheScaleFactor) {
    TQEllipsoid sphere(TQString("Unit sphere"), 1.0, 0.0);
    TQPrMercDirectGCTP projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("X0", 0.0).with("k0", 0.25).with("phi0", 60.0).table());
    projection.setEllipsoid(&sphere);
    TQPoint global;
    EXPECT_EQ(TQPrMercDirectGCTP(projection).convertGeoPt(TQPoint{1.0, 0.0}, global), 0);
    EXPECT_NEAR(global.x, 0.5, 1e-15);
    EXPECT_NEAR(global.y, 0.0, 1e-15);
}

// The formula of the package's own documentation, pass by pass.
TEST(GctpMercator, AdjustsAnAngleByItsSize) {
    using tq::formulas::adjusted;
    EXPECT_EQ(adjusted(kPi), kPi);
    EXPECT_EQ(adjusted(-kPi), -kPi);
    EXPECT_EQ(adjusted(3.0), 3.0);
    EXPECT_EQ(adjusted(4.0), 4.0 - 2.0 * kPi);
    EXPECT_EQ(adjusted(-4.0), -4.0 + 2.0 * kPi);
    EXPECT_EQ(adjusted(7.0), 7.0 - 2.0 * kPi);
    EXPECT_NEAR(adjusted(1000.0 * kPi + 1.0), 1.0, 1e-12);
    EXPECT_NEAR(adjusted(-1001.0 * kPi + 1.0), 1.0 - kPi, 1e-12);
    for (const double size : {2e10, 1e18, 3e19, 1e28}) {
        EXPECT_LE(std::abs(adjusted(size)), kPi) << size;
        EXPECT_LE(std::abs(adjusted(-size)), kPi) << size;
    }
    EXPECT_EQ(adjusted(1e60), 1e60); // a turn is lost in it, five times
    EXPECT_TRUE(std::isnan(adjusted(std::nan(""))));
    EXPECT_FALSE(std::isfinite(adjusted(HUGE_VAL)));
}

// On the sphere y = -R ln tan((π/2 - φ)/2), which has a logarithm wherever the tangent is positive.
TEST(GctpMercator, LatitudesBeyondAPoleHaveAnImageWhereTheLogarithmDoes) {
    using tq::formulas::GctpMercator;
    for (const double phi : {5.0, 7.0, -5.0, 0.5}) {
        const auto [x, y] = GctpMercator::forward<double>({0.0, phi}, 0.0, {0.0, 0.0}, 1.0, 0.0);
        EXPECT_NEAR(y, -std::log(std::tan((kPi / 2.0 - phi) / 2.0)), 1e-14) << phi;
        EXPECT_EQ(x, 0.0);
    }
    for (const double phi : {2.0, -2.0, 3.0, 4.0}) {
        EXPECT_TRUE(std::isnan(GctpMercator::forward<double>({0.0, phi}, 0.0, {0.0, 0.0}, 1.0, 0.0).y))
            << phi;
    }
}
