#include "tools/tqproj/map/MapLines.h"

#include "tests/tools/CubicPoint.h"
#include "tests/tools/DefinedProjection.h"
#include "tools/tqproj/map/MapGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr GeographicExtent kGermany{6.0, 47.0, 12.0, 55.0};
constexpr GeographicExtent kArctic{-180.0, 60.0, 180.0, 90.0};
constexpr double kPixel = 0.5;

/// The lines of a grid over an extent.
class LinesCase {
  public:
    LinesCase(const std::string& definition, const GeographicExtent& extent, std::unique_ptr<TQGrid> grid)
        : _projection(definition), _extent(extent), _grid(std::move(grid)) {}

    const MapProjection& images() const { return _projection.images(); }
    const MapFrame& frame() const { return _frame; }
    const MapLines& lines() const { return _lines; }

    TQPoint pageOf(const TQPoint& place) const { return _frame.toPage(images().toPlane(place).value()); }

  private:
    DefinedProjection _projection;
    GeographicExtent _extent;
    std::unique_ptr<TQGrid> _grid;
    MapFrame _frame{MapFrame::of(_projection.images(), _extent).value()};
    MapLines _lines{_projection.images(), _extent, _frame, *_grid};
};

std::vector<double> valuesOf(const std::vector<MapLine>& lines) {
    std::vector<double> values;
    for (const MapLine& line : lines) {
        values.push_back(line.value);
    }
    return values;
}

std::vector<std::pair<std::string, double>> middlesOf(const std::vector<MapStrip>& strips) {
    std::vector<std::pair<std::string, double>> middles;
    for (const MapStrip& strip : strips) {
        middles.emplace_back(strip.label, strip.middle.value);
    }
    return middles;
}

using Values = std::vector<double>;
using Middles = std::vector<std::pair<std::string, double>>;

TEST(MapLines, GraticuleHasTheMultiplesOfItsDistances) {
    const LinesCase test("EPSG:32632", kGermany, newGraticule({2.0, 2.5}));
    EXPECT_EQ(valuesOf(test.lines().upright()), (Values{6.0, 8.0, 10.0, 12.0}));
    EXPECT_EQ(valuesOf(test.lines().level()), (Values{47.5, 50.0, 52.5, 55.0}));
    EXPECT_EQ(test.lines().count(), 8.0);
}

TEST(MapLines, ColumnsAreLetteredFromTheWestAndRowsNumberedFromTheNorth) {
    const LinesCase test("EPSG:32632", kGermany, newGraticule({2.0, 2.0}));
    EXPECT_EQ(middlesOf(test.lines().columns()), (Middles{{"A", 7.0}, {"B", 9.0}, {"C", 11.0}}));
    EXPECT_EQ(middlesOf(test.lines().rows()),
              (Middles{{"1", 54.5}, {"2", 53.0}, {"3", 51.0}, {"4", 49.0}, {"5", 47.5}}));
    for (const MapStrip& strip : test.lines().columns()) {
        ASSERT_FALSE(strip.middle.pieces.empty());
        const TQPoint start = test.pageOf({strip.middle.value, kGermany.south});
        EXPECT_LT(distanceOf(strip.middle.pieces.front().start, start), kPixel);
    }
}

// Half a column beside the border is one; a sliver has no room for a name.
TEST(MapLines, SliversAtTheBorderAreNoColumns) {
    const LinesCase test("EPSG:32632", {5.9, 47.0, 12.1, 55.0}, newGraticule({2.0, 4.0}));
    EXPECT_EQ(middlesOf(test.lines().columns()), (Middles{{"A", 7.0}, {"B", 9.0}, {"C", 11.0}}));
}

TEST(MapLines, GridWithoutALineHasOneColumnAndOneRow) {
    const LinesCase test("EPSG:32632", {6.5, 47.5, 8.5, 49.5}, newGraticule({10.0, 10.0}));
    EXPECT_EQ(test.lines().count(), 0.0);
    EXPECT_EQ(middlesOf(test.lines().columns()), (Middles{{"A", 7.5}}));
    EXPECT_EQ(middlesOf(test.lines().rows()), (Middles{{"1", 48.5}}));
}

TEST(MapLines, ColumnsAcrossTheAntimeridianGoOnEastwards) {
    const LinesCase test("EPSG:3832", {170.0, -10.0, 200.0, 10.0}, newGraticule({10.0, 10.0}));
    EXPECT_EQ(valuesOf(test.lines().upright()), (Values{170.0, 180.0, 190.0, 200.0}));
    EXPECT_EQ(middlesOf(test.lines().columns()), (Middles{{"A", 175.0}, {"B", 185.0}, {"C", 195.0}}));
}

TEST(MapLines, MetricGridHasTheMultiplesOfItsDistance) {
    // UTM leads the central meridian to 500 km east; a degree of latitude is 111 km.
    const LinesCase test("EPSG:32632", {8.0, 0.0, 10.0, 2.0}, newMetricGrid(100'000.0));
    EXPECT_EQ(valuesOf(test.lines().upright()), (Values{400'000.0, 500'000.0, 600'000.0}));
    EXPECT_EQ(valuesOf(test.lines().level()), (Values{0.0, 100'000.0, 200'000.0}));
    const std::vector<MapStrip> columns = test.lines().columns();
    ASSERT_EQ(columns.size(), 2U) << "what is left beside 400 and 600 km is 11 km";
    EXPECT_EQ(columns[0].label, "A");
    EXPECT_EQ(columns[0].middle.value, 450'000.0);
    EXPECT_EQ(columns[1].middle.value, 550'000.0);
    EXPECT_EQ(test.lines().rows().front().label, "1");
    EXPECT_GT(test.lines().rows().front().middle.value, 100'000.0);
}

TEST(MapLines, MetresAreMetresInASystemOfFeet) {
    constexpr double surveyFoot = 1200.0 / 3937.0;
    const LinesCase test("EPSG:2263", {-74.26, 40.47, -71.8, 41.3}, newMetricGrid(50'000.0));
    ASSERT_FALSE(test.lines().upright().empty());
    for (const MapLine& line : test.lines().upright()) {
        const double number = line.value * surveyFoot / 50'000.0;
        EXPECT_NEAR(number, std::round(number), 1e-9);
    }
}

TEST(MapLines, LinesLeadOutOfTheMapAtTheirEnds) {
    for (const GeographicExtent& extent : {kGermany, GeographicExtent{6.0, -55.0, 12.0, -47.0}}) {
        const LinesCase test("EPSG:32632", extent, newGraticule({2.0, 2.0}));
        for (const MapLine& line : test.lines().upright()) {
            const LineEnd south = test.lines().startOf(line);
            const LineEnd north = test.lines().endOf(line);
            EXPECT_LT(distanceOf(south.place, test.pageOf({line.value, extent.south})), 0.01);
            EXPECT_LT(distanceOf(north.place, test.pageOf({line.value, extent.north})), 0.01);
            EXPECT_GT(south.outward.y, 0.9) << "downwards";
            EXPECT_LT(north.outward.y, -0.9) << "upwards";
        }
        for (const MapLine& line : test.lines().level()) {
            const LineEnd west = test.lines().startOf(line);
            const LineEnd east = test.lines().endOf(line);
            EXPECT_LT(distanceOf(west.place, test.pageOf({extent.west, line.value})), 0.01);
            EXPECT_LT(distanceOf(east.place, test.pageOf({extent.east, line.value})), 0.01);
            EXPECT_LT(west.outward.x, -0.9) << "to the left";
            EXPECT_GT(east.outward.x, 0.9) << "to the right";
        }
    }
}

TEST(MapLines, MeridiansOfAPolarMapLeadAwayFromThePole) {
    const LinesCase test("EPSG:3995", kArctic, newGraticule({30.0, 10.0}));
    const TQPoint pole = test.frame().toPage({0.0, 0.0});
    for (const MapLine& line : test.lines().upright()) {
        ASSERT_FALSE(line.pieces.empty());
        const auto [place, outward] = test.lines().startOf(line);
        const TQPoint away{(place.x - pole.x) / distanceOf(place, pole),
                           (place.y - pole.y) / distanceOf(place, pole)};
        EXPECT_NEAR(outward.x * away.x + outward.y * away.y, 1.0, 1e-6) << line.value;
    }
}

TEST(MapLines, EndsOfPlaneLinesLeadAlongThem) {
    const LinesCase test("EPSG:32632", kGermany, newMetricGrid(100'000.0));
    for (const MapLine& line : test.lines().upright()) {
        EXPECT_EQ(test.lines().startOf(line).outward, (TQPoint{0.0, 1.0}));
        EXPECT_EQ(test.lines().endOf(line).outward, (TQPoint{0.0, -1.0}));
    }
    for (const MapLine& line : test.lines().level()) {
        EXPECT_EQ(test.lines().startOf(line).outward, (TQPoint{-1.0, 0.0}));
        EXPECT_EQ(test.lines().endOf(line).outward, (TQPoint{1.0, 0.0}));
    }
}

TEST(MapLines, BorderHasFourSidesAndOfAPolarMapOne) {
    EXPECT_EQ(LinesCase("EPSG:32632", kGermany, newGraticule({2.0, 2.0})).lines().border().size(), 4U);
    const LinesCase polar("EPSG:3995", kArctic, newGraticule({30.0, 10.0}));
    const std::vector<CurvePiece> circle = polar.lines().border();
    ASSERT_EQ(circle.size(), 1U) << "neither the pole nor the meridian where it begins and ends";
    const TQPoint pole = polar.frame().toPage({0.0, 0.0});
    const double radius = distanceOf(pole, polar.pageOf({0.0, 60.0}));
    for (const TQPoint& point : pointsOf(circle[0], 10)) {
        EXPECT_NEAR(distanceOf(point, pole), radius, 0.02);
    }
}

TEST(MapLines, MeridianWhereAPolarMapBeginsAndEndsIsThereOnce) {
    const LinesCase test("EPSG:3995", kArctic, newGraticule({90.0, 10.0}));
    EXPECT_EQ(valuesOf(test.lines().upright()), (Values{-180.0, -90.0, 0.0, 90.0}));
    const LinesCase cylinder("EPSG:3395", {-180.0, -60.0, 180.0, 60.0}, newGraticule({90.0, 30.0}));
    EXPECT_EQ(valuesOf(cylinder.lines().upright()), (Values{-180.0, -90.0, 0.0, 90.0, 180.0}));
}

TEST(MapLines, PlacesOutsideTheExtentAreNotOnTheMap) {
    const LinesCase test("EPSG:32632", kGermany, newGraticule({2.0, 2.0}));
    const TQPoint hamburg{9.9930, 53.5507};
    ASSERT_TRUE(test.lines().placeOf(hamburg));
    EXPECT_LT(distanceOf(*test.lines().placeOf(hamburg), test.pageOf(hamburg)), 1e-9);
    EXPECT_FALSE(test.lines().placeOf({13.4105, 52.5244})) << "Berlin";
    EXPECT_FALSE(test.lines().placeOf({9.0, -50.0}));
    EXPECT_TRUE(test.lines().isOnMap(test.pageOf(hamburg)));
    EXPECT_TRUE(test.lines().isOnMap(test.pageOf({6.01, 47.01})));
    EXPECT_FALSE(test.lines().isOnMap(test.pageOf({5.99, 47.01}))) << "in the frame, outside the extent";
    EXPECT_FALSE(test.lines().isOnMap({0.0, 0.0}));
}

// However small the distance is: the lines are counted, not made.
TEST(MapLines, CountsLinesBeyondAllBounds) {
    const GeographicExtent world{};
    EXPECT_NEAR(LinesCase("+proj=robin", world, newGraticule({1e-6, 1e-6})).lines().count(), 5.4e8, 10.0);
    EXPECT_GT(LinesCase("+proj=robin", world, newGraticule({1e-300, 1e-300})).lines().count(), 1e300);
    EXPECT_FALSE(LinesCase("+proj=robin", world, newGraticule({5e-324, 5e-324})).lines().count() <=
                 MapLines::mostLines);
    EXPECT_EQ(LinesCase("+proj=robin", world, newGraticule({1e300, 1e300})).lines().count(), 2.0)
        << "Greenwich and the equator";
}

} // namespace
