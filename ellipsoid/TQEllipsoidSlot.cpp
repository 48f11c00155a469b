#include "ellipsoid/TQEllipsoidSlot.h"

#include <utility>

TQEllipsoidSlot::~TQEllipsoidSlot() { reset(nullptr); }

void TQEllipsoidSlot::reset(std::unique_ptr<TQEllipsoid> ellipsoid) {
    const std::unique_ptr<TQEllipsoid> before = release();
    _ellipsoid = std::move(ellipsoid);
    if (_ellipsoid) {
        _life = _ellipsoid->lifeToken();
    }
}

std::unique_ptr<TQEllipsoid> TQEllipsoidSlot::release() {
    if (_ellipsoid && _life.expired()) {
        static_cast<void>(_ellipsoid.release()); // destroyed elsewhere, nothing is left to own
    }
    return std::move(_ellipsoid);
}
