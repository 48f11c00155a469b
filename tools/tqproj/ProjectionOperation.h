#pragma once

#include "tools/tqproj/PointOperation.h"

class TQProjection;

/// Converts points through a projection, within its area.
class ProjectionOperation : public PointOperation {
  public:
    /// @param projection the projection; must outlive this object
    /// @param direction the way of the conversion
    ProjectionOperation(const TQProjection& projection, Direction direction);

    std::string_view convert(const TQPoint& in, TQPoint& out) const override;

  private:
    const TQProjection& _projection;
    Direction _direction;
    double _angularUnit; // that the projection takes degrees for, in degrees
};
