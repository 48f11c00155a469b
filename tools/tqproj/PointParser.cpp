#include "tools/tqproj/PointParser.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

#include <cmath>
#include <utility>

namespace {

/// Whether an operation takes the longitude of a point at another turn.
bool takesOtherTurn(const TQPoint& point, const PointOperation& operation) {
    return operation.atNearestTurn(point).x != point.x;
}

} // namespace

bool PointParser::parse(const PointLine& line, TQPoint& point) {
    return parseField(line.first, GeographicAxis::Longitude, point.x) &&
           parseField(line.second, GeographicAxis::Latitude, point.y);
}

bool PointParser::parse(const PointLine& line, const PointOperation& operation, TQPoint& point) {
    if (!parse(line, point)) {
        return false;
    }
    constexpr double greatest = 1e5; // of radians its last bit is a tenth of a millimetre
    if (std::abs(point.x) > greatest &&
        takesOtherTurn({std::copysign(greatest, point.x), point.y}, operation)) {
        return fail("'" + printableText(line.first) + "' is too many turns to tell the place");
    }
    if (takesOtherTurn(point, operation)) {
        point.x = _text.parseAtTurn(line.first, operation.atNearestTurn(point).x);
    }
    return true;
}

bool PointParser::parseField(std::string_view field, GeographicAxis axis, double& value) {
    if (field.empty()) {
        return fail(axis == GeographicAxis::Longitude ? "the first number is missing"
                                                      : "the second number is missing");
    }
    if (!_text.parse(field, axis, value)) {
        return fail("'" + printableText(field) + "' is not " + std::string(_text.noun()));
    }
    if (!std::isfinite(value)) {
        return fail("'" + printableText(field) + "' is not a finite number");
    }
    return true;
}

bool PointParser::fail(std::string reason) {
    _reason = std::move(reason);
    return false;
}
