#include "projections/TQPrEquiRectangular.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQMessages.h"

#include <cmath>

namespace {

/// The largest difference of two factors of the eastings that are the same.
constexpr double sameFactor = 1e-6;

/// The northernmost latitude that is valid, in degrees.
constexpr double northernmost = 89.0;

} // namespace

const TQProjectionStatement& TQPrEquiRectangular::statement() {
    using P = TQProjectionParameter;
    static constexpr int lineMissing = -1;
    static constexpr P parameters[] = {
        {"factor_phiRef", P::degrees, &TQPrEquiRectangular::factor_phiRef, sameFactor, P::tenDecimals,
         lineMissing},
        {"isFactor", &TQPrEquiRectangular::isFactor, lineMissing},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::commonTextBlock(ownName),
        .archiveVersion = 1,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrEquiRectangular::TQPrEquiRectangular(std::uint32_t unit) { setUnit(unit); }

TQPrEquiRectangular::TQPrEquiRectangular(const TQPrEquiRectangular& other) : TQStatedProjection(other) {
    setUnit(other._unit);
    copyStated(other);
}

TQPrEquiRectangular::~TQPrEquiRectangular() = default;

const TQProjection::Runs& TQPrEquiRectangular::runs() { return TQKernels<TQPrEquiRectangular>::runs(); }

void TQPrEquiRectangular::setUnit(std::uint32_t unit) {
    constexpr bool base360 = false;
    _unit = unit;
    _unitsPerRadian = convertDimValue(1.0, TQUnitRadian, unit, base360);
    _radiansPerUnit = convertDimValue(1.0, unit, TQUnitRadian, base360);
}

void TQPrEquiRectangular::archiveTo(TQWriteStream* stream) const {
    Stated::archiveTo(stream);
    stream->write(_unit);
}

void TQPrEquiRectangular::unarchiveFrom(TQReadStream* stream) {
    setUnit(TQUnitRadian);
    const int version = unarchiveBlock(stream);
    if (version < 0) {
        return;
    }
    initConstants();
    if (version >= 1) {
        std::uint32_t unit = 0;
        stream->read(unit);
        setUnit(unit);
    }
}

double TQPrEquiRectangular::effectiveFactor() const {
    return isFactor ? factor_phiRef : std::cos(tq_deg2rad(factor_phiRef));
}

// A factor and a parallel may make the same definition.
bool TQPrEquiRectangular::hasSameDefinition(const TQProjection& other) const {
    const auto* that = dynamic_cast<const TQPrEquiRectangular*>(&other);
    return TQProjection::hasSameDefinition(other) && that != nullptr &&
           std::abs(effectiveFactor() - that->effectiveFactor()) <= sameFactor;
}

TQString TQPrEquiRectangular::WKTProjectionStuff() const {
    TQString text = wktOf("Equirectangular",
                          {{"false_easting", "0.0"}, {"false_northing", "0.0"}, {"central_meridian", "0.0"}});
    if (isFactor) {
        tq_perror(
            "TQPrEquiRectangular::WKTProjectionStuff(): don't really know how to write this in WKT form\n");
    } else {
        appendWktParameters(text, {{"standard_parallel_1", factor_phiRef}});
    }
    return text;
}

int TQPrEquiRectangular::initConstants() {
    _xFactor = effectiveFactor();
    return 0;
}

/// The formulas with the constants that they take; without an ellipsoid longitude and latitude in units.
tq::kernels::EquirectangularConversion TQPrEquiRectangular::conversion() const {
    const TQEllipsoid* const on = ellipsoid();
    const double a = on != nullptr ? on->semiMajorAxis() : 1.0;
    const double xFactor = on != nullptr ? _xFactor : 1.0;
    return {.forward = {a * xFactor * _unitsPerRadian, a * _unitsPerRadian},
            .inverse = {a * xFactor / _radiansPerUnit, a / _radiansPerUnit},
            .datum = on != nullptr ? on->datum() : tq::formulas::LocalDatum::reference()};
}

TQDomain TQPrEquiRectangular::domain() const {
    TQDomain domain{.flattest = 1.0,
                    .scale = ellipsoid() != nullptr ? _xFactor : 1.0,
                    .beyondLatitudes = "within a degree of a pole"}; // a sphere
    domain.geographic.south = -tq_deg2rad(northernmost);
    domain.geographic.north = tq_deg2rad(northernmost);
    return domain;
}

int TQPrEquiRectangular::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrEquiRectangular>::toPlane(*this, geo, global);
}

int TQPrEquiRectangular::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrEquiRectangular>::toGeographic(*this, global, geo);
}

bool TQPrEquiRectangular::isGeoPtValid(const TQPoint& geo) const {
    return std::abs(tq_rad2deg(geo.y)) <= northernmost;
}
