#include "support/TQReplacementFile.h"

#include "support/TQPlatform.h"
#include "support/TQTemporaryFile.h"

#include <utility>

namespace {

namespace fs = std::filesystem;

/// Why a target that is no directory cannot be written; no error when it can, or is not there yet.
std::error_code reasonAgainst(const fs::path& target, const fs::file_status& status) {
    if (target.empty()) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (fs::is_directory(status)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    if (!fs::exists(status)) {
        return {};
    }
    return TQStreamHandle(tq_openStream(target, "r+b")) != nullptr ? std::error_code() : tq_lastError();
}

/// What a path leads to over links, whether it is there or not.
fs::path withoutLinks(fs::path path, std::error_code& error) {
    constexpr int mostLinks = 40; // as many as Linux follows
    std::error_code isNotThere;
    for (int links = 0; fs::is_symlink(fs::symlink_status(path, isNotThere)); ++links) {
        if (links == mostLinks) {
            error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
            return {};
        }
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

/// Where the file really is, whatever links lead to it and wherever the process goes meanwhile.
fs::path resolved(const fs::path& file, std::error_code& error) {
    std::error_code isNotThere;
    fs::path canonical = fs::canonical(file, isNotThere);
    if (!isNotThere) {
        return canonical;
    }
    const fs::path target = withoutLinks(file, error);
    return error ? target : fs::absolute(target, error);
}

/// Whether a file cannot be made because its directory may not be written.
bool isProtection(const std::error_code& error) {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
           error == std::errc::read_only_file_system;
}

} // namespace

TQReplacementFile::TQReplacementFile() = default;

TQReplacementFile::~TQReplacementFile() { abandon(); }

bool TQReplacementFile::open(const TQString& target) { return open(tq_filesystemPath(target)); }

bool TQReplacementFile::open(const fs::path& target) {
    abandon();
    std::error_code isNotThere;
    const fs::file_status status = fs::status(target, isNotThere);
    _error = reasonAgainst(target, status);
    if (!_error) {
        _target = resolved(target, _error);
    }
    if (_error) {
        return false;
    }
    const bool isSpecial = fs::exists(status) && !fs::is_regular_file(status);
    return isSpecial ? openTarget() : openBesideTarget(status);
}

bool TQReplacementFile::openTarget() {
    _stream.reset(tq_openStream(_target, "wb"));
    if (_stream == nullptr) {
        _error = tq_lastError();
    }
    return isOpen();
}

bool TQReplacementFile::openBesideTarget(const fs::file_status& status) {
    _temporary = TQTemporaryFile::create(_target.parent_path(), _stream, _error);
    if (_temporary == nullptr && fs::exists(status) && isProtection(_error)) {
        _error.clear();
        _overwriting.emplace();
        return true;
    }
    if (_temporary != nullptr && fs::exists(status)) {
        std::error_code isNotOurs; // and stays as the system made it
        fs::permissions(_temporary->path(), status.permissions(), isNotOurs);
    }
    return isOpen();
}

bool TQReplacementFile::write(std::string_view bytes) {
    if (!isOpen()) {
        return false;
    }
    if (_overwriting) {
        _overwriting->append(bytes);
    } else if (!_error) {
        if (std::fwrite(bytes.data(), 1, bytes.size(), _stream.get()) != bytes.size()) {
            _error = tq_lastError();
        } else {
            flush();
        }
    }
    return !_error;
}

bool TQReplacementFile::commit() {
    if (!isOpen()) {
        return false;
    }
    if (const std::optional<std::string> bytes = std::exchange(_overwriting, std::nullopt)) {
        static_cast<void>(openTarget() && write(*bytes));
    }
    close();
    if (!_error && _temporary != nullptr) {
        _error = _temporary->moveTo(_target);
    }
    _temporary.reset();
    return !_error;
}

void TQReplacementFile::abandon() {
    _overwriting.reset();
    _stream.reset();
    _temporary.reset();
}

void TQReplacementFile::removeTemporaryFiles() noexcept { TQTemporaryFile::removeAll(); }

void TQReplacementFile::flush() {
    if (std::fflush(_stream.get()) != 0) {
        _error = tq_lastError();
    }
}

/// Everything must be on the device before the file takes its target's place: the system may do the one long
/// before the other.
void TQReplacementFile::close() {
    if (!_error && _stream != nullptr) {
        _error = tq_synchronize(_stream.get());
    }
    if (tq_fclose(_stream.release()) != 0 && !_error) {
        _error = tq_lastError();
    }
}
