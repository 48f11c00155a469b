#include "support/TQSharedObject.h"

#include "support/HashTbl.h"

#include <mutex>
#include <utility>

namespace {

/// The objects registered. At the end of the process they leave one by one, each before it is destroyed: a
/// destructor may call the registry.
struct Registry {
    std::mutex mutex;
    HashTbl<TQSharedObject> objects;

    Registry() = default;
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;
    ~Registry() {
        while (takeAny()) {
        }
    }

    std::unique_ptr<TQSharedObject> takeAny() {
        const std::lock_guard lock(mutex);
        HashState<TQSharedObject> fromTheStart;
        return objects.unlink(objects.next(fromTheStart));
    }
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

TQSharedObject::TQSharedObject(const TQString& key) : _key(key) {}

TQSharedObject::TQSharedObject(const TQSharedObject& other) = default;

TQSharedObject::~TQSharedObject() = default;

void TQSharedObject::addAppSharedObject(std::unique_ptr<TQSharedObject> object) {
    if (object == nullptr) {
        return;
    }
    std::unique_ptr<TQSharedObject> old; // destroyed after the lock is gone: it may call the registry
    const std::lock_guard lock(registry().mutex);
    const TQString key = object->sharedKey();
    old = registry().objects.remove(key);
    registry().objects.add(std::move(object), key);
}

TQSharedObject* TQSharedObject::sharedAppObjectForKey(const TQString& key) {
    const std::lock_guard lock(registry().mutex);
    return registry().objects.lookup(key);
}

std::unique_ptr<TQSharedObject> TQSharedObject::removeAppSharedObject(const TQString& key) {
    const std::lock_guard lock(registry().mutex);
    return registry().objects.remove(key);
}
