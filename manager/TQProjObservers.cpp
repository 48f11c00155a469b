#include "manager/TQProjObservers.h"

#include <algorithm>
#include <utility>

void TQProjObservers::add(std::unique_ptr<TQProjNotificationUser> observer) {
    if (observer != nullptr) {
        _observers.push_back(std::move(observer));
    }
}

void TQProjObservers::removeFirstOf(const void* owner) {
    const auto found = std::ranges::find(_observers, owner, &TQProjNotificationUser::owner);
    if (found != _observers.end()) {
        const auto removed = std::move(*found); // dies when it is in the list no more
        _observers.erase(found);
    }
}

bool TQProjObservers::use(const TQProjection* projection) const {
    const auto present = _observers;
    return std::ranges::any_of(
        present, [projection](const auto& observer) { return observer->isUsingProjection(projection); });
}

void TQProjObservers::tellChange() const {
    for (const auto present = _observers; const auto& observer : present) {
        observer->projectionsDidChange();
    }
}

void TQProjObservers::tellReplacement(const TQProjection* old, TQProjection* replacement) const {
    for (const auto present = _observers; const auto& observer : present) {
        observer->replaceProjection(old, replacement);
    }
}
