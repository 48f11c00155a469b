#include "support/TQSharedDirectory.h"

#include "support/TQPath.h"
#include "testing/ProcessState.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

constexpr const char* variable = "TQ_SHARED_DIRECTORY";

TEST(TQSharedDirectory, IsFoundFromThePlaceOfTheLibrary) {
    const SharedDirectory unset("");
    const EnvironmentVariable noVariable(variable, "");
    const std::filesystem::path directory = tq_filesystemPath(TQGetApplicationSharedDirectory());
    EXPECT_TRUE(directory.is_absolute());
    EXPECT_EQ(directory, directory.lexically_normal());
    EXPECT_TRUE(std::filesystem::is_directory(directory / "resProj"));
}

TEST(TQSharedDirectory, TheEnvironmentComesBeforeTheLibrary) {
    const SharedDirectory unset("");
    const EnvironmentVariable set(variable, "/from/the/environment");
    EXPECT_EQ(TQGetApplicationSharedDirectory().utf8(), "/from/the/environment");
}

TEST(TQSharedDirectory, TheSetterComesBeforeTheEnvironment) {
    const EnvironmentVariable set(variable, "/from/the/environment");
    const SharedDirectory chosen("/from/the/application");
    EXPECT_EQ(TQGetApplicationSharedDirectory().utf8(), "/from/the/application");
}

TEST(TQSharedDirectory, TheSetterAnswersTheDirectorySetBefore) {
    const SharedDirectory unset("");
    EXPECT_EQ(TQSetApplicationSharedDirectory("/one").utf8(), "");
    EXPECT_EQ(TQSetApplicationSharedDirectory("/two").utf8(), "/one");
    EXPECT_EQ(TQSetApplicationSharedDirectory("").utf8(), "/two");
}

} // namespace
