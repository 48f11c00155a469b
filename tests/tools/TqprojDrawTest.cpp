#include "tests/tools/Program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

// The command line of `tqproj draw`, through the built program.

namespace {

constexpr const char* kGermany = "draw -p @ --extent 6,47,12,55 ";

/// Runs the program in its directory, where maps go that have no path.
int runInDirectory(Program& program, const std::string& arguments) {
    return Program::shell("cd " + program.path(".") + " && " + Program::quoted(TQPROJ_PROGRAM) + " " +
                          program.withProjection(arguments) + " > " + program.path("out") + " 2> " +
                          program.path("err"));
}

TEST(TqprojDraw, WritesItsMapIntoTheWorkingDirectory) {
    Program program;
    EXPECT_EQ(runInDirectory(program, kGermany), 0) << program.err();
    EXPECT_EQ(program.out(), "map.svg\n");
    EXPECT_EQ(program.err(), "");
    EXPECT_TRUE(program.directory().bytesOf("map.svg").starts_with("<?xml "));
}

TEST(TqprojDraw, WritesSVGToTheStandardOutput) {
    Program program;
    for (const char* output : {"-o -", "--output -", "-o-"}) {
        EXPECT_EQ(program.run(kGermany + std::string(output)), 0) << program.err();
        EXPECT_TRUE(program.out().starts_with("<?xml ")) << output;
        EXPECT_TRUE(program.out().ends_with("</svg>\n"));
    }
}

TEST(TqprojDraw, TakesExtentsThatBeginWithAMinus) {
    Program program;
    EXPECT_EQ(program.run("draw -p @ -o - --extent -10,40,10,60"), 0) << program.err();
    EXPECT_EQ(program.run("draw -p @ -o - --extent=-10,-60,10,-40"), 0) << program.err();
    EXPECT_EQ(program.run("draw -p @ -o - --extent 170,-10,-170,10"), 0) << "across the antimeridian";
}

TEST(TqprojDraw, TakesLinesAtADistance) {
    Program program;
    EXPECT_EQ(program.run(kGermany + std::string("-o - --graticule 2")), 0) << program.err();
    const std::string graticule = program.out();
    EXPECT_EQ(program.run(kGermany + std::string("-o - --graticule 0.5")), 0) << program.err();
    EXPECT_GT(program.out().size(), graticule.size());
    EXPECT_EQ(program.run(kGermany + std::string("-o - --metric 1e5")), 0) << program.err();
    EXPECT_NE(program.out(), graticule);
}

TEST(TqprojDraw, TakesPointsFromTheStandardInput) {
    Program program;
    EXPECT_EQ(program.run(kGermany + std::string("-o - --points -"), "9,50,A\n10\n10,51,B\n"), 1);
    EXPECT_EQ(program.err(), "<stdin>:2: the second number is missing\n");
    EXPECT_TRUE(program.out().starts_with("<?xml "));
}

TEST(TqprojDraw, UsageErrorsGiveTwoAndOneLineAndNoFile) {
    for (const char* arguments : {"draw",
                                  "draw -p missing.proj",
                                  "draw -p @ --extent 1,2,3",
                                  "draw -p @ --extent 1,2,3,4,5",
                                  "draw -p @ --extent 1,2,3,x",
                                  "draw -p @ --extent 1,50,2,40",
                                  "draw -p @ --extent 1,50,2,91",
                                  "draw -p @ --extent 200,0,210,10",
                                  "draw -p @ --extent nan,0,10,10",
                                  "draw -p @ --extent ''",
                                  "draw -p @ --extent",
                                  "draw -p @ --graticule 0",
                                  "draw -p @ --graticule -1",
                                  "draw -p @ --graticule x",
                                  "draw -p @ --graticule 1x",
                                  "draw -p @ --graticule nan",
                                  "draw -p @ --graticule inf",
                                  "draw -p @ --graticule ''",
                                  "draw -p @ --graticule 1e-6",
                                  "draw -p @ --metric 0",
                                  "draw -p @ --metric 1e999",
                                  "draw -p @ --metric km",
                                  "draw -p @ --metric 1e-3",
                                  "draw -p @ --graticule 1 --metric 1000",
                                  "draw -p @ --points missing.csv",
                                  "draw -p @ --points ''",
                                  "draw -p @ -o map",
                                  "draw -p @ -o map.jpg",
                                  "draw -p @ -o ''",
                                  "draw -p @ -o missing/map.svg",
                                  "draw -p @ file"}) {
        Program program;
        EXPECT_EQ(runInDirectory(program, arguments), 2) << arguments;
        EXPECT_EQ(program.out(), "") << arguments;
        const std::string err = program.err();
        EXPECT_TRUE(err.starts_with("tqproj: ")) << arguments << ": " << err;
        EXPECT_EQ(std::ranges::count(err, '\n'), 1) << arguments << ": " << err;
        EXPECT_EQ(program.directory().entries(), (std::set<std::string>{"err", "out", "world.proj"}))
            << arguments;
    }
}

TEST(TqprojDraw, MessagesTellWhatIsWrongWithAnArgument) {
    Program program;
    EXPECT_EQ(program.run("draw -p @ --extent 1,2,3"), 2);
    EXPECT_NE(program.err().find("'1,2,3' is no extent of longitudes and latitudes in degrees"),
              std::string::npos)
        << program.err();
    EXPECT_EQ(program.run("draw -p @ --metric km"), 2);
    EXPECT_NE(program.err().find("'km' is no distance"), std::string::npos) << program.err();
    EXPECT_EQ(program.run("draw -p @ -o map.jpg"), 2);
    EXPECT_NE(program.err().find("'map.jpg' ends in none of .svg, .png, .pdf"), std::string::npos)
        << program.err();
}

TEST(TqprojDraw, HelpNamesEveryOptionAndGivesExamples) {
    Program program;
    EXPECT_EQ(program.run("draw --help"), 0);
    for (const char* option : {"--projection", "--extent", "--graticule", "--metric", "--points", "--output",
                               "map.svg", "WEST,SOUTH,EAST,NORTH", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
}

} // namespace
