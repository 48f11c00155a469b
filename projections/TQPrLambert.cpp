#include "projections/TQPrLambert.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>
#include <limits>

const TQProjectionStatement& TQPrLambert::statement() {
    using P = TQProjectionParameter;
    using C = TQPrLambert;
    static constexpr const char* sixDecimalsWide = "%8.6f";
    static constexpr const char* twelveDecimals = "%1.12f";
    static constexpr P parameters[] = {
        {"lambda0", P::degrees, &C::lambda0, 1e-6, P::tenDecimals, 5304},
        {"latitudeOrigin", P::degrees, &C::latitudeOrigin, 1e-6, P::tenDecimals, 5305},
        {"X0", P::metres, &C::X0, 0.01, sixDecimalsWide, 5306},
        {"Y0", P::metres, &C::Y0, 0.01, sixDecimalsWide, 5307},
        P("Tangent", &C::Tangent, 5308).keptAsInteger(),
        P("k0", P::none, &C::k0, 1e-5, twelveDecimals, 5309).when(&C::Tangent),
        P("stdPar1", P::degrees, &C::stdPar1, 1e-6, P::tenDecimals, 5310).unless(&C::Tangent),
        P("stdPar2", P::degrees, &C::stdPar2, 1e-6, P::tenDecimals, 5311).unless(&C::Tangent),
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 1,
                      .newestVersion = 1,
                      .openFailed = 5301,
                      .headerUnreadable = 5302,
                      .versionUnknown = 5303,
                      .writeFailed = 5312},
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrLambert::TQPrLambert() = default;

// What the form of the other one has no use for is not copied: it is 0.
TQPrLambert::TQPrLambert(const TQPrLambert& other) : TQStatedProjection(other), k0(0.0) { copyStated(other); }

TQPrLambert::~TQPrLambert() = default;

const TQProjection::Runs& TQPrLambert::runs() { return TQKernels<TQPrLambert>::runs(); }

TQString TQPrLambert::WKTProjectionStuff() const {
    TQString text = Tangent ? wktOf("Lambert_Conformal_Conic_1SP", {{"scale_factor", k0}})
                            : wktOf("Lambert_Conformal_Conic_2SP",
                                    {{"standard_parallel_1", stdPar1}, {"standard_parallel_2", stdPar2}});
    appendWktParameters(text, {{"latitude_of_origin", latitudeOrigin},
                               {"central_meridian", lambda0},
                               {"false_easting", X0},
                               {"false_northing", Y0}});
    return text;
}

int TQPrLambert::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        const double a = on->semiMajorAxis();
        _cone.initOrigin(tq_deg2rad(lambda0), tq_deg2rad(latitudeOrigin), eccentricity());
        const double rho0 = Tangent ? _cone.initTangent(a, k0)
                                    : _cone.initSecant(a, tq_deg2rad(stdPar1), tq_deg2rad(stdPar2));
        _apex = {X0, Y0 + rho0};
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::LambertConversion TQPrLambert::conversion() const {
    return {_cone, {_apex.x, _apex.y}, ellipsoid()->datum()};
}

// The way back takes the plain arctangent: it knows the half of the plane before the apex only.
TQDomain TQPrLambert::domain() const {
    if (!std::isfinite(_apex.y) || _cone._n == 0.0) {
        return TQDomain::nowhere("without a cone: its parallels make none");
    }
    constexpr double farthest = tq_deg2rad(89.0);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const bool isNorthern = _cone._n > 0.0;
    TQDomain domain{.scale = Tangent ? std::copysign(_cone._F, k0) : std::abs(_cone._F),
                    .centralMeridian = _cone._lambda0Rad,
                    .beyondLatitudes = "within a degree of the pole behind the cone",
                    .beyondPlane = "behind the apex of the cone"};
    if (isNorthern) {
        domain.geographic.south = -farthest;
        domain.plane.north = std::nextafter(_apex.y, -infinity);
    } else {
        domain.geographic.north = farthest;
        domain.plane.south = std::nextafter(_apex.y, infinity);
    }
    return domain;
}

int TQPrLambert::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrLambert>::toPlane(*this, geo, global);
}

int TQPrLambert::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrLambert>::toGeographic(*this, global, geo);
}
