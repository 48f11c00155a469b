#pragma once

#include "support/TQTerminationHold.h"

#include <filesystem>
#include <system_error>

/// A directory of the command alone among the system's temporary ones, for what is looked at before it goes
/// where it belongs. It is removed with all that is in it, before the user or the system may end the process.
class ScratchDirectory {
  public:
    /// Makes the directory.
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    /// The directory; to be used only when error() holds none.
    const std::filesystem::path& path() const { return _path; }

    /// Why there is no directory; no error when there is one.
    const std::error_code& error() const { return _error; }

  private:
    TQTerminationHold _hold; // outlives what is there
    std::filesystem::path _path;
    std::error_code _error;
};
