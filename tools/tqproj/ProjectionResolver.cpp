#include "tools/tqproj/ProjectionResolver.h"

#include "manager/TQProjectionFile.h"
#include "proj/TQExternalProjList.h"
#include "proj/TQPrProj4.h"
#include "support/TQString.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/TextSearch.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

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

std::string_view withoutLeading(std::string_view text, std::string_view blanks) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

bool looksLikeDefinition(std::string_view argument) {
    const std::string_view text = withoutLeading(argument, " \t\r\n");
    const std::string_view name = leadingName(text);
    const std::string_view behind = text.substr(name.size());
    constexpr std::size_t driveLetter = 1; // of a path on Windows
    const bool isCode = name.size() > driveLetter && behind.starts_with(':') &&
                        text.find_first_of("/\\") == std::string_view::npos;
    const bool isWKT = !name.empty() && withoutLeading(behind, " ").starts_with('[');
    const bool isPROJString =
        text.find("+proj=") != std::string_view::npos || text.find("+init=") != std::string_view::npos;
    return isCode || isWKT || isPROJString || text.starts_with('{') || text.starts_with("http://") ||
           text.starts_with("https://");
}

/// Names may have a slash between blanks.
bool looksLikePath(std::string_view text) {
    for (std::size_t at = text.find_first_of("/\\"); at != std::string_view::npos;
         at = text.find_first_of("/\\", at + 1)) {
        const bool isBetweenBlanks =
            at > 0 && at + 1 < text.size() && text[at - 1] == ' ' && text[at + 1] == ' ';
        if (!isBetweenBlanks) {
            return true;
        }
    }
    return text.ends_with(".proj");
}

ProjectionArgument::Kind kindOf(const ProjectionArgument& argument) {
    using Kind = ProjectionArgument::Kind;
    const std::string& text = argument.text;
    if (argument.kind != Kind::Any) {
        return argument.kind;
    }
    if (!InputFile::openingError(text)) {
        return Kind::File;
    }
    return looksLikeDefinition(text) ? Kind::Definition : looksLikePath(text) ? Kind::File : Kind::Name;
}

} // namespace

ProjectionResolver::ProjectionResolver(LibraryMessages& messages) : _messages(messages) {}

ProjectionResolver::~ProjectionResolver() = default;

std::unique_ptr<TQProjection> ProjectionResolver::resolve(const ProjectionArgument& argument) {
    _path.clear();
    switch (kindOf(argument)) {
    case ProjectionArgument::Kind::Definition:
        return ofDefinition(argument.text);
    case ProjectionArgument::Kind::Name:
        return ofName(argument.text, argument.directory);
    default:
        return ofFile(argument.text);
    }
}

std::unique_ptr<TQProjection> ProjectionResolver::ofFile(const std::string& path) {
    _problem = "cannot read a projection from " + path + ": ";
    if (const std::error_code error = InputFile::openingError(path)) {
        return refused(error.message());
    }
    std::unique_ptr<TQProjection> projection =
        TQProjectionFile::createProjectionFromPath(TQString(path.c_str()));
    if (projection == nullptr) {
        return refused(_messages.isEmpty() ? "it is not a projection file" : _messages.take());
    }
    if (auto* const defined = dynamic_cast<TQPrProj4*>(projection.get())) {
        defined->initPROJ(useWGS84Source);
        return usable(std::move(projection), *defined);
    }
    _messages.take(); // the file was read all the same
    return projection;
}

std::unique_ptr<TQProjection> ProjectionResolver::ofDefinition(const std::string& definition) {
    _problem = "cannot make a projection of " + printableText(definition) + ": ";
    auto projection = std::make_unique<TQPrProj4>();
    TQPrProj4& defined = *projection;
    defined.initFromPROJString(definition.c_str(), useWGS84Source);
    const TQString systemName = defined.systemName();
    const bool hasName = !systemName.isEmpty() && !(systemName == "unknown"); // PROJ's word for none
    defined.rename(hasName ? systemName : TQString(definition.c_str()));
    return usable(std::move(projection), defined);
}

std::unique_ptr<TQProjection> ProjectionResolver::ofName(const std::string& name,
                                                         const std::string& directory) {
    if (name.starts_with('\t')) {
        return ofCatalogue(name);
    }
    _library = std::make_unique<ProjectionLibrary>(directory);
    const std::string unreadable = _messages.take();
    if (!_library->problem().empty()) {
        _problem = _library->problem();
        return nullptr;
    }
    if (const TQProjection* known = _library->projection(name)) {
        _path = _library->pathOf(name);
        return tq_copyOf(*known);
    }
    std::unique_ptr<TQProjection> listed = ofCatalogue(name);
    if (listed == nullptr && !unreadable.empty()) {
        _problem += "; " + unreadable; // it may be in a file that could not be read
    }
    return listed;
}

std::unique_ptr<TQProjection> ProjectionResolver::ofCatalogue(const std::string& name) {
    const std::optional<std::string> externalName = Catalogue::externalNameOf(name);
    TQString authority;
    TQString code;
    bool isDeprecated = false;
    if (!externalName || !TQExternalProjList::authorityAndCodeForExternalProjName(
                             TQString(externalName->c_str()), authority, code, &isDeprecated)) {
        _problem = "no projection is called " + printableText(name);
        if (Catalogue::looksLikeName(name) && !Catalogue::isAvailable()) {
            return refused(": PROJ has no database");
        }
        return refused(_library != nullptr ? nearNamesText(name, _library->names()) : "");
    }
    _problem = "cannot make a projection of " + printableText(name) + ": ";
    std::unique_ptr<TQProjection> projection =
        TQExternalProjList::newExternalProjectionFromAuthAndStringCode(authority, code, isDeprecated);
    const auto& defined = dynamic_cast<const TQPrProj4&>(*projection);
    return usable(std::move(projection), defined);
}

/// A projection that PROJ could build, and whose coordinates are two; null if not.
std::unique_ptr<TQProjection> ProjectionResolver::usable(std::unique_ptr<TQProjection> projection,
                                                         const TQPrProj4& defined) {
    if (defined.isInvalid()) {
        return refused(_messages.takeReason(defined.PROJLogMessage()));
    }
    if (defined.coordinates() == TQPrProj4::Coordinates::Geocentric) {
        return refused("it is a geocentric system");
    }
    return projection;
}

/// Null, and the reason behind the problem's beginning.
std::unique_ptr<TQProjection> ProjectionResolver::refused(const std::string& reason) {
    _problem += reason;
    return nullptr;
}
