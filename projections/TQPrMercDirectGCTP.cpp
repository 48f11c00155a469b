#include "projections/TQPrMercDirectGCTP.h"

#include "projections/formulas/GctpMercator.h"
#include "support/TQArchiveBlock.h"
#include "support/TQMessages.h"
#include "support/TQUnit.h"
#include "support/TQWriteStream.h"

using tq::formulas::GctpMercator;

TQPrMercDirectGCTP::TQPrMercDirectGCTP(const TQPrMercDirectGCTP& other) : TQPrMercDirect(other) {
    TQPrMercDirectGCTP::initConstants();
}

TQPrMercDirectGCTP::~TQPrMercDirectGCTP() = default;

void TQPrMercDirectGCTP::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrMercDirectGCTP", 0);
    TQPrMercDirect::archiveTo(stream);
}

void TQPrMercDirectGCTP::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQPrMercDirectGCTP", 0) >= 0) {
        TQPrMercDirect::unarchiveFrom(stream);
    }
}

TQString TQPrMercDirectGCTP::WKTProjectionStuff() const {
    TQString text = TQPrMercDirect::WKTProjectionStuff();
    tq_perror("TQPrMercDirectGCTP::WKTProjectionStuff(): don't really know how to write this in WKT form\n");
    return text;
}

// The offsets of the direct Mercator take no part and stay as they are.
int TQPrMercDirectGCTP::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _mercator._scale =
            tq::formulas::parallelRadius(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(phi0));
    }
    return 0;
}

int TQPrMercDirectGCTP::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    TQPoint local;
    if (!toLocalDatum(geo, local)) {
        return -1;
    }
    if (GctpMercator::isPole(local.y)) {
        tq_perror("TQPrMercDirectGCTP::convertGeoPt(): Transformation cannot be computed at the poles");
        return -1;
    }
    const auto [x, y] = GctpMercator::forward<double>({local.x, local.y}, tq_deg2rad(lambda0), {X0, Y0},
                                                      _mercator._scale, eccentricity());
    global = {x, y};
    return 0;
}

int TQPrMercDirectGCTP::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    if (ellipsoid() == nullptr) {
        return -1;
    }
    bool converged = true;
    const auto [lambda, phi] = GctpMercator::inverse<double>(
        {global.x, global.y}, tq_deg2rad(lambda0), {X0, Y0}, _mercator._scale, eccentricity(), converged);
    if (!converged) {
        tq_perror("phi2z(): Convergence error");
        tq_perror("TQPrMercDirectGCTP::convertGlobalPt(): Transformation cannot be computed");
    }
    geo = toReferenceDatum({lambda, phi});
    return 0;
}
