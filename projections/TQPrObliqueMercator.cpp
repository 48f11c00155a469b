#include "projections/TQPrObliqueMercator.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& TQPrObliqueMercator::statement() {
    using P = TQProjectionParameter;
    using C = TQPrObliqueMercator;
    static constexpr int lineMissing = -1;
    static constexpr P parameters[] = {
        {&C::_flags, lineMissing},
        {"longitudeCenter", P::degrees, &C::longitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"latitudeCenter", P::degrees, &C::latitudeCenter, 1e-6, P::sixDecimals, lineMissing},
        {"azimuth", P::degrees, &C::azimuth, 1e-6, P::sixDecimals, lineMissing},
        {"bearing", P::degrees, &C::bearing, 1e-6, P::sixDecimals, lineMissing},
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

TQPrObliqueMercator::TQPrObliqueMercator() = default;

TQPrObliqueMercator::TQPrObliqueMercator(const TQPrObliqueMercator& other) : TQStatedProjection(other) {
    copyStated(other);
}

TQPrObliqueMercator::~TQPrObliqueMercator() = default;

const TQProjection::Runs& TQPrObliqueMercator::runs() { return TQKernels<TQPrObliqueMercator>::runs(); }

TQString TQPrObliqueMercator::WKTProjectionStuff() const {
    return wktOf(has(HotineFlag) ? "Hotine_Oblique_Mercator" : "Oblique_Mercator",
                 {{"latitude_of_center", longitudeCenter},
                  {"longitude_of_center", latitudeCenter},
                  {"azimuth", azimuth},
                  {"rectified_grid_angle", bearing},
                  {"scale_factor", kc},
                  {"false_easting", falseEasting},
                  {"false_northing", falseNorthing}});
}

void TQPrObliqueMercator::getParams(HashTbl<TQProjParam>& table) const {
    Stated::getParams(table);
    for (const auto& [name, flag] : namedFlags) {
        if (has(flag)) {
            table.add(std::make_unique<TQProjParam>(TQString(name), Logical(true), TQString()),
                      TQString(name));
        }
    }
}

void TQPrObliqueMercator::setParams(const HashTbl<TQProjParam>& table) {
    _flags = 0;
    for (const auto& [name, flag] : namedFlags) {
        if (table.lookup(name) != nullptr) {
            _flags |= flag;
        }
    }
    Stated::setParams(table);
}

int TQPrObliqueMercator::initConstants() {
    if (ellipsoid() != nullptr) {
        computeConstants();
    }
    return 0;
}

void TQPrObliqueMercator::computeConstants() const {
    _hotine.init(ellipsoid()->semiMajorAxis(), ellipsoid()->eccentricitySquared(),
                 {.lambdaC = tq_deg2rad(longitudeCenter),
                  .phiC = tq_deg2rad(latitudeCenter),
                  .azimuth = tq_deg2rad(azimuth),
                  .bearing = tq_deg2rad(bearing),
                  .kc = kc,
                  .azimuthIsAtOrigin = has(AzimuthAtOriginFlag),
                  .uIsFromCentre = !has(HotineFlag),
                  .falseOrigin = {falseEasting, falseNorthing}});
    _flags |= ConstantsAreValid;
}

/// Computes the constants unless they are valid; false without an ellipsoid.
bool TQPrObliqueMercator::prepareConstants() const {
    if (ellipsoid() == nullptr) {
        return false;
    }
    if (!has(ConstantsAreValid)) {
        computeConstants();
    }
    return true;
}

/// The formulas with the constants that they take.
tq::kernels::HotineConversion TQPrObliqueMercator::conversion() const {
    return {_hotine, ellipsoid()->datum()};
}

// East of the centre the way there takes the wrong sign of its offset; the way back turns by the bearing of
// the grid, which files have to six decimals of a degree. Far from the centre the aposphere meets itself.
TQDomain TQPrObliqueMercator::domain() const {
    if (!std::isfinite(_hotine._lambda0)) {
        return TQDomain::nowhere("without a natural origin, as no central line has the azimuth here");
    }
    if (!_hotine.hasOffsetOfCentre()) {
        return TQDomain::nowhere("counted from a centre where the central line runs south");
    }
    constexpr double reach = tq_deg2rad(45.0);
    constexpr double ofFiles = tq_deg2rad(1e-6);
    constexpr TQDomain::Why eastOfCentre = [](const TQProjection& projection, const TQPoint& local) {
        const auto& self = static_cast<const TQPrObliqueMercator&>(projection);
        return self._hotine.hasRightOffset(local.x) ? nullptr
                                                    : "east of the centre, from which the grid is counted";
    };
    constexpr TQDomain::Why farOnPlane = [](const TQProjection& projection, const TQPoint& global) {
        const auto& self = static_cast<const TQPrObliqueMercator&>(projection);
        return self._hotine.isNear({global.x, global.y}) ? nullptr : "far beyond 45 degrees from the centre";
    };
    const tq::formulas::HotineObliqueMercator::Definition& definition = _hotine._definition;
    const double near = std::abs(_hotine.radius());
    TQDomain domain{.scale = _hotine.radius(),
                    .centralMeridian = definition.lambdaC,
                    .geographic = {-reach, reach, definition.phiC - reach, definition.phiC + reach},
                    .beyondReach = "more than 45 degrees from the meridian of the centre",
                    .beyondLatitudes = "more than 45 degrees from the parallel of the centre",
                    .beyondPlane = "on a grid whose bearing is not the azimuth at the natural origin",
                    .whyNoOriginal = farOnPlane,
                    .planeCore = {definition.falseOrigin.x - near, definition.falseOrigin.x + near,
                                  definition.falseOrigin.y - near, definition.falseOrigin.y + near}};
    if (!(std::abs(_hotine.bearingFromCentralLine()) <= ofFiles)) {
        domain.plane = TQDomain::Rectangle::nothing();
    }
    if (!_hotine.hasRightOffset(definition.lambdaC)) {
        domain.whyNoImage = eastOfCentre;
        domain.core = {.east = -tq_deg2rad(1.0)};
    }
    return domain;
}

int TQPrObliqueMercator::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrObliqueMercator>::toPlane(*this, geo, global);
}

int TQPrObliqueMercator::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrObliqueMercator>::toGeographic(*this, global, geo);
}
