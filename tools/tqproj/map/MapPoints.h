#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/ExitCode.h"

#include <string>
#include <vector>

class Diagnostics;
class InputFile;

/// A named place of a map.
struct MapPoint {
    TQPoint place;    ///< longitude and latitude in degrees
    std::string name; ///< its name, valid UTF-8 on one line; may be empty
};

/// The points of a file.
struct MapPoints {
    std::vector<MapPoint> points;
    ExitCode outcome = ExitCode::Success; ///< Incomplete when a line that is to hold a point holds none,
                                          ///< Failure when not all of the file could be read

    /// Reads lines as `tqproj convert` does: longitude, latitude, and a name up to the next comma. A line
    /// that holds no point is reported.
    /// @param file the file, which could be opened
    /// @param diagnostics where reports go
    static MapPoints read(InputFile& file, Diagnostics& diagnostics);
};
