#include "support/TQFile.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#endif

namespace {

using Lines = std::vector<std::string>;

#ifdef _WIN32
const std::string lineEnd = "\r\n";
#else
const std::string lineEnd = "\n";
#endif

class TQFileTest : public testing::Test {
  protected:
    TQString path() const { return _directory.file("a.txt"); }
    void contain(std::string_view bytes) const { writeBytes(path(), bytes); }
    std::string content() const { return readBytes(path()); }
    const TemporaryDirectory& directory() const { return _directory; }

    /// All lines of a file with the given bytes.
    Lines linesOf(std::string_view bytes) const {
        contain(bytes);
        TQFile file(path());
        EXPECT_EQ(file.open(TQFile::Read), 0);
        Lines lines;
        for (TQString line; file.readLine(line) == 0;) {
            lines.push_back(line.utf8());
        }
        return lines;
    }

    /// The result of reading a block version from a line, and the version if it is 0.
    std::pair<int, int> blockVersionOf(std::string_view line) const {
        contain(line);
        TQFile file(path());
        EXPECT_EQ(file.open(TQFile::Read), 0);
        file.setBlockVersion(99);
        const int result = file.readBlockVersion();
        return {result, file.blockVersion()};
    }

  private:
    TemporaryDirectory _directory;
};

// ---- Lines

TEST_F(TQFileTest, LinesEndInLineFeedWithOrWithoutReturn) {
    EXPECT_EQ(linesOf("one\ntwo\r\nthree\n"), (Lines{"one", "two", "three"}));
    EXPECT_EQ(linesOf(""), Lines{});
    EXPECT_EQ(linesOf("\n\r\n\n"), (Lines{"", "", ""}));
}

TEST_F(TQFileTest, ALastLineWithoutEndCounts) {
    EXPECT_EQ(linesOf("one\ntwo"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf("one"), Lines{"one"});
}

TEST_F(TQFileTest, OneLineEndIsStrippedAndNoBlanks) {
    EXPECT_EQ(linesOf("  one \t\n"), Lines{"  one \t"});
    EXPECT_EQ(linesOf("one\r\r\ntwo\rthree\nfour\r"), (Lines{"one\r", "two\rthree", "four\r"}));
}

TEST_F(TQFileTest, AMarkAtTheStartIsSkipped) {
    EXPECT_EQ(linesOf("\xEF\xBB\xBFone\n\xEF\xBB\xBFtwo"), (Lines{"one", "\xEF\xBB\xBFtwo"}));
}

TEST_F(TQFileTest, ANulReadsAsABlank) {
    EXPECT_EQ(linesOf(std::string_view("a\0b\nc", 5)), (Lines{"a b", "c"}));
}

TEST_F(TQFileTest, ALineEndIsKeptOnDemand) {
    contain("one\r\ntwo");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    EXPECT_EQ(file.readLine(line, 4096, false), 0);
    EXPECT_EQ(line.utf8(), "one\n");
    EXPECT_EQ(file.readLine(line, 4096, false), 0);
    EXPECT_EQ(line.utf8(), "two");
}

TEST_F(TQFileTest, WhatALineHasBeyondTheLimitIsDropped) {
    const std::string longLine(5000, 'x');
    EXPECT_EQ(linesOf(longLine + "\nnext\n"), (Lines{longLine.substr(0, 4096), "next"}));
    EXPECT_EQ(linesOf("\xEF\xBB\xBF" + longLine + "\r\nnext"), (Lines{longLine.substr(0, 4096), "next"}));
}

TEST_F(TQFileTest, ALineOfExactlyTheLimitIsWhole) {
    const std::string full(4096, 'x');
    EXPECT_EQ(linesOf(full + "\r\n" + full + "\nnext"), (Lines{full, full, "next"}));
}

TEST_F(TQFileTest, TheLimitCountsCharacters) {
    contain("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x97\xBAx\nnext\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    EXPECT_EQ(file.readLine(line, 2), 0);
    EXPECT_EQ(line.utf8(), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(file.readLine(line, 2), 0);
    EXPECT_EQ(line.utf8(), "ne");
}

TEST_F(TQFileTest, TheLimitHoldsForWhatIsNoUtf8) {
    contain(std::string(100, '\x80') + "\nx" + std::string(100, '\xBF') + "\nnext");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    EXPECT_EQ(file.readLine(line, 10), 0);
    EXPECT_EQ(line.length(), 10);
    EXPECT_EQ(file.readLine(line, 10), 0);
    EXPECT_EQ(line.length(), 10);
    EXPECT_EQ(file.readLine(line, 10), 0);
    EXPECT_EQ(line.utf8(), "next");
}

TEST_F(TQFileTest, ALimitOfNothingStillTakesTheLine) {
    contain("one\ntwo\nthree");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line("before");
    EXPECT_EQ(file.readLine(line, 0), 0);
    EXPECT_EQ(line.utf8(), "");
    EXPECT_EQ(file.readLine(line, -1), 0);
    EXPECT_EQ(line.utf8(), "");
    EXPECT_EQ(file.readLine(line, INT_MAX), 0);
    EXPECT_EQ(line.utf8(), "three");
}

TEST_F(TQFileTest, LinesAreNumberedFromOne) {
    contain("one\ntwo\n");
    TQFile file(path());
    EXPECT_EQ(file.lineNumber(), 0);
    file.open(TQFile::Read);
    EXPECT_EQ(file.lineNumber(), 0);
    TQString line;
    file.readLine(line);
    EXPECT_EQ(file.lineNumber(), 1);
    file.readLine(line);
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(file.lineNumber(), 2) << "there is no third";
    file.close();
    EXPECT_EQ(file.lineNumber(), 2);
    file.open(TQFile::Read);
    EXPECT_EQ(file.lineNumber(), 0);
}

TEST_F(TQFileTest, ALineOfNumbersIsReadWhateverItHolds) {
    struct {
        const char* text;
        int count;
        bool isMalformed;
    } const kCases[] = {
        {"1.5", 1, false}, {" -2e3\t", 1, false}, {"inf", 1, false},  {"1 2  3", 3, false},
        {"", 1, true},     {"x", 1, true},        {"1.5 m", 1, true}, {"1,5", 1, true},
        {"1 2", 1, true},  {"1 2", 3, true},      {"1 2 x", 3, true}, {"1 2 3 x", 3, true},
    };
    for (const auto& expected : kCases) {
        contain(std::string("first\n") + expected.text + "\n");
        TQFile file(path());
        file.open(TQFile::Read);
        TQString line;
        file.readLine(line);
        EXPECT_EQ(file.readNumberLine(line, {expected.count}), 0);
        EXPECT_EQ(line.utf8(), expected.text);
        EXPECT_EQ(file.firstMalformedLine(), expected.isMalformed ? 2 : 0) << expected.text;
        EXPECT_EQ(file.readNumberLine(line), 1) << "the end";
    }
}

TEST_F(TQFileTest, TheFirstMalformedLineIsTold) {
    contain("1\nx\ny\n");
    TQFile file(path());
    file.open(TQFile::Read);
    for (TQString line; file.readNumberLine(line) == 0;) {
    }
    EXPECT_EQ(file.firstMalformedLine(), 2);
}

TEST_F(TQFileTest, TheDestinationIsUntouchedAtTheEnd) {
    contain("one");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(line.utf8(), "one");
}

TEST_F(TQFileTest, ReadingAndWritingNeedAFileOpenForIt) {
    contain("one");
    TQFile file(path());
    TQString line;
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(file.writeLine("x"), 1);
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.writeLine("x"), 1);
    EXPECT_EQ(file.close(), 0);
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.readLine(line), 1);
}

// ---- Encodings

TEST_F(TQFileTest, AnInvalidUtf8LineIsReadInTheDefaultEncodingAndKeepsItsText) {
    contain("Z\xC3\xBCrich\ndegr\xDDs\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString utf8;
    TQString other;
    ASSERT_EQ(file.readLine(utf8), 0);
    ASSERT_EQ(file.readLine(other), 0);
    EXPECT_EQ(utf8.encoding(), TQEncodingUTF8);
    EXPECT_EQ(utf8.utf8(), "Z\xC3\xBCrich");
    EXPECT_EQ(other.encoding(), TQEncodingDefault);
    EXPECT_EQ(other.utf8(), "degr\xC3\xA9s");
    EXPECT_EQ(std::string(other.charBuffer()), "degr\xDDs");
    EXPECT_EQ(file.close(), 0);

    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine(other), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "degr\xC3\xA9s" + lineEnd);

    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString again;
    ASSERT_EQ(file.readLine(again), 0);
    EXPECT_EQ(again, other);
}

TEST_F(TQFileTest, ALineIsConvertedToTheDefaultEncodingOnDemand) {
    contain("degr\xC3\xA9s\n\xE2\x82\xAC\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    ASSERT_EQ(file.readLine(line, 4096, true, TQEncodingDefault), 0);
    EXPECT_EQ(std::string(line.charBuffer()), "degr\xDDs");
    ASSERT_EQ(file.readLine(line, 4096, true, TQEncodingDefault), 0);
    EXPECT_EQ(line.encoding(), TQEncodingUTF8);
    EXPECT_EQ(line.utf8(), "\xE2\x82\xAC");
}

TEST_F(TQFileTest, AFileInTheDefaultEncodingReadsBackAsTheSameText) {
    // In the default encoding the fourth text is C3 89, which would read back as the third.
    const Lines texts = {"plain", "degr\xC3\xA9s", "\xC3\x89", "\xCB\x86\xC3\x8A", "\xE2\x82\xAC"};
    TQFile file(path(), TQEncodingDefault);
    ASSERT_EQ(file.open(TQFile::Write), 0);
    for (const std::string& text : texts) {
        EXPECT_EQ(file.writeLine(text.c_str()), 0);
    }
    EXPECT_EQ(file.close(), 0);
    EXPECT_TRUE(content().starts_with("plain" + lineEnd + "degr\xDDs" + lineEnd));
    EXPECT_EQ(linesOf(content()), texts);
}

// ---- Writing

TEST_F(TQFileTest, LinesAreWrittenWithTheirEnds) {
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeText("one "), 0);
    EXPECT_EQ(file.writeLine("two"), 0);
    EXPECT_EQ(file.writeLine(""), 0);
    EXPECT_EQ(file.writeText("end"), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "one two" + lineEnd + lineEnd + "end");
}

TEST_F(TQFileTest, NoTextBreaksTheLine) {
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("a\nb\r\nc\rd\te"), 0);
    EXPECT_EQ(file.writeText("x\ny"), 0);
    EXPECT_EQ(file.writeLine(TQString(std::string_view("\0z", 2), TQEncodingUTF8)), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "a b  c d\te" + lineEnd + "x y z" + lineEnd);
}

TEST_F(TQFileTest, TheOldFileStandsUntilTheNewOneIsClosed) {
    contain("old");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("new"), 0);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "new" + lineEnd);
    EXPECT_EQ(directory().entries(), std::set<std::string>{"a.txt"});
}

TEST_F(TQFileTest, AnAbandonedFileLeavesTheOldOne) {
    contain("old");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("new"), 0);
    file.abandon();
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(directory().entries(), std::set<std::string>{"a.txt"});
}

TEST_F(TQFileTest, TheDestructorClosesTheFile) {
    {
        TQFile file(path());
        ASSERT_EQ(file.open(TQFile::Write), 0);
        EXPECT_EQ(file.writeLine("new"), 0);
    }
    EXPECT_EQ(content(), "new" + lineEnd);
}

TEST_F(TQFileTest, AnExceptionLeavesTheOldFile) {
    contain("old");
    try {
        TQFile file(path());
        ASSERT_EQ(file.open(TQFile::Write), 0);
        EXPECT_EQ(file.writeLine("half"), 0);
        throw std::runtime_error("in the middle of a file");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(content(), "old");
    }
    EXPECT_EQ(directory().entries(), std::set<std::string>{"a.txt"});
}

// ---- Opening and closing

TEST_F(TQFileTest, OpeningAgainForReadingKeepsThePosition) {
    contain("one\ntwo\nthree");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.utf8(), "two");
}

TEST_F(TQFileTest, OpeningAgainForWritingKeepsWhatIsWritten) {
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("one"), 0);
    EXPECT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("two"), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "one" + lineEnd + "two" + lineEnd);
}

TEST_F(TQFileTest, OpeningInTheOtherModeIsRefused) {
    contain("one\ntwo");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.open(TQFile::Write), 1);
    TQString line;
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.utf8(), "one");
    EXPECT_EQ(file.close(), 0);

    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.open(TQFile::Read), 1);
    EXPECT_EQ(file.writeLine("new"), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "new" + lineEnd);
}

TEST_F(TQFileTest, OpeningAfterClosingStartsAnew) {
    contain("one\ntwo");
    TQFile file(path());
    TQString line;
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(file.open(TQFile::Read), 0);
        EXPECT_EQ(file.readLine(line), 0);
        EXPECT_EQ(line.utf8(), "one");
        EXPECT_EQ(file.close(), 0);
        EXPECT_FALSE(file.isOpen());
    }
    EXPECT_EQ(file.close(), 0);
}

TEST_F(TQFileTest, WhatIsNoFileCannotBeOpened) {
    TQFile none;
    EXPECT_EQ(none.open(TQFile::Read), 1);
    EXPECT_EQ(none.open(TQFile::Write), 1);
    EXPECT_EQ(TQFile(directory().file("missing")).open(TQFile::Read), 1);
    EXPECT_EQ(TQFile(directory().directory()).open(TQFile::Read), 1);
    EXPECT_EQ(TQFile(directory().directory()).open(TQFile::Write), 1);
    contain("x");
    EXPECT_EQ(TQFile(path()).open(2), 1);
    EXPECT_EQ(TQFile(path()).open(-1), 1);
    EXPECT_EQ(content(), "x");
}

TEST_F(TQFileTest, ANewPathCountsFromTheNextOpening) {
    writeBytes(directory().file("b.txt"), "other");
    contain("one\ntwo");
    TQFile file;
    file.setPath(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    file.setPath(directory().file("b.txt"));
    TQString line;
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.utf8(), "one");
    EXPECT_EQ(file.close(), 0);
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.utf8(), "other");
    EXPECT_EQ(file.path(), directory().file("b.txt"));
}

#ifndef _WIN32
TEST_F(TQFileTest, AnUnreadableFileCannotBeOpened) {
    contain("secret");
    std::filesystem::permissions(tq_filesystemPath(path()), std::filesystem::perms::none);
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser reads everything";
    }
    EXPECT_EQ(TQFile(path()).open(TQFile::Read), 1);
}

TEST_F(TQFileTest, AReadOnlyDirectoryTakesNoNewFile) {
    contain("old");
    const std::filesystem::path parent = tq_filesystemPath(directory().directory());
    using std::filesystem::perms;
    std::filesystem::permissions(
        parent, perms::all & ~(perms::owner_write | perms::group_write | perms::others_write));
    {
        const OrdinaryUser user;
        if (!user.isOrdinary()) {
            GTEST_SKIP() << "the superuser writes everywhere";
        }
        TQFile file(directory().file("new.txt"));
        EXPECT_EQ(file.open(TQFile::Write), 1);
        EXPECT_EQ(file.error(), std::errc::permission_denied);
    }
    std::filesystem::permissions(parent, perms::owner_all);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(directory().entries(), std::set<std::string>{"a.txt"});
}

TEST_F(TQFileTest, AFullDiskShowsAtTheLineThatFailsAndLeavesTheOldFile) {
    contain("old");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);

    const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limitBefore{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limitBefore), 0);
    const rlimit limit{16, limitBefore.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    const int first = file.writeLine("0123456789");
    const int second = file.writeLine("0123456789");
    setrlimit(RLIMIT_FSIZE, &limitBefore);
    std::signal(SIGXFSZ, handlerBefore);

    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(file.writeLine("x"), 1);
    EXPECT_EQ(file.writeText("x"), 1);
    EXPECT_EQ(file.writeBlockVersion(), 1);
    EXPECT_EQ(file.writeFileVersion(), 1);
    EXPECT_EQ(file.close(), 1);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(directory().entries(), std::set<std::string>{"a.txt"});
}

TEST_F(TQFileTest, AProcessKilledHalfWayLeavesTheOldFile) {
    contain("old");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        TQFile file(path());
        const int result = file.open(TQFile::Write) + file.writeLine("half of it");
        _exit(result);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(content(), "old");
}
#endif

// ---- Versions

TEST_F(TQFileTest, HeadersAreWrittenAsDocumented) {
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Write), 0);
    file.setFileVersion(1);
    EXPECT_EQ(file.writeFileVersion(), 0);
    EXPECT_EQ(file.writeText("TQEllipsoid v"), 0);
    file.setBlockVersion(2);
    EXPECT_EQ(file.writeBlockVersion(), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_EQ(content(), "TQFile v1" + lineEnd + "TQEllipsoid v2" + lineEnd);
}

TEST_F(TQFileTest, HeadersAreReadBack) {
    contain("TQFile v1\nTQEllipsoid v2\nname\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.readFileVersion(), 0);
    EXPECT_EQ(file.fileVersion(), 1);
    EXPECT_EQ(file.readBlockVersion(), 0);
    EXPECT_EQ(file.blockVersion(), 2);
    TQString line;
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.utf8(), "name");
    EXPECT_EQ(file.readBlockVersion(), 1);
    EXPECT_EQ(file.blockVersion(), 2);
}

TEST_F(TQFileTest, ABlockVersionIsTheNumberBehindTheLastV) {
    using Result = std::pair<int, int>;
    EXPECT_EQ(blockVersionOf("whatever v3"), Result(0, 3));
    EXPECT_EQ(blockVersionOf("v12"), Result(0, 12));
    EXPECT_EQ(blockVersionOf("TQFile v0 \t\r\n"), Result(0, 0));
    EXPECT_EQ(blockVersionOf("TQFile v-1\n"), Result(0, -1));
    EXPECT_EQ(blockVersionOf("TQEllipsoid v"), Result(1, 99));
    EXPECT_EQ(blockVersionOf("TQEllipsoid 2"), Result(1, 99));
    EXPECT_EQ(blockVersionOf("TQEllipsoid v2x"), Result(1, 99));
    EXPECT_EQ(blockVersionOf("TQEllipsoid v2 v"), Result(1, 99));
    EXPECT_EQ(blockVersionOf("TQEllipsoid v99999999999"), Result(1, 99));
    EXPECT_EQ(blockVersionOf(""), Result(1, 99));
}

TEST_F(TQFileTest, AnythingElseIsNoFileVersion) {
    for (const char* header : {"", "TQFile v", "TQFile vx", "TQEllipsoid v1", "TQFile 1", "tqfile v1"}) {
        contain(header);
        TQFile file(path());
        file.setFileVersion(99);
        ASSERT_EQ(file.open(TQFile::Read), 0);
        EXPECT_EQ(file.readFileVersion(), 1) << header;
        EXPECT_EQ(file.fileVersion(), 99);
    }
}

// ---- Tables

const TQString* textIn(const TQStrHashTbl& table, const char* key) {
    return static_cast<const TQString*>(table.getElement(key));
}

TEST_F(TQFileTest, ATableHoldsTwoColumns) {
    contain("North America\tAmerica\tx\r\nUSA\tUnited States\nno column\n\nUSA\tagain\n\xC3\xA9\t\xC3\xA8");
    TQFile file(path());
    bool ok = false;
    const std::unique_ptr<TQStrHashTbl> table = file.newStringTableFromContents(0, 1, ok);
    ASSERT_TRUE(ok);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(table->count(), 3);
    ASSERT_TRUE(table->isKey("North America"));
    EXPECT_EQ(textIn(*table, "North America")->utf8(), "America");
    EXPECT_EQ(textIn(*table, "USA")->utf8(), "United States");
    EXPECT_EQ(textIn(*table, "\xC3\xA9")->utf8(), "\xC3\xA8");
    table->deleteAllValuesAsTQString();
}

TEST_F(TQFileTest, ATableTakesAnyColumns) {
    contain("a\tb\tc\nd\te\n");
    TQFile file(path());
    bool ok = false;
    const std::unique_ptr<TQStrHashTbl> table = file.newStringTableFromContents(2, 0, ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(table->count(), 1);
    ASSERT_TRUE(table->isKey("c"));
    EXPECT_EQ(textIn(*table, "c")->utf8(), "a");
    table->deleteAllValuesAsTQString();
    EXPECT_EQ(file.newStringTableFromContents(-1, 0, ok)->count(), 0);
    EXPECT_TRUE(ok);
}

TEST_F(TQFileTest, ATableIsReadFromThePositionOfAnOpenFile) {
    contain("TQFile v1\na\tb\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    ASSERT_EQ(file.readFileVersion(), 0);
    bool ok = false;
    const std::unique_ptr<TQStrHashTbl> table = file.newStringTableFromContents(0, 1, ok);
    ASSERT_TRUE(ok);
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(table->count(), 1);
    table->deleteAllValuesAsTQString();
}

TEST_F(TQFileTest, ThereIsNoTableWithoutAFile) {
    TQFile file(directory().file("missing"));
    bool ok = true;
    EXPECT_EQ(file.newStringTableFromContents(0, 1, ok), nullptr);
    EXPECT_FALSE(ok);

    TQFile written(path());
    ASSERT_EQ(written.open(TQFile::Write), 0);
    ok = true;
    EXPECT_EQ(written.newStringTableFromContents(0, 1, ok), nullptr);
    EXPECT_FALSE(ok);
}

TEST_F(TQFileTest, AnErrorTellsTheSystemsReason) {
    TQFile missing(directory().file("missing/a.txt"));
    EXPECT_EQ(missing.open(TQFile::Read), 1);
    EXPECT_EQ(missing.error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(missing.open(TQFile::Write), 1);
    EXPECT_EQ(missing.error(), std::errc::no_such_file_or_directory);
    TQFile itsDirectory(directory().directory());
    EXPECT_EQ(itsDirectory.open(TQFile::Read), 1);
    EXPECT_EQ(itsDirectory.error(), std::errc::is_a_directory);

    contain("one line\n");
    TQFile file(path());
    TQString line;
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(file.error(), std::errc::bad_file_descriptor);
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_FALSE(file.error());
    EXPECT_EQ(file.writeLine(line), 1);
    EXPECT_EQ(file.error(), std::errc::bad_file_descriptor);
    EXPECT_EQ(file.open(TQFile::Write), 1);
    EXPECT_EQ(file.error(), std::errc::operation_not_permitted);
    EXPECT_EQ(file.readLine(line), 0);
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_FALSE(file.error()) << "the end of the file is no error";
}

#ifdef __linux__
TEST_F(TQFileTest, AFullDeviceIsTheReasonOfEveryCallThatFails) {
    TQFile file("/dev/full");
    ASSERT_EQ(file.open(TQFile::Write), 0);
    EXPECT_EQ(file.writeLine("no room"), 1);
    EXPECT_EQ(file.error(), std::errc::no_space_on_device);
    EXPECT_EQ(file.close(), 1);
    EXPECT_EQ(file.error(), std::errc::no_space_on_device);
    EXPECT_EQ(file.error().message(), "No space left on device");
}

TEST_F(TQFileTest, AReadErrorIsNoEndOfFile) {
    // Nothing is mapped at the beginning of a process's memory, so that reading there fails.
    TQFile file("/proc/self/mem");
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line("before");
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(line.utf8(), "before");
    EXPECT_EQ(file.error(), std::errc::io_error);
    EXPECT_EQ(file.close(), 0);
    bool ok = true;
    EXPECT_EQ(file.newStringTableFromContents(0, 1, ok), nullptr);
    EXPECT_FALSE(ok);
    EXPECT_FALSE(file.isOpen());
}
#endif

} // namespace

#ifndef _WIN32
TEST_F(TQFileTest, TheFirstLineThatIsLongerThanTheLimitIsKnown) {
    contain("\xEF\xBB\xBF" + std::string(4096, 'x') + "\nshort\n" + std::string(4097, 'x') + "\n");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    for (TQString line; file.readLine(line) == 0 && file.lineNumber() < 2;) {
    }
    EXPECT_EQ(file.firstCutLine(), 0);
    TQString line;
    ASSERT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line.length(), 4096);
    EXPECT_EQ(file.firstCutLine(), 3);
}

TEST_F(TQFileTest, TheFirstReasonOfAReaderIsKept) {
    contain("x");
    TQFile file(path());
    ASSERT_EQ(file.open(TQFile::Read), 0);
    EXPECT_EQ(file.problem(), "");
    EXPECT_EQ(file.failReading(7, "the inner reason"), 7);
    EXPECT_EQ(file.failReading(8, "the outer reason"), 8);
    EXPECT_EQ(file.problem(), "the inner reason");
}

// 0.1 is 0.1000000000000000055511 in binary (IEEE 754 binary64).
TEST_F(TQFileTest, NumbersAreWrittenInTheirFormatOrExactly) {
    TQFile file(path());
    EXPECT_EQ(file.numberText(0.1, "%4.10f"), "0.1000000000");
    file.setWritesNumbersExactly(true);
    EXPECT_EQ(file.numberText(0.1, "%4.10f"), "0.10000000000000001");
    EXPECT_EQ(file.numberText(6600000.0, "%4.10f"), "6600000");
}

TEST(TQFile, ALineWithoutEndCannotBeRead) {
    TQFile file(TQString("/dev/zero"));
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line("untouched");
    EXPECT_EQ(file.readLine(line), 1);
    EXPECT_EQ(line, "untouched");
}
#endif
