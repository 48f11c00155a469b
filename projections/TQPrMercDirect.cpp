#include "projections/TQPrMercDirect.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrMercDirect::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrMercDirect::TQPrMercDirect() = default;

TQPrMercDirect::TQPrMercDirect(const TQPrMercDirect& other) : TQStatedProjection(other) { copyStated(other); }

TQPrMercDirect::~TQPrMercDirect() = default;

const TQProjection::Runs& TQPrMercDirect::runs() { return TQKernels<TQPrMercDirect>::runs(); }

int TQPrMercDirect::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        const double e2 = on->eccentricitySquared();
        const double phi0Rad = tq_deg2rad(phi0);
        const double scale = tq::formulas::parallelRadius(on->semiMajorAxis() * k0, e2, phi0Rad);
        _mercator.init(scale, tq_deg2rad(lambda0), phi0Rad, {X0, Y0}, std::sqrt(e2), _latitudeScaleFactor);
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::DirectMercatorConversion TQPrMercDirect::conversion() const {
    return {_mercator, tq_deg2rad(lambda0), eccentricity(), _latitudeScaleFactor, ellipsoid()->datum()};
}

// The way back goes on beyond the map, and a latitude scale factor below the squared eccentricity leads its
// iteration nowhere.
TQDomain TQPrMercDirect::domain() const {
    const double scaleFactor = std::abs(_latitudeScaleFactor);
    const double northernmost = tq::formulas::isometricLatitudeLimit / scaleFactor;
    const bool hasInverse = ellipsoid()->eccentricitySquared() < 0.99 * scaleFactor;
    const double reach = std::abs(_mercator._scale) * TQDomain::halfTurn;
    return {.scale = _mercator._scale,
            .centralMeridian = tq_deg2rad(lambda0),
            .wrapsLongitudes = true,
            .geographic = {-TQDomain::halfTurn, TQDomain::halfTurn, -northernmost, northernmost},
            .beyondLatitudes = scaleFactor == 1.0
                                   ? "within a degree of a pole"
                                   : "beyond 89 degrees of latitude divided by the latitude scale factor",
            .plane = hasInverse ? TQDomain::Rectangle{.west = X0 - reach, .east = X0 + reach}
                                : TQDomain::Rectangle::nothing(),
            .beyondPlane = hasInverse
                               ? "more than half a turn from the central meridian"
                               : "beyond what a latitude scale factor as small as this can be undone for"};
}

int TQPrMercDirect::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrMercDirect>::toPlane(*this, geo, global);
}

int TQPrMercDirect::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrMercDirect>::toGeographic(*this, global, geo);
}
