#include "projections/LiteralBonne.h"
#include "projections/LiteralCassiniSoldner.h"
#include "projections/LiteralHotineObliqueMercator.h"
#include "projections/LiteralLambert.h"
#include "projections/LiteralPolarStereographic.h"
#include "projections/LiteralSwissObliqueMercator.h"
#include "projections/MadeFrom.h"
#include "projections/TQPrBonne.h"
#include "projections/TQPrCassiniSoldner.h"
#include "projections/TQPrLambert.h"
#include "projections/TQPrObliqueMercator.h"
#include "projections/TQPrPolarStereo.h"
#include "projections/TQPrSwissObliqueMercator.h"
#include "testing/Differences.h"
#include "testing/RandomNumbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

// The conic, oblique, polar and Cassini-Soldner projections beside their published formulas in long double,
// on 20,000 random points of random parameters each. What the library rearranges must not show: 1e-9 m and
// 1e-14 rad on the ground, beside the rounding of what coordinates are added up from.

namespace {

constexpr int kPointCount = 20000;
constexpr int kPointsPerParameters = 20;
constexpr double kPlaneTolerance = 1e-9;
constexpr double kAngleTolerance = 1e-14;

/// Half a unit in the last place of 1.
constexpr double kRounding = 1.1e-16;

constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.05};

double randomSize(RandomNumbers& random, double low, double high) {
    const double size = random.between(low, high);
    return random.between(0.0, 1.0) < 0.5 ? size : -size;
}

/// How sensitive a projection is at a point, in roundings.
struct Sensitivity {
    double plane = 0.0;  ///< metres that a coordinate is rounded from
    double ground = 0.0; ///< radians
};

/// A projection class's formulas, its random parameters and the points that they are for.
template <class Formulas>
struct Subject {
    std::function<Formulas(RandomNumbers&, const EllipsoidSize&)> formulas;
    std::function<TQPoint(RandomNumbers&, const Formulas&)> point; ///< degrees
    std::function<Sensitivity(const Formulas&, const TQPoint& geo, const TQPoint& global)> sensitivity;
};

TQPoint rounded(const literal::Point& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

/// Differences over what is allowed, both ways.
template <class Class, class Formulas>
void expectTheSame(const Subject<Formulas>& subject, const EllipsoidSize& size) {
    RandomNumbers random(5);
    Differences plane;
    Differences ground;
    for (int i = 0; i < kPointCount; i += kPointsPerParameters) {
        const Formulas formulas = subject.formulas(random, size);
        const MadeFrom<Class, Formulas> projection(formulas);
        for (int j = 0; j < kPointsPerParameters; ++j) {
            const TQPoint degrees = subject.point(random, formulas);
            const TQPoint geo{tq_deg2rad(degrees.x), tq_deg2rad(degrees.y)};
            const TQPoint expected = rounded(formulas.forward(geo.x, geo.y));
            const Sensitivity sensitivity = subject.sensitivity(formulas, geo, expected);
            TQPoint global;
            ASSERT_EQ(projection->convertGeoPt(geo, global), 0);
            plane.add(planeDistance(global, expected) / (kPlaneTolerance + kRounding * sensitivity.plane));
            const TQPoint back = rounded(formulas.inverse(expected.x, expected.y));
            TQPoint inverse;
            ASSERT_EQ(projection->convertGlobalPt(expected, inverse), 0);
            ground.add(groundAngle(inverse, back) / (kAngleTolerance + kRounding * sensitivity.ground));
        }
    }
    EXPECT_LE(plane.max(), 1.0) << "forward, over the tolerance";
    EXPECT_LE(ground.max(), 1.0) << "inverse, over the tolerance";
    testing::Test::RecordProperty("forward", std::to_string(plane.max()));
    testing::Test::RecordProperty("inverse", std::to_string(ground.max()));
}

template <class Class, class Formulas>
void expectTheSameOnEachEllipsoid(const Subject<Formulas>& subject) {
    for (const EllipsoidSize& size : {wgs84, kFlatEllipsoid}) {
        SCOPED_TRACE(size.name);
        expectTheSame<Class, Formulas>(subject, size);
    }
}

} // namespace

// The radius of a parallel is an exponential, rounded like its logarithm n·ψ and more so where the parallels
// that give n are close together.
TEST(LiteralFormulasSideBySide, LambertConformalConic) {
    const Subject<literal::Lambert> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            const double origin = randomSize(random, 20.0, 60.0);
            const double width = random.between(3.0, 8.0);
            const bool tangent = random.between(0.0, 1.0) < 0.5;
            return literal::Lambert{random.between(-180.0, 180.0),
                                    origin,
                                    random.between(-1e6, 1e6),
                                    random.between(-1e6, 1e6),
                                    tangent,
                                    random.between(0.9, 1.1),
                                    origin - width,
                                    origin + width,
                                    size};
        },
        [](RandomNumbers& random, const literal::Lambert& lambert) {
            return TQPoint{lambert.lambda0 + random.between(-60.0, 60.0),
                           lambert.latitudeOrigin + random.between(-25.0, 25.0)};
        },
        [](const literal::Lambert& lambert, const TQPoint&, const TQPoint& global) {
            const double radius = planeDistance(global, rounded(lambert.apex()));
            const double width = tq_deg2rad(lambert.stdPar2 - lambert.stdPar1);
            return Sensitivity{radius * (lambert.tangent ? 20.0 : 20.0 + 2.0 / width) + 2e7, 10.0 / width};
        }};
    expectTheSameOnEachEllipsoid<TQPrLambert>(subject);
}

// All is counted from the apex. The way back of a southern parallel gives longitudes of many turns, which
// are as uncertain as the latitude.
TEST(LiteralFormulasSideBySide, Bonne) {
    const Subject<literal::Bonne> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            return literal::Bonne{random.between(-180.0, 180.0), randomSize(random, 10.0, 70.0), size};
        },
        [](RandomNumbers& random, const literal::Bonne& bonne) {
            return TQPoint{bonne.lambda0 + random.between(-60.0, 60.0), random.between(-85.0, 85.0)};
        },
        [](const literal::Bonne& bonne, const TQPoint&, const TQPoint& global) {
            const double apex = std::abs(static_cast<double>(bonne.Y()));
            const double turns = rounded(bonne.inverse(global.x, global.y)).x - tq_deg2rad(bonne.lambda0);
            return Sensitivity{8.0 * (apex + 1e7),
                               40.0 * (apex / bonne.size.a + 1.0) * (1.0 + std::abs(turns))};
        }};
    expectTheSameOnEachEllipsoid<TQPrBonne>(subject);
}

TEST(LiteralFormulasSideBySide, CassiniSoldner) {
    const Subject<literal::CassiniSoldner> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            return literal::CassiniSoldner{random.between(-180.0, 180.0), randomSize(random, 0.0, 70.0),
                                           random.between(-1e6, 1e6), random.between(-1e6, 1e6), size};
        },
        [](RandomNumbers& random, const literal::CassiniSoldner& cassini) {
            return TQPoint{cassini.lambda0 + random.between(-3.0, 3.0), random.between(-80.0, 80.0)};
        },
        [](const literal::CassiniSoldner&, const TQPoint&, const TQPoint&) {
            return Sensitivity{4.0 * 2e7, 0.0};
        }};
    expectTheSameOnEachEllipsoid<TQPrCassiniSoldner>(subject);
}

// Coordinates count from the natural origin, whose longitude is an arcsine: less certain the nearer it lies
// to 90 degrees from the centre. R = √(D² - 1) is less certain the nearer the centre lies to the equator.
TEST(LiteralFormulasSideBySide, HotineObliqueMercator) {
    const Subject<literal::HotineObliqueMercator> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            const int flags = static_cast<int>(random.between(0.0, 3.999));
            const bool isAtOrigin = (flags & literal::kAzimuthAtOrigin) != 0;
            const double northwards = randomSize(random, 10.0, 60.0) / (isAtOrigin ? 3.0 : 1.0);
            const double azimuth = random.between(0.0, 1.0) < 0.5 ? northwards : 180.0 - northwards;
            return literal::HotineObliqueMercator{random.between(-180.0, 180.0),
                                                  randomSize(random, 5.0, 55.0),
                                                  azimuth,
                                                  random.between(-70.0, 70.0),
                                                  random.between(0.9, 1.1),
                                                  random.between(-1e6, 1e6),
                                                  random.between(-1e6, 1e6),
                                                  flags,
                                                  size};
        },
        [](RandomNumbers& random, const literal::HotineObliqueMercator& hotine) {
            return TQPoint{hotine.longitudeCenter + random.between(-15.0, 15.0),
                           hotine.latitudeCenter + random.between(-15.0, 15.0)};
        },
        [](const literal::HotineObliqueMercator& hotine, const TQPoint&, const TQPoint&) {
            const auto toOrigin = static_cast<double>(hotine.B() * (hotine.lambdaC() - hotine.lambda0()));
            const double arcsine = 1.0 + 1.0 / std::cos(toOrigin);
            const auto r = static_cast<double>(hotine.R());
            return Sensitivity{8.0 * 1e7 * arcsine + 4.0 * 1e7 / r, 50.0 * arcsine + 4.0 / r};
        }};
    expectTheSameOnEachEllipsoid<TQPrObliqueMercator>(subject);
}

TEST(LiteralFormulasSideBySide, SwissObliqueMercator) {
    const Subject<literal::SwissObliqueMercator> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            return literal::SwissObliqueMercator{random.between(-180.0, 180.0), randomSize(random, 0.0, 50.0),
                                                 random.between(0.9, 1.1),      random.between(-1e6, 1e6),
                                                 random.between(-1e6, 1e6),     size};
        },
        [](RandomNumbers& random, const literal::SwissObliqueMercator& swiss) {
            return TQPoint{swiss.longitudeCenter + random.between(-20.0, 20.0),
                           swiss.latitudeCenter + random.between(-20.0, 20.0)};
        },
        [](const literal::SwissObliqueMercator&, const TQPoint&, const TQPoint&) {
            return Sensitivity{4.0 * 2e7, 50.0};
        }};
    expectTheSameOnEachEllipsoid<TQPrSwissObliqueMercator>(subject);
}

// The way back takes the arcsine of (C² - ρ²)/(C² + ρ²), which is rounded to the inverse of the distance
// from the pole.
TEST(LiteralFormulasSideBySide, PolarStereographic) {
    const Subject<literal::PolarStereographic> subject{
        [](RandomNumbers& random, const EllipsoidSize& size) {
            const bool isNorth = random.between(0.0, 1.0) < 0.5;
            return literal::PolarStereographic{random.between(-180.0, 180.0),
                                               random.between(-1e6, 1e6),
                                               isNorth ? random.between(-1e6, 1e6) : 0.0,
                                               random.between(0.9, 1.1),
                                               isNorth,
                                               size};
        },
        [](RandomNumbers& random, const literal::PolarStereographic& polar) {
            const double fromPole = random.between(0.0, 110.0);
            return TQPoint{polar.lambda0 + random.between(-180.0, 180.0),
                           polar.isNorth ? 90.0 - fromPole : fromPole - 90.0};
        },
        [](const literal::PolarStereographic& polar, const TQPoint& geo, const TQPoint& global) {
            const TQPoint pole{polar.falseEasting, polar.falseNorthing};
            const double colatitude = std::acos(std::abs(std::sin(geo.y)));
            return Sensitivity{10.0 * (planeDistance(global, pole) + 1e6), 4.0 / colatitude};
        }};
    expectTheSameOnEachEllipsoid<TQPrPolarStereo>(subject);
}
