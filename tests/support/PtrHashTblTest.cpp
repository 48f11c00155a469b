#include "support/PtrHashTbl.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <set>

TEST(PtrHashTbl, FindsValuesByAddress) {
    std::array<int, 1000> keys = {};
    std::array<int, 1000> values = {};
    PtrHashTbl table(50);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(table.add(&values[i], &keys[i]), nullptr);
    }
    EXPECT_EQ(table.count(), 1000);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(table.getElement(&keys[i]), &values[i]);
    }
    EXPECT_EQ(table.getElement(&values[0]), nullptr);
    EXPECT_FALSE(table.isKey(&values[0]));
}

TEST(PtrHashTbl, ZeroBucketsMeanFifty) {
    PtrHashTbl table;
    EXPECT_EQ(table.bucketCount(), 0);
    EXPECT_EQ(table.getElement(&table), nullptr);
    EXPECT_EQ(table.removeElement(&table), nullptr);
    table.add(nullptr, &table);
    EXPECT_EQ(table.bucketCount(), 50);
}

TEST(PtrHashTbl, NullIsAKeyAndAValue) {
    int value = 0;
    PtrHashTbl table;
    table.add(&value, nullptr);
    table.add(nullptr, &value);
    EXPECT_EQ(table.getElement(nullptr), &value);
    EXPECT_TRUE(table.isKey(&value));
    EXPECT_EQ(table.getElement(&value), nullptr);
}

TEST(PtrHashTbl, AddingAnExistingKeyReplacesItsValue) {
    std::array<int, 2> values = {};
    PtrHashTbl table;
    table.add(&values[0], &table);
    EXPECT_EQ(table.add(&values[1], &table), &values[0]);
    EXPECT_EQ(table.count(), 1);
    EXPECT_EQ(table.getElement(&table), &values[1]);
    EXPECT_EQ(table.removeElement(&table), &values[1]);
    EXPECT_EQ(table.count(), 0);
}

TEST(PtrHashTbl, IteratesOverEveryValueOnce) {
    std::array<int, 100> values = {};
    PtrHashTbl table(7);
    for (int& value : values) {
        table.add(&value, &value);
    }
    std::set<void*> seen;
    PtrHashState state;
    while (void* value = table.nextElement(state)) {
        EXPECT_TRUE(seen.insert(value).second);
        EXPECT_EQ(table.removeElement(value), value);
    }
    EXPECT_EQ(seen.size(), values.size());
    EXPECT_EQ(table.count(), 0);
}
