#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

/// How far an iteration over a TQBucketTable has come. It holds no pointer, so that it survives every
/// insertion and removal between two steps.
struct TQBucketState {
    int bucket = -1;            ///< the bucket of the entry returned last; −1 before the first step
    std::uint64_t sequence = 0; ///< the sequence number of the entry returned last in that bucket
};

/// The hash table beneath HashTbl, TQStrHashTbl and PtrHashTbl: a vector of chains.
///
/// Callers bring the hash of a key and a predicate that recognises it. The bucket array appears with the
/// first entry and keeps its size; an entry goes to the tail of its chain, at an address that stays until
/// it is removed. Hash and remainder are unsigned 32-bit numbers, so that the order of a table is the same
/// on every platform.
template <class Key, class Value>
class TQBucketTable {
  public:
    /// One entry.
    struct Entry {
        std::uint64_t sequence; ///< grows with every entry added to the table, from 1
        Key key;                ///< the key
        Value value;            ///< the value
    };

    /// An empty table.
    /// @param bucketCount the number of buckets to make with the first entry; 50 for 0 and below
    explicit TQBucketTable(int bucketCount)
        : _bucketCount(bucketCount > 0 ? static_cast<std::uint32_t>(bucketCount) : defaultBucketCount) {}

    TQBucketTable(const TQBucketTable&) = delete;
    TQBucketTable& operator=(const TQBucketTable&) = delete;

    /// Takes the entries of another table over.
    /// @param other the other table, empty and without buckets afterwards
    TQBucketTable(TQBucketTable&& other) noexcept
        : _chains(std::move(other._chains)), _bucketCount(other._bucketCount),
          _lastSequence(other._lastSequence), _count(std::exchange(other._count, 0)) {}

    /// Takes the entries of another table over in exchange for the old ones.
    /// @param other the other table
    TQBucketTable& operator=(TQBucketTable&& other) noexcept {
        std::swap(_chains, other._chains);
        std::swap(_bucketCount, other._bucketCount);
        std::swap(_lastSequence, other._lastSequence);
        std::swap(_count, other._count);
        return *this;
    }

    ~TQBucketTable() = default;

    /// Appends an entry to its chain, whether or not the key is there already.
    /// @param hash the hash of the key
    /// @param key the key
    /// @param value the value
    Entry& add(std::uint32_t hash, Key key, Value value) {
        if (_chains.empty()) {
            _chains.resize(_bucketCount);
        }
        auto entry = std::make_unique<Entry>(Entry{_lastSequence + 1, std::move(key), std::move(value)});
        Entry& added = *_chains[bucketOf(hash)].emplace_back(Link{hash, std::move(entry)}).entry;
        ++_lastSequence;
        ++_count;
        return added;
    }

    /// The first entry with a key, or null.
    /// @param hash the hash of the key
    /// @param isKey tells whether it is given the key
    template <class IsKey>
    Entry* find(std::uint32_t hash, const IsKey& isKey) const {
        if (_chains.empty()) {
            return nullptr;
        }
        const Chain& chain = _chains[bucketOf(hash)];
        const auto found = position(chain, hash, isKey);
        return found == chain.end() ? nullptr : found->entry.get();
    }

    /// Removes the first entry with a key and hands it over; null when there is none.
    /// @param hash the hash of the key
    /// @param isKey tells whether it is given the key
    template <class IsKey>
    std::unique_ptr<Entry> take(std::uint32_t hash, const IsKey& isKey) {
        if (_chains.empty()) {
            return nullptr;
        }
        Chain& chain = _chains[bucketOf(hash)];
        return takeFrom(chain, position(chain, hash, isKey));
    }

    /// Removes the first entry, in table order, that a predicate accepts and hands it over; null when
    /// there is none. Looks at every entry.
    /// @param accepts tells whether it is given the entry to remove
    template <class Accepts>
    std::unique_ptr<Entry> takeIf(const Accepts& accepts) {
        for (Chain& chain : _chains) {
            const auto found = std::find_if(chain.begin(), chain.end(), [&](const Link& link) {
                return accepts(std::as_const(*link.entry));
            });
            if (found != chain.end()) {
                return takeFrom(chain, found);
            }
        }
        return nullptr;
    }

    /// Removes all entries and hands them over, in table order; the buckets stay.
    std::vector<std::unique_ptr<Entry>> takeAll() {
        std::vector<std::unique_ptr<Entry>> entries;
        entries.reserve(static_cast<std::size_t>(_count));
        for (Chain& chain : _chains) {
            for (Link& link : chain) {
                entries.push_back(std::move(link.entry));
            }
        }
        clear();
        return entries;
    }

    /// Removes all entries; the buckets stay.
    void clear() {
        for (Chain& chain : _chains) {
            chain.clear();
        }
        _count = 0;
    }

    /// The number of entries.
    int count() const { return _count; }

    /// The number of buckets; 0 until the first entry is added.
    int bucketCount() const { return static_cast<int>(_chains.size()); }

    /// The entry that follows in table order (from the first bucket to the last, each chain from head to
    /// tail), or null at the end.
    /// @param state how far the iteration has come; moves on
    Entry* next(TQBucketState& state) const {
        if (state.bucket < 0) {
            state = {0, 0};
        }
        for (; state.bucket < bucketCount(); state = {state.bucket + 1, 0}) {
            const Chain& chain = _chains[static_cast<std::size_t>(state.bucket)];
            const auto follower = std::partition_point(chain.begin(), chain.end(), [&](const Link& link) {
                return link.entry->sequence <= state.sequence;
            });
            if (follower != chain.end()) {
                state.sequence = follower->entry->sequence;
                return follower->entry.get();
            }
        }
        return nullptr;
    }

  private:
    /// An entry and the hash of its key, which stands here so that a search passes by without touching it.
    struct Link {
        std::uint32_t hash;
        std::unique_ptr<Entry> entry;
    };

    using Chain = std::vector<Link>;

    static constexpr std::uint32_t defaultBucketCount = 50;

    std::uint32_t bucketOf(std::uint32_t hash) const { return hash % _bucketCount; }

    template <class IsKey>
    static typename Chain::const_iterator position(const Chain& chain, std::uint32_t hash,
                                                   const IsKey& isKey) {
        return std::find_if(chain.begin(), chain.end(), [&](const Link& link) {
            return link.hash == hash && isKey(std::as_const(link.entry->key));
        });
    }

    std::unique_ptr<Entry> takeFrom(Chain& chain, typename Chain::const_iterator found) {
        if (found == chain.end()) {
            return nullptr;
        }
        const auto place = chain.begin() + (found - chain.cbegin());
        std::unique_ptr<Entry> entry = std::move(place->entry);
        chain.erase(place);
        --_count;
        return entry;
    }

    std::vector<Chain> _chains;
    std::uint32_t _bucketCount;
    std::uint64_t _lastSequence = 0;
    int _count = 0;
};
