#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

/// The application's directory of shared data, which holds "resProj", "localization" and the other
/// resources: the one given to TQSetApplicationSharedDirectory(); else that of the environment variable
/// TQ_SHARED_DIRECTORY; else the one at its installed place relative to this library. Empty when none of
/// them is known.
TQSYSTEMW_EXPORT TQString TQGetApplicationSharedDirectory();

/// Sets the application's directory of shared data for this process; answers the one set before, empty
/// when there was none.
/// @param directory the directory; empty to let the environment or the library's place decide again
TQSYSTEMW_EXPORT TQString TQSetApplicationSharedDirectory(const TQString& directory);
