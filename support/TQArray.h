#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

/// An ordered array of owned objects; entries may be null.
template <class T>
class TQArray {
  public:
    /// An empty array.
    /// @param capacity the number of entries to make room for; below 0 counts as 0
    /// @param growthCode how the capacity grows when the count reaches it: −2 by half the count, by 1 while
    /// the count is below 2; another code from −16 to −1 doubles it; a code above 0 adds that many.
    /// Where that gives no room, as with other codes, it grows by 1.
    explicit TQArray(int capacity = 0, int growthCode = -2)
        : _capacity(std::max(capacity, 0)), _growthCode(growthCode) {
        _objects.reserve(static_cast<std::size_t>(_capacity));
    }

    TQArray(const TQArray&) = delete;
    TQArray& operator=(const TQArray&) = delete;

    /// Takes the other array over.
    TQArray(TQArray&&) noexcept = default;

    /// Destroys the old objects and takes the other over.
    TQArray& operator=(TQArray&&) noexcept = default;
    ~TQArray() = default;

    /// Appends an object.
    /// @param object the object, which the array owns from now on, or null
    /// @return the object
    T* add(std::unique_ptr<T> object) {
        if (count() >= _capacity) {
            const int capacity = grownCapacity();
            _objects.reserve(static_cast<std::size_t>(capacity));
            _capacity = capacity;
        }
        return _objects.emplace_back(std::move(object)).get();
    }

    /// An object, which stays the array's; null outside the array.
    /// @param index the object's index
    T* objectAt(int index) const {
        return contains(index) ? _objects[static_cast<std::size_t>(index)].get() : nullptr;
    }

    /// The number of entries.
    int count() const { return static_cast<int>(_objects.size()); }

    /// The number of entries that there is room for before the array grows.
    int capacity() const { return _capacity; }

    /// Sorts the objects; equal ones keep their order, null entries go to the end.
    /// @param compare compares as for `qsort`: it is given pointers to two object pointers, never null
    /// ones, and answers below 0, 0 or above 0
    void sort(int (*compare)(const void*, const void*)) {
        const auto nulls = std::stable_partition(_objects.begin(), _objects.end(),
                                                 [](const auto& object) { return object != nullptr; });
        std::stable_sort(_objects.begin(), nulls, [compare](const auto& a, const auto& b) {
            const T* const left = a.get();
            const T* const right = b.get();
            return compare(&left, &right) < 0;
        });
    }

    /// The objects in order; they stay the array's.
    std::vector<T*> objectArray() const {
        std::vector<T*> objects;
        objects.reserve(_objects.size());
        for (const auto& object : _objects) {
            objects.push_back(object.get());
        }
        return objects;
    }

    /// Removes an entry and hands its object over; those behind it move up. Null outside the array.
    /// @param index the entry's index
    std::unique_ptr<T> removeAt(int index) {
        if (!contains(index)) {
            return nullptr;
        }
        const auto place = _objects.begin() + index;
        std::unique_ptr<T> object = std::move(*place);
        _objects.erase(place);
        return object;
    }

  private:
    bool contains(int index) const { return index >= 0 && index < count(); }

    int grownCapacity() const {
        const std::int64_t needed = std::int64_t{count()} + 1;
        return static_cast<int>(
            std::clamp<std::int64_t>(_capacity + growth(), needed, std::numeric_limits<int>::max()));
    }

    std::int64_t growth() const {
        if (_growthCode == -2) {
            return count() < 2 ? 1 : count() / 2;
        }
        if (_growthCode >= -16 && _growthCode < 0) {
            return _capacity;
        }
        return std::max(_growthCode, 0);
    }

    std::vector<std::unique_ptr<T>> _objects;
    int _capacity;
    int _growthCode;
};
