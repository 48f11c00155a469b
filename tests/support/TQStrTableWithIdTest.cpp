#include "support/TQStrTableWithId.h"

#include <gtest/gtest.h>
#include <vector>

TEST(TQStrTableWithId, KeepsTextsWithTheirIdentifiers) {
    TQStrTableWithId table;
    table.add(7, "seven");
    const std::vector<TQStrWithId> list = {{-1, "minus one"}, {3, "three"}};
    table.addList(list);
    ASSERT_EQ(table.count(), 3);
    EXPECT_EQ(table.entryAt(1)->id, -1);
    EXPECT_EQ(table.entryAt(2)->text, "three");
    EXPECT_EQ(*table.stringForId(7), "seven");
    EXPECT_EQ(table.stringForId(8), nullptr);
    EXPECT_EQ(table.entryAt(-1), nullptr);
    EXPECT_EQ(table.entryAt(3), nullptr);
}

TEST(TQStrTableWithId, FindsTheIdentifierOfAText) {
    TQStrTableWithId table;
    table.add(1, "degr\xDDs");
    table.add(2, "degr\xC3\xA9s");
    std::int32_t id = -5;
    EXPECT_TRUE(table.idForString("degr\xC3\xA9s", id));
    EXPECT_EQ(id, 1);
    EXPECT_FALSE(table.idForString("none", id));
    EXPECT_EQ(id, 1);
}

TEST(TQStrTableWithId, TheFirstOfEqualIdentifiersCounts) {
    TQStrTableWithId table;
    table.add(1, "first");
    table.add(1, "second");
    EXPECT_EQ(*table.stringForId(1), "first");
}

TEST(TQStrTableWithId, AddsAnotherTableAndItself) {
    TQStrTableWithId table;
    table.add(1, "one");
    TQStrTableWithId other;
    other.add(2, "two");
    table.addList(other);
    table.addList(table);
    ASSERT_EQ(table.count(), 4);
    EXPECT_EQ(table.entryAt(3)->text, "two");
    EXPECT_EQ(other.count(), 1);
}
