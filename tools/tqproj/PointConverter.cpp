#include "tools/tqproj/PointConverter.h"

#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

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
    return _input.parse(line, point) || fail(_input.reason());
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
