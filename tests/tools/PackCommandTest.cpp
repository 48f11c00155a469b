#include "tools/tqproj/PackCommand.h"

#include "manager/TQProjMgr.h"
#include "support/TQReadMemStream.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

using testing::HasSubstr;

namespace {

struct PackCase : CommandCase {
    PackOptions options;

    PackCase() { options.path = directory.file("a.doc").utf8(); }

    ExitCode run() { return PackCommand(options, output, diagnostics).run(); }

    /// An application that opens the document.
    std::unique_ptr<TQProjMgr> opened() const {
        auto manager = std::make_unique<TQProjMgr>(false);
        const std::string bytes = directory.bytesOf("a.doc");
        TQReadMemStream stream(bytes.data(), bytes.size());
        manager->unarchiveFrom(&stream);
        EXPECT_FALSE(stream.failed());
        EXPECT_EQ(stream.bytesLeft(), 0U);
        return manager;
    }
};

} // namespace

TEST(PackCommand, WritesProjectionsWithTheirEllipsoidsAlone) {
    PackCase test;
    test.options.names = {"Lambert-93", "UTM zone 31N (WGS 84)"};
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.messages(), "");
    const auto manager = test.opened();
    EXPECT_EQ(manager->newListOfProjNames()->count(), 2);
    EXPECT_EQ(manager->newListOfEllipsoidNames()->count(), 2);
    TQPoint plane;
    const TQProjection* const lambert = manager->projWithName(TQString("Lambert-93"), false);
    ASSERT_NE(lambert, nullptr);
    // The Paris of the README, by PROJ.
    lambert->convertGeoPt(TQPoint{tq_deg2rad(2.3522), tq_deg2rad(48.8566)}, plane);
    EXPECT_NEAR(plane.x, 652469.023, 0.001);
    EXPECT_NEAR(plane.y, 6862035.259, 0.001);
}

TEST(PackCommand, TakesProjectionsOfTheUsersDirectory) {
    PackCase test;
    test.directory.fileWith("w.proj", projectionfiles::WorldMercator);
    test.options.directory = test.directory.directory().utf8();
    test.options.names = {"World Mercator", "World Mercator"};
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.opened()->newListOfProjNames()->count(), 1) << "twice the same";
}

TEST(PackCommand, AnUnknownNameIsAFailureWithNearNamesAndWritesNothing) {
    PackCase test;
    test.options.names = {"Lambert-93", "Lambert-39"};
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_THAT(test.messages(), HasSubstr("tqproj: no projection is called Lambert-39; near names: "));
    EXPECT_THAT(test.messages(), HasSubstr("Lambert-93"));
    EXPECT_EQ(test.directory.entries().count("a.doc"), 0U);
}

TEST(PackCommand, ASystemOfPROJIsNoProjectionToPack) {
    for (const char* name : {"\tEPSG_2154", "\tEPSG_999999", "RGF93 v1 / Lambert-93 (EPSG:2154)"}) {
        PackCase test;
        test.options.names = {name, "Lambert-93"};
        EXPECT_EQ(test.run(), ExitCode::Failure);
        EXPECT_THAT(test.messages(), HasSubstr("tqproj: no projection is called "));
        EXPECT_EQ(test.directory.entries().count("a.doc"), 0U);
    }
}

TEST(PackCommand, AProjectionWithAnEllipsoidOfItsOwnIsPackedWithIt) {
    PackCase test;
    std::string text = projectionfiles::WorldMercator;
    text.replace(text.find("WGS 84\n"), 6, "\tOwn");
    test.directory.fileWith("w.proj", text);
    test.options.directory = test.directory.directory().utf8();
    test.options.names = {"World Mercator"};
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.opened()->newListOfProjNames()->count(), 1);
}

TEST(PackCommand, TwoEllipsoidsOfOneNameAreAFailureAndWriteNothing) {
    // In an application one of them would come back on the ellipsoid of the other.
    for (const char* const ellipsoid : {"\tOwn", "Own"}) {
        PackCase test;
        for (const auto& [name, axis] : {std::pair{"One", "6378137"}, {"Other", "6413137"}}) {
            std::string text = projectionfiles::WorldMercator;
            text.replace(text.find("World Mercator"), 14, name);
            text.replace(text.find("WGS 84\n"), 6, ellipsoid);
            text.replace(text.find("6378137"), 7, axis);
            test.directory.fileWith(std::string(name) + ".proj", text);
        }
        test.options.directory = test.directory.directory().utf8();
        test.options.names = {"One", "Other"};
        EXPECT_EQ(test.run(), ExitCode::Failure);
        EXPECT_THAT(test.messages(), HasSubstr("tqproj: the document would change O"));
        EXPECT_THAT(test.messages(), HasSubstr("Own, comes back as another one of this name\n"));
        EXPECT_EQ(test.directory.entries().count("a.doc"), 0U);
    }
}

TEST(PackCommand, AnEllipsoidThatTheResourcesHaveOtherwiseIsAFailure) {
    PackCase test;
    std::string text = projectionfiles::WorldMercator;
    text.replace(text.find("6378137"), 7, "6378136.5"); // within the metre that counts as equal elsewhere
    test.directory.fileWith("w.proj", text);
    test.options.directory = test.directory.directory().utf8();
    test.options.names = {"World Mercator"};
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(),
              "tqproj: the document would change World Mercator: its ellipsoid, WGS 84, comes back "
              "as another one of this name\n");
    EXPECT_EQ(test.directory.entries().count("a.doc"), 0U);
}

TEST(PackCommand, AFileThatCannotBeWrittenIsAFailure) {
    PackCase test;
    test.options.names = {"Lambert-93"};
    test.options.path = test.directory.file("missing/a.doc").utf8();
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(),
              "tqproj: cannot write " + test.options.path.string() + ": No such file or directory\n");
}

TEST(PackCommand, ADirectoryThatCannotBeReadIsAFailure) {
    PackCase test;
    test.options.names = {"Lambert-93"};
    test.options.directory = test.directory.file("missing").utf8();
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(), "tqproj: cannot read the directory " + test.options.directory.string() + "\n");
}
