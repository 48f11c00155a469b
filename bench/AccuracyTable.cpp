// Prints the tables of docs/accuracy.md: the largest and the root mean square difference from PROJ, for
// each system, area and direction.
//
//   accuracy-table

#include "ellipsoid/ShiftSideBySide.h"
#include "projections/SideBySide.h"

#include <cstdio>
#include <exception>
#include <iterator>
#include <string>

using sidebyside::Area;
using sidebyside::compareForward;
using sidebyside::compareInverse;
using sidebyside::System;

namespace {

/// A difference in a unit that suits its size.
std::string length(double metres) {
    struct Unit {
        double size;
        const char* name;
    };
    static constexpr Unit units[] = {{1e3, "km"}, {1.0, "m"}, {1e-3, "mm"}, {1e-6, "µm"}, {1e-9, "nm"}};
    const Unit* unit = std::begin(units);
    while (metres < unit->size && unit + 1 != std::end(units)) {
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.3g %s", metres / unit->size, unit->name);
    return text;
}

std::string maxAndRms(const Differences& differences) {
    return length(differences.max()) + " | " + length(differences.rms());
}

std::string areaText(const Area& area) {
    char text[64];
    std::snprintf(text, sizeof text, "%g…%g, %g…%g", area.west, area.east, area.south, area.north);
    return text;
}

bool isTransverse(const System& system) { return system.projection->isKindOf("TQPrMercTransv") != 0; }

void printRow(const System& system, const ProjOperation& proj, const Area& area) {
    std::printf("| %s | %s | %s | %s |\n", system.name.c_str(), areaText(area).c_str(),
                maxAndRms(compareForward(system, proj, area)).c_str(),
                maxAndRms(compareInverse(system, proj, area)).c_str());
}

void printSystems(const char* title, const Area System::*area) {
    std::printf(
        "\n%s\n\n"
        "| system | area, degrees | forward max | rms | inverse max | rms |\n|---|---|---|---|---|---|\n",
        title);
    for (const System& system : sidebyside::systems()) {
        printRow(system, system.proj(), system.*area);
    }
}

void printAlgorithms() {
    std::printf(
        "\nPROJ's older algorithm of the transverse Mercator (`+approx`), where the systems are used\n\n"
        "| system | area, degrees | forward max | rms | inverse max | rms |\n|---|---|---|---|---|---|\n");
    for (const System& system : sidebyside::systems()) {
        if (isTransverse(system)) {
            printRow(system, system.proj(" +approx"), system.usual);
        }
    }
}

void printDistances() {
    std::printf("\nTransverse Mercator by distance from the central meridian (WGS 84, k0 1)\n\n"
                "| degrees | forward max | rms | inverse max | rms |\n|---|---|---|---|---|\n");
    const auto owner = std::make_shared<MadeProjection>(
        4, wgs84, std::initializer_list<MadeProjection::Parameter>{{"X0", 0.0}});
    System system{"", std::shared_ptr<TQProjection>(owner, &**owner), "+proj=tmerc", {}, {}};
    const ProjOperation proj = system.proj(" +algo=poder_engsager");
    for (const double degrees : {1.0, 3.0, 6.0, 10.0, 20.0, 30.0, 45.0, 60.0, 80.0}) {
        const Area meridian{degrees, degrees, 0.0, 84.0};
        std::printf("| %g | %s | %s |\n", degrees, maxAndRms(compareForward(system, proj, meridian)).c_str(),
                    maxAndRms(compareInverse(system, proj, meridian)).c_str());
    }
}

void printShifts() {
    using namespace shiftsidebyside;
    std::printf(
        "\nDatum shifts, latitudes to 85 degrees\n\n"
        "| shift | beside | to local max | rms | to reference max | rms |\n|---|---|---|---|---|---|\n");
    for (const Shift& shift : shifts()) {
        if (shift.kind == TQEllipsoid::ThreeParameterShift) {
            std::printf("| %s | `+proj=molodensky +abridged` | %s | %s |\n", shift.name,
                        maxAndRms(compareToLocal(shift, molodensky(shift))).c_str(),
                        maxAndRms(compareToReference(shift, molodensky(shift, true), true)).c_str());
        }
        std::printf("| %s | `+proj=cart`, `helmert`, `cart` | %s | %s |\n", shift.name,
                    maxAndRms(compareToLocal(shift, geocentric(shift))).c_str(),
                    maxAndRms(compareToReference(shift, geocentric(shift), false)).c_str());
    }
}

} // namespace

int main() {
    try {
        std::printf("PROJ %s, %d random points for each number\n", proj_info().version,
                    sidebyside::pointCount);
        printSystems("Where the systems are used", &System::usual);
        printSystems("Far beyond", &System::wide);
        printAlgorithms();
        printDistances();
        printShifts();
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "accuracy-table: %s\n", fault.what());
        return 1;
    }
    return 0;
}
