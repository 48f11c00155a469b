#include "tools/tqproj/map/CurveTracer.h"

#include "testing/EvenSteps.h"
#include "tests/tools/CubicPoint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

namespace {

constexpr double kTolerance = 0.02;
constexpr double kRadius = 300.0;

TQPoint circle(double t) {
    const double angle = 2.0 * std::numbers::pi * t;
    return {kRadius * std::cos(angle), kRadius * std::sin(angle)};
}

double distanceToCircle(const TQPoint& point) { return std::abs(std::hypot(point.x, point.y) - kRadius); }

/// A number from 0 to 1 that has nothing to do with that of any other parameter.
double noise(double t) {
    auto bits = static_cast<std::uint64_t>(t * 9007199254740992.0) * 0x9E3779B97F4A7C15U;
    bits = (bits ^ (bits >> 29U)) * 0xBF58476D1CE4E5B9U;
    return static_cast<double>((bits ^ (bits >> 32U)) >> 11U) / 9007199254740992.0;
}

bool isFinite(const std::vector<CurvePiece>& pieces) {
    return std::ranges::all_of(pieces, [](const CurvePiece& piece) {
        return std::ranges::all_of(pointsOf(piece, 4), [](const TQPoint& point) {
            return std::isfinite(point.x) && std::isfinite(point.y);
        });
    });
}

TEST(CurveTracer, StraightLineIsOneArcForEachPartAndExactlyOnTheLine) {
    const auto line = [](double t) { return TQPoint{10.0 + 300.0 * t, 20.0 - 400.0 * t}; };
    for (const int parts : {1, 2, 16}) {
        const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(line, parts);
        ASSERT_EQ(pieces.size(), 1U);
        EXPECT_EQ(pieces[0].arcs.size(), static_cast<std::size_t>(parts));
        EXPECT_EQ(pieces[0].start, line(0.0));
        EXPECT_EQ(pieces[0].end(), line(1.0));
        for (const TQPoint& point : pointsOf(pieces[0], 10)) {
            EXPECT_NEAR(400.0 * (point.x - 10.0) + 300.0 * (point.y - 20.0), 0.0, 1e-6); // 500 x the distance
        }
    }
}

TEST(CurveTracer, CircleIsKeptWithinTheToleranceAndHasNoCorner) {
    for (const int parts : {1, 3, 16}) {
        const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(circle, parts);
        ASSERT_EQ(pieces.size(), 1U) << parts;
        for (const TQPoint& point : pointsOf(pieces[0], 100)) {
            EXPECT_LE(distanceToCircle(point), kTolerance);
        }
        const std::vector<CubicArc>& arcs = pieces[0].arcs;
        for (std::size_t index = 1; index < arcs.size(); ++index) {
            EXPECT_LT(turnBetween(arcs[index - 1], arcs[index]), 1e-5);
        }
        EXPECT_LT(turnBetween(arcs.back(), {arcs.front()}), 1e-5) << "where it closes";
    }
}

// Between the three places where arcs are compared with their curve they might do as they like.
TEST(CurveTracer, CurveOfUnevenBendingIsKeptWithinTheToleranceEverywhere) {
    const auto curve = [](double t) { return TQPoint{600.0 * t, 60.0 * std::sin(40.0 * t * t)}; };
    const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(curve, 4);
    ASSERT_EQ(pieces.size(), 1U);
    std::vector<TQPoint> exact;
    for (const double t : evenSteps(0.0, 1.0, 200'001)) { // 0.03 apart
        exact.push_back(curve(t));
    }
    for (const TQPoint& point : pointsOf(pieces[0], 25)) {
        const auto nearby = [&point](const TQPoint& other) {
            return std::abs(other.x - point.x) <= kTolerance && distanceOf(other, point) <= kTolerance;
        };
        EXPECT_TRUE(std::ranges::any_of(exact, nearby)) << "at " << point.x << " " << point.y;
    }
    for (std::size_t index = 1; index < pieces[0].arcs.size(); ++index) {
        EXPECT_LT(turnBetween(pieces[0].arcs[index - 1], pieces[0].arcs[index]), 1e-5);
    }
}

TEST(CurveTracer, CornerIsClosed) {
    const auto corner = [](double t) { return TQPoint{600.0 * t, 300.0 * std::abs(t - 0.3)}; };
    const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(corner, 4);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0].start, corner(0.0));
    EXPECT_EQ(pieces[0].end(), corner(1.0));
}

// As where the image of an oblique projection is folded at its edge.
TEST(CurveTracer, CornerIsKeptWithinTheToleranceWhereverItIs) {
    for (const double place : evenSteps(0.2, 0.8, 241)) {
        const auto corner = [place](double t) { return TQPoint{600.0 * t, 600.0 * std::abs(t - place)}; };
        double farthest = 0.0;
        for (const CurvePiece& piece : CurveTracer(kTolerance).traced(corner, 4)) {
            for (const TQPoint& point : pointsOf(piece, 50)) {
                const double besideOneLine = std::abs(point.y - corner(point.x / 600.0).y) / std::sqrt(2.0);
                farthest = std::max(farthest, besideOneLine);
            }
        }
        EXPECT_LE(farthest, kTolerance) << "corner at " << place;
    }
}

TEST(CurveTracer, JumpsAreBrokenAndFollowedToTheirEnds) {
    const auto phase = [](double t) { return 3.0 * t + 0.5; };
    const auto sawtooth = [&phase](double t) {
        return TQPoint{100.0 * t, 100.0 * (phase(t) - std::floor(phase(t)))};
    };
    const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(sawtooth, 4);
    ASSERT_EQ(pieces.size(), 4U);
    const double jumps[]{0.0, 1.0 / 6.0, 3.0 / 6.0, 5.0 / 6.0, 1.0};
    for (std::size_t index = 0; index < pieces.size(); ++index) {
        EXPECT_NEAR(pieces[index].start.x / 100.0, jumps[index], 1e-5);
        EXPECT_NEAR(pieces[index].end().x / 100.0, jumps[index + 1], 1e-5);
        for (const TQPoint& point : pointsOf(pieces[index], 10)) {
            EXPECT_NEAR(point.y, 100.0 * (phase(point.x / 100.0) - static_cast<double>(index)), 1e-6)
                << "the line of its own tooth";
        }
    }
}

TEST(CurveTracer, GapIsFollowedToItsEnds) {
    const auto open = [](double t) { return t > 0.3 && t < 0.7 ? std::nullopt : std::optional(circle(t)); };
    for (const int parts : {3, 16}) {
        const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(open, parts);
        ASSERT_EQ(pieces.size(), 2U) << parts;
        constexpr double allowance = 2.0 * std::numbers::pi * kRadius * 1e-5;
        EXPECT_EQ(pieces[0].start, circle(0.0));
        EXPECT_LT(distanceOf(pieces[0].end(), circle(0.3)), allowance);
        EXPECT_LT(distanceOf(pieces[1].start, circle(0.7)), allowance);
        EXPECT_EQ(pieces[1].end(), circle(1.0));
        for (const CurvePiece& piece : pieces) {
            for (const TQPoint& point : pointsOf(piece, 20)) {
                EXPECT_LE(distanceToCircle(point), kTolerance);
                EXPECT_GE(point.x, kRadius * std::cos(0.6 * std::numbers::pi) - allowance) << "in the gap";
            }
        }
    }
}

TEST(CurveTracer, CurveThatIsThereInTheMiddleOnlyIsFound) {
    const auto middle = [](double t) {
        return t < 0.45 || t > 0.55 ? std::nullopt : std::optional(TQPoint{600.0 * t, 0.0});
    };
    const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(middle, 16);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_NEAR(pieces[0].start.x, 270.0, 600.0 * 1e-5);
    EXPECT_NEAR(pieces[0].end().x, 330.0, 600.0 * 1e-5);
}

TEST(CurveTracer, NoiseEndsSoon) {
    for (const double gaps : {0.0, 0.3}) {
        int evaluations = 0;
        const auto curve = [&](double t) {
            ++evaluations;
            return noise(t) < gaps ? std::nullopt
                                   : std::optional(TQPoint{700.0 * noise(t), 700.0 * noise(0.5 * t)});
        };
        const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(curve, 16);
        EXPECT_TRUE(isFinite(pieces));
        EXPECT_LT(evaluations, 50'000) << "20,000 samples, and for every three of them four for tangents";
    }
}

TEST(CurveTracer, CurveWithoutPointsGivesNothingAtOnce) {
    int evaluations = 0;
    const auto nothing = [&evaluations](double) -> std::optional<TQPoint> {
        ++evaluations;
        return std::nullopt;
    };
    EXPECT_TRUE(CurveTracer(kTolerance).traced(nothing, 16).empty());
    EXPECT_LT(evaluations, 1000);
}

TEST(CurveTracer, CurveThatIsOnePointHasNoLength) {
    const auto pole = [](double) { return TQPoint{3.0, 4.0}; };
    for (const CurvePiece& piece : CurveTracer(kTolerance).traced(pole, 16)) {
        for (const TQPoint& point : pointsOf(piece, 4)) {
            EXPECT_LT(distanceOf(point, {3.0, 4.0}), 1e-12);
        }
    }
}

TEST(CurveTracer, WhatIsNotFiniteIsNotDrawn) {
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        const auto curve = [bad](double t) { return TQPoint{600.0 * t, t > 0.25 && t < 0.5 ? bad : 0.0}; };
        const std::vector<CurvePiece> pieces = CurveTracer(kTolerance).traced(curve, 16);
        ASSERT_EQ(pieces.size(), 2U);
        EXPECT_TRUE(isFinite(pieces));
    }
}

} // namespace
