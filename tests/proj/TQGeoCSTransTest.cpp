#include "proj/TQGeoCSTrans.h"

#include "support/TQObject.h"
#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"
#include "tests/support/ArchiveBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <numbers>
#include <ostream>
#include <proj.h>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tqtest::archiveOf;

static_assert(!std::is_copy_constructible_v<TQGeoCSTrans>);
static_assert(!std::is_copy_assignable_v<TQGeoCSTrans>);
static_assert(!std::is_move_constructible_v<TQGeoCSTrans>);
static_assert(!std::is_move_assignable_v<TQGeoCSTrans>);
static_assert(!std::is_base_of_v<TQObject, TQGeoCSTrans>);
static_assert(!std::is_polymorphic_v<TQGeoCSTrans>);
static_assert(PJ_FWD == 1 && PJ_INV == -1, "the directions that messages name");

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr const char* kNoText = nullptr;
constexpr const char* kWGS84 = "EPSG:4326";
constexpr const char* kNTF = "EPSG:4275";
constexpr const char* kMoon = "+proj=longlat +R=1737400 +type=crs";
constexpr const char* kBesselFromFerro = "+proj=longlat +ellps=bessel +pm=ferro +type=crs";
constexpr TQPoint kGoodPoint{5.0, 45.0};
constexpr TQPoint kFailingPoint{5.0, 91.0};

constexpr int kPointsOfAPair = 1000;
constexpr double kUnitDigits = 1e-14;          // the data set gives units with 15 digits
constexpr const char* kNTFParis = "EPSG:4807"; // in grads

using Bits = std::array<std::uint64_t, 2>;

Bits bitsOf(const TQPoint& point) {
    return {std::bit_cast<std::uint64_t>(point.x), std::bit_cast<std::uint64_t>(point.y)};
}

TQPoint inRadians(const TQPoint& degrees) { return {tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)}; }
TQPoint inDegrees(const TQPoint& radians) { return {tq_rad2deg(radians.x), tq_rad2deg(radians.y)}; }

/// One of the four ways to transform a point.
struct Way {
    const char* name;
    bool (TQGeoCSTrans::*transformation)(const TQPoint&, TQPoint&);
    PJ_DIRECTION direction;
    bool isInRadians;
};

constexpr std::array<Way, 4> kWays = {{
    {"forward, degrees", &TQGeoCSTrans::forwardTransformationDecDeg, PJ_FWD, false},
    {"inverse, degrees", &TQGeoCSTrans::inverseTransformationDecDeg, PJ_INV, false},
    {"forward, radians", &TQGeoCSTrans::forwardTransformationRad, PJ_FWD, true},
    {"inverse, radians", &TQGeoCSTrans::inverseTransformationRad, PJ_INV, true},
}};

/// What a transformation answers.
struct Answer {
    bool transformed;
    Bits out;
    bool operator==(const Answer&) const = default;
};

const Answer kFailure = {false, bitsOf({kInfinity, kInfinity})};

std::ostream& operator<<(std::ostream& stream, const Answer& answer) {
    return stream << answer.transformed << " (" << std::bit_cast<double>(answer.out[0]) << ", "
                  << std::bit_cast<double>(answer.out[1]) << ")";
}

/// The point in the units of a way.
TQPoint inputOf(const Way& way, const TQPoint& degrees) {
    return way.isInRadians ? inRadians(degrees) : degrees;
}

/// What the object makes of a point given in degrees.
Answer answerOf(TQGeoCSTrans& transformation, const Way& way, const TQPoint& degrees) {
    TQPoint out{1.0, 2.0};
    const bool transformed = (transformation.*way.transformation)(inputOf(way, degrees), out);
    return {transformed, bitsOf(out)};
}

/// An error as PROJ numbers and names it.
struct ProjError {
    int number;
    std::string text;
};

ProjError projErrorOf(int number) {
    return {number, number != 0 ? proj_context_errno_string(nullptr, number) : ""};
}

/// What PROJ alone makes of a point.
struct BareResult {
    Answer answer;
    ProjError error;
};

/// What PROJ alone makes of a point given in degrees.
BareResult bareResult(const ProjOperation& operation, const Way& way, const TQPoint& degrees) {
    const TQPoint in = way.isInRadians ? inDegrees(inRadians(degrees)) : degrees;
    proj_errno_reset(operation.handle());
    const TQPoint out = way.direction == PJ_FWD ? operation.forward(in) : operation.inverse(in);
    const ProjError error = projErrorOf(proj_errno(operation.handle()));
    if (error.number != 0) {
        return {kFailure, error};
    }
    return {{true, bitsOf(way.isInRadians ? inRadians(out) : out)}, error};
}

/// The error that a call of PROJ ends with.
/// @param call takes a PJ_CONTEXT* and answers a PJ*, which must be null
template <class Call>
ProjError errorOf(const Call& call) {
    const std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)> context(proj_context_create(),
                                                                               &proj_context_destroy);
    proj_log_level(context.get(), PJ_LOG_NONE);
    const std::unique_ptr<PJ, decltype(&proj_destroy)> object(call(context.get()), &proj_destroy);
    EXPECT_EQ(object, nullptr);
    const ProjError error = projErrorOf(proj_context_errno(context.get()));
    EXPECT_NE(error.number, 0);
    EXPECT_NE(error.text, "");
    return error;
}

ProjError errorOfDefinition(const char* definition) {
    return errorOf([definition](PJ_CONTEXT* context) { return proj_create(context, definition); });
}

std::string definitionMessage(const ProjError& error) {
    return "TQGeoCSTrans::_initFromDefinitions: PROJ error: " + error.text + "\n";
}

std::string pointMessage(int direction, const ProjError& error) {
    return "TQGeoCSTrans::_transformationDecDeg (" + std::to_string(direction) +
           "): PROJ error :" + error.text + "\n";
}

std::string unknownVersionMessage(int version) {
    return "TQGeoCSTrans::TQGeoCSTrans(TQReadStream *): version " + std::to_string(version) +
           " is unknown.\n";
}

void expectDefinitions(const TQGeoCSTrans& transformation, const char* source, const char* target) {
    EXPECT_EQ(transformation.sourceDefinition(), source);
    EXPECT_EQ(transformation.targetDefinition(), target);
}

/// The object must be ready and have these definitions.
void expectReady(const TQGeoCSTrans& transformation, const char* source, const char* target) {
    expectDefinitions(transformation, source, target);
    EXPECT_FALSE(transformation.isInErrorState());
    EXPECT_EQ(transformation.projError(), 0);
}

/// Every call must fail in silence.
void expectErrorState(TQGeoCSTrans& transformation) {
    EXPECT_TRUE(transformation.isInErrorState());
    const int error = transformation.projError();
    const CapturedMessages messages;
    for (const Way& way : kWays) {
        EXPECT_EQ(answerOf(transformation, way, kGoodPoint), kFailure) << way.name;
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_EQ(transformation.projError(), error);
}

StreamBytes archiveBlock(const char* source, const char* target) {
    return StreamBytes().tag("TQGeoCSTrans", 0).text(source).text(target);
}

/// Two systems and the region that they are compared in.
struct SystemPair {
    std::string name;
    std::string source;
    std::string target;
    TQPoint southWest;
    TQPoint northEast;
};

std::ostream& operator<<(std::ostream& stream, const SystemPair& pair) { return stream << pair.name; }

/// The sample system, counted from another meridian.
std::string wktOfAnotherMeridian() {
    std::string wkt = sampleGeographicWkt();
    const std::string greenwich = "\"Greenwich\",0.0";
    return wkt.replace(wkt.find(greenwich), greenwich.size(), "\"Test\",12.5");
}

std::vector<SystemPair> systemPairs() {
    return {
        {"NTF", kWGS84, kNTF, {-6.0, 40.0}, {11.0, 52.0}},
        {"OSGB36", kWGS84, "EPSG:4277", {-10.0, 48.0}, {3.0, 62.0}},
        {"DHDN", "EPSG:4258", "EPSG:4314", {4.0, 46.0}, {16.0, 56.0}},
        {"ED50", "EPSG:4230", kWGS84, {-20.0, 25.0}, {50.0, 85.0}},
        {"ProjString",
         kWGS84,
         "+proj=longlat +ellps=clrk80ign +pm=paris +type=crs",
         {-170.0, -90.0},
         {170.0, 90.0}},
        {"Wkt", kWGS84, wktOfAnotherMeridian(), {-160.0, -90.0}, {160.0, 90.0}},
        {"WktToProjString", wktOfAnotherMeridian(), kBesselFromFerro, {-140.0, -90.0}, {140.0, 90.0}},
        {"NAD83CSRS98ToNAD27", "EPSG:4140", "EPSG:4267", {-120.0, 44.7}, {-57.1, 62.5}}, // deprecated source
        {"LKS94ETRS89ToPulkovo", "EPSG:4126", "EPSG:4284", {19.1, 53.9}, {26.8, 56.4}},  // deprecated source
        {"NTFParisToRGF93", kNTFParis, "EPSG:4171", {-4.8, 41.4}, {9.6, 51.1}},          // grads
        {"ATFParis", "EPSG:4901", kWGS84, {-4.8, 42.4}, {8.2, 51.1}},                    // grads
        {"NDGParisToNTF", "EPSG:4902", kNTF, {6.9, 47.5}, {8.2, 49.0}}, // grads, deprecated source
        {"BataviaJakartaToWGS72", "EPSG:4813", "EPSG:4322", {95.2, -8.9}, {115.7, 5.9}},
        {"PadangJakarta", kWGS84, "EPSG:4808", {95.2, -5.9}, {106.1, 5.9}}, // deprecated target
        {"NGOOsloToED50", "EPSG:4817", "EPSG:4230", {4.7, 58.0}, {31.2, 71.2}},
        {"Bern1898ToCH1903Plus", "EPSG:4801", "EPSG:4150", {6.0, 45.9}, {10.4, 47.8}},
        {"TokyoToJGD2000", "EPSG:4301", "EPSG:4612", {122.9, 20.4}, {154.0, 45.5}},
        {"AGD66ToGDA94", "EPSG:4202", "EPSG:4283", {109.3, -47.1}, {163.1, -1.4}},
        {"CapeToHartebeesthoek94", "EPSG:4222", "EPSG:4148", {16.5, -34.8}, {32.9, -17.8}},
        {"AmersfoortToETRS89", "EPSG:4289", "EPSG:4258", {3.2, 50.8}, {7.2, 53.7}},
        {"MGIFerroToETRS89", "EPSG:4805", "EPSG:4258", {9.6, 40.9}, {23.0, 49.0}},
        {"SJTSKFerro", kWGS84, "EPSG:4818", {12.1, 47.8}, {22.5, 51.0}},
        {"MonteMarioRome", "EPSG:4806", "EPSG:4230", {6.0, 34.8}, {18.9, 47.1}},
        {"CorregoAlegreToSIRGAS", "EPSG:4225", "EPSG:4674", {-58.1, -33.7}, {-34.8, -2.7}},
    };
}

std::vector<TQPoint> randomPoints(const TQPoint& southWest, const TQPoint& northEast, int count) {
    RandomNumbers random(20);
    std::vector<TQPoint> points;
    for (int i = 0; i < count; ++i) {
        const double longitude = random.between(southWest.x, northEast.x);
        points.push_back({longitude, random.between(southWest.y, northEast.y)});
    }
    return points;
}

class TQGeoCSTransPairs : public testing::TestWithParam<SystemPair> {};

/// What an object makes of many points, every way.
std::vector<Answer> answersOf(TQGeoCSTrans& transformation, const std::vector<TQPoint>& points) {
    std::vector<Answer> answers;
    for (const TQPoint& point : points) {
        for (const Way& way : kWays) {
            answers.push_back(answerOf(transformation, way, point));
        }
    }
    return answers;
}

/// What a function answers in each of eight threads at once.
template <class Function>
auto inEightThreads(const Function& function) {
    std::array<decltype(function()), 8> results;
    std::vector<std::thread> threads;
    for (auto& result : results) {
        threads.emplace_back([&result, &function] { result = function(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return results;
}

} // namespace

TEST(TQGeoCSTrans, TakesTwoStringsAndWGS84ForAnEmptyOne) {
    const CapturedMessages messages;
    expectReady(TQGeoCSTrans(TQString("EPSG:4258"), TQString(kNTF)), "EPSG:4258", kNTF);
    expectReady(TQGeoCSTrans(TQString(), TQString(kNTF)), kWGS84, kNTF);
    expectReady(TQGeoCSTrans(TQString(kNTF), TQString()), kNTF, kWGS84);
    expectReady(TQGeoCSTrans(TQString(), TQString()), kWGS84, kWGS84);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGeoCSTrans, TakesTwoCStringsAndWGS84ForANullOrEmptyOne) {
    const CapturedMessages messages;
    expectReady(TQGeoCSTrans("EPSG:4258", kNTF), "EPSG:4258", kNTF);
    for (const char* nothing : {kNoText, ""}) {
        expectReady(TQGeoCSTrans(nothing, kNTF), kWGS84, kNTF);
        expectReady(TQGeoCSTrans(kNTF, nothing), kNTF, kWGS84);
        expectReady(TQGeoCSTrans(nothing, nothing), kWGS84, kWGS84);
    }
    expectReady(TQGeoCSTrans(kNoText, ""), kWGS84, kWGS84);
    expectReady(TQGeoCSTrans("", kNoText), kWGS84, kWGS84);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGeoCSTrans, TakesOneStringForTheTargetAndWGS84ForAnEmptyOne) {
    const CapturedMessages messages;
    expectReady(TQGeoCSTrans(TQString(kNTF)), kWGS84, kNTF);
    expectReady(TQGeoCSTrans(TQString()), kWGS84, kWGS84);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGeoCSTrans, TakesOneCStringForTheTargetAndWGS84ForANullOrEmptyOne) {
    const CapturedMessages messages;
    expectReady(TQGeoCSTrans(kNTF), kWGS84, kNTF);
    expectReady(TQGeoCSTrans(kNoText), kWGS84, kWGS84);
    expectReady(TQGeoCSTrans(""), kWGS84, kWGS84);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// The same name in the NEXTSTEP character set, which PROJ does not know, and in UTF-8.
TEST(TQGeoCSTrans, GivesProjEveryDefinitionInUtf8) {
    const CapturedMessages messages;
    for (const char* name : {"Qui\xE7i-Huao", "Qui\xC3\xB1i-Huao"}) {
        expectReady(TQGeoCSTrans(name), kWGS84, "Qui\xC3\xB1i-Huao");
        expectReady(TQGeoCSTrans(name, ""), "Qui\xC3\xB1i-Huao", kWGS84);
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST_P(TQGeoCSTransPairs, EveryTransformationIsThatOfProjBitForBit) {
    const SystemPair& pair = GetParam();
    const CapturedMessages messages;
    const ProjOperation operation = ProjOperation::betweenSystems(pair.source, pair.target);
    TQGeoCSTrans transformation(pair.source.c_str(), pair.target.c_str());
    for (const TQPoint& point : randomPoints(pair.southWest, pair.northEast, kPointsOfAPair)) {
        for (const Way& way : kWays) {
            const BareResult bare = bareResult(operation, way, point);
            ASSERT_TRUE(bare.answer.transformed) << point.x << " " << point.y;
            ASSERT_EQ(answerOf(transformation, way, point), bare.answer) << way.name;
            ASSERT_EQ(transformation.projError(), 0);
        }
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// Otherwise the comparison could not tell forward from inverse, or either from doing nothing.
TEST_P(TQGeoCSTransPairs, TheSystemsDiffer) {
    const SystemPair& pair = GetParam();
    TQGeoCSTrans transformation(pair.source.c_str(), pair.target.c_str());
    int differing = 0;
    for (const TQPoint& point : randomPoints(pair.southWest, pair.northEast, kPointsOfAPair)) {
        const Answer unchanged = {true, bitsOf(point)};
        const Answer forward = answerOf(transformation, kWays[0], point);
        const Answer inverse = answerOf(transformation, kWays[1], point);
        differing += forward != unchanged && inverse != unchanged && forward != inverse ? 1 : 0;
    }
    EXPECT_GT(differing, 100);
}

INSTANTIATE_TEST_SUITE_P(TQGeoCSTrans, TQGeoCSTransPairs, testing::ValuesIn(systemPairs()),
                         [](const auto& pair) { return pair.param.name; });

// The meridian of Paris is that of PROJ's manual: 2 degrees 20' 14.025" east of Greenwich.
TEST(TQGeoCSTrans, AnotherPrimeMeridianShiftsLongitudes) {
    constexpr double paris = 2.0 + 20.0 / 60.0 + 14.025 / 3600.0;
    constexpr double tolerance = 1e-13;
    TQGeoCSTrans transformation("+proj=longlat +datum=WGS84 +pm=paris +type=crs");
    TQPoint out;
    ASSERT_TRUE(transformation.forwardTransformationDecDeg(kGoodPoint, out));
    EXPECT_NEAR(out.x, 5.0 - paris, tolerance);
    EXPECT_NEAR(out.y, 45.0, tolerance);
    ASSERT_TRUE(transformation.inverseTransformationDecDeg(kGoodPoint, out));
    EXPECT_NEAR(out.x, 5.0 + paris, tolerance);
    EXPECT_NEAR(out.y, 45.0, tolerance);
    ASSERT_TRUE(transformation.forwardTransformationRad({0.1, -0.5}, out));
    EXPECT_NEAR(out.x, 0.1 - paris * std::numbers::pi / 180.0, tolerance);
    EXPECT_NEAR(out.y, -0.5, tolerance);
    ASSERT_TRUE(transformation.inverseTransformationRad({0.1, -0.5}, out));
    EXPECT_NEAR(out.x, 0.1 + paris * std::numbers::pi / 180.0, tolerance);
    EXPECT_NEAR(out.y, -0.5, tolerance);
}

// Bit for bit; radians are rounded as they become degrees and radians again.
TEST(TQGeoCSTrans, FromASystemToItselfReturnsItsInput) {
    for (const char* definition : {"", kWGS84, kNTF, kMoon}) {
        SCOPED_TRACE(definition);
        TQGeoCSTrans transformation(definition, definition);
        for (const TQPoint& point : randomPoints({-180.0, -90.0}, {180.0, 90.0}, 200)) {
            const TQPoint radians = inRadians(point);
            for (const Way& way : kWays) {
                const TQPoint expected = way.isInRadians ? inRadians(inDegrees(radians)) : point;
                EXPECT_EQ(answerOf(transformation, way, point), (Answer{true, bitsOf(expected)})) << way.name;
            }
        }
    }
}

TEST(TQGeoCSTrans, TransformsAPointInPlace) {
    TQGeoCSTrans transformation(kNTF);
    for (const Way& way : kWays) {
        TQPoint point = inputOf(way, kGoodPoint);
        EXPECT_TRUE((transformation.*way.transformation)(point, point));
        EXPECT_EQ(bitsOf(point), answerOf(transformation, way, kGoodPoint).out) << way.name;
        point = inputOf(way, kFailingPoint);
        const CapturedMessages messages;
        EXPECT_FALSE((transformation.*way.transformation)(point, point));
        EXPECT_EQ(bitsOf(point), kFailure.out) << way.name;
    }
}

TEST(TQGeoCSTrans, RefusesWhatIsNotGeographicWithTwoDimensions) {
    const std::array<const char*, 7> refused = {
        "EPSG:3857",                                                         // projected
        "EPSG:4979",                                                         // with a height
        "EPSG:7405",                                                         // compound
        "EPSG:4978",                                                         // geocentric
        "EPSG:5773",                                                         // vertical
        "+proj=longlat +ellps=intl +towgs84=-87,-98,-121,0,0,0,0 +type=crs", // bound to WGS 84
        "+proj=longlat +ellps=intl",                                         // an operation
    };
    for (const char* definition : refused) {
        SCOPED_TRACE(definition);
        const CapturedMessages messages;
        TQGeoCSTrans fromIt(definition, kNTF);
        TQGeoCSTrans toIt(kNTF, definition);
        EXPECT_THAT(
            messages.lines(),
            ElementsAre(
                "TQGeoCSTrans::_initFromDefinitions: PROJ source is not geographic2D - not supported\n",
                "TQGeoCSTrans::_initFromDefinitions: PROJ target is not geographic2D - not supported\n"));
        expectDefinitions(fromIt, definition, kNTF);
        expectDefinitions(toIt, kNTF, definition);
        EXPECT_EQ(fromIt.projError(), -1);
        EXPECT_EQ(toIt.projError(), -1);
        expectErrorState(fromIt);
        expectErrorState(toIt);
    }
}

TEST(TQGeoCSTrans, ReportsADefinitionThatProjDoesNotKnow) {
    for (const char* definition :
         {"EPSG:999999", "nonsense", "+proj=longlat +ellps=nosuch +type=crs", "GEOGCS["}) {
        SCOPED_TRACE(definition);
        const ProjError error = errorOfDefinition(definition);
        const CapturedMessages messages;
        TQGeoCSTrans fromIt(definition, kNTF);
        TQGeoCSTrans toIt(kNTF, definition);
        EXPECT_THAT(messages.lines(), ElementsAre(definitionMessage(error), definitionMessage(error)));
        expectDefinitions(fromIt, definition, kNTF);
        expectDefinitions(toIt, kNTF, definition);
        EXPECT_EQ(fromIt.projError(), error.number);
        EXPECT_EQ(toIt.projError(), error.number);
        expectErrorState(fromIt);
        expectErrorState(toIt);
    }
}

TEST(TQGeoCSTrans, ReportsTheSourceAloneWhenBothSystemsAreWrong) {
    const CapturedMessages messages;
    const TQGeoCSTrans projectedSource("EPSG:3857", "EPSG:999999");
    const TQGeoCSTrans unknownSource("EPSG:999999", "EPSG:3857");
    EXPECT_THAT(
        messages.lines(),
        ElementsAre("TQGeoCSTrans::_initFromDefinitions: PROJ source is not geographic2D - not supported\n",
                    definitionMessage(errorOfDefinition("EPSG:999999"))));
    EXPECT_EQ(projectedSource.projError(), -1);
    EXPECT_EQ(unknownSource.projError(), errorOfDefinition("EPSG:999999").number);
}

TEST(TQGeoCSTrans, ReportsSystemsThatNoTransformationJoins) {
    const ProjError error =
        errorOf([](PJ_CONTEXT* context) { return proj_create_crs_to_crs(context, kWGS84, kMoon, nullptr); });
    const CapturedMessages messages;
    TQGeoCSTrans toTheMoon(kMoon);
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQGeoCSTrans::_initFromDefinitions: PROJ error :" + error.text + "\n"));
    expectDefinitions(toTheMoon, kWGS84, kMoon);
    EXPECT_EQ(toTheMoon.projError(), error.number);
    expectErrorState(toTheMoon);
}

TEST(TQGeoCSTrans, ReportsAPointThatFailsAndTransformsTheNext) {
    const ProjOperation operation = ProjOperation::betweenSystems(kWGS84, kNTF);
    TQGeoCSTrans transformation(kNTF);
    for (const Way& way : kWays) {
        SCOPED_TRACE(way.name);
        const BareResult failing = bareResult(operation, way, kFailingPoint);
        const BareResult good = bareResult(operation, way, kGoodPoint);
        ASSERT_NE(failing.error.number, 0);
        ASSERT_EQ(good.error.number, 0);
        const CapturedMessages messages;
        EXPECT_EQ(answerOf(transformation, way, kFailingPoint), kFailure);
        EXPECT_EQ(transformation.projError(), failing.error.number);
        EXPECT_FALSE(transformation.isInErrorState());
        EXPECT_EQ(answerOf(transformation, way, kGoodPoint), good.answer);
        EXPECT_EQ(transformation.projError(), 0);
        EXPECT_THAT(messages.lines(), ElementsAre(pointMessage(way.direction, failing.error)));
    }
}

TEST(TQGeoCSTrans, LeavesTheErrorOutputToTheReports) {
    const CapturedMessages messages;
    testing::internal::CaptureStderr();
    TQGeoCSTrans unknown("GEOGCS[", kNTF);
    TQGeoCSTrans toTheMoon(kMoon);
    TQGeoCSTrans transformation(kNTF);
    for (const Way& way : kWays) {
        answerOf(transformation, way, kFailingPoint);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(messages.lines(), SizeIs(2 + kWays.size()));
}

// PROJ takes some infinite points and those that are not numbers without an error.
TEST(TQGeoCSTrans, TakesAsErrorsWhatProjTakesAsErrors) {
    const ProjOperation operation = ProjOperation::betweenSystems(kWGS84, kNTF);
    TQGeoCSTrans transformation(kNTF);
    for (const double longitude : {5.0, 1e9, -1e9, kNaN, kInfinity, -kInfinity}) {
        for (const double latitude : {45.0, 90.0, 91.0, 1e9, -1e300, kNaN, kInfinity, -kInfinity}) {
            for (const Way& way : kWays) {
                SCOPED_TRACE(testing::Message() << way.name << " " << longitude << " " << latitude);
                const BareResult bare = bareResult(operation, way, {longitude, latitude});
                const CapturedMessages messages;
                EXPECT_EQ(answerOf(transformation, way, {longitude, latitude}), bare.answer);
                EXPECT_EQ(transformation.projError(), bare.error.number);
                if (bare.error.number == 0) {
                    EXPECT_THAT(messages.lines(), IsEmpty());
                } else {
                    EXPECT_THAT(messages.lines(), ElementsAre(pointMessage(way.direction, bare.error)));
                }
            }
        }
    }
}

TEST(TQGeoCSTrans, ArchivesItsTwoDefinitions) {
    EXPECT_EQ(archiveOf(TQGeoCSTrans("EPSG:4258", kNTF)), archiveBlock("EPSG:4258", kNTF).bytes());
    EXPECT_EQ(archiveOf(TQGeoCSTrans("")), archiveBlock(kWGS84, kWGS84).bytes());
}

TEST(TQGeoCSTrans, ArchivesTheDefinitionsOfAnObjectInErrorState) {
    const CapturedMessages messages;
    EXPECT_EQ(archiveOf(TQGeoCSTrans("nonsense", "EPSG:3857")),
              archiveBlock("nonsense", "EPSG:3857").bytes());
}

TEST(TQGeoCSTrans, IsReadBackFromItsArchive) {
    const CapturedMessages messages;
    ByteStream stream(archiveBlock("EPSG:4258", kNTF));
    TQGeoCSTrans unarchived(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    expectReady(unarchived, "EPSG:4258", kNTF);
    EXPECT_EQ(archiveOf(unarchived), archiveBlock("EPSG:4258", kNTF).bytes());
    TQGeoCSTrans made("EPSG:4258", kNTF);
    const std::vector<TQPoint> points = randomPoints({-6.0, 40.0}, {11.0, 52.0}, 100);
    EXPECT_EQ(answersOf(unarchived, points), answersOf(made, points));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGeoCSTrans, AnEmptyDefinitionInAnArchiveStaysEmpty) {
    const ProjError error = errorOfDefinition("");
    const CapturedMessages messages;
    ByteStream sourceless(archiveBlock("", kNTF));
    TQGeoCSTrans fromNothing(sourceless.get());
    ByteStream targetless(archiveBlock(kNTF, ""));
    TQGeoCSTrans toNothing(targetless.get());
    EXPECT_THAT(messages.lines(), ElementsAre(definitionMessage(error), definitionMessage(error)));
    EXPECT_TRUE(sourceless.isReadExactly());
    EXPECT_TRUE(targetless.isReadExactly());
    expectDefinitions(fromNothing, "", kNTF);
    expectDefinitions(toNothing, kNTF, "");
    EXPECT_EQ(archiveOf(fromNothing), archiveBlock("", kNTF).bytes());
    EXPECT_EQ(archiveOf(toNothing), archiveBlock(kNTF, "").bytes());
    expectErrorState(fromNothing);
    expectErrorState(toNothing);
}

TEST(TQGeoCSTrans, ANullDefinitionInAnArchiveIsAnEmptyOne) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQGeoCSTrans", 0).nullText().text(kNTF));
    TQGeoCSTrans unarchived(stream.get());
    EXPECT_THAT(messages.lines(), ElementsAre(definitionMessage(errorOfDefinition(""))));
    EXPECT_TRUE(stream.isReadExactly());
    expectDefinitions(unarchived, "", kNTF);
    expectErrorState(unarchived);
}

TEST(TQGeoCSTrans, ReadsNothingOfAnUnknownVersion) {
    for (const int version : {1, -1, 32767}) {
        SCOPED_TRACE(version);
        const CapturedMessages messages;
        const StreamBytes rest = StreamBytes().text(kWGS84).text(kNTF);
        ByteStream stream(StreamBytes().tag("TQGeoCSTrans", version).append(rest));
        TQGeoCSTrans unarchived(stream.get());
        EXPECT_THAT(messages.lines(), ElementsAre(unknownVersionMessage(version)));
        EXPECT_FALSE(stream.get()->failed());
        EXPECT_EQ(stream.get()->bytesLeft(), rest.bytes().size());
        expectDefinitions(unarchived, "", "");
        EXPECT_NE(unarchived.projError(), 0);
        EXPECT_EQ(archiveOf(unarchived), archiveBlock("", "").bytes());
        expectErrorState(unarchived);
    }
}

TEST(TQGeoCSTrans, TheBlockOfAnotherClassIsOfAnUnknownVersion) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQGeoCSTranz", 0).text(kWGS84).text(kNTF));
    TQGeoCSTrans unarchived(stream.get());
    EXPECT_THAT(messages.lines(), ElementsAre(unknownVersionMessage(-1)));
    EXPECT_TRUE(stream.get()->failed());
    expectErrorState(unarchived);
}

TEST(TQGeoCSTrans, AnArchiveThatIsCutOffLeavesItInErrorState) {
    const CapturedMessages messages;
    const std::string bytes = archiveBlock(kWGS84, kNTF).bytes();
    expectEveryCutIsNoticed(bytes, [](TQReadStream* stream) {
        TQGeoCSTrans unarchived(stream);
        EXPECT_EQ(unarchived.targetDefinition(), "");
        EXPECT_NE(unarchived.projError(), 0);
        expectErrorState(unarchived);
    });
    EXPECT_THAT(messages.lines(), SizeIs(bytes.size()));
}

TEST(TQGeoCSTrans, EightThreadsMayShareOneObject) {
    std::vector<TQPoint> points = randomPoints({-6.0, 40.0}, {11.0, 52.0}, 300);
    for (std::size_t i = 0; i < points.size(); i += 10) {
        points[i] = kFailingPoint;
    }
    TQGeoCSTrans transformation(kNTF);
    const CapturedMessages messages;
    const std::vector<Answer> expected = answersOf(transformation, points);
    const auto failures = static_cast<std::size_t>(std::count(expected.begin(), expected.end(), kFailure));
    EXPECT_EQ(failures, 30 * kWays.size());
    const auto results = inEightThreads([&] { return answersOf(transformation, points); });
    EXPECT_THAT(results, Each(expected));
    EXPECT_THAT(messages.lines(), SizeIs(9 * failures));
}

TEST(TQGeoCSTrans, EightThreadsMayEachMakeAndUseTheirOwn) {
    const std::vector<TQPoint> points = randomPoints({-6.0, 40.0}, {11.0, 52.0}, 300);
    const CapturedMessages messages;
    const auto answersOfANewOne = [&] {
        TQGeoCSTrans transformation(kNTF);
        return answersOf(transformation, points);
    };
    const std::vector<Answer> expected = answersOfANewOne();
    EXPECT_THAT(inEightThreads(answersOfANewOne), Each(expected));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// The EPSG data set has no transformation from WGS 84 to ATS77; those to ED50 lie in and around Europe, and
// that to ETRS89, 1149, shifts nothing.
TEST(TQGeoCSTrans, TellsWhetherNoTransformationIsKnownAndRefusesSuchPointsWhenAsked) {
    EXPECT_TRUE(TQGeoCSTrans(kWGS84, "EPSG:4122").isBallpark());
    for (const char* known : {kWGS84, "EPSG:4258", "EPSG:4230"}) {
        const TQGeoCSTrans transformation(kWGS84, known);
        EXPECT_FALSE(transformation.isBallpark()) << known;
        EXPECT_TRUE(transformation.PROJLogMessage().isEmpty());
    }

    const TQPoint pacific{180.0, 48.0};
    const TQPoint europe{10.0, 50.0};
    TQGeoCSTrans transformation(kWGS84, "EPSG:4230");
    TQPoint out;
    EXPECT_TRUE(transformation.forwardTransformationDecDeg(pacific, out));
    EXPECT_EQ(out, pacific);
    transformation.refuseBallpark();
    const CapturedMessages messages;
    EXPECT_FALSE(transformation.forwardTransformationDecDeg(pacific, out));
    EXPECT_EQ(out, TQPoint(kInfinity, kInfinity));
    EXPECT_FALSE(transformation.inverseTransformationDecDeg(pacific, out));
    EXPECT_EQ(transformation.projError(), 0);
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQGeoCSTrans::_transformationDecDeg (1): PROJ error :no transformation between "
                            "the datums is known here\n",
                            "TQGeoCSTrans::_transformationDecDeg (-1): PROJ error :no transformation between "
                            "the datums is known here\n"));
    EXPECT_TRUE(transformation.forwardTransformationDecDeg(europe, out));
    EXPECT_NE(out.y, europe.y);
}

TEST(TQGeoCSTrans, TellsTheUnitsOfItsSystems) {
    const TQGeoCSTrans there(kWGS84, kNTFParis);
    EXPECT_EQ(there.sourceUnitInDegrees(), 1.0);
    EXPECT_NEAR(there.targetUnitInDegrees(), 0.9, kUnitDigits);
    const TQGeoCSTrans back(kNTFParis, kWGS84);
    EXPECT_NEAR(back.sourceUnitInDegrees(), 0.9, kUnitDigits);
    EXPECT_EQ(back.targetUnitInDegrees(), 1.0);
}
