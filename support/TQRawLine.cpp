#include "support/TQRawLine.h"

namespace {

/// Collects the bytes of a line up to a number of characters and forgets the rest.
class LineCollector {
  public:
    explicit LineCollector(std::size_t maximum) : _maximum(maximum) {}

    void add(char byte) {
        const bool continuesCharacter = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
        if (!continuesCharacter) {
            ++_characters;
        }
        if (_characters <= _maximum && _bytes.size() < longestCharacter * _maximum) {
            _bytes += byte == '\0' ? ' ' : byte; // a text holds no NUL
        }
    }

    TQRawLine line(bool hasEnd) const { return {_bytes, hasEnd, _characters > _maximum}; }

  private:
    static constexpr std::size_t longestCharacter = 4; // in UTF-8

    std::size_t _maximum;
    std::size_t _characters = 0;
    std::string _bytes;
};

} // namespace

std::optional<TQRawLine> tq_nextRawLine(std::FILE* stream, std::size_t maximum) {
    LineCollector line(maximum);
    constexpr std::size_t longestLine = std::size_t{1} << 28; // in bytes
    std::size_t length = 0;
    bool isReturnHeldBack = false; // it belongs to the line's end when a line feed follows
    for (int next = std::getc(stream); next != EOF; next = std::getc(stream)) {
        if (next == '\n') {
            return line.line(true);
        }
        if (++length > longestLine) {
            return std::nullopt;
        }
        if (isReturnHeldBack) {
            line.add('\r');
        }
        isReturnHeldBack = next == '\r';
        if (!isReturnHeldBack) {
            line.add(static_cast<char>(next));
        }
    }
    if (length == 0 || std::ferror(stream) != 0) {
        return std::nullopt;
    }
    if (isReturnHeldBack) {
        line.add('\r');
    }
    return line.line(false);
}
