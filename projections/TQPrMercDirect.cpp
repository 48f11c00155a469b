#include "projections/TQPrMercDirect.h"

#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrMercDirect::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrMercDirect::TQPrMercDirect(const TQPrMercDirect& other) : TQStatedProjection(other) { copyStated(other); }

TQPrMercDirect::~TQPrMercDirect() = default;

int TQPrMercDirect::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        const double e2 = on->eccentricitySquared();
        const double phi0Rad = tq_deg2rad(phi0);
        const double scale = tq::formulas::parallelRadius(on->semiMajorAxis() * k0, e2, phi0Rad);
        _mercator.init(scale, tq_deg2rad(lambda0), phi0Rad, {X0, Y0}, std::sqrt(e2), _latitudeScaleFactor);
    }
    return 0;
}

int TQPrMercDirect::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return toPlane(geo, global, [this](const auto& point) {
        return _mercator.forward(point, tq_deg2rad(lambda0), eccentricity(), _latitudeScaleFactor);
    });
}

int TQPrMercDirect::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return toGeographic(global, geo, [this](const auto& point) {
        return _mercator.inverse(point, eccentricity(), _latitudeScaleFactor);
    });
}
