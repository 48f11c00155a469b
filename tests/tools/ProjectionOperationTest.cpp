#include "tools/tqproj/ProjectionOperation.h"

#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "support/TQUnit.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kOutside = "the point lies outside the area of the projection";
constexpr std::string_view kFailed = "the projection cannot convert the point";

// Plane coordinates are a thousand times the angles, unless a test wants another answer.
class ThousandFold : public TQProjection {
    TQ_PROJECTION(ThousandFold, TQProjection, 99, "Thousandfold")

  public:
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override {
        global = {geo.x * 1000.0, geo.y * 1000.0};
        return beforeAnswer(global);
    }

    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override {
        geo = {global.x / 1000.0, global.y / 1000.0};
        return beforeAnswer(geo);
    }

    bool isGeoPtValid(const TQPoint& geo) const override { return geo.y <= 1.5; }

    bool isGlobalPtValid(const TQPoint& global) const override { return global.y <= 1200.0; }

    std::function<int(TQPoint&)> beforeAnswer = [](TQPoint&) { return 0; };
};

struct ProjectionOperationCase {
    ThousandFold projection;
    TQPoint out;

    std::string_view forward(const TQPoint& in) {
        return ProjectionOperation(projection, Direction::Forward).convert(in, out);
    }

    std::string_view inverse(const TQPoint& in) {
        return ProjectionOperation(projection, Direction::Inverse).convert(in, out);
    }
};

// By the definition of EPSG:27572 its natural origin, 52 grads north on the meridian of Paris, has the
// coordinates 600000, 2200000; its geodetic system is in grads.
TEST(ProjectionOperation, AnglesMeanTheSamePlaceForASystemInGrads) {
    TQPrProj4 projection;
    ASSERT_EQ(projection.initFromPROJString("EPSG:27572", false), 0);
    TQPoint out;
    const TQPoint origin{0.0, tq_deg2rad(46.8)};
    EXPECT_EQ(ProjectionOperation(projection, Direction::Forward).convert(origin, out), "");
    EXPECT_NEAR(out.x, 600000.0, 1e-6);
    EXPECT_NEAR(out.y, 2200000.0, 1e-6);
    EXPECT_EQ(ProjectionOperation(projection, Direction::Inverse).convert({600000.0, 2200000.0}, out), "");
    EXPECT_NEAR(out.x, 0.0, 1e-13);
    EXPECT_NEAR(out.y, origin.y, 1e-13);
}

TEST(ProjectionOperation, ForwardGoesToThePlaneAndInverseBack) {
    ProjectionOperationCase test;
    EXPECT_EQ(test.forward({0.25, -1.0}), "");
    EXPECT_EQ(test.out.x, 250.0);
    EXPECT_EQ(test.out.y, -1000.0);
    EXPECT_EQ(test.inverse({500.0, 250.0}), "");
    EXPECT_EQ(test.out.x, 0.5);
    EXPECT_EQ(test.out.y, 0.25);
}

TEST(ProjectionOperation, PointMustLieInTheAreaOfItsSide) {
    ProjectionOperationCase test;
    EXPECT_EQ(test.forward({0.0, 1.5}), "");
    EXPECT_EQ(test.forward({0.0, 1.51}), kOutside);
    EXPECT_EQ(test.inverse({0.0, 1200.0}), "");
    EXPECT_EQ(test.inverse({0.0, 1201.0}), kOutside);
}

TEST(ProjectionOperation, CodeOfTheProjectionIsAFailure) {
    ProjectionOperationCase test;
    for (const int code : {-1, 1}) {
        test.projection.beforeAnswer = [code](TQPoint&) { return code; };
        EXPECT_EQ(test.forward({0.0, 0.0}), kFailed) << code;
        EXPECT_EQ(test.inverse({0.0, 0.0}), kFailed) << code;
    }
}

TEST(ProjectionOperation, ResultThatIsNotFiniteIsAFailure) {
    ProjectionOperationCase test;
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        for (double TQPoint::*const coordinate : {&TQPoint::x, &TQPoint::y}) {
            test.projection.beforeAnswer = [value, coordinate](TQPoint& result) {
                result.*coordinate = value;
                return 0;
            };
            EXPECT_EQ(test.forward({0.0, 0.0}), kFailed) << value;
            EXPECT_EQ(test.inverse({0.0, 0.0}), kFailed) << value;
        }
    }
}

TEST(ProjectionOperation, ManyPointsBecomeWhatEachBecomes) {
    TQPrProj4 projection;
    ASSERT_EQ(projection.initFromPROJString("EPSG:27572", false), 0);
    const ProjectionOperation forward(projection, Direction::Forward);
    std::vector<TQPoint> places;
    for (int number = -9; number <= 9; ++number) {
        places.push_back({0.05 * number, 0.08 * number + 0.8});
    }
    std::vector<TQPoint> images = places;
    forward.convertAll(images);
    std::vector<TQPoint> origins = images;
    const ProjectionOperation inverse(projection, Direction::Inverse);
    inverse.convertAll(origins);
    for (std::size_t index = 0; index < places.size(); ++index) {
        TQPoint image;
        TQPoint origin;
        ASSERT_EQ(forward.convert(places[index], image), "") << index;
        ASSERT_EQ(inverse.convert(images[index], origin), "") << index;
        EXPECT_EQ(images[index], image);
        EXPECT_EQ(origins[index], origin);
    }
}

TEST(ProjectionOperation, FailuresAmongManyPointsAreNotFinite) {
    ThousandFold projection;
    projection.beforeAnswer = [](TQPoint& result) { return result.x == 500.0 ? -1 : 0; };
    std::vector<TQPoint> points{{0.25, 1.0}, {0.5, 1.0}, {1e308, 1.0}};
    ProjectionOperation(projection, Direction::Forward).convertAll(points);
    EXPECT_EQ(points[0], (TQPoint{250.0, 1000.0}));
    EXPECT_FALSE(isFinite(points[1]));
    EXPECT_FALSE(isFinite(points[2]));
}

TEST(ProjectionOperation, CopyNeedsTheProjectionNoMore) {
    std::unique_ptr<PointOperation> copy;
    {
        TQPrProj4 projection;
        ASSERT_EQ(projection.initFromPROJString("EPSG:27572", false), 0);
        copy = ProjectionOperation(projection, Direction::Forward).copy();
    }
    TQPoint out;
    EXPECT_EQ(copy->convert({0.0, tq_deg2rad(46.8)}, out), "");
    EXPECT_NEAR(out.x, 600000.0, 1e-6);
}

} // namespace
