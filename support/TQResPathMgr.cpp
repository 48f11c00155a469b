#include "support/TQResPathMgr.h"

#include "support/TQEverlasting.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"

#include <filesystem>
#include <system_error>

namespace {

bool leadsOutOfDirectory(const std::filesystem::path& path) {
    const std::filesystem::path normal = path.lexically_normal();
    return path.has_root_path() || *normal.begin() == "..";
}

} // namespace

TQResPathMgr* TQResPathMgr::appShared() {
    static TQEverlasting<TQResPathMgr> manager;
    return &*manager;
}

bool TQResPathMgr::pathForResource(const TQString& name, TQString& path) const {
    const std::filesystem::path relative = tq_filesystemPath(name);
    const TQString directory = TQGetApplicationSharedDirectory();
    if (directory.isEmpty() || relative.empty() || leadsOutOfDirectory(relative)) {
        return false;
    }

    const TQString resource = tq_createPath(directory, name);
    std::error_code error;
    if (!std::filesystem::is_regular_file(tq_filesystemPath(resource), error)) {
        return false;
    }
    path = resource;
    return true;
}
