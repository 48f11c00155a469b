#pragma once

#include "support/TQString.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <system_error>

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

    /// The path of a file in the directory, as the library takes it.
    TQString file(const std::string& name) const { return TQString((_path / name).string().c_str()); }

    /// Writes a file with exactly these bytes and gives its path.
    TQString fileWith(const std::string& name, const std::string& bytes) const {
        std::ofstream(_path / name, std::ios::binary) << bytes;
        return file(name);
    }

    /// The bytes of a file.
    std::string bytesOf(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(_path / name, std::ios::binary).rdbuf();
        return bytes.str();
    }

  private:
    std::filesystem::path _path;
};
