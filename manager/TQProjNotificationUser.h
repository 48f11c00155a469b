#pragma once

#include "TQProjectionExport.h"

class TQProjection;

/// Observes the projections of a manager, on behalf of an object such as a map grid. The manager owns it
/// from its registration on. Its callbacks may register, unregister, load and destroy, but not destroy the
/// manager that calls them.
class TQPROJECTION_EXPORT TQProjNotificationUser {
  public:
    /// An observer.
    /// @param owner the object on whose behalf it observes, by which it is unregistered; not owned
    explicit TQProjNotificationUser(void* owner) : _owner(owner) {}
    TQProjNotificationUser(const TQProjNotificationUser&) = delete;
    TQProjNotificationUser& operator=(const TQProjNotificationUser&) = delete;
    virtual ~TQProjNotificationUser();

    /// Whether the observer uses a projection.
    /// @param projection the projection
    virtual bool isUsingProjection(const TQProjection* projection) const = 0;

    /// Called after the set of projections changed.
    virtual void projectionsDidChange() = 0;

    /// Called when another projection takes the place of one; the observer switches every reference over.
    /// @param old the projection that was used, for comparison only: it need not live any more
    /// @param replacement the projection that takes its place
    virtual void replaceProjection(const TQProjection* old, TQProjection* replacement) = 0;

    /// The object on whose behalf it observes.
    void* owner() const { return _owner; }

  private:
    void* _owner;
};
