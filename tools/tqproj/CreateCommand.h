#pragma once

#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"

#include <memory>
#include <string>
#include <vector>

class Diagnostics;
class TQProjection;

/// What `tqproj create` was asked for; texts are UTF-8.
struct CreateOptions {
    std::string type;                    ///< the name of a type of projection
    std::string name;                    ///< what the projection is called
    std::string ellipsoid;               ///< the name of its ellipsoid; empty for none
    std::vector<std::string> parameters; ///< each a parameter's name, "=" and its value
    std::string path;                    ///< the file to write
};

/// `tqproj create`: writes a projection file.
class CreateCommand {
  public:
    /// @param options what to do
    /// @param diagnostics where messages go; must outlive this object
    CreateCommand(CreateOptions options, Diagnostics& diagnostics);

    /// Makes the projection and writes it.
    ExitCode run();

  private:
    /// A parameter that was asked for.
    struct Setting {
        std::string name;
        std::string value;
    };

    bool write();
    std::unique_ptr<TQProjection> newProjection();
    bool readSettings(std::vector<Setting>& settings);
    bool setParameters(TQProjection& projection);
    bool setThoseThatThereAre(TQProjection& projection, std::vector<Setting>& settings);
    bool refuse(const std::string& problem);

    CreateOptions _options;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
};
