#pragma once

#include "tools/tqproj/ExitCode.h"

#include <filesystem>
#include <string>

class Diagnostics;
class OutputBuffer;

/// What `tqproj list` was asked for.
struct ListOptions {
    std::filesystem::path directory; ///< the user's directory of projections; empty for none
    std::string search;              ///< list what holds all of these words
    bool listsEllipsoids = false;    ///< ellipsoids, not projections
};

/// `tqproj list`: lists the projections, or the ellipsoids, that the command knows by name, a line each.
class ListCommand {
  public:
    /// @param options what to do
    /// @param output where the list goes
    /// @param diagnostics where messages go; both must outlive this object
    ListCommand(ListOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Lists what was asked for.
    ExitCode run();

  private:
    void add(const std::string& line);

    ListOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    bool _hasFound = false;
};
