#include "tools/tqproj/InputFile.h"

#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

namespace {

std::string contents(std::streambuf& source) { return {std::istreambuf_iterator<char>(&source), {}}; }

TEST(InputFile, ReadsAFileByteForByte) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("in.txt", "a\r\n\x1A\xFF\n").utf8();
    std::stringbuf standardInput;
    InputFile input(path, standardInput);
    ASSERT_FALSE(input.error());
    EXPECT_EQ(input.name(), path);
    EXPECT_EQ(contents(input.source()), "a\r\n\x1A\xFF\n");
    EXPECT_EQ(InputFile::sizeOf(path), 6U);
}

TEST(InputFile, ReadsAFileWithANameOfAnyCharacters) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("Zürich 東京.txt", "x").utf8();
    std::stringbuf standardInput;
    InputFile input(path, standardInput);
    ASSERT_FALSE(input.error());
    EXPECT_EQ(contents(input.source()), "x");
}

TEST(InputFile, HyphenIsTheStandardInput) {
    std::stringbuf standardInput("typed");
    InputFile input("-", standardInput);
    EXPECT_FALSE(input.error());
    EXPECT_EQ(input.name(), "<stdin>");
    EXPECT_EQ(contents(input.source()), "typed");
    EXPECT_EQ(InputFile::sizeOf("-"), 0U);
}

TEST(InputFile, MissingFileIsAnError) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("missing.txt").utf8();
    std::stringbuf standardInput;
    EXPECT_EQ(InputFile(path, standardInput).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(InputFile::openingError(path), std::errc::no_such_file_or_directory);
    EXPECT_EQ(InputFile::sizeOf(path), 0U);
}

} // namespace
