#include "support/TQReadMemStream.h"

#include <cstring>

TQReadMemStream::TQReadMemStream(const void* bytes, std::size_t count, int version, std::uint32_t flags)
    : TQReadStream(version, flags), _next(static_cast<const char*>(bytes)),
      _left(bytes == nullptr ? 0 : count) {}

TQReadMemStream::~TQReadMemStream() = default;

std::uint64_t TQReadMemStream::sourceLeft() const { return _left; }

void TQReadMemStream::peek(char* bytes, std::size_t count) { std::memcpy(bytes, _next, count); }

void TQReadMemStream::skip(std::uint64_t count) {
    const auto step = static_cast<std::size_t>(count);
    _next += step;
    _left -= step;
}
