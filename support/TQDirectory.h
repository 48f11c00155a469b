#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

#include <vector>

/// The regular files of a directory, listed as a whole on construction: files that appear or vanish while
/// the caller reads them change nothing.
///
///     const TQOpenDir files(directory, "proj");
///     for (const TQString& name : files) { ... tq_createPath(directory, name) ... }
class TQSYSTEMW_EXPORT TQOpenDir {
  public:
    /// Lists a directory; its subdirectories are neither entered nor listed. A link to a regular file
    /// counts as one; a file whose name is no text leads to itself as tq_stringFromPath() tells; on Windows
    /// one whose name is not valid UTF-16 is reported and left out.
    /// @param directory the directory
    /// @param extension the extension wanted, without its dot, compared exactly; empty for all files
    explicit TQOpenDir(const TQString& directory, const TQString& extension = TQString());

    /// Whether the directory could be listed; when not, there are no names.
    bool isListed() const { return _isListed; }

    /// How many files there are.
    int count() const { return static_cast<int>(_names.size()); }

    /// The names of the files, without directory, in the order of their bytes.
    const std::vector<TQString>& names() const { return _names; }

    /// The first name, for range-based loops.
    auto begin() const { return _names.begin(); }

    /// Past the last name, for range-based loops.
    auto end() const { return _names.end(); }

  private:
    std::vector<TQString> _names;
    bool _isListed = false;
};
