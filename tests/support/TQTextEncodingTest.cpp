#include "support/TQTextEncoding.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

namespace {

/// The characters of the bytes 0x80 to 0xFD in NEXTSTEP.TXT; the last two bytes have none.
constexpr std::u16string_view publishedCharacters = u"\u00A0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏ" // 0x80
                                                    u"ÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷"      // 0x90
                                                    u"©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ"      // 0xA0
                                                    u"®–†‡·¦¶•‚„”»…‰¬¿"      // 0xB0
                                                    u"¹ˋ´ˆ˜¯˘˙¨²˚¸³˝˛ˇ"      // 0xC0
                                                    u"—±¼½¾àáâãäåçèéêë"      // 0xD0
                                                    u"ìÆíªîïðñŁØŒºòóôõ"      // 0xE0
                                                    u"öæùúûıüýłøœßþÿ";       // 0xF0

constexpr char16_t replacementCharacter = 0xFFFD;

} // namespace

TEST(TQTextEncoding, TheDefaultEncodingIsThePublishedNextstepCharacterSet) {
    ASSERT_EQ(publishedCharacters.size(), 126U);
    for (int byte = 0; byte < 0x80; ++byte) {
        EXPECT_EQ(tq_characterFromDefault(static_cast<char>(byte)), static_cast<char32_t>(byte));
    }
    for (std::size_t i = 0; i < publishedCharacters.size(); ++i) {
        EXPECT_EQ(tq_characterFromDefault(static_cast<char>(0x80 + i)), publishedCharacters[i]) << 0x80 + i;
    }
    EXPECT_EQ(tq_characterFromDefault('\xDD'), U'\u00E9');
    EXPECT_EQ(tq_characterFromDefault('\xFE'), replacementCharacter);
    EXPECT_EQ(tq_characterFromDefault('\xFF'), replacementCharacter);
}

TEST(TQTextEncoding, EveryDefinedByteComesBackFromUTF8) {
    std::string bytes;
    for (int byte = 0; byte < 0xFE; ++byte) {
        bytes += static_cast<char>(byte);
    }
    const std::string utf8 = tq_UTF8FromDefault(bytes);
    EXPECT_TRUE(tq_isValidUTF8(utf8));
    EXPECT_EQ(tq_defaultFromUTF8(utf8), bytes);
}

TEST(TQTextEncoding, CharactersOutsideTheDefaultEncodingHaveNoBytes) {
    EXPECT_EQ(tq_defaultFromUTF8("\u20AC"), std::nullopt);
    EXPECT_EQ(tq_defaultFromUTF8("a\u0394"), std::nullopt);
    EXPECT_EQ(tq_defaultFromUTF8("\uFFFD"), std::nullopt);
    EXPECT_EQ(tq_defaultFromUTF8("\U0001F30D"), std::nullopt);
    EXPECT_EQ(tq_defaultFromUTF8(""), "");
}

TEST(TQTextEncoding, RecognisesUTF8AsRFC3629DefinesIt) {
    for (const std::string_view valid :
         {""sv, "ascii"sv, "\0"sv, "\x7F"sv, "\xC2\x80"sv, "\xDF\xBF"sv, "\xE0\xA0\x80"sv, "\xED\x9F\xBF"sv,
          "\xEE\x80\x80"sv, "\xEF\xBF\xBF"sv, "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv,
          "\xEF\xBB\xBFmark"sv}) {
        EXPECT_TRUE(tq_isValidUTF8(valid)) << valid;
    }
    for (const std::string_view invalid : {"\x80"sv,
                                           "\xBF"sv,
                                           "\xC0\xAF"sv,
                                           "\xC1\xBF"sv,
                                           "\xC3"sv,
                                           "\xC3("sv,
                                           "\xE0\x80\xAF"sv,
                                           "\xE0\x9F\xBF"sv,
                                           "\xE2\x82"sv,
                                           "\xED\xA0\x80"sv,
                                           "\xED\xBF\xBF"sv,
                                           "\xF0\x80\x80\xAF"sv,
                                           "\xF0\x8F\xBF\xBF"sv,
                                           "\xF4\x90\x80\x80"sv,
                                           "\xF5\x80\x80\x80"sv,
                                           "\xF8\x88\x80\x80\x80"sv,
                                           "\xFE"sv,
                                           "\xFF"sv,
                                           "degr\xDDs"sv,
                                           "\xF0\x9F\x8C"sv,
                                           "a\xC3"sv}) {
        EXPECT_FALSE(tq_isValidUTF8(invalid)) << invalid;
    }
}

TEST(TQTextEncoding, RecognisesAscii) {
    EXPECT_TRUE(tq_isAscii(""));
    EXPECT_TRUE(tq_isAscii("\x01 az\x7F"));
    EXPECT_FALSE(tq_isAscii("a\x80"));
    EXPECT_FALSE(tq_isAscii("\xC3\xA9"));
}

TEST(TQTextEncoding, SurrogatesAndNumbersBeyondUnicodeAreNoCharacters) {
    EXPECT_TRUE(tq_isCharacter(0));
    EXPECT_TRUE(tq_isCharacter(0xD7FF));
    EXPECT_FALSE(tq_isCharacter(0xD800));
    EXPECT_FALSE(tq_isCharacter(0xDFFF));
    EXPECT_TRUE(tq_isCharacter(0xE000));
    EXPECT_TRUE(tq_isCharacter(0x10FFFF));
    EXPECT_FALSE(tq_isCharacter(0x110000));
    EXPECT_FALSE(tq_isCharacter(0xFFFFFFFF));

    std::string utf8;
    tq_appendUTF8(utf8, 0xD800);
    tq_appendUTF8(utf8, 0x110000);
    EXPECT_EQ(utf8, "\uFFFD\uFFFD");
}

TEST(TQTextEncoding, UTF16AndUTF8ConvertBothWays) {
    const std::string utf8 = "a\u00E9\u20AC\U0001F30D\U0010FFFF";
    const std::u16string utf16 = u"a\u00E9\u20AC\U0001F30D\U0010FFFF";
    EXPECT_EQ(tq_UTF16FromUTF8(utf8), utf16);
    EXPECT_EQ(tq_UTF8FromUTF16(utf16), utf8);
    EXPECT_EQ(tq_UTF8FromUTF16(u""), "");
}

TEST(TQTextEncoding, ASurrogateWithoutPartnerBecomesTheReplacementCharacter) {
    const char16_t lead = 0xD83C;
    const char16_t trail = 0xDF0D;
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{lead, trail}), "\U0001F30D");
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{lead}), "\uFFFD");
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{trail}), "\uFFFD");
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{trail, lead}), "\uFFFD\uFFFD");
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{lead, u'a'}), "\uFFFDa");
    EXPECT_EQ(tq_UTF8FromUTF16(std::u16string{lead, lead, trail}), "\uFFFD\U0001F30D");
}

TEST(TQTextEncoding, BytesOfUnknownOriginAreUTF8WhenTheyCanBe) {
    EXPECT_EQ(tq_UTF8FromUnknown("degr\xC3\xA9s"), "degr\u00E9s");
    EXPECT_EQ(tq_UTF8FromUnknown("degr\xDDs"), "degr\u00E9s");
    EXPECT_EQ(tq_UTF8FromUnknown("plain"), "plain");
}

TEST(TQTextEncoding, BytesOfAPathComeBackFromTheirText) {
    for (const std::string bytes : {"m\xE9.svg", "\x80\xFF", "Z\xC3\xBCrich/\xC3", "\xEF\xB7\x98\xEF\xB7\x90",
                                    "\xED\xA0\x80", "plain", ""}) {
        const std::string text = tq_textFromPathBytes(bytes);
        EXPECT_TRUE(tq_isValidUTF8(text)) << text;
        EXPECT_EQ(tq_pathBytesFromText(text), bytes);
    }
    EXPECT_EQ(tq_textFromPathBytes("Z\xC3\xBCrich"), "Z\xC3\xBCrich");
}

TEST(TQTextEncoding, NoTextMakesAnAsciiByteOfAPath) {
    constexpr std::string_view twoCarriersOfASlash = "\xEF\xB7\x92\xEF\xB7\x9F"; // U+FDD2 U+FDDF
    EXPECT_EQ(tq_pathBytesFromText(twoCarriersOfASlash), twoCarriersOfASlash);
}
