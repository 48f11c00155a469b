#pragma once

#include "tools/tqproj/ExitCode.h"

#include <string>
#include <string_view>

class Diagnostics;
class OutputBuffer;
class TQEllipsoid;
class TQProjection;

/// What `tqproj show` was asked for.
struct ShowOptions {
    std::string projection; ///< the argument of --projection
    bool wkt = false;       ///< the WKT in place of the description
};

/// `tqproj show`: describes a projection in an aligned table, or writes its WKT.
class ShowCommand {
  public:
    /// @param options what to do
    /// @param output where the description goes
    /// @param diagnostics where messages go; both must outlive this object
    ShowCommand(ShowOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Describes the projection.
    ExitCode run();

  private:
    void describe(const TQProjection& projection);
    void describeEllipsoid(const TQEllipsoid& ellipsoid);
    void describeDatumShift(const TQEllipsoid& ellipsoid);
    void describeParameters(const TQProjection& projection);
    void addHeading(std::string_view text);
    void addRow(std::string_view label, std::string_view value, std::string_view unit = {});

    ShowOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
};
