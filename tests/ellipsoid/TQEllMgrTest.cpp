#include "ellipsoid/TQEllMgr.h"

#include "testing/CapturedMessages.h"
#include "testing/Identity.h"
#include "testing/ProcessState.h"
#include "testing/StreamBytes.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr double kAxis = 6378137.0;
constexpr double kEccentricitySquared = 0.00669438;

std::unique_ptr<TQEllipsoid> ellipsoid(const char* name, double axis = kAxis) {
    return std::make_unique<TQEllipsoid>(TQString(name), axis, kEccentricitySquared);
}

std::string fileOf(const std::string& name, const std::string& axis = "6378137") {
    return "TQEllipsoid v1\n" + name + "\n" + axis + "\n0.00669438\n";
}

std::vector<std::string> namesIn(const TQEllMgr& registry) {
    std::vector<std::string> names;
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* found = registry.ellipsoids().next(state)) {
        names.push_back(found->name() != nullptr ? found->name()->utf8() : "(null)");
    }
    return names;
}

StreamBytes& appendEllipsoid(StreamBytes& bytes, const char* name, double axis,
                             double eccentricitySquared = kEccentricitySquared) {
    return bytes.tag("TQEllipsoid", 4).text(name).number(axis).number(eccentricitySquared).byte(0);
}

/// A registry with one ellipsoid "A", and what becomes of it when an archive holds another of this name.
struct ArchivedNamesakeCase {
    TQEllMgr registry;
    TQEllipsoid* const registered = registry.addEllipsoid(ellipsoid("A"));

    void unarchive(double axis, double eccentricitySquared) {
        StreamBytes bytes;
        bytes.tag("TQEllMgr", 0).integer(1);
        ByteStream stream(appendEllipsoid(bytes, "A", axis, eccentricitySquared));
        EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), TQEllMgr::AllRead);
        EXPECT_EQ(registry.ellipsoidWithName(TQString("A")), registered);
    }

    void expectAxes(double axis, double eccentricitySquared) const {
        EXPECT_EQ(registered->semiMajorAxis(), axis);
        EXPECT_EQ(registered->eccentricitySquared(), eccentricitySquared);
    }
};

/// The directories that a registry loads from.
class Directories {
  public:
    const TemporaryDirectory& ellipsoids() const { return _ellipsoids; }
    const TemporaryDirectory& datums() const { return _datums; }
    void loadInto(TQEllMgr& registry) const {
        registry.loadEllipsoidDirectories(_ellipsoids.directory(), _datums.directory());
    }

  private:
    TemporaryDirectory _ellipsoids;
    TemporaryDirectory _datums;
};

} // namespace

TEST(TQEllMgr, IsAnObjectOfItsClass) {
    const TQEllMgr registry;
    EXPECT_STREQ(registry.className(), "TQEllMgr");
    EXPECT_NE(registry.isKindOf("TQObject"), 0);
    EXPECT_NE(registry.isMemberOf("TQEllMgr"), 0);
    EXPECT_EQ(registry.isMemberOf("TQObject"), 0);
}

TEST(TQEllMgr, FindsEllipsoidsByName) {
    TQEllMgr registry;
    EXPECT_EQ(registry.ellipsoids().bucketCount(), 0);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("A")), nullptr);
    TQEllipsoid* const a = registry.addEllipsoid(ellipsoid("A"));
    TQEllipsoid* const b = registry.addEllipsoid(ellipsoid("B"));
    EXPECT_EQ(registry.ellipsoids().bucketCount(), 50);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("A")), a);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("B")), b);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("a")), nullptr);
    EXPECT_EQ(registry.addEllipsoid(nullptr), nullptr);
    EXPECT_EQ(registry.ellipsoids().count(), 2);
}

TEST(TQEllMgr, TheEllipsoidWithoutNameIsFoundByNoNameAlone) {
    TQEllMgr registry;
    registry.addEllipsoid(ellipsoid(""));
    EXPECT_EQ(registry.ellipsoidWithName(nullptr), nullptr);
    TQEllipsoid* const nameless = registry.addEllipsoid(std::make_unique<TQEllipsoid>());
    EXPECT_EQ(registry.ellipsoidWithName(nullptr), nameless);
    EXPECT_NE(registry.ellipsoidWithName(TQString("")), nameless);
    EXPECT_EQ(registry.ellipsoids().count(), 2);
}

TEST(TQEllMgr, ANewEllipsoidTakesThePlaceOfTheOneOfItsName) {
    TQEllMgr registry;
    const TQEllipsoid* const old = registry.addEllipsoid(ellipsoid("A", 1.0));
    const TQEllipsoid* const now = registry.addEllipsoid(ellipsoid("A", 2.0));
    EXPECT_EQ(registry.ellipsoidWithName(TQString("A")), now);
    EXPECT_EQ(registry.ellipsoids().count(), 1);
    EXPECT_EQ(old->semiMajorAxis(), 1.0) << "projections may still point at it";
}

TEST(TQEllMgr, ACopyHasEllipsoidsOfItsOwn) {
    TQEllMgr registry;
    const TQEllipsoid* const original = registry.addEllipsoid(ellipsoid("A"));
    registry.addEllipsoid(std::make_unique<TQEllipsoid>());
    const auto copy = tq_copyOf(registry);
    ASSERT_EQ(copy->ellipsoids().count(), 2);
    ASSERT_NE(copy->ellipsoidWithName(TQString("A")), nullptr);
    EXPECT_NE(copy->ellipsoidWithName(TQString("A")), original);
    EXPECT_TRUE(copy->ellipsoidWithName(TQString("A"))->isEqual(original));
}

TEST(TQEllMgr, ACopyOutlivesTheOriginal) {
    auto registry = std::make_unique<TQEllMgr>();
    registry->addEllipsoid(ellipsoid("A"));
    const auto copy = tq_copyOf(*registry);
    registry.reset();
    ASSERT_NE(copy->ellipsoidWithName(TQString("A")), nullptr);
    EXPECT_EQ(copy->ellipsoidWithName(TQString("A"))->semiMajorAxis(), kAxis);
}

// ---- Directories

TEST(TQEllMgr, LoadsEllipsoidFilesInTheOrderOfTheirNames) {
    const CapturedMessages messages;
    const Directories directories;
    directories.ellipsoids().fileWith("2.ell", fileOf("A", "2"));
    directories.ellipsoids().fileWith("1.ell", fileOf("A", "1"));
    directories.ellipsoids().fileWith("3.ell", fileOf("B"));
    directories.ellipsoids().fileWith("4.txt", fileOf("C"));
    directories.ellipsoids().fileWith("5.ELL", fileOf("D"));
    TQEllMgr registry;
    directories.loadInto(registry);
    EXPECT_THAT(namesIn(registry), UnorderedElementsAre("A", "B"));
    EXPECT_EQ(registry.ellipsoidWithName(TQString("A"))->semiMajorAxis(), 2.0) << "the later one replaces";
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQEllMgr, BadEllipsoidFilesAreReportedOneByOneAndSkipped) {
    const CapturedMessages messages;
    const Directories directories;
    const TQString noHeader = directories.ellipsoids().fileWith("1.ell", "");
    const TQString version = directories.ellipsoids().fileWith("2.ell", "TQEllipsoid v9\nA\n1\n0\n");
    const TQString cut = directories.ellipsoids().fileWith("3.ell", "TQEllipsoid v1\nA\n1\n");
    directories.ellipsoids().fileWith("4.ell", fileOf("Good"));
    TQEllMgr registry;
    directories.loadInto(registry);
    EXPECT_THAT(namesIn(registry), ElementsAre("Good"));
    const auto report = [](int code, const TQString& path) {
        return "Error Nr " + std::to_string(code) + " while reading ellipsoid file: " + path.utf8() + "\n";
    };
    EXPECT_THAT(messages.lines(),
                ElementsAre(report(5002, noHeader), "TQEllipsoid::loadFromFile: Unknown version\n",
                            report(5003, version), report(5006, cut)));
}

#ifndef _WIN32
TEST(TQEllMgr, AnEllipsoidFileThatMayNotBeReadIsReported) {
    const CapturedMessages messages;
    const Directories directories;
    const TQString path = directories.ellipsoids().fileWith("1.ell", fileOf("A"));
    directories.ellipsoids().fileWith("2.ell", fileOf("B"));
    std::filesystem::permissions(tq_filesystemPath(path), std::filesystem::perms::none);
    std::filesystem::permissions(directories.ellipsoids().path(), std::filesystem::perms::all);
    const OrdinaryUser user;
    if (!user.isOrdinary()) {
        GTEST_SKIP() << "the superuser reads everything";
    }
    TQEllMgr registry;
    directories.loadInto(registry);
    EXPECT_THAT(namesIn(registry), ElementsAre("B"));
    EXPECT_THAT(messages.lines(),
                ElementsAre("Error Nr 5001 while reading ellipsoid file: " + path.utf8() + "\n"));
}
#endif

TEST(TQEllMgr, ADatumOfAnEllipsoidThatHasOneTakesItsPlace) {
    const Directories directories;
    directories.ellipsoids().fileWith("a.ell", fileOf("A"));
    directories.datums().fileWith("D.dtm", "# 1\nA\n1 2 3 4e-6 5e-6 6e-6 7\nA\n");
    directories.datums().fileWith("E.dtm", "# 1\nA/D\n10 20 30\nA\n");
    TQEllMgr registry;
    directories.loadInto(registry);
    const TQEllipsoid* const local = registry.ellipsoidWithName(TQString("A/D"));
    const TQEllipsoid* const both = registry.ellipsoidWithName(TQString("A/D/E"));
    ASSERT_NE(both, nullptr);
    EXPECT_EQ(both->datumShiftKind(), TQEllipsoid::ThreeParameterShift);
    EXPECT_THAT(both->datumShiftParameters(), ElementsAre(10.0, 20.0, 30.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(local->datumShiftKind(), TQEllipsoid::SevenParameterShift);
    EXPECT_THAT(local->datumShiftParameters(), ElementsAre(1.0, 2.0, 3.0, 4e-6, 5e-6, 6e-6, 7.0));
}

TEST(TQEllMgr, LoadsDatumFilesAfterTheEllipsoids) {
    const CapturedMessages messages;
    const Directories directories;
    directories.ellipsoids().fileWith("a.ell", fileOf("A"));
    directories.ellipsoids().fileWith("b.ell", fileOf("B"));
    directories.datums().fileWith("D.dtm", "# 1\nA\n1 2 3\nB\n");
    directories.datums().fileWith("E.dtm", "# 1\nA/D\n4 5 6\nA\n");
    directories.datums().fileWith("F.txt", "# 1\nA\n1 2 3\nB\n");
    directories.datums().fileWith("five.dtm", "# 1\nA\n1 2 3 4 5\nB\n");
    directories.datums().fileWith("empty.dtm", "");
    TQEllMgr registry;
    directories.loadInto(registry);
    EXPECT_THAT(namesIn(registry), UnorderedElementsAre("A", "B", "A/D", "A/D/E"));
    EXPECT_THAT(messages.lines(), IsEmpty()) << "bad datum files are skipped silently";
}

TEST(TQEllMgr, WithoutADirectoryOfEllipsoidsNothingIsLoaded) {
    const Directories directories;
    directories.datums().fileWith("D.dtm", "# 1\nA\n1 2 3\nA\n");
    TQEllMgr registry;
    registry.addEllipsoid(ellipsoid("A"));
    registry.loadEllipsoidDirectories(directories.ellipsoids().file("missing"),
                                      directories.datums().directory());
    EXPECT_EQ(registry.ellipsoids().count(), 1);
}

TEST(TQEllMgr, WithoutADirectoryOfDatumsTheEllipsoidsAreLoaded) {
    const Directories directories;
    directories.ellipsoids().fileWith("a.ell", fileOf("A"));
    TQEllMgr registry;
    registry.loadEllipsoidDirectories(directories.ellipsoids().directory(),
                                      directories.datums().file("missing"));
    EXPECT_THAT(namesIn(registry), ElementsAre("A"));
}

TEST(TQEllMgr, ADirectoryWithTheExtensionIsNoFile) {
    const CapturedMessages messages;
    const Directories directories;
    std::filesystem::create_directory(directories.ellipsoids().path() / "x.ell");
    directories.ellipsoids().fileWith("a.ell", fileOf("A"));
    TQEllMgr registry;
    directories.loadInto(registry);
    EXPECT_THAT(namesIn(registry), ElementsAre("A"));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

// ---- Archives

TEST(TQEllMgr, WritesTheNumberAndEachEllipsoid) {
    TQEllMgr registry;
    StreamBytes expected;
    expected.tag("TQEllMgr", 0).integer(0);
    EXPECT_EQ(archivedBytes(registry), expected.bytes());
    registry.addEllipsoid(ellipsoid("A"));
    StreamBytes one;
    one.tag("TQEllMgr", 0).integer(1);
    EXPECT_EQ(archivedBytes(registry), appendEllipsoid(one, "A", kAxis).bytes());
}

TEST(TQEllMgr, ReadsWhatItWrote) {
    TQEllMgr registry;
    for (const char* name : {"A", "B", "C", "A/D"}) {
        registry.addEllipsoid(ellipsoid(name));
    }
    TQEllMgr back;
    ByteStream stream(archivedBytes(registry));
    EXPECT_EQ(back.unarchiveFrom(stream.get(), true), TQEllMgr::AllRead);
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(namesIn(back), namesIn(registry));
    TQEllMgr byObject;
    ByteStream again(archivedBytes(registry));
    static_cast<TQObject&>(byObject).unarchiveFrom(again.get());
    EXPECT_EQ(namesIn(byObject), namesIn(registry));
}

TEST(TQEllMgr, AnArchivedEllipsoidGivesItsAxesToTheOneOfItsName) {
    ArchivedNamesakeCase test;
    test.unarchive(6370000.0, 0.0067);
    test.expectAxes(6370000.0, 0.0067);
}

TEST(TQEllMgr, TellsWhichEllipsoidsGotOtherAxes) {
    const CapturedMessages messages;
    TQEllMgr registry;
    const TQEllipsoid* const a = registry.addEllipsoid(ellipsoid("A"));
    registry.addEllipsoid(ellipsoid("B"));
    StreamBytes bytes;
    bytes.tag("TQEllMgr", 0).integer(4);
    appendEllipsoid(bytes, "A", 6370000.0);
    appendEllipsoid(bytes, "B", kAxis);
    appendEllipsoid(bytes, "C", 6370000.0);
    ByteStream stream(bytes.byte(7)); // in place of the fourth one
    EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), TQEllMgr::NotRead);
    EXPECT_THAT(TQEllMgr(registry).takeChanged(), IsEmpty());
    EXPECT_THAT(registry.takeChanged(), ElementsAre(a)) << "also before a fault";
    EXPECT_THAT(registry.takeChanged(), IsEmpty()) << "they were taken";
}

TEST(TQEllMgr, AnArchivedEllipsoidOfAnotherNameIsAdded) {
    TQEllMgr registry;
    registry.addEllipsoid(ellipsoid("A"));
    StreamBytes bytes;
    bytes.tag("TQEllMgr", 0).integer(1);
    ByteStream stream(appendEllipsoid(bytes, "B", 6380000.0));
    EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), 100);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("A"))->semiMajorAxis(), kAxis);
    EXPECT_EQ(registry.ellipsoidWithName(TQString("B"))->semiMajorAxis(), 6380000.0);
}

TEST(TQEllMgr, AnEqualArchivedEllipsoidChangesNothing) {
    ArchivedNamesakeCase test;
    test.unarchive(kAxis + 0.5, kEccentricitySquared + 5e-8); // within a metre and 1e-7
    test.expectAxes(kAxis, kEccentricitySquared);
}

TEST(TQEllMgr, AnotherEccentricityAloneMakesAnotherEllipsoid) {
    ArchivedNamesakeCase test;
    test.unarchive(kAxis, kEccentricitySquared + 2e-7);
    test.expectAxes(kAxis, kEccentricitySquared + 2e-7);
}

TEST(TQEllMgr, AShiftAloneMakesAnotherEllipsoidAndStays) {
    ArchivedNamesakeCase test;
    test.registered->setDatumShift(TQEllipsoid::ThreeParameterShift, 6377000.0, 0.0033, {1.0, 2.0, 3.0});
    test.unarchive(kAxis + 0.5, kEccentricitySquared);
    test.expectAxes(kAxis + 0.5, kEccentricitySquared);
    EXPECT_EQ(test.registered->datumShiftKind(), TQEllipsoid::ThreeParameterShift);
    EXPECT_EQ(test.registered->refSemiMajorAxis(), 6377000.0);
    EXPECT_EQ(test.registered->refFlattening(), 0.0033);
    EXPECT_THAT(test.registered->datumShiftParameters(), ElementsAre(1.0, 2.0, 3.0, 0.0, 0.0, 0.0, 0.0));
}

TEST(TQEllMgr, ACountBelowOneEndsTheBlockAtOnce) {
    for (const int count : {0, -1}) {
        TQEllMgr registry;
        StreamBytes bytes;
        ByteStream stream(bytes.tag("TQEllMgr", 0).integer(count).byte(7));
        EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), 100);
        EXPECT_EQ(stream.get()->bytesLeft(), 1U);
    }
}

TEST(TQEllMgr, AnUnknownVersionIsReportedAndNothingRead) {
    const CapturedMessages messages;
    TQEllMgr registry;
    StreamBytes bytes;
    ByteStream stream(bytes.tag("TQEllMgr", 1).integer(1));
    EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), 102);
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQEllMgr::unarchiveFrom(TQReadStream *stream): version 1 is unknown.\n"));
    EXPECT_EQ(registry.ellipsoids().count(), 0);
}

TEST(TQEllMgr, AnArchiveThatIsCutOffKeepsWhatWasRead) {
    const CapturedMessages messages;
    TQEllMgr registry;
    registry.addEllipsoid(ellipsoid("A"));
    registry.addEllipsoid(ellipsoid("B"));
    const std::string bytes = archivedBytes(registry);
    expectEveryCutIsNoticed(bytes, [](TQReadStream* stream) {
        TQEllMgr back;
        EXPECT_EQ(back.unarchiveFrom(stream, true), 102);
        EXPECT_LT(back.ellipsoids().count(), 2);
    });
}

TEST(TQEllMgr, AHugeCountEndsWithTheStream) {
    const CapturedMessages messages;
    TQEllMgr registry;
    StreamBytes bytes;
    bytes.tag("TQEllMgr", 0).integer(2147483647);
    ByteStream stream(appendEllipsoid(bytes, "A", kAxis));
    EXPECT_EQ(registry.unarchiveFrom(stream.get(), true), 102);
    EXPECT_THAT(namesIn(registry), ElementsAre("A"));
}

TEST(TQEllMgr, AnEllipsoidOfAnUnknownVersionEndsTheReading) {
    const CapturedMessages messages;
    TQEllMgr manager;
    ByteStream stream(StreamBytes().tag("TQEllMgr", 0).integer(1).tag("TQEllipsoid", 5).text("Later"));
    EXPECT_EQ(manager.unarchiveFrom(stream.get(), true), TQEllMgr::NotRead);
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_EQ(manager.ellipsoids().count(), 0);
}
