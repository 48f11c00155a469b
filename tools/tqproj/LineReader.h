#pragma once

#include <cstddef>
#include <cstdint>
#include <streambuf>
#include <string_view>
#include <system_error>
#include <vector>

/// Reads lines from a stream buffer block by block, in memory that does not grow with the input.
///
/// The caller alternates: fill() waits for input once, then takeLines() and takeLine() hand out the lines
/// that arrived. So whoever writes results knows when the reader is about to wait and can flush first.
class LineReader {
  public:
    /// The greatest length of a line that is handed out, in bytes without the line end.
    static constexpr std::size_t defaultLineLimit = std::size_t{1} << 20;

    /// One line of the input.
    struct Line {
        std::string_view text;  ///< without its line end; empty when the line is too long
        std::string_view end;   ///< "\n" or "\r\n"; of a last line that lacks its "\n": "" or "\r"
        bool isTooLong = false; ///< the line was longer than the limit and its text was dropped
    };

    /// @param source where the bytes come from; must outlive the reader
    /// @param lineLimit the greatest length of a line in bytes
    explicit LineReader(std::streambuf& source, std::size_t lineLimit = defaultLineLimit);

    /// Whether there is input that fill() can take without waiting, as far as the source can tell.
    bool hasInput() { return !_isAtEnd && _source.in_avail() > 0; }

    /// Waits for input and takes what has arrived, at most a block. To be called when takeLine() has answered
    /// false. False at the end of the input and after a read error; takeLine() may then have a last line.
    bool fill();

    /// Hands out the next line that has arrived whole. Its text stays valid until the next fill().
    /// @param line receives the line
    /// @return false when there is none; line is then unchanged
    bool takeLine(Line& line);

    /// Hands out many lines that have arrived whole, each with its "\n". They stay valid until the next
    /// fill().
    /// @param greatestSize how many bytes they may have, at most the line limit
    /// @return the lines; empty when the next one is longer or has not arrived whole, for takeLine() to tell
    std::string_view takeLines(std::size_t greatestSize);

    /// Splits a line that is not too long from its end.
    /// @param whole the line with its end
    static Line lineOf(std::string_view whole);

    /// Why reading stopped before the end; no error when it did not. A line that was cut off is dropped.
    const std::error_code& error() const { return _error; }

    /// How many bytes have been read so far.
    std::uint64_t bytesRead() const { return _bytesRead; }

  private:
    void makeRoom();
    std::streamsize readSome();
    void stopAtError(const std::error_code& error);
    Line lineUpTo(std::size_t newline);

    std::streambuf& _source;
    std::size_t _lineLimit;
    std::vector<char> _buffer;
    std::size_t _begin = 0;   // first byte that was not handed out
    std::size_t _scanned = 0; // no line end between _begin and here
    std::size_t _end = 0;     // end of what was read
    std::uint64_t _bytesRead = 0;
    std::error_code _error;
    bool _isAtEnd = false;
    bool _isSkipping = false; // the beginning of the present line was dropped, being too long
};
