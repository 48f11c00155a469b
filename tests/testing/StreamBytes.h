#pragma once

#include "support/TQObject.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// An archive written out by hand, value by value, apart from the code that writes archives.
class StreamBytes {
  public:
    StreamBytes& byte(int value) {
        _bytes += static_cast<char>(static_cast<unsigned char>(value));
        return *this;
    }

    StreamBytes& integer(std::int32_t value) { return lowestFirst(static_cast<std::uint32_t>(value), 4); }

    StreamBytes& number(double value) { return lowestFirst(std::bit_cast<std::uint64_t>(value), 8); }

    StreamBytes& numbers(std::initializer_list<double> values) {
        for (const double value : values) {
            number(value);
        }
        return *this;
    }

    /// The version tag that a class's block begins with.
    StreamBytes& tag(std::string_view className, int version) {
        byte(static_cast<int>(className.size()));
        _bytes += className;
        return lowestFirst(static_cast<std::uint16_t>(version), 2);
    }

    /// A text in the default 8-bit encoding.
    StreamBytes& text(std::string_view value) { return byte(2).counted(value); }

    /// A text that is null.
    StreamBytes& nullText() { return byte(0); }

    /// A counted C string, as old blocks hold names.
    StreamBytes& counted(std::string_view value) {
        integer(static_cast<std::int32_t>(value.size()));
        _bytes += value;
        return *this;
    }

    StreamBytes& append(const StreamBytes& other) {
        _bytes += other._bytes;
        return *this;
    }

    const std::string& bytes() const { return _bytes; }

  private:
    StreamBytes& lowestFirst(std::uint64_t value, int count) {
        for (int i = 0; i < count; ++i) {
            byte(static_cast<int>(value & 0xFFU));
            value >>= 8U;
        }
        return *this;
    }

    std::string _bytes;
};

/// What an object writes to an archive.
inline std::string archivedBytes(const TQObject& object) {
    TQWriteMemStream stream;
    object.archiveTo(&stream);
    const auto memory = stream.getMemory();
    return {memory.begin(), memory.end()};
}

/// A stream over bytes that it keeps, in memory of their exact size: a read beyond them is found.
class ByteStream {
  public:
    explicit ByteStream(std::string_view bytes)
        : _bytes(bytes.begin(), bytes.end()), _stream(_bytes.data(), _bytes.size()) {}
    explicit ByteStream(const StreamBytes& bytes) : ByteStream(bytes.bytes()) {}

    /// The stream, as readers take it.
    TQReadStream* get() { return &_stream; }

    /// Whether everything was read, and nothing beyond it.
    bool isReadExactly() const { return !_stream.failed() && _stream.bytesLeft() == 0; }

  private:
    std::vector<char> _bytes;
    TQReadMemStream _stream;
};

/// Reads an archive that is cut off after each of its bytes but the last; every time the stream must
/// have failed, and the reader must have come to its end.
/// @param bytes the whole archive
/// @param read takes a TQReadStream* and reads from it
template <class Read>
void expectEveryCutIsNoticed(const std::string& bytes, const Read& read) {
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        ByteStream stream(std::string_view(bytes).substr(0, length));
        read(stream.get());
        EXPECT_TRUE(stream.get()->failed()) << "of the archive " << length << " bytes";
    }
}
