#include <proj.h>

namespace {

/// What happens when the library is unloaded: PROJ gives back what it shares between contexts.
///
/// The same call at loading makes PROJ set up the caches that it will clear: what is set up before this
/// object outlives it, so that at the end of the process they are still there to be cleared.
const struct LibraryUnload {
    LibraryUnload() { proj_cleanup(); }
    ~LibraryUnload() { proj_cleanup(); }
} libraryUnload;

} // namespace
