#include "projections/TQPrLambert.h"

#include "projections/DatumShiftedSample.h"
#include "projections/LiteralLambert.h"
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
#include <limits>
#include <numbers>

using literal::Real;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPlaneTolerance = 1e-6; // the quotient of differences that n is loses two digits
constexpr double kAngleTolerance = 1e-13;

constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.0199};

std::vector<literal::Lambert> lambertProjections() {
    std::vector<literal::Lambert> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        projections.push_back({9.5, 45.5, 600000.5, -200000.25, true, 0.9996, 0.0, 0.0, size});
        projections.push_back({-60.0, -30.0, 1000.0, 0.0, true, 1.001, 0.0, 0.0, size});
        projections.push_back({2.5, 46.5, 700000.0, 6600000.0, false, 0.0, 44.25, 48.75, size});
        projections.push_back({-70.0, -20.0, 0.0, 500.0, false, 0.0, -5.0, -42.0, size});
    }
    return projections;
}

const literal::Lambert kTangent = lambertProjections()[0];
const literal::Lambert kSecant = lambertProjections()[2];

using MadeLambert = MadeFrom<TQPrLambert, literal::Lambert>;

std::vector<SampleParameter> sampleParameters(bool tangent) {
    std::vector<SampleParameter> parameters = {
        {{"lambda0", "Double", "9.5", kDegreesLabel}, "-10.5", 1e-6},
        {{"latitudeOrigin", "Double", "45.5", kDegreesLabel}, "46", 1e-6},
        {{"X0", "Double", "600000.5", "m"}, "0", 0.01},
        {{"Y0", "Double", "-200000.25", "m"}, "1", 0.01},
        {{"Tangent", "Logical", tangent ? "true" : "false"}, tangent ? "false" : "true", -1.0, true},
    };
    if (tangent) {
        parameters.push_back({{"k0", "Double", "0.9996"}, "1", 1e-5});
    } else {
        parameters.push_back({{"stdPar1", "Double", "44.25", kDegreesLabel}, "40", 1e-6});
        parameters.push_back({{"stdPar2", "Double", "48.75", kDegreesLabel}, "50", 1e-6});
    }
    return parameters;
}

/// The apex of the sample, to its last bit; TQPrLambert.TheApexIsTheCentre shows where it is.
TQPoint apexOfSample(bool tangent) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrLambert projection;
    ParameterTable parameters;
    for (const SampleParameter& parameter : sampleParameters(tangent)) {
        parameters.with(parameter.listed.name, parameter.listed.type, parameter.listed.value);
    }
    projection.setParams(parameters.table());
    projection.setEllipsoid(&ellipsoid);
    return projection.center();
}

StreamBytes archive(const TQPoint& apex, std::int32_t flag, std::initializer_list<double> ofTheForm) {
    return StreamBytes()
        .tag("TQPrLambert", 0)
        .tag("TQConicalProjection", 0)
        .append(sampleBaseArchive())
        .numbers({apex.x, apex.y, 9.5, 45.5, 600000.5, -200000.25})
        .integer(flag)
        .numbers(ofTheForm);
}

constexpr const char* kLastWktItems = ",PARAMETER[\"latitude_of_origin\",45.5],PARAMETER[\"central_meridian\""
                                      ",9.5],PARAMETER[\"false_easting\",600000.5],PARAMETER[\"false_"
                                      "northing\",-200000.25]";

ProjectionClass lambert(bool tangent) {
    ProjectionClass lambert{};
    lambert.lineage = {"TQPrLambert", "TQConicalProjection", "TQProjection"};
    lambert.typeCode = 2;
    lambert.typeName = "Lambert";
    lambert.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrLambert>(); };
    lambert.parameters = sampleParameters(tangent);
    lambert.headLines = {headerLine("TQPrLambert v1", 5302, 5312)};
    lambert.valueLines = {{"9.5000000000", 5304, 5312},
                          {"45.5000000000", 5305, 5312},
                          {"600000.500000", 5306, 5312},
                          {"-200000.250000", 5307, 5312},
                          {tangent ? "1" : "0", 5308, 5312}};
    lambert.oldestTextVersion = 1;
    lambert.newestTextVersion = 1;
    lambert.codeWhenNotOpened = 5301;
    lambert.codeOfUnknownVersion = 5303;
    lambert.textClass = "TQPrLambert";
    lambert.tags = {{"TQPrLambert", 0, 0}, {"TQConicalProjection", 0, 0}, {"TQProjection", 0, 1}};
    if (tangent) {
        lambert.valueLines.push_back({"0.999600000000", 5309, 5312});
        lambert.archive = archive(apexOfSample(true), 1, {0.9996});
        lambert.wktItems = ",PROJECTION[\"Lambert_Conformal_Conic_1SP\"],PARAMETER[\"scale_factor\",0.9996]";
    } else {
        lambert.valueLines.push_back({"44.2500000000", 5310, 5312});
        lambert.valueLines.push_back({"48.7500000000", 5311, 5312});
        lambert.archive = archive(apexOfSample(false), 0, {44.25, 48.75});
        lambert.wktItems = ",PROJECTION[\"Lambert_Conformal_Conic_2SP\"],PARAMETER[\"standard_parallel_1\","
                           "44.25],PARAMETER[\"standard_parallel_2\",48.75]";
    }
    lambert.wktItems += kLastWktItems;
    return lambert;
}

/// The text of the sample without its last lines.
std::string textWithoutLastLines(bool tangent, std::size_t count) {
    TextLines lines = lambert(tangent).headLines + sampleBaseLines() + lambert(tangent).valueLines;
    lines.resize(lines.size() - count);
    return textOf(lines);
}

bool isTangent(const TQPrLambert& projection) {
    return projection.WKTProjectionStuff().utf8().find("Lambert_Conformal_Conic_1SP") != std::string::npos;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrLambertTangent, ProjectionClassTest, testing::Values(lambert(true)));
INSTANTIATE_TEST_SUITE_P(TQPrLambertSecant, ProjectionClassTest, testing::Values(lambert(false)));

TEST(TQPrLambert, StartsAsTheTangentProjectionOfFranceWithItsApexAtZero) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "2"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "2.337229167", kDegreesLabel},
        {"latitudeOrigin", "Double", "46.8", kDegreesLabel},
        {"X0", "Double", "600000", "m"},
        {"Y0", "Double", "2200000", "m"},
        {"Tangent", "Logical", "true"},
        {"k0", "Double", "0.99987742"},
    };
    EXPECT_EQ(listedParameters(TQPrLambert()), expected);
    EXPECT_EQ(TQPrLambert().center(), (TQPoint{0.0, 0.0}));
}

TEST(TQPrLambert, MeridiansAreStraightAndParallelsArcsAroundTheApex) {
    EXPECT_EQ(TQPrLambert().meridianShape(), 0);
    EXPECT_EQ(TQPrLambert().parallelShape(), 1);
}

TEST(TQPrLambert, EveryGeographicPointIsValid) {
    for (const double number : {0.0, 2.0, 1e300, HUGE_VAL, std::nan("")}) {
        EXPECT_TRUE(TQPrLambert().isGeoPtValid(TQPoint{number, -number}));
    }
}

// ---- conversions -----------------------------------------------------------------------------------------

TEST(TQPrLambert, TheApexIsTheCentre) {
    for (const literal::Lambert& lambert : lambertProjections()) {
        MadeLambert projection(lambert);
        expectNear(projection->center(), lambert.apex(), kPlaneTolerance);
    }
}

// Longitudes are not wrapped, and latitudes not held near the poles.
TEST(TQPrLambert, ConvertsByThePublishedFormulas) {
    for (const literal::Lambert& lambert : lambertProjections()) {
        MadeLambert projection(lambert);
        for (const double longitude : {-7.0, -1.3, 0.0, 0.2, 1.4, 4.2}) {
            for (const double latitude : {-1.1, -0.3, 0.0, 0.4, 0.8, 1.1}) {
                expectNear(imageOf(*projection, {longitude, latitude}), lambert.forward(longitude, latitude),
                           kPlaneTolerance);
            }
            const double nearTheApex = lambert.latitudeOrigin > 0.0 ? 1.57 : -1.57;
            expectNear(imageOf(*projection, {longitude, nearTheApex}),
                       lambert.forward(longitude, nearTheApex), kPlaneTolerance);
        }
    }
}

// The latitude that meets the test of the iteration is the result, up to 1e-10 rad from where it leads.
TEST(TQPrLambert, ConvertsBackByThePublishedFormulas) {
    for (const literal::Lambert& lambert : lambertProjections()) {
        MadeLambert projection(lambert);
        const double x = static_cast<double>(lambert.apex().x);
        const double y = static_cast<double>(lambert.apex().y);
        for (const double dx : {-9e6, -2e6, 3e5, 7e6}) {
            for (const double dy : {-1.2e7, -4e6, -3e5, 2e5, 3e6, 6e6, 9e6}) {
                SCOPED_TRACE(testing::Message() << lambert.latitudeOrigin << " " << dx << " " << dy);
                expectNear(originalOf(*projection, {x + dx, y + dy}), lambert.inverse(x + dx, y + dy),
                           kAngleTolerance);
            }
        }
    }
}

TEST(TQPrLambert, APointBehindTheApexComesBackHalfATurnOfTheConeOff) {
    MadeLambert projection(kTangent);
    const double n = static_cast<double>(kTangent.n());
    const double lambda0 = tq_deg2rad(kTangent.lambda0);
    for (const double side : {1.0, -1.0}) {
        const double behind = lambda0 + side * (kPi / 2.0 + 0.3) / n;
        const TQPoint global = imageOf(*projection, {behind, 0.8});
        ASSERT_GT(global.y, projection->center().y);
        const TQPoint geo = originalOf(*projection, {global.x, global.y});
        EXPECT_NEAR(geo.x, behind - side * kPi / n, 1e-13);
        EXPECT_NEAR(geo.y, 0.8, 1e-10);
    }
}

TEST(TQPrLambert, APointBesideTheApexIsAQuarterTurnOfTheConeOff) {
    for (const literal::Lambert& lambert : {kTangent, kSecant}) {
        MadeLambert projection(lambert);
        const double quarter = kPi / (2.0 * static_cast<double>(lambert.n()));
        const TQPoint apex = projection->center();
        EXPECT_NEAR(originalOf(*projection, {apex.x + 1e6, apex.y}).x, tq_deg2rad(lambert.lambda0) + quarter,
                    1e-14);
        EXPECT_NEAR(originalOf(*projection, {apex.x - 1e6, apex.y}).x, tq_deg2rad(lambert.lambda0) - quarter,
                    1e-14);
    }
}

TEST(TQPrLambert, TheApexIsThePoleOfItsHemisphereWithoutLongitudeAndInfinityTheOther) {
    for (const literal::Lambert& lambert : lambertProjections()) {
        MadeLambert projection(lambert);
        const double pole = lambert.latitudeOrigin > 0.0 ? kPi / 2.0 : -kPi / 2.0;
        const TQPoint geo = originalOf(*projection, {projection->center().x, projection->center().y});
        EXPECT_EQ(geo.y, pole);
        EXPECT_TRUE(std::isnan(geo.x));
        EXPECT_EQ(originalOf(*projection, {0.0, -HUGE_VAL}).y, -pole);
    }
}

TEST(TQPrLambert, TheRadiusFactorIsTheRadiusOfTheEquatorWithinATenthOfAThousandMillionth) {
    for (const literal::Lambert& lambert : lambertProjections()) {
        MadeLambert projection(lambert);
        const auto latitude = [&](Real u) {
            const Real rho = lambert.F() * std::exp(-lambert.n() * u);
            const double y = static_cast<double>(lambert.apex().y - rho);
            return originalOf(*projection, {lambert.x0, y}).y;
        };
        EXPECT_EQ(latitude(0.0L), 0.0);
        EXPECT_EQ(latitude(0.9e-10L), 0.0);
        EXPECT_EQ(latitude(-0.9e-10L), 0.0);
        EXPECT_NEAR(latitude(1.5e-10L), static_cast<double>(lambert.latitude(1.5e-10L)), 1e-14);
        EXPECT_NEAR(latitude(-1.5e-10L), static_cast<double>(lambert.latitude(-1.5e-10L)), 1e-14);
    }
}

TEST(TQPrLambert, PolesAreNotHeld) {
    MadeLambert projection(kTangent);
    const TQPoint apex = projection->center();
    const TQPoint northPole = imageOf(*projection, {0.3, kPi / 2.0});
    EXPECT_NEAR(northPole.x, apex.x, 1e-3);
    EXPECT_NEAR(northPole.y, apex.y, 1e-3);
    const TQPoint southPole = imageOf(*projection, {tq_deg2rad(kTangent.lambda0) + 0.1, -kPi / 2.0});
    EXPECT_EQ(southPole, (TQPoint{HUGE_VAL, -HUGE_VAL}));
    EXPECT_TRUE(std::isnan(imageOf(*projection, {0.3, kPi / 2.0 + 1e-3}).y));
}

TEST(TQPrLambert, SecantAtThePoleHasItsApexAtTheFalseOrigin) {
    const auto apexNorthing = [](double latitudeOrigin) {
        literal::Lambert lambert = kSecant;
        lambert.latitudeOrigin = latitudeOrigin;
        MadeLambert projection(lambert);
        EXPECT_EQ(projection->center().x, lambert.x0);
        return projection->center().y - lambert.y0;
    };
    const double inside = tq_rad2deg(0.9e-6);
    const double outside = tq_rad2deg(1.1e-6);
    for (const double poleOrNear : {90.0, 90.0 - inside, 90.0 + inside, -90.0, -90.0 + inside}) {
        EXPECT_EQ(apexNorthing(poleOrNear), 0.0) << poleOrNear;
    }
    literal::Lambert lambert = kSecant;
    lambert.latitudeOrigin = 90.0 - outside;
    const double rho0 = static_cast<double>(lambert.rho0());
    EXPECT_GT(rho0, 1.0);
    EXPECT_NEAR(apexNorthing(90.0 - outside), rho0, 1e-6);
    EXPECT_GT(apexNorthing(-90.0 + outside), 1e10);
}

// Without a cone there is no plane: no code tells of it.
TEST(TQPrLambert, ParametersWithoutAConeConvertToNoNumbers) {
    literal::Lambert onTheEquator = kTangent;
    onTheEquator.latitudeOrigin = 0.0;
    literal::Lambert ofEqualParallels = kSecant;
    ofEqualParallels.stdPar2 = ofEqualParallels.stdPar1;
    for (const literal::Lambert& lambert : {onTheEquator, ofEqualParallels}) {
        MadeLambert projection(lambert);
        EXPECT_TRUE(std::isnan(imageOf(*projection, {0.1, 0.5}).y));
        EXPECT_TRUE(std::isnan(originalOf(*projection, {1e5, 3e6}).y));
    }
    const CapturedMessages messages;
    MadeLambert projection(ofEqualParallels);
    TQAnglePoint geo(0.0, 0.0, 0x11000001);
    EXPECT_EQ(projection->convertGlobalPt(TQPoint{1e5, 3e6}, geo, 0x11000001), -1);
    EXPECT_THAT(messages.lines(), testing::ElementsAre("TQProjection::convertGlobalPt: out od scope error"));
}

TEST(TQPrLambert, RadiiAndIsometricLatitudesThatDoNotExistAreNegativeNumbers) {
    EXPECT_EQ(tq::formulas::primeVerticalRadius(0.6, 8.0, kPi / 2.0), 10.0);
    EXPECT_EQ(tq::formulas::primeVerticalRadius(-0.1, -8.0, 0.5), -1.0);
    EXPECT_EQ(tq::formulas::primeVerticalRadius(1.0, -8.0, 0.5), -1.0);
    EXPECT_EQ(tq::formulas::primeVerticalRadius(0.1, -8.0, 0.5), -2.0);
    EXPECT_EQ(tq::formulas::primeVerticalRadius(0.1, 0.0, 0.5), 0.0);
    EXPECT_EQ(tq::formulas::isometricLatitudeToThePoles(0.5, 1.0), -1.0);
    EXPECT_EQ(tq::formulas::isometricLatitudeToThePoles(0.5, -0.1), -1.0);
}

// The eccentricity of a negative square, as a broken ellipsoid may have it.
TEST(TQPrLambert, AnEccentricityThatIsNoNumberConvertsToNone) {
    EXPECT_TRUE(std::isnan(tq::formulas::primeVerticalRadius(std::nan(""), 8.0, 0.5)));
    EXPECT_TRUE(std::isnan(tq::formulas::isometricLatitudeToThePoles(0.5, std::nan(""))));
    literal::Lambert lambert = kTangent;
    lambert.size.e2 = -0.1;
    MadeLambert projection(lambert);
    EXPECT_TRUE(std::isnan(imageOf(*projection, {0.05, 0.8}).y));
}

// -1 stands for the radius and for every isometric latitude: F·exp(n) is ρ0 on every parallel.
TEST(TQPrLambert, AnEccentricityBeyondOneLeadsTheNegativeNumbersThroughTheFormulas) {
    literal::Lambert lambert = kTangent;
    lambert.size.e2 = 1.44;
    MadeLambert projection(lambert);
    const double rho0 = -lambert.k0 / std::tan(lambert.phi0());
    const double theta = std::sin(lambert.phi0()) * 0.25;
    const TQPoint global = imageOf(*projection, {tq_deg2rad(lambert.lambda0) + 0.25, 1.2});
    EXPECT_NEAR(projection->center().y, lambert.y0 + rho0, 1e-10);
    EXPECT_NEAR(global.x, lambert.x0 + rho0 * std::sin(theta), 1e-9);
    EXPECT_NEAR(global.y, lambert.y0 + rho0 - rho0 * std::cos(theta), 1e-9);
}

TEST(TQPrLambert, ConvertsOnTheDatumOfItsEllipsoid) {
    for (const literal::Lambert& lambert : {kTangent, kSecant}) {
        MadeLambert projection(lambert);
        expectConversionsOnTheDatumOfTheEllipsoid(*projection);
    }
}

TEST(TQPrLambert, ComputesItsConstantsForEachEllipsoid) {
    literal::Lambert lambert = kSecant;
    MadeLambert projection(lambert);
    lambert.size = bessel1841;
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(imageOf(*projection, {0.1, 0.9}), lambert.forward(0.1, 0.9), kPlaneTolerance);
    expectNear(projection->center(), lambert.apex(), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

// ---- the two forms ---------------------------------------------------------------------------------------

TEST(TQPrLambert, OnlyATangentOfOneInATableIsTheTangentForm) {
    for (const int flag : {1, 0, 2, -1}) {
        TQPrLambert projection;
        projection.setParams(ParameterTable().with("Tangent", flag).table());
        EXPECT_EQ(isTangent(projection), flag == 1) << flag;
        EXPECT_EQ(parameterOf(projection, "Tangent"), flag == 1 ? "true" : "false");
    }
}

TEST(TQPrLambert, ATableWithoutTheFlagKeepsTheForm) {
    for (const bool tangent : {true, false}) {
        TQPrLambert projection;
        projection.setParams(ParameterTable().with("Tangent", Logical(tangent)).table());
        projection.setParams(ParameterTable().with("lambda0", 5.0).table());
        EXPECT_EQ(isTangent(projection), tangent);
        projection.setParams(HashTbl<TQProjParam>());
        EXPECT_EQ(isTangent(projection), tangent);
    }
}

TEST(TQPrLambert, TakesTheParametersOfTheFormThatTheTableSays) {
    TQPrLambert projection;
    projection.setParams(ParameterTable().with("stdPar1", 40.0).with("stdPar2", 50.0).table());
    ParameterTable all;
    all.with("k0", 0.5).with("stdPar1", 41.0).with("stdPar2", 51.0);
    projection.setParams(all.with("Tangent", Logical(false)).table());
    EXPECT_EQ(parameterOf(projection, "stdPar1"), "41");
    EXPECT_EQ(parameterOf(projection, "stdPar2"), "51");
    EXPECT_EQ(parameterOf(projection, "k0"), "none");

    ParameterTable tangent;
    tangent.with("stdPar1", 42.0).with("Tangent", Logical(true));
    projection.setParams(tangent.table());
    EXPECT_EQ(parameterOf(projection, "k0"), "0.99987742");
    EXPECT_EQ(parameterOf(projection, "stdPar1"), "none");

    projection.setParams(ParameterTable().with("Tangent", Logical(false)).table());
    EXPECT_EQ(parameterOf(projection, "stdPar1"), "41");
}

TEST(TQPrLambert, ParallelsAreZeroUntilTheyAreSet) {
    TQPrLambert projection;
    projection.setParams(ParameterTable().with("stdPar1", 40.0).with("Tangent", Logical(false)).table());
    EXPECT_EQ(parameterOf(projection, "stdPar1"), "40");
    EXPECT_EQ(parameterOf(projection, "stdPar2"), "0");
}

TEST(TQPrLambert, TheParametersOfTheOtherFormAreNotCopied) {
    MadeLambert projection(kSecant);
    projection->setParams(ParameterTable().with("Tangent", Logical(true)).table());
    projection->setParams(ParameterTable().with("k0", 0.5).table());
    TQPrLambert tangentCopy(*projection);
    EXPECT_EQ(parameterOf(tangentCopy, "k0"), "0.5");
    tangentCopy.setParams(ParameterTable().with("Tangent", Logical(false)).table());
    EXPECT_EQ(parameterOf(tangentCopy, "stdPar1"), "0");
    EXPECT_EQ(parameterOf(tangentCopy, "stdPar2"), "0");

    projection->setParams(ParameterTable().with("Tangent", Logical(false)).table());
    TQPrLambert secantCopy(*projection);
    EXPECT_EQ(parameterOf(secantCopy, "stdPar1"), "44.25");
    secantCopy.setParams(ParameterTable().with("Tangent", Logical(true)).table());
    EXPECT_EQ(parameterOf(secantCopy, "k0"), "0");
}

TEST(TQPrLambert, TheParametersOfTheOtherFormAreNoPartOfTheDefinition) {
    TQPrLambert one;
    TQPrLambert other;
    one.setParams(ParameterTable().with("k0", 0.5).table());
    EXPECT_FALSE(one.hasSameDefinition(other));
    for (TQPrLambert* projection : {&one, &other}) {
        projection->setParams(ParameterTable().with("Tangent", Logical(false)).table());
    }
    EXPECT_TRUE(one.hasSameDefinition(other));
    one.setParams(ParameterTable().with("stdPar1", 40.0).table());
    EXPECT_FALSE(one.hasSameDefinition(other));
    for (TQPrLambert* projection : {&one, &other}) {
        projection->setParams(ParameterTable().with("Tangent", Logical(true)).with("k0", 0.75).table());
    }
    EXPECT_TRUE(one.hasSameDefinition(other));
}

TEST(TQPrLambert, TheTwoFormsAreTwoDefinitions) {
    TQPrLambert tangent;
    TQPrLambert secant;
    secant.setParams(ParameterTable().with("Tangent", Logical(false)).table());
    EXPECT_FALSE(tangent.hasSameDefinition(secant));
    EXPECT_FALSE(secant.hasSameDefinition(tangent));
}

// ---- files and archives ----------------------------------------------------------------------------------

TEST(TQPrLambert, OnlyAFlagLineOfZeroIsTheSecantForm) {
    for (const char* line : {"1", "2", "-1", "0", "none"}) {
        SCOPED_TRACE(line);
        TQPrLambert projection;
        const std::string text = textWithoutLastLines(true, 2) + line + "\n40\n50\n";
        EXPECT_EQ(readProjectionText(projection, text), 0);
        const bool tangent = TQString(line).convertToLong() != 0;
        EXPECT_EQ(isTangent(projection), tangent);
        EXPECT_EQ(parameterOf(projection, "k0"), tangent ? "40" : "none");
        EXPECT_EQ(parameterOf(projection, "stdPar1"), tangent ? "none" : "40");
        EXPECT_EQ(parameterOf(projection, "stdPar2"), tangent ? "none" : "50");
    }
}

TEST(TQPrLambert, ASecantTextThatEndsBehindTheFirstParallelLacksTheSecond) {
    TQPrLambert projection;
    EXPECT_EQ(readProjectionText(projection, textWithoutLastLines(false, 1)), 5311);
    EXPECT_EQ(parameterOf(projection, "stdPar1"), "44.25");
    EXPECT_EQ(parameterOf(projection, "stdPar2"), "0");
}

TEST(TQPrLambert, AMissingLineLeavesTheConstantsAsTheyWere) {
    MadeLambert projection(kTangent);
    projection->setParams(ParameterTable().with("lambda0", 3.0).with("k0", 0.5).table());
    const TQPoint before = imageOf(*projection, {0.1, 0.7});
    EXPECT_EQ(readProjectionText(*projection, textWithoutLastLines(true, 1)), 5309);
    EXPECT_EQ(parameterOf(*projection, "lambda0"), "9.5");
    EXPECT_EQ(imageOf(*projection, {0.1, 0.7}), before);
    projection->initConstants();
    EXPECT_NE(imageOf(*projection, {0.1, 0.7}), before);
}

TEST(TQPrLambert, AnyFlagButZeroInAnArchiveIsTheTangentForm) {
    for (const int flag : {1, 2, -1, 256}) {
        ByteStream stream(archive({1.0, 2.0}, flag, {0.75}));
        TQPrLambert projection;
        projection.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_TRUE(isTangent(projection));
        EXPECT_EQ(parameterOf(projection, "k0"), "0.75");
    }
}

TEST(TQPrLambert, AnArchiveBringsAnApexThatHoldsUntilTheEllipsoidIsSet) {
    const CapturedMessages messages;
    ByteStream stream(archive({12.0, 34.0}, 0, {44.25, 48.75}));
    TQPrLambert projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(projection.center(), (TQPoint{12.0, 34.0}));
    const TQPrLambert pendingCopy(projection);
    EXPECT_EQ(pendingCopy.center(), (TQPoint{0.0, 0.0}));
    ASSERT_NE(pendingCopy.pendingEllipsoidName(), nullptr);
    EXPECT_EQ(*pendingCopy.pendingEllipsoidName(), kSampleEllipsoidName);
    TQPoint untouched{1.0, 2.0};
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.2}, untouched), -1);
    EXPECT_EQ(pendingCopy.convertGlobalPt(TQPoint{0.1, 0.2}, untouched), -1);
    EXPECT_EQ(untouched, (TQPoint{1.0, 2.0}));

    TQEllipsoid ellipsoid = sampleEllipsoid();
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(projection.center(), apexOfSample(false));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQPrLambert, CopiesComputeTheirApex) {
    MadeLambert projection(kSecant);
    const TQPrLambert copy(*projection);
    EXPECT_EQ(copy.center(), projection->center());
    expectNear(imageOf(copy, {0.1, 0.8}), kSecant.forward(0.1, 0.8), kPlaneTolerance);
}
