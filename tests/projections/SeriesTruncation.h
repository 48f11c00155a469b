#pragma once

#include "projections/LiteralFormulas.h"

#include <array>
#include <cmath>

/// What the series of the transverse Mercator leave out by ending at e⁸, in metres: their difference from
/// the same series to the sixth power of the third flattening n, which at twice the order in the
/// flattening's square are the measure for them (C. F. F. Karney, Transverse Mercator with an accuracy of
/// a few nanometers, J. Geodesy 85, 2011, equations 14, 35 and 36).
class SeriesTruncation {
  public:
    SeriesTruncation(double a, double e2) : _a(a) {
        const literal::TransverseMercator ours{a, e2, 0.0, 0.0, 0.0L, 0.0L, 1.0L};
        const double m1 = static_cast<double>(ours.arc()[0]);
        const double b = std::sqrt(1.0 - e2);
        const double n = (1.0 - b) / (1.0 + b);
        const double n2 = n * n;
        const double rectifying = (1.0 + n2 / 4.0 + n2 * n2 / 64.0 + n2 * n2 * n2 / 256.0) / (1.0 + n);
        const Coefficients alpha = alphaInThirdFlattening(n);
        const Coefficients beta = betaInThirdFlattening(n);
        _radius = std::abs(rectifying - m1);
        for (std::size_t j = 0; j < 6; ++j) {
            const double ourAlpha = j < 4 ? static_cast<double>(ours.alpha()[j]) : 0.0;
            const double ourBeta = j < 4 ? static_cast<double>(ours.beta()[j]) : 0.0;
            _alpha[j] = std::abs(rectifying * alpha[j] - ourAlpha);
            _beta[j] = std::abs(beta[j] - ourBeta);
        }
        // The first terms that the meridian arc leaves out, coefficients of e^10 (Snyder, equation 3-21,
        // continued): 441/65536, 2205/131072, 1575/65536, 3675/262144, 2205/524288, 693/1310720.
        _arc = a * std::pow(e2, 5) *
               (441.0 / 65536 + 2205.0 / 131072 + 1575.0 / 65536 + 3675.0 / 262144 + 2205.0 / 524288 +
                693.0 / 1310720);
    }

    /// Of the way to the plane.
    /// @param xi northing on the sphere of radius 1
    /// @param eta easting on the sphere of radius 1
    double forward(double xi, double eta) const { return _a * bound(_alpha, xi, eta); }

    /// Of the way back; parameters as for forward(), of the plane point over the radius.
    double inverse(double xi, double eta) const {
        // A metre on the sphere's map is a metre on the ground at most, but for the ellipsoid's form.
        const double form = 1.01;
        return form * _a * bound(_beta, xi, eta);
    }

    /// Of the northing of a latitude of origin.
    double arc() const { return _arc; }

  private:
    using Coefficients = std::array<double, 6>;

    static Coefficients alphaInThirdFlattening(double n) {
        const auto p = powers(n);
        return {p[0] / 2 - 2 * p[1] / 3 + 5 * p[2] / 16 + 41 * p[3] / 180 - 127 * p[4] / 288 +
                    7891 * p[5] / 37800,
                13 * p[1] / 48 - 3 * p[2] / 5 + 557 * p[3] / 1440 + 281 * p[4] / 630 -
                    1983433 * p[5] / 1935360,
                61 * p[2] / 240 - 103 * p[3] / 140 + 15061 * p[4] / 26880 + 167603 * p[5] / 181440,
                49561 * p[3] / 161280 - 179 * p[4] / 168 + 6601661 * p[5] / 7257600,
                34729 * p[4] / 80640 - 3418889 * p[5] / 1995840,
                212378941 * p[5] / 319334400};
    }

    static Coefficients betaInThirdFlattening(double n) {
        const auto p = powers(n);
        return {p[0] / 2 - 2 * p[1] / 3 + 37 * p[2] / 96 - p[3] / 360 - 81 * p[4] / 512 +
                    96199 * p[5] / 604800,
                p[1] / 48 + p[2] / 15 - 437 * p[3] / 1440 + 46 * p[4] / 105 - 1118711 * p[5] / 3870720,
                17 * p[2] / 480 - 37 * p[3] / 840 - 209 * p[4] / 4480 + 5569 * p[5] / 90720,
                4397 * p[3] / 161280 - 11 * p[4] / 504 - 830251 * p[5] / 7257600,
                4583 * p[4] / 161280 - 108847 * p[5] / 3991680,
                20648693 * p[5] / 638668800};
    }

    static Coefficients powers(double n) {
        return {n, n * n, n * n * n, std::pow(n, 4), std::pow(n, 5), std::pow(n, 6)};
    }

    double bound(const Coefficients& c, double xi, double eta) const {
        double sum = _radius * std::hypot(xi, eta);
        for (std::size_t j = 0; j < 6; ++j) {
            sum += c[j] * std::cosh(2.0 * static_cast<double>(j + 1) * eta);
        }
        return sum;
    }

    double _a;
    double _radius = 0.0;
    double _arc = 0.0;
    Coefficients _alpha{};
    Coefficients _beta{};
};
