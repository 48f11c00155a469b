#pragma once

#include "TQSystemWExport.h"
#include "support/TQArray.h"
#include "support/TQFormat.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class TQReadStream;
class TQWriteStream;

/// The encoding in which a TQString keeps its bytes.
enum _tqencodingtype : int {
    TQEncodingDefault = 0, ///< the default 8-bit encoding, the NEXTSTEP character set
    TQEncodingUTF8 = 1     ///< UTF-8
};

/// The forms that TQString::UTFconvertedString() gives.
enum _tqUTFencodingtype : int {
    TQUTF8 = 0, ///< UTF-8
    TQUTF16 = 1 ///< UTF-16, two bytes each, the lower one first, without mark
};

/// An owned, growable text that keeps its bytes and their encoding.
///
/// Indexes and lengths count characters, that is Unicode code points, never bytes. Comparison and hash go
/// by the text: the same text in two encodings is equal. A C string that is valid UTF-8 with characters
/// beyond ASCII is taken as UTF-8, other bytes as the default encoding; null counts as empty. Bytes marked
/// as UTF-8 are always valid UTF-8. Where texts are put together the result keeps the string's encoding,
/// except that a string in the default encoding turns into UTF-8 when text joins it that is UTF-8 with
/// characters beyond ASCII. Arguments may be the string itself or lie in its own buffers.
class TQSYSTEMW_EXPORT TQString {
  public:
    /// An empty text in the default encoding.
    TQString() = default;

    /// The text of a C string.
    /// @param text the C string, or null
    TQString(const char* text);

    /// The text of the first bytes of a C string. A character of UTF-8 that does not fit as a whole is left
    /// out; only the bytes behind the length tell it from characters of the default encoding.
    /// @param text the C string, which has its end mark, here or behind the length; or null. Bytes without
    ///        one are given as a std::string_view
    /// @param length the most bytes to take; the string's end ends it earlier, below 0 counts as 0
    TQString(const char* text, int length);

    /// The text of bytes whose encoding is found out as that of a C string is. No other byte is read.
    /// @param bytes the bytes, zeros included; a character of UTF-8 that they end within makes them bytes of
    ///        the default encoding
    explicit TQString(std::string_view bytes);

    /// The text of a UTF-16 string; U+FFFD stands for a surrogate without its partner.
    /// @param text the string, ended by 0, or null
    TQString(const char16_t* text);

    /// The text of bytes whose encoding is known.
    /// @param bytes the bytes, zeros included
    /// @param encoding their encoding; bytes that are not valid UTF-8 are kept as the default encoding
    TQString(std::string_view bytes, _tqencodingtype encoding);

    /// Takes the text of a C string.
    /// @param text the C string, or null
    void set(const char* text);

    /// Takes the decimal form of an integer.
    /// @param number the integer
    void set(int number);

    /// Takes another string's text and encoding.
    /// @param other the other string
    void set(const TQString& other);

    /// Takes the text that tq_formatText() makes.
    /// @param format the format, or null for an empty one
    /// @param arguments what the format's conversions print, in order
    template <class... A>
    void setWithFormat(const char* format, const A&... arguments) {
        *this = formatted(format, {TQFormatArgument(arguments)...});
    }

    /// Appends the text that tq_formatText() makes.
    /// @param format the format, or null for an empty one
    /// @param arguments what the format's conversions print, in order
    template <class... A>
    void appendWithFormat(const char* format, const A&... arguments) {
        append(formatted(format, {TQFormatArgument(arguments)...}));
    }

    /// A new string with the text that tq_formatText() makes.
    /// @param format the format, or null for an empty one
    /// @param arguments what the format's conversions print, in order
    template <class... A>
    static std::unique_ptr<TQString> newWithFormat(const char* format, const A&... arguments) {
        return std::make_unique<TQString>(formatted(format, {TQFormatArgument(arguments)...}));
    }

    /// Appends another string's text.
    /// @param other the other string
    void append(const TQString& other);

    /// Appends the text of a C string.
    /// @param text the C string, or null
    void append(const char* text);

    /// Appends a character. It stays in the string's encoding when it exists there.
    /// @param code the character's Unicode code; U+FFFD stands for a number that is none
    void append(char32_t code);

    /// Appends the character that a byte is in the default encoding.
    /// @param byte the byte
    template <std::same_as<char> C>
    void append(C byte) {
        append(TQString(std::string_view(&byte, 1), TQEncodingDefault));
    }

    /// Inserts a text.
    /// @param text the text to insert
    /// @param index the character that it goes in front of, limited to 0 ... length()
    void insertAtIndex(const TQString& text, int index);

    /// Replaces a character wherever it occurs.
    /// @param from the character to replace
    /// @param to the character to put in its place
    void replace(char32_t from, char32_t to);

    /// Replaces a text wherever it occurs, from left to right, without looking into what was put in.
    /// @param from the text to replace; an empty one occurs nowhere
    /// @param to the text to put in its place
    void replace(const TQString& from, const TQString& to);

    /// Keeps the first characters only.
    /// @param count how many to keep; below 0 counts as 0
    void cutAtIndex(int count);

    /// Removes a character wherever it occurs.
    /// @param code the character to remove
    void strip(char32_t code);

    /// Removes all characters; the encoding goes back to the default.
    void empty();

    /// Whether there are no characters.
    bool isEmpty() const { return _bytes.empty(); }

    /// The number of characters.
    int length() const;

    /// The Unicode code of a character; 0 outside the text. It counts from the text's beginning: loops over
    /// all of them go over characters().
    /// @param index the character's index
    char32_t characterAt(int index) const;

    /// The Unicode codes of all characters.
    std::u32string characters() const;

    /// The index of the first occurrence of a character, or −1.
    /// @param code the character to look for
    /// @param start the index to begin at; below 0 counts as 0
    int indexOf(char32_t code, int start = 0) const;

    /// The index of the first occurrence of a text, or −1.
    /// @param text the text to look for; an empty one occurs everywhere
    /// @param start the index to begin at; below 0 counts as 0
    int indexOf(const TQString& text, int start = 0) const;

    /// The index of the last occurrence of a character, or −1.
    /// @param code the character to look for
    int reverseIndexOf(char32_t code) const;

    /// The index of the last occurrence of a character at or before an index, or −1.
    /// @param code the character to look for
    /// @param start the last index that counts
    int reverseIndexOf(char32_t code, int start) const;

    /// The characters from one index to another, both included, as far as they exist.
    /// @param start the first character's index
    /// @param end the last character's index
    TQString substring(int start, int end) const;

    /// The first characters, at most as many as there are.
    /// @param count how many
    TQString leftSubstring(int count) const;

    /// The last characters, at most as many as there are.
    /// @param count how many
    TQString rightSubstring(int count) const;

    /// Whether the texts are the same, in whatever encodings.
    /// @param other the text to compare with
    bool isEqual(const TQString& other) const;

    /// Whether the text is that of a C string.
    /// @param text the C string, or null for an empty text
    bool isEqual(const char* text) const;

    /// Whether the texts agree in their first characters, or as a whole when one of them is shorter.
    /// @param text the C string to compare with, or null for an empty text
    /// @param length how many characters to compare
    bool isEqualForLength(const char* text, int length) const;

    /// isEqual() as an operator.
    /// @param other the text to compare with
    bool operator==(const TQString& other) const { return isEqual(other); }

    /// isEqual() as an operator.
    /// @param text the C string to compare with, or null for an empty text
    bool operator==(const char* text) const { return isEqual(text); }

    /// Compares two strings by their characters' Unicode codes, for `qsort` and TQArray::sort().
    /// @param a points to a pointer to a TQString; a null one comes first
    /// @param b as a
    /// @return below 0, 0 or above 0 when a comes before b, is equal, comes after b
    static int compareAscendingAsString(const void* a, const void* b);

    /// The FNV-1a hash (32 bit, http://www.isthe.com/chongo/tech/comp/fnv) of the UTF-8 form, the same in
    /// every encoding and on every platform. A text that reads as another one when charBuffer() in the
    /// default encoding is taken for a C string has that one's hash, so that hashValueForCString() agrees for
    /// both.
    std::uint32_t hashValue() const;

    /// hashValue() of the text of a C string.
    /// @param text the C string, or null for an empty text
    static std::uint32_t hashValueForCString(const char* text);

    /// The number that the text begins with, see tq_parseDouble().
    double convertToDouble() const;

    /// The integer that the text begins with, see tq_parseLong().
    std::int32_t convertToLong() const;

    /// The bytes in the string's own encoding, ended by 0; valid until the string changes.
    const char* charBuffer() const { return _bytes.c_str(); }

    /// The text as UTF-16, ended by 0; valid until the string changes.
    const char16_t* wideBuffer() const;

    /// The text as UTF-8.
    std::string utf8() const;

    /// The encoding of the bytes.
    _tqencodingtype encoding() const { return _encoding; }

    /// Converts the bytes to another encoding.
    /// @param encoding the encoding to convert to
    /// @return false, and nothing changed, when a character does not exist there
    bool convertToEncoding(_tqencodingtype encoding);

    /// Takes the bytes for what they are in one encoding, whatever it was before, and converts them to
    /// another.
    /// @param from the encoding that the bytes are in
    /// @param to the encoding to convert to
    /// @return false, and nothing changed, when the bytes are not valid UTF-8 but should be, or a character
    /// does not exist in the encoding to convert to
    bool convertFromEncodingToEncoding(_tqencodingtype from, _tqencodingtype to);

    /// The bytes of the text in a Unicode form.
    /// @param form the form
    std::string UTFconvertedString(_tqUTFencodingtype form = TQUTF8) const;

    /// The pieces of the text between separators; separators next to each other count as one, so that no
    /// piece is empty.
    /// @param separators every character of it separates
    std::unique_ptr<TQArray<TQString>> newStringArrayFromTokens(const TQString& separators) const;

    /// Writes the text with its encoding.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Writes a string that may be null.
    /// @param stringOrNull the string, or null
    /// @param stream the stream to write to, not null
    static void archive(const TQString* stringOrNull, TQWriteStream* stream);

    /// Reads what archive() wrote.
    /// @param stream the stream to read from, not null; fails when there is no such string
    /// @return the string; null for an archived null and on failure
    static std::unique_ptr<TQString> unarchiveFrom(TQReadStream* stream);

    /// Takes the text of an archived string; empty for an archived null and on failure.
    /// @param stream the stream to read from, not null
    void resetFrom(TQReadStream* stream);

  private:
    static TQString formatted(const char* format, std::initializer_list<TQFormatArgument> arguments);

    void assign(std::string bytes, _tqencodingtype encoding);
    bool isByteACharacter() const { return _isAscii || _encoding == TQEncodingDefault; }
    std::size_t offsetOf(std::int64_t index) const;
    int indexOfOffset(std::size_t offset) const;
    char32_t takeCharacter(std::size_t& offset) const;
    TQString character(char32_t code) const;
    TQString piece(std::size_t begin, std::size_t end) const;
    std::string_view utf8View(std::string& storage) const;
    std::optional<std::string> ownBytesOf(const TQString& other) const;
    std::string prepareToJoin(const TQString& other);

    std::string _bytes;
    _tqencodingtype _encoding = TQEncodingDefault;
    bool _isAscii = true;
    mutable std::u16string _wide; // empty until wideBuffer() is asked for it
};

/// A name as a text; the empty one for none.
/// @param name the name, or null
inline TQString tq_textOfName(const TQString* name) { return name != nullptr ? *name : TQString(); }

/// Whether two names are the same: equal texts, or none on either side.
/// @param one a name, or null for none
/// @param other a name, or null for none
inline bool tq_namesAreEqual(const TQString* one, const TQString* other) {
    return one != nullptr && other != nullptr ? *one == *other : one == other;
}
