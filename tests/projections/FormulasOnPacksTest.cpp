#include "testing/Pack.h"

#include "ellipsoid/formulas/AbridgedMolodensky.h"
#include "ellipsoid/formulas/Helmert.h"
#include "projections/formulas/DirectMercator.h"
#include "projections/formulas/GctpMercator.h"
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
