#include "manager/TQProjectionFactory.h"

#include "projection/TQProjection.h"

#include <gtest/gtest.h>

#include <utility>

TEST(TQProjectionFactory, MakesEachClassOfItsCode) {
    const std::pair<int, const char*> classes[] = {
        {1, "TQPrGaussKruger"},        {3, "TQPrUtm"},
        {4, "TQPrMercTransv"},         {5, "TQPrMercDirect"},
        {7, "TQPrMercDirectModified"}, {15, "TQPrMercDirectGCTP"},
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
