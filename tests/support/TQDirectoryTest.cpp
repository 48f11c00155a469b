#include "support/TQDirectory.h"

#include "support/TQPath.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

std::vector<std::string> namesIn(const TQOpenDir& listing) {
    std::vector<std::string> names;
    for (const TQString& name : listing) {
        names.push_back(name.utf8());
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(TQOpenDir, ListsRegularFilesSortedByTheirBytes) {
    const TemporaryDirectory directory;
    for (const char* name : {"b", "a10", "a2", "B", "\xC3\xA9", "z"}) {
        writeBytes(directory.file(name), "");
    }
    ASSERT_EQ(tq_mkdir(directory.file("folder")), 0);

    const TQOpenDir listing(directory.directory());
    EXPECT_TRUE(listing.isListed());
    EXPECT_EQ(namesIn(listing), (Names{"B", "a10", "a2", "b", "z", "\xC3\xA9"}));
    EXPECT_EQ(listing.count(), 6);
    EXPECT_EQ(listing.names().front().utf8(), "B");
}

TEST(TQOpenDir, ComparesTheExtensionExactly) {
    const TemporaryDirectory directory;
    for (const char* name : {"a.proj", "b.PROJ", "c.proj2", "d.proj.tmp", "proj", ".proj", "e.old.proj"}) {
        writeBytes(directory.file(name), "");
    }
    ASSERT_EQ(tq_mkdir(directory.file("folder.proj")), 0);
    EXPECT_EQ(namesIn(TQOpenDir(directory.directory(), "proj")), (Names{"a.proj", "e.old.proj"}));
}

TEST(TQOpenDir, AnEmptyDirectoryIsListed) {
    const TemporaryDirectory directory;
    const TQOpenDir listing(directory.directory(), "proj");
    EXPECT_TRUE(listing.isListed());
    EXPECT_EQ(listing.count(), 0);
}

TEST(TQOpenDir, WhatIsNoDirectoryIsNotListed) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("file"), "");
    EXPECT_FALSE(TQOpenDir(directory.file("missing")).isListed());
    EXPECT_FALSE(TQOpenDir(directory.file("file")).isListed());
    EXPECT_FALSE(TQOpenDir("").isListed());
    EXPECT_EQ(TQOpenDir(directory.file("missing")).count(), 0);
}

TEST(TQOpenDir, TheListingDoesNotChangeWithTheDirectory) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("a.proj"), "");
    const TQOpenDir listing(directory.directory(), "proj");
    writeBytes(directory.file("b.proj"), "");
    std::filesystem::remove(tq_filesystemPath(directory.file("a.proj")));
    EXPECT_EQ(namesIn(listing), Names{"a.proj"});
}

#ifndef _WIN32
TEST(TQOpenDir, LinksCountAsWhatTheyLeadTo) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("file"), "");
    const std::filesystem::path path = tq_filesystemPath(directory.directory());
    std::filesystem::create_symlink("file", path / "good.proj");
    std::filesystem::create_symlink("nothing", path / "broken.proj");
    std::filesystem::create_directory_symlink(".", path / "directory.proj");
    EXPECT_EQ(namesIn(TQOpenDir(directory.directory(), "proj")), Names{"good.proj"});
}

TEST(TQOpenDir, FilesWhoseNamesAreNoTextAreListed) {
    const TemporaryDirectory directory;
    writeBytes(tq_stringFromPath(directory.path() / "m\xE9.proj"), "bytes");
    const TQOpenDir listing(directory.directory(), "proj");
    ASSERT_EQ(listing.count(), 1);
    EXPECT_EQ(readBytes(directory.file(listing.names().front())), "bytes");
}

TEST(TQOpenDir, AnUnreadableDirectoryIsNotListed) {
    const TemporaryDirectory directory;
    writeBytes(directory.file("locked/a.proj"), "");
    const std::filesystem::path locked = tq_filesystemPath(directory.file("locked"));
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    {
        const OrdinaryUser user;
        if (!user.isOrdinary()) {
            GTEST_SKIP() << "the superuser reads everything";
        }
        EXPECT_FALSE(TQOpenDir(directory.file("locked")).isListed());
    }
    std::filesystem::permissions(locked, std::filesystem::perms::owner_all);
}
#endif

} // namespace
