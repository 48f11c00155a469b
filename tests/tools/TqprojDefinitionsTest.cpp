#include "testing/ProcessState.h"
#include "tests/tools/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

#ifndef _WIN32
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

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

// Geocentric, vertical, unknown, an operation, which is no system, and nothing.
TEST(TqprojDefinitions, WhatIsNoProjectionIsRefusedByEveryCommand) {
    for (const char* definition :
         {"EPSG:4978", "EPSG:5720", "EPSG:999999", "urn:ogc:def:coordinateOperation:EPSG::1671", ""}) {
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
    for (const char* name : {"foo", "Bessel", "NAD", "ED"}) {
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

#ifndef _WIN32
// One of the files is there wherever the tests run, the other one is not.
TEST(TqprojDefinitions, AProjectionFileLearnsNothingOfOtherFiles) {
    for (const std::string file : {"/etc/passwd", "/etc/nobody"}) {
        const std::string reason =
            "Cannot open " + file + " (for a projection file PROJ opens its own data alone)\n";
        DefinitionProgram init("+init=" + file + ":root");
        EXPECT_EQ(init.run("check " + init.file()), 1);
        EXPECT_THAT(init.out(), EndsWith(": " + reason));
        DefinitionProgram mesh("+proj=tinshift +file=" + file);
        EXPECT_EQ(mesh.run("convert" + mesh.byPath(), "1 2\n"), 2);
        EXPECT_THAT(mesh.err(), EndsWith(": " + reason));
    }
}

// PROJ waits for whoever opens the other end. A grid behind "@" may be missing.
TEST(TqprojDefinitions, APipeHoldsUpNoCommand) {
    constexpr int timedOut = 124;
    const Program place;
    const std::string pipe = (place.directory().path() / "pipe").string();
    ASSERT_EQ(Program::shell("mkfifo " + Program::quoted(pipe)), 0);
    for (const char* definition :
         {"+proj=longlat +ellps=intl +nadgrids=@", "+proj=tinshift +file=", "+init="}) {
        const DefinitionProgram program(definition + pipe);
        const std::string document = program.path("d.doc");
        for (const std::string& arguments :
             {"check " + program.file(), "convert" + program.byPath(), "convert" + program.byName(),
              "pack -o " + document + " --projections " + program.path("mine") + " Mine",
              "inspect " + document, "unpack -d " + program.path("unpacked") + " " + document}) {
            const int code =
                Program::shell("echo 2 48 | timeout 30 " + Program::quoted(TQPROJ_PROGRAM) + " " + arguments +
                               " > " + program.path("out") + " 2> " + program.path("err"));
            EXPECT_NE(code, timedOut) << definition << arguments;
        }
    }
}

TEST(TqprojDefinitions, ADocumentMayHoldADefinitionThatNamesAFile) {
    DefinitionProgram program("+proj=longlat +ellps=intl +nadgrids=@/etc/passwd");
    ASSERT_EQ(
        program.run("pack -o " + program.path("d.doc") + " --projections " + program.path("mine") + " Mine"),
        0)
        << program.err();
    ASSERT_EQ(program.run("unpack -d " + program.path("unpacked") + " " + program.path("d.doc")), 0);
    EXPECT_EQ(program.directory().bytesOf("unpacked/Mine.proj"),
              program.directory().bytesOf("mine/mine.proj"));
    EXPECT_EQ(program.run("convert --projections " + program.path("unpacked") + " --name Mine", "2 48\n"), 0);
    EXPECT_EQ(program.out(), "2.000000000 48.000000000\n");
}

/// A server on this machine that counts who comes, and sends everybody away.
class CountingServer {
  public:
    CountingServer() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const raw = static_cast<sockaddr*>(static_cast<void*>(&address));
        _isListening = bind(_socket, raw, length) == 0 && listen(_socket, 8) == 0 &&
                       getsockname(_socket, raw, &length) == 0;
        _port = ntohs(address.sin_port);
        _thread = std::thread([this] { serve(); });
    }

    ~CountingServer() {
        shutdown(_socket, SHUT_RDWR);
        _thread.join();
        close(_socket);
    }

    CountingServer(const CountingServer&) = delete;
    CountingServer& operator=(const CountingServer&) = delete;

    bool isListening() const { return _isListening; }
    int visitors() const { return _visitors; }
    std::string address() const { return "http://127.0.0.1:" + std::to_string(_port); }

  private:
    void serve() {
        for (int visitor = -1; (visitor = accept(_socket, nullptr, nullptr)) >= 0;) {
            ++_visitors;
            close(visitor);
        }
    }

    int _socket = socket(AF_INET, SOCK_STREAM, 0);
    bool _isListening = false;
    int _port = 0;
    std::atomic<int> _visitors{0};
    std::thread _thread;
};

TEST(TqprojDefinitions, OnlyWhatTheUserTypesIsFetchedFromTheNetwork) {
    CountingServer server;
    ASSERT_TRUE(server.isListening());
    const EnvironmentVariable network("PROJ_NETWORK", "ON");
    const std::string definition =
        "+proj=longlat +ellps=intl +nadgrids=" + server.address() + "/grid.tif +type=crs";
    DefinitionProgram program(definition);
    for (const std::string& projection : {program.byPath(), program.byName()}) {
        program.run("convert" + projection, "2 48\n");
    }
    program.run("check " + program.file());
    EXPECT_EQ(server.visitors(), 0);
    program.run("transform --from EPSG:4326 --to '+proj=pipeline +step " + definition + "'", "2 48\n");
    program.run("convert -p '+proj=vgridshift +grids=" + server.address() + "/grid.tif'", "2 48\n");
    EXPECT_GT(server.visitors(), 0);
}
#endif
