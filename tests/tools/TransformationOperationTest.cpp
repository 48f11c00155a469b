#include "tools/tqproj/TransformationOperation.h"

#include "proj/TQGeoCSTrans.h"
#include "testing/ProjOperation.h"
#include "tools/tqproj/LibraryMessages.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr const char* kWGS84 = "EPSG:4326";
constexpr const char* kNTF = "EPSG:4275";

TEST(TransformationOperation, ForwardGoesToTheTargetAndInverseBackInDegrees) {
    const ProjOperation expected = ProjOperation::betweenSystems(kWGS84, kNTF);
    const TQPoint degrees{2.3522, 48.8566};
    TQGeoCSTrans transformation(kWGS84, kNTF);
    TQPoint out;
    EXPECT_EQ(TransformationOperation(transformation, Direction::Forward).convert(degrees, out), "");
    EXPECT_EQ(out.x, expected.forward(degrees).x);
    EXPECT_EQ(out.y, expected.forward(degrees).y);
    EXPECT_EQ(TransformationOperation(transformation, Direction::Inverse).convert(degrees, out), "");
    EXPECT_EQ(out.x, expected.inverse(degrees).x);
    EXPECT_EQ(out.y, expected.inverse(degrees).y);
}

TEST(TransformationOperation, PointThatCannotBeTransformedHasAReason) {
    LibraryMessages messages;
    TQGeoCSTrans transformation(kWGS84, "EPSG:4230"); // known in and around Europe
    transformation.refuseBallpark();
    TQPoint out;
    for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
        const TransformationOperation operation(transformation, direction);
        EXPECT_EQ(operation.convert({180.0, 48.0}, out), "the point cannot be transformed");
        EXPECT_FALSE(messages.isEmpty());
        messages.take();
    }
}

// PROJ falls back on no transformation where it refuses the latitude for the others.
TEST(TransformationOperation, LatitudeBeyondAPoleIsRefused) {
    for (const char* target : {"EPSG:4230", "EPSG:4807", kWGS84}) {
        TQGeoCSTrans transformation(kWGS84, target);
        for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
            const TransformationOperation operation(transformation, direction);
            TQPoint out;
            for (const double latitude : {91.0, -91.0, 90.000001, 269.0, 1e300}) {
                EXPECT_FALSE(operation.accepts({2.0, latitude}));
                EXPECT_EQ(operation.convert({2.0, latitude}, out), "the latitude lies beyond a pole");
            }
            EXPECT_TRUE(operation.accepts({2.0, 90.0}));
            EXPECT_EQ(operation.convert({2.0, -90.0}, out), "") << target;
        }
    }
}

// PROJ makes no error of it.
TEST(TransformationOperation, ResultThatIsNotFiniteIsAFailure) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TQGeoCSTrans transformation(kWGS84, kNTF);
    TQPoint out;
    const TransformationOperation operation(transformation, Direction::Forward);
    EXPECT_EQ(operation.convert({nan, 0.5}, out), "the point cannot be transformed");
    EXPECT_EQ(operation.convert({0.5, nan}, out), "the point cannot be transformed");
}

} // namespace
