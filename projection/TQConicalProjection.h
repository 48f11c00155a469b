#pragma once

#include "projection/TQProjection.h"

/// Middle class of the projections whose parallels are arcs around one point: it holds the apex.
class TQPROJECTION_EXPORT TQConicalProjection : public TQProjection {
    TQ_ABSTRACT_IDENTITY(TQConicalProjection, TQProjection)

  public:
    ~TQConicalProjection() override;

    /// Writes block "TQConicalProjection", version 0: the base block and the apex.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const override;

    /// Reads block "TQConicalProjection", version 0.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream) override;

    /// Circular arcs.
    int parallelShape() const override { return CircularArc; }

    /// The apex.
    TQPoint center() const override { return _apex; }

  protected:
    TQConicalProjection() = default;

    /// A copy of what every projection has; the apex is computed anew by initConstants().
    /// @param other the projection to copy
    TQConicalProjection(const TQConicalProjection& other) : TQProjection(other) {}

    TQPoint _apex; ///< centre of the parallels on the plane
};
