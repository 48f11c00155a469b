#include "tools/tqproj/DrawCommand.h"

#include "ellipsoid/TQEllipsoid.h"
#include "proj/TQPrProj4.h"
#include "support/TQFormat.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "support/TQUnit.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/ClassParameters.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/OutputFile.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/map/GoodArea.h"
#include "tools/tqproj/map/KnownAreas.h"
#include "tools/tqproj/map/MapDrawing.h"
#include "tools/tqproj/map/MapGrid.h"
#include "tools/tqproj/map/MapPoints.h"
#include "tools/tqproj/map/MapProjection.h"
#include "tools/tqproj/map/MapSeam.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

std::optional<MapCanvas::Format> formatOf(const std::string& path) {
    return isStandardOutput(path) ? std::optional(MapCanvas::Format::SVG) : MapCanvas::formatOf(path);
}

std::string cities() {
    return tq_createPath(TQGetApplicationSharedDirectory(), "samples", "cities.csv").utf8();
}

std::string titleOf(const TQProjection& projection) {
    return projection.name() != nullptr ? withoutControls(Catalogue::shownName(*projection.name()))
                                        : projection.typeName().utf8();
}

/// The type of a projection, its ellipsoid and its parameters; of one that PROJ builds, in PROJ's words.
std::string descriptionOf(const TQProjection& projection) {
    if (const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection)) {
        const TQString words = defined->proj4Definition();
        return withoutControls((words.isEmpty() ? defined->definition() : words).utf8());
    }
    std::string text = projection.typeName().utf8();
    if (const TQEllipsoid* const ellipsoid = projection.ellipsoid()) {
        text += " on " + tq_textOfName(ellipsoid->name()).utf8();
    }
    for (const auto& parameter : classParameters(projection)) {
        const TQString* const unit = parameter->unitLabel();
        const std::string value = parameter->type() == TQDataDouble
                                      ? tq_format("%.13g", parameter->doubleValue())
                                      : parameter->newValueRepresentation()->utf8();
        text += ", " + parameter->name()->utf8() + " " + value +
                (unit != nullptr ? " " + tq_displayLabelOfUnit(*unit).utf8() : "");
    }
    std::ranges::replace(text, '\n', ' ');
    return withoutControls(text);
}

} // namespace

DrawCommand::DrawCommand(DrawOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

bool DrawCommand::canWrite(const std::string& path) { return formatOf(path).has_value(); }

ExitCode DrawCommand::run() {
    LibraryMessages messages; // of the projection's making, and of points without an image
    ProjectionResolver resolver(messages);
    const std::unique_ptr<TQProjection> projection = resolver.resolve(_options.projection);
    return projection != nullptr ? draw(*projection) : refuse(resolver.problem());
}

ExitCode DrawCommand::draw(const TQProjection& projection) {
    const MapProjection images(projection);
    if (_options.metric > 0.0 && !images.isPlane()) {
        return refuse("the coordinates of the projection are angles, not metres");
    }
    const std::optional<GeographicExtent> wanted = extentOf(images);
    if (!wanted) {
        return refuse("the projection has no image of any part of the world");
    }
    const GeographicExtent extent = cutAtSeam(*wanted, images);
    const std::optional<MapFrame> frame = MapFrame::of(images, extent);
    if (!frame) {
        return refuse("the projection has no image of the extent");
    }
    std::optional<MapPoints> points = readPoints(images);
    if (!points) {
        return ExitCode::Failure;
    }
    const std::unique_ptr<TQGrid> grid = newGrid(extent, *frame);
    const MapContent content{
        images, extent, *grid, std::move(points->points), titleOf(projection), descriptionOf(projection)};
    const MapDrawing drawing(content, *frame);
    if (!(drawing.lines().count() <= MapLines::mostLines)) {
        return refuse(tq_format("the grid would have more than %.0f lines", MapLines::mostLines));
    }
    const std::optional<std::string> bytes = drawing.draw(*formatOf(_options.path));
    return bytes ? graver(points->outcome, write(*bytes)) : refuse("the map cannot be drawn");
}

std::optional<GeographicExtent> DrawCommand::extentOf(const MapProjection& projection) const {
    if (_options.extent) {
        return _options.extent;
    }
    const std::optional<GeographicExtent> known = KnownAreas().of(projection.projection());
    return known ? known : goodAreaOf(projection);
}

std::unique_ptr<TQGrid> DrawCommand::newGrid(const GeographicExtent& extent, const MapFrame& frame) const {
    if (_options.metric > 0.0) {
        return newMetricGrid(_options.metric);
    }
    return _options.graticule > 0.0 ? newGraticule({_options.graticule, _options.graticule})
                                    : newFittingGraticule(extent, {frame.mapWidth(), frame.mapHeight()});
}

/// The points of the map; nothing when their file cannot be opened, which is reported. Those of a user are on
/// the projection's own meridian, as "tqproj convert" takes them, the cities are not.
std::optional<MapPoints> DrawCommand::readPoints(const MapProjection& projection) {
    const bool areCities = _options.points.empty();
    InputFile file(areCities ? cities() : _options.points, *std::cin.rdbuf());
    if (file.error()) {
        refuse("cannot read " + file.name() + ": " + file.error().message());
        return std::nullopt;
    }
    MapPoints read = MapPoints::read(file, _diagnostics);
    for (MapPoint& point : read.points) {
        point.place.x -= areCities ? projection.primeMeridian() : 0.0;
    }
    return read;
}

/// Writes the map, and the name of its file to the standard output; or the map itself.
ExitCode DrawCommand::write(const std::string& bytes) {
    if (isStandardOutput(_options.path)) {
        _output.text() += bytes;
        return _output.finish(_diagnostics);
    }
    const std::string problem = writeOutputFile(pathOf(_options.path), bytes);
    if (!problem.empty()) {
        return refuse(problem);
    }
    _output.text() += withoutControls(_options.path) + "\n";
    return _output.finish(_diagnostics);
}

ExitCode DrawCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return ExitCode::Failure;
}
