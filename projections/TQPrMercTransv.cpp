#include "projections/TQPrMercTransv.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

const TQProjectionStatement& TQPrMercTransv::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 1, .parameters = {}};
    return statement;
}

TQPrMercTransv::TQPrMercTransv() { setRuns(TQKernels<TQPrMercTransv>::runs()); }

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

/// The formulas with the constants that they take.
tq::kernels::TransverseMercatorConversion TQPrMercTransv::conversion() const {
    return {_series, eccentricity(), ellipsoid()->datum()};
}

int TQPrMercTransv::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrMercTransv>::toPlane(*this, geo, global);
}

int TQPrMercTransv::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrMercTransv>::toGeographic(*this, global, geo);
}
