#include "tools/tqproj/ListCommand.h"

#include "testing/ProcessState.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::HasSubstr;

namespace {

struct ListCase : CommandCase {
    ListOptions options;

    ExitCode run() { return ListCommand(options, output, diagnostics).run(); }
};

TEST(ListCommand, ListsNameTypeAndEllipsoid) {
    ListCase test;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.out(), HasSubstr("\nLambert-93\tLambert\tGRS 1980\n"));
    EXPECT_THAT(test.out(), HasSubstr("\nUTM zone 31N (WGS 84)\tUTM\tWGS 84\n"));
    EXPECT_EQ(test.messages(), "");
}

TEST(ListCommand, AWordChoosesLines) {
    ListCase test;
    test.options.search = "RGF93 lambert";
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.out(), HasSubstr("CC48 (RGF93)\tLambert\tGRS 1980\n"));
    EXPECT_EQ(test.out().find("Lambert-93"), std::string::npos);
    ListCase none;
    none.options.search = "Atlantis";
    EXPECT_EQ(none.run(), ExitCode::Incomplete);
    EXPECT_EQ(none.out(), "");
}

// As EPSG 7030 defines it.
TEST(ListCommand, ListsEllipsoids) {
    ListCase test;
    test.options.listsEllipsoids = true;
    test.options.search = "WGS 84";
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.out(), HasSubstr("WGS 84\t6378137\t298.257223563\tnone\n"));
}

TEST(ListCommand, ListsTheUsersDirectoryToo) {
    ListCase test;
    test.directory.fileWith("w.proj", projectionfiles::WorldMercator);
    test.directory.fileWith("bad.proj", projectionfiles::UnknownType);
    test.options.directory = test.directory.directory().utf8();
    test.options.search = "World Mercator";
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_THAT(test.out(), HasSubstr("World Mercator\tDirect Mercator\tWGS 84\n"));
    EXPECT_THAT(test.out(), HasSubstr("World Mercator (WGS 84)\t"));
    EXPECT_EQ(test.messages(), "tqproj: cannot read a projection from " +
                                   test.directory.file("bad.proj").utf8() + ": the type code is not known\n");
}

// A name with a tab in front leads to PROJ's systems only, and to none if it is not one of theirs.
TEST(ListCommand, ANameLikeThoseOfPROJsSystemsIsListed) {
    ListCase test;
    std::string file = projectionfiles::WorldMercator;
    file.replace(file.find("World"), 0, "\t");
    test.directory.fileWith("w.proj", file);
    test.options.directory = test.directory.path();
    test.options.search = "World Mercator Direct";
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.out(), HasSubstr("World Mercator\tDirect Mercator\tWGS 84\n"));
}

TEST(ListCommand, AFileThatTakesTheNameOfAnotherIsToldOf) {
    ListCase test;
    test.directory.fileWith("a.proj", projectionfiles::WorldMercator);
    std::string other = projectionfiles::WorldMercator;
    test.directory.fileWith("b.proj", other.replace(other.size() - 2, 1, "0.9996"));
    test.options.directory = test.directory.path();
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(),
              "tqproj: " + test.directory.file("b.proj").utf8() +
                  " takes the place of another file, whose projection is called World Mercator "
                  "too\n");
}

TEST(ListCommand, WithoutResourcesItSaysWhereTheyWouldBe) {
    ListCase test;
    const SharedDirectory empty(test.directory.directory());
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_THAT(test.messages(),
                HasSubstr("tqproj: there are no resources: " +
                          test.directory.file("resProj/Projection").utf8() + " is no directory\n"));
}

TEST(ListCommand, AMissingDirectoryIsAFailure) {
    ListCase test;
    test.options.directory = test.directory.file("missing").utf8();
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(test.messages(), "tqproj: cannot read the directory " + test.options.directory.string() + "\n");
}

} // namespace
