#include "bench/GeographicLibPasses.h"

std::optional<Passes> geographicLibPasses(const sidebyside::System& /*system*/) { return std::nullopt; }

std::string geographicLibName() { return "no GeographicLib"; }
