#include "projections/TQPrMercDirect.h"

#include "testing/CapturedMessages.h"
#include "testing/EvenSteps.h"
#include "testing/MercatorSample.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using testing::ElementsAre;

namespace {

constexpr double kPi = std::numbers::pi;

ProjectionClass mercDirect() {
    ProjectionClass direct = mercatorClass<TQPrMercDirect>();
    direct.lineage = {"TQPrMercDirect", "TQPrMercator", "TQProjection"};
    direct.typeCode = 5;
    direct.typeName = "Direct Mercator";
    direct.archive = StreamBytes().tag("TQPrMercDirect", 0).append(mercatorArchive());
    direct.tags = {{"TQPrMercDirect", 0, 0}, {"TQPrMercator", 0, 0}, {"TQProjection", 0, 1}};
    return direct;
}

/// A projection on a sphere of radius 1 with its origin at (0, 0): a radian of longitude is a unit of x.
class TQPrMercDirectOnUnitSphere : public testing::Test {
  protected:
    TQPrMercDirectOnUnitSphere() {
        ParameterTable parameters;
        projection.setParams(parameters.with("X0", 0.0).table());
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
    TQPrMercDirect projection;
};

double rad(double degrees) { return degrees * kPi / 180.0; }

/// The Mercator northing on the unit sphere.
double northing(double latitude) { return std::log(std::tan(latitude / 2.0 + kPi / 4.0)); }

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrMercDirect, ProjectionClassTest, testing::Values(mercDirect()));

TEST_F(TQPrMercDirectOnUnitSphere, IsLongitudeAndIsometricLatitude) {
    for (const double latitude : {-1.2, -0.5, 0.0, 0.3, 1.5}) {
        const TQPoint global = forward(0.7, latitude);
        EXPECT_NEAR(global.x, 0.7, 1e-15);
        EXPECT_NEAR(global.y, northing(latitude), 1e-14);
        EXPECT_NEAR(inverse(0.7, global.y).y, latitude, 1e-11);
    }
    EXPECT_EQ(forward(0.0, 0.0), (TQPoint{0.0, 0.0}));
}

TEST_F(TQPrMercDirectOnUnitSphere, PolesGetTheNorthingOfEightyNineDegrees) {
    EXPECT_EQ(forward(0.0, kPi / 2.0).y, forward(0.0, rad(89.0)).y);
    EXPECT_EQ(forward(0.0, -kPi / 2.0).y, forward(0.0, rad(-89.0)).y);
    EXPECT_NEAR(forward(0.0, kPi / 2.0).y, northing(rad(89.0)), 1e-12);
    EXPECT_LT(forward(0.0, rad(88.999)).y, forward(0.0, rad(89.0)).y);
}

TEST_F(TQPrMercDirectOnUnitSphere, TheInverseHasNoLimitNearThePoles) {
    EXPECT_NEAR(inverse(0.0, northing(rad(89.9))).y, rad(89.9), 1e-11);
    EXPECT_GT(inverse(0.0, 10.0).y, rad(89.99));
}

// The first change of the latitude by 1e-11 or less is the last one.
TEST_F(TQPrMercDirectOnUnitSphere, TheInverseIteratesTheLatitudeToItsTolerance) {
    constexpr double e2 = 0.1;
    const double e = std::sqrt(e2);
    TQEllipsoid ellipsoid(TQString("A"), 1.0, e2);
    projection.setEllipsoid(&ellipsoid);
    for (const double psi : evenSteps(-5.0, 5.0, 1001)) {
        double latitude = 2.0 * std::atan(std::exp(psi)) - kPi / 2.0;
        for (double change = 1.0; change > 1e-11;) {
            const double before = latitude;
            const double q = e * std::sin(before);
            latitude = 2.0 * std::atan(std::exp(psi) * std::pow((1.0 + q) / (1.0 - q), e / 2.0)) - kPi / 2.0;
            change = std::abs(latitude - before);
        }
        EXPECT_NEAR(inverse(0.0, psi).y, latitude, 1e-14) << psi;
    }
}

TEST_F(TQPrMercDirectOnUnitSphere, LongitudesAreWrappedBeyondAHairPastTheAntimeridian) {
    set("lambda0", 30.0);
    const double center = rad(30.0);
    const double zero = forward(center, 0.0).x;
    EXPECT_NEAR(forward(center + kPi + 5e-10, 0.0).x - zero, kPi + 5e-10, 1e-14);
    EXPECT_NEAR(forward(center + kPi + 2e-9, 0.0).x - zero, -kPi + 2e-9, 1e-14);
    EXPECT_NEAR(forward(center - kPi - 5e-10, 0.0).x - zero, -kPi - 5e-10, 1e-14);
    EXPECT_NEAR(forward(center - kPi - 2e-9, 0.0).x - zero, kPi - 2e-9, 1e-14);
    EXPECT_NEAR(forward(center + 1.0 + 6.0 * kPi, 0.0).x - zero, 1.0, 1e-13);
    EXPECT_NEAR(forward(center + 1.0 - 6.0 * kPi, 0.0).x - zero, 1.0, 1e-13);
}

TEST_F(TQPrMercDirectOnUnitSphere, TheInverseDoesNotWrapLongitudes) {
    EXPECT_NEAR(inverse(10.0, 0.0).x, 10.0, 1e-14);
}

TEST_F(TQPrMercDirectOnUnitSphere, EndlessLongitudesAreNotWrappedForEver) {
    EXPECT_TRUE(std::isfinite(forward(1e300, 0.0).x));
    EXPECT_LE(std::abs(forward(2.6e11, 0.0).x), kPi + 1e-9);
    EXPECT_FALSE(std::isfinite(forward(HUGE_VAL, 0.0).x));
}

TEST_F(TQPrMercDirectOnUnitSphere, TheLatitudeOfOriginIsThatOfTrueScaleAndOfTheFalseNorthing) {
    set("phi0", 60.0);
    set("Y0", 1000.0);
    EXPECT_NEAR(forward(0.0, rad(60.0)).y, 1000.0, 1e-12);
    EXPECT_NEAR(forward(1.0, 0.0).x, 0.5, 1e-15); // cos 60 degrees
    EXPECT_NEAR(forward(0.0, 0.0).y, 1000.0 - 0.5 * northing(rad(60.0)), 1e-12);
}

TEST_F(TQPrMercDirectOnUnitSphere, TheCentralMeridianHasTheFalseEasting) {
    set("lambda0", 30.0);
    set("X0", 100.0);
    EXPECT_NEAR(forward(rad(30.0), 0.0).x, 100.0, 1e-13);
    EXPECT_NEAR(forward(rad(31.0), 0.0).x, 100.0 + rad(1.0), 1e-13);
    EXPECT_NEAR(inverse(100.0, 0.0).x, rad(30.0), 1e-14);
}

TEST_F(TQPrMercDirectOnUnitSphere, TheScaleFactorTakesPart) {
    set("k0", 0.25);
    EXPECT_NEAR(forward(1.0, 0.5).x, 0.25, 1e-15);
    EXPECT_NEAR(forward(1.0, 0.5).y, 0.25 * northing(0.5), 1e-14);
}

TEST_F(TQPrMercDirectOnUnitSphere, AnEccentricityOfOneOrMoreGivesAnIsometricLatitudeOfMinusOne) {
    for (const double e2 : {1.0, 4.0}) {
        TQEllipsoid impossible(TQString("A"), 1.0, e2);
        projection.setEllipsoid(&impossible);
        const CapturedMessages messages;
        const double atOrigin = forward(0.0, 0.0).y;
        EXPECT_EQ(forward(0.0, 0.7).y, atOrigin);
        EXPECT_EQ(atOrigin, 0.0); // the same -1 at the origin and at the point
        EXPECT_THAT(messages.lines(), ElementsAre());
    }
}

TEST_F(TQPrMercDirectOnUnitSphere, ConvertsOnTheDatumOfItsEllipsoid) {
    // A translation of a hundredth of the radius along z moves the equator by as many radians.
    sphere.setDatumShift(TQEllipsoid::ThreeParameterShift, 1.0, 0.0, {0.0, 0.0, 0.01});
    EXPECT_NEAR(forward(0.0, 0.0).y, northing(0.01), 1e-14);
    EXPECT_NEAR(inverse(0.0, 0.0).y, -0.01, 1e-12);
    EXPECT_TRUE(projection.needsDatumShift());
    EXPECT_TRUE(projection.hasDatumShift());
}

TEST(TQPrMercDirect, AttachingAnEllipsoidComputesTheConstantsAnew) {
    TQEllipsoid small(TQString("Small"), 1.0, 0.0);
    TQEllipsoid large(TQString("Large"), 10.0, 0.0);
    TQPrMercDirect projection;
    TQPoint global;
    projection.setEllipsoid(&small);
    projection.convertGeoPt(TQPoint{1.0, 0.0}, global);
    EXPECT_NEAR(global.x, 500001.0, 1e-9);
    projection.setEllipsoid(&large);
    projection.convertGeoPt(TQPoint{1.0, 0.0}, global);
    EXPECT_NEAR(global.x, 500010.0, 1e-9);
}

// A file cut before its last line is told and keeps what it had not reached.
TEST(TQPrMercDirect, ATextWithFourValuesLeavesTheScaleFactor) {
    TQPrMercDirect projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("k0", 0.25).table());
    TextLines lines = mercatorHeadLines() + sampleBaseLines() + mercatorValueLines();
    lines.pop_back();
    EXPECT_EQ(readProjectionText(projection, textOf(lines)), 5508);
    EXPECT_EQ(parameterOf(projection, "k0"), "0.25");
    EXPECT_EQ(parameterOf(projection, "Y0"), "-100000");
}

TEST(TQPrMercDirect, EveryMissingLineLeavesItsFieldAndThoseBehind) {
    const TextLines whole = mercatorHeadLines() + sampleBaseLines() + mercatorValueLines();
    const std::vector<std::string> names = {"lambda0", "phi0", "X0", "Y0", "k0"};
    const std::vector<std::string> read = {"9.5", "12.25", "400000", "-100000", "0.9996"};
    const std::vector<std::string> initial = {"0", "0", "500000", "0", "1"};
    for (std::size_t present = 0; present < names.size(); ++present) {
        SCOPED_TRACE(present);
        const auto end = whole.end() - static_cast<std::ptrdiff_t>(names.size() - present);
        TQPrMercDirect projection;
        EXPECT_EQ(readProjectionText(projection, textOf(TextLines(whole.begin(), end))),
                  5504 + static_cast<int>(present));
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(parameterOf(projection, names[i]), i < present ? read[i] : initial[i]) << names[i];
        }
    }
}

TEST(TQPrMercDirect, ALineThatIsNoNumberIsZero) {
    TQPrMercDirect projection;
    TextLines lines = mercatorHeadLines() + sampleBaseLines() + mercatorValueLines();
    lines.back().text = "none";
    EXPECT_EQ(readProjectionText(projection, textOf(lines)), 0);
    EXPECT_EQ(parameterOf(projection, "k0"), "0");
}

TEST(TQPrMercDirect, MeridiansAndParallelsAreStraightAndThereIsNoCenter) {
    const CapturedMessages messages;
    const TQPrMercDirect projection;
    EXPECT_EQ(projection.meridianShape(), 0);
    EXPECT_EQ(projection.parallelShape(), 0);
    EXPECT_EQ(projection.center(), TQPoint());
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
}

TEST(TQPrMercDirect, LatitudesMayPassAPoleByATenMillionth) {
    const TQPrMercDirect projection;
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{9.0, -kPi / 2.0 - 0.99e-7}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{9.0, -kPi / 2.0 - 1.01e-7}));
    EXPECT_TRUE(projection.isGeoPtValid(TQAnglePoint(720.0, 90.0, 0x12000001)));
}
