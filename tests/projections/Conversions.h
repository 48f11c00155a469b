#pragma once

#include "projection/TQProjection.h"
#include "projections/LiteralFormulas.h"
#include "testing/SampleProjection.h"

#include <gtest/gtest.h>

#include <cmath>

// What the tests of the projection classes do with the conversions of a projection.

/// The plane point of a geographic one in radians, which must be convertible.
inline TQPoint planePoint(const TQProjection& projection, double longitude, double latitude) {
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{longitude, latitude}, global), 0);
    return global;
}

/// The geographic point in radians of a plane one, which must be convertible.
inline TQPoint geographicPoint(const TQProjection& projection, double x, double y) {
    TQPoint geo;
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{x, y}, geo), 0);
    return geo;
}

/// Checks that a point is where the published formulas have it.
inline void expectNear(const TQPoint& point, const literal::Point& expected, double tolerance) {
    EXPECT_NEAR(point.x, static_cast<double>(expected.x), tolerance);
    EXPECT_NEAR(point.y, static_cast<double>(expected.y), tolerance);
}

/// The sample ellipsoid with a datum shift by three parameters.
inline TQEllipsoid shiftedSampleEllipsoid() {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    ellipsoid.setDatumShift(TQEllipsoid::ThreeParameterShift, 6378137.0, 1.0 / 298.257223563,
                            {-87.0, -98.0, -121.0});
    return ellipsoid;
}

/// Checks that a projection converts on the datum of its ellipsoid: as without a datum shift, but the
/// geographic point shifted before the way to the plane and behind the way back. It loses its ellipsoid.
inline void expectConversionsOnTheDatumOfTheEllipsoid(TQProjection& projection) {
    TQEllipsoid plain = sampleEllipsoid();
    TQEllipsoid shifted = shiftedSampleEllipsoid();
    constexpr TQPoint kReference{0.15, 0.7};
    constexpr double kLeastShift = 1e-6;
    TQPoint local = kReference;
    shifted.toLocalDatum(local.x, local.y);
    EXPECT_GT(std::abs(local.x - kReference.x), kLeastShift);
    EXPECT_GT(std::abs(local.y - kReference.y), kLeastShift);

    projection.setEllipsoid(&plain);
    const TQPoint global = planePoint(projection, local.x, local.y);
    TQPoint back = geographicPoint(projection, global.x, global.y);
    shifted.toReferenceDatum(back.x, back.y);

    projection.setEllipsoid(&shifted);
    EXPECT_EQ(planePoint(projection, kReference.x, kReference.y), global);
    EXPECT_EQ(geographicPoint(projection, global.x, global.y), back);
    projection.setEllipsoid(nullptr);
}
