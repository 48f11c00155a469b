#include "tools/tqproj/map/MapCanvas.h"

#include "support/TQPath.h"

#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <cctype>
#include <cmath>
#include <numbers>
#include <string_view>

namespace {

constexpr double pixelsPerPoint = 2.0; // of a PNG
constexpr Colour white{1.0, 1.0, 1.0};

using SurfaceHandle = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using ContextHandle = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t appendBytes(void* bytes, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

SurfaceHandle newSurface(MapCanvas::Format format, double width, double height, std::string& bytes) {
    cairo_surface_t* surface = nullptr;
    switch (format) {
    case MapCanvas::Format::SVG:
        surface = cairo_svg_surface_create_for_stream(&appendBytes, &bytes, width, height);
        break;
    case MapCanvas::Format::PDF:
        surface = cairo_pdf_surface_create_for_stream(&appendBytes, &bytes, width, height);
        break;
    case MapCanvas::Format::PNG:
        surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                             static_cast<int>(std::ceil(width * pixelsPerPoint)),
                                             static_cast<int>(std::ceil(height * pixelsPerPoint)));
        cairo_surface_set_device_scale(surface, pixelsPerPoint, pixelsPerPoint);
        break;
    }
    return SurfaceHandle(surface, &cairo_surface_destroy);
}

/// Whether a character of UTF-8 is none for cairo: U+FDD0 to U+FDEF and the last two codes of each plane,
/// which are set apart for programs.
bool isNonCharacter(std::string_view character) {
    const auto byte = [character](std::size_t index) { return static_cast<unsigned char>(character[index]); };
    const bool isAtEndOfPlane =
        character.size() >= 3 && byte(character.size() - 1) >= 0xBE && byte(character.size() - 2) == 0xBF;
    if (character.size() == 3) {
        return byte(0) == 0xEF && (isAtEndOfPlane || (byte(1) == 0xB7 && byte(2) >= 0x90 && byte(2) <= 0xAF));
    }
    return character.size() == 4 && isAtEndOfPlane && (byte(1) & 0x0FU) == 0x0FU;
}

/// A text that cairo takes: with U+FFFD for what it has no character for.
std::string drawable(std::string_view text) {
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    std::string drawn;
    while (!text.empty()) {
        std::size_t size = 1;
        while (size < text.size() && continues(text[size])) {
            ++size;
        }
        const std::string_view character = text.substr(0, size);
        drawn += isNonCharacter(character) ? std::string_view("\xEF\xBF\xBD") : character;
        text.remove_prefix(character.size());
    }
    return drawn;
}

} // namespace

/// What the drawing library needs for a page.
class MapCanvas::Surface {
  public:
    Surface(Format format, double width, double height)
        : _format(format), _surface(newSurface(format, width, height, _bytes)),
          _context(cairo_create(_surface.get()), &cairo_destroy) {
        cairo_set_line_join(context(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(context(), CAIRO_LINE_CAP_ROUND);
        select(white);
        cairo_paint(context());
    }

    cairo_t* context() const { return _context.get(); }

    void select(const Colour& colour) {
        cairo_set_source_rgb(context(), colour.red, colour.green, colour.blue);
    }

    void select(const TextStyle& style) {
        cairo_select_font_face(context(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                               style.isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(context(), style.size);
        select(style.colour);
    }

    std::optional<std::string> finish() {
        cairo_status_t status = cairo_status(context());
        if (_format == Format::PNG && status == CAIRO_STATUS_SUCCESS) {
            status = cairo_surface_write_to_png_stream(_surface.get(), &appendBytes, &_bytes);
        }
        cairo_surface_finish(_surface.get());
        if (status == CAIRO_STATUS_SUCCESS) {
            status = cairo_surface_status(_surface.get());
        }
        return status == CAIRO_STATUS_SUCCESS ? std::optional(std::move(_bytes)) : std::nullopt;
    }

  private:
    Format _format;
    std::string _bytes; // written to by the surface, so it is declared before it
    SurfaceHandle _surface;
    ContextHandle _context;
};

std::optional<MapCanvas::Format> MapCanvas::formatOf(const std::string& path) {
    std::string extension = tq_pathExtension(TQString(path.c_str())).utf8();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension == "svg"   ? std::optional(Format::SVG)
           : extension == "png" ? std::optional(Format::PNG)
           : extension == "pdf" ? std::optional(Format::PDF)
                                : std::nullopt;
}

MapCanvas::MapCanvas(Format format, double width, double height)
    : _surface(std::make_unique<Surface>(format, width, height)) {}

MapCanvas::~MapCanvas() = default;

void MapCanvas::drawLine(const CurvePiece& line, const Stroke& stroke) {
    cairo_t* const context = _surface->context();
    cairo_new_path(context);
    cairo_move_to(context, line.start.x, line.start.y);
    for (const CubicArc& arc : line.arcs) {
        cairo_curve_to(context, arc.firstControl.x, arc.firstControl.y, arc.secondControl.x,
                       arc.secondControl.y, arc.end.x, arc.end.y);
    }
    _surface->select(stroke.colour);
    cairo_set_line_width(context, stroke.width);
    cairo_stroke(context);
}

void MapCanvas::drawDot(const TQPoint& centre, double radius, const Colour& colour) {
    cairo_t* const context = _surface->context();
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
    _surface->select(colour);
    cairo_fill(context);
}

void MapCanvas::clear(const PageBox& box) {
    cairo_t* const context = _surface->context();
    cairo_rectangle(context, box.left, box.top, box.right - box.left, box.bottom - box.top);
    _surface->select(white);
    cairo_fill(context);
}

TextSize MapCanvas::sizeOf(const std::string& text, const TextStyle& style) const {
    constexpr double capitalHeight = 0.72; // of the font's size
    _surface->select(style);
    cairo_text_extents_t extents{};
    cairo_text_extents(_surface->context(), drawable(text).c_str(), &extents);
    return {extents.x_advance, capitalHeight * style.size};
}

void MapCanvas::drawText(const std::string& text, const TQPoint& left, const TextStyle& style) {
    _surface->select(style);
    cairo_move_to(_surface->context(), left.x, left.y);
    cairo_show_text(_surface->context(), drawable(text).c_str());
}

std::optional<std::string> MapCanvas::finish() { return _surface->finish(); }
