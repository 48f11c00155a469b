#pragma once

#include "support/TQAnglePoint.h"
#include "support/TQRect.h"

class TQProjection;

/// Measures of a projection that are taken by converting points: directions of meridians, parallels and
/// north, and the plane extent of a geographic rectangle. TQProjection documents and offers them.
class TQPlaneMeasures {
  public:
    /// The measures of a projection, which must outlive this object.
    explicit TQPlaneMeasures(const TQProjection& projection) : _projection(projection) {}

    double parallelTangentAt(const TQAnglePoint& geo) const;
    double meridianTangentAt(const TQAnglePoint& geo) const;
    double northAngleAt(const TQPoint& geo) const;
    TQRect planeExtent(const TQAnglePoint& geoMin, const TQAnglePoint& geoMax) const;

  private:
    bool begin(const TQAnglePoint& geo, const char* measure, TQPoint& point, TQPoint& image) const;
    TQPoint imageOf(const TQPoint& geo, const TQPoint& whenFailed) const;
    TQPoint probedImage(const TQPoint& geo, const TQPoint& whenFailed) const;
    double curveDirection(const TQPoint& point, const TQPoint& image, const TQPoint& along) const;
    bool probe(const TQPoint& point, const TQPoint& image, const TQPoint& along, TQPoint& probed) const;
    double arcDirection(const TQPoint& image) const;

    const TQProjection& _projection;
};
