#pragma once

#include <optional>
#include <string>
#include <string_view>
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

/// Which systems are asked for.
enum class SystemKind {
    Any,       ///< projected and geographic ones
    Geographic ///< those with longitude and latitude alone
};

/// The library's catalogue of reference systems in the user's language, in the order in which people read it:
/// geographic systems first, then the families of countries and regions, then the rest.
class Catalogue {
  public:
    /// The families in order.
    static std::vector<CatalogueFamily> families();

    /// All systems in the order of their families, and by name in each.
    static std::vector<CatalogueEntry> entries();

    /// Whether a text has the look of a name of the catalogue: it begins with a tab, or ends with an
    /// authority and a code in parentheses.
    /// @param text the text
    static bool looksLikeName(std::string_view text);

    /// The external name that a name of the catalogue means; none for any other text.
    /// @param name an external name, or a display name in any language: a system's name, and behind it its
    ///        authority and code in parentheses
    static std::optional<std::string> externalNameOf(const std::string& name);

    /// The definition for PROJ that a text means: authority and code for a name of the catalogue, the text
    /// itself for any other.
    /// @param text the text
    static std::string definitionOf(const std::string& text);

    /// The names that reference systems have in PROJ's database, those of withdrawn ones left out.
    /// @param kind of which systems
    static std::vector<std::string> systemNames(SystemKind kind);

    /// Whether PROJ has a database.
    static bool isAvailable();

    /// The name to show for a projection: its own, or what the catalogue shows for an external one.
    /// @param projectionName the projection's name
    static std::string shownName(const TQString& projectionName);
};
