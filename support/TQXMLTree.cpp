#include "support/TQXMLTree.h"

#include "support/TQMessages.h"
#include "support/TQString.h"
#include "support/TQTextEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <pugixml.hpp>
#include <set>
#include <system_error>
#include <utility>

namespace {

/// Texts of blanks alone are kept; a document type declaration is skipped, so that no entity is defined.
constexpr unsigned int parseOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;

/// Collects the document's text. pugixml writes carriage returns as they are, but every reader takes such a
/// one for a line end (XML 1.0, section 2.11); as a reference it stays what it is.
class StringWriter : public pugi::xml_writer {
  public:
    void write(const void* data, std::size_t size) override {
        for (const char byte : std::string_view(static_cast<const char*>(data), size)) {
            if (byte == '\r') {
                text += "&#13;";
            } else {
                text += byte;
            }
        }
    }

    std::string text;
};

/// Whether XML 1.0 (section 2.2) has no place for the character that begins at an index of UTF-8.
bool isForbidden(std::string_view utf8, std::size_t index) {
    const std::string_view character = utf8.substr(index, 3);
    if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") {
        return true; // U+FFFE, U+FFFF
    }
    const auto byte = static_cast<unsigned char>(utf8[index]);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

std::string legalText(std::string_view utf8) {
    std::string legal;
    for (std::size_t index = 0; index < utf8.size(); ++index) {
        if (!isForbidden(utf8, index)) {
            legal += utf8[index];
            continue;
        }
        legal += "\xEF\xBF\xBD";
        if (static_cast<unsigned char>(utf8[index]) >= 0x80) {
            index += 2;
        }
    }
    return legal;
}

/// Whether every character may stand in a document.
bool isLegalText(std::string_view utf8) {
    if (!tq_isValidUTF8(utf8)) {
        return false;
    }
    for (std::size_t index = 0; index < utf8.size(); ++index) {
        if (isForbidden(utf8, index)) {
            return false;
        }
    }
    return true;
}

bool isWithin(char32_t code, std::initializer_list<std::pair<char32_t, char32_t>> ranges) {
    return std::ranges::any_of(
        ranges, [code](const auto& range) { return range.first <= code && code <= range.second; });
}

/// What a name may begin with (XML 1.0, section 2.3).
bool beginsName(char32_t code) {
    return isWithin(code, {{':', ':'},
                           {'A', 'Z'},
                           {'_', '_'},
                           {'a', 'z'},
                           {0xC0, 0xD6},
                           {0xD8, 0xF6},
                           {0xF8, 0x2FF},
                           {0x370, 0x37D},
                           {0x37F, 0x1FFF},
                           {0x200C, 0x200D},
                           {0x2070, 0x218F},
                           {0x2C00, 0x2FEF},
                           {0x3001, 0xD7FF},
                           {0xF900, 0xFDCF},
                           {0xFDF0, 0xFFFD},
                           {0x10000, 0xEFFFF}});
}

/// What else a name may hold.
bool continuesName(char32_t code) {
    return beginsName(code) ||
           isWithin(code, {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}});
}

bool isName(const std::string& utf8) {
    if (!tq_isValidUTF8(utf8)) {
        return false;
    }
    const std::u32string codes = TQString(utf8, TQEncodingUTF8).characters();
    return !codes.empty() && beginsName(codes.front()) && std::ranges::all_of(codes, &continuesName);
}

/// Whether a name may be written; one that may not is reported.
bool isWritableName(const std::string& utf8) {
    const bool isWritable = isName(utf8);
    if (!isWritable) {
        tq_perrorf("TQXMLWriteDocument: no name for XML, left out: %s\n", TQString(utf8, TQEncodingUTF8));
    }
    return isWritable;
}

/// The character that a numeric reference stands for, without its "&#" and ";"; 0 when it is none.
char32_t referredCharacter(std::string_view number) {
    const bool isHexadecimal = number.starts_with('x');
    number.remove_prefix(isHexadecimal ? 1 : 0);
    std::uint32_t code = 0;
    const char* const end = number.data() + number.size();
    const auto [rest, error] = std::from_chars(number.data(), end, code, isHexadecimal ? 16 : 10);
    return error == std::errc() && rest == end ? code : 0;
}

/// Whether a reference, without its "&" and ";", stands for a character that a document may hold. The
/// predefined entities are the only ones, as none is defined.
bool isKnownReference(std::string_view name) {
    static constexpr std::array<std::string_view, 5> predefined = {"amp", "lt", "gt", "apos", "quot"};
    if (!name.starts_with('#')) {
        return std::ranges::find(predefined, name) != predefined.end();
    }
    const char32_t code = referredCharacter(name.substr(1));
    std::string character;
    tq_appendUTF8(character, code);
    return tq_isCharacter(code) && !isForbidden(character, 0);
}

/// Whether every "&" of a text begins a reference that is known.
bool hasKnownReferencesOnly(std::string_view raw) {
    for (std::size_t start = raw.find('&'); start != std::string_view::npos; start = raw.find('&', start)) {
        ++start;
        const std::size_t end = raw.find(';', start);
        if (end == std::string_view::npos || !isKnownReference(raw.substr(start, end - start))) {
            return false;
        }
    }
    return true;
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

/// Whether a text may stand between the marks of a comment (XML 1.0, section 2.5).
bool isComment(std::string_view text) {
    return text.find("--") == std::string_view::npos && !text.ends_with('-');
}

/// Whether a version number is one of XML 1 (section 2.8).
bool isVersion(std::string_view version) {
    constexpr std::string_view major = "1.";
    return version.size() > major.size() && version.starts_with(major) &&
           version.find_first_not_of("0123456789", major.size()) == std::string_view::npos;
}

/// Whether an XML declaration has its version, then perhaps its encoding, then perhaps "standalone", and
/// nothing else (section 2.8).
bool isDeclaration(const pugi::xml_node& declaration) {
    pugi::xml_attribute attribute = declaration.first_attribute();
    const auto passes = [&attribute](std::string_view name) {
        const bool isThere = attribute.name() == name;
        attribute = isThere ? attribute.next_attribute() : attribute;
        return isThere;
    };
    const bool hasVersion = isVersion(attribute.value()) && passes("version");
    passes("encoding");
    const std::string_view standalone = attribute.value();
    const bool isSaid = passes("standalone");
    return hasVersion && !attribute && (!isSaid || standalone == "yes" || standalone == "no");
}

/// Looks for what pugixml passes over, in a tree in which references are still as they were written.
class WellFormednessCheck : public pugi::xml_tree_walker {
  public:
    bool for_each(pugi::xml_node& node) override {
        switch (node.type()) {
        case pugi::node_element:
            checkElement(node);
            break;
        case pugi::node_pcdata:
            checkText(node.value());
            demand(std::string_view(node.value()).find("]]>") == std::string_view::npos, "\"]]>\" in a text");
            demand(depth() > 0 || isBlank(node.value()), textBesideRoot);
            break;
        case pugi::node_cdata:
            checkCharacters(node);
            demand(depth() > 0, textBesideRoot);
            break;
        case pugi::node_comment:
            checkCharacters(node);
            demand(isComment(node.value()), "\"--\" in a comment");
            break;
        case pugi::node_declaration:
            checkDeclaration(node);
            break;
        case pugi::node_doctype:
            checkCharacters(node);
            demand(_roots == 0 && ++_doctypes == 1, "A document type declaration out of its place");
            break;
        default:
            checkCharacters(node);
        }
        return !fault;
    }

    static constexpr const char* illegalCharacter = "A character that XML does not have";

    std::optional<std::string> fault;

  private:
    static constexpr const char* textBesideRoot = "Text beside the root element";

    void demand(bool isMet, const char* otherwise) {
        if (!isMet && !fault) {
            fault = otherwise;
        }
    }

    void checkCharacters(const pugi::xml_node& node) { demand(isLegalText(node.value()), illegalCharacter); }

    /// The XML declaration is what the document begins with, in small letters.
    void checkDeclaration(const pugi::xml_node& declaration) {
        const bool isFirst = depth() == 0 && !declaration.previous_sibling();
        demand(isFirst && std::string_view(declaration.name()) == "xml",
               "An XML declaration out of its place");
        demand(isDeclaration(declaration), "An XML declaration that declares no version, or what it may not");
    }

    void checkElement(const pugi::xml_node& element) {
        demand(isName(element.name()), "An element without a proper name");
        demand(depth() > 0 || ++_roots == 1, "More than one root element");
        std::set<std::string_view> names;
        for (const pugi::xml_attribute& attribute : element.attributes()) {
            demand(isName(attribute.name()), "An attribute without a proper name");
            demand(names.insert(attribute.name()).second, "Two attributes of one name");
            checkText(attribute.value());
            demand(std::string_view(attribute.value()).find('<') == std::string_view::npos,
                   "\"<\" in an attribute");
        }
    }

    void checkText(std::string_view raw) {
        demand(isLegalText(raw), illegalCharacter);
        demand(hasKnownReferencesOnly(raw), "An unknown entity");
    }

    int _roots = 0;
    int _doctypes = 0;
};

std::string descriptionOf(const pugi::xml_parse_result& result) {
    return std::string(result.description()) + " (byte " + std::to_string(result.offset) + ")";
}

/// What makes a document ill-formed that pugixml can read.
std::optional<std::string> faultThatPugixmlForgives(std::string_view bytes, pugi::xml_encoding encoding) {
    const bool hasBytesForCharacters = encoding == pugi::encoding_utf8 || encoding == pugi::encoding_latin1;
    if (hasBytesForCharacters && bytes.find('\0') != std::string_view::npos) {
        return WellFormednessCheck::illegalCharacter; // pugixml takes it for the end
    }
    constexpr unsigned int asWritten = (pugi::parse_full | pugi::parse_fragment | pugi::parse_ws_pcdata) &
                                       ~(pugi::parse_escapes | pugi::parse_eol);
    pugi::xml_document document;
    if (const auto result = document.load_buffer(bytes.data(), bytes.size(), asWritten); !result) {
        return descriptionOf(result); // in what is passed over otherwise
    }
    WellFormednessCheck check;
    document.traverse(check);
    return check.fault;
}

} // namespace

struct TQXMLTree::Document : pugi::xml_document {
    static pugi::xml_node nodeOf(const TQXMLElement& element) {
        return pugi::xml_node(static_cast<pugi::xml_node_struct*>(element._node));
    }

    static TQXMLElement elementOf(const pugi::xml_node& node) { return TQXMLElement(node.internal_object()); }
};

TQXMLTree::TQXMLTree() : _document(std::make_unique<Document>()) {}

TQXMLTree::~TQXMLTree() = default;

std::optional<std::string> TQXMLTree::parse(std::string_view bytes) {
    const pugi::xml_parse_result result = _document->load_buffer(bytes.data(), bytes.size(), parseOptions);
    std::optional<std::string> fault =
        result ? faultThatPugixmlForgives(bytes, result.encoding) : descriptionOf(result);
    if (fault) {
        _document->reset();
    }
    return fault;
}

std::string TQXMLTree::toString() const {
    StringWriter writer;
    _document->save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
    return writer.text;
}

TQXMLElement TQXMLTree::root() const { return Document::elementOf(_document->document_element()); }

void TQXMLTree::createRoot(const std::string& name) {
    pugi::xml_node declaration = _document->append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    if (isWritableName(name)) {
        _document->append_child(name.c_str());
    }
}

TQXMLElement TQXMLTree::appendChild(const TQXMLElement& parent, const std::string& name) {
    return isWritableName(name) ? Document::elementOf(Document::nodeOf(parent).append_child(name.c_str()))
                                : TQXMLElement();
}

void TQXMLTree::setText(const TQXMLElement& element, const std::string& text) {
    Document::nodeOf(element).text().set(legalText(text).c_str());
}

void TQXMLTree::setAttribute(const TQXMLElement& element, const std::string& name, const std::string& value) {
    if (!isWritableName(name)) {
        return;
    }
    pugi::xml_node node = Document::nodeOf(element);
    pugi::xml_attribute attribute = node.attribute(name.c_str());
    if (!attribute) {
        attribute = node.append_attribute(name.c_str());
    }
    attribute.set_value(legalText(value).c_str());
}

TQXMLElement TQXMLTree::firstChild(const TQXMLElement& parent, const std::string& name) {
    return Document::elementOf(Document::nodeOf(parent).child(name.c_str()));
}

TQXMLElement TQXMLTree::nextSibling(const TQXMLElement& element, const std::string& name) {
    return Document::elementOf(Document::nodeOf(element).next_sibling(name.c_str()));
}

std::string TQXMLTree::name(const TQXMLElement& element) { return Document::nodeOf(element).name(); }

std::string TQXMLTree::text(const TQXMLElement& element) {
    std::string text;
    for (const pugi::xml_node& child : Document::nodeOf(element)) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += child.value();
        }
    }
    return text;
}

std::optional<std::string> TQXMLTree::attribute(const TQXMLElement& element, const std::string& name) {
    const pugi::xml_attribute attribute = Document::nodeOf(element).attribute(name.c_str());
    if (!attribute) {
        return std::nullopt;
    }
    return attribute.value();
}
