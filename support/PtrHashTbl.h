#pragma once

#include "TQSystemWExport.h"
#include "support/TQBucketTable.h"

/// How far an iteration over a PtrHashTbl has come.
struct PtrHashState : TQBucketState {};

/// A table of untyped values under pointers; it owns neither. Every key occurs once. The order of the
/// table depends on the addresses.
class TQSYSTEMW_EXPORT PtrHashTbl {
  public:
    /// An empty table.
    /// @param bucketCount the number of buckets, made with the first entry; 50 for 0 and below
    explicit PtrHashTbl(int bucketCount = 0) : _table(bucketCount) {}

    /// Puts a value under a key; where the key exists its value is replaced in place.
    /// @param value the value, or null
    /// @param key the key, or null
    /// @return the value that was replaced, or null
    void* add(void* value, const void* key);

    /// The value under a key; null when there is none.
    /// @param key the key, or null
    void* getElement(const void* key) const;

    /// Whether there is a value, be it null, under a key.
    /// @param key the key, or null
    bool isKey(const void* key) const;

    /// Removes a key with its value.
    /// @param key the key, or null
    /// @return the value, or null when there is none
    void* removeElement(const void* key);

    /// The number of entries.
    int count() const { return _table.count(); }

    /// The number of buckets; 0 until the first entry is added.
    int bucketCount() const { return _table.bucketCount(); }

    /// The value of the entry that follows in table order, or null at the end. Entries may be added and
    /// removed between two steps.
    /// @param state how far the iteration has come; moves on
    void* nextElement(PtrHashState& state) const;

  private:
    using Table = TQBucketTable<const void*, void*>;

    Table::Entry* find(const void* key) const;

    Table _table;
};
