#include "projection/TQDomainCheck.h"

#include "ellipsoid/TQEllipsoid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace {

constexpr const char* notFinite = "no finite coordinates";
constexpr const char* placeless = "at a longitude too large to tell a place";
constexpr const char* tooFlat = "on an ellipsoid too flat for the accuracy that is stated";
constexpr const char* withoutScale = "on a plane without a scale, as an axis or a factor is none";
constexpr const char* atPoleOfShift =
    "within a degree of a pole, where a datum shift of three parameters has no meaning";

/// The largest longitude that tells a place, in radians: its last bit is a tenth of a millimetre.
constexpr double largestLongitude = 1e5;

/// A latitude, in radians, beyond which a datum shift of three parameters is not asked: it divides by the
/// cosine of the latitude.
constexpr double molodenskyLimit = std::numbers::pi * 89.0 / 180.0;

/// Why nothing can be converted rightly, whatever the class; null when something can.
const char* whyNowhere(const TQEllipsoid* on, const TQDomain& domain) {
    const double a = on != nullptr ? on->semiMajorAxis() : 1.0;
    const double e2 = on != nullptr ? on->eccentricitySquared() : 0.0;
    const TQDomain::Rectangle sizes{.west = 1e-3, .east = 1e12, .south = 1e-3, .north = 1e12};
    const bool isRound = e2 >= 0.0 && e2 <= domain.flattest;
    return !isRound ? tooFlat : sizes.contains({a, domain.scale}) ? nullptr : withoutScale;
}

bool isFinite(const TQPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

/// What a datum shift as small as those of the Earth changes a latitude by at the most, in radians; infinite
/// for larger ones.
double latitudeMargin(const TQEllipsoid& ellipsoid) {
    constexpr double largestTranslation = 10000.0; // metres
    constexpr double largestRotation = 0.001;      // radians
    constexpr double largestFlattening = 0.01;
    const auto [dx, dy, dz, rx, ry, rz, scalePpm] = ellipsoid.datumShiftParameters();
    const bool isSmall =
        std::abs(dx) + std::abs(dy) + std::abs(dz) <= largestTranslation &&
        std::abs(rx) + std::abs(ry) + std::abs(rz) <= largestRotation &&
        std::abs(scalePpm) <= largestTranslation &&
        std::abs(ellipsoid.refFlattening()) <= largestFlattening &&
        std::abs(ellipsoid.eccentricitySquared()) <= 2.0 * largestFlattening &&
        std::abs(ellipsoid.semiMajorAxis() - ellipsoid.refSemiMajorAxis()) <= largestTranslation &&
        ellipsoid.semiMajorAxis() >= 1e6;
    return isSmall ? 0.05 : std::numeric_limits<double>::infinity();
}

TQDomain::Rectangle intersection(const TQDomain::Rectangle& one, const TQDomain::Rectangle& other) {
    return {std::max(one.west, other.west), std::min(one.east, other.east), std::max(one.south, other.south),
            std::min(one.north, other.north)};
}

/// What of a rectangle lies so far within its northern and southern border.
TQDomain::Rectangle shrunk(const TQDomain::Rectangle& rectangle, double margin) {
    return {rectangle.west, rectangle.east, rectangle.south + margin, rectangle.north - margin};
}

/// Marks points that do not lie in a rectangle and for which there is a reason.
template <class Why>
void mark(std::span<const TQPoint> points, std::span<bool> marks, const TQDomain::Rectangle& certain,
          double centralMeridian, const Why& why) {
    std::array<bool, tq_longestRun> isDoubtful;
    bool anyDoubtful = false;
    for (std::size_t index = 0; index < points.size(); ++index) {
        isDoubtful[index] = !certain.contains({points[index].x - centralMeridian, points[index].y});
        anyDoubtful |= isDoubtful[index];
    }
    for (std::size_t index = 0; anyDoubtful && index < points.size(); ++index) {
        marks[index] = marks[index] || (isDoubtful[index] && why(points[index]) != nullptr);
    }
}

} // namespace

double tq_atNearestTurn(double longitude, double centralMeridian) {
    constexpr double turn = 2.0 * std::numbers::pi;
    const double fromCentre = longitude - centralMeridian;
    const bool isElsewhere = std::abs(fromCentre) > TQDomain::halfTurn;
    const bool tellsPlace = std::max(std::abs(longitude), std::abs(fromCentre)) <= largestLongitude;
    return isElsewhere && tellsPlace ? longitude - turn * std::nearbyint(fromCentre / turn) : longitude;
}

TQDomainCheck::TQDomainCheck(const TQProjection& projection, const TQDomain& domain)
    : _projection(projection), _domain(domain) {
    const TQEllipsoid* const on = projection.ellipsoid();
    double margin = 0.0;
    if (on != nullptr && on->hasDatumShift()) {
        _local = on;
        _shiftLimit =
            on->datumShiftKind() == TQEllipsoid::ThreeParameterShift ? molodenskyLimit : TQDomain::pole;
        margin = latitudeMargin(*on);
    }
    _whyNowhere = whyNowhere(on, _domain);
    if (_whyNowhere != nullptr) {
        _domain.geographic = _domain.plane = TQDomain::Rectangle::nothing();
    }
    const TQDomain::Rectangle withoutShift{.south = -_shiftLimit, .north = _shiftLimit};
    _certain = shrunk(intersection(_domain.geographic, withoutShift), margin);
    _certainImages =
        _domain.whyNoImage == nullptr ? _certain : intersection(_certain, shrunk(_domain.core, margin));
    _certainOriginals =
        _domain.whyNoOriginal == nullptr ? _domain.plane : intersection(_domain.plane, _domain.planeCore);
}

/// The point on the projection's own datum.
TQPoint TQDomainCheck::localOf(const TQPoint& geo) const {
    TQPoint local = geo;
    if (_local != nullptr) {
        _local->toLocalDatum(local.x, local.y);
    }
    return local;
}

/// Why nothing can be right of a point; null if something can.
const char* TQDomainCheck::whyNever(const TQPoint& point) const {
    if (!isFinite(point)) {
        return notFinite;
    }
    return _whyNowhere;
}

const char* TQDomainCheck::whyNotGeographic(const TQPoint& geo) const {
    if (const char* const reason = whyNever(geo)) {
        return reason;
    }
    if (std::abs(geo.x) > largestLongitude) {
        return placeless;
    }
    const TQDomain::Rectangle& limits = _domain.geographic;
    const double longitude =
        _domain.wrapsLongitudes ? tq_atNearestTurn(geo.x, _domain.centralMeridian) : geo.x;
    const double fromCentre = longitude - _domain.centralMeridian;
    if (!(fromCentre >= limits.west && fromCentre <= limits.east)) {
        return _domain.beyondReach;
    }
    if (std::abs(geo.y) > _shiftLimit) {
        return atPoleOfShift;
    }
    const double latitude = localOf(geo).y;
    return latitude >= limits.south && latitude <= limits.north ? nullptr : _domain.beyondLatitudes;
}

const char* TQDomainCheck::whyNoImage(const TQPoint& geo) const {
    if (const char* const reason = whyNotGeographic(geo)) {
        return reason;
    }
    return _domain.whyNoImage != nullptr ? _domain.whyNoImage(_projection, localOf(geo)) : nullptr;
}

const char* TQDomainCheck::whyNoOriginal(const TQPoint& global) const {
    if (const char* const reason = whyNever(global)) {
        return reason;
    }
    if (!_domain.plane.contains(global)) {
        return _domain.beyondPlane;
    }
    return _domain.whyNoOriginal != nullptr ? _domain.whyNoOriginal(_projection, global) : nullptr;
}

void TQDomainCheck::markWithoutImage(std::span<const TQPoint> geo, std::span<bool> marks) const {
    std::ranges::fill(marks, false);
    mark(geo, marks, _certainImages, _domain.centralMeridian,
         [this](const TQPoint& point) { return whyNoImage(point); });
}

void TQDomainCheck::markWithoutOriginal(std::span<const TQPoint> global, std::span<bool> marks) const {
    std::ranges::fill(marks, false);
    mark(global, marks, _certainOriginals, 0.0,
         [this](const TQPoint& point) { return whyNoOriginal(point); });
}

void TQDomainCheck::markNotGeographic(std::span<const TQPoint> geo, std::span<bool> marks) const {
    mark(geo, marks, _certain, _domain.centralMeridian,
         [this](const TQPoint& point) { return whyNotGeographic(point); });
}
