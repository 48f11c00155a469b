#include "projections/TQPrMercDirectModified.h"

#include "testing/CapturedMessages.h"
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
constexpr const char* kWktLine =
    "TQPrMercator::WKTProjectionStuff(): Direct Modified case is not really suported...\n";

ProjectionClass mercDirectModified() {
    ProjectionClass modified = mercatorClass<TQPrMercDirectModified>();
    modified.lineage = {"TQPrMercDirectModified", "TQPrMercDirect", "TQPrMercator", "TQProjection"};
    modified.typeCode = 7;
    modified.typeName = "Modified Direct Mercator";
    modified.parameters.push_back({{"_latitudeScaleFactor", "Double", "2"}, "1.5", 1e-5});
    modified.valueLines.push_back({"2.0000000000", 5510, 5509});
    modified.archive = StreamBytes()
                           .tag("TQPrMercDirectModified", 0)
                           .tag("TQPrMercDirect", 0)
                           .append(mercatorArchive())
                           .number(2.0);
    modified.tags = {{"TQPrMercDirectModified", 0, 0},
                     {"TQPrMercDirect", 0, 0},
                     {"TQPrMercator", 0, 0},
                     {"TQProjection", 0, 1}};
    modified.wktItems = mercatorWktItems("Mercator_1SP", "0.4998");
    modified.wktLines = {kWktLine};
    modified.constantsAreCompleted = false;
    return modified;
}

double rad(double degrees) { return degrees * kPi / 180.0; }

/// The Mercator northing on the unit sphere, of a scaled latitude.
double northing(double latitude, double scale) {
    return std::log(std::tan(scale * latitude / 2.0 + kPi / 4.0)) / scale;
}

constexpr double kOrigin = 20.0;

/// On a sphere of radius 1 at latitude 20 degrees without false easting.
class TQPrMercDirectModifiedOnUnitSphere : public testing::Test {
  protected:
    TQPrMercDirectModifiedOnUnitSphere() {
        set("X0", 0.0);
        set("phi0", kOrigin);
        projection.setEllipsoid(&sphere);
    }

    void set(const char* name, double value) {
        ParameterTable parameters;
        projection.setParams(parameters.with(name, value).table());
    }

    static double y(const TQProjection& from, double latitude) {
        TQPoint global;
        EXPECT_EQ(from.convertGeoPt(TQPoint{0.0, latitude}, global), 0);
        return global.y;
    }

    TQEllipsoid sphere{TQString("Unit sphere"), 1.0, 0.0};
    TQPrMercDirectModified projection;
    const double scale = std::cos(rad(kOrigin));
};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrMercDirectModified, ProjectionClassTest, testing::Values(mercDirectModified()));

TEST_F(TQPrMercDirectModifiedOnUnitSphere, AFactorOfOneIsTheDirectMercator) {
    EXPECT_NEAR(y(projection, 0.7), scale * (northing(0.7, 1.0) - northing(rad(kOrigin), 1.0)), 1e-14);
    EXPECT_EQ(parameterOf(projection, "_latitudeScaleFactor"), "1");
}

TEST_F(TQPrMercDirectModifiedOnUnitSphere, TheFactorScalesTheLatitude) {
    set("_latitudeScaleFactor", 1.5);
    projection.initConstants();
    EXPECT_NEAR(y(projection, 0.7), scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.5)), 1e-14);
    TQPoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{0.5, y(projection, 0.7)}, geo), 0);
    EXPECT_NEAR(geo.y, 0.7, 1e-11);
    EXPECT_NEAR(geo.x, 0.5 / scale, 1e-15);
}

TEST_F(TQPrMercDirectModifiedOnUnitSphere, LatitudesAreHeldAtEightyNineDegreesOverTheFactor) {
    set("_latitudeScaleFactor", 2.0);
    projection.initConstants();
    const double limit = rad(89.0) / 2.0;
    EXPECT_NEAR(y(projection, kPi / 2.0), scale * (northing(limit, 2.0) - northing(rad(kOrigin), 2.0)),
                1e-12);
    EXPECT_EQ(y(projection, kPi / 2.0), y(projection, limit));
    EXPECT_EQ(y(projection, -kPi / 2.0), y(projection, -limit));
    EXPECT_LT(y(projection, limit - 0.001), y(projection, limit));
}

// With eccentricity, the sine is that of the latitude itself, not of the scaled one.
TEST_F(TQPrMercDirectModifiedOnUnitSphere, TheEccentricityTermTakesTheLatitudeUnscaled) {
    constexpr double e = 0.5;
    TQEllipsoid ellipsoid(TQString("A"), 1.0, e * e);
    set("phi0", 0.0);
    set("_latitudeScaleFactor", 1.5);
    projection.setEllipsoid(&ellipsoid);
    const double sine = e * std::sin(0.7);
    const double expected = northing(0.7, 1.5) - e / 2.0 * std::log((1.0 + sine) / (1.0 - sine)) / 1.5;
    EXPECT_NEAR(y(projection, 0.7), expected, 1e-14);
}

TEST_F(TQPrMercDirectModifiedOnUnitSphere, TakingParametersLeavesTheOriginOfTheOldFactor) {
    set("_latitudeScaleFactor", 1.5);
    const double withOldOrigin = scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.0));
    EXPECT_NEAR(y(projection, 0.7), withOldOrigin, 1e-14);
    projection.initConstants();
    EXPECT_NEAR(y(projection, 0.7), scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.5)), 1e-14);
}

TEST_F(TQPrMercDirectModifiedOnUnitSphere, ReadingATextLeavesTheOriginOfTheOldFactor) {
    set("_latitudeScaleFactor", 1.5);
    const std::string text = writtenProjectionText(projection);
    TQPrMercDirectModified read;
    ASSERT_EQ(readProjectionText(read, text), 0);
    EXPECT_EQ(parameterOf(read, "_latitudeScaleFactor"), "1.5");
    EXPECT_NEAR(y(read, 0.7), scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.0)), 1e-12);
    read.initConstants();
    EXPECT_NEAR(y(read, 0.7), scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.5)), 1e-12);
}

TEST_F(TQPrMercDirectModifiedOnUnitSphere, CopyComputesTheOriginOfItsFactor) {
    set("_latitudeScaleFactor", 1.5);
    const TQPrMercDirectModified copy(projection);
    EXPECT_NEAR(y(copy, 0.7), scale * (northing(0.7, 1.5) - northing(rad(kOrigin), 1.5)), 1e-14);
    EXPECT_EQ(parameterOf(copy, "_latitudeScaleFactor"), "1.5");
}

// A factor below the squared eccentricity gives the inverse nothing to converge to, 0 divides by itself.
TEST(TQPrMercDirectModified, ConversionsEndForEveryFactor) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (const double factor : {0.0, 0.001, 0.01, -1.0, 1e-300, 1e300, HUGE_VAL, std::nan("")}) {
        TQPrMercDirectModified projection;
        ParameterTable parameters;
        projection.setParams(parameters.with("_latitudeScaleFactor", factor).table());
        projection.setEllipsoid(&ellipsoid);
        TQPoint result;
        EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.5}, result), 0) << factor;
        EXPECT_EQ(projection.convertGlobalPt(TQPoint{1e5, 3e6}, result), 0) << factor;
        EXPECT_NEAR(result.x, (1e5 - 500000.0) / 6400000.0, 1e-9) << factor;
    }
}

TEST(TQPrMercDirectModified, WithAFactorOfOneItsWktIsThatOfTheDirectMercator) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrMercDirectModified projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("k0", 0.5).table());
    projection.setEllipsoid(&ellipsoid);
    const CapturedMessages messages;
    EXPECT_EQ(projection.WKTProjectionStuff().utf8(),
              sampleGeographicWkt() +
                  ",PROJECTION[\"Mercator_1SP\"],PARAMETER[\"latitude_of_origin\",0],PARAMETER[\"central_"
                  "meridian\",0],PARAMETER[\"scale_factor\",0.5],PARAMETER[\"false_easting\",500000],"
                  "PARAMETER[\"false_northing\",0]");
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQPrMercDirectModified, AMissingFactorLeavesTheOneBeforeAndTheConstantsComputed) {
    TQPrMercDirectModified projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("_latitudeScaleFactor", 1.5).table());
    EXPECT_EQ(readProjectionText(projection,
                                 textOf(mercatorHeadLines() + sampleBaseLines() + mercatorValueLines())),
              5510);
    EXPECT_EQ(parameterOf(projection, "_latitudeScaleFactor"), "1.5");
    EXPECT_EQ(parameterOf(projection, "k0"), "0.9996");
}

// The bytes behind the unknown block are taken for the factor, wherever they come from.
TEST(TQPrMercDirectModified, AnUnknownVersionOfTheDirectBlockIsReportedAndTheFactorReadAllTheSame) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQPrMercDirectModified", 0).tag("TQPrMercDirect", 1).number(1.5));
    TQPrMercDirectModified projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQPrMercDirect::unarchiveFrom(TQReadStream *): version 1 is unknown.\n"));
    EXPECT_EQ(parameterOf(projection, "_latitudeScaleFactor"), "1.5");
    EXPECT_EQ(parameterOf(projection, "X0"), "500000");
}

TEST(TQPrMercDirectModified, AnUnknownVersionOfItsOwnBlockStopsAtOnce) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQPrMercDirectModified", 1).number(1.5));
    TQPrMercDirectModified projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(stream.get()->bytesLeft(), sizeof(double));
    EXPECT_EQ(parameterOf(projection, "_latitudeScaleFactor"), "1");
}
