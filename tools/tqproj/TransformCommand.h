#pragma once

#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointOptions.h"

#include <streambuf>
#include <string>

class Diagnostics;
class OutputBuffer;
class TQGeoCSTrans;

/// What `tqproj transform` was asked for.
struct TransformOptions : PointOptions {
    std::string source; ///< the reference system of --from, a definition or a name of the catalogue, UTF-8
    std::string target; ///< that of --to
    bool allowsBallpark = false; ///< whether both may count as of one datum where no transformation is known
};

/// `tqproj transform`: transforms the points of all inputs between two geographic reference systems.
class TransformCommand {
  public:
    /// @param options what to do
    /// @param standardInput the source of the standard input
    /// @param output where the lines go
    /// @param diagnostics where messages go; all three must outlive this object
    TransformCommand(TransformOptions options, std::streambuf& standardInput, OutputBuffer& output,
                     Diagnostics& diagnostics);

    /// Does the whole transformation.
    ExitCode run();

  private:
    std::string problemOf(const std::string& definition);
    std::string reasonOf(const TQGeoCSTrans& toItself, const std::string& definition);
    ExitCode refuse(const std::string& problem);

    TransformOptions _options;
    std::streambuf& _standardInput;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
};
