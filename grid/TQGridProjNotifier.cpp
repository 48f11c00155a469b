#include "grid/TQGridProjNotifier.h"

TQGridProjNotifier::TQGridProjNotifier(TQGrid* grid) : TQProjNotificationUser(grid), _grid(grid) {}

TQGridProjNotifier::~TQGridProjNotifier() {
    if (TQGrid* const grid = _grid.get()) {
        grid->leaveManager();
    }
}

bool TQGridProjNotifier::isUsingProjection(const TQProjection* projection) const {
    const TQGrid* const grid = _grid.get();
    return grid != nullptr && projection != nullptr && grid->projection() == projection;
}

void TQGridProjNotifier::projectionsDidChange() {
    if (TQGrid* const grid = _grid.get()) {
        grid->noteChange();
    }
}

void TQGridProjNotifier::replaceProjection(const TQProjection* old, TQProjection* replacement) {
    TQGrid* const grid = _grid.get();
    if (grid != nullptr && grid->_projection.wasGiven(old)) {
        grid->setProjection(replacement);
    }
}
