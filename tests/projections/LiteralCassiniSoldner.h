#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

/// What a Cassini-Soldner projection is defined by, and its formulas term by term (Snyder, equations 13-7 to
/// 13-14, 3-21 and 3-26), with the divisor 696 of this class where Snyder has 96.
struct CassiniSoldner {
    double lambda0, phi0; // degrees
    double x0, y0;
    EllipsoidSize size;

    Real arcFactor() const {
        const Real e2 = size.e2;
        return 1.0L - e2 / 4.0L - 3.0L * e2 * e2 / 64.0L - 5.0L * std::pow(e2, 3) / 256.0L -
               175.0L * std::pow(e2, 4) / 16384.0L;
    }
    Real M(Real phi) const {
        const Real e2 = size.e2;
        const Real e4 = e2 * e2;
        const Real e6 = e4 * e2;
        const Real e8 = e4 * e4;
        return size.a *
               (arcFactor() * phi +
                (-3.0L * e2 / 8.0L - 3.0L * e4 / 32.0L - 45.0L * e6 / 1024.0L - 105.0L * e8 / 4096.0L) *
                    std::sin(2.0L * phi) +
                (15.0L * e4 / 256.0L + 45.0L * e6 / 1024.0L + 525.0L * e8 / 16384.0L) * std::sin(4.0L * phi) +
                (-35.0L * e6 / 3072.0L - 175.0L * e8 / 12288.0L) * std::sin(6.0L * phi) +
                315.0L * e8 / 131072.0L * std::sin(8.0L * phi));
    }
    Real N(Real phi) const { return size.a / std::sqrt(1.0L - size.e2 * std::sin(phi) * std::sin(phi)); }

    Point forward(double lambda, double phi) const {
        const Real A = (Real(lambda) - tq_deg2rad(lambda0)) * std::cos(Real(phi));
        const Real T = std::pow(std::tan(Real(phi)), 2);
        const Real C = size.e2 * std::pow(std::cos(Real(phi)), 2) / (1.0L - size.e2);
        return {
            N(phi) * (A - T * std::pow(A, 3) / 6.0L - (8.0L - T + 8.0L * C) * T * std::pow(A, 5) / 120.0L) +
                x0,
            M(phi) + y0 - M(tq_deg2rad(phi0)) +
                N(phi) * std::tan(Real(phi)) *
                    (A * A / 2.0L + (5.0L - T + 6.0L * C) * std::pow(A, 4) / 24.0L)};
    }

    Real footpoint(Real mu, Real thirdDivisor) const {
        const Real b = std::sqrt(1.0L - size.e2);
        const Real e1 = (1.0L - b) / (1.0L + b);
        return mu + (3.0L * e1 / 2.0L - 27.0L * std::pow(e1, 3) / 32.0L) * std::sin(2.0L * mu) +
               (21.0L * e1 * e1 / 16.0L - 55.0L * std::pow(e1, 4) / 32.0L) * std::sin(4.0L * mu) +
               151.0L * std::pow(e1, 3) / thirdDivisor * std::sin(6.0L * mu) +
               1097.0L * std::pow(e1, 4) / 512.0L * std::sin(8.0L * mu);
    }

    Point inverse(double x, double y, Real thirdDivisor = 696.0L) const {
        const Real mu = (Real(y) - y0 + M(tq_deg2rad(phi0))) / (size.a * arcFactor());
        const Real phi1 = footpoint(mu, thirdDivisor);
        const Real T = std::pow(std::tan(phi1), 2);
        const Real R =
            size.a * (1.0L - size.e2) / std::pow(1.0L - size.e2 * std::sin(phi1) * std::sin(phi1), 1.5L);
        const Real D = (Real(x) - x0) / N(phi1);
        return {tq_deg2rad(lambda0) +
                    (D - T * std::pow(D, 3) / 3.0L + (1.0L + 3.0L * T) * T * std::pow(D, 5) / 15.0L) /
                        std::cos(phi1),
                phi1 - N(phi1) * std::tan(phi1) / R *
                           (D * D / 2.0L - (1.0L + 3.0L * T) * std::pow(D, 4) / 24.0L)};
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        return {{"lambda0", lambda0}, {"phi0", phi0}, {"X0", x0}, {"Y0", y0}};
    }
};

} // namespace literal
