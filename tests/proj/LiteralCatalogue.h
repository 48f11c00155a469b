#pragma once

#include "tests/proj/ListedSystems.h"

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The catalogue of reference systems built word by word as its rules are told, without a thought for speed:
/// what the library's catalogue is compared with.
class LiteralCatalogue {
  public:
    /// The texts of families and of deprecated names.
    struct Texts {
        std::string geographic = "++ GeoCS ++";
        std::string deprecatedGeographic = "++ GeoCS deprecated ++";
        std::string deprecatedProjected = "** Deprecated **";
        std::string otherBegin = "** "; // what stands before and behind the authority
        std::string otherEnd = " Other **";
        std::string deprecatedBegin = " (deprecated) ("; // and before the authority and behind the code
        std::string deprecatedEnd = ")";
    };

    /// Display name and family of each system, by its external name.
    std::map<std::string, std::pair<std::string, std::string>> names;

    /// External names by family and display name.
    std::map<std::string, std::map<std::string, std::string>> families;

    /// @param areas the lines of the areas file: key and family
    LiteralCatalogue(const std::vector<std::pair<std::string, std::string>>& areas, Texts texts)
        : _texts(std::move(texts)) {
        for (const auto& [key, family] : areas) {
            if (find(key) == nullptr) {
                put(key, family);
            }
        }
        std::vector<std::pair<std::string, std::string>> joinedFamilies;
        for (const auto& [key, family] : inTableOrder()) {
            if (key.find(' ') != std::string::npos) {
                _joined.emplace_back(key, underscored(key));
                joinedFamilies.emplace_back(underscored(key), family);
            }
        }
        for (const auto& [key, family] : joinedFamilies) {
            put(key, family);
        }
        for (const ListedSystem& system : systemsListedByProj()) {
            add(system);
        }
    }

  private:
    using Entry = std::pair<std::string, std::string>;

    static std::string underscored(std::string key) {
        for (char& c : key) {
            c = c == ' ' ? '_' : c;
        }
        return key;
    }

    /// FNV-1a of 32 bits, over the buckets of the table.
    static std::size_t bucketOf(const std::string& key) {
        std::uint32_t hash = 2166136261U;
        for (const char c : key) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
        }
        return hash % 111;
    }

    std::string* find(const std::string& key) {
        for (Entry& entry : _table[bucketOf(key)]) {
            if (entry.first == key) {
                return &entry.second;
            }
        }
        return nullptr;
    }

    void put(const std::string& key, const std::string& family) {
        if (std::string* present = find(key)) {
            *present = family;
        } else {
            _table[bucketOf(key)].emplace_back(key, family);
        }
    }

    std::vector<Entry> inTableOrder() const {
        std::vector<Entry> entries;
        for (const std::vector<Entry>& bucket : _table) {
            entries.insert(entries.end(), bucket.begin(), bucket.end());
        }
        return entries;
    }

    static std::set<std::string> wordsOf(const std::string& text) {
        std::set<std::string> words;
        std::string word;
        for (const char c : text + " ") {
            if (std::string(",;() /.").find(c) == std::string::npos) {
                word += c;
            } else if (!word.empty()) {
                words.insert(word);
                word.clear();
            }
        }
        return words;
    }

    std::string areaFamily(std::string area, const std::string& authority) {
        for (const auto& [spaced, joined] : _joined) {
            if (area.find(spaced) != std::string::npos) {
                for (std::size_t at = 0; (at = area.find(spaced, at)) != std::string::npos;) {
                    area.replace(at, spaced.size(), joined);
                }
                break;
            }
        }
        const std::set<std::string> words = wordsOf(area);
        const std::string* family = nullptr;
        if (words.contains("North_America")) {
            family = find("North America");
        } else if (words.contains("USA")) {
            family = find("USA");
        } else if (words.contains("Europa") || words.contains("Europe")) {
            family = find("Europa");
        }
        if (family != nullptr) {
            return *family;
        }
        for (const auto& [key, value] : inTableOrder()) {
            if (words.contains(key)) {
                return value;
            }
        }
        if (find(authority) == nullptr) {
            const std::string other = _texts.otherBegin + authority + _texts.otherEnd;
            put(authority, authority == "EPSG" ? other : "\r" + other);
        }
        return *find(authority);
    }

    void add(const ListedSystem& system) {
        const std::string id = system.authority + ":" + system.code;
        std::string display = system.name + " (" + id + ")";
        if (system.isDeprecated) {
            display = system.name + _texts.deprecatedBegin + id + _texts.deprecatedEnd;
        }
        const std::string family = familyOf(system);
        const std::string name = system.authority == "EPSG" ? "\tEPSG_" + system.code
                                                            : "\t" + system.authority + ":" + system.code;
        if (!families[family].contains(display) && !names.contains(name)) {
            families[family][display] = name;
            names[name] = {display, family};
        }
    }

    std::string familyOf(const ListedSystem& system) {
        if (!system.isProjected) {
            return "\t" + (system.isDeprecated ? _texts.deprecatedGeographic : _texts.geographic);
        }
        if (system.isDeprecated) {
            return _texts.deprecatedProjected;
        }
        const std::size_t zone = system.name.find(" / UTM zone");
        if (system.name.rfind("WGS ", 0) == 0 && zone != std::string::npos) {
            return system.name.substr(0, zone + 1) + "UTM";
        }
        if (!_known.contains(system.area)) {
            _known[system.area] = areaFamily(system.area, system.authority);
        }
        return _known[system.area];
    }

    Texts _texts;
    std::array<std::vector<Entry>, 111> _table;
    std::vector<Entry> _joined;
    std::map<std::string, std::string> _known;
};
