#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

namespace tq::formulas {

/// A three-parameter datum shift by the abridged Molodensky formulas, heights left out.
///
/// Source: DMA TR 8350.2 and EPSG Guidance Note 7-2, method 9605. Accurate to a few metres beside the
/// geocentric translation that it approximates. The shift in longitude divides by the cosine of the
/// latitude and has no meaning at the poles.
struct AbridgedMolodensky {
    double tx;                  ///< translation in metres
    double ty;                  ///< translation in metres
    double tz;                  ///< translation in metres
    double factor;              ///< difference of the two ellipsoids, a·Δf + f·Δa, in metres
    double semiMajorAxis;       ///< of the ellipsoid that the point is on
    double eccentricitySquared; ///< of the ellipsoid that the point is on

    /// The point on the other datum.
    template <class T>
    Geographic<T> shifted(const Geographic<T>& point) const {
        using std::sqrt;
        const auto [sinPhi, cosPhi] = sinCos(point.phi);
        const auto [sinLambda, cosLambda] = sinCos(point.lambda);
        const T w2 = 1.0 - eccentricitySquared * sinPhi * sinPhi;
        const T n = semiMajorAxis / sqrt(w2);
        const T m = (1.0 - eccentricitySquared) * semiMajorAxis / (w2 * sqrt(w2));
        const T dLambda = (cosLambda * ty - sinLambda * tx) / (n * cosPhi);
        const T dPhi = (2.0 * sinPhi * cosPhi * factor - tx * sinPhi * cosLambda - ty * sinPhi * sinLambda +
                        tz * cosPhi) /
                       m;
        return {point.lambda + dLambda, point.phi + dPhi};
    }
};

} // namespace tq::formulas
