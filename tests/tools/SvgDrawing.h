#pragma once

#include "tests/tools/CubicPoint.h"
#include "tools/tqproj/map/MapCanvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A drawing read back from the SVG that cairo writes: strokes, filled dots, and texts by the outlines of
/// their glyphs; all in points of the page.
class SvgDrawing {
  public:
    /// A stroked path; of one piece, as the canvas draws them.
    struct Line {
        Colour colour;
        CurvePiece path;
    };

    /// A filled circle.
    struct Dot {
        TQPoint centre;
        double radius;
    };

    /// A rectangle; at first an empty one.
    struct Box {
        double left = std::numeric_limits<double>::infinity();
        double top = std::numeric_limits<double>::infinity();
        double right = -std::numeric_limits<double>::infinity();
        double bottom = -std::numeric_limits<double>::infinity();

        void add(const TQPoint& point) {
            left = std::min(left, point.x);
            top = std::min(top, point.y);
            right = std::max(right, point.x);
            bottom = std::max(bottom, point.y);
        }

        bool overlaps(const Box& other) const {
            return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
        }
    };

    /// A text: the ink of its glyphs.
    struct Text {
        Colour colour;
        TQPoint left; ///< the left end of its base line
        Box ink;
        std::size_t glyphs = 0;
    };

    explicit SvgDrawing(const std::string& svg) {
        for (std::size_t begin = svg.find('<'); begin != std::string::npos;
             begin = svg.find('<', begin + 1)) {
            read(std::string_view(svg).substr(begin, svg.find('>', begin) - begin));
        }
    }

    double width() const { return _width; }
    double height() const { return _height; }
    const std::vector<Line>& lines() const { return _lines; }
    const std::vector<Dot>& dots() const { return _dots; }
    const std::vector<Text>& texts() const { return _texts; }

    /// The lines of a colour.
    std::vector<CurvePiece> linesOf(const Colour& colour) const {
        std::vector<CurvePiece> found;
        for (const Line& line : _lines) {
            if (isEqual(line.colour, colour)) {
                found.push_back(line.path);
            }
        }
        return found;
    }

    /// The texts of a colour.
    std::vector<Text> textsOf(const Colour& colour) const {
        std::vector<Text> found;
        std::ranges::copy_if(_texts, std::back_inserter(found),
                             [&colour](const Text& text) { return isEqual(text.colour, colour); });
        return found;
    }

  private:
    static bool isEqual(const Colour& one, const Colour& other) {
        constexpr double forRoundings = 0.005;
        return std::abs(one.red - other.red) < forRoundings &&
               std::abs(one.green - other.green) < forRoundings &&
               std::abs(one.blue - other.blue) < forRoundings;
    }

    static std::vector<double> numbersOf(std::string_view text) {
        std::vector<double> numbers;
        const std::string copy(text);
        for (const char* at = copy.c_str(); *at != '\0';) {
            char* end = nullptr;
            const double number = std::strtod(at, &end);
            if (end != at) {
                numbers.push_back(number);
            }
            at = end != at ? end : at + 1;
        }
        return numbers;
    }

    static std::string_view attribute(std::string_view tag, const std::string& name) {
        const std::string lead = " " + name + "=\"";
        const std::size_t begin = tag.find(lead);
        if (begin == std::string_view::npos) {
            return {};
        }
        const std::string_view value = tag.substr(begin + lead.size());
        return value.substr(0, value.find('"'));
    }

    /// The colour of "stroke" or "fill", a property of the style or an attribute.
    static std::optional<Colour> colourOf(std::string_view tag, const std::string& property) {
        for (const char* const assignment : {":rgb(", "=\"rgb("}) {
            const std::size_t begin = tag.find(property + assignment);
            if (begin != std::string_view::npos) {
                const std::string_view value = tag.substr(begin + property.size());
                const std::vector<double> parts = numbersOf(value.substr(0, value.find(')')));
                return Colour{parts.at(0) / 100.0, parts.at(1) / 100.0, parts.at(2) / 100.0};
            }
        }
        return std::nullopt;
    }

    /// A path of moves, lines and curves.
    static CurvePiece pathOf(std::string_view data) {
        CurvePiece path;
        TQPoint from;
        const auto isCommand = [](char c) { return c == 'M' || c == 'L' || c == 'C' || c == 'Z'; };
        for (auto at = std::ranges::find_if(data, isCommand); at != data.end();) {
            const auto next = std::find_if(at + 1, data.end(), isCommand);
            const std::vector<double> n = numbersOf(std::string_view(at + 1, next));
            if (*at == 'M') {
                from = {n.at(0), n.at(1)};
                path.start = path.arcs.empty() ? from : path.start;
            } else if (*at == 'L') {
                const TQPoint to{n.at(0), n.at(1)};
                path.arcs.push_back({{from.x + (to.x - from.x) / 3.0, from.y + (to.y - from.y) / 3.0},
                                     {to.x - (to.x - from.x) / 3.0, to.y - (to.y - from.y) / 3.0},
                                     to});
                from = to;
            } else if (*at == 'C') {
                path.arcs.push_back({{n.at(0), n.at(1)}, {n.at(2), n.at(3)}, {n.at(4), n.at(5)}});
                from = path.arcs.back().end;
            }
            at = next;
        }
        return path;
    }

    static Box boxOf(const CurvePiece& path, int partsOfArc) {
        Box box;
        for (const TQPoint& point : pointsOf(path, partsOfArc)) {
            box.add(point);
        }
        return box;
    }

    void read(std::string_view tag) {
        if (tag.starts_with("<svg ")) {
            const std::vector<double> sizes = numbersOf(attribute(tag, "viewBox"));
            _width = sizes.at(2);
            _height = sizes.at(3);
        } else if (tag.starts_with("<symbol ") || tag.starts_with("<g id=")) {
            _glyph = attribute(tag, "id");
        } else if (tag.starts_with("<g ")) {
            _colour = colourOf(tag, "fill");
            _isNewText = true;
        } else if (tag.starts_with("<path ")) {
            readPath(tag);
        } else if (tag.starts_with("<use ")) {
            readGlyph(tag);
        }
    }

    void readPath(std::string_view tag) {
        const CurvePiece path = pathOf(attribute(tag, "d"));
        if (const std::optional<Colour> stroke = colourOf(tag, "stroke")) {
            _lines.push_back({*stroke, path});
        } else if (const std::optional<Colour> fill = colourOf(tag, "fill")) {
            const bool isWhite = fill->red == 1.0 && fill->green == 1.0 && fill->blue == 1.0;
            if (isWhite) {
                return; // the page behind a text
            }
            const Box box = boxOf(path, 1);
            _dots.push_back({{0.5 * (box.left + box.right), path.start.y}, 0.5 * (box.right - box.left)});
        } else {
            _glyphs[_glyph] = path.arcs.empty() ? Box{} : boxOf(path, 4);
        }
    }

    void readGlyph(std::string_view tag) {
        const auto at = [&tag](const char* name) { return numbersOf(attribute(tag, name)).at(0); };
        const TQPoint place{at("x"), at("y")};
        if (_isNewText) {
            _texts.push_back({_colour.value_or(Colour{}), place, {}});
            _isNewText = false;
        }
        const Box& glyph = _glyphs.at(std::string(attribute(tag, "xlink:href").substr(1)));
        ++_texts.back().glyphs;
        if (glyph.right >= glyph.left) {
            _texts.back().ink.add({place.x + glyph.left, place.y + glyph.top});
            _texts.back().ink.add({place.x + glyph.right, place.y + glyph.bottom});
        }
    }

    double _width = 0.0;
    double _height = 0.0;
    std::vector<Line> _lines;
    std::vector<Dot> _dots;
    std::vector<Text> _texts;
    std::map<std::string, Box> _glyphs; // by id
    std::string _glyph;                 // that is being read
    std::optional<Colour> _colour;      // of the group that is being read
    bool _isNewText = false;
};
