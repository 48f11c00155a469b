#include "grid/TQVirtualDrawingGrid.h"

#include "support/TQArchiveBlock.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr const char* blockName = "TQVirtualDrawingGrid";

} // namespace

void TQVirtualDrawingGrid::Free::operator()(char* data) const {
    std::free(data); // NOLINT(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
}

TQVirtualDrawingGrid::TQVirtualDrawingGrid(char* data, int size, bool copy) {
    Memory memory(copy ? nullptr : data);
    if (data == nullptr || size < 1) {
        return;
    }
    if (copy) {
        memory = allocated(size);
        std::memcpy(memory.get(), data, static_cast<std::size_t>(size));
    }
    _data = std::move(memory);
    _size = size;
}

TQVirtualDrawingGrid::TQVirtualDrawingGrid(const TQVirtualDrawingGrid& other)
    : TQVirtualDrawingGrid(other._data.get(), other._size, true) {}

TQVirtualDrawingGrid::TQVirtualDrawingGrid(TQReadStream* stream) { read(*stream); }

TQVirtualDrawingGrid::~TQVirtualDrawingGrid() = default;

std::unique_ptr<TQVirtualDrawingGrid> TQVirtualDrawingGrid::newFromStream(TQReadStream* stream) {
    std::unique_ptr<TQVirtualDrawingGrid> block(new TQVirtualDrawingGrid());
    if (!block->read(*stream)) {
        stream->fail(); // nobody knows where what follows begins
        return nullptr;
    }
    return block;
}

char* TQVirtualDrawingGrid::getInternalData(int* size) const {
    if (size != nullptr) {
        *size = _size;
    }
    return _data.get();
}

TQVirtualDrawingGrid::Memory TQVirtualDrawingGrid::allocated(int size) {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
    Memory memory(static_cast<char*>(std::malloc(static_cast<std::size_t>(size))));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void TQVirtualDrawingGrid::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(blockName, 0);
    stream->write(static_cast<std::int32_t>(_size));
    stream->writeBytes(_data.get(), static_cast<std::size_t>(_size));
}

/// Reads a block into a null one; false when there is none that is known and whole.
bool TQVirtualDrawingGrid::read(TQReadStream& stream) {
    if (tq_readKnownVersion(&stream, blockName, 0,
                            "TQVirtualDrawingGrid::TQVirtualDrawingGrid(TQReadStream * ....)") < 0) {
        return false;
    }
    std::int32_t size = 0;
    stream.read(size);
    if (size > 0 && stream.canHold(static_cast<std::uint64_t>(size), 1)) {
        _data = allocated(size);
        _size = size;
        stream.readBytes(_data.get(), static_cast<std::size_t>(size));
    }
    return !stream.failed();
}
