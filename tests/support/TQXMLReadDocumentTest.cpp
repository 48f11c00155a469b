#include "support/TQXMLReadDocument.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace {

/// A document that must be readable.
class Document : public TQXMLReadDocument {
  public:
    explicit Document(std::string_view text) {
        TQString error;
        EXPECT_TRUE(readFromText(text, error)) << error.utf8();
        EXPECT_TRUE(error.isEmpty());
    }
};

/// The reason why a text cannot be read; empty when it can.
std::string faultOf(std::string_view text) {
    TQXMLReadDocument document;
    TQString error;
    const bool isRead = document.readFromText(text, error);
    EXPECT_EQ(isRead, error.isEmpty());
    EXPECT_EQ(isRead, document.rootElement().exists());
    return error.utf8();
}

TEST(TQXMLReadDocument, ThereIsNoRootBeforeReading) {
    const TQXMLReadDocument document;
    EXPECT_FALSE(document.rootElement().exists());
    EXPECT_EQ(document.getName(document.rootElement()).utf8(), "");
}

TEST(TQXMLReadDocument, ChildrenAreFoundByName) {
    const Document document("<?xml version=\"1.0\"?><!-- c --><root>text<a>1</a><b/><a>2</a></root>");
    const TQXMLElement root = document.rootElement();
    EXPECT_EQ(document.getName(root).utf8(), "root");

    bool foundMoreThanOnce = true;
    const TQXMLElement b = document.getChildByName("b", root, foundMoreThanOnce);
    EXPECT_TRUE(b.exists());
    EXPECT_FALSE(foundMoreThanOnce);
    EXPECT_EQ(document.getName(b).utf8(), "b");

    const TQXMLElement a = document.getChildByName("a", root, foundMoreThanOnce);
    EXPECT_TRUE(foundMoreThanOnce);
    EXPECT_EQ(document.getText(a).utf8(), "1");

    EXPECT_FALSE(document.getChildByName("A", root, foundMoreThanOnce).exists());
    EXPECT_FALSE(foundMoreThanOnce);
    EXPECT_FALSE(document.getChildByName("a", b, foundMoreThanOnce).exists());
    EXPECT_FALSE(document.getChildByName("a", TQXMLElement(), foundMoreThanOnce).exists());
}

TEST(TQXMLReadDocument, TextsHaveAStatus) {
    const Document document("<r><one>x</one><two/><two/><empty/></r>");
    const TQXMLElement root = document.rootElement();
    _tqxmlgetstatus status = TQXMLMalformed;
    EXPECT_EQ(document.getTextFromChildByName("one", root, status).utf8(), "x");
    EXPECT_EQ(status, TQXMLFound);
    EXPECT_EQ(document.getTextFromChildByName("two", root, status).utf8(), "");
    EXPECT_EQ(status, TQXMLDuplicated);
    EXPECT_EQ(document.getTextFromChildByName("three", root, status).utf8(), "");
    EXPECT_EQ(status, TQXMLMissing);
    EXPECT_EQ(document.getTextFromChildByName("empty", root, status).utf8(), "");
    EXPECT_EQ(status, TQXMLFound);
}

TEST(TQXMLReadDocument, TheTextOfAnElementIsItsOwn) {
    const Document document("<r>a<b>no</b><![CDATA[<c>]]><!-- no -->&lt;&#233;&#x20AC;</r>");
    EXPECT_EQ(document.getText(document.rootElement()).utf8(), "a<c><\xC3\xA9\xE2\x82\xAC");
}

TEST(TQXMLReadDocument, DoublesHaveAStatus) {
    const Document document("<r><a> 2.5e1 \n</a><b>x</b><c>1</c><c>2</c><d>1,5</d><e/></r>");
    const TQXMLElement root = document.rootElement();
    _tqxmlgetstatus status = TQXMLMissing;
    EXPECT_EQ(document.getDoubleFromChildByName("a", root, status), 25.0);
    EXPECT_EQ(status, TQXMLFound);
    for (const char* name : {"b", "d", "e"}) {
        EXPECT_EQ(document.getDoubleFromChildByName(name, root, status), 0.0);
        EXPECT_EQ(status, TQXMLMalformed);
    }
    EXPECT_EQ(document.getDoubleFromChildByName("c", root, status), 0.0);
    EXPECT_EQ(status, TQXMLDuplicated);
    EXPECT_EQ(document.getDoubleFromChildByName("f", root, status), 0.0);
    EXPECT_EQ(status, TQXMLMissing);
}

TEST(TQXMLReadDocument, LongsAreWholeIntegersOf32Bits) {
    bool ok = false;
    const auto longOf = [&](const std::string& text) {
        const Document document("<r>" + text + "</r>");
        return document.getLong(document.rootElement(), ok);
    };
    const auto isLong = [&](const std::string& text) {
        longOf(text);
        return ok;
    };
    EXPECT_EQ(longOf(" 2056\n"), 2056);
    EXPECT_TRUE(ok);
    EXPECT_EQ(longOf("+7"), 7);
    EXPECT_TRUE(ok);
    EXPECT_EQ(longOf("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_TRUE(ok);
    EXPECT_EQ(longOf("2147483648"), 0);
    EXPECT_FALSE(ok);
    for (const char* text : {"", "x", "12x", "1.5", "+-1", "1 2", "0x10"}) {
        EXPECT_FALSE(isLong(text)) << text;
    }

    const TQXMLReadDocument empty;
    EXPECT_EQ(empty.getLong(TQXMLElement(), ok), 0);
    EXPECT_FALSE(ok);
}

TEST(TQXMLReadDocument, BoolAttributesAreTrueOrPresentAtLeast) {
    const Document document("<r a=\"true\" b=\"1\" c=\"false\" d=\"0\" e=\"nonsense\"/>");
    const TQXMLElement root = document.rootElement();
    for (const char* name : {"a", "b"}) {
        bool found = false;
        EXPECT_TRUE(document.getBoolAttribute(root, name, found));
        EXPECT_TRUE(found);
    }
    for (const char* name : {"c", "d", "e"}) {
        bool found = false;
        EXPECT_FALSE(document.getBoolAttribute(root, name, found));
        EXPECT_TRUE(found);
    }
    bool found = true;
    EXPECT_FALSE(document.getBoolAttribute(root, "f", found));
    EXPECT_FALSE(found);
    found = true;
    EXPECT_FALSE(document.getBoolAttribute(TQXMLElement(), "a", found));
    EXPECT_FALSE(found);
}

TEST(TQXMLReadDocument, WhatIsNotWellFormedHasAReason) {
    for (const char* text : {"", "   ", "text", "<a>", "<a></b>", "<a", "<a><b></a></b>", "<a x=1/>",
                             "<!-- only -->", "<a/><b/>", "</a>"}) {
        EXPECT_NE(faultOf(text), "") << text;
    }
    EXPECT_EQ(faultOf("<a/><!-- after -->"), "");
}

TEST(TQXMLReadDocument, WhatTheParserForgivesIsNotWellFormedEither) {
    for (const char* text : {"text<a/>",
                             "<a/>text",
                             "<a/>&#32;",
                             "<![CDATA[x]]><a/>",
                             "<a x=\"1\" x=\"2\"/>",
                             "<a>&unknown;</a>",
                             "<a x=\"&unknown;\"/>",
                             "<a>R&D</a>",
                             "<a>&amp</a>",
                             "<a>&;</a>",
                             "<a>&#;</a>",
                             "<a>&#x;</a>",
                             "<a>&#0;</a>",
                             "<a>&#x0;</a>",
                             "<a x=\"&#0;\"/>",
                             "<a>&#1;</a>",
                             "<a>&#xD800;</a>",
                             "<a>&#x110000;</a>",
                             "<a>&#xFFFE;</a>",
                             "<a>&#-1;</a>",
                             "<a>&#99999999999;</a>",
                             "<a>&#38</a>",
                             "<a x=\"<\"/>",
                             "<a>\x01</a>",
                             "<a>\xC3</a>",
                             "<a>\xEF\xBF\xBF</a>",
                             "<a x=\"\x02\"/>",
                             "<a><!-- \x01 --></a>",
                             "<a>x]]>y</a>",
                             "<a>]]></a>",
                             "<a><b/>]]]>&amp;</a>",
                             "<a><!-- x -- y --></a>",
                             "<!-- x ---><a/>",
                             " <?xml version=\"1.0\"?><a/>",
                             "\xEF\xBB\xBF\n<?xml version=\"1.0\"?><a/>",
                             "<!-- --><?xml version=\"1.0\"?><a/>",
                             "<?xml version=\"1.0\"?><?xml version=\"1.0\"?><a/>",
                             "<a><?xml version=\"1.0\"?></a>",
                             "<a/><?xml version=\"1.0\"?>",
                             "<a><?XmL x?></a>",
                             "<?xml encoding=\"UTF-8\"?><a/>",
                             "<?xml encoding=\"UTF-8\" version=\"1.0\"?><a/>",
                             "<?xml?><a/>",
                             "<?XML version=\"1.0\"?><a/>",
                             "<?xml version=\"1.\"?><a/>",
                             "<?xml version=\"1.0\" standalone=\"perhaps\"?><a/>",
                             "<?xml version=\"1.0\" standalone=\"no\" encoding=\"UTF-8\"?><a/>",
                             "<a/><!DOCTYPE a>",
                             "<!DOCTYPE a><!DOCTYPE a><a/>",
                             "<a \xC3\x97=\"1\"/>",
                             "<\xC3\x97/>"}) {
        EXPECT_NE(faultOf(text), "") << text;
    }
    EXPECT_NE(faultOf(std::string_view("<a/>\0<b", 7)), "");
    EXPECT_NE(faultOf(std::string_view("<a>x\0y</a>", 10)), "");
}

TEST(TQXMLReadDocument, EveryKnownReferenceIsRead) {
    const Document document("\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE a>\n<?app &free; text?>\n"
                            "<a x=\"&lt;&quot;&#9;\">&amp;&lt;&gt;&apos;&quot;&#65;&#x42;&#xe9;&#128506;&#xD;"
                            "<![CDATA[&unknown;<]]></a>\n<!-- &free; -->\n");
    EXPECT_EQ(document.getText(document.rootElement()).utf8(),
              "&<>'\"AB\xC3\xA9\xF0\x9F\x97\xBA\r&unknown;<");
}

TEST(TQXMLReadDocument, WhatOnlyLooksIllFormedIsRead) {
    const Document document("<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<!-- - -> ]]> <?xml -->"
                            "<?xml-stylesheet href=\"a\"?><a x=\"]]> --\">]] >]>]]&gt;--<!----><?b -- ]]>?>"
                            "<![CDATA[-- <?xml]]></a>");
    EXPECT_EQ(document.getText(document.rootElement()).utf8(), "]] >]>]]>---- <?xml");
}

TEST(TQXMLReadDocument, AFailedReadForgetsTheDocumentBefore) {
    Document document("<a/>");
    TQString error;
    EXPECT_FALSE(document.readFromText("<a>", error));
    EXPECT_FALSE(document.rootElement().exists());
    EXPECT_FALSE(error.isEmpty());
}

TEST(TQXMLReadDocument, NoEntityIsExpandedAndNoFileIsRead) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("secret.txt"), "secret");
    const std::string text = "<!DOCTYPE r [<!ENTITY own \"value\"><!ENTITY file SYSTEM \"file://" +
                             directory.file("secret.txt").utf8() + "\">]><r>&own;&file;</r>";
    EXPECT_EQ(faultOf(text), "An unknown entity");
}

TEST(TQXMLReadDocument, OtherEncodingsAreRead) {
    const Document latin("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r>Z\xFCrich</r>");
    EXPECT_EQ(latin.getText(latin.rootElement()).utf8(), "Z\xC3\xBCrich");
    const Document wide(std::string_view("\xFF\xFE<\0r\0>\0\xE9\0<\0/\0r\0>\0", 18));
    EXPECT_EQ(wide.getText(wide.rootElement()).utf8(), "\xC3\xA9");
    const Document marked("\xEF\xBB\xBF<r>x</r>");
    EXPECT_EQ(marked.getText(marked.rootElement()).utf8(), "x");
}

TEST(TQXMLReadDocument, DeepNestingEndsCleanly) {
    constexpr int depth = 1000000;
    std::string text;
    for (int level = 0; level < depth; ++level) {
        text += "<a>";
    }
    EXPECT_NE(faultOf(text), "");
    for (int level = 0; level < depth; ++level) {
        text += "</a>";
    }
    EXPECT_EQ(faultOf(text), "");
}

TEST(TQXMLReadDocument, TooLargeATextIsRefused) {
    const std::string text(TQXMLReadDocument::maximumSize + 1, ' ');
    EXPECT_EQ(faultOf(text), "The document is too large");
}

TEST(TQXMLReadDocument, FilesAreRead) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("a.xml"), "<r>x</r>");
    TQXMLReadDocument document;
    TQString error;
    EXPECT_TRUE(document.readFromFile(directory.file("a.xml"), error));
    EXPECT_EQ(document.getText(document.rootElement()).utf8(), "x");

    EXPECT_FALSE(document.readFromFile(directory.file("missing.xml"), error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(document.rootElement().exists());
    error = "";
    EXPECT_FALSE(document.readFromFile(directory.directory(), error));
    EXPECT_FALSE(error.isEmpty());
}

#ifdef __linux__
TEST(TQXMLReadDocument, AReadErrorIsNoEmptyFile) {
    // Nothing is mapped at the beginning of a process's memory, so that reading there fails.
    TQXMLReadDocument document;
    TQString error;
    EXPECT_FALSE(document.readFromFile("/proc/self/mem", error));
    EXPECT_EQ(error.utf8(), "The file cannot be read");
}

TEST(TQXMLReadDocument, AnEndlessFileIsRefused) {
    TQXMLReadDocument document;
    TQString error;
    EXPECT_FALSE(document.readFromFile("/dev/zero", error));
    EXPECT_EQ(error.utf8(), "The document is too large");
}
#endif

} // namespace
