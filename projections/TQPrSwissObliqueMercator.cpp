#include "projections/TQPrSwissObliqueMercator.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

const TQProjectionStatement& TQPrSwissObliqueMercator::statement() {
    using P = TQProjectionParameter;
    using C = TQPrSwissObliqueMercator;
    static constexpr int lineMissing = -1;
    static constexpr P parameters[] = {
        {"longitudeCenter", P::degrees, &C::longitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"latitudeCenter", P::degrees, &C::latitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"kc", P::none, &C::kc, 1e-6, P::sixDecimals, lineMissing},
        {"falseEasting", P::metres, &C::falseEasting, 0.01, P::sixDecimals, lineMissing},
        {"falseNorthing", P::metres, &C::falseNorthing, 0.01, P::sixDecimals, lineMissing},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::commonTextBlock(ownName),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrSwissObliqueMercator::TQPrSwissObliqueMercator() { setRuns(TQKernels<TQPrSwissObliqueMercator>::runs()); }

TQPrSwissObliqueMercator::TQPrSwissObliqueMercator(const TQPrSwissObliqueMercator& other)
    : TQStatedProjection(other) {
    copyStated(other);
}

TQPrSwissObliqueMercator::~TQPrSwissObliqueMercator() = default;

bool TQPrSwissObliqueMercator::isEqual(const TQObject* other) const {
    const auto* that = dynamic_cast<const TQPrSwissObliqueMercator*>(other);
    return that != nullptr && Stated::isEqual(other) && Stated::hasSameDefinition(*that);
}

bool TQPrSwissObliqueMercator::hasSameDefinition(const TQProjection& other) const {
    return TQProjection::hasSameDefinition(other);
}

TQString TQPrSwissObliqueMercator::WKTProjectionStuff() const {
    return wktOf("Hotine_Oblique_Mercator", {{"latitude_of_center", longitudeCenter},
                                             {"longitude_of_center", latitudeCenter},
                                             {"azimuth", 90.0},
                                             {"rectified_grid_angle", 90.0},
                                             {"scale_factor", 1.0},
                                             {"false_easting", falseEasting},
                                             {"false_northing", falseNorthing}});
}

int TQPrSwissObliqueMercator::initConstants() {
    if (const TQEllipsoid* on = ellipsoid()) {
        _swiss.init(on->semiMajorAxis(), on->eccentricitySquared(), tq_deg2rad(longitudeCenter),
                    tq_deg2rad(latitudeCenter), kc);
    }
    return 0;
}

/// The formulas with the constants that they take.
tq::kernels::SwissConversion TQPrSwissObliqueMercator::conversion() const {
    return {_swiss, {falseEasting, falseNorthing}, ellipsoid()->datum()};
}

int TQPrSwissObliqueMercator::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrSwissObliqueMercator>::toPlane(*this, geo, global);
}

int TQPrSwissObliqueMercator::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrSwissObliqueMercator>::toGeographic(*this, global, geo);
}
