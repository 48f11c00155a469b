#include "support/TQXMLWriteDocument.h"

#include "support/TQXMLReadDocument.h"
#include "testing/CapturedMessages.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(TQXMLWriteDocument, ANewDocumentIsAnEmptyRoot) {
    const TQXMLWriteDocument document("Georef");
    EXPECT_EQ(document.toString().utf8(), declaration + "<Georef />\n");
}

TEST(TQXMLWriteDocument, ChildrenStandInTheOrderInWhichTheyWereMade) {
    TQXMLWriteDocument document("Georef");
    const TQXMLElement root = document.rootElement();
    const TQXMLElement id = document.createChildWithLongAndAppendTo("ProjectionID", -2056, root);
    document.appendBoolAttributeTo("usingDatum", true, id);
    document.appendBoolAttributeTo("other", false, id);
    document.createChildWithTextAndAppendTo("Unit", "m", root);
    document.createChildWithDoubleAndAppendTo("UnitScale", 0.1, root);
    const TQXMLElement group = document.createChildAndAppendTo("Group", root);
    document.createChildWithTextAndAppendTo("Inner", "x", group);
    EXPECT_EQ(document.toString().utf8(), declaration + "<Georef>\n"
                                                        "  <ProjectionID usingDatum=\"true\" other=\"false\">"
                                                        "-2056</ProjectionID>\n"
                                                        "  <Unit>m</Unit>\n"
                                                        "  <UnitScale>0.1</UnitScale>\n"
                                                        "  <Group>\n"
                                                        "    <Inner>x</Inner>\n"
                                                        "  </Group>\n"
                                                        "</Georef>\n");
}

TEST(TQXMLWriteDocument, AnAttributeOfTheSameNameIsReplaced) {
    TQXMLWriteDocument document("a");
    document.appendBoolAttributeTo("flag", true, document.rootElement());
    document.appendBoolAttributeTo("flag", false, document.rootElement());
    EXPECT_EQ(document.toString().utf8(), declaration + "<a flag=\"false\" />\n");
}

TEST(TQXMLWriteDocument, NamesThatXmlDoesNotAllowAreReportedAndNotWritten) {
    const CapturedMessages messages;
    for (const char* name : {"", "2nd", "a b", "a<b", "a&b", "-a", "a=\"1\"", "\xC3\x97"}) {
        TQXMLWriteDocument document("a");
        const TQXMLElement child = document.createChildWithTextAndAppendTo(name, "x", document.rootElement());
        EXPECT_FALSE(child.exists()) << name;
        document.createChildWithTextAndAppendTo("inside", "x", child);
        document.appendBoolAttributeTo(name, true, document.rootElement());
        EXPECT_EQ(document.toString().utf8(), declaration + "<a />\n") << name;
        EXPECT_FALSE(TQXMLWriteDocument(name).rootElement().exists()) << name;
    }
    EXPECT_EQ(messages.lines().size(), 3U * 8U);

    const TemporaryDirectory directory;
    EXPECT_EQ(TQXMLWriteDocument("2nd").writeToFile(directory.file("a.xml")), 1);
    EXPECT_TRUE(directory.entries().empty());
}

TEST(TQXMLWriteDocument, NamesThatXmlAllowsReadBack) {
    for (const char* name : {"a", "_", "a-b.c:2", "\xC3\x89l\xC3\xA9ment", "\xE5\x9C\xB0\xE5\x9B\xB3"}) {
        TQXMLWriteDocument document(name);
        document.appendBoolAttributeTo(name, true, document.rootElement());
        TQXMLReadDocument read;
        TQString error;
        EXPECT_TRUE(read.readFromText(document.toString().utf8(), error)) << error.utf8();
        EXPECT_EQ(read.getName(read.rootElement()).utf8(), name);
    }
}

TEST(TQXMLWriteDocument, NothingIsAddedToNoElement) {
    TQXMLWriteDocument document("a");
    EXPECT_FALSE(document.createChildWithTextAndAppendTo("b", "x", TQXMLElement()).exists());
    document.appendBoolAttributeTo("flag", true, TQXMLElement());
    EXPECT_EQ(document.toString().utf8(), declaration + "<a />\n");
}

/// The text of an element after it was written and read.
std::string textReadBack(const TQString& text) {
    TQXMLWriteDocument document("a");
    document.createChildWithTextAndAppendTo("b", text, document.rootElement());
    TQXMLReadDocument read;
    TQString error;
    EXPECT_TRUE(read.readFromText(document.toString().utf8(), error)) << error.utf8();
    _tqxmlgetstatus status = TQXMLMissing;
    const TQString result = read.getTextFromChildByName("b", read.rootElement(), status);
    EXPECT_EQ(status, TQXMLFound);
    return result.utf8();
}

TEST(TQXMLWriteDocument, EveryTextThatXmlHoldsReadsBack) {
    for (const char* text : {"", " ", "  two  blanks ", "<&>\"'", "]]>", "a\nb\tc", "a\r\nb\r", "<!-- no -->",
                             "Z\xC3\xBCrich \xE2\x82\xAC \xF0\x9F\x97\xBA", "&amp;"}) {
        EXPECT_EQ(textReadBack(text), text);
    }
}

TEST(TQXMLWriteDocument, CharactersThatXmlCannotHoldAreReplaced) {
    EXPECT_EQ(textReadBack("a\x01"
                           "b\x1F"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
    EXPECT_EQ(textReadBack("\xEF\xBF\xBF"
                           "c"),
              "\xEF\xBF\xBD"
              "c");
    EXPECT_EQ(textReadBack(TQString(std::string_view("a\0b", 3), TQEncodingUTF8)), "a\xEF\xBF\xBD"
                                                                                   "b");
}

TEST(TQXMLWriteDocument, EveryDoubleReadsBack) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.0, 0.1, -1.0 / 3, 1e300, 2.5, Limits::denorm_min(), Limits::max(), 6378137.0,
                               Limits::infinity()}) {
        TQXMLWriteDocument document("a");
        document.createChildWithDoubleAndAppendTo("b", value, document.rootElement());
        TQXMLReadDocument read;
        TQString error;
        ASSERT_TRUE(read.readFromText(document.toString().utf8(), error));
        _tqxmlgetstatus status = TQXMLMissing;
        EXPECT_EQ(read.getDoubleFromChildByName("b", read.rootElement(), status), value);
        EXPECT_EQ(status, TQXMLFound);
    }
}

TEST(TQXMLWriteDocument, AFileHoldsTheText) {
    const TemporaryDirectory directory;
    TQXMLWriteDocument document("a");
    document.createChildWithTextAndAppendTo("b", "Z\xC3\xBCrich", document.rootElement());
    EXPECT_EQ(document.writeToFile(directory.file("a.xml")), 0);
    EXPECT_EQ(readBytes(directory.file("a.xml")), document.toString().utf8());
    EXPECT_EQ(document.writeToFile(directory.file("missing/a.xml")), 1);
    EXPECT_EQ(document.writeToFile(directory.directory()), 1);
}

} // namespace
