#pragma once

#include "TQSystemWExport.h"

#include <cstdint>
#include <numbers>

class TQString;

/// @file
/// Unit codes of lengths and angles, conversion between them, and their labels.
///
/// A code has four fields: bits 24-29 name the family and with it the base unit, bit 20 says whether the
/// low 20 bits divide the base unit (1) or multiply it (0), and the low 20 bits are that factor. Every
/// factor makes a unit, listed below or not, but 0 makes none; a code with one of the bits 21-23, 30 or
/// 31, and an unknown family, is no unit either.
///
/// | family | base unit | source of its size |
/// |---|---|---|
/// | 0x01 | metre | |
/// | 0x02 | inch | 0.0254 m exactly (international yard and pound agreement, 1959) |
/// | 0x04 | typographic point | 1/72 inch |
/// | 0x08 | US survey foot | 1200/3937 m exactly (EPSG unit 9003) |
/// | 0x11 | radian | |
/// | 0x12 | degree | pi/180 rad |
/// | 0x14 | gon | pi/200 rad (EPSG unit 9105) |
/// | 0x21 | degree, shown as degrees, minutes and seconds | the factor must be 1 |

inline constexpr std::uint32_t TQUnitMetre = 0x01000001;        ///< m
inline constexpr std::uint32_t TQUnitDecametre = 0x0100000A;    ///< dam
inline constexpr std::uint32_t TQUnitHectometre = 0x01000064;   ///< hm
inline constexpr std::uint32_t TQUnitKilometre = 0x010003E8;    ///< km
inline constexpr std::uint32_t TQUnitNauticalMile = 0x0100073C; ///< NM, 1852 m (international, 1929)
inline constexpr std::uint32_t TQUnitDecimetre = 0x0110000A;    ///< dm
inline constexpr std::uint32_t TQUnitCentimetre = 0x01100064;   ///< cm
inline constexpr std::uint32_t TQUnitMillimetre = 0x011003E8;   ///< mm

inline constexpr std::uint32_t TQUnitInch = 0x02000001; ///< in
inline constexpr std::uint32_t TQUnitFoot = 0x0200000C; ///< ft, 12 inches
inline constexpr std::uint32_t TQUnitYard = 0x02000024; ///< yd, 3 feet
inline constexpr std::uint32_t TQUnitMile = 0x0200F780; ///< mi, 5280 feet

inline constexpr std::uint32_t TQUnitPoint = 0x04000001; ///< pt
inline constexpr std::uint32_t TQUnitPica = 0x0400000C;  ///< pica, 12 points

inline constexpr std::uint32_t TQUnitUSSurveyFoot = 0x08000001; ///< ftUS
inline constexpr std::uint32_t TQUnitUSSurveyMile = 0x080014A0; ///< miUS, 5280 US survey feet

inline constexpr std::uint32_t TQUnitRadian = 0x11000001;             ///< rad
inline constexpr std::uint32_t TQUnitMilliradian = 0x111003E8;        ///< mrad
inline constexpr std::uint32_t TQUnitDegree = 0x12000001;             ///< deg
inline constexpr std::uint32_t TQUnitArcMinute = 0x1210003C;          ///< arcmin
inline constexpr std::uint32_t TQUnitArcSecond = 0x12100E10;          ///< arcsec
inline constexpr std::uint32_t TQUnitGon = 0x14000001;                ///< gon
inline constexpr std::uint32_t TQUnitCentigon = 0x14100064;           ///< cgon
inline constexpr std::uint32_t TQUnitDegreeMinuteSecond = 0x21000001; ///< dms, decimal degrees shown as D M S

/// An angle in degrees as radians: degrees * pi / 180, in that order.
/// @param degrees the angle in degrees
constexpr double tq_deg2rad(double degrees) { return degrees * std::numbers::pi / 180.0; }

/// An angle in radians as degrees: radians * 180 / pi, in that order.
/// @param radians the angle in radians
constexpr double tq_rad2deg(double radians) { return radians * 180.0 / std::numbers::pi; }

/// Whether a code is counted among the angles: bit 28 is set, or the code is TQUnitDegreeMinuteSecond.
/// Says nothing about whether the code is a unit.
/// @param unit a unit code
constexpr bool tq_unitIsAngular(std::uint32_t unit) {
    return (unit & 0x10000000U) != 0 || unit == TQUnitDegreeMinuteSecond;
}

/// The conversion from one unit to another, worked out once for many values.
///
/// It multiplies by one number and divides by another, in that order. Both are integers in lowest terms
/// unless radians meet another angular unit; the result then has one rounding for the product and one for
/// the quotient, and none where the number is 1 (kilometres to metres, degrees to arc seconds). Where
/// there is nothing to convert - one of the codes is no unit, or one is a length and the other an
/// angle - values stay as they are.
class TQSYSTEMW_EXPORT TQUnitConversion {
  public:
    /// The conversion between two units.
    /// @param source the unit code of the values given
    /// @param destination the unit code of the values wanted
    TQUnitConversion(std::uint32_t source, std::uint32_t destination);

    /// The value in the destination's unit.
    /// @param value the value in the source's unit
    double operator()(double value) const { return value * _multiplier / _divisor; }

  private:
    double _multiplier = 1.0;
    double _divisor = 1.0;
};

/// Converts a length or an angle between two units, as TQUnitConversion does.
///
/// Equal units give the value back bit for bit; degrees to radians is tq_deg2rad(), the way back
/// tq_rad2deg().
/// @param value the value in the source's unit; infinities and NaN stay what they are
/// @param source the unit code of the value
/// @param destination the unit code wanted
/// @param base360 true brings an angle into one turn, 0 to 360 degrees in the destination's unit; exactly
///        one turn stays one turn. Lengths, infinities, NaN and conversions between a length and an angle
///        ignore it.
TQSYSTEMW_EXPORT double convertDimValue(double value, std::uint32_t source, std::uint32_t destination,
                                        bool base360);

/// The short label of a unit, in ASCII: "m", "km", "deg" ...; "0x%08X" for a code that has none.
/// @param unit a unit code
TQSYSTEMW_EXPORT TQString unitShortRepresentation(std::uint32_t unit);

/// The code of a short label or of a text of the form "0x%08X" (digits of either case); 0 for any other
/// text. Labels are compared exactly: "NM" is the nautical mile, "nm" is unknown.
/// @param text the label
TQSYSTEMW_EXPORT std::uint32_t unitFromShortRepresentation(const TQString& text);

/// The label of a unit for the user: the short label looked up in the application's localizer, which has the
/// listed units; the short label itself when the localizer does not know it.
/// @param unit a unit code
TQSYSTEMW_EXPORT TQString localisedUnitRepresentation(std::uint32_t unit);

/// The text by which the user knows a unit, from the label that an object keeps: a short label, or the
/// "degrés" that the parameters of projections have for degrees, in whatever encoding. Labels that the
/// application's localizer does not know come back as they are.
/// @param label the label kept
TQSYSTEMW_EXPORT TQString tq_displayLabelOfUnit(const TQString& label);
