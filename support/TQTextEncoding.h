#pragma once

#include "TQSystemWExport.h"

#include <optional>
#include <string>
#include <string_view>

/// @file
/// Between the encodings that texts come in: UTF-8 (RFC 3629), UTF-16 and the default 8-bit encoding,
/// which is the NEXTSTEP character set as the Unicode Consortium publishes it (NEXTSTEP.TXT).
/// The two bytes that the set leaves undefined, 0xFE and 0xFF, read as U+FFFD, which has no byte itself.
/// Internal: the header is not installed.

/// Whether every byte is an ASCII character, the same in both 8-bit encodings.
/// @param bytes the bytes to look at
TQSYSTEMW_EXPORT bool tq_isAscii(std::string_view bytes);

/// Whether bytes are valid UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
/// @param bytes the bytes to look at
TQSYSTEMW_EXPORT bool tq_isValidUTF8(std::string_view bytes);

/// Whether a number is the code of a Unicode character: at most U+10FFFF and no surrogate.
/// @param code the number
TQSYSTEMW_EXPORT bool tq_isCharacter(char32_t code);

/// The Unicode character of a byte of the default encoding.
/// @param byte the byte
TQSYSTEMW_EXPORT char32_t tq_characterFromDefault(char byte);

/// Appends the UTF-8 form of a character; U+FFFD stands for a number that is no character.
/// @param utf8 the text to append to
/// @param code the character
TQSYSTEMW_EXPORT void tq_appendUTF8(std::string& utf8, char32_t code);

/// The UTF-8 form of bytes in the default encoding.
/// @param bytes the bytes
TQSYSTEMW_EXPORT std::string tq_UTF8FromDefault(std::string_view bytes);

/// The bytes of a text in the default encoding, or nothing when a character does not exist there.
/// @param utf8 the text, valid UTF-8
TQSYSTEMW_EXPORT std::optional<std::string> tq_defaultFromUTF8(std::string_view utf8);

/// The UTF-16 form of a text.
/// @param utf8 the text, valid UTF-8
TQSYSTEMW_EXPORT std::u16string tq_UTF16FromUTF8(std::string_view utf8);

/// The UTF-8 form of a text; U+FFFD stands for a surrogate without its partner.
/// @param utf16 the text
TQSYSTEMW_EXPORT std::string tq_UTF8FromUTF16(std::u16string_view utf16);

/// The UTF-8 form of bytes of unknown origin: they are taken as UTF-8 when they are valid UTF-8,
/// otherwise as the default encoding.
/// @param bytes the bytes
TQSYSTEMW_EXPORT std::string tq_UTF8FromUnknown(std::string_view bytes);

/// Whether a character carries a half of a byte in a path's text: tq_textFromPathBytes() takes 16 of the
/// noncharacters that Unicode reserves for the inside of a process (U+FDD0 ... U+FDDF). No name has them.
/// @param code the character
TQSYSTEMW_EXPORT bool tq_carriesPathByte(char32_t code);

/// The text of a path whose bytes may be no text: what is valid UTF-8 stays, each other byte becomes two
/// noncharacters, from which tq_pathBytesFromText() makes it again, so that the text leads to this file and
/// no other.
/// @param bytes the bytes of the path
/// @return valid UTF-8
TQSYSTEMW_EXPORT std::string tq_textFromPathBytes(std::string_view bytes);

/// The bytes that tq_textFromPathBytes() made a text of; of any other text its UTF-8 form.
/// @param utf8 the text, valid UTF-8
TQSYSTEMW_EXPORT std::string tq_pathBytesFromText(std::string_view utf8);
