#include "projections/TQPrCassiniSoldner.h"

#include "projections/DatumShiftedSample.h"
#include "projections/LiteralCassiniSoldner.h"
#include "projections/MadeFrom.h"
#include "support/TQUnit.h"
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

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPlaneTolerance = 1e-7;
constexpr double kAngleTolerance = 1e-13;
constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.0199};

std::vector<literal::CassiniSoldner> cassiniProjections() {
    std::vector<literal::CassiniSoldner> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        projections.push_back({9.5, 45.25, 400000.5, -100000.25, size});
        projections.push_back({-61.5, -10.5, 0.0, 300000.0, size});
    }
    return projections;
}

const literal::CassiniSoldner kSample = cassiniProjections()[0];

using MadeCassiniSoldner = MadeFrom<TQPrCassiniSoldner, literal::CassiniSoldner>;

ProjectionClass cassiniSoldner() {
    ProjectionClass cassini{};
    cassini.lineage = {"TQPrCassiniSoldner", "TQProjection"};
    cassini.typeCode = 13;
    cassini.typeName = "Cassini Soldner";
    cassini.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrCassiniSoldner>(); };
    cassini.parameters = {
        {{"lambda0", "Double", "9.5", kDegreesLabel}, "-9.5", 1e-6},
        {{"phi0", "Double", "45.25", kDegreesLabel}, "40", 1e-6},
        {{"X0", "Double", "400000.5", "m"}, "500000", 1.0},
        {{"Y0", "Double", "-100000.25", "m"}, "0", 1.0},
    };
    cassini.headLines = {headerLine("TQPrCassiniSoldner v0", -1, -1)};
    cassini.valueLines = {{"9.5000000000", -1, -1},
                          {"45.2500000000", -1, -1},
                          {"400000.5000000000", -1, -1},
                          {"-100000.2500000000", -1, -1}};
    cassini.oldestTextVersion = 0;
    cassini.newestTextVersion = 0;
    cassini.codeWhenNotOpened = -1;
    cassini.codeOfUnknownVersion = -1;
    cassini.textClass = "TQPrCassiniSoldner";
    cassini.everyReadingFailureIsMinusOne = true;
    cassini.archive = StreamBytes()
                          .tag("TQPrCassiniSoldner", 0)
                          .append(sampleBaseArchive())
                          .numbers({9.5, 45.25, 400000.5, -100000.25});
    cassini.tags = {{"TQPrCassiniSoldner", 0, 0}, {"TQProjection", 0, 1}};
    cassini.wktItems = ",PROJECTION[\"Cassini_Soldner\"],PARAMETER[\"latitude_of_origin\",45.25],PARAMETER[\""
                       "central_meridian\",9.5],PARAMETER[\"false_easting\",400000.5],PARAMETER[\"false_"
                       "northing\",-100000.25]";
    return cassini;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrCassiniSoldner, ProjectionClassTest, testing::Values(cassiniSoldner()));

TEST(TQPrCassiniSoldner, StartsAtZeroWithAFalseEastingOfFiveHundredKilometres) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "13"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "0", kDegreesLabel},
        {"phi0", "Double", "0", kDegreesLabel},
        {"X0", "Double", "500000", "m"},
        {"Y0", "Double", "0", "m"},
    };
    EXPECT_EQ(listedParameters(TQPrCassiniSoldner()), expected);
}

TEST(TQPrCassiniSoldner, ItsGraticuleIsOfCurvesWithoutACentre) {
    const CapturedMessages messages;
    EXPECT_EQ(TQPrCassiniSoldner().meridianShape(), 2);
    EXPECT_EQ(TQPrCassiniSoldner().parallelShape(), 2);
    EXPECT_EQ(TQPrCassiniSoldner().center(), (TQPoint{0.0, 0.0}));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
}

TEST(TQPrCassiniSoldner, ALatitudeMayPassAPoleByATenMillionth) {
    const TQPrCassiniSoldner projection;
    for (const double longitude : {0.0, 100.0, HUGE_VAL, std::nan("")}) {
        for (const double pole : {1.0, -1.0}) {
            EXPECT_TRUE(projection.isGeoPtValid(TQPoint{longitude, pole * 0.5}));
            EXPECT_TRUE(projection.isGeoPtValid(TQPoint{longitude, pole * (kPi / 2.0 + 5e-8)}));
            EXPECT_FALSE(projection.isGeoPtValid(TQPoint{longitude, pole * (kPi / 2.0 + 2e-7)}));
        }
    }
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, std::nan("")}));
}

// ---- conversions -----------------------------------------------------------------------------------------

TEST(TQPrCassiniSoldner, TheOriginIsTheFalseOrigin) {
    for (const literal::CassiniSoldner& cassini : cassiniProjections()) {
        MadeCassiniSoldner projection(cassini);
        expectNear(imageOf(*projection, {tq_deg2rad(cassini.lambda0), tq_deg2rad(cassini.phi0)}),
                   {cassini.x0, cassini.y0}, 1e-8);
    }
}

// Longitudes are not wrapped; tan φ times cos φ is held together up to the poles.
TEST(TQPrCassiniSoldner, ConvertsByThePublishedFormulas) {
    for (const literal::CassiniSoldner& cassini : cassiniProjections()) {
        MadeCassiniSoldner projection(cassini);
        for (const double fromMeridian : {-4.0, -0.3, 0.0, 0.02, 0.4, 3.5}) {
            for (const double latitude : {-1.4, -0.7, 0.0, 0.3, 0.8, 1.2, kPi / 2.0}) {
                SCOPED_TRACE(testing::Message() << cassini.lambda0 << " " << fromMeridian << " " << latitude);
                const double longitude = tq_deg2rad(cassini.lambda0) + fromMeridian;
                expectNear(imageOf(*projection, {longitude, latitude}), cassini.forward(longitude, latitude),
                           kPlaneTolerance);
            }
        }
    }
}

TEST(TQPrCassiniSoldner, ConvertsBackByThePublishedFormulasWithItsOwnDivisor) {
    for (const literal::CassiniSoldner& cassini : cassiniProjections()) {
        MadeCassiniSoldner projection(cassini);
        for (const double dx : {-1e6, -3e5, 0.0, 2e4, 8e5}) {
            for (const double dy : {-5e6, -1e6, -3e4, 0.0, 2e5, 3e6}) {
                SCOPED_TRACE(testing::Message() << cassini.lambda0 << " " << dx << " " << dy);
                const double x = cassini.x0 + dx;
                const double y = cassini.y0 + dy;
                expectNear(originalOf(*projection, {x, y}), cassini.inverse(x, y), kAngleTolerance);
            }
        }
    }
}

// At 15 degrees sin 6μ is 1, and the term e1³·151/696 falls short of Snyder's by e1³·151·(1/96 - 1/696).
TEST(TQPrCassiniSoldner, TheDivisorOfTheThirdCoefficientIsNotThatOfSnyder) {
    literal::CassiniSoldner cassini{0.0, 0.0, 0.0, 0.0, bessel1841};
    MadeCassiniSoldner projection(cassini);
    const double y = static_cast<double>(cassini.size.a * cassini.arcFactor() * literal::pi / 12.0L);
    const double b = std::sqrt(1.0 - cassini.size.e2);
    const double e1 = (1.0 - b) / (1.0 + b);
    const double shortfall = 151.0 * e1 * e1 * e1 * (1.0 / 96.0 - 1.0 / 696.0);
    const double snyder = static_cast<double>(cassini.inverse(0.0, y, 96.0L).y);
    ASSERT_GT(shortfall, 1e-9);
    EXPECT_NEAR(originalOf(*projection, {0.0, y}).y, snyder - shortfall, 1e-15);
}

TEST(TQPrCassiniSoldner, ComesBackNearTheCentralMeridian) {
    MadeCassiniSoldner projection({9.5, 45.25, 400000.5, -100000.25, bessel1841});
    for (const double fromMeridian : {-0.03, 0.0, 0.02}) {
        for (const double latitude : {-0.7, 0.1, 0.8}) {
            const double longitude = tq_deg2rad(9.5) + fromMeridian;
            const TQPoint global = imageOf(*projection, {longitude, latitude});
            expectNear(originalOf(*projection, {global.x, global.y}), {longitude, latitude}, 2e-8);
        }
    }
}

TEST(TQPrCassiniSoldner, ConvertsOnTheDatumOfItsEllipsoid) {
    MadeCassiniSoldner projection(kSample);
    expectConversionsOnTheDatumOfTheEllipsoid(*projection);
}

// ---- constants -------------------------------------------------------------------------------------------

TEST(TQPrCassiniSoldner, ComputesItsConstantsForEachEllipsoid) {
    MadeCassiniSoldner projection(kSample);
    literal::CassiniSoldner expected = kSample;
    expected.size = bessel1841;
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(imageOf(*projection, {0.1, 0.9}), expected.forward(0.1, 0.9), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

TEST(TQPrCassiniSoldner, ComputingTheConstantsAgainChangesNothing) {
    MadeCassiniSoldner projection(kSample);
    const TQPoint global = imageOf(*projection, {0.2, 0.9});
    const TQPoint geo = originalOf(*projection, {1e5, 2e5});
    for (int time = 0; time < 10; ++time) {
        EXPECT_EQ(projection->initConstants(), 0);
    }
    EXPECT_EQ(imageOf(*projection, {0.2, 0.9}), global);
    EXPECT_EQ(originalOf(*projection, {1e5, 2e5}), geo);
}

TEST(TQPrCassiniSoldner, AMissingLineLeavesTheConstantsAsTheyWereAndTakesTheLinesBefore) {
    literal::CassiniSoldner cassini = kSample;
    cassini.lambda0 = 3.0;
    cassini.phi0 = 30.0;
    cassini.x0 = 1000.0;
    MadeCassiniSoldner projection(cassini);
    TextLines lines = cassiniSoldner().headLines + sampleBaseLines() + cassiniSoldner().valueLines;
    lines.resize(lines.size() - 2);
    EXPECT_EQ(readProjectionText(*projection, textOf(lines)), -1);
    EXPECT_EQ(parameterOf(*projection, "lambda0"), "9.5");
    EXPECT_EQ(parameterOf(*projection, "phi0"), "45.25");
    EXPECT_EQ(parameterOf(*projection, "X0"), "1000");
    expectNear(imageOf(*projection, {0.1, 0.7}), cassini.forward(0.1, 0.7), kPlaneTolerance);
    projection->initConstants();
    cassini.lambda0 = 9.5;
    cassini.phi0 = 45.25;
    expectNear(imageOf(*projection, {0.1, 0.7}), cassini.forward(0.1, 0.7), kPlaneTolerance);
}
