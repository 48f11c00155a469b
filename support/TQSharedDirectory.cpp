#include "support/TQSharedDirectory.h"

#include "support/TQEverlasting.h"
#include "support/TQPath.h"
#include "support/TQPlatform.h"

#include <mutex>
#include <utility>

namespace {

struct ChosenDirectory {
    std::mutex mutex;
    TQString path;
};

ChosenDirectory& chosenDirectory() {
    static TQEverlasting<ChosenDirectory> chosen;
    return *chosen;
}

TQString directoryFromSetter() {
    ChosenDirectory& chosen = chosenDirectory();
    const std::lock_guard lock(chosen.mutex);
    return chosen.path;
}

TQString directoryFromEnvironment() { return TQString(tq_environmentText("TQ_SHARED_DIRECTORY").c_str()); }

/// The installed place, as seen from this library. The library does not move while it is loaded.
const TQString& directoryFromLibrary() {
    static TQEverlasting<const TQString> directory([] {
        static constexpr char placeInLibrary = 0;
        const std::filesystem::path library = tq_libraryPath(&placeInLibrary);
        if (library.empty()) {
            return TQString();
        }
        return tq_stringFromPath(
            (library.parent_path() / TQ_SHARED_DIRECTORY_FROM_LIBRARY).lexically_normal());
    }());
    return *directory;
}

} // namespace

TQString TQGetApplicationSharedDirectory() {
    if (TQString directory = directoryFromSetter(); !directory.isEmpty()) {
        return directory;
    }
    if (TQString directory = directoryFromEnvironment(); !directory.isEmpty()) {
        return directory;
    }
    return directoryFromLibrary();
}

TQString TQSetApplicationSharedDirectory(const TQString& directory) {
    ChosenDirectory& chosen = chosenDirectory();
    const std::lock_guard lock(chosen.mutex);
    return std::exchange(chosen.path, directory);
}
