#include "tools/tqproj/LibraryMessages.h"

#include "tools/tqproj/MessageWatch.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t greatestLength = 1024;

/// What PROJ gave as the reason, if a message passes it on; the message itself if not.
std::string_view reasonIn(std::string_view message) {
    constexpr std::string_view passedOn = "PROJ error :";
    const std::size_t found = message.find(passedOn);
    const std::size_t reason = found + passedOn.size();
    return found != std::string_view::npos && reason < message.size() ? message.substr(reason) : message;
}

/// A message without the operation of the library that it begins with ("TQPrProj4::initPROJ: ...").
std::string withoutOperation(const std::string& message) {
    constexpr std::string_view endOfOperation = ": ";
    const std::size_t end = message.find(endOfOperation);
    const bool hasOperation = message.starts_with("TQ") && message.find("::") < end;
    const std::size_t start = end + endOfOperation.size();
    return hasOperation && end != std::string::npos && start < message.size() ? message.substr(start)
                                                                              : message;
}

} // namespace

LibraryMessages::LibraryMessages()
    : _previous(tq_setErrorPrinter([this](std::string_view message) { receive(message); })) {}

LibraryMessages::~LibraryMessages() { tq_setErrorPrinter(std::move(_previous)); }

std::string LibraryMessages::take() { return std::exchange(_text, std::string()); }

std::string LibraryMessages::takeReason(const TQString& projLog) {
    if (!projLog.isEmpty()) {
        _text.clear();
        std::string log = projLog.utf8();
        constexpr std::string_view endOfFunction = ": ";
        const std::size_t function = log.find(endOfFunction);
        add(function != std::string::npos ? log.substr(function + endOfFunction.size()) : log);
    }
    return withoutOperation(take());
}

void LibraryMessages::receive(std::string_view message) {
    if (!MessageWatch::takeNotice()) {
        add(message);
    }
}

void LibraryMessages::add(std::string_view message) {
    const std::size_t end = message.find_last_not_of("\r\n \t");
    if (end == std::string_view::npos || _text.size() >= greatestLength) {
        return;
    }
    if (!_text.empty()) {
        _text += "; ";
    }
    const std::size_t start = _text.size();
    _text += reasonIn(message.substr(0, end + 1)).substr(0, greatestLength - std::min(start, greatestLength));
    const auto isControl = [](char character) { return static_cast<unsigned char>(character) < 0x20; };
    std::replace_if(_text.begin() + static_cast<std::ptrdiff_t>(start), _text.end(), isControl, ' ');
}
