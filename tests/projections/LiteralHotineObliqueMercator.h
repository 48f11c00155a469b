#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

inline constexpr int kHotine = 1;          ///< flag: counted from the natural origin
inline constexpr int kAzimuthAtOrigin = 2; ///< flag: the azimuth is that at the natural origin

/// What an oblique Mercator projection is defined by, and Hotine's formulas term by term (Snyder, equations
/// 9-11 to 9-48) with what this class does in another way.
struct HotineObliqueMercator {
    double longitudeCenter, latitudeCenter, azimuth, bearing; // degrees
    double kc, falseEasting, falseNorthing;
    int flags;
    EllipsoidSize size;

    double lambdaC() const { return tq_deg2rad(longitudeCenter); }
    double phiC() const { return tq_deg2rad(latitudeCenter); }
    Real e2() const { return size.e2; }
    Real e() const { return std::sqrt(e2()); }
    Real sign() const { return phiC() >= 0.0 ? 1.0L : -1.0L; }

    Real t(Real phi) const {
        const Real q = e() * std::sin(phi);
        return std::tan(pi / 4.0L - phi / 2.0L) / std::pow((1.0L - q) / (1.0L + q), e() / 2.0L);
    }
    Real w2() const { return 1.0L - e2() * std::sin(Real(phiC())) * std::sin(Real(phiC())); }
    Real B() const { return std::sqrt(1.0L + e2() * std::pow(std::cos(Real(phiC())), 4) / (1.0L - e2())); }
    Real A() const { return B() * size.a * kc * std::sqrt(1.0L - e2()) / w2(); }
    Real D() const { return B() * std::sqrt(1.0L - e2()) / (std::cos(Real(phiC())) * std::sqrt(w2())); }
    Real R() const { return D() >= 1.0L ? std::sqrt(D() * D() - 1.0L) : 0.0L; }
    Real F() const { return D() + sign() * R(); }
    Real gamma0() const {
        const Real given = tq_deg2rad(azimuth);
        return (flags & kAzimuthAtOrigin) != 0 ? given : std::asin(std::sin(given) / D());
    }
    Real alphaC() const {
        const Real given = tq_deg2rad(azimuth);
        return (flags & kAzimuthAtOrigin) != 0 ? std::asin(std::sin(given) * D()) : given;
    }
    Real lambda0() const {
        return lambdaC() - std::asin((F() - 1.0L / F()) / 2.0L * std::tan(gamma0())) / B();
    }
    bool nearNinety() const { return std::abs(alphaC() - pi / 2.0L) < 1e-6L; }
    Real uc() const {
        return nearNinety() ? (lambdaC() - lambda0()) * A()
                            : std::atan2(R(), std::cos(alphaC())) * (A() / B()) * sign();
    }

    Point forward(double lambda, double phi) const {
        const Real Q = F() * std::pow(t(phiC()) / t(phi), B());
        const Real S = (Q - 1.0L / Q) / 2.0L;
        const Real T = (Q + 1.0L / Q) / 2.0L;
        const Real V = std::sin(B() * (lambda - lambda0()));
        const Real U = (S * std::sin(gamma0()) - V * std::cos(gamma0())) / T;
        const Real v = A() * std::log((1.0L - U) / (1.0L + U)) / (2.0L * B());
        Real u =
            A() / B() *
            std::atan2(S * std::cos(gamma0()) + V * std::sin(gamma0()), std::cos(B() * (lambda - lambda0())));
        if ((flags & kHotine) == 0) {
            if (nearNinety()) {
                u = u - uc();
            } else {
                const Real s = lambda - lambdaC() >= 0.0 ? 1.0L : -1.0L;
                u = u + s * uc();
            }
        }
        const Real theta = tq_deg2rad(bearing);
        return {u * std::sin(theta) + v * std::cos(theta) + falseEasting,
                u * std::cos(theta) - v * std::sin(theta) + falseNorthing};
    }

    Point inverse(double x, double y, int passLimit = 15) const {
        const Real theta = tq_deg2rad(bearing);
        const Real dx = Real(x) - falseEasting;
        const Real dy = Real(y) - falseNorthing;
        const Real v = dx * std::cos(theta) - dy * std::sin(theta);
        Real u = dx * std::sin(theta) + dy * std::cos(theta);
        if ((flags & kHotine) == 0) {
            u = u + uc();
        }
        const Real Q = std::exp(-B() * v / A());
        const Real S = (Q - 1.0L / Q) / 2.0L;
        const Real T = (Q + 1.0L / Q) / 2.0L;
        const Real V = std::sin(B() * u / A());
        const Real U = (S * std::sin(theta) + V * std::cos(theta)) / T;
        const Real t1 = t(phiC()) * std::pow(F() / std::sqrt((1.0L + U) / (1.0L - U)), 1.0L / B());
        const Real lambda =
            lambda0() - std::atan2(S * std::cos(theta) - V * std::sin(theta), std::cos(B() * u / A())) / B();
        return {lambda, latitude(t1, passLimit)};
    }

    Real latitude(Real t1, int passLimit) const {
        Real phi = pi / 2.0L - 2.0L * std::atan(t1);
        for (int pass = 0; pass < passLimit; ++pass) {
            const Real before = phi;
            const Real q = e() * std::sin(phi);
            phi = pi / 2.0L - 2.0L * std::atan(t1 * std::pow((1.0L - q) / (1.0L + q), e() / 2.0L));
            if (std::abs(phi - before) <= 1e-10L) {
                break;
            }
        }
        return phi;
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        std::vector<MadeProjection::Parameter> all{{"longitudeCenter", longitudeCenter},
                                                   {"latitudeCenter", latitudeCenter},
                                                   {"azimuth", azimuth},
                                                   {"bearing", bearing},
                                                   {"kc", kc},
                                                   {"falseEasting", falseEasting},
                                                   {"falseNorthing", falseNorthing}};
        if ((flags & kHotine) != 0) {
            all.emplace_back("HotineFlag", 1.0);
        }
        if ((flags & kAzimuthAtOrigin) != 0) {
            all.emplace_back("AzimuthAtOriginFlag", 1.0);
        }
        return all;
    }
};

} // namespace literal
