#pragma once

#include "projection/TQProjection.h"

/// The placeholder that a manager hands out for a projection that cannot be found. It converts nothing:
/// its conversions answer 0 and leave their output as it is.
class TQPROJECTION_EXPORT TQDummyProjection : public TQProjection {
    TQ_IDENTITY(TQDummyProjection, TQProjection)

  public:
    /// A placeholder without name and ellipsoid.
    TQDummyProjection() = default;
    /// A copy of name and ellipsoid.
    TQDummyProjection(const TQDummyProjection&) = default;
    ~TQDummyProjection() override;
};
