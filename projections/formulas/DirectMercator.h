#pragma once

#include "projections/formulas/IsometricLatitude.h"
#include "projections/formulas/LongitudeWrap.h"

namespace tq::formulas {

/// Metres per radian of longitude at a latitude: the radius of the parallel.
/// @param a semi-major axis in metres, times the scale factor where there is one
/// @param e2 first eccentricity squared
/// @param phi0 latitude of true scale in radians
inline double parallelRadius(double a, double e2, double phi0) {
    const double sinPhi0 = std::sin(phi0);
    return a * std::cos(phi0) / std::sqrt(1.0 - e2 * sinPhi0 * sinPhi0);
}

/// Direct (normal aspect) Mercator with a latitude scale factor (Snyder, equations 7-6 to 7-9; EPSG
/// Guidance Note 7-2, methods 9804 and 9805).
struct DirectMercator {
    double _scale = 0.0;          ///< metres per radian of longitude
    double _eastingOffset = 0.0;  ///< easting of longitude 0
    double _northingOffset = 0.0; ///< northing of the equator

    /// Constants of the ellipsoid and the parameters that the direct form takes part in.
    /// @param scale metres per radian of longitude
    /// @param lambda0 central meridian in radians
    /// @param phi0 latitude of origin in radians
    /// @param falseOrigin false easting and false northing
    /// @param e first eccentricity
    /// @param s latitude scale factor
    void init(double scale, double lambda0, double phi0, const Plane<double>& falseOrigin, double e,
              double s) {
        _scale = scale;
        _eastingOffset = falseOrigin.x - scale * lambda0;
        _northingOffset = falseOrigin.y - scale * isometricLatitude(phi0, e, s);
    }

    /// The plane point of a geographic one; lambda0 is the central meridian in radians.
    template <class T>
    Plane<T> forward(const Geographic<T>& point, double lambda0, double e, double s) const {
        const T lambda = wrappedTowards(point.lambda, lambda0);
        return {lambda * _scale + _eastingOffset,
                isometricLatitude(point.phi, e, s) * _scale + _northingOffset};
    }

    /// The geographic point of a plane one; the longitude is not wrapped.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point, double e, double s) const {
        return {(point.x - _eastingOffset) / _scale,
                inverseIsometricLatitude((point.y - _northingOffset) / _scale, e, s).value};
    }
};

} // namespace tq::formulas
