#pragma once

#include "ellipsoid/TQEllipsoid.h"

#include <memory>

/// Owns at most one ellipsoid, and lets go of one that somebody else has destroyed.
///
/// A projection that was read from a file owns its ellipsoid here until a manager takes it over.
/// Callers may destroy the pair projection and ellipsoid one after the other, or the projection alone:
/// both are safe.
class TQPROJECTION_EXPORT TQEllipsoidSlot {
  public:
    TQEllipsoidSlot() = default;
    TQEllipsoidSlot(const TQEllipsoidSlot&) = delete;
    TQEllipsoidSlot& operator=(const TQEllipsoidSlot&) = delete;
    ~TQEllipsoidSlot();

    /// Owns an ellipsoid in place of the one before, which is destroyed.
    /// @param ellipsoid the ellipsoid, or null
    void reset(std::unique_ptr<TQEllipsoid> ellipsoid);

    /// Gives up the ellipsoid to the caller; null when there is none or it is gone.
    std::unique_ptr<TQEllipsoid> release();

  private:
    std::unique_ptr<TQEllipsoid> _ellipsoid;
    std::weak_ptr<const void> _life;
};
