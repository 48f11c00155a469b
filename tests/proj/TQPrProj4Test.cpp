#include "proj/TQPrProj4.h"

#include "ellipsoid/TQEllipsoid.h"
#include "support/TQErrorSpool.h"
#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/FullDisk.h"
#include "testing/Identity.h"
#include "testing/ProjOperation.h"
#include "testing/ProjectionFiles.h"
#include "testing/RandomNumbers.h"
#include "testing/StreamBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <proj.h>
#include <proj_experimental.h>

#include <bit>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

constexpr double kUnitDigits = 1e-14; // the data set gives units with 15 digits
constexpr double kInfinity = HUGE_VAL;
constexpr TQPoint kUntouched{123.0, 456.0};
constexpr TQPoint kInfinite{kInfinity, kInfinity};
constexpr std::size_t kThreadCount = 8;
constexpr std::size_t kLongestLine = 4096;
constexpr const char* kRejected = "EPSG:999999";
// A Mercator whose area has a name and no borders.
constexpr const char* kAreaInWords =
    "PROJCRS[\"M\",BASEGEOGCRS[\"W\",DATUM[\"W\",ELLIPSOID[\"W\",6378137,298.25]]],CONVERSION[\"M\","
    "METHOD[\"Mercator (variant A)\"]],CS[Cartesian,2],AXIS[\"x\",east],AXIS[\"y\",north],UNIT[\"m\",1],"
    "USAGE[SCOPE[\"any\"],AREA[\"Atlantis\"]]]";
constexpr const char* kHeight = "EPSG:5714"; // above mean sea level

struct Destroy {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    void operator()(PJ* object) const { proj_destroy(object); }
};
using Context = std::unique_ptr<PJ_CONTEXT, Destroy>;
using Object = std::unique_ptr<PJ, Destroy>;

/// A new context that writes nothing to the error output.
Context quietContext() {
    Context context(proj_context_create());
    proj_log_level(context.get(), PJ_LOG_NONE);
    return context;
}

/// PROJ's text for the error that a definition is rejected with.
std::string rejectionOf(const char* definition) {
    const Context context = quietContext();
    const Object object(proj_create(context.get(), definition));
    EXPECT_EQ(object, nullptr) << definition;
    const int error = proj_context_errno(context.get());
    EXPECT_NE(error, 0) << definition;
    return proj_context_errno_string(quietContext().get(), error);
}

/// PROJ's own objects for a system, without the class.
struct Bare {
    explicit Bare(const std::string& definition, bool onWGS84 = false)
        : context(quietContext()), system(proj_create(context.get(), definition.c_str())) {
        const Object source(onWGS84 ? proj_create(context.get(), "EPSG:4326")
                                    : proj_crs_get_geodetic_crs(context.get(), system.get()));
        const Object asFound(
            proj_create_crs_to_crs_from_pj(context.get(), source.get(), system.get(), nullptr, nullptr));
        operation.reset(proj_normalize_for_visualization(context.get(), asFound.get()));
    }

    TQPoint transformed(PJ_DIRECTION direction, const TQPoint& point) const {
        proj_errno_reset(operation.get());
        const PJ_COORD result =
            proj_trans(operation.get(), direction, proj_coord(point.x, point.y, 0.0, 0.0));
        return proj_errno(operation.get()) == 0 ? TQPoint{result.xy.x, result.xy.y} : kInfinite;
    }

    Context context;
    Object system;
    Object operation;
};

std::unique_ptr<TQPrProj4> built(const char* definition, bool useWGS84Source = false) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->rename(TQString("Test"));
    EXPECT_EQ(projection->initFromPROJString(definition, useWGS84Source), 0) << definition;
    return projection;
}

TQPoint imageOf(const TQProjection& projection, const TQPoint& geo, int expectedCode = 0) {
    TQPoint global = kUntouched;
    EXPECT_EQ(projection.convertGeoPt(geo, global), expectedCode);
    return global;
}

TQPoint originalOf(const TQProjection& projection, const TQPoint& global, int expectedCode = 0) {
    TQPoint geo = kUntouched;
    EXPECT_EQ(projection.convertGlobalPt(global, geo), expectedCode);
    return geo;
}

std::uint64_t bits(double number) { return std::bit_cast<std::uint64_t>(number); }

void expectSameBits(const TQPoint& expected, const TQPoint& actual) {
    ASSERT_EQ(bits(expected.x), bits(actual.x)) << expected.x << " " << actual.x;
    ASSERT_EQ(bits(expected.y), bits(actual.y)) << expected.y << " " << actual.y;
}

const TQPoint kParis{tq_deg2rad(2.3522), tq_deg2rad(48.8566)};

StreamBytes archiveOf(const char* name, const char* definition) {
    return StreamBytes().tag("TQPrProj4", 0).text(name).text(definition);
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// A definition that PROJ takes, of so many characters.
std::string longDefinition(std::size_t length) {
    const std::string start = "+proj=merc +ellps=WGS84 +title=";
    return start + std::string(length - start.size(), 'x');
}

/// What the writer answers.
int codeOfWriting(const TQProjection& projection) {
    const TemporaryDirectory directory;
    TQFile file(directory.file("projection"));
    return projection.writeToFile(file, true);
}

/// Calls a function with 0 to 7, each in a thread of its own.
template <class Function>
void inEightThreads(const Function& function) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreadCount; ++i) {
        threads.emplace_back(function, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// Takes the messages for the user out of the queue.
std::vector<std::string> spooled() {
    std::vector<std::string> texts;
    for (const TQErrorMessage& message : TQErrorSpool::takeMessages()) {
        texts.push_back(message.title.utf8() + " " + std::to_string(message.level) + ": " +
                        message.message.utf8());
    }
    return texts;
}

} // namespace

TEST(TQPrProj4, AnswersToItsClassAndTheRoot) {
    expectIdentity(TQPrProj4(), {"TQPrProj4", "TQProjection"});
    EXPECT_EQ(TQPrProj4().projectionType(), 127);
    EXPECT_EQ(TQPrProj4().typeName(), "Proj4 Library");
    EXPECT_EQ(TQPrProj4().WKTProjectionStuff(), "invalid");
}

TEST(TQPrProj4, StartsEmptyAndInvalid) {
    const TQPrProj4 projection;
    EXPECT_TRUE(projection.definition().isEmpty());
    EXPECT_TRUE(projection.isInvalid());
    EXPECT_FALSE(projection.hasDatumShift());
    EXPECT_FALSE(projection.needsDatumShift());
    EXPECT_EQ(projection.PROJCRSType(), 0);
    EXPECT_TRUE(projection.PROJErrorMessage().isEmpty());
    EXPECT_TRUE(projection.proj4Definition().isEmpty());
    EXPECT_TRUE(projection.wktDefinition(true).isEmpty());
}

// ---- definitions -----------------------------------------------------------------------------------------

TEST(TQPrProj4, APROJStringIsTakenForAReferenceSystem) {
    const auto projection = built("+proj=merc +ellps=WGS84");
    EXPECT_EQ(projection->PROJCRSType(), 15);
    EXPECT_EQ(projection->definition(), "+proj=merc +ellps=WGS84");
    EXPECT_EQ(projection->wktDefinition(true),
              built("+proj=merc +ellps=WGS84 +type=crs")->wktDefinition(true));
}

TEST(TQPrProj4, AnOldStyleReferenceIsTheCodeOfTheAuthority) {
    for (const char* definition : {"+init=epsg:2154 +no_defs", "+init=epsg:2154",
                                   "+proj=lcc +init=epsg:2154 +x", "+no_defs +init=epsg:2154"}) {
        const auto projection = built(definition);
        EXPECT_EQ(projection->wktDefinition(true), built("EPSG:2154")->wktDefinition(true)) << definition;
        EXPECT_EQ(projection->definition(), definition);
    }
    EXPECT_EQ(built("+proj=longlat +init=epsg:4326")->PROJCRSType(), 12);
}

TEST(TQPrProj4, KnowsGeographicAndProjectedSystemsOnly) {
    EXPECT_EQ(built("EPSG:4326")->PROJCRSType(), 12);
    EXPECT_EQ(built("EPSG:2154")->PROJCRSType(), 15);
    EXPECT_EQ(built("EPSG:5698")->PROJCRSType(), 0); // compound
    EXPECT_EQ(built("EPSG:4979")->PROJCRSType(), 0); // three dimensions
}

TEST(TQPrProj4, WKTIsADefinition) {
    const std::string wkt = built("EPSG:2154")->wktDefinition(true).utf8();
    const auto projection = built(wkt.c_str());
    EXPECT_EQ(projection->wktDefinition(true).utf8(), wkt);
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(*projection, kParis));
}

TEST(TQPrProj4, WhatPROJRejectsIsInvalidAndTheUserIsToldOnceAfterEachReading) {
    spooled();
    const CapturedMessages messages;
    TQPrProj4 projection;
    projection.rename(TQString("Broken"));
    EXPECT_EQ(projection.initFromPROJString("EPSG:999999", false), -1);
    EXPECT_TRUE(projection.isInvalid());
    EXPECT_THAT(messages.lines(), ElementsAre(StartsWith("TQPrProj4::initPROJ: PROJ error :")));
    EXPECT_EQ(imageOf(projection, kParis, -1), kInfinite);
    EXPECT_THAT(spooled(), IsEmpty());

    EXPECT_EQ(readProjectionText(projection, "TQPrProj4 v0\nBroken\nEPSG:999999\n"), 0);
    EXPECT_EQ(imageOf(projection, kParis, -1), kUntouched);
    EXPECT_THAT(spooled(), ElementsAre("conversion 4: Invalid projection: Broken"));
    EXPECT_EQ(imageOf(projection, kParis, -1), kInfinite);
    EXPECT_EQ(originalOf(projection, {0.0, 0.0}, -1), kInfinite);
    EXPECT_THAT(spooled(), IsEmpty());
    EXPECT_THAT(messages.lines(), SizeIs(2));
}

TEST(TQPrProj4, TheUserIsToldOfAProjectionWithoutNameToo) {
    spooled();
    const CapturedMessages messages;
    EXPECT_EQ(originalOf(TQPrProj4(), {0.0, 0.0}, -1), kUntouched);
    EXPECT_THAT(spooled(), ElementsAre("conversion 4: Invalid projection: "));
}

TEST(TQPrProj4, WhatIsNoReferenceSystemIsReportedWithItsType) {
    const CapturedMessages messages;
    TQPrProj4 projection;
    EXPECT_EQ(projection.initFromPROJString("urn:ogc:def:ellipsoid:EPSG::7030", true), -1);
    EXPECT_THAT(messages.lines(), ElementsAre("TQPrProj4::initPROJ: PROJ is not CRS (type " +
                                              std::to_string(PJ_TYPE_ELLIPSOID) + ")\n"));
    EXPECT_TRUE(projection.isInvalid());
}

TEST(TQPrProj4, ASystemThatNoTransformationLeadsToIsInvalid) {
    const CapturedMessages messages;
    TQPrProj4 projection;
    EXPECT_EQ(projection.initFromPROJString("EPSG:5714", false), 0); // mean sea level height
    EXPECT_THAT(messages.lines(), ElementsAre(StartsWith("TQPrProj4::resetPROJTransform: PROJ error :")));
    EXPECT_TRUE(projection.isInvalid());
    EXPECT_FALSE(projection.wktDefinition(true).isEmpty());
    EXPECT_EQ(imageOf(projection, kParis, -1), kInfinite);
}

TEST(TQPrProj4, TellsWhyPROJRejectedADefinition) {
    const CapturedMessages messages;
    TQPrProj4 projection;
    EXPECT_EQ(projection.initFromPROJString(kRejected, false), -1);
    EXPECT_EQ(projection.PROJErrorMessage().utf8(), rejectionOf(kRejected));
    EXPECT_EQ(projection.PROJLogMessage(), "proj_create: crs not found");
}

TEST(TQPrProj4, TellsOfAnOperationThatItIsNoReferenceSystem) {
    constexpr int notAReferenceSystem = -1;
    const std::string expected = proj_context_errno_string(quietContext().get(), notAReferenceSystem);
    const CapturedMessages messages;
    TQPrProj4 projection;
    EXPECT_EQ(projection.initFromPROJString("urn:ogc:def:coordinateOperation:EPSG::1671", false), -1);
    EXPECT_THAT(messages.lines(), ElementsAre("TQPrProj4::initPROJ: PROJ is not CRS (type " +
                                              std::to_string(PJ_TYPE_TRANSFORMATION) + ")\n"));
    EXPECT_EQ(projection.PROJErrorMessage().utf8(), expected);
}

TEST(TQPrProj4, TheLogOfAFailureIsForgottenWithTheNextPoint) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:32631");
    EXPECT_EQ(imageOf(*projection, {0.1, 20.0}, -1), kInfinite);
    EXPECT_FALSE(projection->PROJLogMessage().isEmpty());
    imageOf(*projection, kParis);
    EXPECT_TRUE(projection->PROJLogMessage().isEmpty());
}

// There is no geodetic system of a height to start from, so the flag is never taken; from WGS 84 it is.
TEST(TQPrProj4, AHeightNeedsNoDatumShiftAndHasOneWhenPointsWereOnceOnWGS84) {
    const CapturedMessages messages;
    const auto own = built(kHeight);
    EXPECT_FALSE(own->needsDatumShift());
    EXPECT_FALSE(own->hasDatumShift());
    const auto onWGS84 = built(kHeight, true);
    EXPECT_FALSE(onWGS84->needsDatumShift());
    EXPECT_TRUE(onWGS84->hasDatumShift());
    EXPECT_EQ(onWGS84->isInvalid(), Bare(kHeight, true).operation == nullptr);
    EXPECT_EQ(onWGS84->initPROJ(false), 0);
    EXPECT_TRUE(onWGS84->hasDatumShift());
    EXPECT_TRUE(onWGS84->isInvalid());
}

TEST(TQPrProj4, ABadDefinitionAfterAGoodOneLeavesNothingOfTheGoodOne) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:2154");
    imageOf(*projection, kParis);
    EXPECT_EQ(projection->initFromPROJString("EPSG:999999", false), -1);
    EXPECT_EQ(imageOf(*projection, kParis, -1), kInfinite);
    EXPECT_TRUE(projection->proj4Definition().isEmpty());
    EXPECT_EQ(projection->initFromPROJString("EPSG:2154", false), 0);
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(*projection, kParis));
}

// ---- conversions -----------------------------------------------------------------------------------------

class TQPrProj4BesidePROJ : public testing::TestWithParam<const char*> {};

TEST_P(TQPrProj4BesidePROJ, ConvertsLikeABareOperationBitForBit) {
    constexpr int pointCount = 10000;
    const CapturedMessages messages;
    for (const bool onWGS84 : {false, true}) {
        const auto projection = built(GetParam(), onWGS84);
        const Bare bare(GetParam(), onWGS84);
        ASSERT_NE(bare.operation, nullptr);
        RandomNumbers random(6);
        int convertedThere = 0;
        int convertedBack = 0;
        for (int i = 0; i < pointCount; ++i) {
            const TQPoint geo{random.between(-3.1, 3.1), random.between(-1.5, 1.5)};
            const TQPoint expected = bare.transformed(PJ_FWD, {tq_rad2deg(geo.x), tq_rad2deg(geo.y)});
            TQPoint global;
            const int code = projection->convertGeoPt(geo, global);
            ASSERT_EQ(code, expected == kInfinite ? -1 : 0);
            ASSERT_NO_FATAL_FAILURE(expectSameBits(expected, global));
            if (code != 0) {
                continue;
            }
            ++convertedThere;
            const TQPoint degrees = bare.transformed(PJ_INV, global);
            TQPoint back;
            const int codeBack = projection->convertGlobalPt(global, back);
            ASSERT_EQ(codeBack, degrees == kInfinite ? -1 : 0);
            ASSERT_NO_FATAL_FAILURE(expectSameBits({tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)}, back));
            convertedBack += codeBack == 0 ? 1 : 0;
        }
        EXPECT_GE(convertedThere, pointCount / 2);
        EXPECT_GE(convertedBack, pointCount / 2);
    }
}

// Geographic (also in grads, with other prime meridians, of three dimensions), projected (also northing
// first, southwards, in feet and links), compound, deprecated, and by text.
INSTANTIATE_TEST_SUITE_P(Systems, TQPrProj4BesidePROJ,
                         testing::Values("EPSG:4326", "EPSG:4258", "EPSG:4275", "EPSG:4807", "EPSG:4277",
                                         "EPSG:4314", "EPSG:4979", "EPSG:2154", "EPSG:3857", "EPSG:32631",
                                         "EPSG:32756", "EPSG:27572", "EPSG:27700", "EPSG:3035", "EPSG:31467",
                                         "EPSG:2056", "EPSG:3375", "EPSG:3413", "EPSG:3031", "EPSG:5041",
                                         "EPSG:2193", "EPSG:2225", "EPSG:2314", "EPSG:3395", "EPSG:5698",
                                         "EPSG:32662", "EPSG:2053", "EPSG:28992", "EPSG:3844", "ESRI:54009",
                                         "ESRI:102014", "+proj=merc +ellps=WGS84 +type=crs",
                                         "+proj=utm +zone=31 +datum=WGS84 +type=crs"));

TEST(TQPrProj4, TellsTheUnitOfItsGeodeticSystem) {
    EXPECT_EQ(built("EPSG:2154")->angularUnitInDegrees(), 1.0);
    EXPECT_EQ(built("EPSG:4979")->angularUnitInDegrees(), 1.0);
    EXPECT_NEAR(built("EPSG:27572")->angularUnitInDegrees(), 0.9, kUnitDigits); // NTF (Paris), in grads
    EXPECT_NEAR(built("EPSG:4807")->angularUnitInDegrees(), 0.9, kUnitDigits);
    EXPECT_EQ(built("EPSG:27572", true)->angularUnitInDegrees(), 1.0) << "points are on WGS 84";
    EXPECT_EQ(TQPrProj4().angularUnitInDegrees(), 1.0);
}

TEST(TQPrProj4, TellsTheCodeOfItsGeodeticSystem) {
    EXPECT_EQ(built("EPSG:27572")->geodeticCode(), 4807);
    EXPECT_EQ(built("+proj=merc +ellps=WGS84")->geodeticCode(), 0) << "nobody gave it one";
    EXPECT_EQ(TQPrProj4().geodeticCode(), 0);
}

TEST(TQPrProj4, AnErrorIsReportedAndForgottenWithTheNextPoint) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:32631");
    const TQPoint before = imageOf(*projection, kParis);
    EXPECT_EQ(imageOf(*projection, {0.1, 20.0}, -1), kInfinite);
    EXPECT_FALSE(projection->PROJErrorMessage().isEmpty());
    expectSameBits(before, imageOf(*projection, kParis));
    EXPECT_TRUE(projection->PROJErrorMessage().isEmpty());
    EXPECT_THAT(messages.lines(), ElementsAre(StartsWith("TQPrProj4::convertGeoPt: PROJ error :")));
    EXPECT_EQ(originalOf(*projection, {1e12, 1e12}, -1), kInfinite);
    EXPECT_THAT(messages.lines(), SizeIs(2));
    EXPECT_THAT(messages.lines().back(), StartsWith("TQPrProj4::convertGlobalPt: PROJ error :"));
    expectSameBits(before, imageOf(*projection, kParis));
}

TEST(TQPrProj4, PointsAreTakenOnWGS84WhenAsked) {
    const auto own = built("EPSG:27700");
    const auto onWGS84 = built("EPSG:27700", true);
    EXPECT_FALSE(own->hasDatumShift());
    EXPECT_TRUE(onWGS84->hasDatumShift());
    const TQPoint london{tq_deg2rad(-0.1), tq_deg2rad(51.5)};
    const double distance = std::hypot(imageOf(*own, london).x - imageOf(*onWGS84, london).x,
                                       imageOf(*own, london).y - imageOf(*onWGS84, london).y);
    EXPECT_GT(distance, 80.0);
    EXPECT_LT(distance, 200.0);
}

TEST(TQPrProj4, NeedsADatumShiftWhenTheDatumIsNotCalledWGS84) {
    EXPECT_FALSE(built("EPSG:4326")->needsDatumShift());
    EXPECT_FALSE(built("EPSG:32631")->needsDatumShift());
    EXPECT_TRUE(built("EPSG:2154")->needsDatumShift());
    EXPECT_TRUE(built("EPSG:9057")->needsDatumShift()); // "WGS 84 (G1762)"
}

TEST(TQPrProj4, APoleIsWhatTheWayBackMakesOfItsLatitude) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:3413");
    TQPoint pole;
    EXPECT_TRUE(projection->northPolePosition(pole));
    expectSameBits(originalOf(*projection, {0.0, 1.5707963267948966}), pole);
    EXPECT_TRUE(projection->southPolePosition(pole));
    expectSameBits(originalOf(*projection, {0.0, -1.5707963267948966}), pole);
    TQPrProj4 broken;
    EXPECT_EQ(broken.initFromPROJString("EPSG:999999", false), -1);
    EXPECT_FALSE(broken.northPolePosition(pole));
    EXPECT_FALSE(broken.southPolePosition(pole));
}

// The way back of the orthographic projection ends at the disc of its hemisphere, which lies far from the
// origin here.
TEST(TQPrProj4, ThereIsNoPoleWhereTheWayBackFails) {
    const CapturedMessages messages;
    const auto projection = built("+proj=ortho +R=6371000 +x_0=100000000");
    ASSERT_FALSE(projection->isInvalid());
    imageOf(*projection, {0.0, 0.0});
    TQPoint pole;
    EXPECT_FALSE(projection->northPolePosition(pole));
    EXPECT_FALSE(projection->southPolePosition(pole));
    EXPECT_THAT(messages.lines(),
                AllOf(SizeIs(2), Each(StartsWith("TQPrProj4::convertGlobalPt: PROJ error :"))));
}

TEST(TQPrProj4, HasNoCentreAndTakesNoEllipsoid) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:2154");
    EXPECT_EQ(projection->center(), (TQPoint{0.0, 0.0}));
    EXPECT_THAT(messages.lines(), ElementsAre("TQPrProj4::center(): no valid method.\n"));
    TQEllipsoid ellipsoid(TQString("Sphere"), 6371000.0, 0.0);
    const TQPoint before = imageOf(*projection, kParis);
    projection->setEllipsoid(&ellipsoid);
    EXPECT_EQ(projection->ellipsoid(), nullptr);
    expectSameBits(before, imageOf(*projection, kParis));
    EXPECT_EQ(projection->meridianShape(), TQProjection::GeneralCurve);
    EXPECT_EQ(projection->parallelShape(), TQProjection::GeneralCurve);
}

// ---- descriptions ----------------------------------------------------------------------------------------

TEST(TQPrProj4, DescribesItselfAsPROJDoes) {
    for (const char* definition : {"EPSG:2154", "EPSG:27700", "EPSG:4326", "EPSG:3857"}) {
        SCOPED_TRACE(definition);
        const auto projection = built(definition);
        const Bare bare(definition);
        const Object bound(
            proj_crs_create_bound_crs_to_WGS84(bare.context.get(), bare.system.get(), nullptr));
        const PJ* described = bound ? bound.get() : bare.system.get();
        EXPECT_EQ(projection->proj4Definition().utf8(),
                  proj_as_proj_string(bare.context.get(), described, PJ_PROJ_5, nullptr));
        EXPECT_EQ(projection->wktDefinition(true).utf8(),
                  proj_as_wkt(bare.context.get(), bare.system.get(), PJ_WKT2_2019, nullptr));
        EXPECT_EQ(projection->wktDefinition(false).utf8(),
                  proj_as_wkt(bare.context.get(), bare.system.get(), PJ_WKT1_GDAL, nullptr));
    }
    EXPECT_THAT(built("EPSG:2154")->wktDefinition(true).utf8(), StartsWith("PROJCRS[\"RGF93"));
    EXPECT_THAT(built("EPSG:2154")->wktDefinition(false).utf8(), StartsWith("PROJCS[\"RGF93"));
}

TEST(TQPrProj4, TellsWhatItsCoordinatesAre) {
    using enum TQPrProj4::Coordinates;
    for (const char* geographic :
         {"EPSG:4326", "EPSG:4979", "EPSG:4326+5773", "+proj=longlat +ellps=intl +towgs84=1,2,3"}) {
        EXPECT_EQ(built(geographic)->coordinates(), Geographic) << geographic;
    }
    EXPECT_EQ(built("EPSG:4978")->coordinates(), Geocentric);
    for (const char* plane : {"EPSG:2154", "EPSG:2154+5720"}) {
        EXPECT_EQ(built(plane)->coordinates(), Plane) << plane;
    }
    EXPECT_EQ(TQPrProj4().coordinates(), Plane);
}

TEST(TQPrProj4, TellsWhereItsLongitudesBegin) {
    constexpr double digits = 1e-12;
    EXPECT_NEAR(built("EPSG:27572")->primeMeridian(), 2.5969213 * 0.9, digits) << "Paris, in grads";
    EXPECT_NEAR(built("EPSG:27572+5720")->primeMeridian(), 2.5969213 * 0.9, digits);
    EXPECT_NEAR(built("EPSG:5330")->primeMeridian(), 106.0 + 48.0 / 60.0 + 27.79 / 3600.0, 1e-9) << "Jakarta";
    EXPECT_EQ(built("EPSG:2154")->primeMeridian(), 0.0) << "Greenwich";
    EXPECT_NEAR(built("+proj=merc +pm=-17.5")->primeMeridian(), -17.5, digits);
    EXPECT_EQ(built("EPSG:27572", true)->primeMeridian(), 0.0) << "on WGS 84";
    EXPECT_EQ(TQPrProj4().primeMeridian(), 0.0);
}

TEST(TQPrProj4, TellsTheNameOfItsDatum) {
    EXPECT_TRUE(built("EPSG:27700")->geodeticName() == "OSGB36");
    EXPECT_TRUE(built("EPSG:27572+5720")->geodeticName() == "NTF (Paris)");
    EXPECT_TRUE(built("+proj=utm +zone=31 +datum=NAD27")->geodeticName() == "North American Datum 1927");
    EXPECT_TRUE(built("+proj=merc +ellps=bessel")->geodeticName().isEmpty());
    EXPECT_TRUE(built("+proj=merc +R=6371000")->geodeticName().isEmpty());
    EXPECT_TRUE(TQPrProj4().geodeticName().isEmpty());
}

TEST(TQPrProj4, TellsWhetherPROJKnowsTheShiftOfItsDatum) {
    constexpr bool useWGS84Source = true;
    EXPECT_TRUE(built("+proj=merc +ellps=bessel", useWGS84Source)->isBallpark());
    EXPECT_FALSE(built("+proj=merc +ellps=bessel +towgs84=1,2,3", useWGS84Source)->isBallpark());
    EXPECT_FALSE(built("EPSG:27700", useWGS84Source)->isBallpark());
    EXPECT_FALSE(built("+proj=merc +ellps=bessel")->isBallpark()) << "on its own datum";
    EXPECT_FALSE(TQPrProj4().isBallpark());
}

TEST(TQPrProj4, TellsTheUnitOfItsPlane) {
    EXPECT_EQ(built("EPSG:2154")->lengthUnitInMetres(), 1.0);
    EXPECT_NEAR(built("EPSG:2263")->lengthUnitInMetres(), 1200.0 / 3937.0, kUnitDigits) << "US survey feet";
    EXPECT_EQ(built("EPSG:2222")->lengthUnitInMetres(), 0.3048) << "feet";
    EXPECT_EQ(built("EPSG:2222+5703")->lengthUnitInMetres(), 0.3048) << "with heights in metres";
    EXPECT_EQ(built("EPSG:30200")->lengthUnitInMetres(), 0.201166195164) << "Clarke's links";
    EXPECT_EQ(built("+proj=utm +zone=31 +units=km")->lengthUnitInMetres(), 1000.0);
    EXPECT_EQ(built("+proj=utm +zone=31 +towgs84=1,2,3 +units=ft")->lengthUnitInMetres(), 0.3048);
}

TEST(TQPrProj4, TheUnitOfWhatIsNoPlaneIsOne) {
    const CapturedMessages messages;
    for (const char* system : {"EPSG:4326", "EPSG:4807", "EPSG:4978", "EPSG:4979", "EPSG:4326+6360"}) {
        EXPECT_EQ(built(system)->lengthUnitInMetres(), 1.0) << system;
    }
    EXPECT_EQ(built("EPSG:6360")->lengthUnitInMetres(), 1.0) << "heights in feet";
    EXPECT_EQ(TQPrProj4().lengthUnitInMetres(), 1.0);
    TQPrProj4 broken;
    broken.initFromPROJString(kRejected, false);
    EXPECT_EQ(broken.lengthUnitInMetres(), 1.0);
}

TEST(TQPrProj4, TellsTheEccentricityOfItsEllipsoid) {
    constexpr double digits = 1e-15;
    EXPECT_NEAR(built("EPSG:32631")->eccentricitySquared(), 0.00669437999014132, digits) << "WGS 84";
    EXPECT_NEAR(built("EPSG:2154+5720")->eccentricitySquared(), 0.00669438002290079, digits) << "GRS 1980";
    EXPECT_NEAR(built("EPSG:4314")->eccentricitySquared(), 0.00667437223180214, digits) << "Bessel 1841";
    EXPECT_EQ(built("+proj=merc +R=6371000")->eccentricitySquared(), 0.0);
    EXPECT_EQ(TQPrProj4().eccentricitySquared(), 0.0);
}

TEST(TQPrProj4, TellsItsAreaOfUseAsPROJDoes) {
    for (const char* definition :
         {"EPSG:2154", "EPSG:32601", "EPSG:3832", "EPSG:2263", "EPSG:27572", "EPSG:4326", "EPSG:4978",
          "EPSG:5698", "EPSG:3031", "EPSG:3413", "EPSG:2193", "EPSG:3851", "IGNF:LAMB93", "ESRI:102008"}) {
        const Bare bare(definition);
        TQPoint first;
        TQPoint second;
        ASSERT_EQ(proj_get_area_of_use(bare.context.get(), bare.system.get(), &first.x, &first.y, &second.x,
                                       &second.y, nullptr),
                  1);
        TQPoint southWest;
        TQPoint northEast;
        EXPECT_TRUE(built(definition)->areaOfUse(southWest, northEast)) << definition;
        expectSameBits(first, southWest);
        expectSameBits(second, northEast);
    }
}

// As the registry of the data set publishes them.
TEST(TQPrProj4, TheEastOfAnAreaAcrossTheAntimeridianIsLess) {
    TQPoint southWest;
    TQPoint northEast;
    ASSERT_TRUE(built("EPSG:2154")->areaOfUse(southWest, northEast));
    EXPECT_EQ(southWest, (TQPoint{-9.86, 41.15}));
    EXPECT_EQ(northEast, (TQPoint{10.38, 51.56}));
    ASSERT_TRUE(built("EPSG:3832")->areaOfUse(southWest, northEast)) << "PDC Mercator";
    EXPECT_EQ(southWest, (TQPoint{98.69, -60.0}));
    EXPECT_EQ(northEast, (TQPoint{-68.0, 66.67}));
}

TEST(TQPrProj4, ACompoundSystemWithoutAnAreaHasThatOfItsHorizontalPart) {
    const Bare bare("EPSG:2154+5720");
    ASSERT_EQ(proj_get_area_of_use(bare.context.get(), bare.system.get(), nullptr, nullptr, nullptr, nullptr,
                                   nullptr),
              0);
    TQPoint southWest;
    TQPoint northEast;
    ASSERT_TRUE(built("EPSG:2154+5720")->areaOfUse(southWest, northEast));
    EXPECT_EQ(southWest, (TQPoint{-9.86, 41.15}));
    EXPECT_EQ(northEast, (TQPoint{10.38, 51.56}));
}

TEST(TQPrProj4, AnUnknownAreaLeavesTheCornersAlone) {
    const CapturedMessages messages;
    TQPrProj4 broken;
    broken.initFromPROJString(kRejected, false);
    const auto string = built("+proj=lcc +lat_1=44 +lat_2=49");
    const auto inWords = built(kAreaInWords);
    const auto outOfUse = built("EPSG:29177");
    const TQPrProj4 none;
    for (const TQPrProj4* projection : std::initializer_list<const TQPrProj4*>{
             &none, &broken, string.get(), inWords.get(), outOfUse.get()}) {
        TQPoint southWest = kUntouched;
        TQPoint northEast = kUntouched;
        EXPECT_FALSE(projection->areaOfUse(southWest, northEast)) << projection->definition().utf8();
        EXPECT_EQ(southWest, kUntouched);
        EXPECT_EQ(northEast, kUntouched);
    }
}

/// A projection as a file holds it: read, and not built.
std::unique_ptr<TQPrProj4> read(const std::string& definition) {
    auto projection = std::make_unique<TQPrProj4>();
    EXPECT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nRead\n" + definition + "\n"), 0);
    return projection;
}

TEST(TQPrProj4, WhatWasReadIsBuiltWhenItIsAskedForItsSystem) {
    EXPECT_NEAR(read("EPSG:27572")->angularUnitInDegrees(), 0.9, kUnitDigits);
    EXPECT_NEAR(read("EPSG:27572")->primeMeridian(), 2.5969213 * 0.9, 1e-12);
    EXPECT_EQ(read("EPSG:4978")->coordinates(), TQPrProj4::Coordinates::Geocentric);
    EXPECT_EQ(read("EPSG:2154")->systemName(), "RGF93 v1 / Lambert-93");
    EXPECT_EQ(read("EPSG:2222")->lengthUnitInMetres(), 0.3048);
    EXPECT_NEAR(read("EPSG:32631")->eccentricitySquared(), 0.00669437999014132, 1e-15);
    EXPECT_EQ(read("EPSG:27572")->geodeticCode(), 4807);
    TQPoint southWest;
    TQPoint northEast;
    EXPECT_TRUE(read("EPSG:2154")->areaOfUse(southWest, northEast));
    EXPECT_EQ(southWest, (TQPoint{-9.86, 41.15}));
}

TEST(TQPrProj4, WhatIsReadAnewIsBuiltAnewWhenItIsAskedForItsSystem) {
    const auto projection = built("EPSG:2154");
    ASSERT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nParis\nEPSG:27572\n"), 0);
    EXPECT_NEAR(projection->angularUnitInDegrees(), 0.9, kUnitDigits);
}

TEST(TQPrProj4, IsBuiltOnDemandAndTellsWhetherPointsCanBeConverted) {
    spooled();
    const CapturedMessages messages;
    EXPECT_TRUE(read("EPSG:2154")->ensureBuilt());
    const auto height = read(kHeight);
    EXPECT_FALSE(height->ensureBuilt());
    EXPECT_EQ(height->systemName(), "MSL height");
    EXPECT_THAT(spooled(), IsEmpty());
    const auto broken = read(kRejected);
    EXPECT_FALSE(broken->ensureBuilt());
    EXPECT_THAT(spooled(), ElementsAre("conversion 4: Invalid projection: Read"));
    EXPECT_FALSE(broken->ensureBuilt());
    EXPECT_TRUE(broken->systemName().isEmpty());
    EXPECT_THAT(spooled(), IsEmpty()) << "once after each reading";
}

TEST(TQPrProj4, WithoutADefinitionThereIsNothingToBuildForAnAnswer) {
    spooled();
    const CapturedMessages messages;
    const TQPrProj4 none;
    EXPECT_TRUE(none.systemName().isEmpty());
    EXPECT_FALSE(none.ensureBuilt());
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_THAT(spooled(), IsEmpty());
}

TEST(TQPrProj4, TellsTheNameOfItsSystem) {
    EXPECT_EQ(built("EPSG:2154")->systemName(), "RGF93 v1 / Lambert-93");
    EXPECT_TRUE(TQPrProj4().systemName().isEmpty());
}

TEST(TQPrProj4, ReportsWKTThatPROJCannotWrite) {
    const CapturedMessages messages;
    EXPECT_TRUE(built("EPSG:4979")->wktDefinition(false).isEmpty());
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQPrProj4::wktDefinition(bool): unable to extract WKT (type=4)\n"));
}

// ---- parameters, copies ----------------------------------------------------------------------------------

TEST(TQPrProj4, ListsItsDefinitionAndTakesItForPointsOnWGS84) {
    const auto projection = built("EPSG:27700");
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "127"}, {"Nom", "String", "Test"}, {"definition", "String", "EPSG:27700"}};
    EXPECT_EQ(listedParameters(*projection), expected);
    TQPrProj4 taken;
    ParameterTable table;
    taken.setParams(table.with("Nom", TQString("Taken")).with("definition", TQString("EPSG:27700")).table());
    EXPECT_EQ(*taken.name(), "Taken");
    EXPECT_TRUE(taken.hasDatumShift());
    EXPECT_FALSE(taken.isInvalid());
    expectSameBits(imageOf(*built("EPSG:27700", true), kParis), imageOf(taken, kParis));
    taken.setParams(HashTbl<TQProjParam>());
    EXPECT_EQ(taken.definition(), "EPSG:27700");
}

TEST(TQPrProj4, ABadDefinitionInTheParametersIsMendedByAGoodOne) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:27700", true);
    ParameterTable bad;
    projection->setParams(bad.with("definition", TQString(kRejected)).table());
    EXPECT_EQ(projection->definition(), kRejected);
    EXPECT_TRUE(projection->isInvalid());
    EXPECT_TRUE(projection->wktDefinition(true).isEmpty());
    EXPECT_EQ(imageOf(*projection, kParis, -1), kInfinite);
    EXPECT_THAT(messages.lines(), ElementsAre(StartsWith("TQPrProj4::initPROJ: PROJ error :")));
    ParameterTable good;
    projection->setParams(good.with("definition", TQString("EPSG:2154")).table());
    EXPECT_EQ(projection->definition(), "EPSG:2154");
    EXPECT_FALSE(projection->isInvalid());
    EXPECT_TRUE(projection->PROJLogMessage().isEmpty());
    expectSameBits(imageOf(*built("EPSG:2154", true), kParis), imageOf(*projection, kParis));
}

TEST(TQPrProj4, HasTheSameDefinitionLetterByLetter) {
    EXPECT_TRUE(built("EPSG:2154")->hasSameDefinition(*built("EPSG:2154", true)));
    EXPECT_FALSE(built("EPSG:2154")->hasSameDefinition(*built("epsg:2154")));
    EXPECT_FALSE(built("EPSG:2154")->hasSameDefinition(*built("+init=epsg:2154")));
}

TEST(TQPrProj4, ACopyConvertsWithoutItsSource) {
    auto projection = built("EPSG:27700", true);
    const TQPoint image = imageOf(*projection, kParis);
    const auto copy = tq_copyOf(*projection);
    EXPECT_FALSE(dynamic_cast<const TQPrProj4&>(*copy).isInvalid());
    EXPECT_TRUE(copy->isEqual(projection.get()));
    EXPECT_TRUE(copy->hasDatumShift());
    projection.reset();
    expectSameBits(image, imageOf(*copy, kParis));
}

TEST(TQPrProj4, ACopyOfWhatIsNotBuiltIsBuiltWhenItIsUsed) {
    TQPrProj4 projection;
    ASSERT_EQ(readProjectionText(projection, "TQPrProj4 v0\nFrance\nEPSG:2154\n"), 0);
    const TQPrProj4 copy(projection);
    EXPECT_TRUE(copy.isInvalid());
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(copy, kParis));
    EXPECT_FALSE(copy.isInvalid());
}

TEST(TQPrProj4, ACopyOfWhatIsReadAnewHasTheNewDefinition) {
    const auto projection = built("EPSG:2154");
    ASSERT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nWorld\nEPSG:3857\n"), 0);
    const TQPrProj4 copy(*projection);
    expectSameBits(imageOf(*built("EPSG:3857"), kParis), imageOf(copy, kParis));
    EXPECT_EQ(copy.wktDefinition(true), built("EPSG:3857")->wktDefinition(true));
}

TEST(TQPrProj4, ACopyOfWhatNoTransformationLeadsToIsInvalidWithoutTellingTheUser) {
    spooled();
    const CapturedMessages messages;
    const auto projection = built(kHeight);
    const TQPrProj4 copy(*projection);
    EXPECT_TRUE(copy.isInvalid());
    EXPECT_FALSE(copy.wktDefinition(true).isEmpty());
    EXPECT_EQ(copy.wktDefinition(true), projection->wktDefinition(true));
    EXPECT_EQ(imageOf(copy, kParis, -1), kInfinite);
    EXPECT_EQ(originalOf(copy, {0.0, 0.0}, -1), kInfinite);
    EXPECT_THAT(spooled(), IsEmpty());
    EXPECT_THAT(messages.lines(), SizeIs(1)) << "that of the source";
}

TEST(TQPrProj4, ACopyKnowsNothingOfTheErrorsOfItsSource) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:32631");
    EXPECT_EQ(imageOf(*projection, {0.1, 20.0}, -1), kInfinite);
    ASSERT_FALSE(projection->PROJErrorMessage().isEmpty());
    EXPECT_TRUE(TQPrProj4(*projection).PROJErrorMessage().isEmpty());
}

// ---- files and archives ----------------------------------------------------------------------------------

TEST(TQPrProj4, WritesAndReadsItsText) {
    EXPECT_EQ(writtenProjectionText(*built("EPSG:2154")), "TQPrProj4 v0\nTest\nEPSG:2154\n");
    EXPECT_EQ(writtenProjectionText(*built("EPSG:2154"), false), "Test\nEPSG:2154\n");
    TQPrProj4 read;
    EXPECT_EQ(readProjectionText(read, "TQPrProj4 v0\nFrance\nEPSG:2154\n"), 0);
    EXPECT_EQ(*read.name(), "France");
    EXPECT_EQ(read.definition(), "EPSG:2154");
    EXPECT_TRUE(read.isInvalid());
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(read, kParis));
}

TEST(TQPrProj4, ADefinitionOfManyLinesIsWrittenOnOne) {
    const std::string wkt = built("EPSG:2154")->wktDefinition(true).utf8();
    ASSERT_THAT(wkt, HasSubstr("\n"));
    TQPrProj4 read;
    ASSERT_EQ(readProjectionText(read, writtenProjectionText(*built(wkt.c_str()))), 0);
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(read, kParis));
}

TEST(TQPrProj4, TheMarkOfADeprecatedSystemIsNotWrittenToItsText) {
    const auto projection = built("EPSG:27572");
    projection->rename(TQString("\tEPSG_27572\r"));
    const std::string text = writtenProjectionText(*projection);
    EXPECT_EQ(text, "TQPrProj4 v0\n\tEPSG_27572\nEPSG:27572\n");
    TQPrProj4 read;
    ASSERT_EQ(readProjectionText(read, text), 0);
    EXPECT_EQ(*read.name(), "\tEPSG_27572");
    EXPECT_EQ(*projection->name(), "\tEPSG_27572\r");
}

TEST(TQPrProj4, ALineOfItsTextHoldsALongDefinition) {
    const std::string longest = longDefinition(kLongestLine);
    TQPrProj4 read;
    ASSERT_EQ(readProjectionText(read, writtenProjectionText(*built(longest.c_str()))), 0);
    EXPECT_EQ(read.definition().utf8(), longest);
    EXPECT_EQ(codeOfWriting(*built(longDefinition(kLongestLine + 1).c_str())), -1);
}

// Characters count, not bytes.
TEST(TQPrProj4, ALineOfItsTextHoldsALongName) {
    const std::string longest = repeated("\u00E9", kLongestLine);
    const auto projection = built("EPSG:2154");
    projection->rename(TQString(longest.c_str()));
    TQPrProj4 read;
    ASSERT_EQ(readProjectionText(read, writtenProjectionText(*projection)), 0);
    EXPECT_EQ(read.name()->utf8(), longest);
    EXPECT_EQ(read.definition(), "EPSG:2154");
    projection->rename(TQString((longest + "x").c_str()));
    EXPECT_EQ(codeOfWriting(*projection), -1);
}

TEST(TQPrProj4, EveryFailureOfItsTextIsMinusOne) {
    const CapturedMessages messages;
    for (const char* text : {"", "TQPrProj4\n", "TQPrProj4 v0\n", "TQPrProj4 v0\nName\n"}) {
        TQPrProj4 projection;
        EXPECT_EQ(readProjectionText(projection, text), -1) << text;
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
    TQPrProj4 projection;
    EXPECT_EQ(readProjectionText(projection, "TQPrProj4 v1\nName\nEPSG:2154\n"), -1);
    EXPECT_THAT(messages.lines(), ElementsAre("TQPrProj4::loadFromFile: Unknown version\n"));
    const TemporaryDirectory directory;
    TQFile missing(directory.file("missing"));
    EXPECT_EQ(projection.loadFromFile(missing, true), -1);
    TQFile nowhere(directory.file("missing/projection"));
    EXPECT_EQ(projection.writeToFile(nowhere, true), -1);
    if (const auto device = fullDevice()) {
        TQFile full(*device);
        EXPECT_EQ(projection.writeToFile(full, true), -1);
    }
}

TEST(TQPrProj4, WritesAndReadsItsArchive) {
    EXPECT_EQ(archivedBytes(*built("EPSG:2154")), archiveOf("Test", "EPSG:2154").bytes());
    ByteStream stream(archiveOf("\tEPSG_2154\r", "EPSG:2154"));
    TQPrProj4 read;
    read.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(*read.name(), "\tEPSG_2154");
    EXPECT_TRUE(read.isExternalProjection());
    EXPECT_TRUE(read.isInvalid());
    expectSameBits(imageOf(*built("EPSG:2154"), kParis), imageOf(read, kParis));
}

TEST(TQPrProj4, TheMarkOfADeprecatedSystemIsGoneAfterItsArchive) {
    const auto projection = built("EPSG:27572");
    projection->rename(TQString("\tEPSG_27572\r"));
    const std::string bytes = archivedBytes(*projection);
    EXPECT_EQ(bytes, archiveOf("\tEPSG_27572\r", "EPSG:27572").bytes());
    ByteStream stream(bytes);
    TQPrProj4 read;
    read.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(*read.name(), "\tEPSG_27572");
}

TEST(TQPrProj4, ItsArchiveMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(archiveOf("Test", "EPSG:2154").bytes(), [](TQReadStream* stream) {
        TQPrProj4 projection;
        projection.unarchiveFrom(stream);
        TQPoint global;
        projection.convertGeoPt(kParis, global);
    });
    spooled();
}

TEST(TQPrProj4, ReportsAnUnknownVersionOfItsArchive) {
    for (const int version : {1, -1, 32767}) {
        const CapturedMessages messages;
        ByteStream stream(StreamBytes().tag("TQPrProj4", version).text("Other").text("EPSG:4326"));
        const auto projection = built("EPSG:2154");
        projection->unarchiveFrom(stream.get());
        EXPECT_THAT(messages.lines(), ElementsAre("TQPrProj4::unarchiveFrom(TQReadStream *): version " +
                                                  std::to_string(version) + " is unknown.\n"));
        EXPECT_EQ(*projection->name(), "Test");
        EXPECT_EQ(projection->definition(), "EPSG:2154");
    }
}

// Reading leaves what was built until the next conversion builds anew.
TEST(TQPrProj4, EveryStateLeadsToEveryOther) {
    const CapturedMessages messages;
    const auto projection = built("EPSG:2154");
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nWorld\nEPSG:3857\n"), 0);
        const TQPrProj4 pendingCopy(*projection);
        expectSameBits(imageOf(*built("EPSG:3857"), kParis), imageOf(*projection, kParis));
        ByteStream stream(archiveOf("Broken", "EPSG:999999"));
        projection->unarchiveFrom(stream.get());
        EXPECT_EQ(imageOf(*projection, kParis, -1), kUntouched);
        const TQPrProj4 brokenCopy(*projection);
        EXPECT_TRUE(brokenCopy.isInvalid());
        ParameterTable table;
        projection->setParams(table.with("definition", TQString("EPSG:2154")).table());
        EXPECT_EQ(projection->initPROJ(false), 0);
    }
    spooled();
}

// ---- threads ---------------------------------------------------------------------------------------------

TEST(TQPrProj4, EightThreadsConvertThroughOneObjectAndThroughCopies) {
    const auto shared = built("EPSG:2154");
    TQPrProj4 unbuilt;
    ASSERT_EQ(readProjectionText(unbuilt, "TQPrProj4 v0\nFrance\nEPSG:2154\n"), 0);
    const TQPoint expected = imageOf(*built("EPSG:2154"), kParis);
    const std::vector<TQPrProj4> copies(kThreadCount, *shared);
    std::vector<int> wrong(kThreadCount, 0);
    inEightThreads([&](std::size_t i) {
        for (int round = 0; round < 500; ++round) {
            for (const TQPrProj4& projection :
                 {std::cref<TQPrProj4>(*shared), std::cref<TQPrProj4>(unbuilt), std::cref(copies[i])}) {
                TQPoint global;
                const bool same = projection.convertGeoPt(kParis, global) == 0 && global == expected;
                wrong[i] += same ? 0 : 1;
            }
        }
    });
    EXPECT_THAT(wrong, Each(0));
}

// Every other thread meets points that PROJ refuses.
TEST(TQPrProj4, APoleIsFoundWhileOtherThreadsMeetErrors) {
    constexpr int rounds = 10000;
    const CapturedMessages messages;
    const auto projection = built("EPSG:32631");
    TQPoint pole;
    ASSERT_TRUE(projection->northPolePosition(pole));
    std::vector<int> missed(kThreadCount, 0);
    inEightThreads([&](std::size_t i) {
        const bool asksForPoles = i % 2 == 0;
        for (int round = 0; round < rounds; ++round) {
            TQPoint position;
            if (asksForPoles) {
                missed[i] += projection->northPolePosition(position) && position == pole ? 0 : 1;
            } else {
                projection->convertGeoPt({0.1, 20.0}, position);
            }
        }
    });
    EXPECT_THAT(missed, Each(0));
}

TEST(TQPrProj4, EightThreadsAskWhyTheirDefinitionsWereRejected) {
    const std::string expected = rejectionOf(kRejected);
    const CapturedMessages messages;
    std::vector<int> wrong(kThreadCount, 0);
    inEightThreads([&](std::size_t i) {
        TQPrProj4 projection;
        wrong[i] += projection.initFromPROJString(kRejected, false) == -1 ? 0 : 1;
        for (int round = 0; round < 500; ++round) {
            wrong[i] += projection.PROJErrorMessage().utf8() == expected ? 0 : 1;
        }
    });
    EXPECT_THAT(wrong, Each(0));
}
