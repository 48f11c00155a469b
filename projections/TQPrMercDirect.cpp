#include "projections/TQPrMercDirect.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrMercDirect::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrMercDirect::TQPrMercDirect() { setRuns(TQKernels<TQPrMercDirect>::runs()); }

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

/// The formulas with the constants that they take.
tq::kernels::DirectMercatorConversion TQPrMercDirect::conversion() const {
    return {_mercator, tq_deg2rad(lambda0), eccentricity(), _latitudeScaleFactor, ellipsoid()->datum()};
}

int TQPrMercDirect::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrMercDirect>::toPlane(*this, geo, global);
}

int TQPrMercDirect::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrMercDirect>::toGeographic(*this, global, geo);
}
