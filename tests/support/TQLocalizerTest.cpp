#include "support/TQLocalizer.h"
#include "testing/CapturedMessages.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

class TQLocalizerTest : public testing::Test {
  protected:
    void contain(const char* language, const char* name, std::string_view bytes) const {
        writeBytes(pathOf(language, name), bytes);
    }

    TQString pathOf(const char* language, const char* name) const {
        return tq_createFilePath(tq_createPath(_directory.directory(), "localization", language), name,
                                 "strings");
    }

    /// The text of the key "key" when it stands on a line of the English file.
    std::string textOn(std::string_view line) const {
        contain("en", "lines", line);
        TQLocalizer localizer;
        EXPECT_TRUE(localizer.addStringsFromFile("lines"));
        return localizer.stringForKey("key").utf8();
    }

  private:
    TemporaryDirectory _directory;
    SharedDirectory _shared{_directory.directory()};
};

TEST_F(TQLocalizerTest, AMissingKeyIsItsOwnText) {
    const TQLocalizer localizer;
    EXPECT_EQ(localizer.stringForKey("Invalid projection:").utf8(), "Invalid projection:");
    EXPECT_EQ(localizer.stringForKey("").utf8(), "");
}

TEST_F(TQLocalizerTest, LinesAreKeysAndTexts) {
    EXPECT_EQ(textOn("\"key\" = \"text\";"), "text");
    EXPECT_EQ(textOn("  \"key\"=\"text\"  ;  // comment\r\n"), "text");
    EXPECT_EQ(textOn("\xEF\xBB\xBF\"key\" = \"Z\xC3\xBCrich\";"), "Z\xC3\xBCrich");
    EXPECT_EQ(textOn("\"key\" = \"\";"), "");
    EXPECT_EQ(textOn("\"key\" = \"// no comment\";"), "// no comment");
    EXPECT_EQ(textOn("\"key\" = \"first\";\n\"key\" = \"last\";"), "last");
}

TEST_F(TQLocalizerTest, EscapesStandForTheirCharacters) {
    EXPECT_EQ(textOn(R"("key" = "a\"b\\c\nd\te";)"), "a\"b\\c\nd\te");
    contain("en", "keys", R"("a\"b\tc" = "text";)");
    TQLocalizer localizer;
    EXPECT_TRUE(localizer.addStringsFromFile("keys"));
    EXPECT_EQ(localizer.stringForKey("a\"b\tc").utf8(), "text");
}

TEST_F(TQLocalizerTest, EmptyLinesAndCommentsSayNothing) {
    const CapturedMessages printed;
    EXPECT_EQ(textOn("\n  \t\n// \"key\" = \"no\";\n   // more\n\"key\" = \"text\";\n"), "text");
    EXPECT_TRUE(printed.lines().empty());
}

TEST_F(TQLocalizerTest, MalformedLinesAreReportedAndSkipped) {
    const std::vector<std::string> malformed = {
        "key = \"text\";",          "\"key\" \"text\";", "\"key\" = text;",
        "\"key\" = \"text\"",       "\"key\" = \"text;", "\"key",
        "\"key\" = \"a\\x\";",      "\"key\" = \"a\\",   "\"key\" = \"text\"; no",
        "\"key\" = \"a\" = \"b\";", "\"key\" = ;",       "/* comment */"};
    for (const std::string& line : malformed) {
        const CapturedMessages printed;
        EXPECT_EQ(textOn("// first line\n" + line + "\n"), "key") << line;
        const std::string place = pathOf("en", "lines").utf8() + ":2:";
        ASSERT_EQ(printed.lines().size(), 1U) << line;
        EXPECT_TRUE(printed.lines().front().starts_with(place)) << printed.lines().front();
        EXPECT_TRUE(printed.lines().front().ends_with("\n"));
    }
}

TEST_F(TQLocalizerTest, GoodLinesBehindAMalformedOneCount) {
    const CapturedMessages printed;
    EXPECT_EQ(textOn("nonsense\n\"key\" = \"text\";\n"), "text");
    EXPECT_EQ(printed.lines().size(), 1U);
}

TEST_F(TQLocalizerTest, AMissingFileIsNotFound) {
    TQLocalizer localizer;
    EXPECT_FALSE(localizer.addStringsFromFile("missing"));
    writeBytes(tq_createPath(TQGetApplicationSharedDirectory(), "outside.strings"), "\"key\" = \"x\";");
    EXPECT_FALSE(localizer.addStringsFromFile("../../../outside"));
}

TEST_F(TQLocalizerTest, ALaterFileGivesNewTexts) {
    contain("en", "one", "\"a\" = \"one\";\n\"b\" = \"one\";");
    contain("en", "two", "\"b\" = \"two\";");
    TQLocalizer localizer;
    EXPECT_TRUE(localizer.addStringsFromFile("one"));
    EXPECT_TRUE(localizer.addStringsFromFile("two"));
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "one");
    EXPECT_EQ(localizer.stringForKey("b").utf8(), "two");
}

TEST_F(TQLocalizerTest, TextsFallBackFromRegionToLanguageToEnglish) {
    contain("en", "texts", "\"a\" = \"en\";\n\"b\" = \"en\";\n\"c\" = \"en\";");
    contain("de", "texts", "\"a\" = \"de\";\n\"b\" = \"de\";");
    contain("de_CH", "texts", "\"a\" = \"de_CH\";");
    TQLocalizer localizer;
    localizer.setLanguage("de-CH");
    EXPECT_EQ(localizer.language().utf8(), "de_CH");
    EXPECT_TRUE(localizer.addStringsFromFile("texts"));
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "de_CH");
    EXPECT_EQ(localizer.stringForKey("b").utf8(), "de");
    EXPECT_EQ(localizer.stringForKey("c").utf8(), "en");
    EXPECT_EQ(localizer.stringForKey("d").utf8(), "d");
}

TEST_F(TQLocalizerTest, AnEnglishTextOfALaterFileDoesNotHideATranslation) {
    contain("en", "one", "\"a\" = \"one en\";");
    contain("fr", "one", "\"a\" = \"one fr\";");
    contain("en", "two", "\"a\" = \"two en\";");
    TQLocalizer localizer;
    localizer.setLanguage("fr");
    EXPECT_TRUE(localizer.addStringsFromFile("one"));
    EXPECT_TRUE(localizer.addStringsFromFile("two"));
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "one fr");
}

TEST_F(TQLocalizerTest, ChangingTheLanguageReadsTheFilesAgain) {
    contain("en", "texts", "\"a\" = \"en\";");
    contain("de", "texts", "\"a\" = \"de\";");
    TQLocalizer localizer;
    localizer.setLanguage("de");
    EXPECT_TRUE(localizer.addStringsFromFile("texts"));
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "de");
    localizer.setLanguage("en");
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "en");
    contain("de", "texts", "\"a\" = \"neu\";");
    localizer.setLanguage("de");
    EXPECT_EQ(localizer.stringForKey("a").utf8(), "neu");
}

TEST_F(TQLocalizerTest, WhatIsNoLanguageCodeCountsAsEnglish) {
    TQLocalizer localizer;
    for (const char* code : {"", "../de", "d e", "de/..", "\xC3\xA9"}) {
        localizer.setLanguage(code);
        EXPECT_EQ(localizer.language().utf8(), "en");
    }
}

#ifndef _WIN32
TEST_F(TQLocalizerTest, ANewLocalizerSpeaksTheLanguageOfTheSystem) {
    const EnvironmentVariable all("LC_ALL", "it_CH.UTF-8");
    EXPECT_EQ(TQLocalizer().language().utf8(), "it_CH");
}

TEST_F(TQLocalizerTest, AnUnreadableFileIsNotFound) {
    contain("en", "locked", "\"key\" = \"text\";");
    std::filesystem::permissions(tq_filesystemPath(pathOf("en", "locked")), std::filesystem::perms::none);
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser reads everything";
    }
    TQLocalizer localizer;
    EXPECT_FALSE(localizer.addStringsFromFile("locked"));
    EXPECT_EQ(localizer.stringForKey("key").utf8(), "key");
}

TEST_F(TQLocalizerTest, ResetGoesBackToTheSystemAndDropsTheTexts) {
    contain("it", "texts", "\"a\" = \"it\";");
    contain("de", "texts", "\"a\" = \"de\";\n\"b\" = \"de\";");
    TQLocalizer* localizer = TQLocalizer::appShared();
    const TQString before = localizer->language();
    {
        const EnvironmentVariable all("LC_ALL", "it_IT.UTF-8");
        localizer->setLanguage("de");
        EXPECT_TRUE(localizer->addStringsFromFile("texts"));
        EXPECT_EQ(TQLocalizer::appLocalizedStringForKey("a").utf8(), "de");
        resetSystemLocalization();
        EXPECT_EQ(localizer->language().utf8(), "it_IT");
        EXPECT_EQ(TQLocalizer::appLocalizedStringForKey("a").utf8(), "it");
        EXPECT_EQ(TQLocalizer::appLocalizedStringForKey("b").utf8(), "b");
    }
    localizer->setLanguage(before);
}
#endif

TEST_F(TQLocalizerTest, TheLocalizerOfTheProcessAnswersWideTextsToo) {
    contain("en", "wide", "\"a\" = \"\xE2\x82\xAC\";");
    EXPECT_TRUE(TQLocalizer::appShared()->addStringsFromFile("wide"));
    EXPECT_EQ(TQLocalizer::appLocalizedUnicodeStringForKey("a"), u"\u20AC");
    EXPECT_EQ(TQLocalizer::appLocalizedUnicodeStringForKey("no such key"), u"no such key");
}

} // namespace
