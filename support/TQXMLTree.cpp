#include "support/TQXMLTree.h"

#include <pugixml.hpp>

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

/// pugixml reads on behind the root element's end.
bool hasFurtherRoot(const pugi::xml_document& document) {
    const pugi::xml_node root = document.document_element();
    for (pugi::xml_node node = root.next_sibling(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_element) {
            return true;
        }
    }
    return false;
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
    std::optional<std::string> fault;
    if (!result) {
        fault = std::string(result.description()) + " (byte " + std::to_string(result.offset) + ")";
    } else if (hasFurtherRoot(*_document)) {
        fault = "More than one root element";
    }
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
    _document->append_child(name.c_str());
}

TQXMLElement TQXMLTree::appendChild(const TQXMLElement& parent, const std::string& name) {
    return Document::elementOf(Document::nodeOf(parent).append_child(name.c_str()));
}

void TQXMLTree::setText(const TQXMLElement& element, const std::string& text) {
    Document::nodeOf(element).text().set(legalText(text).c_str());
}

void TQXMLTree::setAttribute(const TQXMLElement& element, const std::string& name, const std::string& value) {
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
