#pragma once

#include "manager/TQProjectionFile.h"
#include "projections/SeriesTruncation.h"
#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"

#include <cctype>
#include <cmath>
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
    double fileRounding = 0.0;  ///< metres: what the decimals of its file take from the definition

    std::string ellipsoidDefinition() const {
        const std::string a = fullText(projection->ellipsoid()->semiMajorAxis());
        return isSpherical()
                   ? " +R=" + a
                   : " +a=" + a + " +es=" + fullText(projection->ellipsoid()->eccentricitySquared());
    }
    /// Whether the class takes the semi-major axis of its ellipsoid for the radius of a sphere.
    bool isSpherical() const {
        return isOf("TQPrEquiRectangular") || isOf("TQPrPolarAzimuthal") || isOf("TQPrPolarGnomon");
    }
    bool isOf(const char* className) const { return projection->isKindOf(className) != 0; }
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

/// The plane point that the way back of a projection takes for one of PROJ's. A stereographic projection of
/// the south adds its false northing where it should take it off.
inline TQPoint pointForWayBack(const System& system, const TQPoint& global) {
    TQPoint pole;
    const bool isSouthern = system.isOf("TQPrPolarStereo") && system.projection->southPolePosition(pole);
    return {global.x, isSouthern ? global.y - 2.0 * std::round(pole.y) : global.y};
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
        system.projection->convertGlobalPt(pointForWayBack(system, global), geo);
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
    double fileRounding = 0.0;
};

// What a file's decimals of a degree take from the definition, in metres. Ten: half a unit each of a
// longitude and a latitude. Six, of the oblique projections: what is left when the false origin is adjusted.
inline constexpr double tenDecimals = 1.2e-5;
inline constexpr double sixDecimals = 1e-3;

/// One for each projection file that no list of codes makes, and for some that one makes. The numbers are
/// those of the EPSG data set, not of the files.
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
        {"Lambert zone II étendu (NTF)",
         "+proj=lcc +lat_1=46.8 +lat_0=46.8 +lon_0=2.337229166667 +k_0=0.99987742 +x_0=600000 +y_0=2200000",
         {-4.87, 8.23, 42.33, 51.14},
         {-117.0, 122.0, -80.0, 89.9},
         tenDecimals},
        {"Lambert-93",
         "+proj=lcc +lat_0=46.5 +lon_0=3 +lat_1=49 +lat_2=44 +x_0=700000 +y_0=6600000",
         {-9.86, 10.38, 41.15, 51.56},
         {-117.0, 123.0, -80.0, 89.9}},
        {"CC48 (RGF93)",
         "+proj=lcc +lat_0=48 +lon_0=3 +lat_1=47.25 +lat_2=48.75 +x_0=1700000 +y_0=7200000",
         {-4.87, 8.23, 47.0, 49.0},
         {-117.0, 123.0, -80.0, 89.9}},
        {"Belgian Lambert 2008",
         "+proj=lcc +lat_0=50.797815 +lon_0=4.35921583333333 +lat_1=49.8333333333333 +lat_2=51.1666666666667 "
         "+x_0=649328 +y_0=665262",
         {2.5, 6.4, 49.5, 51.51},
         {-110.0, 120.0, -80.0, 89.9},
         tenDecimals},
        {"RSO Peninsular Malaysia (GDM2000)",
         "+proj=omerc +no_uoff +lat_0=4 +lonc=102.25 +alpha=323.025796466667 +gamma=323.130102361111 "
         "+k=0.99984 +x_0=804671 +y_0=0",
         {99.59, 104.6, 1.13, 6.72},
         {99.59, 104.6, 1.13, 6.72},
         sixDecimals},
        {"CH1903+ _ LV95",
         "+proj=somerc +lat_0=46.9524055555556 +lon_0=7.43958333333333 +k_0=1 +x_0=2600000 +y_0=1200000",
         {5.96, 10.49, 45.82, 47.81},
         {5.96, 10.49, 45.82, 47.81},
         sixDecimals},
        {"Trinidad Grid in metres (Trinidad 1903)",
         "+proj=cass +lat_0=10.4416666666667 +lon_0=-61.3333333333333 +x_0=86501.46392052 +y_0=65379.0134283",
         {-62.09, -60.0, 9.83, 11.51},
         {-63.4, -59.3, -80.0, 80.0},
         tenDecimals},
        {"Bonne of France (Plessis 1817)",
         "+proj=bonne +lat_1=45 +lon_0=2.337229167",
         {-4.87, 8.23, 42.33, 51.14},
         {-80.0, 84.0, -30.0, 89.0}},
        {"Plate carrée (WGS 84)", "+proj=eqc", {-180.0, 180.0, -90.0, 90.0}, {-180.0, 180.0, -90.0, 90.0}},
        {"UPS North (WGS 84)",
         "+proj=stere +lat_0=90 +k=0.994 +x_0=2000000 +y_0=2000000",
         {-180.0, 180.0, 60.0, 90.0},
         {-180.0, 180.0, -60.0, 90.0}},
        {"UPS South (WGS 84)",
         "+proj=stere +lat_0=-90 +k=0.994 +x_0=2000000 +y_0=2000000",
         {-180.0, 180.0, -90.0, -60.0},
         {-180.0, 180.0, -90.0, 60.0}},
        {"Sea ice polar stereographic North (WGS 84)",
         "+proj=stere +lat_0=90 +lon_0=-45 +k=0.969858",
         {-180.0, 180.0, 60.0, 90.0},
         {-180.0, 180.0, -60.0, 90.0}},
        {"Sea ice polar stereographic South (WGS 84)",
         "+proj=stere +lat_0=-90 +k=0.969858",
         {-180.0, 180.0, -90.0, -60.0},
         {-180.0, 180.0, -90.0, 60.0}},
        {"North Pole azimuthal equidistant (sphere)",
         "+proj=aeqd +lat_0=90",
         {-180.0, 180.0, 0.0, 90.0},
         {-180.0, 180.0, -89.0, 90.0}},
        {"South Pole azimuthal equidistant (sphere)",
         "+proj=aeqd +lat_0=-90",
         {-180.0, 180.0, -90.0, 0.0},
         {-180.0, 180.0, -90.0, 89.0}},
        {"North Pole gnomonic (sphere)",
         "+proj=gnom +lat_0=90",
         {-180.0, 180.0, 30.0, 90.0},
         {-180.0, 180.0, 1.0, 90.0}},
        {"South Pole gnomonic (sphere)",
         "+proj=gnom +lat_0=-90",
         {-180.0, 180.0, -90.0, -30.0},
         {-180.0, 180.0, -90.0, -1.0}},
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
                            filed.projDefinition, filed.usual, filed.wide, filed.fileRounding});
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
        add("Hotine Oblique Mercator, peninsular Malaysia", 6, grs1980,
            {{"HotineFlag", 1.0},
             {"longitudeCenter", 102.25},
             {"latitudeCenter", 4.0},
             {"azimuth", 323.025796466667},
             {"bearing", 323.130102361111},
             {"kc", 0.99984},
             {"falseEasting", 804671.0}},
            "+proj=omerc +no_uoff +lat_0=4 +lonc=102.25 +alpha=323.025796466667 +gamma=323.130102361111 "
            "+k=0.99984 +x_0=804671",
            {99.59, 104.6, 1.13, 6.72}, {92.0, 112.0, -10.0, 16.0});
        // Counted from the centre, the way there agrees west of it; a degree from it for the measures.
        add("Oblique Mercator from the centre, west of it", 6, everest1830,
            {{"longitudeCenter", 115.0},
             {"latitudeCenter", 4.0},
             {"azimuth", 53.315820472222222},
             {"bearing", 53.130102361111111},
             {"kc", 0.99984},
             {"falseEasting", 590476.87},
             {"falseNorthing", 442857.65}},
            "+proj=omerc +lat_0=4 +lonc=115 +alpha=53.315820472222222 +gamma=53.130102361111111 +k=0.99984 "
            "+x_0=590476.87 +y_0=442857.65",
            {109.31, 113.9, 0.85, 7.67}, {105.0, 113.9, -10.0, 16.0});
        add("Swiss Oblique Mercator, LV95", 12, bessel1841,
            {{"longitudeCenter", 7.43958333333333},
             {"latitudeCenter", 46.9524055555556},
             {"kc", 1.0},
             {"falseEasting", 2600000.0},
             {"falseNorthing", 1200000.0}},
            "+proj=somerc +lat_0=46.9524055555556 +lon_0=7.43958333333333 +k_0=1 +x_0=2600000 +y_0=1200000",
            {5.96, 10.49, 45.82, 47.81}, {-70.0, 85.0, -20.0, 80.0});
        add("Cassini-Soldner, Trinidad", 13, wgs84,
            {{"lambda0", -61.5}, {"phi0", 10.5}, {"X0", 86501.46392052}, {"Y0", 65379.0134283}},
            "+proj=cass +lat_0=10.5 +lon_0=-61.5 +x_0=86501.46392052 +y_0=65379.0134283",
            {-62.09, -60.0, 9.83, 11.51}, {-63.4, -59.3, -80.0, 80.0});
        add("EquiRectangular, true at 40 degrees", 11, wgs84, {{"isFactor", 0.0}, {"factor_phiRef", 40.0}},
            "+proj=eqc +lat_ts=40", {-180.0, 180.0, -90.0, 90.0}, {-180.0, 180.0, -90.0, 90.0});
        return made;
    }();
    return all;
}

/// The name of a system as an identifier.
inline std::string identifierOf(const System& system) {
    std::string identifier;
    for (const char c : system.name) {
        identifier += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return identifier;
}

} // namespace sidebyside
