#include "tools/tqproj/map/MapLine.h"

#include "support/TQFormat.h"

#include <cmath>

namespace {

constexpr double halfTurn = 180.0;

/// An angle without sign in degrees, minutes and seconds, as far as there are any.
std::string degreesText(double degrees) {
    constexpr double parts = 60.0 * 60.0 * 1000.0; // a thousandth of a second is the least
    const double thousandths = std::round(degrees * parts);
    const double whole = std::floor(thousandths / parts);
    const double minutes = std::floor((thousandths - whole * parts) / 60'000.0);
    const double seconds = (thousandths - whole * parts - minutes * 60'000.0) / 1000.0;
    std::string text = tq_format("%.10g°", whole);
    if (minutes > 0.0 || seconds > 0.0) {
        text += tq_format("%.10g'", minutes);
    }
    return seconds > 0.0 ? text + tq_format("%.10g\"", seconds) : text;
}

std::string longitudeText(double longitude) {
    const double withinTurn =
        std::abs(longitude) <= halfTurn ? longitude : std::remainder(longitude, 2.0 * halfTurn);
    const bool hasSide = withinTurn != 0.0 && std::abs(withinTurn) != halfTurn;
    return degreesText(std::abs(withinTurn)) + (!hasSide ? "" : withinTurn > 0.0 ? "E" : "W");
}

std::string latitudeText(double latitude) {
    return degreesText(std::abs(latitude)) + (latitude == 0.0 ? "" : latitude > 0.0 ? "N" : "S");
}

} // namespace

std::string MapLine::coordinate(double metresOfUnit) const {
    switch (kind) {
    case Kind::Meridian:
        return longitudeText(value);
    case Kind::Parallel:
        return latitudeText(value);
    case Kind::Easting:
    case Kind::Northing:
        break;
    }
    return tq_format("%.10g", value * metresOfUnit) + (metresOfUnit == 1.0 ? "" : " m");
}
