#pragma once

#include "support/TQAnglePoint.h"
#include "support/TQPoint.h"
#include "tools/tqproj/ProjectionOperation.h"

#include <optional>

/// A projection as maps need it: points in degrees that may have no image.
class MapProjection {
  public:
    /// @param projection the projection; must outlive this object
    explicit MapProjection(const TQProjection& projection);

    /// The projection.
    const TQProjection& projection() const { return _projection; }

    /// The image of a point; nothing where there is none.
    /// @param geographic longitude and latitude in degrees
    std::optional<TQPoint> toPlane(const TQPoint& geographic) const;

    /// The point of an image; nothing where there is none.
    /// @param plane x and y
    /// @return longitude and latitude in degrees
    std::optional<TQPoint> toGeographic(const TQPoint& plane) const;

    /// The direction in which a meridian or a parallel leaves a point, of length 1; one of its two senses.
    /// @param geographic longitude and latitude in degrees, of a point that has an image
    TQPoint meridianDirection(const TQPoint& geographic) const;
    /// The direction in which a parallel leaves a point, as meridianDirection().
    /// @param geographic longitude and latitude in degrees, of a point that has an image
    TQPoint parallelDirection(const TQPoint& geographic) const;

    /// Whether the coordinates of images are lengths; those of a geographic system are angles.
    bool isPlane() const { return _isPlane; }

    /// The meridian that longitudes are counted from, in degrees from Greenwich.
    double primeMeridian() const { return _primeMeridian; }

    /// The metres of the plane's unit.
    double metresOfUnit() const { return _metresOfUnit; }

    /// The circumference of the Earth in the plane's unit.
    double circumference() const;

  private:
    TQAnglePoint asTaken(const TQPoint& geographic) const;

    const TQProjection& _projection;
    ProjectionOperation _toPlane;
    ProjectionOperation _toGeographic;
    bool _isPlane = true;
    double _primeMeridian = 0.0;
    double _metresOfUnit = 1.0;
    double _angularUnit = 1.0; // that the projection takes degrees for, in degrees
};
