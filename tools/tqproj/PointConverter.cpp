#include "tools/tqproj/PointConverter.h"

#include "projection/TQProjection.h"
#include "support/TQNumberText.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointLine.h"

#include <cmath>

PointConverter::PointConverter(const TQProjection& projection, LibraryMessages& messages, Direction direction,
                               const AngularText& angular, const NumberFormat& plane)
    : _projection(projection), _messages(messages), _direction(direction), _angular(angular), _plane(plane) {}

bool PointConverter::convert(const PointLine& line, std::string& out) {
    TQPoint point;
    TQPoint result;
    if (!parsePoint(line, point) || !convertPoint(point, result)) {
        return false;
    }
    out += line.lead;
    append(out, result.x, GeographicAxis::Longitude);
    out += line.separator;
    append(out, result.y, GeographicAxis::Latitude);
    out += line.rest;
    return true;
}

bool PointConverter::parsePoint(const PointLine& line, TQPoint& point) {
    return parseField(line.first, GeographicAxis::Longitude, point.x) &&
           parseField(line.second, GeographicAxis::Latitude, point.y);
}

bool PointConverter::parseField(std::string_view field, GeographicAxis axis, double& value) {
    const bool isAngle = _direction == Direction::Forward;
    if (field.empty()) {
        return fail(axis == GeographicAxis::Longitude ? "the first number is missing"
                                                      : "the second number is missing");
    }
    const bool isRead = isAngle ? _angular.parse(field, axis, value) : tq_parseCompleteDouble(field, value);
    if (!isRead) {
        return fail("'" + printableText(field) + (isAngle ? "' is not an angle" : "' is not a number"));
    }
    if (!std::isfinite(value)) {
        return fail("'" + printableText(field) + "' is not a finite number");
    }
    return true;
}

bool PointConverter::convertPoint(const TQPoint& point, TQPoint& result) {
    const bool isForward = _direction == Direction::Forward;
    if (isForward ? !_projection.isGeoPtValid(point) : !_projection.isGlobalPtValid(point)) {
        return fail("the point lies outside the area of the projection");
    }
    const int answer = isForward ? _projection.convertGeoPt(point, result) //
                                 : _projection.convertGlobalPt(point, result);
    if (answer != 0 || !std::isfinite(result.x) || !std::isfinite(result.y)) {
        return fail("the projection cannot convert the point");
    }
    return true;
}

void PointConverter::append(std::string& out, double value, GeographicAxis axis) const {
    if (_direction == Direction::Forward) {
        _plane.append(out, value);
    } else {
        _angular.append(out, value, axis);
    }
}

// What the library said about the point tells more than the general reason.
bool PointConverter::fail(std::string_view reason) {
    _reason = _messages.isEmpty() ? std::string(reason) : _messages.take();
    return false;
}
