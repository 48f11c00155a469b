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

    /// The base name of a name: without a last "_" that digits alone follow. A name that ends in "_", or
    /// whose last "_" begins it or is followed by something else, has none.
    /// @param name the name
    static std::optional<std::string> baseName(const TQString& name);

  private:
    void purge();

    std::unordered_map<std::string, std::vector<TQWeakPointer<TQProjection>>> _projections;
    std::size_t _entries = 0;
    std::size_t _purgedAt = 0;
};
