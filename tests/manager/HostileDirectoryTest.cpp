#include "manager/TQProjMgr.h"
#include "testing/RandomNumbers.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

/// A directory of projections with one good file, and what a test puts beside it.
struct HostileDirectory {
    TemporaryDirectory directory;
    CapturedMessages messages;
    TQProjMgr manager{false};

    HostileDirectory() { directory.fileWith("good.proj", mercatorFile("Good")); }

    void load() { manager.loadProjectionFromDirectory(directory.directory(), false, 0); }

    /// The path of a file, as a message ends.
    std::string unreadable(const char* file) const {
        return "TQProjMgr::createProjectionFromPath: unable to read projection file: " +
               directory.file(file).utf8();
    }
};

} // namespace

TEST(HostileDirectory, DirectoriesAndLinksInCirclesAreNoFiles) {
    HostileDirectory test;
    std::filesystem::create_directory(test.directory.path() / "a.proj");
    std::filesystem::create_symlink("c.proj", test.directory.path() / "b.proj");
    std::filesystem::create_symlink("b.proj", test.directory.path() / "c.proj");
    std::filesystem::create_symlink("nowhere", test.directory.path() / "d.proj");
    std::filesystem::create_directory_symlink(test.directory.path(), test.directory.path() / "e.proj");
    test.load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Good"));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(HostileDirectory, EmptyFilesAreNoProjections) {
    HostileDirectory test;
    test.directory.fileWith("a.proj", "");
    test.directory.fileWith("b.proj", "\n");
    test.load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Good"));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

#ifndef _WIN32
TEST(HostileDirectory, AFileWhoseNameIsNoTextIsReadAsTheOthersAre) {
    HostileDirectory test;
    std::ofstream(test.directory.path() / "caf\xE9.proj") << mercatorFile("Coffee");
    test.load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Coffee", "Good"));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}
#endif

#ifndef _WIN32
TEST(HostileDirectory, FilesThatMayNotBeReadAreLeftOut) {
    HostileDirectory test;
    const TQString path = test.directory.fileWith("a.proj", mercatorFile("Secret"));
    std::filesystem::permissions(tq_filesystemPath(path), std::filesystem::perms::none);
    std::filesystem::permissions(test.directory.path(), std::filesystem::perms::all);
    const OrdinaryUser ordinary;
    if (!ordinary.isOrdinary()) {
        GTEST_SKIP() << "the superuser may read everything";
    }
    test.load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Good"));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}
#endif

// A gigabyte of NUL takes no room on the disk.
TEST(HostileDirectory, AFileOfOneEndlessLineIsNoProjection) {
    HostileDirectory test;
    for (const char* file : {"a.proj", "z.proj"}) {
        const TQString path =
            test.directory.fileWith(file, *file == 'a' ? "" : "TQFile v1\n5\nTQPrMercator v1\n");
        std::filesystem::resize_file(tq_filesystemPath(path), std::uintmax_t{1} << 30);
    }
    test.load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Good"));
    EXPECT_THAT(test.messages.lines(), ElementsAre(test.unreadable("z.proj")));
}

namespace {

/// A directory of files that begin with something and go on with binary noise.
struct NoisyDirectory : HostileDirectory {
    static constexpr int fileCount = 100;

    explicit NoisyDirectory(const std::string& beginning) {
        RandomNumbers random(11);
        for (int file = 0; file < fileCount; ++file) {
            std::string bytes = beginning;
            for (int byte = 0; byte < 2000; ++byte) {
                bytes += static_cast<char>(static_cast<int>(random.between(0.0, 256.0)));
            }
            directory.fileWith(name(file), bytes);
        }
        load();
        EXPECT_THAT(namesIn(manager), ElementsAre("Good"));
    }

    static std::string name(int file) { return "noise" + std::to_string(file) + ".proj"; }
};

} // namespace

TEST(HostileDirectory, BinaryNoiseIsNoProjection) {
    const NoisyDirectory test("");
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(HostileDirectory, BinaryNoiseBehindTheVersionIsReportedOnce) {
    const NoisyDirectory test("TQFile v1\n");
    EXPECT_THAT(test.messages.lines(), SizeIs(NoisyDirectory::fileCount));
    EXPECT_THAT(test.messages.lines(), Each(StartsWith("TQProjMgr::createProjectionFromPath: ")));
}

TEST(HostileDirectory, BinaryNoiseInAProjectionsTextIsReportedOnceWithThePath) {
    const NoisyDirectory test("TQFile v1\n5\nTQPrMercator v1\n");
    std::vector<std::string> expected;
    for (int file = 0; file < NoisyDirectory::fileCount; ++file) {
        expected.push_back(test.unreadable(NoisyDirectory::name(file).c_str()));
    }
    EXPECT_THAT(test.messages.lines(), testing::UnorderedElementsAreArray(expected));
}

TEST(HostileDirectory, NamesMayHoldAnythingAndBeLong) {
    HostileDirectory test;
    const std::string longName(4000, 'n');
    const std::string longest(5000, 'm');
    test.directory.fileWith("1.proj", mercatorFile(longName));
    test.directory.fileWith("2.proj", mercatorFile("../../up/and/away"));
    test.directory.fileWith("3.proj", mercatorFile("%s%n%d"));
    test.directory.fileWith("4.proj", mercatorFile(longest));
    test.directory.fileWith("5.proj", mercatorFile(""));
    test.load();
    EXPECT_THAT(namesIn(test.manager),
                ElementsAre("", "%s%n%d", "../../up/and/away", "Good", longest.substr(0, 4096), longName));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(HostileDirectory, AConflictOfAHostileNameIsShownAsItIs) {
    HostileDirectory test;
    CapturedPanels panels;
    test.directory.fileWith("1.proj", mercatorFile("%s%n", 1.0));
    test.directory.fileWith("2.proj", mercatorFile("%s%n", 2.0));
    test.manager.loadProjectionFromDirectory(test.directory.directory(), true, 0);
    ASSERT_THAT(panels.shown(), SizeIs(1));
    EXPECT_NE(panels.shown().front().find("%s%n"), std::string::npos);
}
