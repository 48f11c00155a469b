#include "projection/TQDummyProjection.h"

#include "ellipsoid/TQEllipsoid.h"
#include "testing/Identity.h"
#include "testing/ProbeProjection.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"

#include <gtest/gtest.h>

TEST(TQDummyProjection, AnswersToItsClassAndItsAncestors) {
    expectIdentity(TQDummyProjection(), {"TQDummyProjection", "TQProjection"});
}

TEST(TQDummyProjection, HasNoType) {
    EXPECT_EQ(TQDummyProjection().projectionType(), -1);
    EXPECT_EQ(TQDummyProjection().typeName(), "unknown");
}

TEST(TQDummyProjection, ConvertsNothingAndAnswersZeroEvenOnAnEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQDummyProjection projection;
    projection.setEllipsoid(&ellipsoid);
    TQPoint point{1.0, 2.0};
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.2}, point), 0);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{3.0, 4.0}, point), 0);
    EXPECT_EQ(projection.convertGeoPt(TQAnglePoint(0.1, 0.2, 0x11000001), point), 0);
    EXPECT_EQ(point, (TQPoint{1.0, 2.0}));
}

TEST(TQDummyProjection, CopyHasItsNameAndEllipsoid) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQDummyProjection projection;
    projection.rename(TQString(kSampleName));
    projection.setEllipsoid(&ellipsoid);
    const auto copy = tq_copyOf(projection);
    EXPECT_EQ(*copy->name(), kSampleName);
    EXPECT_EQ(copy->ellipsoid(), &ellipsoid);
    EXPECT_TRUE(copy->isEqual(&projection));
}

TEST(TQDummyProjection, TheNameOfAProjectionIsItsOwnOrTheOneThatItStandsFor) {
    TQDummyProjection placeholder(TQString("asked for"));
    ASSERT_NE(tq_nameOf(placeholder), nullptr);
    EXPECT_EQ(*tq_nameOf(placeholder), "asked for");
    placeholder.rename(TQString("own"));
    EXPECT_EQ(tq_nameOf(placeholder), placeholder.name());
    EXPECT_EQ(tq_nameOf(TQDummyProjection()), nullptr);
    EXPECT_EQ(tq_nameOf(TQDummyProjection(TQString())), nullptr);
    EXPECT_EQ(tq_nameOf(ProbeProjection()), nullptr);
}

TEST(TQDummyProjection, WritesTheArchiveOfTheRoot) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQDummyProjection projection;
    projection.rename(TQString(kSampleName));
    projection.setEllipsoid(&ellipsoid);
    EXPECT_EQ(archivedBytes(projection), sampleBaseArchive().bytes());
}
