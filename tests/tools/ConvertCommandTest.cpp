#include "tools/tqproj/ConvertCommand.h"

#include "support/TQDirectory.h"
#include "testing/MadeProjection.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace {

// The plane coordinates of Paris in World Mercator (EPSG:3395) and in UTM 31N (EPSG:32631) are those of PROJ
// 9.1.1, `cs2cs +proj=longlat +datum=WGS84 +to EPSG:3395`, likewise those of Sydney.
constexpr const char* ParisAndSydney = "2.3522 48.8566 Paris\n151.2073 -33.8679 Sydney\n";
constexpr const char* ParisAndSydneyConverted =
    "261845.706 6218369.433 Paris\n16832319.640 -3987266.916 Sydney\n";

struct ConvertCase : CommandCase {
    ConvertOptions options;

    explicit ConvertCase(const char* projection = projectionfiles::WorldMercator) {
        options.projection.text = directory.fileWith("test.proj", projection).utf8();
    }

    ExitCode run(const std::string& standardInput = {}) {
        std::stringbuf source(standardInput);
        return ConvertCommand(options, source, output, diagnostics).run();
    }
};

// The numbers are compared elsewhere; here every class is to be reached.
TEST(ConvertCommand, ServesEveryProjectionFileThatComesWithTheLibrary) {
    int files = 0;
    for (const TQString& name : TQOpenDir(projectionFileDirectory(), "proj")) {
        SCOPED_TRACE(name.utf8());
        ConvertCase test;
        test.options.projection.text = tq_createPath(projectionFileDirectory(), name).utf8();
        test.options.beyond = BeyondDomain::Convert; // wherever it lies
        EXPECT_EQ(test.run("8 47 here\n"), ExitCode::Success);
        EXPECT_EQ(test.out().find('*'), std::string::npos);
        EXPECT_EQ(test.messages(), "");
        ++files;
    }
    EXPECT_GE(files, 24);
}

TEST(ConvertCommand, WritesDegreesOfAGeographicSystemAsDegrees) {
    ConvertCase test;
    test.options.projection = {"EPSG:4326"};
    EXPECT_EQ(test.run("2.3522 48.8566 Paris\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2.352200000 48.856600000 Paris\n");
}

// The radians are those of the degrees; there are no metres without an ellipsoid.
TEST(ConvertCommand, WritesWhatHasNoEllipsoidWithTheDecimalsOfRadians) {
    ConvertCase test("TQFile v1\n11\nTQPrEquiRectangular v1\nTQProjection v1\nBare\n"
                     "TQEllipsoid v2\n\n0\n0\n0\n1\n1\n");
    EXPECT_EQ(test.run("2.3522 48.8566 Paris\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "0.04105363467 0.85270853133 Paris\n");
}

TEST(ConvertCommand, ConvertsTheStandardInput) {
    ConvertCase test;
    EXPECT_EQ(test.run(ParisAndSydney), ExitCode::Success);
    EXPECT_EQ(test.out(), ParisAndSydneyConverted);
    EXPECT_EQ(test.messages(), "");
}

TEST(ConvertCommand, ConvertsThroughUtm) {
    ConvertCase test(projectionfiles::Utm31North);
    EXPECT_EQ(test.run("2.3522 48.8566"), ExitCode::Success);
    EXPECT_EQ(test.out(), "452482.533 5411717.177");
}

TEST(ConvertCommand, ConvertsBack) {
    ConvertCase test;
    test.options.direction = Direction::Inverse;
    test.options.precision = 7;
    EXPECT_EQ(test.run("261845.706244 6218369.433471,Paris\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2.3522000 48.8566000,Paris\n");
}

TEST(ConvertCommand, FullPrecisionReturnsToTheSamePlace) {
    ConvertCase forward;
    forward.options.precision = NumberFormat::fullPrecision;
    forward.run("2.3522 48.8566\n");
    ConvertCase inverse;
    inverse.options.direction = Direction::Inverse;
    inverse.options.precision = 12;
    inverse.run(forward.out());
    EXPECT_EQ(inverse.out(), "2.352200000000 48.856600000000\n");
}

TEST(ConvertCommand, IncompleteComeOutWithStarsAndAllOthersConverted) {
    ConvertCase test;
    EXPECT_EQ(test.run("0 0 a\nx,0,b\r\n0 0 c\n 1\n0 91 d\n0 0 e"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "0.000 0.000 a\n*,*,b\r\n0.000 0.000 c\n * *\n* * d\n0.000 0.000 e");
    EXPECT_EQ(test.messages(), "<stdin>:2: 'x' is not an angle\n"
                               "<stdin>:4: the second number is missing\n"
                               "<stdin>:5: the latitude lies beyond a pole\n");
}

TEST(ConvertCommand, LatitudeOutsideTheAreaOfUtmIsABadLine) {
    ConvertCase test(projectionfiles::Utm31North);
    EXPECT_EQ(test.run("3 84.0\n3 84.0000001\n3 -80.0\n"), ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), "<stdin>:2: the point lies outside the area of the projection\n");
}

TEST(ConvertCommand, LibrarysMessageIsTheReasonOfItsLine) {
    ConvertCase test(projectionfiles::GctpMercator);
    EXPECT_EQ(test.run("0 90 pole\n0 0\n"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "* * pole\n0.000 0.000\n");
    EXPECT_EQ(test.messages(), "<stdin>:1: Transformation cannot be computed at the poles\n");
}

TEST(ConvertCommand, UnreadableProjectionIsAFailure) {
    ConvertCase test(projectionfiles::UnknownType);
    EXPECT_EQ(test.run("0 0\n"), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(std::ranges::count(test.messages(), '\n'), 1);
}

} // namespace
