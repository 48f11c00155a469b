#include "manager/TQProjObservers.h"

#include <algorithm>
#include <utility>

void TQProjObservers::add(std::unique_ptr<TQProjNotificationUser> observer) {
    if (observer != nullptr) {
        _registrations.push_back(std::make_shared<Registration>(Registration{std::move(observer)}));
    }
}

void TQProjObservers::removeFirstOf(const void* owner) {
    auto behind = std::ranges::find_if(_registrations, [owner](const auto& known) {
        return known->observer != nullptr && known->observer->owner() == owner;
    });
    std::shared_ptr<TQProjNotificationUser> dying; // not before the list has let go of it
    if (behind != _registrations.end()) {
        dying = std::move((*behind)->observer);
        ++behind;
    }
    const auto isGone = [](const auto& known) { return known->observer == nullptr; };
    _registrations.erase(std::remove_if(_registrations.begin(), behind, isGone), behind);
}

// An observer that dies may unregister others.
void TQProjObservers::clear() { const auto dying = std::exchange(_registrations, {}); }

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
