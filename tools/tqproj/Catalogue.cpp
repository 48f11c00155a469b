#include "tools/tqproj/Catalogue.h"

#include "proj/TQExternalProjList.h"
#include "proj/TQReferenceSystem.h"
#include "support/TQLocalizer.h"

#include <algorithm>
#include <map>
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

/// What PROJ's database says of each system, by external name. Of a system that is listed twice the first
/// counts, as in the library.
std::map<std::string, CatalogueEntry> entriesOfDatabase() {
    std::map<std::string, CatalogueEntry> entries;
    tq_forEachReferenceSystem([&entries](const TQReferenceSystem& system) {
        const TQString authority(system.authority, TQEncodingUTF8);
        const TQString code(system.code, TQEncodingUTF8);
        std::string externalName =
            TQExternalProjList::conventionalNameFromAuthAndStringCode(authority, code, false).utf8();
        entries.try_emplace(externalName, CatalogueEntry{.code = authority.utf8() + ":" + code.utf8(),
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

std::optional<std::string> Catalogue::externalNameOf(const std::string& displayName) {
    const TQString wanted(displayName, TQEncodingUTF8);
    HashState<TQExternalProjList::Family> state;
    while (const TQExternalProjList::Family* family = library().families().next(state)) {
        if (const TQString* externalName = family->lookup(wanted)) {
            return externalName->utf8();
        }
    }
    return std::nullopt;
}

std::string Catalogue::shownName(const TQString& projectionName) {
    TQString family;
    TQString displayName = projectionName;
    if (TQExternalProjList::isExternalProjectionName(projectionName)) {
        library().getFamilyAndNameForExternalProjName(projectionName, family, &displayName);
    }
    return displayName.utf8();
}
