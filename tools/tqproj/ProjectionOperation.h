#pragma once

#include "tools/tqproj/PointOperation.h"

#include <memory>

class TQProjection;

/// What becomes of points that a projection converts, but not rightly: those beyond its domain.
enum class BeyondDomain {
    Refuse, ///< they have no result
    Convert ///< they have the result that the projection gives
};

/// Converts points through a projection, within its area.
class ProjectionOperation : public PointOperation {
  public:
    /// @param projection the projection; must outlive this object
    /// @param direction the way of the conversion
    /// @param beyond what becomes of points beyond the domain of the projection
    ProjectionOperation(const TQProjection& projection, Direction direction, BeyondDomain beyond);

    /// @param projection the projection, which the object owns
    /// @param direction the way of the conversion
    /// @param beyond what becomes of points beyond the domain of the projection
    ProjectionOperation(std::unique_ptr<const TQProjection> projection, Direction direction,
                        BeyondDomain beyond);

    ~ProjectionOperation() override;
    ProjectionOperation(const ProjectionOperation&) = delete;
    ProjectionOperation& operator=(const ProjectionOperation&) = delete;

    std::string convert(const TQPoint& in, TQPoint& out) const override;
    bool accepts(const TQPoint& point) const override;
    TQPoint atNearestTurn(const TQPoint& point) const override;
    void convertAll(std::span<TQPoint> points) const override;

    /// An operation with a projection of its own, on the same ellipsoid.
    std::unique_ptr<PointOperation> copy() const override;

  private:
    bool isBeyondPole(const TQPoint& point) const;
    const char* whyBeyondDomain(const TQPoint& point) const;
    void convertAll(std::span<TQPoint> points, std::span<signed char> statuses) const;

    std::unique_ptr<const TQProjection> _ownProjection; // null when somebody else owns it
    const TQProjection& _projection;
    Direction _direction;
    BeyondDomain _beyond;
    bool _isByArea;      // whether PROJ chooses among operations by areas, which lie within half a turn
    double _angularUnit; // that the projection takes degrees for, in degrees
    double _inverseTurn; // a whole turn in the unit of x and y, where these are longitude and latitude; or 0
};
