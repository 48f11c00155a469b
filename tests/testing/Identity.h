#pragma once

#include "support/TQObject.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

/// An object must answer to its class and to every ancestor, be a member of its own class alone and copy
/// itself as what it is.
/// @param object the object
/// @param lineage its class and the ancestors below TQObject, nearest first
inline void expectIdentity(const TQObject& object, const std::vector<const char*>& lineage) {
    EXPECT_STREQ(object.className(), lineage.front());
    for (const char* name : lineage) {
        const bool isOwn = std::strcmp(name, lineage.front()) == 0;
        EXPECT_NE(object.isKindOf(name), 0) << name;
        EXPECT_NE(object.isKindOfClass(name), 0) << name;
        EXPECT_EQ(object.isMemberOf(name) != 0, isOwn) << name;
        EXPECT_EQ(object.isMemberOfClass(name) != 0, isOwn) << name;
    }
    EXPECT_NE(object.isKindOf("TQObject"), 0);
    EXPECT_NE(object.isKindOfClass("TQObject"), 0);
    for (const char* name : {"TQObject", "TQNuplet", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(object.isMemberOf(name), 0);
        EXPECT_EQ(object.isMemberOfClass(name), 0);
    }
    for (const char* name : {"TQNuplet", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(object.isKindOf(name), 0);
        EXPECT_EQ(object.isKindOfClass(name), 0);
    }
    const std::unique_ptr<TQObject> copy = object.copy();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy.get(), &object);
    EXPECT_STREQ(copy->className(), lineage.front());
}
