#include "support/TQNumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
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
