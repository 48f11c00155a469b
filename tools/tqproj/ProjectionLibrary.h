#pragma once

#include "manager/TQProjMgr.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// The projections and ellipsoids that the command knows by name: those of the resources, and the projections
/// of a directory of the user, which take the place of resources of their name.
class ProjectionLibrary {
  public:
    /// @param directory the user's directory of projection files, UTF-8; empty for none
    explicit ProjectionLibrary(const std::string& directory);

    /// The projection of a name; null when there is none. This object owns it.
    /// @param name the name, UTF-8
    const TQProjection* projection(const std::string& name);

    /// The names of all projections, in the order of their characters.
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
    /// not
    ///         to be read any more
    std::unique_ptr<TQProjection> newFromFile(const std::string& name) const;

    /// The file that a projection came from; empty when it is not known.
    /// @param name the projection's name
    std::string pathOf(const std::string& name) const;

    /// The ellipsoid of a name; null when there is none. This object owns it.
    /// @param name the name, UTF-8
    TQEllipsoid* ellipsoid(const std::string& name) const;

    /// All ellipsoids.
    TQEllMgr& ellipsoids() const { return _manager.ellipsoidManager(); }

    /// The names of all ellipsoids, in the order of their characters.
    std::vector<std::string> ellipsoidNames() const;

    /// Why the directory could not be read; empty when it could.
    const std::string& problem() const { return _problem; }

  private:
    void loadDirectory(const std::string& directory);

    TQProjMgr _manager;
    std::map<std::string, std::string> _userPaths; // by projection name
    std::string _problem;
};
