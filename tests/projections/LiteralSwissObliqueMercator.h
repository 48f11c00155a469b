#pragma once

#include "projections/LiteralFormulas.h"
#include "support/TQUnit.h"
#include "testing/MadeProjection.h"

#include <cmath>
#include <vector>

namespace literal {

/// What a Swiss oblique Mercator projection is defined by, and the rigorous formulas of swisstopo term by
/// term, with arcsines that are held at ±π/2.
struct SwissObliqueMercator {
    double longitudeCenter, latitudeCenter; // degrees
    double kc, falseEasting, falseNorthing;
    EllipsoidSize size;

    double lambda0() const { return tq_deg2rad(longitudeCenter); }
    double phi0() const { return tq_deg2rad(latitudeCenter); }
    Real e() const { return std::sqrt(Real(size.e2)); }

    static Real L(Real phi) { return std::log(std::tan(pi / 4.0L + phi / 2.0L)); }
    Real E(Real phi) const {
        const Real q = e() * std::sin(phi);
        return std::log((1.0L + q) / (1.0L - q));
    }
    static Real asinc(Real z) {
        if (std::abs(z) < 1.0L) {
            return std::asin(z);
        }
        return z < 0.0L ? -pi / 2.0L : pi / 2.0L;
    }
    Real alpha() const {
        return std::sqrt(1.0L + size.e2 * std::pow(std::cos(Real(phi0())), 4) / (1.0L - size.e2));
    }
    Real b0() const { return std::asin(std::sin(Real(phi0())) / alpha()); }
    Real K() const { return L(b0()) - alpha() * (L(phi0()) - e() / 2.0L * E(phi0())); }
    Real R() const {
        const Real sine = std::sin(Real(phi0()));
        return size.a * kc * std::sqrt(1.0L - size.e2) / (1.0L - size.e2 * sine * sine);
    }

    /// Of a longitude counted from the centre.
    Point forwardFromCentre(Real fromCentre, Real phi) const {
        const Real S = alpha() * (L(phi) - e() / 2.0L * E(phi)) + K();
        const Real b = 2.0L * std::atan(std::exp(S)) - pi / 2.0L;
        const Real l = alpha() * fromCentre;
        const Real turnedB = asinc(std::cos(b0()) * std::sin(b) - std::sin(b0()) * std::cos(b) * std::cos(l));
        const Real turnedL = asinc(std::sin(l) * std::cos(b) / std::cos(turnedB));
        return {R() * turnedL + falseEasting, R() * L(turnedB) + falseNorthing};
    }
    Point forward(double lambda, double phi) const {
        return forwardFromCentre(Real(lambda) - lambda0(), phi);
    }

    Point inverse(double x, double y) const {
        const Real turnedB = 2.0L * (std::atan(std::exp((Real(y) - falseNorthing) / R())) - pi / 4.0L);
        const Real turnedL = (Real(x) - falseEasting) / R();
        const Real b = asinc(std::sin(b0()) * std::cos(turnedB) * std::cos(turnedL) +
                             std::cos(b0()) * std::sin(turnedB));
        const Real l = asinc(std::sin(turnedL) * std::cos(turnedB) / std::cos(b));
        return {l / alpha() + lambda0(), latitude(b)};
    }

    Real latitude(Real b) const {
        const Real C = (K() - L(b)) / alpha();
        Real phi = b;
        for (int pass = 0; pass < 6; ++pass) {
            const Real s = L(phi) + C - e() / 2.0L * E(phi);
            const Real sine = std::sin(phi);
            const Real change = s * (1.0L - size.e2 * sine * sine) * std::cos(phi) / (1.0L - size.e2);
            phi = phi - change;
            if (std::abs(change) < 1e-10L) {
                break;
            }
        }
        return phi;
    }

    std::vector<MadeProjection::Parameter> parameters() const {
        return {{"longitudeCenter", longitudeCenter},
                {"latitudeCenter", latitudeCenter},
                {"kc", kc},
                {"falseEasting", falseEasting},
                {"falseNorthing", falseNorthing}};
    }
};

} // namespace literal
