#include "support/TQStrTableWithId.h"

#include <algorithm>

void TQStrTableWithId::add(std::int32_t id, const TQString& text) { _entries.push_back({id, text}); }

void TQStrTableWithId::addList(std::span<const TQStrWithId> list) {
    const std::vector<TQStrWithId> copies(list.begin(), list.end()); // the list may be our own entries
    _entries.insert(_entries.end(), copies.begin(), copies.end());
}

void TQStrTableWithId::addList(const TQStrTableWithId& other) { addList(other._entries); }

const TQStrWithId* TQStrTableWithId::entryAt(int index) const {
    return index >= 0 && index < count() ? &_entries[static_cast<std::size_t>(index)] : nullptr;
}

const TQString* TQStrTableWithId::stringForId(std::int32_t id) const {
    const auto found = std::ranges::find(_entries, id, &TQStrWithId::id);
    return found != _entries.end() ? &found->text : nullptr;
}

bool TQStrTableWithId::idForString(const TQString& text, std::int32_t& id) const {
    const auto found = std::ranges::find(_entries, text, &TQStrWithId::text);
    if (found == _entries.end()) {
        return false;
    }
    id = found->id;
    return true;
}
