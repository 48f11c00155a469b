#pragma once

#include "manager/TQProjMgr.h"
#include "support/TQReadMemStream.h"
#include "tools/tqproj/ExitCode.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

class Diagnostics;
class LibraryMessages;

/// A document of projections as `tqproj pack` writes it: the archive of a manager.
class DocumentFile {
  public:
    /// The size of the largest document that is read, in bytes.
    static constexpr std::size_t greatestSize = std::size_t{1} << 28;

    /// Reads a document's bytes.
    /// @param argument an argument of the command line: a path; "-" is the standard input
    explicit DocumentFile(const std::string& argument);

    /// The bytes.
    std::string_view bytes() const { return _bytes; }

    /// Why the file cannot be read; empty when it can.
    const std::string& problem() const { return _problem; }

    /// A stream over the bytes, for a reader that takes projections as a document's; this object must outlive
    /// it.
    TQReadMemStream stream() const;

    /// Reports that only a part of the document could be read, with the library's words.
    /// @param hasContent whether anything could
    /// @param messages what the library said
    /// @param diagnostics where the report goes
    /// @return Incomplete, or Failure when nothing could be read
    ExitCode reportDamage(bool hasContent, LibraryMessages& messages, Diagnostics& diagnostics) const;

    /// The bytes of a document that holds what a manager's user has.
    /// @param manager the manager
    static std::string bytesOf(const TQProjMgr& manager);

  private:
    void read(std::streambuf& source);

    std::string _name; // as messages call it
    std::string _bytes;
    std::string _problem;
};
