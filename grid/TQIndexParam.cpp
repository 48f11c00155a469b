#include "grid/TQIndexParam.h"

#include <cstdint>
#include <limits>
#include <string>

namespace {

using Limits = std::numeric_limits<std::int64_t>;

constexpr std::int64_t letters = 26;
constexpr std::int64_t codeBeforeA = 64;

/// number * 26 + digit, limited to 64 bits.
std::int64_t withDigit(std::int64_t number, std::int64_t digit) {
    constexpr std::int64_t largestCode = 0x10FFFF;
    constexpr std::int64_t limit = (Limits::max() - largestCode) / letters;
    if (number > limit) {
        return Limits::max();
    }
    return number < -limit ? Limits::min() : number * letters + digit;
}

/// The sum, limited to 64 bits.
std::int64_t sum(std::int64_t number, int offset) {
    if (offset > 0 && number > Limits::max() - offset) {
        return Limits::max();
    }
    return offset < 0 && number < Limits::min() - offset ? Limits::min() : number + offset;
}

std::int64_t numberOfLetters(const TQString& text) {
    std::int64_t number = 0;
    for (const char32_t code : text.characters()) {
        number = withDigit(number, static_cast<std::int64_t>(code) - codeBeforeA);
    }
    return number;
}

TQString lettersOfNumber(std::int64_t number) {
    std::string text; // from the last letter to the first
    for (; number > 0; number = (number - 1) / letters) {
        text += static_cast<char>('A' + (number - 1) % letters);
    }
    return TQString(std::string(text.rbegin(), text.rend()));
}

} // namespace

TQString TQIndexNumbering::label(int offset) const {
    const TQString start = startLabel.value_or(TQString());
    if (isNumeric) {
        TQString number;
        number.setWithFormat("%d", sum(start.convertToLong(), offset));
        return number;
    }
    return lettersOfNumber(sum(numberOfLetters(start), offset));
}
