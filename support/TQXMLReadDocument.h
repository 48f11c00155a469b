#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"
#include "support/TQXMLElement.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

class TQXMLTree;

/// What the look for a child element's value came to.
enum _tqxmlgetstatus : int {
    TQXMLFound = 0,      ///< there is one such child, and it has a value of the kind asked for
    TQXMLMissing = 1,    ///< there is no such child
    TQXMLDuplicated = 2, ///< there are several such children
    TQXMLMalformed = 3   ///< there is one such child, but its text is no number
};

/// An XML document that was read. No file is read but the one given, and a document type declaration is
/// skipped: a document with other entities than those of XML itself is refused.
class TQSYSTEMW_EXPORT TQXMLReadDocument {
  public:
    /// The size of the largest text that is read, in bytes.
    static constexpr std::size_t maximumSize = std::size_t{64} << 20;

    /// A document without a root element.
    TQXMLReadDocument();

    virtual ~TQXMLReadDocument();
    TQXMLReadDocument(const TQXMLReadDocument&) = delete;
    TQXMLReadDocument& operator=(const TQXMLReadDocument&) = delete;

    /// Reads a document from its text. False, and the document has no root element, when the text is not
    /// well-formed.
    /// @param text the bytes of the document, in the encoding that its mark or its declaration names, else
    ///        UTF-8
    /// @param error receives the reason when the text cannot be read, and is untouched otherwise
    bool readFromText(std::string_view text, TQString& error);

    /// Reads a document from a file; as readFromText().
    /// @param path the file
    /// @param error receives the reason when the file cannot be read, and is untouched otherwise
    bool readFromFile(const TQString& path, TQString& error);

    /// The root element; none before a document was read.
    TQXMLElement rootElement() const;

    /// The name of an element; empty for none.
    /// @param element the element
    TQString getName(const TQXMLElement& element) const;

    /// The first child of an element that has a name; none when there is none.
    /// @param name the child's name
    /// @param parent the element
    /// @param foundMoreThanOnce receives whether there are several
    TQXMLElement getChildByName(const TQString& name, const TQXMLElement& parent,
                                bool& foundMoreThanOnce) const;

    /// The text of an element, without that of its children; empty for none.
    /// @param element the element
    TQString getText(const TQXMLElement& element) const;

    /// The text of an element's only child of a name; empty unless that was found.
    /// @param name the child's name
    /// @param parent the element
    /// @param status receives TQXMLFound, TQXMLMissing or TQXMLDuplicated
    TQString getTextFromChildByName(const TQString& name, const TQXMLElement& parent,
                                    _tqxmlgetstatus& status) const;

    /// The number of an element's only child of a name; 0 unless that was found.
    /// @param name the child's name
    /// @param parent the element
    /// @param status receives TQXMLFound, TQXMLMissing, TQXMLDuplicated or TQXMLMalformed
    double getDoubleFromChildByName(const TQString& name, const TQXMLElement& parent,
                                    _tqxmlgetstatus& status) const;

    /// The integer that is an element's text; 0 when it is none.
    /// @param element the element
    /// @param ok receives whether the text is an integer of 32 bits
    std::int32_t getLong(const TQXMLElement& element, bool& ok) const;

    /// The value of an attribute: true for "true" and "1", false for everything else.
    /// @param element the element
    /// @param name the attribute's name
    /// @param found receives whether the element has that attribute
    bool getBoolAttribute(const TQXMLElement& element, const TQString& name, bool& found) const;

  private:
    std::unique_ptr<TQXMLTree> _tree;
};
