#include "tools/tqproj/Diagnostics.h"

#include "support/TQFormat.h"
#include "support/TQTextEncoding.h"

#include <algorithm>

namespace {

constexpr std::size_t printableLimit = 60;

/// The bytes of the character that a text begins with; 0 when they are none of UTF-8.
std::size_t lengthOfCharacter(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return tq_isValidUTF8(text.substr(0, length)) ? length : 0;
}

/// Whether a character is one of the control characters below the blank, DEL, or of those from U+0080 to
/// U+009F, which terminals obey too.
bool isControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    const auto last = static_cast<unsigned char>(character.back());
    return character.size() == 1 ? first < 0x20 || first == 0x7F : first == 0xC2 && last < 0xA0;
}

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
    while (!text.empty()) {
        const std::size_t length = lengthOfCharacter(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        if (length > 0 && !isControl(character)) {
            printable += character;
        } else {
            for (const char byte : character) {
                printable +=
                    tq_format("\\x%02X", static_cast<unsigned int>(static_cast<unsigned char>(byte)));
            }
        }
        text.remove_prefix(character.size());
    }
    return printable;
}

std::string withoutControlsInLines(std::string_view text) {
    std::string printable;
    for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos;
         text.remove_prefix(end + 1)) {
        printable += withoutControls(text.substr(0, end)) + "\n";
    }
    return printable + withoutControls(text);
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
