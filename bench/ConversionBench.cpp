// The time of one conversion of one point, class by class and direction by direction, beside PROJ on the
// same points: convertGeoPt and convertGlobalPt with points in radians (the virtual operations) and in
// degrees (the entry points with TQAnglePoint), against proj_trans with the normalised operation that
// PROJ finds from the geographic system on the same ellipsoid to the projected one, also in degrees. And the
// time of one of 1024 points in one call: convertGeoPts and convertGlobalPts in radians, against
// proj_trans_generic with the same operation.
//
//   conversion-bench                                  everything, with the ratios at the end
//   conversion-bench --benchmark_filter=UTM           one class
//   conversion-bench --benchmark_repetitions=9        medians in the ratios instead of single runs

#include "bench/MedianReporter.h"
#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t pointCount = 1024;

/// A class of the library, PROJ's form of the same system, and the area that points are taken from.
struct System {
    const char* name;
    MadeProjection ours;
    ProjOperation proj;
    double west, east, south, north; ///< degrees
};

/// The same points in the forms that the contestants take.
struct Points {
    std::vector<TQPoint> radians;
    std::vector<TQPoint> degrees;
    std::vector<TQAnglePoint> angles;
    std::vector<TQPoint> plane;
};

ProjOperation projOperation(const EllipsoidSize& size, const std::string& projection) {
    const std::string common = " +a=" + fullText(size.a) + " +es=" + fullText(size.e2);
    return ProjOperation::betweenSystems("+proj=longlat" + common + " +type=crs",
                                         "+proj=" + projection + common + " +type=crs");
}

void addConic(std::vector<System>& made) {
    made.push_back(
        {"Lambert",
         {2,
          grs1980,
          {{"Tangent", 0.0},
           {"lambda0", 3.0},
           {"latitudeOrigin", 46.5},
           {"stdPar1", 49.0},
           {"stdPar2", 44.0},
           {"X0", 700000.0},
           {"Y0", 6600000.0}}},
         projOperation(grs1980, "lcc +lat_0=46.5 +lon_0=3 +lat_1=49 +lat_2=44 +x_0=700000 +y_0=6600000"),
         -9.0,
         10.0,
         41.0,
         51.0});
    made.push_back({"Bonne",
                    {0, wgs84, {{"lambda0", 2.0}, {"standardParallel", 45.0}}},
                    projOperation(wgs84, "bonne +lon_0=2 +lat_1=45"),
                    -5.0,
                    8.0,
                    42.0,
                    51.0});
}

void addOblique(std::vector<System>& made) {
    made.push_back({"Oblique Mercator",
                    {6,
                     grs1980,
                     {{"HotineFlag", 1.0},
                      {"longitudeCenter", 102.25},
                      {"latitudeCenter", 4.0},
                      {"azimuth", 323.025796466667},
                      {"bearing", 323.130102361111},
                      {"kc", 0.99984},
                      {"falseEasting", 804671.0}}},
                    projOperation(grs1980, "omerc +no_uoff +lat_0=4 +lonc=102.25 +alpha=323.025796466667 "
                                           "+gamma=323.130102361111 +k=0.99984 +x_0=804671"),
                    99.6,
                    104.6,
                    1.1,
                    6.7});
    made.push_back({"Swiss Oblique Mercator",
                    {12,
                     bessel1841,
                     {{"longitudeCenter", 7.43958333333333},
                      {"latitudeCenter", 46.9524055555556},
                      {"kc", 1.0},
                      {"falseEasting", 2600000.0},
                      {"falseNorthing", 1200000.0}}},
                    projOperation(bessel1841, "somerc +lat_0=46.9524055555556 +lon_0=7.43958333333333 +k_0=1 "
                                              "+x_0=2600000 +y_0=1200000"),
                    6.0,
                    10.5,
                    45.8,
                    47.8});
    made.push_back({"Cassini Soldner",
                    {13, wgs84, {{"lambda0", -61.5}, {"phi0", 10.5}}},
                    projOperation(wgs84, "cass +lat_0=10.5 +lon_0=-61.5 +x_0=500000"),
                    -62.0,
                    -60.0,
                    9.8,
                    11.5});
    made.push_back({"EquiRectangular",
                    {11, wgs84, {{"isFactor", 0.0}, {"factor_phiRef", 40.0}}},
                    projOperation({"", wgs84.a, 0.0}, "eqc +lat_ts=40"),
                    -180.0,
                    180.0,
                    -89.0,
                    89.0});
}

void addPolar(std::vector<System>& made) {
    made.push_back({"Polar Stereographic",
                    {8, wgs84, {{"falseEasting", 2e6}, {"falseNorthing", 2e6}, {"k0", 0.994}}},
                    projOperation(wgs84, "stere +lat_0=90 +k=0.994 +x_0=2000000 +y_0=2000000"),
                    -180.0,
                    180.0,
                    60.0,
                    90.0});
    made.push_back({"Polar Azimuthal",
                    {10, wgs84},
                    projOperation({"", wgs84.a, 0.0}, "aeqd +lat_0=90"),
                    -180.0,
                    180.0,
                    0.0,
                    90.0});
    made.push_back({"Gnomonic",
                    {9, wgs84},
                    projOperation({"", wgs84.a, 0.0}, "gnom +lat_0=90"),
                    -180.0,
                    180.0,
                    30.0,
                    90.0});
}

/// A system that PROJ computes either way: what the class adds to PROJ.
void addProj(std::vector<System>& made) {
    auto lambert93 = std::make_unique<TQPrProj4>();
    lambert93->initFromPROJString("EPSG:2154", false);
    made.push_back({"Proj4 Library", MadeProjection(std::move(lambert93)),
                    ProjOperation::betweenSystems("EPSG:4171", "EPSG:2154"), -9.0, 10.0, 41.0, 51.0});
}

/// One of each class; GCTP has PROJ's form with a latitude of true scale, the modified form with a factor
/// of 1 is the direct one, the spherical projections have PROJ's on the sphere.
const std::vector<System>& systems() {
    static const std::vector<System> all = [] {
        std::vector<System> made;
        made.push_back({"UTM",
                        {3, wgs84, {{"lambda0", 3.0}, {"hemisphere", 1.0}}},
                        projOperation(wgs84, "utm +zone=31"),
                        0.0,
                        6.0,
                        0.0,
                        84.0});
        made.push_back({"Gauss-Kruger",
                        {1, bessel1841, {{"lambda0", 9.0}, {"X0", 3500000.0}}},
                        projOperation(bessel1841, "tmerc +lon_0=9 +x_0=3500000"),
                        7.5,
                        10.5,
                        47.0,
                        55.0});
        made.push_back(
            {"Transverse Mercator",
             {4,
              wgs84,
              {{"lambda0", -2.0}, {"phi0", 49.0}, {"X0", 400000.0}, {"Y0", -100000.0}, {"k0", 0.9996012717}}},
             projOperation(wgs84, "tmerc +lon_0=-2 +lat_0=49 +x_0=400000 +y_0=-100000 +k=0.9996012717"),
             -9.0,
             3.0,
             49.0,
             61.0});
        made.push_back({"Direct Mercator",
                        {5, wgs84, {{"X0", 0.0}}},
                        projOperation(wgs84, "merc"),
                        -180.0,
                        180.0,
                        -80.0,
                        84.0});
        made.push_back({"GCTP Direct Mercator",
                        {15, wgs84, {{"X0", 0.0}, {"phi0", 42.0}}},
                        projOperation(wgs84, "merc +lat_ts=42"),
                        -180.0,
                        180.0,
                        -80.0,
                        84.0});
        made.push_back({"Modified Direct Mercator",
                        {7, wgs84, {{"X0", 0.0}}},
                        projOperation(wgs84, "merc"),
                        -180.0,
                        180.0,
                        -80.0,
                        84.0});
        addConic(made);
        addOblique(made);
        addPolar(made);
        addProj(made);
        return made;
    }();
    return all;
}

Points pointsOf(const System& system) {
    RandomNumbers random(20240229);
    Points points;
    for (std::size_t i = 0; i < pointCount; ++i) {
        const TQPoint degrees{random.between(system.west, system.east),
                              random.between(system.south, system.north)};
        points.degrees.push_back(degrees);
        points.radians.push_back({tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)});
        points.angles.emplace_back(degrees, TQUnitDegree);
        points.plane.push_back(system.proj.forward(degrees));
    }
    return points;
}

/// Runs a conversion over the points again and again; the time is that of one point.
template <class Conversion>
void run(benchmark::State& state, Conversion convert) {
    std::size_t i = 0;
    for (auto unused : state) {
        static_cast<void>(unused);
        auto result = convert(i);
        benchmark::DoNotOptimize(result);
        i = (i + 1) % pointCount;
    }
}

/// Runs a conversion of all points at once again and again; the time is that of one point.
template <class Conversion>
void runMany(benchmark::State& state, const std::vector<TQPoint>& points, Conversion convert) {
    std::vector<TQPoint> results(points.size());
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(points.size()))) {
        convert(points, results);
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
}

void registerSystem(const System& system) {
    const auto points = std::make_shared<const Points>(pointsOf(system));
    const TQProjection* ours = &*system.ours;
    const ProjOperation* proj = &system.proj;
    const std::string name = system.name;
    const auto add = [](const std::string& benchmarkName, auto convert) {
        benchmark::RegisterBenchmark(benchmarkName.c_str(),
                                     [convert](benchmark::State& state) { run(state, convert); });
    };
    add(name + "/forward/radians", [=](std::size_t i) {
        TQPoint global;
        ours->convertGeoPt(points->radians[i], global);
        return global;
    });
    add(name + "/forward/degrees", [=](std::size_t i) {
        TQPoint global;
        ours->convertGeoPt(points->angles[i], global);
        return global;
    });
    add(name + "/forward/PROJ", [=](std::size_t i) { return proj->forward(points->degrees[i]); });
    add(name + "/inverse/radians", [=](std::size_t i) {
        TQPoint geo;
        ours->convertGlobalPt(points->plane[i], geo);
        return geo;
    });
    add(name + "/inverse/degrees", [=](std::size_t i) {
        TQAnglePoint geo;
        ours->convertGlobalPt(points->plane[i], geo, TQUnitDegree);
        return geo;
    });
    add(name + "/inverse/PROJ", [=](std::size_t i) { return proj->inverse(points->plane[i]); });
    const auto addMany = [points](const std::string& benchmarkName, std::vector<TQPoint> Points::*in,
                                  auto convert) {
        benchmark::RegisterBenchmark(benchmarkName.c_str(), [points, in, convert](benchmark::State& state) {
            runMany(state, (*points).*in, convert);
        });
    };
    using Many = std::vector<TQPoint>;
    addMany(name + "/forward/many", &Points::radians,
            [ours](const Many& in, Many& out) { ours->convertGeoPts(in, out); });
    addMany(name + "/forward/PROJ array", &Points::degrees,
            [proj](const Many& in, Many& out) { proj->transformArray(PJ_FWD, in, out); });
    addMany(name + "/inverse/many", &Points::plane,
            [ours](const Many& in, Many& out) { ours->convertGlobalPts(in, out); });
    addMany(name + "/inverse/PROJ array", &Points::plane,
            [proj](const Many& in, Many& out) { proj->transformArray(PJ_INV, in, out); });
}

/// Prints the table of times and their ratios to PROJ's, of the classes that ran.
void printRatios(MedianReporter& times) {
    std::printf("\n%-26s %-8s %10s %10s %10s %10s %10s %13s %13s %11s\n", "class", "", "radians/ns",
                "degrees/ns", "PROJ/ns", "many/ns", "array/ns", "radians:PROJ", "degrees:PROJ", "many:array");
    for (const System& system : systems()) {
        for (const std::string direction : {"forward", "inverse"}) {
            const std::string prefix = system.name + ("/" + direction + "/");
            const double radians = times.median(prefix + "radians");
            const double degrees = times.median(prefix + "degrees");
            const double proj = times.median(prefix + "PROJ");
            const double many = times.median(prefix + "many");
            const double array = times.median(prefix + "PROJ array");
            if (std::min({radians, degrees, proj, many, array}) > 0.0) {
                std::printf("%-26s %-8s %10.1f %10.1f %10.1f %10.1f %10.1f %13.2f %13.2f %11.2f\n",
                            system.name, direction.c_str(), radians, degrees, proj, many, array,
                            radians / proj, degrees / proj, many / array);
            }
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    for (const System& system : systems()) {
        registerSystem(system);
    }
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    return 0;
}
