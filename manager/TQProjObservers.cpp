#include "manager/TQProjObservers.h"

#include <algorithm>
#include <iterator>
#include <utility>

void TQProjObservers::add(std::unique_ptr<TQProjNotificationUser> observer) {
    if (observer != nullptr) {
        const void* const owner = observer->owner();
        auto registration = std::make_shared<Registration>(Registration{std::move(observer)});
        _byOwner[owner].push_back(registration);
        _registrations.push_back(std::move(registration));
        noteChange();
    }
}

void TQProjObservers::removeFirstOf(const void* owner) {
    const auto known = _byOwner.find(owner);
    if (known == _byOwner.end()) {
        return;
    }
    std::shared_ptr<TQProjNotificationUser> dying; // not before the lists have let go of it
    auto& ofOwner = known->second;
    while (dying == nullptr && !ofOwner.empty()) { // a copy may have unregistered the first ones
        dying = std::move(ofOwner.front()->observer);
        ofOwner.pop_front();
    }
    if (ofOwner.empty()) {
        _byOwner.erase(known);
    }
    noteChange();
}

/// Drops what is gone, here and at copies, seldom enough to cost nothing.
void TQProjObservers::noteChange() {
    constexpr std::size_t few = 64;
    if (++_changes < few + _registrations.size() / 2) {
        return;
    }
    _changes = 0;
    const auto isGone = [](const auto& known) { return known->observer == nullptr; };
    std::erase_if(_registrations, isGone);
    for (auto known = _byOwner.begin(); known != _byOwner.end();) {
        std::erase_if(known->second, isGone);
        known = known->second.empty() ? _byOwner.erase(known) : std::next(known);
    }
}

// An observer that dies may unregister others. They die in the order of the list.
void TQProjObservers::clear() {
    _byOwner.clear();
    const auto dying = std::exchange(_registrations, {});
}

/// Asks one observer after the other until one answers true.
template <class Function>
bool TQProjObservers::any(Function answersTrue) const {
    const auto present = _registrations;
    return std::ranges::any_of(present, [&answersTrue](const auto& registration) {
        const std::shared_ptr<TQProjNotificationUser> observer = registration->observer;
        return observer != nullptr && answersTrue(*observer);
    });
}

bool TQProjObservers::use(const TQProjection* projection) const {
    return any([projection](const auto& observer) { return observer.isUsingProjection(projection); });
}

void TQProjObservers::tellChange() const {
    any([](auto& observer) {
        observer.projectionsDidChange();
        return false;
    });
}

void TQProjObservers::tellReplacement(const TQProjection* old,
                                      const TQWeakPointer<TQProjection>& replacement) const {
    any([old, &replacement](auto& observer) {
        TQProjection* const present = replacement.get();
        if (present != nullptr) {
            observer.replaceProjection(old, present);
        }
        return present == nullptr;
    });
}
