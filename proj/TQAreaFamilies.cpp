#include "proj/TQAreaFamilies.h"

#include "support/TQFile.h"
#include "support/TQLocalizer.h"
#include "support/TQResPathMgr.h"
#include "support/TQStrHashTbl.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace {

/// A word that decides alone, and the key that it stands for.
struct DecidingWord {
    std::string_view word;
    std::string_view key;
};

constexpr std::array<DecidingWord, 4> decidingWords{
    {{"North_America", "North America"}, {"USA", "USA"}, {"Europa", "Europa"}, {"Europe", "Europa"}}};

std::vector<std::string_view> wordsOf(std::string_view area) {
    constexpr std::string_view separators = ",;() /.";
    std::vector<std::string_view> words;
    for (std::size_t start = 0; start < area.size();) {
        const std::size_t end = std::min(area.find_first_of(separators, start), area.size());
        if (end > start) {
            words.push_back(area.substr(start, end - start));
        }
        start = end + 1;
    }
    return words;
}

} // namespace

TQAreaFamilies::TQAreaFamilies() {
    readFile();
    addJoinedKeys();
    indexKeys();
}

// Where the file has no such line, there is none of that key and family.
void TQAreaFamilies::readFile() {
    TQString path;
    if (!TQResPathMgr::appShared()->pathForResource(TQString("TQN_ProjAreas.txt"), path)) {
        return;
    }
    bool isRead = false;
    const std::unique_ptr<TQStrHashTbl> lines = TQFile(path).newStringTableFromContents(0, 1, isRead);
    if (!isRead) {
        return;
    }
    TQStrHashState state;
    void* value = nullptr;
    while (const TQString* key = lines->nextKey(state, value)) {
        std::unique_ptr<TQString> family(static_cast<TQString*>(value)); // which the lines do not own
        if (!key->isEmpty() && !family->isEmpty()) {
            _families.add(std::move(family), *key);
        }
    }
}

void TQAreaFamilies::addJoinedKeys() {
    std::vector<std::pair<TQString, TQString>> joinedFamilies;
    HashState<TQString> state;
    const TQString* key = nullptr;
    while (const TQString* family = _families.next(state, key)) {
        if (key != nullptr && key->indexOf(U' ') >= 0) {
            TQString joined = *key;
            joined.replace(U' ', U'_');
            _joinedKeys.push_back({key->utf8(), joined.utf8()});
            joinedFamilies.emplace_back(std::move(joined), *family);
        }
    }
    for (const auto& [joined, family] : joinedFamilies) {
        setFamily(joined, family);
    }
}

void TQAreaFamilies::setFamily(const TQString& key, const TQString& family) {
    if (TQString* present = _families.lookup(key)) {
        *present = family;
    } else {
        _families.add(std::make_unique<TQString>(family), key);
    }
}

void TQAreaFamilies::indexKeys() {
    HashState<TQString> state;
    const TQString* key = nullptr;
    int rank = 0;
    while (const TQString* family = _families.next(state, key)) {
        _entries.insert_or_assign(key->utf8(), Entry{++rank, family});
    }
}

const TQString& TQAreaFamilies::familyOf(std::string_view area, std::string_view authority) {
    const auto known = _familiesOfAreas.find(area);
    if (known != _familiesOfAreas.end()) {
        return *known->second;
    }
    const TQString* family = familyOfArea(area);
    if (family == nullptr) {
        family = &familyOfAuthority(authority);
    }
    _familiesOfAreas.emplace(area, family);
    return *family;
}

const TQString* TQAreaFamilies::familyOfArea(std::string_view area) const {
    const std::string text = withJoinedKey(area);
    const std::vector<std::string_view> words = wordsOf(text);
    const auto* const deciding = std::ranges::find_if(decidingWords, [&](const DecidingWord& candidate) {
        return std::ranges::find(words, candidate.word) != words.end();
    });
    const Entry* decided = deciding != decidingWords.end() ? entryOf(deciding->key) : nullptr;
    const Entry* found = decided != nullptr ? decided : firstEntryOf(words);
    return found != nullptr ? found->family : nullptr;
}

/// The area with the first key of several words that it contains made one word.
std::string TQAreaFamilies::withJoinedKey(std::string_view area) const {
    std::string text(area);
    const auto contained = std::ranges::find_if(_joinedKeys, [area](const JoinedKey& key) {
        return area.find(key.spaced) != std::string_view::npos;
    });
    if (contained != _joinedKeys.end()) {
        const auto& [spaced, joined] = *contained;
        for (std::size_t at = text.find(spaced); at != std::string::npos; at = text.find(spaced, at)) {
            text.replace(at, spaced.size(), joined);
        }
    }
    return text;
}

const TQAreaFamilies::Entry* TQAreaFamilies::entryOf(std::string_view key) const {
    const auto found = _entries.find(key);
    return found != _entries.end() ? &found->second : nullptr;
}

const TQAreaFamilies::Entry* TQAreaFamilies::firstEntryOf(const std::vector<std::string_view>& words) const {
    const Entry* first = nullptr;
    for (const std::string_view word : words) {
        const Entry* entry = entryOf(word);
        if (entry != nullptr && (first == nullptr || entry->rank < first->rank)) {
            first = entry;
        }
    }
    return first;
}

// A family that is made here joins the keys, so that the authority's next systems find it.
const TQString& TQAreaFamilies::familyOfAuthority(std::string_view authority) {
    if (const Entry* listed = entryOf(authority)) {
        return *listed->family;
    }
    const TQString key(authority, TQEncodingUTF8);
    const std::string format = TQLocalizer::appLocalizedStringForKey(TQString("** %s Other **")).utf8();
    TQString family;
    family.setWithFormat(format.c_str(), key);
    if (authority != "EPSG") {
        family.insertAtIndex(TQString("\r"), 0); // sorts after the families of areas
    }
    setFamily(key, family);
    indexKeys();
    return *_families.lookup(key);
}
