#include "tools/tqproj/ProjectionOperation.h"

#include "proj/TQPrProj4.h"
#include "projection/TQDummyProjection.h"
#include "projection/TQProjection.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/map/GeographicExtent.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <sstream>
#include <string>
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

    std::string forward(const TQPoint& in) {
        return ProjectionOperation(projection, Direction::Forward, BeyondDomain::Refuse).convert(in, out);
    }

    std::string inverse(const TQPoint& in) {
        return ProjectionOperation(projection, Direction::Inverse, BeyondDomain::Refuse).convert(in, out);
    }
};

// By the definition of EPSG:27572 its natural origin, 52 grads north on the meridian of Paris, has the
// coordinates 600000, 2200000; its geodetic system is in grads.
TEST(ProjectionOperation, AnglesMeanTheSamePlaceForASystemInGrads) {
    TQPrProj4 projection;
    ASSERT_EQ(projection.initFromPROJString("EPSG:27572", false), 0);
    TQPoint out;
    const TQPoint origin{0.0, tq_deg2rad(46.8)};
    EXPECT_EQ(ProjectionOperation(projection, Direction::Forward, BeyondDomain::Refuse).convert(origin, out),
              "");
    EXPECT_NEAR(out.x, 600000.0, 1e-6);
    EXPECT_NEAR(out.y, 2200000.0, 1e-6);
    EXPECT_EQ(ProjectionOperation(projection, Direction::Inverse, BeyondDomain::Refuse)
                  .convert({600000.0, 2200000.0}, out),
              "");
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

TEST(ProjectionOperation, ProjectionThatConvertsNothingIsAFailure) {
    const TQDummyProjection placeholder;
    TQPoint out;
    for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
        EXPECT_EQ(ProjectionOperation(placeholder, direction, BeyondDomain::Refuse).convert({1.0, 1.0}, out),
                  kFailed);
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
    const ProjectionOperation forward(projection, Direction::Forward, BeyondDomain::Refuse);
    std::vector<TQPoint> places;
    for (int number = -9; number <= 9; ++number) {
        places.push_back({0.05 * number, 0.08 * number + 0.8});
    }
    std::vector<TQPoint> images = places;
    forward.convertAll(images);
    std::vector<TQPoint> origins = images;
    const ProjectionOperation inverse(projection, Direction::Inverse, BeyondDomain::Refuse);
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

/// Expects that points become together what each becomes alone.
void expectSameTogether(const ProjectionOperation& operation, const std::vector<TQPoint>& points) {
    std::vector<TQPoint> images = points;
    operation.convertAll(images);
    for (std::size_t index = 0; index < points.size(); ++index) {
        TQPoint image;
        const bool hasImage = operation.convert(points[index], image).empty();
        EXPECT_EQ(isFinite(images[index]), hasImage) << points[index].x << " " << points[index].y;
        EXPECT_TRUE(!hasImage || images[index] == image) << points[index].x << " " << points[index].y;
    }
}

TEST(ProjectionOperation, ManyPointsAreRefusedBeyondTheDomainAsEachIs) {
    const CapturedMessages messages;
    ProjectionLibrary library("");
    for (const char* name :
         {"British National Grid", "AGD66 / Vicgrid66", "Batavia / NEIEZ", "Bonne of France (Plessis 1817)",
          "Brazil Mercator", "CH1903 / LV03", "DHDN / Soldner Berlin", "South Pole gnomonic (sphere)",
          "South Pole azimuthal equidistant (sphere)", "Plate carrée (WGS 84)",
          "RSO Peninsular Malaysia (GDM2000)", "UPS South (WGS 84)"}) {
        SCOPED_TRACE(name);
        const TQProjection& projection = *library.projection(name);
        std::vector<TQPoint> places;
        std::vector<TQPoint> images;
        const ProjectionOperation forward(projection, Direction::Forward, BeyondDomain::Refuse);
        for (int number = 0; number < 2000; ++number) {
            const TQPoint place = forward.atNearestTurn(
                {tq_deg2rad(number * 37 % 360 - 180.0), tq_deg2rad(number % 179 - 89.0)});
            if (forward.accepts(place)) {
                places.push_back(place);
            }
            images.push_back({(number * 37 % 100 - 50.0) * 4e5, (number % 97 - 48.0) * 4e5});
        }
        expectSameTogether(forward, places);
        expectSameTogether(ProjectionOperation(projection, Direction::Inverse, BeyondDomain::Refuse), images);
    }
}

/// Whether points of the area of a projection are converted there and back.
bool servesArea(const TQProjection& projection, const GeographicExtent& area) {
    const ProjectionOperation forward(projection, Direction::Forward, BeyondDomain::Refuse);
    const ProjectionOperation inverse(projection, Direction::Inverse, BeyondDomain::Refuse);
    constexpr int steps = 5;
    bool serves = true;
    for (int number = 0; number < steps * steps; ++number) {
        const double east = (number % steps + 0.5) / steps; // of the area
        const double north = (number / steps + 0.5) / steps;
        TQPoint image;
        TQPoint place;
        const TQPoint radians{tq_deg2rad(area.west + east * area.width()),
                              tq_deg2rad(area.south + north * (area.north - area.south))};
        serves = serves && forward.convert(forward.atNearestTurn(radians), image).empty() &&
                 inverse.convert(image, place).empty();
    }
    return serves;
}

// The domains are wide enough for what the projections are meant for, but for UPS South, which gives no way
// back, and for a grid whose area reaches farther east than a Cassini-Soldner is good for.
TEST(ProjectionOperation, EveryProjectionOfTheLibraryServesItsArea) {
    const CapturedMessages messages;
    ProjectionLibrary library("");
    std::ifstream areas(
        tq_filesystemPath(tq_createPath(TQGetApplicationSharedDirectory(), "resProj", "areas.tsv")));
    int count = 0;
    std::set<std::string> unserved;
    for (std::string line; std::getline(areas, line); ++count) {
        std::istringstream columns(line);
        std::string name;
        std::getline(columns, name, '\t');
        double west = 0.0;
        double south = 0.0;
        double east = 0.0;
        double north = 0.0;
        columns >> west >> south >> east >> north;
        const auto area = GeographicExtent::of(west, south, east, north);
        if (!area || !servesArea(*library.projection(name), *area)) {
            unserved.insert(name);
        }
    }
    EXPECT_GT(count, 1000);
    const std::set<std::string> tooNarrow{"UPS South (WGS 84)"};
    EXPECT_EQ(unserved, tooNarrow);
}

TEST(ProjectionOperation, FailuresAmongManyPointsAreNotFinite) {
    ThousandFold projection;
    projection.beforeAnswer = [](TQPoint& result) { return result.x == 500.0 ? -1 : 0; };
    std::vector<TQPoint> points{{0.25, 1.0}, {0.5, 1.0}, {1e308, 1.0}};
    ProjectionOperation(projection, Direction::Forward, BeyondDomain::Refuse).convertAll(points);
    EXPECT_EQ(points[0], (TQPoint{250.0, 1000.0}));
    EXPECT_FALSE(isFinite(points[1]));
    EXPECT_FALSE(isFinite(points[2]));
}

TEST(ProjectionOperation, CopyNeedsTheProjectionNoMore) {
    std::unique_ptr<PointOperation> copy;
    {
        TQPrProj4 projection;
        ASSERT_EQ(projection.initFromPROJString("EPSG:27572", false), 0);
        copy = ProjectionOperation(projection, Direction::Forward, BeyondDomain::Refuse).copy();
    }
    TQPoint out;
    EXPECT_EQ(copy->convert({0.0, tq_deg2rad(46.8)}, out), "");
    EXPECT_NEAR(out.x, 600000.0, 1e-6);
}

} // namespace
