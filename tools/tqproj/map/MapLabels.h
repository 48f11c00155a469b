#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/map/MapCanvas.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Puts texts on a page so that none covers another or leaves the page: one that would is left out, so that
/// those that matter most are to be drawn first. Behind a text the page is white, so that lines do not cross
/// it.
class MapLabels {
  public:
    /// A part of the page: whether a point lies in it.
    using Area = std::function<bool(const TQPoint&)>;

    /// @param canvas the page; must outlive this object
    /// @param width,height its size
    MapLabels(MapCanvas& canvas, double width, double height);

    /// Draws a text.
    /// @param text the text, UTF-8
    /// @param left the left end of its base line
    /// @param style how
    /// @return whether there was room
    bool drawAt(const std::string& text, const TQPoint& left, const TextStyle& style);

    /// Draws a text at the end of a line: where the line would go on or, if this is not outside an area, up
    /// to a right angle from there; in the area only where there is no other place.
    /// @param text the text, UTF-8
    /// @param end the end of the line
    /// @param outward the direction in which the line would go on, of length 1
    /// @param style how
    /// @param area the area to keep out of
    /// @return whether there was room
    bool drawBeyond(const std::string& text, const TQPoint& end, const TQPoint& outward,
                    const TextStyle& style, const Area& area);

    /// Draws a text beside a point and within an area: right of it, left, above, below or between these.
    /// @param text the text, UTF-8
    /// @param point the point
    /// @param style how
    /// @param area the area
    /// @return whether there was room
    bool drawBeside(const std::string& text, const TQPoint& point, const TextStyle& style, const Area& area);

    /// Keeps texts away from a place.
    /// @param centre its centre
    /// @param radius its radius
    void keepFree(const TQPoint& centre, double radius);

  private:
    PageBox boxOf(const std::string& text, const TQPoint& left, const TextStyle& style) const;
    TQPoint leftEnd(const std::string& text, const TQPoint& point, const TQPoint& direction,
                    const TextStyle& style) const;
    bool isFree(const PageBox& box) const;
    void take(const PageBox& box);

    /// The squares of the page that a box touches: columns and rows from the first to the last.
    struct Squares {
        std::size_t left, top, right, bottom;
    };
    Squares squaresOf(const PageBox& box) const;

    MapCanvas& _canvas;
    PageBox _page;
    std::size_t _columns;
    std::vector<std::vector<PageBox>> _taken; // by squares of the page, row by row
};
