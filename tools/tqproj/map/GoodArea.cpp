#include "tools/tqproj/map/GoodArea.h"

#include "ellipsoid/TQEllipsoid.h"
#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/map/MapProjection.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <vector>

namespace {

constexpr double fullCircle = 360.0;
constexpr double halfCircle = 180.0;
constexpr double pole = 90.0;
constexpr double pi = std::numbers::pi;

constexpr double allowedRatio = 1.25; // of scales to those of the centre
constexpr int latticeStep = 5;        // degrees, between the places that may be the centre
constexpr double difference = 1e-5;   // radians, to the points whose images tell the scale
constexpr double nearlyTrue = 1e-2;   // shapes: formulas of the sphere on an ellipsoid change them by 0.007
constexpr double nearlyEqual = 1e-3;  // scales: 2.5 degrees beside a central line they are 1.00095
constexpr double stepOfWalk = 1.0;    // degrees
constexpr double precisionOfWalk = 0.01; // degrees
constexpr double hiddenByTear = 0.03;    // degrees: the precision and the differences on both of its sides
constexpr double allowedJump = 3.0;      // of an image, in lengths that its step may have
constexpr double tenths = 10.0;          // of a degree, that the borders are rounded to

/// The point at a small distance on the ground, in radians. Moving leads over a pole as over any other point.
TQPoint besides(const TQPoint& point, double east, double north) {
    const double latitude = tq_deg2rad(point.y);
    const double fromAxis = std::cos(latitude) - north * std::sin(latitude);
    const double fromEquator = std::sin(latitude) + north * std::cos(latitude);
    return {point.x + tq_rad2deg(std::atan2(east, fromAxis)),
            tq_rad2deg(std::atan2(fromEquator, std::hypot(fromAxis, east)))};
}

/// The distance of two points on the ground, in radians (Snyder, equation 5-3a).
double groundDistance(const TQPoint& one, const TQPoint& other) {
    const double north = std::sin(tq_deg2rad(other.y - one.y) / 2.0);
    const double east = std::sin(tq_deg2rad(other.x - one.x) / 2.0);
    const double narrowing = std::cos(tq_deg2rad(one.y)) * std::cos(tq_deg2rad(other.y));
    return 2.0 * std::asin(std::min(std::sqrt(north * north + narrowing * east * east), 1.0));
}

/// A point that has an image, and what becomes of lengths there.
struct Place {
    TQPoint geographic; ///< degrees
    TQPoint image;
    double greatest = 0.0;    ///< scale, of the plane's unit to a radian on the ground
    double least = 0.0;       ///< scale across that one
    double convergence = 0.0; ///< radians from the y axis to the image of north
};

/// The squared eccentricity of the ellipsoid that a projection stands on.
double eccentricitySquaredOf(const TQProjection& projection) {
    const auto* const system = dynamic_cast<const TQPrProj4*>(&projection);
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    const double ofClass = ellipsoid != nullptr ? ellipsoid->eccentricitySquared() : 0.0;
    return system != nullptr ? system->eccentricitySquared() : ofClass;
}

/// Finds the places of a projection.
class Places {
  public:
    /// @param projection the projection, which must outlive this object
    explicit Places(const MapProjection& projection)
        : _projection(projection), _eccentricitySquared(eccentricitySquaredOf(projection.projection())) {}

    /// The place at a point; nothing where it has no image, or one without an extent.
    std::optional<Place> at(const TQPoint& geographic) const;

    /// Those of a lattice over the world, the north first, that come back; all of them where none does.
    std::vector<Place> ofTheWorld() const;

  private:
    std::optional<TQPoint> differential(const TQPoint& geographic, double east, double north) const;
    bool comesBack(const Place& place) const;

    const MapProjection& _projection;
    double _eccentricitySquared;
};

/// What becomes of a length of 1 on the ground; nothing where the points on either side have no images. The
/// radii of curvature of the ellipsoid are those of Snyder's equations 4-18 and 4-20.
std::optional<TQPoint> Places::differential(const TQPoint& geographic, double east, double north) const {
    const auto before = _projection.toPlane(besides(geographic, -east, -north));
    const auto behind = _projection.toPlane(besides(geographic, east, north));
    if (!before || !behind) {
        return std::nullopt;
    }
    const double sine = std::sin(tq_deg2rad(geographic.y));
    const double curvature = 1.0 - _eccentricitySquared * sine * sine;
    const double radiusEast = 1.0 / std::sqrt(curvature);
    const double radiusNorth = radiusEast * (1.0 - _eccentricitySquared) / curvature;
    const double length = 2.0 * std::hypot(east * radiusEast, north * radiusNorth);
    return TQPoint{(behind->x - before->x) / length, (behind->y - before->y) / length};
}

std::optional<Place> Places::at(const TQPoint& geographic) const {
    const auto image = _projection.toPlane(geographic);
    const auto east = differential(geographic, difference, 0.0);
    const auto north = differential(geographic, 0.0, difference);
    if (!image || !east || !north) {
        return std::nullopt;
    }
    // The singular values of the matrix with these columns are the sum and the difference of two lengths.
    const double turning = std::hypot(east->x + north->y, east->y - north->x) / 2.0;
    const double mirroring = std::hypot(east->x - north->y, east->y + north->x) / 2.0;
    const Place place{geographic, *image, turning + mirroring, std::abs(turning - mirroring),
                      std::atan2(north->x, north->y)};
    return place.least > 0.0 ? std::optional(place) : std::nullopt;
}

/// Whether the way back finds a place again. Series do not outside the area that they are made for, where the
/// images of many points coincide and scales mean nothing.
bool Places::comesBack(const Place& place) const {
    const auto back = _projection.toGeographic(place.image);
    return back && groundDistance(*back, place.geographic) < nearlyEqual;
}

std::vector<Place> Places::ofTheWorld() const {
    std::vector<Place> all;
    std::vector<Place> found;
    for (int latitude = 90; latitude >= -90; latitude -= latticeStep) {
        for (int longitude = 180; longitude > -180; longitude -= latticeStep) {
            if (const auto place = at({static_cast<double>(longitude), static_cast<double>(latitude)})) {
                all.push_back(*place);
            }
        }
    }
    std::ranges::copy_if(all, std::back_inserter(found),
                         [this](const Place& place) { return comesBack(place); });
    return found.empty() ? all : found;
}

/// Keeps the places whose value is the least one, or nearly.
template <class Value>
void keepLeast(std::vector<Place>& places, const Value& value, double allowed = nearlyEqual) {
    const double least = value(*std::ranges::min_element(places, {}, value));
    std::erase_if(places, [&](const Place& place) { return value(place) > least + allowed; });
}

/// The centre of a projection. Logarithms of scales differ by their ratio. The plane may be turned upside
/// down, as it is in southern Africa; the right way up comes last, to tell the meridians of a pole apart.
std::optional<Place> centreOf(std::vector<Place> places) {
    if (places.empty()) {
        return std::nullopt;
    }
    const auto shape = [](const Place& place) { return std::log(place.greatest / place.least); };
    keepLeast(places, shape, nearlyTrue);
    keepLeast(places, [](const Place& place) { return std::log(place.greatest); });
    keepLeast(places, shape);
    keepLeast(places, [](const Place& place) { return std::abs(std::remainder(place.convergence, pi)); });
    keepLeast(places, [](const Place& place) { return std::abs(place.geographic.y); });
    keepLeast(places, [](const Place& place) { return std::hypot(place.image.x, place.image.y); });
    keepLeast(places, [](const Place& place) { return std::abs(place.convergence); });
    return places.front();
}

/// A way from the centre along its parallel or its meridian.
class Walk {
  public:
    /// @param places the places of the projection, which must outlive this object
    /// @param centre where the way begins
    /// @param east,north which way: 1 and 0 for the east, 0 and -1 for the south
    Walk(const Places& places, const Place& centre, double east, double north)
        : _places(places), _centre(centre), _east(east), _north(north) {}

    /// How far everything is good.
    /// @param bound degrees, as far as to look
    /// @return degrees; the bound where the way is good up to it but for what a tear hides
    double reach(double bound) const {
        Place last = _centre;
        double reached = 0.0;
        bool isEndNear = false;
        for (double step = stepOfWalk; reached < bound && step > precisionOfWalk / 2.0;) {
            const double next = std::min(reached + step, bound);
            const auto place = nextGood(last, next);
            last = place.value_or(last);
            reached = place ? next : reached;
            isEndNear = isEndNear || !place;
            step = isEndNear ? step / 2.0 : step;
        }
        return bound - reached < hiddenByTear ? bound : reached;
    }

  private:
    /// The place so far away; nothing when it is not good or the image tears on the way from the last one.
    std::optional<Place> nextGood(const Place& last, double distance) const {
        const TQPoint& start = _centre.geographic;
        const auto place =
            _places.at({std::remainder(start.x + _east * distance, fullCircle), start.y + _north * distance});
        return place && isGood(*place) && isContinuous(last, *place) ? place : std::nullopt;
    }

    bool isGood(const Place& place) const {
        return place.greatest <= allowedRatio * _centre.greatest &&
               place.least >= _centre.least / allowedRatio;
    }

    bool isContinuous(const Place& from, const Place& to) const {
        const double ground = groundDistance(from.geographic, to.geographic) + difference;
        return distanceBetween(from.image, to.image) <=
               allowedJump * allowedRatio * _centre.greatest * ground;
    }

    const Places& _places;
    Place _centre;
    double _east;
    double _north;
};

// Zero has no sign.
double roundedUp(double degrees) { return std::ceil(degrees * tenths) / tenths + 0.0; }
double roundedDown(double degrees) { return std::floor(degrees * tenths) / tenths + 0.0; }

/// The borders of an area on one axis.
struct Range {
    double from;
    double to;
};

/// The longitudes that are good, in tenths: half the world on either side of the centre, or more on one side
/// where a tear ends the other. The centre may stand beside the central meridian, and on the equator of a
/// Mercator anywhere.
Range longitudesFrom(const Places& places, const Place& centre) {
    const Walk eastwards(places, centre, 1.0, 0.0);
    const Walk westwards(places, centre, -1.0, 0.0);
    const double near = eastwards.reach(halfCircle);
    const double west = westwards.reach(fullCircle - near);
    const double east = near < halfCircle ? near : eastwards.reach(fullCircle - west);
    const double start = std::remainder(centre.geographic.x - west, fullCircle);
    if (west + east > fullCircle - precisionOfWalk) {
        const double tear = std::round(start * tenths) / tenths + 0.0;
        const double first = tear == halfCircle ? -halfCircle : tear;
        return {first, first + fullCircle};
    }
    return {roundedUp(start), roundedDown(start + west + east)};
}

/// The latitudes that are good, in tenths.
Range latitudesFrom(const Places& places, const Place& centre) {
    const double latitude = centre.geographic.y;
    const double south = Walk(places, centre, 0.0, -1.0).reach(latitude + pole);
    const double north = Walk(places, centre, 0.0, 1.0).reach(pole - latitude);
    return {roundedUp(latitude - south), roundedDown(latitude + north)};
}

bool isInSpace(const TQProjection& projection) {
    const auto* const system = dynamic_cast<const TQPrProj4*>(&projection);
    return system != nullptr && system->coordinates() == TQPrProj4::Coordinates::Geocentric;
}

} // namespace

std::optional<GeographicExtent> goodAreaOf(const MapProjection& projection) {
    const LibraryMessages unheard;
    if (isInSpace(projection.projection())) {
        return std::nullopt;
    }
    const Places places(projection);
    const auto centre = centreOf(places.ofTheWorld());
    if (!centre) {
        return std::nullopt;
    }
    const auto [west, east] = longitudesFrom(places, *centre);
    const auto [south, north] = latitudesFrom(places, *centre);
    return west < east ? GeographicExtent::of(west, south, east, north) : std::nullopt;
}
