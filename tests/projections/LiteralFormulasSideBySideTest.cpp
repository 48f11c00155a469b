#include "projections/LiteralFormulas.h"
#include "projections/TQPrMercDirectGCTP.h"
#include "projections/TQPrMercDirectModified.h"
#include "projections/TQPrMercTransv.h"
#include "projections/formulas/IsometricLatitude.h"
#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/RandomNumbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

// The projections beside their published formulas in long double, on 20,000 random points of random
// parameters. The library arranges the terms in another way (arsinh tan φ for ln tan(φ/2 + π/4), double
// angles by algebra, the sums by Clenshaw's recurrence), and that must not show: 1e-9 m, and 1e-14 rad on
// the ground.

namespace {

constexpr int kPointCount = 20000;
constexpr int kPointsPerParameters = 20;

constexpr double kPlaneTolerance = 1e-9;
constexpr double kAngleTolerance = 1e-14;

/// The unit in the last place of a number of this size.
double unitInLastPlace(double size) {
    return std::nextafter(size, std::numeric_limits<double>::infinity()) - size;
}

/// Parameters of the Mercator family.
struct Parameters {
    double lambda0, phi0, x0, y0, k0; // degrees and metres

    /// @param latitudes the largest latitude of origin
    static Parameters random(RandomNumbers& random, double latitudes = 60.0) {
        return {random.between(-180.0, 180.0), random.between(-latitudes, latitudes),
                random.between(-1e6, 1e6), random.between(-1e6, 1e6), random.between(0.9, 1.1)};
    }

    MadeProjection projection(int typeCode, const EllipsoidSize& size) const {
        return {typeCode, size, {{"lambda0", lambda0}, {"phi0", phi0}, {"X0", x0}, {"Y0", y0}, {"k0", k0}}};
    }
};

TQPoint rounded(const literal::Point& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

/// How far a projection and its published formulas may come apart and do.
struct Distances {
    Differences plane;  ///< over the tolerance
    Differences ground; ///< over the tolerance
};

/// What may come apart where one pass more or less is taken than in long double: the last change of the
/// latitude is the tolerance of the iteration but for its rounding.
double toleranceOfStop(literal::Real stopMargin, const EllipsoidSize& size, double tolerance) {
    constexpr literal::Real rounding = 1e-15L;
    return stopMargin <= rounding ? tolerance * size.e2 / (1.0 - size.e2) : 0.0;
}

/// Where points are taken from, and what the formulas do with a rounding there.
struct Domain {
    double latitudes;      ///< the largest latitude, degrees
    double meridian;       ///< the middle of the longitudes, degrees from the central meridian
    double longitudes;     ///< the largest distance from it, degrees
    double largestProduct; ///< metres: the largest number that coordinates are added up from
};

/// Compares both ways at random points around the central meridian.
template <class Formulas, class Magnification>
void compare(const TQProjection& projection, const Formulas& formulas, const EllipsoidSize& size,
             const Domain& domain, double stop, RandomNumbers& random, Distances& distances,
             Magnification magnification) {
    // Each coordinate has four roundings of half a unit: the product, the two of the offset, and the sum.
    const double planeTolerance = kPlaneTolerance + 3.0 * unitInLastPlace(domain.largestProduct);
    for (int i = 0; i < kPointsPerParameters; ++i) {
        const double dLambda =
            tq_deg2rad(domain.meridian + random.between(-domain.longitudes, domain.longitudes));
        const TQPoint geo{formulas.lambda0 + dLambda,
                          tq_deg2rad(random.between(-domain.latitudes, domain.latitudes))};
        const TQPoint expected = rounded(formulas.forward(geo.x, geo.y));
        TQPoint global;
        ASSERT_EQ(projection.convertGeoPt(geo, global), 0);
        distances.plane.add(planeDistance(global, expected) / (planeTolerance * magnification(geo)));

        const auto [expectedGeo, stopMargin] = formulas.inverse(expected.x, expected.y);
        TQPoint inverse;
        ASSERT_EQ(projection.convertGlobalPt(expected, inverse), 0);
        const double angleTolerance = kAngleTolerance + toleranceOfStop(stopMargin, size, stop);
        distances.ground.add(groundAngle(inverse, rounded(expectedGeo)) / angleTolerance);
    }
}

Distances compareDirect(int typeCode, const EllipsoidSize& size, double latitudes, double s = 1.0) {
    const bool gctp = typeCode == TQPrMercDirectGCTP::typeCode;
    // Longitudes up to 360 degrees are multiplied by the radius and the false origin is added.
    const Domain domain{latitudes, 0.0, 179.9, 4.5e7};
    // The latitude times the factor is rounded before its tangent is taken.
    const auto magnification = [s](const TQPoint& geo) { return s == 1.0 ? 1.0 : 1.0 / std::cos(s * geo.y); };
    RandomNumbers random(3);
    Distances distances;
    for (int i = 0; i < kPointCount; i += kPointsPerParameters) {
        const Parameters p = Parameters::random(random, 60.0 / std::fmax(s, 1.0));
        MadeProjection projection = p.projection(typeCode, size);
        if (typeCode == TQPrMercDirectModified::typeCode) {
            // The constants are computed before the factor is taken: the second time, with it.
            projection.set({{"_latitudeScaleFactor", s}});
            projection.set({});
        }
        const literal::DirectMercator formulas{
            size.a, size.e2, tq_deg2rad(p.lambda0), tq_deg2rad(p.phi0), p.x0, p.y0, p.k0, s, gctp};
        compare(*projection, formulas, size, domain, gctp ? 1e-10 : 1e-11, random, distances, magnification);
    }
    return distances;
}

Distances compareTransverse(const EllipsoidSize& size, double longitudes, double meridian = 0.0) {
    const Domain domain{90.0, meridian, longitudes, 2e7};
    const auto magnification = [](const TQPoint&) { return 1.0; };
    RandomNumbers random(4);
    Distances distances;
    for (int i = 0; i < kPointCount; i += kPointsPerParameters) {
        const Parameters p = Parameters::random(random);
        const MadeProjection projection = p.projection(TQPrMercTransv::typeCode, size);
        const literal::TransverseMercator formulas{
            size.a, size.e2, tq_deg2rad(p.lambda0), tq_deg2rad(p.phi0), p.x0, p.y0, p.k0};
        compare(*projection, formulas, size, domain, 1e-11, random, distances, magnification);
    }
    return distances;
}

void expectWithinTolerance(const Distances& distances) {
    EXPECT_LE(distances.plane.max(), 1.0) << "forward, over the tolerance";
    EXPECT_LE(distances.ground.max(), 1.0) << "inverse, over the tolerance";
    testing::Test::RecordProperty("forward", std::to_string(distances.plane.max()));
    testing::Test::RecordProperty("inverse", std::to_string(distances.ground.max()));
}

constexpr EllipsoidSize kFlatEllipsoid{"Flat", 6400000.0, 0.05};
// The largest eccentricity whose latitudes are iterated on a parabola.
const double kParabolicEccentricity = std::sqrt(tq::formulas::smallEccentricitySquared);
const EllipsoidSize kParabolicLimit{"Limit", 6400000.0, kParabolicEccentricity* kParabolicEccentricity};
constexpr EllipsoidSize kSphere{"Sphere", 6371000.0, 0.0};

} // namespace

TEST(LiteralFormulasSideBySide, DirectMercator) {
    expectWithinTolerance(compareDirect(TQPrMercDirect::typeCode, wgs84, 90.0));
}

TEST(LiteralFormulasSideBySide, DirectMercatorOnAFlatEllipsoid) {
    expectWithinTolerance(compareDirect(TQPrMercDirect::typeCode, kFlatEllipsoid, 90.0));
}

TEST(LiteralFormulasSideBySide, DirectMercatorOnASphere) {
    expectWithinTolerance(compareDirect(TQPrMercDirect::typeCode, kSphere, 90.0));
}

TEST(LiteralFormulasSideBySide, GctpMercator) {
    expectWithinTolerance(compareDirect(TQPrMercDirectGCTP::typeCode, wgs84, 89.9));
}

TEST(LiteralFormulasSideBySide, ModifiedDirectMercator) {
    for (const double s : {0.5, 0.9, 1.0, 1.5, 2.0}) {
        SCOPED_TRACE(s);
        expectWithinTolerance(
            compareDirect(TQPrMercDirectModified::typeCode, wgs84, 88.9 / std::fmax(s, 1.0), s));
    }
}

TEST(LiteralFormulasSideBySide, TransverseMercatorWithinAZone) {
    expectWithinTolerance(compareTransverse(wgs84, 3.5));
}

TEST(LiteralFormulasSideBySide, TransverseMercatorWithinSixtyDegrees) {
    expectWithinTolerance(compareTransverse(wgs84, 60.0));
}

TEST(LiteralFormulasSideBySide, TransverseMercatorFoldedFromBeyondNinetyDegrees) {
    expectWithinTolerance(compareTransverse(wgs84, 60.0, 180.0));
}

TEST(LiteralFormulasSideBySide, TransverseMercatorOnASphere) {
    expectWithinTolerance(compareTransverse(kSphere, 60.0));
}

TEST(LiteralFormulasSideBySide, TransverseMercatorOnAFlatEllipsoid) {
    expectWithinTolerance(compareTransverse(kFlatEllipsoid, 30.0));
}

TEST(LiteralFormulasSideBySide, DirectMercatorWithTheLargestParabolicEccentricity) {
    expectWithinTolerance(compareDirect(TQPrMercDirect::typeCode, kParabolicLimit, 90.0));
}

TEST(LiteralFormulasSideBySide, GctpMercatorWithTheLargestParabolicEccentricity) {
    expectWithinTolerance(compareDirect(TQPrMercDirectGCTP::typeCode, kParabolicLimit, 89.9));
}

TEST(LiteralFormulasSideBySide, TransverseMercatorWithTheLargestParabolicEccentricity) {
    expectWithinTolerance(compareTransverse(kParabolicLimit, 45.0));
}
