#pragma once

#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/GeographicDatum.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointOptions.h"
#include "tools/tqproj/ProjectionOperation.h"
#include "tools/tqproj/ProjectionResolver.h"

#include <streambuf>

class Diagnostics;
class OutputBuffer;

/// What `tqproj convert` was asked for.
struct ConvertOptions : PointOptions {
    ProjectionArgument projection;              ///< the projection
    DatumChoice datum = DatumChoice::Usual;     ///< what longitude and latitude are on
    BeyondDomain beyond = BeyondDomain::Refuse; ///< what becomes of points beyond the projection's domain
};

/// `tqproj convert`: converts the points of all inputs through a projection.
class ConvertCommand {
  public:
    /// @param options what to do
    /// @param standardInput the source of the standard input
    /// @param output where the lines go
    /// @param diagnostics where messages go; all three must outlive this object
    ConvertCommand(ConvertOptions options, std::streambuf& standardInput, OutputBuffer& output,
                   Diagnostics& diagnostics);

    /// Does the whole conversion.
    ExitCode run();

  private:
    ConvertOptions _options;
    std::streambuf& _standardInput;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
};
