#include "tools/tqproj/Catalogue.h"

#include "proj/TQExternalProjList.h"
#include "proj/TQReferenceSystem.h"
#include "support/TQLocalizer.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <tuple>

namespace {

/// The library's catalogue, built with the user's texts.
const TQExternalProjList& library() {
    static const bool hasTexts = TQLocalizer::appShared()->addStringsFromFile(TQString("projMessages"));
    static_cast<void>(hasTexts); // without them the families have the names of their keys
    return *TQExternalProjList::appShared();
}

/// A family's name without the character that sorts it in menus.
std::string visibleFamily(std::string name) {
    if (name.starts_with('\t') || name.starts_with('\r')) {
        name.erase(0, 1);
    }
    return name;
}

/// What families are sorted by: geographic ones, those of areas, those of what authorities have besides.
auto sortingKey(const std::string& familyName) {
    const int rank = familyName.starts_with('\t') ? 0 : familyName.starts_with('\r') ? 2 : 1;
    return std::tuple(rank, visibleFamily(familyName));
}

/// All families in order, by the names that the library gives them.
std::vector<std::pair<std::string, const TQExternalProjList::Family*>> sortedFamilies() {
    std::vector<std::pair<std::string, const TQExternalProjList::Family*>> families;
    HashState<TQExternalProjList::Family> state;
    const TQString* name = nullptr;
    while (const TQExternalProjList::Family* family = library().families().next(state, name)) {
        families.emplace_back(name->utf8(), family);
    }
    std::ranges::sort(families, {}, [](const auto& family) { return sortingKey(family.first); });
    return families;
}

/// The systems of a family by display name, in order.
std::map<std::string, std::string> systemsOf(const TQExternalProjList::Family& family) {
    std::map<std::string, std::string> systems;
    HashState<TQString> state;
    const TQString* displayName = nullptr;
    while (const TQString* externalName = family.next(state, displayName)) {
        systems.emplace(displayName->utf8(), externalName->utf8());
    }
    return systems;
}

/// Authority, ":" and code.
std::string idOf(const TQReferenceSystem& system) {
    return std::string(system.authority) + ":" + std::string(system.code);
}

std::string externalNameOf(const TQReferenceSystem& system) {
    const TQString authority(system.authority, TQEncodingUTF8);
    const TQString code(system.code, TQEncodingUTF8);
    constexpr bool isDeprecated = false; // the catalogue's names have no mark
    return TQExternalProjList::conventionalNameFromAuthAndStringCode(authority, code, isDeprecated).utf8();
}

/// What PROJ's database says of each system, by external name. Of a system that is listed twice the first
/// counts, as in the library.
std::map<std::string, CatalogueEntry> entriesOfDatabase() {
    std::map<std::string, CatalogueEntry> entries;
    tq_forEachReferenceSystem([&entries](const TQReferenceSystem& system) {
        const std::string externalName = ::externalNameOf(system);
        entries.try_emplace(externalName, CatalogueEntry{.code = idOf(system),
                                                         .name = {},
                                                         .externalName = externalName,
                                                         .family = {},
                                                         .area = std::string(system.area),
                                                         .isProjected = system.isProjected,
                                                         .isDeprecated = system.isDeprecated});
    });
    return entries;
}

} // namespace

std::vector<CatalogueFamily> Catalogue::families() {
    std::vector<CatalogueFamily> families;
    for (const auto& [name, family] : sortedFamilies()) {
        families.push_back({visibleFamily(name), family->count()});
    }
    return families;
}

std::vector<CatalogueEntry> Catalogue::entries() {
    const auto sorted = sortedFamilies(); // first of all, so that PROJ lists the database of the library
    std::map<std::string, CatalogueEntry> known = entriesOfDatabase();
    std::vector<CatalogueEntry> entries;
    for (const auto& [familyName, family] : sorted) {
        for (const auto& [displayName, externalName] : systemsOf(*family)) {
            CatalogueEntry& entry = entries.emplace_back(std::move(known[externalName]));
            entry.name = displayName;
            entry.family = visibleFamily(familyName);
        }
    }
    return entries;
}

bool Catalogue::looksLikeName(std::string_view text) {
    const std::size_t open = text.rfind(" (");
    const std::size_t colon = text.rfind(':');
    const bool hasCode = open != std::string_view::npos && colon != std::string_view::npos && open > 0 &&
                         open + 2 < colon && colon + 2 < text.size() && text.ends_with(')');
    return hasCode || TQExternalProjList::isExternalProjectionName(TQString(text, TQEncodingUTF8));
}

std::optional<std::string> Catalogue::externalNameOf(const std::string& name) {
    if (!looksLikeName(name)) {
        return std::nullopt;
    }
    if (TQExternalProjList::isExternalProjectionName(TQString(name.c_str()))) {
        return name;
    }
    std::optional<std::string> found;
    tq_forEachReferenceSystem([&](const TQReferenceSystem& system) {
        if (name.ends_with(" (" + idOf(system) + ")") && name.starts_with(std::string(system.name) + " (")) {
            found = ::externalNameOf(system);
        }
    });
    return found;
}

std::string Catalogue::definitionOf(const std::string& text) {
    TQString authority;
    TQString code;
    const std::optional<std::string> name = externalNameOf(text);
    const bool isName = name && TQExternalProjList::authorityAndCodeForExternalProjName(
                                    TQString(name->c_str()), authority, code);
    return isName ? authority.utf8() + ":" + code.utf8() : text;
}

std::vector<std::string> Catalogue::systemNames(SystemKind kind) {
    std::set<std::string> names;
    tq_forEachReferenceSystem([&](const TQReferenceSystem& system) {
        if (!system.isDeprecated && (kind == SystemKind::Any || !system.isProjected)) {
            names.emplace(system.name);
        }
    });
    return {names.begin(), names.end()};
}

bool Catalogue::isAvailable() { return library().families().count() > 0; }

std::string Catalogue::shownName(const TQString& projectionName) {
    TQString family;
    TQString displayName = projectionName;
    if (TQExternalProjList::isExternalProjectionName(projectionName)) {
        library().getFamilyAndNameForExternalProjName(projectionName, family, &displayName);
    }
    return displayName.utf8();
}
