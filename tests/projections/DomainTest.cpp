// Where the results of each class are right: at the places where its formulas cease to be the projection.

#include "projection/TQProjection.h"
#include "projections/TQPrGaussKruger.h"
#include "projections/TQPrMercTransv.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
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
    const char* const reason = "beyond a pole or more than 45 degrees from the central meridian";
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({image.x, image.y + wholeMeridian}), StrEq(reason));
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({image.x, image.y - wholeMeridian}), StrEq(reason));
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({500000.0, 1.05e7}), StrEq(reason));
    EXPECT_THAT(utm->whyGlobalPtIsBeyondDomain({-2.4e7, -2e5}), StrEq(reason));
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

namespace {

const Parameters kSecant{{"Tangent", 0.0},  {"lambda0", 3.0}, {"latitudeOrigin", 46.5}, {"stdPar1", 49.0},
                         {"stdPar2", 44.0}, {"X0", 700000.0}, {"Y0", 6600000.0}};
const Parameters kFromCentre{{"AzimuthAtOriginFlag", 1.0},
                             {"longitudeCenter", 115.0},
                             {"latitudeCenter", 4.0},
                             {"azimuth", 53.0},
                             {"bearing", 53.0},
                             {"kc", 1.0}};
const Parameters kTurned{{"HotineFlag", 1.0},
                         {"AzimuthAtOriginFlag", 1.0},
                         {"longitudeCenter", 115.0},
                         {"latitudeCenter", 4.0},
                         {"azimuth", 53.0},
                         {"bearing", 53.00001},
                         {"kc", 1.0}};
const Parameters kLv95{{"longitudeCenter", 7.43958333333333},
                       {"latitudeCenter", 46.9524055555556},
                       {"kc", 1.0},
                       {"falseEasting", 2600000.0},
                       {"falseNorthing", 1200000.0}};
const Parameters kBonneSouth{{"lambda0", 20.0}, {"standardParallel", -30.0}};
const Parameters kUpsSouth{{"isNorth", 0.0}, {"k0", 0.994}, {"falseEasting", 2e6}, {"falseNorthing", 2e6}};
const Parameters kSouth{{"isNorth", 0.0}};

/// A point of a class, and why it is beyond the domain; null where it is within.
struct Beyond {
    int typeCode;
    const Parameters* parameters;
    TQPoint point; ///< degrees or metres
    const char* reason;
};

const Parameters kNone;

} // namespace

TEST(Domain, OfEachClassEndsWhereItsFormulaCeasesToBeTheProjection) {
    const Parameters modified{{"_latitudeScaleFactor", 1.1}};
    const char* const farFromCentre = "more than 80 degrees from the centre";
    const char* const ofOther = "on the equator or in the other hemisphere";
    const Beyond beyond[] = {
        {5, &kNone, {10.0, 89.0}, nullptr},
        {5, &kNone, {10.0, 89.01}, "within a degree of a pole"},
        {7, &modified, {10.0, 80.9}, nullptr},
        {7, &modified, {10.0, 81.0}, "beyond 89 degrees of latitude divided by the latitude scale factor"},
        {15, &kNone, {10.0, 89.9999}, nullptr},
        {15, &kNone, {10.0, 90.0}, "a pole, which has no image"},
        {2, &kSecant, {-170.0, -88.0}, nullptr},
        {2, &kSecant, {3.0, -89.5}, "within a degree of the pole behind the cone"},
        {6, &kFromCentre, {114.9, 4.0}, nullptr},
        {6, &kFromCentre, {115.1, 4.0}, "east of the centre, from which the grid is counted"},
        {6, &kTurned, {115.1, 4.0}, nullptr},
        {6, &kTurned, {165.1, 4.0}, "more than 45 degrees from the meridian of the centre"},
        {12, &kLv95, {8.0, 47.0}, nullptr},
        {12, &kLv95, {8.0, -40.0}, farFromCentre},
        {12, &kLv95, {98.0, 47.0}, "more than 80 degrees from the meridian of the centre"},
        {0, &kBonneSouth, {199.0, 60.0}, nullptr},
        {13, &kNone, {2.9, 60.0}, nullptr},
        {13, &kNone, {4.6, 60.0}, "more than 4.5 degrees from the central meridian"},
        {13, &kNone, {1.0, 89.5}, "within a degree of a pole"},
        {11, &kNone, {179.0, 89.0}, nullptr},
        {11, &kNone, {179.0, 89.1}, "within a degree of a pole"},
        {8, &kNone, {179.0, 90.0}, nullptr},
        {8, &kNone, {179.0, -89.5}, "within a degree of the other pole"},
        {8, &kUpsSouth, {179.0, -90.0}, nullptr},
        {10, &kSouth, {179.0, -90.0}, nullptr},
        {10, &kSouth, {179.0, 90.0}, "at the other pole, or beyond"},
        {9, &kNone, {179.0, 0.1}, nullptr},
        {9, &kNone, {179.0, 0.0}, ofOther},
        {9, &kNone, {179.0, -30.0}, ofOther},
        {9, &kSouth, {179.0, -30.0}, nullptr},
        {9, &kSouth, {179.0, 30.0}, ofOther},
    };
    for (const auto& [typeCode, parameters, point, reason] : beyond) {
        const MadeProjection projection(typeCode, wgs84, *parameters);
        EXPECT_STREQ(projection->whyGeoPtIsBeyondDomain(place(point.x, point.y)), reason)
            << typeCode << ": " << point.x << ", " << point.y;
        const int within = reason == nullptr ? TQProjection::Converted : TQProjection::BeyondDomain;
        const int status = statusOf(*projection, projection->atNearestTurn(place(point.x, point.y)));
        EXPECT_TRUE(status == within || (reason != nullptr && status == TQProjection::Failed)) << typeCode;
    }
}

// All points would have the image of the origin, or that of their mirror image.
TEST(Domain, IsEmptyWithoutAScale) {
    const char* const withoutScale = "on a plane without a scale, as an axis or a factor is none";
    const EllipsoidSize noSize{"none", 0.0, 0.0};
    for (const int typeCode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15}) {
        const MadeProjection projection(typeCode, noSize, {{"standardParallel", 45.0}, {"kc", 1.0}});
        EXPECT_NE(projection->whyGeoPtIsBeyondDomain(place(3.0, 50.0)), nullptr) << typeCode;
        EXPECT_NE(projection->whyGlobalPtIsBeyondDomain({5e5, 5e6}), nullptr) << typeCode;
    }
    for (const double factor : {0.0, 1e-300, -1.0, 1e300}) {
        const Parameters factors{
            {"k0", factor}, {"kc", factor}, {"factor_phiRef", factor}, {"isFactor", 1.0}};
        for (const int typeCode : {2, 4, 5, 6, 7, 8, 11, 12}) {
            const MadeProjection projection(typeCode, wgs84, factors);
            EXPECT_STREQ(projection->whyGeoPtIsBeyondDomain(place(3.0, 50.0)), withoutScale)
                << typeCode << ", " << factor;
            EXPECT_NE(statusOf(*projection, place(3.0, 50.0)), TQProjection::Converted) << typeCode;
        }
    }
}

TEST(Domain, OfThePlaneEndsWhereThePointsAreTheImagesOfOthers) {
    const char* const offMeridian = "away from the central meridian of a southern standard parallel";
    const char* const notTakenOff = "around the south pole with a false northing, which is not taken off";
    const char* const halfTurn = "more than half a turn from the central meridian";
    const Parameters bonne{{"lambda0", 0.0}, {"standardParallel", 45.0}};
    const Parameters flatCone{
        {"Tangent", 1.0}, {"latitudeOrigin", 15.0}, {"lambda0", 0.0}, {"k0", 1.0}, {"X0", 0.0}, {"Y0", 0.0}};
    const Beyond beyond[] = {
        {5, &kNone, {2e7, 1e6}, nullptr},
        {5, &kNone, {5e7, 1e6}, halfTurn},
        {7, &kNone, {-5e7, 1e6}, halfTurn},
        {15, &kNone, {5e7, 1e6}, halfTurn},
        {2, &kSecant, {1e6, 6e6}, nullptr},
        {2, &kSecant, {1e6, 1.3e7}, "behind the apex of the cone"},
        {2, &flatCone, {2.3e7, 2.3e7}, halfTurn},
        {6, &kFromCentre, {1e5, 1e5}, nullptr},
        {6, &kTurned, {1e5, 1e5}, "on a grid whose bearing is not the azimuth at the natural origin"},
        {12, &kLv95, {2.7e6, 1.2e6}, nullptr},
        {12, &kLv95, {2.7e6, 1.2e6 + 7e6}, "more than 80 degrees from the centre"},
        {12, &kLv95, {2.7e6 + 4e7, 1.2e6}, "more than 80 degrees from the centre"},
        {0, &kBonneSouth, {0.0, 1e5}, nullptr},
        {0, &kBonneSouth, {1e5, 1e5}, offMeridian},
        {0, &bonne, {1e6, 1e6}, nullptr},
        {0, &bonne, {0.0, 1.2e7}, halfTurn},
        {8, &kUpsSouth, {2.1e6, 2.1e6}, notTakenOff},
        {8, &kSouth, {1e5, 1e5}, nullptr},
        {10, &kSouth, {1e5, 1e5}, nullptr},
        {10, &kSouth, {0.0, 0.0}, "at the other pole, or beyond"},
        {10, &kSouth, {2.1e7, 0.0}, "at the other pole, or beyond"},
        {9, &kSouth, {0.0, 0.0}, "on the equator or in the other hemisphere"},
        {13, &kNone, {500000.0 + 1e5, 1e6}, nullptr},
        {13, &kNone, {500000.0 + 6e5, 1e6}, "more than 4.5 degrees from the central meridian"},
    };
    for (const auto& [typeCode, parameters, point, reason] : beyond) {
        const MadeProjection projection(typeCode, wgs84, *parameters);
        EXPECT_STREQ(projection->whyGlobalPtIsBeyondDomain(point), reason)
            << typeCode << ": " << point.x << ", " << point.y;
        EXPECT_EQ(statusOfGlobal(*projection, point),
                  reason == nullptr ? TQProjection::Converted : TQProjection::BeyondDomain)
            << typeCode << ": " << point.x << ", " << point.y;
    }
}

// The Swiss one takes the shift at the longitude from the centre, the polar one at the mirrored latitude; the
// spheres take none.
TEST(Domain, OfAShiftedDatumIsEmptyWhereTheShiftIsThatOfAnotherPlace) {
    const Parameters atGreenwich{{"latitudeCenter", 47.0}, {"kc", 1.0}};
    const Beyond beyond[] = {
        {12, &kLv95, {8.0, 47.0}, "on a datum that is shifted at the longitude from the centre"},
        {12, &atGreenwich, {8.0, 47.0}, nullptr},
        {8,
         &kSouth,
         {8.0, -80.0},
         "around the south pole, where a datum shift is that of the other hemisphere"},
        {8, &kNone, {8.0, 80.0}, nullptr},
        {10, &kNone, {8.0, 80.0}, "on an ellipsoid with a datum shift, which takes no part"},
        {9, &kNone, {8.0, 80.0}, "on an ellipsoid with a datum shift, which takes no part"},
    };
    for (const auto& [typeCode, parameters, point, reason] : beyond) {
        const MadeProjection projection(typeCode, bessel1841, *parameters);
        projection.ellipsoid().setDatumShift(TQEllipsoid::ThreeParameterShift, wgs84.a, 1.0 / 298.257223563,
                                             {674.374, 15.056, 405.346});
        const TQPoint geo = place(point.x, point.y);
        EXPECT_STREQ(projection->whyGeoPtIsBeyondDomain(geo), reason) << typeCode;
        EXPECT_STREQ(projection->whyGlobalPtIsBeyondDomain(imageOf(*projection, geo)), reason) << typeCode;
    }
}

// Three parameters divide by the cosine of the latitude; the latitude that is held is the local one.
TEST(Domain, OfAShiftedDatumEndsNearThePoles) {
    const MadeProjection north(8, wgs84);
    north.ellipsoid().setDatumShift(TQEllipsoid::ThreeParameterShift, wgs84.a, 1.0 / 298.257223563,
                                    {100.0, 0.0, 0.0});
    EXPECT_THAT(north->whyGeoPtIsBeyondDomain(place(10.0, 88.9)), IsNull());
    EXPECT_THAT(north->whyGeoPtIsBeyondDomain(place(10.0, 89.5)),
                StrEq("within a degree of a pole, where a datum shift of three parameters has no meaning"));
    const MadeProjection mercator(5, wgs84);
    mercator.ellipsoid().setDatumShift(TQEllipsoid::SevenParameterShift, wgs84.a, 1.0 / 298.257223563,
                                       {1000.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    EXPECT_THAT(mercator->whyGeoPtIsBeyondDomain(place(0.0, 88.999)), IsNull());
    EXPECT_THAT(mercator->whyGeoPtIsBeyondDomain(place(180.0, 88.999)), StrEq("within a degree of a pole"));
}

TEST(Domain, OfAnEllipsoidFarFlatterThanTheEarthIsEmpty) {
    constexpr EllipsoidSize flat{"Flat", 6378137.0, 0.3};
    for (const int typeCode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 15}) {
        const MadeProjection projection(typeCode, flat);
        EXPECT_THAT(projection->whyGeoPtIsBeyondDomain(place(1.0, 50.0)),
                    StrEq("on an ellipsoid too flat for the accuracy that is stated"));
    }
}

TEST(Domain, IsNotAskedWithoutAnEllipsoid) {
    for (const int typeCode : {0, 2, 4, 5, 6, 8, 9, 10, 12, 13, 15}) {
        const std::unique_ptr<TQProjection> projection = tq_newProjectionOfType(typeCode);
        EXPECT_THAT(projection->whyGeoPtIsBeyondDomain(place(100.0, 89.9)), IsNull()) << typeCode;
        EXPECT_THAT(projection->whyGlobalPtIsBeyondDomain({1e9, 1e9}), IsNull()) << typeCode;
    }
}

// The last digit of such a longitude is a turn or more.
TEST(Domain, HasNoLongitudesThatTellNoPlace) {
    const MadeProjection wrapping(3, wgs84, kUtm);
    const MadeProjection other(2, wgs84, kSecant);
    for (const MadeProjection* projection : {&wrapping, &other}) {
        for (const double longitude : {1.1e5, -1e17, 1e300}) {
            const TQPoint geo{longitude, 0.8};
            EXPECT_THAT((*projection)->whyGeoPtIsBeyondDomain(geo),
                        StrEq("at a longitude too large to tell a place"));
            EXPECT_EQ(statusOf(**projection, geo), TQProjection::BeyondDomain) << longitude;
            EXPECT_EQ((*projection)->atNearestTurn(geo), geo) << longitude;
        }
    }
    constexpr double manyTurns = 360.0 * 10000;
    EXPECT_THAT(wrapping->whyGeoPtIsBeyondDomain(place(5.0 + manyTurns, 50.0)), IsNull());
    EXPECT_NEAR(wrapping->atNearestTurn(place(5.0 + manyTurns, 50.0)).x, tq_deg2rad(5.0), 1e-10);
}
