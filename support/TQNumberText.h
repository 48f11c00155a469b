#pragma once

#include "TQSystemWExport.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// @file
/// Numbers to and from text, the same under every C and C++ locale: the decimal separator is always a
/// point. Blanks are the six of the C locale (space, \\t, \\n, \\v, \\f, \\r).

/// The number that a text begins with, as `strtod` of the C locale reads it: blanks are skipped, a sign,
/// decimal digits with an exponent, "inf", "infinity" and "nan" in any case are accepted; what follows
/// the number does not matter. Hexadecimal floating point is not read.
/// @param text the text to read
/// @return the nearest double; ±infinity where it is too large, ±0 where it is too small for a double, 0
/// when the text begins with no number
TQSYSTEMW_EXPORT double tq_parseDouble(std::string_view text);

/// The decimal integer that a text begins with, as `strtol` reads it, limited to 32 bits.
/// @param text the text to read; blanks and a sign may stand in front
/// @return the integer, the nearest limit of std::int32_t where it lies outside, 0 when the text begins
/// with no integer
TQSYSTEMW_EXPORT std::int32_t tq_parseLong(std::string_view text);

/// Reads the number that a text begins with, as `sscanf` does with "%lf", and drops it from the text.
/// @param text the text; blanks may stand in front of the number, what follows it is left
/// @param value receives the number as tq_parseDouble() reads it
/// @return whether there was a number; text and value stay as they are without one
TQSYSTEMW_EXPORT bool tq_takeDouble(std::string_view& text, double& value);

/// Reads the decimal integer that a text begins with, as `sscanf` does with "%d", and drops it from the text.
/// @param text the text; blanks may stand in front of the integer, what follows it is left
/// @param value receives the integer as tq_parseLong() reads it
/// @return whether there was an integer; text and value stay as they are without one
TQSYSTEMW_EXPORT bool tq_takeLong(std::string_view& text, std::int32_t& value);

/// Reads numbers one after the other, as `sscanf` does with "%lf %lf ...", and stops at the first that
/// cannot be read.
/// @param text the text to read
/// @param targets where the numbers go, in order; those that are not reached keep their values
/// @return how many numbers were read; 0 for an empty text
TQSYSTEMW_EXPORT int tq_scanDoubles(std::string_view text, std::span<double* const> targets);

/// Reads a field that must be a number as a whole; blanks may stand around it.
/// @param text the field
/// @param value receives the number as tq_parseDouble() reads it; keeps its value when there is none
/// @return whether the whole field is one number
TQSYSTEMW_EXPORT bool tq_parseCompleteDouble(std::string_view text, double& value);

/// Reads a field that must be a decimal integer as a whole; blanks may stand around it.
/// @param text the field
/// @param value receives the integer as tq_parseLong() reads it; keeps its value when there is none
/// @return whether the whole field is one integer
TQSYSTEMW_EXPORT bool tq_parseCompleteLong(std::string_view text, std::int32_t& value);

/// The shortest text that reads back to the same double; "inf", "-inf" and "nan" for the others.
/// @param value the number to write
TQSYSTEMW_EXPORT std::string tq_shortestText(double value);

/// Appends a number with a fixed count of decimals, as the format "%.Nf" prints it.
/// @param out the text to append to
/// @param value the number to write; "inf", "-inf" and "nan" where it is not finite
/// @param precision the count of decimals; below 0 counts as 0
TQSYSTEMW_EXPORT void tq_appendFixed(std::string& out, double value, int precision);
