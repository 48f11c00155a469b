#include "projections/TQPrMercTransv.h"

#include "support/TQUnit.h"

const TQProjectionStatement& TQPrMercTransv::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 1, .parameters = {}};
    return statement;
}

TQPrMercTransv::TQPrMercTransv(const TQPrMercTransv& other) : TQStatedProjection(other) { copyStated(other); }

TQPrMercTransv::~TQPrMercTransv() = default;

// The parameters stand twice in the archive, in the Mercator block and after it.
void TQPrMercTransv::archiveTo(TQWriteStream* stream) const {
    Stated::archiveTo(stream);
    TQPrMercator::statement().parameters.archiveTo(stream, *this);
}

void TQPrMercTransv::unarchiveFrom(TQReadStream* stream) {
    const int version = tq_readKnownVersion(stream, ownName, statement().archiveVersion);
    if (version < 0) {
        return;
    }
    if (version == 0) {
        TQProjection::unarchiveFrom(stream);
    } else {
        TQPrMercator::unarchiveFrom(stream);
    }
    const TQProjectionStatement& mercator = TQPrMercator::statement();
    mercator.parameters.unarchiveFrom(stream, *this, mercator.archiveVersion);
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
    return toPlane(geo, global, [this](const auto& point) { return _series.forward(point, eccentricity()); });
}

int TQPrMercTransv::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return toGeographic(global, geo,
                        [this](const auto& point) { return _series.inverse(point, eccentricity()); });
}
