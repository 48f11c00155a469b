#include "tools/tqproj/map/MapLabels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double sideOfSquare = 16.0; // points

constexpr double diagonal = 0.70710678118654752;

/// Around a point: right, left, above, below and between.
constexpr std::array<TQPoint, 8> around{{{1.0, 0.0},
                                         {-1.0, 0.0},
                                         {0.0, -1.0},
                                         {0.0, 1.0},
                                         {diagonal, -diagonal},
                                         {diagonal, diagonal},
                                         {-diagonal, -diagonal},
                                         {-diagonal, diagonal}}};

/// Cosines and sines of the turns that lead from a direction to its sides.
constexpr std::array<TQPoint, 5> turns{
    {{1.0, 0.0}, {diagonal, diagonal}, {diagonal, -diagonal}, {0.0, 1.0}, {0.0, -1.0}}};

TQPoint turned(const TQPoint& direction, const TQPoint& turn) {
    return {direction.x * turn.x - direction.y * turn.y, direction.x * turn.y + direction.y * turn.x};
}

std::array<TQPoint, 4> cornersOf(const PageBox& box) {
    return {{{box.left, box.top}, {box.right, box.top}, {box.left, box.bottom}, {box.right, box.bottom}}};
}

bool overlap(const PageBox& one, const PageBox& other) {
    return one.left < other.right && other.left < one.right && one.top < other.bottom &&
           other.top < one.bottom;
}

std::size_t squaresAlong(double length) { return static_cast<std::size_t>(length / sideOfSquare) + 1; }

} // namespace

MapLabels::MapLabels(MapCanvas& canvas, double width, double height)
    : _canvas(canvas), _page{0.0, 0.0, width, height}, _columns(squaresAlong(width)),
      _taken(_columns * squaresAlong(height)) {}

bool MapLabels::drawAt(const std::string& text, const TQPoint& left, const TextStyle& style) {
    if (text.empty()) {
        return true;
    }
    const PageBox box = boxOf(text, left, style);
    if (!isFree(box)) {
        return false;
    }
    _canvas.clear(box);
    _canvas.drawText(text, left, style);
    take(box);
    return true;
}

bool MapLabels::drawBeyond(const std::string& text, const TQPoint& end, const TQPoint& outward,
                           const TextStyle& style, const Area& area) {
    const auto drawOutside = [&](const TQPoint& turn) {
        const TQPoint left = leftEnd(text, end, turned(outward, turn), style);
        return std::ranges::none_of(cornersOf(boxOf(text, left, style)), area) && drawAt(text, left, style);
    };
    return std::ranges::any_of(turns, drawOutside) || drawAt(text, leftEnd(text, end, outward, style), style);
}

bool MapLabels::drawBeside(const std::string& text, const TQPoint& point, const TextStyle& style,
                           const Area& area) {
    return std::ranges::any_of(around, [&](const TQPoint& direction) {
        const TQPoint left = leftEnd(text, point, direction, style);
        return std::ranges::all_of(cornersOf(boxOf(text, left, style)), area) && drawAt(text, left, style);
    });
}

/// The place that a text takes.
PageBox MapLabels::boxOf(const std::string& text, const TQPoint& left, const TextStyle& style) const {
    constexpr double padding = 1.5;
    const TextSize size = _canvas.sizeOf(text, style);
    return {left.x - padding, left.y - size.height - padding, left.x + size.width + padding,
            left.y + padding};
}

/// Where a text begins that lies in a direction from a point.
TQPoint MapLabels::leftEnd(const std::string& text, const TQPoint& point, const TQPoint& direction,
                           const TextStyle& style) const {
    constexpr double gap = 4.0; // to the point
    const TextSize size = _canvas.sizeOf(text, style);
    const double distance =
        gap + 0.5 * (std::abs(direction.x) * size.width + std::abs(direction.y) * size.height);
    return {point.x + distance * direction.x - 0.5 * size.width,
            point.y + distance * direction.y + 0.5 * size.height};
}

void MapLabels::keepFree(const TQPoint& centre, double radius) {
    take({centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius});
}

bool MapLabels::isFree(const PageBox& box) const {
    const bool isOnPage = box.left >= _page.left && box.top >= _page.top && box.right <= _page.right &&
                          box.bottom <= _page.bottom;
    if (!isOnPage) {
        return false;
    }
    const Squares squares = squaresOf(box);
    for (std::size_t row = squares.top; row <= squares.bottom; ++row) {
        for (std::size_t column = squares.left; column <= squares.right; ++column) {
            const std::vector<PageBox>& taken = _taken[row * _columns + column];
            if (std::ranges::any_of(taken, [&box](const PageBox& other) { return overlap(box, other); })) {
                return false;
            }
        }
    }
    return true;
}

void MapLabels::take(const PageBox& box) {
    const Squares squares = squaresOf(box);
    for (std::size_t row = squares.top; row <= squares.bottom; ++row) {
        for (std::size_t column = squares.left; column <= squares.right; ++column) {
            _taken[row * _columns + column].push_back(box);
        }
    }
}

MapLabels::Squares MapLabels::squaresOf(const PageBox& box) const {
    const auto square = [](double place, double end) {
        return static_cast<std::size_t>(std::clamp(place, 0.0, end) / sideOfSquare);
    };
    return {square(box.left, _page.right), square(box.top, _page.bottom), square(box.right, _page.right),
            square(box.bottom, _page.bottom)};
}
