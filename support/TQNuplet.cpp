#include "support/TQNuplet.h"

#include "support/TQArchiveBlock.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

constexpr std::int16_t newestVersion = 0;

/// The fewest bytes of an archived TQData: its version tag, an empty name, the kind and one byte.
constexpr std::uint64_t leastBytesOfAValue = 9 + 5 + 4 + 1;

} // namespace

TQNuplet::TQNuplet(const TQNuplet& other) : TQObject(other) {
    _values.reserve(other._values.size());
    for (const auto& value : other._values) {
        _values.push_back(tq_copyOf(*value));
    }
}

TQNuplet& TQNuplet::operator=(TQNuplet other) noexcept {
    _values.swap(other._values);
    return *this;
}

TQData* TQNuplet::add(std::unique_ptr<TQData> value) {
    return value != nullptr ? _values.emplace_back(std::move(value)).get() : nullptr;
}

TQData* TQNuplet::dataAt(int index) const {
    return index >= 0 && index < count() ? _values[static_cast<std::size_t>(index)].get() : nullptr;
}

bool TQNuplet::isEqual(const TQObject* other) const {
    const auto* const nuplet = dynamic_cast<const TQNuplet*>(other);
    return nuplet != nullptr && std::ranges::equal(_values, nuplet->_values,
                                                   [](const auto& a, const auto& b) { return *a == *b; });
}

void TQNuplet::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQNuplet", newestVersion);
    TQObject::archiveTo(stream);
    stream->write(static_cast<std::uint32_t>(_values.size()));
    for (const auto& value : _values) {
        value->TQData::archiveTo(stream);
    }
}

void TQNuplet::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQNuplet", newestVersion) < 0) {
        return;
    }
    TQObject::unarchiveFrom(stream);
    std::uint32_t count = 0;
    stream->read(count);
    if (!stream->canHold(count, leastBytesOfAValue)) {
        return;
    }
    TQNuplet read;
    for (std::uint32_t i = 0; i < count && !stream->failed(); ++i) {
        read.add(std::make_unique<TQData>())->unarchiveFrom(stream);
    }
    if (!stream->failed()) {
        *this = std::move(read);
    }
}
