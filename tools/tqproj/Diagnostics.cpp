#include "tools/tqproj/Diagnostics.h"

#include "support/TQFormat.h"

namespace {

constexpr std::size_t printableLimit = 60;

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

bool continuesCharacter(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

} // namespace

void Diagnostics::printLine(std::string_view text) {
    eraseStatus();
    std::fwrite(text.data(), 1, text.size(), _stream);
}

void Diagnostics::reportLine(std::string_view file, std::uint64_t line, std::string_view reason) {
    _line.assign(file).append(":").append(std::to_string(line)).append(": ").append(reason);
    printLine(withoutControls(_line) + "\n");
}

void Diagnostics::reportProblem(std::string_view text) {
    _line.assign("tqproj: ").append(text);
    printLine(withoutControls(_line) + "\n");
}

void Diagnostics::showStatus(std::string_view text) {
    _line.assign("\r").append(text);
    if (text.size() < _statusLength) {
        _line.append(_statusLength - text.size(), ' ');
    }
    std::fwrite(_line.data(), 1, _line.size(), _stream);
    _statusLength = text.size();
}

void Diagnostics::eraseStatus() {
    if (_statusLength == 0) {
        return;
    }
    std::string blanks("\r");
    blanks.append(_statusLength, ' ').append("\r");
    std::fwrite(blanks.data(), 1, blanks.size(), _stream);
    _statusLength = 0;
}

std::string withoutControls(std::string_view text) {
    std::string printable;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (isControl(byte)) {
            printable += tq_format("\\x%02X", static_cast<unsigned int>(byte));
        } else {
            printable += character;
        }
    }
    return printable;
}

std::string printableText(std::string_view text) {
    if (text.size() <= printableLimit) {
        return withoutControls(text);
    }
    std::size_t length = printableLimit;
    while (length > 0 && continuesCharacter(static_cast<unsigned char>(text[length]))) {
        --length;
    }
    return withoutControls(text.substr(0, length)) + "...";
}
