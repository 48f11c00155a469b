#pragma once

#include "TQSystemWExport.h"

#include "support/TQPath.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

class TQTemporaryFile;

/// A file that is written beside its target and takes the target's place only when every byte of it has
/// been written and has reached the storage device: whatever fails before, the old file stays whole, and
/// after a failure of power there is the old file or the new one.
///
/// The target keeps its permissions, and a link keeps leading to it; the target of a link that leads nowhere
/// yet is made. A target that is no regular file (a device, a pipe) is written directly.
///
/// In a directory that may not be written, a target that may be is overwritten on commit(), and not before:
/// that is not atomic, and a failure in that moment (a full disk) leaves a part of the new file and nothing
/// of the old one.
class TQSYSTEMW_EXPORT TQReplacementFile {
  public:
    /// No file yet.
    TQReplacementFile();

    /// Abandons what has not been committed.
    ~TQReplacementFile();

    TQReplacementFile(const TQReplacementFile&) = delete;
    TQReplacementFile& operator=(const TQReplacementFile&) = delete;

    /// Begins writing; false when the target cannot be written. What was being written is abandoned.
    /// @param target the file to write or replace
    bool open(const TQString& target);

    /// Begins writing, as the other form does, for a path that need not be text.
    /// @param target the file to write or replace
    bool open(const std::filesystem::path& target);

    /// Whether a file is being written.
    bool isOpen() const { return _stream != nullptr || _overwriting; }

    /// Writes bytes and hands them to the system at once; false from the first failure on.
    /// @param bytes what to write
    bool write(std::string_view bytes);

    /// Ends writing and puts the file in its target's place; false, and the old file is whole, when that
    /// or any write before failed, or when nothing is open.
    bool commit();

    /// Ends writing and drops what was written.
    void abandon();

    /// The system's reason why something failed since open(), the first there was; no error when nothing did.
    /// Its message() is a text for the user: "No space left on device".
    const std::error_code& error() const { return _error; }

    /// Removes what open objects of the process have written beside their targets. For a handler of signals
    /// that end the process, where it may be called: the library sets none. Targets that are written directly
    /// stay, and files beyond 16 at a time.
    static void removeTemporaryFiles() noexcept;

  private:
    bool openTarget();
    bool openBesideTarget(const std::filesystem::file_status& status);
    void flush();
    void close();

    TQStreamHandle _stream;
    std::filesystem::path _target;
    std::unique_ptr<TQTemporaryFile> _temporary; // null while the target is written directly
    std::optional<std::string> _overwriting;     // the bytes for a target that is overwritten on commit
    std::error_code _error;
};
