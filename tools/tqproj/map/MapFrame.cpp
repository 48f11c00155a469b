#include "tools/tqproj/map/MapFrame.h"

#include "tools/tqproj/map/MapSeam.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace {

constexpr double greatestSize = 720.0; // of the longer side of the map
constexpr double leastWidth = 400.0;   // of the page
constexpr double allowance = 0.5;      // for what lies between the points that are looked at

constexpr int steps = 128; // of points from side to side that are looked at

/// Longitudes from west to east, and those beside a seam between them.
std::vector<double> longitudesOf(const GeographicExtent& extent, const MapProjection& projection) {
    std::vector<double> longitudes;
    longitudes.reserve(steps + 3);
    for (int step = 0; step <= steps; ++step) {
        longitudes.push_back(extent.west + extent.width() * step / steps);
    }
    if (const std::optional<double> seam = seamOf(extent, projection)) {
        longitudes.push_back(std::max(*seam - seamNearness, extent.west));
        longitudes.push_back(std::min(*seam + seamNearness, extent.east));
    }
    return longitudes;
}

/// The images of points all over an extent.
std::vector<TQPoint> imagesOf(const MapProjection& projection, const GeographicExtent& extent) {
    std::vector<TQPoint> images;
    for (const double longitude : longitudesOf(extent, projection)) {
        for (int row = 0; row <= steps; ++row) {
            const auto image = projection.toPlane({longitude, extent.south + extent.height() * row / steps});
            if (image) {
                images.push_back(*image);
            }
        }
    }
    return images;
}

/// The least and the greatest value of one coordinate; where they are farther apart than they may, those
/// around the middle value, which outliers do not move.
std::pair<double, double> boundsOf(std::vector<TQPoint> points, double TQPoint::*coordinate, double range) {
    constexpr double forOtherRadii = 1.01;
    const auto [least, greatest] = std::ranges::minmax(points, {}, coordinate);
    if (greatest.*coordinate - least.*coordinate <= forOtherRadii * range) {
        return {least.*coordinate, greatest.*coordinate};
    }
    const auto middle = points.begin() + static_cast<std::ptrdiff_t>(points.size() / 2);
    std::ranges::nth_element(points, middle, {}, coordinate);
    return {std::max(least.*coordinate, (*middle).*coordinate - 0.5 * range),
            std::min(greatest.*coordinate, (*middle).*coordinate + 0.5 * range)};
}

} // namespace

std::optional<MapFrame> MapFrame::of(const MapProjection& projection, const GeographicExtent& extent) {
    const std::vector<TQPoint> images = imagesOf(projection, extent);
    if (images.empty()) {
        return std::nullopt;
    }
    TQPoint least;
    TQPoint greatest;
    for (double TQPoint::*const coordinate : {&TQPoint::x, &TQPoint::y}) {
        const auto [first, last] = boundsOf(images, coordinate, projection.circumference());
        least.*coordinate = first;
        greatest.*coordinate = last;
    }
    const bool hasArea = greatest.x > least.x && greatest.y > least.y;
    return hasArea ? std::optional(MapFrame(least, greatest)) : std::nullopt;
}

MapFrame::MapFrame(const TQPoint& least, const TQPoint& greatest)
    : _least(least), _greatest(greatest),
      _scale(greatestSize / std::max(greatest.x - least.x, greatest.y - least.y)) {}

double MapFrame::pageWidth() const { return std::max(mapWidth() + 2.0 * margin, leastWidth); }

TQPoint MapFrame::toPage(const TQPoint& plane) const {
    return {left() + (plane.x - _least.x) * _scale, top() + (_greatest.y - plane.y) * _scale};
}

TQPoint MapFrame::toPlane(const TQPoint& page) const {
    return {_least.x + (page.x - left()) / _scale, _greatest.y - (page.y - top()) / _scale};
}

bool MapFrame::contains(const TQPoint& page) const {
    return page.x >= left() - allowance && page.x <= left() + mapWidth() + allowance &&
           page.y >= top() - allowance && page.y <= top() + mapHeight() + allowance;
}
