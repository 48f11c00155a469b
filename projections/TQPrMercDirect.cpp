#include "projections/TQPrMercDirect.h"

#include "support/TQArchiveBlock.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

#include <cmath>

TQPrMercDirect::TQPrMercDirect(const TQPrMercDirect& other) : TQPrMercator(other) {
    TQPrMercDirect::initConstants();
}

TQPrMercDirect::~TQPrMercDirect() = default;

void TQPrMercDirect::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrMercDirect", 0);
    TQPrMercator::archiveTo(stream);
}

void TQPrMercDirect::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQPrMercDirect", 0) >= 0) {
        TQPrMercator::unarchiveFrom(stream);
    }
}

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
    TQPoint local;
    if (!toLocalDatum(geo, local)) {
        return -1;
    }
    const auto [x, y] = _mercator.forward<double>({local.x, local.y}, tq_deg2rad(lambda0), eccentricity(),
                                                  _latitudeScaleFactor);
    global = {x, y};
    return 0;
}

int TQPrMercDirect::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    if (ellipsoid() == nullptr) {
        return -1;
    }
    const auto [lambda, phi] =
        _mercator.inverse<double>({global.x, global.y}, eccentricity(), _latitudeScaleFactor);
    geo = toReferenceDatum({lambda, phi});
    return 0;
}
