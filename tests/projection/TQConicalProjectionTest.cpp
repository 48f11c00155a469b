#include "projection/TQConicalProjection.h"

#include "ellipsoid/TQEllipsoid.h"
#include "testing/CapturedMessages.h"
#include "testing/Identity.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A conical projection whose apex is what the test says.
class Cone : public TQConicalProjection {
    TQ_PROJECTION(Cone, TQConicalProjection, 43, "Cone")

  public:
    Cone() = default;
    Cone(double x, double y) { _apex = {x, y}; }
};

StreamBytes archive() {
    return StreamBytes().tag("TQConicalProjection", 0).append(sampleBaseArchive()).numbers({1234.5, -67.25});
}

} // namespace

TEST(TQConicalProjection, ItsSubclassesAnswerToIt) {
    expectIdentity(Cone(), {"Cone", "TQConicalProjection", "TQProjection"});
}

TEST(TQConicalProjection, ParallelsAreArcsAroundTheApex) {
    const CapturedMessages messages;
    const Cone cone(1234.5, -67.25);
    EXPECT_EQ(cone.parallelShape(), 1);
    EXPECT_EQ(cone.center(), (TQPoint{1234.5, -67.25}));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQConicalProjection, ItsParallelTangentIsSquareToTheApex) {
    // The root converts nothing, so that every image is (0, 0).
    EXPECT_NEAR(Cone(0.0, 5e6).parallelTangentAt(TQAnglePoint(0.1, 0.2, 0x11000001)), 0.0, 1e-15);
    EXPECT_NEAR(Cone(-5e6, 0.0).parallelTangentAt(TQAnglePoint(0.1, 0.2, 0x11000001)), std::numbers::pi / 2.0,
                1e-15);
}

TEST(TQConicalProjection, WritesItsArchiveByteForByte) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    Cone cone(1234.5, -67.25);
    cone.rename(TQString(kSampleName));
    cone.setEllipsoid(&ellipsoid);
    EXPECT_EQ(archivedBytes(cone), archive().bytes());
}

TEST(TQConicalProjection, ReadsItsArchive) {
    const CapturedMessages messages;
    ByteStream stream(archive());
    Cone cone;
    cone.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_EQ(*cone.name(), kSampleName);
    EXPECT_EQ(*cone.pendingEllipsoidName(), kSampleEllipsoidName);
    EXPECT_EQ(cone.center(), (TQPoint{1234.5, -67.25}));
}

TEST(TQConicalProjection, ReportsAnUnknownVersionAndReadsNothing) {
    for (const int version : {1, 2, 32767, -1}) {
        const CapturedMessages messages;
        ByteStream stream(StreamBytes().tag("TQConicalProjection", version).append(sampleBaseArchive()));
        Cone cone(1.0, 2.0);
        cone.unarchiveFrom(stream.get());
        EXPECT_THAT(messages.lines(),
                    ElementsAre("TQConicalProjection::unarchiveFrom(TQReadStream *): version " +
                                std::to_string(version) + " is unknown.\n"));
        EXPECT_EQ(stream.get()->bytesLeft(), sampleBaseArchive().bytes().size());
        EXPECT_EQ(cone.name(), nullptr);
        EXPECT_EQ(cone.center(), (TQPoint{1.0, 2.0}));
    }
}

TEST(TQConicalProjection, ItsArchiveMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(archive().bytes(), [](TQReadStream* stream) {
        Cone cone;
        cone.unarchiveFrom(stream);
        EXPECT_TRUE(std::isfinite(cone.center().x));
    });
}
