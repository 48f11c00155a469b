#include "tools/tqproj/CoordinateText.h"

#include "support/TQNumberText.h"

bool CoordinateText::parse(std::string_view text, GeographicAxis axis, double& value) const {
    const auto* const angular = std::get_if<AngularText>(&_form);
    return angular != nullptr ? angular->parse(text, axis, value) : tq_parseCompleteDouble(text, value);
}

double CoordinateText::parseAtTurn(std::string_view text, double near) const {
    return std::get<AngularText>(_form).parseAtTurn(text, near);
}

void CoordinateText::append(std::string& out, double value, GeographicAxis axis) const {
    if (const auto* const angular = std::get_if<AngularText>(&_form)) {
        angular->append(out, value, axis);
    } else {
        std::get<NumberFormat>(_form).append(out, value);
    }
}

std::string_view CoordinateText::noun() const {
    return std::holds_alternative<AngularText>(_form) ? "an angle" : "a number";
}
