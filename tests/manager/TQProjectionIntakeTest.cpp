#include "manager/TQProjMgr.h"
#include "manager/TQProjectionFactory.h"
#include "testing/ConvertedPoints.h"
#include "testing/FullDisk.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double kOldMeridian = 1.0;
constexpr double kNewMeridian = 2.0;
constexpr const char* kRefused =
    "TQProjMgr::loadProjection(...): impossible to load resources proj after a non resources !!!\n";

/// A projection named "P" is loaded when another one of this name is there.
struct Conflict {
    bool oldIsResource;
    bool newIsResource;
    bool isUsed;
    bool isSame;
    std::uint32_t flags;
};

std::ostream& operator<<(std::ostream& stream, const Conflict& conflict) {
    return stream << (conflict.oldIsResource ? "resource" : "user") << " then "
                  << (conflict.newIsResource ? "resource" : "user")
                  << (conflict.isUsed ? ", used" : ", unused") << (conflict.isSame ? ", same" : ", different")
                  << ", flags " << conflict.flags;
}

std::vector<Conflict> allConflicts() {
    std::vector<Conflict> conflicts;
    for (int bits = 0; bits < 16; ++bits) {
        for (const std::uint32_t flags : {0U, 4U, 64U, 68U, 0xFFFFFFFFU, 1U}) {
            conflicts.push_back({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0, flags});
        }
    }
    return conflicts;
}

std::string text(const char* key) {
    return TQLocalizer::appLocalizedStringForKey(
               TQString((std::string("projectionDifferentFromResource_") + key).c_str()))
        .utf8();
}

std::string panel(const std::string& message) { return "Warning|" + message + "|Ok||"; }

class TQProjectionIntakeConflict : public testing::TestWithParam<Conflict> {
  protected:
    TQProjectionIntakeConflict() {
        load(kOldMeridian, GetParam().oldIsResource, 0);
        old = _manager.projWithName(TQString("P"), false);
        oldPath = _path;
        auto user = std::make_unique<JournalUser>("u", _journal);
        user->used = GetParam().isUsed ? old : nullptr;
        _manager.registerUser(std::move(user), false);
        isLoaded =
            load(GetParam().isSame ? kOldMeridian : kNewMeridian, GetParam().newIsResource, GetParam().flags);
    }

    bool load(double meridian, bool isResource, std::uint32_t flags) {
        _path = _directories.userFile(std::to_string(++_count) + ".proj", mercatorFile("P", meridian));
        return _manager.loadProjection(_path, isResource, flags);
    }

    double meridianOf(const char* name) {
        HashTbl<TQProjParam> table(1);
        const TQProjection* const projection = _manager.projWithName(TQString(name), false);
        if (projection == nullptr) {
            return -1.0;
        }
        projection->getParams(table);
        return table.lookup("lambda0")->doubleValue();
    }

    /// How often the observer was told of a change.
    long changes() const { return std::ranges::count(_journal, "u changed"); }

    const char* difference() const {
        return GetParam().oldIsResource ? "userDef_extra" : "userDef_non_resource";
    }

    bool isSilent() const { return (GetParam().flags & 4U) != 0; }
    bool isAnnounced() const { return (GetParam().flags & 64U) != 0; }

    void expectNothingChanged() {
        EXPECT_FALSE(isLoaded);
        EXPECT_EQ(_manager.projWithName(TQString("P"), false), old);
        EXPECT_THAT(namesIn(_manager), ElementsAre("P"));
        EXPECT_EQ(changes(), 0);
    }

    void expectRenamed() {
        EXPECT_TRUE(isLoaded);
        EXPECT_THAT(namesIn(_manager), ElementsAre("P", "P_1"));
        EXPECT_EQ(meridianOf("P"), kNewMeridian) << "for the document being read the name means the new one";
        EXPECT_EQ(changes(), 1);
        const std::string message =
            text("beg") + "P" + text(difference()) + "\n" + text("userDef_renameNewAs") + "P_1";
        EXPECT_EQ(_panels.shown(), isSilent() ? std::vector<std::string>{} : std::vector{panel(message)});
        EXPECT_FALSE(_manager.projWithName(TQString("P_1"), false)->isUserDefined());
        _manager.reinitReadXREFTable();
        EXPECT_EQ(_manager.projWithName(TQString("P"), false), old);
        EXPECT_EQ(meridianOf("P_1"), kNewMeridian);
    }

    void expectReplaced() {
        EXPECT_TRUE(isLoaded);
        EXPECT_THAT(namesIn(_manager), ElementsAre("P"));
        EXPECT_EQ(meridianOf("P"), kNewMeridian);
        EXPECT_EQ(changes(), 2) << "the old one went, the new one came";
        const std::string message = text("beg") + "P" + text(difference()) + "\n" + text("userDef_keepNew");
        EXPECT_EQ(_panels.shown(), isAnnounced() ? std::vector{panel(message)} : std::vector<std::string>{});
        EXPECT_EQ(_manager.projWithName(TQString("P"), false)->isUserDefined(), GetParam().oldIsResource);
    }

    const TQProjection* old = nullptr;
    TQString oldPath;
    bool isLoaded = false;
    ManagerTest _directories;
    CapturedMessages _messages;
    CapturedPanels _panels;
    Journal _journal;
    TQProjMgr _manager{false};
    TQString _path;
    int _count = 0;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(All, TQProjectionIntakeConflict, testing::ValuesIn(allConflicts()));

TEST_P(TQProjectionIntakeConflict, IsDecidedByTheRule) {
    const Conflict& conflict = GetParam();
    const bool isReported = !conflict.isSame && conflict.newIsResource && !conflict.oldIsResource;
    if (conflict.isSame) {
        expectNothingChanged();
        EXPECT_THAT(_panels.shown(), IsEmpty());
    } else if (conflict.newIsResource) {
        expectNothingChanged();
        const std::string message =
            text("beg_userDef") + "P" + text("userDef_extra") + "\n" + text("userDef_keepOld");
        const bool isShown = conflict.oldIsResource && !isSilent();
        EXPECT_EQ(_panels.shown(), isShown ? std::vector{panel(message)} : std::vector<std::string>{});
    } else if (conflict.isUsed) {
        expectRenamed();
    } else {
        expectReplaced();
    }
    EXPECT_EQ(_messages.lines(),
              isReported ? std::vector<std::string>{kRefused} : std::vector<std::string>{});
    const TQString* const path = _manager.resourcePath(TQString("P"));
    EXPECT_EQ(path != nullptr, conflict.oldIsResource);
    if (path != nullptr) {
        EXPECT_EQ(*path, oldPath);
    }
}

namespace {

struct IntakeCase {
    ManagerTest directories;
    CapturedMessages messages;
    CapturedPanels panels;
    Journal journal;
    TQProjMgr manager{false};

    bool load(const std::string& text, bool isResource = false, std::uint32_t flags = 0) {
        return manager.loadProjection(directories.userFile("p.proj", text), isResource, flags);
    }

    void use(const char* name) {
        auto user = std::make_unique<JournalUser>("u", journal);
        user->used = manager.projWithName(TQString(name), false);
        manager.registerUser(std::move(user), false);
    }
};

/// A user's projection "P" that is saved in vain, and the file of the resources that it is saved to.
struct FailedSaveCase : IntakeCase {
    TQString path = directories.resource("p.proj", "what was there before");

    void save() { manager.saveProjection(TQString("P"), path); }

    void expectNoResource() {
        EXPECT_FALSE(manager.projWithName(TQString("P"), false)->isResource());
        EXPECT_EQ(manager.resourcePath(TQString("P")), nullptr);
    }

    void expectOldFile() { EXPECT_EQ(readBytes(path), "what was there before"); }
};

} // namespace

TEST(TQProjectionIntake, NothingIsNotTaken) {
    IntakeCase test;
    EXPECT_FALSE(test.manager.addLoadedProjection(nullptr, false, 0, nullptr));
    EXPECT_FALSE(test.manager.loadProjection(test.directories.users().file("missing.proj"), false, 0));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionIntake, TheBookkeepingIsSetWhateverItWas) {
    for (const bool isResource : {false, true}) {
        IntakeCase test;
        auto projection = tq_newProjectionOfType(5);
        const TQProjection& added = *projection;
        projection->setIsResource(!isResource);
        projection->setIsUserDefined(true);
        EXPECT_TRUE(test.manager.addLoadedProjection(std::move(projection), isResource, 0, nullptr));
        EXPECT_EQ(added.isResource(), isResource);
        EXPECT_FALSE(added.isUserDefined());
        EXPECT_EQ(added.registrationState(), 1);
    }
}

TEST(TQProjectionIntake, PanelRemovalAndAdditionFollowEachOther) {
    using Names = std::vector<std::string>;
    enum class Seen { panel, change };
    using Events = std::vector<std::pair<Seen, Names>>; // what is seen, and the projections at that moment
    IntakeCase test;
    Events events;
    const auto see = [&](Seen seen) { events.emplace_back(seen, namesIn(test.manager)); };
    test.panels.otherAnswer = [&] {
        see(Seen::panel);
        return TQAlertDefault;
    };
    auto user = std::make_unique<JournalUser>("u", test.journal);
    user->onChange = [&] { see(Seen::change); };
    const TQProjection*& used = user->used;
    test.manager.registerUser(std::move(user), false);

    test.load(mercatorFile("P", 1.0));
    EXPECT_EQ(events, (Events{{Seen::change, {"P"}}}));

    events.clear();
    test.load(mercatorFile("P", 2.0), false, TQProjMgr::AnnounceReplacements);
    EXPECT_EQ(events, (Events{{Seen::panel, {"P"}}, {Seen::change, {}}, {Seen::change, {"P"}}}));

    events.clear();
    used = test.manager.projWithName(TQString("P"), false);
    test.load(mercatorFile("P", 3.0));
    EXPECT_EQ(events, (Events{{Seen::panel, {"P"}}, {Seen::change, {"P", "P_1"}}}));
}

TEST(TQProjectionIntake, TheSmallestFreeNumberMakesTheName) {
    IntakeCase test;
    test.load(mercatorFile("P", 0.0));
    test.load(mercatorFile("P_2", 9.0));
    test.use("P");
    test.load(mercatorFile("P", 1.0));
    test.manager.reinitReadXREFTable();
    test.load(mercatorFile("P", 2.0));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1", "P_2", "P_3"));
}

TEST(TQProjectionIntake, TheRegisteredEllipsoidIsShared) {
    IntakeCase test;
    test.load(mercatorFile("A", 0.0, "E"));
    test.load(mercatorFile("B", 0.0, "E"));
    const TQEllipsoid* const registered = test.manager.ellipsoidManager().ellipsoidWithName(TQString("E"));
    ASSERT_NE(registered, nullptr);
    EXPECT_EQ(test.manager.projWithName(TQString("A"), false)->ellipsoid(), registered);
    EXPECT_EQ(test.manager.projWithName(TQString("B"), false)->ellipsoid(), registered);
    EXPECT_EQ(test.manager.ellipsoidManager().ellipsoids().count(), 1);
}

TEST(TQProjectionIntake, ARefusedProjectionLeavesNoEllipsoid) {
    IntakeCase test;
    test.load(mercatorFile("A", 0.0, "E"), true);
    test.load(mercatorFile("A", 1.0, "F"), true);
    EXPECT_EQ(test.manager.ellipsoidManager().ellipsoids().count(), 1);
}

TEST(TQProjectionIntake, AnEllipsoidOfPROJStaysTheProjectionsOwn) {
    IntakeCase test;
    test.load(mercatorFile("A", 0.0, "\tE"));
    test.load(mercatorFile("B", 0.0, "\tE"));
    EXPECT_EQ(test.manager.ellipsoidManager().ellipsoids().count(), 0);
    const TQEllipsoid* const ofA = test.manager.projWithName(TQString("A"), false)->ellipsoid();
    ASSERT_NE(ofA, nullptr);
    EXPECT_NE(ofA, test.manager.projWithName(TQString("B"), false)->ellipsoid());
}

TEST(TQProjectionIntake, AnEllipsoidOfSomebodyElseIsNeitherTakenNorDestroyed) {
    int destroyed = 0;
    {
        Mortal<TQEllipsoid> foreign([&destroyed] { ++destroyed; }, TQString("Foreign"), 6378137.0,
                                    0.00669438);
        IntakeCase test;
        for (const char* name : {"A", "B"}) {
            auto projection = tq_newProjectionOfType(5);
            projection->rename(TQString(name));
            projection->setEllipsoid(&foreign);
            EXPECT_TRUE(test.manager.addLoadedProjection(std::move(projection), false, 0, nullptr));
        }
        EXPECT_NE(test.manager.ellipsoidManager().ellipsoidWithName(TQString("Foreign")), &foreign);
        EXPECT_EQ(test.manager.projWithName(TQString("A"), false)->ellipsoid(),
                  test.manager.projWithName(TQString("B"), false)->ellipsoid());
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1) << "with its own scope";
}

TEST(TQProjectionIntake, APolarStereographicOnTheRegisteredEllipsoidConvertsOnThat) {
    constexpr int kPolarStereo = 8;
    constexpr TQPoint geo{0.06, 1.4};
    IntakeCase test;
    TQEllipsoid* const registered = test.manager.ellipsoidManager().addEllipsoid(
        std::make_unique<TQEllipsoid>(TQString("E"), 6400000.0, 0.0199));
    TQEllipsoid ofFile(TQString("E"), 6378137.0, 0.00669438);
    auto projection = tq_newProjectionOfType(kPolarStereo);
    projection->rename(TQString("A"));
    projection->setEllipsoid(&ofFile);
    imageOf(*projection, geo); // computes the constants
    test.manager.addLoadedProjection(std::move(projection), false, 0, nullptr);
    const auto onRegistered = tq_newProjectionOfType(kPolarStereo);
    onRegistered->setEllipsoid(registered);
    EXPECT_EQ(imageOf(*test.manager.projWithName(TQString("A"), false), geo), imageOf(*onRegistered, geo));
}

TEST(TQProjectionIntake, AProjectionWithoutEllipsoidIsOneAlsoInItsFile) {
    IntakeCase test;
    auto projection = tq_newProjectionOfType(5);
    projection->rename(TQString("A"));
    test.manager.addLoadedProjection(std::move(projection), false, 0, nullptr);
    const TemporaryDirectory directory;
    test.manager.saveProjection(TQString("A"), directory.file("a.proj"));
    test.manager.destroy(TQString("A"));
    EXPECT_TRUE(test.manager.loadProjection(directory.file("a.proj"), false, 0));
    const TQProjection* const back = test.manager.projWithName(TQString("A"), false);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->ellipsoid(), nullptr);
    EXPECT_EQ(test.manager.ellipsoidManager().ellipsoids().count(), 0);
    TQPoint plane;
    EXPECT_EQ(back->convertGeoPt(TQPoint{0.1, 0.8}, plane), -1);
}

TEST(TQProjectionIntake, AProjectionOfPROJHasNoEllipsoidToShare) {
    IntakeCase test;
    EXPECT_TRUE(test.load("TQFile v1\n127\nTQPrProj4 v0\nL93\nEPSG:2154\n"));
    EXPECT_NE(test.manager.projWithName(TQString("L93"), false), nullptr);
}

TEST(TQProjectionIntake, AFileWithAnExternalNameMeetsTheSystemOfThatName) {
    IntakeCase test;
    EXPECT_FALSE(test.load("TQFile v1\n127\nTQPrProj4 v0\n\tEPSG_2154\nEPSG:2154\n"))
        << "the same definition";
    TQProjection* const external = test.manager.projWithName(TQString("\tEPSG_2154"), false);
    EXPECT_TRUE(test.load(mercatorFile("\tEPSG_2154")));
    EXPECT_EQ(test.manager.projWithName(TQString("\tEPSG_2154"), false), external) << "it stays";
}

TEST(TQProjectionIntake, AnInvalidSystemOfTheNameIsDisposedOf) {
    IntakeCase test;
    std::weak_ptr<const void> life;
    auto user = std::make_unique<JournalUser>("u", test.journal);
    user->onQuestion = [&life](const TQProjection* old) {
        EXPECT_TRUE(old->isInvalid());
        life = old->lifeToken();
    };
    test.manager.registerUser(std::move(user), false);
    EXPECT_TRUE(test.load(mercatorFile("\tEPSG_999999")));
    ASSERT_THAT(test.journal, ElementsAre("u asked", "u changed", "u changed"));
    EXPECT_TRUE(life.expired());
}

TEST(TQProjectionIntake, ProjectionsWithoutNameAreTaken) {
    IntakeCase test;
    EXPECT_TRUE(test.manager.addLoadedProjection(tq_newProjectionOfType(5), false, 0, nullptr));
    EXPECT_EQ(test.manager.newListOfProjNames()->count(), 1);
}

// ---- Directories

TEST(TQProjectionIntake, ADirectoryIsReadInTheOrderOfNames) {
    IntakeCase test;
    test.directories.userFile("2.proj", mercatorFile("P", 2.0));
    test.directories.userFile("1.proj", mercatorFile("P", 1.0));
    test.directories.userFile("3.txt", mercatorFile("Q"));
    test.manager.loadProjectionFromDirectory(test.directories.users().directory(), true, 4);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
    EXPECT_EQ(*test.manager.resourcePath(TQString("P")), test.directories.users().file("1.proj"));
    test.manager.loadProjectionFromDirectory(test.directories.users().file("missing"), true, 4);
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionIntake, BadFilesDoNotStopTheDirectory) {
    IntakeCase test;
    test.directories.userFile("1.proj", "");
    test.directories.userFile("2.proj", "TQFile v2\n");
    test.directories.userFile("3.proj", "TQFile v1\n14\n");
    test.directories.userFile("4.proj", "TQFile v1\n5\nTQPrMercator v1\n");
    test.directories.userFile("5.proj", mercatorFile("P"));
    test.manager.loadResourceDirectory(test.directories.users().directory());
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQProjMgr::createProjectionFromPath: Unknown version\n",
                            "TQProjMgr::createProjectionFromPath: Unknown projection type\n",
                            "TQProjMgr::createProjectionFromPath: unable to read projection file: " +
                                test.directories.users().file("4.proj").utf8()));
}

// ---- Saving

TEST(TQProjectionIntake, ASavedProjectionComesBack) {
    IntakeCase test;
    test.load(mercatorFile("P", 7.0));
    const TQString path = test.directories.users().file("saved.proj");
    test.manager.saveProjection(TQString("P"), path);
    TQProjMgr other(false);
    EXPECT_TRUE(other.loadProjection(path, false, 0));
    EXPECT_TRUE(
        other.projWithName(TQString("P"), false)->isEqual(test.manager.projWithName(TQString("P"), false)));
    EXPECT_FALSE(test.manager.projWithName(TQString("P"), false)->isResource());
    EXPECT_EQ(test.manager.resourcePath(TQString("P")), nullptr);
}

TEST(TQProjectionIntake, SavedIntoTheResourcesItIsAResource) {
    IntakeCase test;
    test.load(mercatorFile("P", 1.0), true);
    test.load(mercatorFile("P", 7.0));
    EXPECT_TRUE(test.manager.projWithName(TQString("P"), false)->isUserDefined());
    const TQString path = test.directories.resource("p.proj", "to be replaced");
    test.manager.saveProjection(TQString("P"), path);
    EXPECT_TRUE(test.manager.projWithName(TQString("P"), false)->isResource());
    EXPECT_FALSE(test.manager.projWithName(TQString("P"), false)->isUserDefined());
    EXPECT_EQ(*test.manager.resourcePath(TQString("P")), path);
}

TEST(TQProjectionIntake, TheDirectoryOfTheResourcesMayBeSpeltInOtherWays) {
    IntakeCase test;
    const TQString link = test.directories.users().file("link");
    std::filesystem::create_directories(tq_filesystemPath(test.directories.projections()));
    std::filesystem::create_directory_symlink(tq_filesystemPath(test.directories.projections()),
                                              tq_filesystemPath(link));
    const TQString relative =
        tq_stringFromPath(std::filesystem::relative(tq_filesystemPath(test.directories.projections())));
    const TQString roundabout = tq_createPath(test.directories.projections(), TQString("../Projection"));
    for (const TQString& directory : {link, relative, roundabout}) {
        const TQString& name = directory; // a name of its own
        test.load(mercatorFile(name.utf8()));
        test.manager.saveProjection(name, tq_createPath(directory, TQString("p.proj")));
        EXPECT_TRUE(test.manager.projWithName(name, false)->isResource()) << directory.utf8();
    }
}

TEST(TQProjectionIntake, AFileThatHoldsNoProjectionMakesNoResource) {
    FailedSaveCase test;
    auto placeholder = std::make_unique<TQDummyProjection>();
    placeholder->rename(TQString("P"));
    test.manager.addLoadedProjection(std::move(placeholder), false, 0, nullptr);
    test.save();
    test.expectNoResource();
}

TEST(TQProjectionIntake, AFullDiskMakesNoResource) {
    if (!FileSizeLimit::isAvailable) {
        GTEST_SKIP() << "the system cannot limit the size of files";
    }
    FailedSaveCase test;
    test.load(mercatorFile("P"));
    for (const std::uint64_t room : {0, 11, 40}) { // within the version, the type and the projection's text
        {
            const FileSizeLimit limit(room);
            test.save();
        }
        test.expectNoResource();
        test.expectOldFile();
    }
}

#ifndef _WIN32
TEST(TQProjectionIntake, AReadOnlyFileInAReadOnlyDirectoryMakesNoResource) {
    FailedSaveCase test;
    test.load(mercatorFile("P"));
    using std::filesystem::perms;
    const std::filesystem::path directory = tq_filesystemPath(test.directories.projections());
    std::filesystem::permissions(test.directories.shared().path(), perms::all);
    constexpr perms withoutWriting =
        perms::all & ~(perms::owner_write | perms::group_write | perms::others_write);
    std::filesystem::permissions(tq_filesystemPath(test.path), withoutWriting);
    std::filesystem::permissions(directory, withoutWriting);
    {
        const OrdinaryUser user;
        if (!user.isOrdinary()) {
            GTEST_SKIP() << "the superuser writes everywhere";
        }
        test.save();
    }
    std::filesystem::permissions(directory, perms::owner_all);
    test.expectNoResource();
    test.expectOldFile();
}
#endif

TEST(TQProjectionIntake, WhatCannotBeSavedWritesNothing) {
    IntakeCase test;
    const TQString path = test.directories.users().file("none.proj");
    test.manager.saveProjection(TQString("unknown"), path);
    test.load(mercatorFile("P"));
    test.manager.saveProjection(TQString("P"), test.directories.users().file("missing/p.proj"));
    EXPECT_THAT(test.messages.lines(), IsEmpty());
    EXPECT_THAT(test.directories.users().entries(), ElementsAre("p.proj"));
}

TEST(TQProjectionIntake, AnInvalidExternalProjectionIsSavedAsItIs) {
    IntakeCase test;
    const TQString path = test.directories.users().file("p.proj");
    test.manager.saveProjection(TQString("\tEPSG_999999"), path);
    EXPECT_EQ(readBytes(path), "TQFile v1\n127\nTQPrProj4 v0\n\tEPSG_999999\nEPSG:999999\n");
}

TEST(TQProjectionIntake, AProjectionWithoutTypeKeepsTheHeaderAlone) {
    IntakeCase test;
    auto placeholder = std::make_unique<TQDummyProjection>();
    placeholder->rename(TQString("P"));
    test.manager.addLoadedProjection(std::move(placeholder), false, 0, nullptr);
    const TQString path = test.directories.users().file("p.proj");
    test.manager.saveProjection(TQString("P"), path);
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQProjMgr::saveProjection: Unknown projection type: -1\n"));
    EXPECT_EQ(readBytes(path), "TQFile v1\n");
}
