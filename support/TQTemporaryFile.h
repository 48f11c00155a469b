#pragma once

#include "TQSystemWExport.h"

#include "support/TQPath.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <system_error>

/// A file of a fresh name that stands in a directory until it takes another's place, and is removed with its
/// object before. Internal: the header is not installed.
class TQSYSTEMW_EXPORT TQTemporaryFile {
  public:
    /// How many files removeAll() can know at a time; those beyond stay behind.
    static constexpr std::size_t mostKnown = 16;

    /// Makes an empty file in a directory and opens it for writing. Its name is short, so that it fits
    /// wherever others do; it holds the process's number and a random one, so that what crashes left behind
    /// is in nobody's way; and it has an extension of its own, so that nobody who lists files of another kind
    /// meets it.
    /// @param directory the directory
    /// @param stream receives the opened stream
    /// @param error receives why there is no file, or no error
    /// @return the file; null when it cannot be made
    static std::unique_ptr<TQTemporaryFile> create(const std::filesystem::path& directory,
                                                   TQStreamHandle& stream, std::error_code& error);

    /// Removes the file, unless it was moved.
    ~TQTemporaryFile();

    TQTemporaryFile(const TQTemporaryFile&) = delete;
    TQTemporaryFile& operator=(const TQTemporaryFile&) = delete;

    /// Where the file is.
    const std::filesystem::path& path() const { return _path; }

    /// Puts the file in another's place, in one step, and hands the directory to the storage device. The
    /// file's own stream must be closed.
    /// @param target the path that it gets, on the same file system
    /// @return why it cannot, or no error
    std::error_code moveTo(const std::filesystem::path& target);

    /// Removes the temporary files of all objects. It may be called in a signal handler, and nothing should
    /// be done with the objects afterwards: the process is about to end.
    static void removeAll() noexcept;

  private:
    struct Slot;

    explicit TQTemporaryFile(std::filesystem::path path);

    static Slot* claimSlot(const std::filesystem::path& path);
    void release();

    std::filesystem::path _path;
    Slot* _slot;           // one of a table of the process; null when none was free
    bool _isThere = false; // and ours
};
