#pragma once

#include <memory>
#include <string>

class LibraryMessages;
class TQPrProj4;
class TQProjection;

/// What was given for a projection on the command line.
struct ProjectionArgument {
    /// What the text is.
    enum class Kind {
        Any,        ///< a path, a definition or a name, as ProjectionResolver tells them apart
        File,       ///< the path of a projection file
        Definition, ///< a definition for PROJ
        Name        ///< a name that the catalogue of reference systems knows
    };

    std::string text; ///< as given, UTF-8
    Kind kind = Kind::Any;
};

/// Finds the projection that an argument means; the only place that knows how.
///
/// The path of a file that can be opened is a projection file. Any other text is a definition when it looks
/// like one - it holds "+proj=" or "+init=", it is an authority and a code ("EPSG:2154") or a web address, or
/// it begins like WKT ("PROJCRS[") or PROJJSON ("{"). It is a name when it looks like one - it begins with a
/// tab, as external names do, or ends with an authority and a code in parentheses, as display names of the
/// catalogue do - and a path otherwise.
class ProjectionResolver {
  public:
    /// @param messages where the library's messages arrive; must outlive this object
    explicit ProjectionResolver(LibraryMessages& messages) : _messages(messages) {}

    /// The projection that an argument means, or null with problem().
    /// @param argument the argument
    std::unique_ptr<TQProjection> resolve(const ProjectionArgument& argument);

    /// Why the last argument means no projection, in one line.
    const std::string& problem() const { return _problem; }

  private:
    std::unique_ptr<TQProjection> ofFile(const std::string& path);
    std::unique_ptr<TQProjection> ofDefinition(const std::string& definition);
    std::unique_ptr<TQProjection> ofName(const std::string& name);

    std::unique_ptr<TQProjection> usable(std::unique_ptr<TQProjection> projection, const TQPrProj4& defined);
    std::unique_ptr<TQProjection> refused(const std::string& reason);

    LibraryMessages& _messages;
    std::string _problem;
};
