#include "tools/tqproj/map/MapLabels.h"

#include <algorithm>
#include <array>
#include <cmath>

bool MapLabels::drawAt(const std::string& text, const TQPoint& left, const TextStyle& style) {
    if (text.empty()) {
        return true;
    }
    const Box box = boxOf(text, left, style);
    if (!isFree(box)) {
        return false;
    }
    _canvas.drawText(text, left, style);
    _taken.push_back(box);
    return true;
}

bool MapLabels::drawTowards(const std::string& text, const TQPoint& point, const TQPoint& direction,
                            const TextStyle& style) {
    return drawAt(text, leftEnd(text, point, direction, style), style);
}

bool MapLabels::drawBeside(const std::string& text, const TQPoint& point, const TextStyle& style,
                           const std::function<bool(const TQPoint&)>& isInside) {
    constexpr std::array<TQPoint, 4> directions{TQPoint{1.0, 0.0}, TQPoint{-1.0, 0.0}, TQPoint{0.0, -1.0},
                                                TQPoint{0.0, 1.0}};
    const auto drawInside = [&](const TQPoint& direction) {
        const TQPoint left = leftEnd(text, point, direction, style);
        const Box box = boxOf(text, left, style);
        return isInside({box.left, box.top}) && isInside({box.right, box.top}) &&
               isInside({box.left, box.bottom}) && isInside({box.right, box.bottom}) &&
               drawAt(text, left, style);
    };
    const auto drawAnywhere = [&](const TQPoint& direction) {
        return drawTowards(text, point, direction, style);
    };
    return std::ranges::any_of(directions, drawInside) || std::ranges::any_of(directions, drawAnywhere);
}

/// The place that a text takes.
MapLabels::Box MapLabels::boxOf(const std::string& text, const TQPoint& left, const TextStyle& style) const {
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
    _taken.push_back({centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius});
}

bool MapLabels::isFree(const Box& box) const {
    const bool isOnPage = box.left >= 0.0 && box.top >= 0.0 && box.right <= _width && box.bottom <= _height;
    return isOnPage && std::ranges::none_of(_taken, [&box](const Box& taken) {
               return box.left < taken.right && taken.left < box.right && box.top < taken.bottom &&
                      taken.top < box.bottom;
           });
}
