#pragma once

#include "TQSystemWExport.h"
#include "support/TQString.h"

#include <cstdint>
#include <span>
#include <vector>

/// One text with its numeric identifier.
struct TQStrWithId {
    std::int32_t id = 0; ///< the identifier
    TQString text;       ///< the text
};

/// A list of texts with numeric identifiers, in the order in which they were added.
class TQSYSTEMW_EXPORT TQStrTableWithId {
  public:
    /// Appends a text.
    /// @param id its identifier
    /// @param text the text, copied
    void add(std::int32_t id, const TQString& text);

    /// Appends texts.
    /// @param list the texts with their identifiers, copied
    void addList(std::span<const TQStrWithId> list);

    /// Appends all texts of another table.
    /// @param other the other table, or this one
    void addList(const TQStrTableWithId& other);

    /// The number of texts.
    int count() const { return static_cast<int>(_entries.size()); }

    /// A text with its identifier; null outside the table, which owns it.
    /// @param index its index
    const TQStrWithId* entryAt(int index) const;

    /// The first text with an identifier; null when there is none. The table owns it.
    /// @param id the identifier
    const TQString* stringForId(std::int32_t id) const;

    /// Looks for a text.
    /// @param text the text
    /// @param id receives the identifier of the first entry with this text; keeps its value when there is
    /// none
    /// @return whether there is one
    bool idForString(const TQString& text, std::int32_t& id) const;

  private:
    std::vector<TQStrWithId> _entries;
};
