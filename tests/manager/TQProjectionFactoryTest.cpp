#include "manager/TQProjectionFactory.h"

#include "projection/TQProjection.h"

#include <gtest/gtest.h>

#include <utility>

TEST(TQProjectionFactory, MakesEachClassOfItsCode) {
    const std::pair<int, const char*> classes[] = {
        {0, "TQPrBonne"},
        {1, "TQPrGaussKruger"},
        {2, "TQPrLambert"},
        {3, "TQPrUtm"},
        {4, "TQPrMercTransv"},
        {5, "TQPrMercDirect"},
        {6, "TQPrObliqueMercator"},
        {7, "TQPrMercDirectModified"},
        {8, "TQPrPolarStereo"},
        {9, "TQPrPolarGnomon"},
        {10, "TQPrPolarAzimuthal"},
        {11, "TQPrEquiRectangular"},
        {12, "TQPrSwissObliqueMercator"},
        {13, "TQPrCassiniSoldner"},
        {15, "TQPrMercDirectGCTP"},
        {127, "TQPrProj4"},
    };
    for (const auto& [code, className] : classes) {
        const auto projection = tq_newProjectionOfType(code);
        ASSERT_NE(projection, nullptr) << code;
        EXPECT_STREQ(projection->className(), className);
        EXPECT_EQ(projection->projectionType(), code);
        EXPECT_EQ(projection->name(), nullptr);
        EXPECT_EQ(projection->ellipsoid(), nullptr);
    }
}

TEST(TQProjectionFactory, HasNoClassForOtherCodes) {
    for (const int code : {-2147483647, -256, -2, -1, 14, 16, 17, 64, 126, 128, 255, 256, 261, 2147483647}) {
        EXPECT_EQ(tq_newProjectionOfType(code), nullptr) << code;
    }
}

TEST(TQProjectionFactory, EveryProjectionItMakesHasTheCodeAskedFor) {
    for (int code = -300; code <= 300; ++code) {
        const auto projection = tq_newProjectionOfType(code);
        if (projection != nullptr) {
            EXPECT_EQ(projection->projectionType(), code);
            EXPECT_FALSE(projection->typeName().isEmpty());
        }
    }
}
