#include "tools/tqproj/map/MapDrawing.h"

#include "tools/tqproj/PointOperation.h"

#include <algorithm>
#include <utility>

namespace {

constexpr Colour gridColour{0.55, 0.65, 0.75};
constexpr Colour borderColour{0.15, 0.15, 0.15};
constexpr Colour nameColour{0.10, 0.35, 0.65};
constexpr Colour pointColour{0.75, 0.15, 0.10};
constexpr Colour textColour{0.15, 0.15, 0.15};
constexpr Colour quietColour{0.40, 0.40, 0.40};

constexpr Stroke gridStroke{0.6, gridColour};
constexpr Stroke borderStroke{1.2, borderColour};

constexpr TextStyle titleStyle{16.0, textColour, true};
constexpr TextStyle descriptionStyle{8.5, quietColour, false};
constexpr TextStyle coordinateStyle{8.0, textColour, false};
constexpr TextStyle nameStyle{9.0, nameColour, true};
constexpr TextStyle pointStyle{7.5, textColour, false};

constexpr double leastTitleSize = 10.0;
constexpr double sideMargin = 16.0;   // of title and description
constexpr double lineDistance = 12.0; // of the description
constexpr double dotRadius = 1.6;

/// A text, or as much of its beginning as is not wider than it may be.
std::string shortened(const std::string& text, double width, const MapCanvas& canvas,
                      const TextStyle& style) {
    std::string shown = text;
    TQString rest(text.c_str());
    for (double wide = canvas.sizeOf(shown, style).width; wide > width && rest.length() > 1;
         wide = canvas.sizeOf(shown, style).width) {
        rest.cutAtIndex(std::min(static_cast<int>(rest.length() * width / wide), rest.length() - 1));
        shown = rest.utf8() + "…";
    }
    return shown;
}

/// The words of a text on lines that are not wider than they may be; of a word that is, the beginning.
std::vector<std::string> wrapped(const std::string& text, double width, const TextStyle& style) {
    const MapCanvas ruler(MapCanvas::Format::SVG, width, width);
    std::vector<std::string> lines(1);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        const std::string word = shortened(text.substr(begin, end - begin), width, ruler, style);
        const std::string longer = lines.back().empty() ? word : lines.back() + " " + word;
        if (lines.back().empty() || ruler.sizeOf(longer, style).width <= width) {
            lines.back() = longer;
        } else {
            lines.push_back(word);
        }
        begin = end + 1;
    }
    return lines;
}

} // namespace

MapDrawing::MapDrawing(const MapContent& content, const MapFrame& frame)
    : _content(content), _frame(frame), _lines(content.projection, content.extent, frame, content.grid) {}

std::optional<std::string> MapDrawing::draw(MapCanvas::Format format) const {
    const std::vector<std::string> description = descriptionLines();
    const double width = _frame.pageWidth();
    const double height = _frame.pageHeight() + lineDistance * static_cast<double>(description.size());
    MapCanvas canvas(format, width, height);
    MapLabels labels(canvas, width, height);
    const std::vector<MapLine> upright = _lines.upright();
    const std::vector<MapLine> level = _lines.level();
    drawLines(upright, canvas);
    drawLines(level, canvas);
    drawBorder(canvas);
    const std::vector<Place> places = drawDots(canvas, labels);
    drawTexts(canvas, labels, description);
    drawCoordinates(upright, labels);
    drawCoordinates(level, labels);
    drawNames(_lines.columns(), labels);
    drawNames(_lines.rows(), labels);
    drawNames(places, labels);
    return canvas.finish();
}

/// The lines below the map; of a long description the first ones.
std::vector<std::string> MapDrawing::descriptionLines() const {
    constexpr std::size_t mostDescriptionLines = 6;
    std::vector<std::string> lines =
        wrapped(_content.description, _frame.pageWidth() - 2.0 * sideMargin, descriptionStyle);
    if (lines.size() > mostDescriptionLines) {
        lines.resize(mostDescriptionLines);
        lines.back() += " …";
    }
    return lines;
}

void MapDrawing::drawTexts(MapCanvas& canvas, MapLabels& labels,
                           const std::vector<std::string>& description) const {
    constexpr double titleLine = 28.0;
    const double room = _frame.pageWidth() - 2.0 * sideMargin;
    TextStyle style = titleStyle;
    style.size = std::clamp(style.size * room / canvas.sizeOf(_content.title, style).width, leastTitleSize,
                            titleStyle.size);
    labels.drawAt(shortened(_content.title, room, canvas, style), {sideMargin, titleLine}, style);
    double line = _frame.pageHeight();
    for (const std::string& text : description) {
        labels.drawAt(text, {sideMargin, line}, descriptionStyle);
        line += lineDistance;
    }
}

void MapDrawing::drawLines(const std::vector<MapLine>& lines, MapCanvas& canvas) {
    for (const MapLine& line : lines) {
        for (const CurvePiece& piece : line.pieces) {
            canvas.drawLine(piece, gridStroke);
        }
    }
}

void MapDrawing::drawBorder(MapCanvas& canvas) const {
    for (const CurvePiece& piece : _lines.border()) {
        canvas.drawLine(piece, borderStroke);
    }
}

void MapDrawing::drawCoordinates(const std::vector<MapLine>& lines, MapLabels& labels) const {
    std::vector<Caption> captions;
    captions.reserve(lines.size());
    for (const MapLine& line : lines) {
        captions.push_back({line, line.coordinate(_content.projection.metresOfUnit())});
    }
    drawCaptions(captions, Side::Start, coordinateStyle, labels);
}

void MapDrawing::drawNames(const std::vector<MapStrip>& strips, MapLabels& labels) const {
    std::vector<Caption> captions;
    captions.reserve(strips.size());
    for (const MapStrip& strip : strips) {
        captions.push_back({strip.middle, strip.label});
    }
    drawCaptions(captions, Side::End, nameStyle, labels);
}

/// Draws texts at one side of their lines; at the other one where all lines meet, as in a pole; nowhere when
/// they meet at both.
void MapDrawing::drawCaptions(const std::vector<Caption>& captions, Side side, const TextStyle& style,
                              MapLabels& labels) const {
    const Side other = side == Side::Start ? Side::End : Side::Start;
    const Side chosen = isOnePoint(captions, side) ? other : side;
    if (chosen == other && isOnePoint(captions, other)) {
        return;
    }
    const auto isOnMap = [this](const TQPoint& page) { return _lines.isOnMap(page); };
    for (const auto& [line, text] : captions) {
        if (!line.pieces.empty()) {
            const auto [place, outward] = endOf(line, chosen);
            labels.drawBeyond(text, place, outward, style, isOnMap);
        }
    }
}

LineEnd MapDrawing::endOf(const MapLine& line, Side side) const {
    return side == Side::Start ? _lines.startOf(line) : _lines.endOf(line);
}

bool MapDrawing::isOnePoint(const std::vector<Caption>& captions, Side side) const {
    constexpr double nearness = 1.0; // points
    std::optional<TQPoint> first;
    std::size_t ends = 0;
    for (const Caption& caption : captions) {
        if (caption.line.pieces.empty()) {
            continue;
        }
        const TQPoint place = endOf(caption.line, side).place;
        if (first && distanceBetween(place, *first) > nearness) {
            return false;
        }
        first = place;
        ++ends;
    }
    return ends > 1;
}

/// Draws the points that are on the map.
std::vector<MapDrawing::Place> MapDrawing::drawDots(MapCanvas& canvas, MapLabels& labels) const {
    std::vector<Place> places;
    for (const MapPoint& point : _content.points) {
        if (const std::optional<TQPoint> place = _lines.placeOf(point.place)) {
            canvas.drawDot(*place, dotRadius, pointColour);
            labels.keepFree(*place, dotRadius);
            places.push_back({*place, point.name});
        }
    }
    return places;
}

void MapDrawing::drawNames(const std::vector<Place>& places, MapLabels& labels) const {
    const auto isOnMap = [this](const TQPoint& page) { return _lines.isOnMap(page); };
    for (const auto& [place, name] : places) {
        labels.drawBeside(name, place, pointStyle, isOnMap);
    }
}
