#include "tools/tqproj/map/MapSeam.h"

#include "tests/tools/DefinedProjection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

constexpr GeographicExtent kWorld{};

GeographicExtent cutWorld(const std::string& definition, const GeographicExtent& world = kWorld) {
    const DefinedProjection projection(definition);
    return cutAtSeam(world, projection.images());
}

void expectEqual(const GeographicExtent& extent, const GeographicExtent& expected) {
    EXPECT_EQ(extent.west, expected.west);
    EXPECT_EQ(extent.south, expected.south);
    EXPECT_EQ(extent.east, expected.east);
    EXPECT_EQ(extent.north, expected.north);
}

// A projection whose central meridian is 11 degrees east cuts the world open opposite, 169 degrees west.
TEST(MapSeam, WorldIsCutOppositeTheCentralMeridian) {
    for (const char* definition : {"+proj=robin +lon_0=11", "+proj=merc +lon_0=11", "+proj=sinu +lon_0=11",
                                   "+proj=eqc +lon_0=11", "+proj=moll +lon_0=11"}) {
        const GeographicExtent cut = cutWorld(definition);
        EXPECT_NEAR(cut.west, -169.0, 1e-6) << definition;
        EXPECT_NEAR(cut.east, 191.0, 1e-6) << definition;
        EXPECT_EQ(cut.south, -90.0);
        EXPECT_EQ(cut.north, 90.0);
    }
}

TEST(MapSeam, BothSidesOfTheSeamAreTheSidesOfTheMap) {
    const DefinedProjection projection("+proj=robin +lon_0=11");
    const GeographicExtent cut = cutAtSeam(kWorld, projection.images());
    const double halfWidth = DefinedProjection::inDegrees("+proj=robin").forward({180.0, 30.0}).x;
    EXPECT_NEAR(projection.images().toPlane({cut.west, 30.0})->x, -halfWidth, 1.0);
    EXPECT_NEAR(projection.images().toPlane({cut.east, 30.0})->x, halfWidth, 1.0);
}

TEST(MapSeam, WorldThatBeginsElsewhereIsCutAtTheSeamToo) {
    const GeographicExtent cut = cutWorld("+proj=robin", {-100.0, -60.0, 260.0, 80.0});
    EXPECT_NEAR(std::abs(cut.west), 180.0, 1e-6);
    EXPECT_NEAR(cut.width(), 360.0, 1e-6);
    EXPECT_EQ(cut.south, -60.0);
    EXPECT_EQ(cut.north, 80.0);
}

TEST(MapSeam, SystemOfThePacificIsCutInTheAtlantic) { // PDC Mercator, central meridian 150 degrees east
    EXPECT_NEAR(cutWorld("EPSG:3832", {-180.0, -80.0, 180.0, 80.0}).west, -30.0, 1e-6);
}

TEST(MapSeam, WorldThatEndsAtTheSeamStays) {
    for (const char* definition : {"+proj=robin", "+proj=merc", "+proj=igh"}) {
        SCOPED_TRACE(definition);
        expectEqual(cutWorld(definition, {-180.0, -80.0, 180.0, 80.0}), {-180.0, -80.0, 180.0, 80.0});
    }
}

TEST(MapSeam, PolarMapHasNoSeam) {
    const GeographicExtent cap{-180.0, 60.0, 180.0, 90.0};
    for (const char* definition : {"EPSG:3995", "+proj=laea +lat_0=90", "+proj=aeqd +lat_0=90 +lon_0=20"}) {
        SCOPED_TRACE(definition);
        expectEqual(cutWorld(definition, cap), cap);
    }
}

TEST(MapSeam, ExtentThatDoesNotGoAllAroundStays) {
    const GeographicExtent pacific{130.0, -40.0, 250.0, 50.0};
    expectEqual(cutWorld("+proj=robin", pacific), pacific);
}

TEST(MapSeam, ProjectionWithoutImagesHasNoSeam) { // a gnomonic one shows less than half the world
    const GeographicExtent south{-180.0, -90.0, 180.0, -10.0};
    expectEqual(cutWorld("+proj=gnom +lat_0=90", south), south);
}

} // namespace
