#include "tools/tqproj/ProjectionLibrary.h"

#include "support/TQDirectory.h"
#include "support/TQPath.h"

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

ProjectionLibrary::ProjectionLibrary(const std::string& directory) : _manager(loadResources) {
    if (!directory.empty()) {
        loadDirectory(directory);
    }
}

void ProjectionLibrary::loadDirectory(const std::string& directory) {
    const TQString path(directory.c_str());
    const TQOpenDir files(path, TQString("proj"));
    if (!files.isListed()) {
        _problem = "cannot read the directory " + directory;
    }
    for (const TQString& file : files) {
        const TQString filePath = tq_createPath(path, file);
        std::unique_ptr<TQProjection> projection = TQProjMgr::createProjectionFromPath(filePath);
        const TQString name = projection != nullptr ? tq_textOfName(projection->name()) : TQString();
        constexpr bool isResource = false;
        if (_manager.addLoadedProjection(std::move(projection), isResource, TQProjMgr::Silent, &filePath)) {
            _userPaths[name.utf8()] = filePath.utf8();
        }
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

std::vector<std::string> ProjectionLibrary::names() const { return sorted(*_manager.newListOfProjNames()); }

std::unique_ptr<TQProjection> ProjectionLibrary::newFromFile(const std::string& name) const {
    return TQProjMgr::createProjectionFromPath(TQString(pathOf(name).c_str()));
}

std::string ProjectionLibrary::pathOf(const std::string& name) const {
    if (const auto found = _userPaths.find(name); found != _userPaths.end()) {
        return found->second;
    }
    const TQString* const path = _manager.resourcePath(TQString(name.c_str()));
    return path != nullptr ? path->utf8() : std::string();
}

TQEllipsoid* ProjectionLibrary::ellipsoid(const std::string& name) const {
    return _manager.ellipsoidManager().ellipsoidWithName(TQString(name.c_str()));
}

std::vector<std::string> ProjectionLibrary::ellipsoidNames() const {
    return sorted(*_manager.newListOfEllipsoidNames());
}
