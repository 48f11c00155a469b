#pragma once

#include "support/TQSharedDirectory.h"

#include <cstdlib>
#include <string>

#ifndef _WIN32
#include <unistd.h>
#endif

// What tests change in the process while they run, and put back.

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
