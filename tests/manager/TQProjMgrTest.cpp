#include "manager/TQProjMgr.h"

#include "proj/TQExternalProjList.h"
#include "proj/TQPrProj4.h"
#include "testing/ConvertedPoints.h"
#include "testing/StreamBytes.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(TQProjMgr, IsAnObjectOfItsClass) {
    const TQProjMgr manager(false);
    EXPECT_STREQ(manager.className(), "TQProjMgr");
    EXPECT_NE(manager.isKindOf("TQObject"), 0);
    EXPECT_NE(manager.isMemberOf("TQProjMgr"), 0);
}

TEST(TQProjMgr, TheFirstOneBuildsTheCatalogueAndAddsTheTexts) {
    const TQProjMgr manager(false);
    resetSystemLocalization(); // the first one may have been in a directory that has no texts
    EXPECT_NE(TQSharedObject::sharedAppObjectForKey("TQExternalProjList"), nullptr);
    EXPECT_FALSE(TQLocalizer::appLocalizedStringForKey("missingProjection") == "missingProjection");
}

TEST(TQProjMgr, LaterOnesDoNotBuildTheCatalogueAgain) {
    const TQProjMgr first(false);
    TQExternalProjList::deleteAppShared();
    const TQProjMgr second(false);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("TQExternalProjList"), nullptr);
    EXPECT_NE(TQExternalProjList::appShared(), nullptr) << "but whoever asks for it";
}

TEST(TQProjMgr, WithoutResourcesItIsEmpty) {
    const ManagerTest directories;
    directories.resource("a.proj", mercatorFile("A"));
    const TQProjMgr manager(false);
    EXPECT_THAT(namesIn(manager), IsEmpty());
    EXPECT_EQ(manager.newListOfEllipsoidNames()->count(), 0);
}

TEST(TQProjMgr, LoadsEllipsoidsThenDatumsThenProjections) {
    const CapturedMessages messages;
    const ManagerTest directories;
    directories.shared().fileWith("resProj/Ellipsoids/w.ell",
                                  "TQEllipsoid v1\nWGS 84\n6378137\n0.00669438\n");
    directories.shared().fileWith("resProj/Datum/D.dtm", "# 1\nWGS 84\n1 2 3\nWGS 84\n");
    directories.resource("a.proj", mercatorFile("A"));
    directories.resource("b.proj", mercatorFile("B", 5.0, "WGS 84/D"));
    TQProjMgr manager(true);
    EXPECT_THAT(namesIn(manager), ElementsAre("A", "B"));
    EXPECT_EQ(manager.newListOfEllipsoidNames()->count(), 2);
    TQProjection* const a = manager.projWithName(TQString("A"), false);
    EXPECT_TRUE(a->isResource());
    EXPECT_EQ(a->registrationState(), 1);
    EXPECT_EQ(a->ellipsoid(), manager.ellipsoidManager().ellipsoidWithName(TQString("WGS 84")));
    EXPECT_TRUE(manager.projWithName(TQString("B"), false)->hasDatumShift())
        << "the registered ellipsoid counts";
    EXPECT_EQ(*manager.resourcePath(TQString("A")), tq_createPath(manager.defaultProjDirectory(), "a.proj"));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjMgr, TheResourcesAreInTheSharedDirectory) {
    const ManagerTest directories;
    const TQProjMgr manager(false);
    EXPECT_EQ(manager.defaultProjDirectory(), directories.projections());
}

// ---- Looking up

TEST(TQProjMgr, AnUnknownNameHasNoProjectionUnlessAPlaceholderIsWanted) {
    EmptyManager test;
    EXPECT_EQ(test.manager.projWithName(TQString("A"), false), nullptr);
    TQProjection* const placeholder = test.manager.projWithName(TQString("A"), true);
    ASSERT_NE(placeholder, nullptr);
    EXPECT_NE(placeholder->isMemberOf("TQDummyProjection"), 0);
    EXPECT_EQ(placeholder->name(), nullptr);
    EXPECT_EQ(placeholder->ellipsoid(), nullptr);
    EXPECT_EQ(test.manager.projWithName(TQString("A"), true), placeholder);
    EXPECT_NE(test.manager.projWithName(TQString("B"), true), placeholder);
    EXPECT_EQ(test.manager.projWithName(TQString("A"), false), nullptr) << "a placeholder is no projection";
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
}

TEST(TQProjMgr, TheNameMayBeGivenByPointer) {
    EmptyManager test;
    TQProjection* const a = test.load("A");
    const TQString name("A");
    EXPECT_EQ(test.manager.projWithName(&name, false), a);
    const TQString* const none = nullptr;
    EXPECT_EQ(test.manager.projWithName(none, true), nullptr);
}

TEST(TQProjMgr, AnExternalNameMakesAProjectionOnce) {
    EmptyManager test;
    TQProjection* const projection = test.manager.projWithName(TQString("\tEPSG_2154"), false);
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), "\tEPSG_2154");
    EXPECT_FALSE(projection->isInvalid());
    EXPECT_FALSE(projection->hasDatumShift());
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG_2154"), true), projection);
    EXPECT_THAT(namesIn(test.manager), IsEmpty()) << "not one of its own";
}

TEST(TQProjMgr, AllNamesOfAnExternalProjectionGiveTheSame) {
    EmptyManager test;
    TQProjection* const projection = test.manager.projWithName(TQString("\tEPSG:2154"), false);
    EXPECT_EQ(*projection->name(), "\tEPSG_2154");
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG_2154"), false), projection);
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG:2154"), false), projection);
}

TEST(TQProjMgr, ADeprecatedExternalNameHasItsOwnProjection) {
    EmptyManager test;
    TQProjection* const deprecated = test.manager.projWithName(TQString("\tEPSG_27572\r"), false);
    EXPECT_EQ(*deprecated->name(), "\tEPSG_27572\r");
    EXPECT_TRUE(deprecated->hasDatumShift());
    EXPECT_NE(test.manager.projWithName(TQString("\tEPSG_27572"), false), deprecated);
}

TEST(TQProjMgr, AnotherAuthorityMakesItsDefinition) {
    EmptyManager test;
    const auto* const projection =
        dynamic_cast<const TQPrProj4*>(test.manager.projWithName(TQString("\tIGNF:LAMB93"), false));
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), "\tIGNF:LAMB93");
    EXPECT_EQ(projection->definition(), "IGNF:LAMB93");
}

TEST(TQProjMgr, AMalformedExternalNameHasNoProjection) {
    EmptyManager test;
    for (const char* name : {"\t", "\tEPSG2154", "\t:2154"}) {
        EXPECT_EQ(test.manager.projWithName(TQString(name), true), nullptr) << name;
    }
}

TEST(TQProjMgr, AnInvalidExternalProjectionIsNotRegistered) {
    const CapturedMessages messages;
    EmptyManager test;
    TQProjection* const first = test.manager.projWithName(TQString("\tEPSG_999999"), false);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->isInvalid());
    TQProjection* const second = test.manager.projWithName(TQString("\tEPSG_999999"), false);
    EXPECT_NE(first, second);
    test.manager.disposeOfUnregistered(first);
    delete second; // as callers may do, too
    test.manager.disposeOfUnregistered(nullptr);
    TQProjection* const valid = test.manager.projWithName(TQString("\tEPSG_2154"), false);
    test.manager.disposeOfUnregistered(valid);
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG_2154"), false), valid) << "a registered one stays";
}

TEST(TQProjMgr, NamesAreListedInOrder) {
    EmptyManager test;
    for (const char* name : {"b", "a", "B", "ä", "10", "9"}) {
        test.load(name);
    }
    EXPECT_THAT(namesIn(test.manager), ElementsAre("10", "9", "B", "a", "b", "ä"));
}

TEST(TQProjMgr, EllipsoidsAreListedInTableOrderByCopiesOfTheirNames) {
    EmptyManager test;
    for (const char* name : {"b", "a", "B", "ä", "10", "9"}) {
        test.manager.ellipsoidManager().addEllipsoid(
            std::make_unique<TQEllipsoid>(TQString(name), 6378137.0, 0.0067));
    }
    const auto list = test.manager.newListOfEllipsoidNames();
    ASSERT_EQ(list->count(), 6);
    int index = 0;
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* ellipsoid = test.manager.ellipsoidManager().ellipsoids().next(state)) {
        EXPECT_EQ(*list->objectAt(index), *ellipsoid->name());
        EXPECT_NE(list->objectAt(index), ellipsoid->name());
        ++index;
    }
}

TEST(TQProjMgr, ListsOfNamesHaveRoomFor32AndGrowByHalf) {
    EmptyManager test;
    constexpr int initialCapacity = 32;
    EXPECT_EQ(test.manager.newListOfProjNames()->capacity(), initialCapacity);
    EXPECT_EQ(test.manager.newListOfEllipsoidNames()->capacity(), initialCapacity);
    for (int number = 0; number <= initialCapacity; ++number) {
        const std::string digits = std::to_string(number);
        test.manager.loadProjection(
            test.directories.userFile("p.proj", mercatorFile("P" + digits, 0.0, "E" + digits)), false,
            kNoFlags);
    }
    EXPECT_EQ(test.manager.newListOfProjNames()->count(), initialCapacity + 1);
    EXPECT_EQ(test.manager.newListOfProjNames()->capacity(), initialCapacity + initialCapacity / 2);
    EXPECT_EQ(test.manager.newListOfEllipsoidNames()->count(), initialCapacity + 1);
    EXPECT_EQ(test.manager.newListOfEllipsoidNames()->capacity(), initialCapacity + initialCapacity / 2);
}

TEST(TQProjMgr, TraversesItsProjections) {
    EmptyManager test;
    EXPECT_EQ(test.manager.traverseUserProjs(nullptr), nullptr);
    test.load("A");
    test.load("B");
    test.load("C");
    HashState<TQProjection> state;
    std::vector<TQProjection*> seen;
    while (TQProjection* projection = test.manager.traverseUserProjs(&state)) {
        seen.push_back(projection);
    }
    EXPECT_THAT(seen, SizeIs(3));
    EXPECT_EQ(test.manager.traverseUserProjs(&state), nullptr);
    EXPECT_EQ(test.manager.traverseUserProjs(nullptr), seen.front());
    EXPECT_EQ(test.manager.traverseUserProjs(nullptr), seen.front()) << "nothing is recorded";
}

TEST(TQProjMgr, ItsProjectionsSeeTheAxesThatTheirEllipsoidTakesOver) {
    EmptyManager test;
    TQProjection* const projection = test.load("A");
    constexpr double axis = 6370000.0;
    StreamBytes bytes;
    bytes.tag("TQEllMgr", 0).integer(1);
    bytes.tag("TQEllipsoid", 4).text("WGS 84").number(axis).number(0.0067).byte(0);
    ByteStream stream(bytes);
    test.manager.ellipsoidManager().unarchiveFrom(stream.get(), true);
    projection->setEllipsoid(projection->ellipsoid());
    EXPECT_NEAR(imageOf(*projection, {1.0, 0.0}).x, axis, 1e-6) << "one radian of the equator";
}

// ---- Observers

// A list that is looked through for each of them would take minutes.
TEST(TQProjMgr, HundredsOfThousandsOfObserversComeAndGo) {
    struct Idle : TQProjNotificationUser {
        using TQProjNotificationUser::TQProjNotificationUser;
        bool isUsingProjection(const TQProjection* /*projection*/) const override { return false; }
        void projectionsDidChange() override {}
        void replaceProjection(const TQProjection* /*old*/, TQProjection* /*replacement*/) override {}
    };
    EmptyManager test;
    std::vector<char> owners(300000);
    constexpr bool replace = true;
    for (int round = 0; round < 2; ++round) {
        for (char& owner : owners) {
            test.manager.registerUser(std::make_unique<Idle>(&owner), replace);
        }
    }
    const auto* const last = test.observe("last", &test.one);
    EXPECT_FALSE(test.manager.isProjectionUsed(nullptr));
    EXPECT_THAT(test.journal, ElementsAre("last asked"));
    for (const char& owner : owners) {
        test.manager.unregisterUser(&owner);
    }
    EXPECT_EQ(last->owner(), &test.one) << "and the others stay";
}

TEST(TQProjMgr, WithoutObserversNothingIsUsed) {
    EmptyManager test;
    const TQProjection* const a = test.load("A");
    EXPECT_FALSE(test.manager.isProjectionUsed(a));
    EXPECT_TRUE(test.manager.willDeleteProjection(a));
}

TEST(TQProjMgr, ObserversAreAskedInOrderUpToTheFirstThatUsesIt) {
    EmptyManager test;
    const TQProjection* const a = test.load("A");
    test.observe("1", &test.one);
    test.observe("2", &test.two)->used = a;
    test.observe("3", nullptr)->used = a;
    EXPECT_TRUE(test.manager.isProjectionUsed(a));
    EXPECT_FALSE(test.manager.willDeleteProjection(a));
    EXPECT_THAT(test.journal, ElementsAre("1 asked", "2 asked", "1 asked", "2 asked"));
}

TEST(TQProjMgr, AnObserverCanTakeThePlaceOfTheOneOfItsOwner) {
    EmptyManager test;
    test.observe("1", &test.one);
    test.observe("2", &test.two);
    test.observe("3", &test.one, true);
    EXPECT_THAT(test.journal, ElementsAre("1 dies"));
    test.observe("4", &test.one);
    test.manager.unregisterUser(&test.one);
    EXPECT_THAT(test.journal, ElementsAre("1 dies", "3 dies")) << "the first one of the owner";
    test.manager.unregisterUser(&test.journal);
    test.manager.registerUser(nullptr, true);
    test.manager.destroy(TQString("nobody"));
    EXPECT_THAT(test.journal, ElementsAre("1 dies", "3 dies", "2 changed", "4 changed"));
}

TEST(TQProjMgr, CallbacksMayUnregisterAndRegister) {
    EmptyManager test;
    JournalUser* const first = test.observe("1", &test.one);
    test.observe("2", &test.two);
    first->onChange = [&test] {
        test.manager.unregisterUser(&test.two);
        test.manager.unregisterUser(&test.one);
        test.observe("3", &test.one);
    };
    test.manager.destroy(TQString("nobody"));
    EXPECT_THAT(test.journal, ElementsAre("1 changed", "2 dies", "1 dies"));
    test.journal.clear();
    test.manager.destroy(TQString("nobody"));
    EXPECT_THAT(test.journal, ElementsAre("3 changed"));
}

// ---- Removing

TEST(TQProjMgr, DestroyRemovesAProjectionAndTellsInAnyCase) {
    EmptyManager test;
    test.load("A");
    test.observe("1", &test.one);
    test.observe("2", &test.two);
    test.manager.destroy(TQString("A"));
    EXPECT_EQ(test.manager.projWithName(TQString("A"), false), nullptr);
    test.manager.destroy(TQString("A"));
    EXPECT_THAT(test.journal, ElementsAre("1 changed", "2 changed", "1 changed", "2 changed"));
}

TEST(TQProjMgr, DestroyLeavesExternalProjections) {
    EmptyManager test;
    const TQString name("\tEPSG_2154");
    TQProjection* const external = test.manager.projWithName(name, false);
    const std::weak_ptr<const void> life = external->lifeToken();
    test.manager.destroy(name);
    EXPECT_FALSE(life.expired());
    EXPECT_EQ(test.manager.projWithName(name, false), external);
}

TEST(TQProjMgr, CleaningRemovesWhatIsNoResourceAndNotUsed) {
    EmptyManager test;
    test.load("resource", 0.0, true);
    test.load("unused 1");
    test.load("unused 2");
    JournalUser* const user = test.observe("u", &test.one);
    user->used = test.load("used");
    test.observe("v", &test.two)->used = test.load("used by the second");
    TQProjection* const external = test.manager.projWithName(TQString("\tEPSG_2154"), false);
    test.journal.clear();
    test.manager.cleanNoResourcesUnusedProj();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("resource", "used", "used by the second"));
    EXPECT_EQ(std::ranges::count(test.journal, "u changed"), 2) << "once for each";
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG_2154"), false), external);
}

TEST(TQProjMgr, CleaningGoesInTableOrder) {
    EmptyManager test;
    const auto namesInTableOrder = [&test] {
        std::vector<std::string> names;
        HashState<TQProjection> state;
        while (const TQProjection* projection = test.manager.traverseUserProjs(&state)) {
            names.push_back(projection->name()->utf8());
        }
        return names;
    };
    for (const char* name : {"A", "B", "C", "D", "E"}) {
        test.load(name);
    }
    std::vector<std::string> expected = namesInTableOrder();
    test.observe("u", &test.one)->onChange = [&] {
        expected.erase(expected.begin());
        EXPECT_EQ(namesInTableOrder(), expected);
    };
    test.manager.cleanNoResourcesUnusedProj();
    EXPECT_THAT(expected, IsEmpty());
}

TEST(TQProjMgr, CleaningTakesTheOneThatIsUnusedAlsoWhereTwoHaveItsName) {
    EmptyManager test;
    TQProjection* const used = test.load("A");
    TQProjection* const unused = test.load("B");
    unused->rename(TQString("A")); // behind the manager's back
    test.observe("u", &test.one)->used = used;
    test.manager.cleanNoResourcesUnusedProj();
    EXPECT_EQ(test.manager.traverseUserProjs(nullptr), used);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("A"));
}

TEST(TQProjMgr, TheFileOfAResourceCanBeForgotten) {
    EmptyManager test;
    test.manager.removeResourceProjnameInResourcesPathList(TQString("A"));
    test.load("A", 0.0, true);
    EXPECT_NE(test.manager.resourcePath(TQString("A")), nullptr);
    test.manager.removeResourceProjnameInResourcesPathList(TQString("A"));
    EXPECT_EQ(test.manager.resourcePath(TQString("A")), nullptr);
}

TEST(TQProjMgr, DiesInTheOrderInWhichOneThingNeedsAnother) {
    Journal journal;
    auto manager = std::make_unique<TQProjMgr>(false);
    manager->registerUser(std::make_unique<JournalUser>("observer", journal), false);
    manager->ellipsoidManager().addEllipsoid(
        std::make_unique<Mortal<TQEllipsoid>>([&journal] { journal.emplace_back("ellipsoid dies"); }));
    const auto placeholder = manager->projWithName(TQString("missing"), true)->lifeToken();
    const auto external = manager->projWithName(TQString("\tEPSG_2154"), false)->lifeToken();
    auto projection = std::make_unique<Mortal<TQDummyProjection>>([&] {
        EXPECT_TRUE(placeholder.expired());
        EXPECT_TRUE(external.expired());
        journal.emplace_back("projection dies");
    });
    manager->addLoadedProjection(std::move(projection), false, kNoFlags, nullptr);
    journal.clear();
    manager.reset();
    EXPECT_THAT(journal, ElementsAre("projection dies", "ellipsoid dies", "observer dies"));
}

TEST(TQProjMgr, ObserversDieLast) {
    Journal journal;
    {
        EmptyManager test;
        test.load("A");
        test.manager.projWithName(TQString("B"), true);
        test.manager.registerUser(std::make_unique<JournalUser>("1", journal), false);
        test.manager.registerUser(std::make_unique<JournalUser>("2", journal), false);
    }
    EXPECT_THAT(journal, ElementsAre("1 dies", "2 dies")) << "told nothing";
}

TEST(TQProjMgr, ACopySharesWhatThereIsAndMayDieFirstOrLast) {
    for (const bool copyDiesFirst : {true, false}) {
        Journal journal;
        const ManagerTest directories;
        auto manager = std::make_unique<TQProjMgr>(false);
        manager->loadProjection(directories.userFile("a.proj", mercatorFile("A")), false, kNoFlags);
        manager->registerUser(std::make_unique<JournalUser>("1", journal), false);
        auto copy = tq_copyOf(*manager);
        EXPECT_EQ(copy->projWithName(TQString("A"), false), manager->projWithName(TQString("A"), false));
        EXPECT_EQ(&copy->ellipsoidManager(), &manager->ellipsoidManager());
        EXPECT_NE(copy->projWithName(TQString("B"), true), manager->projWithName(TQString("B"), true));
        (copyDiesFirst ? copy : manager).reset();
        EXPECT_THAT(journal, IsEmpty());
        EXPECT_THAT(namesIn(copyDiesFirst ? *manager : *copy), ElementsAre("A"));
        (copyDiesFirst ? manager : copy).reset();
        EXPECT_THAT(journal, ElementsAre("1 dies"));
    }
}

// ---- Placeholders

namespace {

/// A manager with missing projections and a user to ask.
struct MissingCase : EmptyManager {
    CapturedPanels panels;

    std::string panelFor(const char* key, const std::string& names) const {
        return "Warning|" + TQLocalizer::appLocalizedStringForKey(key).utf8() + names + "|OK|Cancel|";
    }
};

} // namespace

TEST(TQProjMgr, NothingMissingShowsNothing) {
    MissingCase test;
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(true));
    EXPECT_THAT(test.panels.shown(), IsEmpty());
}

TEST(TQProjMgr, APlaceholderGivesWayWhenItsFileIsThere) {
    MissingCase test;
    TQProjection* const placeholder = test.manager.projWithName(TQString("A"), true);
    JournalUser* const user = test.observe("u", &test.one);
    user->used = placeholder;
    test.panels.answers.emplace_back([&test] {
        test.directories.resource("a.proj", mercatorFile("A"));
        return TQAlertDefault;
    });
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false));
    TQProjection* const found = test.manager.projWithName(TQString("A"), false);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(user->used, found);
    EXPECT_THAT(test.panels.shown(), ElementsAre(test.panelFor("missingProjection", "\nA")));
    TQPoint point;
    EXPECT_EQ(placeholder->convertGeoPt(TQPoint{0.1, 0.2}, point), 0) << "whoever holds it may still use it";
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false)) << "and nothing is missing";
}

TEST(TQProjMgr, APlaceholderGivesWayUnaskedToWhatWasRegisteredMeanwhile) {
    MissingCase test;
    TQProjection* const placeholder = test.manager.projWithName(TQString("A"), true);
    test.manager.projWithName(TQString("B"), true);
    JournalUser* const user = test.observe("u", &test.one);
    user->used = placeholder;
    const TQProjection* const a = test.load("A");
    test.panels.answers.emplace_back([] { return TQAlertAlternate; });
    EXPECT_FALSE(test.manager.checkAndResetUnknowProjection(true));
    EXPECT_EQ(user->used, a);
    EXPECT_THAT(test.panels.shown(), ElementsAre(test.panelFor("missingProjection", "\nB")));
    test.load("B");
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(true));
    EXPECT_THAT(test.panels.shown(), SizeIs(1)) << "nothing is missing";
}

TEST(TQProjMgr, WhatIsStillMissingIsAskedForAgainUntilTheUserGivesUp) {
    MissingCase test;
    TQProjection* const a = test.manager.projWithName(TQString("A"), true);
    TQProjection* const b = test.manager.projWithName(TQString("B"), true);
    JournalUser* const user = test.observe("u", &test.one);
    user->used = a;
    test.panels.answers.emplace_back([&test] {
        test.directories.resource("a.proj", mercatorFile("A"));
        return TQAlertDefault;
    });
    test.panels.answers.emplace_back([] { return TQAlertAlternate; });
    EXPECT_FALSE(test.manager.checkAndResetUnknowProjection(true));
    ASSERT_THAT(test.panels.shown(), SizeIs(2));
    const std::string& first = test.panels.shown().front();
    EXPECT_TRUE(first == test.panelFor("missingProjections", "\nA\nB") ||
                first == test.panelFor("missingProjections", "\nB\nA"))
        << first;
    EXPECT_EQ(test.panels.shown().back(), test.panelFor("missingProjection", "\nB"));
    EXPECT_EQ(user->used, test.manager.projWithName(TQString("A"), false));
    EXPECT_EQ(test.manager.projWithName(TQString("B"), true), b) << "it stays in place";
}

TEST(TQProjMgr, AUserWhoCancelsChangesNothing) {
    MissingCase test;
    TQProjection* const placeholder = test.manager.projWithName(TQString("A"), true);
    test.directories.resource("a.proj", mercatorFile("A"));
    test.panels.answers.emplace_back([] { return TQAlertAlternate; });
    EXPECT_FALSE(test.manager.checkAndResetUnknowProjection(true));
    EXPECT_EQ(test.manager.projWithName(TQString("A"), true), placeholder);
}

TEST(TQProjMgr, EveryObserverIsToldInOrderOfEachPlaceholderThatGaveWay) {
    MissingCase test;
    JournalUser* const first = test.observe("1", &test.one);
    JournalUser* const second = test.observe("2", &test.two);
    first->used = test.manager.projWithName(TQString("A"), true);
    second->used = test.manager.projWithName(TQString("B"), true);
    test.manager.projWithName(TQString("C"), true);
    test.panels.answers.emplace_back([&test] {
        test.directories.resource("a.proj", mercatorFile("A"));
        test.directories.resource("b.proj", mercatorFile("B"));
        return TQAlertDefault;
    });
    test.panels.answers.emplace_back([] { return TQAlertAlternate; });
    EXPECT_FALSE(test.manager.checkAndResetUnknowProjection(true));
    EXPECT_THAT(test.journal,
                ElementsAre("1 changed", "2 changed", "1 changed", "2 changed",       // two files are read
                            "1 replaced", "2 replaced", "1 replaced", "2 replaced")); // of two placeholders
    EXPECT_EQ(first->used, test.manager.projWithName(TQString("A"), false));
    EXPECT_EQ(second->used, test.manager.projWithName(TQString("B"), false));
}

TEST(TQProjMgr, LookingForWhatIsMissingEndsWhatNamesMeanInADocument) {
    for (const bool isMissing : {false, true}) {
        MissingCase test;
        TQProjection* const old = test.load("P", 1.0);
        test.observe("u", &test.one)->used = old;
        TQProjection* const meant = test.load("P", 2.0, false, TQProjMgr::Silent);
        ASSERT_EQ(*meant->name(), "P_1");
        if (isMissing) {
            test.manager.projWithName(TQString("missing"), true);
            test.panels.answers.emplace_back([] { return TQAlertAlternate; });
        }
        EXPECT_EQ(test.manager.checkAndResetUnknowProjection(true), !isMissing);
        EXPECT_EQ(test.manager.projWithName(TQString("P"), false), old);
    }
}

TEST(TQProjMgr, InBatchModeNobodyLooksAgain) {
    EmptyManager test;
    test.manager.projWithName(TQString("A"), true);
    EXPECT_FALSE(test.manager.checkAndResetUnknowProjection(true));
}
