#include "tests/tools/Program.h"

#include <gtest/gtest.h>

#include <string>

// Where formulas go on but are no longer the projection, and where longitudes are a whole turn away.

namespace {

/// The projections that do not come with the library.
constexpr const char* southernBonne =
    "TQFile v1\n0\nTQPrBonne v1\nTQProjection v1\nBonne south\nTQEllipsoid v2\nWGS 84\n"
    "6378137\n0.006694379990141\n0\n140\n-30\n";

// EPSG:29873 with plane coordinates measured from the centre.
constexpr const char* borneo =
    "TQFile v1\n6\nTQPrObliqueMercator v1\nTQProjection v1\nBorneo\nTQEllipsoid v2\n"
    "Everest\n6377298.556\n0.006637846630200\n0\n"
    "0\n115\n4\n53.315820\n53.130102\n0.99984\n0\n0\n";

class TqprojDomain : public testing::Test {
  protected:
    /// Runs the conversion of one line.
    int convert(const std::string& arguments, const std::string& line) {
        return _program.run("convert " + arguments, line + "\n");
    }

    /// Expects that a point is refused as one beyond the domain, and converted where the user wants it so.
    void expectBeyond(const std::string& arguments, const std::string& line) {
        EXPECT_EQ(convert(arguments, line), 1) << arguments << ": " << line;
        EXPECT_EQ(_program.out(), "* *\n") << arguments << ": " << line;
        const std::string reason = "<stdin>:1: the point lies beyond the domain of the projection: ";
        EXPECT_TRUE(_program.err().starts_with(reason)) << _program.err();
        EXPECT_GT(_program.err().size(), reason.size() + 1);
        EXPECT_NE(convertedAnyway(arguments, line), "* *\n");
    }

    /// The result of a point that is not refused.
    std::string converted(const std::string& arguments, const std::string& line) {
        EXPECT_EQ(convert(arguments, line), 0) << arguments << ": " << line << ": " << _program.err();
        EXPECT_EQ(_program.err(), "");
        return _program.out();
    }

    std::string convertedAnyway(const std::string& arguments, const std::string& line) {
        return converted("--beyond-domain " + arguments, line);
    }

    /// The option for a projection by the text of its file.
    std::string fileOption(const char* text) const {
        _program.directory().fileWith("test.proj", text);
        return "-p " + _program.path("test.proj");
    }

    Program _program;
};

const std::string kTransverse = "-p \"British National Grid (without datum shift)\""; // from 2 degrees west
const std::string kLambert = "-p Lambert-93";                                         // from 3 degrees east

// Latitudes beyond 89 degrees are held there.
TEST_F(TqprojDomain, TransverseMercatorNextToThePole) {
    expectBeyond(kTransverse, "1 89.9999");
    EXPECT_EQ(convertedAnyway(kTransverse, "1 89.9999"), convertedAnyway(kTransverse, "1 89.5"));
    converted(kTransverse, "1 88.9999");
}

// 100 degrees off has the image of 80 degrees on the other side of the equator.
TEST_F(TqprojDomain, TransverseMercatorFarFromTheCentralMeridian) {
    expectBeyond(kTransverse, "98 30");
    EXPECT_EQ(convertedAnyway(kTransverse, "98 30"), convertedAnyway(kTransverse, "78 -30"));
    converted(kTransverse, "42.9 30");
    converted("-I " + kTransverse, "400000 500000");
    expectBeyond("-I " + kTransverse, "400000 12000000");
}

TEST_F(TqprojDomain, SouthernBonneBack) {
    const std::string bonne = fileOption(southernBonne);
    const std::string image = converted(bonne, "145 -35");
    expectBeyond("-I " + bonne, image.substr(0, image.size() - 1));
}

// By the centre form's definition the centre has the false origin, from both sides.
TEST_F(TqprojDomain, CentreFormOfTheObliqueMercatorEastOfItsCentre) {
    const std::string oblique = fileOption(borneo);
    expectBeyond(oblique, "115.5 4.4");
    converted(oblique, "114.5 3.6");
}

TEST_F(TqprojDomain, SouthernPolarStereographicWithFalseNorthingBack) {
    const std::string south = "-p \"UPS South (WGS 84)\"";
    converted(south, "10 -80");
    expectBeyond("-I " + south, "2000000 1000000");
}

TEST_F(TqprojDomain, OtherHemisphereOfTheGnomonic) {
    const std::string north = "-p \"North Pole gnomonic (sphere)\"";
    expectBeyond(north, "10 -30");
    converted(north, "10 30");
}

// An area that the projection itself is limited to holds all the same.
TEST_F(TqprojDomain, AreaHoldsBeyondTheDomainToo) {
    for (const std::string option : {"", "--beyond-domain "}) {
        EXPECT_EQ(convert(option + "-p \"UTM zone 31N (WGS 84)\"", "3 85"), 1);
        EXPECT_EQ(_program.out(), "* *\n");
        EXPECT_EQ(_program.err(), "<stdin>:1: the point lies outside the area of the projection\n");
    }
}

TEST_F(TqprojDomain, DefinitionsOfPROJHaveNoLimits) {
    converted("-p EPSG:27700", "1 89.9999");
    converted("-p EPSG:27700", "78 -30");
}

// The coordinates of Paris are PROJ's.
TEST_F(TqprojDomain, AWholeTurnIsTheSamePlace) {
    const std::string paris = "652469.023 6862035.259\n";
    for (const char* longitude : {"2.3522", "362.3522", "-357.6478", "3602.3522"}) {
        EXPECT_EQ(converted(kLambert, std::string(longitude) + " 48.8566"), paris) << longitude;
    }
    EXPECT_EQ(converted(kLambert, "358 48.8566"), converted(kLambert, "-2 48.8566"));
    EXPECT_EQ(converted(kLambert + " --beyond-domain", "362.3522 48.8566"), paris);
    EXPECT_EQ(converted(kLambert + " --unit dms", "362:21:07.92E 48:51:23.76N"), paris);
    EXPECT_EQ(converted(kLambert + " --unit gon", "402.613555556 54.285111111"),
              converted(kLambert + " --unit gon", "2.613555556 54.285111111"));
    EXPECT_EQ(converted(kLambert + " --unit rad", "6.32423916818 0.852708532"),
              converted(kLambert + " --unit rad", "0.041053861 0.852708532"));
}

// PROJ chooses a transformation by its area, in which 362 degrees do not lie.
TEST_F(TqprojDomain, AWholeTurnIsTheSamePlaceForTransformations) {
    for (const char* longitude : {"362.1 51.5", "-357.9 51.5"}) {
        EXPECT_EQ(converted("--datum wgs84 -p EPSG:23031", longitude),
                  converted("--datum wgs84 -p EPSG:23031", "2.1 51.5"));
        const std::string transform = "transform --from EPSG:4326 --to EPSG:4275";
        EXPECT_EQ(_program.run(transform, "2.1 51.5\n"), 0);
        const std::string place = _program.out();
        EXPECT_EQ(_program.run(transform, std::string(longitude) + "\n"), 0);
        EXPECT_EQ(_program.out(), place);
    }
}

// A quarter turn is 90 degrees and 100 grads.
TEST_F(TqprojDomain, LatitudesBeyondAPoleAreRefused) {
    const auto expectRefused = [&](const std::string& command, const std::string& point) {
        EXPECT_EQ(_program.run(command, point + "\n"), 1) << command << ": " << point;
        EXPECT_EQ(_program.out(), "* *\n") << command << ": " << point;
        EXPECT_EQ(_program.err(), "<stdin>:1: the latitude lies beyond a pole\n") << command;
    };
    const auto expectTaken = [&](const std::string& command, const std::string& point) {
        EXPECT_EQ(_program.run(command, point + "\n"), 0) << command << ": " << point;
    };
    for (const std::string command :
         {"transform --from EPSG:4326 --to EPSG:4326", "transform --from EPSG:4326 --to EPSG:4230 --ballpark",
          "transform --from EPSG:4326 --to EPSG:4807", "convert -p EPSG:4326", "convert -p EPSG:4807",
          "convert -I -p EPSG:4326"}) {
        for (const char* latitude : {"91", "-91", "90.000001", "200"}) {
            expectRefused(command, std::string("2 ") + latitude);
        }
        expectTaken(command, "2 90");
        expectTaken(command, "2 -90");
    }
    expectTaken("convert -I -p EPSG:4807", "2 100");
    expectTaken("convert -I -p EPSG:4807", "2 -91");
    expectRefused("convert -I -p EPSG:4807", "2 100.000001");
    expectRefused("convert -I --datum wgs84 -p EPSG:4807", "2 101");
    expectRefused("convert --datum wgs84 -p EPSG:4230", "2 91"); // at the pole itself no shift is known
    expectTaken("convert -p EPSG:4326 --unit gon", "2 100");
    expectTaken("convert -I -p EPSG:2154", "700000 6600000"); // metres
}

// Degrees that binary numbers hold exactly lose nothing with the turn.
TEST_F(TqprojDomain, TurnsLoseNoDigits) {
    const std::string utm = "--precision full -p \"UTM zone 1S (WGS 84)\""; // from 177 degrees west
    const std::string place = converted(utm, "-179.75 -18");
    EXPECT_EQ(converted(utm, "180.25 -18"), place);
    EXPECT_EQ(converted(utm, "540.25 -18"), place);
    const std::string beyond = converted("--precision full -p \"UTM zone 60S (WGS 84)\"", "180.25 -18");
    EXPECT_EQ(converted("--precision full -p \"UTM zone 60S (WGS 84)\"", "-179.75 -18"), beyond);
}

TEST_F(TqprojDomain, AnyNumberOfJobsRefusesTheSamePoints) {
    std::string points;
    for (int line = 0; line < 40000; ++line) {
        points += std::to_string(line * 7 % 360) + " " + std::to_string(line % 181 - 90) + "\n";
    }
    EXPECT_EQ(_program.run("convert --jobs 1 " + kTransverse, points), 1);
    const std::string out = _program.out();
    const std::string err = _program.err();
    EXPECT_NE(err, "");
    EXPECT_EQ(_program.run("convert --jobs 8 " + kTransverse, points), 1);
    EXPECT_TRUE(_program.out() == out);
    EXPECT_TRUE(_program.err() == err);
}

} // namespace
