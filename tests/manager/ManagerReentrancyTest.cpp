// What observers and panels do to a manager while it is at work.

#include "manager/TQProjectionFactory.h"
#include "projection/TQDummyProjection.h"
#include "support/TQMessages.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "tests/manager/DocumentCase.h"
#include "tests/manager/EveryProjectionType.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr bool kIsResource = true;
constexpr std::uint32_t kAnnounced = TQProjMgr::AnnounceReplacements;

/// Runs a function the first time only.
std::function<void()> once(std::function<void()> function) {
    return [function, isDone = false]() mutable {
        if (!isDone) {
            isDone = true;
            function();
        }
    };
}

} // namespace

TEST(ManagerReentrancy, AnObserverMayDestroyWhatWasJustLoaded) {
    EmptyManager test;
    test.observe("1", &test.one)->onChange = once([&test] { test.manager.destroy(TQString("A")); });
    const TQString path = test.directories.userFile("a.proj", mercatorFile("A"));
    EXPECT_TRUE(test.manager.loadProjection(path, kIsResource, kNoFlags));
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
}

TEST(ManagerReentrancy, AnObserverWhoseOwnerIsGoneIsNotTold) {
    EmptyManager test;
    const auto unregisterTheSecond = [&test] { test.manager.unregisterUser(&test.two); };
    test.observe("1", &test.one)->onChange = unregisterTheSecond;
    test.observe("2", &test.two);
    test.load("A");
    EXPECT_THAT(test.journal, ElementsAre("1 changed", "2 dies"));
}

TEST(ManagerReentrancy, AnObserverUnregisteredAtOneManagerIsUnknownToItsCopies) {
    EmptyManager test;
    test.observe("1", &test.one);
    TQProjMgr copy(test.manager);
    test.manager.unregisterUser(&test.one);
    EXPECT_THAT(test.journal, ElementsAre("1 dies"));
    copy.destroy(TQString("nobody"));
    copy.unregisterUser(&test.one);
    EXPECT_THAT(test.journal, SizeIs(1));
}

TEST(ManagerReentrancy, ACopyThatDestroysLeavesNoDeadMeanings) {
    EmptyManager test;
    test.observe("1", &test.one)->used = test.load("P", 1.0);
    TQProjMgr copy(test.manager);
    test.load("P", 2.0);
    const TQString name("P");
    EXPECT_EQ(*test.manager.projWithName(name, false)->name(), "P_1");
    copy.destroy(TQString("P_1"));
    EXPECT_EQ(*test.manager.projWithName(name, false)->name(), "P") << "the name means itself again";
}

TEST(ManagerReentrancy, APanelMayDestroyTheOldProjection) {
    const CapturedPanels panels;
    for (const std::uint32_t flags : {kNoFlags, kAnnounced}) {
        EmptyManager test;
        CapturedPanels nested;
        test.observe("1", &test.one)->used = flags == kNoFlags ? test.load("P", 1.0) : nullptr;
        test.load("P", 1.0);
        nested.answers.push_back([&test] {
            test.manager.destroy(TQString("P"));
            return TQAlertDefault;
        });
        test.load("P", 2.0, false, flags);
        EXPECT_THAT(nested.shown(), SizeIs(1));
        EXPECT_THAT(namesIn(test.manager), ElementsAre(flags == kNoFlags ? "P_1" : "P"));
    }
}

TEST(ManagerReentrancy, APanelMayLoadAProjectionOfTheNameThatWasChosen) {
    EmptyManager test;
    CapturedPanels panels;
    test.observe("1", &test.one)->used = test.load("P", 1.0);
    panels.answers.push_back([&test] {
        test.load("P_1", 3.0);
        return TQAlertDefault;
    });
    test.load("P", 2.0);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1", "P_2"));
}

TEST(ManagerReentrancy, NoTwoProjectionsHaveTheNameThatAPanelLoadsToo) {
    EmptyManager test;
    CapturedPanels panels;
    test.load("P", 1.0);
    panels.answers.push_back([&test] {
        test.load("P", 3.0);
        return TQAlertDefault;
    });
    test.load("P", 2.0, !kIsResource, kAnnounced);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
}

TEST(ManagerReentrancy, NoTwoProjectionsHaveTheNameThatAnObserverLoadsToo) {
    EmptyManager test;
    JournalUser* const user = test.observe("1", &test.one);
    test.load("P", 1.0);
    user->onChange = once([&test] { test.load("P", 3.0); }); // when the old one goes
    test.load("P", 2.0, !kIsResource, TQProjMgr::Silent);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
}

TEST(ManagerReentrancy, NoTwoProjectionsHaveTheNameThatAnObserverLoadsWhenItIsAsked) {
    EmptyManager test;
    JournalUser* const user = test.observe("1", &test.one);
    test.load("P", 1.0);
    const auto reload = std::make_shared<std::function<void()>>(once([&test] {
        test.manager.destroy(TQString("P"));
        test.load("P", 3.0);
    }));
    user->onQuestion = [reload](const TQProjection*) { (*reload)(); };
    test.load("P", 2.0, !kIsResource, TQProjMgr::Silent);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
}

TEST(ManagerReentrancy, NoTwoProjectionsHaveTheNameThatAnObserverLoadsWhenItIsSwitchedOver) {
    DocumentCase test;
    JournalUser* const user = test.observe("1", &test.one);
    user->used = test.load("P", 1.0);
    user->onReplace = [&test] { test.load("P", 3.0, !kIsResource, TQProjMgr::Silent); };
    test.read(documentHead(1).append(mercatorEntry(1, "P", 2.0)),
              TQProjMgr::FromDocument | TQProjMgr::ReplaceInObservers | TQProjMgr::Silent);
    std::vector<std::string> names = namesIn(test.manager);
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end()) << "no two are equal";
    EXPECT_EQ(meridianOf(user->used), 2.0);
    EXPECT_FALSE(user->used->isUserDefined()) << "it stands in for nobody";
}

TEST(ManagerReentrancy, APanelMayDestroyTheProjectionThatWasToBeKept) {
    DocumentCase test;
    test.load("P", 1.0);
    test.panels.answers.push_back([&test] {
        test.manager.destroy(TQString("P"));
        return TQAlertDefault;
    });
    test.read(documentHead(1).append(mercatorEntry(1, "P", 2.0)),
              TQProjMgr::FromDocument | TQProjMgr::KeepPresent | kAnnounced);
    EXPECT_EQ(meridianOf(test.projection("P")), 2.0) << "the document's is not lost";
}

TEST(ManagerReentrancy, AnObserverMayDestroyTheProjectionThatItIsAskedFor) {
    struct DestroyingUser : JournalUser {
        using JournalUser::JournalUser;
        bool isUsingProjection(const TQProjection* /*projection*/) const override {
            manager->destroy(TQString("P"));
            return true;
        }
        TQProjMgr* manager = nullptr;
    };
    EmptyManager test;
    test.load("P", 1.0);
    auto user = std::make_unique<DestroyingUser>("1", test.journal);
    user->manager = &test.manager;
    test.manager.registerUser(std::move(user), false);
    test.load("P", 2.0);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
}

TEST(ManagerReentrancy, ObserversMayResolvePlaceholdersWhileTheyAreResolved) {
    EmptyManager test;
    CapturedPanels panels;
    test.manager.projWithName(TQString("A"), true);
    test.directories.resource("a.proj", mercatorFile("A"));
    test.observe("1", &test.one)->onChange =
        once([&test] { EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false)); });
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false));
    EXPECT_EQ(std::ranges::count(test.journal, "1 replaced"), 1);
}

TEST(ManagerReentrancy, NobodyIsGivenAReplacementThatIsGone) {
    EmptyManager test;
    CapturedPanels panels;
    JournalUser* const first = test.observe("1", &test.one);
    JournalUser* const second = test.observe("2", &test.two);
    TQProjection* const placeholder = test.manager.projWithName(TQString("A"), true);
    first->used = placeholder;
    second->used = placeholder;
    first->onReplace = [&] {
        first->used = nullptr;
        test.manager.destroy(TQString("A"));
    };
    test.directories.resource("a.proj", mercatorFile("A"));
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false));
    EXPECT_EQ(second->used, placeholder) << "which lives as long as the manager";
    EXPECT_EQ(std::ranges::count(test.journal, "2 replaced"), 0);
}

TEST(ManagerReentrancy, ACopyHasNoPlaceholdersThatTheOriginalResolved) {
    EmptyManager test;
    CapturedPanels panels;
    test.manager.projWithName(TQString("A"), true);
    TQProjMgr copy(test.manager);
    test.directories.resource("a.proj", mercatorFile("A"));
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false));
    const std::size_t before = panels.shown().size();
    EXPECT_TRUE(copy.checkAndResetUnknowProjection(false));
    EXPECT_THAT(panels.shown(), SizeIs(before));
}

TEST(ManagerReentrancy, ObserversThatDieWithTheManagerMayStillAskIt) {
    struct AskingUser : JournalUser {
        using JournalUser::JournalUser;
        ~AskingUser() override {
            manager->unregisterUser(owner());
            EXPECT_EQ(manager->projWithName(TQString("A"), false), nullptr);
            EXPECT_EQ(manager->newListOfEllipsoidNames()->count(), 0);
        }
        TQProjMgr* manager = nullptr;
    };
    Journal journal;
    int owners[2] = {};
    {
        EmptyManager test;
        test.load("A");
        for (int& owner : owners) {
            auto user = std::make_unique<AskingUser>("u", journal, &owner);
            user->manager = &test.manager;
            test.manager.registerUser(std::move(user), false);
        }
    }
    EXPECT_EQ(std::ranges::count(journal, "u dies"), 2);
}

TEST(ManagerReentrancy, CleaningPassesOverWhatAnObserverHasDestroyed) {
    EmptyManager test;
    test.load("A");
    test.load("B");
    test.observe("1", &test.one)->onChange = once([&test] {
        test.manager.destroy(TQString("A"));
        test.manager.destroy(TQString("B"));
    });
    test.journal.clear();
    test.manager.cleanNoResourcesUnusedProj();
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
    EXPECT_EQ(std::ranges::count(test.journal, "1 changed"), 3)
        << "one for each that was removed, and one for "
           "the name that was there no more";
}

TEST(ManagerReentrancy, AnEllipsoidThatACallbackRegistersIsShared) {
    EmptyManager test;
    test.load("P", 1.0);
    test.observe("1", &test.one)->onChange = once([&test] { test.load("Q", 5.0); });
    const auto file = test.directories.userFile("p.proj", mercatorFile("P", 2.0, "E"));
    test.observe("2", &test.two)->onChange = once([&test] {
        test.manager.loadProjection(test.directories.userFile("r.proj", mercatorFile("R", 1.0, "E")), false,
                                    0);
    });
    test.manager.loadProjection(file, false, kNoFlags);
    const TQString p("P");
    const TQString r("R");
    EXPECT_EQ(test.manager.projWithName(p, false)->ellipsoid(),
              test.manager.projWithName(r, false)->ellipsoid());
}

TEST(ManagerReentrancy, AnObserverMayDestroyWhatIsWrittenWhileItIsAsked) {
    for (const bool isExported : {false, true}) {
        EmptyManager test;
        const TemporaryDirectory directory;
        test.load("A", 0.0, kIsResource);
        test.load("B", 0.0, kIsResource);
        test.observe("1", &test.one)->onQuestion = [&test](const TQProjection* asked) {
            test.manager.destroy(*asked->name());
        };
        if (isExported) {
            EXPECT_TRUE(test.manager.archiveNecessaryProj(directory.directory()));
            EXPECT_THAT(directory.entries(), IsEmpty());
        } else {
            constexpr bool usedOnly = true;
            TQWriteMemStream stream;
            test.manager.archiveTo(&stream, usedOnly);
        }
        EXPECT_THAT(namesIn(test.manager), IsEmpty());
    }
}

namespace {

/// Makes an error printer, as long as it lives, of a function.
class PrinterThat {
  public:
    explicit PrinterThat(const std::function<void()>& act)
        : _before(tq_setErrorPrinter([act](std::string_view) { act(); })) {}
    PrinterThat(const PrinterThat&) = delete;
    PrinterThat& operator=(const PrinterThat&) = delete;
    ~PrinterThat() { tq_setErrorPrinter(std::move(_before)); }

  private:
    TQErrorPrinter _before;
};

void addPlaceholder(TQProjMgr& manager, const char* name) {
    auto placeholder = std::make_unique<TQDummyProjection>();
    placeholder->rename(TQString(name));
    manager.addLoadedProjection(std::move(placeholder), !kIsResource, kNoFlags, nullptr);
}

void destroyAll(TQProjMgr& manager) {
    for (const std::string& name : namesIn(manager)) {
        manager.destroy(TQString(name.c_str()));
    }
}

/// The names that a document of a manager has.
std::vector<std::string> namesInDocumentOf(const TQProjMgr& manager) {
    TQWriteMemStream written;
    manager.archiveTo(&written);
    EmptyManager reader;
    TQReadMemStream stream(written.getMemory().data(), written.getMemory().size());
    constexpr bool unused = false;
    EXPECT_TRUE(reader.manager.unarchiveFrom(&stream, unused));
    EXPECT_EQ(stream.bytesLeft(), 0U);
    return namesIn(reader.manager);
}

} // namespace

TEST(ManagerReentrancy, AnErrorPrinterMayDestroyWhatADocumentGets) {
    EmptyManager test;
    for (const char* name : {"A", "B", "C"}) {
        test.load(name);
    }
    addPlaceholder(test.manager, "nobody's");
    const PrinterThat destroys([&test] { destroyAll(test.manager); });
    EXPECT_THAT(namesInDocumentOf(test.manager), ElementsAre("A", "B", "C"));
    EXPECT_THAT(namesIn(test.manager), IsEmpty()) << "the placeholder was reported";
}

TEST(ManagerReentrancy, AnErrorPrinterMayDestroyProjectionsWhoseEllipsoidsHaveOneName) {
    TQEllipsoid one(TQString("\tOwn"), 6378137.0, 0.0067);
    TQEllipsoid other(TQString("\tOwn"), 6378137.001, 0.0067);
    EmptyManager test;
    for (const auto& [name, ellipsoid] : {std::pair{"A", &one}, {"B", &other}, {"C", &one}, {"D", &other}}) {
        test.manager.addLoadedProjection(variedProjection(kMercator, name, ellipsoid), !kIsResource, kNoFlags,
                                         nullptr);
    }
    const PrinterThat destroys([&test] { destroyAll(test.manager); });
    EXPECT_THAT(namesInDocumentOf(test.manager), ElementsAre("A", "B", "C", "D"));
    EXPECT_THAT(namesIn(test.manager), IsEmpty()) << "the ellipsoids were reported";
}

TEST(ManagerReentrancy, AnErrorPrinterMayDestroyWhatFilesAreWrittenOf) {
    EmptyManager test;
    const TemporaryDirectory directory;
    const std::vector<std::string> unwritable = {"nobody's", "no one's", "none's"};
    for (const std::string& name : unwritable) {
        test.load("before " + name);
        addPlaceholder(test.manager, name.c_str());
    }
    std::vector<std::string> written; // with the one that ends it
    HashState<TQProjection> state;
    do {
        written.push_back(test.manager.traverseUserProjs(&state)->name()->utf8());
    } while (std::ranges::find(unwritable, written.back()) == unwritable.end());
    const PrinterThat destroys([&test] { destroyAll(test.manager); });
    EXPECT_FALSE(test.manager.archiveNecessaryProj(directory.directory()));
    EXPECT_THAT(directory.entries(), SizeIs(written.size()));
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
}

// ---- Names that the name rule meets twice

TEST(ManagerNames, AProjectionOfAnExternalNameIsLoadedOnce) {
    EmptyManager test;
    CapturedPanels panels;
    const TQString path = test.directories.userFile("m.proj", mercatorFile("\tEPSG_2154"));
    EXPECT_TRUE(test.manager.loadProjection(path, false, kNoFlags));
    EXPECT_FALSE(test.manager.loadProjection(path, false, kNoFlags));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("\tEPSG_2154"));
    EXPECT_THAT(panels.shown(), IsEmpty());
}

TEST(ManagerNames, EqualProjectionsWithoutNameAreLoadedOnce) {
    EmptyManager test;
    EXPECT_TRUE(test.manager.addLoadedProjection(tq_newProjectionOfType(5), false, kNoFlags, nullptr));
    EXPECT_FALSE(test.manager.addLoadedProjection(tq_newProjectionOfType(5), false, kNoFlags, nullptr));
    EXPECT_TRUE(test.manager.addLoadedProjection(tq_newProjectionOfType(0), false, kNoFlags, nullptr));
    EXPECT_EQ(test.manager.newListOfProjNames()->count(), 1) << "it takes the place of the other one";
}

TEST(ManagerNames, OneThatTakesAPlaceUnderAnotherNameIsAnnouncedOnce) {
    EmptyManager test;
    CapturedPanels panels;
    test.observe("1", &test.one)->used = test.load("P", 1.0);
    test.load("P", 2.0, false, TQProjMgr::Silent);
    ASSERT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
    test.load("P", 3.0, false, kAnnounced);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1")) << "the new one has the place of P_1";
    EXPECT_THAT(panels.shown(), SizeIs(1));
}
