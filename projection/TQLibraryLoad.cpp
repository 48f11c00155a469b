#include "support/TQLocalizer.h"

namespace {

/// What happens when the library is loaded: texts are in the user's language from then on, whatever the
/// process did with the support library before.
const struct LibraryLoad {
    LibraryLoad() { resetSystemLocalization(); }
} libraryLoad;

} // namespace
