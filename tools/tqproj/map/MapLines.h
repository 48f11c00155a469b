#pragma once

#include "grid/TQGrid.h"
#include "tools/tqproj/map/GeographicExtent.h"
#include "tools/tqproj/map/MapFrame.h"
#include "tools/tqproj/map/MapLine.h"
#include "tools/tqproj/map/MapProjection.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

/// The space between two neighbouring lines of a grid.
struct MapStrip {
    MapLine middle;    ///< the line in its middle
    std::string label; ///< what it is called
};

/// An end of a line on the page.
struct LineEnd {
    TQPoint place;   ///< where it is
    TQPoint outward; ///< the direction in which the line would go on, of length 1
};

/// The lines of a grid over a map, cut off at the border of its extent.
class MapLines {
  public:
    /// How many lines a grid may have on a map.
    static constexpr double mostLines = 2000.0;

    /// @param projection the map's projection
    /// @param extent what the map shows
    /// @param frame where it lies
    /// @param grid the grid, in degrees or metres; all must outlive this object
    MapLines(const MapProjection& projection, const GeographicExtent& extent, const MapFrame& frame,
             const TQGrid& grid);

    /// How many lines the grid has here.
    double count() const;

    /// The meridians, or the lines of the eastings.
    std::vector<MapLine> upright() const { return linesOf(_axes[0]); }
    /// The parallels, or the lines of the northings.
    std::vector<MapLine> level() const { return linesOf(_axes[1]); }

    /// The spaces between the upright lines and those beside the outermost ones, from west to east.
    std::vector<MapStrip> columns() const;
    /// The spaces between the level lines and those beside the outermost ones, from north to south.
    std::vector<MapStrip> rows() const;

    /// The border of the extent: its four sides, without those that lie on each other.
    std::vector<CurvePiece> border() const;

    /// Where a point lies on the page; nothing when it is not on the map.
    /// @param geographic longitude and latitude in degrees
    std::optional<TQPoint> placeOf(const TQPoint& geographic) const;

    /// Whether a point of the page lies on the map.
    /// @param page the point
    bool isOnMap(const TQPoint& page) const {
        return _frame.contains(page) && isInExtent(_frame.toPlane(page));
    }

    /// The southern, western, lower or left end of a line.
    /// @param line the line, which has pieces
    LineEnd startOf(const MapLine& line) const;
    /// The northern, eastern, upper or right end of a line.
    /// @param line the line, which has pieces
    LineEnd endOf(const MapLine& line) const;

  private:
    /// One of the two families of lines of a grid: those at multiples of a spacing from an origin, as far as
    /// they are on the map.
    struct Axis {
        MapLine::Kind kind;
        double least;
        double greatest;
        double origin;
        double spacing;

        double first() const;
        double last() const;
        double count() const;
        std::vector<double> values() const;
        std::vector<double> middles() const;
    };

    static std::array<Axis, 2> axesOf(const MapProjection& projection, const GeographicExtent& extent,
                                      const MapFrame& frame, const TQGrid& grid);
    std::vector<MapLine> linesOf(const Axis& axis) const;
    MapLine lineOf(MapLine::Kind kind, double value) const;
    std::vector<CurvePiece> meridian(double longitude) const;
    std::vector<CurvePiece> parallel(double latitude) const;
    std::vector<CurvePiece> planeLine(const TQPoint& start, const TQPoint& end) const;
    bool isInExtent(const TQPoint& plane) const;
    bool isSeam() const;
    std::vector<CurvePiece> traced(const Curve& plane, int parts) const;
    LineEnd lineEnd(MapLine::Kind kind, const TQPoint& place, const TQPoint& before) const;
    TQPoint directionOf(MapLine::Kind kind, const TQPoint& page) const;

    const MapProjection& _projection;
    const GeographicExtent& _extent;
    const MapFrame& _frame;
    const TQGrid& _grid;
    std::array<Axis, 2> _axes;
};
