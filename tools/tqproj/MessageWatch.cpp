#include "tools/tqproj/MessageWatch.h"

namespace {

thread_local MessageWatch* watchOfThread = nullptr;

} // namespace

MessageWatch::MessageWatch() { watchOfThread = this; }

MessageWatch::~MessageWatch() { watchOfThread = nullptr; }

bool MessageWatch::takeNotice() {
    if (watchOfThread == nullptr) {
        return false;
    }
    watchOfThread->_hasHeard = true;
    return true;
}
