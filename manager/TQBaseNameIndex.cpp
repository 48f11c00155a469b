#include "manager/TQBaseNameIndex.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>

void TQBaseNameIndex::add(TQProjection& projection) {
    const std::optional<std::string> base = baseName(tq_textOfName(projection.name()));
    if (!base) {
        return;
    }
    if (++_entries > _purgedAt) {
        purge();
    }
    _projections[*base].emplace_back(&projection);
}

/// Drops what is gone, seldom enough to cost nothing.
void TQBaseNameIndex::purge() {
    constexpr std::size_t few = 64;
    _entries = 0;
    for (auto known = _projections.begin(); known != _projections.end();) {
        std::erase_if(known->second, [](const auto& entry) { return entry.get() == nullptr; });
        _entries += known->second.size();
        known = known->second.empty() ? _projections.erase(known) : std::next(known);
    }
    _purgedAt = few + 2 * _entries;
}

TQProjection* TQBaseNameIndex::sameDefinition(const TQProjection& projection) const {
    const std::optional<std::string> base = baseName(tq_textOfName(projection.name()));
    const auto known = base ? _projections.find(*base) : _projections.end();
    if (known == _projections.end()) {
        return nullptr;
    }
    for (const TQWeakPointer<TQProjection>& entry : known->second) {
        TQProjection* const candidate = entry.get();
        if (candidate != nullptr && candidate->hasSameDefinition(projection) &&
            baseName(tq_textOfName(candidate->name())) == base) {
            return candidate;
        }
    }
    return nullptr;
}

void TQBaseNameIndex::noteFree(const TQString& name) {
    const std::string text = name.utf8();
    const std::size_t mark = text.rfind('_');
    if (mark == std::string::npos) {
        return;
    }
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data() + mark + 1, end, number);
    const auto known = _firstNumbers.find(text.substr(0, mark));
    if (error == std::errc() && behind == end && number > 0 && known != _firstNumbers.end()) {
        known->second = std::min(known->second, number);
    }
}

std::optional<std::string> TQBaseNameIndex::baseName(const TQString& name) {
    std::string text = name.utf8();
    const std::size_t mark = text.rfind('_');
    if (mark == std::string::npos) {
        return text;
    }
    const bool isNumbered = mark != 0 && mark + 1 != text.size() &&
                            text.find_first_not_of("0123456789", mark + 1) == std::string::npos;
    return isNumbered ? std::optional(text.substr(0, mark)) : std::nullopt;
}
