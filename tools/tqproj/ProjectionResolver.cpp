#include "tools/tqproj/ProjectionResolver.h"

#include "manager/TQProjectionFile.h"
#include "proj/TQExternalProjList.h"
#include "proj/TQPrProj4.h"
#include "support/TQString.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

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

/// Whether a text ends with an authority and a code in parentheses.
bool looksLikeDisplayName(std::string_view text) {
    const std::size_t open = text.rfind('(');
    const std::size_t colon = text.rfind(':');
    return open != std::string_view::npos && colon != std::string_view::npos && open > 0 &&
           open + 1 < colon && colon + 2 < text.size() && text.ends_with(')');
}

bool looksLikeName(std::string_view text) { return text.starts_with('\t') || looksLikeDisplayName(text); }

ProjectionArgument::Kind kindOf(const ProjectionArgument& argument) {
    using Kind = ProjectionArgument::Kind;
    const std::string& text = argument.text;
    if (argument.kind != Kind::Any) {
        return argument.kind;
    }
    if (!InputFile::openingError(text)) {
        return Kind::File;
    }
    return looksLikeDefinition(text) ? Kind::Definition : looksLikeName(text) ? Kind::Name : Kind::File;
}

} // namespace

std::unique_ptr<TQProjection> ProjectionResolver::resolve(const ProjectionArgument& argument) {
    switch (kindOf(argument)) {
    case ProjectionArgument::Kind::Definition:
        return ofDefinition(argument.text);
    case ProjectionArgument::Kind::Name:
        return ofName(argument.text);
    default:
        return ofFile(argument.text);
    }
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
    projection->initFromPROJString(definition.c_str(), useWGS84Source);
    return usable(std::move(projection), definition);
}

std::unique_ptr<TQProjection> ProjectionResolver::ofName(const std::string& name) {
    const std::optional<std::string> externalName =
        name.starts_with('\t') ? name : Catalogue::externalNameOf(name);
    TQString authority;
    TQString code;
    bool isDeprecated = false;
    if (!externalName || !TQExternalProjList::authorityAndCodeForExternalProjName(
                             TQString(externalName->c_str()), authority, code, &isDeprecated)) {
        _problem = "no projection is called " + printableText(name);
        return nullptr;
    }
    return usable(
        TQExternalProjList::newExternalProjectionFromAuthAndStringCode(authority, code, isDeprecated), name);
}

/// A projection that PROJ could build, or null and the problem.
std::unique_ptr<TQProjection> ProjectionResolver::usable(std::unique_ptr<TQProjection> projection,
                                                         const std::string& argument) {
    if (!projection->isInvalid()) {
        return projection;
    }
    const auto& defined = dynamic_cast<const TQPrProj4&>(*projection);
    _problem = "cannot make a projection of " + printableText(argument) + ": " +
               _messages.takeReason(defined.PROJLogMessage());
    return nullptr;
}
