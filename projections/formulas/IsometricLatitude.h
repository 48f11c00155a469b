#pragma once

#include "ellipsoid/formulas/Iteration.h"

#include <limits>

namespace tq::formulas {

/// Latitude, in radians, at which isometricLatitude() holds a latitude nearer to a pole: 89 degrees.
inline constexpr double isometricLatitudeLimit = radians(89.0);

/// Whether an eccentricity is not outside [0, 1); what is not a number is not, and leads to none.
constexpr bool isEccentricity(double e) { return !(e < 0.0 || e >= 1.0); }

/// A latitude held at 89 degrees, divided by the latitude scale factor.
/// @param phi latitude in radians
/// @param s latitude scale factor
template <class T>
T heldLatitude(const T& phi, double s = 1.0) {
    using std::abs;
    const double limit = isometricLatitudeLimit / s;
    const T scaled = s * phi;
    return select(abs(scaled) > isometricLatitudeLimit, select(scaled < 0.0, T(-limit), T(limit)), phi);
}

/// Largest squared eccentricity for which the series in it hold as they are cut off here; the ellipsoids of
/// the Earth have 0.0066 to 0.0069.
inline constexpr double smallEccentricitySquared = 0.01;

/// Whether the series in the eccentricity hold.
constexpr bool isSmallEccentricity(double e) { return e * e <= smallEccentricitySquared; }

/// What the ellipsoid takes away from the isometric latitude of the sphere: e·artanh(e·sin φ). The series for
/// a small eccentricity leaves out less than 1e-17.
/// @param sinPhi sine of the latitude
/// @param e first eccentricity
template <class T>
T eccentricityTerm(const T& sinPhi, double e) {
    using std::log;
    const T q = e * sinPhi;
    if (isSmallEccentricity(e)) {
        const T x = q * q;
        const T x2 = x * x;
        return e * q *
               (1.0 + x * (1.0 / 3.0) +
                x2 * (1.0 / 5.0 + x * (1.0 / 7.0) + x2 * (1.0 / 9.0 + x * (1.0 / 11.0) + x2 * (1.0 / 13.0))));
    }
    return e / 2.0 * log((1.0 + q) / (1.0 - q));
}

/// Isometric latitude of the sphere, ln tan(φ/2 + π/4) or arsinh tan φ: exactly 0 at the equator and odd. Not
/// a number beyond the poles; a latitude that rounding has led past a pole, by 3e-16 at the most, is at it.
/// @param phi sine and cosine of the latitude
template <class T>
T sphericalIsometricLatitude(const Direction<T>& phi) {
    using std::abs, std::log1p;
    constexpr double atPole = 3e-16;
    const T sine = abs(phi.sine);
    const T size = abs(phi.cosine);
    const T cosine = select(size < atPole, size, phi.cosine);
    // ln(1 + x) of x = (sine + 1 - cosine) / cosine, without the difference that cancels near the equator.
    const T northern = log1p((sine + sine * sine / (1.0 + cosine)) / cosine);
    return select(phi.sine < 0.0, -northern, northern);
}

/// Isometric latitude (Snyder, equation 7-8) up to the poles: minus infinity at the south pole, where
/// tan(φ/2 + π/4) is 0, and 38 at the north pole, where it is 1/0 but for the rounding of π/2. An
/// eccentricity outside [0, 1) gives -1.
/// @param phi geodetic latitude in radians
/// @param e first eccentricity
template <class T>
T isometricLatitudeToThePoles(const T& phi, double e) {
    if (!isEccentricity(e)) {
        return T(-1.0);
    }
    const Direction<T> direction = sinCos(phi);
    const T psi = sphericalIsometricLatitude(direction) - eccentricityTerm(direction.sine, e);
    return select(phi == -pi / 2.0, T(-std::numeric_limits<double>::infinity()), psi);
}

/// Isometric latitude (Snyder, equation 7-8) with a latitude scale factor.
///
/// Latitudes beyond 89 degrees (divided by the scale factor) are taken as that limit, which keeps the
/// poles finite. An eccentricity outside [0, 1) gives -1.
/// @param phi geodetic latitude in radians
/// @param e first eccentricity
/// @param s latitude scale factor, 1 for the plain isometric latitude
template <class T>
T isometricLatitude(const T& phi, double e, double s = 1.0) {
    using std::sin;
    const T held = heldLatitude(phi, s);
    if (s == 1.0 || !isEccentricity(e)) {
        return isometricLatitudeToThePoles(held, e);
    }
    return (sphericalIsometricLatitude(sinCos(T(s * held))) - eccentricityTerm(T(sin(held)), e)) / s;
}

/// The stop test of an iteration of the latitude.
struct LatitudeStop {
    double tolerance; ///< the largest change of the latitude, in radians, that counts as none
    int passLimit;    ///< passes at the most
};

/// The stop test of the Mercator projections, 3 to 6 passes for the ellipsoids of the Earth.
inline constexpr LatitudeStop mercatorStop{1e-11, unlimitedPasses};

/// The latitude of an isometric latitude by repeated substitution (Snyder, equation 7-9), for every
/// eccentricity and latitude scale factor.
///
/// A latitude scale factor below about e² has no limit to converge to; the iteration then ends with its
/// pass limit.
/// @param u isometric latitude
/// @param e first eccentricity
/// @param s latitude scale factor
/// @param stop the stop test
template <class T>
Iterated<T> substitutedLatitude(const T& u, double e, double s, const LatitudeStop& stop) {
    using std::atan, std::exp, std::sin;
    const T t = exp(s * u);
    const auto improved = [&](const T& phi) {
        return (2.0 * atan(t * exp(eccentricityTerm(T(sin(phi)), e))) - pi / 2.0) / s;
    };
    return iterate((2.0 * atan(t) - pi / 2.0) / s, stop.tolerance, stop.passLimit, improved);
}

/// 1 - exp(-x) of a number of 0.0101 at the most, the eccentricity term of a small eccentricity; leaves out
/// less than 3e-18.
template <class T>
T smallLoss(const T& x) {
    const T x2 = x * x;
    return (x - 0.5 * x2) +
           x2 * x * ((1.0 / 6.0 - x * (1.0 / 24.0)) + x2 * (1.0 / 120.0 - x * (1.0 / 720.0)));
}

/// The same iteration, pass by pass, for a small eccentricity and a scale factor of 1, in a third of the
/// time; for a northern point.
///
/// A pass takes σ, what the ellipsoid adds to the isometric latitude, to g(σ) = e·artanh(e·tanh(ψ + σ)), from
/// σ = 0 on, where ψ is the isometric latitude and tanh(ψ + σ) the sine of the latitude. The first pass, to
/// σ1, and the second, to g(σ1), are computed; then the parabola that touches g at σ1 stands for it. At a
/// distance d from σ1 they differ by less than e²·|d|³, which is 1e-15 at the most.
template <class T>
class SubstitutionParabola {
  public:
    /// Passes that most latitudes take at least, on the ellipsoids of the Earth.
    static constexpr int usualPasses = 3;

    /// @param sinChi sine of the conformal latitude, tanh ψ
    /// @param w half-angle tangent of the conformal colatitude, exp(-ψ)
    /// @param e first eccentricity, a small one
    SubstitutionParabola(const T& sinChi, const T& w, double e)
        : _sigma1(eccentricityTerm(sinChi, e)), _w(w), _atanW(atanOf(w)) {
        const double e2 = e * e;
        const T x = _sigma1 * _sigma1;
        const T tanhSigma = _sigma1 * (1.0 - x * (1.0 / 3.0 - x * (2.0 / 15.0 - x * (17.0 / 315.0))));
        const T sine = (sinChi + tanhSigma) / (1.0 + sinChi * tanhSigma); // of the latitude at σ1
        const T sine2 = sine * sine;
        const T r = 1.0 / (1.0 - e2 * sine2);
        _step = eccentricityTerm(sine, e) - _sigma1;
        _slope = e2 * (1.0 - sine2) * r;
        _curvature = (e2 - 1.0) * sine * _slope * r;
        const T w1 = w - w * smallLoss(_sigma1);
        _secant = 0.5 * (1.0 + w1 * w1) / w1;
    }

    /// σ after the first pass; d is counted from it.
    const T& sigma1() const { return _sigma1; }
    /// Secant of the latitude at σ1: a change of σ is that of the latitude times it.
    const T& secant() const { return _secant; }
    /// The pass that takes d to the next.
    T operator()(const T& d) const { return _step + d * (_slope + d * _curvature); }
    /// The latitude at σ1 + d.
    T latitude(const T& d) const {
        // The arctangent of w can be computed beside the parabola; that of what is lost of it is small.
        const T lost = _w * smallLoss(T(_sigma1 + d));
        const T z = lost / (1.0 + _w * (_w - lost));
        const T z2 = z * z;
        const T atanZ = z - z * z2 * (1.0 / 3.0 - z2 * (1.0 / 5.0 - z2 * (1.0 / 7.0)));
        return (pi / 2.0 - 2.0 * _atanW) + 2.0 * atanZ;
    }

  private:
    static T atanOf(const T& x) {
        using std::atan;
        return atan(x);
    }

    T _sigma1;
    T _w;
    T _atanW;
    T _step;
    T _slope;
    T _curvature;
    T _secant;
};

/// The latitude by the parabola with a stop test on the latitude; for a northern point. The change that it
/// tells is that of σ. It always converges.
/// @param sinChi sine of the conformal latitude, tanh ψ
/// @param w half-angle tangent of the conformal colatitude, exp(-ψ)
/// @param e first eccentricity, a small one
/// @param stop the stop test
template <class T>
Iterated<T> parabolicLatitude(const T& sinChi, const T& w, double e, const LatitudeStop& stop) {
    const SubstitutionParabola<T> parabola(sinChi, w, e);
    const T tolerance = stop.tolerance * parabola.secant();
    const Mask<T> isFirstLast = parabola.sigma1() <= tolerance;
    const auto last =
        iterate(T(0.0), tolerance, stop.passLimit - 1, parabola, SubstitutionParabola<T>::usualPasses);
    const T d = select(isFirstLast, T(0.0), last.value);
    return {parabola.latitude(d), last.change, isFirstLast || last.converged};
}

/// The latitude of an isometric latitude; no limit near the poles.
/// @param u isometric latitude
/// @param e first eccentricity
/// @param s latitude scale factor, 1 for the plain isometric latitude
/// @param stop the stop test
template <class T>
Iterated<T> inverseIsometricLatitude(const T& u, double e, double s = 1.0,
                                     const LatitudeStop& stop = mercatorStop) {
    using std::abs, std::exp;
    if (s == 1.0 && isSmallEccentricity(e)) {
        const T w = exp(-abs(u));
        const auto north = parabolicLatitude((1.0 - w * w) / (1.0 + w * w), w, e, stop);
        return {select(u < 0.0, -north.value, north.value), north.change, north.converged};
    }
    return substitutedLatitude(u, e, s, stop);
}

/// The latitude of an isometric latitude as the Lambert conformal conic projection takes it: the same
/// iteration, ended before the pass that would change the isometric latitude by 1e-10 and by a millionth of
/// itself at most; the latitude that was tested is the result.
///
/// In double precision a latitude cannot meet such a test near a pole or very near the equator; here σ is
/// iterated, which can everywhere.
/// @param u isometric latitude
/// @param e first eccentricity
template <class T>
T testedLatitude(const T& u, double e) {
    using std::abs, std::atan, std::exp, std::tanh;
    constexpr double absolute = 1e-10;
    constexpr double relative = 1e-6;
    constexpr double equator = 1e-10;
    constexpr int passLimit = 1000;
    const T size = abs(u);
    const T tolerance = select(relative * size < absolute, relative * size, T(absolute));
    T north;
    if (isSmallEccentricity(e)) {
        const T w = exp(-size);
        const SubstitutionParabola<T> parabola((1.0 - w * w) / (1.0 + w * w), w, e);
        const auto last =
            iterate(T(0.0), tolerance, passLimit, parabola, SubstitutionParabola<T>::usualPasses);
        north = parabola.latitude(
            select(parabola.sigma1() <= tolerance, -parabola.sigma1(), last.value - last.change));
    } else {
        const auto last = iterate(T(0.0), tolerance, passLimit,
                                  [&](const T& sigma) { return eccentricityTerm(tanh(size + sigma), e); });
        north = pi / 2.0 - 2.0 * atan(exp(-(size + last.value - last.change)));
    }
    return select(size <= equator, T(0.0), select(u < 0.0, -north, north));
}

} // namespace tq::formulas
