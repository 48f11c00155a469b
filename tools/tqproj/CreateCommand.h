#pragma once

#include "manager/TQProjectionFile.h"
#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Diagnostics;
class OutputBuffer;
class ProjectionLibrary;
class TQProjection;

/// What `tqproj create` was asked for; texts are UTF-8.
struct CreateOptions {
    std::string type;                    ///< the name of a type of projection
    std::string name;                    ///< what the projection is called
    std::string ellipsoid;               ///< the name of its ellipsoid; empty for none
    std::vector<std::string> parameters; ///< each a parameter's name, "=" and its value
    std::filesystem::path path;          ///< the file to write
    bool isExact = false;                ///< whether numbers are written with all their digits
};

/// `tqproj create`: writes a projection file. What it writes is read back before it comes to its place: a
/// file that would be read as another definition is not written, and one that rounds parameters is spoken of.
class CreateCommand {
  public:
    /// @param options what to do
    /// @param output where a file for the standard output goes
    /// @param diagnostics where messages go; both must outlive this object
    CreateCommand(CreateOptions options, OutputBuffer& output, Diagnostics& diagnostics);

    /// Makes the projection and writes it.
    ExitCode run();

  private:
    /// A parameter that was asked for.
    struct Setting {
        std::string name;
        std::string value;
    };

    bool isNameFit();
    std::unique_ptr<TQProjection> newProjection();
    bool takeEllipsoid(const ProjectionLibrary& library, TQProjection& projection);
    bool readSettings(std::vector<Setting>& settings);
    bool setParameters(TQProjection& projection);
    static void raiseFlags(TQProjection& projection, const std::vector<Setting>& settings);
    bool setThoseThatThereAre(TQProjection& projection, std::vector<Setting>& settings);
    bool areTaken(const TQProjection& projection, const std::vector<Setting>& settings);
    bool isPossible(const TQProjection& projection);
    bool hasDefinition(const TQProjection& projection);
    std::optional<std::string> verifiedText(const TQProjection& projection);
    std::string reasonWithout(const std::string& scratch);
    bool isReadBack(const TQProjection& projection, const TQProjection* read);
    bool refuse(const std::string& problem);

    CreateOptions _options;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
};
