#include "proj/TQProjConfinement.h"

#include "support/TQPath.h"
#include "support/TQPlatform.h"
#include "support/TQString.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <proj.h>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using Directories = std::vector<std::filesystem::path>;

constexpr int refused = 0;

std::filesystem::path pathOf(std::string_view utf8) {
    std::error_code error;
    return std::filesystem::absolute(tq_filesystemPath(TQString(utf8, TQEncodingUTF8)), error);
}

/// The directories of a list as PROJ writes it.
Directories directoriesIn(std::string_view list) {
#ifdef _WIN32
    constexpr char separator = ';';
#else
    constexpr char separator = ':';
#endif
    Directories directories;
    while (!list.empty()) {
        const std::string_view directory = list.substr(0, list.find(separator));
        list.remove_prefix(std::min(directory.size() + 1, list.size()));
        if (!directory.empty()) {
            const std::filesystem::path path = pathOf(directory).lexically_normal();
            directories.push_back(path.has_filename() ? path : path.parent_path());
        }
    }
    return directories;
}

/// Making a context and listing the directories both read the default context, which listing fills in.
std::mutex& defaultContextMutex() {
    static std::mutex mutex;
    return mutex;
}

/// Where PROJ looks for its database and grids: contexts take it from the default one when they are made.
Directories searchedDirectories() {
    const std::lock_guard lock(defaultContextMutex());
    return directoriesIn(proj_info().searchpath);
}

bool isWithin(const std::filesystem::path& directory, const std::filesystem::path& path) {
    return std::ranges::mismatch(directory, path).in1 == directory.end();
}

/// Whether a file is of PROJ's data. Links in its directories lead where whoever installed them wanted; ".."
/// leads out.
bool isOfData(const Directories& directories, const std::filesystem::path& path) {
    std::error_code error;
    return std::ranges::find(path, "..") == path.end() &&
           std::ranges::any_of(
               directories,
               [&path](const auto& directory) { return isWithin(directory, path.lexically_normal()); }) &&
           std::filesystem::is_regular_file(path, error);
}

bool mayRead(const char* file, void* directories) {
    return isOfData(*static_cast<const Directories*>(directories), pathOf(file));
}

std::FILE* streamOf(PROJ_FILE_HANDLE* handle) { return static_cast<std::FILE*>(static_cast<void*>(handle)); }

PROJ_FILE_HANDLE* openFile(PJ_CONTEXT* /*context*/, const char* file, PROJ_OPEN_ACCESS access,
                           void* directories) {
    const bool isAllowed = access == PROJ_OPEN_ACCESS_READ_ONLY && mayRead(file, directories);
    return isAllowed ? static_cast<PROJ_FILE_HANDLE*>(static_cast<void*>(tq_openStream(pathOf(file), "rb")))
                     : nullptr;
}

std::size_t readFile(PJ_CONTEXT* /*context*/, PROJ_FILE_HANDLE* handle, void* buffer, std::size_t size,
                     void* /*directories*/) {
    return std::fread(buffer, 1, size, streamOf(handle));
}

std::size_t refuseToWrite(PJ_CONTEXT* /*context*/, PROJ_FILE_HANDLE* /*handle*/, const void* /*buffer*/,
                          std::size_t /*size*/, void* /*directories*/) {
    return 0;
}

int seekFile(PJ_CONTEXT* /*context*/, PROJ_FILE_HANDLE* handle, long long offset, int origin,
             void* /*directories*/) {
    const auto distance = static_cast<long>(offset);
    return distance == offset && std::fseek(streamOf(handle), distance, origin) == 0 ? 1 : 0;
}

unsigned long long tellFile(PJ_CONTEXT* /*context*/, PROJ_FILE_HANDLE* handle, void* /*directories*/) {
    return static_cast<unsigned long long>(std::ftell(streamOf(handle)));
}

void closeFile(PJ_CONTEXT* /*context*/, PROJ_FILE_HANDLE* handle, void* /*directories*/) {
    tq_fclose(streamOf(handle));
}

int fileExists(PJ_CONTEXT* /*context*/, const char* file, void* directories) {
    return mayRead(file, directories) ? 1 : 0;
}

int refuseOne(PJ_CONTEXT* /*context*/, const char* /*file*/, void* /*directories*/) { return refused; }

int refuseToRename(PJ_CONTEXT* /*context*/, const char* /*from*/, const char* /*to*/, void* /*directories*/) {
    return refused;
}

constexpr PROJ_FILE_API filesOfData{.version = 1,
                                    .open_cbk = openFile,
                                    .read_cbk = readFile,
                                    .write_cbk = refuseToWrite,
                                    .seek_cbk = seekFile,
                                    .tell_cbk = tellFile,
                                    .close_cbk = closeFile,
                                    .exists_cbk = fileExists,
                                    .mkdir_cbk = refuseOne,
                                    .unlink_cbk = refuseOne,
                                    .rename_cbk = refuseToRename};

} // namespace

TQProjContextHandle tq_newOpenContext() {
    const std::lock_guard lock(defaultContextMutex());
    return TQProjContextHandle(proj_context_create());
}

TQProjContextHandle tq_newConfinedContext() {
    auto directories = std::make_shared<Directories>(searchedDirectories());
    void* const calledBackWith = directories.get();
    TQProjContextHandle context(tq_newOpenContext().release(), TQProjContextRelease(std::move(directories)));
    proj_context_set_fileapi(context.get(), &filesOfData, calledBackWith);
    proj_context_set_enable_network(context.get(), 0); // last: it reads PROJ's settings, a file
    return context;
}
