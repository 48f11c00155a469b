#pragma once

#include "support/TQXMLElement.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The element tree of an XML document, all texts in UTF-8. Internal: the header is not installed.
///
/// pugixml is included in this class's source alone: neither the library's interface nor what is compiled
/// against it depends on it, and another parser would change one file.
class TQXMLTree {
  public:
    /// A tree without a root.
    TQXMLTree();
    ~TQXMLTree();
    TQXMLTree(const TQXMLTree&) = delete;
    TQXMLTree& operator=(const TQXMLTree&) = delete;

    /// Reads a tree from a document's bytes; the reason why not, and the tree has no root, on failure. What
    /// is not well-formed fails, also where pugixml would read on.
    /// @param bytes the document
    std::optional<std::string> parse(std::string_view bytes);

    /// The document as text, with its XML declaration.
    std::string toString() const;

    /// The root element; none in an empty tree.
    TQXMLElement root() const;

    /// Makes the root element of an empty tree; none, which is reported, when the name is no XML name.
    /// @param name its name
    void createRoot(const std::string& name);

    /// Adds a last child to an element; none when there is no such element or, which is reported, the name is
    /// no XML name.
    /// @param parent the element
    /// @param name the child's name
    static TQXMLElement appendChild(const TQXMLElement& parent, const std::string& name);

    /// Gives an element its text, with U+FFFD for every character that XML cannot hold.
    /// @param element the element, without children
    /// @param text its text
    static void setText(const TQXMLElement& element, const std::string& text);

    /// Gives an element an attribute, or an attribute its value; a name that is no XML name is reported and
    /// left out.
    /// @param element the element
    /// @param name the attribute's name
    /// @param value the attribute's value
    static void setAttribute(const TQXMLElement& element, const std::string& name, const std::string& value);

    /// The first child of a name.
    /// @param parent the element
    /// @param name the child's name
    static TQXMLElement firstChild(const TQXMLElement& parent, const std::string& name);

    /// The next element of a name under the same parent.
    /// @param element the element to look behind
    /// @param name the name
    static TQXMLElement nextSibling(const TQXMLElement& element, const std::string& name);

    /// An element's name; empty for none.
    /// @param element the element
    static std::string name(const TQXMLElement& element);

    /// An element's own text, without that of its children.
    /// @param element the element
    static std::string text(const TQXMLElement& element);

    /// An attribute's value; nothing when the element has no such attribute.
    /// @param element the element
    /// @param name the attribute's name
    static std::optional<std::string> attribute(const TQXMLElement& element, const std::string& name);

  private:
    struct Document;

    std::unique_ptr<Document> _document;
};
