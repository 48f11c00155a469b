#include "support/TQXMLReadDocument.h"

#include "support/TQNumberText.h"
#include "support/TQPath.h"
#include "support/TQXMLTree.h"

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace {

constexpr const char* tooLarge = "The document is too large";

/// The bytes of a file, at most one more than a document may have; nothing when it cannot be read.
std::optional<std::string> bytesOf(const TQString& path) {
    const TQStreamHandle stream(tq_fopen(path, "rb"));
    if (stream == nullptr) {
        return std::nullopt;
    }

    std::string bytes;
    std::string chunk(std::size_t{1} << 16, '\0');
    while (bytes.size() <= TQXMLReadDocument::maximumSize) {
        const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), stream.get());
        if (count == 0) {
            break;
        }
        bytes.append(chunk, 0, count);
    }
    if (std::ferror(stream.get()) != 0) {
        return std::nullopt;
    }
    return bytes;
}

/// A number's text without the white space that XML tools put around it.
std::string_view trimmed(std::string_view text) {
    constexpr std::string_view whiteSpace = " \t\r\n";
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

std::optional<std::int32_t> integerFrom(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

/// The only child of a name; none, and the status says why, when there is not exactly one.
TQXMLElement onlyChild(const TQString& name, const TQXMLElement& parent, _tqxmlgetstatus& status) {
    const std::string utf8 = name.utf8();
    const TQXMLElement child = TQXMLTree::firstChild(parent, utf8);
    if (!child) {
        status = TQXMLMissing;
        return {};
    }
    if (TQXMLTree::nextSibling(child, utf8)) {
        status = TQXMLDuplicated;
        return {};
    }
    status = TQXMLFound;
    return child;
}

} // namespace

TQXMLReadDocument::TQXMLReadDocument() : _tree(std::make_unique<TQXMLTree>()) {}

TQXMLReadDocument::~TQXMLReadDocument() = default;

bool TQXMLReadDocument::readFromText(std::string_view text, TQString& error) {
    _tree = std::make_unique<TQXMLTree>();
    if (text.size() > maximumSize) {
        error = tooLarge;
        return false;
    }
    const std::optional<std::string> fault = _tree->parse(text);
    if (fault) {
        error = fault->c_str();
    }
    return !fault;
}

bool TQXMLReadDocument::readFromFile(const TQString& path, TQString& error) {
    const std::optional<std::string> bytes = bytesOf(path);
    if (bytes) {
        return readFromText(*bytes, error);
    }
    _tree = std::make_unique<TQXMLTree>();
    error = "The file cannot be read";
    return false;
}

TQXMLElement TQXMLReadDocument::rootElement() const { return _tree->root(); }

TQString TQXMLReadDocument::getName(const TQXMLElement& element) const {
    return TQString(TQXMLTree::name(element).c_str());
}

TQXMLElement TQXMLReadDocument::getChildByName(const TQString& name, const TQXMLElement& parent,
                                               bool& foundMoreThanOnce) const {
    const std::string utf8 = name.utf8();
    const TQXMLElement child = TQXMLTree::firstChild(parent, utf8);
    foundMoreThanOnce = TQXMLTree::nextSibling(child, utf8).exists();
    return child;
}

TQString TQXMLReadDocument::getText(const TQXMLElement& element) const {
    return TQString(TQXMLTree::text(element).c_str());
}

TQString TQXMLReadDocument::getTextFromChildByName(const TQString& name, const TQXMLElement& parent,
                                                   _tqxmlgetstatus& status) const {
    return getText(onlyChild(name, parent, status));
}

double TQXMLReadDocument::getDoubleFromChildByName(const TQString& name, const TQXMLElement& parent,
                                                   _tqxmlgetstatus& status) const {
    const TQXMLElement child = onlyChild(name, parent, status);
    double value = 0;
    if (child && !tq_parseCompleteDouble(trimmed(TQXMLTree::text(child)), value)) {
        status = TQXMLMalformed;
    }
    return value;
}

std::int32_t TQXMLReadDocument::getLong(const TQXMLElement& element, bool& ok) const {
    const std::optional<std::int32_t> value = integerFrom(TQXMLTree::text(element));
    ok = value.has_value();
    return value.value_or(0);
}

bool TQXMLReadDocument::getBoolAttribute(const TQXMLElement& element, const TQString& name,
                                         bool& found) const {
    const std::optional<std::string> value = TQXMLTree::attribute(element, name.utf8());
    found = value.has_value();
    return value == "true" || value == "1";
}
