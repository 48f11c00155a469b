#include "testing/Pack.h"

#include "ellipsoid/formulas/AbridgedMolodensky.h"
#include "ellipsoid/formulas/Helmert.h"
#include "projections/formulas/Bonne.h"
#include "projections/formulas/CassiniSoldner.h"
#include "projections/formulas/DirectMercator.h"
#include "projections/formulas/Equirectangular.h"
#include "projections/formulas/GctpMercator.h"
#include "projections/formulas/HotineObliqueMercator.h"
#include "projections/formulas/LambertConformalConic.h"
#include "projections/formulas/PolarAzimuthal.h"
#include "projections/formulas/PolarGnomonic.h"
#include "projections/formulas/PolarStereographic.h"
#include "projections/formulas/SwissObliqueMercator.h"
#include "projections/formulas/TransverseMercator.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>

// A formula gives each lane of a pack what it gives a double, bit for bit, whatever its neighbour is.

namespace {

using namespace tq::formulas;

constexpr double kA = 6378137.0;
constexpr double kE2 = 0.0066943799901413;
const double kE = std::sqrt(kE2);
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
/// The squared eccentricity of an ellipsoid of the Earth, and one for which latitudes are iterated in another
/// way.
constexpr double kEccentricitiesSquared[] = {kE2, 0.3};
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expectSame(double expected, double actual) {
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(actual));
    } else {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(expected), std::bit_cast<std::uint64_t>(actual))
            << expected << " and " << actual;
    }
}

/// Pairs of numbers: ordinary ones, and ordinary ones beside those that leave a formula early or never
/// converge.
template <class Check>
void forPairs(double range, const Check& check) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> ordinary(-range, range);
    for (int i = 0; i < 200; ++i) {
        check(ordinary(random), ordinary(random));
    }
    for (const double odd : {0.0, kNaN, kInfinity, -kInfinity, 1e300, 100.0 * range}) {
        check(ordinary(random), odd);
        check(odd, ordinary(random));
    }
}

/// Compares a function of two coordinates on packs with the same function on doubles; `convert` takes two
/// numbers of one type and gives two of it as an array.
template <class Convert>
void expectLanesAreIndependent(double rangeX, double rangeY, const Convert& convert) {
    forPairs(1.0, [&](double first, double second) {
        const auto packs =
            convert(Pack(rangeX * first, rangeX * second), Pack(rangeY * second, rangeY * first));
        const auto one = convert(rangeX * first, rangeY * second);
        const auto other = convert(rangeX * second, rangeY * first);
        for (std::size_t i = 0; i < 2; ++i) {
            expectSame(one[i], packs[i].lanes[0]);
            expectSame(other[i], packs[i].lanes[1]);
        }
    });
}

/// The plane point that a formula gives, which may tell of the equator besides.
template <class T, class Formula>
Plane<T> imageBy(const Formula& formula, const Geographic<T>& point) {
    if constexpr (requires(Mask<T> flag) { formula.forward(point, flag); }) {
        Mask<T> isOnEquator(false);
        return formula.forward(point, isOnEquator);
    } else {
        return formula.forward(point);
    }
}

/// Compares a projection of the sphere about each pole; the pole itself is among the points.
template <class Formula>
void expectLanesOfAPolarFormulaAreIndependent() {
    for (const bool isNorth : {true, false}) {
        const Formula formula{{radians(-45.0), {0.0, 0.0}, isNorth}, kA};
        expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
            const auto [x, y] = imageBy<T>(formula, {lambda, phi});
            return std::array<T, 2>{x, y};
        });
        expectLanesAreIndependent(3e7, 3e7, [&]<class T>(T x, T y) {
            const auto [lambda, phi] = formula.template inverse<T>({x, y});
            return std::array<T, 2>{lambda, phi};
        });
        expectLanesAreIndependent(2e-8, 2e-8, [&]<class T>(T x, T y) {
            const auto [lambda, phi] = formula.template inverse<T>({x, y});
            return std::array<T, 2>{lambda, phi};
        });
    }
}

} // namespace

TEST(FormulasOnPacks, DirectMercator) {
    DirectMercator mercator;
    for (const double s : {1.0, 1.7}) {
        mercator.init(kA, radians(10.0), radians(20.0), {500000.0, 0.0}, kE, s);
        expectLanesAreIndependent(8.0, 1.6, [&]<class T>(T lambda, T phi) {
            const auto [x, y] = mercator.forward<T>({lambda, phi}, radians(10.0), kE, s);
            return std::array<T, 2>{x, y};
        });
        expectLanesAreIndependent(3e7, 2e7, [&]<class T>(T x, T y) {
            const auto [lambda, phi] = mercator.inverse<T>({x, y}, kE, s);
            return std::array<T, 2>{lambda, phi};
        });
    }
}

TEST(FormulasOnPacks, GctpMercator) {
    expectLanesAreIndependent(20.0, 1.6, []<class T>(T lambda, T phi) {
        const auto [x, y] = GctpMercator::forward<T>({lambda, phi}, 0.2, {500000.0, 0.0}, kA, kE);
        return std::array<T, 2>{x, y};
    });
    expectLanesAreIndependent(3e7, 2e7, []<class T>(T x, T y) {
        Mask<T> converged(false);
        const auto [lambda, phi] = GctpMercator::inverse<T>({x, y}, 0.2, {500000.0, 0.0}, kA, kE, converged);
        return std::array<T, 2>{lambda, select(converged, phi, T(-9.0))};
    });
}

TEST(FormulasOnPacks, TransverseMercator) {
    TransverseMercator transverse;
    transverse.init(kA, kE2, radians(3.0), radians(49.0), {400000.0, -100000.0}, 0.9996);
    expectLanesAreIndependent(1.2, 1.5, [&]<class T>(T lambda, T phi) {
        const auto [x, y] = transverse.forward<T>({lambda, phi}, kE);
        return std::array<T, 2>{x, y};
    });
    expectLanesAreIndependent(4e6, 9e6, [&]<class T>(T x, T y) {
        const auto [lambda, phi] = transverse.inverse<T>({x, y}, kE);
        return std::array<T, 2>{lambda, phi};
    });
}

TEST(FormulasOnPacks, LambertConformalConic) {
    constexpr Plane<double> apex{700000.0, 12000000.0};
    for (const double e2 : kEccentricitiesSquared) {
        for (const bool isSecant : {true, false}) {
            LambertConformalConic lambert;
            lambert.initOrigin(radians(3.0), radians(46.5), std::sqrt(e2));
            isSecant ? lambert.initSecant(kA, radians(49.0), radians(44.0)) : lambert.initTangent(kA, 0.999);
            expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
                const auto [x, y] = lambert.forward<T>({lambda, phi}, apex);
                return std::array<T, 2>{x, y};
            });
            expectLanesAreIndependent(2e7, 3e7, [&]<class T>(T x, T y) {
                const auto [lambda, phi] = lambert.inverse<T>({x, y}, apex);
                return std::array<T, 2>{lambda, phi};
            });
        }
    }
}

TEST(FormulasOnPacks, HotineObliqueMercator) {
    const HotineObliqueMercator::Definition definition{
        radians(115.0), radians(4.0), radians(53.3), radians(53.1),
        0.99984,        false,        false,         {590000.0, 440000.0}};
    for (const double e2 : kEccentricitiesSquared) {
        for (const bool uIsFromCentre : {true, false}) {
            for (const double azimuth : {53.3, 90.0}) {
                HotineObliqueMercator oblique;
                auto itsDefinition = definition;
                itsDefinition.uIsFromCentre = uIsFromCentre;
                itsDefinition.azimuth = radians(azimuth);
                oblique.init(kA, e2, itsDefinition);
                expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
                    const auto [x, y] = oblique.forward<T>({lambda, phi});
                    return std::array<T, 2>{x, y};
                });
                expectLanesAreIndependent(2e7, 2e7, [&]<class T>(T x, T y) {
                    const auto [lambda, phi] = oblique.inverse<T>({x, y});
                    return std::array<T, 2>{lambda, phi};
                });
            }
        }
    }
}

TEST(FormulasOnPacks, SwissObliqueMercator) {
    for (const double e2 : kEccentricitiesSquared) {
        SwissObliqueMercator swiss;
        swiss.init(kA, e2, radians(7.4), radians(46.95), 1.0);
        expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
            const auto [x, y] = swiss.forward<T>({lambda, phi});
            return std::array<T, 2>{x, y};
        });
        expectLanesAreIndependent(2e7, 2e7, [&]<class T>(T x, T y) {
            const auto [lambda, phi] = swiss.inverse<T>({x, y});
            return std::array<T, 2>{lambda, phi};
        });
    }
}

TEST(FormulasOnPacks, Bonne) {
    for (const double phi1 : {45.0, -45.0}) {
        Bonne bonne;
        bonne.init(kA, kE2, radians(2.3), radians(phi1));
        expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
            const auto [x, y] = bonne.forward<T>({lambda, phi});
            return std::array<T, 2>{x, y};
        });
        expectLanesAreIndependent(2e7, 2e7, [&]<class T>(T x, T y) {
            const auto [lambda, phi] = bonne.inverse<T>({x, y});
            return std::array<T, 2>{lambda, phi};
        });
    }
}

TEST(FormulasOnPacks, CassiniSoldner) {
    constexpr Plane<double> falseOrigin{86501.0, 65379.0};
    CassiniSoldner cassini;
    cassini.init(kA, kE2, radians(-61.0), radians(10.0));
    expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
        const auto [x, y] = cassini.forward<T>({lambda, phi}, falseOrigin);
        return std::array<T, 2>{x, y};
    });
    expectLanesAreIndependent(2e7, 2e7, [&]<class T>(T x, T y) {
        const auto [lambda, phi] = cassini.inverse<T>({x, y}, falseOrigin);
        return std::array<T, 2>{lambda, phi};
    });
}

TEST(FormulasOnPacks, Equirectangular) {
    constexpr Equirectangular equirectangular{kA * 0.5, kA};
    expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
        const auto [x, y] = equirectangular.forward<T>({lambda, phi});
        return std::array<T, 2>{x, y};
    });
    expectLanesAreIndependent(2e7, 2e7, [&]<class T>(T x, T y) {
        const auto [lambda, phi] = equirectangular.inverse<T>({x, y});
        return std::array<T, 2>{lambda, phi};
    });
}

TEST(FormulasOnPacks, PolarStereographic) {
    for (const double e2 : kEccentricitiesSquared) {
        PolarStereographic stereographic;
        stereographic.init(kA, e2, 0.994);
        for (const bool isNorth : {true, false}) {
            const PolarPlane plane{radians(-45.0), {2000000.0, 1000000.0}, isNorth};
            expectLanesAreIndependent(4.0, 1.6, [&]<class T>(T lambda, T phi) {
                const auto [x, y] = stereographic.forward<T>({lambda, phi}, plane);
                return std::array<T, 2>{x, y};
            });
            expectLanesAreIndependent(3e7, 3e7, [&]<class T>(T x, T y) {
                Iterated<T> latitude{};
                const auto [lambda, phi] = stereographic.inverse<T>({x, y}, plane, latitude);
                return std::array<T, 2>{lambda, select(latitude.converged, phi, T(-9.0))};
            });
        }
    }
}

TEST(FormulasOnPacks, PolarAzimuthal) { expectLanesOfAPolarFormulaAreIndependent<PolarAzimuthal>(); }

TEST(FormulasOnPacks, PolarGnomonic) {
    expectLanesOfAPolarFormulaAreIndependent<PolarGnomonic>();
    const PolarGnomonic gnomonic{{0.0, {0.0, 0.0}, true}, kA};
    expectLanesAreIndependent(1.0, 2e-8, [&]<class T>(T lambda, T phi) {
        Mask<T> isOnEquator(false);
        const auto [x, y] = gnomonic.forward<T>({lambda, phi}, isOnEquator);
        return std::array<T, 2>{x, select(isOnEquator, T(1.0), T(0.0))};
    });
}

TEST(FormulasOnPacks, DatumShifts) {
    const AbridgedMolodensky molodensky{84.87, 96.49, 116.95, 90.0, kA, kE2};
    expectLanesAreIndependent(3.0, 1.5, [&]<class T>(T lambda, T phi) {
        const auto shifted = molodensky.shifted<T>({lambda, phi});
        return std::array<T, 2>{shifted.lambda, shifted.phi};
    });
    const Helmert helmert{446.448, -125.157, 542.06, 7e-7, 1.2e-6, 4e-6, 1.0 - 20.489e-6};
    expectLanesAreIndependent(3.0, 1.5, [&]<class T>(T lambda, T phi) {
        const Geographic<T> point{lambda, phi};
        const auto there = helmert.forward(geocentricFromGeodetic(point, kA, kE2));
        const auto shifted = geodeticFromGeocentric(helmert.inverse(there), kA, kE2);
        return std::array<T, 2>{shifted.lambda, shifted.phi};
    });
}
