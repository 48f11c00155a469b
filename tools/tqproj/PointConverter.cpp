#include "tools/tqproj/PointConverter.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

#include <cmath>

PointConverter::PointConverter(const PointOperation& operation, LibraryMessages& messages,
                               const CoordinateText& input, const CoordinateText& output)
    : _operation(operation), _messages(messages), _input(input), _output(output) {}

bool PointConverter::convert(const PointLine& line, std::string& out) {
    TQPoint point;
    TQPoint result;
    if (!parsePoint(line, point) || !convertPoint(point, result)) {
        return false;
    }
    out += line.lead;
    _output.append(out, result.x, GeographicAxis::Longitude);
    out += line.separator;
    _output.append(out, result.y, GeographicAxis::Latitude);
    out += line.rest;
    return true;
}

bool PointConverter::parsePoint(const PointLine& line, TQPoint& point) {
    return parseField(line.first, GeographicAxis::Longitude, point.x) &&
           parseField(line.second, GeographicAxis::Latitude, point.y);
}

bool PointConverter::parseField(std::string_view field, GeographicAxis axis, double& value) {
    if (field.empty()) {
        return fail(axis == GeographicAxis::Longitude ? "the first number is missing"
                                                      : "the second number is missing");
    }
    if (!_input.parse(field, axis, value)) {
        return fail("'" + printableText(field) + "' is not " + std::string(_input.noun()));
    }
    if (!std::isfinite(value)) {
        return fail("'" + printableText(field) + "' is not a finite number");
    }
    return true;
}

bool PointConverter::convertPoint(const TQPoint& point, TQPoint& result) {
    const std::string_view problem = _operation.convert(point, result);
    return problem.empty() || fail(problem);
}

// What the library said about the point tells more than the general reason.
bool PointConverter::fail(std::string_view reason) {
    _reason = _messages.isEmpty() ? std::string(reason) : _messages.take();
    return false;
}
