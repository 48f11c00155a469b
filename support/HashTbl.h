#pragma once

#include "support/TQBucketTable.h"
#include "support/TQString.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// How far an iteration with HashTbl<T>::next() has come.
template <class T>
struct HashState : TQBucketState {};

/// A table of owned objects under names.
///
/// The table keeps a copy of each name, so that an object's own name may change while it is in the table.
/// A name may be null: its hash is that of the empty text, and it is found by null alone. Several entries
/// may have the same name.
template <class T>
class HashTbl {
  public:
    /// An empty table.
    /// @param bucketCount the number of buckets, made with the first entry; 50 for 0 and below
    explicit HashTbl(int bucketCount = 0) : _table(bucketCount) {}

    /// Appends an object to its chain, whether or not the name is there already.
    /// @param object the object, which the table owns from now on; null is not added
    /// @param key the name, copied, or null
    /// @return the object
    T* add(std::unique_ptr<T> object, const TQString* key) {
        if (object == nullptr) {
            return nullptr;
        }
        Key copy = key != nullptr ? Key(*key) : std::nullopt;
        return _table.add(hashOf(key), std::move(copy), std::move(object)).value.get();
    }

    /// The same with a name that is not null.
    /// @param object the object, which the table owns from now on; null is not added
    /// @param key the name, copied
    /// @return the object
    T* add(std::unique_ptr<T> object, const TQString& key) { return add(std::move(object), &key); }

    /// The first object with a name, or null.
    /// @param key the name, or null
    T* lookup(const TQString* key) const { return objectOf(_table.find(hashOf(key), matcher(key))); }

    /// The first object with a name, or null.
    /// @param key the name
    T* lookup(const TQString& key) const { return lookup(&key); }

    /// The first object with a name, or null.
    /// @param key the name, or null
    T* lookup(const char* key) const {
        return objectOf(_table.find(TQString::hashValueForCString(key), [key](const Key& candidate) {
            return key != nullptr ? candidate && candidate->isEqual(key) : !candidate;
        }));
    }

    /// Removes the first object with a name and hands it over; null when there is none.
    /// @param key the name, or null
    std::unique_ptr<T> remove(const TQString* key) {
        return objectFrom(_table.take(hashOf(key), matcher(key)));
    }

    /// Removes the first object with a name and hands it over; null when there is none.
    /// @param key the name
    std::unique_ptr<T> remove(const TQString& key) { return remove(&key); }

    /// Removes an object, whatever its name, and hands it over; null when it is not in the table.
    /// @param object the object
    std::unique_ptr<T> unlink(const T* object) {
        return objectFrom(_table.takeIf([object](const auto& entry) { return entry.value.get() == object; }));
    }

    /// Removes all objects and hands them over, in table order.
    std::vector<std::unique_ptr<T>> takeAll() {
        std::vector<std::unique_ptr<T>> objects;
        objects.reserve(static_cast<std::size_t>(count()));
        for (const std::unique_ptr<Entry>& entry : _table.takeAll()) {
            objects.push_back(std::move(entry->value));
        }
        return objects;
    }

    /// The number of objects.
    int count() const { return _table.count(); }

    /// The number of buckets; 0 until the first object is added.
    int bucketCount() const { return _table.bucketCount(); }

    /// The object that follows in table order, or null at the end. Objects may be added and removed
    /// between two steps.
    /// @param state how far the iteration has come; moves on
    T* next(HashState<T>& state) const { return objectOf(_table.next(state)); }

    /// The same with the name that the object has in the table.
    /// @param state how far the iteration has come; moves on
    /// @param key receives the name, which the table owns, or null; null at the end
    T* next(HashState<T>& state, const TQString*& key) const {
        const Entry* entry = _table.next(state);
        key = entry != nullptr && entry->key ? &*entry->key : nullptr;
        return objectOf(entry);
    }

  private:
    using Key = std::optional<TQString>;
    using Table = TQBucketTable<Key, std::unique_ptr<T>>;
    using Entry = typename Table::Entry;

    static std::uint32_t hashOf(const TQString* key) {
        return key != nullptr ? key->hashValue() : TQString::hashValueForCString(nullptr);
    }

    static auto matcher(const TQString* key) {
        return [key](const Key& candidate) {
            return key != nullptr ? candidate && *candidate == *key : !candidate;
        };
    }

    static T* objectOf(const Entry* entry) { return entry != nullptr ? entry->value.get() : nullptr; }

    static std::unique_ptr<T> objectFrom(std::unique_ptr<Entry> entry) {
        return entry != nullptr ? std::move(entry->value) : nullptr;
    }

    Table _table;
};
