#pragma once

#include "tools/tqproj/PointOperation.h"

#include <memory>

class TQProjection;

/// Converts points through a projection, within its area.
class ProjectionOperation : public PointOperation {
  public:
    /// @param projection the projection; must outlive this object
    /// @param direction the way of the conversion
    ProjectionOperation(const TQProjection& projection, Direction direction);

    /// @param projection the projection, which the object owns
    /// @param direction the way of the conversion
    ProjectionOperation(std::unique_ptr<const TQProjection> projection, Direction direction);

    ~ProjectionOperation() override;
    ProjectionOperation(const ProjectionOperation&) = delete;
    ProjectionOperation& operator=(const ProjectionOperation&) = delete;

    std::string_view convert(const TQPoint& in, TQPoint& out) const override;
    bool accepts(const TQPoint& point) const override;
    void convertAll(std::span<TQPoint> points) const override;

    /// An operation with a projection of its own, on the same ellipsoid.
    std::unique_ptr<PointOperation> copy() const override;

  private:
    std::unique_ptr<const TQProjection> _ownProjection; // null when somebody else owns it
    const TQProjection& _projection;
    Direction _direction;
    double _angularUnit; // that the projection takes degrees for, in degrees
};
