#include "support/TQReadStream.h"

#include "support/TQStreamFormat.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>

TQReadStream::TQReadStream(int version, std::uint32_t flags) : _flags(flags), _version(version) {}

TQReadStream::~TQReadStream() = default;

std::uint32_t TQReadStream::flags() const { return _flags; }

void TQReadStream::setFlags(std::uint32_t flags) { _flags = flags; }

int TQReadStream::streamVersion() const { return _version; }

bool TQReadStream::failed() const { return _failed; }

void TQReadStream::fail() { _failed = true; }

std::uint64_t TQReadStream::bytesLeft() const { return _failed ? 0 : sourceLeft(); }

bool TQReadStream::canHold(std::uint64_t count, std::uint64_t bytesEach) {
    if (_failed || (bytesEach > 0 && count > bytesLeft() / bytesEach)) {
        fail();
    }
    return !_failed;
}

bool TQReadStream::readBytes(void* bytes, std::size_t count) {
    if (count == 0) {
        return !_failed;
    }
    if (!canHold(count, 1)) {
        std::memset(bytes, 0, count);
        return false;
    }
    peek(static_cast<char*>(bytes), count);
    skip(count);
    return true;
}

template <class Unsigned>
Unsigned TQReadStream::readUnsigned() {
    std::array<char, sizeof(Unsigned)> bytes{};
    readBytes(bytes.data(), bytes.size());
    return TQStreamFormat::fromBytes<Unsigned>(bytes);
}

int TQReadStream::version(const char* className) {
    const std::string_view name = TQStreamFormat::tagName(className);
    std::array<char, TQStreamFormat::maximumTagLength> tag{};
    const std::size_t tagLength = 1 + name.size() + sizeof(std::int16_t);
    if (!canHold(1, tagLength)) {
        return -1;
    }
    peek(tag.data(), tagLength);
    const auto foundLength = static_cast<unsigned char>(tag.front());
    const std::string_view found(tag.data() + 1, name.size());
    if (foundLength != name.size() || found != name) {
        fail();
        return -1;
    }
    skip(1 + name.size());
    return static_cast<std::int16_t>(readUnsigned<std::uint16_t>());
}

void TQReadStream::read(bool& value) { value = readUnsigned<std::uint8_t>() != 0; }

void TQReadStream::read(char& value) { readBytes(&value, 1); }

void TQReadStream::read(std::int32_t& value) {
    value = static_cast<std::int32_t>(readUnsigned<std::uint32_t>());
}

void TQReadStream::read(std::uint32_t& value) { value = readUnsigned<std::uint32_t>(); }

void TQReadStream::read(double& value) { value = std::bit_cast<double>(readUnsigned<std::uint64_t>()); }

std::uint32_t TQReadStream::readLength() {
    const auto length = readUnsigned<std::uint32_t>();
    return canHold(length, 1) ? length : 0;
}

int TQReadStream::read(char* buffer, int maximum, bool endsAtNul) {
    const std::uint32_t length = readLength();
    if (buffer == nullptr || maximum < 1) {
        skip(length);
        return 0;
    }
    std::size_t kept = std::min<std::size_t>(length, static_cast<std::size_t>(maximum) - 1);
    readBytes(buffer, kept);
    skip(length - kept);
    if (endsAtNul) {
        kept = std::string_view(buffer, kept).substr(0, std::string_view(buffer, kept).find('\0')).size();
    }
    buffer[kept] = '\0';
    return static_cast<int>(kept);
}

std::string TQReadStream::readCString() {
    std::string text(readLength(), '\0');
    readBytes(text.data(), text.size());
    return text;
}

int TQReadStream::failReference() {
    fail();
    return ReferenceFault;
}

int TQReadStream::readObjReference(std::int32_t& id) {
    id = 0;
    const auto reference = readUnsigned<std::uint32_t>();
    if (_failed) {
        return ReferenceFault;
    }
    if (reference == TQStreamFormat::nullReference) {
        return NullReference;
    }
    const bool isNew = (reference & TQStreamFormat::newObjectMark) != 0;
    const auto number = static_cast<std::int32_t>(reference & ~TQStreamFormat::newObjectMark);
    if (number == 0 || isNew == _objects.contains(number)) {
        return failReference();
    }
    id = number;
    if (!isNew) {
        return number;
    }
    _objects.emplace(number, nullptr);
    return 0;
}

void TQReadStream::setObjForReference(void* object, std::int32_t id) {
    if (const auto entry = _objects.find(id); entry != _objects.end()) {
        entry->second = object;
    }
}

void* TQReadStream::objForReference(std::int32_t id) const {
    const auto entry = _objects.find(id);
    return entry == _objects.end() ? nullptr : entry->second;
}
