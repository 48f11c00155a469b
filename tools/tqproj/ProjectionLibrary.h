#pragma once

#include "manager/TQProjMgr.h"
#include "tools/tqproj/ExitCode.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

class Diagnostics;

/// The projections and ellipsoids that the command knows by name: those of the resources, and the projections
/// of a directory of the user, which take the place of resources of their name.
class ProjectionLibrary {
  public:
    /// A projection and the name that it is registered under.
    struct Entry {
        std::string name;               ///< UTF-8
        const TQProjection* projection; ///< owned by the library
    };

    /// @param directory the user's directory of projection files; empty for none
    explicit ProjectionLibrary(const std::filesystem::path& directory);

    /// The projection of a name; null when there is none. This object owns it.
    /// @param name the name, UTF-8
    const TQProjection* projection(const std::string& name);

    /// All projections, in the order of their names' characters; also those that no name leads to, because
    /// PROJ's systems have names like theirs.
    std::vector<Entry> projections() const;

    /// The names of projections(), in their order.
    std::vector<std::string> names() const;

    /// Whether a projection of the resources or of the user's directory has a name.
    /// @param name the name, UTF-8
    bool hasOwn(const std::string& name);

    /// Copies a projection into a document's manager.
    /// @param document the manager
    /// @param name the projection's name, UTF-8
    void copyTo(TQProjMgr& document, const std::string& name);

    /// Reads the file of a projection once more.
    /// @param name the projection's name
    /// @return the projection as its file has it, with its own ellipsoid; null when the file is not known, or
    ///         cannot be read any more
    std::unique_ptr<TQProjection> newFromFile(const std::string& name) const;

    /// The file that a projection came from; empty when it is not known.
    /// @param name the projection's name
    std::filesystem::path pathOf(const std::string& name) const;

    /// The ellipsoid of a name; null when there is none. This object owns it.
    /// @param name the name, UTF-8
    TQEllipsoid* ellipsoid(const std::string& name) const;

    /// All ellipsoids.
    TQEllMgr& ellipsoids() const { return _manager.ellipsoidManager(); }

    /// The names of all ellipsoids, in the order of their characters.
    std::vector<std::string> ellipsoidNames() const;

    /// Why the directory could not be read; empty when it could.
    const std::string& problem() const { return _problem; }

    /// What is wrong with the resources and the files of the directory, a sentence for the user each; what
    /// can be read is there all the same.
    const std::vector<std::string>& complaints() const { return _complaints; }

    /// Why a file of the directory that would give a projection could not be read to its end; empty when
    /// there is no such file. What else is known under the name is not what the user means.
    /// @param name the projection's name, UTF-8
    std::string complaintAbout(const std::string& name) const;

    /// Reports complaints().
    /// @param diagnostics where they go
    /// @return Failure when there is one
    ExitCode reportComplaints(Diagnostics& diagnostics) const;

  private:
    void loadDirectory(const std::filesystem::path& directory);
    void load(const std::filesystem::path& file);

    TQProjMgr _manager;
    std::map<std::string, std::filesystem::path> _userPaths; // by projection name
    std::string _problem;
    std::vector<std::string> _complaints;
    std::map<std::string, std::string> _complaintsByName; // about files that were read as far as their name
};
