#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

/// What a polar stereographic projection is defined by, and its formulas term by term (Snyder, equations
/// 21-33 to 21-40 with 7-8), without a false northing in the south, where this class has another way back.
struct PolarStereographic {
    double lambda0; // degrees
    double falseEasting, falseNorthing, k0;
    bool isNorth;
    EllipsoidSize size;

    Real e() const { return std::sqrt(Real(size.e2)); }
    Real C() const {
        return std::pow((1.0L - e()) / (1.0L + e()), e() / 2.0L) * (2.0L * size.a * k0) /
               std::sqrt(1.0L - size.e2);
    }
    Real sign() const { return isNorth ? 1.0L : -1.0L; }

    Point forward(double lambda, double phi) const {
        const Real mirrored = sign() * phi;
        const Real q = e() * std::sin(mirrored);
        const Real psi =
            std::log(std::tan(mirrored / 2.0L + pi / 4.0L)) - e() / 2.0L * std::log((1.0L + q) / (1.0L - q));
        const Real rho = std::exp(-psi) * C();
        const Real fromMeridian = Real(lambda) - tq_deg2rad(lambda0);
        return {rho * std::sin(fromMeridian) + falseEasting,
                falseNorthing - sign() * rho * std::cos(fromMeridian)};
    }

    Point inverse(double x, double y) const {
        const Real dx = Real(x) - falseEasting;
        const Real dy = sign() * (falseNorthing - Real(y));
        const Real u = -std::log(std::hypot(dx, dy) / C());
        return {tq_deg2rad(lambda0) + std::atan2(dx, dy),
                sign() * inverseIsometricLatitude(u, e(), 1.0L, 1e-6L).phi};
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        return {{"lambda0", lambda0},
                {"falseEasting", falseEasting},
                {"falseNorthing", falseNorthing},
                {"k0", k0},
                {"isNorth", isNorth ? 1.0 : 0.0}};
    }
};

} // namespace literal
