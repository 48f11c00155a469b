#pragma once

#include "projection/TQDomain.h"
#include "projection/TQPointRuns.h"
#include "projection/TQProjection.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>

// How domains are asked. Internal: the header is not installed.

/// The turn of a longitude that is nearest to a central meridian.
/// @param longitude in radians; what is not finite, within half a turn, or too large to tell a place comes
///        back as it is
/// @param centralMeridian in radians
double tq_atNearestTurn(double longitude, double centralMeridian);

/// The domain of a projection, asked for one point or for those of a run.
class TQDomainCheck {
  public:
    /// @param projection the projection, which must outlive this object
    /// @param domain its domain
    TQDomainCheck(const TQProjection& projection, const TQDomain& domain);

    /// Why the image of a geographic point in radians, its longitude as it is, is not right; null if it is.
    const char* whyNoImage(const TQPoint& geo) const;

    /// Why a geographic point in radians that a conversion has come to is not right; null if it is.
    const char* whyNotGeographic(const TQPoint& geo) const;

    /// Why a plane point cannot be converted back, as far as it tells itself; null if it can.
    const char* whyNoOriginal(const TQPoint& global) const;

    /// Marks the points of a run that are beyond, before they are converted to the plane.
    /// @param geo the points
    /// @param marks receives for each whether it is
    void markWithoutImage(std::span<const TQPoint> geo, std::span<bool> marks) const;

    /// The same before they are converted back, as far as they tell themselves.
    void markWithoutOriginal(std::span<const TQPoint> global, std::span<bool> marks) const;

    /// Marks more of them by what they were converted to.
    void markNotGeographic(std::span<const TQPoint> geo, std::span<bool> marks) const;

  private:
    const char* whyNever(const TQPoint& point) const;
    TQPoint localOf(const TQPoint& geo) const;

    const TQProjection& _projection;
    TQDomain _domain;
    const char* _whyNowhere = nullptr;   // why nothing is right
    const TQEllipsoid* _local = nullptr; // whose datum shift leads to the projection's own datum
    double _shiftLimit = std::numeric_limits<double>::infinity(); // latitude to which it does
    TQDomain::Rectangle _certain;          // geographic points that need no closer look
    TQDomain::Rectangle _certainImages;    // those that need none before they are converted
    TQDomain::Rectangle _certainOriginals; // plane points that need none
};

/// Tells the points of a batch that are beyond the domain, if anybody wants to know.
class TQBatchDomain {
  public:
    /// @param projection the projection, which must outlive this object
    /// @param domain its domain; none when nobody wants to know, too
    TQBatchDomain(const TQProjection& projection, const std::optional<TQDomain>& domain) {
        if (domain) {
            _check.emplace(projection, *domain);
        }
    }

    /// To be called with the points of a run before they are converted to the plane.
    void beforeToPlane(std::span<const TQPoint> geo) {
        if (_check) {
            _check->markWithoutImage(geo, marks(geo.size()));
        }
    }

    /// To be called with the points of a run before they are converted back.
    void beforeToGeographic(std::span<const TQPoint> global) {
        if (_check) {
            _check->markWithoutOriginal(global, marks(global.size()));
        }
    }

    /// To be called with what they were converted to, in radians.
    void afterToGeographic(std::span<const TQPoint> geo) {
        if (_check) {
            _check->markNotGeographic(geo, marks(geo.size()));
        }
    }

    /// Tells in the statuses of the run which of the points that were converted are beyond.
    void tell(std::span<signed char> statuses) const {
        for (std::size_t index = 0; _check && index < statuses.size(); ++index) {
            if (_marks[index] && statuses[index] == TQProjection::Converted) {
                statuses[index] = TQProjection::BeyondDomain;
            }
        }
    }

  private:
    std::span<bool> marks(std::size_t count) { return std::span(_marks).first(count); }

    std::optional<TQDomainCheck> _check;
    std::array<bool, tq_longestRun> _marks{};
};
