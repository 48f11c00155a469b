#include "tests/tools/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

#ifndef _WIN32
/// A path in the program's directory with the byte 0xE9 in it, which alone is no UTF-8, as the shell writes
/// it.
std::string latin(const Program& program, const std::string& extension) {
    return program.path("m$(printf '\\351')" + extension);
}

/// The names of what the program's directory holds besides its streams and its projection.
std::set<std::string> written(const Program& program) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(program.directory().path())) {
        names.insert(entry.path().filename().string());
    }
    for (const char* known : {"in", "out", "err", "world.proj"}) {
        names.erase(known);
    }
    return names;
}

TEST(TqprojFiles, ThoseWhoseNamesAreNoTextAreWrittenUnderThemAndNoOther) {
    Program program;
    const std::string expected = "m\xE9";
    EXPECT_EQ(program.run("create --type Bonne --name B --ellipsoid 'WGS 84' -o " + latin(program, ".proj")),
              0)
        << program.err();
    EXPECT_EQ(program.run("draw -p @ --extent 0,0,10,10 -o " + latin(program, ".svg")), 0) << program.err();
    EXPECT_THAT(program.out(), HasSubstr("m\\xE9.svg\n"));
    EXPECT_EQ(program.run("pack Lambert-93 -o " + latin(program, ".doc")), 0) << program.err();
    EXPECT_EQ(program.run("unpack " + latin(program, ".doc") + " -d " + latin(program, ".d")), 0)
        << program.err();
    EXPECT_THAT(written(program),
                ElementsAre(expected + ".d", expected + ".doc", expected + ".proj", expected + ".svg"));
}

TEST(TqprojFiles, ThoseWhoseNamesAreNoTextAreRead) {
    Program program;
    ASSERT_EQ(program.run("pack Lambert-93 -o " + program.path("a.doc")), 0);
    ASSERT_EQ(program.run("unpack " + program.path("a.doc") + " -d " + latin(program, ".d")), 0);
    ASSERT_EQ(Program::shell("cp " + program.path("world.proj") + " " +
                             latin(program, ".d/m$(printf '\\351').proj")),
              0);
    EXPECT_EQ(program.run("list World Mercator Direct --projections " + latin(program, ".d")), 0)
        << program.err();
    EXPECT_THAT(program.out(), HasSubstr("World Mercator\tDirect Mercator\tWGS 84\n"));
    EXPECT_EQ(program.run("check " + latin(program, ".d")), 0) << program.out();
    EXPECT_EQ(program.run("show --name 'World Mercator' --projections " + latin(program, ".d")), 0);
    EXPECT_THAT(program.out(), HasSubstr("m\\xE9.d/m\\xE9.proj\n"));
    EXPECT_EQ(program.run("convert -p " + latin(program, ".d/m$(printf '\\351').proj"), "0 0\n"), 0);
    EXPECT_EQ(program.out(), "0.000 0.000\n");
}

// The first file that the process opens would be the stream: PROJ's database was read as points, and the name
// of the map went into the map.
TEST(TqprojFiles, AStreamThatIsClosedFails) {
    Program program;
    const std::string command = Program::quoted(TQPROJ_PROGRAM) + " ";
    EXPECT_EQ(Program::shell(command + "convert -p EPSG:3857 <&- 2> " + program.path("err")), 2);
    EXPECT_THAT(program.err(), HasSubstr("tqproj: cannot read <stdin>: "));
    const std::string draw = "draw -p EPSG:3857 --extent 0,0,10,10 -o " + program.path("map.svg");
    EXPECT_EQ(program.run(draw), 0);
    const std::string whole = program.directory().bytesOf("map.svg");
    EXPECT_EQ(Program::shell(command + draw + " >&- 2> " + program.path("err")), 2);
    EXPECT_EQ(program.directory().bytesOf("map.svg"), whole);
}

TEST(TqprojFiles, PointsThatCannotBeReadGiveTwo) {
    Program program;
    const std::string command = Program::quoted(TQPROJ_PROGRAM) + " draw -p EPSG:3857 --points - -o " +
                                program.path("map.svg") + " < / > " + program.path("out") + " 2> " +
                                program.path("err");
    EXPECT_EQ(Program::shell(command), 2);
    EXPECT_THAT(program.err(), HasSubstr("tqproj: cannot read <stdin>: "));
}
#endif

TEST(TqprojFiles, NamesHaveNoControlCharacters) {
    Program program;
    std::string file = projectionfiles::WorldMercator;
    file.replace(file.find("World"), 5, "\x1B[2J\xC2\x9B");
    program.directory().fileWith("evil.proj", file);
    for (const std::string& arguments :
         {"list Mercator --projections " + program.path("."), "show -p " + program.path("evil.proj"),
          "show --wkt -p " + program.path("evil.proj")}) {
        EXPECT_EQ(program.run(arguments), 0) << program.err();
        EXPECT_THAT(program.out(), HasSubstr("\\x1B[2J\\xC2\\x9B Mercator")) << arguments;
        EXPECT_EQ(program.out().find('\x1B'), std::string::npos) << arguments;
        EXPECT_EQ(program.out().find("\xC2\x9B"), std::string::npos) << arguments;
    }
}

TEST(TqprojFiles, ListTakesSeveralWords) {
    Program program;
    EXPECT_EQ(program.run("list utm 31N wgs"), 0);
    EXPECT_THAT(program.out(), HasSubstr("UTM zone 31N (WGS 84)\tUTM\tWGS 84\n"));
    EXPECT_EQ(program.out().find("32N"), std::string::npos);
    EXPECT_EQ(program.run("list utm nowhere"), 1);
}

TEST(TqprojFiles, UsageErrorsNameTheHelpOfTheirCommand) {
    Program program;
    EXPECT_EQ(program.run("catalog --search \"\""), 2);
    EXPECT_EQ(program.err(), "tqproj: --search: the text is empty (see tqproj catalog --help)\n");
    EXPECT_EQ(program.run("catalog --family \"\""), 2);
    EXPECT_EQ(program.err(), "tqproj: --family: the text is empty (see tqproj catalog --help)\n");
    EXPECT_EQ(program.run("unknown"), 2);
    EXPECT_THAT(program.err(), HasSubstr("(see tqproj --help)\n"));
}

TEST(TqprojFiles, ADocumentMayGoToTheStandardOutput) {
    Program program;
    EXPECT_EQ(program.run("pack -o - Lambert-93"), 0) << program.err();
    program.directory().fileWith("a.doc", program.out());
    EXPECT_EQ(program.run("inspect " + program.path("a.doc")), 0);
    EXPECT_THAT(program.out(), HasSubstr("Lambert-93, Lambert on GRS 1980\n"));
}

} // namespace
