#include "manager/TQBaseNameIndex.h"

#include <algorithm>

void TQBaseNameIndex::add(TQProjection& projection) {
    const std::optional<std::string> base = baseName(tq_textOfName(projection.name()));
    if (!base) {
        return;
    }
    auto& known = _projections[*base];
    if (known.size() == known.capacity()) { // seldom enough
        std::erase_if(known, [](const auto& entry) { return entry.get() == nullptr; });
    }
    known.emplace_back(&projection);
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
