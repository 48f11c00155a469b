#include "tools/tqproj/map/MapLine.h"

#include "support/TQFormat.h"

#include <cmath>

namespace {

constexpr double halfTurn = 180.0;
constexpr double thousandthsOfSecond = 60.0 * 60.0 * 1000.0; // of a degree

/// An angle as it is written: nothing is smaller than a thousandth of a second.
double rounded(double degrees) { return std::round(degrees * thousandthsOfSecond) / thousandthsOfSecond; }

/// An angle without sign in degrees, minutes and seconds, as far as there are any.
std::string degreesText(double degrees) {
    const double thousandths = std::round(degrees * thousandthsOfSecond);
    const double whole = std::floor(thousandths / thousandthsOfSecond);
    const double minutes = std::floor((thousandths - whole * thousandthsOfSecond) / 60'000.0);
    const double seconds = (thousandths - whole * thousandthsOfSecond - minutes * 60'000.0) / 1000.0;
    std::string text = tq_format("%.10g°", whole);
    if (minutes > 0.0 || seconds > 0.0) {
        text += tq_format("%.10g'", minutes);
    }
    return seconds > 0.0 ? text + tq_format("%.10g\"", seconds) : text;
}

std::string longitudeText(double longitude) {
    const double any = rounded(longitude);
    const double withinTurn = std::abs(any) <= halfTurn ? any : std::remainder(any, 2.0 * halfTurn);
    const bool hasSide = withinTurn != 0.0 && std::abs(withinTurn) != halfTurn;
    return degreesText(std::abs(withinTurn)) + (!hasSide ? "" : withinTurn > 0.0 ? "E" : "W");
}

std::string latitudeText(double latitude) {
    const double written = rounded(latitude);
    return degreesText(std::abs(written)) + (written == 0.0 ? "" : written > 0.0 ? "N" : "S");
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
