#include "support/TQWriteStream.h"

#include "support/TQStreamFormat.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <string_view>

TQWriteStream::TQWriteStream() = default;
TQWriteStream::~TQWriteStream() = default;

template <class Unsigned>
void TQWriteStream::writeUnsigned(Unsigned value) {
    const auto bytes = TQStreamFormat::toBytes(value);
    put(bytes.data(), bytes.size());
}

void TQWriteStream::declareVersion(const char* className, std::int16_t version) {
    const std::string_view name = TQStreamFormat::tagName(className);
    writeUnsigned(static_cast<std::uint8_t>(name.size()));
    writeBytes(name.data(), name.size());
    writeUnsigned(static_cast<std::uint16_t>(version));
}

void TQWriteStream::write(bool value) { write(value ? '\1' : '\0'); }

void TQWriteStream::write(char value) { put(&value, 1); }

void TQWriteStream::write(std::int32_t value) { writeUnsigned(static_cast<std::uint32_t>(value)); }

void TQWriteStream::write(std::uint32_t value) { writeUnsigned(value); }

void TQWriteStream::write(double value) { writeUnsigned(std::bit_cast<std::uint64_t>(value)); }

void TQWriteStream::write(const char* cString) {
    constexpr std::size_t longest = std::numeric_limits<std::uint32_t>::max();
    const std::string_view text = cString == nullptr ? std::string_view{} : std::string_view{cString};
    const std::size_t length = std::min(text.size(), longest);
    write(static_cast<std::uint32_t>(length));
    writeBytes(text.data(), length);
}

void TQWriteStream::writeObjReference(const void* object) {
    if (object == nullptr) {
        writeUnsigned(TQStreamFormat::nullReference);
        return;
    }
    const auto nextId = static_cast<std::uint32_t>(_references.size() + 1);
    const auto [entry, isNew] = _references.try_emplace(object, nextId);
    writeUnsigned(isNew ? entry->second | TQStreamFormat::newObjectMark : entry->second);
}

void TQWriteStream::writeBytes(const void* bytes, std::size_t count) {
    if (count > 0) {
        put(static_cast<const char*>(bytes), count);
    }
}
