#include "support/TQReplacementFile.h"

#include "support/TQPlatform.h"

#include <string>
#include <system_error>

namespace {

namespace fs = std::filesystem;

bool isWritable(const fs::path& file) { return TQStreamHandle(tq_openStream(file, "r+b")) != nullptr; }

bool isThere(const fs::path& file) {
    std::error_code error;
    return fs::exists(fs::symlink_status(file, error));
}

/// Where the file really is, whatever links lead to it and wherever the process goes meanwhile.
fs::path resolved(const fs::path& file) {
    std::error_code error;
    const fs::path canonical = fs::canonical(file, error);
    return error ? fs::absolute(file, error) : canonical;
}

} // namespace

TQReplacementFile::~TQReplacementFile() { abandon(); }

bool TQReplacementFile::open(const TQString& target) {
    abandon();
    _hasFailed = false;

    const fs::path path = tq_filesystemPath(target);
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (path.empty() || fs::is_directory(status)) {
        return false;
    }
    if (fs::exists(status) && !isWritable(path)) {
        return false;
    }

    _target = resolved(path);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        _stream.reset(tq_openStream(_target, "wb"));
        return isOpen();
    }
    if (!openTemporary(_target.parent_path())) {
        return false;
    }
    if (fs::exists(status)) {
        fs::permissions(_temporary, status.permissions(), error);
    }
    return true;
}

bool TQReplacementFile::write(std::string_view bytes) {
    if (!isOpen() || _hasFailed) {
        return false;
    }
    const bool isTaken = std::fwrite(bytes.data(), 1, bytes.size(), _stream.get()) == bytes.size();
    _hasFailed = !isTaken || std::fflush(_stream.get()) != 0;
    return !_hasFailed;
}

bool TQReplacementFile::commit() {
    if (!isOpen()) {
        return false;
    }
    const bool isClosed = tq_fclose(_stream.release()) == 0;

    std::error_code error;
    const bool isComplete = isClosed && !_hasFailed;
    if (isComplete && !_temporary.empty()) {
        fs::rename(_temporary, _target, error);
    }
    if (!isComplete || error) {
        removeTemporary();
        return false;
    }
    _temporary.clear();
    return true;
}

void TQReplacementFile::abandon() {
    _stream.reset();
    removeTemporary();
}

/// The name is short, so that it fits wherever the target's does, and has an extension of its own, so that
/// nobody who lists files of the target's kind meets one that a crash left behind.
bool TQReplacementFile::openTemporary(const fs::path& directory) {
    constexpr int mostLeftBehind = 1000;
    for (int number = 0; number < mostLeftBehind; ++number) {
        const fs::path candidate = directory / ("tqfile-" + std::to_string(number) + ".tmp");
        _stream.reset(tq_openStream(candidate, "wbx"));
        if (isOpen()) {
            _temporary = candidate;
            return true;
        }
        if (!isThere(candidate)) {
            return false;
        }
    }
    return false;
}

void TQReplacementFile::removeTemporary() {
    if (_temporary.empty()) {
        return;
    }
    std::error_code error;
    fs::remove(_temporary, error);
    _temporary.clear();
}
