#include "support/TQBucketTable.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace {

/// A table of integers that hash to themselves, so that tests decide which bucket they go to.
using Table = TQBucketTable<int, int>;

void add(Table& table, int key, int value = 0) { table.add(static_cast<std::uint32_t>(key), key, value); }

auto isKey(int key) {
    return [key](int candidate) { return candidate == key; };
}

std::unique_ptr<Table::Entry> take(Table& table, int key) {
    return table.take(static_cast<std::uint32_t>(key), isKey(key));
}

std::vector<int> keysOf(const Table& table) {
    std::vector<int> keys;
    TQBucketState state;
    while (const Table::Entry* entry = table.next(state)) {
        keys.push_back(entry->key);
    }
    return keys;
}

using Keys = std::vector<int>;

} // namespace

TEST(TQBucketTable, MakesItsBucketsWithTheFirstEntry) {
    Table table(7);
    EXPECT_EQ(table.bucketCount(), 0);
    EXPECT_EQ(table.find(1, isKey(1)), nullptr);
    EXPECT_EQ(take(table, 1), nullptr);
    EXPECT_EQ(keysOf(table), Keys{});
    add(table, 1);
    EXPECT_EQ(table.bucketCount(), 7);
    take(table, 1);
    EXPECT_EQ(table.bucketCount(), 7);
}

TEST(TQBucketTable, NoOrFewerBucketsMeanFifty) {
    for (const int requested : {0, -1, -50}) {
        Table table(requested);
        add(table, 1);
        EXPECT_EQ(table.bucketCount(), 50);
    }
}

TEST(TQBucketTable, GoesFromTheFirstBucketToTheLastAndFromHeadToTail) {
    Table table(10);
    for (const int key : {15, 3, 25, 9, 5, 10, 0}) {
        add(table, key);
    }
    EXPECT_EQ(keysOf(table), (Keys{10, 0, 3, 15, 25, 5, 9}));
    EXPECT_EQ(table.count(), 7);
}

TEST(TQBucketTable, HashesAboveTheSignedRangeFindTheirBucket) {
    Table table(50);
    const std::uint32_t hash = 0xFFFFFFFFU; // 45 modulo 50
    table.add(hash, 1, 11);
    add(table, 44);
    add(table, 46);
    EXPECT_EQ(keysOf(table), (Keys{44, 1, 46}));
    ASSERT_NE(table.find(hash, isKey(1)), nullptr);
    EXPECT_EQ(table.find(hash, isKey(1))->value, 11);
}

TEST(TQBucketTable, FindsAndTakesTheFirstOfEqualKeys) {
    Table table(3);
    add(table, 4, 1);
    add(table, 4, 2);
    EXPECT_EQ(table.find(4, isKey(4))->value, 1);
    EXPECT_EQ(take(table, 4)->value, 1);
    EXPECT_EQ(take(table, 4)->value, 2);
    EXPECT_EQ(take(table, 4), nullptr);
    EXPECT_EQ(table.count(), 0);
}

TEST(TQBucketTable, TakesByPredicate) {
    Table table(3);
    add(table, 1, 10);
    add(table, 2, 20);
    const auto taken = table.takeIf([](const Table::Entry& entry) { return entry.value == 20; });
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(taken->key, 2);
    EXPECT_EQ(table.takeIf([](const Table::Entry& entry) { return entry.value == 20; }), nullptr);
    EXPECT_EQ(keysOf(table), Keys{1});
}

TEST(TQBucketTable, GivesAllEntriesAwayInTableOrder) {
    Table table(10);
    EXPECT_TRUE(table.takeAll().empty());
    for (const int key : {15, 3, 25, 9, 5}) {
        add(table, key, 2 * key);
    }
    Keys keys;
    for (const auto& entry : table.takeAll()) {
        keys.push_back(entry->key);
        EXPECT_EQ(entry->value, 2 * entry->key);
    }
    EXPECT_EQ(keys, (Keys{3, 15, 25, 5, 9}));
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.bucketCount(), 10);
    EXPECT_EQ(keysOf(table), Keys{});
    add(table, 7);
    EXPECT_EQ(keysOf(table), Keys{7});
}

TEST(TQBucketTable, EntriesKeepTheirAddresses) {
    Table table(2);
    add(table, 0, 7);
    const Table::Entry* const first = table.find(0, isKey(0));
    for (int key = 1; key < 100; ++key) {
        add(table, key);
    }
    take(table, 2);
    EXPECT_EQ(table.find(0, isKey(0)), first);
    EXPECT_EQ(first->value, 7);
}

TEST(TQBucketTable, MovingTakesTheEntriesOver) {
    Table table(2);
    add(table, 1);
    add(table, 2);
    Table moved = std::move(table);
    EXPECT_EQ(keysOf(moved), (Keys{2, 1}));
    EXPECT_EQ(moved.count(), 2);

    Table assigned(3);
    add(assigned, 7);
    assigned = std::move(moved);
    EXPECT_EQ(keysOf(assigned), (Keys{2, 1}));
    EXPECT_EQ(assigned.bucketCount(), 2);
    add(assigned, 3);
    EXPECT_EQ(keysOf(assigned), (Keys{2, 1, 3}));
}

TEST(TQBucketTable, AMovedTableCanBeFilledAgain) {
    Table table(2);
    add(table, 1);
    const std::unique_ptr<Table> taker = std::make_unique<Table>(std::move(table));
    EXPECT_EQ(taker->count(), 1);
    table = Table(4);
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.bucketCount(), 0);
    add(table, 3);
    EXPECT_EQ(keysOf(table), Keys{3});
}

TEST(TQBucketTable, IterationSurvivesTheRemovalOfTheEntryReturned) {
    Table table(4);
    for (int key = 0; key < 12; ++key) {
        add(table, key);
    }
    Keys seen;
    TQBucketState state;
    while (const Table::Entry* entry = table.next(state)) {
        seen.push_back(entry->key);
        take(table, entry->key);
    }
    EXPECT_EQ(seen, (Keys{0, 4, 8, 1, 5, 9, 2, 6, 10, 3, 7, 11}));
    EXPECT_EQ(table.count(), 0);
}

TEST(TQBucketTable, IterationDoesNotReturnWhatWasRemovedInBetween) {
    Table table(4);
    for (int key = 0; key < 8; ++key) {
        add(table, key);
    }
    TQBucketState state;
    EXPECT_EQ(table.next(state)->key, 0);
    take(table, 4);
    take(table, 0);
    EXPECT_EQ(table.next(state)->key, 1);
    table.clear();
    EXPECT_EQ(table.next(state), nullptr);
}

TEST(TQBucketTable, IterationReturnsWhatIsAddedAheadOfItAndNothingTwice) {
    Table table(4);
    add(table, 1);
    add(table, 5);
    TQBucketState state;
    EXPECT_EQ(table.next(state)->key, 1);
    add(table, 0); // a bucket passed already
    add(table, 9); // the tail of the chain at hand
    add(table, 2); // a bucket ahead
    EXPECT_EQ(table.next(state)->key, 5);
    EXPECT_EQ(table.next(state)->key, 9);
    EXPECT_EQ(table.next(state)->key, 2);
    EXPECT_EQ(table.next(state), nullptr);
    EXPECT_EQ(table.next(state), nullptr);
}

TEST(TQBucketTable, AnIterationBegunBeforeTheFirstEntryGoesOn) {
    Table table(4);
    TQBucketState state;
    EXPECT_EQ(table.next(state), nullptr);
    add(table, 3);
    EXPECT_EQ(table.next(state)->key, 3);
    EXPECT_EQ(table.next(state), nullptr);
}

TEST(TQBucketTable, RandomChangesDuringAnIterationKeepItsPromises) {
    std::mt19937 random(5);
    for (int round = 0; round < 500; ++round) {
        Table table(1 + static_cast<int>(random() % 5));
        std::set<int> present;
        for (int key = 0; key < 20; ++key) {
            add(table, key);
            present.insert(key);
        }
        std::set<int> untouched = present;
        std::set<int> seen;
        int newKey = 20;
        TQBucketState state;
        while (const Table::Entry* entry = table.next(state)) {
            EXPECT_TRUE(present.contains(entry->key));
            EXPECT_TRUE(seen.insert(entry->key).second);
            const int removed = static_cast<int>(random() % 20);
            if (take(table, removed) != nullptr) {
                present.erase(removed);
                untouched.erase(removed);
            }
            if (newKey < 30) {
                add(table, newKey);
                present.insert(newKey++);
            }
        }
        EXPECT_TRUE(std::includes(seen.begin(), seen.end(), untouched.begin(), untouched.end()));
        EXPECT_EQ(table.count(), static_cast<int>(present.size()));
    }
}
