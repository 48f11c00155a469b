#pragma once

#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"

#include <initializer_list>
#include <string>

// What the tests of binary archives share.

namespace tqtest {

/// Bytes written out by hand.
inline std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    }
    return text;
}

/// What a stream has written so far.
inline std::string written(const TQWriteMemStream& stream) {
    const auto memory = stream.getMemory();
    return {memory.data(), memory.size()};
}

/// The archive of one value.
template <class T>
std::string archiveOf(const T& value) {
    TQWriteMemStream stream;
    value.archiveTo(&stream);
    return written(stream);
}

/// The value read from an archive, and what became of the stream.
template <class T>
struct Unarchived {
    T value;
    bool failed;
    std::uint64_t bytesLeft;
};

/// Reads an archive into a value that holds something else before.
template <class T>
Unarchived<T> unarchive(const std::string& archive, T value) {
    TQReadMemStream stream(archive.data(), archive.size());
    value.unarchiveFrom(&stream);
    return {value, stream.failed(), stream.bytesLeft()};
}

} // namespace tqtest
