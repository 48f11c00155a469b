#pragma once

#include "TQSystemWExport.h"

#include "support/TQPath.h"

#include <filesystem>
#include <string_view>

/// A file that is written beside its target and takes the target's place only when every byte of it has
/// been written: whatever fails before, the old file stays whole.
///
/// The target keeps its permissions, and a link keeps leading to it. A target that is no regular file (a
/// device, a pipe) is written directly.
class TQSYSTEMW_EXPORT TQReplacementFile {
  public:
    TQReplacementFile() = default;

    /// Abandons what has not been committed.
    ~TQReplacementFile();

    TQReplacementFile(const TQReplacementFile&) = delete;
    TQReplacementFile& operator=(const TQReplacementFile&) = delete;

    /// Begins writing; false when the target cannot be written. What was being written is abandoned.
    /// @param target the file to write or replace
    bool open(const TQString& target);

    /// Whether a file is being written.
    bool isOpen() const { return _stream != nullptr; }

    /// Writes bytes and hands them to the system at once; false from the first failure on.
    /// @param bytes what to write
    bool write(std::string_view bytes);

    /// Ends writing and puts the file in its target's place; false, and the old file is whole, when that
    /// or any write before failed, or when nothing is open.
    bool commit();

    /// Ends writing and drops what was written.
    void abandon();

  private:
    bool openTemporary(const std::filesystem::path& directory);
    void removeTemporary();

    TQStreamHandle _stream;
    std::filesystem::path _target;
    std::filesystem::path _temporary; // empty while the target is written directly
    bool _hasFailed = false;
};
