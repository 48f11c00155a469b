#pragma once

#include "testing/ConvertedPoints.h"
#include "testing/SampleProjection.h"

#include <gtest/gtest.h>

#include <cmath>

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
    const TQPoint global = imageOf(projection, local);
    TQPoint back = originalOf(projection, global);
    shifted.toReferenceDatum(back.x, back.y);

    projection.setEllipsoid(&shifted);
    EXPECT_EQ(imageOf(projection, kReference), global);
    EXPECT_EQ(originalOf(projection, global), back);
    projection.setEllipsoid(nullptr);
}
