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
#include <memory>
#include <thread>

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

struct Destroy {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    void operator()(PJ* object) const { proj_destroy(object); }
};
using Context = std::unique_ptr<PJ_CONTEXT, Destroy>;
using Object = std::unique_ptr<PJ, Destroy>;

/// PROJ's own objects for a system, without the class.
struct Bare {
    explicit Bare(const std::string& definition, bool onWGS84 = false)
        : context(proj_context_create()), system(proj_create(context.get(), definition.c_str())) {
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
    constexpr int pointCount = 20000;
    const CapturedMessages messages;
    for (const bool onWGS84 : {false, true}) {
        const auto projection = built(GetParam(), onWGS84);
        const Bare bare(GetParam(), onWGS84);
        ASSERT_NE(bare.operation, nullptr);
        RandomNumbers random(6);
        for (int i = 0; i < pointCount / 2; ++i) {
            const TQPoint geo{random.between(-3.1, 3.1), random.between(-1.5, 1.5)};
            const TQPoint expected = bare.transformed(PJ_FWD, {tq_rad2deg(geo.x), tq_rad2deg(geo.y)});
            TQPoint global;
            const int code = projection->convertGeoPt(geo, global);
            ASSERT_EQ(code, expected == kInfinite ? -1 : 0);
            ASSERT_NO_FATAL_FAILURE(expectSameBits(expected, global));
            if (code != 0) {
                continue;
            }
            const TQPoint degrees = bare.transformed(PJ_INV, global);
            TQPoint back;
            projection->convertGlobalPt(global, back);
            ASSERT_NO_FATAL_FAILURE(expectSameBits({tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)}, back));
        }
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
    std::vector<std::thread> threads;
    std::vector<int> wrong(8, 0);
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        threads.emplace_back([&, i, own = TQPrProj4(*shared)] {
            for (int round = 0; round < 500; ++round) {
                for (const TQProjection* projection :
                     {static_cast<const TQProjection*>(shared.get()),
                      static_cast<const TQProjection*>(&unbuilt), static_cast<const TQProjection*>(&own)}) {
                    TQPoint global;
                    const bool same = projection->convertGeoPt(kParis, global) == 0 && global == expected;
                    wrong[i] += same ? 0 : 1;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(wrong, testing::Each(0));
}
