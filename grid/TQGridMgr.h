#pragma once

#include "TQProjectionExport.h"

#include "grid/TQGrid.h"
#include "support/HashTbl.h"
#include "support/TQString.h"

#include <memory>

class TQProjMgr;
class TQReadStream;
class TQWriteStream;

/// The map grids of a document, by name: internal ones, which belong to the document, and external ones from
/// a source that it shares with others. It owns them all.
///
/// An internal and an external grid may have the same name; names may be null. A grid is kept under the name
/// that it had when it was added; renaming the grid leaves this key. Copies of grids, grids that are read and
/// external ones that become internal are kept under the name that they have then, and archives have that
/// name. Several grids may come to have one key so: the first of them is found, and drawing definitions that
/// are read for the name are its own.
///
/// A document has its internal grids, archiveTo(), and its source the external ones together with the drawing
/// definitions of the internal ones, archiveExternalTo(). They are read in this order, as the definitions
/// belong to grids that must be there, and bound to the document's projections by setProjMgr() at the end.
class TQPROJECTION_EXPORT TQGridMgr {
  public:
    /// A manager without grids.
    TQGridMgr() = default;

    /// Copies of all grids of another manager.
    /// @param other the other manager
    TQGridMgr(const TQGridMgr& other);
    TQGridMgr& operator=(const TQGridMgr&) = delete;
    ~TQGridMgr() = default;

    /// Destroys all grids.
    void destroyAll();

    /// Adds a grid, unless there is one of its name among those of its kind; null is refused.
    /// @param grid the grid: the manager's when it was added, the caller's as before when it was refused
    /// @param internal whether it becomes an internal grid or an external one
    /// @return whether it was added
    bool addGrid(std::unique_ptr<TQGrid>& grid, bool internal);

    /// The internal grid of a name, else the external one, else null. It stays the manager's.
    /// @param name the name, or null
    TQGrid* gridWithName(const TQString* name) const;

    /// gridWithName() for a name that is not null.
    /// @param name the name
    TQGrid* gridWithName(const TQString& name) const { return gridWithName(&name); }

    /// Whether an internal or an external grid has a name.
    /// @param name the name, or null
    bool gridNameIsUsed(const TQString* name) const { return gridWithName(name) != nullptr; }

    /// gridNameIsUsed() for a name that is not null.
    /// @param name the name
    bool gridNameIsUsed(const TQString& name) const { return gridNameIsUsed(&name); }

    /// Destroys the internal grid of a name, or else the external one.
    /// @param name the name, or null; may be the grid's own
    /// @return whether there was one
    bool deleteGrid(const TQString* name);

    /// deleteGrid() for a name that is not null.
    /// @param name the name; may be the grid's own
    bool deleteGrid(const TQString& name) { return deleteGrid(&name); }

    /// deleteGrid() for the present name of a grid. The grid that is destroyed is the one that is found under
    /// it, and need not be the given one: of an external grid it is the internal one of the same name, if
    /// there is one, and of a renamed grid another one, or none.
    /// @param grid the grid
    bool deleteGrid(const TQGrid& grid) { return deleteGrid(grid.name()); }

    /// The internal grids.
    const HashTbl<TQGrid>& internalGrids() const { return _internal; }

    /// The external grids.
    const HashTbl<TQGrid>& externalGrids() const { return _external; }

    /// Makes all external grids internal ones, in the order of their table and behind those that are there,
    /// whatever their names.
    void moveExternalGridToInternal();

    /// Binds all grids to a manager of projections, see TQGrid::setProjMgr().
    /// @param manager the manager, or null
    void setProjMgr(TQProjMgr* manager);

    /// Copies the grids of another manager whose names are not there yet among those of their kind - of
    /// namesakes the first - and binds all grids to a manager of projections.
    /// @param other the other manager; this one has nothing to copy
    /// @param manager the manager of projections, or null
    void getGridFrom(const TQGridMgr& other, TQProjMgr* manager);

    /// Writes block "TQGridMgr", version 0: the internal grids.
    /// @param stream the stream to write to, not null
    void archiveTo(TQWriteStream* stream) const;

    /// Reads what archiveTo() wrote and adds it to the internal grids, whatever their names. An unknown
    /// version is reported and nothing read. A grid that cannot be read fails the stream; those before it
    /// stay.
    /// @param stream the stream to read from, not null
    void unarchiveFrom(TQReadStream* stream);

    /// Writes block "TQGridMgr_External", version 1: the external grids, and in block
    /// "TQGridMgr_External_DG", version 0, the drawing definitions of the internal ones with their names.
    /// @param stream the stream to write to, not null
    void archiveExternalTo(TQWriteStream* stream) const;

    /// Reads block "TQGridMgr_External" of version 0, which has no drawing definitions, or 1. The grids are
    /// added to the external ones, whatever their names, and internal grids get the drawing definitions in
    /// place of their own; of namesakes the first one gets them all, and keeps the last. A definition whose
    /// name is that of no grid, or only of an external one, is reported and dropped.
    ///
    /// An unknown version of either block is reported and nothing more read. A grid or definition that cannot
    /// be read fails the stream; what was read before it stays.
    /// @param stream the stream to read from, not null
    void unarchiveExternalFrom(TQReadStream* stream);

  private:
    using Grids = HashTbl<TQGrid>;

    static constexpr int buckets = 50;

    static void add(Grids& grids, std::unique_ptr<TQGrid> grid, bool isExternal);
    static void archive(const Grids& grids, TQWriteStream& stream);
    static void unarchive(Grids& grids, bool isExternal, TQReadStream& stream);
    void archiveDrawings(TQWriteStream& stream) const;
    void unarchiveDrawings(TQReadStream& stream);
    void giveDrawing(const TQString* name, std::unique_ptr<TQVirtualDrawingGrid> drawing);

    Grids _internal{buckets};
    Grids _external{buckets};
};
