#include "support/TQFormat.h"

#include "support/TQNumberText.h"
#include "support/TQString.h"
#include "support/TQTextEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <utf8.h>
#include <utility>

namespace {

/// One conversion of a format: %[flags][width][.precision][modifiers]letter
struct Conversion {
    bool leftAligned = false; // -
    bool plusSign = false;    // +
    bool blankSign = false;   // space
    bool zeroPadded = false;  // 0
    bool alternate = false;   // #
    int width = 0;
    std::optional<int> precision;
    char letter = 0;
};

constexpr int largestNumber = 9999;

bool setFlag(Conversion& conversion, char flag) {
    switch (flag) {
    case '-':
        conversion.leftAligned = true;
        return true;
    case '+':
        conversion.plusSign = true;
        return true;
    case ' ':
        conversion.blankSign = true;
        return true;
    case '0':
        conversion.zeroPadded = true;
        return true;
    case '#':
        conversion.alternate = true;
        return true;
    default:
        return false;
    }
}

/// Takes a decimal number, 0 when there are no digits, from the text; above 9999 there is no number.
std::optional<int> takeNumber(std::string_view& text) {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::int32_t number = tq_parseLong(text.substr(0, digits));
    text.remove_prefix(digits);
    return number <= largestNumber ? std::optional(number) : std::nullopt;
}

/// Takes a conversion, from behind its % on, from the text.
std::optional<Conversion> takeConversion(std::string_view& text) {
    Conversion conversion;
    while (!text.empty() && setFlag(conversion, text.front())) {
        text.remove_prefix(1);
    }
    const std::optional<int> width = takeNumber(text);
    if (!width) {
        return std::nullopt;
    }
    conversion.width = *width;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        conversion.precision = takeNumber(text);
        if (!conversion.precision) {
            return std::nullopt;
        }
    }
    text.remove_prefix(std::min(text.find_first_not_of("hlz"), text.size()));
    if (text.empty()) {
        return std::nullopt;
    }
    conversion.letter = text.front();
    text.remove_prefix(1);
    return conversion;
}

bool isOneOf(char letter, std::string_view letters) { return letters.find(letter) != std::string_view::npos; }

/// Appends a text, filled up with blanks to the conversion's width.
void appendPadded(std::string& out, const Conversion& conversion, std::string_view text) {
    const auto length = static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
    const auto width = static_cast<std::size_t>(conversion.width);
    const std::size_t padding = width > length ? width - length : 0;
    if (!conversion.leftAligned) {
        out.append(padding, ' ');
    }
    out += text;
    if (conversion.leftAligned) {
        out.append(padding, ' ');
    }
}

/// Appends a number, filled up to the width with zeros between prefix and digits or with blanks around.
void appendNumber(std::string& out, const Conversion& conversion, std::string prefix, std::string_view digits,
                  bool zerosAllowed) {
    const auto width = static_cast<std::size_t>(conversion.width);
    const std::size_t length = prefix.size() + digits.size();
    if (conversion.zeroPadded && !conversion.leftAligned && zerosAllowed && width > length) {
        prefix.append(width - length, '0');
    }
    appendPadded(out, conversion, prefix.append(digits));
}

std::string signOf(const Conversion& conversion, bool isNegative) {
    if (isNegative) {
        return "-";
    }
    if (conversion.plusSign) {
        return "+";
    }
    return conversion.blankSign ? " " : "";
}

void makeUpperCase(std::string& ascii) {
    std::ranges::transform(ascii, ascii.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
}

/// The digits of an integer, with zeros in front up to the precision; precision 0 writes 0 as nothing.
std::string integerDigits(const Conversion& conversion, std::uint64_t magnitude, int base) {
    std::array<char, std::numeric_limits<std::uint64_t>::digits> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, base);
    std::string digits(buffer.data(), result.ptr);
    const int precision = conversion.precision.value_or(1);
    if (magnitude == 0 && precision == 0) {
        digits.clear();
    }
    if (const auto least = static_cast<std::size_t>(precision); digits.size() < least) {
        digits.insert(0, least - digits.size(), '0');
    }
    return digits;
}

void appendSigned(std::string& out, const Conversion& conversion, std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
    appendNumber(out, conversion, signOf(conversion, value < 0), integerDigits(conversion, magnitude, 10),
                 !conversion.precision);
}

void appendUnsigned(std::string& out, const Conversion& conversion, std::uint64_t value) {
    const bool isHexadecimal = isOneOf(conversion.letter, "xX");
    const bool isOctal = conversion.letter == 'o';
    const int base = isHexadecimal ? 16 : isOctal ? 8 : 10;
    std::string digits = integerDigits(conversion, value, base);
    const bool hasPrefix = conversion.alternate && isHexadecimal && value != 0;
    if (conversion.alternate && isOctal && !digits.starts_with('0')) {
        digits.insert(0, 1, '0');
    }
    if (conversion.letter == 'X') {
        makeUpperCase(digits);
    }
    appendNumber(out, conversion, hasPrefix ? std::string{'0', conversion.letter} : std::string(), digits,
                 !conversion.precision);
}

std::string floatText(double magnitude, std::chars_format style, int precision) {
    constexpr std::size_t longestRest = 320; // digits before the point, point, exponent
    std::string text(longestRest + static_cast<std::size_t>(precision), '\0');
    const auto result = std::to_chars(text.data(), text.data() + text.size(), magnitude, style, precision);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

/// The # flag of %e and %f: the point stands also where no digit follows it.
std::string withPoint(std::string text) {
    if (text.find('.') == std::string::npos) {
        text.insert(std::min(text.find('e'), text.size()), 1, '.');
    }
    return text;
}

/// The # flag of %g: trailing zeros stay. C chooses the style by the exponent that %e would show.
std::string generalTextWithZeros(double magnitude, int significantDigits) {
    std::string text = floatText(magnitude, std::chars_format::scientific, significantDigits - 1);
    const int exponent = tq_parseLong(std::string_view(text).substr(text.find('e') + 1));
    if (exponent >= -4 && exponent < significantDigits) {
        text = floatText(magnitude, std::chars_format::fixed, significantDigits - 1 - exponent);
    }
    return withPoint(std::move(text));
}

std::string finiteText(const Conversion& conversion, double magnitude) {
    constexpr int defaultPrecision = 6;
    const int precision = conversion.precision.value_or(defaultPrecision);
    if (isOneOf(conversion.letter, "gG")) {
        const int significantDigits = std::max(precision, 1);
        return conversion.alternate ? generalTextWithZeros(magnitude, significantDigits)
                                    : floatText(magnitude, std::chars_format::general, significantDigits);
    }
    const bool isScientific = isOneOf(conversion.letter, "eE");
    std::string text = floatText(
        magnitude, isScientific ? std::chars_format::scientific : std::chars_format::fixed, precision);
    return conversion.alternate ? withPoint(std::move(text)) : text;
}

void appendFloat(std::string& out, const Conversion& conversion, double value) {
    const bool isFinite = std::isfinite(value);
    const std::string sign = std::isnan(value) ? "" : signOf(conversion, std::signbit(value));
    std::string digits =
        isFinite ? finiteText(conversion, std::fabs(value)) : tq_shortestText(std::fabs(value));
    if (isOneOf(conversion.letter, "FEG")) {
        makeUpperCase(digits);
    }
    appendNumber(out, conversion, sign, digits, isFinite);
}

/// The first characters of a text, as many as the precision allows.
std::string_view limitedText(const Conversion& conversion, std::string_view text) {
    if (!conversion.precision) {
        return text;
    }
    auto end = text.begin();
    for (int left = *conversion.precision; left > 0 && end != text.end(); --left) {
        utf8::unchecked::next(end);
    }
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

} // namespace

/// Formats one text; holds the arguments that are left.
class TQFormatter {
  public:
    explicit TQFormatter(std::span<const TQFormatArgument> arguments) : _arguments(arguments) {}

    std::string format(std::string_view format) {
        std::string out;
        while (!format.empty()) {
            const std::size_t plain = std::min(format.find('%'), format.size());
            out += format.substr(0, plain);
            format.remove_prefix(plain);
            if (!format.empty()) {
                appendConversion(out, format);
            }
        }
        return out;
    }

  private:
    /// Appends what the conversion at the head of the format prints, or else its own text.
    void appendConversion(std::string& out, std::string_view& format) {
        std::string_view rest = format.substr(1);
        const std::optional<Conversion> conversion = takeConversion(rest);
        if (!conversion || !append(out, *conversion)) {
            out += conversion ? format.substr(0, format.size() - rest.size()) : format.substr(0, 1);
        }
        format = conversion ? rest : format.substr(1);
    }

    bool append(std::string& out, const Conversion& conversion) {
        const char letter = conversion.letter;
        if (letter == '%') {
            out += '%';
            return true;
        }
        if (!isOneOf(letter, "diuxXocsfFeEgG") || _arguments.empty()) {
            return false;
        }
        const auto& value = _arguments.front()._value;
        _arguments = _arguments.subspan(1);
        if (const auto* text = std::get_if<std::string>(&value)) {
            return appendText(out, conversion, *text);
        }
        if (const auto* number = std::get_if<double>(&value)) {
            return appendDouble(out, conversion, *number);
        }
        return appendInteger(out, conversion, *std::get_if<TQFormatArgument::Integer>(&value));
    }

    static bool appendText(std::string& out, const Conversion& conversion, std::string_view text) {
        if (conversion.letter != 's') {
            return false;
        }
        appendPadded(out, conversion, limitedText(conversion, text));
        return true;
    }

    static bool appendDouble(std::string& out, const Conversion& conversion, double value) {
        if (!isOneOf(conversion.letter, "fFeEgG")) {
            return false;
        }
        appendFloat(out, conversion, value);
        return true;
    }

    static bool appendInteger(std::string& out, const Conversion& conversion,
                              TQFormatArgument::Integer integer) {
        const bool isNarrow = integer.width == std::numeric_limits<std::uint32_t>::digits;
        const auto narrow = static_cast<std::uint32_t>(integer.bits);
        if (isOneOf(conversion.letter, "di")) {
            appendSigned(out, conversion,
                         isNarrow ? static_cast<std::int32_t>(narrow)
                                  : static_cast<std::int64_t>(integer.bits));
            return true;
        }
        if (isOneOf(conversion.letter, "uxXo")) {
            appendUnsigned(out, conversion, isNarrow ? narrow : integer.bits);
            return true;
        }
        return conversion.letter == 'c' && appendCharacter(out, conversion, narrow);
    }

    static bool appendCharacter(std::string& out, const Conversion& conversion, char32_t code) {
        if (!tq_isCharacter(code)) {
            return false;
        }
        std::string character;
        tq_appendUTF8(character, code);
        appendPadded(out, conversion, character);
        return true;
    }

    std::span<const TQFormatArgument> _arguments; // those not taken yet; the caller owns them
};

TQFormatArgument::TQFormatArgument(const char* text)
    : TQFormatArgument(std::string_view(text != nullptr ? text : "(null)")) {}

TQFormatArgument::TQFormatArgument(std::string_view text) : _value(tq_UTF8FromUnknown(text)) {}

TQFormatArgument::TQFormatArgument(const std::string& text) : TQFormatArgument(std::string_view(text)) {}

TQFormatArgument::TQFormatArgument(const TQString& text) : _value(text.utf8()) {}

std::string tq_formatText(std::string_view format, std::initializer_list<TQFormatArgument> arguments) {
    return TQFormatter({arguments.begin(), arguments.size()}).format(tq_UTF8FromUnknown(format));
}
