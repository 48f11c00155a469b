#include "ellipsoid/ShiftSideBySide.h"

#include <gtest/gtest.h>

#include <cmath>

// The datum shifts beside PROJ on 20,000 random points for each shift and direction; docs/accuracy.md has
// the differences measured.

using namespace shiftsidebyside;

namespace {

// Some ten roundings of angles up to pi, 2.2e-16 rad each, and of geocentric coordinates up to 6.4e6 m,
// 5e-10 m each, on both sides.
constexpr double kRounding = 3e-8;

// The latitude's iteration stops at a change of 1e-9 rad at most; each pass changes it by e²/(1 - e²) of the
// pass before at most: 4.3e-5 m are left.
constexpr double kLatitudeStop = 1e-9 * 0.0068 * 6.4e6;

double rotationsSquared(const Shift& shift) {
    double sum = 0.0;
    for (std::size_t i = 3; i < 6; ++i) {
        const double angle = tq_deg2rad(shift.parameters[i] / 3600.0);
        sum += angle * angle;
    }
    return sum;
}

bool hasThreeParameters(const Shift& shift) { return shift.kind == TQEllipsoid::ThreeParameterShift; }

} // namespace

TEST(ShiftSideBySide, AbridgedMolodenskyIsThatOfProj) {
    for (const Shift& shift : shifts()) {
        if (hasThreeParameters(shift)) {
            SCOPED_TRACE(shift.name);
            EXPECT_LE(compareToLocal(shift, molodensky(shift)).max(), kRounding);
            EXPECT_LE(compareToReference(shift, molodensky(shift, true), true).max(), kRounding);
        }
    }
}

TEST(ShiftSideBySide, HelmertIsThatOfProj) {
    for (const Shift& shift : shifts()) {
        if (!hasThreeParameters(shift)) {
            SCOPED_TRACE(shift.name);
            EXPECT_LE(compareToLocal(shift, geocentric(shift)).max(), kLatitudeStop + kRounding);
        }
    }
}

// PROJ undoes the small rotations by changing their signs, which leaves terms of their second order times
// the radius; the library inverts the matrix.
TEST(ShiftSideBySide, HelmertIsUndoneBetterThanByProj) {
    for (const Shift& shift : shifts()) {
        if (!hasThreeParameters(shift)) {
            SCOPED_TRACE(shift.name);
            const double secondOrder = 2.0 * rotationsSquared(shift) * 6.4e6;
            EXPECT_LE(compareToReference(shift, geocentric(shift), false).max(),
                      kLatitudeStop + kRounding + secondOrder);
        }
    }
}

// Abridged, heights left out: within some metres of the translation of geocentric coordinates, and not
// the same.
TEST(ShiftSideBySide, AbridgedMolodenskyIsWithinMetresOfTheGeocentricTranslation) {
    for (const Shift& shift : shifts()) {
        if (hasThreeParameters(shift)) {
            SCOPED_TRACE(shift.name);
            // The terms left out are of the order of the flattening times the translation.
            const double translation =
                std::hypot(shift.parameters[0], shift.parameters[1], shift.parameters[2]);
            const double leftOut = 2.0 * (translation + 251.0) / 297.0;
            EXPECT_LE(compareToLocal(shift, geocentric(shift)).max(), leftOut);
        }
    }
}
