#include "projections/TQPrCassiniSoldner.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

namespace {

/// Code of every failure of the text block.
constexpr int failed = -1;

} // namespace

const TQProjectionStatement& TQPrCassiniSoldner::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"lambda0", P::degrees, &TQPrCassiniSoldner::lambda0, 1e-6, P::tenDecimals, failed},
        {"phi0", P::degrees, &TQPrCassiniSoldner::phi0, 1e-6, P::tenDecimals, failed},
        {"X0", P::metres, &TQPrCassiniSoldner::X0, 1.0, P::tenDecimals, failed},
        {"Y0", P::metres, &TQPrCassiniSoldner::Y0, 1.0, P::tenDecimals, failed},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 0,
                      .newestVersion = 0,
                      .openFailed = failed,
                      .headerUnreadable = failed,
                      .versionUnknown = failed,
                      .writeFailed = failed},
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrCassiniSoldner::TQPrCassiniSoldner() = default;

TQPrCassiniSoldner::TQPrCassiniSoldner(const TQPrCassiniSoldner& other) : TQStatedProjection(other) {
    copyStated(other);
}

TQPrCassiniSoldner::~TQPrCassiniSoldner() = default;

const TQProjection::Runs& TQPrCassiniSoldner::runs() { return TQKernels<TQPrCassiniSoldner>::runs(); }

TQString TQPrCassiniSoldner::WKTProjectionStuff() const {
    return wktOf("Cassini_Soldner", {{"latitude_of_origin", phi0},
                                     {"central_meridian", lambda0},
                                     {"false_easting", X0},
                                     {"false_northing", Y0}});
}

int TQPrCassiniSoldner::loadFromFile(TQFile& file, bool withHeader) {
    return Stated::loadFromFile(file, withHeader) == 0 ? 0 : failed;
}

int TQPrCassiniSoldner::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _cassini.init(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(lambda0), tq_deg2rad(phi0));
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::CassiniSoldnerConversion TQPrCassiniSoldner::conversion() const {
    return {_cassini, {X0, Y0}, ellipsoid()->datum()};
}

TQDomain TQPrCassiniSoldner::domain() const {
    constexpr double reach = tq_deg2rad(4.5);
    constexpr double northernmost = tq_deg2rad(89.0);
    return {.centralMeridian = _cassini._lambda0Rad,
            .geographic = {-reach, reach, -northernmost, northernmost},
            .beyondReach = "more than 4.5 degrees from the central meridian",
            .beyondLatitudes = "within a degree of a pole"};
}

int TQPrCassiniSoldner::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrCassiniSoldner>::toPlane(*this, geo, global);
}

int TQPrCassiniSoldner::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrCassiniSoldner>::toGeographic(*this, global, geo);
}

bool TQPrCassiniSoldner::isGeoPtValid(const TQPoint& geo) const { return isWithinPoles(geo.y); }
