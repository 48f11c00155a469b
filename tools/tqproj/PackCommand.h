#pragma once

#include "tools/tqproj/ExitCode.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

class Diagnostics;
class OutputBuffer;
class ProjectionLibrary;

/// What `tqproj pack` was asked for; texts are UTF-8.
struct PackOptions {
    std::vector<std::string> names;  ///< projections by name
    std::filesystem::path directory; ///< the user's directory of projections; empty for none
    std::filesystem::path path;      ///< the document to write; "-" is the standard output
};

/// `tqproj pack`: writes a document that holds projections and their ellipsoids.
class PackCommand {
  public:
    /// @param options what to do
    /// @param output where a document for the standard output goes
    /// @param diagnostics where messages go; both must outlive this object
    PackCommand(PackOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Writes the document, if what an application reads of it are the very projections of the files.
    ExitCode run();

  private:
    std::string differenceIn(std::string_view bytes, ProjectionLibrary& library) const;
    ExitCode refuse(const std::string& problem);

    PackOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
};
