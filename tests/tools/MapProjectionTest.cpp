#include "tools/tqproj/map/MapProjection.h"

#include "testing/ProbeProjection.h"
#include "tests/tools/DefinedProjection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

namespace {

constexpr double kSurveyFoot = 1200.0 / 3937.0; // US, in metres
constexpr double kSemiMajorAxis = 6378137.0;    // of WGS 84 and GRS 1980

// PROJ 9.1.1, `cs2cs +proj=longlat +datum=WGS84 +to EPSG:3395`.
constexpr TQPoint kParis{2.3522, 48.8566};
constexpr TQPoint kParisInWorldMercator{261845.706, 6218369.433};

/// The length of the cross product of two directions: the sine of the angle between them.
double between(const TQPoint& one, const TQPoint& other) {
    return (one.x * other.y - one.y * other.x) / std::hypot(one.x, one.y) / std::hypot(other.x, other.y);
}

TEST(MapProjection, TakesAndGivesDegrees) {
    const DefinedProjection projection("EPSG:3395");
    const TQPoint image = projection.images().toPlane(kParis).value();
    EXPECT_NEAR(image.x, kParisInWorldMercator.x, 0.001);
    EXPECT_NEAR(image.y, kParisInWorldMercator.y, 0.001);
    const TQPoint place = projection.images().toGeographic(kParisInWorldMercator).value();
    EXPECT_NEAR(place.x, kParis.x, 1e-8);
    EXPECT_NEAR(place.y, kParis.y, 1e-8);
}

TEST(MapProjection, LongitudesBeyondTheAntimeridianAreTheirOwnAgain) {
    const DefinedProjection projection("+proj=utm +zone=1 +ellps=WGS84");
    const TQPoint expected =
        DefinedProjection::inDegrees("+proj=utm +zone=1 +ellps=WGS84").forward({-177.5, 40.0});
    for (const double longitude : {-177.5, 182.5, 542.5}) {
        const TQPoint image = projection.images().toPlane({longitude, 40.0}).value();
        EXPECT_NEAR(image.x, expected.x, 1e-6) << longitude;
        EXPECT_NEAR(image.y, expected.y, 1e-6) << longitude;
    }
}

// PROJ's own difference of the antimeridian's two sides stays.
TEST(MapProjection, BothSidesOfTheAntimeridianAreDifferent) {
    const DefinedProjection projection("+proj=merc");
    EXPECT_NEAR(projection.images().toPlane({180.0, 0.0})->x, std::numbers::pi * kSemiMajorAxis, 1e-3);
    EXPECT_NEAR(projection.images().toPlane({-180.0, 0.0})->x, -std::numbers::pi * kSemiMajorAxis, 1e-3);
}

TEST(MapProjection, PointsWithoutAnImageHaveNone) {
    const DefinedProjection gnomonic("+proj=gnom +lat_0=90");
    EXPECT_TRUE(gnomonic.images().toPlane({0.0, 1.0}));
    EXPECT_FALSE(gnomonic.images().toPlane({0.0, -1.0}));
    EXPECT_FALSE(gnomonic.images().toPlane({0.0, 91.0}));
    const DefinedProjection orthographic("+proj=ortho");
    EXPECT_TRUE(orthographic.images().toGeographic({0.9 * kSemiMajorAxis, 0.0}));
    EXPECT_FALSE(orthographic.images().toGeographic({1.1 * kSemiMajorAxis, 0.0}));
}

// The system has grads, which the library takes degrees for; maps have degrees.
TEST(MapProjection, DegreesAreDegreesOfSystemsInGradsToo) {
    constexpr double grad = 0.9; // degrees
    const DefinedProjection projection("EPSG:27572");
    const TQPoint degrees{0.5, 47.0};
    const TQPoint expected = ProjOperation::betweenSystems("EPSG:4807", "EPSG:27572")
                                 .forward({degrees.x / grad, degrees.y / grad});
    const TQPoint image = projection.images().toPlane(degrees).value();
    EXPECT_NEAR(image.x, expected.x, 1e-4);
    EXPECT_NEAR(image.y, expected.y, 1e-4);
    const TQPoint place = projection.images().toGeographic(expected).value();
    EXPECT_NEAR(place.x, degrees.x, 1e-8);
    EXPECT_NEAR(place.y, degrees.y, 1e-8);
}

TEST(MapProjection, DirectionsAreThoseOfMeridiansAndParallels) {
    struct Case {
        const char* definition;
        ProjOperation expected;
        double unit; // of the expected operation's angles, in degrees
    };
    constexpr double grad = 0.9;
    const Case cases[]{{"+proj=robin +lon_0=11", DefinedProjection::inDegrees("+proj=robin +lon_0=11"), 1.0},
                       {"+proj=stere +lat_0=90", DefinedProjection::inDegrees("+proj=stere +lat_0=90"), 1.0},
                       {"EPSG:2154", ProjOperation::betweenSystems("EPSG:4171", "EPSG:2154"), 1.0},
                       {"EPSG:27572", ProjOperation::betweenSystems("EPSG:4807", "EPSG:27572"), grad}};
    for (const auto& [definition, expected, unit] : cases) {
        const DefinedProjection projection(definition);
        for (const TQPoint place : {TQPoint{3.0, 46.0}, TQPoint{-4.0, 49.0}, TQPoint{8.5, 42.5}}) {
            const auto direction = [&expected, &place, unit](double eastward, double northward) {
                constexpr double step = 1e-4; // degrees
                const TQPoint to = expected.forward(
                    {(place.x + step * eastward) / unit, (place.y + step * northward) / unit});
                const TQPoint from = expected.forward(
                    {(place.x - step * eastward) / unit, (place.y - step * northward) / unit});
                return TQPoint{to.x - from.x, to.y - from.y};
            };
            const TQPoint meridian = projection.images().meridianDirection(place);
            const TQPoint parallel = projection.images().parallelDirection(place);
            EXPECT_NEAR(std::hypot(meridian.x, meridian.y), 1.0, 1e-12) << definition;
            EXPECT_NEAR(std::hypot(parallel.x, parallel.y), 1.0, 1e-12) << definition;
            EXPECT_NEAR(between(meridian, direction(0.0, 1.0)), 0.0, 1e-5) << definition;
            EXPECT_NEAR(between(parallel, direction(1.0, 0.0)), 0.0, 1e-5) << definition;
        }
    }
}

TEST(MapProjection, DirectionsBeyondTheAntimeridianAreThoseOfTheSamePlace) {
    const DefinedProjection projection("+proj=utm +zone=1 +ellps=WGS84");
    const TQPoint meridian = projection.images().meridianDirection({-175.0, 50.0});
    EXPECT_NEAR(between(meridian, projection.images().meridianDirection({185.0, 50.0})), 0.0, 1e-9);
}

TEST(MapProjection, KnowsTheUnitOfItsPlane) {
    EXPECT_EQ(DefinedProjection("EPSG:3395").images().metresOfUnit(), 1.0);
    EXPECT_DOUBLE_EQ(DefinedProjection("EPSG:2263").images().metresOfUnit(), kSurveyFoot);
    EXPECT_DOUBLE_EQ(DefinedProjection("+proj=merc +units=km").images().metresOfUnit(), 1000.0);
}

TEST(MapProjection, CircumferenceIsThatOfTheEllipsoidInTheUnitOfThePlane) {
    constexpr double circumference = 2.0 * std::numbers::pi * kSemiMajorAxis;
    EXPECT_NEAR(DefinedProjection("EPSG:3395").images().circumference(), circumference, 1e-3);
    EXPECT_NEAR(DefinedProjection("EPSG:2263").images().circumference(), circumference / kSurveyFoot, 1e-3);
}

TEST(MapProjection, CircumferenceWithoutAnEllipsoidIsThatOfTheEarth) {
    const ProbeProjection probe;
    EXPECT_NEAR(MapProjection(probe).circumference(), 40'075'000.0, 100'000.0);
}

} // namespace
