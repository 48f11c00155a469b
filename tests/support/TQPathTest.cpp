#include "support/TQPath.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

TEST(TQPath, ComponentsAreJoinedBySingleSlashes) {
    EXPECT_EQ(tq_createPath("a", "b").utf8(), "a/b");
    EXPECT_EQ(tq_createPath("a/", "b").utf8(), "a/b");
    EXPECT_EQ(tq_createPath("/", "b").utf8(), "/b");
    EXPECT_EQ(tq_createPath("a", "/b").utf8(), "a/b");
    EXPECT_EQ(tq_createPath("a/", "//b/").utf8(), "a/b/");
    EXPECT_EQ(tq_createPath("/", "/b").utf8(), "/b");
    EXPECT_EQ(tq_createPath("a", "/degr\xDDs").utf8(), "a/degr\xC3\xA9s");
    EXPECT_EQ(tq_createPath("shared", "resProj", "Ellipsoids").utf8(), "shared/resProj/Ellipsoids");
}

TEST(TQPath, EmptyComponentsAddNothing) {
    EXPECT_EQ(tq_createPath("", "b").utf8(), "b");
    EXPECT_EQ(tq_createPath("a", "").utf8(), "a");
    EXPECT_EQ(tq_createPath("", "").utf8(), "");
    EXPECT_EQ(tq_createPath("a", "", "c").utf8(), "a/c");
    EXPECT_EQ(tq_createPath("a", "/").utf8(), "a");
    EXPECT_EQ(tq_createPath("", "/b").utf8(), "/b");
}

TEST(TQPath, FilePathHasTheExtensionBehindADot) {
    EXPECT_EQ(tq_createFilePath("a", "Swiss", "proj").utf8(), "a/Swiss.proj");
    EXPECT_EQ(tq_createFilePath("a", "Swiss", "").utf8(), "a/Swiss");
}

TEST(TQPath, DirectoryPartIsWhatStandsBeforeTheLastComponent) {
    EXPECT_EQ(tq_pathDirPart("/a/b/c.proj").utf8(), "/a/b");
    EXPECT_EQ(tq_pathDirPart("a/b").utf8(), "a");
    EXPECT_EQ(tq_pathDirPart("a//b").utf8(), "a");
    EXPECT_EQ(tq_pathDirPart("/a").utf8(), "/");
    EXPECT_EQ(tq_pathDirPart("a").utf8(), ".");
    EXPECT_EQ(tq_pathDirPart("").utf8(), ".");
}

TEST(TQPath, ExtensionIsWhatFollowsTheLastDotOfTheLastComponent) {
    EXPECT_EQ(tq_pathExtension("/a/b.proj").utf8(), "proj");
    EXPECT_EQ(tq_pathExtension("b.old.proj").utf8(), "proj");
    EXPECT_EQ(tq_pathExtension("b.PROJ").utf8(), "PROJ");
    EXPECT_EQ(tq_pathExtension("a.d/b").utf8(), "");
    EXPECT_EQ(tq_pathExtension("b").utf8(), "");
    EXPECT_EQ(tq_pathExtension("b.").utf8(), "");
    EXPECT_EQ(tq_pathExtension(".proj").utf8(), "");
    EXPECT_EQ(tq_pathExtension("").utf8(), "");
}

TEST(TQPath, PathsToTheSameDirectoryAreEqual) {
    const TemporaryDirectory directory;
    ASSERT_EQ(tq_mkdir(directory.file("one")), 0);
    EXPECT_TRUE(tq_pathIsEqual(directory.file("one"), directory.file("one/")));
    EXPECT_TRUE(tq_pathIsEqual(directory.file("one"), directory.file("./one/../one")));
    EXPECT_FALSE(tq_pathIsEqual(directory.file("one"), directory.directory()));
}

TEST(TQPath, PathsToWhatDoesNotExistAreEqualWhenTheirNormalFormIs) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(tq_pathIsEqual(directory.file("new"), directory.file("new/")));
    EXPECT_TRUE(tq_pathIsEqual(directory.file("new/x"), directory.file("new/./y/../x")));
    EXPECT_FALSE(tq_pathIsEqual(directory.file("new"), directory.file("other")));
    EXPECT_FALSE(tq_pathIsEqual(directory.directory(), directory.file("new")));
    EXPECT_TRUE(tq_pathIsEqual("", ""));
    EXPECT_FALSE(tq_pathIsEqual("", "new"));
}

TEST(TQPath, RelativePathEqualsTheAbsoluteOne) {
    const TQString here = tq_stringFromPath(std::filesystem::current_path());
    EXPECT_TRUE(tq_pathIsEqual(".", here));
    EXPECT_TRUE(tq_pathIsEqual("not here", tq_createPath(here, "not here")));
}

#ifndef _WIN32
TEST(TQPath, LinkAndItsTargetAreEqual) {
    const TemporaryDirectory directory;
    ASSERT_EQ(tq_mkdir(directory.file("one")), 0);
    std::filesystem::create_directory_symlink("one", tq_filesystemPath(directory.file("link")));
    EXPECT_TRUE(tq_pathIsEqual(directory.file("one"), directory.file("link")));
    EXPECT_TRUE(tq_pathIsEqual(directory.file("one/new"), directory.file("link/new")));
}
#endif

TEST(TQPath, MkdirCreatesWhatIsMissingAndAcceptsWhatExists) {
    const TemporaryDirectory directory;
    EXPECT_EQ(tq_mkdir(directory.file("a/b/c")), 0);
    EXPECT_TRUE(std::filesystem::is_directory(tq_filesystemPath(directory.file("a/b/c"))));
    EXPECT_EQ(tq_mkdir(directory.file("a/b/c")), 0);
}

TEST(TQPath, MkdirFailsWhereAFileStands) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("file"), "x");
    EXPECT_EQ(tq_mkdir(directory.file("file")), 1);
    EXPECT_EQ(tq_mkdir(directory.file("file/below")), 1);
    EXPECT_EQ(tq_mkdir(""), 1);
}

TEST(TQPath, StreamIsOpenedReadAndClosed) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("Z\xC3\xBCrich.txt");
    writeBytes(path, "x");
    std::FILE* stream = tq_fopen(path, "rb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(std::getc(stream), 'x');
    EXPECT_EQ(tq_fclose(stream), 0);
}

TEST(TQPath, StreamIsNullForWhatIsNoFile) {
    const TemporaryDirectory directory;
    EXPECT_EQ(tq_fopen(directory.directory(), "rb"), nullptr);
    EXPECT_EQ(tq_fopen(directory.file("missing"), "rb"), nullptr);
    EXPECT_EQ(tq_fopen("", "rb"), nullptr);
    EXPECT_EQ(tq_fclose(nullptr), 0);
}

#ifdef __linux__
TEST(TQPath, ClosingTellsThatTheDeviceIsFull) {
    std::FILE* stream = tq_fopen("/dev/full", "wb");
    ASSERT_NE(stream, nullptr);
    std::fputs("lost", stream);
    EXPECT_EQ(tq_fclose(stream), 1);
}
#endif

TEST(TQPath, PathTextSurvivesTheStandardPath) {
    for (const char* text : {"/a/b.proj", "Z\xC3\xBCrich/\xE2\x82\xAC", "\xF0\x9F\x97\xBA", "a b"}) {
        EXPECT_EQ(tq_stringFromPath(tq_filesystemPath(text)).utf8(), text);
    }
}

TEST(TQPath, DefaultEncodedTextIsTheSamePathAsUtf8) {
    const TQString inDefaultEncoding("degr\xDDs");
    ASSERT_EQ(inDefaultEncoding.encoding(), TQEncodingDefault);
    EXPECT_EQ(tq_filesystemPath(inDefaultEncoding), tq_filesystemPath("degr\xC3\xA9s"));
}

#ifndef _WIN32
// "m", the byte 0xE9, ".svg": the default encoding would read a letter of it, which is another file's name.
TEST(TQPath, BytesThatAreNoTextNameTheirFileAndNoOther) {
    const std::filesystem::path path("m\xE9.svg");
    const TQString text = tq_stringFromPath(path);
    EXPECT_EQ(tq_filesystemPath(text), path);
    EXPECT_EQ(tq_pathExtension(text), "svg");
    const TemporaryDirectory directory;
    writeBytes(directory.file(text), "bytes");
    EXPECT_TRUE(std::filesystem::exists(directory.path() / path));
}
#endif

TEST(TQPath, TextWithNulIsNoPath) {
    EXPECT_TRUE(tq_filesystemPath(TQString(std::string_view("a\0b", 3), TQEncodingUTF8)).empty());
}

// ---- File names from names

std::string fileNameFor(const TQString& name, const TQString& directory = "no such directory",
                        const TQString& extension = "proj") {
    TQString fileName(name);
    correctFileNameUnique(directory, fileName, extension);
    return fileName.utf8();
}

TEST(CorrectFileNameUnique, LegalNamesStayAsTheyAre) {
    for (const char* name : {"Swiss grid", "UTM 32 (WGS84)", "Gau\xC3\x9F-Kr\xC3\xBCger", "a.b", "console",
                             "COM", "COM10", "nullable", "-1"}) {
        EXPECT_EQ(fileNameFor(name), name);
    }
}

TEST(CorrectFileNameUnique, ReservedAndControlCharactersBecomeUnderscores) {
    EXPECT_EQ(fileNameFor("a/b"), "a_b");
    EXPECT_EQ(fileNameFor("a\\b"), "a_b");
    EXPECT_EQ(fileNameFor("x\ty"), "x_y");
    EXPECT_EQ(fileNameFor("\tEPSG_2056\r"), "_EPSG_2056_");
    EXPECT_EQ(fileNameFor("<>:\"|?*"), "_______");
    EXPECT_EQ(fileNameFor("a\x7F"), "a_");
    EXPECT_EQ(fileNameFor("a\xC2\x85"), "a_");
    EXPECT_EQ(fileNameFor("a\xEF\xB7\x9C\xEF\xB7\x93"), "a__") << "would be a byte of the path";
    EXPECT_EQ(fileNameFor(TQString(std::string_view("a\0b", 3), TQEncodingUTF8)), "a_b");
}

TEST(CorrectFileNameUnique, NamesCannotClimbOut) {
    EXPECT_EQ(fileNameFor("../../etc/passwd"), "_._.._etc_passwd");
    EXPECT_EQ(fileNameFor("/etc/passwd"), "_etc_passwd");
    EXPECT_EQ(fileNameFor("C:\\x"), "C__x");
    EXPECT_EQ(fileNameFor("."), "unnamed");
    EXPECT_EQ(fileNameFor(".."), "unnamed");
}

TEST(CorrectFileNameUnique, EndsAreTrimmedAndNothingBecomesUnnamed) {
    EXPECT_EQ(fileNameFor("  a b  "), "a b");
    EXPECT_EQ(fileNameFor("a. ."), "a");
    EXPECT_EQ(fileNameFor(".hidden"), "_hidden");
    EXPECT_EQ(fileNameFor(""), "unnamed");
    EXPECT_EQ(fileNameFor("   "), "unnamed");
    EXPECT_EQ(fileNameFor(" . "), "unnamed");
}

TEST(CorrectFileNameUnique, WindowsDeviceNamesGetAnUnderscore) {
    for (const char* name : {"CON", "con", "Prn", "AUX", "nul", "COM1", "lpt9", "COM0", "LPT\xC2\xB2",
                             "CONIN$", "con.txt", "NUL .x"}) {
        EXPECT_EQ(fileNameFor(name), std::string("_") + name);
    }
}

TEST(CorrectFileNameUnique, LongNamesAreCutBetweenCharacters) {
    EXPECT_EQ(fileNameFor(std::string(300, 'a').c_str()), std::string(235, 'a'));

    std::string accented;
    for (int count = 0; count < 300; ++count) {
        accented += "\xC3\xA9";
    }
    const std::string fileName = fileNameFor(accented.c_str());
    EXPECT_EQ(fileName, accented.substr(0, 234));
    EXPECT_EQ(TQString(fileName.c_str()).length(), 117);
}

TEST(CorrectFileNameUnique, ExistingFilesAreAvoided) {
    const TemporaryDirectory directory;
    EXPECT_EQ(fileNameFor("a", directory.directory()), "a");
    writeBytes(directory.file("a.proj"), "");
    EXPECT_EQ(fileNameFor("a", directory.directory()), "a_1");
    writeBytes(directory.file("a_1.proj"), "");
    EXPECT_EQ(fileNameFor("a", directory.directory()), "a_2");
    EXPECT_EQ(fileNameFor("a", directory.directory(), "ell"), "a");
}

TEST(CorrectFileNameUnique, ExistingDirectoriesAndNamesOfOtherCapitalizationAreAvoided) {
    const TemporaryDirectory directory;
    ASSERT_EQ(tq_mkdir(directory.file("plain")), 0);
    EXPECT_EQ(fileNameFor("plain", directory.directory(), ""), "plain_1");
    writeBytes(directory.file("Swiss.proj"), "");
    EXPECT_EQ(fileNameFor("SWISS", directory.directory()), "SWISS_1");
    EXPECT_EQ(fileNameFor("swiss", directory.directory(), "PROJ"), "swiss_1");
    writeBytes(directory.file("\xC3\x89tats-Unis.proj"), "");
    EXPECT_EQ(fileNameFor("\xC3\xA9tats-unis", directory.directory()), "\xC3\xA9tats-unis_1");
    TQUniqueFileNames names{TQString()};
    EXPECT_EQ(names.take("\xD0\x9C\xD0\x98\xD0\xA0", "proj").utf8(), "\xD0\x9C\xD0\x98\xD0\xA0");
    EXPECT_EQ(names.take("\xD0\xBC\xD0\xB8\xD1\x80", "proj").utf8(), "\xD0\xBC\xD0\xB8\xD1\x80_1");
}

// With time that grows by the square, these two would end after hours.
TEST(CorrectFileNameUnique, AMillionCharactersAreCleaned) {
    std::string name;
    for (int count = 0; count < 1000000; ++count) {
        name += "\xC3\xA9";
    }
    EXPECT_EQ(fileNameFor(name.c_str()), name.substr(0, 234));
}

TEST(CorrectFileNameUnique, AHundredThousandEqualNamesAreNumbered) {
    TQUniqueFileNames names{TQString()};
    EXPECT_EQ(names.take("a_7", "proj").utf8(), "a_7");
    EXPECT_EQ(names.take("a", "proj").utf8(), "a");
    constexpr int count = 100000;
    for (int number = 1; number < count; ++number) {
        const std::string expected = "a_" + std::to_string(number < 7 ? number : number + 1);
        ASSERT_EQ(names.take("a", "proj").utf8(), expected);
    }
    EXPECT_EQ(names.take("a", "ell").utf8(), "a");
}

TEST(CorrectFileNameUnique, LongNamesStayWithinTheLimitWithTheirNumber) {
    const TemporaryDirectory directory;
    const std::string name(300, 'a');
    const std::string first = fileNameFor(name.c_str(), directory.directory());
    writeBytes(directory.file((first + ".proj").c_str()), "");
    EXPECT_EQ(fileNameFor(name.c_str(), directory.directory()), std::string(233, 'a') + "_1");
}

TEST(CorrectFileNameUnique, EveryHostileNameGivesAFileOfItsOwnInTheDirectory) {
    const TemporaryDirectory directory;
    const std::vector<std::string> names = {"../../etc/passwd",
                                            "CON",
                                            "a/b",
                                            "",
                                            "x\ty",
                                            "x\ry",
                                            std::string(300, 'n'),
                                            "A",
                                            "a",
                                            "..",
                                            ".",
                                            "/",
                                            "nul.",
                                            " "};
    for (const std::string& name : names) {
        TQString fileName(name.c_str());
        correctFileNameUnique(directory.directory(), fileName, "proj");
        writeBytes(tq_createFilePath(directory.directory(), fileName, "proj"), name);
    }
    EXPECT_EQ(directory.entries().size(), names.size());
}

} // namespace
