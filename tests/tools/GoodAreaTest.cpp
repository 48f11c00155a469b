#include "tools/tqproj/map/GoodArea.h"

#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/MadeProjection.h"
#include "testing/ProbeProjection.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"
#include "tools/tqproj/map/MapProjection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

using testing::IsEmpty;

namespace {

constexpr double kTenth = 0.1;
constexpr double kFlattening = 0.4; // what it moves a border by, in degrees, beside the sphere

std::optional<GeographicExtent> areaOf(const TQProjection& projection) {
    return goodAreaOf(MapProjection(projection));
}

/// The area of a PROJ string, without its ellipsoid: on a sphere.
std::optional<GeographicExtent> areaOf(const std::string& definition) {
    TQPrProj4 projection;
    EXPECT_EQ(projection.initFromPROJString((definition + " +R=6371000").c_str(), false), 0);
    return areaOf(projection);
}

void expectBorders(const std::optional<GeographicExtent>& area, double west, double south, double east,
                   double north, double allowed = 0.0) {
    ASSERT_TRUE(area.has_value());
    EXPECT_NEAR(area->west, west, allowed);
    EXPECT_NEAR(area->south, south, allowed);
    EXPECT_NEAR(area->east, east, allowed);
    EXPECT_NEAR(area->north, north, allowed);
}

/// Longitude and latitude on a plane, in degrees.
int plateCarree(const TQPoint& geo, TQPoint& plane) {
    plane = {tq_rad2deg(geo.x), tq_rad2deg(geo.y)};
    return 0;
}

int fromPlateCarree(const TQPoint& plane, TQPoint& geo) {
    geo = {tq_deg2rad(plane.x), tq_deg2rad(plane.y)};
    return 0;
}

// ---- closed forms on the sphere; borders are rounded inwards to tenths ------------------------------------

// Scale 1 / sqrt(1 - (cos(latitude) sin(from the meridian))^2), Snyder's equation 8-4; asin(0.6) = 36.87.
TEST(GoodArea, OfATransverseMercatorLiesAboutItsMeridian) {
    expectBorders(areaOf("+proj=tmerc"), -36.8, -90.0, 36.8, 90.0);
    expectBorders(areaOf("+proj=tmerc +lon_0=30 +k=0.9996 +x_0=500000 +units=ft"), -6.8, -90.0, 66.8, 90.0);
}

// The lattice passes the meridian at 2 degrees, where the scale is 1.0006.
TEST(GoodArea, ItsCentreMayBeBesideTheMeridian) {
    expectBorders(areaOf("+proj=tmerc +lon_0=27 +x_0=500000"), -9.8, -90.0, 63.8, 90.0, kTenth + 1e-9);
    expectBorders(areaOf("+proj=tmerc +lon_0=27 +axis=wsu"), -9.8, -90.0, 63.8, 90.0, kTenth + 1e-9);
}

TEST(GoodArea, MayPassTheAntimeridian) {
    expectBorders(areaOf("+proj=tmerc +lon_0=150"), 113.2, -90.0, 186.8, 90.0);
    expectBorders(areaOf("+proj=tmerc +lon_0=-170"), 153.2, -90.0, 226.8, 90.0);
}

// Scale 1 / cos(latitude), equation 7-4.
TEST(GoodArea, OfAMercatorLiesAboutTheEquatorAllRound) {
    expectBorders(areaOf("+proj=merc"), -180.0, -36.8, 180.0, 36.8);
    EXPECT_TRUE(areaOf("+proj=merc")->isClosed());
}

// A map of all longitudes is torn where its image is, half the world away from its meridian.
TEST(GoodArea, AllRoundBeginsWhereTheImageDoes) {
    expectBorders(areaOf("+proj=merc +lon_0=150"), -30.0, -36.8, 330.0, 36.8);
    expectBorders(areaOf("+proj=merc +lon_0=-150"), 30.0, -36.8, 390.0, 36.8);
    expectBorders(areaOf("+proj=merc +lon_0=2.3"), -177.7, -36.8, 182.3, 36.8);
    expectBorders(areaOf("+proj=merc +lon_0=180"), 0.0, -36.8, 360.0, 36.8);
    EXPECT_TRUE(areaOf("+proj=merc +lon_0=2.3")->isClosed());
}

// Scale 2 / (1 + sin(latitude)), equation 21-33.
TEST(GoodArea, OfAPolarStereographicProjectionLiesAboutItsPole) {
    expectBorders(areaOf("+proj=stere +lat_0=90"), -180.0, 36.9, 180.0, 90.0);
    expectBorders(areaOf("+proj=stere +lat_0=-90 +k=0.97"), -180.0, -90.0, 180.0, -36.9);
    expectBorders(areaOf("+proj=stere +lat_0=90 +lon_0=-45"), 135.0, 36.9, 495.0, 90.0);
}

// cos(distance) = 0.6 on the meridian and on the parallel of the centre.
TEST(GoodArea, OfAnObliqueStereographicProjectionMayHoldThePole) {
    const double parallel = tq_rad2deg(std::acos((0.6 - 0.75) / 0.25));
    expectBorders(areaOf("+proj=stere +lat_0=60 +lon_0=20"), std::ceil(10.0 * (20.0 - parallel)) / 10.0, 6.9,
                  std::floor(10.0 * (20.0 + parallel)) / 10.0, 90.0);
}

// Scale 1 / cos(latitude) along parallels, 1 along meridians.
TEST(GoodArea, OfAnEquirectangularProjectionLiesAboutTheEquator) {
    expectBorders(areaOf("+proj=eqc"), -180.0, -36.8, 180.0, 36.8);
    expectBorders(areaOf("+proj=longlat"), -180.0, -36.8, 180.0, 36.8);
}

// Shapes are true on the standard parallel 60, where the scale along parallels is 0.5 / cos(latitude).
TEST(GoodArea, OfAnEquirectangularProjectionWithAStandardParallelLiesAboutIt) {
    const double north = tq_rad2deg(std::acos(0.5 / 1.25));
    const double south = tq_rad2deg(std::acos(0.5 * 1.25));
    expectBorders(areaOf("+proj=eqc +lat_ts=60"), -180.0, std::ceil(10.0 * south) / 10.0, 180.0,
                  std::floor(10.0 * north) / 10.0);
}

// Nothing is enlarged anywhere; the scale is cos(distance) towards the centre, equation 20-5.
TEST(GoodArea, OfAnOrthographicProjectionLiesAboutItsCentre) {
    expectBorders(areaOf("+proj=ortho +lat_0=45 +lon_0=10"), -43.1, 8.2, 63.1, 81.8); // acos(0.6) = 53.13
    expectBorders(areaOf("+proj=ortho +lat_0=-90"), -180.0, -90.0, 180.0, -53.2);
}

// Scale 1 / cos(distance)^2 from the centre, equation 22-2.
TEST(GoodArea, OfAGnomonicProjectionIsSmall) {
    expectBorders(areaOf("+proj=gnom +lat_0=90"), -180.0, 63.5, 180.0, 90.0);
    expectBorders(areaOf("+proj=gnom +lon_0=100"), 73.5, -26.5, 126.5, 26.5);
}

// Scale 1 / cos(distance / 2), and its reciprocal towards the centre, equations 24-1 and 24-1a: 73.74.
TEST(GoodArea, OfALambertAzimuthalProjectionLiesAboutItsCentre) {
    expectBorders(areaOf("+proj=laea +lat_0=90"), -180.0, 16.3, 180.0, 90.0);
    expectBorders(areaOf("+proj=laea +lon_0=-100"), -173.7, -73.7, -26.3, 73.7);
}

// The great circle through the centre towards the east is true to scale: 1 / cos(distance from it).
TEST(GoodArea, OfAnObliqueMercatorLiesAboutItsLine) {
    // On the parallel of the centre, sin(distance) = (1 - cos(from the centre)) / 2 = 0.6.
    const double parallel = tq_rad2deg(std::acos(-0.2));
    expectBorders(areaOf("+proj=somerc +lat_0=45 +lon_0=10"), std::ceil(10.0 * (10.0 - parallel)) / 10.0, 8.2,
                  std::floor(10.0 * (10.0 + parallel)) / 10.0, 81.8);
    // A line 30 degrees from the north through a point of the equator, from which the pole is 30 degrees off.
    const double equator = tq_rad2deg(std::asin(0.6 / std::cos(tq_deg2rad(30.0))));
    expectBorders(areaOf("+proj=omerc +lat_0=0 +lonc=10 +alpha=30"),
                  std::ceil(10.0 * (10.0 - equator)) / 10.0, -90.0,
                  std::floor(10.0 * (10.0 + equator)) / 10.0, 90.0);
}

/// The scale of a conformal conic projection with two standard parallels, equations 15-1 to 15-4.
double conicScale(double latitude, double first, double second) {
    const auto t = [](double degrees) { return std::tan(tq_deg2rad(45.0 + degrees / 2.0)); };
    const auto cosine = [](double degrees) { return std::cos(tq_deg2rad(degrees)); };
    const double n = std::log(cosine(first) / cosine(second)) / std::log(t(second) / t(first));
    return cosine(first) * std::pow(t(first) / t(latitude), n) / cosine(latitude);
}

TEST(GoodArea, OfAConicProjectionLiesAboutItsParallelsAllRound) {
    const auto area = areaOf("+proj=lcc +lat_1=30 +lat_2=60 +lon_0=-96");
    ASSERT_TRUE(area.has_value());
    EXPECT_EQ(area->west, 84.0);
    EXPECT_TRUE(area->isClosed());
    const double least = conicScale(45.0, 30.0, 60.0); // within 0.0001 of that of the parallel with the least
    EXPECT_LE(conicScale(area->north, 30.0, 60.0), 1.25 * least);
    EXPECT_GT(conicScale(area->north + kTenth, 30.0, 60.0), 1.25 * least);
    EXPECT_LE(conicScale(area->south, 30.0, 60.0), 1.25 * least);
    EXPECT_GT(conicScale(area->south - kTenth, 30.0, 60.0), 1.25 * least);
}

// The meridians of a transverse Mercator and of the other side of the world are alike.
TEST(GoodArea, OfAPlaneUpsideDownIsTheSame) {
    expectBorders(areaOf("+proj=tmerc +lon_0=25 +axis=wsu"), -11.8, -90.0, 61.8, 90.0);
    EXPECT_TRUE(areaOf("+proj=stere +lat_0=90 +axis=wsu")->isClosed());
}

// It is true to scale all along the equator and all along its central meridian (Snyder, chapter 30).
TEST(GoodArea, OfASinusoidalProjectionLiesAboutItsMeridian) {
    expectBorders(areaOf("+proj=sinu +lon_0=150"), -30.0, -90.0, 330.0, 90.0);
}

// From 3000 km above, lengths shrink away from the point below: equations 23-5 and 23-6.
TEST(GoodArea, OfAPerspectiveViewLiesBelowIt) {
    const auto area = areaOf("+proj=nsper +h=3000000 +lat_0=20 +lon_0=40");
    ASSERT_TRUE(area.has_value());
    const auto radialScale = [](double degrees) {
        const double fromCentre = 1.0 + 3000000.0 / 6371000.0;
        const double cosine = std::cos(tq_deg2rad(degrees));
        return (fromCentre - 1.0) * (fromCentre * cosine - 1.0) / std::pow(fromCentre - cosine, 2);
    };
    EXPECT_GE(radialScale(area->north - 20.0), 0.8);
    EXPECT_LT(radialScale(area->north - 20.0 + kTenth), 0.8);
    EXPECT_NEAR(area->north + area->south, 40.0, 1e-9);
    EXPECT_NEAR(area->west + area->east, 80.0, 1e-9);
}

// ---- beside PROJ's factors -------------------------------------------------------------------------------

/// PROJ's factors at a point of the central meridian 40.
PJ_FACTORS factorsAt(const ProjOperation& operation, double latitude) {
    return proj_factors(operation.handle(), proj_coord(tq_deg2rad(40.0), tq_deg2rad(latitude), 0.0, 0.0));
}

/// PROJ's factors at the centre of a projection with that meridian: the least enlargement in steps of five
/// degrees, among the truest shapes.
PJ_FACTORS factorsOfCentre(const ProjOperation& operation) {
    const auto shapeOf = [](const PJ_FACTORS& factors) {
        return factors.tissot_semimajor / factors.tissot_semiminor;
    };
    std::vector<PJ_FACTORS> candidates;
    for (int latitude = 0; latitude < 90; latitude += 5) {
        candidates.push_back(factorsAt(operation, latitude));
    }
    const double truest = shapeOf(*std::ranges::min_element(candidates, {}, shapeOf));
    std::erase_if(candidates, [&](const PJ_FACTORS& factors) { return shapeOf(factors) > 1.01 * truest; });
    return *std::ranges::min_element(candidates, {}, &PJ_FACTORS::tissot_semimajor);
}

TEST(GoodArea, OfACompromiseEndsWherePROJsScalesDo) {
    for (const std::string name : {"robin", "natearth", "eqearth", "eck4", "kav7"}) {
        SCOPED_TRACE(name);
        const auto area = areaOf("+proj=" + name + " +lon_0=40");
        ASSERT_TRUE(area.has_value());
        const ProjOperation projection("+proj=" + name + " +lon_0=40 +R=6371000");
        const PJ_FACTORS centre = factorsOfCentre(projection);
        const auto isGood = [&](double latitude) {
            const PJ_FACTORS factors = factorsAt(projection, latitude);
            return factors.tissot_semimajor <= 1.25 * centre.tissot_semimajor &&
                   factors.tissot_semiminor >= centre.tissot_semiminor / 1.25;
        };
        EXPECT_TRUE(isGood(area->north));
        EXPECT_FALSE(isGood(area->north + kTenth));
        EXPECT_NEAR(area->south, -area->north, 1e-9);
        EXPECT_NEAR(area->west + area->east, 80.0, 1e-9);
    }
}

// ---- the classes of the library --------------------------------------------------------------------------

TEST(GoodArea, OfTheLibrarysClassesIsThatOnTheSphereButForFlattening) {
    const auto made = [](int typeCode, const std::vector<MadeProjection::Parameter>& parameters) {
        return areaOf(*MadeProjection(typeCode, wgs84, parameters));
    };
    const auto expectNear = [](const std::optional<GeographicExtent>& area, double west, double south,
                               double east,
                               double north) { expectBorders(area, west, south, east, north, kFlattening); };
    {
        SCOPED_TRACE("transverse Mercator, which holds latitudes at 89 degrees");
        expectNear(made(4, {{"lambda0", 30.0}, {"k0", 1.0}}), -6.8, -89.0, 66.8, 89.0);
    }
    {
        SCOPED_TRACE("Gauss-Krueger");
        expectNear(made(1, {{"lambda0", 0.0}, {"X0", 500000.0}}), -36.8, -89.0, 36.8, 89.0);
    }
    {
        SCOPED_TRACE("Mercator");
        expectNear(made(5, {{"lambda0", 0.0}, {"k0", 1.0}}), -180.0, -36.8, 180.0, 36.8);
    }
    {
        SCOPED_TRACE("polar stereographic");
        expectNear(made(8, {{"lambda0", 0.0}, {"k0", 0.994}, {"isNorth", 1.0}}), -180.0, 36.8, 180.0, 90.0);
    }
    {
        SCOPED_TRACE("polar stereographic of the south, whose false northing does not come back");
        expectNear(made(8, {{"lambda0", 0.0}, {"k0", 0.994}, {"falseNorthing", 2e6}, {"isNorth", 0.0}}),
                   -180.0, -90.0, 180.0, -36.8);
    }
    {
        SCOPED_TRACE("gnomonic");
        expectNear(made(9, {{"lambda0", 0.0}, {"k0", 1.0}, {"isNorth", 1.0}}), -180.0, 63.5, 180.0, 90.0);
    }
    {
        SCOPED_TRACE("Lambert, which does not wrap longitudes: its image is torn at the antimeridian");
        const auto area = made(2, {{"lambda0", 3.0},
                                   {"latitudeOrigin", 45.0},
                                   {"Tangent", 0.0},
                                   {"stdPar1", 30.0},
                                   {"stdPar2", 60.0}});
        ASSERT_TRUE(area.has_value());
        expectNear(area, -180.0, 5.3, 180.0, 77.0);
        EXPECT_TRUE(area->isClosed());
    }
    {
        SCOPED_TRACE("Swiss oblique Mercator");
        const double parallel = tq_rad2deg(std::acos(-0.2));
        expectNear(made(12, {{"longitudeCenter", 10.0}, {"latitudeCenter", 45.0}, {"kc", 1.0}}),
                   10.0 - parallel, 8.2, 10.0 + parallel, 81.8);
    }
}

// ---- odd projections -------------------------------------------------------------------------------------

TEST(GoodArea, OfAnImageOnlyHereAndThereIsWhereItIs) {
    ProbeProjection probe(plateCarree);
    probe.inverse = fromPlateCarree;
    probe.valid = [](const TQPoint& geo) {
        return std::abs(geo.x - tq_deg2rad(20.0)) < tq_deg2rad(0.57) && std::abs(geo.y) < tq_deg2rad(7.04);
    };
    expectBorders(areaOf(probe), 19.5, -7.0, 20.5, 7.0);
}

// The other one is that of longitudes, at the antimeridian.
TEST(GoodArea, ATearEndsIt) {
    ProbeProjection probe([](const TQPoint& geo, TQPoint& plane) {
        plateCarree(geo, plane);
        plane.x += tq_rad2deg(geo.x) > 33.33 ? 1000.0 : 0.0;
        plane.y -= tq_rad2deg(geo.y) < -12.34 ? 1000.0 : 0.0;
        return 0;
    });
    expectBorders(areaOf(probe), -179.9, -12.3, 33.3, 36.8);
}

TEST(GoodArea, ThereIsNoneWithoutImages) {
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    const ProbeProjection failing([](const TQPoint& /*geo*/, TQPoint& /*plane*/) { return -1; });
    const ProbeProjection notNumbers([](const TQPoint& /*geo*/, TQPoint& plane) {
        plane = {NotANumber, NotANumber};
        return 0;
    });
    const ProbeProjection onePoint([](const TQPoint& /*geo*/, TQPoint& plane) {
        plane = {1.0, 2.0};
        return 0;
    });
    const ProbeProjection oneLine([](const TQPoint& geo, TQPoint& plane) {
        plane = {geo.x, geo.x};
        return 0;
    });
    for (const ProbeProjection* probe : {&failing, &notNumbers, &onePoint, &oneLine}) {
        EXPECT_FALSE(areaOf(*probe).has_value());
    }
}

TEST(GoodArea, ThereIsNoneOfBrokenOrGeocentricSystems) {
    const CapturedMessages messages;
    for (const char* definition : {"EPSG:999999", "EPSG:4978", "EPSG:5714"}) {
        TQPrProj4 projection;
        projection.initFromPROJString(definition, false);
        EXPECT_FALSE(areaOf(projection).has_value()) << definition;
    }
}

TEST(GoodArea, AnAreaBelowATenthOfADegreeIsNone) {
    ProbeProjection probe(plateCarree);
    probe.valid = [](const TQPoint& geo) { return std::hypot(geo.x, geo.y) < tq_deg2rad(0.03); };
    EXPECT_FALSE(areaOf(probe).has_value());
}

TEST(GoodArea, PointsWithoutAnImageAreNotReported) {
    TQPrProj4 projection;
    ASSERT_EQ(projection.initFromPROJString("+proj=ortho +lat_0=45", false), 0);
    const CapturedMessages messages;
    EXPECT_TRUE(areaOf(projection).has_value());
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(GoodArea, IsFoundWithSomeTenThousandConversions) {
    const ProbeProjection whole(plateCarree);
    RandomNumbers random(1);
    const ProbeProjection noise([&random](const TQPoint& geo, TQPoint& plane) {
        plane = {geo.x + random.between(-1e-6, 1e-6), geo.y + random.between(-1e-6, 1e-6)};
        return 0;
    });
    for (const ProbeProjection* probe : {&whole, &noise}) {
        areaOf(*probe);
        EXPECT_LT(probe->converted.size(), 25000U);
    }
}

} // namespace
