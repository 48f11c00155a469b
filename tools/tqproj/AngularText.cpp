#include "tools/tqproj/AngularText.h"

#include "support/TQNumberText.h"

#include <algorithm>
#include <array>

namespace {

struct UnitChoice {
    std::string_view name;
    std::uint32_t unit;
    int precision; // decimals: 1e-9 degrees are 0.1 mm on the ground
};

constexpr std::array<UnitChoice, 4> unitChoices{{{"deg", TQUnitDegree, 9},
                                                 {"rad", TQUnitRadian, 11},
                                                 {"gon", TQUnitGon, 9},
                                                 {"dms", TQUnitDegreeMinuteSecond, 5}}};

int usualPrecision(std::uint32_t unit) {
    const auto* const choice = std::ranges::find(unitChoices, unit, &UnitChoice::unit);
    return choice != unitChoices.end() ? choice->precision : unitChoices.front().precision;
}

} // namespace

AngularText::AngularText(std::uint32_t unit, std::optional<int> precision, std::uint32_t valueUnit)
    : _isSexagesimal(unit == TQUnitDegreeMinuteSecond), _toValue(unit, valueUnit),
      _fromValue(valueUnit, unit), _format(precision.value_or(usualPrecision(unit))) {}

bool AngularText::parse(std::string_view text, GeographicAxis axis, double& angle) const {
    double value = 0.0;
    const bool isAngle =
        _isSexagesimal ? parseDegreeMinuteSecond(text, axis, value) : tq_parseCompleteDouble(text, value);
    if (isAngle) {
        angle = _toValue(value);
    }
    return isAngle;
}

void AngularText::append(std::string& out, double angle, GeographicAxis axis) const {
    const double value = _fromValue(angle);
    if (_isSexagesimal) {
        appendDegreeMinuteSecond(out, value, axis, _format.precision());
    } else {
        _format.append(out, value);
    }
}

std::uint32_t AngularText::unitFromName(std::string_view name) {
    const auto* const choice = std::ranges::find(unitChoices, name, &UnitChoice::name);
    return choice != unitChoices.end() ? choice->unit : 0;
}
