#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/map/CurveTracer.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// A colour of light, each part from 0 to 1.
struct Colour {
    double red;
    double green;
    double blue;
};

/// How a line is drawn.
struct Stroke {
    double width;
    Colour colour;
};

/// How a text is drawn.
struct TextStyle {
    double size; ///< of the font
    Colour colour;
    bool isBold = false;
};

/// The size of a text on the page.
struct TextSize {
    double width;
    double height; ///< of a capital letter
};

/// A rectangle of the page.
struct PageBox {
    double left;
    double top;
    double right;
    double bottom;
};

/// A page to draw on, which becomes a file; measured in points from its upper left corner, y downwards. The
/// one class that knows the drawing library.
class MapCanvas {
  public:
    /// The kinds of files.
    enum class Format { SVG, PNG, PDF };

    /// The kind of file that a path's extension tells, in small or capital letters; nothing for another
    /// extension.
    /// @param path the path
    static std::optional<Format> formatOf(const std::string& path);

    /// A white page.
    /// @param format what it becomes
    /// @param width,height its size
    MapCanvas(Format format, double width, double height);
    ~MapCanvas();
    MapCanvas(const MapCanvas&) = delete;
    MapCanvas& operator=(const MapCanvas&) = delete;

    /// Draws a line.
    /// @param line the line
    /// @param stroke how
    void drawLine(const CurvePiece& line, const Stroke& stroke);

    /// Draws a filled circle.
    /// @param centre its centre
    /// @param radius its radius
    /// @param colour its colour
    void drawDot(const TQPoint& centre, double radius, const Colour& colour);

    /// Makes a rectangle white again.
    /// @param box the rectangle
    void clear(const PageBox& box);

    /// How much room a text takes.
    /// @param text the text, UTF-8
    /// @param style how it is drawn
    TextSize sizeOf(const std::string& text, const TextStyle& style) const;

    /// Draws a text.
    /// @param text the text, UTF-8
    /// @param left the left end of its base line
    /// @param style how
    void drawText(const std::string& text, const TQPoint& left, const TextStyle& style);

    /// Ends the drawing.
    /// @return the bytes of the file; nothing when it could not be made
    std::optional<std::string> finish();

  private:
    class Surface;
    std::unique_ptr<Surface> _surface;
};
