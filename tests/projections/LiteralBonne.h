#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

/// What a Bonne projection is defined by, and its formulas term by term (Snyder, equations 19-1 to 19-11,
/// 3-21 and 3-26), with the way back of a southern standard parallel as this class has it.
struct Bonne {
    double lambda0, standardParallel; // degrees
    EllipsoidSize size;

    double phi1() const { return tq_deg2rad(standardParallel); }
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

    Point forward(double lambda, double phi) const {
        const Real rho = Y() + M(phi1()) - M(phi);
        const Real angle = size.a * m(phi) * (Real(lambda) - tq_deg2rad(lambda0)) / rho;
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

    Point inverse(double x, double y) const {
        const bool isSouthern = phi1() < 0.0;
        const Real distance = std::sqrt(Real(x) * x + (Y() - y) * (Y() - y));
        const Real rho = isSouthern ? -distance : distance;
        const Real phi = latitude((Y() + M(phi1()) - rho) / (size.a * arcFactor()));
        const Real angle = isSouthern ? std::atan2(Real(-x), -Y() - y) : std::atan2(Real(x), Y() - y);
        const bool isPole = std::abs(std::abs(phi) - pi / 2.0L) < 1e-6L;
        return {isPole ? tq_deg2rad(lambda0) : tq_deg2rad(lambda0) + rho * angle / (size.a * m(phi)), phi};
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        return {{"lambda0", lambda0}, {"standardParallel", standardParallel}};
    }
};

} // namespace literal
