#pragma once

#include "grid/TQGrid.h"
#include "tools/tqproj/map/GeographicExtent.h"
#include "tools/tqproj/map/MapCanvas.h"
#include "tools/tqproj/map/MapFrame.h"
#include "tools/tqproj/map/MapLabels.h"
#include "tools/tqproj/map/MapLines.h"
#include "tools/tqproj/map/MapPoints.h"
#include "tools/tqproj/map/MapProjection.h"

#include <optional>
#include <string>
#include <vector>

/// What a map shows.
struct MapContent {
    const MapProjection& projection; ///< the projection
    const GeographicExtent& extent;  ///< the part of the world
    const TQGrid& grid;              ///< the lines over it, in degrees or metres
    std::vector<MapPoint> points;    ///< places, the most important ones first
    std::string title;               ///< what stands above the map
    std::string description;         ///< what stands below it, as many lines as it takes
};

/// Draws a map: the lines of its grid, with their coordinates at their southern and western ends, the names
/// of columns and rows at the other borders, its points with their names, title and description.
class MapDrawing {
  public:
    /// @param content what the map shows
    /// @param frame where it lies; both must outlive this object
    MapDrawing(const MapContent& content, const MapFrame& frame);

    /// The lines of the grid.
    const MapLines& lines() const { return _lines; }

    /// Draws the map.
    /// @param format the kind of file
    /// @return the bytes of the file; nothing when it could not be made
    std::optional<std::string> draw(MapCanvas::Format format) const;

  private:
    /// Which end of its lines a text stands at.
    enum class Side { Start, End };

    /// A text at a line.
    struct Caption {
        const MapLine& line; ///< must outlive this object
        std::string text;
    };

    /// A point on the page.
    struct Place {
        TQPoint page;
        std::string name;
    };

    std::vector<std::string> descriptionLines() const;
    static void drawLines(const std::vector<MapLine>& lines, MapCanvas& canvas);
    void drawBorder(MapCanvas& canvas) const;
    std::vector<Place> drawDots(MapCanvas& canvas, MapLabels& labels) const;
    void drawTexts(MapCanvas& canvas, MapLabels& labels, const std::vector<std::string>& description) const;
    void drawCoordinates(const std::vector<MapLine>& lines, MapLabels& labels) const;
    void drawNames(const std::vector<MapStrip>& strips, MapLabels& labels) const;
    void drawNames(const std::vector<Place>& places, MapLabels& labels) const;
    void drawCaptions(const std::vector<Caption>& captions, Side side, const TextStyle& style,
                      MapLabels& labels) const;
    LineEnd endOf(const MapLine& line, Side side) const;
    bool isOnePoint(const std::vector<Caption>& captions, Side side) const;

    const MapContent& _content;
    const MapFrame& _frame;
    MapLines _lines;
};
