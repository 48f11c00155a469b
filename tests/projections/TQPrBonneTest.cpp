#include "projections/TQPrBonne.h"

#include "projections/DatumShiftedSample.h"
#include "projections/LiteralBonne.h"
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
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPlaneTolerance = 1e-7;
constexpr double kAngleTolerance = 1e-13;
constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.0199};

std::vector<literal::Bonne> bonneProjections() {
    std::vector<literal::Bonne> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        for (const double standardParallel : {45.5, 10.0, -30.0, -60.0}) {
            projections.push_back({9.5, standardParallel, size});
        }
    }
    return projections;
}

const literal::Bonne kNorthern{9.5, 45.5, kFlatEllipsoid};
const literal::Bonne kSouthern{9.5, -45.5, kFlatEllipsoid};

using MadeBonne = MadeFrom<TQPrBonne, literal::Bonne>;

StreamBytes archive(const TQPoint& apex) {
    return StreamBytes()
        .tag("TQPrBonne", 0)
        .tag("TQConicalProjection", 0)
        .append(sampleBaseArchive())
        .numbers({apex.x, apex.y, 9.5, 45.5});
}

ProjectionClass bonne() {
    ProjectionClass bonne{};
    bonne.lineage = {"TQPrBonne", "TQConicalProjection", "TQProjection"};
    bonne.typeCode = 0;
    bonne.typeName = "Bonne";
    bonne.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrBonne>(); };
    bonne.parameters = {
        {{"lambda0", "Double", "9.5", kDegreesLabel}, "-9.5", 1e-6},
        {{"standardParallel", "Double", "45.5", kDegreesLabel}, "40", 1e-6},
    };
    bonne.headLines = {headerLine("TQPrBonne v1", 5102, 5106)};
    bonne.valueLines = {{"9.5000000000", 5104, 5106}, {"45.5000000000", 5105, 5106}};
    bonne.oldestTextVersion = 1;
    bonne.newestTextVersion = 1;
    bonne.codeWhenNotOpened = 5101;
    bonne.codeOfUnknownVersion = 5103;
    bonne.textClass = "TQPrBonne";
    // The apex to its last bit; TQPrBonne.TheApexIsTheCentre shows where it is.
    bonne.archive = archive(MadeBonne(kNorthern)->center());
    bonne.tags = {{"TQPrBonne", 0, 0}, {"TQConicalProjection", 0, 0}, {"TQProjection", 0, 1}};
    bonne.wktItems = ",PROJECTION[\"Bonne\"],PARAMETER[\"false_easting\",0.0],PARAMETER[\"false_northing\","
                     "0.0],PARAMETER[\"central_meridian\",9.5],PARAMETER[\"standard_parallel_1\",45.5]";
    return bonne;
}

/// The plane point of a latitude on the arc of that latitude, at an angle from the central meridian.
TQPoint onTheArc(const literal::Bonne& bonne, Real phi, Real angle) {
    const Real rho = bonne.Y() + bonne.M(bonne.phi1()) - bonne.M(phi);
    return {static_cast<double>(rho * std::sin(angle)),
            static_cast<double>(bonne.Y() - rho * std::cos(angle))};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrBonne, ProjectionClassTest, testing::Values(bonne()));

TEST(TQPrBonne, StartsOnTheMeridianOfGreenwichWithStandardParallelForty) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "0"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "0", kDegreesLabel},
        {"standardParallel", "Double", "40", kDegreesLabel},
    };
    EXPECT_EQ(listedParameters(TQPrBonne()), expected);
    EXPECT_EQ(TQPrBonne().center(), (TQPoint{0.0, 0.0}));
}

TEST(TQPrBonne, MeridiansAreCurvesAndParallelsArcsAroundTheApex) {
    EXPECT_EQ(TQPrBonne().meridianShape(), 2);
    EXPECT_EQ(TQPrBonne().parallelShape(), 1);
}

TEST(TQPrBonne, EveryGeographicPointIsValid) {
    for (const double number : {0.0, 2.0, 1e300, HUGE_VAL, std::nan("")}) {
        EXPECT_TRUE(TQPrBonne().isGeoPtValid(TQPoint{number, -number}));
    }
}

// ---- conversions -----------------------------------------------------------------------------------------

TEST(TQPrBonne, TheApexIsTheCentre) {
    for (const literal::Bonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        EXPECT_EQ(projection->center().x, 0.0);
        EXPECT_NEAR(projection->center().y, static_cast<double>(bonne.Y()), kPlaneTolerance);
    }
}

TEST(TQPrBonne, TheStandardParallelOnTheCentralMeridianIsTheOrigin) {
    for (const literal::Bonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        expectNear(imageOf(*projection, {tq_deg2rad(bonne.lambda0), bonne.phi1()}), {0.0L, 0.0L}, 1e-8);
        const literal::Point expected{
            tq_deg2rad(bonne.lambda0),
            bonne.latitude(bonne.M(bonne.phi1()) / (bonne.size.a * bonne.arcFactor()))};
        expectNear(originalOf(*projection, {0.0, 0.0}), expected, kAngleTolerance);
    }
}

// Longitudes are not wrapped.
TEST(TQPrBonne, ConvertsByThePublishedFormulas) {
    for (const literal::Bonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        for (const double longitude : {-7.0, -1.3, 0.0, 0.2, 1.4, 4.2}) {
            for (const double latitude : {-kPi / 2.0, -1.1, -0.3, 0.0, 0.4, 0.8, 1.1, kPi / 2.0}) {
                expectNear(imageOf(*projection, {longitude, latitude}), bonne.forward(longitude, latitude),
                           kPlaneTolerance);
            }
        }
    }
}

TEST(TQPrBonne, ConvertsBackByThePublishedFormulas) {
    for (const literal::Bonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        for (const double x : {-4e6, -3e5, 0.0, 1e5, 3e6}) {
            for (const double y : {-8e6, -3e6, -1e5, 0.0, 2e5, 4e6, 9e6}) {
                SCOPED_TRACE(testing::Message() << bonne.standardParallel << " " << x << " " << y);
                const literal::Point expected = bonne.inverse(x, y);
                const TQPoint geo = originalOf(*projection, {x, y});
                const double conditioned = kAngleTolerance / std::abs(std::cos(geo.y));
                EXPECT_NEAR(geo.x, static_cast<double>(expected.x), conditioned * (1.0 + std::abs(geo.x)));
                EXPECT_NEAR(geo.y, static_cast<double>(expected.y), kAngleTolerance);
            }
        }
    }
}

TEST(TQPrBonne, NorthernProjectionsComeBack) {
    MadeBonne projection({9.5, 45.5, bessel1841});
    for (const double longitude : {-0.5, 0.1, 0.7}) {
        for (const double latitude : {-0.6, 0.2, 1.3}) {
            const TQPoint global = imageOf(*projection, {longitude, latitude});
            expectNear(originalOf(*projection, {global.x, global.y}), {longitude, latitude}, 1e-9);
        }
    }
}

// The angle is taken between (-x, -Y - y), where Y - y would be mirrored to -Y + y.
TEST(TQPrBonne, FromASouthernProjectionLatitudesComeBackAndLongitudesOffTheMeridianDoNot) {
    const literal::Bonne bonne{9.5, -45.5, bessel1841};
    MadeBonne projection(bonne);
    const double lambda0 = tq_deg2rad(bonne.lambda0);
    for (const double latitude : {-1.2, -0.9, -0.5}) {
        const TQPoint onMeridian = imageOf(*projection, {lambda0, latitude});
        expectNear(originalOf(*projection, {onMeridian.x, onMeridian.y}), {lambda0, latitude}, 1e-9);
        const TQPoint off = imageOf(*projection, {lambda0 + 0.1, latitude});
        const TQPoint geo = originalOf(*projection, {off.x, off.y});
        EXPECT_NEAR(geo.y, latitude, 1e-9);
        const double y = projection->center().y;
        const double angle = std::atan2(-off.x, -y - off.y);
        const double rho = -std::hypot(off.x, y - off.y);
        const double m = static_cast<double>(bonne.m(latitude));
        EXPECT_NEAR(geo.x, lambda0 + rho * angle / (bonne.size.a * m), 1e-8);
        EXPECT_GT(std::abs(geo.x - lambda0 - 0.1), 1e-3);
    }
}

TEST(TQPrBonne, WithinAMillionthOfAPoleTheLongitudeIsTheCentralMeridian) {
    for (const literal::Bonne& bonne : {kNorthern, kSouthern}) {
        MadeBonne projection(bonne);
        for (const double pole : {1.0, -1.0}) {
            for (const double off : {0.5e-6, 2e-6, -0.5e-6, -2e-6}) {
                SCOPED_TRACE(testing::Message() << bonne.standardParallel << " " << pole << " " << off);
                // The series of the way back has its own latitude of a length: take the point by that.
                const Real wanted = pole * (literal::pi / 2.0L + off);
                Real phi = wanted;
                for (int pass = 0; pass < 50; ++pass) {
                    phi += wanted - bonne.latitude(bonne.M(phi) / (bonne.size.a * bonne.arcFactor()));
                }
                const TQPoint global = onTheArc(bonne, phi, 0.3L);
                const TQPoint geo = originalOf(*projection, {global.x, global.y});
                EXPECT_NEAR(geo.y, static_cast<double>(wanted), 1e-14);
                if (std::abs(off) < 1e-6) {
                    EXPECT_EQ(geo.x, tq_deg2rad(bonne.lambda0));
                } else {
                    EXPECT_GT(std::abs(geo.x - tq_deg2rad(bonne.lambda0)), 1e3);
                    const double expected = static_cast<double>(bonne.inverse(global.x, global.y).x);
                    EXPECT_NEAR(geo.x / expected, 1.0, 1e-8);
                }
            }
        }
    }
}

TEST(TQPrBonne, ThePolesComeBackOnTheCentralMeridian) {
    MadeBonne projection({9.5, 45.5, bessel1841});
    for (const double pole : {kPi / 2.0, -kPi / 2.0}) {
        const TQPoint global = imageOf(*projection, {1.0, pole});
        EXPECT_NEAR(global.x, 0.0, 1e-8);
        const TQPoint geo = originalOf(*projection, {global.x, global.y});
        EXPECT_EQ(geo.x, tq_deg2rad(9.5));
        EXPECT_NEAR(geo.y, pole, 1e-9);
    }
}

TEST(TQPrBonne, AStandardParallelOfZeroHasNoApexAndConvertsToNoNumbers) {
    MadeBonne projection({9.5, 0.0, kFlatEllipsoid});
    EXPECT_EQ(projection->center(), (TQPoint{0.0, HUGE_VAL}));
    const TQPoint global = imageOf(*projection, {0.1, 0.2});
    EXPECT_TRUE(std::isnan(global.x));
    EXPECT_TRUE(std::isnan(global.y));
    const TQPoint geo = originalOf(*projection, {1e5, 2e5});
    EXPECT_EQ(geo.x, tq_deg2rad(9.5));
    EXPECT_TRUE(std::isnan(geo.y));
}

TEST(TQPrBonne, ConvertsOnTheDatumOfItsEllipsoid) {
    MadeBonne projection(kNorthern);
    expectConversionsOnTheDatumOfTheEllipsoid(*projection);
}

TEST(TQPrBonne, ComputesItsConstantsForEachEllipsoid) {
    MadeBonne projection(kNorthern);
    const literal::Bonne expected{9.5, 45.5, bessel1841};
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(imageOf(*projection, {0.1, 0.9}), expected.forward(0.1, 0.9), kPlaneTolerance);
    EXPECT_NEAR(projection->center().y, static_cast<double>(expected.Y()), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

// ---- files and archives ----------------------------------------------------------------------------------

TEST(TQPrBonne, AMissingLineLeavesTheConstantsAsTheyWere) {
    MadeBonne projection({3.0, 30.0, kFlatEllipsoid});
    const TQPoint before = imageOf(*projection, {0.1, 0.7});
    TextLines lines = bonne().headLines + sampleBaseLines() + bonne().valueLines;
    lines.pop_back();
    EXPECT_EQ(readProjectionText(*projection, textOf(lines)), 5105);
    EXPECT_EQ(parameterOf(*projection, "lambda0"), "9.5");
    EXPECT_EQ(parameterOf(*projection, "standardParallel"), "30");
    EXPECT_EQ(imageOf(*projection, {0.1, 0.7}), before);
    projection->initConstants();
    EXPECT_NE(imageOf(*projection, {0.1, 0.7}), before);
}

TEST(TQPrBonne, AnArchiveBringsAnApexThatHoldsUntilTheEllipsoidIsSet) {
    const CapturedMessages messages;
    ByteStream stream(archive({12.0, 34.0}));
    TQPrBonne projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(projection.center(), (TQPoint{12.0, 34.0}));
    const TQPrBonne pendingCopy(projection);
    EXPECT_EQ(pendingCopy.center(), (TQPoint{0.0, 0.0}));
    ASSERT_NE(pendingCopy.pendingEllipsoidName(), nullptr);
    EXPECT_EQ(*pendingCopy.pendingEllipsoidName(), kSampleEllipsoidName);
    TQPoint untouched{1.0, 2.0};
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.2}, untouched), -1);
    EXPECT_EQ(pendingCopy.convertGlobalPt(TQPoint{0.1, 0.2}, untouched), -1);
    EXPECT_EQ(untouched, (TQPoint{1.0, 2.0}));

    TQEllipsoid ellipsoid = sampleEllipsoid();
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(projection.center().x, 0.0);
    EXPECT_NEAR(projection.center().y, static_cast<double>(kNorthern.Y()), kPlaneTolerance);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQPrBonne, CopiesComputeTheirApex) {
    MadeBonne projection(kNorthern);
    const TQPrBonne copy(*projection);
    EXPECT_EQ(copy.center(), projection->center());
    expectNear(imageOf(copy, {0.1, 0.8}), kNorthern.forward(0.1, 0.8), kPlaneTolerance);
}
