#include "support/TQSharedDirectory.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"
#include "tests/tools/Program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace {

void expectUsageError(const std::string& arguments) {
    Program program;
    EXPECT_EQ(program.run(arguments), 2) << arguments;
    EXPECT_EQ(program.out(), "") << arguments;
    const std::string err = program.err();
    EXPECT_TRUE(err.starts_with("tqproj: ")) << err;
    EXPECT_EQ(std::ranges::count(err, '\n'), 1) << err;
}

TEST(Tqproj, ConvertsTheStandardInput) {
    Program program;
    EXPECT_EQ(program.run("convert -p @", "# x\n2.3522,48.8566,Paris\r\n"), 0);
    EXPECT_EQ(program.out(), "# x\n261845.706,6218369.433,Paris\r\n");
    EXPECT_EQ(program.err(), "");
}

TEST(Tqproj, ConvertsThereAndBackInEveryUnit) {
    for (const std::string unit : {"deg", "rad", "gon", "dms"}) {
        Program program;
        ASSERT_EQ(program.run("convert -p @ -I --precision full --unit " + unit, "261845.706 -6218369.433\n"),
                  0);
        ASSERT_EQ(program.run("convert -p @ --unit " + unit, program.out()), 0) << program.err();
        EXPECT_EQ(program.out(), "261845.706 -6218369.433\n") << unit;
    }
}

// The numbers are PROJ's, on the ellipsoid of OSGB36 and from EPSG:4326.
TEST(Tqproj, DatumOfLongitudeAndLatitudeCanBeChosen) {
    Program program;
    const auto converted = [&program](const std::string& arguments) {
        EXPECT_EQ(program.run("convert " + arguments, "-2 52\n"), 0) << program.err();
        return program.out();
    };
    const std::string own = "400000.000 233553.731\n";
    EXPECT_EQ(converted("-p EPSG:27700"), own);
    EXPECT_EQ(converted("-p EPSG:27700 --datum own"), own);
    EXPECT_EQ(converted("-p EPSG:27700 --datum wgs84"), "400096.829 233506.474\n");
    EXPECT_EQ(converted("-p \"British National Grid\" --datum own"), own);
    const std::string shifted = converted("-p \"British National Grid\"");
    EXPECT_TRUE(shifted.starts_with("400096.8")) << shifted;
    EXPECT_EQ(converted("-p \"British National Grid\" --datum wgs84"), shifted);
}

// West of all areas of PROJ's operations: it would take the place for one on OSGB36.
TEST(Tqproj, WGS84IsRefusedForAPlaceThatNoShiftLeadsFrom) {
    Program program;
    for (const char* jobs : {"", " --jobs 2"}) {
        EXPECT_EQ(program.run(std::string("convert -p EPSG:27700 --datum wgs84") + jobs, "-2 52\n-9 57\n"),
                  1);
        EXPECT_EQ(program.out(), "400096.829 233506.474\n* *\n");
        EXPECT_EQ(program.err(), "<stdin>:2: no transformation between the datums is known here\n");
    }
    EXPECT_EQ(program.run("convert -p EPSG:27700 --datum own", "-9 57\n"), 0) << program.err();
}

TEST(Tqproj, WGS84IsRefusedForAProjectionThatNoShiftLeadsTo) {
    Program program;
    EXPECT_EQ(program.run("convert -p Lambert-93 --datum wgs84", "0 0\n"), 2);
    EXPECT_EQ(program.out(), "");
    EXPECT_EQ(program.err(),
              "tqproj: longitude and latitude cannot be on WGS 84: the projection has no datum shift\n");
    expectUsageError("convert -p Lambert-93 --datum nad27");
}

TEST(Tqproj, LongAndShortOptionsAreTheSame) {
    Program program;
    ASSERT_EQ(program.run("convert --projection @ --inverse --precision 6", "261845.706 6218369.433\n"), 0);
    EXPECT_EQ(program.out(), "2.352200 48.856600\n");
}

TEST(Tqproj, AnyNumberOfJobsWritesTheSame) {
    std::string points;
    for (int line = 0; line < 50000; ++line) {
        points +=
            line % 10007 == 3 ? "x\n" : std::to_string(line % 360) + " " + std::to_string(line % 91) + "\n";
    }
    Program program;
    EXPECT_EQ(program.run("convert -p @ --jobs 1", points), 1);
    const std::string out = program.out();
    const std::string err = program.err();
    for (const std::string jobs : {"--jobs 2", "--jobs 8", "--jobs 1000", ""}) {
        EXPECT_EQ(program.run("convert -p @ " + jobs, points), 1);
        EXPECT_TRUE(program.out() == out) << jobs;
        EXPECT_EQ(program.err(), err) << jobs;
    }
}

TEST(Tqproj, BadLinesGiveOne) {
    Program program;
    EXPECT_EQ(program.run("convert -p @ -", "0 0\nx y z\n0 0\n"), 1);
    EXPECT_EQ(program.out(), "0.000 0.000\n* * z\n0.000 0.000\n");
    EXPECT_EQ(program.err(), "<stdin>:2: 'x' is not an angle\n");
}

TEST(Tqproj, UnreadableFilesGiveTwoAndDoNotStopTheOthers) {
    Program program;
    program.directory().fileWith("points.txt", "0 0\n");
    EXPECT_EQ(program.run("convert -p @ " + program.path("missing") + " " + program.path("points.txt")), 2);
    EXPECT_EQ(program.out(), "0.000 0.000\n");
    EXPECT_EQ(std::ranges::count(program.err(), '\n'), 1) << program.err();
}

TEST(Tqproj, UsageErrorsGiveTwoAndOneLine) {
    for (const char* arguments : {"",
                                  "unknown",
                                  "convert",
                                  "convert -p",
                                  "convert -p @ --unit turn",
                                  "convert -p @ --precision x",
                                  "convert -p @ --precision 18",
                                  "convert -p @ --precision -1",
                                  "convert -p @ --precision 3.5",
                                  "convert -p @ --precision",
                                  "convert -p @ --jobs 0",
                                  "convert -p @ --jobs -1",
                                  "convert -p @ --jobs abc",
                                  "convert -p @ --jobs 2.5",
                                  "convert -p @ --jobs 1001",
                                  "convert -p @ --jobs 99999999999",
                                  "convert -p @ --jobs",
                                  "convert -p @ --unknown",
                                  "convert -p missing.proj",
                                  "show",
                                  "show -p missing.proj",
                                  "show -p \"\"",
                                  "show --name \"\"",
                                  "catalog --family \"\"",
                                  "catalog file",
                                  "show -p @ file",
                                  "--unknown",
                                  "transform",
                                  "transform --from EPSG:4326",
                                  "transform --to EPSG:4326",
                                  "transform --from EPSG:4326 --to",
                                  "transform --from \"\" --to EPSG:4326",
                                  "transform --from EPSG:4326 --to \"\"",
                                  "transform --from EPSG:4326 --to EPSG:999999",
                                  "transform --from EPSG:4326 --to EPSG:4275 --unit turn",
                                  "transform --from EPSG:4326 --to EPSG:4275 --precision 18",
                                  "transform --from EPSG:4326 --to EPSG:4275 -p @"}) {
        expectUsageError(arguments);
    }
}

TEST(Tqproj, TransformsBetweenReferenceSystems) {
    const std::string systems = "transform --from EPSG:4326 --to EPSG:4275 ";
    Program program;
    program.directory().fileWith("points.txt", "2.3522 48.8566 Paris\n");
    EXPECT_EQ(program.run(systems + program.path("points.txt")), 0);
    EXPECT_EQ(program.out(), "2.352904332 48.856666460 Paris\n");
    EXPECT_EQ(program.err(), "");
    EXPECT_EQ(program.run(systems + "--inverse --precision 6", program.out()), 0);
    EXPECT_EQ(program.out(), "2.352200 48.856600 Paris\n");
    EXPECT_EQ(program.run(systems + "-I --unit gon --precision 5 -", "2.61433815 54.28518496\nx 1\n"), 1);
    EXPECT_EQ(program.out(), "2.61356 54.28511\n* *\n");
    EXPECT_EQ(program.err(), "<stdin>:2: 'x' is not an angle\n");
}

TEST(Tqproj, ShowDescribesAProjection) {
    Program program;
    EXPECT_EQ(program.run("show -p @"), 0);
    EXPECT_TRUE(program.out().starts_with("name                              World Mercator\n"));
    EXPECT_EQ(program.run("show -p @ --wkt"), 0);
    EXPECT_TRUE(program.out().starts_with("PROJCS[\"World Mercator\","));
    EXPECT_EQ(program.err(), "");
}

TEST(Tqproj, TakesDefinitionsOfReferenceSystems) {
    Program program;
    EXPECT_EQ(program.run("show -p EPSG:3857 --wkt2"), 0);
    EXPECT_TRUE(program.out().starts_with("PROJCRS[\"WGS 84 / Pseudo-Mercator\","));
    EXPECT_EQ(program.run("show --definition +proj=merc --proj"), 0);
    EXPECT_TRUE(program.out().starts_with("+proj=merc "));
    EXPECT_EQ(program.run("show --file @ --wkt1"), 0);
    EXPECT_TRUE(program.out().starts_with("PROJCS[\"World Mercator\","));
    EXPECT_EQ(program.err(), "");
    for (const char* arguments : {"show -p EPSG:999999", "show --file EPSG:3857", "show -p @ --file @",
                                  "show -p @ --wkt1 --proj", "show -p @ --proj"}) {
        expectUsageError(arguments);
    }
}

TEST(Tqproj, ListsTheCatalogue) {
    Program program;
    EXPECT_EQ(program.run("catalog"), 0);
    EXPECT_NE(program.out().find("\nFrance\t"), std::string::npos);
    EXPECT_EQ(program.run("catalog --family 'WGS 84 UTM' --search 'zone 31N'"), 0);
    EXPECT_EQ(program.out(), "EPSG:32631\tWGS 84 / UTM zone 31N (EPSG:32631)\tWGS 84 UTM\n");
    EXPECT_EQ(program.err(), "");
    EXPECT_EQ(program.run("catalog --search 'no such system'"), 1);
    EXPECT_EQ(program.out() + program.err(), "");
    EXPECT_EQ(program.run("catalog --family Atlantis"), 2);
    EXPECT_EQ(program.err(), "tqproj: no family is called Atlantis (tqproj catalog lists them)\n");
}

#ifndef _WIN32
/// A shared directory with PROJ's data of the build tree in it, or with nothing.
class SharedDirectoryCase {
  public:
    explicit SharedDirectoryCase(bool hasData) {
        if (hasData) {
            std::filesystem::create_directory_symlink(_builtData, _shared.path() / "PROJ");
        }
    }

  private:
    std::filesystem::path _builtData = std::filesystem::canonical(
        tq_filesystemPath(tq_createPath(TQGetApplicationSharedDirectory(), "PROJ"))); // while it is known
    TemporaryDirectory _shared;
    TemporaryDirectory _empty;
    EnvironmentVariable _sharedDirectory{"TQ_SHARED_DIRECTORY", _shared.directory().utf8()};
    EnvironmentVariable _data{"PROJ_DATA", _empty.directory().utf8()};
    EnvironmentVariable _oldData{"PROJ_LIB", _empty.directory().utf8()};
};

TEST(Tqproj, EveryCommandFindsPROJsDatabaseInTheSharedDirectory) {
    const SharedDirectoryCase surroundings(true);
    Program program;
    program.directory().fileWith("defined.proj", "TQFile v1\n127\nTQPrProj4 v0\nL93\nEPSG:2154\n");
    for (const std::string& projection :
         {std::string("EPSG:2154"), std::string("'RGF93 v1 / Lambert-93 (EPSG:2154)'"),
          std::string("'\tEPSG_2154'"), program.path("defined.proj")}) {
        EXPECT_EQ(program.run("convert -p " + projection, "2.3522 48.8566\n"), 0) << program.err();
        EXPECT_EQ(program.out(), "652469.023 6862035.259\n");
        EXPECT_EQ(program.run("show -p " + projection), 0) << program.err();
    }
    EXPECT_EQ(program.run("transform --from EPSG:4326 --to EPSG:4275", "2.3522 48.8566\n"), 0);
    EXPECT_EQ(program.run("catalog --search EPSG:2154"), 0);
}

TEST(Tqproj, WithoutADatabaseEveryCommandSaysSo) {
    const SharedDirectoryCase surroundings(false);
    Program program;
    for (const char* arguments :
         {"convert -p EPSG:2154", "show -p EPSG:2154", "catalog", "show --name 'NTF (EPSG:4275)'",
          "transform --from EPSG:4326 --to EPSG:4275"}) {
        EXPECT_EQ(program.run(arguments), 2) << arguments;
        EXPECT_EQ(program.out(), "") << arguments;
        const std::string err = program.err();
        EXPECT_TRUE(err.find("PROJ has no database") != std::string::npos ||
                    err.ends_with("Cannot find proj.db\n"))
            << err;
        EXPECT_EQ(std::ranges::count(err, '\n'), 1) << err;
    }
    EXPECT_EQ(program.run("convert -p @", "0 0\n"), 0) << "native projections need none";
}
#endif

TEST(Tqproj, GeographicSystemsHaveTheDecimalsOfDegrees) {
    Program program;
    for (const char* system :
         {"EPSG:4326", "EPSG:4979", "EPSG:4326+5773", "'+proj=longlat +ellps=intl +towgs84=1,2,3'"}) {
        EXPECT_EQ(program.run(std::string("convert -p ") + system, "2.123456789 48\n"), 0) << program.err();
        EXPECT_EQ(program.out(), "2.123456789 48.000000000\n") << system;
    }
}

TEST(Tqproj, MessagesAreOneLineWhateverTheNames) {
    Program program;
    EXPECT_EQ(program.run("show -p \"$(printf 'a\\nb')\""), 2);
    EXPECT_EQ(program.err(), "tqproj: no projection is called a\\x0Ab\n");
    EXPECT_EQ(program.run("convert -p @ \"$(printf 'a\\nb')\""), 2);
    EXPECT_TRUE(program.err().starts_with("tqproj: cannot read a\\x0Ab: ")) << program.err();
}

TEST(Tqproj, TakesNamesOfTheCatalogue) {
    Program program;
    EXPECT_EQ(program.run("convert -p 'WGS 84 / UTM zone 31N (EPSG:32631)'", "3 0\n"), 0);
    EXPECT_EQ(program.out(), "500000.000 0.000\n");
    EXPECT_EQ(program.run("convert --name 'WGS 84 / UTM zone 31N (EPSG:32631)'", "3 0\n"), 0);
    EXPECT_EQ(program.out(), "500000.000 0.000\n");
}

#ifndef _WIN32
TEST(Tqproj, SpeaksTheLanguageOfTheEnvironment) {
    Program program;
    const auto firstFamily = [&program](const std::string& language) {
        EXPECT_EQ(Program::shell("LC_ALL= LC_MESSAGES= LANGUAGE= LANG=" + language + " " +
                                 Program::quoted(TQPROJ_PROGRAM) + " catalog > " + program.path("out")),
                  0);
        return program.out().substr(0, program.out().find('\t'));
    };
    EXPECT_EQ(firstFamily("fr_FR.UTF-8"), "Systèmes géographiques");
    EXPECT_EQ(firstFamily("en_GB.UTF-8"), "Geographic systems");
}
#endif

TEST(Tqproj, TellsItsVersion) {
    Program program;
    EXPECT_EQ(program.run("--version"), 0);
    EXPECT_EQ(program.out(), "tqproj " TQPROJ_VERSION "\n");
    EXPECT_EQ(program.err(), "");
}

TEST(Tqproj, HelpNamesEveryOptionAndGivesExamples) {
    Program program;
    EXPECT_EQ(program.run("--help"), 0);
    for (const char* command : {"convert", "transform", "show", "list", "catalog"}) {
        EXPECT_NE(program.out().find(command), std::string::npos) << command;
    }
    EXPECT_EQ(program.run("convert --help"), 0);
    for (const char* option :
         {"--projection", "--inverse", "--unit", "--precision", "--jobs", "FILE", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
    EXPECT_EQ(program.run("transform --help"), 0);
    for (const char* option : {"--from", "--to", "--inverse", "--unit", "--precision", "FILE", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
    EXPECT_EQ(program.run("show --help"), 0);
    for (const char* option :
         {"--projection", "--file", "--definition", "--name", "--wkt1", "--wkt2", "--proj", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
    EXPECT_EQ(program.run("list --help"), 0);
    for (const char* option : {"--projections", "--ellipsoids", "TEXT", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
    EXPECT_EQ(program.run("catalog --help"), 0);
    for (const char* option : {"--family", "--search", "--json", "Examples:"}) {
        EXPECT_NE(program.out().find(option), std::string::npos) << option;
    }
    EXPECT_EQ(program.err(), "");
}

TEST(Tqproj, FullDiskGivesTwo) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    Program program;
    for (const char* arguments :
         {"convert -p @", "transform --from EPSG:4326 --to EPSG:4275", "show -p @", "catalog", "--help"}) {
        program.directory().fileWith("in", "0 0\n");
        EXPECT_EQ(Program::shell(Program::quoted(TQPROJ_PROGRAM) + " " + program.withProjection(arguments) +
                                 " < " + program.path("in") + " > /dev/full 2> " + program.path("err")),
                  2);
        EXPECT_TRUE(program.err().starts_with("tqproj: cannot write the output: ")) << program.err();
        EXPECT_EQ(std::ranges::count(program.err(), '\n'), 1) << program.err();
    }
}

TEST(Tqproj, AFileThatCannotBeSavedIsToldWithTheSystemsReason) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    Program program;
    ASSERT_EQ(
        program.run("create --type UTM --name mine --ellipsoid \"WGS 84\" -o " + program.path("mine.proj")),
        0)
        << program.err();
    EXPECT_EQ(program.run("create --type UTM --name mine --ellipsoid \"WGS 84\" -o /dev/full"), 2);
    EXPECT_EQ(program.err(), "tqproj: cannot write /dev/full: No space left on device\n");
    EXPECT_EQ(program.run("pack Lambert-93 -o /dev/full"), 2);
    EXPECT_EQ(program.err(), "tqproj: cannot write /dev/full: No space left on device\n");
    EXPECT_EQ(program.run("create --type UTM --name mine --ellipsoid \"WGS 84\" -o /no/such/place.proj"), 2);
    EXPECT_EQ(program.err(), "tqproj: cannot write /no/such/place.proj: No such file or directory\n");
}

#ifndef _WIN32
TEST(Tqproj, ClosedPipeGivesTwoWithoutAWord) {
    Program program;
    std::string points;
    for (int count = 0; count < 200000; ++count) {
        points += "0 0\n";
    }
    program.directory().fileWith("in", points);
    Program::shell("{ " + Program::quoted(TQPROJ_PROGRAM) + program.withProjection(" convert -p @ < ") +
                   program.path("in") + " 2> " + program.path("err") + "; echo $? > " +
                   program.path("status") + "; } | head -n 1 > " + program.path("out"));
    EXPECT_EQ(program.out(), "0.000 0.000\n");
    EXPECT_EQ(program.err(), "");
    EXPECT_EQ(program.directory().bytesOf("status"), "2\n");
}

#ifdef __linux__
TEST(Tqproj, ASaveThatASignalEndsLeavesNothingBehind) {
    Program program;
    const std::string command = Program::quoted(TQPROJ_PROGRAM);
    const std::string document = program.path("many.doc");
    ASSERT_EQ(Program::shell(command + " list | head -n 400 | cut -f 1 | xargs -d '\\n' " + command +
                             " pack -o " + document),
              0);
    // Each time the signal comes while the files are being written, which takes far longer than the first of
    // them.
    std::string statuses;
    for (const char* name : {"1", "2", "3", "4", "5"}) {
        const std::string directory = program.path(name);
        Program::shell("exec 2> " + program.path("err") + "; " + command + " unpack " + document + " -d " +
                       directory + " & pid=$!; until [ -n \"$(ls " + directory +
                       ")\" ]; do :; done; kill -TERM $pid; wait $pid; echo $? > " + program.path("status"));
        statuses += program.directory().bytesOf("status");
        for (const auto& entry : std::filesystem::directory_iterator(program.directory().path() / name)) {
            EXPECT_EQ(entry.path().extension(), ".proj");
        }
    }
    EXPECT_EQ(statuses, "143\n143\n143\n143\n143\n");
}

// Each time the signal comes as soon as there is something among the temporary files.
TEST(Tqproj, ACreateThatASignalEndsLeavesNothingBehind) {
    Program program;
    const std::filesystem::path temporary = program.directory().path() / "temporary";
    std::filesystem::create_directory(temporary);
    const std::string seen = "[ -n \"$(ls " + program.path("temporary") + ")\" ]";
    for (int run = 0; run < 10; ++run) {
        Program::shell(
            "exec 2> " + program.path("err") + "; TMPDIR=" + program.path("temporary") + " " +
            Program::quoted(TQPROJ_PROGRAM) +
            " create --type Lambert --name M --ellipsoid \"GRS 1980\" --set latitudeOrigin=46 -o " +
            program.path("m.proj") + " & pid=$!; for i in $(seq 500); do " + seen +
            " && break; done; kill -TERM $pid; wait $pid");
        EXPECT_TRUE(std::filesystem::is_empty(temporary));
    }
}
#endif

TEST(Tqproj, AnswersALineBeforeTheNextOneComes) {
    Program program;
    const std::string fifo = program.path("fifo");
    ASSERT_EQ(Program::shell("mkfifo " + fifo), 0);
    // The writer sends its second line only after it has seen the answer to the first.
    const std::string converter = Program::quoted(TQPROJ_PROGRAM) +
                                  program.withProjection(" convert -p @ < ") + fifo + " > " +
                                  program.path("out");
    const std::string writer = "{ echo 0 0; for i in $(seq 100); do [ -s " + program.path("out") +
                               " ] && break; sleep 0.1; done; cat " + program.path("out") + " > " +
                               program.path("early") + "; echo 0 0; } > " + fifo;
    Program::shell(converter + " & " + writer + "; wait");
    EXPECT_EQ(program.directory().bytesOf("early"), "0.000 0.000\n");
    EXPECT_EQ(program.out(), "0.000 0.000\n0.000 0.000\n");
}
#endif

} // namespace
