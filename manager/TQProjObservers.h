#pragma once

#include "manager/TQProjNotificationUser.h"

#include <memory>
#include <vector>

/// The observers of a manager, in the order of their registration. Copies share them.
///
/// Observers are told one after the other as they were registered when the telling began: those that a
/// callback registers are told the next time, those that it unregisters live until the telling ends.
class TQProjObservers {
  public:
    /// Registers an observer.
    /// @param observer the observer; null is not registered
    void add(std::unique_ptr<TQProjNotificationUser> observer);

    /// Unregisters and deletes the first observer of an owner.
    /// @param owner the owner
    void removeFirstOf(const void* owner);

    /// Unregisters all observers.
    void clear() { _observers.clear(); }

    /// Whether an observer uses a projection; none is asked behind the first that does.
    /// @param projection the projection
    bool use(const TQProjection* projection) const;

    /// Tells that the set of projections changed.
    void tellChange() const;

    /// Tells that a projection takes the place of another.
    /// @param old the projection that was used, perhaps gone
    /// @param replacement the projection that takes its place
    void tellReplacement(const TQProjection* old, TQProjection* replacement) const;

  private:
    std::vector<std::shared_ptr<TQProjNotificationUser>> _observers;
};
