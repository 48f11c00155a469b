#include "projections/SideBySide.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

// The measures that every projection has from its base class - directions of north, of meridians and of
// parallels, the plane extent of a geographic rectangle - on the projections of the library, beside
// derivatives and lattices taken from PROJ's conversions.

using sidebyside::Area;
using sidebyside::System;
using sidebyside::systems;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;
constexpr int kPoints = 200;

/// PROJ's conversion of one system with what is derived from it.
class Reference {
  public:
    explicit Reference(const System& system) : _proj(system.proj()) {}

    TQPoint image(const TQPoint& geo) const { return _proj.forward(geo); }

    /// Direction of the chord from one image to another.
    double direction(const TQPoint& from, const TQPoint& to) const {
        const TQPoint start = image(from);
        const TQPoint end = image(to);
        return std::atan2(end.y - start.y, end.x - start.x);
    }
    /// Direction of the meridian towards the north, by central differences over 2e-5 rad.
    double meridian(const TQPoint& geo) const {
        return direction({geo.x, geo.y - kHalfStep}, {geo.x, geo.y + kHalfStep});
    }
    /// Direction of the parallel towards the east.
    double parallel(const TQPoint& geo) const {
        return direction({geo.x - kHalfStep, geo.y}, {geo.x + kHalfStep, geo.y});
    }

  private:
    // The third derivative of an image is below 100 times the first over a distance of one radian wherever
    // these tests look: the direction is off by 1e-10 * 100 / 6 at the most.
    static constexpr double kHalfStep = 1e-5;

    ProjOperation _proj;
};

/// How far two directions are apart, in radians.
double turn(double one, double other) { return std::abs(std::remainder(one - other, 2.0 * kPi)); }

/// The same for lines, which have no sense.
double turnOfLines(double one, double other) { return std::abs(std::remainder(one - other, kPi)); }

/// What the six decimals of a file turn its plane by, over the ends of Earth's longest grid: a millimetre in
/// a hundred kilometres.
double turnOfFile(const System& system) { return system.fileRounding / 1e5; }

TQAnglePoint inDegrees(const TQPoint& geo) { return {tq_rad2deg(geo.x), tq_rad2deg(geo.y), TQUnitDegree}; }

} // namespace

class MeasuresSideBySide : public testing::TestWithParam<std::size_t> {
  protected:
    static const System& system() { return systems()[GetParam()]; }
    static const TQProjection& projection() { return *system().projection; }

    /// Points of the area of use, two degrees from the poles, from the equator of a gnomonic projection and
    /// from the edge.
    template <class Check>
    static void forPoints(const Check& check) {
        const Area& usual = system().usual;
        const Area inner{usual.west + 0.1, usual.east - 0.1, std::max(usual.south + 0.1, -80.0),
                         std::min(usual.north - 0.1, 80.0)};
        RandomNumbers random(12);
        for (int i = 0; i < kPoints; ++i) {
            check(inner.randomPoint(random));
        }
    }
};

// The probe lies 1e-5 m away, where coordinates are rounded to 2e-9 m each.
TEST_P(MeasuresSideBySide, NorthAngleIsTheDirectionOfTheMeridian) {
    const Reference reference(system());
    forPoints([&](const TQPoint& geo) {
        EXPECT_LE(turn(projection().northAngleAt(geo), reference.meridian(geo)), 2e-3)
            << tq_rad2deg(geo.x) << " " << tq_rad2deg(geo.y);
    });
}

// A straight line is measured over a degree, towards the equator in the north, any other curve over a metre
// or two. Oblique projections call their curves straight lines: their chord over that degree is expected.
TEST_P(MeasuresSideBySide, MeridianTangentIsTheDirectionOfTheMeridian) {
    const Reference reference(system());
    const bool isStraight = projection().meridianShape() == TQProjection::StraightLine;
    forPoints([&](const TQPoint& geo) {
        const TQPoint beyond{geo.x, geo.y < kDegree ? geo.y + kDegree : geo.y - kDegree};
        const double chord =
            beyond.y > geo.y ? reference.direction(geo, beyond) : reference.direction(beyond, geo);
        const double expected = isStraight ? chord : reference.meridian(geo);
        EXPECT_LE(turn(projection().meridianTangentAt(inDegrees(geo)), expected), 1e-7 + turnOfFile(system()))
            << tq_rad2deg(geo.x) << " " << tq_rad2deg(geo.y);
    });
}

TEST_P(MeasuresSideBySide, ParallelTangentIsTheDirectionOfTheParallel) {
    const Reference reference(system());
    const int shape = projection().parallelShape();
    forPoints([&](const TQPoint& geo) {
        const double tangent = projection().parallelTangentAt(inDegrees(geo));
        const double tolerance = 1e-7 + turnOfFile(system());
        if (shape == TQProjection::CircularArc) {
            // To the east with the centre on the left, to the west around a southern one.
            EXPECT_LE(turnOfLines(tangent, reference.parallel(geo)), tolerance);
            const TQPoint center = projection().center();
            const TQPoint image = reference.image(geo);
            const double outwards = std::atan2(image.y - center.y, image.x - center.x);
            EXPECT_LE(turn(tangent, outwards + kPi / 2.0), tolerance);
        } else if (shape == TQProjection::StraightLine) {
            EXPECT_LE(turn(tangent, reference.direction(geo, {geo.x + kDegree, geo.y})), tolerance);
        } else {
            EXPECT_LE(turn(tangent, reference.parallel(geo)), tolerance);
        }
    });
}

// The extent is that of a lattice of a hundred steps, without its last row and column, and a margin of the
// larger first step on every side.
TEST_P(MeasuresSideBySide, ExtentIsThatOfTheLattice) {
    const Area& area = system().usual;
    const Reference reference(system());
    constexpr int steps = 100;
    const TQPoint step{tq_deg2rad((area.east - area.west) / steps),
                       tq_deg2rad((area.north - area.south) / steps)};
    const TQPoint corner{tq_deg2rad(area.west), tq_deg2rad(area.south)};
    const TQPoint first = reference.image(corner);
    TQPoint least = first;
    TQPoint largest = first;
    for (int row = 0; row < steps; ++row) {
        for (int column = 0; column < steps; ++column) {
            const TQPoint point = reference.image({corner.x + column * step.x, corner.y + row * step.y});
            least = {std::min(least.x, point.x), std::min(least.y, point.y)};
            largest = {std::max(largest.x, point.x), std::max(largest.y, point.y)};
        }
    }
    const double margin = std::max(planeDistance(first, reference.image({corner.x + step.x, corner.y})),
                                   planeDistance(first, reference.image({corner.x, corner.y + step.y})));

    const TQRect extent = projection().computeKilographicalLimitFromGeo(
        TQAnglePoint(area.west, area.south, TQUnitDegree), TQAnglePoint(area.east, area.north, TQUnitDegree));
    // Twice what the systems may be apart from PROJ, at a point and in the margin; a quarter of a millimetre
    // for the arc of Bonne and the series of the transverse Mercator.
    const double tolerance = 2.0 * (system().fileRounding + 2.5e-4);
    EXPECT_NEAR(extent.origin().x, least.x - margin, tolerance);
    EXPECT_NEAR(extent.origin().y, least.y - margin, tolerance);
    EXPECT_NEAR(extent.size().width, largest.x - least.x + 2.0 * margin, 2.0 * tolerance);
    EXPECT_NEAR(extent.size().height, largest.y - least.y + 2.0 * margin, 2.0 * tolerance);
}

INSTANTIATE_TEST_SUITE_P(Systems, MeasuresSideBySide,
                         testing::Range<std::size_t>(0, sidebyside::systems().size()),
                         [](const auto& instance) {
                             return sidebyside::identifierOf(systems()[instance.param]);
                         });
