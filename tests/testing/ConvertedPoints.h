#pragma once

#include "projection/TQProjection.h"

#include <gtest/gtest.h>

/// The plane point of a geographic one, which must have one.
inline TQPoint imageOf(const TQProjection& projection, const TQPoint& geo) {
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(geo, global), 0);
    return global;
}

/// The geographic point of a plane one, which must have one.
inline TQPoint originalOf(const TQProjection& projection, const TQPoint& global) {
    TQPoint geo;
    EXPECT_EQ(projection.convertGlobalPt(global, geo), 0);
    return geo;
}

/// Each coordinate must be the expected one within a tolerance.
inline void expectNear(const TQPoint& expected, const TQPoint& actual, double tolerance) {
    EXPECT_NEAR(expected.x, actual.x, tolerance);
    EXPECT_NEAR(expected.y, actual.y, tolerance);
}

/// The same beside a point of the published formulas.
template <class Published>
void expectNear(const TQPoint& actual, const Published& expected, double tolerance) {
    EXPECT_NEAR(actual.x, static_cast<double>(expected.x), tolerance);
    EXPECT_NEAR(actual.y, static_cast<double>(expected.y), tolerance);
}
