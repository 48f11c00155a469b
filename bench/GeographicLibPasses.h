#pragma once

#include "bench/Pass.h"
#include "projections/SideBySide.h"

#include <optional>
#include <string>

/// Both ways of a projection, in degrees.
struct Passes {
    Pass forward;
    Pass inverse;
};

/// A system as GeographicLib computes it, point by point; nothing where it does not have the projection, or
/// where the build is without it.
/// @param system the system; its PROJ definition tells the projection and the parameters
std::optional<Passes> geographicLibPasses(const sidebyside::System& system);

/// "GeographicLib" and its version, or that the build is without it.
std::string geographicLibName();
