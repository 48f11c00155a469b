#include "bench/ConversionCases.h"

#include "testing/MadeProjection.h"

#include <memory>

using sidebyside::Area;
using sidebyside::System;

namespace {

// How far docs/accuracy.md finds the way back from PROJ's, in metres.
constexpr double ordinary = 1e-3;
constexpr double cassiniSoldner = 46e-3;
constexpr double polarStereographicTo30Degrees = 3.5e-3;

/// What a case is made of.
struct Definition {
    const char* name;
    int typeCode;
    EllipsoidSize size;
    std::vector<MadeProjection::Parameter> parameters;
    const char* proj; ///< without ellipsoid
    Area area;
    double inverseBound = ordinary;
};

/// One of each class. GCTP has PROJ's form with a latitude of true scale; the modified form with a factor of
/// 1 is the direct one.
std::vector<Definition> definitions() {
    constexpr Area world{-180.0, 180.0, -80.0, 84.0};
    constexpr Area france{-9.0, 10.0, 41.0, 51.0};
    return {
        {"UTM",
         3,
         wgs84,
         {{"lambda0", 3.0}, {"hemisphere", 1.0}},
         "+proj=utm +zone=31",
         {0.0, 6.0, 0.0, 84.0}},
        {"Gauss-Kruger",
         1,
         bessel1841,
         {{"lambda0", 9.0}, {"X0", 3500000.0}},
         "+proj=tmerc +lon_0=9 +x_0=3500000",
         {7.5, 10.5, 47.0, 55.0}},
        {"Transverse Mercator",
         4,
         wgs84,
         {{"lambda0", -2.0}, {"phi0", 49.0}, {"X0", 400000.0}, {"Y0", -100000.0}, {"k0", 0.9996012717}},
         "+proj=tmerc +lon_0=-2 +lat_0=49 +x_0=400000 +y_0=-100000 +k=0.9996012717",
         {-9.0, 3.0, 49.0, 61.0}},
        {"Direct Mercator", 5, wgs84, {{"X0", 0.0}}, "+proj=merc", world},
        {"GCTP Direct Mercator", 15, wgs84, {{"X0", 0.0}, {"phi0", 42.0}}, "+proj=merc +lat_ts=42", world},
        {"Modified Direct Mercator", 7, wgs84, {{"X0", 0.0}}, "+proj=merc", world},
        {"Lambert",
         2,
         grs1980,
         {{"Tangent", 0.0},
          {"lambda0", 3.0},
          {"latitudeOrigin", 46.5},
          {"stdPar1", 49.0},
          {"stdPar2", 44.0},
          {"X0", 700000.0},
          {"Y0", 6600000.0}},
         "+proj=lcc +lat_0=46.5 +lon_0=3 +lat_1=49 +lat_2=44 +x_0=700000 +y_0=6600000",
         france},
        {"Bonne",
         0,
         wgs84,
         {{"lambda0", 2.0}, {"standardParallel", 45.0}},
         "+proj=bonne +lon_0=2 +lat_1=45",
         {-5.0, 8.0, 42.0, 51.0}},
        {"Oblique Mercator",
         6,
         grs1980,
         {{"HotineFlag", 1.0},
          {"longitudeCenter", 102.25},
          {"latitudeCenter", 4.0},
          {"azimuth", 323.025796466667},
          {"bearing", 323.130102361111},
          {"kc", 0.99984},
          {"falseEasting", 804671.0}},
         "+proj=omerc +no_uoff +lat_0=4 +lonc=102.25 +alpha=323.025796466667 +gamma=323.130102361111 "
         "+k=0.99984 +x_0=804671",
         {99.6, 104.6, 1.1, 6.7}},
        {"Swiss Oblique Mercator",
         12,
         bessel1841,
         {{"longitudeCenter", 7.43958333333333},
          {"latitudeCenter", 46.9524055555556},
          {"kc", 1.0},
          {"falseEasting", 2600000.0},
          {"falseNorthing", 1200000.0}},
         "+proj=somerc +lat_0=46.9524055555556 +lon_0=7.43958333333333 +k_0=1 +x_0=2600000 +y_0=1200000",
         {6.0, 10.5, 45.8, 47.8}},
        {"Cassini-Soldner",
         13,
         wgs84,
         {{"lambda0", -61.5}, {"phi0", 10.5}},
         "+proj=cass +lat_0=10.5 +lon_0=-61.5 +x_0=500000",
         {-62.0, -60.0, 9.8, 11.5},
         cassiniSoldner},
        {"EquiRectangular",
         11,
         wgs84,
         {{"isFactor", 0.0}, {"factor_phiRef", 40.0}},
         "+proj=eqc +lat_ts=40",
         {-180.0, 180.0, -89.0, 89.0}},
        {"Polar Stereographic",
         8,
         wgs84,
         {{"falseEasting", 2e6}, {"falseNorthing", 2e6}, {"k0", 0.994}},
         "+proj=stere +lat_0=90 +k=0.994 +x_0=2000000 +y_0=2000000",
         {-180.0, 180.0, 60.0, 90.0},
         polarStereographicTo30Degrees},
        {"Polar Azimuthal", 10, wgs84, {}, "+proj=aeqd +lat_0=90", {-180.0, 180.0, 0.0, 90.0}},
        {"Gnomonic", 9, wgs84, {}, "+proj=gnom +lat_0=90", {-180.0, 180.0, 30.0, 90.0}},
    };
}

} // namespace

std::vector<ConversionCase> nativeCases() {
    std::vector<ConversionCase> cases;
    for (const Definition& definition : definitions()) {
        const auto owner =
            std::make_shared<MadeProjection>(definition.typeCode, definition.size, definition.parameters);
        cases.push_back({{definition.name, std::shared_ptr<TQProjection>(owner, &**owner), definition.proj,
                          definition.area, definition.area},
                         definition.inverseBound});
    }
    return cases;
}

ProjOperation betweenSystems(const System& system) {
    const std::string end = system.ellipsoidDefinition() + " +type=crs";
    return ProjOperation::betweenSystems("+proj=longlat" + end, system.projDefinition + end);
}

std::vector<ProjDefinedCase> projDefinedCases() {
    return {
        {"Lambert-93", "EPSG:4171", "EPSG:2154", {-9.0, 10.0, 41.0, 51.0}},
        {"UTM zone 31N (WGS 84)", "EPSG:4326", "EPSG:32631", {0.0, 6.0, 0.0, 84.0}},
        {"LAEA Europe (ETRS89)", "EPSG:4258", "EPSG:3035", {-10.0, 30.0, 35.0, 70.0}},
    };
}
