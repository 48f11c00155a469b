#pragma once

#include "projections/SideBySide.h"
#include "testing/ProjOperation.h"

#include <string>
#include <vector>

/// A projection of the library, PROJ's form of the same system, and the area that points are taken from
/// (`system.usual`).
struct ConversionCase {
    sidebyside::System system;
    double inverseBound; ///< metres: how far the way back may be from PROJ's
};

/// One case for each native class.
std::vector<ConversionCase> nativeCases();

/// PROJ's operation between the geographic system on a system's ellipsoid and the projected one, in degrees.
/// @param system the system
ProjOperation betweenSystems(const sidebyside::System& system);

/// A projection that PROJ computes either way, by the codes of its systems.
struct ProjDefinedCase {
    std::string name;
    std::string geographic; ///< the code of the system of longitude and latitude
    std::string projected;  ///< the code of the system of the plane
    sidebyside::Area area;
};

/// What PROJ-defined projections are measured on: systems of the EPSG data set in their areas of use.
std::vector<ProjDefinedCase> projDefinedCases();
