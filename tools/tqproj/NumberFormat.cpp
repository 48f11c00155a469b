#include "tools/tqproj/NumberFormat.h"

#include "support/TQNumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

// Between these magnitudes a number is written without an exponent.
constexpr double smallestPlain = 1e-9;
constexpr double greatestPlain = 1e16;

// "00" to "99".
constexpr std::array<char, 200> digitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t number = 0; number < 100; ++number) {
        pairs[2 * number] = static_cast<char>('0' + number / 10);
        pairs[2 * number + 1] = static_cast<char>('0' + number % 10);
    }
    return pairs;
}();

// 10^0 to 10^17.
template <class Number>
constexpr std::array<Number, NumberFormat::greatestPrecision + 1> powersOfTen = [] {
    std::array<Number, NumberFormat::greatestPrecision + 1> powers{1};
    for (std::size_t exponent = 1; exponent < powers.size(); ++exponent) {
        powers[exponent] = 10 * powers[exponent - 1]; // exact up to 10^22, as a double too
    }
    return powers;
}();

// A number with a fixed count of decimals: what stands before the point, and the decimals as an integer.
struct DecimalParts {
    std::uint64_t integer;
    std::uint64_t fraction;
};

void appendShortest(std::string& out, double value) {
    const double magnitude = std::abs(value);
    const bool isPlain = value == 0.0 || (magnitude >= smallestPlain && magnitude < greatestPlain);
    std::array<char, 40> digits{};
    const std::to_chars_result end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    out.append(digits.data(), end.ptr);
}

// An integer below 2^63 without its decimals, in one instruction.
std::uint64_t truncated(double magnitude) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(magnitude));
}

// The number rounded as its decimal text is. Its product with the power of ten is off by half a unit in the
// last place, 2^-10 below 2^43, so that the rounding is certain where the product's fraction is farther than
// that from a half. False elsewhere, and for greater numbers.
bool roundToDecimals(double magnitude, std::size_t precision, DecimalParts& parts) {
    constexpr double greatestScaled = 0x1p43;
    constexpr double uncertainty = 0x1p-9;
    const double scaled = magnitude * powersOfTen<double>[precision];
    if (!(scaled < greatestScaled)) {
        return false;
    }
    const std::uint64_t below = truncated(scaled);
    const double beyond = scaled - static_cast<double>(static_cast<std::int64_t>(below));
    if (std::abs(beyond - 0.5) < uncertainty) {
        return false;
    }
    const std::uint64_t one = powersOfTen<std::uint64_t>[precision];
    parts.integer = truncated(magnitude);
    parts.fraction = below + (beyond > 0.5 ? 1 : 0) - parts.integer * one;
    if (parts.fraction == one) {
        parts = {parts.integer + 1, 0};
    }
    return true;
}

// How many digits an integer has that is below 10^17.
std::size_t digitCount(std::uint64_t integer) {
    std::size_t count = 1;
    while (integer >= powersOfTen<std::uint64_t>[count]) {
        ++count;
    }
    return count;
}

void writePair(char* place, std::uint64_t number) { std::memcpy(place, &digitPairs[2 * number], 2); }

// Writes the digits of an integer backwards over as many zeros at least.
void writeDigits(char* end, std::uint64_t integer) {
    for (; integer >= 10000; integer /= 10000) {
        const std::uint64_t four = integer % 10000;
        end -= 4;
        writePair(end, four / 100);
        writePair(end + 2, four % 100);
    }
    for (; integer >= 10; integer /= 100) {
        end -= 2;
        writePair(end, integer % 100);
    }
    if (integer != 0) {
        *--end = static_cast<char>('0' + integer);
    }
}

// Writes both parts where they are to stand: what is copied right after it was written costs more.
void appendParts(std::string& out, bool isNegative, const DecimalParts& parts, std::size_t precision) {
    const std::size_t start = out.size();
    const std::size_t pointSize = precision > 0 ? 1 : 0;
    const std::size_t signSize = isNegative ? 1 : 0;
    out.append(signSize + digitCount(parts.integer) + pointSize + precision, '0');
    if (isNegative) {
        out[start] = '-';
    }
    char* const end = out.data() + out.size();
    writeDigits(end, parts.fraction);
    if (precision > 0) {
        *(end - precision - 1) = '.';
    }
    writeDigits(end - precision - pointSize, parts.integer);
}

// As tq_appendFixed() does, and for the numbers of every day several times as fast.
void appendFixed(std::string& out, double value, int precision) {
    const auto decimals = static_cast<std::size_t>(precision);
    DecimalParts parts{};
    if (roundToDecimals(std::abs(value), decimals, parts)) {
        appendParts(out, value < 0.0, parts, decimals);
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
