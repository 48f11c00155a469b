#include "tools/tqproj/ProjectionLibrary.h"

#include "manager/TQProjectionFile.h"
#include "support/TQDirectory.h"
#include "support/TQFile.h"
#include "support/TQPath.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PathText.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr bool loadResources = true;

std::vector<std::string> sorted(const TQArray<TQString>& list) {
    std::vector<std::string> names;
    for (const TQString* name : list.objectArray()) {
        names.push_back(name->utf8());
    }
    std::ranges::sort(names);
    return names;
}

} // namespace

ProjectionLibrary::ProjectionLibrary(const std::filesystem::path& directory) : _manager(loadResources) {
    const std::filesystem::path resources = tq_filesystemPath(_manager.defaultProjDirectory());
    std::error_code ignored;
    if (!std::filesystem::is_directory(resources, ignored)) {
        _complaints.push_back("there are no resources: " + textOf(resources) + " is no directory");
    }
    if (!directory.empty()) {
        loadDirectory(directory);
    }
}

void ProjectionLibrary::loadDirectory(const std::filesystem::path& directory) {
    const TQOpenDir files(tq_stringFromPath(directory), TQString("proj"));
    if (!files.isListed()) {
        _problem = "cannot read the directory " + textOf(directory);
    }
    for (const TQString& file : files) {
        load(directory / tq_filesystemPath(file));
    }
}

void ProjectionLibrary::load(const std::filesystem::path& file) {
    LibraryMessages messages;
    const TQString path = tq_stringFromPath(file);
    TQFile source(path);
    std::unique_ptr<TQProjection> projection;
    if (TQProjectionFile::read(source, projection) != TQProjectionFile::Read) {
        _complaints.push_back("cannot read a projection from " + textOf(file) + ": " + source.problem());
        if (projection != nullptr && projection->name() != nullptr) {
            _complaintsByName.emplace(projection->name()->utf8(), _complaints.back());
        }
        return;
    }
    const std::string name = tq_textOfName(projection->name()).utf8();
    constexpr bool isResource = false;
    if (_manager.addLoadedProjection(std::move(projection), isResource, TQProjMgr::Silent, &path)) {
        if (const bool isNew = _userPaths.insert_or_assign(name, file).second; !isNew) {
            _complaints.push_back(textOf(file) +
                                  " takes the place of another file, whose projection is called " +
                                  printableText(name) + " too");
        }
    } else {
        _userPaths.emplace(name, file); // the same as a resource but for tolerances, which may be a metre
    }
    if (!messages.isEmpty()) {
        _complaints.push_back(textOf(file) + ": " + messages.take());
    }
}

const TQProjection* ProjectionLibrary::projection(const std::string& name) {
    return _manager.projWithName(TQString(name.c_str()), false);
}

bool ProjectionLibrary::hasOwn(const std::string& name) {
    const TQProjection* const known = projection(name);
    return known != nullptr && !known->isExternalProjection();
}

void ProjectionLibrary::copyTo(TQProjMgr& document, const std::string& name) {
    TQProjection* const original = _manager.projWithName(TQString(name.c_str()), false);
    document.getProjectionWithNameFromGeorefMgr(original, &_manager);
}

std::vector<ProjectionLibrary::Entry> ProjectionLibrary::projections() const {
    std::vector<Entry> entries;
    HashState<TQProjection> fromTheStart;
    while (const TQProjection* const projection = _manager.traverseUserProjs(&fromTheStart)) {
        entries.push_back({tq_textOfName(projection->name()).utf8(), projection});
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
}

std::unique_ptr<TQProjection> ProjectionLibrary::newFromFile(const std::string& name) const {
    return TQProjMgr::createProjectionFromPath(tq_stringFromPath(pathOf(name)));
}

std::vector<std::string> ProjectionLibrary::names() const {
    std::vector<std::string> names;
    for (const Entry& entry : projections()) {
        names.push_back(entry.name);
    }
    return names;
}

std::filesystem::path ProjectionLibrary::pathOf(const std::string& name) const {
    if (const auto found = _userPaths.find(name); found != _userPaths.end()) {
        return found->second;
    }
    const TQString* const path = _manager.resourcePath(TQString(name.c_str()));
    return path != nullptr ? tq_filesystemPath(*path) : std::filesystem::path();
}

TQEllipsoid* ProjectionLibrary::ellipsoid(const std::string& name) const {
    return _manager.ellipsoidManager().ellipsoidWithName(TQString(name.c_str()));
}

std::vector<std::string> ProjectionLibrary::ellipsoidNames() const {
    return sorted(*_manager.newListOfEllipsoidNames());
}

std::string ProjectionLibrary::complaintAbout(const std::string& name) const {
    const auto found = _complaintsByName.find(name);
    return found != _complaintsByName.end() ? found->second : std::string();
}

ExitCode ProjectionLibrary::reportComplaints(Diagnostics& diagnostics) const {
    for (const std::string& complaint : _complaints) {
        diagnostics.reportProblem(complaint);
    }
    return _complaints.empty() ? ExitCode::Success : ExitCode::Failure;
}
