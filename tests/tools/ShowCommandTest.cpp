#include "tools/tqproj/ShowCommand.h"

#include "support/TQDirectory.h"
#include "testing/MadeProjection.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ShowCase : CommandCase {
    ExitCode run(const std::string& projection, ShowOptions::Form form = ShowOptions::Form::Table) {
        ShowOptions options;
        options.projection.text = directory.fileWith("test.proj", projection).utf8();
        options.form = form;
        return ShowCommand(options, output, diagnostics).run();
    }
};

TEST(ShowCommand, DescribesAProjectionInAlignedColumns) {
    ShowCase test;
    EXPECT_EQ(test.run(projectionfiles::WorldMercator), ExitCode::Success);
    EXPECT_EQ(test.out(), "name                              World Mercator\n"
                          "type                              Direct Mercator\n"
                          "longitude and latitude            of the ellipsoid itself, no datum known\n"
                          "ellipsoid\n"
                          "  name                            WGS 84\n"
                          "  semi-major axis                 6378137 m\n"
                          "  inverse flattening              298.257223563\n"
                          "  datum shift                     none\n"
                          "parameters\n"
                          "  lambda0                         0 degrees\n"
                          "  phi0                            0 degrees\n"
                          "  X0                              0 m\n"
                          "  Y0                              0 m\n"
                          "  k0                              1\n");
    EXPECT_EQ(test.messages(), "");
}

TEST(ShowCommand, ShowsAnExternalNameAsTheCatalogueDoes) {
    CommandCase test;
    ShowOptions options;
    options.projection.text = "\tEPSG_2154\r";
    EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
    EXPECT_TRUE(
        test.out().starts_with("name                              RGF93 v1 / Lambert-93 (EPSG:2154)\n"))
        << test.out();
}

TEST(ShowCommand, TellsWhereAProjectionFoundByNameComesFrom) {
    CommandCase test;
    ShowOptions options;
    options.projection.text = "Lambert-93";
    EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
    EXPECT_NE(test.out().find("/resProj/Projection/Lambert-93.proj\nlongitude and latitude "),
              std::string::npos)
        << test.out();
}

TEST(ShowCommand, TellsTheMeridianThatLongitudesAreCountedFrom) {
    CommandCase test;
    ShowOptions options;
    options.projection.text = "EPSG:27572";
    EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
    EXPECT_NE(test.out().find("\nlongitude and latitude            NTF (Paris), as EPSG:27572 has it\n"
                              "longitude counted from            2.33722917 degrees\n"),
              std::string::npos)
        << test.out();
}

TEST(ShowCommand, AParameterOfManyLinesStandsOnOne) {
    CommandCase test;
    ShowOptions options;
    options.projection.text = "+proj=merc\n+lon_0=5";
    EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
    EXPECT_TRUE(test.out().ends_with("\n  definition                      +proj=merc +lon_0=5\n"))
        << test.out();
}

TEST(ShowCommand, DescribesParametersThatAreNoNumbers) {
    ShowCase test;
    EXPECT_EQ(test.run(projectionfiles::Utm31North), ExitCode::Success);
    EXPECT_NE(test.out().find("\n  hemisphere                      true\n"), std::string::npos) << test.out();
}

TEST(ShowCommand, DescribesDatumShiftsAndSpheres) {
    ShowCase test;
    EXPECT_EQ(test.run("TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\nTQEllipsoid v2\nBessel 1841\n"
                       "6377397.155\n0\n2\n6378137\n0.0033528106647474805\n1 2 3 4e-6 5e-6 6e-6 7\n"
                       "0\n0\n0\n0\n1\n"),
              ExitCode::Success);
    EXPECT_NE(test.out().find("  semi-major axis                 6377397.155 m\n"
                              "  inverse flattening              infinite (a sphere)\n"
                              "  datum shift                     seven parameters (Helmert)\n"
                              "    dx                            1 m\n"
                              "    dy                            2 m\n"
                              "    dz                            3 m\n"
                              "    rx                            4e-06 rad\n"
                              "    ry                            5e-06 rad\n"
                              "    rz                            6e-06 rad\n"
                              "    scale                         7 ppm\n"
                              "    reference semi-major axis     6378137 m\n"
                              "    reference inverse flattening  298.257223563\n"),
              std::string::npos)
        << test.out();
}

TEST(ShowCommand, ThreeParameterShiftHasNoRotations) {
    ShowCase test;
    EXPECT_EQ(test.run("TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\nTQEllipsoid v2\nBessel 1841\n"
                       "6377397.155\n0.00667437223\n1\n6378137\n0.0033528106647474805\n-377 681 -50\n"
                       "0\n0\n0\n0\n1\n"),
              ExitCode::Success);
    EXPECT_NE(test.out().find("  datum shift                     three parameters (Molodensky)\n"
                              "    dx                            -377 m\n"
                              "    dy                            681 m\n"
                              "    dz                            -50 m\n"
                              "    reference semi-major axis     6378137 m\n"),
              std::string::npos)
        << test.out();
}

TEST(ShowCommand, WritesTheWellKnownText) {
    ShowCase test;
    EXPECT_EQ(test.run(projectionfiles::WorldMercator, ShowOptions::Form::WKT1), ExitCode::Success);
    EXPECT_TRUE(test.out().starts_with("PROJCS[\"World Mercator\",GEOGCS[")) << test.out();
    EXPECT_TRUE(test.out().ends_with(",UNIT[\"Meter\",1.0]]\n")) << test.out();
}

// PROJ reads the text otherwise than it is meant: 238 m in London.
TEST(ShowCommand, WarnsOfTheDatumShiftInWellKnownText) {
    for (const auto form : {ShowOptions::Form::WKT1, ShowOptions::Form::WKT2}) {
        CommandCase test;
        ShowOptions options;
        options.projection.text = "British National Grid";
        options.form = form;
        EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
        EXPECT_NE(test.out().find(",TOWGS84[-446.448,125.157,-542.06,"), std::string::npos) << test.out();
        EXPECT_TRUE(test.messages().starts_with("tqproj: the numbers of TOWGS84 lead to the local datum"))
            << test.messages();
    }
}

TEST(ShowCommand, WhatOtherProgramsReadRightNeedsNoWarning) {
    for (const char* projection :
         {"British National Grid (without datum shift)", "+proj=utm +zone=31 +towgs84=1,2,3"}) {
        CommandCase test;
        ShowOptions options;
        options.projection.text = projection;
        options.form = ShowOptions::Form::WKT1;
        EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
        EXPECT_EQ(test.messages(), "") << projection;
    }
}

TEST(ShowCommand, LibrarysMessageIsOneLineBesideTheResult) {
    ShowCase test;
    EXPECT_EQ(test.run(projectionfiles::GctpMercator, ShowOptions::Form::WKT1), ExitCode::Success);
    EXPECT_TRUE(test.out().starts_with("PROJCS["));
    EXPECT_EQ(test.messages(), "tqproj: don't really know how to write this in WKT form\n");
}

TEST(ShowCommand, UnreadableProjectionIsAFailure) {
    ShowCase test;
    EXPECT_EQ(test.run("nonsense\n"), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(std::ranges::count(test.messages(), '\n'), 1);
}

TEST(ShowCommand, DescribesEveryProjectionFileThatComesWithTheLibrary) {
    int files = 0;
    for (const TQString& name : TQOpenDir(projectionFileDirectory(), "proj")) {
        SCOPED_TRACE(name.utf8());
        CommandCase test;
        ShowOptions options;
        options.projection.text = tq_createPath(projectionFileDirectory(), name).utf8();
        EXPECT_EQ(ShowCommand(options, test.output, test.diagnostics).run(), ExitCode::Success);
        EXPECT_NE(test.out().find("\nparameters\n  "), std::string::npos) << test.out();
        EXPECT_EQ(test.messages(), "");
        ++files;
    }
    EXPECT_GE(files, 24);
}

TEST(ShowCommand, WritesDefinitionsOfReferenceSystems) {
    using Form = ShowOptions::Form;
    constexpr const char* franceByPROJ = "TQFile v1\n127\nTQPrProj4 v0\nFrance\nEPSG:2154\n";
    const std::pair<Form, const char*> beginnings[] = {
        {Form::WKT1, "PROJCS[\"RGF93"}, {Form::WKT2, "PROJCRS[\"RGF93"}, {Form::PROJ, "+proj=lcc "}};
    for (const auto& [form, beginning] : beginnings) {
        ShowCase test;
        EXPECT_EQ(test.run(franceByPROJ, form), ExitCode::Success);
        EXPECT_EQ(test.out().rfind(beginning, 0), 0U) << test.out();
        EXPECT_EQ(test.messages(), "");
    }
}

TEST(ShowCommand, ANativeProjectionHasNoPROJString) {
    ShowCase test;
    EXPECT_EQ(test.run(projectionfiles::WorldMercator, ShowOptions::Form::PROJ), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(test.messages(), "tqproj: the projection has no such definition\n");
}

} // namespace
