#include "tools/tqproj/NumberFormat.h"

#include "support/TQNumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

// Between these magnitudes a number is written without an exponent.
constexpr double smallestPlain = 1e-9;
constexpr double greatestPlain = 1e16;

// Up to 10^22 these are exact.
constexpr std::array<double, 18> powersOfTen{1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,
                                             1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};

void appendShortest(std::string& out, double value) {
    const double magnitude = std::abs(value);
    const bool isPlain = value == 0.0 || (magnitude >= smallestPlain && magnitude < greatestPlain);
    std::array<char, 40> digits{};
    const std::to_chars_result end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    out.append(digits.data(), end.ptr);
}

// The number times a power of ten, rounded to an integer as its decimal text is rounded. The product is off
// by half a unit in its last place, 2^-10 below 2^43, so that the rounding is certain where the fraction is
// farther than that from a half. False elsewhere, and for greater numbers.
bool roundScaled(double magnitude, int precision, std::uint64_t& rounded) {
    constexpr double greatestScaled = 0x1p43;
    constexpr double uncertainty = 0x1p-9;
    const double scaled = magnitude * powersOfTen[static_cast<std::size_t>(precision)];
    if (!(scaled < greatestScaled)) {
        return false;
    }
    rounded = static_cast<std::uint64_t>(scaled);
    const double fraction = scaled - static_cast<double>(rounded);
    if (std::abs(fraction - 0.5) < uncertainty) {
        return false;
    }
    rounded += fraction > 0.5 ? 1 : 0;
    return true;
}

// Writes an integer with a decimal point before its last digits, backwards.
void appendWithPoint(std::string& out, bool isNegative, std::uint64_t digits, int precision) {
    std::array<char, 24> text{};
    char* const end = text.data() + text.size();
    char* begin = end;
    for (int place = 0; place < precision; ++place, digits /= 10) {
        *--begin = static_cast<char>('0' + digits % 10);
    }
    if (precision > 0) {
        *--begin = '.';
    }
    do {
        *--begin = static_cast<char>('0' + digits % 10);
        digits /= 10;
    } while (digits != 0);
    if (isNegative) {
        *--begin = '-';
    }
    out.append(begin, end);
}

// As tq_appendFixed() does, and for the numbers of every day three times as fast.
void appendFixed(std::string& out, double value, int precision) {
    std::uint64_t rounded = 0;
    if (roundScaled(std::abs(value), precision, rounded)) {
        appendWithPoint(out, value < 0.0, rounded, precision);
    } else {
        tq_appendFixed(out, value, precision);
    }
}

// A number that rounds to nothing must not keep its sign.
void dropSignOfZero(std::string& out, std::size_t start) {
    if (out[start] == '-' && out.find_first_not_of("0.", start + 1) == std::string::npos) {
        out.erase(start, 1);
    }
}

} // namespace

void NumberFormat::append(std::string& out, double value) const {
    const std::size_t start = out.size();
    if (_precision == fullPrecision) {
        appendShortest(out, value);
    } else {
        appendFixed(out, value, _precision);
    }
    dropSignOfZero(out, start);
}
