#include "support/TQArray.h"

#include "support/TQString.h"

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

/// The capacity after each of so many additions.
std::vector<int> capacitiesOf(int capacity, int growthCode, int additions) {
    TQArray<int> array(capacity, growthCode);
    std::vector<int> capacities;
    for (int i = 0; i < additions; ++i) {
        array.add(std::make_unique<int>(i));
        capacities.push_back(array.capacity());
    }
    return capacities;
}

using Capacities = std::vector<int>;

struct Item {
    int key;
    int place;
};

int compareKeys(const void* a, const void* b) {
    const Item* const left = *static_cast<const Item* const*>(a);
    const Item* const right = *static_cast<const Item* const*>(b);
    return left->key - right->key;
}

} // namespace

TEST(TQArray, KeepsObjectsInOrder) {
    TQArray<int> array;
    EXPECT_EQ(array.count(), 0);
    int* const first = array.add(std::make_unique<int>(10));
    int* const second = array.add(std::make_unique<int>(20));
    EXPECT_EQ(array.count(), 2);
    EXPECT_EQ(array.objectAt(0), first);
    EXPECT_EQ(array.objectAt(1), second);
    EXPECT_EQ(array.objectArray(), (std::vector<int*>{first, second}));
}

TEST(TQArray, GivesNullOutside) {
    TQArray<int> array(5);
    array.add(std::make_unique<int>(1));
    for (const int index : {-1, 1, 4, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_EQ(array.objectAt(index), nullptr);
        EXPECT_EQ(array.removeAt(index), nullptr);
    }
    EXPECT_EQ(array.count(), 1);
}

TEST(TQArray, CodeMinusTwoGrowsByHalfTheCount) {
    EXPECT_EQ(capacitiesOf(0, -2, 10), (Capacities{1, 2, 3, 4, 6, 6, 9, 9, 9, 13}));
    EXPECT_EQ(capacitiesOf(4, -2, 6), (Capacities{4, 4, 4, 4, 6, 6}));
}

TEST(TQArray, OtherCodesDownToMinusSixteenDouble) {
    for (const int code : {-1, -3, -8, -16}) {
        EXPECT_EQ(capacitiesOf(3, code, 7), (Capacities{3, 3, 3, 6, 6, 6, 12})) << code;
    }
}

TEST(TQArray, PositiveCodesAddSoMany) {
    EXPECT_EQ(capacitiesOf(0, 5, 6), (Capacities{5, 5, 5, 5, 5, 10}));
    EXPECT_EQ(capacitiesOf(1, 1, 3), (Capacities{1, 2, 3}));
}

TEST(TQArray, CodesThatWouldNotGrowMakeRoomForOne) {
    EXPECT_EQ(capacitiesOf(0, 0, 3), (Capacities{1, 2, 3}));
    EXPECT_EQ(capacitiesOf(2, -17, 4), (Capacities{2, 2, 3, 4}));
    EXPECT_EQ(capacitiesOf(0, std::numeric_limits<int>::min(), 2), (Capacities{1, 2}));
    EXPECT_EQ(capacitiesOf(0, -1, 5), (Capacities{1, 2, 4, 4, 8}));
    EXPECT_EQ(capacitiesOf(-5, -2, 2), (Capacities{1, 2}));
}

TEST(TQArray, DeletesItsObjects) {
    const auto witness = std::make_shared<int>(0);
    {
        TQArray<std::shared_ptr<int>> array;
        array.add(std::make_unique<std::shared_ptr<int>>(witness));
        array.add(nullptr);
        array.add(std::make_unique<std::shared_ptr<int>>(witness));
        EXPECT_EQ(witness.use_count(), 3);
        array.removeAt(0);
        EXPECT_EQ(witness.use_count(), 2);
        EXPECT_EQ(array.count(), 2);
    }
    EXPECT_EQ(witness.use_count(), 1);
}

TEST(TQArray, RemovingMovesTheRestUp) {
    TQArray<int> array;
    for (int i = 0; i < 4; ++i) {
        array.add(std::make_unique<int>(i));
    }
    EXPECT_EQ(*array.removeAt(1), 1);
    EXPECT_EQ(array.count(), 3);
    EXPECT_EQ(*array.objectAt(0), 0);
    EXPECT_EQ(*array.objectAt(1), 2);
    EXPECT_EQ(*array.objectAt(2), 3);
}

TEST(TQArray, SortsStringsLikeQsort) {
    TQArray<TQString> array;
    for (const char* text : {"pear", "\u00E9t\u00E9", "apple", "Zebra", ""}) {
        array.add(std::make_unique<TQString>(text));
    }
    array.sort(TQString::compareAscendingAsString);
    std::vector<std::string> sorted;
    for (const TQString* text : array.objectArray()) {
        sorted.push_back(text->utf8());
    }
    EXPECT_EQ(sorted, (std::vector<std::string>{"", "Zebra", "apple", "pear", "\u00E9t\u00E9"}));
}

TEST(TQArray, SortKeepsTheOrderOfEqualObjects) {
    TQArray<Item> array;
    for (int place = 0; place < 1000; ++place) {
        array.add(std::make_unique<Item>(Item{place * 7 % 10, place}));
    }
    array.sort(compareKeys);
    for (int i = 1; i < array.count(); ++i) {
        const Item& before = *array.objectAt(i - 1);
        const Item& item = *array.objectAt(i);
        EXPECT_TRUE(before.key < item.key || (before.key == item.key && before.place < item.place));
    }
}

TEST(TQArray, SortPutsNullEntriesLast) {
    TQArray<Item> array;
    array.add(nullptr);
    array.add(std::make_unique<Item>(Item{2, 0}));
    array.add(nullptr);
    array.add(std::make_unique<Item>(Item{1, 1}));
    array.sort(compareKeys);
    ASSERT_EQ(array.count(), 4);
    EXPECT_EQ(array.objectAt(0)->key, 1);
    EXPECT_EQ(array.objectAt(1)->key, 2);
    EXPECT_EQ(array.objectAt(2), nullptr);
    EXPECT_EQ(array.objectAt(3), nullptr);

    TQArray<Item> nulls;
    nulls.sort(compareKeys);
    nulls.add(nullptr);
    nulls.sort(compareKeys);
    EXPECT_EQ(nulls.count(), 1);
}
