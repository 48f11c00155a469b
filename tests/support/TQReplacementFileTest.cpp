#include "support/TQReplacementFile.h"
#include "support/TQPlatform.h"
#include "testing/ProcessState.h"
#include "testing/Synchronizations.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sys/stat.h>
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
    EXPECT_FALSE(file.open(TQString()));
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

TEST(TQReplacementFile, TheTargetOfALinkThatLeadsNowhereIsMade) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("real/other.txt"), "");
    std::filesystem::create_symlink("second", tq_filesystemPath(directory.file("first")));
    std::filesystem::create_symlink("real/a.txt", tq_filesystemPath(directory.file("second")));
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("first")));
    EXPECT_TRUE(file.write("new"));
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(std::filesystem::is_symlink(tq_filesystemPath(directory.file("first"))));
    EXPECT_TRUE(std::filesystem::is_symlink(tq_filesystemPath(directory.file("second"))));
    EXPECT_EQ(readBytes(directory.file("real/a.txt")), "new");
}

TEST(TQReplacementFile, LinksThatLeadToThemselvesAreNoTarget) {
    const TemporaryDirectory directory;
    std::filesystem::create_symlink("loop", tq_filesystemPath(directory.file("loop")));
    TQReplacementFile file;
    EXPECT_FALSE(file.open(directory.file("loop")));
    EXPECT_EQ(file.error(), std::errc::too_many_symbolic_link_levels);
}

TEST(TQReplacementFile, APathNeedNotBeText) {
    const TemporaryDirectory directory;
    const std::filesystem::path path = tq_filesystemPath(directory.directory()) / "m\xE9.svg";
    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.write("text"));
    EXPECT_TRUE(file.commit());
    EXPECT_TRUE(std::filesystem::exists(path));
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

TEST(TQReplacementFile, LeftoversAreInNobodysWay) {
    const TemporaryDirectory directory;
    for (int number = 0; number < 1000; ++number) {
        writeBytes(directory.file(("tqfile-" + std::to_string(number) + ".tmp").c_str()), "left behind");
    }
    TQReplacementFile file;
    ASSERT_TRUE(file.open(directory.file("a.txt")));
    EXPECT_TRUE(file.write("text"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(readBytes(directory.file("a.txt")), "text");
    EXPECT_EQ(readBytes(directory.file("tqfile-0.tmp")), "left behind");
    EXPECT_EQ(directory.entries().size(), 1001U);
}

TEST(TQReplacementFile, TemporaryNamesHoldTheProcessAndARandomNumber) {
    const TemporaryDirectory directory;
    std::set<std::string> names;
    for (int time = 0; time < 10; ++time) {
        TQReplacementFile file;
        ASSERT_TRUE(file.open(directory.file("a.txt")));
        names.merge(directory.entries());
    }
    EXPECT_GT(names.size(), 1U);
    for (const std::string& name : names) {
        EXPECT_TRUE(name.starts_with("tqfile-" + std::to_string(getpid()) + "-")) << name;
        EXPECT_TRUE(name.ends_with(".tmp")) << name;
    }
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

/// A writable file "a.txt" with the text "old", in a directory that may not be written.
class FileInLockedDirectory {
  public:
    FileInLockedDirectory() {
        using std::filesystem::perms;
        writeBytes(path(), "old");
        std::filesystem::permissions(tq_filesystemPath(path()), perms::all);
        constexpr perms toEnter = perms::owner_exec | perms::group_exec | perms::others_exec;
        std::filesystem::permissions(locked(), toEnter);
    }

    ~FileInLockedDirectory() { std::filesystem::permissions(locked(), std::filesystem::perms::owner_all); }

    FileInLockedDirectory(const FileInLockedDirectory&) = delete;
    FileInLockedDirectory& operator=(const FileInLockedDirectory&) = delete;

    TQString path() const { return _directory.file("locked/a.txt"); }
    std::filesystem::path locked() const { return tq_filesystemPath(_directory.file("locked")); }

  private:
    TemporaryDirectory _directory;
};

TEST(TQReplacementFile, AWritableFileInAProtectedDirectoryIsOverwrittenOnCommit) {
    const FileInLockedDirectory locked;
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser writes everything";
    }
    TQReplacementFile file;
    ASSERT_TRUE(file.open(locked.path())) << file.error().message();
    EXPECT_TRUE(file.write("dropped"));
    file.abandon();
    EXPECT_EQ(readBytes(locked.path()), "old");

    ASSERT_TRUE(file.open(locked.path()));
    EXPECT_TRUE(file.write("new "));
    EXPECT_TRUE(file.write("text"));
    EXPECT_EQ(readBytes(locked.path()), "old");
    EXPECT_TRUE(file.commit());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(readBytes(locked.path()), "new text");
}

TEST(TQReplacementFile, AnErrorTellsTheSystemsReason) {
    const TemporaryDirectory directory;
    TQReplacementFile file;
    EXPECT_FALSE(file.open(TQString()));
    EXPECT_EQ(file.error(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(file.open(directory.directory()));
    EXPECT_EQ(file.error(), std::errc::is_a_directory);
    EXPECT_FALSE(file.open(directory.file("missing/a.txt")));
    EXPECT_EQ(file.error(), std::errc::no_such_file_or_directory);
    ASSERT_TRUE(file.open(directory.file("a")));
    EXPECT_FALSE(file.error());
    writeBytes(directory.file("a/inside"), "");
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(file.error(), std::errc::is_a_directory);
    const FileInLockedDirectory locked;
    const OrdinaryUser user;
    if (user.isOrdinary()) {
        EXPECT_FALSE(file.open(locked.locked() / "new.txt"));
        EXPECT_EQ(file.error(), std::errc::permission_denied);
    }
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
        EXPECT_EQ(file.error(), std::errc::file_too_large);
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

/// Writes files in another process and ends it by a signal, which the process handles as a command does.
int statusOfProcessEndedBy(int signal, const TemporaryDirectory& directory) {
    const pid_t child = fork();
    if (child == 0) {
        tq_callOnTermination(&TQReplacementFile::removeTemporaryFiles);
        TQReplacementFile one;
        TQReplacementFile two;
        const bool isWritten = one.open(directory.file("a.txt")) && one.write("half of the new te") &&
                               two.open(directory.file("b.txt")) && two.write("half");
        raise(isWritten ? signal : SIGKILL);
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

TEST(TQReplacementFile, AProcessEndedByASignalLeavesNothingBehind) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const TemporaryDirectory directory;
        writeBytes(directory.file("a.txt"), "old");
        const int status = statusOfProcessEndedBy(signal, directory);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(directory.entries(), Entries{"a.txt"});
        EXPECT_EQ(readBytes(directory.file("a.txt")), "old");
    }
}

TEST(TQReplacementFile, ASignalThatTheProcessWasToldToIgnoreStaysIgnored) {
    void (*const before)(int) = std::signal(SIGHUP, SIG_IGN);
    const TemporaryDirectory directory;
    const int status = statusOfProcessEndedBy(SIGHUP, directory);
    std::signal(SIGHUP, before);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(TQReplacementFile, MoreFilesThanAHandlerKnowsAreWritten) {
    const TemporaryDirectory directory;
    std::vector<std::unique_ptr<TQReplacementFile>> files;
    for (int number = 0; number < 40; ++number) {
        files.push_back(std::make_unique<TQReplacementFile>());
        ASSERT_TRUE(files.back()->open(directory.file(std::to_string(number).c_str())));
    }
    for (const auto& file : files) {
        EXPECT_TRUE(file->commit());
    }
    EXPECT_EQ(directory.entries().size(), files.size());
}
#endif

#ifdef __linux__
/// What was handed to the storage device, and what a watched file held at that moment.
struct Synchronization {
    bool isOfDirectory;
    std::string watched;

    bool operator==(const Synchronization&) const = default;
};

TEST(TQReplacementFile, TheFileReachesTheDeviceBeforeItIsRenamedAndTheDirectoryAfter) {
    const TemporaryDirectory directory;
    const TQString path = directory.file("a.txt");
    writeBytes(path, "old");
    TQReplacementFile file;
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.write("new"));
    std::vector<Synchronization> seen;
    const Synchronizations synchronizations([&](int descriptor) {
        struct stat status {};
        fstat(descriptor, &status);
        seen.push_back({S_ISDIR(status.st_mode), readBytes(path)});
    });
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(seen, (std::vector<Synchronization>{{false, "old"}, {true, "new"}}));
}

TEST(TQReplacementFile, ADeviceIsWrittenDirectly) {
    TQReplacementFile file;
    ASSERT_TRUE(file.open(TQString("/dev/null")));
    EXPECT_TRUE(file.write("gone"));
    EXPECT_TRUE(file.commit());
    EXPECT_FALSE(std::filesystem::is_regular_file("/dev/null"));

    ASSERT_TRUE(file.open(TQString("/dev/full")));
    EXPECT_FALSE(file.write("no room"));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(file.error(), std::errc::no_space_on_device);
}
#endif

} // namespace
