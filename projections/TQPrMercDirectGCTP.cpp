#include "projections/TQPrMercDirectGCTP.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQMessages.h"
#include "support/TQUnit.h"

#include <numbers>

namespace {

using Kernels = TQKernels<TQPrMercDirectGCTP>;

} // namespace

const TQProjectionStatement& TQPrMercDirectGCTP::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrMercDirectGCTP::TQPrMercDirectGCTP() = default;

TQPrMercDirectGCTP::TQPrMercDirectGCTP(const TQPrMercDirectGCTP& other) : TQStatedProjection(other) {
    copyStated(other);
}

TQPrMercDirectGCTP::~TQPrMercDirectGCTP() = default;

const TQProjection::Runs& TQPrMercDirectGCTP::runs() { return TQKernels<TQPrMercDirectGCTP>::runs(); }

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

/// The formulas with the constants that they take.
tq::kernels::GctpMercatorConversion TQPrMercDirectGCTP::conversion() const {
    return {_mercator._scale, tq_deg2rad(lambda0), eccentricity(), {X0, Y0}, ellipsoid()->datum()};
}

TQDomain TQPrMercDirectGCTP::domain() const {
    constexpr double northernmost = std::numbers::pi / 2.0 - 1.1e-10;
    const double reach = std::abs(_mercator._scale) * TQDomain::halfTurn;
    return {.scale = _mercator._scale,
            .centralMeridian = tq_deg2rad(lambda0),
            .wrapsLongitudes = true,
            .geographic = {-TQDomain::halfTurn, TQDomain::halfTurn, -northernmost, northernmost},
            .beyondLatitudes = "a pole, which has no image",
            .plane = {.west = X0 - reach, .east = X0 + reach},
            .beyondPlane = "more than half a turn from the central meridian"};
}

int TQPrMercDirectGCTP::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    const auto answer = Kernels::answer<Kernels::Way::ToPlane>(*this, geo);
    if (!answer) {
        return -1;
    }
    if (answer->isSpecial) {
        tq_perror("TQPrMercDirectGCTP::convertGeoPt(): Transformation cannot be computed at the poles");
        return -1;
    }
    global = answer->point;
    return 0;
}

int TQPrMercDirectGCTP::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    const auto answer = Kernels::answer<Kernels::Way::ToGeographic>(*this, global);
    if (!answer) {
        return -1;
    }
    if (answer->isSpecial) {
        tq_perror("phi2z(): Convergence error");
        tq_perror("TQPrMercDirectGCTP::convertGlobalPt(): Transformation cannot be computed");
    }
    geo = answer->point;
    return 0;
}
