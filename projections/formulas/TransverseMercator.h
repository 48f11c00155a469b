#pragma once

#include "projections/formulas/IsometricLatitude.h"
#include "projections/formulas/MeridianArc.h"

#include <array>

namespace tq::formulas {

/// Ellipsoidal transverse Mercator by series to the eighth power of the eccentricity in the Gauss-Schreiber
/// coordinates (L. Krüger, Konforme Abbildung des Erdellipsoids in der Ebene, 1912; the coefficients in
/// powers of e² as the Institut géographique national publishes them, note NTG 76).
///
/// The longitude enters by the tangent of the conformal latitude over the cosine of its difference from
/// the central meridian, so that points more than 90 degrees away come out on the near side, in the
/// other hemisphere.
struct TransverseMercator {
    using Series = std::array<double, 6>; ///< element 0 is not used

    double _lambda0Rad = 0.0;    ///< central meridian
    double _aK0 = 0.0;           ///< semi-major axis times scale factor
    double _falseEasting = 0.0;  ///< easting of the central meridian
    double _falseNorthing = 0.0; ///< northing of the equator
    Series _alpha{};             ///< M1 and the coefficients from Gauss-Schreiber to the plane
    Series _beta{};              ///< M1 and the coefficients of the way back
    MeridianArc _arc;            ///< series of the meridian arc, with M1 to M5

    /// Constants of an ellipsoid and the five parameters.
    /// @param a semi-major axis
    /// @param e2 first eccentricity squared
    /// @param lambda0 central meridian in radians
    /// @param phi0 latitude of origin in radians
    /// @param falseOrigin false easting and false northing
    /// @param k0 scale factor on the central meridian
    void init(double a, double e2, double lambda0, double phi0, const Plane<double>& falseOrigin, double k0) {
        initSeries(e2);
        _lambda0Rad = lambda0;
        _aK0 = a * k0;
        _falseEasting = falseOrigin.x;
        _falseNorthing = falseOrigin.y - _aK0 * _arc.length(phi0);
    }

    /// What the northings of the equator and of a pole differ by on the central meridian, metres.
    double quarterMeridian() const { return _aK0 * _beta[1] * (pi / 2.0); }

    /// The plane point of a geographic one; e is the first eccentricity.
    ///
    /// Sines and cosines of the Gauss-Schreiber coordinates ξ and η are never taken: with τ = tan χ of the
    /// conformal latitude χ, tan ξ = τ / cos Δλ and sinh η = sin Δλ / r, r² = τ² + cos² Δλ.
    template <class T>
    Plane<T> forward(const Geographic<T>& point, double e) const {
        using std::atan, std::sqrt;
        const auto [sinDelta, cosDelta] = sinCos(T(point.lambda - _lambda0Rad));
        const T tau = conformalTangent(point.phi, e);
        const T r2 = tau * tau + cosDelta * cosDelta;
        const T sinhEta = heldTangent(T(sinDelta / sqrt(r2)));
        const T coshEta = sqrt(1.0 + sinhEta * sinhEta);
        const T xi = atan(tau / cosDelta);
        const T eta = areaOfSine(sinhEta, coshEta);
        const T perR2 = 1.0 / r2;
        const Doubled<T> doubled{2.0 * tau * cosDelta * perR2, (cosDelta - tau) * (cosDelta + tau) * perR2,
                                 2.0 * sinhEta * coshEta, 1.0 + 2.0 * sinhEta * sinhEta};
        const Plane<T> sum = series(_alpha, doubled);
        return {_falseEasting + _aK0 * (_alpha[1] * eta + sum.x),
                _falseNorthing + _aK0 * (_alpha[1] * xi + sum.y)};
    }

    /// The geographic point of a plane one; e is the first eccentricity. The longitude is not wrapped.
    ///
    /// The Gauss-Schreiber coordinates themselves are never needed: their functions are those of the plane
    /// coordinates, turned by the sums of the series.
    template <class T>
    Geographic<T> inverse(const Plane<T>& point, double e) const {
        using std::abs, std::atan2, std::sqrt;
        const double perK = 1.0 / (_beta[1] * _aK0);
        const T u = (point.x - _falseEasting) * perK;
        const auto ofU = Hyperbolic<T>::of(u);
        const Direction<T> v = sinCos(T((point.y - _falseNorthing) * perK));
        const Plane<T> sum =
            series(_beta, Doubled<T>{2.0 * v.sine * v.cosine, (v.cosine - v.sine) * (v.cosine + v.sine),
                                     2.0 * ofU.sine * ofU.cosine, 1.0 + 2.0 * ofU.sine * ofU.sine});
        const Direction<T> xi = differenceFrom(v, sum.y);
        const Hyperbolic<T> eta = differenceFrom(u, ofU, sum.x);
        const T size = abs(xi.sine);
        const T w = sqrt(eta.sine * eta.sine + xi.cosine * xi.cosine) / (eta.cosine + size);
        const T phi = northernLatitude(T(size / eta.cosine), w, e);
        return {atan2(eta.sine, xi.cosine) + _lambda0Rad, select(xi.sine < 0.0, -phi, phi)};
    }

  private:
    void initSeries(double e2) {
        const double e4 = e2 * e2;
        const double e6 = e4 * e2;
        const double e8 = e4 * e4;
        _arc = MeridianArc::toEighthPower(e2);
        const double m1 = _arc._linear;
        _alpha = {0.0,
                  m1,
                  e2 / 8.0 - e4 / 96.0 - 9.0 * e6 / 1024.0 - 901.0 * e8 / 184320.0,
                  13.0 * e4 / 768.0 + 17.0 * e6 / 5120.0 - 311.0 * e8 / 737280.0,
                  61.0 * e6 / 15360.0 + 899.0 * e8 / 430080.0,
                  49561.0 * e8 / 41287680.0};
        _beta = {0.0,
                 m1,
                 e2 / 8.0 + e4 / 48.0 + 7.0 * e6 / 2048.0 + e8 / 61440.0,
                 e4 / 768.0 + 3.0 * e6 / 1280.0 + 559.0 * e8 / 368640.0,
                 17.0 * e6 / 30720.0 + 283.0 * e8 / 430080.0,
                 4397.0 * e8 / 41287680.0};
    }

    /// Hyperbolic sine and cosine.
    template <class T>
    struct Hyperbolic {
        T sine, cosine;

        /// Those of an area.
        static Hyperbolic of(const T& area) {
            using std::exp;
            const T grown = exp(area);
            const T shrunk = 1.0 / grown;
            return {0.5 * (grown - shrunk), 0.5 * (grown + shrunk)};
        }
    };

    /// Up to here the functions of a sum of the series are taken from their power series, which leave out
    /// less than 1e-18; the sums of points less than 60 degrees from the central meridian are smaller.
    static constexpr double smallSum = 0.008;

    /// Sine and cosine of an angle less a sum of the series.
    template <class T>
    static Direction<T> differenceFrom(const Direction<T>& angle, const T& sum) {
        using std::abs;
        const T x = sum * sum;
        Direction<T> less{sum - sum * x * (1.0 / 6.0 - x * (1.0 / 120.0)),
                          1.0 - x * (0.5 - x * (1.0 / 24.0 - x * (1.0 / 720.0)))};
        const Mask<T> isLarge = abs(sum) > smallSum;
        if (anyLane(isLarge)) {
            const auto [sine, cosine] = sinCos(sum);
            less = {select(isLarge, sine, less.sine), select(isLarge, cosine, less.cosine)};
        }
        return {angle.sine * less.cosine - angle.cosine * less.sine,
                angle.cosine * less.cosine + angle.sine * less.sine};
    }

    /// Beyond this a hyperbolic area is as good as infinite, and the squares of its functions are not yet.
    static constexpr double greatestArea = 350.0;

    /// Hyperbolic sine and cosine of an area less a sum of the series.
    /// @param u the area
    /// @param area its hyperbolic sine and cosine
    /// @param sum the sum
    template <class T>
    static Hyperbolic<T> differenceFrom(const T& u, const Hyperbolic<T>& area, const T& sum) {
        using std::abs;
        const T x = sum * sum;
        const Hyperbolic<T> less{sum + sum * x * (1.0 / 6.0 + x * (1.0 / 120.0)),
                                 1.0 + x * (0.5 + x * (1.0 / 24.0 + x * (1.0 / 720.0)))};
        const Hyperbolic<T> near{area.sine * less.cosine - area.cosine * less.sine,
                                 area.cosine * less.cosine - area.sine * less.sine};
        const Mask<T> isLarge = abs(sum) > smallSum;
        if (!anyLane(isLarge)) {
            return near;
        }
        const T eta = u - sum;
        const auto far = Hyperbolic<T>::of(
            T(select(abs(eta) > greatestArea, select(eta < 0.0, T(-greatestArea), T(greatestArea)), eta)));
        return {select(isLarge, far.sine, near.sine), select(isLarge, far.cosine, near.cosine)};
    }

    /// Functions of twice the coordinates ξ and η.
    template <class T>
    struct Doubled {
        T sin2Xi, cos2Xi, sinh2Eta, cosh2Eta;
    };

    /// The hyperbolic area (inverse of sinh) of a hyperbolic sine, by the cosine that is at hand.
    template <class T>
    static T areaOfSine(const T& sine, const T& cosine) {
        using std::abs, std::log1p;
        const T size = abs(sine);
        const T area = log1p(size + size * size / (1.0 + cosine));
        return select(sine < 0.0, -area, area);
    }

    /// A tangent held at that of 89 degrees, as isometricLatitude() holds a latitude.
    template <class T>
    static T heldTangent(const T& tangent) {
        constexpr double limit = 57.289961630759876; // tan 89°
        using std::abs;
        return select(abs(tangent) > limit, select(tangent < 0.0, T(-limit), T(limit)), tangent);
    }

    /// Tangent of the conformal latitude of a latitude: sinh of its isometric latitude.
    template <class T>
    static T conformalTangent(const T& phi, double e) {
        if (!isEccentricity(e)) {
            return T(std::sinh(-1.0));
        }
        const auto [sinPhi, cosPhi] = sinCos(heldLatitude(phi));
        const auto [sinhTerm, coshTerm] = hyperbolicOfEccentricityTerm(sinPhi, e);
        return (sinPhi * coshTerm - sinhTerm) / cosPhi;
    }

    /// Hyperbolic sine (as sine) and cosine of the eccentricity term, which is 0.01 at the most where the
    /// eccentricity is small.
    template <class T>
    static Direction<T> hyperbolicOfEccentricityTerm(const T& sinPhi, double e) {
        using std::sinh, std::sqrt;
        const T sigma = eccentricityTerm(sinPhi, e);
        if (isSmallEccentricity(e)) {
            const T x = sigma * sigma;
            return {sigma + sigma * x * (1.0 / 6.0 + x * (1.0 / 120.0)),
                    1.0 + x * (0.5 + x * (1.0 / 24.0 + x * (1.0 / 720.0)))};
        }
        const T sine = sinh(sigma);
        return {sine, sqrt(1.0 + sine * sine)};
    }

    /// The latitude of a northern point by the sine of its conformal latitude and the half-angle tangent of
    /// its conformal colatitude. The conformal latitude is held at 89 degrees.
    template <class T>
    static T northernLatitude(const T& sinChi, const T& w, double e) {
        using std::log;
        constexpr double sinLimit = 0.99984769515639127; // sin 89°
        constexpr double wLimit = 0.0087268677907586904; // tan 0.5°
        const T heldW = select(w < wLimit, T(wLimit), w);
        if (isSmallEccentricity(e)) {
            return parabolicLatitude(select(w < wLimit, T(sinLimit), sinChi), heldW, e, mercatorStop).value;
        }
        return substitutedLatitude(-log(heldW), e, 1.0, mercatorStop).value;
    }

    /// The sums over j = 1 to 4 of c[j+1]·cos(2jξ)·sinh(2jη) (as x) and c[j+1]·sin(2jξ)·cosh(2jη) (as y):
    /// imaginary and real part of Σ c[j+1]·sin(2j(ξ + iη)), by Clenshaw's recurrence.
    template <class T>
    static Plane<T> series(const Series& c, const Doubled<T>& doubled) {
        const auto [sin2Xi, cos2Xi, sinh2Eta, cosh2Eta] = doubled;
        // 2·cos(2(ξ + iη)) as re + i·im, by which each step multiplies.
        const T re = 2.0 * cos2Xi * cosh2Eta;
        const T im = -2.0 * sin2Xi * sinh2Eta;
        const T re3 = re * c[5] + c[4];
        const T im3 = im * c[5];
        const T re2 = re * re3 - im * im3 + (c[3] - c[5]);
        const T im2 = re * im3 + im * re3;
        const T re1 = re * re2 - im * im2 + c[2] - re3;
        const T im1 = re * im2 + im * re2 - im3;
        const T sinRe = sin2Xi * cosh2Eta;
        const T sinIm = cos2Xi * sinh2Eta;
        return {re1 * sinIm + im1 * sinRe, re1 * sinRe - im1 * sinIm};
    }
};

} // namespace tq::formulas
