#pragma once

#include "tools/tqproj/map/GeographicExtent.h"
#include "tools/tqproj/map/MapProjection.h"

/// The same part of the world, of one that goes all around it as it begins and ends where the projection cuts
/// the world open: so that its western and eastern borders are those of the map. Other extents, and those
/// that the projection does not cut, are answered as they are.
/// @param extent the extent
/// @param projection the projection
GeographicExtent cutAtSeam(const GeographicExtent& extent, const MapProjection& projection);
