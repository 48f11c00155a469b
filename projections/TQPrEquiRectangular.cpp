#include "projections/TQPrEquiRectangular.h"

#include "support/TQMessages.h"

#include <cmath>

using tq::formulas::Equirectangular;

namespace {

/// The largest difference of two factors of the eastings that are the same.
constexpr double sameFactor = 1e-6;

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

int TQPrEquiRectangular::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    const double k = _unitsPerRadian;
    TQPoint local = geo;
    Equirectangular formula{k, k};
    if (toLocalDatum(geo, local)) {
        const double a = ellipsoid()->semiMajorAxis();
        formula = {a * _xFactor * k, a * k};
    }
    const auto [x, y] = formula.forward<double>({local.x, local.y});
    global = {x, y};
    return 0;
}

int TQPrEquiRectangular::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    const double k = _radiansPerUnit;
    if (ellipsoid() == nullptr) {
        geo = {k * global.x, k * global.y};
        return 0;
    }
    const double a = ellipsoid()->semiMajorAxis();
    const Equirectangular formula{a * _xFactor / k, a / k};
    return toGeographic(global, geo, [&formula](const auto& point) { return formula.inverse(point); });
}

bool TQPrEquiRectangular::isGeoPtValid(const TQPoint& geo) const {
    constexpr double limit = 89.0;
    return std::abs(tq_rad2deg(geo.y)) <= limit;
}
