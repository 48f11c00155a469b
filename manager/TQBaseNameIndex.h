#pragma once

#include "projection/TQProjection.h"
#include "support/TQString.h"
#include "support/TQWeakPointer.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

/// The projections of a manager by base name: the name without the number that one gets whose name is taken,
/// so that "P" and "P_1" are found together. Nothing is to be removed: what is gone, or has another name by
/// now, is not found.
class TQBaseNameIndex {
  public:
    /// Adds a projection under its name.
    /// @param projection the projection
    void add(TQProjection& projection);

    /// The first added projection with the base name of another one, and with its definition; null when there
    /// is none.
    /// @param projection the other one
    TQProjection* sameDefinition(const TQProjection& projection) const;

    /// The number from which on the numbered names of a name may be free: those below were taken when it was
    /// last moved on.
    /// @param name the name
    int& firstNumber(const TQString& name) { return _firstNumbers.try_emplace(name.utf8(), 1).first->second; }

    /// Takes note that a name has become free: firstNumber() of the name that it numbers goes back to its
    /// number.
    /// @param name the name
    void noteFree(const TQString& name);

    /// Forgets what firstNumber() told, as nobody knows which name has become free.
    void forgetNumbers() { _firstNumbers.clear(); }

    /// The base name of a name: without a last "_" that digits alone follow. A name that ends in "_", or
    /// whose last "_" begins it or is followed by something else, has none.
    /// @param name the name
    static std::optional<std::string> baseName(const TQString& name);

  private:
    void purge();

    std::unordered_map<std::string, std::vector<TQWeakPointer<TQProjection>>> _projections;
    std::unordered_map<std::string, int> _firstNumbers;
    std::size_t _entries = 0;
    std::size_t _purgedAt = 0;
};
