// Where the results of each class are right: at the places where its formulas cease to be the projection.

#include "projection/TQProjection.h"
#include "projections/TQPrGaussKruger.h"
#include "projections/TQPrMercTransv.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

using testing::IsNull;
using testing::StrEq;

namespace {

using Parameters = std::vector<MadeProjection::Parameter>;

TQPoint place(double longitude, double latitude) { return {tq_deg2rad(longitude), tq_deg2rad(latitude)}; }

TQPoint imageOf(const TQProjection& projection, const TQPoint& geo) {
    TQPoint image;
    EXPECT_EQ(projection.convertGeoPt(geo, image), 0);
    return image;
}

/// The status that a place has in a batch.
int statusOf(const TQProjection& projection, const TQPoint& geo) {
    TQPoint image;
    signed char status = 99;
    projection.convertGeoPts({&geo, 1}, {&image, 1}, {&status, 1});
    return status;
}

/// The status that a plane point has in a batch.
int statusOfGlobal(const TQProjection& projection, const TQPoint& global) {
    TQPoint geo;
    signed char status = 99;
    projection.convertGlobalPts({&global, 1}, {&geo, 1}, {&status, 1});
    return status;
}

const Parameters kUtm{{"lambda0", 3.0}, {"hemisphere", 1.0}};

} // namespace

// Both latitudes have the image of 89 degrees, 112 km away.
TEST(Domain, OfTheTransverseMercatorEndsWhereLatitudesAreHeld) {
    const MadeProjection utm(3, wgs84, kUtm);
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(30.0, 89.0)), IsNull());
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(30.0, 89.9999)), StrEq("within a degree of a pole"));
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(30.0, -89.9999)), StrEq("within a degree of a pole"));
    EXPECT_EQ(statusOf(*utm, place(30.0, 89.0)), TQProjection::Converted);
    EXPECT_EQ(statusOf(*utm, place(30.0, 89.9999)), TQProjection::BeyondDomain);
}

TEST(Domain, OfTheTransverseMercatorEndsFarFromTheCentralMeridian) {
    const MadeProjection utm(3, wgs84, kUtm);
    const char* const reason = "more than 45 degrees from the central meridian";
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(47.9, 10.0)), IsNull());
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(48.1, 10.0)), StrEq(reason));
    EXPECT_THAT(utm->whyGeoPtIsBeyondDomain(place(-123.0, 30.0)), StrEq(reason));
}

// Points of the plane that are images of others: beyond the pole, and a whole meridian farther.
TEST(Domain, OfTheTransverseMercatorHasNoMirrorImages) {
    const MadeProjection utm(3, wgs84, kUtm);
    const TQPoint image = imageOf(*utm, place(5.0, 50.0));
    constexpr double wholeMeridian = 40007862.917 * 0.9996; // of WGS 84
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain(image), IsNull());
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({image.x, image.y + wholeMeridian}), StrEq("beyond a pole"));
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({image.x, image.y - wholeMeridian}), StrEq("beyond a pole"));
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({500000.0, 1.05e7}), StrEq("beyond a pole"));
    EXPECT_EQ(statusOfGlobal(*utm, image), TQProjection::Converted);
    EXPECT_EQ(statusOfGlobal(*utm, {image.x, image.y + wholeMeridian}), TQProjection::BeyondDomain);
    EXPECT_EQ(statusOfGlobal(*utm, {2.0e7, 5.0e6}), TQProjection::BeyondDomain);
}

// 362.3522 degrees east is where Paris is.
TEST(Domain, TakesTheTurnNearestToTheCentralMeridianWhereTheConversionDoesNot) {
    const MadeProjection lambert93(2, grs1980,
                                   {{"Tangent", 0.0},
                                    {"lambda0", 3.0},
                                    {"latitudeOrigin", 46.5},
                                    {"stdPar1", 49.0},
                                    {"stdPar2", 44.0},
                                    {"X0", 700000.0},
                                    {"Y0", 6600000.0}});
    const TQPoint paris = place(362.3522, 48.8566);
    EXPECT_THAT(lambert93->whyGeoPtIsBeyondDomain(paris), IsNull());
    EXPECT_EQ(statusOf(*lambert93, paris), TQProjection::BeyondDomain);
    const TQPoint nearest = lambert93->atNearestTurn(paris);
    EXPECT_NEAR(nearest.x, tq_deg2rad(2.3522), 1e-14);
    EXPECT_EQ(nearest.y, paris.y);
    EXPECT_EQ(statusOf(*lambert93, nearest), TQProjection::Converted);
    EXPECT_NEAR(lambert93->atNearestTurn(place(-357.6478, 48.8566)).x, tq_deg2rad(2.3522), 1e-14);
    EXPECT_NEAR(lambert93->atNearestTurn(place(1802.3522, 48.8566)).x, tq_deg2rad(2.3522), 1e-14);
    for (const double longitude : {2.3522, -176.9, 182.9}) {
        EXPECT_EQ(lambert93->atNearestTurn(place(longitude, 0.0)), place(longitude, 0.0));
    }
}

// A turn of the longitude is the same to sines and cosines.
TEST(Domain, OfAClassThatWrapsLongitudesHasEveryTurn) {
    const MadeProjection utm(3, wgs84, kUtm);
    EXPECT_EQ(statusOf(*utm, place(365.0, 50.0)), TQProjection::Converted);
    const TQPoint image = imageOf(*utm, place(5.0, 50.0));
    const TQPoint turned = imageOf(*utm, place(365.0, 50.0));
    EXPECT_NEAR(image.x, turned.x, 1e-8);
    EXPECT_NEAR(image.y, turned.y, 1e-8);
}

TEST(Domain, OfPointsThatAreNotFiniteIsNone) {
    const MadeProjection utm(3, wgs84, kUtm);
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const double number : {infinity, notANumber}) {
        EXPECT_THAT(utm->whyGeoPtIsBeyondDomain({number, 0.0}), StrEq("no finite coordinates"));
        EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({0.0, number}), StrEq("no finite coordinates"));
    }
}

// What serves many points is that of the class of the object, not of the one that it was made from.
TEST(Domain, OfACopyIsThatOfItsOwnClass) {
    TQEllipsoid ellipsoid(TQString(wgs84.name), wgs84.a, wgs84.e2);
    TQPrGaussKruger gaussKruger;
    gaussKruger.setEllipsoid(&ellipsoid);
    const TQPrMercTransv general(gaussKruger);
    const TQPrGaussKruger again(gaussKruger);
    EXPECT_EQ(statusOf(general, place(60.0, 10.0)), TQProjection::BeyondDomain);
    EXPECT_EQ(statusOf(again, place(60.0, 10.0)), TQProjection::BeyondDomain);
}
