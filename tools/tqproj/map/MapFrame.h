#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/map/GeographicExtent.h"
#include "tools/tqproj/map/MapProjection.h"

#include <optional>

/// Where a map lies on its page: the image of an extent, as large as a size allows, within margins. Pages are
/// measured in points from their upper left corner, y downwards.
///
/// A map is not larger than the circumference of the Earth: what lies farther off is left out. So there are
/// maps of projections that lead singular points far away.
class MapFrame {
  public:
    /// The frame of an extent.
    /// @param projection the projection
    /// @param extent the extent
    /// @return the frame; nothing when no part of the extent has an image
    static std::optional<MapFrame> of(const MapProjection& projection, const GeographicExtent& extent);

    /// Leads a point of the plane to the page.
    /// @param plane x and y
    TQPoint toPage(const TQPoint& plane) const;

    /// Leads a point of the page to the plane.
    /// @param page the point
    TQPoint toPlane(const TQPoint& page) const;

    /// Whether a point of the page lies on the map.
    /// @param page the point
    bool contains(const TQPoint& page) const;

    /// The width of the page, which has room for a title.
    double pageWidth() const;

    /// The height of the page.
    double pageHeight() const { return mapHeight() + 2.0 * margin + heading; }

    /// The width of the map.
    double mapWidth() const { return (_greatest.x - _least.x) * _scale; }

    /// The height of the map.
    double mapHeight() const { return (_greatest.y - _least.y) * _scale; }

    /// The least coordinates of the map on the plane.
    const TQPoint& least() const { return _least; }
    /// The greatest coordinates of the map on the plane.
    const TQPoint& greatest() const { return _greatest; }

    static constexpr double margin = 48.0;  ///< around the map, for labels
    static constexpr double heading = 20.0; ///< above the map, for its title

  private:
    MapFrame(const TQPoint& least, const TQPoint& greatest);

    double left() const { return 0.5 * (pageWidth() - mapWidth()); }
    double top() const { return margin + heading; }

    TQPoint _least;
    TQPoint _greatest;
    double _scale; // points for a unit of the plane
};
