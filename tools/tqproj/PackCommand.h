#pragma once

#include "tools/tqproj/ExitCode.h"

#include <string>
#include <vector>

class Diagnostics;

/// What `tqproj pack` was asked for; texts are UTF-8.
struct PackOptions {
    std::vector<std::string> names; ///< projections by name
    std::string directory;          ///< the user's directory of projections; empty for none
    std::string path;               ///< the document to write
};

/// `tqproj pack`: writes a document that holds projections and their ellipsoids.
class PackCommand {
  public:
    /// @param options what to do
    /// @param diagnostics where messages go; must outlive this object
    PackCommand(PackOptions options, Diagnostics& diagnostics);

    /// Writes the document.
    ExitCode run();

  private:
    ExitCode refuse(const std::string& problem);

    PackOptions _options;
    Diagnostics& _diagnostics;
};
