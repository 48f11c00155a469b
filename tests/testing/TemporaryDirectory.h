#pragma once

#include "support/TQPath.h"
#include "support/TQString.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

/// Puts bytes into a file, making its directory.
inline void writeBytes(const TQString& path, std::string_view bytes) {
    const std::filesystem::path file = tq_filesystemPath(path);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

/// The bytes of a file; empty when it is not there.
inline std::string readBytes(const TQString& path) {
    std::ifstream stream(tq_filesystemPath(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// A directory of its own for one test, removed with all that is in it.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::random_device random;
        do {
            _path = std::filesystem::temp_directory_path() / ("tqproj-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(_path));
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return _path; }

    /// The path of the directory, as the library takes it.
    TQString directory() const { return tq_stringFromPath(_path); }

    /// The path of a file in the directory, as the library takes it.
    TQString file(const TQString& name) const { return tq_createPath(directory(), name); }
    TQString file(const std::string& name) const { return file(TQString(name.c_str())); }
    TQString file(const char* name) const { return file(TQString(name)); }

    /// The names of everything in the directory.
    std::set<std::string> entries() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(_path)) {
            names.insert(tq_stringFromPath(entry.path().filename()).utf8());
        }
        return names;
    }

    /// Writes a file with exactly these bytes and gives its path.
    TQString fileWith(const std::string& name, std::string_view bytes) const {
        writeBytes(file(name), bytes);
        return file(name);
    }

    /// The bytes of a file.
    std::string bytesOf(const std::string& name) const { return readBytes(file(name)); }

  private:
    std::filesystem::path _path;
};
