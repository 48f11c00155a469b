#include "projection/TQProjection.h"

#include "ellipsoid/TQEllipsoid.h"
#include "projection/TQDummyProjection.h"
#include "support/TQFile.h"
#include "support/TQNuplet.h"
#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "testing/FullDisk.h"
#include "testing/Identity.h"
#include "testing/ProbeProjection.h"
#include "testing/ProjectionFiles.h"
#include "testing/ProjectionTables.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"
#include "testing/TemporaryDirectory.h"
#include "testing/TextLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <optional>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kRadians = 0x11000001;
constexpr std::uint32_t kDegrees = 0x12000001;
constexpr std::uint32_t kGons = 0x14000001;
constexpr TQPoint kUntouched{123.0, 456.0};
constexpr const char* kOutOfScope = "TQProjection::convertGlobalPt: out od scope error";

/// An object of the root class itself, which only a copy can make.
TQProjection root() {
    const TQDummyProjection source;
    return static_cast<const TQProjection&>(source);
}

std::unique_ptr<ProbeProjection> named(const char* name, TQEllipsoid* ellipsoid = nullptr) {
    auto projection = std::make_unique<ProbeProjection>();
    projection->rename(TQString(name));
    projection->setEllipsoid(ellipsoid);
    return projection;
}

/// A probe whose inverse gives one point and one code.
ProbeProjection withInverse(const TQPoint& result, int code = 0) {
    ProbeProjection projection;
    projection.inverse = [=](const TQPoint& /*global*/, TQPoint& geo) {
        geo = result;
        return code;
    };
    return projection;
}

} // namespace

// ---- the root's answers ----------------------------------------------------------------------------------

TEST(TQProjection, AnswersToItsClassAndTheRoot) {
    expectIdentity(root(), {"TQProjection"});
    expectIdentity(ProbeProjection(), {"ProbeProjection", "TQProjection"});
}

TEST(TQProjection, HasNoTypeCodeAndAnUnknownTypeName) {
    EXPECT_EQ(root().projectionType(), -1);
    EXPECT_EQ(root().typeName(), "unknown");
}

TEST(TQProjection, StartsNamelessAsAResourceThatNobodyRegistered) {
    const TQProjection projection = root();
    EXPECT_EQ(projection.name(), nullptr);
    EXPECT_EQ(projection.ellipsoid(), nullptr);
    EXPECT_EQ(projection.pendingEllipsoidName(), nullptr);
    EXPECT_TRUE(projection.isResource());
    EXPECT_FALSE(projection.isUserDefined());
    EXPECT_EQ(projection.registrationState(), 0);
}

TEST(TQProjection, ConvertsNothingAndAnswersZero) {
    const TQProjection projection = root();
    TQPoint global = kUntouched;
    TQPoint geo = kUntouched;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{1.0, 2.0}, global), 0);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo), 0);
    EXPECT_EQ(global, kUntouched);
    EXPECT_EQ(geo, kUntouched);
}

TEST(TQProjection, EveryPointIsValid) {
    for (const double number : {0.0, 100.0, kInfinity, kNaN}) {
        EXPECT_TRUE(root().isGeoPtValid(TQPoint{number, number}));
        EXPECT_TRUE(root().isGlobalPtValid(TQPoint{number, number}));
    }
}

TEST(TQProjection, MeridiansAndParallelsAreCurves) {
    EXPECT_EQ(root().meridianShape(), 2);
    EXPECT_EQ(root().parallelShape(), 2);
}

TEST(TQProjection, KnowsNoPoles) {
    TQPoint position = kUntouched;
    EXPECT_FALSE(root().northPolePosition(position));
    EXPECT_FALSE(root().southPolePosition(position));
    EXPECT_EQ(position, kUntouched);
}

TEST(TQProjection, ReportsThatItHasNoCenter) {
    const CapturedMessages messages;
    EXPECT_EQ(root().center(), (TQPoint{0.0, 0.0}));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
}

TEST(TQProjection, HasNoConstantsAndIsNeverInvalid) {
    EXPECT_EQ(root().initConstants(), 0);
    EXPECT_FALSE(root().isInvalid());
    TQProjection projection = root();
    projection.awake();
    EXPECT_TRUE(projection.isEqual(&projection));
}

TEST(TQProjection, ReadingFromAStreamIsUnarchivingAndAnswersTheObject) {
    ByteStream stream(sampleBaseArchive());
    ProbeProjection projection;
    EXPECT_EQ(projection.initFromStream(stream.get()), &projection);
    EXPECT_EQ(projection.unarchivings, 1);
    EXPECT_TRUE(stream.isReadExactly());
}

// ---- ellipsoid and datum shift ---------------------------------------------------------------------------

TEST(TQProjection, AttachingAnEllipsoidComputesTheConstantsAndDetachingDoesNot) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    ProbeProjection projection;
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(projection.ellipsoid(), &ellipsoid);
    EXPECT_EQ(projection.initialisations, 1);
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(projection.initialisations, 2);
    projection.setEllipsoid(nullptr);
    EXPECT_EQ(projection.ellipsoid(), nullptr);
    EXPECT_EQ(projection.initialisations, 2);
}

TEST(TQProjection, NeedsADatumShiftWhenItsEllipsoidHasOne) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQProjection projection = root();
    EXPECT_FALSE(projection.needsDatumShift());
    EXPECT_FALSE(projection.hasDatumShift());
    projection.setEllipsoid(&ellipsoid);
    EXPECT_FALSE(projection.needsDatumShift());
    EXPECT_FALSE(projection.hasDatumShift());
    for (const auto kind : {TQEllipsoid::ThreeParameterShift, TQEllipsoid::SevenParameterShift}) {
        ellipsoid.setDatumShift(kind, 6378137.0, 0.0, {});
        EXPECT_TRUE(projection.needsDatumShift());
        EXPECT_TRUE(projection.hasDatumShift());
    }
}

// ---- copies ----------------------------------------------------------------------------------------------

TEST(TQProjection, CopyHasANameOfItsOwnAndSharesTheEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQProjection original = root();
    original.rename(TQString("Original"));
    original.setEllipsoid(&ellipsoid);
    const auto copy = tq_copyOf(original);
    EXPECT_STREQ(copy->className(), "TQProjection");
    EXPECT_EQ(copy->ellipsoid(), &ellipsoid);
    ASSERT_NE(copy->name(), nullptr);
    EXPECT_NE(copy->name(), original.name());
    original.rename(TQString("Renamed"));
    EXPECT_EQ(*copy->name(), "Original");
    EXPECT_EQ(tq_copyOf(root())->name(), nullptr);
}

TEST(TQProjection, CopyTakesTheBookkeeping) {
    TQProjection original = root();
    original.setIsResource(false);
    original.setIsUserDefined(true);
    original.setRegistrationState(0x123456789A);
    const TQProjection copy(original);
    EXPECT_FALSE(copy.isResource());
    EXPECT_TRUE(copy.isUserDefined());
    EXPECT_EQ(copy.registrationState(), 0x123456789A);
}

TEST(TQProjection, CopyOfAProjectionFromAFileDoesNotOwnTheEllipsoid) {
    TQProjection original = root();
    ASSERT_EQ(readProjectionText(original, textOf(sampleBaseLines())), 0);
    {
        TQProjection copy(original);
        EXPECT_EQ(copy.ellipsoid(), original.ellipsoid());
        EXPECT_EQ(copy.releaseOwnedEllipsoid(), nullptr);
    }
    EXPECT_EQ(*original.ellipsoid()->name(), kSampleEllipsoidName);
}

// ---- names -----------------------------------------------------------------------------------------------

TEST(TQProjection, MayBeRenamedToItsOwnName) {
    TQProjection projection = root();
    projection.rename(TQString("A name that is too long for any small buffer inside of a string"));
    projection.rename(*projection.name());
    EXPECT_EQ(*projection.name(), "A name that is too long for any small buffer inside of a string");
}

TEST(TQProjection, RenamingCopiesTheName) {
    TQProjection projection = root();
    TQString name("First");
    projection.rename(name);
    name.set("Second");
    EXPECT_EQ(*projection.name(), "First");
    projection.rename(name);
    EXPECT_EQ(*projection.name(), "Second");
}

TEST(TQProjection, ANameWithATabInFrontIsThatOfAnExternalProjection) {
    EXPECT_TRUE(named("\tWGS 84 (EPSG:4326)")->isExternalProjection());
    EXPECT_TRUE(named("\t")->isExternalProjection());
    EXPECT_FALSE(named("")->isExternalProjection());
    EXPECT_FALSE(named("UTM\t31")->isExternalProjection());
    EXPECT_FALSE(named(" \t")->isExternalProjection());
    EXPECT_FALSE(root().isExternalProjection());
}

// ---- conversions in any unit -----------------------------------------------------------------------------

TEST(TQProjection, ConvertsGeographicPointsInRadians) {
    ProbeProjection projection;
    projection.forward = [](const TQPoint& geo, TQPoint& global) {
        global = {2.0 * geo.x, 3.0 * geo.y};
        return 7;
    };
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQAnglePoint(180.0, -45.0, kDegrees), global), 7);
    ASSERT_EQ(projection.converted.size(), 1U);
    EXPECT_EQ(projection.converted[0], (TQPoint{kPi, -kPi / 4.0}));
    EXPECT_EQ(global, (TQPoint{2.0 * kPi, -3.0 * kPi / 4.0}));
    projection.convertGeoPt(TQAnglePoint(100.0, 50.0, kGons), global);
    EXPECT_NEAR(projection.converted[1].x, kPi / 2.0, 1e-15);
    EXPECT_NEAR(projection.converted[1].y, kPi / 4.0, 1e-15);
    projection.convertGeoPt(TQAnglePoint(1.25, 0.5, kRadians), global);
    EXPECT_EQ(projection.converted[2], (TQPoint{1.25, 0.5}));
}

TEST(TQProjection, EachAngleGoesByItsOwnBase360Flag) {
    ProbeProjection projection;
    TQPoint global;
    const auto converted = [&](bool longitude360, bool latitude360) {
        projection.converted.clear();
        projection.convertGeoPt(TQAnglePoint(TQAngleWithUnit(-90.0, kDegrees, longitude360),
                                             TQAngleWithUnit(-45.0, kDegrees, latitude360)),
                                global);
        return projection.converted.at(0);
    };
    EXPECT_EQ(converted(false, false), (TQPoint{-kPi / 2.0, -kPi / 4.0}));
    EXPECT_EQ(converted(true, false), (TQPoint{1.5 * kPi, -kPi / 4.0}));
    EXPECT_EQ(converted(false, true), (TQPoint{-kPi / 2.0, 1.75 * kPi}));
}

TEST(TQProjection, WithoutTheFlagAnglesPassAsTheyAre) {
    ProbeProjection projection;
    TQPoint global;
    projection.convertGeoPt(TQAnglePoint(750.0, -400.0, kDegrees), global);
    EXPECT_EQ(projection.converted.at(0), (TQPoint{750.0 * kPi / 180.0, -400.0 * kPi / 180.0}));
}

TEST(TQProjection, AFailingConversionLeavesTheGlobalPoint) {
    ProbeProjection projection([](const TQPoint& /*geo*/, TQPoint& /*global*/) { return -1; });
    TQPoint global = kUntouched;
    EXPECT_EQ(projection.convertGeoPt(TQAnglePoint(1.0, 2.0, kDegrees), global), -1);
    EXPECT_EQ(global, kUntouched);
}

TEST(TQProjection, ConvertsGlobalPointsToTheUnitWanted) {
    const ProbeProjection projection = withInverse({kPi, -kPi / 4.0});
    TQAnglePoint geo(9.0, 9.0, kGons);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kDegrees), 0);
    EXPECT_EQ(geo, TQAnglePoint(180.0, -45.0, kDegrees));
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kRadians), 0);
    EXPECT_EQ(geo, TQAnglePoint(kPi, -kPi / 4.0, kRadians));
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kGons), 0);
    EXPECT_EQ(geo.unit(), kGons);
    EXPECT_NEAR(geo.longitude().value(), 200.0, 1e-12);
    EXPECT_NEAR(geo.latitude().value(), -50.0, 1e-12);
}

TEST(TQProjection, AnswersTheCodeOfTheConversion) {
    const ProbeProjection projection = withInverse({1.0, 0.5}, 7);
    TQAnglePoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kRadians), 7);
    EXPECT_EQ(geo, TQAnglePoint(1.0, 0.5, kRadians));
}

TEST(TQProjection, TheGeographicPointStartsAtZero) {
    ProbeProjection projection;
    TQPoint start = kUntouched;
    projection.inverse = [&start](const TQPoint& /*global*/, TQPoint& geo) {
        start = geo;
        return -1;
    };
    TQAnglePoint geo(9.0, 9.0, kGons);
    const CapturedMessages messages;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kDegrees), -1);
    EXPECT_EQ(start, (TQPoint{0.0, 0.0}));
    EXPECT_EQ(geo, TQAnglePoint(0.0, 0.0, kDegrees));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjection, AResultThatIsNotFiniteIsReportedAndFails) {
    for (const double strange : {kNaN, -kNaN, kInfinity, -kInfinity}) {
        for (const TQPoint& result :
             {TQPoint{strange, 0.5}, TQPoint{0.5, strange}, TQPoint{strange, strange}}) {
            const CapturedMessages messages;
            const ProbeProjection projection = withInverse(result);
            TQAnglePoint geo(9.0, 9.0, kGons);
            EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, kDegrees), -1);
            EXPECT_EQ(geo, TQAnglePoint(0.0, 0.0, kDegrees));
            EXPECT_THAT(messages.lines(), ElementsAre(kOutOfScope));
        }
    }
}

TEST(TQProjection, ValidityIsAskedInRadians) {
    ProbeProjection projection;
    projection.valid = [](const TQPoint& geo) { return geo.y < 1.0; };
    EXPECT_TRUE(projection.isGeoPtValid(TQAnglePoint(-90.0, 45.0, kDegrees)));
    EXPECT_FALSE(projection.isGeoPtValid(TQAnglePoint(-90.0, 90.0, kDegrees)));
    EXPECT_EQ(projection.askedForValid.at(0), (TQPoint{-kPi / 2.0, kPi / 4.0}));
    EXPECT_EQ(projection.askedForValid.at(1), (TQPoint{-kPi / 2.0, kPi / 2.0}));
}

// ---- equality --------------------------------------------------------------------------------------------

TEST(TQProjection, IsEqualToNothingButAProjection) {
    const auto projection = named("A");
    const TQNuplet other;
    EXPECT_FALSE(projection->isEqual(nullptr));
    EXPECT_FALSE(projection->isEqual(&other));
    EXPECT_FALSE(*projection == other);
    EXPECT_TRUE(*projection == *named("A"));
}

TEST(TQProjection, NamesMustBeEqualForEqualityOnly) {
    const auto projection = named("A");
    EXPECT_TRUE(projection->isEqual(named("A").get()));
    for (const char* name : {"a", "A ", ""}) {
        EXPECT_FALSE(projection->isEqual(named(name).get())) << name;
        EXPECT_TRUE(projection->hasSameDefinition(*named(name))) << name;
    }
}

TEST(TQProjection, NamelessProjectionsAreEqualToEachOtherOnly) {
    EXPECT_TRUE(ProbeProjection().isEqual(std::make_unique<ProbeProjection>().get()));
    EXPECT_FALSE(ProbeProjection().isEqual(named("A").get()));
    EXPECT_FALSE(named("A")->isEqual(std::make_unique<ProbeProjection>().get()));
}

TEST(TQProjection, OtherTypesHaveOtherDefinitions) {
    EXPECT_FALSE(ProbeProjection().hasSameDefinition(TQDummyProjection()));
    EXPECT_FALSE(TQDummyProjection().hasSameDefinition(ProbeProjection()));
    EXPECT_TRUE(TQDummyProjection().hasSameDefinition(root())); // neither has a type
}

TEST(TQProjection, EllipsoidsMustBeEqual) {
    TQEllipsoid one = sampleEllipsoid();
    TQEllipsoid same = sampleEllipsoid();
    TQEllipsoid other(TQString("Other"), 6400000.0, 0.0199);
    const auto onOne = named("A", &one);
    EXPECT_TRUE(onOne->hasSameDefinition(*named("A", &one)));
    EXPECT_TRUE(onOne->hasSameDefinition(*named("A", &same)));
    EXPECT_FALSE(onOne->hasSameDefinition(*named("A", &other)));
    EXPECT_FALSE(onOne->isEqual(named("A", &other).get()));
}

TEST(TQProjection, WithoutEllipsoidOnlyOneWithoutIsTheSame) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    EXPECT_TRUE(named("A")->hasSameDefinition(*named("A")));
    EXPECT_FALSE(named("A")->hasSameDefinition(*named("A", &ellipsoid)));
    EXPECT_FALSE(named("A", &ellipsoid)->hasSameDefinition(*named("A")));
}

// ---- parameter tables ------------------------------------------------------------------------------------

TEST(TQProjection, ListsTypeNameAndEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    EXPECT_THAT(listedParameters(*named("A", &ellipsoid)),
                ElementsAre(ListedParameter{"Type", "Int", "42"}, ListedParameter{"Nom", "String", "A"},
                            ListedParameter{"Ellipsoide", "String", kSampleEllipsoidName}));
}

TEST(TQProjection, ListsNoEllipsoidWhereThereIsNone) {
    EXPECT_THAT(listedParameters(*named("A")),
                ElementsAre(ListedParameter{"Type", "Int", "42"}, ListedParameter{"Nom", "String", "A"}));
    EXPECT_THAT(listedParameters(root()),
                ElementsAre(ListedParameter{"Type", "Int", "-1"}, ListedParameter{"Nom", "String", ""}));
}

TEST(TQProjection, TakesTheNameOnly) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named("A", &ellipsoid);
    ParameterTable parameters;
    parameters.with("Nom", TQString("B")).with("Type", 3).with("Ellipsoide", TQString("Other"));
    projection->setParams(parameters.table());
    EXPECT_EQ(*projection->name(), "B");
    EXPECT_EQ(projection->projectionType(), 42);
    EXPECT_EQ(projection->ellipsoid(), &ellipsoid);
    EXPECT_EQ(*ellipsoid.name(), kSampleEllipsoidName);
}

TEST(TQProjection, ATableWithoutNameLeavesTheName) {
    const auto projection = named("A");
    projection->setParams(HashTbl<TQProjParam>());
    EXPECT_EQ(*projection->name(), "A");
    ParameterTable parameters;
    projection->setParams(parameters.with("nom", TQString("B")).table());
    EXPECT_EQ(*projection->name(), "A");
}

// ---- archives --------------------------------------------------------------------------------------------

TEST(TQProjection, WritesItsArchiveByteForByte) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    EXPECT_EQ(archivedBytes(*named(kSampleName, &ellipsoid)), sampleBaseArchive().bytes());
}

TEST(TQProjection, WritesAnEmptyTextWithoutEllipsoidAndNullForANullName) {
    EXPECT_EQ(archivedBytes(root()), StreamBytes().tag("TQProjection", 1).nullText().text("").bytes());
    TQEllipsoid nameless;
    EXPECT_EQ(archivedBytes(*named("A", &nameless)),
              StreamBytes().tag("TQProjection", 1).text("A").nullText().bytes());
}

TEST(TQProjection, ReadsBothVersionsOfItsArchive) {
    for (const StreamBytes& bytes : {oldSampleBaseArchive(), sampleBaseArchive()}) {
        const CapturedMessages messages;
        TQEllipsoid ellipsoid = sampleEllipsoid();
        ByteStream stream(bytes);
        const auto projection = named("Before", &ellipsoid);
        projection->unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_THAT(messages.lines(), IsEmpty());
        ASSERT_NE(projection->name(), nullptr);
        EXPECT_EQ(*projection->name(), kSampleName);
        EXPECT_EQ(projection->ellipsoid(), nullptr);
        ASSERT_NE(projection->pendingEllipsoidName(), nullptr);
        EXPECT_EQ(*projection->pendingEllipsoidName(), kSampleEllipsoidName);
    }
}

TEST(TQProjection, StripsCarriageReturnsFromItsName) {
    for (const StreamBytes& bytes :
         {StreamBytes().tag("TQProjection", 0).counted("\rSam\r\rple\r").counted("E"),
          StreamBytes().tag("TQProjection", 1).text("\rSam\r\rple\r").text("E")}) {
        ByteStream stream(bytes);
        TQProjection projection = root();
        projection.unarchiveFrom(stream.get());
        EXPECT_EQ(*projection.name(), kSampleName);
        EXPECT_EQ(*projection.pendingEllipsoidName(), "E");
    }
}

TEST(TQProjection, OldNamesAreCutToTheBufferOfTheirTime) {
    ByteStream stream(
        StreamBytes().tag("TQProjection", 0).counted(std::string(1024, 'n')).counted(std::string(3000, 'e')));
    TQProjection projection = root();
    projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(projection.name()->utf8(), std::string(1023, 'n'));
    EXPECT_EQ(projection.pendingEllipsoidName()->utf8(), std::string(1023, 'e'));
}

TEST(TQProjection, ReportsAnUnknownVersionAndReadsNothing) {
    for (const int version : {2, 3, 255, 32767, -1, -32768}) {
        SCOPED_TRACE(version);
        const CapturedMessages messages;
        TQEllipsoid ellipsoid = sampleEllipsoid();
        const StreamBytes rest = StreamBytes().text("After").text("After");
        ByteStream stream(StreamBytes().tag("TQProjection", version).append(rest));
        const auto projection = named("Before", &ellipsoid);
        projection->unarchiveFrom(stream.get());
        EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::unarchiveFrom(TQReadStream *): version " +
                                                  std::to_string(version) + " is unknown.\n"));
        EXPECT_EQ(stream.get()->bytesLeft(), rest.bytes().size());
        EXPECT_EQ(*projection->name(), "Before");
        EXPECT_EQ(projection->ellipsoid(), &ellipsoid);
        EXPECT_EQ(projection->pendingEllipsoidName(), nullptr);
    }
}

TEST(TQProjection, ItsArchivesMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    for (const StreamBytes& bytes : {oldSampleBaseArchive(), sampleBaseArchive()}) {
        expectEveryCutIsNoticed(bytes.bytes(), [](TQReadStream* stream) {
            TQEllipsoid ellipsoid = sampleEllipsoid();
            const auto projection = named("Before", &ellipsoid);
            projection->unarchiveFrom(stream);
            projection->isExternalProjection();
            EXPECT_TRUE(tq_copyOf(*projection)->isEqual(projection.get()));
        });
    }
}

TEST(TQProjection, TheNameOfTheEllipsoidToBeFoundIsGivenUpOnce) {
    ByteStream stream(sampleBaseArchive());
    TQProjection projection = root();
    projection.unarchiveFrom(stream.get());
    const std::unique_ptr<TQString> pending = projection.takePendingEllipsoidName();
    ASSERT_NE(pending, nullptr);
    EXPECT_EQ(*pending, kSampleEllipsoidName);
    EXPECT_EQ(projection.pendingEllipsoidName(), nullptr);
    EXPECT_EQ(projection.takePendingEllipsoidName(), nullptr);
}

// While the name waits, nothing may take it for an ellipsoid.
TEST(TQProjection, WorksWithoutEllipsoidWhileItsNameIsToBeFound) {
    ByteStream stream(sampleBaseArchive());
    ProbeProjection projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_FALSE(projection.needsDatumShift());
    EXPECT_TRUE(projection.WKTProjectionStuff().isEmpty());
    EXPECT_EQ(listedParameters(projection).size(), 2U);
    EXPECT_TRUE(projection.hasSameDefinition(ProbeProjection(projection)));
    EXPECT_EQ(projection.initialisations, 0);
}

TEST(TQProjection, AnEllipsoidThatIsStillToBeFoundIsArchivedByItsName) {
    ByteStream stream(sampleBaseArchive());
    TQProjection projection = root();
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(archivedBytes(projection), sampleBaseArchive().bytes());
}

TEST(TQProjection, NothingIsToBeFoundOnceThereIsAnEllipsoidOrNone) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (TQEllipsoid* const attached : {&ellipsoid, static_cast<TQEllipsoid*>(nullptr)}) {
        ByteStream stream(sampleBaseArchive());
        TQProjection projection = root();
        projection.unarchiveFrom(stream.get());
        projection.setEllipsoid(attached);
        EXPECT_EQ(projection.pendingEllipsoidName(), nullptr);
    }
    ByteStream stream(sampleBaseArchive());
    TQProjection projection = root();
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(readProjectionText(projection, textOf(sampleBaseLines())), 0);
    EXPECT_EQ(projection.pendingEllipsoidName(), nullptr);
}

// ---- text ------------------------------------------------------------------------------------------------

TEST(TQProjection, WritesItsTextByteForByte) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named(kSampleName, &ellipsoid);
    const std::string text = textOf(sampleBaseLines());
    EXPECT_EQ(writtenProjectionText(*projection), text);
    EXPECT_EQ(writtenProjectionText(*projection, false), text.substr(text.find('\n') + 1));
}

TEST(TQProjection, ReadsItsTextIntoAnEllipsoidOfItsOwn) {
    TQProjection projection = root();
    ASSERT_EQ(readProjectionText(projection, textOf(sampleBaseLines())), 0);
    EXPECT_EQ(*projection.name(), kSampleName);
    ASSERT_NE(projection.ellipsoid(), nullptr);
    EXPECT_TRUE(projection.ellipsoid()->isEqual(std::make_unique<TQEllipsoid>(sampleEllipsoid()).get()));
    const std::unique_ptr<TQEllipsoid> owned = projection.releaseOwnedEllipsoid();
    EXPECT_EQ(owned.get(), projection.ellipsoid());
    EXPECT_EQ(projection.releaseOwnedEllipsoid(), nullptr);
}

TEST(TQProjection, ReadsItsTextIntoTheEllipsoidThatIsAttached) {
    TQEllipsoid ellipsoid(TQString("Before"), 1.0, 0.0);
    const auto projection = named("Before", &ellipsoid);
    ASSERT_EQ(readProjectionText(*projection, textOf(sampleBaseLines())), 0);
    EXPECT_EQ(projection->ellipsoid(), &ellipsoid);
    EXPECT_EQ(*ellipsoid.name(), kSampleEllipsoidName);
    EXPECT_EQ(ellipsoid.semiMajorAxis(), 6400000.0);
    EXPECT_EQ(projection->releaseOwnedEllipsoid(), nullptr);
}

TEST(TQProjection, WithoutHeaderItsTextIsReadByTheVersionThatTheFileHolds) {
    const TemporaryDirectory directory;
    const std::string text = textOf(sampleBaseLines());
    const TQString path = directory.fileWith("projection", text.substr(text.find('\n') + 1));
    TQFile file(path);
    file.setBlockVersion(1);
    TQProjection projection = root();
    EXPECT_EQ(projection.loadFromFile(file, false), 0);
    EXPECT_EQ(*projection.name(), kSampleName);
    for (const int version : {0, 2, -1}) {
        const CapturedMessages messages;
        TQFile other(path);
        other.setBlockVersion(version);
        TQProjection unread = root();
        EXPECT_EQ(unread.loadFromFile(other, false), 5024);
        EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::loadFromFile: Unknown version\n"));
        EXPECT_EQ(unread.name(), nullptr);
    }
}

TEST(TQProjection, ReportsAnUnknownVersionOfItsText) {
    for (const char* version : {"0", "2", "3", "-1"}) {
        const CapturedMessages messages;
        std::string text = textOf(sampleBaseLines());
        text.replace(text.find("v1") + 1, 1, version);
        TQProjection projection = root();
        EXPECT_EQ(readProjectionText(projection, text), 5024) << version;
        EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::loadFromFile: Unknown version\n"));
        EXPECT_EQ(projection.name(), nullptr);
        EXPECT_EQ(projection.ellipsoid(), nullptr);
    }
}

TEST(TQProjection, TellsWhichLineIsMissingWhereverItsTextEnds) {
    expectCodesWhereverTheTextEnds(sampleBaseLines(),
                                   [](TQFile& file) { return root().loadFromFile(file, true); });
}

TEST(TQProjection, TellsWhatCouldNotBeWrittenWhereverTheDiskIsFull) {
    if (!FileSizeLimit::isAvailable) {
        GTEST_SKIP() << "the system cannot limit the size of files";
    }
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named(kSampleName, &ellipsoid);
    expectCodesWhereverTheDiskIsFull(sampleBaseLines(),
                                     [&](TQFile& file) { return projection->writeToFile(file, true); });
}

TEST(TQProjection, CannotReadOrWriteAFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    TQFile missing(directory.file("missing"));
    EXPECT_EQ(root().loadFromFile(missing, true), 5022);
    TQFile nowhere(directory.file("missing/projection"));
    EXPECT_EQ(root().writeToFile(nowhere, true), 5022);
    EXPECT_EQ(root().writeToFile(nowhere, false), 5022);
}

TEST(TQProjection, CannotWriteToAFullDevice) {
    const std::optional<TQString> device = fullDevice();
    if (!device) {
        GTEST_SKIP() << "the system has no such device";
    }
    TQFile withHeader(*device);
    EXPECT_EQ(root().writeToFile(withHeader, true), 5027);
    TQFile withoutHeader(*device);
    EXPECT_EQ(root().writeToFile(withoutHeader, false), 5027);
}

TEST(TQProjection, NamesAreReadToTheLimitOfALine) {
    TQProjection projection = root();
    EXPECT_EQ(readProjectionText(projection, "TQProjection v1\n" + std::string(5000, 'n') +
                                                 "\nTQEllipsoid v1\nTest 1900\n6400000\n0.0199\n"),
              0);
    EXPECT_EQ(projection.name()->utf8(), std::string(4096, 'n'));
    EXPECT_EQ(*projection.ellipsoid()->name(), kSampleEllipsoidName);
}

TEST(TQProjection, TextWithoutEllipsoidAndNameCanBeWrittenAndRead) {
    const std::string text = writtenProjectionText(root());
    TQProjection projection = root();
    EXPECT_EQ(readProjectionText(projection, text), 0);
    EXPECT_EQ(*projection.name(), "");
    EXPECT_EQ(projection.ellipsoid(), nullptr);
}

TEST(TQProjection, AnEllipsoidWithoutNameOrWithoutAxisIsOne) {
    for (const char* lines : {"\n6400000\n", "Test 1900\n0\n"}) {
        TQProjection projection = root();
        EXPECT_EQ(readProjectionText(projection, std::string("TQProjection v1\nN\nTQEllipsoid v1\n") + lines +
                                                     "0.0199\n"),
                  0);
        EXPECT_NE(projection.ellipsoid(), nullptr);
    }
}

// ---- ownership of the ellipsoid that a file brought ------------------------------------------------------

TEST(TQProjection, FreesTheEllipsoidOfItsFileWithItself) {
    auto projection = std::make_unique<TQDummyProjection>();
    ASSERT_EQ(readProjectionText(*projection, textOf(sampleBaseLines())), 0);
    const std::weak_ptr<const void> life = projection->ellipsoid()->lifeToken();
    EXPECT_FALSE(life.expired());
    projection.reset();
    EXPECT_TRUE(life.expired());
}

TEST(TQProjection, TheEllipsoidOfItsFileMayBeDestroyedFirst) {
    auto projection = std::make_unique<TQDummyProjection>();
    ASSERT_EQ(readProjectionText(*projection, textOf(sampleBaseLines())), 0);
    const std::weak_ptr<const void> life = projection->ellipsoid()->lifeToken();
    std::unique_ptr<TQEllipsoid>(projection->ellipsoid()).reset();
    EXPECT_TRUE(life.expired());
    projection.reset();
}

TEST(TQProjection, TheEllipsoidOfItsFileOutlivesItOnceReleased) {
    auto projection = std::make_unique<TQDummyProjection>();
    ASSERT_EQ(readProjectionText(*projection, textOf(sampleBaseLines())), 0);
    const std::unique_ptr<TQEllipsoid> ellipsoid = projection->releaseOwnedEllipsoid();
    projection.reset();
    EXPECT_EQ(*ellipsoid->name(), kSampleEllipsoidName);
}

TEST(TQProjection, AFailedReadingLeavesNothingBehind) {
    std::string text = textOf(sampleBaseLines());
    text.resize(text.find("0.0199"));
    auto projection = std::make_unique<TQDummyProjection>();
    EXPECT_EQ(readProjectionText(*projection, text), 5006);
    ASSERT_NE(projection->ellipsoid(), nullptr);
    const std::weak_ptr<const void> life = projection->ellipsoid()->lifeToken();
    projection.reset();
    EXPECT_TRUE(life.expired());
}

// ---- WKT -------------------------------------------------------------------------------------------------

TEST(TQProjection, WritesItsGeographicSystemAsWkt) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    EXPECT_EQ(named("A", &ellipsoid)->WKTProjectionStuff().utf8(), sampleGeographicWkt());
}

TEST(TQProjection, WritesItsDefinitionAsWktWhateverTheFlag) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named("A name", &ellipsoid);
    const std::string expected = "PROJCS[\"A name\"," + sampleGeographicWkt() + ",UNIT[\"Meter\",1.0]]";
    EXPECT_EQ(projection->wktDefinition(false).utf8(), expected);
    EXPECT_EQ(projection->wktDefinition(true).utf8(), expected);
}

TEST(TQProjection, WithoutNameAndEllipsoidItsWktHasEmptyParts) {
    EXPECT_EQ(root().WKTProjectionStuff().utf8(), "");
    EXPECT_EQ(root().wktDefinition(false).utf8(), "PROJCS[\"\",,UNIT[\"Meter\",1.0]]");
}

TEST(TQProjection, BlanksAloneAreReplacedInTheEllipsoidsName) {
    TQEllipsoid ellipsoid(TQString(" A  %d-%s\tB "), 6400000.0, 0.0199);
    EXPECT_EQ(named("", &ellipsoid)->WKTProjectionStuff().utf8(),
              "GEOGCS[\"_A__%d-%s\tB_\",DATUM[\"D__A__%d-%s\tB_\",SPHEROID[\"_A__%d-%s\tB_\",6400000,100]],"
              "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]");
}

TEST(TQProjection, NamesAreNoFormats) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    EXPECT_EQ(named("%s %d %n 100%", &ellipsoid)->wktDefinition(false).utf8().substr(0, 24),
              "PROJCS[\"%s %d %n 100%\",G");
}

TEST(TQProjection, TheInverseFlatteningOfASpherePrintsAsInf) {
    TQEllipsoid sphere(TQString("Sphere"), 6371000.0, 0.0);
    EXPECT_EQ(
        named("", &sphere)->WKTProjectionStuff().utf8(),
        "GEOGCS[\"Sphere\",DATUM[\"D_Sphere\",SPHEROID[\"Sphere\",6371000,inf]],PRIMEM[\"Greenwich\",0.0],"
        "UNIT[\"Degree\",0.0174532925199433]]");
}

TEST(TQProjection, ADatumShiftStandsInTheDatumAsItIsStored) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named("", &ellipsoid);
    const std::string head = "GEOGCS[\"Test_1900\",DATUM[\"D_Test_1900\",SPHEROID[\"Test_1900\",6400000,100]";
    const std::string tail = "],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
    ellipsoid.setDatumShift(TQEllipsoid::ThreeParameterShift, 6378137.0, 0.0033, {-87.0, -98.5, -121.25});
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(), head + ",TOWGS84[-87,-98.5,-121.25,0,0,0,0]" + tail);
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 0.0033,
                            {1.0, 2.0, 3.0, 4e-6, -5e-6, 1.0 / 3.0, 8.3});
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(),
              head + ",TOWGS84[1,2,3,4e-06,-5e-06,0.3333333333333,8.3]" + tail);
}

TEST(TQProjection, TextArchiveAndWktAreTheSameUnderACommaLocale) {
    const CommaLocale locale;
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const auto projection = named(kSampleName, &ellipsoid);
    EXPECT_EQ(writtenProjectionText(*projection), textOf(sampleBaseLines()));
    EXPECT_EQ(archivedBytes(*projection), sampleBaseArchive().bytes());
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(), sampleGeographicWkt());
}
