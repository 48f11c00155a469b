#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/map/MapCanvas.h"

#include <functional>
#include <string>
#include <vector>

/// Puts texts on a page so that none covers another or leaves the page: one that would is left out, so that
/// those that matter most are to be drawn first.
class MapLabels {
  public:
    /// @param canvas the page; must outlive this object
    /// @param width,height its size
    MapLabels(MapCanvas& canvas, double width, double height)
        : _canvas(canvas), _width(width), _height(height) {}

    /// Draws a text.
    /// @param text the text, UTF-8
    /// @param left the left end of its base line
    /// @param style how
    /// @return whether there was room
    bool drawAt(const std::string& text, const TQPoint& left, const TextStyle& style);

    /// Draws a text beside a point in a direction.
    /// @param text the text, UTF-8
    /// @param point the point
    /// @param direction the direction in which the text lies, of length 1
    /// @param style how
    /// @return whether there was room
    bool drawTowards(const std::string& text, const TQPoint& point, const TQPoint& direction,
                     const TextStyle& style);

    /// Draws a text beside a point: right of it, left, above or below, where there is room; if possible
    /// within an area.
    /// @param text the text, UTF-8
    /// @param point the point
    /// @param style how
    /// @param isInside whether a point of the page lies within the area
    /// @return whether there was room
    bool drawBeside(const std::string& text, const TQPoint& point, const TextStyle& style,
                    const std::function<bool(const TQPoint&)>& isInside);

    /// Keeps texts away from a place.
    /// @param centre its centre
    /// @param radius its radius
    void keepFree(const TQPoint& centre, double radius);

  private:
    /// A place that is taken.
    struct Box {
        double left;
        double top;
        double right;
        double bottom;
    };

    Box boxOf(const std::string& text, const TQPoint& left, const TextStyle& style) const;
    TQPoint leftEnd(const std::string& text, const TQPoint& point, const TQPoint& direction,
                    const TextStyle& style) const;
    bool isFree(const Box& box) const;

    MapCanvas& _canvas;
    double _width;
    double _height;
    std::vector<Box> _taken;
};
