#include "projections/TQPrSwissObliqueMercator.h"

#include "projection/TQDummyProjection.h"
#include "projections/DatumShiftedSample.h"
#include "projections/LiteralSwissObliqueMercator.h"
#include "projections/MadeFrom.h"
#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"
#include "testing/MadeProjection.h"
#include "testing/ProjectionClassTest.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using literal::Real;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPlaneTolerance = 2e-7;
constexpr double kAngleTolerance = 1e-13;
constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.0199};

const literal::SwissObliqueMercator kSample{7.25, 46.75, 0.9998, 600000.25, 200000.5, kFlatEllipsoid};

std::vector<literal::SwissObliqueMercator> swissProjections() {
    std::vector<literal::SwissObliqueMercator> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        projections.push_back({7.25, 46.75, 0.9998, 600000.25, 200000.5, size});
        projections.push_back({-70.5, -33.0, 1.001, 0.0, 1000.0, size});
        projections.push_back({0.0, 0.0, 1.0, 0.0, 0.0, size});
    }
    return projections;
}

using MadeSwiss = MadeFrom<TQPrSwissObliqueMercator, literal::SwissObliqueMercator>;

std::string wktItems(const std::string& longitude, const std::string& latitude, const std::string& easting,
                     const std::string& northing) {
    return ",PROJECTION[\"Hotine_Oblique_Mercator\"],PARAMETER[\"latitude_of_center\"," + longitude +
           "],PARAMETER[\"longitude_of_center\"," + latitude +
           "],PARAMETER[\"azimuth\",90],PARAMETER[\"rectified_grid_angle\",90],PARAMETER[\"scale_factor\",1]"
           ",PARAMETER[\"false_easting\"," +
           easting + "],PARAMETER[\"false_northing\"," + northing + "]";
}

ProjectionClass swissObliqueMercator() {
    ProjectionClass swiss{};
    swiss.lineage = {"TQPrSwissObliqueMercator", "TQProjection"};
    swiss.typeCode = 12;
    swiss.typeName = "Swiss Oblique Mercator";
    swiss.make = []() -> std::unique_ptr<TQProjection> {
        return std::make_unique<TQPrSwissObliqueMercator>();
    };
    swiss.parameters = {
        {{"longitudeCenter", "Double", "7.25", kDegreesLabel}, "-7.25", 1e-6},
        {{"latitudeCenter", "Double", "46.75", kDegreesLabel}, "40", 1e-6},
        {{"kc", "Double", "0.9998"}, "1", 1e-6},
        {{"falseEasting", "Double", "600000.25", "m"}, "0", 0.01},
        {{"falseNorthing", "Double", "200000.5", "m"}, "0", 0.01},
    };
    swiss.headLines = {headerLine("TQPrSwissObliqueMercator v1", 5023, 5027)};
    swiss.valueLines = {{"7.250000", -1, 5027},
                        {"46.750000", -1, 5027},
                        {"0.999800", -1, 5027},
                        {"600000.250000", -1, 5027},
                        {"200000.500000", -1, 5027}};
    swiss.oldestTextVersion = 1;
    swiss.newestTextVersion = 1;
    swiss.codeWhenNotOpened = 5022;
    swiss.codeOfUnknownVersion = 5024;
    swiss.textClass = "TQPrSwissObliqueMercator";
    swiss.archive = StreamBytes()
                        .tag("TQPrSwissObliqueMercator", 0)
                        .append(sampleBaseArchive())
                        .numbers({7.25, 46.75, 0.9998, 600000.25, 200000.5});
    swiss.tags = {{"TQPrSwissObliqueMercator", 0, 0}, {"TQProjection", 0, 1}};
    swiss.wktItems = wktItems("7.25", "46.75", "600000.25", "200000.5");
    swiss.parametersAreDefinition = false;
    return swiss;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrSwissObliqueMercator, ProjectionClassTest,
                         testing::Values(swissObliqueMercator()));

TEST(TQPrSwissObliqueMercator, StartsWithZeros) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "12"},
        {"Nom", "String", ""},
        {"longitudeCenter", "Double", "0", kDegreesLabel},
        {"latitudeCenter", "Double", "0", kDegreesLabel},
        {"kc", "Double", "0"},
        {"falseEasting", "Double", "0", "m"},
        {"falseNorthing", "Double", "0", "m"},
    };
    EXPECT_EQ(listedParameters(TQPrSwissObliqueMercator()), expected);
}

TEST(TQPrSwissObliqueMercator, PassesTheCurvesOfTheGraticuleOffAsStraightAndHasNoCentre) {
    const CapturedMessages messages;
    EXPECT_EQ(TQPrSwissObliqueMercator().meridianShape(), 0);
    EXPECT_EQ(TQPrSwissObliqueMercator().parallelShape(), 0);
    EXPECT_EQ(TQPrSwissObliqueMercator().center(), (TQPoint{0.0, 0.0}));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
}

TEST(TQPrSwissObliqueMercator, EveryGeographicPointIsValid) {
    for (const double number : {0.0, 2.0, 1e300, HUGE_VAL, std::nan("")}) {
        EXPECT_TRUE(TQPrSwissObliqueMercator().isGeoPtValid(TQPoint{number, -number}));
    }
}

// ---- conversions -----------------------------------------------------------------------------------------

TEST(TQPrSwissObliqueMercator, TheCentreIsTheFalseOrigin) {
    for (const literal::SwissObliqueMercator& swiss : swissProjections()) {
        MadeSwiss projection(swiss);
        expectNear(imageOf(*projection, {swiss.lambda0(), swiss.phi0()}),
                   {swiss.falseEasting, swiss.falseNorthing}, 1e-8);
        expectNear(originalOf(*projection, {swiss.falseEasting, swiss.falseNorthing}),
                   {swiss.lambda0(), swiss.phi0()}, kAngleTolerance);
    }
}

// Longitudes are not wrapped; beyond the great circle of the poles the arcsine folds them back.
TEST(TQPrSwissObliqueMercator, ConvertsByThePublishedFormulas) {
    for (const literal::SwissObliqueMercator& swiss : swissProjections()) {
        MadeSwiss projection(swiss);
        for (const double fromCentre : {-4.5, -1.2, -0.2, 0.0, 0.1, 1.0, 2.5}) {
            for (const double latitude : {-1.3, -0.4, 0.0, 0.3, 0.8, 1.3}) {
                SCOPED_TRACE(testing::Message()
                             << swiss.latitudeCenter << " " << fromCentre << " " << latitude);
                const double longitude = swiss.lambda0() + fromCentre;
                expectNear(imageOf(*projection, {longitude, latitude}), swiss.forward(longitude, latitude),
                           kPlaneTolerance);
            }
        }
    }
}

TEST(TQPrSwissObliqueMercator, ConvertsBackByThePublishedFormulas) {
    for (const literal::SwissObliqueMercator& swiss : swissProjections()) {
        MadeSwiss projection(swiss);
        for (const double dx : {-7e6, -3e6, -1e5, 0.0, 2e5, 5e6, 1.2e7}) {
            for (const double dy : {-6e6, -2e6, -5e4, 0.0, 3e5, 4e6}) {
                SCOPED_TRACE(testing::Message() << swiss.latitudeCenter << " " << dx << " " << dy);
                const double x = swiss.falseEasting + dx;
                const double y = swiss.falseNorthing + dy;
                const literal::Point expected = swiss.inverse(x, y);
                const TQPoint geo = originalOf(*projection, {x, y});
                const Real cosine = std::cos(swiss.alpha() * (expected.x - swiss.lambda0())); // of an arcsine
                EXPECT_NEAR(geo.x, static_cast<double>(expected.x),
                            kAngleTolerance / static_cast<double>(std::abs(cosine)));
                EXPECT_NEAR(geo.y, static_cast<double>(expected.y), kAngleTolerance);
            }
        }
    }
}

TEST(TQPrSwissObliqueMercator, ComesBack) {
    MadeSwiss projection(kSample);
    for (const double fromCentre : {-0.3, 0.1, 0.4}) {
        for (const double latitude : {0.4, 0.8, 1.2}) {
            const double longitude = kSample.lambda0() + fromCentre;
            const TQPoint global = imageOf(*projection, {longitude, latitude});
            expectNear(originalOf(*projection, {global.x, global.y}), {longitude, latitude}, 1e-13);
        }
    }
}

// On an ellipsoid that is far from round, a seventh pass would change the latitude by 1.5e-9 here.
TEST(TQPrSwissObliqueMercator, TheLatitudeIsIteratedSixTimesAtTheMost) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.size.e2 = 0.85;
    MadeSwiss projection(swiss);
    const double y = swiss.falseNorthing + 1e6;
    expectNear(originalOf(*projection, {swiss.falseEasting, y}), swiss.inverse(swiss.falseEasting, y), 1e-11);
}

TEST(TQPrSwissObliqueMercator, ArcsinesAreHeldAtAQuarterTurn) {
    using tq::formulas::heldArcsine;
    EXPECT_EQ(heldArcsine(0.5), std::asin(0.5));
    EXPECT_EQ(heldArcsine(-0.5), -std::asin(0.5));
    for (const double sine : {1.0, 1.0000001, 5.0, HUGE_VAL}) {
        EXPECT_EQ(heldArcsine(sine), kPi / 2.0);
        EXPECT_EQ(heldArcsine(-sine), -kPi / 2.0);
    }
    EXPECT_EQ(heldArcsine(std::nan("")), kPi / 2.0);
}

// 90 degrees east and west of a centre on the equator the quotient is 1, and by rounding more.
TEST(TQPrSwissObliqueMercator, AQuarterTurnFromTheCentreIsAQuarterOfTheCylinder) {
    const literal::SwissObliqueMercator swiss{0.0, 0.0, 1.0, 0.0, 0.0, {"Sphere", 6400000.0, 0.0}};
    MadeSwiss projection(swiss);
    for (const double side : {1.0, -1.0}) {
        for (const double latitude : {0.1, 0.5, -1.0}) {
            const TQPoint global = imageOf(*projection, {side * kPi / 2.0, latitude});
            EXPECT_NEAR(global.x, side * 6400000.0 * kPi / 2.0, 0.2); // 6400 km·√(2·2⁻⁵³)
            EXPECT_NEAR(global.y, 6400000.0 * std::asinh(std::tan(latitude)), 1e-7);
        }
    }
}

// ---- datum shift -----------------------------------------------------------------------------------------

TEST(TQPrSwissObliqueMercator, TheDatumShiftTakesTheLongitudeFromTheCentre) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.longitudeCenter = 40.0;
    MadeSwiss projection(swiss);
    TQEllipsoid shifted = shiftedSampleEllipsoid();
    projection->setEllipsoid(&shifted);
    const double longitude = swiss.lambda0() + 0.1;

    TQPoint reduced{longitude - swiss.lambda0(), 0.8};
    shifted.toLocalDatum(reduced.x, reduced.y);
    const TQPoint global = imageOf(*projection, {longitude, 0.8});
    expectNear(global, swiss.forwardFromCentre(reduced.x, reduced.y), kPlaneTolerance);

    TQPoint whole{longitude, 0.8};
    shifted.toLocalDatum(whole.x, whole.y);
    EXPECT_GT(std::abs(global.x - static_cast<double>(swiss.forward(whole.x, whole.y).x)), 10.0);
    projection->setEllipsoid(nullptr);
}

TEST(TQPrSwissObliqueMercator, TheShiftBackTakesTheLongitudeFromTheCentreAsWell) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.longitudeCenter = 40.0;
    MadeSwiss projection(swiss);
    TQEllipsoid shifted = shiftedSampleEllipsoid();
    projection->setEllipsoid(&shifted);
    const literal::Point local = swiss.inverse(1e6, 3e5);
    TQPoint reduced{static_cast<double>(local.x - swiss.lambda0()), static_cast<double>(local.y)};
    shifted.toReferenceDatum(reduced.x, reduced.y);
    expectNear(originalOf(*projection, {1e6, 3e5}), {reduced.x + swiss.lambda0(), reduced.y},
               kAngleTolerance);
    projection->setEllipsoid(nullptr);
}

TEST(TQPrSwissObliqueMercator, WithACentreAtGreenwichItConvertsOnTheDatumOfItsEllipsoid) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.longitudeCenter = 0.0;
    MadeSwiss projection(swiss);
    expectConversionsOnTheDatumOfTheEllipsoid(*projection);
}

// ---- sameness --------------------------------------------------------------------------------------------

TEST(TQPrSwissObliqueMercator, AllCentresOnOneEllipsoidHaveTheSameDefinition) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrSwissObliqueMercator one;
    TQPrSwissObliqueMercator other;
    ParameterTable parameters;
    parameters.with("longitudeCenter", 7.0).with("latitudeCenter", 47.0).with("kc", 1.0);
    other.setParams(parameters.with("falseEasting", 6e5).with("falseNorthing", 2e5).table());
    EXPECT_TRUE(one.hasSameDefinition(other));
    EXPECT_FALSE(one.isEqual(&other));
    other.setEllipsoid(&ellipsoid);
    EXPECT_FALSE(one.hasSameDefinition(other));
    EXPECT_FALSE(one.hasSameDefinition(TQDummyProjection()));
}

TEST(TQPrSwissObliqueMercator, EqualsOnlyAProjectionOfTheSameNameEllipsoidAndParameters) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrSwissObliqueMercator one;
    TQPrSwissObliqueMercator other;
    EXPECT_TRUE(one.isEqual(&other));
    EXPECT_FALSE(one.isEqual(nullptr));
    EXPECT_FALSE(one.isEqual(&ellipsoid));
    const TQDummyProjection dummy;
    EXPECT_FALSE(one.isEqual(&dummy));
    other.setEllipsoid(&ellipsoid);
    EXPECT_FALSE(one.isEqual(&other));
    one.setEllipsoid(&ellipsoid);
    EXPECT_TRUE(one.isEqual(&other));
    other.rename(TQString("Name"));
    EXPECT_FALSE(one.isEqual(&other));
}

// ---- WKT, constants, files -------------------------------------------------------------------------------

TEST(TQPrSwissObliqueMercator, ItsWktHasTheCentreCrosswiseAndFixedAnglesAndScale) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.longitudeCenter = 7.4;
    swiss.latitudeCenter = 46.9;
    swiss.kc = 0.5;
    MadeSwiss projection(swiss);
    EXPECT_THAT(projection->WKTProjectionStuff().utf8(),
                HasSubstr(wktItems("7.4", "46.9", "600000.25", "200000.5")));
}

TEST(TQPrSwissObliqueMercator, ComputesItsConstantsForEachEllipsoid) {
    MadeSwiss projection(kSample);
    literal::SwissObliqueMercator expected = kSample;
    expected.size = bessel1841;
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(imageOf(*projection, {0.1, 0.9}), expected.forward(0.1, 0.9), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

TEST(TQPrSwissObliqueMercator, ATextThatEndsBehindTheScaleFactorLeavesTheConstantsAsTheyWere) {
    literal::SwissObliqueMercator swiss = kSample;
    swiss.longitudeCenter = 8.0;
    swiss.latitudeCenter = 40.0;
    swiss.kc = 0.5;
    MadeSwiss projection(swiss);
    TextLines lines =
        swissObliqueMercator().headLines + sampleBaseLines() + swissObliqueMercator().valueLines;
    lines.resize(lines.size() - 2);
    EXPECT_EQ(readProjectionText(*projection, textOf(lines)), -1);
    EXPECT_EQ(parameterOf(*projection, "latitudeCenter"), "46.75");
    EXPECT_EQ(parameterOf(*projection, "kc"), "0.9998");
    expectNear(imageOf(*projection, {0.2, 0.8}), swiss.forward(0.2, 0.8), kPlaneTolerance);
    projection->initConstants();
    expectNear(imageOf(*projection, {0.2, 0.8}), kSample.forward(0.2, 0.8), kPlaneTolerance);
}
