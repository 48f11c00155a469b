#pragma once

#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/MadeProjection.h"
#include "testing/ProjOperation.h"
#include "testing/RandomNumbers.h"

#include <string>
#include <vector>

/// The datum shifts of ellipsoids beside PROJ's, on random points: what the tests assert and the accuracy
/// table prints.
namespace shiftsidebyside {

inline constexpr int pointCount = 20000;

/// A datum shift from a reference ellipsoid to a local one.
struct Shift {
    const char* name;
    EllipsoidSize reference;
    EllipsoidSize local;
    TQEllipsoid::DatumShiftKind kind;
    TQEllipsoid::DatumShiftParameters parameters; ///< metres, arc seconds, parts per million

    double flattening(const EllipsoidSize& size) const { return 1.0 - std::sqrt(1.0 - size.e2); }

    TQEllipsoid ellipsoid() const {
        TQEllipsoid::DatumShiftParameters inRadians = parameters;
        for (std::size_t i = 3; i < 6; ++i) {
            inRadians[i] = tq_deg2rad(parameters[i] / 3600.0);
        }
        TQEllipsoid made(TQString(local.name), local.a, local.e2);
        made.setDatumShift(kind, reference.a, flattening(reference), inRadians);
        return made;
    }
};

/// Published shifts from WGS 84, as the EPSG data set gives them to WGS 84, with their signs changed: codes
/// 1133, 1314 and 1777. Changed signs are not the inverse to the last digit, but as good a shift.
inline const std::vector<Shift>& shifts() {
    static const std::vector<Shift> all{
        {"ED50, 3 parameters",
         wgs84,
         international1924,
         TQEllipsoid::ThreeParameterShift,
         {87.0, 98.0, 121.0}},
        {"OSGB36, 7 parameters",
         wgs84,
         airy1830,
         TQEllipsoid::SevenParameterShift,
         {-446.448, 125.157, -542.06, -0.15, -0.247, -0.842, 20.489}},
        {"DHDN, 7 parameters",
         wgs84,
         bessel1841,
         TQEllipsoid::SevenParameterShift,
         {-598.1, -73.7, -418.2, -0.202, -0.045, 2.455, -6.7}},
    };
    return all;
}

inline std::string sizeText(const EllipsoidSize& size) {
    return " +a=" + fullText(size.a) + " +es=" + fullText(size.e2);
}

/// PROJ's abridged Molodensky formulas from one ellipsoid to another.
inline ProjOperation molodensky(const Shift& shift, bool back = false) {
    const EllipsoidSize& from = back ? shift.local : shift.reference;
    const EllipsoidSize& to = back ? shift.reference : shift.local;
    const double sign = back ? -1.0 : 1.0;
    return ProjOperation("+proj=molodensky +abridged" + sizeText(from) + " +da=" + fullText(to.a - from.a) +
                         " +df=" + fullText(shift.flattening(to) - shift.flattening(from)) +
                         " +dx=" + fullText(sign * shift.parameters[0]) +
                         " +dy=" + fullText(sign * shift.parameters[1]) +
                         " +dz=" + fullText(sign * shift.parameters[2]));
}

/// PROJ's way through geocentric coordinates: also the exact form of what the three-parameter shift
/// approximates.
inline ProjOperation geocentric(const Shift& shift) {
    const auto& [dx, dy, dz, rx, ry, rz, ppm] = shift.parameters;
    std::string helmert =
        " +step +proj=helmert +x=" + fullText(dx) + " +y=" + fullText(dy) + " +z=" + fullText(dz);
    if (shift.kind == TQEllipsoid::SevenParameterShift) {
        helmert += " +rx=" + fullText(rx) + " +ry=" + fullText(ry) + " +rz=" + fullText(rz) +
                   " +s=" + fullText(ppm) + " +convention=position_vector";
    }
    return ProjOperation("+proj=pipeline +step +proj=cart" + sizeText(shift.reference) + helmert +
                         " +step +proj=cart +inv" + sizeText(shift.local));
}

/// Any point but the last degrees before the poles, where the abridged formulas end.
inline TQPoint randomPoint(RandomNumbers& random) {
    const double longitude = random.between(-180.0, 180.0);
    return {tq_deg2rad(longitude), tq_deg2rad(random.between(-85.0, 85.0))};
}

/// The difference on the ground, in metres, of the points on the local datum.
inline Differences compareToLocal(const Shift& shift, const ProjOperation& proj) {
    const TQEllipsoid ellipsoid = shift.ellipsoid();
    RandomNumbers random(5);
    Differences differences;
    for (int i = 0; i < pointCount; ++i) {
        const TQPoint given = randomPoint(random);
        TQPoint local = given;
        ellipsoid.toLocalDatum(local.x, local.y);
        differences.add(shift.local.a * groundAngle(local, proj.forward(given)));
    }
    return differences;
}

/// The same of the points on the reference datum.
/// @param isBack whether the operation leads from the local datum to the reference datum itself
inline Differences compareToReference(const Shift& shift, const ProjOperation& proj, bool isBack) {
    const TQEllipsoid ellipsoid = shift.ellipsoid();
    RandomNumbers random(6);
    Differences differences;
    for (int i = 0; i < pointCount; ++i) {
        const TQPoint given = randomPoint(random);
        TQPoint reference = given;
        ellipsoid.toReferenceDatum(reference.x, reference.y);
        const TQPoint other = isBack ? proj.forward(given) : proj.inverse(given);
        differences.add(shift.reference.a * groundAngle(reference, other));
    }
    return differences;
}

} // namespace shiftsidebyside
