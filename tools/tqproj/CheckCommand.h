#pragma once

#include "tools/tqproj/DefinitionFile.h"
#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/ProjectionLibrary.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

class Diagnostics;
class OutputBuffer;
class TQEllipsoid;
class TQFile;
class TQProjection;
class TQString;

/// What `tqproj check` was asked for.
struct CheckOptions {
    std::vector<std::filesystem::path> paths; ///< files and directories
};

/// `tqproj check`: reads projection, ellipsoid and datum files and writes a line for each problem of each.
///
/// Ellipsoids are read first, then datums, then projections: datums may name ellipsoids of files, besides
/// those of the resources.
class CheckCommand {
  public:
    /// @param options what to do
    /// @param output where the problems go
    /// @param diagnostics where messages go; both must outlive this object
    CheckCommand(CheckOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Checks the files.
    /// @return Incomplete when there is a problem, Failure when a path cannot be read at all
    ExitCode run();

  private:
    /// The file of each name.
    using PathsByName = std::map<std::string, std::string>;

    void check(const DefinitionFile& definition);
    void checkEllipsoid(TQFile& file);
    void checkDatum(TQFile& file);
    void checkProjection(TQFile& file);
    void checkLines(const TQFile& file);
    void checkEnd(TQFile& file);
    void checkName(const TQFile& file, const TQString* name, PathsByName& paths);
    void checkParameters(const TQFile& file, const TQProjection& projection);
    void checkAxes(const TQFile& file, const TQEllipsoid& ellipsoid);
    void checkShift(const TQFile& file, const TQEllipsoid& ellipsoid);
    void checkSharing(const TQFile& file, const TQEllipsoid& ellipsoid);
    void checkReadiness(const TQFile& file, int line, const TQProjection& projection);
    void reportCode(const TQFile& file, int code, const std::string& meaning);
    void warn(const TQFile& file, int line, const std::string& text);
    void report(const TQFile& file, int line, const std::string& text);

    CheckOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
    ProjectionLibrary _library{{}};
    PathsByName _ellipsoidPaths;
    PathsByName _projectionPaths;
    bool _hasProblem = false;
};
