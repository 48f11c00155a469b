// Wherever a projection states no reason, its results are PROJ's: on random points of the whole world, and of
// planes larger than it.

#include "projections/SideBySide.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

using sidebyside::Area;
using sidebyside::System;

namespace {

constexpr Area kWorld{-180.0, 180.0, -90.0, 90.0};

/// Systems in places where those of the files are not: the south, other azimuths.
std::vector<System> farSystems() {
    std::vector<System> made;
    const auto add = [&made](const char* name, int typeCode, const EllipsoidSize& size,
                             const std::vector<MadeProjection::Parameter>& parameters,
                             const std::string& projDefinition) {
        const auto owner = std::make_shared<MadeProjection>(typeCode, size, parameters);
        made.push_back(
            {name, std::shared_ptr<TQProjection>(owner, &**owner), projDefinition, kWorld, kWorld});
    };
    add("Lambert of the south", 2, wgs84,
        {{"Tangent", 0.0},
         {"lambda0", 134.0},
         {"latitudeOrigin", -32.0},
         {"stdPar1", -28.0},
         {"stdPar2", -36.0},
         {"X0", 1e6},
         {"Y0", 2e6}},
        "+proj=lcc +lat_0=-32 +lon_0=134 +lat_1=-28 +lat_2=-36 +x_0=1e6 +y_0=2e6");
    add("Lambert of a flat cone", 2, wgs84,
        {{"Tangent", 1.0},
         {"k0", 1.0},
         {"lambda0", 170.0},
         {"latitudeOrigin", 15.0},
         {"X0", 0.0},
         {"Y0", 0.0}},
        "+proj=lcc +lat_0=15 +lon_0=170 +lat_1=15");
    add("Bonne of the south", 0, wgs84, {{"lambda0", 20.0}, {"standardParallel", -30.0}},
        "+proj=bonne +lon_0=20 +lat_1=-30");
    add("Bonne", 0, wgs84, {{"lambda0", -100.0}, {"standardParallel", 10.0}},
        "+proj=bonne +lon_0=-100 +lat_1=10");
    const auto addHotine = [&add](const char* name, double latitudeCenter, double azimuthAtOrigin,
                                  bool fromCentre) {
        std::vector<MadeProjection::Parameter> parameters{
            {"AzimuthAtOriginFlag", 1.0}, {"longitudeCenter", 25.0},    {"latitudeCenter", latitudeCenter},
            {"azimuth", azimuthAtOrigin}, {"bearing", azimuthAtOrigin}, {"kc", 1.0}};
        if (!fromCentre) {
            parameters.push_back({"HotineFlag", 1.0});
        }
        add(name, 6, wgs84, parameters,
            std::string(fromCentre ? "+proj=omerc" : "+proj=omerc +no_uoff") +
                " +lonc=25 +lat_0=" + fullText(latitudeCenter) + " +gamma=" + fullText(azimuthAtOrigin));
    };
    addHotine("Hotine of the south", -40.0, 20.0, false);
    addHotine("Hotine of the south-east", -40.0, -20.0, false);
    addHotine("Hotine with an azimuth to the south-east", 34.0, 150.0, false);
    addHotine("Hotine with an azimuth to the south-west", -34.0, 210.0, false);
    addHotine("Oblique Mercator from a centre in the south", -40.0, 30.0, true);
    addHotine("Oblique Mercator from a centre in the north", 40.0, -30.0, true);
    add("Oblique Mercator from a centre, azimuth 90", 6, wgs84,
        {{"longitudeCenter", 25.0},
         {"latitudeCenter", 40.0},
         {"azimuth", 90.0},
         {"bearing", 50.0},
         {"kc", 1.0}},
        "+proj=omerc +lat_0=40 +lonc=25 +alpha=90 +gamma=50");
    add("Oblique Mercator from a centre, azimuth 120", 6, wgs84,
        {{"longitudeCenter", 25.0},
         {"latitudeCenter", 40.0},
         {"azimuth", 120.0},
         {"bearing", 120.0},
         {"kc", 1.0}},
        "+proj=omerc +lat_0=40 +lonc=25 +alpha=120 +gamma=120");
    add("Swiss, in the south", 12, wgs84,
        {{"longitudeCenter", 100.0}, {"latitudeCenter", -60.0}, {"kc", 1.0}},
        "+proj=somerc +lat_0=-60 +lon_0=100");
    add("Swiss, on the equator", 12, wgs84,
        {{"longitudeCenter", 100.0}, {"latitudeCenter", 0.0}, {"kc", 1.0}},
        "+proj=somerc +lat_0=0 +lon_0=100");
    add("UPS", 8, wgs84, {{"isNorth", 0.0}, {"k0", 0.994}, {"lambda0", 170.0}},
        "+proj=stere +lat_0=-90 +lon_0=170 +k=0.994");
    return made;
}

/// The accuracy that a class states for its domain, in metres on the plane and on the ground.
struct Accuracy {
    const char* className;
    double forward, inverse;
};

// With the rounding of both sides. Of the oblique Mercators a bearing that is the azimuth of the published
// system, not of the origin.
constexpr Accuracy kAccuracies[] = {{"TQPrMercTransv", 0.2e-3, 15e-6},
                                    {"TQPrMercDirectGCTP", 12e-9, 4.31e-6},
                                    {"TQPrMercDirect", 12e-9, 0.435e-6},
                                    {"TQPrLambert", 1.5e-6, 0.65e-3},
                                    {"TQPrBonne", 1.4e-3, 1.4e-3},
                                    {"TQPrObliqueMercator", 20e-9, 1.5e-3},
                                    {"TQPrSwissObliqueMercator", 1.3e-6, 0.15e-6},
                                    {"TQPrCassiniSoldner", 6e-9, 0.14},
                                    {"TQPrEquiRectangular", 4e-9, 6e-9},
                                    {"TQPrPolarStereo", 1.6e-6, 43e-3},
                                    {"TQPrPolarAzimuthal", 8e-9, 7.5e-9},
                                    {"TQPrPolarGnomon", 6e-9, 4e-9}};

const Accuracy& accuracyOf(const System& system) {
    return *std::ranges::find_if(kAccuracies, [&](const Accuracy& of) { return system.isOf(of.className); });
}

/// What the coordinates of a plane point are rounded by, as far as it exceeds that of the Earth's.
double roundingOf(const TQPoint& global) { return 4e-16 * std::hypot(global.x, global.y); }

/// What an arcsine that PROJ takes of the Swiss latitudes leaves towards a pole, in metres.
double arcsineOf(const System& system, const TQPoint& geo) {
    return system.isOf("TQPrSwissObliqueMercator") ? 3e-9 / std::cos(geo.y) : 0.0;
}

/// A point on a plane larger than the images of the world.
TQPoint planePoint(RandomNumbers& random) {
    constexpr double far = 2.5e7;
    const double x = random.between(-far, far);
    return {x, random.between(-far, far)};
}

class DomainReference : public testing::TestWithParam<System> {
  protected:
    const TQProjection& projection() const { return *GetParam().projection; }
};

std::vector<System> everySystem() {
    std::vector<System> all = farSystems();
    for (const System& system : sidebyside::systems()) {
        // The decimals of a file are the worse the farther a point is.
        if (system.projection != nullptr && system.fileRounding == 0.0) {
            all.push_back(system);
        }
    }
    return all;
}

} // namespace

TEST_P(DomainReference, ImagesWithinAreThoseOfProj) {
    const ProjOperation proj = GetParam().proj();
    RandomNumbers random(3);
    for (int count = 0; count < sidebyside::pointCount; ++count) {
        const TQPoint geo = projection().atNearestTurn(kWorld.randomPoint(random));
        if (projection().whyGeoPtIsBeyondDomain(geo) == nullptr) {
            TQPoint global;
            projection().convertGeoPt(geo, global);
            ASSERT_LE(planeDistance(global, proj.forward(geo)),
                      accuracyOf(GetParam()).forward + roundingOf(global))
                << tq_rad2deg(geo.x) << ", " << tq_rad2deg(geo.y);
        }
    }
}

TEST_P(DomainReference, OriginalsWithinAreThoseOfProj) {
    const ProjOperation proj = GetParam().proj();
    RandomNumbers random(4);
    for (int count = 0; count < 2 * sidebyside::pointCount; ++count) {
        const TQPoint image = proj.forward(kWorld.randomPoint(random));
        const TQPoint global = count % 2 == 0 ? image : planePoint(random);
        if (std::isfinite(global.x) && projection().whyGlobalPtIsBeyondDomain(global) == nullptr) {
            TQPoint geo;
            projection().convertGlobalPt(global, geo);
            ASSERT_LE(GetParam().metres(groundAngle(geo, proj.inverse(global))),
                      accuracyOf(GetParam()).inverse + arcsineOf(GetParam(), geo))
                << global.x << ", " << global.y;
        }
    }
}

TEST_P(DomainReference, BatchesTellWhatThePredicatesTell) {
    TQEllipsoid& ellipsoid = *projection().ellipsoid();
    for (const auto kind :
         {TQEllipsoid::NoDatumShift, TQEllipsoid::ThreeParameterShift, TQEllipsoid::SevenParameterShift}) {
        ellipsoid.setDatumShift(kind, 6378137.0, 1.0 / 298.257223563,
                                {598.1, 73.7, 418.2, 1e-6, 2e-7, -1.2e-5, 6.7});
        RandomNumbers random(5);
        std::vector<TQPoint> geo(3000);
        std::vector<TQPoint> global(3000);
        for (std::size_t index = 0; index < geo.size(); ++index) {
            geo[index] = projection().atNearestTurn(kWorld.randomPoint(random));
            global[index] = planePoint(random);
        }
        std::vector<TQPoint> out(geo.size());
        std::vector<signed char> images(geo.size());
        std::vector<signed char> originals(geo.size());
        projection().convertGeoPts(geo, out, images);
        projection().convertGlobalPts(global, out, originals);
        for (std::size_t index = 0; index < geo.size(); ++index) {
            const bool hasImage = projection().whyGeoPtIsBeyondDomain(geo[index]) == nullptr;
            const bool hasOriginal = projection().whyGlobalPtIsBeyondDomain(global[index]) == nullptr;
            ASSERT_EQ(images[index] == TQProjection::Converted, hasImage)
                << kind << ": " << tq_rad2deg(geo[index].x) << ", " << tq_rad2deg(geo[index].y);
            ASSERT_EQ(originals[index] == TQProjection::Converted, hasOriginal)
                << kind << ": " << global[index].x << ", " << global[index].y;
        }
    }
    ellipsoid.setDatumShift(TQEllipsoid::NoDatumShift, 0.0, 0.0, {});
}

INSTANTIATE_TEST_SUITE_P(Systems, DomainReference, testing::ValuesIn(everySystem()),
                         [](const auto& test) { return sidebyside::identifierOf(test.param); });
