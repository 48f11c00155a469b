#include "projections/TQPrObliqueMercator.h"

#include "projections/DatumShiftedSample.h"
#include "projections/LiteralHotineObliqueMercator.h"
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

using literal::kAzimuthAtOrigin;
using literal::kHotine;
using literal::Real;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPlaneTolerance = 2e-7;
constexpr double kAngleTolerance = 1e-13;
constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.0199};

const literal::HotineObliqueMercator kSample{7.5,       46.5,      30.5, 29.75,         0.9996,
                                             600000.25, 200000.75, 0,    kFlatEllipsoid};

std::vector<literal::HotineObliqueMercator> obliqueProjections() {
    std::vector<literal::HotineObliqueMercator> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        for (const double latitudeCenter : {46.5, 4.0, -30.0}) {
            for (const int flags : {0, kHotine, kAzimuthAtOrigin, kHotine + kAzimuthAtOrigin}) {
                projections.push_back(
                    {7.5, latitudeCenter, 30.5, 29.75, 0.9996, 600000.25, 200000.75, flags, size});
                projections.push_back({-80.0, latitudeCenter, -20.0, -25.0, 1.01, 0.0, 1000.0, flags, size});
            }
            projections.push_back({7.5, latitudeCenter, 150.0, 150.0, 1.0, 0.0, 0.0, 0, size});
        }
    }
    return projections;
}

using MadeObliqueMercator = MadeFrom<TQPrObliqueMercator, literal::HotineObliqueMercator>;

TextLines valueLines(const std::string& flags) {
    return {{flags, -1, 5027},           {"7.500000", -1, 5027},     {"46.500000", -1, 5027},
            {"30.500000", -1, 5027},     {"29.750000", -1, 5027},    {"0.999600", -1, 5027},
            {"600000.250000", -1, 5027}, {"200000.750000", -1, 5027}};
}

StreamBytes archive(std::int32_t flags) {
    return StreamBytes()
        .tag("TQPrObliqueMercator", 0)
        .append(sampleBaseArchive())
        .integer(flags)
        .numbers({7.5, 46.5, 30.5, 29.75, 0.9996, 600000.25, 200000.75});
}

ProjectionClass obliqueMercator(int flags) {
    ProjectionClass oblique{};
    oblique.lineage = {"TQPrObliqueMercator", "TQProjection"};
    oblique.typeCode = 6;
    oblique.typeName = "Oblique Mercator";
    oblique.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrObliqueMercator>(); };
    oblique.parameters = {
        {{"longitudeCenter", "Double", "7.5", kDegreesLabel}, "-7.5", 1e-6},
        {{"latitudeCenter", "Double", "46.5", kDegreesLabel}, "40", 1e-6},
        {{"azimuth", "Double", "30.5", kDegreesLabel}, "31.5", 1e-6},
        {{"bearing", "Double", "29.75", kDegreesLabel}, "30", 1e-6},
        {{"kc", "Double", "0.9996"}, "1", 1e-6},
        {{"falseEasting", "Double", "600000.25", "m"}, "0", 0.01},
        {{"falseNorthing", "Double", "200000.75", "m"}, "0", 0.01},
    };
    if ((flags & kHotine) != 0) {
        oblique.parameters.push_back({{"HotineFlag", "Logical", "true"}, "", -1.0, true});
    }
    if ((flags & kAzimuthAtOrigin) != 0) {
        oblique.parameters.push_back({{"AzimuthAtOriginFlag", "Logical", "true"}, "", -1.0, true});
    }
    oblique.headLines = {headerLine("TQPrObliqueMercator v1", 5023, 5027)};
    oblique.valueLines = valueLines(std::to_string(flags));
    oblique.oldestTextVersion = 1;
    oblique.newestTextVersion = 1;
    oblique.codeWhenNotOpened = 5022;
    oblique.codeOfUnknownVersion = 5024;
    oblique.textClass = "TQPrObliqueMercator";
    oblique.archive = archive(flags);
    oblique.tags = {{"TQPrObliqueMercator", 0, 0}, {"TQProjection", 0, 1}};
    oblique.wktItems = std::string(",PROJECTION[\"") + ((flags & kHotine) != 0 ? "Hotine_" : "") +
                       "Oblique_Mercator\"],PARAMETER[\"latitude_of_center\",7.5],PARAMETER[\"longitude_of_"
                       "center\",46.5],PARAMETER[\"azimuth\",30.5],PARAMETER[\"rectified_grid_angle\",29.75]"
                       ",PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",600000.25]"
                       ",PARAMETER[\"false_northing\",200000.75]";
    return oblique;
}

std::string textWithFlags(const std::string& flags) {
    return textOf(obliqueMercator(0).headLines + sampleBaseLines() + valueLines(flags));
}

/// The flags as the projection writes them to a file.
std::string flagLine(const TQProjection& projection) {
    const std::string text = writtenProjectionText(projection);
    const std::string head = textOf(obliqueMercator(0).headLines + sampleBaseLines());
    EXPECT_EQ(text.substr(0, head.size()), head);
    return text.substr(head.size(), text.find('\n', head.size()) - head.size());
}

/// What the centre form adds to u at a point, from the plane points of both forms.
double offsetOfTheCentreForm(literal::HotineObliqueMercator oblique, double lambda, double phi) {
    oblique.flags &= ~kHotine;
    MadeObliqueMercator centred(oblique);
    oblique.flags |= kHotine;
    MadeObliqueMercator hotine(oblique);
    const TQPoint from = imageOf(*hotine, {lambda, phi});
    const TQPoint to = imageOf(*centred, {lambda, phi});
    const double theta = tq_deg2rad(oblique.bearing);
    return (to.x - from.x) * std::sin(theta) + (to.y - from.y) * std::cos(theta);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrObliqueMercator, ProjectionClassTest,
                         testing::Values(obliqueMercator(0), obliqueMercator(kHotine),
                                         obliqueMercator(kAzimuthAtOrigin),
                                         obliqueMercator(kHotine + kAzimuthAtOrigin)));

TEST(TQPrObliqueMercator, StartsWithZerosAndNoFlag) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "6"},
        {"Nom", "String", ""},
        {"longitudeCenter", "Double", "0", kDegreesLabel},
        {"latitudeCenter", "Double", "0", kDegreesLabel},
        {"azimuth", "Double", "0", kDegreesLabel},
        {"bearing", "Double", "0", kDegreesLabel},
        {"kc", "Double", "0"},
        {"falseEasting", "Double", "0", "m"},
        {"falseNorthing", "Double", "0", "m"},
    };
    EXPECT_EQ(listedParameters(TQPrObliqueMercator()), expected);
}

TEST(TQPrObliqueMercator, PassesTheCurvesOfTheGraticuleOffAsStraightAndHasNoCentre) {
    const CapturedMessages messages;
    EXPECT_EQ(TQPrObliqueMercator().meridianShape(), 0);
    EXPECT_EQ(TQPrObliqueMercator().parallelShape(), 0);
    EXPECT_EQ(TQPrObliqueMercator().center(), (TQPoint{0.0, 0.0}));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::center(): no valid method.\n"));
}

TEST(TQPrObliqueMercator, EveryGeographicPointIsValid) {
    for (const double number : {0.0, 2.0, 1e300, HUGE_VAL, std::nan("")}) {
        EXPECT_TRUE(TQPrObliqueMercator().isGeoPtValid(TQPoint{number, -number}));
    }
}

// ---- conversions -----------------------------------------------------------------------------------------

TEST(TQPrObliqueMercator, ConvertsByThePublishedFormulas) {
    for (const literal::HotineObliqueMercator& oblique : obliqueProjections()) {
        MadeObliqueMercator projection(oblique);
        for (const double fromCentre : {-2.0, -0.4, -0.001, 0.0, 0.002, 0.3, 1.9}) {
            for (const double latitude : {-1.2, -0.4, 0.0, 0.3, 0.8, 1.2}) {
                SCOPED_TRACE(testing::Message() << oblique.latitudeCenter << " " << oblique.azimuth << " "
                                                << oblique.flags << " " << fromCentre << " " << latitude);
                const double longitude = oblique.lambdaC() + fromCentre;
                expectNear(imageOf(*projection, {longitude, latitude}), oblique.forward(longitude, latitude),
                           kPlaneTolerance);
            }
        }
    }
}

TEST(TQPrObliqueMercator, ConvertsBackByThePublishedFormulas) {
    for (const literal::HotineObliqueMercator& oblique : obliqueProjections()) {
        MadeObliqueMercator projection(oblique);
        for (const double x : {-5e6, -1e5, 6e5, 1.2e6, 8e6}) {
            for (const double y : {-7e6, -2e6, 2e5, 4e6, 9e6}) {
                SCOPED_TRACE(testing::Message() << oblique.latitudeCenter << " " << oblique.azimuth << " "
                                                << oblique.flags << " " << x << " " << y);
                expectNear(originalOf(*projection, {x, y}), oblique.inverse(x, y), kAngleTolerance);
            }
        }
    }
}

TEST(TQPrObliqueMercator, TheOffsetOfTheCentreGoesBySideOfTheCentre) {
    const double uc = static_cast<double>(kSample.uc());
    const double lambdaC = kSample.lambdaC();
    ASSERT_GT(uc, 1e6);
    EXPECT_NEAR(offsetOfTheCentreForm(kSample, lambdaC + 0.1, 0.8), uc, kPlaneTolerance);
    EXPECT_NEAR(offsetOfTheCentreForm(kSample, lambdaC, 0.8), uc, kPlaneTolerance);
    EXPECT_NEAR(offsetOfTheCentreForm(kSample, std::nextafter(lambdaC, -1.0), 0.8), -uc, kPlaneTolerance);
    EXPECT_NEAR(offsetOfTheCentreForm(kSample, lambdaC - 0.1, 0.8), -uc, kPlaneTolerance);
}

// The natural origin is then a quarter turn of the sphere, and almost that of the longitude, away.
TEST(TQPrObliqueMercator, OfAnAzimuthNearNinetyDegreesTheOffsetIsTakenOffOnBothSides) {
    literal::HotineObliqueMercator oblique = kSample;
    for (const double beside : {0.9e-6, -0.9e-6, 1.1e-6, -1.1e-6}) {
        oblique.azimuth = 90.0 + tq_rad2deg(beside);
        const bool isNear = std::abs(beside) < 1e-6;
        ASSERT_EQ(oblique.nearNinety(), isNear);
        const double uc = static_cast<double>(oblique.uc());
        ASSERT_GT(uc, 1e6);
        for (const double side : {1.0, -1.0}) {
            EXPECT_NEAR(offsetOfTheCentreForm(oblique, oblique.lambdaC() + side * 0.1, 0.8),
                        isNear ? -uc : side * uc, 0.01); // the longitude of the origin is an arcsine near 1
        }
    }
}

// The longitude of the natural origin is then an arcsine of 1, which rounding could overstep or fall short
// of.
TEST(TQPrObliqueMercator, OfAnAzimuthOfNinetyDegreesEveryCentreIsTheFalseOrigin) {
    for (const double besideNinety : {0.0, 1e-9, -1e-9, 1e-7, -1e-7}) {
        for (const int flags : {0, kAzimuthAtOrigin}) {
            for (double latitudeCenter = -80.03; latitudeCenter < 81.0; latitudeCenter += 1.07) {
                literal::HotineObliqueMercator oblique = kSample;
                oblique.latitudeCenter = latitudeCenter;
                oblique.azimuth = 90.0 + besideNinety;
                if (flags == kAzimuthAtOrigin) {
                    oblique.azimuth = static_cast<double>(oblique.gamma0()) * 180.0 / kPi;
                    oblique.flags = flags;
                }
                MadeObliqueMercator projection(oblique);
                const TQPoint centre = imageOf(*projection, {oblique.lambdaC(), oblique.phiC()});
                // The offset is that of exactly 90 degrees, and rounding of the azimuth at the natural origin
                // is the square root of it at the centre.
                const double tolerance = flags == 0 ? 1e-6 + 2e7 * tq_deg2rad(std::abs(besideNinety)) : 1.0;
                EXPECT_NEAR(centre.x, oblique.falseEasting, tolerance) << latitudeCenter;
                EXPECT_NEAR(centre.y, oblique.falseNorthing, tolerance) << latitudeCenter;
            }
        }
    }
}

// D - √(D² - 1) of a large D, as it is next to the south pole, has lost most of its digits.
TEST(TQPrObliqueMercator, TheConstantOfASouthernCentreIsAsGoodAsThatOfANorthernOne) {
    literal::HotineObliqueMercator oblique = kSample;
    for (const double latitudeCenter : {-45.0, -80.0, -89.0, -89.9}) {
        oblique.latitudeCenter = latitudeCenter;
        oblique.flags = kHotine;
        MadeObliqueMercator projection(oblique);
        const double latitude = oblique.phiC() + 0.001;
        expectNear(imageOf(*projection, {oblique.lambdaC() - 0.1, latitude}),
                   oblique.forward(oblique.lambdaC() - 0.1, latitude), 1e-6);
    }
}

// The way back adds the offset always, so that it undoes the way there to the west of the centre alone.
TEST(TQPrObliqueMercator, TheCentreFormComesBackFromTheWestOfTheCentreAndNotFromTheEast) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.bearing = static_cast<double>(oblique.gamma0()) * 180.0 / kPi;
    MadeObliqueMercator projection(oblique);
    const double west = oblique.lambdaC() - 0.1;
    const double east = oblique.lambdaC() + 0.1;
    const TQPoint fromWest = imageOf(*projection, {west, 0.8});
    EXPECT_NEAR(originalOf(*projection, {fromWest.x, fromWest.y}).x, west, 1e-9);
    EXPECT_NEAR(originalOf(*projection, {fromWest.x, fromWest.y}).y, 0.8, 1e-9);
    const TQPoint fromEast = imageOf(*projection, {east, 0.8});
    EXPECT_GT(std::abs(originalOf(*projection, {fromEast.x, fromEast.y}).x - east), 0.1);
}

TEST(TQPrObliqueMercator, TheHotineFormComesBackWithTheBearingOfTheCentralLineAlone) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.flags = kHotine;
    const double gamma0 = static_cast<double>(oblique.gamma0()) * 180.0 / kPi;
    for (const bool isGamma0 : {true, false}) {
        oblique.bearing = isGamma0 ? gamma0 : gamma0 + 1.0;
        MadeObliqueMercator projection(oblique);
        for (const double longitude : {oblique.lambdaC() - 0.1, oblique.lambdaC() + 0.1}) {
            const TQPoint global = imageOf(*projection, {longitude, 0.8});
            const TQPoint geo = originalOf(*projection, {global.x, global.y});
            EXPECT_EQ(std::hypot(geo.x - longitude, geo.y - 0.8) < 1e-9, isGamma0);
        }
    }
}

// The side is that of the shifted longitude.
TEST(TQPrObliqueMercator, TheDatumShiftMayTakeAPointToTheOtherSideOfTheCentre) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.longitudeCenter = 0.0;
    for (const double dy : {100.0, -100.0}) {
        MadeObliqueMercator projection(oblique);
        projection->ellipsoid()->setDatumShift(TQEllipsoid::ThreeParameterShift, oblique.size.a,
                                               1.0 - std::sqrt(1.0 - oblique.size.e2), {0.0, dy, 0.0});
        TQPoint local{0.0, 0.8};
        projection->ellipsoid()->toLocalDatum(local.x, local.y);
        ASSERT_GT(std::abs(local.x), 1e-6);
        for (const double longitude : {0.0, -0.5 * local.x}) {
            TQPoint shifted{longitude, 0.8};
            projection->ellipsoid()->toLocalDatum(shifted.x, shifted.y);
            ASSERT_EQ(shifted.x < 0.0, local.x < 0.0);
            expectNear(imageOf(*projection, {longitude, 0.8}), oblique.forward(shifted.x, shifted.y),
                       kPlaneTolerance);
        }
    }
}

TEST(TQPrObliqueMercator, ConvertsOnTheDatumOfItsEllipsoid) {
    MadeObliqueMercator projection(kSample);
    expectConversionsOnTheDatumOfTheEllipsoid(*projection);
}

// For a centre on the equator D is 1, and by rounding less.
TEST(TQPrObliqueMercator, ARatioBelowOneByRoundingCountsAsOne) {
    int below = 0;
    for (double e2 = 0.0; e2 < 0.02; e2 += 0.0003) {
        const double b = std::sqrt(1.0 - e2);
        below += std::sqrt(1.0 + e2 / (1.0 - e2)) * b < 1.0 ? 1 : 0;
        literal::HotineObliqueMercator oblique{0.0, 0.0, 30.0, 30.0, 1.0, 0.0, 0.0, 0, {"A", 6400000.0, e2}};
        MadeObliqueMercator projection(oblique);
        const TQPoint global = imageOf(*projection, {0.1, 0.2});
        EXPECT_TRUE(std::isfinite(global.x) && std::isfinite(global.y)) << e2;
    }
    EXPECT_GT(below, 0);
}

// On a needle the latitude is still on its way after 15 passes.
TEST(TQPrObliqueMercator, TheLatitudeIsIteratedFifteenTimesAtTheMost) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.flags = kHotine;
    oblique.size.e2 = 0.85;
    MadeObliqueMercator projection(oblique);
    const literal::Point expected = oblique.inverse(6e5, 4e6);
    const literal::Point onePassMore = oblique.inverse(6e5, 4e6, 16);
    ASSERT_GT(std::abs(onePassMore.y - expected.y), 1e-10L);
    expectNear(originalOf(*projection, {6e5, 4e6}), expected, 1e-12);
}

TEST(TQPrObliqueMercator, AnAzimuthThatTheOriginCannotHaveConvertsToNoNumbers) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.azimuth = 60.0;
    for (const int flags : {kAzimuthAtOrigin, kAzimuthAtOrigin + kHotine}) {
        oblique.flags = flags;
        ASSERT_GT(std::sin(oblique.gamma0()) * oblique.D(), 1.0L);
        MadeObliqueMercator projection(oblique);
        EXPECT_TRUE(std::isnan(imageOf(*projection, {0.1, 0.8}).x));
        EXPECT_TRUE(std::isnan(originalOf(*projection, {6e5, 2e5}).x));
    }
}

TEST(TQPrObliqueMercator, TheNorthPoleConvertsToNoNumberAndTheSouthPoleNearlyToItsPlace) {
    MadeObliqueMercator projection(kSample);
    EXPECT_TRUE(std::isnan(imageOf(*projection, {0.1, kPi / 2.0}).x));
    expectNear(imageOf(*projection, {0.1, -kPi / 2.0}), kSample.forward(0.1, -kPi / 2.0), 1e-6);
    expectNear(imageOf(*projection, {0.1, 1.5707}), kSample.forward(0.1, 1.5707), 1e-6);
}

// ---- constants -------------------------------------------------------------------------------------------

TEST(TQPrObliqueMercator, AMissingLineLeavesTheConstantsToTheNextConversion) {
    MadeObliqueMercator projection(kSample);
    imageOf(*projection, {0.1, 0.8});
    literal::HotineObliqueMercator expected = kSample;
    expected.longitudeCenter = 5.0;
    expected.latitudeCenter = 40.0;
    expected.flags = kHotine;
    const std::string text =
        textOf(obliqueMercator(0).headLines + sampleBaseLines()) + "1\n5.000000\n40.000000\n";
    ASSERT_EQ(readProjectionText(*projection, text), -1);
    expectNear(imageOf(*projection, {0.1, 0.8}), expected.forward(0.1, 0.8), kPlaneTolerance);
}

TEST(TQPrObliqueMercator, TheWayBackComputesPendingConstantsAsWell) {
    MadeObliqueMercator projection(kSample);
    literal::HotineObliqueMercator expected = kSample;
    expected.longitudeCenter = 5.0;
    const std::string text = textOf(obliqueMercator(0).headLines + sampleBaseLines()) + "0\n5.000000\n";
    ASSERT_EQ(readProjectionText(*projection, text), -1);
    expectNear(originalOf(*projection, {6e5, 3e5}), expected.inverse(6e5, 3e5), kAngleTolerance);
}

TEST(TQPrObliqueMercator, ConstantsThatAreValidAreNotComputedAgain) {
    MadeObliqueMercator projection(kSample);
    const TQPoint before = imageOf(*projection, {0.1, 0.8});
    const TemporaryDirectory directory;
    TQFile file(directory.fileWith("ellipsoid", "TQEllipsoid v2\nOther\n6500000\n0.01\n0\n"));
    ASSERT_EQ(projection->ellipsoid()->loadFromFile(file), 0);
    ASSERT_EQ(projection->ellipsoid()->semiMajorAxis(), 6500000.0);
    EXPECT_EQ(imageOf(*projection, {0.1, 0.8}), before);
    projection->initConstants();
    literal::HotineObliqueMercator other = kSample;
    other.size = {"Other", 6500000.0, 0.01};
    expectNear(imageOf(*projection, {0.1, 0.8}), other.forward(0.1, 0.8), kPlaneTolerance);
}

TEST(TQPrObliqueMercator, ComputesItsConstantsForEachEllipsoid) {
    MadeObliqueMercator projection(kSample);
    imageOf(*projection, {0.1, 0.8});
    literal::HotineObliqueMercator oblique = kSample;
    oblique.size = bessel1841;
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(imageOf(*projection, {0.1, 0.8}), oblique.forward(0.1, 0.8), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

// ---- flags -----------------------------------------------------------------------------------------------

TEST(TQPrObliqueMercator, AFlagIsSetByItsPresenceWithAnyValue) {
    TQPrObliqueMercator projection;
    projection.setParams(ParameterTable().with("HotineFlag", Logical(false)).table());
    EXPECT_EQ(parameterOf(projection, "HotineFlag"), "true");
    EXPECT_EQ(parameterOf(projection, "AzimuthAtOriginFlag"), "none");
    projection.setParams(ParameterTable().with("AzimuthAtOriginFlag", 0).table());
    EXPECT_EQ(parameterOf(projection, "HotineFlag"), "none");
    EXPECT_EQ(parameterOf(projection, "AzimuthAtOriginFlag"), "true");
}

TEST(TQPrObliqueMercator, ATableWithoutFlagsClearsThem) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.flags = kHotine + kAzimuthAtOrigin;
    MadeObliqueMercator projection(oblique);
    projection->setParams(HashTbl<TQProjParam>());
    EXPECT_EQ(parameterOf(*projection, "HotineFlag"), "none");
    EXPECT_EQ(parameterOf(*projection, "AzimuthAtOriginFlag"), "none");
    expectNear(imageOf(*projection, {0.1, 0.8}), kSample.forward(0.1, 0.8), kPlaneTolerance);
}

TEST(TQPrObliqueMercator, EachFlagIsPartOfTheDefinition) {
    for (const int one : {0, 1, 2, 3}) {
        for (const int other : {0, 1, 2, 3}) {
            literal::HotineObliqueMercator oblique = kSample;
            oblique.flags = one;
            MadeObliqueMercator first(oblique);
            oblique.flags = other;
            MadeObliqueMercator second(oblique);
            EXPECT_EQ(first->hasSameDefinition(*second), one == other) << one << " " << other;
        }
    }
}

TEST(TQPrObliqueMercator, WhetherTheConstantsAreValidIsNoPartOfTheDefinition) {
    ByteStream stream(archive(0));
    TQPrObliqueMercator pending;
    pending.unarchiveFrom(stream.get());
    MadeObliqueMercator projection(kSample);
    projection->setEllipsoid(nullptr);
    EXPECT_TRUE(pending.hasSameDefinition(*projection));
    EXPECT_TRUE(projection->hasSameDefinition(pending));
}

TEST(TQPrObliqueMercator, AFlagLineOfThreeIsTheHotineFormWithTheAzimuthAtTheOrigin) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrObliqueMercator projection;
    projection.setEllipsoid(&ellipsoid);
    ASSERT_EQ(readProjectionText(projection, textWithFlags("3")), 0);
    literal::HotineObliqueMercator expected = kSample;
    expected.flags = kHotine + kAzimuthAtOrigin;
    EXPECT_EQ(parameterOf(projection, "HotineFlag"), "true");
    EXPECT_EQ(parameterOf(projection, "AzimuthAtOriginFlag"), "true");
    expectNear(imageOf(projection, {0.1, 0.8}), expected.forward(0.1, 0.8), kPlaneTolerance);
    expectNear(originalOf(projection, {6e5, 3e5}), expected.inverse(6e5, 3e5), kAngleTolerance);
}

TEST(TQPrObliqueMercator, OfTheFlagsSixteenBitsAreKept) {
    for (const auto& [given, kept] : {std::pair{65539, "3"}, {-1, "65535"}, {4, "4"}, {-65536, "0"}}) {
        SCOPED_TRACE(given);
        TQEllipsoid ellipsoid = sampleEllipsoid();
        TQPrObliqueMercator fromText;
        fromText.setEllipsoid(&ellipsoid);
        ASSERT_EQ(readProjectionText(fromText, textWithFlags(std::to_string(given))), 0);
        EXPECT_EQ(flagLine(fromText), kept);

        ByteStream stream(archive(given));
        TQPrObliqueMercator fromArchive;
        fromArchive.unarchiveFrom(stream.get());
        fromArchive.setEllipsoid(&ellipsoid);
        EXPECT_EQ(flagLine(fromArchive), kept);
        EXPECT_TRUE(fromArchive.hasSameDefinition(fromText));
        EXPECT_EQ(archivedBytes(fromArchive), archive(std::stoi(kept)).bytes());
    }
}

TEST(TQPrObliqueMercator, WritesLongitudeAndLatitudeOfTheCentreCrosswiseInWkt) {
    literal::HotineObliqueMercator oblique = kSample;
    oblique.longitudeCenter = 7.4;
    oblique.latitudeCenter = 46.9;
    MadeObliqueMercator projection(oblique);
    const std::string wkt = projection->WKTProjectionStuff().utf8();
    EXPECT_THAT(wkt, HasSubstr("PARAMETER[\"latitude_of_center\",7.4]"));
    EXPECT_THAT(wkt, HasSubstr("PARAMETER[\"longitude_of_center\",46.9]"));
}
