#include "support/TQXMLWriteDocument.h"

#include "support/TQNumberText.h"
#include "support/TQReplacementFile.h"
#include "support/TQXMLTree.h"

#include <string>

namespace {

TQXMLElement appendChildWithText(const TQString& name, const std::string& text, const TQXMLElement& parent) {
    const TQXMLElement child = TQXMLTree::appendChild(parent, name.utf8());
    TQXMLTree::setText(child, text);
    return child;
}

} // namespace

TQXMLWriteDocument::TQXMLWriteDocument(const TQString& rootName) : _tree(std::make_unique<TQXMLTree>()) {
    _tree->createRoot(rootName.utf8());
}

TQXMLWriteDocument::~TQXMLWriteDocument() = default;

TQXMLElement TQXMLWriteDocument::rootElement() const { return _tree->root(); }

TQXMLElement TQXMLWriteDocument::createChildAndAppendTo(const TQString& name, const TQXMLElement& parent) {
    return TQXMLTree::appendChild(parent, name.utf8());
}

TQXMLElement TQXMLWriteDocument::createChildWithTextAndAppendTo(const TQString& name, const TQString& value,
                                                                const TQXMLElement& parent) {
    return appendChildWithText(name, value.utf8(), parent);
}

TQXMLElement TQXMLWriteDocument::createChildWithDoubleAndAppendTo(const TQString& name, double value,
                                                                  const TQXMLElement& parent) {
    return appendChildWithText(name, tq_shortestText(value), parent);
}

TQXMLElement TQXMLWriteDocument::createChildWithLongAndAppendTo(const TQString& name, std::int32_t value,
                                                                const TQXMLElement& parent) {
    return appendChildWithText(name, std::to_string(value), parent);
}

void TQXMLWriteDocument::appendBoolAttributeTo(const TQString& name, bool value,
                                               const TQXMLElement& element) {
    TQXMLTree::setAttribute(element, name.utf8(), value ? "true" : "false");
}

TQString TQXMLWriteDocument::toString() const { return TQString(_tree->toString().c_str()); }

int TQXMLWriteDocument::writeToFile(const TQString& path) const {
    TQReplacementFile file;
    return rootElement().exists() && file.open(path) && file.write(_tree->toString()) && file.commit() ? 0
                                                                                                       : 1;
}
