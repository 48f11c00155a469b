#include "support/HashTbl.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

/// An object with a name of its own that counts the living.
class Named {
  public:
    explicit Named(const TQString& text) : name(text) { ++living; }
    ~Named() { --living; }
    Named(const Named&) = delete;
    Named& operator=(const Named&) = delete;

    static inline int living = 0;
    TQString name;
};

Named* add(HashTbl<Named>& table, const char* name) {
    return table.add(std::make_unique<Named>(name), TQString(name));
}

std::vector<std::string> namesOf(const HashTbl<Named>& table) {
    std::vector<std::string> names;
    HashState<Named> state;
    while (const Named* object = table.next(state)) {
        names.push_back(object->name.utf8());
    }
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST(HashTbl, OwnsItsObjects) {
    ASSERT_EQ(Named::living, 0);
    {
        HashTbl<Named> table(50);
        add(table, "a");
        add(table, "b");
        EXPECT_EQ(Named::living, 2);
        const auto removed = table.remove(TQString("a"));
        EXPECT_EQ(removed->name, "a");
        EXPECT_EQ(Named::living, 2);
    }
    EXPECT_EQ(Named::living, 0);
}

TEST(HashTbl, LooksUpByNameInEveryForm) {
    HashTbl<Named> table;
    Named* const object = add(table, "degr\xDDs");
    const TQString key("degr\xC3\xA9s");
    EXPECT_EQ(table.lookup(key), object);
    EXPECT_EQ(table.lookup(&key), object);
    EXPECT_EQ(table.lookup("degr\xC3\xA9s"), object);
    EXPECT_EQ(table.lookup("degr\xDDs"), object);
    EXPECT_EQ(table.lookup("degres"), nullptr);
    EXPECT_EQ(table.lookup(TQString()), nullptr);
}

TEST(HashTbl, HasNoBucketsUntilTheFirstObject) {
    HashTbl<Named> table;
    EXPECT_EQ(table.bucketCount(), 0);
    EXPECT_EQ(table.lookup("a"), nullptr);
    EXPECT_EQ(table.remove(TQString("a")), nullptr);
    EXPECT_EQ(table.unlink(nullptr), nullptr);
    add(table, "a");
    EXPECT_EQ(table.bucketCount(), 50);
}

TEST(HashTbl, NullIsANameOfItsOwn) {
    HashTbl<Named> table;
    const TQString* const noName = nullptr;
    Named* const nameless = table.add(std::make_unique<Named>("nameless"), noName);
    Named* const emptyName = add(table, "");
    EXPECT_EQ(table.lookup(noName), nameless);
    EXPECT_EQ(table.lookup(static_cast<const char*>(nullptr)), nameless);
    EXPECT_EQ(table.lookup(TQString()), emptyName);
    EXPECT_EQ(table.lookup(""), emptyName);
    EXPECT_EQ(namesOf(table), (Names{"nameless", ""})); // one chain: null hashes like the empty text
    EXPECT_EQ(table.remove(noName).get(), nameless);
    EXPECT_EQ(table.lookup(noName), nullptr);
    EXPECT_EQ(table.lookup(""), emptyName);
}

TEST(HashTbl, NullObjectsAreNotAdded) {
    HashTbl<Named> table;
    EXPECT_EQ(table.add(nullptr, TQString("a")), nullptr);
    EXPECT_EQ(table.count(), 0);
}

TEST(HashTbl, FindsTheFirstOfEqualNames) {
    HashTbl<Named> table;
    Named* const first = add(table, "twice");
    Named* const second = add(table, "twice");
    EXPECT_EQ(table.count(), 2);
    EXPECT_EQ(table.lookup("twice"), first);
    EXPECT_EQ(table.remove(TQString("twice")).get(), first);
    EXPECT_EQ(table.lookup("twice"), second);
}

TEST(HashTbl, ARenamedObjectStaysUnderTheNameItWasAddedWith) {
    HashTbl<Named> table;
    TQString name("before");
    Named* const object = table.add(std::make_unique<Named>(name), name);
    name.set("key changed too");
    object->name.set("after");
    EXPECT_EQ(table.lookup("before"), object);
    EXPECT_EQ(table.lookup("after"), nullptr);
    EXPECT_EQ(table.unlink(object).get(), object);
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.lookup("before"), nullptr);
}

TEST(HashTbl, UnlinksByIdentityNotByName) {
    HashTbl<Named> table;
    Named* const first = add(table, "twice");
    Named* const second = add(table, "twice");
    const Named stranger("twice");
    EXPECT_EQ(table.unlink(&stranger), nullptr);
    EXPECT_EQ(table.unlink(second).get(), second);
    EXPECT_EQ(table.lookup("twice"), first);
    EXPECT_EQ(table.unlink(second), nullptr);
}

TEST(HashTbl, GivesAllObjectsAwayInTableOrder) {
    HashTbl<Named> table(7);
    for (const char* name : {"a", "b", "c", "d", "a"}) {
        add(table, name);
    }
    const Names expected = namesOf(table);
    Names names;
    for (const std::unique_ptr<Named>& object : table.takeAll()) {
        names.push_back(object->name.utf8());
    }
    EXPECT_EQ(names, expected);
    EXPECT_EQ(Named::living, 0);
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(table.lookup("a"), nullptr);
}

TEST(HashTbl, IteratesInTheOrderOfBucketsThenOfInsertion) {
    // The hashes are published ones, see the test of TQString::hashValue().
    const std::vector<std::pair<std::uint32_t, std::string>> published = {
        {0x811c9dc5U, ""},  {0xe40c292cU, "a"},   {0xe70c2de5U, "b"},
        {0xe60c2c52U, "c"}, {0xa9f37ed7U, "foo"}, {0xbf9cf968U, "foobar"}};
    for (const std::uint32_t buckets : {1U, 2U, 3U, 50U, 111U}) {
        auto expected = published;
        std::ranges::stable_sort(expected, {},
                                 [buckets](const auto& entry) { return entry.first % buckets; });
        Names names;
        for (const auto& [hash, name] : expected) {
            names.push_back(name);
        }
        HashTbl<Named> table(static_cast<int>(buckets));
        for (const auto& [hash, name] : published) {
            add(table, name.c_str());
        }
        EXPECT_EQ(namesOf(table), names) << buckets;
    }
}

TEST(HashTbl, OneBucketKeepsTheOrderOfInsertion) {
    HashTbl<Named> table(1);
    for (const char* name : {"z", "y", "a", "x"}) {
        add(table, name);
    }
    EXPECT_EQ(namesOf(table), (Names{"z", "y", "a", "x"}));
}

TEST(HashTbl, ObjectsMayBeRemovedWhileIterating) {
    HashTbl<Named> table(2);
    for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
        add(table, name);
    }
    int seen = 0;
    HashState<Named> state;
    EXPECT_EQ(state.bucket, -1);
    while (const Named* object = table.next(state)) {
        ++seen;
        table.unlink(object);
    }
    EXPECT_EQ(seen, 6);
    EXPECT_EQ(table.count(), 0);
    EXPECT_EQ(Named::living, 0);
}
