#include "testing/Synchronizations.h"

#include <utility>

namespace {

std::function<void(int)> currentObserver;

} // namespace

Synchronizations::Synchronizations(std::function<void(int descriptor)> observer) {
    currentObserver = std::move(observer);
}

Synchronizations::~Synchronizations() { currentObserver = nullptr; }

#ifndef _WIN32
/// In place of the system's: the program comes first when a library's symbols are looked up.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor) {
    if (currentObserver) {
        currentObserver(descriptor);
    }
    return 0;
}
#endif
