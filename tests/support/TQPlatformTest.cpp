#include "support/TQPlatform.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

TEST(TQPlatform, AnObjectOfTheTestLiesInTheTestProgram) {
    static const int object = 0;
    const std::filesystem::path program = tq_libraryPath(&object);
    EXPECT_TRUE(program.is_absolute());
    EXPECT_TRUE(std::filesystem::is_regular_file(program));
}

TEST(TQPlatform, AnAddressInNoLibraryHasNoPath) {
    const int local = 0;
    EXPECT_TRUE(tq_libraryPath(&local).empty());
    EXPECT_TRUE(tq_libraryPath(nullptr).empty());
}

TEST(TQPlatform, AFileIsNoTerminal) {
    const TQStreamHandle stream(std::tmpfile());
    ASSERT_NE(stream, nullptr);
    EXPECT_FALSE(tq_isTerminal(stream.get()));
    EXPECT_FALSE(tq_isTerminal(nullptr));
}

TEST(TQPlatform, EnvironmentTextIsEmptyForAnUnsetVariable) {
    const EnvironmentVariable unset("TQ_TEST_VARIABLE", "");
    EXPECT_EQ(tq_environmentText("TQ_TEST_VARIABLE"), "");
    const EnvironmentVariable set("TQ_TEST_VARIABLE", "Z\xC3\xBCrich");
    EXPECT_EQ(tq_environmentText("TQ_TEST_VARIABLE"), "Z\xC3\xBCrich");
}

TEST(TQPlatform, OpenStreamTakesAnyCharactersInThePath) {
    const TemporaryDirectory directory;
    const std::filesystem::path path = tq_filesystemPath(directory.file("Z\xC3\xBCrich \xE2\x82\xAC.txt"));
    {
        const TQStreamHandle stream(tq_openStream(path, "wb"));
        ASSERT_NE(stream, nullptr);
        EXPECT_GE(std::fputs("text", stream.get()), 0);
    }
    EXPECT_EQ(readBytes(tq_stringFromPath(path)), "text");
    EXPECT_EQ(tq_openStream(path / "below a file", "rb"), nullptr);
}

#ifndef _WIN32
std::string languageWith(const char* all, const char* messages, const char* general) {
    const EnvironmentVariable lcAll("LC_ALL", all);
    const EnvironmentVariable lcMessages("LC_MESSAGES", messages);
    const EnvironmentVariable lang("LANG", general);
    return tq_systemLanguage();
}

TEST(TQPlatform, LanguageComesFromTheFirstLocaleVariableThatIsSet) {
    EXPECT_EQ(languageWith("", "", ""), "en");
    EXPECT_EQ(languageWith("", "", "fr_CA.UTF-8"), "fr_CA");
    EXPECT_EQ(languageWith("", "it_IT", "fr_CA.UTF-8"), "it_IT");
    EXPECT_EQ(languageWith("de_AT@euro", "it_IT", "fr_CA.UTF-8"), "de_AT");
    EXPECT_EQ(languageWith("C", "it_IT", "fr_CA.UTF-8"), "en");
    EXPECT_EQ(languageWith("", "POSIX", "fr_CA.UTF-8"), "en");
    EXPECT_EQ(languageWith("", "", "C.UTF-8"), "en");
}
#endif

} // namespace
