#include "support/TQWriteMemStream.h"

TQWriteMemStream::TQWriteMemStream() = default;
TQWriteMemStream::~TQWriteMemStream() = default;

std::span<const char> TQWriteMemStream::getMemory() const { return _bytes; }

void TQWriteMemStream::put(const char* bytes, std::size_t count) {
    _bytes.insert(_bytes.end(), bytes, bytes + count);
}
