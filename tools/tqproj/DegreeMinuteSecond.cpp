#include "tools/tqproj/DegreeMinuteSecond.h"

#include "support/TQNumberText.h"
#include "tools/tqproj/NumberFormat.h"

#include <cmath>
#include <cstddef>
#include <initializer_list>

namespace {

constexpr std::string_view degreeSign = "\xC2\xB0";
constexpr std::string_view prime = "\xE2\x80\xB2";
constexpr std::string_view doublePrime = "\xE2\x80\xB3";

// (whole + part) / divisor, rounded once. whole is an integer above part, or 0, so that their sum splits
// exactly in two (Dekker, A floating-point technique for extending the available precision, 1971).
double dividedSum(double whole, double part, double divisor) {
    const double sum = whole + part;
    const double lost = (whole - sum) + part;
    const double quotient = sum / divisor;
    const double remainder = std::fma(-quotient, divisor, sum) + lost;
    return quotient + remainder / divisor;
}

// Takes a text apart from its beginning.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : _text(text) {}

    bool isAtEnd() const { return _text.empty(); }

    bool take(std::string_view mark) {
        if (!_text.starts_with(mark)) {
            return false;
        }
        _text.remove_prefix(mark.size());
        return true;
    }

    bool takeAnyOf(std::initializer_list<std::string_view> marks) {
        for (const std::string_view mark : marks) {
            if (take(mark)) {
                return true;
            }
        }
        return false;
    }

    bool startsWithDigit() const { return !_text.empty() && _text[0] >= '0' && _text[0] <= '9'; }

    // A number of digits and at most one point; hasDecimals tells whether there was a point.
    bool takeNumber(double& number, bool& hasDecimals) {
        if (!startsWithDigit()) {
            return false;
        }
        const std::string_view digits = _text.substr(0, _text.find_first_not_of("0123456789."));
        hasDecimals = digits.find('.') != std::string_view::npos;
        _text.remove_prefix(digits.size());
        return tq_parseCompleteDouble(digits, number);
    }

  private:
    std::string_view _text;
};

class AngleParser {
  public:
    AngleParser(std::string_view text, GeographicAxis axis) : _scanner(text), _axis(axis) {}

    bool parse(double& degrees) {
        const bool isNegative = _scanner.take("-");
        const bool isSigned = isNegative || _scanner.take("+");
        double magnitude = 0.0;
        if (!parseMagnitude(magnitude)) {
            return false;
        }
        const bool isSouthOrWest = !isSigned && takeLetter(_axis == GeographicAxis::Latitude ? 'S' : 'W');
        if (!isSigned && !isSouthOrWest) {
            takeLetter(_axis == GeographicAxis::Latitude ? 'N' : 'E');
        }
        if (!_scanner.isAtEnd() || !std::isfinite(magnitude)) {
            return false;
        }
        degrees = isNegative || isSouthOrWest ? -magnitude : magnitude;
        return true;
    }

  private:
    // A minute or a second: a number below 60 after a number without decimals.
    bool takeSixtieth(double& number, bool& hasDecimals) {
        return !hasDecimals && _scanner.takeNumber(number, hasDecimals) && number < 60.0;
    }

    bool parseMagnitude(double& magnitude) {
        bool hasDecimals = false;
        if (!_scanner.takeNumber(magnitude, hasDecimals)) {
            return false;
        }
        const bool isColonForm = _scanner.take(":");
        if (!isColonForm && !_scanner.takeAnyOf({"d", "D", degreeSign})) {
            return true;
        }
        if (!isColonForm && !_scanner.startsWithDigit()) {
            return true;
        }
        const double degrees = magnitude;
        double minutes = 0.0;
        if (!takeSixtieth(minutes, hasDecimals)) {
            return false;
        }
        magnitude = dividedSum(degrees * 60.0, minutes, 60.0);
        return parseSeconds(degrees, minutes, hasDecimals, magnitude);
    }

    bool parseSeconds(double degrees, double minutes, bool hasDecimals, double& magnitude) {
        const bool isColonForm = _scanner.take(":");
        if (!isColonForm && !_scanner.takeAnyOf({"'", prime})) {
            return true;
        }
        if (!isColonForm && !_scanner.startsWithDigit()) {
            return true;
        }
        double seconds = 0.0;
        if (!takeSixtieth(seconds, hasDecimals)) {
            return false;
        }
        _scanner.takeAnyOf({"\"", "''", doublePrime});
        magnitude = dividedSum(degrees * 3600.0 + minutes * 60.0, seconds, 3600.0);
        return true;
    }

    bool takeLetter(char capital) {
        const char small = static_cast<char>(capital - 'A' + 'a');
        return _scanner.takeAnyOf({std::string_view(&capital, 1), std::string_view(&small, 1)});
    }

    Scanner _scanner;
    GeographicAxis _axis;
};

struct Sexagesimal {
    double degrees;
    double minutes;
    double seconds;
};

// The seconds are as exact as a double can hold them: the product by 3600 is kept in two parts.
Sexagesimal splitMagnitude(double magnitude) {
    Sexagesimal parts{};
    parts.degrees = std::trunc(magnitude);
    const double fraction = magnitude - parts.degrees;
    const double product = fraction * 3600.0;
    const double lost = std::fma(fraction, 3600.0, -product);
    parts.minutes = std::floor(product / 60.0);
    parts.seconds = (product - 60.0 * parts.minutes) + lost;
    if (parts.seconds < 0.0) {
        parts.minutes -= 1.0;
        parts.seconds += 60.0;
    }
    return parts;
}

void appendTwoDigits(std::string& out, double value, int precision) {
    const std::size_t start = out.size();
    tq_appendFixed(out, value, precision);
    if (out.size() == start + 1 || out[start + 1] == '.') {
        out.insert(start, 1, '0');
    }
}

// Writes the seconds first, because rounding them up to 60 carries over to minutes and degrees.
void appendMagnitude(std::string& out, const Sexagesimal& exact, int precision) {
    Sexagesimal parts = exact;
    std::string seconds;
    appendTwoDigits(seconds, parts.seconds, precision);
    if (seconds.starts_with("60")) {
        seconds.replace(0, 2, "00");
        parts.minutes += 1.0;
    }
    if (parts.minutes >= 60.0) {
        parts.minutes -= 60.0;
        parts.degrees += 1.0;
    }
    tq_appendFixed(out, parts.degrees, 0);
    out += ':';
    appendTwoDigits(out, parts.minutes, 0);
    out += ':';
    out += seconds;
}

// The fewest decimals of the second that read back to the same angle.
void appendFullMagnitude(std::string& out, double magnitude, const Sexagesimal& parts) {
    const std::size_t start = out.size();
    double readBack = 0.0;
    for (int precision = 0; precision <= NumberFormat::greatestPrecision; ++precision) {
        out.resize(start);
        appendMagnitude(out, parts, precision);
        const std::string_view written = std::string_view(out).substr(start);
        if (parseDegreeMinuteSecond(written, GeographicAxis::Latitude, readBack) && readBack == magnitude) {
            return;
        }
    }
}

} // namespace

bool parseDegreeMinuteSecond(std::string_view text, GeographicAxis axis, double& degrees) {
    return AngleParser(text, axis).parse(degrees);
}

void appendDegreeMinuteSecond(std::string& out, double degrees, GeographicAxis axis, int precision) {
    const std::size_t start = out.size();
    const double magnitude = std::abs(degrees);
    const Sexagesimal parts = splitMagnitude(magnitude);
    if (precision == NumberFormat::fullPrecision) {
        appendFullMagnitude(out, magnitude, parts);
    } else {
        appendMagnitude(out, parts, precision);
    }
    const bool isZero = out.find_first_not_of("0:.", start) == std::string::npos;
    const bool isNegative = degrees < 0.0 && !isZero;
    if (axis == GeographicAxis::Latitude) {
        out += isNegative ? 'S' : 'N';
    } else {
        out += isNegative ? 'W' : 'E';
    }
}
