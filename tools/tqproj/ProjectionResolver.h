#pragma once

#include <memory>
#include <string>

class LibraryMessages;
class TQProjection;

/// Finds the projection that the argument of --projection means; the only place that knows how.
/// Now the argument is the path of a projection file.
class ProjectionResolver {
  public:
    /// @param messages where the library's messages arrive; must outlive this object
    explicit ProjectionResolver(LibraryMessages& messages) : _messages(messages) {}

    /// The projection that an argument means, or null with problem().
    /// @param argument the argument as given, UTF-8
    std::unique_ptr<TQProjection> resolve(const std::string& argument);

    /// Why the last argument means no projection, in one line.
    const std::string& problem() const { return _problem; }

  private:
    LibraryMessages& _messages;
    std::string _problem;
};
