#include "support/TQAngleWithUnit.h"

#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

TQAngleWithUnit::TQAngleWithUnit(double value, std::uint32_t unit, bool base360)
    : _value(value), _unit(unit), _base360(base360) {
    keepWithinTurn();
}

void TQAngleWithUnit::keepWithinTurn() {
    if (_base360) {
        _value = convertDimValue(_value, _unit, _unit, true);
    }
}

void TQAngleWithUnit::setValue(double value) {
    _value = value;
    keepWithinTurn();
}

void TQAngleWithUnit::setBase360(bool base360) {
    _base360 = base360;
    keepWithinTurn();
}

void TQAngleWithUnit::convert(std::uint32_t unit) {
    const double converted = valueInUnit(unit, _base360);
    _unit = unit;
    setValue(converted);
}

double TQAngleWithUnit::valueInUnit(std::uint32_t unit, bool base360) const {
    return convertDimValue(_value, _unit, unit, base360);
}

void TQAngleWithUnit::add(const TQAngleWithUnit& other) {
    setValue(_value + other.valueInUnit(_unit, false));
}

void TQAngleWithUnit::substract(const TQAngleWithUnit& other) {
    setValue(_value - other.valueInUnit(_unit, false));
}

void TQAngleWithUnit::divide(int divisor) {
    if (divisor != 0) {
        setValue(_value / divisor);
    }
}

bool TQAngleWithUnit::operator<(const TQAngleWithUnit& other) const {
    return valueInUnit(TQUnitDegree, false) < other.valueInUnit(TQUnitDegree, false);
}

void TQAngleWithUnit::archiveTo(TQWriteStream* stream) const {
    stream->write(_value);
    stream->write(_unit);
    stream->write(_base360);
}

void TQAngleWithUnit::unarchiveFrom(TQReadStream* stream) {
    stream->read(_value);
    stream->read(_unit);
    stream->read(_base360);
    if (stream->failed()) {
        *this = TQAngleWithUnit();
    }
    keepWithinTurn();
}
