#pragma once

#include "support/TQPoint.h"

#include <cmath>
#include <memory>
#include <span>
#include <string>

/// The way an operation goes.
enum class Direction {
    Forward, ///< from longitude and latitude to x and y, or from the source to the target
    Inverse  ///< back
};

/// What is done to the coordinates of a point between reading and writing them.
class PointOperation {
  public:
    virtual ~PointOperation() = default;

    /// Converts a point; angles are radians, or what the operation says.
    /// @param in the point, finite
    /// @param out receives the result, finite if there is one
    /// @return why there is no result; empty when there is one
    virtual std::string convert(const TQPoint& in, TQPoint& out) const = 0;

    /// Whether a point lies where the operation is meant for; convert() refuses any other.
    /// @param point the point, finite
    virtual bool accepts([[maybe_unused]] const TQPoint& point) const { return true; }

    /// The same place with its longitude at the turn at which the operation takes it; a point itself where
    /// the operation sees to turns, or the point is none of longitude and latitude.
    /// @param point the point, finite
    virtual TQPoint atNearestTurn(const TQPoint& point) const { return point; }

    /// Converts many points, each to the result that it has alone.
    /// @param points the points, finite and accepted; receive the results, not finite where there is none
    virtual void convertAll(std::span<TQPoint> points) const;

    /// The same operation for another thread, valid as long as what this one was made of; null when an
    /// operation is for one thread alone.
    virtual std::unique_ptr<PointOperation> copy() const { return nullptr; }
};

/// A point in a unit so many times as great.
inline TQPoint dividedBy(const TQPoint& point, double unit) { return {point.x / unit, point.y / unit}; }

/// A point in a unit so many times as small.
inline TQPoint multipliedBy(const TQPoint& point, double unit) { return {point.x * unit, point.y * unit}; }

/// The same place with its longitude within half a turn of 0.
/// @param point longitude and latitude
/// @param turn a whole turn in their unit
inline TQPoint withinHalfTurn(const TQPoint& point, double turn) {
    const bool isWithin = std::abs(point.x) <= turn / 2.0;
    return {isWithin ? point.x : std::remainder(point.x, turn), point.y};
}

/// Why a place with a latitude beyond a pole has no result.
constexpr const char* beyondPole = "the latitude lies beyond a pole";

/// Whether a latitude lies beyond a pole, by more than rounding makes of the pole itself.
/// @param latitude the latitude
/// @param turn a whole turn in its unit
inline bool isBeyondPole(double latitude, double turn) {
    constexpr double rounding = 1e-12;
    return std::abs(latitude) > turn / 4.0 * (1.0 + rounding);
}

/// The distance of two points of a plane.
inline double distanceBetween(const TQPoint& one, const TQPoint& other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

/// Whether both coordinates of a point are finite.
inline bool isFinite(const TQPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); }
