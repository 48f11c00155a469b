#include "projections/TQPrBonne.h"

#include "projections/Conversions.h"
#include "testing/CapturedMessages.h"
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

double rad(double degrees) { return degrees * kPi / 180.0; }

/// What a Bonne projection is defined by, and its formulas term by term (Snyder, equations 19-1 to 19-11,
/// 3-21 and 3-26), with the way back of a southern standard parallel as this class has it.
struct LiteralBonne {
    double lambda0, standardParallel; // degrees
    EllipsoidSize size;

    double phi1() const { return rad(standardParallel); }
    Real m(Real phi) const {
        return std::cos(phi) / std::sqrt(1.0L - size.e2 * std::sin(phi) * std::sin(phi));
    }
    Real arcFactor() const {
        const Real e2 = size.e2;
        return 1.0L - e2 / 4.0L - 3.0L * e2 * e2 / 64.0L - 5.0L * e2 * e2 * e2 / 256.0L;
    }
    Real M(Real phi) const {
        const Real e2 = size.e2;
        const Real e4 = e2 * e2;
        const Real e6 = e4 * e2;
        return size.a *
               (arcFactor() * phi -
                (3.0L * e2 / 8.0L + 3.0L * e4 / 32.0L + 45.0L * e6 / 1024.0L) * std::sin(2.0L * phi) +
                (15.0L * e4 / 256.0L + 45.0L * e6 / 1024.0L) * std::sin(4.0L * phi) -
                35.0L * e6 / 3072.0L * std::sin(6.0L * phi));
    }
    Real Y() const { return size.a * m(phi1()) / std::sin(Real(phi1())); }

    literal::Point forward(double lambda, double phi) const {
        const Real rho = Y() + M(phi1()) - M(phi);
        const Real angle = size.a * m(phi) * (Real(lambda) - rad(lambda0)) / rho;
        return {rho * std::sin(angle), Y() - rho * std::cos(angle)};
    }

    Real latitude(Real mu) const {
        const Real b = std::sqrt(1.0L - size.e2);
        const Real e1 = (1.0L - b) / (1.0L + b);
        return mu + (3.0L * e1 / 2.0L - 27.0L * std::pow(e1, 3) / 32.0L) * std::sin(2.0L * mu) +
               (21.0L * e1 * e1 / 16.0L - 55.0L * std::pow(e1, 4) / 32.0L) * std::sin(4.0L * mu) +
               151.0L * std::pow(e1, 3) / 96.0L * std::sin(6.0L * mu) +
               1097.0L * std::pow(e1, 4) / 512.0L * std::sin(8.0L * mu);
    }

    literal::Point inverse(double x, double y) const {
        const bool isSouthern = phi1() < 0.0;
        const Real distance = std::sqrt(Real(x) * x + (Y() - y) * (Y() - y));
        const Real rho = isSouthern ? -distance : distance;
        const Real phi = latitude((Y() + M(phi1()) - rho) / (size.a * arcFactor()));
        const Real angle = isSouthern ? std::atan2(Real(-x), -Y() - y) : std::atan2(Real(x), Y() - y);
        const bool isPole = std::abs(std::abs(phi) - literal::pi / 2.0L) < 1e-6L;
        return {isPole ? rad(lambda0) : rad(lambda0) + rho * angle / (size.a * m(phi)), phi};
    }
};

std::vector<LiteralBonne> bonneProjections() {
    std::vector<LiteralBonne> projections;
    for (const EllipsoidSize& size : {kFlatEllipsoid, bessel1841}) {
        for (const double standardParallel : {45.5, 10.0, -30.0, -60.0}) {
            projections.push_back({9.5, standardParallel, size});
        }
    }
    return projections;
}

const LiteralBonne kNorthern{9.5, 45.5, kFlatEllipsoid};
const LiteralBonne kSouthern{9.5, -45.5, kFlatEllipsoid};

/// A projection and the ellipsoid it stands on.
class MadeBonne {
  public:
    explicit MadeBonne(const LiteralBonne& bonne)
        : _ellipsoid(TQString(bonne.size.name), bonne.size.a, bonne.size.e2) {
        ParameterTable parameters;
        parameters.with("lambda0", bonne.lambda0).with("standardParallel", bonne.standardParallel);
        _projection.setParams(parameters.table());
        _projection.setEllipsoid(&_ellipsoid);
    }

    TQPrBonne& operator*() { return _projection; }
    TQPrBonne* operator->() { return &_projection; }

  private:
    TQEllipsoid _ellipsoid;
    TQPrBonne _projection;
};

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
TQPoint onTheArc(const LiteralBonne& bonne, Real phi, Real angle) {
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
    for (const LiteralBonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        EXPECT_EQ(projection->center().x, 0.0);
        EXPECT_NEAR(projection->center().y, static_cast<double>(bonne.Y()), kPlaneTolerance);
    }
}

TEST(TQPrBonne, TheStandardParallelOnTheCentralMeridianIsTheOrigin) {
    for (const LiteralBonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        expectNear(planePoint(*projection, rad(bonne.lambda0), bonne.phi1()), {0.0L, 0.0L}, 1e-8);
        expectNear(
            geographicPoint(*projection, 0.0, 0.0),
            {rad(bonne.lambda0), bonne.latitude(bonne.M(bonne.phi1()) / (bonne.size.a * bonne.arcFactor()))},
            kAngleTolerance);
    }
}

// Longitudes are not wrapped.
TEST(TQPrBonne, ConvertsByThePublishedFormulas) {
    for (const LiteralBonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        for (const double longitude : {-7.0, -1.3, 0.0, 0.2, 1.4, 4.2}) {
            for (const double latitude : {-kPi / 2.0, -1.1, -0.3, 0.0, 0.4, 0.8, 1.1, kPi / 2.0}) {
                expectNear(planePoint(*projection, longitude, latitude), bonne.forward(longitude, latitude),
                           kPlaneTolerance);
            }
        }
    }
}

TEST(TQPrBonne, ConvertsBackByThePublishedFormulas) {
    for (const LiteralBonne& bonne : bonneProjections()) {
        MadeBonne projection(bonne);
        for (const double x : {-4e6, -3e5, 0.0, 1e5, 3e6}) {
            for (const double y : {-8e6, -3e6, -1e5, 0.0, 2e5, 4e6, 9e6}) {
                SCOPED_TRACE(testing::Message() << bonne.standardParallel << " " << x << " " << y);
                const literal::Point expected = bonne.inverse(x, y);
                const TQPoint geo = geographicPoint(*projection, x, y);
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
            const TQPoint global = planePoint(*projection, longitude, latitude);
            expectNear(geographicPoint(*projection, global.x, global.y), {longitude, latitude}, 1e-9);
        }
    }
}

// The angle is taken between (-x, -Y - y), where Y - y would be mirrored to -Y + y.
TEST(TQPrBonne, FromASouthernProjectionLatitudesComeBackAndLongitudesOffTheMeridianDoNot) {
    const LiteralBonne bonne{9.5, -45.5, bessel1841};
    MadeBonne projection(bonne);
    const double lambda0 = rad(bonne.lambda0);
    for (const double latitude : {-1.2, -0.9, -0.5}) {
        const TQPoint onMeridian = planePoint(*projection, lambda0, latitude);
        expectNear(geographicPoint(*projection, onMeridian.x, onMeridian.y), {lambda0, latitude}, 1e-9);
        const TQPoint off = planePoint(*projection, lambda0 + 0.1, latitude);
        const TQPoint geo = geographicPoint(*projection, off.x, off.y);
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
    for (const LiteralBonne& bonne : {kNorthern, kSouthern}) {
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
                const TQPoint geo = geographicPoint(*projection, global.x, global.y);
                EXPECT_NEAR(geo.y, static_cast<double>(wanted), 1e-14);
                if (std::abs(off) < 1e-6) {
                    EXPECT_EQ(geo.x, rad(bonne.lambda0));
                } else {
                    EXPECT_GT(std::abs(geo.x - rad(bonne.lambda0)), 1e3);
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
        const TQPoint global = planePoint(*projection, 1.0, pole);
        EXPECT_NEAR(global.x, 0.0, 1e-8);
        const TQPoint geo = geographicPoint(*projection, global.x, global.y);
        EXPECT_EQ(geo.x, rad(9.5));
        EXPECT_NEAR(geo.y, pole, 1e-9);
    }
}

TEST(TQPrBonne, AStandardParallelOfZeroHasNoApexAndConvertsToNoNumbers) {
    MadeBonne projection({9.5, 0.0, kFlatEllipsoid});
    EXPECT_EQ(projection->center(), (TQPoint{0.0, HUGE_VAL}));
    const TQPoint global = planePoint(*projection, 0.1, 0.2);
    EXPECT_TRUE(std::isnan(global.x));
    EXPECT_TRUE(std::isnan(global.y));
    const TQPoint geo = geographicPoint(*projection, 1e5, 2e5);
    EXPECT_EQ(geo.x, rad(9.5));
    EXPECT_TRUE(std::isnan(geo.y));
}

TEST(TQPrBonne, ConvertsOnTheDatumOfItsEllipsoid) {
    MadeBonne projection(kNorthern);
    expectConversionsOnTheDatumOfTheEllipsoid(*projection);
}

TEST(TQPrBonne, ComputesItsConstantsForEachEllipsoid) {
    MadeBonne projection(kNorthern);
    const LiteralBonne expected{9.5, 45.5, bessel1841};
    TQEllipsoid bessel(TQString(bessel1841.name), bessel1841.a, bessel1841.e2);
    projection->setEllipsoid(&bessel);
    expectNear(planePoint(*projection, 0.1, 0.9), expected.forward(0.1, 0.9), kPlaneTolerance);
    EXPECT_NEAR(projection->center().y, static_cast<double>(expected.Y()), kPlaneTolerance);
    projection->setEllipsoid(nullptr);
}

// ---- files and archives ----------------------------------------------------------------------------------

TEST(TQPrBonne, AMissingLineLeavesTheConstantsAsTheyWere) {
    MadeBonne projection({3.0, 30.0, kFlatEllipsoid});
    const TQPoint before = planePoint(*projection, 0.1, 0.7);
    TextLines lines = bonne().headLines + sampleBaseLines() + bonne().valueLines;
    lines.pop_back();
    EXPECT_EQ(readProjectionText(*projection, textOf(lines)), 5105);
    EXPECT_EQ(parameterOf(*projection, "lambda0"), "9.5");
    EXPECT_EQ(parameterOf(*projection, "standardParallel"), "30");
    EXPECT_EQ(planePoint(*projection, 0.1, 0.7), before);
    projection->initConstants();
    EXPECT_NE(planePoint(*projection, 0.1, 0.7), before);
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
    expectNear(planePoint(copy, 0.1, 0.8), kNorthern.forward(0.1, 0.8), kPlaneTolerance);
}
