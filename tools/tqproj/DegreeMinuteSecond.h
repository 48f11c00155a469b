#pragma once

#include <string>
#include <string_view>

/// Which angle of a geographic point a text stands for; decides its hemisphere letters.
enum class GeographicAxis { Longitude, Latitude };

/// Reads an angle in degrees, minutes and seconds: "48:51:24.1N", "48d51'24.1\"N", "48°51'24.1\"N",
/// "-2:20:14". Minutes and seconds may be left out; the last number given may have decimals. Either a sign
/// stands in front or a letter E, W, N or S (of either case) that fits the axis at the end, or neither.
/// Rounded once: what appendDegreeMinuteSecond() wrote with full precision reads back to the same double,
/// within one arc minute of zero to within its last bit.
/// @param text the whole field, without blanks
/// @param axis the axis that the angle belongs to
/// @param degrees receives the angle in degrees; unchanged when the text is no such angle
/// @return whether the text is such an angle; minutes and seconds must be below 60
bool parseDegreeMinuteSecond(std::string_view text, GeographicAxis axis, double& degrees);

/// Appends an angle in the form "48:51:24.10000N", without blanks and commas.
/// @param out the text to append to
/// @param degrees the angle in degrees, finite
/// @param axis the axis that the angle belongs to
/// @param precision the number of decimals of the second, or NumberFormat::fullPrecision
void appendDegreeMinuteSecond(std::string& out, double degrees, GeographicAxis axis, int precision);
