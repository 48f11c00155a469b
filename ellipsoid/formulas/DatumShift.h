#pragma once

#include "ellipsoid/formulas/AbridgedMolodensky.h"
#include "ellipsoid/formulas/Helmert.h"

#include <cstdint>

namespace tq::formulas {

/// The numbers of a datum shift between a reference ellipsoid and a local one.
struct DatumShift {
    static constexpr std::uint32_t none = 0;           ///< both ellipsoids are on one datum
    static constexpr std::uint32_t threeParameter = 1; ///< abridged Molodensky
    static constexpr std::uint32_t sevenParameter = 2; ///< Helmert

    std::uint32_t kind = none;           ///< none, threeParameter or sevenParameter
    double refSemiMajorAxis = 0.0;       ///< of the reference ellipsoid, metres
    double refFlattening = 0.0;          ///< of the reference ellipsoid
    double refEccentricitySquared = 0.0; ///< of the reference ellipsoid
    double molodenskyForward = 0.0;      ///< difference of the two ellipsoids, from the local one, metres
    double molodenskyReverse = 0.0;      ///< the same from the reference ellipsoid
    double dx = 0.0;                     ///< translation from the reference datum, metres
    double dy = 0.0;                     ///< the same
    double dz = 0.0;                     ///< the same
    double rx = 0.0;                     ///< rotation from the reference datum, radians
    double ry = 0.0;                     ///< the same
    double rz = 0.0;                     ///< the same
    double scalePpm = 0.0;               ///< difference of the scale, parts per million
};

/// The datum of an ellipsoid beside the reference datum.
struct LocalDatum {
    const DatumShift& shift; ///< from the reference datum
    double a;                ///< semi-major axis of the ellipsoid, metres
    double e2;               ///< its first eccentricity squared

    /// The reference datum itself.
    static LocalDatum reference() {
        static constexpr DatumShift noShift;
        return {noShift, 0.0, 0.0};
    }

    /// A point of the reference datum on this one.
    template <class T>
    Geographic<T> fromReference(const Geographic<T>& point) const {
        if (shift.kind == DatumShift::threeParameter) {
            return AbridgedMolodensky{shift.dx,
                                      shift.dy,
                                      shift.dz,
                                      shift.molodenskyReverse,
                                      shift.refSemiMajorAxis,
                                      shift.refEccentricitySquared}
                .shifted(point);
        }
        if (shift.kind == DatumShift::sevenParameter) {
            const auto reference =
                geocentricFromGeodetic(point, shift.refSemiMajorAxis, shift.refEccentricitySquared);
            return geodeticFromGeocentric(helmert().forward(reference), a, e2);
        }
        return point;
    }

    /// A point of this datum on the reference datum.
    template <class T>
    Geographic<T> toReference(const Geographic<T>& point) const {
        if (shift.kind == DatumShift::threeParameter) {
            return AbridgedMolodensky{-shift.dx, -shift.dy, -shift.dz, shift.molodenskyForward, a, e2}
                .shifted(point);
        }
        if (shift.kind == DatumShift::sevenParameter) {
            const auto local = geocentricFromGeodetic(point, a, e2);
            return geodeticFromGeocentric(helmert().inverse(local), shift.refSemiMajorAxis,
                                          shift.refEccentricitySquared);
        }
        return point;
    }

  private:
    Helmert helmert() const {
        return {shift.dx, shift.dy, shift.dz, shift.rx, shift.ry, shift.rz, 1.0 + shift.scalePpm * 1e-6};
    }
};

} // namespace tq::formulas
