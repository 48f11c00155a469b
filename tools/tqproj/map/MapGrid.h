#pragma once

#include "grid/TQGrid.h"
#include "tools/tqproj/map/GeographicExtent.h"

#include <memory>

/// A grid of meridians and parallels, whose columns are called A, B, C ... and whose rows 1, 2, 3 ...
/// @param spacing the distances in degrees, of longitudes first
std::unique_ptr<TQGrid> newGraticule(const TQSize& spacing);

/// newGraticule() at round distances that divide an extent into up to eight columns and rows, as many as
/// there is room for.
/// @param extent the extent
/// @param size the size of its map, points
std::unique_ptr<TQGrid> newFittingGraticule(const GeographicExtent& extent, const TQSize& size);

/// A grid of straight lines of the plane, called as those of newGraticule().
/// @param spacing the distance in metres
std::unique_ptr<TQGrid> newMetricGrid(double spacing);
