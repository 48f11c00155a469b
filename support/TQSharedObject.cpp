#include "support/TQSharedObject.h"

#include "support/HashTbl.h"
#include "support/TQEverlasting.h"

#include <mutex>
#include <utility>

namespace {

/// The objects registered. At the end of the process they leave one by one, each before it is destroyed: a
/// destructor may call the registry, which stays.
struct Registry {
    std::unique_ptr<TQSharedObject> takeAny() {
        const std::lock_guard lock(mutex);
        HashState<TQSharedObject> fromTheStart;
        return objects.unlink(objects.next(fromTheStart));
    }

    std::mutex mutex;
    HashTbl<TQSharedObject> objects;
};

/// Destroys what is left in a registry.
struct LastUser {
    Registry& registry;

    ~LastUser() {
        while (registry.takeAny()) {
        }
    }
};

Registry& registry() {
    static TQEverlasting<Registry> instance;
    static const LastUser lastUser{*instance};
    return *instance;
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
