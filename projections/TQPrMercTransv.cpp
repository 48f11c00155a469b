#include "projections/TQPrMercTransv.h"

#include "support/TQArchiveBlock.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

TQPrMercTransv::TQPrMercTransv(const TQPrMercTransv& other) : TQPrMercator(other) {
    TQPrMercTransv::initConstants();
}

TQPrMercTransv::~TQPrMercTransv() = default;

// The parameters stand twice in the archive, in the Mercator block and after it.
void TQPrMercTransv::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrMercTransv", 1);
    TQPrMercator::archiveTo(stream);
    parameters().archiveTo(stream, *this);
}

void TQPrMercTransv::unarchiveFrom(TQReadStream* stream) {
    const int version = tq_readKnownVersion(stream, "TQPrMercTransv", 1);
    if (version < 0) {
        return;
    }
    if (version == 0) {
        TQProjection::unarchiveFrom(stream);
    } else {
        TQPrMercator::unarchiveFrom(stream);
    }
    parameters().unarchiveFrom(stream, *this);
}

TQString TQPrMercTransv::WKTProjectionStuff() const { return wktWithParameters("Transverse_Mercator", k0); }

int TQPrMercTransv::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _series.init(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(lambda0), tq_deg2rad(phi0),
                     {X0, Y0}, k0);
    }
    return 0;
}

int TQPrMercTransv::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    TQPoint local;
    if (!toLocalDatum(geo, local)) {
        return -1;
    }
    const auto [x, y] = _series.forward<double>({local.x, local.y}, eccentricity());
    global = {x, y};
    return 0;
}

int TQPrMercTransv::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    if (ellipsoid() == nullptr) {
        return -1;
    }
    const auto [lambda, phi] = _series.inverse<double>({global.x, global.y}, eccentricity());
    geo = toReferenceDatum({lambda, phi});
    return 0;
}
