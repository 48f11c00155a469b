#include "projections/TQPrMercDirectGCTP.h"

#include "projections/formulas/GctpMercator.h"
#include "support/TQMessages.h"
#include "support/TQUnit.h"

using tq::formulas::GctpMercator;

const TQProjectionStatement& TQPrMercDirectGCTP::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrMercDirectGCTP::TQPrMercDirectGCTP(const TQPrMercDirectGCTP& other) : TQStatedProjection(other) {
    copyStated(other);
}

TQPrMercDirectGCTP::~TQPrMercDirectGCTP() = default;

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
    bool converged = true;
    const int code = toGeographic(global, geo, [&](const auto& point) {
        return GctpMercator::inverse(point, tq_deg2rad(lambda0), {X0, Y0}, _mercator._scale, eccentricity(),
                                     converged);
    });
    if (!converged) {
        tq_perror("phi2z(): Convergence error");
        tq_perror("TQPrMercDirectGCTP::convertGlobalPt(): Transformation cannot be computed");
    }
    return code;
}
