#pragma once

#include "support/TQString.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

/// While it lives, no file that the process writes grows beyond a number of bytes: the write that would
/// make it fails, as on a full disk. Nothing else should be written meanwhile.
class FileSizeLimit {
  public:
#ifdef _WIN32
    static constexpr bool isAvailable = false;

    explicit FileSizeLimit(std::uint64_t) {}
#else
    static constexpr bool isAvailable = true;

    explicit FileSizeLimit(std::uint64_t bytes) : _signalBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &_limitBefore);
        const rlimit limit{static_cast<rlim_t>(bytes), _limitBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &_limitBefore);
        std::signal(SIGXFSZ, _signalBefore);
    }
#endif

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

#ifndef _WIN32
  private:
    rlimit _limitBefore{};
    void (*_signalBefore)(int);
#endif
};

/// The device on which every write fails for want of space; nothing where the system has none.
inline std::optional<TQString> fullDevice() {
    std::error_code error;
    const char* const path = "/dev/full";
    return std::filesystem::exists(path, error) ? std::optional<TQString>(path) : std::nullopt;
}
