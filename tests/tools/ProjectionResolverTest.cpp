#include "tools/tqproj/ProjectionResolver.h"

#include "projection/TQProjection.h"
#include "testing/TemporaryDirectory.h"
#include "tests/tools/ProjectionFiles.h"
#include "tools/tqproj/LibraryMessages.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What the resolver says about an argument that means no projection.
std::string problemOf(const std::string& argument) {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    EXPECT_EQ(resolver.resolve(argument), nullptr);
    EXPECT_TRUE(messages.isEmpty());
    return resolver.problem();
}

TEST(ProjectionResolver, FindsAProjectionFile) {
    const TemporaryDirectory directory;
    LibraryMessages messages;
    const std::unique_ptr<TQProjection> projection = ProjectionResolver(messages).resolve(
        directory.fileWith("world.proj", projectionfiles::WorldMercator).utf8());
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(projection->name()->utf8(), "World Mercator");
}

TEST(ProjectionResolver, MissingFileHasTheSystemsReason) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("missing.proj").utf8();
    const std::string reason = std::make_error_code(std::errc::no_such_file_or_directory).message();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path + ": " + reason);
}

TEST(ProjectionResolver, OtherFileIsNoProjectionFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("cities.csv", "2,48\n").utf8();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path + ": it is not a projection file");
}

TEST(ProjectionResolver, FaultyProjectionFileHasTheLibrarysReason) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("unknown.proj", projectionfiles::UnknownType).utf8();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path +
                                   ": TQProjMgr::createProjectionFromPath: Unknown projection type");
}

} // namespace
