#include "tools/tqproj/OutputBuffer.h"

#include "tools/tqproj/Diagnostics.h"

#include <cerrno>

OutputBuffer::OutputBuffer(std::FILE* stream) : _stream(stream) {
    std::setvbuf(stream, nullptr, _IONBF, 0);
    _text.reserve(blockSize + blockSize / 4);
}

bool OutputBuffer::flush() {
    if (!_error && !_text.empty()) {
        errno = 0;
        if (std::fwrite(_text.data(), 1, _text.size(), _stream) != _text.size()) {
            _error = errno != 0 ? std::error_code(errno, std::generic_category())
                                : std::make_error_code(std::errc::io_error);
        }
    }
    _text.clear();
    return !_error;
}

ExitCode OutputBuffer::finish(Diagnostics& diagnostics) {
    if (flush()) {
        return ExitCode::Success;
    }
    if (_error != std::errc::broken_pipe) {
        diagnostics.reportProblem("cannot write the output: " + _error.message());
    }
    return ExitCode::Failure;
}
