#include "tools/tqproj/map/MapLine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string meridianText(double longitude) {
    return MapLine{MapLine::Kind::Meridian, longitude, {}}.coordinate(1.0);
}

std::string parallelText(double latitude) {
    return MapLine{MapLine::Kind::Parallel, latitude, {}}.coordinate(1.0);
}

TEST(MapLine, LongitudesAreEastAndWestOfGreenwich) {
    EXPECT_EQ(meridianText(0.0), "0°");
    EXPECT_EQ(meridianText(9.0), "9°E");
    EXPECT_EQ(meridianText(-75.0), "75°W");
    EXPECT_EQ(meridianText(180.0), "180°");
    EXPECT_EQ(meridianText(-180.0), "180°");
}

TEST(MapLine, LongitudesBeyondTheAntimeridianAreTheirOwnAgain) {
    EXPECT_EQ(meridianText(190.0), "170°W");
    EXPECT_EQ(meridianText(-190.0), "170°E");
    EXPECT_EQ(meridianText(360.0), "0°");
    EXPECT_EQ(meridianText(540.0), "180°");
    EXPECT_EQ(meridianText(350.5), "9°30'W");
}

TEST(MapLine, LatitudesAreNorthAndSouth) {
    EXPECT_EQ(parallelText(0.0), "0°");
    EXPECT_EQ(parallelText(46.0), "46°N");
    EXPECT_EQ(parallelText(-33.75), "33°45'S");
    EXPECT_EQ(parallelText(90.0), "90°N");
    EXPECT_EQ(parallelText(-90.0), "90°S");
}

TEST(MapLine, MinutesAndSecondsAreThereWhenTheyAreNotZero) {
    EXPECT_EQ(meridianText(2.5), "2°30'E");
    EXPECT_EQ(meridianText(-1.0 / 3600.0), "0°0'1\"W");
    EXPECT_EQ(meridianText(12.0 + 30.0 / 3600.0), "12°0'30\"E");
    EXPECT_EQ(parallelText(45.0 + 1.0 / 60.0 + 1.5 / 3600.0), "45°1'1.5\"N");
}

TEST(MapLine, RoundingCarriesToTheNextMinuteAndDegree) {
    constexpr double almostAMinute = 59.9999999 / 3600.0;
    EXPECT_EQ(meridianText(10.0 + 29.0 / 60.0 + almostAMinute), "10°30'E");
    EXPECT_EQ(meridianText(10.0 + 59.0 / 60.0 + almostAMinute), "11°E");
    EXPECT_EQ(parallelText(-(59.0 / 60.0 + almostAMinute)), "1°S");
}

// As multiples of a distance with many decimals are: 540 times 0.3333333333 is not quite 180.
TEST(MapLine, WhatIsWrittenAsGreenwichAntimeridianOrEquatorHasNoSide) {
    EXPECT_EQ(meridianText(540.0 * 0.3333333333), "180°");
    EXPECT_EQ(meridianText(-540.0 * 0.3333333333), "180°");
    EXPECT_EQ(meridianText(1e-12), "0°");
    EXPECT_EQ(parallelText(-1e-12), "0°");
}

TEST(MapLine, PlaneCoordinatesAreMetresAndSaySoWhereThePlaneHasAnotherUnit) {
    constexpr double surveyFoot = 1200.0 / 3937.0;
    for (const MapLine::Kind kind : {MapLine::Kind::Easting, MapLine::Kind::Northing}) {
        EXPECT_EQ((MapLine{kind, 700000.0, {}}.coordinate(1.0)), "700000");
        EXPECT_EQ((MapLine{kind, -250.5, {}}.coordinate(1.0)), "-250.5");
        EXPECT_EQ((MapLine{kind, 0.0, {}}.coordinate(1.0)), "0");
        EXPECT_EQ((MapLine{kind, 39370.0, {}}.coordinate(surveyFoot)), "12000 m");
        EXPECT_EQ((MapLine{kind, 300000.0 / surveyFoot, {}}.coordinate(surveyFoot)), "300000 m");
    }
}

} // namespace
