#include "support/TQStrHashTbl.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::vector<std::string> keysOf(const TQStrHashTbl& table) {
    std::vector<std::string> keys;
    TQStrHashState state;
    while (const TQString* key = table.nextKey(state)) {
        keys.push_back(key->utf8());
    }
    return keys;
}

using Keys = std::vector<std::string>;

} // namespace

TEST(TQStrHashTbl, TakesKeysInEveryForm) {
    std::array<int, 3> values = {};
    TQStrHashTbl table(111);
    const TQString key("pointer");
    EXPECT_EQ(table.add(&values[0], "C string"), nullptr);
    EXPECT_EQ(table.add(&values[1], &key), nullptr);
    EXPECT_EQ(table.add(&values[2], TQString("reference")), nullptr);
    EXPECT_EQ(table.count(), 3);
    EXPECT_EQ(table.getElement("C string"), &values[0]);
    EXPECT_EQ(table.getElement(TQString("pointer")), &values[1]);
    const TQString reference("reference");
    EXPECT_EQ(table.getElement(&reference), &values[2]);
    EXPECT_TRUE(table.isKey("pointer"));
    EXPECT_TRUE(table.isKey(&key));
    EXPECT_TRUE(table.isKey(TQString("C string")));
    EXPECT_FALSE(table.isKey("unknown"));
    EXPECT_EQ(table.getElement("unknown"), nullptr);
}

TEST(TQStrHashTbl, ANullKeyIsTheEmptyText) {
    int value = 0;
    TQStrHashTbl table;
    const TQString* const noKey = nullptr;
    table.add(&value, noKey);
    EXPECT_EQ(table.getElement(""), &value);
    EXPECT_EQ(table.getElement(static_cast<const char*>(nullptr)), &value);
    EXPECT_EQ(table.removeElement(noKey), &value);
    EXPECT_FALSE(table.isKey(TQString()));
}

TEST(TQStrHashTbl, KeysAreTextsWhateverTheirEncoding) {
    int value = 0;
    TQStrHashTbl table;
    table.add(&value, "degr\xDDs");
    EXPECT_EQ(table.getElement("degr\xC3\xA9s"), &value);
}

TEST(TQStrHashTbl, ZeroBucketsMeanFifty) {
    TQStrHashTbl table(0);
    EXPECT_EQ(table.bucketCount(), 0);
    EXPECT_FALSE(table.isKey("a"));
    table.add(nullptr, "a");
    EXPECT_EQ(table.bucketCount(), 50);
}

TEST(TQStrHashTbl, AddingAnExistingKeyReplacesItsValueInPlace) {
    std::array<int, 4> values = {};
    TQStrHashTbl table(1);
    table.add(&values[0], "first");
    table.add(&values[1], "second");
    EXPECT_EQ(table.add(&values[2], "first"), &values[0]);
    EXPECT_EQ(table.add(&values[3], "first"), &values[2]);
    EXPECT_EQ(table.count(), 2);
    EXPECT_EQ(table.getElement("first"), &values[3]);
    EXPECT_EQ(keysOf(table), (Keys{"first", "second"}));
}

TEST(TQStrHashTbl, NullValuesAreValues) {
    TQStrHashTbl table;
    table.add(nullptr, "null");
    EXPECT_TRUE(table.isKey("null"));
    EXPECT_EQ(table.getElement("null"), nullptr);
    EXPECT_EQ(keysOf(table), Keys{"null"});
    EXPECT_EQ(table.removeElement("null"), nullptr);
    EXPECT_EQ(table.count(), 0);
}

TEST(TQStrHashTbl, RemovesElements) {
    int value = 0;
    TQStrHashTbl table;
    table.add(&value, "a");
    EXPECT_EQ(table.removeElement(TQString("b")), nullptr);
    EXPECT_EQ(table.removeElement("a"), &value);
    EXPECT_EQ(table.removeElement("a"), nullptr);
    EXPECT_EQ(table.count(), 0);
}

TEST(TQStrHashTbl, IteratesOverKeysAndElementsInTheSameOrder) {
    std::array<int, 10> values = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    TQStrHashTbl table(3);
    for (int& value : values) {
        table.add(&value, std::to_string(value).c_str());
    }
    TQStrHashState keyState;
    TQStrHashState elementState;
    TQStrHashState bothState;
    int seen = 0;
    while (const TQString* key = table.nextKey(keyState)) {
        void* value = nullptr;
        EXPECT_EQ(table.nextKey(bothState, value), key);
        EXPECT_EQ(table.nextElement(elementState), value);
        EXPECT_EQ(*static_cast<int*>(value), key->convertToLong());
        ++seen;
    }
    EXPECT_EQ(seen, 10);
    EXPECT_EQ(table.nextElement(elementState), nullptr);
    void* value = &values;
    EXPECT_EQ(table.nextKey(bothState, value), nullptr);
    EXPECT_EQ(value, nullptr);
}

TEST(TQStrHashTbl, ElementsMayBeRemovedWhileIterating) {
    int value = 0;
    TQStrHashTbl table(2);
    for (const char* key : {"a", "b", "c", "d", "e"}) {
        table.add(&value, key);
    }
    int seen = 0;
    TQStrHashState state;
    while (const TQString* key = table.nextKey(state)) {
        const TQString copy = *key;
        EXPECT_EQ(table.removeElement(copy), &value);
        ++seen;
    }
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(table.count(), 0);
}

TEST(TQStrHashTbl, AKeyOfTheTableMayNameTheEntryToRemove) {
    int value = 0;
    TQStrHashTbl table;
    table.add(&value, "own key");
    TQStrHashState state;
    EXPECT_EQ(table.removeElement(table.nextKey(state)), &value);
    EXPECT_EQ(table.count(), 0);
}

TEST(TQStrHashTbl, DeletesItsValuesAsStrings) {
    TQStrHashTbl table(2);
    for (const char* key : {"a", "b", "c"}) {
        table.add(std::make_unique<TQString>("a text long enough to be allocated").release(), key);
    }
    table.add(nullptr, "null");
    table.deleteAllValuesAsTQString();
    EXPECT_EQ(table.count(), 0);
    EXPECT_FALSE(table.isKey("a"));
}
