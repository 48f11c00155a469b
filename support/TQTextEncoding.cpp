#include "support/TQTextEncoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utf8.h>

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t lastCharacter = 0x10FFFF;
constexpr unsigned firstByteBeyondAscii = 0x80;

/// The characters of the bytes from 0x80 on, from the Unicode Consortium's NEXTSTEP.TXT.
constexpr std::array<char16_t, 128> charactersBeyondAscii = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, // 0x80
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF, // 0x88
    0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9, // 0x90
    0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, // 0x98
    0x00A9, 0x00A1, 0x00A2, 0x00A3, 0x2044, 0x00A5, 0x0192, 0x00A7, // 0xA0
    0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02, // 0xA8
    0x00AE, 0x2013, 0x2020, 0x2021, 0x00B7, 0x00A6, 0x00B6, 0x2022, // 0xB0
    0x201A, 0x201E, 0x201D, 0x00BB, 0x2026, 0x2030, 0x00AC, 0x00BF, // 0xB8
    0x00B9, 0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, // 0xC0
    0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD, 0x02DB, 0x02C7, // 0xC8
    0x2014, 0x00B1, 0x00BC, 0x00BD, 0x00BE, 0x00E0, 0x00E1, 0x00E2, // 0xD0
    0x00E3, 0x00E4, 0x00E5, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, // 0xD8
    0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1, // 0xE0
    0x0141, 0x00D8, 0x0152, 0x00BA, 0x00F2, 0x00F3, 0x00F4, 0x00F5, // 0xE8
    0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB, 0x0131, 0x00FC, 0x00FD, // 0xF0
    0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD, // 0xF8
};

struct DefaultCharacter {
    char32_t code;
    char byte;
};

/// The defined characters beyond ASCII, sorted by their codes.
const auto& defaultCharacters() {
    static const auto sorted = [] {
        constexpr std::size_t defined = 126;
        std::array<DefaultCharacter, defined> characters{};
        for (std::size_t i = 0; i < characters.size(); ++i) {
            characters[i] = {charactersBeyondAscii[i], static_cast<char>(i + firstByteBeyondAscii)};
        }
        std::ranges::sort(characters, {}, &DefaultCharacter::code);
        return characters;
    }();
    return sorted;
}

std::optional<char> defaultByteOf(char32_t code) {
    if (code < firstByteBeyondAscii) {
        return static_cast<char>(code);
    }
    const auto found = std::ranges::lower_bound(defaultCharacters(), code, {}, &DefaultCharacter::code);
    if (found == defaultCharacters().end() || found->code != code) {
        return std::nullopt;
    }
    return found->byte;
}

/// Takes the character that a UTF-16 text begins with from the text.
char32_t takeCharacter(std::u16string_view& utf16) {
    constexpr char32_t afterSurrogatePair = 0x10000;
    const auto isLead = [](char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isTrail = [](char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
    const char16_t unit = utf16.front();
    utf16.remove_prefix(1);
    if (!isLead(unit)) {
        return isTrail(unit) ? replacementCharacter : unit;
    }
    if (utf16.empty() || !isTrail(utf16.front())) {
        return replacementCharacter;
    }
    const char32_t trail = utf16.front() & 0x3FFU;
    utf16.remove_prefix(1);
    return afterSurrogatePair + ((unit & 0x3FFU) << 10U) + trail;
}

constexpr char32_t firstPathByteCarrier = 0xFDD0;
constexpr unsigned carriedBits = 4;

void appendCarriersOf(char byte, std::string& utf8) {
    const unsigned number = static_cast<unsigned char>(byte);
    tq_appendUTF8(utf8, firstPathByteCarrier + (number >> carriedBits));
    tq_appendUTF8(utf8, firstPathByteCarrier + (number & 0xFU));
}

/// The byte that two characters carry; nothing when they carry none that is no ASCII character.
std::optional<char> carriedByte(char32_t high, char32_t low) {
    if (!tq_carriesPathByte(high) || !tq_carriesPathByte(low)) {
        return std::nullopt;
    }
    const char32_t number = ((high - firstPathByteCarrier) << carriedBits) | (low - firstPathByteCarrier);
    return number >= firstByteBeyondAscii ? std::optional(static_cast<char>(number)) : std::nullopt;
}

} // namespace

bool tq_isAscii(std::string_view bytes) {
    return std::ranges::all_of(
        bytes, [](char byte) { return static_cast<unsigned char>(byte) < firstByteBeyondAscii; });
}

bool tq_isValidUTF8(std::string_view bytes) { return utf8::is_valid(bytes.begin(), bytes.end()); }

bool tq_isCharacter(char32_t code) { return code <= lastCharacter && (code < 0xD800 || code > 0xDFFF); }

char32_t tq_characterFromDefault(char byte) {
    const auto number = static_cast<unsigned char>(byte);
    return number < firstByteBeyondAscii ? number : charactersBeyondAscii[number - firstByteBeyondAscii];
}

void tq_appendUTF8(std::string& utf8, char32_t code) {
    utf8::unchecked::append(tq_isCharacter(code) ? code : replacementCharacter, std::back_inserter(utf8));
}

std::string tq_UTF8FromDefault(std::string_view bytes) {
    std::string utf8;
    utf8.reserve(bytes.size());
    for (const char byte : bytes) {
        tq_appendUTF8(utf8, tq_characterFromDefault(byte));
    }
    return utf8;
}

std::optional<std::string> tq_defaultFromUTF8(std::string_view utf8) {
    std::string bytes;
    bytes.reserve(utf8.size());
    for (auto next = utf8.begin(); next != utf8.end();) {
        const std::optional<char> byte = defaultByteOf(utf8::unchecked::next(next));
        if (!byte) {
            return std::nullopt;
        }
        bytes += *byte;
    }
    return bytes;
}

std::u16string tq_UTF16FromUTF8(std::string_view utf8) {
    std::u16string utf16;
    utf16.reserve(utf8.size());
    utf8::unchecked::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(utf16));
    return utf16;
}

std::string tq_UTF8FromUTF16(std::u16string_view utf16) {
    std::string utf8;
    utf8.reserve(utf16.size());
    while (!utf16.empty()) {
        tq_appendUTF8(utf8, takeCharacter(utf16));
    }
    return utf8;
}

std::string tq_UTF8FromUnknown(std::string_view bytes) {
    return tq_isValidUTF8(bytes) ? std::string(bytes) : tq_UTF8FromDefault(bytes);
}

bool tq_carriesPathByte(char32_t code) {
    constexpr char32_t count = 1U << carriedBits;
    return code >= firstPathByteCarrier && code < firstPathByteCarrier + count;
}

std::string tq_textFromPathBytes(std::string_view bytes) {
    std::string text;
    const auto* next = bytes.data();
    const auto* const end = next + bytes.size();
    while (next != end) {
        for (const auto* const invalid = utf8::find_invalid(next, end); next != invalid;) {
            const auto* const start = next;
            if (!tq_carriesPathByte(utf8::unchecked::next(next))) {
                text.append(start, next);
                continue;
            }
            std::for_each(start, next, [&text](char byte) { appendCarriersOf(byte, text); });
        }
        if (next != end) {
            appendCarriersOf(*next++, text);
        }
    }
    return text;
}

std::string tq_pathBytesFromText(std::string_view utf8) {
    std::string bytes;
    for (auto next = utf8.begin(); next != utf8.end();) {
        const auto start = next;
        const char32_t code = utf8::unchecked::next(next);
        auto behind = next;
        const std::optional<char> byte =
            next != utf8.end() ? carriedByte(code, utf8::unchecked::next(behind)) : std::nullopt;
        if (byte) {
            bytes += *byte;
            next = behind;
        } else {
            bytes.append(start, next);
        }
    }
    return bytes;
}
