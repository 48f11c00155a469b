#pragma once

#include "manager/TQProjNotificationUser.h"
#include "projection/TQProjection.h"
#include "support/TQWeakPointer.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

/// The observers of a manager, in the order of their registration. Copies share those that there were when
/// they were made: one that is unregistered at any of them is gone for all.
///
/// Observers are told one after the other as they were registered when the telling began: those that a
/// callback registers are told the next time, those that it unregisters are not told any more. One that is
/// unregistered while it is being told lives until it has answered.
///
/// Registering and unregistering take the same time however many there are.
class TQProjObservers {
  public:
    /// Registers an observer.
    /// @param observer the observer; null is not registered
    void add(std::unique_ptr<TQProjNotificationUser> observer);

    /// Unregisters and deletes the first observer of an owner.
    /// @param owner the owner
    void removeFirstOf(const void* owner);

    /// Unregisters all observers.
    void clear();

    /// Whether an observer uses a projection; none is asked behind the first that does.
    /// @param projection the projection
    bool use(const TQProjection* projection) const;

    /// Tells that the set of projections changed.
    void tellChange() const;

    /// Tells that a projection takes the place of another.
    /// @param old the projection that was used, perhaps gone
    /// @param replacement the projection that takes its place; nobody is told of one that is gone
    void tellReplacement(const TQProjection* old, const TQWeakPointer<TQProjection>& replacement) const;

  private:
    /// An observer, and null once it is unregistered.
    struct Registration {
        std::shared_ptr<TQProjNotificationUser> observer;
    };

    template <class Function>
    bool any(Function answersTrue) const;
    void noteChange();

    std::vector<std::shared_ptr<Registration>> _registrations;
    std::unordered_map<const void*, std::deque<std::shared_ptr<Registration>>> _byOwner;
    std::size_t _changes = 0; // since what is gone was dropped from both
};
