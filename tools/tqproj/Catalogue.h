#pragma once

#include <optional>
#include <string>
#include <vector>

class TQString;

/// A reference system as the command lists it; all texts UTF-8.
struct CatalogueEntry {
    std::string code;         ///< authority, ":" and code
    std::string name;         ///< the display name
    std::string externalName; ///< the name that the library knows the projection under
    std::string family;       ///< as people read it
    std::string area;         ///< the area of use; empty when it has none
    bool isProjected = false;
    bool isDeprecated = false;
};

/// A family of the catalogue.
struct CatalogueFamily {
    std::string name; ///< as people read it
    int count = 0;    ///< how many systems it has
};

/// The library's catalogue of reference systems in the user's language, in the order in which people read it:
/// geographic systems first, then the families of countries and regions, then the rest.
class Catalogue {
  public:
    /// The families in order.
    static std::vector<CatalogueFamily> families();

    /// All systems in the order of their families, and by name in each.
    static std::vector<CatalogueEntry> entries();

    /// The external name of a system.
    /// @param displayName its display name
    static std::optional<std::string> externalNameOf(const std::string& displayName);

    /// The name to show for a projection: its own, or what the catalogue shows for an external one.
    /// @param projectionName the projection's name
    static std::string shownName(const TQString& projectionName);
};
