#pragma once

#include "tools/tqproj/ExitCode.h"

#include <string>
#include <string_view>
#include <vector>

class Diagnostics;
class ProjectionLibrary;

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

    /// Writes the document, if what an application reads of it are the very projections of the files.
    ExitCode run();

  private:
    std::string differenceIn(std::string_view bytes, ProjectionLibrary& library) const;
    ExitCode refuse(const std::string& problem);

    PackOptions _options;
    Diagnostics& _diagnostics;
};
