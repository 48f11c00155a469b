#pragma once

#include "projection/TQStatedProjection.h"

/// The sinusoidal projection of the sphere (Snyder, Map Projections - A Working Manual, 1987, equations 30-1,
/// 30-2, 30-6 and 30-7), whose radius is the semi-major axis of the ellipsoid: an example of a class of one's
/// own, which files and documents know once it is registered:
///
///     tq_registerProjectionClass<SinusoidalProjection>();
///
/// Two definitions are the same with lambda0 within 1e-6. Text block "SinusoidalProjection v1"; codes: 9001
/// not opened, 9002 no block version, 9003 unknown version, 9004 no lambda0, 9005 write failure. Archive
/// block "SinusoidalProjection", version 0.
class SinusoidalProjection : public TQStatedProjection<SinusoidalProjection, TQProjection> {
    TQ_PROJECTION(SinusoidalProjection, TQProjection, 90, "Sinusoidal")

  public:
    SinusoidalProjection() = default;

    /// A copy of the name, the ellipsoid and the parameter.
    /// @param other the projection to copy
    SinusoidalProjection(const SinusoidalProjection& other);
    ~SinusoidalProjection() override = default;

    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override;
    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override;

    /// Straight lines.
    int parallelShape() const override { return StraightLine; }

  private:
    double lambda0 = 0.0; // central meridian, degrees
};
