#pragma once

#include "tools/tqproj/map/GeographicExtent.h"

#include <optional>

class MapProjection;

/// The area in which a projection is good, found from nothing but the images of points.
///
/// Good is a place where no length in the image is more than a quarter longer, or shorter in the same ratio,
/// than at the centre of the projection. What lengths become in the various directions is told by the axes of
/// Tissot's indicatrix (Snyder, Map Projections: A Working Manual, USGS Professional Paper 1395, chapter 4),
/// here by finite differences on an ellipsoid of the projection's flattening: all scales are compared with
/// those of the centre, so that neither its size nor the unit of the plane matters.
///
/// The centre is, among the places where shapes are true, the one of the least enlargement: a point of the
/// central meridian of a transverse Mercator, of the equator of a Mercator, of the middle parallel of a conic
/// projection, the point of contact of an azimuthal one. Of equal places it is the one with the least
/// convergence of meridians, then the one nearest to the equator, then to the origin of the plane. It is
/// looked for in steps of five degrees.
///
/// The area reaches from the centre along its parallel and its meridian as far as all is good and the image
/// has no tear, in tenths of a degree. What PROJ reports of points without an image is not heard.
/// @param projection the projection
/// @return the area, all round the world where nothing limits it; nothing for a projection without images, or
///         of points in space
std::optional<GeographicExtent> goodAreaOf(const MapProjection& projection);
