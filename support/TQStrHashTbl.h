#pragma once

#include "TQSystemWExport.h"
#include "support/TQBucketTable.h"
#include "support/TQString.h"

/// How far an iteration over a TQStrHashTbl has come.
struct TQStrHashState : TQBucketState {};

/// A table of untyped values under texts.
///
/// Every key occurs once and is copied; a null key counts as the empty text. The table does not own the
/// values.
class TQSYSTEMW_EXPORT TQStrHashTbl {
  public:
    /// An empty table.
    /// @param bucketCount the number of buckets, made with the first entry; 50 for 0 and below
    explicit TQStrHashTbl(int bucketCount = 0) : _table(bucketCount) {}

    /// Puts a value under a key; where the key exists its value is replaced in place.
    /// @param value the value, or null
    /// @param key the key
    /// @return the value that was replaced, or null
    void* add(void* value, const TQString& key);

    /// The same with a pointer to the key.
    /// @param value the value, or null
    /// @param key the key, or null
    /// @return the value that was replaced, or null
    void* add(void* value, const TQString* key);

    /// The same with a C string as the key.
    /// @param value the value, or null
    /// @param key the key, or null
    /// @return the value that was replaced, or null
    void* add(void* value, const char* key);

    /// The value under a key; null when there is none.
    /// @param key the key
    void* getElement(const TQString& key) const;

    /// The value under a key; null when there is none.
    /// @param key the key, or null
    void* getElement(const TQString* key) const;

    /// The value under a key; null when there is none.
    /// @param key the key, or null
    void* getElement(const char* key) const;

    /// Whether there is a value, be it null, under a key.
    /// @param key the key
    bool isKey(const TQString& key) const;

    /// Whether there is a value, be it null, under a key.
    /// @param key the key, or null
    bool isKey(const TQString* key) const;

    /// Whether there is a value, be it null, under a key.
    /// @param key the key, or null
    bool isKey(const char* key) const;

    /// Removes a key with its value.
    /// @param key the key
    /// @return the value, or null when there is none
    void* removeElement(const TQString& key);

    /// Removes a key with its value.
    /// @param key the key, or null
    /// @return the value, or null when there is none
    void* removeElement(const TQString* key);

    /// Removes a key with its value.
    /// @param key the key, or null
    /// @return the value, or null when there is none
    void* removeElement(const char* key);

    /// The number of entries.
    int count() const { return _table.count(); }

    /// The number of buckets; 0 until the first entry is added.
    int bucketCount() const { return _table.bucketCount(); }

    /// The key of the entry that follows in table order, or null at the end; the table owns it. Entries may
    /// be added and removed between two steps.
    /// @param state how far the iteration has come; moves on
    const TQString* nextKey(TQStrHashState& state) const;

    /// nextKey() that gives the entry's value too.
    /// @param state how far the iteration has come; moves on
    /// @param value receives the value; null at the end
    const TQString* nextKey(TQStrHashState& state, void*& value) const;

    /// The value of the entry that follows in table order, or null at the end. In a table that holds
    /// null values, iterate with nextKey().
    /// @param state how far the iteration has come; moves on
    void* nextElement(TQStrHashState& state) const;

    /// Deletes all values, each of which must be a TQString made by new or null, and removes all entries.
    void deleteAllValuesAsTQString();

  private:
    using Table = TQBucketTable<TQString, void*>;

    Table::Entry* find(const TQString& key) const;

    Table _table;
};
