#pragma once

#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/ProjectionResolver.h"
#include "tools/tqproj/map/GeographicExtent.h"

#include <memory>
#include <optional>
#include <string>

class Diagnostics;
class MapFrame;
class MapProjection;
class OutputBuffer;
class TQGrid;
struct MapPoints;

/// What `tqproj draw` was asked for; texts are UTF-8.
struct DrawOptions {
    ProjectionArgument projection;          ///< the projection
    std::optional<GeographicExtent> extent; ///< what the map shows; nothing for the projection's area
    double graticule = 0.0;       ///< the distance of meridians and parallels in degrees; 0 for a fitting one
    double metric = 0.0;          ///< the distance of straight lines in metres; 0 for meridians and parallels
    std::string points;           ///< a file of points; empty for the cities of the resources
    std::string path = "map.svg"; ///< the file to write; "-" for SVG on the standard output
};

/// `tqproj draw`: draws a map of a projection.
class DrawCommand {
  public:
    /// @param options what to do
    /// @param output where an SVG for the standard output goes
    /// @param diagnostics where messages go; both must outlive this object
    DrawCommand(DrawOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Draws the map.
    ExitCode run();

    /// Whether a file of this name can be drawn.
    /// @param path the path, or "-"
    static bool canWrite(const std::string& path);

  private:
    ExitCode draw(const TQProjection& projection);
    std::optional<GeographicExtent> extentOf(const MapProjection& projection) const;
    std::unique_ptr<TQGrid> newGrid(const GeographicExtent& extent, const MapFrame& frame) const;
    std::optional<MapPoints> readPoints(const MapProjection& projection);
    ExitCode write(const std::string& bytes);
    ExitCode refuse(const std::string& problem);

    DrawOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
};
