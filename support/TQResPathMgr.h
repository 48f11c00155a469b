#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

/// Finds the files that are shipped as resources in the application's shared directory.
class TQSYSTEMW_EXPORT TQResPathMgr {
  public:
    /// The manager of the process; never null, owned by the library.
    static TQResPathMgr* appShared();

    /// Finds a resource; false, and the path untouched, when the shared directory has no such file.
    /// @param name the file's name, or its path from the shared directory; it may not lead out of it
    /// @param path receives the path of the file
    bool pathForResource(const TQString& name, TQString& path) const;
};
