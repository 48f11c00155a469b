#pragma once

#include "TQProjectionExport.h"
#include "support/TQPoint.h"

#include <limits>
#include <numbers>

class TQProjection;

/// Where the conversions of a projection are as accurate as its class says: a rectangle of longitudes and
/// latitudes, one of the plane, and what no rectangle tells. Conversions beyond it go on as they do; this is
/// how a projection knows that they are no longer right.
///
/// Longitudes are counted from the central meridian on the datum of the points that are handed over,
/// latitudes are those on the projection's own datum; all are in radians. A reason is the end of a sentence
/// in English: "more than 45 degrees from the central meridian".
struct TQPROJECTION_EXPORT TQDomain {
    /// A rectangle with its borders; without limits unless they are given.
    struct Rectangle {
        double west = -std::numeric_limits<double>::infinity();  ///< least x
        double east = std::numeric_limits<double>::infinity();   ///< greatest x
        double south = -std::numeric_limits<double>::infinity(); ///< least y
        double north = std::numeric_limits<double>::infinity();  ///< greatest y

        /// Whether a point lies within; one that is not a number does not.
        constexpr bool contains(const TQPoint& point) const {
            // Without branches, so that many points are compared at once.
            return ((point.x >= west) & (point.x <= east) & (point.y >= south) & (point.y <= north)) != 0;
        }

        /// A rectangle that contains no point.
        static constexpr Rectangle nothing() { return {.west = 1.0, .east = -1.0}; }
    };

    /// Half a turn, and what rounding may add to it.
    static constexpr double halfTurn = std::numbers::pi + 1e-9;
    /// The latitude of the north pole, and what rounding may add to it.
    static constexpr double pole = std::numbers::pi / 2.0 + 1e-9;

    /// Why a point cannot be converted rightly, by what no rectangle tells; null when it can.
    /// @param projection the projection, of the class that states the domain
    /// @param point longitude as handed over and latitude on the projection's own datum in radians, or a
    ///        plane point in metres
    using Why = const char* (*)(const TQProjection& projection, const TQPoint& point);

    /// A domain in which nothing can be converted rightly.
    /// @param reason why
    static constexpr TQDomain nowhere(const char* reason) {
        return {.geographic = Rectangle::nothing(),
                .beyondReach = reason,
                .plane = Rectangle::nothing(),
                .beyondPlane = reason};
    }

    /// The largest squared eccentricity of an ellipsoid: twice that of the Earth. Series are cut off, and
    /// iterations end, for ellipsoids like it.
    double flattest = 0.015;

    /// What lengths on the plane are proportional to: a radius or factor of the projection. One of 0 gives
    /// all points the same image, one below mirrors them.
    double scale = 1.0;

    double centralMeridian = 0.0; ///< where longitudes are counted from, radians
    bool wrapsLongitudes = false; ///< whether conversions take a whole turn of the longitude for none

    Rectangle geographic{-halfTurn, halfTurn, -pole, pole}; ///< the longitudes and latitudes
    const char* beyondReach = "more than half a turn from the central meridian"; ///< west or east of them
    const char* beyondLatitudes = "beyond a pole";                               ///< south or north of them

    Rectangle plane{};                 ///< the plane points that can be converted back
    const char* beyondPlane = nullptr; ///< the others

    Why whyNoImage = nullptr;              ///< about a geographic point that is to be converted to the plane
    Rectangle core = Rectangle::nothing(); ///< where it answers null for certain; batches do not ask it there
    Why whyNoOriginal = nullptr;           ///< about a plane point
    Rectangle planeCore = Rectangle::nothing(); ///< where it answers null for certain
};
