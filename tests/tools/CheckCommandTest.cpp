#include "tools/tqproj/CheckCommand.h"

#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "testing/ProcessState.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

using testing::AllOf;
using testing::HasSubstr;

namespace {

constexpr const char* kWGS84 = "TQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n";
constexpr const char* kClarke = "TQEllipsoid v2\nMy Clarke\n6378249.2\n0.0068034876462998\n0\n";

struct CheckCase : CommandCase {
    CheckOptions options;

    std::string add(const std::string& name, const std::string& bytes) {
        const std::string path = directory.fileWith(name, bytes).utf8();
        options.paths.emplace_back(path);
        return path;
    }

    ExitCode run() { return CheckCommand(options, output, diagnostics).run(); }
};

/// What is said of one file, without its path.
std::string said(const std::string& name, const std::string& bytes) {
    CheckCase test;
    const std::string path = test.add(name, bytes);
    const ExitCode code = test.run();
    EXPECT_EQ(code, test.out().empty() ? ExitCode::Success : ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), "");
    std::string text = test.out();
    for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos;) {
        text.erase(at, path.size());
    }
    return text;
}

std::string lines(const std::string& text, int count) {
    std::size_t end = 0;
    while (count-- > 0) {
        end = text.find('\n', end) + 1;
    }
    return text.substr(0, end);
}

TEST(CheckCommand, GoodFilesAreSilent) {
    EXPECT_EQ(said("a.proj", projectionfiles::WorldMercator), "");
    EXPECT_EQ(said("a.ell", kClarke), "");
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\n1 2 3\nWGS 84\n"), "");
    EXPECT_EQ(said("a.proj", "TQFile v1\n127\nTQPrProj4 v0\nLambert-93\nEPSG:2154\n"), "");
}

TEST(CheckCommand, AllResourcesAreGood) {
    CheckCase test;
    for (const char* folder : {"Ellipsoids", "Datum", "Projection"}) {
        test.options.paths.push_back(
            tq_createPath(TQGetApplicationSharedDirectory(), "resProj", folder).utf8());
    }
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.out(), "");
}

TEST(CheckCommand, TheEnvelopeOfAProjectionFileHasCodes) {
    EXPECT_EQ(said("a.proj", ""), ": code 2: the file version line is missing\n");
    EXPECT_EQ(said("a.proj", "TQFile v7\n"), ":1: code 3: the file version is not known\n");
    EXPECT_EQ(said("a.proj", "TQFile v1\n"), ":1: code 4: the line of the type code is missing\n");
    EXPECT_EQ(said("a.proj", projectionfiles::UnknownType), ":2: code 5: the type code is not known\n");
}

// The line is the last one that there is.
TEST(CheckCommand, EachCodeOfAProjectionsReaderIsExplained) {
    const std::string whole = projectionfiles::WorldMercator;
    EXPECT_EQ(said("a.proj", lines(whole, 2)),
              ":2: code 5502: the first line of a block is missing or ends in no version\n");
    EXPECT_EQ(said("a.proj", lines(whole, 2) + "TQPrMercator v9\n"),
              ":3: code 5503: the version of a block is not known\n");
    EXPECT_EQ(said("a.proj", lines(whole, 3)),
              ":3: code 5023: the first line of a block is missing or ends in no version\n");
    EXPECT_EQ(said("a.proj", lines(whole, 4)), ":4: code 5025: the line of the name is missing\n");
    EXPECT_EQ(said("a.proj", lines(whole, 6)), ":6: code 5004: the line of the name is missing\n");
    EXPECT_EQ(said("a.proj", lines(whole, 7)), ":7: code 5005: the line of the semi-major axis is missing\n");
    EXPECT_THAT(said("a.proj", lines(whole, 10)), AllOf(HasSubstr(":10: code "), HasSubstr("lambda0")));
    EXPECT_THAT(said("a.proj", lines(whole, 14)), AllOf(HasSubstr(":14: code "), HasSubstr("k0")));
    EXPECT_EQ(said("a.proj", "TQFile v1\n13\n"),
              ":2: code -1: the first line of a block is missing or ends in no version\n");
    EXPECT_EQ(said("a.proj", "TQFile v1\n13\nTQPrCassiniSoldner v7\n"),
              ":3: code -1: the version of a block is not known\n");
    EXPECT_EQ(said("a.proj", "TQFile v1\n127\nTQPrProj4 v0\nName\n"),
              ":4: code -1: the line of the definition is missing\n");
}

TEST(CheckCommand, EachCodeOfAnEllipsoidIsExplained) {
    EXPECT_EQ(said("a.ell", ""), ": code 5002: the first line of a block is missing or ends in no version\n");
    EXPECT_EQ(said("a.ell", "TQEllipsoid v3\n"), ":1: code 5003: the version of a block is not known\n");
    EXPECT_EQ(said("a.ell", lines(kWGS84, 1)), ":1: code 5004: the line of the name is missing\n");
    EXPECT_EQ(said("a.ell", lines(kWGS84, 2)), ":2: code 5005: the line of the semi-major axis is missing\n");
    EXPECT_EQ(said("a.ell", lines(kWGS84, 3)),
              ":3: code 5006: the line of the squared eccentricity is missing\n");
    EXPECT_EQ(said("a.ell", lines(kWGS84, 4)), ":4: code 5008: a line of the datum shift is missing\n");
}

TEST(CheckCommand, ADatumsProblemIsExplained) {
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\n1 2 3 4 5\nWGS 84\n"),
              ":3: code 101: there are neither three nor seven shift parameters\n");
    EXPECT_EQ(said("a.dtm", "# 1\nAtlantis\n1 2 3\nWGS 84\n"),
              ":2: code 101: the line of the local ellipsoid is missing, or names none that is registered\n");
}

TEST(CheckCommand, ADatumMayNameAnEllipsoidThatIsCheckedToo) {
    CheckCase test;
    test.add("a.dtm", "# 1\nMy Clarke\n1 2 3\nWGS 84\n");
    test.add("b.ell", kClarke);
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.out(), "");
}

TEST(CheckCommand, ALineThatIsNoNumberIsAWarning) {
    constexpr const char* kNoNumber = ": warning: the line holds something else than the numbers that belong "
                                      "there; it is read as far as it can be\n";
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\n6378 km\n0.006\n0\n"), std::string(":3") + kNoNumber);
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\n6378249.2\n0.0068\n1\n6378137\n0.0033\n1 2\n"),
              std::string(":8") + kNoNumber);
    const std::string eleven = lines(projectionfiles::WorldMercator, 10);
    EXPECT_EQ(said("a.proj", eleven + "0\n0\nfalse easting\n0\n1\n"), std::string(":13") + kNoNumber);
    EXPECT_EQ(said("a.proj", "TQFile v1\nMercator\n"),
              std::string(":2") + kNoNumber +
                  ":2: code 5102: the first line of a block is missing or ends in no version\n");
}

TEST(CheckCommand, WhatIsNotReadIsAWarning) {
    EXPECT_EQ(said("a.ell", std::string(kClarke) + "\n \nmore\nand more\n"),
              ":8: warning: the definition ends before this line; the rest is not read\n");
    EXPECT_EQ(said("a.ell", std::string(kClarke) + "\n\t\n"), "");
}

TEST(CheckCommand, ImpossibleAxesAreAWarning) {
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\n-1\n1\n0\n"),
              ": warning: the semi-major axis is no length above 0\n"
              ": warning: the squared eccentricity lies outside 0 to 1\n");
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\ninf\nnan\n0\n"),
              ": warning: the semi-major axis is no length above 0\n"
              ": warning: the squared eccentricity lies outside 0 to 1\n");
}

/// World Mercator with other lines in the place of its last one, the factor k0, and of its name.
std::string worldMercator(const std::string& name, const std::string& factor) {
    return "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\n" + name +
           "\nTQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n0\n0\n0\n0\n" + factor + "\n";
}

TEST(CheckCommand, ParametersThatAreNotFiniteAreAWarning) {
    EXPECT_EQ(said("a.proj", worldMercator("M", "nan")), ": warning: k0 is not finite\n");
    EXPECT_EQ(said("a.proj", worldMercator("M", "1e400")), ": warning: k0 is not finite\n");
}

TEST(CheckCommand, ParametersOfNoMapAreAWarning) {
    for (const char* factor : {"0", "-1"}) {
        EXPECT_EQ(said("a.proj", worldMercator("M", factor)), ": warning: k0 is no factor above 0\n");
    }
    const auto mercator = [](const std::string& angles) {
        return "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\nTQEllipsoid v2\nWGS 84\n6378137\n"
               "0.006694379990141\n0\n" +
               angles + "\n0\n0\n1\n";
    };
    EXPECT_EQ(said("a.proj", mercator("1e300\n5000")),
              ": warning: lambda0 lies beyond 360 degrees\n"
              ": warning: phi0 lies beyond 90 degrees, the latitude of a pole\n");
    EXPECT_EQ(said("a.proj", mercator("-360\n90")), "");
}

TEST(CheckCommand, WhatMakesConversionsLongIsAWarning) {
    EXPECT_EQ(said("a.proj", worldMercator("M", "1e-300")),
              ": warning: k0 is the factor of no map; conversions may take long\n");
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\n6378137\n0.9999999\n0\n"),
              ": warning: the squared eccentricity is that of no planet; conversions take long\n");
}

TEST(CheckCommand, NamesThatNobodyFindsAreAWarning) {
    EXPECT_EQ(said("a.proj", worldMercator("\tM", "1")),
              ": warning: the name begins with a tab: applications look it up among PROJ's systems\n");
    EXPECT_EQ(said("a.proj", worldMercator("M\x1B[2J", "1")),
              ": warning: the name holds control characters\n");
    EXPECT_EQ(said("a.proj", worldMercator(std::string(4097, 'x'), "1")),
              ":5: warning: the line is longer than 4096 characters; the rest of it is not read\n");
    EXPECT_EQ(said("a.proj", worldMercator(std::string(4096, 'x'), "1")), "");
}

// Classes with one code for all lines, and the hemisphere, which no parameter states.
TEST(CheckCommand, AMissingLineIsNamedWhateverItsCode) {
    const std::string utm = projectionfiles::Utm31North;
    EXPECT_EQ(said("a.proj", lines(utm, 11)), ":11: code 5407: the line of the hemisphere is missing\n");
    const std::string base = "TQProjection v1\nS\nTQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n";
    EXPECT_EQ(said("a.proj", "TQFile v1\n12\nTQPrSwissObliqueMercator v1\n" + base + "7.4\n46.9\n"),
              ":12: code -1: the line of kc is missing\n");
    EXPECT_EQ(said("a.proj", "TQFile v1\n6\nTQPrObliqueMercator v1\n" + base),
              ":10: code -1: the line of the options is missing\n");
}

TEST(CheckCommand, AShiftThatIsNotFiniteIsAWarning) {
    constexpr const char* kNotFinite =
        ": warning: the datum shift is not finite, or has no reference axis above 0\n";
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\nnan inf 3\nWGS 84\n"), kNotFinite);
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\nX\n6378249.2\n0.0068\n1\n0\n0.0033\n1 2 3\n"), kNotFinite);
}

TEST(CheckCommand, WhatIsNotReadOfAShiftIsAWarning) {
    constexpr const char* kMore = ":3: warning: the line holds something else than the numbers that belong "
                                  "there; it is read as far as it can be\n";
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\n1 2 3 metres\nWGS 84\n"), kMore);
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\n1 2 3 4 5 6 7 8\nWGS 84\n"), kMore);
    EXPECT_EQ(said("a.dtm", "# 1\nBessel 1841\n 1 2  3 \nWGS 84\nmore\n"),
              ":5: warning: the definition ends before this line; the rest is not read\n");
}

TEST(CheckCommand, APathThatIsGivenTwiceIsCheckedOnce) {
    CheckCase test;
    test.add("a.proj", projectionfiles::UnknownType);
    test.options.paths.push_back(test.options.paths.front());
    test.options.paths.push_back(test.directory.directory().utf8());
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_EQ(std::ranges::count(test.out(), '\n'), 1);
}

TEST(CheckCommand, ADirectoryWithoutDefinitionFilesIsIncomplete) {
    CheckCase test;
    test.options.paths = {test.directory.directory().utf8()};
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_EQ(test.messages(),
              "tqproj: " + test.options.paths[0].string() + " holds no .proj, .ell and .dtm files\n");
}

TEST(CheckCommand, AProjectionsAxesAreChecked) {
    EXPECT_EQ(said("a.proj", "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\n"
                             "TQEllipsoid v2\nX\n0\n0.006\n0\n0\n0\n0\n0\n1\nmore\n"),
              ":16: warning: the definition ends before this line; the rest is not read\n"
              ": warning: the semi-major axis is no length above 0\n");
}

TEST(CheckCommand, AProjectionWithoutEllipsoidIsAWarning) {
    EXPECT_EQ(said("a.proj", "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\n"
                             "TQEllipsoid v2\n\n0\n0\n0\n0\n0\n0\n0\n1\n"),
              ": warning: the projection has no ellipsoid and converts nothing\n");
}

TEST(CheckCommand, ADatumMayNameOneThatIsCheckedToo) {
    CheckCase test;
    test.add("First.dtm", "# 1\nBessel 1841\n1 2 3\nWGS 84\n");
    test.add("Second.dtm", "# 1\nBessel 1841/First\n1 2 3\nWGS 84\n");
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.out(), "");
}

TEST(CheckCommand, AnEllipsoidThatIsRegisteredOtherwiseIsAWarning) {
    EXPECT_EQ(
        said("a.proj", "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\nM\n"
                       "TQEllipsoid v2\nWGS 84\n6378000\n0.006694379990141\n0\n0\n0\n0\n0\n1\n"),
        ": warning: the ellipsoid \"WGS 84\" is registered with another definition, which will be used\n");
}

TEST(CheckCommand, ANameThatIsTakenOrEmptyIsAWarning) {
    CheckCase test;
    const std::string first = test.add("a.proj", projectionfiles::WorldMercator);
    const std::string second = test.add("b.proj", projectionfiles::WorldMercator);
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), second + ": warning: the name \"World Mercator\" is that of " + first + " too\n");
    EXPECT_EQ(said("a.ell", "TQEllipsoid v2\n\n6378137\n0.0067\n0\n"), ": warning: the name is empty\n");
}

TEST(CheckCommand, ADefinitionThatPROJDoesNotKnowIsAWarning) {
    EXPECT_THAT(said("a.proj", "TQFile v1\n127\nTQPrProj4 v0\nN\nEPSG:999999\n"),
                HasSubstr(":5: warning: PROJ makes no projection of it: crs not found"));
}

TEST(CheckCommand, OfADirectoryTheDefinitionFilesAreChecked) {
    CheckCase test;
    test.directory.fileWith("a.proj", projectionfiles::UnknownType);
    test.directory.fileWith("b.ell", "");
    test.directory.fileWith("c.txt", "notes");
    test.options.paths = {test.directory.directory().utf8()};
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_THAT(test.out(), AllOf(HasSubstr("/a.proj:2: code 5: "), HasSubstr("/b.ell: code 5002: ")));
    EXPECT_EQ(test.out().find("c.txt"), std::string::npos);
    EXPECT_LT(test.out().find("b.ell"), test.out().find("a.proj")) << "ellipsoids come first";
}

TEST(CheckCommand, APathThatCannotBeReadIsAFailureAndTheOthersAreChecked) {
    CheckCase test;
    test.options.paths = {test.directory.file("missing.proj").utf8()};
    const std::string text = test.add("notes.txt", "notes");
    test.add("a.proj", projectionfiles::UnknownType);
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_THAT(test.messages(),
                AllOf(HasSubstr("tqproj: cannot read " + test.options.paths[0].string() + ": "),
                      HasSubstr(text + " is neither a .proj, an .ell nor a .dtm file\n")));
    EXPECT_THAT(test.out(), HasSubstr(": code 5: "));
}

#ifndef _WIN32
TEST(CheckCommand, ADirectoryThatMayNotBeListedHasTheSystemsReason) {
    CheckCase test;
    const std::filesystem::path directory = test.directory.path() / "closed";
    std::filesystem::create_directory(directory);
    std::filesystem::permissions(directory, std::filesystem::perms::none);
    std::filesystem::permissions(test.directory.path(), std::filesystem::perms::all);
    test.options.paths = {directory};
    {
        const OrdinaryUser user;
        if (!user.isOrdinary()) {
            GTEST_SKIP() << "the superuser may list everything";
        }
        EXPECT_EQ(test.run(), ExitCode::Failure);
    }
    EXPECT_EQ(test.messages(), "tqproj: cannot read " + directory.string() + ": Permission denied\n");
}
#endif

TEST(CheckCommand, AProblemIsOneLineWhateverTheNameHolds) {
    EXPECT_THAT(said("a.proj", "TQFile v1\n127\nTQPrProj4 v0\nN\nEPSG:\x1B[2J\n"),
                testing::Not(HasSubstr("\x1B")));
}

} // namespace
