#include "support/TQStrHashTbl.h"

#include "support/TQEverlasting.h"

#include <memory>
#include <utility>

namespace {

void* valueOf(const auto* entry) { return entry != nullptr ? entry->value : nullptr; }

const TQString& keyOf(const TQString* key) {
    static TQEverlasting<const TQString> emptyText;
    return key != nullptr ? *key : *emptyText;
}

} // namespace

void* TQStrHashTbl::add(void* value, const TQString& key) {
    if (Table::Entry* const entry = find(key)) {
        return std::exchange(entry->value, value);
    }
    _table.add(key.hashValue(), key, value);
    return nullptr;
}

void* TQStrHashTbl::add(void* value, const TQString* key) { return add(value, keyOf(key)); }

void* TQStrHashTbl::add(void* value, const char* key) { return add(value, TQString(key)); }

void* TQStrHashTbl::getElement(const TQString& key) const { return valueOf(find(key)); }

void* TQStrHashTbl::getElement(const TQString* key) const { return getElement(keyOf(key)); }

void* TQStrHashTbl::getElement(const char* key) const { return getElement(TQString(key)); }

bool TQStrHashTbl::isKey(const TQString& key) const { return find(key) != nullptr; }

bool TQStrHashTbl::isKey(const TQString* key) const { return isKey(keyOf(key)); }

bool TQStrHashTbl::isKey(const char* key) const { return isKey(TQString(key)); }

void* TQStrHashTbl::removeElement(const TQString& key) {
    const auto entry =
        _table.take(key.hashValue(), [&key](const TQString& candidate) { return candidate == key; });
    return valueOf(entry.get());
}

void* TQStrHashTbl::removeElement(const TQString* key) { return removeElement(keyOf(key)); }

void* TQStrHashTbl::removeElement(const char* key) { return removeElement(TQString(key)); }

const TQString* TQStrHashTbl::nextKey(TQStrHashState& state) const {
    void* value = nullptr;
    return nextKey(state, value);
}

const TQString* TQStrHashTbl::nextKey(TQStrHashState& state, void*& value) const {
    const Table::Entry* const entry = _table.next(state);
    value = valueOf(entry);
    return entry != nullptr ? &entry->key : nullptr;
}

void* TQStrHashTbl::nextElement(TQStrHashState& state) const { return valueOf(_table.next(state)); }

void TQStrHashTbl::deleteAllValuesAsTQString() {
    TQStrHashState state;
    while (const Table::Entry* const entry = _table.next(state)) {
        const std::unique_ptr<TQString> owner(static_cast<TQString*>(entry->value));
    }
    _table.clear();
}

TQStrHashTbl::Table::Entry* TQStrHashTbl::find(const TQString& key) const {
    return _table.find(key.hashValue(), [&key](const TQString& candidate) { return candidate == key; });
}
