#include "support/TQString.h"

#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "testing/CommaLocale.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

constexpr const char* degreesInDefault = "degr\xDDs";
constexpr const char* degreesInUTF8 = "degr\xC3\xA9s";
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

std::string bytesOf(const TQString& text) { return text.charBuffer(); }

std::u32string charactersOf(const TQString& text) {
    std::u32string characters;
    for (int i = 0; i < text.length(); ++i) {
        characters += text.characterAt(i);
    }
    return characters;
}

TQString textOf(const std::u32string& characters) {
    TQString text;
    for (const char32_t code : characters) {
        text.append(code);
    }
    return text;
}

std::vector<std::string> tokensOf(const char* text, const char* separators) {
    const auto array = TQString(text).newStringArrayFromTokens(separators);
    std::vector<std::string> tokens;
    for (const TQString* token : array->objectArray()) {
        tokens.push_back(token->utf8());
    }
    return tokens;
}

std::string archived(const TQString* text) {
    TQWriteMemStream stream;
    TQString::archive(text, &stream);
    return {stream.getMemory().begin(), stream.getMemory().end()};
}

} // namespace

TEST(TQString, IsEmptyWhenMadeOfNothing) {
    for (const TQString& text :
         {TQString(), TQString(""), TQString(static_cast<const char*>(nullptr)),
          TQString(static_cast<const char16_t*>(nullptr)), TQString(u""), TQString("abc", 0),
          TQString("abc", -1), TQString(nullptr, 3), TQString(""sv, TQEncodingUTF8)}) {
        EXPECT_TRUE(text.isEmpty());
        EXPECT_EQ(text.length(), 0);
        EXPECT_STREQ(text.charBuffer(), "");
        EXPECT_EQ(text.wideBuffer()[0], u'\0');
        EXPECT_EQ(text.characterAt(0), 0U);
        EXPECT_EQ(text, "");
    }
}

TEST(TQString, ACStringIsUTF8OnlyWhenItIsValidAndNotAscii) {
    EXPECT_EQ(TQString("plain").encoding(), TQEncodingDefault);
    EXPECT_EQ(TQString(degreesInUTF8).encoding(), TQEncodingUTF8);
    EXPECT_EQ(TQString(degreesInDefault).encoding(), TQEncodingDefault);
    EXPECT_EQ(TQString("\xC3\xA9\xDD").encoding(), TQEncodingDefault);
    EXPECT_EQ(TQString("\xC3\xA9\xDD").length(), 3);
}

TEST(TQString, AUnitLabelOfSixBytesComesBackAsThoseSixBytes) {
    const TQString label(degreesInDefault);
    EXPECT_EQ(bytesOf(label), degreesInDefault);
    EXPECT_EQ(bytesOf(label).size(), 6U);
    EXPECT_EQ(label.length(), 6);
    EXPECT_EQ(label.characterAt(4), U'\u00E9');
    EXPECT_EQ(label, TQString(degreesInUTF8));
    EXPECT_EQ(label, degreesInUTF8);
    EXPECT_EQ(label, u"degr\u00E9s");
    EXPECT_EQ(label.utf8(), degreesInUTF8);
}

TEST(TQString, TakesNoMoreBytesThanTold) {
    EXPECT_EQ(TQString("abcdef", 3), "abc");
    EXPECT_EQ(TQString("abc", 100), "abc");
    EXPECT_EQ(TQString(degreesInUTF8, 6), "degr\u00E9");
    EXPECT_EQ(TQString(degreesInUTF8, 5).encoding(), TQEncodingDefault);
}

// Each buffer is as large as its bytes, so that a tool that watches the memory sees another one read.
TEST(TQString, BytesWithoutEndMarkAreReadToTheirEnd) {
    const auto textOf = [](const std::vector<char>& bytes) {
        return TQString(std::string_view(bytes.data(), bytes.size()));
    };
    EXPECT_EQ(textOf({}), "");
    EXPECT_EQ(textOf({'a', 'b', 'c'}), "abc");
    EXPECT_EQ(textOf({'\xC3', '\xA9'}).utf8(), "\xC3\xA9");
    EXPECT_EQ(textOf({'\xC3', '\xA9'}).encoding(), TQEncodingUTF8);
    EXPECT_EQ(textOf({'\xDD'}).utf8(), "\xC3\xA9");
    EXPECT_EQ(textOf({'d', 'e', 'g', 'r', '\xDD'}), "degr\u00E9");
    EXPECT_EQ(textOf({'\xC3'}).encoding(), TQEncodingDefault);
    EXPECT_EQ(textOf({'a', '\0', 'b'}).length(), 3);
}

TEST(TQString, BytesMarkedAsUTF8ThatAreNotAreKeptAsDefault) {
    const TQString text("degr\xDDs"sv, TQEncodingUTF8);
    EXPECT_EQ(text.encoding(), TQEncodingDefault);
    EXPECT_EQ(bytesOf(text), degreesInDefault);
    EXPECT_EQ(TQString("degr\xC3\xA9s"sv, TQEncodingUTF8).encoding(), TQEncodingUTF8);
    EXPECT_EQ(TQString("plain"sv, TQEncodingUTF8).encoding(), TQEncodingUTF8);
    EXPECT_EQ(TQString("\xC3\xA9"sv, TQEncodingDefault).length(), 2);
}

TEST(TQString, KeepsZerosInsideBytesOfKnownEncoding) {
    const TQString text("a\0b"sv, TQEncodingUTF8);
    EXPECT_EQ(text.length(), 3);
    EXPECT_EQ(text.characterAt(1), 0U);
    EXPECT_EQ(text.characterAt(2), U'b');
    EXPECT_NE(text, "a");
}

TEST(TQString, CopiesAndMovesKeepTextAndEncoding) {
    TQString original(degreesInUTF8);
    original.wideBuffer();
    const TQString copy = original;
    TQString assigned("x");
    assigned = copy;
    original.append("!");
    EXPECT_EQ(copy, degreesInUTF8);
    EXPECT_EQ(assigned, degreesInUTF8);
    EXPECT_EQ(copy.encoding(), TQEncodingUTF8);
    const TQString moved = std::move(original);
    EXPECT_EQ(moved, "degr\u00E9s!");
    assigned = TQString();
    EXPECT_TRUE(assigned.isEmpty());
}

TEST(TQString, SetReplacesTheText) {
    TQString text("old");
    text.set("new");
    EXPECT_EQ(text, "new");
    text.set(-2147483647 - 1);
    EXPECT_EQ(text, "-2147483648");
    text.set(TQString(degreesInUTF8));
    EXPECT_EQ(text, degreesInUTF8);
    text.set(text);
    EXPECT_EQ(text, degreesInUTF8);
    text.set(text.charBuffer() + 4);
    EXPECT_EQ(text, "\u00E9s");
    text.set(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.isEmpty());
}

TEST(TQString, FormatsLikePrintf) {
    TQString text;
    text.setWithFormat("%s v%d", "TQProjection", 2);
    EXPECT_EQ(text, "TQProjection v2");
    text.appendWithFormat(" %.13g|%s", 0.1, TQString(degreesInDefault));
    EXPECT_EQ(text, "TQProjection v2 0.1|degr\u00E9s");
    text.setWithFormat("<%s>", text);
    EXPECT_EQ(text, "<TQProjection v2 0.1|degr\u00E9s>");
    text.appendWithFormat("%s", text);
    EXPECT_EQ(text.length(), 2 * 28);
    EXPECT_EQ(*TQString::newWithFormat("%04d", 7), "0007");
    text.setWithFormat(nullptr);
    EXPECT_TRUE(text.isEmpty());
}

TEST(TQString, FormattingIgnoresTheLocale) {
    const CommaLocale commaLocale;
    TQString text;
    text.setWithFormat("%4.10f %d", 1234567.5, 1234567);
    EXPECT_EQ(text, "1234567.5000000000 1234567");
    EXPECT_EQ(TQString("1234.5").convertToDouble(), 1234.5);
    text.set(1234567);
    EXPECT_EQ(text, "1234567");
}

TEST(TQString, AppendsTextsAndCharacters) {
    TQString text("a");
    text.append(TQString("b"));
    text.append("c");
    text.append(U'd');
    text.append('e');
    text.append(static_cast<const char*>(nullptr));
    EXPECT_EQ(text, "abcde");
    text.append(text);
    EXPECT_EQ(text, "abcdeabcde");
    text.append(text.charBuffer() + 8);
    EXPECT_EQ(text, "abcdeabcdede");
}

TEST(TQString, JoinedTextsKeepTheirCharactersWhateverTheirEncodings) {
    TQString inDefault(degreesInDefault);
    inDefault.append(TQString(degreesInDefault));
    EXPECT_EQ(bytesOf(inDefault), "degr\xDDsdegr\xDDs");
    inDefault.append("\u20AC");
    EXPECT_EQ(inDefault.encoding(), TQEncodingUTF8);
    EXPECT_EQ(inDefault, "degr\u00E9sdegr\u00E9s\u20AC");

    TQString inUTF8("\u20AC");
    inUTF8.append(TQString(degreesInDefault));
    EXPECT_EQ(inUTF8, "\u20ACdegr\u00E9s");
    EXPECT_EQ(inUTF8.encoding(), TQEncodingUTF8);

    TQString ascii("to ");
    ascii.append(degreesInDefault);
    EXPECT_EQ(bytesOf(ascii), "to degr\xDDs");
}

TEST(TQString, AnAppendedCharacterStaysInTheEncodingWhenItExistsThere) {
    TQString text("degr");
    text.append(U'\u00E9');
    EXPECT_EQ(bytesOf(text), "degr\xDD");
    text.append(U'\u20AC');
    EXPECT_EQ(text.encoding(), TQEncodingUTF8);
    text.append(U'\u00E9');
    EXPECT_EQ(bytesOf(text), "degr\u00E9\u20AC\u00E9");
    text.append(static_cast<char32_t>(0xD800));
    text.append(static_cast<char32_t>(0x110000));
    EXPECT_EQ(text, "degr\u00E9\u20AC\u00E9\uFFFD\uFFFD");
}

TEST(TQString, InsertsInFrontOfACharacter) {
    TQString text("d\u00E9s");
    text.insertAtIndex("egr", 1);
    EXPECT_EQ(text, "degr\u00E9s");
    text.insertAtIndex(TQString("!"), 6);
    text.insertAtIndex(TQString("?"), 100);
    text.insertAtIndex(TQString(">"), -5);
    EXPECT_EQ(text, ">degr\u00E9s!?");
    text.insertAtIndex(text, 1);
    EXPECT_EQ(text, ">>degr\u00E9s!?degr\u00E9s!?");
    TQString inDefault(degreesInDefault);
    inDefault.insertAtIndex("\u20AC", 5);
    EXPECT_EQ(inDefault, "degr\u00E9\u20ACs");
}

TEST(TQString, ReplacesCharactersAndTexts) {
    TQString text("a b c");
    text.replace(U' ', U'_');
    EXPECT_EQ(text, "a_b_c");
    text.replace(U'_', U'\u20AC');
    EXPECT_EQ(text, "a\u20ACb\u20ACc");
    text.replace("\u20AC", "");
    EXPECT_EQ(text, "abc");
    text.replace("b", "bbb");
    EXPECT_EQ(text, "abbbc");
    text.replace("bb", "b");
    EXPECT_EQ(text, "abbc");
    text.replace("", "x");
    EXPECT_EQ(text, "abbc");
    text.replace("zz", "\u20AC");
    EXPECT_EQ(text, "abbc");
    EXPECT_EQ(text.encoding(), TQEncodingUTF8);
    text.replace(text, "whole");
    EXPECT_EQ(text, "whole");
    text.replace("l", text);
    EXPECT_EQ(text, "whowholee");

    TQString inDefault(degreesInDefault);
    inDefault.replace(TQString("\u00E9"), "e");
    EXPECT_EQ(bytesOf(inDefault), "degres");
    inDefault.set(degreesInDefault);
    inDefault.replace(U'\u20AC', U'x');
    EXPECT_EQ(bytesOf(inDefault), degreesInDefault);
    inDefault.replace(U'\u00E9', U'\u20AC');
    EXPECT_EQ(inDefault, "degr\u20ACs");
}

TEST(TQString, StripRemovesEveryOccurrence) {
    TQString text(" a  b ");
    text.strip(U' ');
    EXPECT_EQ(text, "ab");
    text.set(degreesInDefault);
    text.strip(U'\u00E9');
    EXPECT_EQ(text, "degrs");
    text.set("\r\r");
    text.strip(U'\r');
    EXPECT_TRUE(text.isEmpty());
    text.strip(U'x');
    EXPECT_TRUE(text.isEmpty());
}

TEST(TQString, CutKeepsTheFirstCharacters) {
    TQString text(degreesInUTF8);
    text.cutAtIndex(100);
    EXPECT_EQ(text, degreesInUTF8);
    text.cutAtIndex(5);
    EXPECT_EQ(text, "degr\u00E9");
    text.cutAtIndex(0);
    EXPECT_TRUE(text.isEmpty());
    text.set("abc");
    text.cutAtIndex(-1);
    EXPECT_TRUE(text.isEmpty());
}

TEST(TQString, EmptyRemovesTheTextAndItsEncoding) {
    TQString text(degreesInUTF8);
    text.empty();
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.encoding(), TQEncodingDefault);
}

TEST(TQString, IndexesCountCharactersInBothEncodings) {
    for (const char* bytes : {degreesInDefault, degreesInUTF8}) {
        const TQString text(bytes);
        EXPECT_EQ(text.length(), 6);
        EXPECT_EQ(text.characterAt(4), U'\u00E9');
        EXPECT_EQ(text.characterAt(5), U's');
        EXPECT_EQ(text.characterAt(6), 0U);
        EXPECT_EQ(text.characterAt(-1), 0U);
        EXPECT_EQ(text.characterAt(largest), 0U);
        EXPECT_EQ(text.indexOf(U's'), 5);
        EXPECT_EQ(text.indexOf(U'\u00E9'), 4);
        EXPECT_EQ(text.indexOf(TQString("\xDDs")), 4);
        EXPECT_EQ(text.indexOf(TQString("\u00E9s")), 4);
        EXPECT_EQ(text.reverseIndexOf(U'\u00E9'), 4);
        EXPECT_EQ(text.substring(4, 4), "\u00E9");
    }
}

TEST(TQString, FindsTheFirstOccurrenceFromAnIndexOn) {
    const TQString text("abcabc");
    EXPECT_EQ(text.indexOf(U'b'), 1);
    EXPECT_EQ(text.indexOf(U'b', 1), 1);
    EXPECT_EQ(text.indexOf(U'b', 2), 4);
    EXPECT_EQ(text.indexOf(U'b', 5), -1);
    EXPECT_EQ(text.indexOf(U'b', -7), 1);
    EXPECT_EQ(text.indexOf(U'b', largest), -1);
    EXPECT_EQ(text.indexOf(U'\u20AC'), -1);
    EXPECT_EQ(text.indexOf(TQString("bc"), 2), 4);
    EXPECT_EQ(text.indexOf(TQString("bd")), -1);
    EXPECT_EQ(text.indexOf(TQString(), 3), 3);
    EXPECT_EQ(TQString().indexOf(U'a'), -1);
}

TEST(TQString, FindsTheLastOccurrenceUpToAnIndex) {
    const TQString text("abcabc");
    EXPECT_EQ(text.reverseIndexOf(U'b'), 4);
    EXPECT_EQ(text.reverseIndexOf(U'b', 4), 4);
    EXPECT_EQ(text.reverseIndexOf(U'b', 3), 1);
    EXPECT_EQ(text.reverseIndexOf(U'b', 0), -1);
    EXPECT_EQ(text.reverseIndexOf(U'a', 0), 0);
    EXPECT_EQ(text.reverseIndexOf(U'a', -1), -1);
    EXPECT_EQ(text.reverseIndexOf(U'x'), -1);
    EXPECT_EQ(TQString("a\u00E9b\u00E9").reverseIndexOf(U'\u00E9', 2), 1);
    EXPECT_EQ(TQString().reverseIndexOf(U'x'), -1);
}

TEST(TQString, SubstringBoundsAreInclusive) {
    const TQString text("WGS 84 / UTM zone 31N");
    EXPECT_EQ(text.substring(0, 6), "WGS 84 ");
    EXPECT_EQ(text.substring(4, 4), "8");
    EXPECT_EQ(text.substring(18, 99), "31N");
    EXPECT_EQ(text.substring(18, largest), "31N");
    EXPECT_EQ(text.substring(-3, 2), "WGS");
    EXPECT_EQ(text.substring(3, 2), "");
    EXPECT_EQ(text.substring(5, -9), "");
    EXPECT_EQ(text.substring(50, 60), "");
    EXPECT_EQ(TQString(degreesInDefault).substring(3, 4), "r\u00E9");
    EXPECT_EQ(bytesOf(TQString(degreesInDefault).substring(3, 4)), "r\xDD");
}

TEST(TQString, LeftAndRightSubstringsAreLimitedToTheText) {
    const TQString text(degreesInUTF8);
    EXPECT_EQ(text.leftSubstring(5), "degr\u00E9");
    EXPECT_EQ(text.leftSubstring(99), degreesInUTF8);
    EXPECT_EQ(text.leftSubstring(-1), "");
    EXPECT_EQ(text.rightSubstring(2), "\u00E9s");
    EXPECT_EQ(text.rightSubstring(99), degreesInUTF8);
    EXPECT_EQ(text.rightSubstring(0), "");
    EXPECT_EQ(text.rightSubstring(-1), "");
    EXPECT_EQ(text.rightSubstring(smallest), "");
    EXPECT_EQ(text.leftSubstring(smallest), "");
}

TEST(TQString, EqualityGoesByTheText) {
    EXPECT_TRUE(TQString(degreesInDefault) == TQString(degreesInUTF8));
    EXPECT_TRUE(TQString(degreesInDefault).isEqual(degreesInUTF8));
    EXPECT_TRUE(TQString(degreesInUTF8) == degreesInDefault);
    EXPECT_TRUE(TQString("a") != TQString("b"));
    EXPECT_TRUE(TQString("a") != "A");
    EXPECT_TRUE(TQString("a") != TQString("ab"));
    EXPECT_TRUE(TQString().isEqual(static_cast<const char*>(nullptr)));
    EXPECT_FALSE(TQString("a").isEqual(static_cast<const char*>(nullptr)));
}

TEST(TQString, ComparesFirstCharacters) {
    const TQString text("EPSG:4326");
    EXPECT_TRUE(text.isEqualForLength("EPSG:", 5));
    EXPECT_TRUE(text.isEqualForLength("EPSG:9999", 5));
    EXPECT_FALSE(text.isEqualForLength("EPSG:9999", 6));
    EXPECT_FALSE(text.isEqualForLength("EPS", 5));
    EXPECT_TRUE(text.isEqualForLength("EPSG:4326", 100));
    EXPECT_FALSE(text.isEqualForLength("EPSG:43267", 100));
    EXPECT_TRUE(text.isEqualForLength("x", 0));
    EXPECT_TRUE(text.isEqualForLength("x", -1));
    EXPECT_TRUE(TQString(degreesInDefault).isEqualForLength(degreesInUTF8, 5));
    EXPECT_FALSE(text.isEqualForLength(nullptr, 1));
}

TEST(TQString, SortsByTheCodesOfTheCharacters) {
    const std::vector<TQString> ascending = {"",        "A",      "B",      "a",      "aa",
                                             "a\u00A0", "\u00E9", "\u20AC", "\uFFFD", "\U0001F30D"};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            const TQString* const a = &ascending[i];
            const TQString* const b = &ascending[j];
            const int order = TQString::compareAscendingAsString(&a, &b);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order > 0, i > j);
        }
    }
    const TQString inDefault(degreesInDefault);
    const TQString inUTF8(degreesInUTF8);
    const TQString* const a = &inDefault;
    const TQString* const b = &inUTF8;
    const TQString* const none = nullptr;
    EXPECT_EQ(TQString::compareAscendingAsString(&a, &b), 0);
    EXPECT_LT(TQString::compareAscendingAsString(&none, &a), 0);
    EXPECT_GT(TQString::compareAscendingAsString(&a, &none), 0);
    EXPECT_EQ(TQString::compareAscendingAsString(&none, &none), 0);
}

TEST(TQString, HashIsThePublishedFNV1a) {
    // From the authors' test suite, http://www.isthe.com/chongo/src/fnv/test_fnv.c
    EXPECT_EQ(TQString("").hashValue(), 0x811c9dc5U);
    EXPECT_EQ(TQString("a").hashValue(), 0xe40c292cU);
    EXPECT_EQ(TQString("b").hashValue(), 0xe70c2de5U);
    EXPECT_EQ(TQString("c").hashValue(), 0xe60c2c52U);
    EXPECT_EQ(TQString("fo").hashValue(), 0x6222e842U);
    EXPECT_EQ(TQString("foo").hashValue(), 0xa9f37ed7U);
    EXPECT_EQ(TQString("foob").hashValue(), 0x3f5076efU);
    EXPECT_EQ(TQString("fooba").hashValue(), 0x39aaa18aU);
    EXPECT_EQ(TQString("foobar").hashValue(), 0xbf9cf968U);
}

TEST(TQString, ALengthThatDividesACharacterLeavesItOut) {
    const char* const text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x97\xBA";
    const std::vector<std::string> beginnings = {"",
                                                 "a",
                                                 "a",
                                                 "a\xC3\xA9",
                                                 "a\xC3\xA9",
                                                 "a\xC3\xA9",
                                                 "a\xC3\xA9\xE2\x82\xAC",
                                                 "a\xC3\xA9\xE2\x82\xAC",
                                                 "a\xC3\xA9\xE2\x82\xAC",
                                                 "a\xC3\xA9\xE2\x82\xAC",
                                                 text};
    for (int length = 0; length < static_cast<int>(beginnings.size()); ++length) {
        EXPECT_EQ(TQString(text, length).utf8(), beginnings[static_cast<std::size_t>(length)]) << length;
    }
    EXPECT_EQ(TQString("degr\xDDs", 5).utf8(), "degr\xC3\xA9");
    EXPECT_EQ(TQString("\xDD", 1).utf8(), "\xC3\xA9");
    EXPECT_EQ(TQString("\xA9\xA9\xA9", 2).length(), 2);
}

TEST(TQString, ACharBeyondAsciiIsOneOfTheDefaultEncoding) {
    TQString text("degr");
    text.append('\xDD');
    text.append('s');
    EXPECT_EQ(text.utf8(), "degr\xC3\xA9s");
    TQString inUTF8("\xE2\x82\xAC");
    inUTF8.append('\xDD');
    EXPECT_EQ(inUTF8.utf8(), "\xE2\x82\xAC\xC3\xA9");
    inUTF8.append(0xDD);
    EXPECT_EQ(inUTF8.utf8(), "\xE2\x82\xAC\xC3\xA9\xC3\x9D");
}

TEST(TQString, CharactersAreThoseAtItsIndexes) {
    EXPECT_EQ(TQString().characters(), U"");
    for (const char* bytes : {"abc", "degr\xDDs", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x97\xBA"}) {
        const TQString text(bytes);
        std::u32string expected;
        for (int index = 0; index < text.length(); ++index) {
            expected += text.characterAt(index);
        }
        EXPECT_EQ(text.characters(), expected);
    }
    EXPECT_EQ(TQString("a\xC3\xA9\xF0\x9F\x97\xBA").characters(), U"a\u00E9\U0001F5FA");
}

TEST(TQString, HashesOfStringsAndCStringsAgree) {
    for (const std::string_view bytes :
         {""sv, "a"sv, "foobar"sv, "WGS 84"sv, "degr\xDDs"sv, "degr\xC3\xA9s"sv, "\xFE\xFF"sv,
          "\xE2\x82\xAC"sv, "\xC3\xA9"sv, "\xCB\x86\xE2\x80\x99"sv, "\xC3\x8B\xC2\x86"sv}) {
        for (const _tqencodingtype encoding : {TQEncodingDefault, TQEncodingUTF8}) {
            const TQString text(bytes, encoding);
            EXPECT_EQ(text.hashValue(), TQString::hashValueForCString(text.charBuffer())) << bytes;
            TQString inOtherEncoding(text);
            inOtherEncoding.convertToEncoding(encoding == TQEncodingUTF8 ? TQEncodingDefault
                                                                         : TQEncodingUTF8);
            EXPECT_EQ(text.hashValue(), inOtherEncoding.hashValue()) << bytes;
        }
    }
    EXPECT_EQ(TQString(degreesInDefault).hashValue(), TQString(degreesInUTF8).hashValue());
    EXPECT_EQ(TQString::hashValueForCString(degreesInDefault), TQString::hashValueForCString(degreesInUTF8));
    EXPECT_EQ(TQString::hashValueForCString(nullptr), TQString().hashValue());
}

TEST(TQString, EqualTextsHaveEqualHashesAlsoWithUndefinedBytes) {
    const std::vector<TQString> texts = {TQString("\xFE"), TQString("\xFF"), TQString("\uFFFD")};
    for (const TQString& a : texts) {
        for (const TQString& b : texts) {
            EXPECT_EQ(a, b);
            EXPECT_EQ(a.hashValue(), b.hashValue());
        }
    }
    EXPECT_EQ(bytesOf(texts[0]), "\xFE");
}

TEST(TQString, ConvertsToNumbers) {
    EXPECT_EQ(TQString(" 6378137.5 m").convertToDouble(), 6378137.5);
    EXPECT_EQ(TQString("nothing").convertToDouble(), 0.0);
    EXPECT_EQ(TQString("99999999999").convertToLong(), 2147483647);
    EXPECT_EQ(TQString("-12\r").convertToLong(), -12);
}

TEST(TQString, WideBufferFollowsTheText) {
    TQString text(degreesInDefault);
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"degr\u00E9s");
    EXPECT_EQ(text.wideBuffer(), text.wideBuffer());
    text.append(U'\U0001F30D');
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"degr\u00E9s\U0001F30D");
    text.cutAtIndex(1);
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"d");
    text.insertAtIndex("x", 0);
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"xd");
    text.set(5);
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"5");
    text.empty();
    EXPECT_EQ(std::u16string(text.wideBuffer()), u"");
    EXPECT_EQ(TQString(u"a\u20AC\U0001F30D").utf8(), "a\u20AC\U0001F30D");
}

TEST(TQString, ConvertsBetweenEncodings) {
    TQString text(degreesInDefault);
    EXPECT_TRUE(text.convertToEncoding(TQEncodingUTF8));
    EXPECT_EQ(bytesOf(text), degreesInUTF8);
    EXPECT_EQ(text.encoding(), TQEncodingUTF8);
    EXPECT_TRUE(text.convertToEncoding(TQEncodingDefault));
    EXPECT_EQ(bytesOf(text), degreesInDefault);
    EXPECT_TRUE(text.convertToEncoding(TQEncodingDefault));

    TQString euro("\u20AC\u00E9");
    EXPECT_FALSE(euro.convertToEncoding(TQEncodingDefault));
    EXPECT_EQ(bytesOf(euro), "\u20AC\u00E9");
    EXPECT_EQ(euro.encoding(), TQEncodingUTF8);

    TQString ascii("ascii");
    EXPECT_TRUE(ascii.convertToEncoding(TQEncodingUTF8));
    EXPECT_EQ(ascii.encoding(), TQEncodingUTF8);
    ascii.append(degreesInDefault);
    EXPECT_EQ(bytesOf(ascii), "asciidegr\u00E9s");
}

TEST(TQString, TakesBytesForAnotherEncoding) {
    TQString text("degr\xC3\xA9s"sv, TQEncodingDefault);
    EXPECT_EQ(text.length(), 7);
    EXPECT_TRUE(text.convertFromEncodingToEncoding(TQEncodingUTF8, TQEncodingDefault));
    EXPECT_EQ(bytesOf(text), degreesInDefault);
    EXPECT_FALSE(text.convertFromEncodingToEncoding(TQEncodingUTF8, TQEncodingUTF8));
    EXPECT_EQ(bytesOf(text), degreesInDefault);
    EXPECT_TRUE(text.convertFromEncodingToEncoding(TQEncodingDefault, TQEncodingUTF8));
    EXPECT_EQ(bytesOf(text), degreesInUTF8);
    TQString euro("\u20AC");
    EXPECT_FALSE(euro.convertFromEncodingToEncoding(TQEncodingUTF8, TQEncodingDefault));
    EXPECT_EQ(euro, "\u20AC");
}

TEST(TQString, GivesUnicodeForms) {
    EXPECT_EQ(TQString(degreesInDefault).UTFconvertedString(), degreesInUTF8);
    EXPECT_EQ(TQString(degreesInDefault).UTFconvertedString(TQUTF8), degreesInUTF8);
    EXPECT_EQ(TQString("a\u20AC\U0001F30D").UTFconvertedString(TQUTF16), "a\0\xAC\x20\x3C\xD8\x0D\xDF"s);
    EXPECT_EQ(TQString().UTFconvertedString(TQUTF16), "");
}

TEST(TQString, SplitsIntoTokens) {
    using Tokens = std::vector<std::string>;
    EXPECT_EQ(tokensOf("France (mainland), Corsica; sea", ",;() /."),
              (Tokens{"France", "mainland", "Corsica", "sea"}));
    EXPECT_EQ(tokensOf("abc", " "), Tokens{"abc"});
    EXPECT_EQ(tokensOf("a b", ""), Tokens{"a b"});
    EXPECT_EQ(tokensOf("", " "), Tokens{});
    EXPECT_EQ(tokensOf("  ", " "), Tokens{});
    EXPECT_EQ(tokensOf(degreesInDefault, "\u00E9"), (Tokens{"degr", "s"}));
    EXPECT_EQ(tokensOf("\u20AC1\u20AC2", "\u20AC"), (Tokens{"1", "2"}));
    EXPECT_EQ(tokensOf("1,2", degreesInDefault), Tokens{"1,2"});
}

TEST(TQString, ArchivesItsBytesAndEncoding) {
    const TQString inDefault(degreesInDefault);
    const TQString inUTF8(degreesInUTF8);
    EXPECT_EQ(archived(nullptr), "\0"s);
    EXPECT_EQ(archived(&inDefault), "\x02\x06\0\0\0degr\xDDs"s);
    EXPECT_EQ(archived(&inUTF8), "\x01\x07\0\0\0degr\xC3\xA9s"s);
}

TEST(TQString, ComesBackFromAnArchive) {
    const std::vector<TQString> texts = {TQString(),
                                         TQString(degreesInDefault),
                                         TQString(degreesInUTF8),
                                         TQString("a\0b"sv, TQEncodingUTF8),
                                         TQString("\xFE\xFF"),
                                         TQString("end")};
    TQWriteMemStream out;
    TQString::archive(nullptr, &out);
    for (const TQString& text : texts) {
        text.archiveTo(&out);
    }
    TQReadMemStream in(out.getMemory().data(), out.getMemory().size());
    EXPECT_EQ(TQString::unarchiveFrom(&in), nullptr);
    EXPECT_FALSE(in.failed());
    for (const TQString& text : texts) {
        const auto read = TQString::unarchiveFrom(&in);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(*read, text);
        EXPECT_EQ(read->encoding(), text.encoding());
        EXPECT_EQ(bytesOf(*read), bytesOf(text));
    }
    EXPECT_EQ(in.bytesLeft(), 0U);
    EXPECT_FALSE(in.failed());
}

TEST(TQString, ResetTakesAnArchivedText) {
    const TQString original(degreesInUTF8);
    const std::string bytes = archived(&original) + archived(nullptr);
    TQReadMemStream in(bytes.data(), bytes.size());
    TQString text("before");
    text.resetFrom(&in);
    EXPECT_EQ(text, degreesInUTF8);
    text.resetFrom(&in);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(in.failed());
    text.set("before");
    text.resetFrom(&in);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_TRUE(in.failed());
}

TEST(TQString, DamagedArchivesFailBeforeMemoryIsTaken) {
    for (const std::string& bytes : {""s, "\x01"s, "\x01\x02\0\0"s, "\x01\xFF\xFF\xFF\xFF"s,
                                     "\x02\xFF\xFF\xFF\x7F"
                                     "ab"s,
                                     "\x01\x03\0\0\0ab"s, "\x03\x01\0\0\0a"s, "\xFF\x01\0\0\0a"s}) {
        TQReadMemStream in(bytes.data(), bytes.size());
        EXPECT_EQ(TQString::unarchiveFrom(&in), nullptr);
        EXPECT_TRUE(in.failed());
    }
}

TEST(TQString, ArchivedBytesMarkedAsUTF8ThatAreNotAreKeptAsDefault) {
    const std::string bytes = "\x01\x06\0\0\0degr\xDDs"s;
    TQReadMemStream in(bytes.data(), bytes.size());
    const auto text = TQString::unarchiveFrom(&in);
    ASSERT_NE(text, nullptr);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(text->encoding(), TQEncodingDefault);
    EXPECT_EQ(bytesOf(*text), degreesInDefault);
}

/// The same random operations on a string and on its characters give the same text.
TEST(TQString, BehavesLikeASequenceOfCharacters) {
    std::mt19937 random(99);
    const auto below = [&random](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    const std::u32string alphabet = U"aab \u00E9\u00E9\u0141\u20AC\U0001F30D";
    const auto randomCharacters = [&](int most) {
        const int kinds =
            below(3) == 0 ? static_cast<int>(alphabet.size()) : 7; // seldom beyond the default encoding
        std::u32string characters;
        for (int left = below(most + 1); left > 0; --left) {
            characters += alphabet[static_cast<std::size_t>(below(kinds))];
        }
        return characters;
    };
    for (int round = 0; round < 2000; ++round) {
        std::u32string model = randomCharacters(12);
        TQString text = textOf(model);
        for (int step = 0; step < 12; ++step) {
            const std::u32string other = randomCharacters(3);
            const char32_t code =
                alphabet[static_cast<std::size_t>(below(static_cast<int>(alphabet.size())))];
            const auto index = static_cast<std::size_t>(below(static_cast<int>(model.size()) + 1));
            switch (below(7)) {
            case 0:
                model += other;
                text.append(textOf(other));
                break;
            case 1:
                model.insert(index, other);
                text.insertAtIndex(textOf(other), static_cast<int>(index));
                break;
            case 2:
                std::erase(model, code);
                text.strip(code);
                break;
            case 3:
                std::ranges::replace(model, code, U'b');
                text.replace(code, U'b');
                break;
            case 4:
                model = model.substr(std::min<std::size_t>(index, 2));
                text = text.rightSubstring(text.length() - static_cast<int>(std::min<std::size_t>(index, 2)));
                break;
            case 5:
                text.convertToEncoding(below(2) == 0 ? TQEncodingUTF8 : TQEncodingDefault);
                break;
            default: {
                const std::size_t found = model.find(other, index);
                ASSERT_EQ(text.indexOf(textOf(other), static_cast<int>(index)),
                          found != std::u32string::npos ? static_cast<int>(found) : -1);
                const std::size_t last = model.rfind(code, index);
                ASSERT_EQ(text.reverseIndexOf(code, static_cast<int>(index)),
                          last != std::u32string::npos ? static_cast<int>(last) : -1);
            }
            }
            ASSERT_EQ(charactersOf(text), model);
            ASSERT_EQ(text, textOf(model));
            ASSERT_EQ(text.hashValue(), textOf(model).hashValue());
        }
    }
}
