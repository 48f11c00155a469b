#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"
#include "support/TQXMLElement.h"

#include <cstdint>
#include <memory>

class TQXMLTree;

/// An XML document being built, from its root element down, in UTF-8. Characters that XML cannot hold
/// (most control characters) are written as U+FFFD. An element or attribute whose name XML does not allow
/// ("2nd", "a b") is reported and left out, with everything that would stand in it.
class TQSYSTEMW_EXPORT TQXMLWriteDocument {
  public:
    /// A document of an empty root element.
    /// @param rootName the root element's name
    explicit TQXMLWriteDocument(const TQString& rootName);

    virtual ~TQXMLWriteDocument();
    TQXMLWriteDocument(const TQXMLWriteDocument&) = delete;
    TQXMLWriteDocument& operator=(const TQXMLWriteDocument&) = delete;

    /// The root element.
    TQXMLElement rootElement() const;

    /// Adds an empty element as the last child of another and returns it.
    /// @param name the new element's name
    /// @param parent the element to add it to
    TQXMLElement createChildAndAppendTo(const TQString& name, const TQXMLElement& parent);

    /// Adds an element with a text as the last child of another and returns it.
    /// @param name the new element's name
    /// @param value its text
    /// @param parent the element to add it to
    TQXMLElement createChildWithTextAndAppendTo(const TQString& name, const TQString& value,
                                                const TQXMLElement& parent);

    /// Adds an element with a number as the last child of another and returns it. The number is written
    /// as the shortest text that reads back as the same double.
    /// @param name the new element's name
    /// @param value its number
    /// @param parent the element to add it to
    TQXMLElement createChildWithDoubleAndAppendTo(const TQString& name, double value,
                                                  const TQXMLElement& parent);

    /// Adds an element with an integer as the last child of another and returns it.
    /// @param name the new element's name
    /// @param value its integer
    /// @param parent the element to add it to
    TQXMLElement createChildWithLongAndAppendTo(const TQString& name, std::int32_t value,
                                                const TQXMLElement& parent);

    /// Gives an element an attribute "true" or "false"; one of that name is replaced.
    /// @param name the attribute's name
    /// @param value its value
    /// @param element the element
    void appendBoolAttributeTo(const TQString& name, bool value, const TQXMLElement& element);

    /// The whole document as text, with its XML declaration, children indented by two blanks.
    TQString toString() const;

    /// Writes the document to a file, which is replaced as a whole; 0 for success, 1 when the old file
    /// stayed, as for a document without a root element.
    /// @param path the file
    int writeToFile(const TQString& path) const;

  private:
    std::unique_ptr<TQXMLTree> _tree;
};
