#include "projections/TQPrBonne.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrBonne::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"lambda0", P::degrees, &TQPrBonne::lambda0, 1e-6, P::tenDecimals, 5104},
        {"standardParallel", P::degrees, &TQPrBonne::standardParallel, 1e-6, P::tenDecimals, 5105},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 1,
                      .newestVersion = 1,
                      .openFailed = 5101,
                      .headerUnreadable = 5102,
                      .versionUnknown = 5103,
                      .writeFailed = 5106},
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrBonne::TQPrBonne() = default;

TQPrBonne::TQPrBonne(const TQPrBonne& other) : TQStatedProjection(other) { copyStated(other); }

TQPrBonne::~TQPrBonne() = default;

const TQProjection::Runs& TQPrBonne::runs() { return TQKernels<TQPrBonne>::runs(); }

TQString TQPrBonne::WKTProjectionStuff() const {
    return wktOf("Bonne", {{"false_easting", "0.0"},
                           {"false_northing", "0.0"},
                           {"central_meridian", lambda0},
                           {"standard_parallel_1", standardParallel}});
}

int TQPrBonne::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _bonne.init(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(lambda0),
                    tq_deg2rad(standardParallel));
        _apex = {0.0, _bonne._apexNorthing};
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::BonneConversion TQPrBonne::conversion() const { return {_bonne, ellipsoid()->datum()}; }

// What lies beyond half a turn on the plane comes back as such; of a southern cone longitudes come back on
// the central meridian alone, before the mirrored apex.
TQDomain TQPrBonne::domain() const {
    if (!std::isfinite(_apex.y)) {
        return TQDomain::nowhere("without a cone: its standard parallel is the equator");
    }
    TQDomain domain{.centralMeridian = _bonne._lambda0Rad};
    if (_bonne._phi1 < 0.0) {
        domain.plane = {.west = 0.0, .east = 0.0, .north = std::nextafter(-_apex.y, 0.0)};
        domain.beyondPlane = "away from the central meridian of a southern standard parallel";
    }
    return domain;
}

int TQPrBonne::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrBonne>::toPlane(*this, geo, global);
}

int TQPrBonne::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrBonne>::toGeographic(*this, global, geo);
}
