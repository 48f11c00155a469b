#include "tools/tqproj/map/MapFrame.h"

#include "testing/EvenSteps.h"
#include "tests/tools/DefinedProjection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr double kGreatestSize = 720.0; // ten inches
constexpr double kLeastWidth = 400.0;
constexpr double kCircumference = 2.0 * std::numbers::pi * 6378137.0;
constexpr GeographicExtent kWorld{};

/// A frame beside PROJ's own images of its extent.
class FrameCase {
  public:
    FrameCase(const std::string& definition, const GeographicExtent& extent)
        : _projection(definition), _frame(MapFrame::of(_projection.images(), extent)),
          _proj(DefinedProjection::inDegrees(definition)), _extent(extent) {}

    const std::optional<MapFrame>& frame() const { return _frame; }

    TQPoint pageOf(const TQPoint& geographic) const { return _frame->toPage(_proj.forward(geographic)); }

    /// Where the images of many points of the extent lie on the page, as far as they have any.
    std::vector<TQPoint> pagePoints() const {
        constexpr int steps = 301;
        std::vector<TQPoint> points;
        for (const double longitude : evenSteps(_extent.west, _extent.east, steps)) {
            for (const double latitude : evenSteps(_extent.south, _extent.north, steps)) {
                const TQPoint page = pageOf({longitude, latitude});
                if (std::isfinite(page.x) && std::isfinite(page.y)) {
                    points.push_back(page);
                }
            }
        }
        return points;
    }

  private:
    DefinedProjection _projection;
    std::optional<MapFrame> _frame;
    ProjOperation _proj;
    GeographicExtent _extent;
};

TEST(MapFrame, KeepsAllImagesOfTheExtentOnThePageWithinItsMargins) {
    const std::pair<const char*, GeographicExtent> cases[]{
        {"+proj=robin", kWorld},
        {"+proj=igh", kWorld},
        {"+proj=laea +lat_0=45", kWorld},
        {"+proj=laea +lat_0=90", {-180.0, 45.0, 180.0, 90.0}},
        {"+proj=utm +zone=32", {6.0, 0.0, 12.0, 84.0}},
        {"+proj=lcc +lat_1=44 +lat_2=49 +lat_0=46.5 +lon_0=3", {-10.0, 41.0, 11.0, 52.0}},
        {"+proj=bonne +lat_1=45", kWorld},
        {"+proj=omerc +lat_0=45 +lonc=10 +alpha=30 +gamma=0 +k=1", {0.0, 35.0, 20.0, 55.0}}};
    for (const auto& [definition, extent] : cases) {
        SCOPED_TRACE(definition);
        const FrameCase test(definition, extent);
        ASSERT_TRUE(test.frame());
        const std::vector<TQPoint> points = test.pagePoints();
        constexpr double allowance = 0.5; // points, between those that the frame looks at
        const auto [left, right] = std::ranges::minmax(points, {}, &TQPoint::x);
        const auto [top, bottom] = std::ranges::minmax(points, {}, &TQPoint::y);
        EXPECT_GE(left.x, MapFrame::margin - allowance);
        EXPECT_LE(right.x, test.frame()->pageWidth() - MapFrame::margin + allowance);
        EXPECT_NEAR(top.y, MapFrame::margin + MapFrame::heading, allowance);
        EXPECT_NEAR(bottom.y, test.frame()->pageHeight() - MapFrame::margin, allowance);
        EXPECT_NEAR(std::max(right.x - left.x, bottom.y - top.y), kGreatestSize, allowance);
        EXPECT_TRUE(std::ranges::all_of(
            points, [&test](const TQPoint& point) { return test.frame()->contains(point); }));
    }
}

// Its images are at both sides of the map, as far out as the seam.
TEST(MapFrame, KeepsAllImagesOfAnExtentAcrossTheSeam) {
    const FrameCase test("+proj=robin", {101.3, -60.0, 247.1, 60.0});
    ASSERT_TRUE(test.frame());
    for (const double longitude : {180.0 - 1e-6, -180.0 + 1e-6}) {
        EXPECT_TRUE(test.frame()->contains(test.pageOf({longitude, 0.0})))
            << test.pageOf({longitude, 0.0}).x << " of " << test.frame()->pageWidth();
    }
}

TEST(MapFrame, NarrowMapStandsInTheMiddleOfThePage) {
    const FrameCase test("+proj=utm +zone=32", {6.0, 0.0, 12.0, 84.0});
    EXPECT_EQ(test.frame()->pageWidth(), kLeastWidth) << "room for the title";
    EXPECT_NEAR(test.pageOf({9.0, 40.0}).x, 0.5 * kLeastWidth, 0.5) << "the central meridian";
}

TEST(MapFrame, HasOneScaleAndLooksNorth) {
    const FrameCase test("+proj=merc", {-180.0, -60.0, 180.0, 60.0});
    const TQPoint origin = test.pageOf({0.0, 0.0});
    const TQPoint east = test.pageOf({0.1, 0.0});
    const TQPoint north = test.pageOf({0.0, 0.1});
    EXPECT_GT(east.x, origin.x);
    EXPECT_LT(north.y, origin.y);
    const double meridianPart = 1.0 - 0.0066943799901413; // the curvature of WGS 84 at the equator
    EXPECT_NEAR((origin.y - north.y) / (east.x - origin.x), meridianPart, 1e-5);
}

TEST(MapFrame, ThePlaneIsFoundAgain) {
    const FrameCase test("+proj=robin", kWorld);
    for (const TQPoint plane : {TQPoint{0.0, 0.0}, TQPoint{1.2e7, -3.4e6}, TQPoint{-1.7e7, 8.6e6}}) {
        const TQPoint again = test.frame()->toPlane(test.frame()->toPage(plane));
        EXPECT_NEAR(again.x, plane.x, 1e-6);
        EXPECT_NEAR(again.y, plane.y, 1e-6);
    }
}

TEST(MapFrame, PlacesBesideTheMapAreNotOnIt) {
    const FrameCase test("+proj=merc", {-180.0, -60.0, 180.0, 60.0});
    const double middle = test.frame()->pageWidth() / 2.0;
    const double top = MapFrame::margin + MapFrame::heading;
    const double bottom = test.frame()->pageHeight() - MapFrame::margin;
    EXPECT_TRUE(test.frame()->contains({middle, top + 1.0}));
    EXPECT_TRUE(test.frame()->contains({middle, bottom - 1.0}));
    EXPECT_FALSE(test.frame()->contains({middle, top - 1.0}));
    EXPECT_FALSE(test.frame()->contains({middle, bottom + 1.0}));
    EXPECT_FALSE(test.frame()->contains({MapFrame::margin - 1.0, top + 10.0}));
    EXPECT_FALSE(test.frame()->contains({MapFrame::margin + kGreatestSize + 1.0, top + 10.0}));
}

TEST(MapFrame, SingularProjectionsAreNotLargerThanTheCircumference) {
    for (const char* definition :
         {"+proj=gnom +lat_0=45", "+proj=gnom +lat_0=90", "+proj=stere +lat_0=52 +lon_0=5", "+proj=merc",
          "+proj=tpeqd +lat_1=10 +lat_2=50 +lon_1=0 +lon_2=20"}) {
        SCOPED_TRACE(definition);
        const FrameCase test(definition, kWorld);
        ASSERT_TRUE(test.frame());
        constexpr double forRoundings = 1.02;
        EXPECT_LE(test.frame()->greatest().x - test.frame()->least().x, forRoundings * kCircumference);
        EXPECT_LE(test.frame()->greatest().y - test.frame()->least().y, forRoundings * kCircumference);
    }
}

// What is not far off is where it belongs: the centre is on the map, and in its middle.
TEST(MapFrame, CentreOfASingularProjectionIsInTheMiddle) {
    for (const char* definition : {"+proj=gnom +lat_0=45", "+proj=stere +lat_0=52 +lon_0=5"}) {
        SCOPED_TRACE(definition);
        const FrameCase test(definition, kWorld);
        const TQPoint centre = test.frame()->toPage({0.0, 0.0});
        const double middle = test.frame()->pageHeight() / 2.0 + MapFrame::heading / 2.0;
        EXPECT_NEAR(centre.x, test.frame()->pageWidth() / 2.0, 0.25 * kGreatestSize);
        EXPECT_NEAR(centre.y, middle, 0.25 * kGreatestSize);
    }
}

TEST(MapFrame, ExtentWithoutImagesHasNone) {
    EXPECT_FALSE(FrameCase("+proj=gnom +lat_0=90", {-180.0, -90.0, 180.0, -10.0}).frame());
    EXPECT_FALSE(FrameCase("+proj=ortho", {170.0, -10.0, 190.0, 10.0}).frame()) << "on the far side";
}

} // namespace
