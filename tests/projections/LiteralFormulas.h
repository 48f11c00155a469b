#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

/// The formulas of the Mercator projections as they are published, term by term, in the widest arithmetic
/// that the compiler has: what the library's own forms, rearranged for speed and for accuracy in double
/// precision, are measured against.
///
/// Radians of parameters and of the limit of 89 degrees, false origins and scale factors enter as the
/// doubles that the library has; all that follows is long double. (Where long double is double, the
/// comparison shows the sum of both errors.)
namespace literal {

using Real = long double;

inline constexpr Real pi = std::numbers::pi_v<Real>;

struct Point {
    Real x; ///< easting, or longitude
    Real y; ///< northing, or latitude
};

/// A latitude and how close a call the end of its iteration was.
struct IteratedLatitude {
    Real phi;
    Real stopMargin; ///< of all passes the least distance of the change of latitude from the tolerance
};

/// A geographic point and the same of its latitude.
struct IteratedPoint {
    Point point;
    Real stopMargin;
};

/// Isometric latitude with latitude scale factor, held at 89 degrees (Snyder, equation 7-8).
inline Real isometricLatitude(Real phi, Real e, Real s = 1.0L) {
    if (!(e >= 0.0L && e < 1.0L)) {
        return -1.0L;
    }
    const Real limit = 89.0 * std::numbers::pi / 180.0;
    if (s * phi > limit) {
        phi = limit / s;
    }
    if (s * phi < -limit) {
        phi = -limit / s;
    }
    const Real q = e * std::sin(phi);
    return (std::log(std::tan(s * phi / 2.0L + pi / 4.0L)) - e / 2.0L * std::log((1.0L + q) / (1.0L - q))) /
           s;
}

/// Inverse of it by repeated substitution (Snyder, equation 7-9), until a pass changes the latitude by
/// the tolerance at most.
inline IteratedLatitude inverseIsometricLatitude(Real u, Real e, Real s = 1.0L, Real tolerance = 1e-11L) {
    const Real t = std::exp(s * u);
    Real phi = (2.0L * std::atan(t) - pi / 2.0L) / s;
    Real stopMargin = tolerance;
    Real difference = 0.0L;
    do {
        const Real previous = phi;
        const Real q = e * std::sin(previous);
        phi = (2.0L * std::atan(t * std::pow((1.0L + q) / (1.0L - q), e / 2.0L)) - pi / 2.0L) / s;
        difference = std::abs(phi - previous);
        stopMargin = std::min(stopMargin, std::abs(difference - tolerance));
    } while (difference > tolerance);
    return {phi, stopMargin};
}

/// Direct Mercator (Snyder, equations 7-6 to 7-9) with northings from phi0; `gctp` for northings from the
/// equator, no scale factor, and the inverse's tolerance of 1e-10.
struct DirectMercator {
    Real a, e2;
    double lambda0, phi0; ///< radians
    Real x0, y0, k0;
    Real s = 1.0L;
    bool gctp = false;

    Real e() const { return std::sqrt(e2); }
    Real scale() const {
        const Real sinPhi0 = std::sin(Real(phi0));
        const Real trueScale = a * std::cos(Real(phi0)) / std::sqrt(1.0L - e2 * sinPhi0 * sinPhi0);
        return gctp ? trueScale : k0 * trueScale;
    }
    Real northingOfEquator() const { return gctp ? y0 : y0 - scale() * isometricLatitude(phi0, e(), s); }

    /// Of a longitude within half a turn of the central meridian.
    Point forward(double lambda, double phi) const {
        return {x0 + scale() * (Real(lambda) - lambda0), northingOfEquator() + scale() * psi(phi)};
    }

    IteratedPoint inverse(double x, double y) const {
        const auto [phi, stopMargin] =
            inverseIsometricLatitude((y - northingOfEquator()) / scale(), e(), s, gctp ? 1e-10L : 1e-11L);
        return {{lambda0 + (x - x0) / scale(), phi}, stopMargin};
    }

  private:
    Real psi(Real phi) const {
        if (!gctp) {
            return isometricLatitude(phi, e(), s);
        }
        const Real q = e() * std::sin(phi);
        const Real ts = std::tan((pi / 2.0L - phi) / 2.0L) / std::pow((1.0L - q) / (1.0L + q), e() / 2.0L);
        return -std::log(ts);
    }
};

/// Transverse Mercator by series in e² to its fourth power.
struct TransverseMercator {
    Real a, e2;
    double lambda0, phi0; ///< radians
    Real x0, y0, k0;

    Real e() const { return std::sqrt(e2); }

    /// M1 to M5, coefficients of the meridian arc.
    std::array<Real, 5> arc() const {
        const auto [p2, p4, p6, p8] = powers();
        return {1.0L - p2 / 4.0L - 3.0L * p4 / 64.0L - 5.0L * p6 / 256.0L - 175.0L * p8 / 16384.0L,
                -3.0L * p2 / 8.0L - 3.0L * p4 / 32.0L - 45.0L * p6 / 1024.0L - 105.0L * p8 / 4096.0L,
                15.0L * p4 / 256.0L + 45.0L * p6 / 1024.0L + 525.0L * p8 / 16384.0L,
                -35.0L * p6 / 3072.0L - 175.0L * p8 / 12288.0L, 315.0L * p8 / 131072.0L};
    }

    /// Coefficients of the way to the plane.
    std::array<Real, 4> alpha() const {
        const auto [p2, p4, p6, p8] = powers();
        return {p2 / 8.0L - p4 / 96.0L - 9.0L * p6 / 1024.0L - 901.0L * p8 / 184320.0L,
                13.0L * p4 / 768.0L + 17.0L * p6 / 5120.0L - 311.0L * p8 / 737280.0L,
                61.0L * p6 / 15360.0L + 899.0L * p8 / 430080.0L, 49561.0L * p8 / 41287680.0L};
    }

    /// Coefficients of the way back.
    std::array<Real, 4> beta() const {
        const auto [p2, p4, p6, p8] = powers();
        return {p2 / 8.0L + p4 / 48.0L + 7.0L * p6 / 2048.0L + p8 / 61440.0L,
                p4 / 768.0L + 3.0L * p6 / 1280.0L + 559.0L * p8 / 368640.0L,
                17.0L * p6 / 30720.0L + 283.0L * p8 / 430080.0L, 4397.0L * p8 / 41287680.0L};
    }

    Real northingOfEquator() const {
        const auto m = arc();
        Real length = m[0] * phi0;
        for (int j = 1; j <= 4; ++j) {
            length += m[static_cast<std::size_t>(j)] * std::sin(2.0L * j * phi0);
        }
        return y0 - a * k0 * length;
    }

    Point forward(double lambda, double phi) const {
        const Real q = isometricLatitude(phi, e());
        const Real dLambda = Real(lambda) - lambda0;
        const Real xi = std::atan(std::sinh(q) / std::cos(dLambda));
        const Real eta = isometricLatitude(std::asin(std::sin(dLambda) / std::cosh(q)), 0.0L);
        const Real m1 = arc()[0];
        const auto c = alpha();
        Real x = x0 + a * k0 * m1 * eta;
        Real y = northingOfEquator() + a * k0 * m1 * xi;
        for (int j = 1; j <= 4; ++j) {
            const Real term = a * k0 * c[static_cast<std::size_t>(j - 1)];
            x += term * std::cos(2.0L * j * xi) * std::sinh(2.0L * j * eta);
            y += term * std::sin(2.0L * j * xi) * std::cosh(2.0L * j * eta);
        }
        return {x, y};
    }

    IteratedPoint inverse(double x, double y) const {
        const Real k = arc()[0] * a * k0;
        const Real u = (x - x0) / k;
        const Real v = (y - northingOfEquator()) / k;
        const auto c = beta();
        Real xi = v;
        Real eta = u;
        for (int j = 1; j <= 4; ++j) {
            const Real term = c[static_cast<std::size_t>(j - 1)];
            xi -= term * std::sin(2.0L * j * v) * std::cosh(2.0L * j * u);
            eta -= term * std::cos(2.0L * j * v) * std::sinh(2.0L * j * u);
        }
        const Real lambda = std::atan2(std::sinh(eta), std::cos(xi)) + lambda0;
        const Real psi = isometricLatitude(std::asin(std::sin(xi) / std::cosh(eta)), 0.0L);
        const auto [phi, stopMargin] = inverseIsometricLatitude(psi, e());
        return {{lambda, phi}, stopMargin};
    }

  private:
    /// e², e⁴, e⁶, e⁸.
    std::array<Real, 4> powers() const { return {e2, e2 * e2, e2 * e2 * e2, e2 * e2 * e2 * e2}; }
};

} // namespace literal
