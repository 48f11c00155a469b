#pragma once

#include "tools/tqproj/PointOperation.h"

class TQGeoCSTrans;

/// Transforms points from one geographic reference system to another. Its angles are degrees, which PROJ is
/// given as they are: a system to itself keeps every digit.
class TransformationOperation : public PointOperation {
  public:
    /// @param transformation the transformation; must outlive this object
    /// @param direction the way of the conversion
    TransformationOperation(TQGeoCSTrans& transformation, Direction direction)
        : _transformation(transformation), _direction(direction) {}

    bool accepts(const TQPoint& point) const override { return !isBeyondPole(point.y, turn); }

    /// PROJ takes longitudes at any turn, but chooses the operation of a point by areas that lie within half
    /// a one.
    TQPoint atNearestTurn(const TQPoint& point) const override { return withinHalfTurn(point, turn); }

    std::string convert(const TQPoint& in, TQPoint& out) const override;

  private:
    static constexpr double turn = 360.0;

    TQGeoCSTrans& _transformation;
    Direction _direction;
};
