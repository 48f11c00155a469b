#include "projections/TQPrSwissObliqueMercator.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrSwissObliqueMercator::statement() {
    using P = TQProjectionParameter;
    using C = TQPrSwissObliqueMercator;
    static constexpr int lineMissing = -1;
    static constexpr P parameters[] = {
        {"longitudeCenter", P::degrees, &C::longitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"latitudeCenter", P::degrees, &C::latitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"kc", P::none, &C::kc, 1e-6, P::sixDecimals, lineMissing},
        {"falseEasting", P::metres, &C::falseEasting, 0.01, P::sixDecimals, lineMissing},
        {"falseNorthing", P::metres, &C::falseNorthing, 0.01, P::sixDecimals, lineMissing},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::commonTextBlock(ownName),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrSwissObliqueMercator::TQPrSwissObliqueMercator() = default;

TQPrSwissObliqueMercator::TQPrSwissObliqueMercator(const TQPrSwissObliqueMercator& other)
    : TQStatedProjection(other) {
    copyStated(other);
}

TQPrSwissObliqueMercator::~TQPrSwissObliqueMercator() = default;

const TQProjection::Runs& TQPrSwissObliqueMercator::runs() {
    return TQKernels<TQPrSwissObliqueMercator>::runs();
}

bool TQPrSwissObliqueMercator::isEqual(const TQObject* other) const {
    const auto* that = dynamic_cast<const TQPrSwissObliqueMercator*>(other);
    return that != nullptr && Stated::isEqual(other) && Stated::hasSameDefinition(*that);
}

bool TQPrSwissObliqueMercator::hasSameDefinition(const TQProjection& other) const {
    return TQProjection::hasSameDefinition(other);
}

TQString TQPrSwissObliqueMercator::WKTProjectionStuff() const {
    return wktOf("Hotine_Oblique_Mercator", {{"latitude_of_center", longitudeCenter},
                                             {"longitude_of_center", latitudeCenter},
                                             {"azimuth", 90.0},
                                             {"rectified_grid_angle", 90.0},
                                             {"scale_factor", 1.0},
                                             {"false_easting", falseEasting},
                                             {"false_northing", falseNorthing}});
}

int TQPrSwissObliqueMercator::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _swiss.init(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(longitudeCenter),
                    tq_deg2rad(latitudeCenter), kc);
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::SwissConversion TQPrSwissObliqueMercator::conversion() const {
    return {_swiss, {falseEasting, falseNorthing}, ellipsoid()->datum()};
}

// Both ways lead through arcsines, which fold what is more than 90 degrees away back onto the near side; next
// to there they lose digits.
TQDomain TQPrSwissObliqueMercator::domain() const {
    if (hasDatumShift() && longitudeCenter != 0.0) {
        return TQDomain::nowhere("on a datum that is shifted at the longitude from the centre");
    }
    static constexpr double cosineOfReach = 0.17364817766693035; // of 80 degrees
    static constexpr const char* tooFar = "more than 80 degrees from the centre";
    constexpr TQDomain::Why farFromCentre = [](const TQProjection& projection, const TQPoint& local) {
        const auto& swiss = static_cast<const TQPrSwissObliqueMercator&>(projection)._swiss;
        const tq::formulas::Geographic<double> point{local.x - swiss._lambda0Rad, local.y};
        return swiss.cosineFromCentre(point) >= cosineOfReach ? nullptr : tooFar;
    };
    constexpr TQDomain::Why farOnPlane = [](const TQProjection& projection, const TQPoint& global) {
        const auto& self = static_cast<const TQPrSwissObliqueMercator&>(projection);
        const tq::formulas::Plane<double> point{global.x - self.falseEasting, global.y - self.falseNorthing};
        return self._swiss.cosineFromCentre(point) >= cosineOfReach ? nullptr : tooFar;
    };
    constexpr double reach = tq_deg2rad(80.0);
    // Of a meridian 60 degrees away the cosine from the centre is a cosine of the latitude, too.
    constexpr double coreReach = tq_deg2rad(60.0);
    constexpr double ofSphere = tq_deg2rad(1.0); // latitudes on the sphere are other ones
    const double phi0 = tq_deg2rad(latitudeCenter);
    const double ahead = std::cos(phi0) * std::cos(coreReach + ofSphere);
    const double middle = std::atan2(std::sin(phi0), ahead);
    const double width = std::acos(cosineOfReach / std::hypot(std::sin(phi0), ahead)) - ofSphere;
    const double near = std::abs(_swiss._R) * tq_deg2rad(20.0);
    return {
        .scale = _swiss._R,
        .centralMeridian = _swiss._lambda0Rad,
        .geographic = {-reach, reach, -TQDomain::pole, TQDomain::pole},
        .beyondReach = "more than 80 degrees from the meridian of the centre",
        .whyNoImage = farFromCentre,
        .core = {-coreReach, coreReach, middle - width, middle + width},
        .whyNoOriginal = farOnPlane,
        .planeCore = {falseEasting - near, falseEasting + near, falseNorthing - near, falseNorthing + near}};
}

int TQPrSwissObliqueMercator::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrSwissObliqueMercator>::toPlane(*this, geo, global);
}

int TQPrSwissObliqueMercator::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrSwissObliqueMercator>::toGeographic(*this, global, geo);
}
