#pragma once

#include <filesystem>
#include <memory>
#include <string>

class LibraryMessages;
class ProjectionLibrary;
class TQProjection;

/// What was given for a projection on the command line.
struct ProjectionArgument {
    /// What the text is.
    enum class Kind {
        Any,        ///< a path, a definition or a name, as ProjectionResolver tells them apart
        File,       ///< the path of a projection file
        Definition, ///< a definition for PROJ
        Name        ///< a name of the projection library or of the catalogue of reference systems
    };

    std::string text; ///< as given
    Kind kind = Kind::Any;
    std::filesystem::path directory{}; ///< the user's directory of projections; empty for none
};

/// Finds the projection that an argument means; the only place that knows how.
///
/// The path of a file that can be opened is a projection file. Any other text is a definition when it
/// looksLikeDefinition(). A text that has a slash without a blank beside it, or ends in ".proj", is a path.
/// Any other is a name: of a projection in the user's directory or the resources, or of a system in the
/// catalogue. Whatever is found has passed makeReady().
class ProjectionResolver {
  public:
    /// @param messages where the library's messages arrive; must outlive this object
    explicit ProjectionResolver(LibraryMessages& messages);
    ~ProjectionResolver();
    ProjectionResolver(const ProjectionResolver&) = delete;
    ProjectionResolver& operator=(const ProjectionResolver&) = delete;

    /// The projection that an argument means, or null with problem(). It must not outlive this object.
    /// @param argument the argument
    std::unique_ptr<TQProjection> resolve(const ProjectionArgument& argument);

    /// The file that the last projection came from, if it was found by its name; empty if not.
    const std::filesystem::path& path() const { return _path; }

    /// Why the last argument means no projection, in one line.
    const std::string& problem() const { return _problem; }

  private:
    std::unique_ptr<TQProjection> ofFile(const std::filesystem::path& path);
    std::unique_ptr<TQProjection> ofDefinition(const std::string& definition);
    std::unique_ptr<TQProjection> ofName(const std::string& name, const std::filesystem::path& directory);
    std::unique_ptr<TQProjection> ofCatalogue(const std::string& name);

    std::unique_ptr<TQProjection> ready(std::unique_ptr<TQProjection> projection);
    std::unique_ptr<TQProjection> refused(const std::string& reason);

    LibraryMessages& _messages;
    std::string _problem;
    std::filesystem::path _path;
    std::unique_ptr<ProjectionLibrary> _library; // owns the ellipsoids of projections found by name
};
