#include "tests/tools/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Definitions for PROJ as users of the built program meet them: in files, by name, and on the command line.

namespace {

/// A directory of the user with a projection file that holds a definition for PROJ.
class DefinitionProgram : public Program {
  public:
    explicit DefinitionProgram(const std::string& definition) {
        directory().fileWith("mine/mine.proj", "TQFile v1\n127\nTQPrProj4 v0\nMine\n" + definition + "\n");
    }

    std::string file() const { return path("mine/mine.proj"); }
    std::string byPath() const { return " -p " + file() + " "; }
    std::string byName() const { return " --projections " + path("mine") + " --name Mine "; }
};

void expectOneLine(const std::string& text) { EXPECT_EQ(std::ranges::count(text, '\n'), 1) << text; }

} // namespace

// The origin of Lambert zone II étendu lies on the meridian of Paris at 52 grads (IGN, NTG 71).
TEST(TqprojDefinitions, AFileMeansTheSameByItsNameAsByItsPath) {
    DefinitionProgram program("EPSG:27572");
    for (const std::string& projection : {program.byPath(), program.byName()}) {
        EXPECT_EQ(program.run("convert" + projection, "0 46.8\n"), 0) << program.err();
        EXPECT_EQ(program.out(), "600000.000 2200000.000\n") << projection;
        EXPECT_EQ(program.run("convert --inverse" + projection, "600000 2200000\n"), 0) << program.err();
        EXPECT_EQ(program.out(), "0.000000000 46.800000000\n") << projection;
        EXPECT_EQ(program.run("show --wkt2" + projection), 0) << program.err();
        EXPECT_THAT(program.out(), StartsWith("PROJCRS[\"NTF (Paris) / Lambert zone II\""));
        EXPECT_EQ(program.run("show --proj" + projection), 0) << program.err();
        EXPECT_THAT(program.out(), StartsWith("+proj=lcc "));
    }
}

TEST(TqprojDefinitions, AMapIsTheSameByNameAsByPath) {
    DefinitionProgram program("EPSG:27572");
    EXPECT_EQ(program.run("draw -o -" + program.byPath()), 0) << program.err();
    const std::string byPath = program.out();
    EXPECT_EQ(program.run("draw -o -" + program.byName()), 0) << program.err();
    EXPECT_TRUE(program.out() == byPath);
    EXPECT_THAT(byPath, HasSubstr("</svg>"));
}

// Geocentric, vertical, unknown, and an operation, which is no system.
TEST(TqprojDefinitions, WhatIsNoProjectionIsRefusedByEveryCommand) {
    for (const char* definition :
         {"EPSG:4978", "EPSG:5720", "EPSG:999999", "urn:ogc:def:coordinateOperation:EPSG::1671", "Amersf"}) {
        SCOPED_TRACE(definition);
        DefinitionProgram program(definition);
        for (const std::string& projection : {program.byPath(), program.byName()}) {
            for (const char* command : {"convert", "draw -o -"}) {
                EXPECT_EQ(program.run(command + projection, "2 48\n"), 2) << command << projection;
                EXPECT_EQ(program.out(), "");
                expectOneLine(program.err());
            }
        }
        EXPECT_EQ(program.run("pack -o " + program.path("d.doc") + " --projections " + program.path("mine") +
                              " Mine"),
                  2);
        EXPECT_THAT(program.err(), HasSubstr("Mine"));
        EXPECT_FALSE(std::filesystem::exists(program.directory().path() / "d.doc"));
        EXPECT_EQ(program.run("check " + program.file()), 1);
        EXPECT_THAT(program.out(), HasSubstr(":5: warning: PROJ makes no projection of it: "));
    }
}

// PROJ itself takes the first system whose name holds the text.
TEST(TqprojDefinitions, APartOfANameIsNoSystem) {
    Program program;
    for (const char* name : {"foo", "Bessel", "NAD", "ED", "amersf"}) {
        const std::string text(name);
        EXPECT_EQ(program.run("transform --from EPSG:4326 --to " + text, "5 52\n"), 2);
        EXPECT_THAT(program.err(),
                    StartsWith("tqproj: --to " + text + ": no reference system is called " + text));
        EXPECT_EQ(program.out(), "");
        expectOneLine(program.err());
        EXPECT_EQ(program.run("transform --to EPSG:4326 --from " + text, "5 52\n"), 2);
        EXPECT_THAT(program.err(), StartsWith("tqproj: --from " + text + ": "));
        EXPECT_EQ(program.run("convert --definition " + text, "5 52\n"), 2);
        EXPECT_THAT(program.err(), HasSubstr(": no reference system is called " + text));
    }
}

TEST(TqprojDefinitions, NearNamesOfASystemAreNamed) {
    Program program;
    EXPECT_EQ(program.run("transform --from EPSG:4326 --to Amersford", "5 52\n"), 2);
    EXPECT_THAT(program.err(), EndsWith("; near names: Amersfoort\n"));
    EXPECT_EQ(program.run("convert --definition 'WGS 84 / UTM zone 31M'", "5 52\n"), 2);
    EXPECT_THAT(program.err(), HasSubstr("WGS 84 / UTM zone 31N"));
}

// Capitals, blanks and punctuation do not count.
TEST(TqprojDefinitions, AWholeNameIsASystem) {
    Program program;
    EXPECT_EQ(program.run("transform --from EPSG:4326 --to EPSG:4289", "5 52\n"), 0);
    const std::string expected = program.out();
    for (const char* name : {"Amersfoort", "amersfoort", "'Amersfoort (EPSG:4289)'"}) {
        EXPECT_EQ(program.run(std::string("transform --from WGS84 --to ") + name, "5 52\n"), 0)
            << program.err();
        EXPECT_EQ(program.out(), expected);
    }
    EXPECT_EQ(program.run("convert --definition 'WGS 84 / UTM zone 31N'", "3 0\n"), 0) << program.err();
    EXPECT_EQ(program.out(), "500000.000 0.000\n");
}

TEST(TqprojDefinitions, TransformSaysWhichSideIsWrongAndWhatToDo) {
    struct Wrong {
        std::string system;
        std::string reason;
    };
    Program program;
    for (const Wrong& wrong :
         {Wrong{"EPSG:999999", "crs not found (tqproj catalog lists the systems that there are)"},
          Wrong{"EPSG:3857",
                "it is not geographic with two dimensions (tqproj convert takes projected systems)"},
          Wrong{"EPSG:4979",
                "it is not geographic with two dimensions (tqproj convert takes projected systems)"},
          Wrong{"+proj=longlat",
                "PROJ takes it for an operation (with +type=crs it is a reference system)"}}) {
        EXPECT_EQ(program.run("transform --from EPSG:4326 --to " + wrong.system, "5 52\n"), 2);
        EXPECT_EQ(program.err(), "tqproj: --to " + wrong.system + ": " + wrong.reason + "\n");
        EXPECT_EQ(program.run("transform --to EPSG:4326 --from " + wrong.system, "5 52\n"), 2);
        EXPECT_EQ(program.err(), "tqproj: --from " + wrong.system + ": " + wrong.reason + "\n");
    }
}

TEST(TqprojDefinitions, ASystemToItselfKeepsEveryDigitOfDegrees) {
    std::string points;
    for (int i = 0; i < 1000; ++i) {
        const std::string digits = std::to_string(i * 7919 % 10000 + 10001).substr(1);
        points +=
            std::to_string(i % 180) + "." + digits + "1 " + std::to_string(i % 90) + "." + digits + "3\n";
    }
    Program program;
    for (const char* system : {"EPSG:4326", "EPSG:4275"}) {
        for (const char* direction : {"", " --inverse"}) {
            EXPECT_EQ(program.run(std::string("transform --precision full --from ") + system + " --to " +
                                      system + direction,
                                  points),
                      0);
            EXPECT_TRUE(program.out() == points) << system << direction;
        }
    }
}
