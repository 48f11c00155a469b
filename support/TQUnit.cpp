#include "support/TQUnit.h"

#include "support/TQFormat.h"
#include "support/TQLocalizer.h"
#include "support/TQString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr std::uint32_t reservedBits = 0xC0E00000;
constexpr std::uint32_t familyMask = 0x3F000000;
constexpr unsigned familyShift = 24;
constexpr std::uint32_t dividesBit = 0x00100000;
constexpr std::uint32_t factorMask = 0x000FFFFF;

enum class Dimension { length, angle };

/// Divides two numbers by what they have in common.
void cancel(std::uint64_t& first, std::uint64_t& second) {
    const std::uint64_t common = std::gcd(first, second);
    first /= common;
    second /= common;
}

/// The size of a unit in metres or degrees: numerator / denominator in lowest terms, and that divided by
/// pi where the unit is made of radians.
struct UnitSize {
    Dimension dimension;
    std::uint64_t numerator;
    std::uint64_t denominator;
    bool perPi = false;

    void multiplyBy(std::uint64_t factor) {
        cancel(factor, denominator);
        numerator *= factor;
    }

    void divideBy(std::uint64_t factor) {
        cancel(numerator, factor);
        denominator *= factor;
    }
};

/// The size of the base unit of a code's family; nothing when the code is no unit.
std::optional<UnitSize> sizeOfBaseUnit(std::uint32_t unit) {
    if ((unit & factorMask) == 0 || (unit & reservedBits) != 0) {
        return std::nullopt;
    }
    switch ((unit & familyMask) >> familyShift) {
    case TQUnitMetre >> familyShift:
        return UnitSize{Dimension::length, 1, 1};
    case TQUnitInch >> familyShift:
        return UnitSize{Dimension::length, 127, 5000};
    case TQUnitPoint >> familyShift:
        return UnitSize{Dimension::length, 127, 360000};
    case TQUnitUSSurveyFoot >> familyShift:
        return UnitSize{Dimension::length, 1200, 3937};
    case TQUnitRadian >> familyShift:
        return UnitSize{Dimension::angle, 180, 1, true};
    case TQUnitDegree >> familyShift:
        return UnitSize{Dimension::angle, 1, 1};
    case TQUnitGon >> familyShift:
        return UnitSize{Dimension::angle, 9, 10};
    default:
        return unit == TQUnitDegreeMinuteSecond ? sizeOfBaseUnit(TQUnitDegree) : std::nullopt;
    }
}

std::optional<UnitSize> sizeOfUnit(std::uint32_t unit) {
    std::optional<UnitSize> size = sizeOfBaseUnit(unit);
    if (size && (unit & dividesBit) != 0) {
        size->divideBy(unit & factorMask);
    } else if (size) {
        size->multiplyBy(unit & factorMask);
    }
    return size;
}

bool isAngle(std::uint32_t unit) {
    const std::optional<UnitSize> base = sizeOfBaseUnit(unit);
    return base && base->dimension == Dimension::angle;
}

static_assert(tq_deg2rad(360.0) == 2.0 * std::numbers::pi && tq_rad2deg(2.0 * std::numbers::pi) == 360.0,
              "one turn converts exactly between degrees and radians");

/// One turn in an angular unit.
double wholeTurn(std::uint32_t unit) { return convertDimValue(360.0, TQUnitDegree, unit, false); }

/// The angle within 0 and one turn; exactly one turn stays, a zero comes out positive.
double withinTurn(double angle, double turn) {
    if (angle < 0.0 || angle > turn) {
        const double rest = std::fmod(angle, turn);
        return rest < 0.0 ? rest + turn : rest + 0.0;
    }
    return angle + 0.0;
}

/// Converts a finite angle and brings it within one turn: first in its own unit, where no rounding has
/// touched it yet, so that one turn becomes exactly one turn.
double convertWithinTurn(double angle, std::uint32_t source, std::uint32_t destination) {
    const double sourceTurn = wholeTurn(source);
    const double reduced = withinTurn(angle, sourceTurn);
    if (source == destination) {
        return reduced;
    }
    const double turn = wholeTurn(destination);
    return reduced == sourceTurn ? turn
                                 : std::min(convertDimValue(reduced, source, destination, false), turn);
}

struct UnitLabel {
    std::uint32_t unit;
    std::string_view label;
};

/// The listed units, each once.
constexpr std::array<UnitLabel, 24> unitLabels{{
    {TQUnitMetre, "m"},           {TQUnitDecametre, "dam"},    {TQUnitHectometre, "hm"},
    {TQUnitKilometre, "km"},      {TQUnitNauticalMile, "NM"},  {TQUnitDecimetre, "dm"},
    {TQUnitCentimetre, "cm"},     {TQUnitMillimetre, "mm"},    {TQUnitInch, "in"},
    {TQUnitFoot, "ft"},           {TQUnitYard, "yd"},          {TQUnitMile, "mi"},
    {TQUnitPoint, "pt"},          {TQUnitPica, "pica"},        {TQUnitUSSurveyFoot, "ftUS"},
    {TQUnitUSSurveyMile, "miUS"}, {TQUnitRadian, "rad"},       {TQUnitMilliradian, "mrad"},
    {TQUnitDegree, "deg"},        {TQUnitArcMinute, "arcmin"}, {TQUnitArcSecond, "arcsec"},
    {TQUnitGon, "gon"},           {TQUnitCentigon, "cgon"},    {TQUnitDegreeMinuteSecond, "dms"},
}};

constexpr std::string_view hexPrefix = "0x";
constexpr std::size_t hexDigits = 8;

std::uint32_t unitFromHexText(std::string_view text) {
    if (text.size() != hexPrefix.size() + hexDigits || !text.starts_with(hexPrefix)) {
        return 0;
    }
    std::uint32_t unit = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + hexPrefix.size(), end, unit, 16);
    return result.ec == std::errc{} && result.ptr == end ? unit : 0;
}

} // namespace

TQUnitConversion::TQUnitConversion(std::uint32_t source, std::uint32_t destination) {
    std::optional<UnitSize> from = sizeOfUnit(source);
    std::optional<UnitSize> to = sizeOfUnit(destination);
    if (!from || !to || from->dimension != to->dimension) {
        return;
    }
    cancel(from->numerator, to->numerator);
    cancel(from->denominator, to->denominator);
    _multiplier = static_cast<double>(from->numerator) * static_cast<double>(to->denominator);
    _divisor = static_cast<double>(to->numerator) * static_cast<double>(from->denominator);
    if (to->perPi && !from->perPi) {
        _multiplier *= std::numbers::pi;
    }
    if (from->perPi && !to->perPi) {
        _divisor *= std::numbers::pi;
    }
}

double convertDimValue(double value, std::uint32_t source, std::uint32_t destination, bool base360) {
    if (base360 && std::isfinite(value) && isAngle(source) && isAngle(destination)) {
        return convertWithinTurn(value, source, destination);
    }
    if (source == destination) {
        return value;
    }
    if (source == TQUnitDegree && destination == TQUnitRadian) {
        return tq_deg2rad(value);
    }
    if (source == TQUnitRadian && destination == TQUnitDegree) {
        return tq_rad2deg(value);
    }
    return TQUnitConversion(source, destination)(value);
}

TQString unitShortRepresentation(std::uint32_t unit) {
    const auto entry = std::ranges::find(unitLabels, unit, &UnitLabel::unit);
    return entry != unitLabels.end() ? TQString(entry->label, TQEncodingDefault)
                                     : TQString(tq_format("0x%08X", unit), TQEncodingDefault);
}

std::uint32_t unitFromShortRepresentation(const TQString& text) {
    const std::string label = text.utf8();
    const auto entry = std::ranges::find(unitLabels, label, &UnitLabel::label);
    return entry != unitLabels.end() ? entry->unit : unitFromHexText(label);
}

TQString localisedUnitRepresentation(std::uint32_t unit) {
    return tq_displayLabelOfUnit(unitShortRepresentation(unit));
}

TQString tq_displayLabelOfUnit(const TQString& label) { return TQLocalizer::appLocalizedStringForKey(label); }
