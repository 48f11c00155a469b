#pragma once

#include "tools/tqproj/ExitCode.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <system_error>

class Diagnostics;

/// Collects the output and hands it to a C stream in large blocks.
///
/// Writers append to text() and then call flushIfLarge(). After a failed write the buffer stays failed and
/// drops what it is given, so that its memory stays bounded.
class OutputBuffer {
  public:
    /// The size from which flushIfLarge() writes.
    static constexpr std::size_t blockSize = std::size_t{1} << 18;

    /// @param stream where the text goes; not owned, made unbuffered because this class buffers
    explicit OutputBuffer(std::FILE* stream);

    /// The text that has not been written yet; append to it.
    std::string& text() { return _text; }

    /// Writes the text out when it has reached blockSize.
    void flushIfLarge() {
        if (_text.size() >= blockSize) {
            flush();
        }
    }

    /// Writes out everything that was appended; false when this or an earlier write failed.
    bool flush();

    /// Writes out everything, and reports a failed write: in one line, or silently when the reader of a pipe
    /// has gone.
    /// @param diagnostics where the message goes
    /// @return Success, or Failure after a failed write
    ExitCode finish(Diagnostics& diagnostics);

    /// Why a write failed; no error while all went well.
    const std::error_code& error() const { return _error; }

  private:
    std::FILE* _stream;
    std::string _text;
    std::error_code _error;
};
