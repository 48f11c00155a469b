// How grids follow the projections of their manager, and outlive them.

#include "grid/TQGridProjNotifier.h"

#include "projection/TQDummyProjection.h"
#include "testing/MemoryInUse.h"
#include "tests/grid/GridCase.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using testing::SizeIs;

namespace {

constexpr bool kCreate = true;
constexpr bool kUnused = false;

/// A manager with the projections "A" and "B", which a test may destroy.
struct GridCase {
    ManagerTest directories;
    std::unique_ptr<TQProjMgr> manager = newManager();

    std::unique_ptr<TQProjMgr> newManager() const {
        auto made = std::make_unique<TQProjMgr>(false);
        load(*made, "A");
        load(*made, "B");
        return made;
    }

    TQProjection* load(TQProjMgr& into, const std::string& name) const {
        into.loadProjection(directories.userFile("loaded.proj", mercatorFile(name)), false, kNoFlags);
        return projection(name, into);
    }

    static TQProjection* projection(const std::string& name, TQProjMgr& in) {
        return in.projWithName(TQString(name.c_str()), false);
    }
    TQProjection* projection(const std::string& name) const { return projection(name, *manager); }

    /// A grid of the manager with one of its projections.
    std::unique_ptr<TQGrid> gridWith(const std::string& name) const {
        auto grid = std::make_unique<TQGrid>();
        grid->setProjMgr(manager.get());
        grid->setProjection(projection(name));
        return grid;
    }

    /// Lets the projection of a document take the place of "A", also in grids.
    void replaceA(TQProjMgr& in) const { replaceProjection(directories, in, "A"); }
};

/// A grid that was read with the name of its projection.
std::unique_ptr<TQGrid> readGridWith(const std::string& name) {
    TQDummyProjection named;
    named.rename(TQString(name.c_str()));
    TQGrid grid;
    grid.setProjection(&named);
    ByteStream stream(archivedBytes(grid));
    return TQGrid::newFromStream(stream.get());
}

/// The part of an archive that tells the projection: the byte and, if there is one, its name.
std::string archivedProjection(const TQGrid& grid) {
    const std::string none = archivedBytes(TQGrid());
    constexpr std::size_t tail = 5; // behind it
    const std::size_t head = none.size() - tail - 1;
    const std::string archive = archivedBytes(grid);
    return archive.substr(head, archive.size() - tail - head);
}

const std::string kNoProjection(1, '\1');

std::string archivedName(const std::string& name) { return StreamBytes().byte(0).text(name).bytes(); }

/// Whether a manager has made placeholders; in batch mode it then answers that one is missing.
bool hasPlaceholders(TQProjMgr& manager) { return !manager.checkAndResetUnknowProjection(kUnused); }

} // namespace

// ---- The observer

TEST(TQGridProjNotifier, ItsOwnerIsTheGrid) {
    TQGrid grid;
    EXPECT_EQ(TQGridProjNotifier(&grid).owner(), &grid);
}

TEST(TQGridProjNotifier, UsesTheProjectionOfTheGrid) {
    TQDummyProjection projection;
    const TQDummyProjection other;
    TQGrid grid;
    const TQGridProjNotifier notifier(&grid);
    EXPECT_FALSE(notifier.isUsingProjection(&projection));
    EXPECT_FALSE(notifier.isUsingProjection(nullptr));
    grid.setProjection(&projection);
    EXPECT_TRUE(notifier.isUsingProjection(&projection));
    EXPECT_FALSE(notifier.isUsingProjection(&other));
    EXPECT_FALSE(notifier.isUsingProjection(nullptr));
}

TEST(TQGridProjNotifier, ReplacesTheProjectionOfTheGridAndNoOther) {
    TQDummyProjection projection;
    TQDummyProjection other;
    TQDummyProjection replacement;
    TQGrid grid;
    TQGridProjNotifier notifier(&grid);
    notifier.replaceProjection(nullptr, &replacement);
    EXPECT_EQ(grid.projection(), nullptr);
    grid.setProjection(&projection);
    notifier.replaceProjection(&other, &replacement);
    EXPECT_EQ(grid.projection(), &projection);
    notifier.replaceProjection(&projection, &replacement);
    EXPECT_EQ(grid.projection(), &replacement);
}

TEST(TQGridProjNotifier, ReplacesAlsoAProjectionThatIsGone) {
    auto projection = std::make_unique<TQDummyProjection>();
    TQDummyProjection replacement;
    TQGrid grid;
    TQGridProjNotifier notifier(&grid);
    grid.setProjection(projection.get());
    const TQProjection* const old = projection.get();
    projection.reset();
    EXPECT_EQ(grid.projection(), nullptr);
    notifier.replaceProjection(old, &replacement);
    EXPECT_EQ(grid.projection(), &replacement);
}

TEST(TQGridProjNotifier, WithAChangeAProjectionThatIsGoneIsForgotten) {
    std::optional<TQDummyProjection> place;
    TQDummyProjection replacement;
    TQGrid grid;
    TQGridProjNotifier notifier(&grid);
    place.emplace().rename(TQString("A"));
    grid.setProjection(&*place);
    place.reset();
    notifier.projectionsDidChange();
    EXPECT_EQ(textOf(grid.projectionName()), "A");
    place.emplace(); // another one at the same address
    EXPECT_FALSE(notifier.isUsingProjection(&*place));
    notifier.replaceProjection(&*place, &replacement);
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(textOf(grid.projectionName()), "A");
}

TEST(TQGridProjNotifier, AChangeLeavesTheProjectionOfTheGrid) {
    TQDummyProjection projection;
    TQGrid grid;
    TQGridProjNotifier notifier(&grid);
    grid.setProjection(&projection);
    notifier.projectionsDidChange();
    EXPECT_EQ(grid.projection(), &projection);
}

TEST(TQGridProjNotifier, ItsDeathLeavesTheGridWithTheNameAlone) {
    GridCase test;
    const auto grid = test.gridWith("A");
    test.manager->unregisterUser(grid.get());
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "A");
}

TEST(TQGridProjNotifier, WithoutItsGridItObservesForNobody) {
    TQDummyProjection projection;
    auto grid = std::make_unique<TQGrid>();
    grid->setProjection(&projection);
    TQGridProjNotifier notifier(grid.get());
    grid.reset();
    EXPECT_FALSE(notifier.isUsingProjection(&projection));
    notifier.projectionsDidChange();
    notifier.replaceProjection(&projection, &projection);
}

// ---- Binding

TEST(GridBinding, ANameThatWasReadBecomesTheProjectionOfTheManager) {
    const GridCase test;
    const auto grid = readGridWith("A");
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
    grid->setProjMgr(test.manager.get());
    EXPECT_EQ(grid->projMgr(), test.manager.get());
    EXPECT_EQ(grid->projection(), test.projection("A"));
    EXPECT_FALSE(hasPlaceholders(*test.manager));
}

TEST(GridBinding, AnUnknownNameThatWasReadIsReportedMissingAndKept) {
    const GridCase test;
    const auto grid = readGridWith("missing");
    grid->setProjMgr(test.manager.get());
    ASSERT_NE(grid->projection(), nullptr);
    EXPECT_EQ(grid->projection(), test.manager->projWithName(TQString("missing"), kCreate));
    EXPECT_EQ(grid->projection()->name(), nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "missing");
    EXPECT_EQ(archivedProjection(*grid), archivedName("missing"));
    EXPECT_TRUE(hasPlaceholders(*test.manager));
}

TEST(GridBinding, APlaceholderGivesWayToItsProjection) {
    const GridCase test;
    CapturedPanels panels;
    panels.answers.emplace_back([&test] {
        test.directories.resource("missing.proj", mercatorFile("missing"));
        return TQAlertDefault;
    });
    const auto grid = readGridWith("missing");
    grid->setProjMgr(test.manager.get());
    EXPECT_TRUE(test.manager->checkAndResetUnknowProjection(kUnused));
    ASSERT_NE(grid->projection(), nullptr);
    EXPECT_EQ(grid->projection(), test.projection("missing"));
    EXPECT_THAT(panels.shown(), SizeIs(1));
}

TEST(GridBinding, AProjectionBecomesItsNamesakeInTheManager) {
    const GridCase test;
    const auto other = test.newManager();
    const auto grid = test.gridWith("A");
    grid->setProjMgr(other.get());
    EXPECT_EQ(grid->projection(), GridCase::projection("A", *other));
    EXPECT_NE(grid->projection(), test.projection("A"));
    EXPECT_FALSE(test.manager->isProjectionUsed(test.projection("A")));
    EXPECT_TRUE(other->isProjectionUsed(grid->projection()));
}

TEST(GridBinding, AProjectionWithoutNamesakeIsNoneAndMakesNoPlaceholder) {
    const GridCase test;
    TQProjMgr empty(false);
    const auto grid = test.gridWith("A");
    grid->setProjMgr(&empty);
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "A");
    EXPECT_FALSE(hasPlaceholders(empty));
    grid->setProjMgr(test.manager.get());
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, AGridWithoutProjectionGetsNone) {
    const GridCase test;
    TQGrid grid;
    grid.setProjMgr(test.manager.get());
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(grid.projectionName(), nullptr);
    EXPECT_EQ(archivedProjection(grid), kNoProjection);
    EXPECT_FALSE(hasPlaceholders(*test.manager));
}

TEST(GridBinding, TheManagerThatItIsBoundToChangesNothing) {
    const GridCase test;
    TQDummyProjection foreign;
    foreign.rename(TQString("A"));
    const auto grid = test.gridWith("B");
    grid->setProjection(&foreign);
    grid->setProjMgr(test.manager.get());
    EXPECT_EQ(grid->projection(), &foreign);
    test.manager->unregisterUser(grid.get()); // the only observer
    EXPECT_FALSE(test.manager->isProjectionUsed(&foreign));
}

TEST(GridBinding, TheObserverThatACopyOfAManagerHasKeptIsReplaced) {
    GridCase test;
    const auto grid = test.gridWith("A");
    TQProjMgr copy(*test.manager);
    test.manager.reset();
    grid->setProjMgr(&copy);
    EXPECT_EQ(grid->projMgr(), &copy);
    EXPECT_EQ(grid->projection(), GridCase::projection("A", copy));
    copy.unregisterUser(grid.get()); // the only observer
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(grid->projection(), nullptr);
}

TEST(GridBinding, EveryManagerHasOneObserverOfAGridAtMost) {
    const GridCase test;
    const auto other = test.newManager();
    const auto grid = test.gridWith("A");
    grid->setProjMgr(other.get());
    grid->setProjMgr(test.manager.get());
    other->unregisterUser(grid.get());
    EXPECT_EQ(grid->projMgr(), test.manager.get());
    test.manager->unregisterUser(grid.get());
    EXPECT_EQ(grid->projMgr(), nullptr);
}

TEST(GridBinding, TheNameThatStaysIsTheLastOne) {
    const GridCase test;
    for (const bool isUnregistered : {true, false}) {
        const auto grid = test.gridWith("A");
        test.projection("A")->rename(TQString(isUnregistered ? "New" : "Newer"));
        if (isUnregistered) {
            test.manager->unregisterUser(grid.get());
        } else {
            grid->setProjMgr(nullptr);
        }
        EXPECT_EQ(grid->projection(), nullptr);
        EXPECT_EQ(archivedProjection(*grid), archivedName(isUnregistered ? "New" : "Newer"));
    }
}

TEST(GridBinding, WithoutManagerOnlyTheNameStays) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    grid->setProjMgr(nullptr);
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
    EXPECT_TRUE(test.manager->willDeleteProjection(test.projection("A")));
    grid->setProjMgr(nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "A");
}

TEST(GridBinding, APlaceholderIsLookedUpByTheNameThatItStandsFor) {
    const GridCase test;
    TQProjMgr empty(false);
    const auto grid = readGridWith("A");
    grid->setProjMgr(&empty);
    ASSERT_NE(grid->projection(), nullptr);
    grid->setProjMgr(test.manager.get());
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, APlaceholderIsMissingInTheNextManagerToo) {
    TQProjMgr first(false);
    TQProjMgr second(false);
    const auto grid = readGridWith("missing");
    grid->setProjMgr(&first);
    grid->setProjMgr(&second);
    ASSERT_NE(grid->projection(), nullptr);
    EXPECT_EQ(grid->projection(), second.projWithName(TQString("missing"), kCreate));
    EXPECT_TRUE(hasPlaceholders(second));
}

TEST(GridBinding, APlaceholderWhoseNameNobodyKnowsIsLost) {
    const GridCase test;
    TQGrid grid;
    TQDummyProjection nameless;
    grid.setProjection(&nameless);
    EXPECT_EQ(archivedProjection(grid), std::string("\0\0", 2)); // there is one, without name
    grid.setProjMgr(test.manager.get());
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(archivedProjection(grid), kNoProjection);
}

TEST(GridBinding, APlaceholderThatIsSetIsKnownByTheNameThatItStandsFor) {
    const GridCase test;
    auto source = std::make_unique<TQProjMgr>(false);
    TQGrid grid;
    grid.setProjection(source->projWithName(TQString("A"), kCreate));
    EXPECT_EQ(textOf(grid.projectionName()), "A");
    EXPECT_EQ(archivedProjection(grid), archivedName("A"));
    source.reset();
    EXPECT_EQ(archivedProjection(grid), archivedName("A"));
    grid.setProjMgr(test.manager.get());
    EXPECT_EQ(grid.projection(), test.projection("A"));
}

TEST(GridBinding, AnExternalProjectionIsMadeUnlessPROJCannotBuildIt) {
    const GridCase test;
    const auto known = readGridWith("\tEPSG_2154");
    known->setProjMgr(test.manager.get());
    ASSERT_NE(known->projection(), nullptr);
    EXPECT_EQ(textOf(known->projection()->name()), "\tEPSG_2154");

    const CapturedMessages messages;
    const auto unknown = readGridWith("\tEPSG_999999");
    unknown->setProjMgr(test.manager.get());
    EXPECT_EQ(unknown->projection(), nullptr);
    EXPECT_EQ(textOf(unknown->projectionName()), "\tEPSG_999999");
}

TEST(GridBinding, AProjectionThatPROJCannotBuildIsGoneFromTheManager) {
    if (memoryInUse() == 0) {
        GTEST_SKIP() << "nobody tells how much memory is in use";
    }
    const GridCase test;
    const auto grid = readGridWith("\tEPSG_1");
    TQErrorPrinter printer = tq_setErrorPrinter([](std::string_view /*text*/) {});
    constexpr std::size_t size = sizeof(TQProjection);
    EXPECT_TRUE(takesMemory(size, [&] { test.projection("\tEPSG_1"); })) << "the manager keeps what it made";
    EXPECT_FALSE(takesMemory(size, [&] {
        grid->setProjMgr(test.manager.get());
        grid->setProjMgr(nullptr);
    }));
    tq_setErrorPrinter(std::move(printer));
}

TEST(GridBinding, ATextFileGivesABoundGridAPlaceholderForAnUnknownProjection) {
    const GridCase test;
    TQGrid grid;
    grid.setProjMgr(test.manager.get());
    EXPECT_EQ(grid.readFromFile(fileHolding("1\nCarte\n0\n1 1 2 3 4 5 6 0\nmissing\n").get()), 0);
    ASSERT_NE(grid.projection(), nullptr);
    EXPECT_EQ(grid.projection(), test.manager->projWithName(TQString("missing"), kCreate));
    EXPECT_EQ(textOf(grid.projectionName()), "missing");
    EXPECT_TRUE(hasPlaceholders(*test.manager));
}

TEST(GridBinding, WhatABoundGridReadsIsLookedUpAtOnce) {
    const GridCase test;
    TQGrid grid;
    grid.setProjMgr(test.manager.get());
    ByteStream stream(archivedBytes(*readGridWith("B")));
    grid.unarchiveFrom(stream.get());
    EXPECT_EQ(grid.projection(), test.projection("B"));

    EXPECT_EQ(grid.readFromFile(fileHolding("1\nCarte\n0\n1 1 2 3 4 5 6 0\nA\n").get()), 0);
    EXPECT_EQ(grid.projection(), test.projection("A"));
    EXPECT_EQ(grid.readFromFile(fileHolding("1\nCarte\n0\n1 1 2 3 4 5 6 1\n").get()), 0);
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(grid.projectionName(), nullptr);

    grid.setProjection(test.projection("A"));
    ByteStream another(archivedBytes(*readGridWith("B")));
    grid.unarchiveFrom(another.get());
    EXPECT_EQ(grid.projection(), test.projection("B"));

    ByteStream missing(archivedBytes(*readGridWith("missing")));
    grid.unarchiveFrom(missing.get());
    EXPECT_NE(grid.projection(), nullptr);
    ByteStream none(archivedBytes(TQGrid()));
    grid.unarchiveFrom(none.get());
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(grid.projectionName(), nullptr);
}

TEST(GridBinding, NoProjectionIsAlsoNoName) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
    grid->setProjection(nullptr);
    EXPECT_EQ(archivedProjection(*grid), kNoProjection);
}

// ---- Following the projection

TEST(GridBinding, AProjectionInUseMayNotBeDeleted) {
    const GridCase test;
    auto grid = test.gridWith("A");
    EXPECT_FALSE(test.manager->willDeleteProjection(test.projection("A")));
    EXPECT_TRUE(test.manager->willDeleteProjection(test.projection("B")));
    grid.reset();
    EXPECT_TRUE(test.manager->willDeleteProjection(test.projection("A")));
}

TEST(GridBinding, TheNameOfADestroyedProjectionStays) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    test.manager->destroy(TQString("A"));
    EXPECT_EQ(grid->projMgr(), test.manager.get());
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
}

TEST(GridBinding, AProjectionThatWasRenamedUnannouncedIsRememberedByItsFormerName) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    test.projection("A")->rename(TQString("New"));
    EXPECT_EQ(textOf(grid->projectionName()), "New");
    test.manager->destroy(TQString("A")); // still its name in the manager
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(textOf(grid->projectionName()), "A");
}

TEST(GridBinding, AReplacementIsFollowedThoughTheOldProjectionIsJustGone) {
    Journal journal;
    const GridCase test;
    TQProjMgr copy(*test.manager); // which tells no observer of the other one
    auto destroyer = std::make_unique<JournalUser>("destroyer", journal);
    destroyer->onReplace = [&copy] { copy.destroy(TQString("A")); };
    test.manager->registerUser(std::move(destroyer), false);
    const auto grid = test.gridWith("A");
    test.replaceA(*test.manager);
    ASSERT_NE(grid->projection(), nullptr);
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, ARenamedProjectionIsKnownByItsNewName) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    HashTbl<TQProjParam> params(1);
    params.add(std::make_unique<TQProjParam>(TQString("Nom"), TQString("New"), TQString()), TQString("Nom"));
    test.manager->modifyProjFromParams(test.projection("A"), &params);
    EXPECT_EQ(archivedProjection(*grid), archivedName("New"));
    test.manager->destroy(TQString("New"));
    EXPECT_EQ(archivedProjection(*grid), archivedName("New"));
}

TEST(GridBinding, TheProjectionOfADocumentTakesThePlaceOfTheGrids) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    const auto other = test.gridWith("B");
    const TQProjection* const before = grid->projection();
    test.replaceA(*test.manager);
    ASSERT_NE(grid->projection(), nullptr);
    EXPECT_NE(grid->projection(), before);
    EXPECT_EQ(grid->projection(), test.projection("A"));
    EXPECT_EQ(other->projection(), test.projection("B"));
}

// ---- Copies

TEST(GridBinding, ACopyIsBoundToTheSameManager) {
    const GridCase test;
    auto grid = test.gridWith("A");
    const auto copy = tq_copyOf(*grid);
    EXPECT_EQ(copy->projMgr(), test.manager.get());
    EXPECT_EQ(copy->projection(), test.projection("A"));
    grid.reset();
    EXPECT_TRUE(test.manager->isProjectionUsed(test.projection("A")));
    test.replaceA(*test.manager);
    EXPECT_EQ(copy->projection(), test.projection("A"));
}

TEST(GridBinding, TheDeathOfACopyLeavesTheGrid) {
    const GridCase test;
    const auto grid = test.gridWith("A");
    tq_copyOf(*grid).reset();
    EXPECT_EQ(grid->projMgr(), test.manager.get());
    EXPECT_TRUE(test.manager->isProjectionUsed(test.projection("A")));
    test.replaceA(*test.manager);
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, ACopyKeepsAPlaceholderWithItsName) {
    const GridCase test;
    const auto grid = readGridWith("missing");
    grid->setProjMgr(test.manager.get());
    const auto copy = tq_copyOf(*grid);
    EXPECT_EQ(copy->projection(), grid->projection());
    EXPECT_EQ(archivedProjection(*copy), archivedName("missing"));
}

TEST(GridBinding, ACopyTakesTheNamesakeOfTheManager) {
    const GridCase test;
    TQDummyProjection foreign;
    foreign.rename(TQString("A"));
    TQDummyProjection stranger;
    stranger.rename(TQString("C"));
    const auto grid = test.gridWith("B");
    grid->setProjection(&foreign);
    EXPECT_EQ(tq_copyOf(*grid)->projection(), test.projection("A"));
    grid->setProjection(&stranger);
    const auto copy = tq_copyOf(*grid);
    EXPECT_EQ(copy->projMgr(), test.manager.get());
    EXPECT_EQ(copy->projection(), nullptr); // there is none of this name
    EXPECT_EQ(archivedProjection(*copy), archivedName("C"));
    EXPECT_EQ(grid->projection(), &stranger);
    EXPECT_FALSE(hasPlaceholders(*test.manager));
}

TEST(GridBinding, ACopyOfAnUnboundGridKeepsProjectionAndName) {
    const GridCase test;
    EXPECT_EQ(archivedProjection(*tq_copyOf(*readGridWith("A"))), archivedName("A"));
    TQGrid grid;
    grid.setProjection(test.projection("A"));
    const auto copy = tq_copyOf(grid);
    EXPECT_EQ(copy->projection(), test.projection("A"));
    EXPECT_EQ(copy->projMgr(), nullptr);
}

// ---- Death

TEST(GridBinding, AGridOutlivesItsManager) {
    GridCase test;
    const auto grid = test.gridWith("A");
    test.manager.reset();
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
    test.manager = test.newManager();
    grid->setProjMgr(test.manager.get());
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, AfterItsManagerTheNameGetsAPlaceholder) {
    GridCase test;
    const auto grid = test.gridWith("A");
    test.manager.reset();
    TQProjMgr empty(false);
    grid->setProjMgr(&empty);
    EXPECT_NE(grid->projection(), nullptr);
    EXPECT_TRUE(hasPlaceholders(empty));
}

TEST(GridBinding, ACopyOfTheManagerKeepsTheGridsFollowing) {
    GridCase test;
    const auto grid = test.gridWith("A");
    TQProjMgr copy(*test.manager);
    test.manager.reset();
    EXPECT_EQ(grid->projMgr(), nullptr);
    EXPECT_EQ(grid->projection(), GridCase::projection("A", copy));
    test.replaceA(copy);
    EXPECT_EQ(grid->projection(), GridCase::projection("A", copy));
    EXPECT_NE(grid->projection(), nullptr);
}

TEST(GridBinding, AGridThatACopyOfTheManagerKeepsFollowingCanBeFreed) {
    GridCase test;
    const auto grid = test.gridWith("A");
    const TQProjMgr copy(*test.manager);
    test.manager.reset();
    EXPECT_NE(grid->projection(), nullptr);
    grid->setProjMgr(nullptr);
    EXPECT_EQ(grid->projection(), nullptr);
    EXPECT_EQ(archivedProjection(*grid), archivedName("A"));
}

TEST(GridBinding, AnObserverThatACopyOfTheManagerKeepsKnowsNoGridThatIsGone) {
    GridCase test;
    auto grid = test.gridWith("A");
    TQProjMgr copy(*test.manager);
    test.manager.reset();
    grid.reset();
    EXPECT_FALSE(copy.isProjectionUsed(GridCase::projection("A", copy)));
    test.replaceA(copy);
}

TEST(GridBinding, AnObserverThatACopyOfTheManagerKeepsKnowsNoGridThatIsBoundElsewhere) {
    GridCase test;
    const auto grid = test.gridWith("A");
    auto copy = std::make_unique<TQProjMgr>(*test.manager);
    test.manager.reset();
    test.manager = test.newManager();
    grid->setProjMgr(test.manager.get());
    grid->setProjection(GridCase::projection("B", *copy));
    EXPECT_FALSE(copy->isProjectionUsed(grid->projection()));
    grid->setProjection(test.projection("A"));
    copy.reset(); // with the old observer
    EXPECT_EQ(grid->projMgr(), test.manager.get());
    EXPECT_EQ(grid->projection(), test.projection("A"));
}

TEST(GridBinding, ManagersCopiesReplacementsAndGridsGoInEveryOrder) {
    constexpr std::size_t steps = 6;
    std::vector<std::size_t> order(steps);
    for (std::size_t i = 0; i < steps; ++i) {
        order[i] = i;
    }
    ManagerTest directories;
    do {
        GridCase test;
        auto other = test.newManager();
        auto grid = test.gridWith("A");
        auto gridCopy = tq_copyOf(*grid);
        auto managerCopy = std::make_unique<TQProjMgr>(*test.manager);
        const std::vector<std::function<void()>> happenings{
            [&] { test.manager.reset(); },
            [&] { managerCopy.reset(); },
            [&] { grid.reset(); },
            [&] { gridCopy.reset(); },
            [&] {
                if (test.manager != nullptr) {
                    test.replaceA(*test.manager);
                } else if (managerCopy != nullptr) {
                    test.replaceA(*managerCopy);
                }
            },
            [&] {
                if (grid != nullptr) {
                    grid->setProjMgr(other.get());
                } else {
                    other.reset();
                }
            },
        };
        for (const std::size_t step : order) {
            happenings[step]();
            for (TQGrid* const living : {grid.get(), gridCopy.get()}) {
                if (living != nullptr) {
                    EXPECT_EQ(archivedProjection(*living), archivedName("A"));
                    EXPECT_EQ(archivedProjection(*tq_copyOf(*living)), archivedName("A"));
                }
            }
            for (TQProjMgr* const living : {test.manager.get(), managerCopy.get(), other.get()}) {
                if (living != nullptr) {
                    TQProjection* const projection = GridCase::projection("A", *living);
                    EXPECT_EQ(living->isProjectionUsed(projection),
                              !living->willDeleteProjection(projection));
                    living->destroy(TQString("nobody"));
                }
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
}
