#include "support/TQSharedString.h"

#include "support/HashTbl.h"
#include "support/TQEverlasting.h"

#include <mutex>
#include <utility>

namespace {

struct Registry {
    std::mutex mutex;
    HashTbl<TQSharedString> strings{1021};
};

Registry& registry() {
    static TQEverlasting<Registry> instance;
    return *instance;
}

} // namespace

TQSharedString* TQSharedString::getUnique(const TQString& text) {
    const std::lock_guard lock(registry().mutex);
    if (TQSharedString* const known = registry().strings.lookup(text)) {
        ++known->_uses;
        return known;
    }
    return registry().strings.add(std::unique_ptr<TQSharedString>(new TQSharedString(text)), text);
}

void TQSharedString::use() {
    const std::lock_guard lock(registry().mutex);
    ++_uses;
}

bool TQSharedString::unuse() {
    const std::lock_guard lock(registry().mutex);
    if (--_uses > 0) {
        return false;
    }
    registry().strings.remove(_string);
    return true;
}

int TQSharedString::uses() const {
    const std::lock_guard lock(registry().mutex);
    return _uses;
}

TQSharedStringUse::TQSharedStringUse(TQSharedString* string) : _string(string) {
    if (_string != nullptr) {
        _string->use();
    }
}

TQSharedStringUse::TQSharedStringUse(TQSharedStringUse&& other) noexcept
    : _string(std::exchange(other._string, nullptr)) {}

TQSharedStringUse& TQSharedStringUse::operator=(TQSharedStringUse other) noexcept {
    std::swap(_string, other._string);
    return *this;
}

TQSharedStringUse::~TQSharedStringUse() {
    if (_string != nullptr) {
        _string->unuse();
    }
}
