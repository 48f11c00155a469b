#pragma once

#include "manager/TQProjMgr.h"
#include "support/TQReadMemStream.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A document of projections as `tqproj pack` writes it: the archive of a manager.
class DocumentFile {
  public:
    /// Reads a document's bytes.
    /// @param path the file, UTF-8
    explicit DocumentFile(const std::string& path);

    /// The bytes.
    std::string_view bytes() const { return _bytes; }

    /// Why the file cannot be read; empty when it can.
    const std::string& problem() const { return _problem; }

    /// A stream over the bytes, for a reader that takes projections as a document's; this object must outlive
    /// it.
    TQReadMemStream stream() const;

    /// Writes what a manager's user has to a document.
    /// @param manager the manager
    /// @param path the file, UTF-8; complete, or what it was before
    /// @return whether it was written
    static bool write(const TQProjMgr& manager, const std::string& path);

  private:
    std::string _bytes;
    std::string _problem;
};
