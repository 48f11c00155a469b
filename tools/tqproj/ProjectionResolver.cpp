#include "tools/tqproj/ProjectionResolver.h"

#include "manager/TQProjectionFile.h"
#include "proj/TQPrProj4.h"
#include "support/TQString.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"

#include <algorithm>
#include <string_view>

namespace {

// Geographic points are on the datum of the definition itself, as those of projection files are.
constexpr bool useWGS84Source = false;

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// What a text begins with, up to the first character that no name has.
std::string_view leadingName(std::string_view text) {
    return text.substr(
        0, static_cast<std::size_t>(std::ranges::find_if_not(text, isNameCharacter) - text.begin()));
}

bool looksLikeDefinition(std::string_view text) {
    const std::string_view name = leadingName(text);
    const char behind = name.size() < text.size() ? text[name.size()] : '\0';
    const bool isCode = behind == ':' && text.find_first_of("/\\") == std::string_view::npos;
    return text.find("+proj=") != std::string_view::npos || text.find("+init=") != std::string_view::npos ||
           (!name.empty() && (isCode || behind == '[')) || text.starts_with('{');
}

} // namespace

std::unique_ptr<TQProjection> ProjectionResolver::resolve(const ProjectionArgument& argument) {
    using Kind = ProjectionArgument::Kind;
    const bool isDefinition = argument.kind == Kind::Definition ||
                              (argument.kind == Kind::Any && InputFile::openingError(argument.text) &&
                               looksLikeDefinition(argument.text));
    return isDefinition ? ofDefinition(argument.text) : ofFile(argument.text);
}

std::unique_ptr<TQProjection> ProjectionResolver::ofFile(const std::string& path) {
    std::unique_ptr<TQProjection> projection =
        TQProjectionFile::createProjectionFromPath(TQString(path.c_str()));
    auto* const defined = dynamic_cast<TQPrProj4*>(projection.get());
    if (defined != nullptr && (defined->initPROJ(useWGS84Source) != 0 || defined->isInvalid())) {
        projection.reset();
    }
    const std::string reasons = _messages.take();
    if (projection == nullptr) {
        const std::error_code error = InputFile::openingError(path);
        _problem = "cannot read a projection from " + path + ": ";
        _problem += error ? error.message() : reasons.empty() ? "it is not a projection file" : reasons;
    }
    return projection;
}

std::unique_ptr<TQProjection> ProjectionResolver::ofDefinition(const std::string& definition) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->rename(TQString(definition.c_str()));
    if (projection->initFromPROJString(definition.c_str(), useWGS84Source) == 0 && !projection->isInvalid()) {
        return projection;
    }
    _problem = "cannot make a projection of " + printableText(definition) + ": " + _messages.take();
    return nullptr;
}
