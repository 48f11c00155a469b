#pragma once

/// A handle on an element of an XML document: a small value, valid as long as the document lives and is
/// not read anew. A handle on no element is legal everywhere; nothing is found in it or added to it.
class TQXMLElement {
  public:
    /// A handle on no element.
    TQXMLElement() = default;

    /// Whether there is an element.
    bool exists() const { return _node != nullptr; }

    /// Whether there is an element.
    explicit operator bool() const { return exists(); }

    /// Whether two handles are on the same element.
    /// @param other the other handle
    bool operator==(const TQXMLElement& other) const = default;

  private:
    friend class TQXMLTree;
    explicit TQXMLElement(void* node) : _node(node) {}

    void* _node = nullptr; // the tree's node, owned by the document
};
