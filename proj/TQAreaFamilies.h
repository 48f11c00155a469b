#pragma once

#include "support/HashTbl.h"
#include "support/TQString.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Finds the family of a reference system by the words of its area of use.
///
/// The areas file "TQN_ProjAreas.txt" of the shared directory says which words mean which family: a line
/// each, the key (a country, a continent, an ocean, an authority), a tab and the family. A key of several
/// words counts as one word. Of the keys among an area's words the first one decides, in the order of the
/// hash table that the file is read into; "North America", "USA" and "Europa" come before all.
class TQAreaFamilies {
  public:
    /// Reads the areas file; without one no area has a family of its own.
    TQAreaFamilies();

    /// The family for an area. An area without a key among its words belongs to the family listed for the
    /// authority, and else to one made for what that authority has besides. What was found for an area is
    /// found for it again, whatever the authority.
    /// @param area the area in words, UTF-8
    /// @param authority who gave the system its code, UTF-8
    /// @return the family, which this object owns
    const TQString& familyOf(std::string_view area, std::string_view authority);

  private:
    /// A key's place in the order of the table, and its family.
    struct Entry {
        int rank = 0;
        const TQString* family = nullptr;
    };

    /// A key of several words, as it stands in areas and made one word.
    struct JoinedKey {
        std::string spaced;
        std::string joined;
    };

    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    template <class Value>
    using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

    void readFile();
    void addJoinedKeys();
    void setFamily(const TQString& key, const TQString& family);
    void indexKeys();
    const TQString* familyOfArea(std::string_view area) const;
    std::string withJoinedKey(std::string_view area) const;
    const Entry* entryOf(std::string_view key) const;
    const Entry* firstEntryOf(const std::vector<std::string_view>& words) const;
    const TQString& familyOfAuthority(std::string_view authority);

    HashTbl<TQString> _families{111};
    std::vector<JoinedKey> _joinedKeys;
    ByText<Entry> _entries; // the table by words
    ByText<const TQString*> _familiesOfAreas;
};
