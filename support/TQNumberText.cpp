#include "support/TQNumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <system_error>

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

std::string_view withoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

/// `std::from_chars` accepts no plus sign; one that a digit or letter follows is dropped.
std::string_view withoutPlusSign(std::string_view text) {
    const bool isPlus = text.starts_with('+') && !text.substr(1).starts_with('-');
    return isPlus ? text.substr(1) : text;
}

/// The exponent that ends a number, limited to values far beyond every double's.
int writtenExponent(std::string_view number) {
    constexpr int limit = 1'000'000;
    const std::size_t mark = number.find_first_of("eE");
    if (mark == std::string_view::npos) {
        return 0;
    }
    return std::clamp(tq_parseLong(number.substr(mark + 1)), -limit, limit);
}

/// Whether a decimal number that is out of a double's range is too large, not too small: the decimal
/// exponent of its first digit that is not 0 tells.
bool isTooLarge(std::string_view number) {
    const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
    const auto firstDigit = static_cast<std::ptrdiff_t>(mantissa.find_first_of("123456789"));
    const auto point = static_cast<std::ptrdiff_t>(std::min(mantissa.find('.'), mantissa.size()));
    return point - firstDigit + writtenExponent(number) > 0;
}

double outOfRangeValue(std::string_view number) {
    const double magnitude = isTooLarge(number) ? std::numeric_limits<double>::infinity() : 0.0;
    return number.starts_with('-') ? -magnitude : magnitude;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// The value of eight digits, worked out in pairs, then fours, then all at once (D. Lemire, "Quickly
/// parsing eight digits", 2018). False when one is no digit.
bool readEightDigits(const char* text, std::uint64_t& value) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    constexpr std::uint64_t highHalves = 0xF0F0F0F0F0F0F0F0U;
    constexpr std::uint64_t zeros = 0x3030303030303030U;
    constexpr std::uint64_t sixes = 0x0606060606060606U; // carry '9' + 1 and above into the high half
    if ((bytes & highHalves) != zeros || ((bytes + sixes) & highHalves) != zeros) {
        return false;
    }
    bytes -= zeros;
    bytes = bytes * 10 + (bytes >> 8U);
    constexpr std::uint64_t mask = 0x000000FF000000FFU;
    value = ((bytes & mask) * (100 + (std::uint64_t{1'000'000} << 32U)) +
             ((bytes >> 16U) & mask) * (1 + (std::uint64_t{10'000} << 32U))) >>
            32U;
    return true;
}

/// Reads digits up to the first other character.
const char* takeDigits(const char* text, const char* end, std::uint64_t& digits) {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint64_t eight = 0;
        while (end - text >= 8 && readEightDigits(text, eight)) {
            digits = digits * 100'000'000 + eight;
            text += 8;
        }
    }
    for (; text != end && isDigit(*text); ++text) {
        digits = digits * 10 + static_cast<std::uint64_t>(*text - '0');
    }
    return text;
}

/// Reads a field that is a decimal number and nothing else, of not too many digits, as those of every day
/// are: digits and power of ten are doubles without rounding then, and their quotient, rounded once, is the
/// nearest double (W. D. Clinger, "How to read floating point numbers accurately", 1990). False for any other
/// field.
bool readPlainNumber(std::string_view field, double& value) {
    constexpr std::array<double, 20> powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                                 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
    constexpr std::uint64_t greatestExact = std::uint64_t{1} << 53U;
    const bool isNegative = field.starts_with('-');
    const char* const begin = field.data() + (isNegative ? 1 : 0);
    const char* const end = field.data() + field.size();
    if (begin == end || !isDigit(*begin) || end - begin >= std::ssize(powersOfTen)) {
        return false;
    }
    std::uint64_t digits = 0;
    const char* at = takeDigits(begin, end, digits);
    std::size_t decimals = 0;
    if (at != end && *at == '.') {
        const char* const fraction = at + 1;
        at = takeDigits(fraction, end, digits);
        decimals = static_cast<std::size_t>(at - fraction);
    }
    if (at != end || digits > greatestExact) {
        return false;
    }
    const double magnitude = static_cast<double>(digits) / powersOfTen[decimals];
    value = isNegative ? -magnitude : magnitude;
    return true;
}

std::string_view nameOfNonFinite(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    return value < 0 ? "-inf" : "inf";
}

} // namespace

bool tq_takeLong(std::string_view& text, std::int32_t& value) {
    const std::string_view number = withoutPlusSign(withoutLeadingBlanks(text));
    std::int32_t parsed = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), parsed);
    if (error == std::errc::invalid_argument) {
        return false;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int32_t limit = number.starts_with('-') ? Limits::min() : Limits::max();
    value = error == std::errc() ? parsed : limit;
    text = number.substr(static_cast<std::size_t>(end - number.data()));
    return true;
}

bool tq_takeDouble(std::string_view& text, double& value) {
    const std::string_view number = withoutPlusSign(withoutLeadingBlanks(text));
    double parsed = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), parsed);
    if (error == std::errc::invalid_argument) {
        return false;
    }
    const auto length = static_cast<std::size_t>(end - number.data());
    value = error == std::errc() ? parsed : outOfRangeValue(number.substr(0, length));
    text = number.substr(length);
    return true;
}

double tq_parseDouble(std::string_view text) {
    double value = 0;
    tq_takeDouble(text, value);
    return value;
}

std::int32_t tq_parseLong(std::string_view text) {
    std::int32_t value = 0;
    tq_takeLong(text, value);
    return value;
}

int tq_scanDoubles(std::string_view text, std::span<double* const> targets) {
    int read = 0;
    for (double* const target : targets) {
        if (!tq_takeDouble(text, *target)) {
            break;
        }
        ++read;
    }
    return read;
}

bool tq_parseCompleteDouble(std::string_view text, double& value) {
    if (readPlainNumber(text, value)) {
        return true;
    }
    double parsed = 0;
    if (!tq_takeDouble(text, parsed) || !withoutLeadingBlanks(text).empty()) {
        return false;
    }
    value = parsed;
    return true;
}

bool tq_parseCompleteLong(std::string_view text, std::int32_t& value) {
    std::int32_t parsed = 0;
    if (!tq_takeLong(text, parsed) || !withoutLeadingBlanks(text).empty()) {
        return false;
    }
    value = parsed;
    return true;
}

std::string tq_shortestText(double value) {
    if (!std::isfinite(value)) {
        return std::string(nameOfNonFinite(value));
    }
    constexpr std::size_t longest = 24; // -1.7976931348623157e+308
    std::array<char, longest> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

void tq_appendFixed(std::string& out, double value, int precision) {
    if (!std::isfinite(value)) {
        out += nameOfNonFinite(value);
        return;
    }
    const int decimals = std::max(precision, 0);
    constexpr std::size_t integerPart =
        std::numeric_limits<double>::max_exponent10 + 3; // sign, digits, point
    const std::size_t start = out.size();
    out.resize(start + integerPart + static_cast<std::size_t>(decimals));
    const auto result =
        std::to_chars(out.data() + start, out.data() + out.size(), value, std::chars_format::fixed, decimals);
    out.resize(static_cast<std::size_t>(result.ptr - out.data()));
}
