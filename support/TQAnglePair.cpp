#include "support/TQAnglePair.h"

#include <cmath>
#include <initializer_list>

namespace {

bool firstPartIsNegative(double degrees, double minutes, double seconds) {
    for (const double part : {degrees, minutes, seconds}) {
        if (part != 0.0 || std::signbit(part)) {
            return std::signbit(part);
        }
    }
    return false;
}

} // namespace

TQAnglePair::TQAnglePair(const TQAngleWithUnit& first, const TQAngleWithUnit& second)
    : _first(first), _second(second) {
    if (_second.unit() != _first.unit()) {
        _second.convert(_first.unit());
    }
}

TQAngleWithUnit TQAnglePair::angleFromParts(double degrees, double minutes, double seconds) {
    const double size = std::abs(degrees) + (std::abs(minutes) * 60.0 + std::abs(seconds)) / 3600.0;
    const bool isNegative = firstPartIsNegative(degrees, minutes, seconds);
    return TQAngleWithUnit(isNegative ? -size : size, TQUnitDegree);
}

void TQAnglePair::convert(std::uint32_t unit) {
    _first.convert(unit);
    _second.convert(unit);
}

void TQAnglePair::archiveTo(TQWriteStream* stream) const {
    _first.archiveTo(stream);
    _second.archiveTo(stream);
}

void TQAnglePair::unarchiveFrom(TQReadStream* stream) {
    _first.unarchiveFrom(stream);
    _second.unarchiveFrom(stream);
}
