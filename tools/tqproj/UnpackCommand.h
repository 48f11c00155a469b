#pragma once

#include "tools/tqproj/ExitCode.h"

#include <filesystem>
#include <string>

class Diagnostics;

/// What `tqproj unpack` was asked for; texts are UTF-8.
struct UnpackOptions {
    std::string path;                ///< the document: a path, or "-" for the standard input
    std::filesystem::path directory; ///< where the projection files go
};

/// `tqproj unpack`: writes a projection file for each projection of a document.
class UnpackCommand {
  public:
    /// @param options what to do
    /// @param diagnostics where messages go; must outlive this object
    UnpackCommand(UnpackOptions options, Diagnostics& diagnostics);

    /// Reads the document and writes the files.
    /// @return Incomplete when only a part of the document could be read
    ExitCode run();

  private:
    UnpackOptions _options;
    Diagnostics& _diagnostics;
};
