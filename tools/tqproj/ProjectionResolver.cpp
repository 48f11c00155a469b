#include "tools/tqproj/ProjectionResolver.h"

#include "manager/TQProjectionFile.h"
#include "proj/TQExternalProjList.h"
#include "proj/TQPrProj4.h"
#include "support/TQFile.h"
#include "support/TQPath.h"
#include "support/TQString.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/DefinitionText.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/ReadyProjection.h"
#include "tools/tqproj/TextSearch.h"

#include <optional>
#include <string_view>
#include <utility>

namespace {

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
    if (!InputFile::openingError(pathOf(text))) {
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
        return ofFile(pathOf(argument.text));
    }
}

std::unique_ptr<TQProjection> ProjectionResolver::ofFile(const std::filesystem::path& path) {
    _problem = "cannot read a projection from " + textOf(path) + ": ";
    if (const std::error_code error = InputFile::openingError(path)) {
        return refused(error.message());
    }
    TQFile file(tq_stringFromPath(path));
    std::unique_ptr<TQProjection> projection;
    const int code = TQProjectionFile::read(file, projection);
    if (code != TQProjectionFile::Read) {
        _messages.take(); // which name the reader
        const bool isOther = code == TQProjectionFile::VersionMissing;
        return refused(isOther ? "it is not a projection file"
                               : "line " + std::to_string(file.lineNumber()) + ": " + file.problem());
    }
    _messages.take(); // the file was read all the same
    return ready(std::move(projection));
}

std::unique_ptr<TQProjection> ProjectionResolver::ofDefinition(const std::string& definition) {
    _problem = "cannot make a projection of " + printableText(definition) + ": ";
    auto projection = std::make_unique<TQPrProj4>();
    // Geographic points are on the datum of the definition itself, as those of projection files are.
    constexpr bool useWGS84Source = false;
    projection->initFromPROJString(definition.c_str(), useWGS84Source);
    const TQString systemName = projection->systemName();
    const bool hasName = !systemName.isEmpty() && !(systemName == "unknown"); // PROJ's word for none
    projection->rename(hasName ? systemName : TQString(definition.c_str()));
    return ready(std::move(projection));
}

std::unique_ptr<TQProjection> ProjectionResolver::ofName(const std::string& name,
                                                         const std::filesystem::path& directory) {
    if (name.starts_with('\t')) {
        return ofCatalogue(name);
    }
    _library = std::make_unique<ProjectionLibrary>(directory);
    _messages.take(); // of projections that nobody asked for
    if (!_library->problem().empty()) {
        _problem = _library->problem();
        return nullptr;
    }
    if (_problem = _library->complaintAbout(name); !_problem.empty()) {
        return nullptr;
    }
    if (const TQProjection* known = _library->projection(name)) {
        _path = _library->pathOf(name);
        _problem = "cannot make a projection of " + printableText(name) + ": ";
        // As by its path: the library gives it the registered ellipsoid of a name, which may be another one.
        std::unique_ptr<TQProjection> filed = _library->newFromFile(name);
        return ready(filed != nullptr ? std::move(filed) : tq_copyOf(*known));
    }
    std::unique_ptr<TQProjection> listed = ofCatalogue(name);
    if (listed == nullptr) {
        for (const std::string& complaint : _library->complaints()) {
            _problem += "; " + complaint; // it may be in a file that could not be read
        }
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
    return ready(
        TQExternalProjList::newExternalProjectionFromAuthAndStringCode(authority, code, isDeprecated));
}

/// The projection, if points can be converted with it; null if not.
std::unique_ptr<TQProjection> ProjectionResolver::ready(std::unique_ptr<TQProjection> projection) {
    const std::string reason = makeReady(*projection, _messages);
    return reason.empty() ? std::move(projection) : refused(reason);
}

/// Null, and the reason behind the problem's beginning.
std::unique_ptr<TQProjection> ProjectionResolver::refused(const std::string& reason) {
    _problem += reason;
    return nullptr;
}
