#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

#include <array>

namespace tq::formulas {

/// A sum of sines of even multiples of an angle: Σ c[j]·sin(2(j + 1)φ) over j = 0 to 3, by Clenshaw's
/// recurrence.
/// @param c the four coefficients
/// @param sin2Phi,cos2Phi sine and cosine of twice the angle
template <class T>
T sineSeries(const std::array<double, 4>& c, const T& sin2Phi, const T& cos2Phi) {
    const T twice = 2.0 * cos2Phi;
    const T third = c[2] + twice * c[3];
    const T second = c[1] + twice * third - c[3];
    return (c[0] + twice * second - third) * sin2Phi;
}

/// Length of the meridian from the equator to a latitude by its series in e² (Snyder, equation 3-21), on an
/// ellipsoid with semi-major axis 1.
struct MeridianArc {
    double _linear = 0.0;           ///< factor of the latitude
    std::array<double, 4> _sines{}; ///< factors of the sines of 2, 4, 6 and 8 times the latitude

    /// The series to e⁸.
    /// @param e2 first eccentricity squared
    static MeridianArc toEighthPower(double e2) {
        const double e4 = e2 * e2;
        const double e6 = e4 * e2;
        const double e8 = e4 * e4;
        return {1.0 - e2 / 4.0 - 3.0 * e4 / 64.0 - 5.0 * e6 / 256.0 - 175.0 * e8 / 16384.0,
                {-3.0 * e2 / 8.0 - 3.0 * e4 / 32.0 - 45.0 * e6 / 1024.0 - 105.0 * e8 / 4096.0,
                 15.0 * e4 / 256.0 + 45.0 * e6 / 1024.0 + 525.0 * e8 / 16384.0,
                 -35.0 * e6 / 3072.0 - 175.0 * e8 / 12288.0, 315.0 * e8 / 131072.0}};
    }

    /// The series to e⁶.
    /// @param e2 first eccentricity squared
    static MeridianArc toSixthPower(double e2) {
        const double e4 = e2 * e2;
        const double e6 = e4 * e2;
        return {1.0 - e2 / 4.0 - 3.0 * e4 / 64.0 - 5.0 * e6 / 256.0,
                {-3.0 * e2 / 8.0 - 3.0 * e4 / 32.0 - 45.0 * e6 / 1024.0,
                 15.0 * e4 / 256.0 + 45.0 * e6 / 1024.0, -35.0 * e6 / 3072.0, 0.0}};
    }

    /// The length to a latitude.
    /// @param phi latitude in radians
    /// @param sinPhi,cosPhi its sine and cosine
    template <class T>
    T length(const T& phi, const T& sinPhi, const T& cosPhi) const {
        return _linear * phi +
               sineSeries(_sines, T(2.0 * sinPhi * cosPhi), T((cosPhi - sinPhi) * (cosPhi + sinPhi)));
    }

    /// The length to a latitude in radians.
    double length(double phi) const { return length(phi, std::sin(phi), std::cos(phi)); }
};

/// The latitude of a length of the meridian (Snyder, equations 3-24 and 3-26).
struct FootpointLatitude {
    /// The divisor of the third coefficient as Snyder has it.
    static constexpr double snyderThirdDivisor = 96.0;

    std::array<double, 4> _sines{}; ///< factors of the sines of 2, 4, 6 and 8 times the rectifying latitude

    /// The series of an ellipsoid.
    /// @param e2 first eccentricity squared
    /// @param thirdDivisor divisor of the third coefficient
    static FootpointLatitude of(double e2, double thirdDivisor = snyderThirdDivisor) {
        const double b = std::sqrt(1.0 - e2);
        const double e1 = (1.0 - b) / (1.0 + b);
        const double e1Squared = e1 * e1;
        return {{3.0 * e1 / 2.0 - 27.0 * e1 * e1Squared / 32.0,
                 21.0 * e1Squared / 16.0 - 55.0 * e1Squared * e1Squared / 32.0,
                 151.0 * e1 * e1Squared / thirdDivisor, 1097.0 * e1Squared * e1Squared / 512.0}};
    }

    /// The latitude of a rectifying latitude.
    /// @param mu rectifying latitude in radians
    template <class T>
    T latitude(const T& mu) const {
        const auto [sin2Mu, cos2Mu] = sinCos(T(2.0 * mu));
        return mu + sineSeries(_sines, sin2Mu, cos2Mu);
    }
};

} // namespace tq::formulas
