#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

/// What a Lambert projection is defined by, and its formulas term by term (Snyder, equations 15-1 to 15-11).
struct Lambert {
    double lambda0, latitudeOrigin; // degrees
    double x0, y0;
    bool tangent;
    double k0, stdPar1, stdPar2;
    EllipsoidSize size;

    Real e() const { return std::sqrt(Real(size.e2)); }
    double phi0() const { return tq_deg2rad(latitudeOrigin); }

    Real psi(Real phi) const {
        const Real q = e() * std::sin(phi);
        return std::log(std::tan(phi / 2.0L + pi / 4.0L)) - e() / 2.0L * std::log((1.0L + q) / (1.0L - q));
    }
    Real primeVerticalRadius(Real phi) const {
        return size.a / std::sqrt(1.0L - size.e2 * std::sin(phi) * std::sin(phi));
    }
    Real parallelRadius(Real phi) const { return primeVerticalRadius(phi) * std::cos(phi); }

    Real n() const {
        const double phi1 = tq_deg2rad(stdPar1);
        const double phi2 = tq_deg2rad(stdPar2);
        return tangent ? std::sin(Real(phi0()))
                       : std::log(parallelRadius(phi2) / parallelRadius(phi1)) / (psi(phi1) - psi(phi2));
    }
    Real rho0() const {
        return tangent ? primeVerticalRadius(phi0()) * k0 / std::tan(Real(phi0())) : rho(phi0());
    }
    Real F() const {
        return tangent ? rho0() * std::exp(psi(phi0()) * n())
                       : std::exp(n() * psi(tq_deg2rad(stdPar1))) * parallelRadius(tq_deg2rad(stdPar1)) / n();
    }
    Real rho(Real phi) const { return F() * std::exp(-n() * psi(phi)); }
    Point apex() const { return {x0, y0 + rho0()}; }

    Point forward(double lambda, double phi) const {
        const Real theta = n() * (Real(lambda) - tq_deg2rad(lambda0));
        return {apex().x + rho(phi) * std::sin(theta), apex().y - rho(phi) * std::cos(theta)};
    }

    Point inverse(double x, double y) const {
        const Real dx = x - apex().x;
        const Real dy = apex().y - y;
        const Real u = -std::log(std::abs(std::hypot(dx, dy) / F())) / n();
        return {std::atan(dx / dy) / n() + tq_deg2rad(lambda0), latitude(u)};
    }

    Real latitude(Real u) const {
        if (std::abs(u) <= 1e-10L) {
            return 0.0L;
        }
        Real phi = 2.0L * std::atan(std::exp(u)) - pi / 2.0L;
        for (;;) {
            const Real d = psi(phi) - u;
            if (std::abs(d / u) <= 1e-6L && std::abs(d) <= 1e-10L) {
                return phi;
            }
            const Real q = e() * std::sin(phi);
            phi = 2.0L * std::atan(std::exp(e() / 2.0L * std::log((1.0L + q) / (1.0L - q)) + u)) - pi / 2.0L;
        }
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        return {{"lambda0", lambda0},
                {"latitudeOrigin", latitudeOrigin},
                {"X0", x0},
                {"Y0", y0},
                {"Tangent", tangent ? 1.0 : 0.0},
                {"k0", k0},
                {"stdPar1", stdPar1},
                {"stdPar2", stdPar2}};
    }
};

} // namespace literal
