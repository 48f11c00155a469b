#pragma once

#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/ProjectionResolver.h"

#include <string>
#include <string_view>

class Diagnostics;
class OutputBuffer;
class TQEllipsoid;
class TQProjection;

/// What `tqproj show` was asked for.
struct ShowOptions {
    /// How the projection is described.
    enum class Form {
        Table, ///< a table for people
        WKT1,  ///< well-known text, version 1
        WKT2,  ///< well-known text of 2019; of a native projection, version 1
        PROJ   ///< a PROJ string
    };

    ProjectionArgument projection; ///< the projection
    Form form = Form::Table;       ///< how to describe it
};

/// `tqproj show`: describes a projection in an aligned table, or writes its definition.
class ShowCommand {
  public:
    /// @param options what to do
    /// @param output where the description goes
    /// @param diagnostics where messages go; both must outlive this object
    ShowCommand(ShowOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Describes the projection.
    ExitCode run();

  private:
    bool write(const TQProjection& projection, const std::filesystem::path& path);
    void describe(const TQProjection& projection, const std::filesystem::path& path);
    void describeGeographicSide(const TQProjection& projection);
    void describeEllipsoid(const TQEllipsoid& ellipsoid);
    void describeDatumShift(const TQEllipsoid& ellipsoid);
    void describeParameters(const TQProjection& projection);
    void addHeading(std::string_view text);
    void addRow(std::string_view label, std::string_view value, std::string_view unit = {});

    ShowOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
};
