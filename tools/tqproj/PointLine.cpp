#include "tools/tqproj/PointLine.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char character) { return character == ' ' || character == '\t'; }

// By character, because every byte of the input is asked for.
constexpr std::array<bool, 256> endsField = [] {
    std::array<bool, 256> ends{};
    for (const unsigned char character : {' ', '\t', ','}) {
        ends[character] = true;
    }
    return ends;
}();

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && isBlank(text[at])) {
        ++at;
    }
    return at;
}

std::size_t skipField(std::string_view text, std::size_t at) {
    while (at < text.size() && !endsField[static_cast<unsigned char>(text[at])]) {
        ++at;
    }
    return at;
}

std::size_t skipSeparator(std::string_view text, std::size_t at) {
    at = skipBlanks(text, at);
    return at < text.size() && text[at] == ',' ? skipBlanks(text, at + 1) : at;
}

std::size_t skipLead(std::string_view text) {
    return skipBlanks(text, text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

} // namespace

PointLine::PointLine(std::string_view line) {
    const std::size_t firstStart = skipLead(line);
    const std::size_t firstEnd = skipField(line, firstStart);
    const std::size_t secondStart = skipSeparator(line, firstEnd);
    const std::size_t secondEnd = skipField(line, secondStart);
    lead = line.substr(0, firstStart);
    first = line.substr(firstStart, firstEnd - firstStart);
    separator = line.substr(firstEnd, secondStart - firstEnd);
    second = line.substr(secondStart, secondEnd - secondStart);
    rest = line.substr(secondEnd);
}

bool PointLine::isPoint(std::string_view line) {
    const std::size_t start = skipLead(line);
    return start < line.size() && line[start] != '#';
}
