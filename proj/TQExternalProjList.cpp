#include "proj/TQExternalProjList.h"

#include "proj/TQAreaFamilies.h"
#include "proj/TQPrProj4.h"
#include "proj/TQReferenceSystem.h"
#include "support/TQLocalizer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr const char* sharedKeyOfCatalogue = "TQExternalProjList";
constexpr std::string_view epsg = "EPSG";
constexpr std::string_view epsgPrefix = "\tEPSG_";
constexpr char32_t tab = U'\t';
constexpr char32_t deprecatedMark = U'\r';
constexpr int bucketCount = 111;

/// The catalogue of the process as appShared() found it last.
constinit TQExternalProjList* cached = nullptr;

/// What happens when the library is unloaded: the registry, which outlives it, may not keep the catalogue.
const struct CatalogueUnload {
    CatalogueUnload() = default;
    CatalogueUnload(const CatalogueUnload&) = delete;
    CatalogueUnload& operator=(const CatalogueUnload&) = delete;
    ~CatalogueUnload() {
        if (cached != nullptr) {
            TQExternalProjList::deleteAppShared();
        }
    }
} catalogueUnload;

TQString stringOf(std::string_view utf8) { return TQString(utf8, TQEncodingUTF8); }

TQString localized(const char* key) { return TQLocalizer::appLocalizedStringForKey(TQString(key)); }

bool isEPSGName(const TQString& name) {
    return name.isEqualForLength(epsgPrefix.data(), static_cast<int>(epsgPrefix.size()));
}

/// A name or code without its mark.
TQString withoutMark(TQString text, bool* deprecated) {
    const int mark = text.indexOf(deprecatedMark);
    if (deprecated != nullptr) {
        *deprecated = mark >= 0;
    }
    if (mark >= 0) {
        text.cutAtIndex(mark);
    }
    return text;
}

std::string externalName(std::string_view authority, std::string_view code) {
    std::string name = authority == epsg ? std::string(epsgPrefix) : "\t" + std::string(authority) + ":";
    return name.append(code);
}

/// Sorts reference systems into families.
class Sorter {
  public:
    Sorter(HashTbl<TQExternalProjList::Family>& families, HashTbl<TQString>& names)
        : _families(families), _names(names) {}

    /// Lists a system, unless its family has another one of that name, or its name is listed already.
    void add(const TQReferenceSystem& system) {
        const TQString displayName = displayNameOf(system);
        const TQString familyName = familyNameOf(system);
        const TQString name = stringOf(externalName(system.authority, system.code));
        TQExternalProjList::Family& family = familyWithName(familyName);
        if (family.lookup(displayName) != nullptr || _names.lookup(name) != nullptr) {
            return;
        }
        family.add(std::make_unique<TQString>(name), displayName);
        auto entry = std::make_unique<TQString>(displayName);
        entry->append(tab);
        entry->append(familyName);
        _names.add(std::move(entry), name);
    }

  private:
    TQString displayNameOf(const TQReferenceSystem& system) const {
        if (!system.isDeprecated) {
            return stringOf(std::string(system.name)
                                .append(" (")
                                .append(system.authority)
                                .append(":")
                                .append(system.code)
                                .append(")"));
        }
        TQString name = stringOf(system.name);
        name.appendWithFormat(_deprecatedSuffix.c_str(), stringOf(system.authority), stringOf(system.code));
        return name;
    }

    TQString familyNameOf(const TQReferenceSystem& system) {
        if (!system.isProjected) {
            return system.isDeprecated ? _deprecatedGeographic : _geographic;
        }
        if (system.isDeprecated) {
            return _deprecatedProjected;
        }
        constexpr std::string_view zoneOfUTM = " / UTM zone";
        const std::size_t zone = system.name.find(zoneOfUTM);
        if (system.name.starts_with("WGS ") && zone != std::string_view::npos) {
            return stringOf(std::string(system.name.substr(0, zone)) + " UTM");
        }
        return _areas.familyOf(system.area, system.authority);
    }

    TQExternalProjList::Family& familyWithName(const TQString& name) {
        if (TQExternalProjList::Family* family = _families.lookup(name)) {
            return *family;
        }
        return *_families.add(std::make_unique<TQExternalProjList::Family>(bucketCount), name);
    }

    static TQString geographicFamily(const char* key) {
        TQString name("\t");
        name.append(localized(key));
        return name;
    }

    HashTbl<TQExternalProjList::Family>& _families;
    HashTbl<TQString>& _names;
    TQAreaFamilies _areas;
    TQString _geographic = geographicFamily("++ GeoCS ++");
    TQString _deprecatedGeographic = geographicFamily("++ GeoCS deprecated ++");
    TQString _deprecatedProjected = localized("** Deprecated **");
    std::string _deprecatedSuffix = localized(" (deprecated) (%s:%s)").utf8();
};

TQString textOf(int code) {
    TQString text;
    text.set(code);
    return text;
}

/// Whether a text has only characters that authorities and codes have: it cannot name a file then.
bool isPlain(const std::string& text) {
    constexpr std::string_view others = "_-.";
    return std::ranges::all_of(text, [&](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               others.find(c) != std::string_view::npos;
    });
}

// Deprecated systems take geographic points on WGS 84. Names come out of documents, and may hold anything.
std::unique_ptr<TQPrProj4> newProjection(const TQString& authority, const TQString& code, bool deprecated) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->rename(
        TQExternalProjList::conventionalNameFromAuthAndStringCode(authority, code, deprecated));
    const std::string definition = authority.utf8() + ":" + code.utf8();
    if (isPlain(authority.utf8()) && isPlain(code.utf8())) {
        projection->initFromPROJString(definition.c_str(), deprecated);
    } else {
        projection->initFromForeignText(definition.c_str(), deprecated);
    }
    return projection;
}

/// The code of the geodetic reference system of an EPSG system; 0 when PROJ cannot build the system.
int geodeticCodeOf(int code) {
    constexpr bool isDeprecated = false;
    const auto projection = newProjection(stringOf(epsg), textOf(code), isDeprecated);
    return projection->isInvalid() ? 0 : projection->geodeticCode();
}

} // namespace

TQExternalProjList::TQExternalProjList() : TQSharedObject(TQString(sharedKeyOfCatalogue)) {
    tq_letPROJSearchSharedDirectory();
    auto families = std::make_shared<HashTbl<Family>>(bucketCount);
    auto names = std::make_shared<Names>(bucketCount);
    Sorter sorter(*families, *names);
    tq_forEachReferenceSystem([&sorter](const TQReferenceSystem& system) { sorter.add(system); });
    _families = std::move(families);
    _names = std::move(names);
}

TQExternalProjList::TQExternalProjList(const TQExternalProjList& other) = default;

TQExternalProjList::~TQExternalProjList() {
    if (cached == this) {
        cached = nullptr;
    }
}

TQExternalProjList* TQExternalProjList::appShared() {
    if (cached == nullptr) {
        cached = dynamic_cast<TQExternalProjList*>(sharedAppObjectForKey(TQString(sharedKeyOfCatalogue)));
    }
    if (cached == nullptr) {
        auto catalogue = std::make_unique<TQExternalProjList>();
        cached = catalogue.get();
        addAppSharedObject(std::move(catalogue));
    }
    return cached;
}

// The destructor lets go of the cached pointer.
void TQExternalProjList::deleteAppShared() { removeAppSharedObject(TQString(sharedKeyOfCatalogue)).reset(); }

bool TQExternalProjList::isExternalProjectionName(const TQString& name) { return name.characterAt(0) == tab; }

bool TQExternalProjList::authorityAndCodeForExternalProjName(const TQString& name, TQString& authority,
                                                             TQString& code, bool* deprecated) {
    constexpr int firstOfAuthority = 1;
    const int colon = name.indexOf(U':');
    if (deprecated != nullptr) {
        *deprecated = false;
    }
    if (isEPSGName(name)) {
        authority = stringOf(epsg);
        code = name.rightSubstring(name.length() - static_cast<int>(epsgPrefix.size()));
    } else if (isExternalProjectionName(name) && colon > firstOfAuthority) {
        authority = name.substring(firstOfAuthority, colon - 1);
        code = name.rightSubstring(name.length() - (colon + 1));
    } else {
        return false;
    }
    code = withoutMark(code, deprecated);
    return true;
}

int TQExternalProjList::numericalIDForEPSGExternalProjName(const TQString& name, int* geodeticCode,
                                                           bool* deprecated) {
    TQString authority;
    TQString code;
    bool isDeprecated = false;
    const bool hasCode =
        isEPSGName(name) && authorityAndCodeForExternalProjName(name, authority, code, &isDeprecated);
    const int number = hasCode ? code.convertToLong() : 0;
    if (geodeticCode != nullptr) {
        *geodeticCode = hasCode ? geodeticCodeOf(number) : 0;
    }
    if (deprecated != nullptr) {
        *deprecated = isDeprecated;
    }
    return number;
}

TQString TQExternalProjList::conventionalNameFromAuthAndStringCode(const TQString& authority,
                                                                   const TQString& code, bool deprecated) {
    TQString name = stringOf(externalName(authority.utf8(), code.utf8()));
    if (deprecated) {
        name.append(deprecatedMark);
    }
    return name;
}

TQString TQExternalProjList::conventionalNameFromAuthAndNumericalCode(const TQString& authority, int code,
                                                                      bool deprecated) {
    return conventionalNameFromAuthAndStringCode(authority, textOf(code), deprecated);
}

std::unique_ptr<TQProjection>
TQExternalProjList::newExternalProjectionFromAuthAndStringCode(const TQString& authority,
                                                               const TQString& code, bool deprecated) {
    return newProjection(authority, code, deprecated);
}

std::unique_ptr<TQProjection> TQExternalProjList::newExternalEPSGProjectionFromID(int code, bool deprecated) {
    return newProjection(stringOf(epsg), textOf(code), deprecated);
}

bool TQExternalProjList::getFamilyAndNameForExternalProjName(const TQString& name, TQString& family,
                                                             TQString* displayName) const {
    const TQString* entry = _names->lookup(withoutMark(name, nullptr));
    const int end = entry != nullptr ? entry->indexOf(tab) : -1;
    if (end < 1) {
        return false;
    }
    if (displayName != nullptr) {
        *displayName = entry->leftSubstring(end);
    }
    family = entry->rightSubstring(entry->length() - (end + 1));
    return true;
}

TQString TQExternalProjList::displayNameForExternalProj(const TQProjection* projection) const {
    const TQString* name = projection != nullptr ? projection->name() : nullptr;
    if (name == nullptr) {
        return TQString();
    }
    TQString family;
    TQString displayName;
    if (!getFamilyAndNameForExternalProjName(*name, family, &displayName)) {
        return *name;
    }
    displayName.append(" (");
    displayName.append(family);
    displayName.append(")");
    return displayName;
}
