#include "tools/tqproj/LineReader.h"

#include <algorithm>
#include <cstring>
#include <ios>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18;
constexpr std::size_t longestLineEnd = 2;

} // namespace

LineReader::LineReader(std::streambuf& source, std::size_t lineLimit)
    : _source(source), _lineLimit(lineLimit), _buffer(lineLimit + longestLineEnd + blockSize) {}

bool LineReader::fill() {
    if (_isAtEnd) {
        return false;
    }
    makeRoom();
    try {
        const std::streamsize count = readSome();
        _end += static_cast<std::size_t>(count);
        _bytesRead += static_cast<std::uint64_t>(count);
        _isAtEnd = count == 0;
    } catch (const std::ios_base::failure& failure) {
        stopAtError(failure.code());
    }
    return !_isAtEnd;
}

bool LineReader::takeLine(Line& line) {
    const void* newline = std::memchr(_buffer.data() + _scanned, '\n', _end - _scanned);
    if (newline != nullptr) {
        line = lineUpTo(static_cast<std::size_t>(static_cast<const char*>(newline) - _buffer.data()));
        return true;
    }
    _scanned = _end;
    if (!_isAtEnd || _begin == _end) {
        return false;
    }
    line = lineUpTo(_end);
    return true;
}

std::string_view LineReader::takeLines(std::size_t greatestSize) {
    const std::string_view arrived(_buffer.data() + _begin, std::min(greatestSize, _end - _begin));
    const std::size_t newline = arrived.rfind('\n');
    if (_isSkipping || newline == std::string_view::npos) {
        return {};
    }
    _begin = _scanned = _begin + newline + 1;
    return arrived.substr(0, newline + 1);
}

LineReader::Line LineReader::lineOf(std::string_view whole) {
    std::size_t length = whole.size() - (whole.ends_with('\n') ? 1 : 0);
    if (length > 0 && whole[length - 1] == '\r') {
        --length;
    }
    return {whole.substr(0, length), whole.substr(length)};
}

// Moves the beginning of a line to the front of the buffer, or drops it when it is too long already; its
// last byte stays, because it may be the first of a line end of two bytes.
void LineReader::makeRoom() {
    std::size_t kept = _end - _begin;
    if (kept >= _lineLimit + longestLineEnd) {
        _isSkipping = true;
        kept = 1;
    }
    std::memmove(_buffer.data(), _buffer.data() + (_end - kept), kept);
    _begin = 0;
    _scanned = kept;
    _end = kept;
}

// At most one wait for the source: sgetc() blocks until something is there, in_avail() tells how much that
// is. What is there already comes in one piece, past the source's own buffer.
std::streamsize LineReader::readSome() {
    using Traits = std::streambuf::traits_type;
    if (!hasInput() && Traits::eq_int_type(_source.sgetc(), Traits::eof())) {
        return 0;
    }
    const auto room = static_cast<std::streamsize>(std::min(_buffer.size() - _end, blockSize));
    const std::streamsize count = std::clamp<std::streamsize>(_source.in_avail(), 1, room);
    return _source.sgetn(_buffer.data() + _end, count);
}

void LineReader::stopAtError(const std::error_code& error) {
    _error = error;
    _isAtEnd = true;
    _isSkipping = false;
    _begin = _scanned = _end;
}

LineReader::Line LineReader::lineUpTo(std::size_t newline) {
    Line line = lineOf({_buffer.data() + _begin, std::min(newline + 1, _end) - _begin});
    line.isTooLong = _isSkipping || line.text.size() > _lineLimit;
    if (line.isTooLong) {
        line.text = {};
    }
    _begin = _scanned = std::min(newline + 1, _end);
    _isSkipping = false;
    return line;
}
