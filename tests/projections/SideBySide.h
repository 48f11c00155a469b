#pragma once

#include "manager/TQProjectionFile.h"
#include "projections/SeriesTruncation.h"
#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// The projections of the library beside PROJ's, on random points: what the tests assert and the accuracy
/// table prints.
namespace sidebyside {

inline constexpr int pointCount = 20000;

/// A geographic area in degrees.
struct Area {
    double west, east, south, north;

    TQPoint randomPoint(RandomNumbers& random) const {
        const double longitude = random.between(west, east);
        return {tq_deg2rad(longitude), tq_deg2rad(random.between(south, north))};
    }
};

/// A projection and PROJ's definition of the same system, which takes the size of the ellipsoid from the
/// projection.
struct System {
    std::string name;
    std::shared_ptr<TQProjection> projection;
    std::string projDefinition; ///< without ellipsoid
    Area usual;                 ///< where the system is used
    Area wide;                  ///< as far as the class is meant to go

    std::string ellipsoidDefinition() const {
        return " +a=" + fullText(projection->ellipsoid()->semiMajorAxis()) +
               " +es=" + fullText(projection->ellipsoid()->eccentricitySquared());
    }
    ProjOperation proj(const std::string& algorithm = "") const {
        return ProjOperation(projDefinition + algorithm + ellipsoidDefinition());
    }
    double metres(double angle) const { return angle * projection->ellipsoid()->semiMajorAxis(); }
};

/// What a comparison does with each point: the point given, and the difference in metres.
using PointVisitor = std::function<void(const TQPoint& given, double difference)>;

/// The difference of the plane points that both make of random geographic points.
inline Differences compareForward(
    const System& system, const ProjOperation& proj, const Area& area,
    const PointVisitor& visit = [](const TQPoint&, double) {}) {
    RandomNumbers random(1);
    Differences differences;
    for (int i = 0; i < pointCount; ++i) {
        const TQPoint geo = area.randomPoint(random);
        TQPoint global;
        system.projection->convertGeoPt(geo, global);
        const double difference = planeDistance(global, proj.forward(geo));
        differences.add(difference);
        visit(geo, difference);
    }
    return differences;
}

/// The difference on the ground of the geographic points that both make of the plane points that PROJ
/// makes of random geographic ones.
inline Differences compareInverse(
    const System& system, const ProjOperation& proj, const Area& area,
    const PointVisitor& visit = [](const TQPoint&, double) {}) {
    RandomNumbers random(2);
    Differences differences;
    for (int i = 0; i < pointCount; ++i) {
        const TQPoint global = proj.forward(area.randomPoint(random));
        TQPoint geo;
        system.projection->convertGlobalPt(global, geo);
        const double difference = system.metres(groundAngle(proj.inverse(global), geo));
        differences.add(difference);
        visit(global, difference);
    }
    return differences;
}

/// A system of the projection files that come with the library, without its projection.
struct FiledSystem {
    const char* name; ///< of the file, without extension
    const char* projDefinition;
    Area usual; ///< the area of use that the EPSG data set gives
    Area wide;
};

/// One for each projection file. The numbers are those of the EPSG data set, not of the files.
inline const std::vector<FiledSystem>& filedSystems() {
    static const std::vector<FiledSystem> all{
        {"UTM zone 31N (WGS 84)", "+proj=utm +zone=31", {0.0, 6.0, 0.0, 84.0}, {-42.0, 48.0, -88.0, 88.0}},
        {"UTM zone 33N (WGS 84)", "+proj=utm +zone=33", {12.0, 18.0, 0.0, 84.0}, {-30.0, 60.0, -88.0, 88.0}},
        {"UTM zone 56S (WGS 84)",
         "+proj=utm +zone=56 +south",
         {150.0, 156.0, -80.0, 0.0},
         {108.0, 198.0, -88.0, 88.0}},
        {"British National Grid (without datum shift)",
         "+proj=tmerc +lat_0=49 +lon_0=-2 +k=0.9996012717 +x_0=400000 +y_0=-100000",
         {-9.01, 2.01, 49.75, 61.01},
         {-47.0, 43.0, -88.0, 88.0}},
        {"Gauss-Kruger zone 3 (Bessel 1841)",
         "+proj=tmerc +lat_0=0 +lon_0=9 +k=1 +x_0=3500000 +y_0=0",
         {7.5, 10.51, 47.27, 55.09},
         {-36.0, 54.0, -88.0, 88.0}},
        {"World Mercator (WGS 84)", "+proj=merc", {-180.0, 180.0, -80.0, 84.0}, {-180.0, 180.0, -89.0, 89.0}},
        {"Batavia NEIEZ",
         "+proj=merc +lon_0=110 +k=0.997 +x_0=3900000 +y_0=900000",
         {95.16, 115.77, -8.91, 5.97},
         {-69.0, 289.0, -89.0, 89.0}},
    };
    return all;
}

/// The systems of the projection files, and the classes that no file has. Empty projections stand for
/// files that cannot be read.
inline const std::vector<System>& systems() {
    static const std::vector<System> all = [] {
        std::vector<System> made;
        for (const FiledSystem& filed : filedSystems()) {
            const TQString path = tq_createPath(projectionFileDirectory(),
                                                TQString((std::string(filed.name) + ".proj").c_str()));
            made.push_back({filed.name, TQProjectionFile::createProjectionFromPath(path),
                            filed.projDefinition, filed.usual, filed.wide});
        }
        const auto add = [&made](const char* name, int typeCode, const EllipsoidSize& size,
                                 std::initializer_list<MadeProjection::Parameter> parameters,
                                 const std::string& projDefinition, const Area& usual, const Area& wide) {
            const auto owner = std::make_shared<MadeProjection>(typeCode, size, parameters);
            made.push_back(
                {name, std::shared_ptr<TQProjection>(owner, &**owner), projDefinition, usual, wide});
        };
        // PROJ counts northings from the equator, the direct Mercator from phi0.
        const Area caspian{46.95, 53.93, 36.99, 46.97};
        const literal::DirectMercator onCaspian{
            krassowsky1940.a, krassowsky1940.e2, tq_deg2rad(51.0), tq_deg2rad(42.0), 0.0L, 0.0L, 1.0L};
        add("Direct Mercator, Caspian Sea, phi0 42", 5, krassowsky1940,
            {{"lambda0", 51.0}, {"phi0", 42.0}, {"X0", 0.0}},
            "+proj=merc +lon_0=51 +lat_ts=42 +y_0=" +
                fullText(static_cast<double>(onCaspian.northingOfEquator())),
            caspian, {-128.0, 230.0, -89.0, 89.0});
        add("GCTP Direct Mercator, Caspian Sea, phi0 42", 15, krassowsky1940,
            {{"lambda0", 51.0}, {"phi0", 42.0}, {"X0", 0.0}}, "+proj=merc +lon_0=51 +lat_ts=42", caspian,
            {-128.0, 230.0, -89.9, 89.9});
        add("Modified Direct Mercator, s 1, NEIEZ", 7, bessel1841,
            {{"lambda0", 110.0}, {"X0", 3900000.0}, {"Y0", 900000.0}, {"k0", 0.997}},
            "+proj=merc +lon_0=110 +k=0.997 +x_0=3900000 +y_0=900000", {95.16, 115.77, -8.91, 5.97},
            {-69.0, 289.0, -89.0, 89.0});
        return made;
    }();
    return all;
}

} // namespace sidebyside
