#include "tools/tqproj/TransformCommand.h"

#include "support/TQNumberText.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"
#include "tests/tools/CommandCase.h"
#include "tools/tqproj/AngularText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* kWGS84 = "EPSG:4326";
constexpr const char* kNTF = "EPSG:4275";
constexpr const char* kParis = "2.3522 48.8566 Paris\n";

struct TransformCase : CommandCase {
    TransformOptions options;

    explicit TransformCase(const std::string& source = kWGS84, const std::string& target = kNTF) {
        options.source = source;
        options.target = target;
    }

    ExitCode run(const std::string& standardInput = {}) {
        std::stringbuf source(standardInput);
        return TransformCommand(options, source, output, diagnostics).run();
    }
};

/// Two systems and the region that they are compared in.
struct SystemPair {
    const char* source;
    const char* target;
    TQPoint southWest;
    TQPoint northEast;
};

std::ostream& operator<<(std::ostream& stream, const SystemPair& pair) {
    return stream << pair.source << " to " << pair.target;
}

constexpr SystemPair kPairs[] = {{kWGS84, kNTF, {-5.0, 41.0}, {10.0, 52.0}},
                                 {"EPSG:4258", "EPSG:4314", {4.0, 46.0}, {16.0, 56.0}}};

std::vector<TQPoint> pointsIn(const SystemPair& pair) {
    RandomNumbers random(7);
    std::vector<TQPoint> points(500);
    for (TQPoint& point : points) {
        point.x = random.between(pair.southWest.x, pair.northEast.x);
        point.y = random.between(pair.southWest.y, pair.northEast.y);
    }
    return points;
}

std::string textOf(const std::vector<TQPoint>& points) {
    std::string text;
    for (const TQPoint& point : points) {
        text += tq_shortestText(point.x) + " " + tq_shortestText(point.y) + "\n";
    }
    return text;
}

/// The numbers of the lines, one after the other.
std::vector<double> numbersOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<double> numbers;
    for (std::string field; stream >> field;) {
        double number = 0.0;
        EXPECT_TRUE(tq_parseCompleteDouble(field, number)) << field;
        numbers.push_back(number);
    }
    return numbers;
}

/// What the command makes of many points must be what PROJ makes of each.
void expectAsProj(const SystemPair& pair, Direction direction) {
    TransformCase test(pair.source, pair.target);
    test.options.direction = direction;
    test.options.precision = NumberFormat::fullPrecision;
    const std::vector<TQPoint> points = pointsIn(pair);
    ASSERT_EQ(test.run(textOf(points)), ExitCode::Success);
    EXPECT_EQ(test.messages(), "");
    const std::vector<double> results = numbersOf(test.out());
    ASSERT_EQ(results.size(), 2 * points.size());
    const ProjOperation operation = ProjOperation::betweenSystems(pair.source, pair.target);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TQPoint expected = direction == Direction::Forward ? operation.forward(points[i]) //
                                                                 : operation.inverse(points[i]);
        ASSERT_NE(expected.x, points[i].x);
        ASSERT_EQ(results[2 * i], expected.x);
        ASSERT_EQ(results[2 * i + 1], expected.y);
    }
}

class TransformCommandPairs : public testing::TestWithParam<SystemPair> {};

INSTANTIATE_TEST_SUITE_P(Systems, TransformCommandPairs, testing::ValuesIn(kPairs));

TEST_P(TransformCommandPairs, ForwardIsThatOfProj) { expectAsProj(GetParam(), Direction::Forward); }

TEST_P(TransformCommandPairs, InverseIsThatOfProj) { expectAsProj(GetParam(), Direction::Inverse); }

// The EPSG data set has no transformation from WGS 84 to these.
TEST(TransformCommand, PairOfSystemsWithoutAKnownTransformationIsRefusedUnlessAskedFor) {
    for (const std::string target :
         {"EPSG:4122", "EPSG:4005", "EPSG:4006", "EPSG:4053", "EPSG:4157", "EPSG:4808"}) {
        TransformCase test(kWGS84, target);
        EXPECT_EQ(test.run("10 45\n"), ExitCode::Failure) << target;
        EXPECT_EQ(test.out(), "");
        EXPECT_EQ(test.messages(),
                  "tqproj: PROJ knows no transformation between the datums of EPSG:4326 and " + target +
                      " (--ballpark takes both for one datum)\n");
    }
    TransformCase asked(kWGS84, "EPSG:4122");
    asked.options.allowsBallpark = true;
    EXPECT_EQ(asked.run("10 45\n"), ExitCode::Success);
    EXPECT_EQ(asked.out() + asked.messages(), "10.000000000 45.000000000\n");
}

// The transformations of ED50 lie in and around Europe, those of NAD83 in and around North America.
TEST(TransformCommand, PointInTheAreaOfNoTransformationIsRefusedUnlessAskedFor) {
    for (const std::string target : {"EPSG:4230", "EPSG:4269"}) {
        for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
            TransformCase test(kWGS84, target);
            test.options.direction = direction;
            EXPECT_EQ(test.run("140 -30\n"), ExitCode::Incomplete) << target;
            EXPECT_EQ(test.out(), "* *\n");
            EXPECT_EQ(test.messages(), "<stdin>:1: no transformation between the datums is known here\n");
        }
        TransformCase asked(kWGS84, target);
        asked.options.allowsBallpark = true;
        EXPECT_EQ(asked.run("140 -30\n"), ExitCode::Success);
        EXPECT_EQ(asked.out() + asked.messages(), "140.000000000 -30.000000000\n");
    }
    TransformCase inPart("+proj=longlat +ellps=bessel +towgs84=100,200,300 +type=crs", "EPSG:4230");
    EXPECT_NE(inPart.run("10 45\n"), ExitCode::Success) << "to WGS 84, but no further";
}

// Of EPSG's, 1149 (ETRS89), 1188 (NAD83) and 1671 (RGF93) have shifts of 0 and accuracies of 1 to 4 metres.
TEST(TransformCommand, KnownTransformationThatShiftsNothingIsOne) {
    for (const auto& [target, point] : {std::pair{"EPSG:4258", "10.000000000 50.000000000\n"},
                                        std::pair{"EPSG:4269", "-100.000000000 40.000000000\n"},
                                        std::pair{"EPSG:4171", "2.000000000 48.000000000\n"},
                                        std::pair{"OGC:CRS84", "2.000000000 48.000000000\n"},
                                        std::pair{kWGS84, "2.000000000 48.000000000\n"}}) {
        TransformCase test(kWGS84, target);
        EXPECT_EQ(test.run(point), ExitCode::Success) << target;
        EXPECT_EQ(test.out() + test.messages(), point);
    }
    for (const std::string system :
         {"EPSG:4122", "EPSG:4230", "EPSG:4807", "+proj=longlat +ellps=bessel +type=crs"}) {
        TransformCase toItself(system, system);
        EXPECT_EQ(toItself.run("140 -30\n"), ExitCode::Success) << system;
        EXPECT_EQ(toItself.out() + toItself.messages(), "140.000000000 -30.000000000\n");
    }
}

// The point of `cs2cs -f %.9f EPSG:4326 EPSG:4275`, PROJ 9.1.1, latitude first there.
TEST(TransformCommand, TransformsTheStandardInput) {
    TransformCase test;
    EXPECT_EQ(test.run(kParis), ExitCode::Success);
    EXPECT_EQ(test.out(), "2.352904332 48.856666460 Paris\n");
    EXPECT_EQ(test.messages(), "");
}

TEST(TransformCommand, InverseReturns) {
    TransformCase test;
    test.options.direction = Direction::Inverse;
    test.options.precision = 7;
    EXPECT_EQ(test.run("2.352904332,48.856666460,Paris\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "2.3522000,48.8566000,Paris\n");
}

TEST(TransformCommand, IdenticalSystemsGiveTheSamePoint) {
    for (const char* system : {kWGS84, kNTF}) {
        for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
            TransformCase test(system, system);
            test.options.direction = direction;
            EXPECT_EQ(test.run(kParis), ExitCode::Success);
            EXPECT_EQ(test.out(), "2.352200000 48.856600000 Paris\n");
        }
    }
}

// `cs2cs -f %.12f EPSG:4326 EPSG:4807`, PROJ 9.1.1, latitude first and in degrees there:
// 48.856669260902 0.015693796645. The system itself is in grads.
TEST(TransformCommand, ASystemInGradsIsWrittenAndReadInDegrees) {
    TransformCase there(kWGS84, "EPSG:4807");
    EXPECT_EQ(there.run("2.3522 48.8566\n"), ExitCode::Success);
    EXPECT_EQ(there.out(), "0.015693797 48.856669261\n");
    TransformCase back("EPSG:4807", kWGS84);
    back.options.precision = 7;
    EXPECT_EQ(back.run("0.015693796645 48.856669260902\n"), ExitCode::Success);
    EXPECT_EQ(back.out(), "2.3522000 48.8566000\n");
    TransformCase inverse(kWGS84, "EPSG:4807");
    inverse.options.direction = Direction::Inverse;
    inverse.options.precision = 7;
    EXPECT_EQ(inverse.run("0.015693796645 48.856669260902\n"), ExitCode::Success);
    EXPECT_EQ(inverse.out(), "2.3522000 48.8566000\n");
}

// The meridian of Paris lies 2d20'14.025" east of Greenwich, 2.337229167 degrees; without a datum PROJ
// changes nothing else.
TEST(TransformCommand, TakesAPROJString) {
    TransformCase test(kWGS84, "+proj=longlat +ellps=clrk80ign +pm=paris +type=crs");
    test.options.allowsBallpark = true;
    EXPECT_EQ(test.run("3.337229167 48\n2.337229167 -48\n"), ExitCode::Success);
    EXPECT_EQ(test.out(), "1.000000000 48.000000000\n0.000000000 -48.000000000\n");
}

// Identical systems, so that the numbers stay what they are.
TEST(TransformCommand, UnitIsThatOfBothSides) {
    struct UnitCase {
        std::uint32_t unit;
        const char* in;
        const char* out;
    };
    for (const UnitCase& unitCase :
         {UnitCase{TQUnitDegree, "1.5 45", "1.500000000 45.000000000"},
          UnitCase{TQUnitRadian, "0.03 0.8", "0.03000000000 0.80000000000"},
          UnitCase{TQUnitGon, "1.5 99.5", "1.500000000 99.500000000"},
          UnitCase{TQUnitDegreeMinuteSecond, "1:30W 45:00:15", "1:30:00.00000W 45:00:15.00000N"}}) {
        TransformCase test(kWGS84, kWGS84);
        test.options.angularUnit = unitCase.unit;
        EXPECT_EQ(test.run(unitCase.in), ExitCode::Success);
        EXPECT_EQ(test.out(), unitCase.out);
    }
}

TEST(TransformCommand, EveryUnitMeansTheSamePlace) {
    const TQPoint expected = ProjOperation::betweenSystems(kWGS84, kNTF).forward({1.5, 45.0});
    TransformCase gon;
    gon.options.angularUnit = TQUnitGon;
    gon.options.precision = 12;
    EXPECT_EQ(gon.run("1.666666666666667 50\n"), ExitCode::Success);
    const std::vector<double> numbers = numbersOf(gon.out());
    ASSERT_EQ(numbers.size(), 2U);
    EXPECT_NEAR(numbers[0] * 0.9, expected.x, 1e-12);
    EXPECT_NEAR(numbers[1] * 0.9, expected.y, 1e-12);
    TransformCase sexagesimal;
    sexagesimal.options.angularUnit = TQUnitDegreeMinuteSecond;
    sexagesimal.options.precision = 9;
    EXPECT_EQ(sexagesimal.run("1:30E 45N\n"), ExitCode::Success);
    std::istringstream fields(sexagesimal.out());
    const AngularText angles(TQUnitDegreeMinuteSecond, 9);
    std::string first;
    std::string second;
    fields >> first >> second;
    TQPoint point;
    EXPECT_TRUE(angles.parse(first, GeographicAxis::Longitude, point.x)) << first;
    EXPECT_TRUE(angles.parse(second, GeographicAxis::Latitude, point.y)) << second;
    EXPECT_NEAR(tq_rad2deg(point.x), expected.x, 1e-12);
    EXPECT_NEAR(tq_rad2deg(point.y), expected.y, 1e-12);
}

TEST(TransformCommand, PrecisionIsThatOfBothNumbers) {
    TransformCase test;
    test.options.precision = 3;
    EXPECT_EQ(test.run(kParis), ExitCode::Success);
    EXPECT_EQ(test.out(), "2.353 48.857 Paris\n");
}

TEST(TransformCommand, CommentsAndTheRestOfALineAreCarriedThrough) {
    TransformCase test(kWGS84, kWGS84);
    test.options.precision = 1;
    EXPECT_EQ(test.run("# 1 2\n\n 2 ,\t48, Paris \r\n1 2"), ExitCode::Success);
    EXPECT_EQ(test.out(), "# 1 2\n\n 2.0 ,\t48.0, Paris \r\n1.0 2.0");
}

TEST(TransformCommand, IncompleteComeOutWithStarsAndAllOthersTransformed) {
    TransformCase test;
    test.options.precision = 3;
    EXPECT_EQ(test.run("x 1 a\n2.3522,48.8566,b\nnan 2 c\n3\n"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "* * a\n2.353,48.857,b\n* * c\n* *\n");
    EXPECT_EQ(test.messages(), "<stdin>:1: 'x' is not an angle\n"
                               "<stdin>:3: 'nan' is not a finite number\n"
                               "<stdin>:4: the second number is missing\n");
}

TEST(TransformCommand, PointBeyondAPoleIsABadLineWithItsReason) {
    TransformCase test;
    EXPECT_EQ(test.run("2 91 x\n"), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "* * x\n");
    EXPECT_EQ(test.messages(), "<stdin>:1: the latitude lies beyond a pole\n");
}

TEST(TransformCommand, TakesNamesOfTheCatalogue) {
    for (const char* target : {"NTF (EPSG:4275)", "\tEPSG_4275"}) {
        TransformCase test(kWGS84, target);
        EXPECT_EQ(test.run(kParis), ExitCode::Success);
        EXPECT_EQ(test.out(), "2.352904332 48.856666460 Paris\n");
    }
}

/// The command must refuse the systems, in one line, and pass no point.
void expectRefused(const std::string& source, const std::string& target, const std::string& problem) {
    TransformCase test(source, target);
    EXPECT_EQ(test.run(kParis), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(test.messages(), "tqproj: " + problem + "\n");
}

/// The command must refuse the system on either side.
void expectRefused(const std::string& system, const std::string& reason) {
    expectRefused(system, kNTF, "--from " + system + ": " + reason);
    expectRefused(kWGS84, system, "--to " + system + ": " + reason);
}

TEST(TransformCommand, DefinitionThatPROJRejectsIsAFailureWithItsReason) {
    expectRefused("EPSG:999999", "crs not found (tqproj catalog lists the systems that there are)");
    expectRefused("+proj=nonsense +type=crs",
                  "Error 1027 (Invalid value for an argument): Unknown projection");
    expectRefused("garbage", "no reference system is called garbage");
}

// Projected, vertical, geographic with three dimensions, geocentric.
TEST(TransformCommand, SystemThatIsNotGeographicWithTwoDimensionsIsAFailure) {
    for (const char* other : {"EPSG:3857", "EPSG:5773", "EPSG:4979", "EPSG:4978"}) {
        expectRefused(other,
                      "it is not geographic with two dimensions (tqproj convert takes projected systems)");
    }
}

TEST(TransformCommand, AnOperationIsNoSystem) {
    expectRefused("+proj=longlat",
                  "PROJ takes it for an operation (with +type=crs it is a reference system)");
}

TEST(TransformCommand, SystemsOfTwoBodiesAreAFailure) {
    const std::string moon = "+proj=longlat +R=1737400 +type=crs";
    expectRefused(kWGS84, moon,
                  "cannot transform from EPSG:4326 to " + moon +
                      ": Source and target ellipsoid do not belong to the same celestial body");
}

TEST(TransformCommand, DefinitionIsShownInOneLine) {
    expectRefused("a\nb", kNTF, "--from a\\x0Ab: no reference system is called a\\x0Ab");
}

} // namespace
