#include "tools/tqproj/map/GeographicExtent.h"

#include "tests/tools/Borders.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(GeographicExtent, IsTheWorldByItself) {
    expectBorders(GeographicExtent(), -180.0, -90.0, 180.0, 90.0);
    EXPECT_TRUE(GeographicExtent().isClosed());
}

TEST(GeographicExtent, HasItsBorders) {
    expectBorders(GeographicExtent::of(-5.0, 41.0, 10.0, 51.5), -5.0, 41.0, 10.0, 51.5);
    EXPECT_EQ(GeographicExtent::of(-5.0, 41.0, 10.0, 51.5)->width(), 15.0);
    EXPECT_EQ(GeographicExtent::of(-5.0, 41.0, 10.0, 51.5)->height(), 10.5);
}

TEST(GeographicExtent, AnEastThatIsNotGreaterThanTheWestLiesBeyondTheAntimeridian) {
    expectBorders(GeographicExtent::of(98.5, -60.0, -68.0, 66.0), 98.5, -60.0, 292.0, 66.0);
    expectBorders(GeographicExtent::of(170.0, 0.0, 190.0, 1.0), 170.0, 0.0, 190.0, 1.0);
    expectBorders(GeographicExtent::of(30.0, 0.0, 30.0, 1.0), 30.0, 0.0, 390.0, 1.0);
}

TEST(GeographicExtent, GoesOnceAroundTheWorldAtMost) {
    EXPECT_TRUE(GeographicExtent::of(-180.0, -90.0, 180.0, 90.0)->isClosed());
    EXPECT_TRUE(GeographicExtent::of(20.0, -90.0, 380.0, 90.0)->isClosed());
    EXPECT_FALSE(GeographicExtent::of(-180.0, -90.0, 179.9, 90.0)->isClosed());
    EXPECT_FALSE(GeographicExtent::of(-180.0, -90.0, 180.1, 90.0).has_value());
}

TEST(GeographicExtent, DecimalsDoNotKeepItFromBeingClosed) {
    for (int tenths = -1800; tenths <= 1800; ++tenths) {
        const double west = tenths / 10.0;
        const auto extent = GeographicExtent::of(west, 0.0, (tenths + 3600) / 10.0, 1.0);
        ASSERT_TRUE(extent.has_value()) << west;
        EXPECT_TRUE(extent->isClosed()) << west;
    }
}

TEST(GeographicExtent, OtherBordersMakeNone) {
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(GeographicExtent::of(-180.1, 0.0, 0.0, 1.0).has_value());
    EXPECT_FALSE(GeographicExtent::of(180.1, 0.0, 190.0, 1.0).has_value());
    EXPECT_FALSE(GeographicExtent::of(100.0, 0.0, -300.0, 1.0).has_value()) << "further west than around";
    EXPECT_FALSE(GeographicExtent::of(0.0, -90.1, 1.0, 1.0).has_value());
    EXPECT_FALSE(GeographicExtent::of(0.0, 0.0, 1.0, 90.1).has_value());
    EXPECT_FALSE(GeographicExtent::of(0.0, 1.0, 1.0, 1.0).has_value()) << "no height";
    EXPECT_FALSE(GeographicExtent::of(0.0, 2.0, 1.0, 1.0).has_value());
    for (const double bad : {NotANumber, Infinity, -Infinity}) {
        EXPECT_FALSE(GeographicExtent::of(bad, 0.0, 1.0, 1.0).has_value()) << bad;
        EXPECT_FALSE(GeographicExtent::of(0.0, bad, 1.0, 1.0).has_value()) << bad;
        EXPECT_FALSE(GeographicExtent::of(0.0, 0.0, bad, 1.0).has_value()) << bad;
        EXPECT_FALSE(GeographicExtent::of(0.0, 0.0, 1.0, bad).has_value()) << bad;
    }
}

TEST(GeographicExtent, IsReadFromItsText) {
    expectBorders(GeographicExtent::fromText("-5,41,10,51.5"), -5.0, 41.0, 10.0, 51.5);
    expectBorders(GeographicExtent::fromText(" 98.5 , -60, -68 , 66 "), 98.5, -60.0, 292.0, 66.0);
    expectBorders(GeographicExtent::fromText("-180,-90,180,90"), -180.0, -90.0, 180.0, 90.0);
}

TEST(GeographicExtent, OtherTextsAreNone) {
    for (const char* text : {"", ",", ",,,", "1,2,3", "1,2,3,4,5", "1,2,3,", "1;2;3;4", "1,2,3,x", "1,2,3x,4",
                             "0,nan,1,1", "0,0,inf,1", "0,1,1,0", "0,0,361,1"}) {
        EXPECT_FALSE(GeographicExtent::fromText(text).has_value()) << text;
    }
}

TEST(GeographicExtent, CountsLongitudesFromItsWest) {
    const GeographicExtent pacific{120.0, -60.0, 290.0, 60.0};
    EXPECT_EQ(pacific.longitudeFromWest(120.0), 120.0);
    EXPECT_EQ(pacific.longitudeFromWest(-170.0), 190.0);
    EXPECT_EQ(pacific.longitudeFromWest(119.0), 479.0);
    EXPECT_EQ(pacific.longitudeFromWest(840.0), 120.0);
    EXPECT_EQ(GeographicExtent().longitudeFromWest(-180.0), -180.0);
}

TEST(GeographicExtent, ContainsWhatIsInItAndOnItsBorder) {
    const GeographicExtent pacific{120.0, -60.0, 290.0, 60.0};
    EXPECT_TRUE(pacific.contains({180.0, 0.0}));
    EXPECT_TRUE(pacific.contains({-180.0, 0.0}));
    EXPECT_TRUE(pacific.contains({120.0, -60.0}));
    EXPECT_TRUE(pacific.contains({-70.0, 60.0}));
    EXPECT_FALSE(pacific.contains({-69.9, 0.0}));
    EXPECT_FALSE(pacific.contains({119.9, 0.0}));
    EXPECT_FALSE(pacific.contains({180.0, 60.1}));
    EXPECT_FALSE(pacific.contains({180.0, -60.1}));
    EXPECT_TRUE(pacific.contains({119.9999995, -60.0000005})) << "no farther off than roundings lead";
    EXPECT_TRUE(pacific.contains({-69.9999995, 60.0000005}));
    EXPECT_FALSE(pacific.contains({119.999998, 0.0}));
    EXPECT_FALSE(pacific.contains({-69.999998, 0.0}));
    EXPECT_FALSE(pacific.contains({180.0, -60.000002}));
    EXPECT_FALSE(pacific.contains({180.0, 60.000002}));
    EXPECT_TRUE(GeographicExtent().contains({180.0, 90.0}));
    EXPECT_TRUE(GeographicExtent().contains({-180.0, -90.0}));
}

} // namespace
