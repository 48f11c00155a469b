#include "tools/tqproj/map/MapLines.h"

#include "tools/tqproj/PointOperation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double tolerance = 0.02;    // points
constexpr double forRoundings = 1e-9; // of a spacing

// Parts of a line that are looked at in any case: straight lines need none, but may break.
constexpr int partsOfStraight = 2;
constexpr int partsOfCurved = 16;

int partsOf(int shape) { return shape == TQProjection::StraightLine ? partsOfStraight : partsOfCurved; }

/// Whether a piece is too small to be seen, as the parallel of a pole.
bool isPoint(const CurvePiece& piece) {
    return std::ranges::all_of(piece.arcs, [&piece](const CubicArc& arc) {
        return distanceBetween(piece.start, arc.end) <= tolerance;
    });
}

} // namespace

// ---- Which lines there are

/// The number of the first line.
double MapLines::Axis::first() const { return std::ceil((least - origin) / spacing - forRoundings); }

/// The number of the last line; less than the first one when there is none.
double MapLines::Axis::last() const { return std::floor((greatest - origin) / spacing + forRoundings); }

double MapLines::Axis::count() const { return std::max(last() - first() + 1.0, 0.0); }

std::vector<double> MapLines::Axis::values() const {
    std::vector<double> values(static_cast<std::size_t>(std::min(count(), mostLines)));
    double number = first();
    for (double& value : values) {
        value = std::clamp(origin + number * spacing, least, greatest);
        number += 1.0;
    }
    return values;
}

/// The middles between neighbouring lines, and between the outermost lines and the border unless they are
/// near it; without a line, the middle of all.
std::vector<double> MapLines::Axis::middles() const {
    constexpr double near = 0.2; // of a spacing
    std::vector<double> limits = values();
    if (limits.empty()) {
        return {0.5 * (least + greatest)};
    }
    if (limits.front() - least > near * spacing) {
        limits.insert(limits.begin(), least);
    }
    if (greatest - limits.back() > near * spacing) {
        limits.push_back(greatest);
    }
    std::vector<double> middles;
    for (std::size_t index = 1; index < limits.size(); ++index) {
        middles.push_back(0.5 * (limits[index - 1] + limits[index]));
    }
    return middles;
}

MapLines::MapLines(const MapProjection& projection, const GeographicExtent& extent, const MapFrame& frame,
                   const TQGrid& grid)
    : _projection(projection), _extent(extent), _frame(frame), _grid(grid),
      _axes(axesOf(projection, extent, frame, grid)) {}

std::array<MapLines::Axis, 2> MapLines::axesOf(const MapProjection& projection,
                                               const GeographicExtent& extent, const MapFrame& frame,
                                               const TQGrid& grid) {
    if (grid.mode() == TQGrid::AngularGrid) {
        const TQAnglePoint origin = grid.getAngularReferencePoint();
        const TQAngleSize spacing = grid.getAngularSpacing();
        return {Axis{MapLine::Kind::Meridian, extent.west, extent.east, origin.longitude().value(),
                     spacing.width().value()},
                Axis{MapLine::Kind::Parallel, extent.south, extent.north, origin.latitude().value(),
                     spacing.height().value()}};
    }
    const double unit = 1.0 / projection.metresOfUnit();
    const TQPoint origin = multipliedBy(grid.referencePoint(), unit);
    const TQSize spacing = grid.spacing();
    return {
        Axis{MapLine::Kind::Easting, frame.least().x, frame.greatest().x, origin.x, spacing.width * unit},
        Axis{MapLine::Kind::Northing, frame.least().y, frame.greatest().y, origin.y, spacing.height * unit}};
}

double MapLines::count() const { return _axes[0].count() + _axes[1].count(); }

std::vector<MapLine> MapLines::linesOf(const Axis& axis) const {
    std::vector<MapLine> lines;
    for (const double value : axis.values()) {
        const bool isThereAlready = axis.kind == MapLine::Kind::Meridian && value == _extent.east &&
                                    isSeam() && !lines.empty() && lines.front().value == _extent.west;
        if (!isThereAlready) {
            lines.push_back(lineOf(axis.kind, value));
        }
    }
    return lines;
}

std::vector<MapStrip> MapLines::columns() const {
    std::vector<MapStrip> columns;
    for (const double middle : _axes[0].middles()) {
        const TQString label =
            _grid.indexParameters().indexString_horizontal(static_cast<int>(columns.size()));
        columns.push_back({lineOf(_axes[0].kind, middle), label.utf8()});
    }
    return columns;
}

std::vector<MapStrip> MapLines::rows() const {
    std::vector<MapStrip> rows;
    std::vector<double> middles = _axes[1].middles();
    std::ranges::reverse(middles);
    for (const double middle : middles) {
        const TQString label = _grid.indexParameters().indexString_vertical(static_cast<int>(rows.size()));
        rows.push_back({lineOf(_axes[1].kind, middle), label.utf8()});
    }
    return rows;
}

// ---- Where they lie

MapLine MapLines::lineOf(MapLine::Kind kind, double value) const {
    switch (kind) {
    case MapLine::Kind::Meridian:
        return {kind, value, meridian(value)};
    case MapLine::Kind::Parallel:
        return {kind, value, parallel(value)};
    case MapLine::Kind::Easting:
        return {kind, value, planeLine({value, _frame.least().y}, {value, _frame.greatest().y})};
    case MapLine::Kind::Northing:
        break;
    }
    return {kind, value, planeLine({_frame.least().x, value}, {_frame.greatest().x, value})};
}

std::vector<CurvePiece> MapLines::meridian(double longitude) const {
    const auto image = [&](double part) {
        return _projection.toPlane({longitude, _extent.south + part * _extent.height()});
    };
    return traced(image, partsOf(_projection.projection().meridianShape()));
}

std::vector<CurvePiece> MapLines::parallel(double latitude) const {
    const auto image = [&](double part) {
        return _projection.toPlane({_extent.west + part * _extent.width(), latitude});
    };
    return traced(image, partsOf(_projection.projection().parallelShape()));
}

/// The part of a line of the plane whose points lie in the extent. It may leave it anywhere.
std::vector<CurvePiece> MapLines::planeLine(const TQPoint& start, const TQPoint& end) const {
    const auto image = [&](double part) -> std::optional<TQPoint> {
        const TQPoint plane{start.x + part * (end.x - start.x), start.y + part * (end.y - start.y)};
        return isInExtent(plane) ? std::optional(plane) : std::nullopt;
    };
    return traced(image, partsOfCurved);
}

/// Whether a point of the plane is the image of one of the extent: the way back alone may lead from places
/// where there is no map.
bool MapLines::isInExtent(const TQPoint& plane) const {
    const auto geographic = _projection.toGeographic(plane);
    const auto image =
        geographic && _extent.contains(*geographic) ? _projection.toPlane(*geographic) : std::nullopt;
    return image && distanceBetween(_frame.toPage(plane), _frame.toPage(*image)) <= tolerance;
}

std::optional<TQPoint> MapLines::placeOf(const TQPoint& geographic) const {
    const auto image = _extent.contains(geographic) ? _projection.toPlane(geographic) : std::nullopt;
    const std::optional<TQPoint> page = image ? std::optional(_frame.toPage(*image)) : std::nullopt;
    return page && _frame.contains(*page) ? page : std::nullopt;
}

std::vector<CurvePiece> MapLines::border() const {
    std::vector<MapLine> sides{lineOf(MapLine::Kind::Parallel, _extent.south),
                               lineOf(MapLine::Kind::Parallel, _extent.north)};
    if (!isSeam()) {
        sides.push_back(lineOf(MapLine::Kind::Meridian, _extent.west));
        sides.push_back(lineOf(MapLine::Kind::Meridian, _extent.east));
    }
    std::vector<CurvePiece> pieces;
    for (const MapLine& side : sides) {
        pieces.insert(pieces.end(), side.pieces.begin(), side.pieces.end());
    }
    return pieces;
}

/// Whether the western and the eastern side of the extent lie on each other.
bool MapLines::isSeam() const {
    const double latitude = 0.5 * (_extent.south + _extent.north);
    const auto west = _projection.toPlane({_extent.west, latitude});
    const auto east = _projection.toPlane({_extent.east, latitude});
    return west && east && distanceBetween(_frame.toPage(*west), _frame.toPage(*east)) < tolerance;
}

std::vector<CurvePiece> MapLines::traced(const Curve& plane, int parts) const {
    const auto onPage = [&](double part) -> std::optional<TQPoint> {
        const auto point = plane(part);
        const std::optional<TQPoint> page = point ? std::optional(_frame.toPage(*point)) : std::nullopt;
        return page && _frame.contains(*page) ? page : std::nullopt;
    };
    std::vector<CurvePiece> pieces = CurveTracer(tolerance).traced(onPage, parts);
    std::erase_if(pieces, isPoint);
    return pieces;
}

// ---- Where they end

LineEnd MapLines::startOf(const MapLine& line) const {
    const CurvePiece& first = line.pieces.front();
    return lineEnd(line.kind, first.start, first.arcs.front().end);
}

LineEnd MapLines::endOf(const MapLine& line) const {
    const CurvePiece& last = line.pieces.back();
    const TQPoint before = last.arcs.size() > 1 ? last.arcs[last.arcs.size() - 2].end : last.start;
    return lineEnd(line.kind, last.end(), before);
}

/// An end of a line, outward from a point before it.
LineEnd MapLines::lineEnd(MapLine::Kind kind, const TQPoint& place, const TQPoint& before) const {
    const TQPoint direction = directionOf(kind, place);
    const bool leadsBack = direction.x * (place.x - before.x) + direction.y * (place.y - before.y) < 0.0;
    return {place, multipliedBy(direction, leadsBack ? -1.0 : 1.0)};
}

/// The direction that a line has at a point of the page.
TQPoint MapLines::directionOf(MapLine::Kind kind, const TQPoint& page) const {
    const TQPoint upwards{0.0, -1.0};
    const TQPoint toTheRight{1.0, 0.0};
    const bool isUpright = kind == MapLine::Kind::Meridian || kind == MapLine::Kind::Easting;
    const auto geographic = _projection.toGeographic(_frame.toPlane(page));
    if (kind == MapLine::Kind::Easting || kind == MapLine::Kind::Northing || !geographic) {
        return isUpright ? upwards : toTheRight;
    }
    const TQPoint direction =
        isUpright ? _projection.meridianDirection(*geographic) : _projection.parallelDirection(*geographic);
    return {direction.x, -direction.y};
}
