#include "projections/TQPrMercTransv.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrMercTransv::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::noTextBlock(), .archiveVersion = 1, .parameters = {}};
    return statement;
}

TQPrMercTransv::TQPrMercTransv() = default;

TQPrMercTransv::TQPrMercTransv(const TQPrMercTransv& other) : TQStatedProjection(other) { copyStated(other); }

TQPrMercTransv::~TQPrMercTransv() = default;

const TQProjection::Runs& TQPrMercTransv::runs() { return TQKernels<TQPrMercTransv>::runs(); }

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

// Beyond the pole or the reach a plane point comes back from elsewhere: the series do not hold there, and a
// whole meridian farther all begins anew.
TQDomain TQPrMercTransv::domain() const {
    constexpr double reach = tq_deg2rad(45.0);
    constexpr double northernmost = tq_deg2rad(89.0);
    constexpr double reachOnPlane = 0.6; // of a quarter meridian: that of 45 degrees on the equator, and some
    const double quarter = std::abs(_series.quarterMeridian());
    return {.scale = _series._aK0,
            .centralMeridian = tq_deg2rad(lambda0),
            .wrapsLongitudes = true,
            .geographic = {-reach, reach, -northernmost, northernmost},
            .beyondReach = "more than 45 degrees from the central meridian",
            .beyondLatitudes = "within a degree of a pole",
            .plane = {_series._falseEasting - reachOnPlane * quarter,
                      _series._falseEasting + reachOnPlane * quarter, _series._falseNorthing - quarter,
                      _series._falseNorthing + quarter},
            .beyondPlane = "beyond a pole or more than 45 degrees from the central meridian"};
}

int TQPrMercTransv::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrMercTransv>::toPlane(*this, geo, global);
}

int TQPrMercTransv::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrMercTransv>::toGeographic(*this, global, geo);
}
