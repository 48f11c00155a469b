#pragma once

#include "projection/TQProjection.h"

/// The placeholder that a manager hands out for a projection that cannot be found. It converts nothing:
/// its conversions answer 0 and leave their output as it is.
class TQPROJECTION_EXPORT TQDummyProjection : public TQProjection {
    TQ_IDENTITY(TQDummyProjection, TQProjection)

  public:
    /// A placeholder without name and ellipsoid.
    TQDummyProjection() = default;
    /// A placeholder for a projection that was asked for.
    /// @param requestedName the name of that projection
    explicit TQDummyProjection(const TQString& requestedName) : _requestedName(requestedName) {}
    /// A copy of name and ellipsoid.
    TQDummyProjection(const TQDummyProjection&) = default;
    ~TQDummyProjection() override;

    /// The name of the projection that it stands for; it has none itself. Empty when nobody has told.
    const TQString& requestedName() const { return _requestedName; }

  private:
    TQString _requestedName;
};

/// The name that a projection has, or stands for: its own one; of a placeholder without one, that of the
/// projection which was asked for.
/// @param projection the projection, which owns the name
/// @return the name; null when it has none and nobody has told for which one it stands
TQPROJECTION_EXPORT const TQString* tq_nameOf(const TQProjection& projection);
