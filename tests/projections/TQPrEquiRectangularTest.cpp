#include "projections/TQPrEquiRectangular.h"

#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"
#include "testing/ProjectionClassTest.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegreesPerRadian = 180.0 / kPi;
constexpr std::uint32_t kUnits[] = {TQUnitRadian, TQUnitDegree, TQUnitGon, TQUnitMetre, TQUnitKilometre};
constexpr const char* kNoWktForAFactor =
    "TQPrEquiRectangular::WKTProjectionStuff(): don't really know how to write this in WKT form\n";

/// The sample with a factor of the eastings or with a parallel of true scale.
ProjectionClass equiRectangular(bool isFactor) {
    ProjectionClass equirectangular{};
    equirectangular.lineage = {"TQPrEquiRectangular", "TQProjection"};
    equirectangular.typeCode = 11;
    equirectangular.typeName = "EquiRectangular";
    equirectangular.make = []() -> std::unique_ptr<TQProjection> {
        return std::make_unique<TQPrEquiRectangular>(TQUnitRadian);
    };
    const double value = isFactor ? 0.75 : 60.0;
    const std::string flag = isFactor ? "true" : "false";
    equirectangular.parameters = {
        // Latitudes have no tolerance of their own: their cosines have.
        {{"factor_phiRef", "Double", isFactor ? "0.75" : "60", kDegreesLabel}, "30", isFactor ? 1e-6 : -1.0},
        {{"isFactor", "Logical", flag}, isFactor ? "false" : "true"},
    };
    equirectangular.headLines = {headerLine("TQPrEquiRectangular v1", 5023, 5027)};
    equirectangular.valueLines = {{isFactor ? "0.7500000000" : "60.0000000000", -1, 5027},
                                  {isFactor ? "1" : "0", -1, 5027}};
    equirectangular.oldestTextVersion = 1;
    equirectangular.newestTextVersion = 1;
    equirectangular.codeWhenNotOpened = 5022;
    equirectangular.codeOfUnknownVersion = 5024;
    equirectangular.textClass = "TQPrEquiRectangular";
    equirectangular.archive = StreamBytes()
                                  .tag("TQPrEquiRectangular", 1)
                                  .append(sampleBaseArchive())
                                  .number(value)
                                  .byte(isFactor ? 1 : 0)
                                  .integer(0x11000001);
    equirectangular.tags = {{"TQPrEquiRectangular", 0, 1}, {"TQProjection", 0, 1}};
    equirectangular.wktItems = ",PROJECTION[\"Equirectangular\"],PARAMETER[\"false_easting\",0.0],"
                               "PARAMETER[\"false_northing\",0.0],PARAMETER[\"central_meridian\",0.0]";
    if (isFactor) {
        equirectangular.wktLines = {kNoWktForAFactor};
    } else {
        equirectangular.wktItems += ",PARAMETER[\"standard_parallel_1\",60]";
    }
    equirectangular.codeWithoutEllipsoid = 0;
    equirectangular.convertsWithoutEllipsoid = true;
    return equirectangular;
}

/// What one radian is in a unit; lengths are no angles and stay as they are.
double perRadian(std::uint32_t unit) {
    return unit == TQUnitDegree ? kDegreesPerRadian : unit == TQUnitGon ? 200.0 / kPi : 1.0;
}

void take(TQProjection& projection, double factorOrParallel, bool isFactor) {
    ParameterTable parameters;
    parameters.with("factor_phiRef", factorOrParallel).with("isFactor", Logical(isFactor));
    projection.setParams(parameters.table());
}

StreamBytes archiveOfVersion(int version) {
    return StreamBytes().tag("TQPrEquiRectangular", version).append(sampleBaseArchive()).number(0.75).byte(1);
}

constexpr TQPoint kGeo{0.3, -0.7};

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrEquiRectangularByFactor, ProjectionClassTest,
                         testing::Values(equiRectangular(true)));
INSTANTIATE_TEST_SUITE_P(TQPrEquiRectangularByParallel, ProjectionClassTest,
                         testing::Values(equiRectangular(false)));

TEST(TQPrEquiRectangular, StartsWithAFactorOfOne) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "11"},
        {"Nom", "String", ""},
        {"factor_phiRef", "Double", "1", kDegreesLabel},
        {"isFactor", "Logical", "true"},
    };
    EXPECT_EQ(listedParameters(TQPrEquiRectangular(TQUnitDegree)), expected);
}

TEST(TQPrEquiRectangular, PassesRadiansThroughUnchangedWithoutEllipsoid) {
    TQPrEquiRectangular projection(TQUnitRadian);
    take(projection, 60.0, false);
    for (const TQPoint& point : {kGeo, TQPoint{-400.0, 1e300}, TQPoint{0.1, -0.0}}) {
        EXPECT_EQ(imageOf(projection, point), point);
        EXPECT_EQ(originalOf(projection, point), point);
    }
}

TEST(TQPrEquiRectangular, GivesLongitudeAndLatitudeInItsUnitWithoutEllipsoid) {
    for (const std::uint32_t unit : kUnits) {
        SCOPED_TRACE(unit);
        TQPrEquiRectangular projection(unit);
        take(projection, 0.5, true);
        const TQPoint image{perRadian(unit) * kGeo.x, perRadian(unit) * kGeo.y};
        expectNear(image, imageOf(projection, kGeo), 1e-13);
        expectNear(kGeo, originalOf(projection, image), 1e-15);
    }
}

TEST(TQPrEquiRectangular, MultipliesMetresByWhatARadianIsInItsUnit) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (const std::uint32_t unit : kUnits) {
        SCOPED_TRACE(unit);
        TQPrEquiRectangular projection(unit);
        projection.setEllipsoid(&ellipsoid);
        take(projection, 0.75, true);
        const double k = perRadian(unit);
        const TQPoint image{k * 6400000.0 * 0.75 * kGeo.x, k * 6400000.0 * kGeo.y};
        expectNear(image, imageOf(projection, kGeo), 1e-6);
        expectNear(kGeo, originalOf(projection, image), 1e-15);
    }
}

TEST(TQPrEquiRectangular, TheParallelOfSixtyDegreesHalvesTheEastings) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrEquiRectangular projection;
    projection.setEllipsoid(&ellipsoid);
    take(projection, 60.0, false);
    expectNear({0.5 * 6400000.0 * kGeo.x, 6400000.0 * kGeo.y}, imageOf(projection, kGeo), 1e-8);
    expectNear(kGeo, originalOf(projection, {0.5 * 6400000.0 * kGeo.x, 6400000.0 * kGeo.y}), 1e-15);
}

TEST(TQPrEquiRectangular, AFactorOfAHalfAndTheParallelOfSixtyDegreesAreTheSameDefinition) {
    TQPrEquiRectangular factor;
    TQPrEquiRectangular parallel;
    take(factor, 0.5, true);
    for (const double latitude : {60.0, -60.0, 60.00006, 59.99994}) { // their cosines differ by 9.1e-7
        take(parallel, latitude, false);
        EXPECT_TRUE(factor.hasSameDefinition(parallel)) << latitude;
        EXPECT_TRUE(parallel.hasSameDefinition(factor)) << latitude;
    }
    for (const double latitude : {60.00007, 59.99993, 0.5}) { // by 1.06e-6
        take(parallel, latitude, false);
        EXPECT_FALSE(factor.hasSameDefinition(parallel)) << latitude;
        EXPECT_FALSE(parallel.hasSameDefinition(factor)) << latitude;
    }
}

TEST(TQPrEquiRectangular, TheUnitIsNoPartOfTheDefinition) {
    EXPECT_TRUE(TQPrEquiRectangular(TQUnitRadian).hasSameDefinition(TQPrEquiRectangular(TQUnitDegree)));
}

TEST(TQPrEquiRectangular, ConvertsOnTheDatumOfItsEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 1.0 / 298.257223563,
                            {300.0, -200.0, 100.0, 1e-5, 2e-5, -1e-5, 5.0});
    TQPrEquiRectangular projection;
    projection.setEllipsoid(&ellipsoid);
    take(projection, 0.75, true);
    TQPoint local = kGeo;
    ellipsoid.toLocalDatum(local.x, local.y);
    const TQPoint image{6400000.0 * 0.75 * local.x, 6400000.0 * local.y};
    expectNear(image, imageOf(projection, kGeo), 1e-8);
    TQPoint reference{image.x / (6400000.0 * 0.75), image.y / 6400000.0};
    ellipsoid.toReferenceDatum(reference.x, reference.y);
    expectNear(reference, originalOf(projection, image), 1e-15);
    EXPECT_GT(std::abs(local.x - kGeo.x), 1e-6);
}

TEST(TQPrEquiRectangular, DoesNotWrapLongitudes) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrEquiRectangular projection;
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(imageOf(projection, {20.0, 0.0}).x, 20.0 * 6400000.0);
    EXPECT_EQ(originalOf(projection, {20.0 * 6400000.0, 0.0}).x, 20.0);
}

TEST(TQPrEquiRectangular, AFactorOfZeroHasNoWayBack) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrEquiRectangular projection;
    projection.setEllipsoid(&ellipsoid);
    take(projection, 0.0, true);
    EXPECT_EQ(imageOf(projection, kGeo).x, 0.0);
    const CapturedMessages messages;
    TQAnglePoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{1.0, 2.0}, geo, TQUnitRadian), -1);
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::convertGlobalPt: out od scope error"));
}

TEST(TQPrEquiRectangular, CopyKeepsTheUnit) {
    TQPrEquiRectangular projection(TQUnitDegree);
    const TQPrEquiRectangular copy(projection);
    expectNear({kDegreesPerRadian * kGeo.x, kDegreesPerRadian * kGeo.y}, imageOf(copy, kGeo), 1e-13);
}

TEST(TQPrEquiRectangular, ItsArchiveKeepsTheUnit) {
    TQPrEquiRectangular projection(TQUnitDegree);
    ByteStream stream(archivedBytes(projection));
    TQPrEquiRectangular read(TQUnitGon);
    read.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    expectNear({kDegreesPerRadian * kGeo.x, kDegreesPerRadian * kGeo.y}, imageOf(read, kGeo), 1e-13);
}

TEST(TQPrEquiRectangular, AnArchiveOfVersionZeroIsInRadians) {
    const CapturedMessages messages;
    ByteStream stream(archiveOfVersion(0));
    TQPrEquiRectangular projection(TQUnitDegree);
    projection.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_EQ(parameterOf(projection, "factor_phiRef"), "0.75");
    EXPECT_EQ(imageOf(projection, kGeo), kGeo);
    projection.setEllipsoid(nullptr); // the name of the ellipsoid is no longer awaited
    EXPECT_EQ(archivedBytes(projection), StreamBytes()
                                             .tag("TQPrEquiRectangular", 1)
                                             .tag("TQProjection", 1)
                                             .text(kSampleName)
                                             .text("")
                                             .number(0.75)
                                             .byte(1)
                                             .integer(0x11000001)
                                             .bytes());
}

TEST(TQPrEquiRectangular, AnArchiveOfVersionZeroMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(archiveOfVersion(0).bytes(), [](TQReadStream* stream) {
        TQPrEquiRectangular projection;
        projection.unarchiveFrom(stream);
    });
}

// The unit is set before the version is known.
TEST(TQPrEquiRectangular, AnArchiveOfUnknownVersionLeavesRadians) {
    const CapturedMessages messages;
    ByteStream stream(archiveOfVersion(2));
    TQPrEquiRectangular projection(TQUnitDegree);
    projection.unarchiveFrom(stream.get());
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQPrEquiRectangular::unarchiveFrom(TQReadStream *): version 2 is unknown.\n"));
    EXPECT_EQ(imageOf(projection, kGeo), kGeo);
}

TEST(TQPrEquiRectangular, AnyFlagLineButZeroIsAFactor) {
    for (const char* line : {"0", "1", "2", "-1", "none"}) {
        SCOPED_TRACE(line);
        TQPrEquiRectangular projection;
        EXPECT_EQ(readProjectionText(projection, textOf(equiRectangular(true).headLines + sampleBaseLines()) +
                                                     "60\n" + line + "\n"),
                  0);
        const bool isFactor = TQString(line).convertToLong() != 0;
        EXPECT_EQ(parameterOf(projection, "isFactor"), isFactor ? "true" : "false");
        EXPECT_NEAR(imageOf(projection, kGeo).x, 6400000.0 * kGeo.x * (isFactor ? 60.0 : 0.5), 1e-7);
    }
}

TEST(TQPrEquiRectangular, AMissingFlagLeavesTheOneBefore) {
    TQPrEquiRectangular projection;
    take(projection, 30.0, false);
    EXPECT_EQ(
        readProjectionText(projection, textOf(equiRectangular(true).headLines + sampleBaseLines()) + "60\n"),
        -1);
    EXPECT_EQ(parameterOf(projection, "factor_phiRef"), "60");
    EXPECT_EQ(parameterOf(projection, "isFactor"), "false");
}

TEST(TQPrEquiRectangular, ThePolarDegreesAreNotValid) {
    const TQPrEquiRectangular projection;
    for (const double sign : {1.0, -1.0}) {
        EXPECT_TRUE(projection.isGeoPtValid(TQPoint{0.0, sign * 88.9999999 * kPi / 180.0}));
        EXPECT_TRUE(projection.isGeoPtValid(TQAnglePoint(0.0, sign * 89.0, TQUnitDegree)));
        EXPECT_FALSE(projection.isGeoPtValid(TQAnglePoint(0.0, sign * 89.0000001, TQUnitDegree)));
        EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, sign * 89.5 * kPi / 180.0}));
    }
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{1e300, 0.0}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, std::numeric_limits<double>::quiet_NaN()}));
}

TEST(TQPrEquiRectangular, MeridiansAndParallelsAreStraightAndHaveNoCentre) {
    const CapturedMessages messages;
    const TQPrEquiRectangular projection;
    EXPECT_EQ(projection.meridianShape(), 0);
    EXPECT_EQ(projection.parallelShape(), 0);
    EXPECT_EQ(projection.center(), TQPoint());
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
    TQPoint position{1.0, 2.0};
    EXPECT_FALSE(projection.northPolePosition(position));
    EXPECT_FALSE(projection.southPolePosition(position));
    EXPECT_EQ(position, (TQPoint{1.0, 2.0}));
}
