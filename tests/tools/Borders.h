#pragma once

#include "tools/tqproj/map/GeographicExtent.h"

#include <gtest/gtest.h>

#include <optional>

/// There must be an extent with these borders.
inline void expectBorders(const std::optional<GeographicExtent>& extent, double west, double south,
                          double east, double north) {
    ASSERT_TRUE(extent.has_value());
    EXPECT_EQ(extent->west, west);
    EXPECT_EQ(extent->south, south);
    EXPECT_EQ(extent->east, east);
    EXPECT_EQ(extent->north, north);
}
