#include "tools/tqproj/map/MapGrid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

std::unique_ptr<TQGrid> newGrid(TQGrid::Mode mode) {
    auto grid = std::make_unique<TQGrid>();
    grid->setMode(mode);
    TQIndexParam index;
    index.usesAlphanumbering = true;
    index.horizontal = {.isNumeric = false, .extra = 0, .startLabel = TQString("A")};
    index.vertical = {.isNumeric = true, .extra = 0, .startLabel = TQString("1")};
    grid->setIndexParameters(index);
    return grid;
}

/// The least round distance that divides a range into up to eight parts, not less than an inch long on the
/// page.
double roundSpacing(double range, double length) {
    constexpr double minute = 1.0 / 60.0;
    constexpr double inch = 72.0;
    const double parts = std::clamp(std::floor(length / inch), 1.0, 8.0);
    constexpr std::array<double, 15> spacings{
        minute, 2.0 * minute, 5.0 * minute, 10.0 * minute, 15.0 * minute, 30.0 * minute, 1.0, 2.0,
        5.0,    10.0,         15.0,         20.0,          30.0,          45.0,          60.0};
    for (const double spacing : spacings) {
        if (range <= parts * spacing) {
            return spacing;
        }
    }
    return spacings.back();
}

} // namespace

std::unique_ptr<TQGrid> newGraticule(const TQSize& spacing) {
    auto grid = newGrid(TQGrid::AngularGrid);
    grid->setAngularSpacing(spacing);
    return grid;
}

std::unique_ptr<TQGrid> newFittingGraticule(const GeographicExtent& extent, const TQSize& size) {
    return newGraticule(
        {roundSpacing(extent.width(), size.width), roundSpacing(extent.height(), size.height)});
}

std::unique_ptr<TQGrid> newMetricGrid(double spacing) {
    auto grid = newGrid(TQGrid::MetricGrid);
    grid->setUnit(TQUnitMetre);
    grid->setSpacing({spacing, spacing});
    return grid;
}
