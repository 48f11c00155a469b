#pragma once

#include "support/TQPoint.h"

#include <functional>
#include <optional>
#include <vector>

/// A cubic Bézier curve that goes on from where another one ends.
struct CubicArc {
    TQPoint firstControl;  ///< the tangent at the start leads here
    TQPoint secondControl; ///< the tangent at the end comes from here
    TQPoint end;           ///< where it ends
};

/// A smooth line without gaps.
struct CurvePiece {
    TQPoint start;              ///< where it begins
    std::vector<CubicArc> arcs; ///< how it goes on; at least one

    /// Where it ends.
    const TQPoint& end() const { return arcs.back().end; }
};

/// A curve over the parameters from 0 to 1; it may have gaps.
using Curve = std::function<std::optional<TQPoint>(double)>;

/// Draws curves by cubic arcs that have their tangents, so that no corner shows however large they are drawn:
/// as many arcs as it takes to be near the curve. A curve that jumps, at the 180th meridian or at a singular
/// point, is broken there and nothing is drawn across; one that ends is followed to its end.
class CurveTracer {
  public:
    /// @param tolerance how far the arcs may be from their curve
    explicit CurveTracer(double tolerance) : _tolerance(tolerance) {}

    /// The pieces of a curve.
    /// @param curve the curve
    /// @param parts how many parts of it are looked at in any case; what is smaller may be overlooked
    std::vector<CurvePiece> traced(const Curve& curve, int parts) const;

  private:
    double _tolerance;
};
