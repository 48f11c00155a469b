#pragma once

#include "support/TQMessages.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#ifndef _WIN32
#include <unistd.h>
#endif

// What the tests of files and messages share. Everything that changes the process puts it back.

namespace tqtest {

/// A directory of its own for a test, removed with all it holds.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::random_device random;
        do {
            _path = std::filesystem::temp_directory_path() / ("tqtest-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(_path));
    }

    ~TemporaryDirectory() {
        std::error_code error;
        std::filesystem::remove_all(_path, error);
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    TQString path() const { return tq_stringFromPath(_path); }

    /// The path of a file or directory in it.
    TQString pathOf(const TQString& name) const { return tq_createPath(path(), name); }

    /// The names of everything in it.
    std::set<std::string> entries() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(_path)) {
            names.insert(tq_stringFromPath(entry.path().filename()).utf8());
        }
        return names;
    }

  private:
    std::filesystem::path _path;
};

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

/// Collects the diagnostic lines while it lives.
class PrintedLines {
  public:
    PrintedLines()
        : _before(tq_setErrorPrinter([this](std::string_view utf8) { _lines.emplace_back(utf8); })) {}

    ~PrintedLines() { tq_setErrorPrinter(_before); }

    PrintedLines(const PrintedLines&) = delete;
    PrintedLines& operator=(const PrintedLines&) = delete;

    const std::vector<std::string>& lines() const { return _lines; }

  private:
    std::vector<std::string> _lines;
    TQErrorPrinter _before;
};

/// Sets the shared directory while it lives.
class SharedDirectory {
  public:
    explicit SharedDirectory(const TQString& path) : _before(TQSetApplicationSharedDirectory(path)) {}

    ~SharedDirectory() { TQSetApplicationSharedDirectory(_before); }

    SharedDirectory(const SharedDirectory&) = delete;
    SharedDirectory& operator=(const SharedDirectory&) = delete;

  private:
    TQString _before;
};

/// Sets an environment variable while it lives; an empty value removes it.
class EnvironmentVariable {
  public:
    EnvironmentVariable(const char* name, const std::string& value) : _name(name) {
        const char* before = std::getenv(name);
        if (before != nullptr) {
            _before = before;
        }
        set(value);
    }

    ~EnvironmentVariable() { set(_before); }

    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  private:
    void set(const std::string& value) const {
#ifdef _WIN32
        _putenv_s(_name.c_str(), value.c_str());
#else
        if (value.empty()) {
            unsetenv(_name.c_str());
        } else {
            setenv(_name.c_str(), value.c_str(), 1);
        }
#endif
    }

    std::string _name;
    std::string _before;
};

#ifndef _WIN32
/// While it lives, the process has no more rights than an ordinary user: the superuser may read and write
/// everything, which would hide what a test of permissions is to show.
class OrdinaryUser {
  public:
    OrdinaryUser() : _before(geteuid()) {
        constexpr uid_t nobody = 65534;
        _isOrdinary = _before != 0 || seteuid(nobody) == 0;
    }

    ~OrdinaryUser() {
        if (geteuid() != _before && seteuid(_before) != 0) {
            std::abort();
        }
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    bool isOrdinary() const { return _isOrdinary; }

  private:
    uid_t _before;
    bool _isOrdinary;
};
#endif

} // namespace tqtest
