#include "tools/tqproj/map/MapGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

TQSize fittingSpacing(double width, double height) {
    const TQAngleSize spacing =
        newFittingGraticule({-width / 2.0, -height / 2.0, width / 2.0, height / 2.0}, {720.0, 720.0})
            ->getAngularSpacing();
    return {spacing.width().value(), spacing.height().value()};
}

void expectLetteredColumnsAndNumberedRows(const TQGrid& grid) {
    const TQIndexParam& index = grid.indexParameters();
    EXPECT_TRUE(index.usesAlphanumbering);
    EXPECT_EQ(index.indexString_horizontal(0).utf8(), "A");
    EXPECT_EQ(index.indexString_horizontal(2).utf8(), "C");
    EXPECT_EQ(index.indexString_horizontal(26).utf8(), "AA");
    EXPECT_EQ(index.indexString_vertical(0).utf8(), "1");
    EXPECT_EQ(index.indexString_vertical(11).utf8(), "12");
}

TEST(MapGrid, SmallMapHasFewerColumnsAndRowsOfAnInchAtLeast) {
    const GeographicExtent extent{0.0, 0.0, 6.0, 80.0};
    const TQAngleSize spacing = newFittingGraticule(extent, {50.0, 290.0})->getAngularSpacing();
    EXPECT_EQ(spacing.width().value(), 10.0);
    EXPECT_EQ(spacing.height().value(), 20.0);
}

TEST(MapGrid, GraticuleHasItsDistancesInDegrees) {
    const std::unique_ptr<TQGrid> grid = newGraticule({5.0, 2.5});
    EXPECT_EQ(grid->mode(), TQGrid::AngularGrid);
    EXPECT_EQ(grid->getAngularSpacing().width().value(), 5.0);
    EXPECT_EQ(grid->getAngularSpacing().height().value(), 2.5);
    EXPECT_EQ(grid->getAngularReferencePoint().longitude().value(), 0.0);
    EXPECT_EQ(grid->getAngularReferencePoint().latitude().value(), 0.0);
    expectLetteredColumnsAndNumberedRows(*grid);
}

TEST(MapGrid, MetricGridHasItsDistanceInMetres) {
    const std::unique_ptr<TQGrid> grid = newMetricGrid(100'000.0);
    EXPECT_EQ(grid->mode(), TQGrid::MetricGrid);
    EXPECT_EQ(grid->unit(), TQUnitMetre);
    EXPECT_EQ(grid->spacing().width, 100'000.0);
    EXPECT_EQ(grid->spacing().height, 100'000.0);
    EXPECT_EQ(grid->referencePoint(), TQPoint{});
    expectLetteredColumnsAndNumberedRows(*grid);
}

TEST(MapGrid, FittingGraticuleHasRoundDistances) {
    EXPECT_EQ(fittingSpacing(360.0, 180.0).width, 45.0);
    EXPECT_EQ(fittingSpacing(360.0, 180.0).height, 30.0);
    EXPECT_EQ(fittingSpacing(16.0, 8.0).width, 2.0);
    EXPECT_EQ(fittingSpacing(16.0, 8.0).height, 1.0);
    EXPECT_EQ(fittingSpacing(16.1, 8.1).width, 5.0);
    EXPECT_EQ(fittingSpacing(16.1, 8.1).height, 2.0);
    EXPECT_EQ(fittingSpacing(1e-6, 1.0).width, 1.0 / 60.0) << "a minute is the least";
    EXPECT_EQ(fittingSpacing(1e-6, 1.0).height, 10.0 / 60.0);
}

TEST(MapGrid, FittingGraticuleHasThreeToEightColumnsWhateverTheExtent) {
    for (double width = 4.0 / 60.0; width <= 360.0; width *= 1.01) {
        const double columns = width / fittingSpacing(width, 1.0).width;
        EXPECT_LE(columns, 8.0 + 1e-9) << width;
        EXPECT_GE(columns, 3.0) << width;
    }
}

} // namespace
