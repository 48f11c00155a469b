#include "tools/tqproj/AngularText.h"

#include "support/TQNumberText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

struct UnitChoice {
    std::string_view name;
    std::uint32_t unit;
    int precision; // decimals: 1e-9 degrees are 0.1 mm on the ground
    double turn;   // the whole circle
};

constexpr std::array<UnitChoice, 4> unitChoices{{{"deg", TQUnitDegree, 9, 360.0},
                                                 {"rad", TQUnitRadian, 11, 2.0 * std::numbers::pi},
                                                 {"gon", TQUnitGon, 9, 400.0},
                                                 {"dms", TQUnitDegreeMinuteSecond, 5, 360.0}}};

const UnitChoice& choiceOf(std::uint32_t unit) {
    const auto* const choice = std::ranges::find(unitChoices, unit, &UnitChoice::unit);
    return choice != unitChoices.end() ? *choice : unitChoices.front();
}

} // namespace

AngularText::AngularText(std::uint32_t unit, std::optional<int> precision, std::uint32_t valueUnit)
    : _isSexagesimal(unit == TQUnitDegreeMinuteSecond), _turn(choiceOf(unit).turn), _toValue(unit, valueUnit),
      _fromValue(valueUnit, unit), _format(precision.value_or(choiceOf(unit).precision)) {}

bool AngularText::parse(std::string_view text, GeographicAxis axis, double& angle) const {
    double value = 0.0;
    const bool isAngle = parseValue(text, axis, value);
    if (isAngle) {
        angle = _toValue(value);
    }
    return isAngle;
}

double AngularText::parseAtTurn(std::string_view text, double near) const {
    double value = 0.0;
    parseValue(text, GeographicAxis::Longitude, value);
    const double firstTurn = std::remainder(value, _turn);
    return _toValue(firstTurn + _turn * std::round((_fromValue(near) - firstTurn) / _turn));
}

bool AngularText::parseValue(std::string_view text, GeographicAxis axis, double& value) const {
    return _isSexagesimal ? parseDegreeMinuteSecond(text, axis, value) : tq_parseCompleteDouble(text, value);
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
