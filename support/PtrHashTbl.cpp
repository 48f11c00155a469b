#include "support/PtrHashTbl.h"

#include <utility>

namespace {

/// Multiplies by 2^64 over the golden ratio (Knuth, The Art of Computer Programming, 6.4) and keeps the
/// upper half, in which all bits of the address are mixed.
std::uint32_t hashOf(const void* key) {
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    constexpr unsigned upperHalf = 32;
    const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key));
    return static_cast<std::uint32_t>((address * multiplier) >> upperHalf);
}

auto isKeyEqualTo(const void* key) {
    return [key](const void* candidate) { return candidate == key; };
}

void* valueOf(const auto* entry) { return entry != nullptr ? entry->value : nullptr; }

} // namespace

void* PtrHashTbl::add(void* value, const void* key) {
    if (Table::Entry* const entry = find(key)) {
        return std::exchange(entry->value, value);
    }
    _table.add(hashOf(key), key, value);
    return nullptr;
}

void* PtrHashTbl::getElement(const void* key) const { return valueOf(find(key)); }

bool PtrHashTbl::isKey(const void* key) const { return find(key) != nullptr; }

void* PtrHashTbl::removeElement(const void* key) {
    return valueOf(_table.take(hashOf(key), isKeyEqualTo(key)).get());
}

void* PtrHashTbl::nextElement(PtrHashState& state) const { return valueOf(_table.next(state)); }

PtrHashTbl::Table::Entry* PtrHashTbl::find(const void* key) const {
    return _table.find(hashOf(key), isKeyEqualTo(key));
}
