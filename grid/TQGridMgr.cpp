#include "grid/TQGridMgr.h"

#include "support/TQArchiveBlock.h"
#include "support/TQMessages.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace {

constexpr const char* blockName = "TQGridMgr";
constexpr const char* externalBlockName = "TQGridMgr_External";
constexpr const char* drawingsBlockName = "TQGridMgr_External_DG";

constexpr std::int16_t externalVersionWithDrawings = 1;

constexpr const char* drawingsReader =
    "TQGridMgr::unarchiveExternalDrawingGrids_fromNonExternalGridsFrom(TQReadStream *)";

constexpr bool isExternalGrid = true;
constexpr bool isInternalGrid = false;

template <class Function>
void forEach(const HashTbl<TQGrid>& grids, const Function& function) {
    HashState<TQGrid> state;
    while (TQGrid* const grid = grids.next(state)) {
        function(*grid);
    }
}

} // namespace

TQGridMgr::TQGridMgr(const TQGridMgr& other) {
    forEach(other._internal, [this](const TQGrid& grid) { add(_internal, tq_copyOf(grid), isInternalGrid); });
    forEach(other._external, [this](const TQGrid& grid) { add(_external, tq_copyOf(grid), isExternalGrid); });
}

void TQGridMgr::add(Grids& grids, std::unique_ptr<TQGrid> grid, bool isExternal) {
    grid->setIsExternal(isExternal);
    const TQString* const name = grid->name();
    grids.add(std::move(grid), name);
}

void TQGridMgr::destroyAll() {
    _internal = Grids(buckets);
    _external = Grids(buckets);
}

bool TQGridMgr::addGrid(std::unique_ptr<TQGrid>& grid, bool internal) {
    Grids& grids = internal ? _internal : _external;
    if (grid == nullptr || grids.lookup(grid->name()) != nullptr) {
        return false;
    }
    add(grids, std::move(grid), !internal);
    return true;
}

TQGrid* TQGridMgr::gridWithName(const TQString* name) const {
    TQGrid* const internal = _internal.lookup(name);
    return internal != nullptr ? internal : _external.lookup(name);
}

bool TQGridMgr::deleteGrid(const TQString* name) {
    return _internal.remove(name) != nullptr || _external.remove(name) != nullptr;
}

void TQGridMgr::moveExternalGridToInternal() {
    for (std::unique_ptr<TQGrid>& grid : _external.takeAll()) {
        add(_internal, std::move(grid), isInternalGrid);
    }
}

void TQGridMgr::setProjMgr(TQProjMgr* manager) {
    for (const Grids* const grids : {&_internal, &_external}) {
        forEach(*grids, [manager](TQGrid& grid) { grid.setProjMgr(manager); });
    }
}

void TQGridMgr::getGridFrom(const TQGridMgr& other, TQProjMgr* manager) {
    if (&other != this) {
        forEach(other._internal, [this](const TQGrid& grid) {
            if (_internal.lookup(grid.name()) == nullptr) {
                add(_internal, tq_copyOf(grid), isInternalGrid);
            }
        });
        forEach(other._external, [this](const TQGrid& grid) {
            if (_external.lookup(grid.name()) == nullptr) {
                add(_external, tq_copyOf(grid), isExternalGrid);
            }
        });
    }
    setProjMgr(manager);
}

// ---- Archives

void TQGridMgr::archive(const Grids& grids, TQWriteStream& stream) {
    stream.write(static_cast<std::uint32_t>(grids.count()));
    forEach(grids, [&stream](const TQGrid& grid) { grid.archiveTo(&stream); });
}

void TQGridMgr::unarchive(Grids& grids, bool isExternal, TQReadStream& stream) {
    std::uint32_t count = 0;
    stream.read(count);
    for (; count > 0 && !stream.failed(); --count) {
        if (std::unique_ptr<TQGrid> grid = TQGrid::newFromStream(&stream)) {
            add(grids, std::move(grid), isExternal);
        }
    }
}

void TQGridMgr::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion(blockName, 0);
    archive(_internal, *stream);
}

void TQGridMgr::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, blockName, 0) >= 0) {
        unarchive(_internal, isInternalGrid, *stream);
    }
}

void TQGridMgr::archiveExternalTo(TQWriteStream* stream) const {
    stream->declareVersion(externalBlockName, externalVersionWithDrawings);
    archive(_external, *stream);
    archiveDrawings(*stream);
}

void TQGridMgr::unarchiveExternalFrom(TQReadStream* stream) {
    const int version = tq_readKnownVersion(stream, externalBlockName, externalVersionWithDrawings,
                                            "TQGridMgr::unarchiveExternalFrom(TQReadStream *)");
    if (version < 0) {
        return;
    }
    unarchive(_external, isExternalGrid, *stream);
    if (version >= externalVersionWithDrawings && !stream->failed()) {
        unarchiveDrawings(*stream);
    }
}

void TQGridMgr::archiveDrawings(TQWriteStream& stream) const {
    std::vector<const TQGrid*> drawn;
    forEach(_internal, [&drawn](const TQGrid& grid) {
        if (grid.virtualDrawingDefinition() != nullptr) {
            drawn.push_back(&grid);
        }
    });
    stream.declareVersion(drawingsBlockName, 0);
    stream.write(static_cast<std::uint32_t>(drawn.size()));
    for (const TQGrid* const grid : drawn) {
        TQString::archive(grid->name(), &stream);
        grid->virtualDrawingDefinition()->archiveTo(&stream);
    }
}

void TQGridMgr::unarchiveDrawings(TQReadStream& stream) {
    if (tq_readKnownVersion(&stream, drawingsBlockName, 0, drawingsReader) < 0) {
        return;
    }
    std::uint32_t count = 0;
    stream.read(count);
    for (; count > 0 && !stream.failed(); --count) {
        const std::unique_ptr<TQString> name = TQString::unarchiveFrom(&stream);
        if (std::unique_ptr<TQVirtualDrawingGrid> drawing = TQVirtualDrawingGrid::newFromStream(&stream)) {
            giveDrawing(name.get(), std::move(drawing));
        }
    }
}

void TQGridMgr::giveDrawing(const TQString* name, std::unique_ptr<TQVirtualDrawingGrid> drawing) {
    TQGrid* const grid = gridWithName(name);
    if (grid == nullptr) {
        tq_perrorf("%s: unknown grid with name.\n", drawingsReader);
    } else if (grid->isExternal()) {
        tq_perrorf("%s: grid with name isExternal.\n", drawingsReader);
    } else {
        grid->setVirtualDrawingDefinition(std::move(drawing));
    }
}
