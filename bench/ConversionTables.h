#pragma once

#include "bench/Contests.h"
#include "bench/MedianReporter.h"

#include <vector>

/// Writes the times of contests to the standard output as tables in Markdown, with "-" for what was not
/// measured, and what they come to beside the aims.
/// @param times the times of the contests' benchmarks
/// @param native the contests of the native classes
/// @param projDefined those of the projections that PROJ computes
void printConversionTables(MedianReporter& times, const std::vector<Contest>& native,
                           const std::vector<Contest>& projDefined);
