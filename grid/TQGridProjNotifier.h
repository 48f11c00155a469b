#pragma once

#include "TQProjectionExport.h"

#include "grid/TQGrid.h"
#include "manager/TQProjNotificationUser.h"
#include "support/TQWeakPointer.h"

/// Observes a manager for a map grid, which it lets follow its projection. It dies with the manager, or when
/// the grid is bound to another one; until then the grid may be destroyed, after which it observes for
/// nobody.
///
/// A grid has one notifier at a time, which TQGrid::setProjMgr() makes and registers. With the death of
/// another one the grid would do without its manager.
class TQPROJECTION_EXPORT TQGridProjNotifier : public TQProjNotificationUser {
  public:
    /// An observer for a grid, which is also its owner in the manager.
    /// @param grid the grid, not null; not owned
    explicit TQGridProjNotifier(TQGrid* grid);
    TQGridProjNotifier(const TQGridProjNotifier&) = delete;
    TQGridProjNotifier& operator=(const TQGridProjNotifier&) = delete;

    /// Tells the grid that nobody observes for it any more; the manager is not touched.
    ~TQGridProjNotifier() override;

    /// Whether the grid's projection is the given one.
    /// @param projection the projection; null is used by nobody
    bool isUsingProjection(const TQProjection* projection) const override;

    /// Lets the grid remember the name that its projection has now, and forget a projection that is gone but
    /// for its name; the grid is not changed otherwise.
    void projectionsDidChange() override;

    /// Gives the grid another projection if the old one is its projection, or was it and has gone since the
    /// last change was told.
    /// @param old the projection that was used, be it gone or not
    /// @param replacement the projection that takes its place
    void replaceProjection(const TQProjection* old, TQProjection* replacement) override;

  private:
    TQWeakPointer<TQGrid> _grid;
};
