#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

/// The command's messages to the user: one line each on the error stream, whatever is in them, and a
/// transient status line (the progress) that gives way to them.
class Diagnostics {
  public:
    /// @param stream the error stream; not owned
    explicit Diagnostics(std::FILE* stream) : _stream(stream) {}

    /// Prints "FILE:LINE: reason".
    /// @param file the input as the user knows it
    /// @param line the number of the line, counted from 1
    /// @param reason why the line has no result
    void reportLine(std::string_view file, std::uint64_t line, std::string_view reason);

    /// Prints "tqproj: text".
    /// @param text what went wrong
    void reportProblem(std::string_view text);

    /// Puts a text in place of the one shown before, without ending the line.
    /// @param text the new status, of ASCII characters
    void showStatus(std::string_view text);

    /// Takes the status away, if one is shown.
    void eraseStatus();

  private:
    void printLine(std::string_view text);

    std::FILE* _stream;
    std::string _line;
    std::size_t _statusLength = 0;
};

/// A text made fit for one line: the bytes of control characters, and those that are no UTF-8, shown as
/// \\xNN. Whatever comes from a file and goes to the terminal passes here.
/// @param text any bytes
std::string withoutControls(std::string_view text);

/// withoutControls() of each line.
/// @param text any bytes
std::string withoutControlsInLines(std::string_view text);

/// A text made fit for a message: clipped when it is long, and withoutControls().
/// @param text any bytes
std::string printableText(std::string_view text);
