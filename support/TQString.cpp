#include "support/TQString.h"

#include "support/TQNumberText.h"
#include "support/TQReadStream.h"
#include "support/TQTextEncoding.h"
#include "support/TQWriteStream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utf8.h>
#include <utility>

namespace {

/// The byte in front of an archived string.
enum ArchivedForm : char { ArchivedNull = 0, ArchivedUTF8 = 1, ArchivedDefault = 2 };

std::string_view viewOf(const char* text) { return text != nullptr ? std::string_view(text) : ""; }

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// How many bytes the character of UTF-8 has that begins with a byte.
std::size_t sizeOfCharacter(char lead) {
    const auto number = static_cast<unsigned char>(lead);
    return number < 0xC0U ? 1 : number < 0xE0U ? 2 : number < 0xF0U ? 3 : 4;
}

/// Where a C string that does not end before a cut has to end so that the cut divides no character of UTF-8.
/// Bytes behind the cut are read up to the string's end mark at the most.
std::size_t endAtCharacter(const char* text, std::size_t cut) {
    std::size_t start = cut;
    while (start > 0 && isContinuation(text[start - 1])) {
        --start;
    }
    if (start == 0) {
        return cut;
    }
    --start;
    const std::size_t size = sizeOfCharacter(text[start]);
    std::size_t end = cut;
    while (end < start + size && isContinuation(text[end])) {
        ++end;
    }
    const bool isDivided = end > cut && tq_isValidUTF8(std::string_view(text + start, end - start));
    return isDivided ? start : cut;
}

std::string_view viewOf(const char* text, int length) {
    if (text == nullptr || length <= 0) {
        return "";
    }
    const auto most = static_cast<std::size_t>(length);
    const void* const end = std::memchr(text, 0, most);
    if (end != nullptr) {
        return {text, static_cast<std::size_t>(static_cast<const char*>(end) - text)};
    }
    return {text, endAtCharacter(text, most)};
}

std::u16string_view viewOf(const char16_t* text) { return text != nullptr ? std::u16string_view(text) : u""; }

/// The encoding in which bytes of unknown origin are kept.
_tqencodingtype encodingOf(std::string_view bytes) {
    return !tq_isAscii(bytes) && tq_isValidUTF8(bytes) ? TQEncodingUTF8 : TQEncodingDefault;
}

int toInt(std::ptrdiff_t count) {
    return static_cast<int>(std::min<std::ptrdiff_t>(count, std::numeric_limits<int>::max()));
}

std::uint32_t fnv1a(std::string_view bytes) {
    constexpr std::uint32_t offsetBasis = 2166136261U;
    constexpr std::uint32_t prime = 16777619U;
    std::uint32_t hash = offsetBasis;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
    }
    return hash;
}

/// The text that another one turns into when its bytes in the default encoding are taken for a C string:
/// valid UTF-8 is read as such. As that may turn into a further one, which is shorter, this is the last of
/// them.
std::string lastReading(std::string utf8) {
    for (;;) {
        std::optional<std::string> bytes = tq_defaultFromUTF8(utf8);
        if (!bytes || tq_isAscii(*bytes) || !tq_isValidUTF8(*bytes)) {
            return utf8;
        }
        utf8 = std::move(*bytes);
    }
}

std::string replaced(std::string_view bytes, std::string_view from, std::string_view to) {
    std::string result;
    std::size_t done = 0;
    for (std::size_t found = bytes.find(from); found != std::string_view::npos;
         found = bytes.find(from, done)) {
        result.append(bytes, done, found - done).append(to);
        done = found + from.size();
    }
    return result.append(bytes, done);
}

} // namespace

TQString::TQString(const char* text) : TQString(viewOf(text)) {}

TQString::TQString(const char* text, int length) : TQString(viewOf(text, length)) {}

TQString::TQString(std::string_view bytes) : TQString(bytes, encodingOf(bytes)) {}

TQString::TQString(const char16_t* text) : TQString(tq_UTF8FromUTF16(viewOf(text))) {}

TQString::TQString(std::string_view bytes, _tqencodingtype encoding) { assign(std::string(bytes), encoding); }

TQString TQString::formatted(const char* format, std::initializer_list<TQFormatArgument> arguments) {
    return TQString(tq_formatText(viewOf(format), arguments));
}

void TQString::assign(std::string bytes, _tqencodingtype encoding) {
    _isAscii = tq_isAscii(bytes);
    const bool isUTF8 = encoding == TQEncodingUTF8 && (_isAscii || tq_isValidUTF8(bytes));
    _encoding = isUTF8 ? TQEncodingUTF8 : TQEncodingDefault;
    _bytes = std::move(bytes);
    _wide.clear();
}

void TQString::set(const char* text) { *this = TQString(text); }

void TQString::set(int number) { assign(std::to_string(number), TQEncodingDefault); }

void TQString::set(const TQString& other) { *this = other; }

void TQString::append(const TQString& other) { _bytes += prepareToJoin(other); }

void TQString::append(const char* text) { append(TQString(text)); }

void TQString::append(char32_t code) { append(character(code)); }

void TQString::insertAtIndex(const TQString& text, int index) {
    const std::string bytes = prepareToJoin(text);
    _bytes.insert(offsetOf(index), bytes);
}

void TQString::replace(char32_t from, char32_t to) { replace(character(from), character(to)); }

void TQString::replace(const TQString& from, const TQString& to) {
    if (from.isEmpty() || indexOf(from) < 0) {
        return;
    }
    const std::string replacement = prepareToJoin(to);
    assign(replaced(_bytes, ownBytesOf(from).value_or(""), replacement), _encoding);
}

void TQString::cutAtIndex(int count) { *this = leftSubstring(count); }

void TQString::strip(char32_t code) { replace(character(code), TQString()); }

void TQString::empty() { assign("", TQEncodingDefault); }

int TQString::length() const { return indexOfOffset(_bytes.size()); }

char32_t TQString::characterAt(int index) const {
    std::size_t offset = offsetOf(index);
    return index >= 0 && offset < _bytes.size() ? takeCharacter(offset) : 0;
}

std::u32string TQString::characters() const {
    std::u32string codes;
    codes.reserve(_bytes.size());
    for (std::size_t offset = 0; offset < _bytes.size();) {
        codes += takeCharacter(offset);
    }
    return codes;
}

int TQString::indexOf(char32_t code, int start) const { return indexOf(character(code), start); }

int TQString::indexOf(const TQString& text, int start) const {
    const std::optional<std::string> bytes = ownBytesOf(text);
    const std::size_t found = bytes ? _bytes.find(*bytes, offsetOf(start)) : std::string::npos;
    return found != std::string::npos ? indexOfOffset(found) : -1;
}

int TQString::reverseIndexOf(char32_t code) const {
    return reverseIndexOf(code, std::numeric_limits<int>::max());
}

int TQString::reverseIndexOf(char32_t code, int start) const {
    const std::optional<std::string> bytes = ownBytesOf(character(code));
    if (!bytes || start < 0) {
        return -1;
    }
    const std::size_t found = _bytes.rfind(*bytes, offsetOf(start));
    return found != std::string::npos ? indexOfOffset(found) : -1;
}

TQString TQString::substring(int start, int end) const {
    return piece(offsetOf(start), offsetOf(std::int64_t{end} + 1));
}

TQString TQString::leftSubstring(int count) const { return piece(0, offsetOf(count)); }

TQString TQString::rightSubstring(int count) const {
    return piece(offsetOf(std::int64_t{length()} - count), _bytes.size());
}

bool TQString::isEqual(const TQString& other) const {
    std::string storage;
    std::string otherStorage;
    return utf8View(storage) == other.utf8View(otherStorage);
}

bool TQString::isEqual(const char* text) const { return isEqual(TQString(text)); }

bool TQString::isEqualForLength(const char* text, int length) const {
    return leftSubstring(length) == TQString(text).leftSubstring(length);
}

int TQString::compareAscendingAsString(const void* a, const void* b) {
    const TQString* const left = *static_cast<const TQString* const*>(a);
    const TQString* const right = *static_cast<const TQString* const*>(b);
    if (left == nullptr || right == nullptr) {
        return static_cast<int>(left != nullptr) - static_cast<int>(right != nullptr);
    }
    std::string leftStorage;
    std::string rightStorage;
    // Bytes of UTF-8, compared as unsigned numbers, stand in the order of the characters' codes.
    return left->utf8View(leftStorage).compare(right->utf8View(rightStorage));
}

std::uint32_t TQString::hashValue() const {
    std::string storage;
    const std::string_view utf8 = utf8View(storage);
    return _isAscii ? fnv1a(utf8) : fnv1a(lastReading(std::string(utf8)));
}

std::uint32_t TQString::hashValueForCString(const char* text) { return TQString(text).hashValue(); }

double TQString::convertToDouble() const { return tq_parseDouble(_bytes); }

std::int32_t TQString::convertToLong() const { return tq_parseLong(_bytes); }

const char16_t* TQString::wideBuffer() const {
    if (_wide.empty()) {
        std::string storage;
        _wide = tq_UTF16FromUTF8(utf8View(storage));
    }
    return _wide.c_str();
}

std::string TQString::utf8() const {
    std::string storage;
    return std::string(utf8View(storage));
}

bool TQString::convertToEncoding(_tqencodingtype encoding) {
    if (encoding == _encoding) {
        return true;
    }
    if (!_isAscii) {
        std::optional<std::string> converted =
            encoding == TQEncodingUTF8 ? tq_UTF8FromDefault(_bytes) : tq_defaultFromUTF8(_bytes);
        if (!converted) {
            return false;
        }
        _bytes = std::move(*converted);
    }
    _encoding = encoding;
    return true;
}

bool TQString::convertFromEncodingToEncoding(_tqencodingtype from, _tqencodingtype to) {
    TQString converted(_bytes, from);
    if (converted.encoding() != from || !converted.convertToEncoding(to)) {
        return false;
    }
    *this = std::move(converted);
    return true;
}

std::string TQString::UTFconvertedString(_tqUTFencodingtype form) const {
    if (form != TQUTF16) {
        return utf8();
    }
    constexpr unsigned bitsOfAByte = 8;
    constexpr unsigned lowByte = 0xFF;
    std::string bytes;
    for (const char16_t unit : tq_UTF16FromUTF8(utf8())) {
        bytes += static_cast<char>(unit & lowByte);
        bytes += static_cast<char>(unit >> bitsOfAByte);
    }
    return bytes;
}

std::unique_ptr<TQArray<TQString>> TQString::newStringArrayFromTokens(const TQString& separators) const {
    auto tokens = std::make_unique<TQArray<TQString>>();
    const auto addToken = [&](std::size_t begin, std::size_t end) {
        if (begin < end) {
            tokens->add(std::make_unique<TQString>(piece(begin, end)));
        }
    };
    std::size_t begin = 0;
    for (std::size_t offset = 0; offset < _bytes.size();) {
        const std::size_t end = offset;
        if (separators.indexOf(takeCharacter(offset)) >= 0) {
            addToken(begin, end);
            begin = offset;
        }
    }
    addToken(begin, _bytes.size());
    return tokens;
}

void TQString::archiveTo(TQWriteStream* stream) const {
    stream->write(static_cast<char>(_encoding == TQEncodingUTF8 ? ArchivedUTF8 : ArchivedDefault));
    stream->write(static_cast<std::uint32_t>(_bytes.size()));
    stream->writeBytes(_bytes.data(), _bytes.size());
}

void TQString::archive(const TQString* stringOrNull, TQWriteStream* stream) {
    if (stringOrNull != nullptr) {
        stringOrNull->archiveTo(stream);
    } else {
        stream->write(static_cast<char>(ArchivedNull));
    }
}

std::unique_ptr<TQString> TQString::unarchiveFrom(TQReadStream* stream) {
    char form = ArchivedNull;
    stream->read(form);
    if (form == ArchivedNull) {
        return nullptr;
    }
    if (form != ArchivedUTF8 && form != ArchivedDefault) {
        stream->fail();
        return nullptr;
    }
    std::uint32_t size = 0;
    stream->read(size);
    if (!stream->canHold(size, 1)) {
        return nullptr;
    }
    std::string bytes(size, '\0');
    if (!stream->readBytes(bytes.data(), size)) {
        return nullptr;
    }
    return std::make_unique<TQString>(bytes, form == ArchivedUTF8 ? TQEncodingUTF8 : TQEncodingDefault);
}

void TQString::resetFrom(TQReadStream* stream) {
    std::unique_ptr<TQString> text = unarchiveFrom(stream);
    *this = text != nullptr ? std::move(*text) : TQString();
}

/// The offset of the byte that a character begins at, limited to the text.
std::size_t TQString::offsetOf(std::int64_t index) const {
    if (index <= 0) {
        return 0;
    }
    const auto characters = static_cast<std::uint64_t>(index);
    if (characters >= _bytes.size()) {
        return _bytes.size();
    }
    if (isByteACharacter()) {
        return static_cast<std::size_t>(characters);
    }
    auto place = _bytes.begin();
    for (auto left = characters; left > 0 && place != _bytes.end(); --left) {
        utf8::unchecked::next(place);
    }
    return static_cast<std::size_t>(place - _bytes.begin());
}

/// The number of characters in front of a byte.
int TQString::indexOfOffset(std::size_t offset) const {
    const auto bytes = static_cast<std::ptrdiff_t>(offset);
    return toInt(isByteACharacter() ? bytes
                                    : utf8::unchecked::distance(_bytes.begin(), _bytes.begin() + bytes));
}

/// The character that begins at a byte of the text; moves the offset behind it.
char32_t TQString::takeCharacter(std::size_t& offset) const {
    if (isByteACharacter()) {
        return tq_characterFromDefault(_bytes[offset++]);
    }
    auto place = _bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    const char32_t code = utf8::unchecked::next(place);
    offset = static_cast<std::size_t>(place - _bytes.begin());
    return code;
}

/// A text of one character, in the string's encoding when it exists there, otherwise in UTF-8.
TQString TQString::character(char32_t code) const {
    std::string utf8;
    tq_appendUTF8(utf8, code);
    TQString text(utf8, TQEncodingUTF8);
    text.convertToEncoding(_encoding);
    return text;
}

TQString TQString::piece(std::size_t begin, std::size_t end) const {
    return {std::string_view(_bytes).substr(begin, std::max(begin, end) - begin), _encoding};
}

/// The text as UTF-8: the string's own bytes, or the storage when they are in another encoding.
std::string_view TQString::utf8View(std::string& storage) const {
    if (_isAscii || _encoding == TQEncodingUTF8) {
        return _bytes;
    }
    storage = tq_UTF8FromDefault(_bytes);
    return storage;
}

/// The bytes of another text in this string's encoding; nothing when a character does not exist there.
std::optional<std::string> TQString::ownBytesOf(const TQString& other) const {
    if (other._isAscii || other._encoding == _encoding) {
        return other._bytes;
    }
    return _encoding == TQEncodingUTF8 ? tq_UTF8FromDefault(other._bytes) : tq_defaultFromUTF8(other._bytes);
}

/// The bytes of a text that is about to join this one. Turns this one into UTF-8 when they need it.
std::string TQString::prepareToJoin(const TQString& other) {
    if (!other._isAscii && other._encoding == TQEncodingUTF8) {
        convertToEncoding(TQEncodingUTF8);
    }
    std::string bytes = ownBytesOf(other).value_or("");
    _isAscii = _isAscii && other._isAscii;
    _wide.clear();
    return bytes;
}
