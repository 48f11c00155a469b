#include "tools/tqproj/PointWriter.h"

#include "tools/tqproj/PointLine.h"

void PointWriter::append(std::string& out, const PointLine& line, const TQPoint& point) const {
    out += line.lead;
    _text.append(out, point.x, GeographicAxis::Longitude);
    out += line.separator;
    _text.append(out, point.y, GeographicAxis::Latitude);
    out += line.rest;
}
