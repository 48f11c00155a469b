#pragma once

#include "tools/tqproj/map/GeographicExtent.h"
#include "tools/tqproj/map/MapProjection.h"

#include <optional>

/// How near to a seam its sides are taken, in degrees: a centimetre, so that no rounding leads across.
inline constexpr double seamNearness = 1e-7;

/// The longitude within an extent at which a projection cuts the world open: where the image of a parallel
/// jumps from one side of the map to the other.
/// @param extent the extent
/// @param projection the projection
/// @return the longitude, counted from the extent's west on; nothing when there is none
std::optional<double> seamOf(const GeographicExtent& extent, const MapProjection& projection);

/// The same part of the world, of one that goes all around it as it begins and ends at the seam, so that its
/// western and eastern borders are those of the map. Other extents, and those without a seam, are answered as
/// they are.
/// @param extent the extent
/// @param projection the projection
GeographicExtent cutAtSeam(const GeographicExtent& extent, const MapProjection& projection);
