#include "grid/TQGridMgr.h"

#include "tests/grid/GridCase.h"
#include "tests/manager/ManagerCase.h"
#include "tests/support/ArchiveBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

constexpr bool kInternal = true;
constexpr bool kExternal = false;

constexpr const char* kIsExternal =
    "TQGridMgr::unarchiveExternalDrawingGrids_fromNonExternalGridsFrom(TQReadStream *): grid with name "
    "isExternal.\n";
constexpr const char* kUnknownGrid = "TQGridMgr::unarchiveExternalDrawingGrids_fromNonExternalGridsFrom("
                                     "TQReadStream *): unknown grid with name.\n";
constexpr const char* kUnknownDrawings = "TQGridMgr::unarchiveExternalDrawingGrids_fromNonExternalGridsFrom("
                                         "TQReadStream *): version %d is unknown.\n";

/// A grid of a name and, to tell namesakes apart, a spacing.
std::unique_ptr<TQGrid> newGrid(const std::string& name, double spacing = 0.0) {
    auto grid = std::make_unique<TQGrid>();
    grid->setName(TQString(name.c_str()));
    grid->setSpacing({spacing, spacing});
    return grid;
}

/// Adds a grid and gives it back; null when it was refused.
TQGrid* add(TQGridMgr& grids, std::unique_ptr<TQGrid> grid, bool internal) {
    TQGrid* const added = grid.get();
    return grids.addGrid(grid, internal) ? added : nullptr;
}

TQGrid* add(TQGridMgr& grids, const std::string& name, bool internal, double spacing = 0.0) {
    return add(grids, newGrid(name, spacing), internal);
}

std::vector<TQGrid*> gridsIn(const HashTbl<TQGrid>& table) {
    std::vector<TQGrid*> grids;
    HashState<TQGrid> state;
    while (TQGrid* const grid = table.next(state)) {
        grids.push_back(grid);
    }
    return grids;
}

std::vector<std::string> namesIn(const HashTbl<TQGrid>& table) {
    std::vector<std::string> names;
    for (const TQGrid* const grid : gridsIn(table)) {
        names.push_back(textOf(grid->name()));
    }
    return names;
}

std::vector<double> spacingsIn(const HashTbl<TQGrid>& table) {
    std::vector<double> spacings;
    for (const TQGrid* const grid : gridsIn(table)) {
        spacings.push_back(grid->spacing().width);
    }
    return spacings;
}

std::string internalArchive(const TQGridMgr& grids) { return tqtest::archiveOf(grids); }

std::string externalArchive(const TQGridMgr& grids) {
    TQWriteMemStream stream;
    grids.archiveExternalTo(&stream);
    return tqtest::written(stream);
}

/// A grid's archive.
StreamBytes gridBytes(const TQGrid& grid) {
    StreamBytes bytes;
    for (const char byte : archivedBytes(grid)) {
        bytes.byte(byte);
    }
    return bytes;
}

StreamBytes gridBytes(const std::string& name) { return gridBytes(*newGrid(name)); }

/// The number of some grids of one name, which only archives can give a manager, and the grids; their
/// spacings are 1, 2 and so on.
StreamBytes namesakes(const std::string& name, int count) {
    StreamBytes bytes = StreamBytes().integer(count);
    for (int i = 1; i <= count; ++i) {
        bytes.append(gridBytes(*newGrid(name, i)));
    }
    return bytes;
}

void readInternal(TQGridMgr& grids, const StreamBytes& countAndGrids) {
    ByteStream stream(StreamBytes().tag("TQGridMgr", 0).append(countAndGrids));
    grids.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
}

void readExternal(TQGridMgr& grids, const StreamBytes& countAndGrids) {
    ByteStream stream(StreamBytes().tag("TQGridMgr_External", 0).append(countAndGrids));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
}

/// Block "TQGridMgr_External" of version 1 without external grids, up to the number of definitions.
StreamBytes drawingsHead(int count) {
    return StreamBytes()
        .tag("TQGridMgr_External", 1)
        .integer(0)
        .tag("TQGridMgr_External_DG", 0)
        .integer(count);
}

} // namespace

TEST(TQGridMgr, ANewOneIsEmpty) {
    const TQGridMgr grids;
    EXPECT_EQ(grids.internalGrids().count(), 0);
    EXPECT_EQ(grids.externalGrids().count(), 0);
    EXPECT_EQ(grids.gridWithName(TQString("A")), nullptr);
    EXPECT_EQ(grids.gridWithName(nullptr), nullptr);
    EXPECT_FALSE(grids.gridNameIsUsed(TQString("A")));
}

TEST(TQGridMgr, TablesHaveFiftyBuckets) {
    TQGridMgr grids;
    add(grids, "A", kInternal);
    add(grids, "B", kExternal);
    EXPECT_EQ(grids.internalGrids().bucketCount(), 50);
    EXPECT_EQ(grids.externalGrids().bucketCount(), 50);
    grids.destroyAll();
    add(grids, "A", kInternal);
    add(grids, "B", kExternal);
    EXPECT_EQ(grids.internalGrids().bucketCount(), 50);
    EXPECT_EQ(grids.externalGrids().bucketCount(), 50);
}

// ---- Adding and finding

TEST(TQGridMgr, KeepsInternalAndExternalGrids) {
    TQGridMgr grids;
    auto wasExternal = newGrid("A");
    wasExternal->setIsExternal(true);
    const TQGrid* const internal = add(grids, std::move(wasExternal), kInternal);
    const TQGrid* const external = add(grids, "B", kExternal);
    ASSERT_NE(internal, nullptr);
    ASSERT_NE(external, nullptr);
    EXPECT_FALSE(internal->isExternal());
    EXPECT_TRUE(external->isExternal());
    EXPECT_EQ(grids.gridWithName(TQString("A")), internal);
    EXPECT_EQ(grids.gridWithName(TQString("B")), external);
    EXPECT_TRUE(grids.gridNameIsUsed(TQString("A")));
    EXPECT_TRUE(grids.gridNameIsUsed(TQString("B")));
    EXPECT_FALSE(grids.gridNameIsUsed(TQString("a")));
}

TEST(TQGridMgr, ARefusedGridStaysTheCallers) {
    TQGridMgr grids;
    const TQGrid* const first = add(grids, "A", kInternal);
    auto second = newGrid("A");
    second->setIsExternal(true);
    TQGrid* const address = second.get();
    EXPECT_FALSE(grids.addGrid(second, kInternal));
    EXPECT_EQ(second.get(), address);
    EXPECT_TRUE(second->isExternal());
    EXPECT_EQ(grids.internalGrids().count(), 1);
    EXPECT_EQ(grids.gridWithName(TQString("A")), first);
    EXPECT_TRUE(grids.addGrid(second, kExternal));
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(grids.gridWithName(TQString("A")), first); // internal ones come first
    auto third = newGrid("A");
    EXPECT_FALSE(grids.addGrid(third, kExternal));
    EXPECT_NE(third, nullptr);
}

TEST(TQGridMgr, NullIsRefused) {
    TQGridMgr grids;
    std::unique_ptr<TQGrid> none;
    EXPECT_FALSE(grids.addGrid(none, kInternal));
    EXPECT_FALSE(grids.addGrid(none, kExternal));
}

TEST(TQGridMgr, ANullNameIsFoundByNullAlone) {
    TQGridMgr grids;
    const TQGrid* const nameless = add(grids, std::make_unique<TQGrid>(), kInternal);
    EXPECT_EQ(grids.gridWithName(nullptr), nameless);
    EXPECT_EQ(grids.gridWithName(TQString()), nullptr);
    auto another = std::make_unique<TQGrid>();
    EXPECT_FALSE(grids.addGrid(another, kInternal));
    EXPECT_NE(add(grids, "", kInternal), nullptr);
    EXPECT_TRUE(grids.deleteGrid(nullptr));
    EXPECT_FALSE(grids.gridNameIsUsed(nullptr));
    EXPECT_TRUE(grids.gridNameIsUsed(TQString()));
}

TEST(TQGridMgr, AGridIsKeptUnderTheNameThatItWasAddedWith) {
    TQGridMgr grids;
    TQGrid* const grid = add(grids, "A", kInternal);
    grid->setName(TQString("B"));
    EXPECT_EQ(grids.gridWithName(TQString("A")), grid);
    EXPECT_EQ(grids.gridWithName(TQString("B")), nullptr);
}

TEST(TQGridMgr, CopiesAreKeptUnderTheirPresentNames) {
    TQGridMgr grids;
    for (const bool kind : {kInternal, kExternal}) {
        add(grids, kind ? "A" : "B", kind)->setName(TQString(kind ? "New A" : "New B"));
    }
    TQGridMgr taken;
    taken.getGridFrom(grids, nullptr);
    for (const TQGridMgr& copy : {TQGridMgr(grids), TQGridMgr(taken)}) {
        for (const char* name : {"A", "B"}) {
            EXPECT_EQ(copy.gridWithName(TQString(name)), nullptr);
            const TQString present((std::string("New ") + name).c_str());
            ASSERT_NE(copy.gridWithName(present), nullptr);
            EXPECT_EQ(*copy.gridWithName(present)->name(), present);
        }
    }
}

TEST(TQGridMgr, GridsThatBecomeInternalAreKeptUnderTheirPresentNames) {
    TQGridMgr grids;
    TQGrid* const grid = add(grids, "A", kExternal);
    grid->setName(TQString("New A"));
    grids.moveExternalGridToInternal();
    EXPECT_EQ(grids.gridWithName(TQString("A")), nullptr);
    EXPECT_EQ(grids.gridWithName(TQString("New A")), grid);
}

TEST(TQGridMgr, GridsAreReadUnderTheirPresentNames) {
    TQGridMgr written;
    add(written, "A", kInternal)->setName(TQString("New A"));
    written.gridWithName(TQString("A"))->setVirtualDrawingDefinition(drawingOf("a"));
    ByteStream document(internalArchive(written));
    ByteStream source(externalArchive(written));
    TQGridMgr grids;
    grids.unarchiveFrom(document.get());
    grids.unarchiveExternalFrom(source.get());
    EXPECT_EQ(grids.gridWithName(TQString("A")), nullptr);
    ASSERT_NE(grids.gridWithName(TQString("New A")), nullptr);
    EXPECT_EQ(drawingOn(*grids.gridWithName(TQString("New A"))), "a");
}

TEST(TQGridMgr, HoldsAThousandGrids) {
    TQGridMgr grids;
    for (int i = 0; i < 1000; ++i) {
        ASSERT_NE(add(grids, std::to_string(i), kInternal, i), nullptr);
    }
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(grids.gridWithName(TQString(std::to_string(i).c_str()))->spacing().width, i);
    }
}

// ---- Deleting

TEST(TQGridMgr, DeletesTheInternalGridFirst) {
    TQGridMgr grids;
    add(grids, "A", kInternal);
    const TQGrid* const external = add(grids, "A", kExternal);
    EXPECT_TRUE(grids.deleteGrid(TQString("A")));
    EXPECT_EQ(grids.gridWithName(TQString("A")), external);
    EXPECT_TRUE(grids.deleteGrid(TQString("A")));
    EXPECT_FALSE(grids.gridNameIsUsed(TQString("A")));
    EXPECT_FALSE(grids.deleteGrid(TQString("A")));
}

TEST(TQGridMgr, DeletesByTheGridsOwnName) {
    TQGridMgr grids;
    EXPECT_TRUE(grids.deleteGrid(add(grids, "A", kInternal)->name()));
    EXPECT_TRUE(grids.deleteGrid(*add(grids, "A", kExternal)->name()));
    EXPECT_TRUE(grids.deleteGrid(*add(grids, "A", kInternal)));
    EXPECT_TRUE(grids.deleteGrid(*add(grids, std::make_unique<TQGrid>(), kExternal)));
    EXPECT_FALSE(grids.deleteGrid(TQGrid()));
    EXPECT_THAT(namesIn(grids.internalGrids()), IsEmpty());
    EXPECT_THAT(namesIn(grids.externalGrids()), IsEmpty());
}

TEST(TQGridMgr, DeletesByAReferenceToTheNameThatDies) {
    for (const bool byGrid : {false, true}) {
        TQGridMgr grids;
        const TQGrid* const internal = add(grids, "A", kInternal);
        const TQGrid* const external = add(grids, "A", kExternal);
        EXPECT_TRUE(byGrid ? grids.deleteGrid(*internal) : grids.deleteGrid(*internal->name()));
        EXPECT_THAT(gridsIn(grids.externalGrids()), ElementsAre(external));
        EXPECT_TRUE(byGrid ? grids.deleteGrid(*external) : grids.deleteGrid(*external->name()));
        EXPECT_FALSE(grids.gridNameIsUsed(TQString("A")));
    }
}

TEST(TQGridMgr, DeletingARenamedGridDeletesTheOneThatIsFoundUnderItsPresentName) {
    TQGridMgr grids;
    TQGrid* const renamed = add(grids, "A", kInternal);
    renamed->setName(TQString("B"));
    EXPECT_FALSE(grids.deleteGrid(*renamed));
    add(grids, "B", kInternal);
    EXPECT_TRUE(grids.deleteGrid(*renamed));
    EXPECT_EQ(grids.gridWithName(TQString("A")), renamed);
    EXPECT_EQ(grids.gridWithName(TQString("B")), nullptr);
}

TEST(TQGridMgr, DeletingAnExternalGridDeletesItsInternalNamesake) {
    TQGridMgr grids;
    add(grids, "A", kInternal);
    const TQGrid* const external = add(grids, "A", kExternal);
    EXPECT_TRUE(grids.deleteGrid(*external));
    EXPECT_EQ(grids.gridWithName(TQString("A")), external);
}

TEST(TQGridMgr, DestroysAllItsGrids) {
    TQGridMgr grids;
    add(grids, "A", kInternal);
    add(grids, "B", kExternal);
    grids.destroyAll();
    EXPECT_EQ(grids.internalGrids().count(), 0);
    EXPECT_EQ(grids.externalGrids().count(), 0);
    EXPECT_NE(add(grids, "A", kInternal), nullptr);
}

// ---- From one to the other

TEST(TQGridMgr, ExternalGridsBecomeInternal) {
    TQGridMgr grids;
    const TQGrid* const first = add(grids, "A", kInternal, 1.0);
    const TQGrid* const moved = add(grids, "B", kExternal);
    add(grids, "A", kExternal, 2.0);
    grids.moveExternalGridToInternal();
    EXPECT_EQ(grids.externalGrids().count(), 0);
    EXPECT_THAT(namesIn(grids.internalGrids()), UnorderedElementsAre("A", "A", "B"));
    EXPECT_EQ(grids.gridWithName(TQString("B")), moved);
    EXPECT_FALSE(moved->isExternal());
    EXPECT_EQ(grids.gridWithName(TQString("A")), first);
    EXPECT_TRUE(grids.deleteGrid(TQString("A")));
    ASSERT_NE(grids.gridWithName(TQString("A")), nullptr);
    EXPECT_EQ(grids.gridWithName(TQString("A"))->spacing().width, 2.0);
    grids.moveExternalGridToInternal();
    EXPECT_EQ(grids.internalGrids().count(), 2);
}

TEST(TQGridMgr, ManyExternalGridsBecomeInternalInTableOrder) {
    TQGridMgr grids;
    for (int i = 0; i < 1000; ++i) {
        add(grids, std::to_string(i), kExternal);
    }
    const std::vector<TQGrid*> inTableOrder = gridsIn(grids.externalGrids());
    grids.moveExternalGridToInternal();
    EXPECT_EQ(gridsIn(grids.internalGrids()), inTableOrder);
    EXPECT_EQ(grids.externalGrids().count(), 0);
    for (const TQGrid* const grid : inTableOrder) {
        EXPECT_FALSE(grid->isExternal());
    }
}

TEST(TQGridMgr, ExternalNamesakesBecomeInternalInTheirOrderBehindTheOneThatIsThere) {
    TQGridMgr grids;
    add(grids, "A", kInternal, 0.0);
    readExternal(grids, namesakes("A", 1000));
    grids.moveExternalGridToInternal();
    std::vector<double> expected(1001);
    std::iota(expected.begin(), expected.end(), 0.0);
    EXPECT_EQ(spacingsIn(grids.internalGrids()), expected);
}

TEST(TQGridMgr, ACopyHasCopiesOfAllGrids) {
    TQGridMgr grids;
    const TQGrid* const internal = add(grids, "A", kInternal, 1.0);
    const TQGrid* const external = add(grids, "A", kExternal, 2.0);
    const TQGridMgr copy(grids);
    ASSERT_EQ(copy.internalGrids().count(), 1);
    ASSERT_EQ(copy.externalGrids().count(), 1);
    const TQGrid* const internalCopy = gridsIn(copy.internalGrids()).front();
    const TQGrid* const externalCopy = gridsIn(copy.externalGrids()).front();
    EXPECT_NE(internalCopy, internal);
    EXPECT_NE(externalCopy, external);
    EXPECT_FALSE(internalCopy->isExternal());
    EXPECT_TRUE(externalCopy->isExternal());
    EXPECT_EQ(internalCopy->spacing().width, 1.0);
    EXPECT_EQ(externalCopy->spacing().width, 2.0);
    grids.destroyAll();
    EXPECT_EQ(internalArchive(copy), internalArchive(TQGridMgr(copy)));
}

TEST(TQGridMgr, TakesGridsWhoseNamesAreNewFromAnother) {
    TQGridMgr grids;
    add(grids, "A", kInternal, 1.0);
    add(grids, "B", kExternal, 1.0);
    TQGridMgr other;
    add(other, "A", kInternal, 2.0);
    add(other, "B", kInternal, 2.0);
    add(other, "A", kExternal, 2.0);
    add(other, "B", kExternal, 2.0);
    grids.getGridFrom(other, nullptr);
    EXPECT_THAT(namesIn(grids.internalGrids()), UnorderedElementsAre("A", "B"));
    EXPECT_THAT(namesIn(grids.externalGrids()), UnorderedElementsAre("A", "B"));
    for (const TQGrid* const grid : gridsIn(grids.internalGrids())) {
        EXPECT_EQ(grid->spacing().width, textOf(grid->name()) == "A" ? 1.0 : 2.0);
        EXPECT_FALSE(grid->isExternal());
    }
    for (const TQGrid* const grid : gridsIn(grids.externalGrids())) {
        EXPECT_EQ(grid->spacing().width, textOf(grid->name()) == "A" ? 2.0 : 1.0);
        EXPECT_TRUE(grid->isExternal());
    }
    EXPECT_EQ(other.internalGrids().count(), 2);
    EXPECT_EQ(other.externalGrids().count(), 2);
}

TEST(TQGridMgr, OfNamesakesACopyHasAllAndAnotherManagerTakesTheFirst) {
    TQGridMgr grids;
    readInternal(grids, namesakes("A", 2));
    readExternal(grids, namesakes("B", 2));
    const TQGridMgr copy(grids);
    EXPECT_THAT(spacingsIn(copy.internalGrids()), ElementsAre(1.0, 2.0));
    EXPECT_THAT(spacingsIn(copy.externalGrids()), ElementsAre(1.0, 2.0));
    TQGridMgr taken;
    taken.getGridFrom(grids, nullptr);
    EXPECT_THAT(spacingsIn(taken.internalGrids()), ElementsAre(1.0));
    EXPECT_THAT(spacingsIn(taken.externalGrids()), ElementsAre(1.0));
}

TEST(TQGridMgr, HasNothingToTakeFromItself) {
    EmptyManager projections;
    TQGridMgr grids;
    TQGrid* const grid = add(grids, "A", kInternal);
    add(grids, "B", kExternal);
    grid->setName(TQString("C"));
    grids.getGridFrom(grids, &projections.manager);
    EXPECT_EQ(grids.internalGrids().count(), 1);
    EXPECT_EQ(grids.externalGrids().count(), 1);
    EXPECT_EQ(grid->projMgr(), &projections.manager);
}

// ---- Projections

TEST(TQGridMgr, BindsAllGridsToAManagerOfProjections) {
    EmptyManager projections;
    TQGridMgr grids;
    const TQGrid* const internal = add(grids, "A", kInternal);
    const TQGrid* const external = add(grids, "A", kExternal);
    grids.setProjMgr(&projections.manager);
    EXPECT_EQ(internal->projMgr(), &projections.manager);
    EXPECT_EQ(external->projMgr(), &projections.manager);
    grids.setProjMgr(nullptr);
    EXPECT_EQ(internal->projMgr(), nullptr);
    EXPECT_EQ(external->projMgr(), nullptr);
}

TEST(TQGridMgr, InternalGridsAreBoundBeforeExternalOnes) {
    // Names of one hash, so that their placeholders stand in the order in which they were asked for.
    const std::string one = "costarring";
    const std::string other = "liquid";
    ASSERT_EQ(TQString(one.c_str()).hashValue(), TQString(other.c_str()).hashValue());
    for (const auto& [internal, external] : {std::pair(one, other), std::pair(other, one)}) {
        EmptyManager projections;
        CapturedPanels panels;
        panels.otherAnswer = [] { return TQAlertAlternate; };
        TQDummyProjection ofInternal(TQString(internal.c_str()));
        TQDummyProjection ofExternal(TQString(external.c_str()));
        TQGridMgr grids;
        add(grids, "A", kExternal)->setProjection(&ofExternal);
        add(grids, "A", kInternal)->setProjection(&ofInternal);
        grids.setProjMgr(&projections.manager);
        constexpr bool unused = false;
        EXPECT_FALSE(projections.manager.checkAndResetUnknowProjection(unused));
        EXPECT_THAT(panels.shown(), ElementsAre(HasSubstr(internal + "\n" + external)));
    }
}

TEST(TQGridMgr, CopiesAreBoundToTheManagerOfProjectionsAndFollow) {
    EmptyManager projections;
    TQProjection* const projection = projections.load("P");
    TQGridMgr grids;
    for (const bool kind : {kInternal, kExternal}) {
        add(grids, "A", kind)->setProjection(projection);
    }
    grids.setProjMgr(&projections.manager);
    const TQGridMgr copy(grids);
    grids.destroyAll();
    EXPECT_TRUE(projections.manager.isProjectionUsed(projection));
    replaceProjection(projections.directories, projections.manager, "P");
    const TQProjection* const replacement = projections.manager.projWithName(TQString("P"), false);
    ASSERT_NE(replacement, nullptr);
    for (const HashTbl<TQGrid>* const table : {&copy.internalGrids(), &copy.externalGrids()}) {
        ASSERT_EQ(table->count(), 1);
        const TQGrid* const grid = gridsIn(*table).front();
        EXPECT_EQ(grid->projMgr(), &projections.manager);
        EXPECT_EQ(grid->projection(), replacement);
    }
}

TEST(TQGridMgr, GridsTakenFromAnotherAreBoundToTheManagerGiven) {
    EmptyManager projections;
    EmptyManager others;
    TQProjection* const mine = projections.load("P");
    TQGridMgr other;
    TQGrid* const theirs = add(other, "A", kInternal);
    add(other, "B", kExternal);
    other.setProjMgr(&others.manager);
    theirs->setProjection(others.load("P"));
    TQGridMgr grids;
    add(grids, "C", kInternal);
    grids.getGridFrom(other, &projections.manager);
    for (const char* name : {"A", "B", "C"}) {
        EXPECT_EQ(grids.gridWithName(TQString(name))->projMgr(), &projections.manager);
    }
    EXPECT_EQ(grids.gridWithName(TQString("A"))->projection(), mine);
    EXPECT_EQ(theirs->projMgr(), &others.manager);
}

TEST(TQGridMgr, GridsOutliveTheManagerOfProjections) {
    TQGridMgr grids;
    TQGrid* const grid = add(grids, "A", kInternal);
    add(grids, "A", kExternal);
    {
        EmptyManager projections;
        grids.setProjMgr(&projections.manager);
        grid->setProjection(projections.load("P"));
    }
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "P");
}

TEST(TQGridMgr, ADocumentIsReadThenItsSourceThenItsProjectionsAreFound) {
    EmptyManager projections;
    TQProjection* const projection = projections.load("P");
    TQGridMgr written;
    add(written, "A", kInternal)->setProjection(projection);
    add(written, "B", kExternal)->setProjection(projection);
    written.gridWithName(TQString("A"))->setVirtualDrawingDefinition(drawingOf("a"));
    written.gridWithName(TQString("B"))->setVirtualDrawingDefinition(drawingOf("b"));
    ByteStream document(internalArchive(written));
    ByteStream source(externalArchive(written));
    TQGridMgr grids;
    grids.unarchiveFrom(document.get());
    grids.unarchiveExternalFrom(source.get());
    grids.setProjMgr(&projections.manager);
    EXPECT_TRUE(document.isReadExactly());
    EXPECT_TRUE(source.isReadExactly());
    const TQGrid& internal = *grids.gridWithName(TQString("A"));
    const TQGrid& external = *grids.gridWithName(TQString("B"));
    EXPECT_FALSE(internal.isExternal());
    EXPECT_TRUE(external.isExternal());
    EXPECT_EQ(drawingOn(internal), "a");
    EXPECT_EQ(drawingOn(external), "b");
    EXPECT_EQ(internal.projection(), projection);
    EXPECT_EQ(external.projection(), projection);
}

// ---- The archive of the internal grids

TEST(TQGridMgr, InternalGridsAreWrittenInTableOrder) {
    TQGridMgr grids;
    EXPECT_EQ(internalArchive(grids), StreamBytes().tag("TQGridMgr", 0).integer(0).bytes());
    StreamBytes expected = StreamBytes().tag("TQGridMgr", 0).integer(3);
    for (const char* name : {"A", "B", "C"}) {
        add(grids, name, kInternal);
    }
    add(grids, "D", kExternal);
    for (const std::string& name : namesIn(grids.internalGrids())) {
        expected.append(gridBytes(name));
    }
    EXPECT_EQ(internalArchive(grids), expected.bytes());
}

TEST(TQGridMgr, ReadGridsJoinThoseThatAreThere) {
    TQGridMgr grids;
    const TQGrid* const present = add(grids, "A", kInternal, 1.0);
    ByteStream stream(StreamBytes()
                          .tag("TQGridMgr", 0)
                          .integer(3)
                          .append(gridBytes("A"))
                          .append(gridBytes("B"))
                          .append(gridBytes(TQGrid())));
    grids.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(namesIn(grids.internalGrids()), UnorderedElementsAre("A", "A", "B", "(null)"));
    EXPECT_EQ(grids.gridWithName(TQString("A")), present);
    EXPECT_EQ(grids.externalGrids().count(), 0);
}

TEST(TQGridMgr, AnUnknownVersionIsReportedAndNothingRead) {
    const CapturedMessages messages;
    for (const int version : {1, -3}) {
        TQGridMgr grids;
        ByteStream stream(StreamBytes().tag("TQGridMgr", version).integer(1).append(gridBytes("A")));
        grids.unarchiveFrom(stream.get());
        EXPECT_EQ(grids.internalGrids().count(), 0);
        EXPECT_GT(stream.get()->bytesLeft(), 0U);
    }
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQGridMgr::unarchiveFrom(TQReadStream *): version 1 is unknown.\n",
                            "TQGridMgr::unarchiveFrom(TQReadStream *): version -3 is unknown.\n"));
}

TEST(TQGridMgr, AGridOfAnUnknownVersionEndsTheReading) {
    const CapturedMessages messages;
    TQGridMgr grids;
    ByteStream stream(StreamBytes()
                          .tag("TQGridMgr", 0)
                          .integer(3)
                          .append(gridBytes("A"))
                          .tag("TQGrid", 11)
                          .append(gridBytes("B"))
                          .append(gridBytes("C")));
    grids.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_THAT(namesIn(grids.internalGrids()), ElementsAre("A"));
    EXPECT_THAT(messages.lines(), SizeIs(1));
}

TEST(TQGridMgr, ACountBeyondTheGridsEndsWithThem) {
    const CapturedMessages messages;
    for (const int count : {2, std::numeric_limits<int>::max(), -1}) {
        TQGridMgr grids;
        ByteStream stream(StreamBytes().tag("TQGridMgr", 0).integer(count).append(gridBytes("A")));
        grids.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.get()->failed());
        EXPECT_THAT(namesIn(grids.internalGrids()), ElementsAre("A"));
    }
}

// ---- The archive of the external grids

TEST(TQGridMgr, ExternalGridsAndTheDrawingsOfInternalOnesAreWritten) {
    TQGridMgr grids;
    add(grids, "A", kInternal)->setVirtualDrawingDefinition(drawingOf("xyz"));
    add(grids, "B", kInternal);
    const TQGrid* const external = add(grids, "C", kExternal);
    EXPECT_EQ(externalArchive(grids), StreamBytes()
                                          .tag("TQGridMgr_External", 1)
                                          .integer(1)
                                          .append(gridBytes(*external))
                                          .tag("TQGridMgr_External_DG", 0)
                                          .integer(1)
                                          .text("A")
                                          .append(drawingBytes("xyz"))
                                          .bytes());
}

TEST(TQGridMgr, WithoutDrawingsTheirBlockIsEmpty) {
    EXPECT_EQ(externalArchive(TQGridMgr()), drawingsHead(0).bytes());
}

TEST(TQGridMgr, VersionZeroHasNoDrawings) {
    TQGridMgr grids;
    ByteStream stream(StreamBytes().tag("TQGridMgr_External", 0).integer(1).append(gridBytes("A")));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    ASSERT_THAT(namesIn(grids.externalGrids()), ElementsAre("A"));
    EXPECT_TRUE(grids.gridWithName(TQString("A"))->isExternal());
    EXPECT_EQ(grids.internalGrids().count(), 0);
}

TEST(TQGridMgr, ADrawingReplacesThatOfTheInternalGrid) {
    const CapturedMessages messages;
    TQGridMgr grids;
    TQGrid* const grid = add(grids, "A", kInternal);
    grid->setVirtualDrawingDefinition(drawingOf("old"));
    TQGrid* const nameless = add(grids, std::make_unique<TQGrid>(), kInternal);
    ByteStream stream(
        drawingsHead(2).text("A").append(drawingBytes("new")).nullText().append(drawingBytes("")));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(drawingOn(*grid), "new");
    EXPECT_EQ(drawingOn(*nameless), "(null)");
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGridMgr, TheFirstOfInternalNamesakesGetsAllTheirDrawings) {
    TQGridMgr grids;
    readInternal(grids, namesakes("A", 2));
    ByteStream stream(
        drawingsHead(2).text("A").append(drawingBytes("first")).text("A").append(drawingBytes("last")));
    grids.unarchiveExternalFrom(stream.get());
    const std::vector<TQGrid*> inOrder = gridsIn(grids.internalGrids());
    EXPECT_EQ(drawingOn(*inOrder.front()), "last");
    EXPECT_EQ(drawingOn(*inOrder.back()), "(none)");
}

TEST(TQGridMgr, TheInternalGridOfTwoNamesakesGetsTheDrawing) {
    TQGridMgr grids;
    const TQGrid* const external = add(grids, "A", kExternal);
    const TQGrid* const internal = add(grids, "A", kInternal);
    ByteStream stream(drawingsHead(1).text("A").append(drawingBytes("new")));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_EQ(drawingOn(*internal), "new");
    EXPECT_EQ(drawingOn(*external), "(none)");
}

TEST(TQGridMgr, DrawingsOfExternalAndUnknownGridsAreReportedAndDropped) {
    const CapturedMessages messages;
    TQGridMgr grids;
    add(grids, "B", kInternal);
    ByteStream stream(StreamBytes()
                          .tag("TQGridMgr_External", 1)
                          .integer(1)
                          .append(gridBytes("A"))
                          .tag("TQGridMgr_External_DG", 0)
                          .integer(3)
                          .text("A")
                          .append(drawingBytes("a"))
                          .text("nobody")
                          .append(drawingBytes("n"))
                          .text("B")
                          .append(drawingBytes("b")));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(drawingOn(*grids.gridWithName(TQString("A"))), "(none)");
    EXPECT_EQ(drawingOn(*grids.gridWithName(TQString("B"))), "b");
    EXPECT_THAT(messages.lines(), ElementsAre(kIsExternal, kUnknownGrid));
}

TEST(TQGridMgr, UnknownVersionsOfTheExternalBlocksAreReported) {
    const CapturedMessages messages;
    TQGridMgr grids;
    ByteStream unknown(StreamBytes().tag("TQGridMgr_External", 2).integer(1).append(gridBytes("A")));
    grids.unarchiveExternalFrom(unknown.get());
    EXPECT_EQ(grids.externalGrids().count(), 0);
    add(grids, "B", kInternal);
    ByteStream unknownDrawings(StreamBytes()
                                   .tag("TQGridMgr_External", 1)
                                   .integer(1)
                                   .append(gridBytes("A"))
                                   .tag("TQGridMgr_External_DG", 1)
                                   .integer(1)
                                   .text("B")
                                   .append(drawingBytes("b")));
    grids.unarchiveExternalFrom(unknownDrawings.get());
    EXPECT_THAT(namesIn(grids.externalGrids()), ElementsAre("A"));
    EXPECT_EQ(drawingOn(*grids.gridWithName(TQString("B"))), "(none)");
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQGridMgr::unarchiveExternalFrom(TQReadStream *): version 2 is unknown.\n",
                            tq_format(kUnknownDrawings, 1)));
}

TEST(TQGridMgr, ADrawingOfAnUnknownVersionEndsTheReading) {
    const CapturedMessages messages;
    TQGridMgr grids;
    const TQGrid* const grid = add(grids, "A", kInternal);
    ByteStream stream(
        drawingsHead(2).text("A").tag("TQVirtualDrawingGrid", 3).text("A").append(drawingBytes("new")));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_EQ(drawingOn(*grid), "(none)");
    EXPECT_THAT(messages.lines(), SizeIs(1));
}

TEST(TQGridMgr, BehindAnExternalGridThatIsCutOffNoDrawingsAreLookedFor) {
    const CapturedMessages messages;
    TQGridMgr grids;
    const std::string bytes =
        StreamBytes().tag("TQGridMgr_External", 1).integer(1).append(gridBytes("A")).bytes();
    ByteStream stream(std::string_view(bytes).substr(0, bytes.size() - 1));
    grids.unarchiveExternalFrom(stream.get());
    EXPECT_EQ(grids.externalGrids().count(), 0);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQGridMgr, HostileCountsAndSizesOfDrawingsTakeNoMemory) {
    const CapturedMessages messages;
    for (const int number : {std::numeric_limits<int>::max(), -1}) {
        TQGridMgr grids;
        const TQGrid* const grid = add(grids, "A", kInternal);
        ByteStream counts(drawingsHead(number).text("A").append(drawingBytes("x")));
        grids.unarchiveExternalFrom(counts.get());
        EXPECT_TRUE(counts.get()->failed());
        EXPECT_EQ(drawingOn(*grid), "x");
        ByteStream grown(StreamBytes().tag("TQGridMgr_External", 1).integer(number).append(gridBytes("B")));
        grids.unarchiveExternalFrom(grown.get());
        EXPECT_TRUE(grown.get()->failed());
        EXPECT_THAT(namesIn(grids.externalGrids()), ElementsAre("B"));
    }
    TQGridMgr grids;
    const TQGrid* const grid = add(grids, "A", kInternal);
    ByteStream sizes(drawingsHead(1)
                         .text("A")
                         .tag("TQVirtualDrawingGrid", 0)
                         .integer(std::numeric_limits<int>::max())
                         .byte(0));
    grids.unarchiveExternalFrom(sizes.get());
    EXPECT_TRUE(sizes.get()->failed());
    EXPECT_EQ(drawingOn(*grid), "(none)");
}

TEST(TQGridMgr, EveryCutIsNoticed) {
    const CapturedMessages messages;
    TQGridMgr written;
    add(written, "A", kInternal)->setVirtualDrawingDefinition(drawingOf("a"));
    add(written, "B", kExternal)->setVirtualDrawingDefinition(drawingOf("b"));
    expectEveryCutIsNoticed(internalArchive(written), [](TQReadStream* stream) {
        TQGridMgr grids;
        grids.unarchiveFrom(stream);
        EXPECT_EQ(grids.internalGrids().count(), 0);
    });
    expectEveryCutIsNoticed(externalArchive(written), [](TQReadStream* stream) {
        TQGridMgr grids;
        const TQGrid* const grid = add(grids, "A", kInternal);
        grids.unarchiveExternalFrom(stream);
        EXPECT_EQ(drawingOn(*grid), "(none)");
    });
}

TEST(TQGridMgr, EveryBitFlipIsRefusedOrGivesGridsThatArchive) {
    const CapturedMessages messages;
    TQGridMgr written;
    add(written, "A", kInternal)->setVirtualDrawingDefinition(drawingOf("a"));
    add(written, "B", kExternal)->setVirtualDrawingDefinition(drawingOf("b"));
    const std::string bytes = internalArchive(written) + externalArchive(written);
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string flipped = bytes;
            flipped[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ (1U << bit));
            ByteStream stream(flipped);
            TQGridMgr grids;
            grids.unarchiveFrom(stream.get());
            grids.unarchiveExternalFrom(stream.get());
            ByteStream again(internalArchive(grids) + externalArchive(grids));
            TQGridMgr copy;
            copy.unarchiveFrom(again.get());
            copy.unarchiveExternalFrom(again.get());
            EXPECT_TRUE(again.isReadExactly());
            EXPECT_EQ(internalArchive(copy), internalArchive(grids));
        }
    }
}
