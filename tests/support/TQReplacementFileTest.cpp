#include "support/TQReplacementFile.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#endif

namespace {

using Entries = std::set<std::string>;

TEST(TQReplacementFile, TheTargetChangesOnCommitOnly) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");

    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.write("new "));
    EXPECT_TRUE(file.write("text"));
    EXPECT_EQ(readBytes(path), "old");
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(path), "new text");
    EXPECT_EQ(directory.entries(), Entries{"a.txt"});
    EXPECT_FALSE(file.isOpen());
}

TEST(TQReplacementFile, ANewFileAppearsOnCommitOnly) {
    const TemporaryDirectory directory;
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("a.txt")));
    EXPECT_TRUE(file.write("text"));
    EXPECT_FALSE(directory.entries().contains("a.txt"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(directory.file("a.txt")), "text");
}

TEST(TQReplacementFile, EveryWriteReachesTheSystemAtOnce) {
    const TemporaryDirectory directory;
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("a.txt")));
    EXPECT_TRUE(file.write("text"));
    ASSERT_EQ(directory.entries().size(), 1U);
    EXPECT_EQ(readBytes(directory.file(directory.entries().begin()->c_str())), "text");
}

TEST(TQReplacementFile, AbandonAndDestructorLeaveTheOldFile) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");
    {
        TQReplacementFile file;
        ASSERT_TRUE(file.open(path));
        EXPECT_TRUE(file.write("new"));
        file.abandon();
        EXPECT_FALSE(file.isOpen());
        EXPECT_EQ(directory.entries(), Entries{"a.txt"});
        ASSERT_TRUE(file.open(path));
        EXPECT_TRUE(file.write("new"));
    }
    EXPECT_EQ(readBytes(path), "old");
    EXPECT_EQ(directory.entries(), Entries{"a.txt"});
}

TEST(TQReplacementFile, TwoWritersDoNotMix) {
    const TemporaryDirectory directory;
    TQReplacementFile one;
    TQReplacementFile two;
    ASSERT_TRUE(one.open(directory.file("a.txt")));
    ASSERT_TRUE(two.open(directory.file("a.txt")));
    EXPECT_TRUE(one.write("one"));
    EXPECT_TRUE(two.write("two"));
    EXPECT_TRUE(one.commit());
    EXPECT_EQ(readBytes(directory.file("a.txt")), "one");
    EXPECT_TRUE(two.commit());
    EXPECT_EQ(readBytes(directory.file("a.txt")), "two");
    EXPECT_EQ(directory.entries(), Entries{"a.txt"});
}

TEST(TQReplacementFile, NothingIsWrittenBeforeOpening) {
    TQReplacementFile file;
    EXPECT_FALSE(file.write("x"));
    EXPECT_FALSE(file.commit());
}

TEST(TQReplacementFile, DirectoriesAndMissingDirectoriesAreNoTarget) {
    const TemporaryDirectory directory;
    TQReplacementFile file;
    EXPECT_FALSE(file.open(directory.directory()));
    EXPECT_FALSE(file.open(directory.file("missing/a.txt")));
    EXPECT_FALSE(file.open(""));
    EXPECT_TRUE(directory.entries().empty());
}

TEST(TQReplacementFile, ATargetThatBecameADirectoryFailsTheCommit) {
    const TemporaryDirectory directory;
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("a")));
    writeBytes(directory.file("a/inside"), "");
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(directory.entries(), Entries{"a"});
}

TEST(TQReplacementFile, ALongNameIsWritten) {
    const TemporaryDirectory directory;
    const TQString path = directory.file(std::string(255, 'a').c_str());
    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.write("text"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(path), "text");
}

#ifndef _WIN32
TEST(TQReplacementFile, ALinkKeepsLeadingToTheFile) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("real/a.txt"), "old");
    std::filesystem::create_symlink("real/a.txt", tq_filesystemPath(directory.file("link")));
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("link")));
    EXPECT_TRUE(file.write("new"));
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(std::filesystem::is_symlink(tq_filesystemPath(directory.file("link"))));
    EXPECT_EQ(readBytes(directory.file("real/a.txt")), "new");
}

TEST(TQReplacementFile, TheTargetKeepsItsPermissions) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");
    const auto permissions = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(tq_filesystemPath(path), permissions);
    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(std::filesystem::status(tq_filesystemPath(path)).permissions(), permissions);
}

TEST(TQReplacementFile, AFileThatAppearsUnderTheTemporaryNameIsNotTouched) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("tqfile-0.tmp"), "left behind");
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("a.txt")));
    EXPECT_TRUE(file.write("text"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(directory.file("tqfile-0.tmp")), "left behind");
    EXPECT_EQ(readBytes(directory.file("a.txt")), "text");
}

TEST(TQReplacementFile, GivesUpWhereEveryTemporaryNameIsTaken) {
    const TemporaryDirectory directory;
    for (int number = 0; number < 1000; ++number) {
        writeBytes(directory.file(("tqfile-" + std::to_string(number) + ".tmp").c_str()), "");
    }
    TQReplacementFile file;
    EXPECT_FALSE(file.open(directory.file("a.txt")));
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(directory.entries().size(), 1000U);
}

TEST(TQReplacementFile, WriteProtectedFilesAndDirectoriesAreNoTarget) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("locked/a.txt"), "old");
    writeBytes(directory.file("open/protected.txt"), "old");
    const std::filesystem::path locked = tq_filesystemPath(directory.file("locked"));
    using std::filesystem::perms;
    std::filesystem::permissions(locked, perms::owner_read | perms::owner_exec | perms::others_read |
                                             perms::others_exec);
    std::filesystem::permissions(tq_filesystemPath(directory.file("open")), perms::all);
    std::filesystem::permissions(tq_filesystemPath(directory.file("open/protected.txt")),
                                 perms::owner_read | perms::others_read);
    {
        const OrdinaryUser user;
        if (!user.isOrdinary()) {
            GTEST_SKIP() << "the superuser writes everything";
        }
        TQReplacementFile file;
        EXPECT_FALSE(file.open(directory.file("locked/new.txt")));
        EXPECT_FALSE(file.open(directory.file("open/protected.txt")));
    }
    std::filesystem::permissions(locked, perms::owner_all);
    EXPECT_EQ(readBytes(directory.file("open/protected.txt")), "old");
}

/// While it lives, no file grows beyond a size: what a full disk looks like.
class FullDisk {
  public:
    explicit FullDisk(rlim_t size) : _handlerBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &_limitBefore);
        const rlimit limit{size, _limitBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &_limitBefore);
        std::signal(SIGXFSZ, _handlerBefore);
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit _limitBefore{};
    void (*_handlerBefore)(int);
};

TEST(TQReplacementFile, AFullDiskFailsTheWriteAndLeavesTheOldFile) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");
    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    {
        const FullDisk disk(10);
        EXPECT_TRUE(file.write("12345678"));
        EXPECT_FALSE(file.write("9abc"));
    }
    EXPECT_FALSE(file.write("there is room again"));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(readBytes(path), "old");
    EXPECT_EQ(directory.entries(), Entries{"a.txt"});

    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.write("new"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(path), "new");
}

TEST(TQReplacementFile, AProcessThatDiesLeavesTheOldFile) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        TQReplacementFile file;
        const bool isWritten = file.open(path) && file.write("half of the new te");
        _exit(isWritten ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readBytes(path), "old");
}
#endif

#ifdef __linux__
TEST(TQReplacementFile, ADeviceIsWrittenDirectly) {
    TQReplacementFile file;
    ASSERT_TRUE(file.open("/dev/null"));
    EXPECT_TRUE(file.write("gone"));
    EXPECT_TRUE(file.commit());
    EXPECT_FALSE(std::filesystem::is_regular_file("/dev/null"));

    ASSERT_TRUE(file.open("/dev/full"));
    EXPECT_FALSE(file.write("no room"));
    EXPECT_FALSE(file.commit());
}
#endif

} // namespace
