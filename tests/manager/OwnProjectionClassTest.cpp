// A class of an application in files and documents, on the example of examples/SinusoidalProjection.h, and
// one that nobody has registered.

#include "examples/SinusoidalProjection.h"
#include "manager/TQProjectionFactory.h"
#include "testing/ConvertedPoints.h"
#include "testing/ProbeProjection.h"
#include "testing/ProjectionTables.h"
#include "tests/manager/DocumentCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <numbers>
#include <string>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr bool kIsResource = true;
constexpr int kUnregistered = 42; // the type code of the probe

/// Registers the example, once in the process.
bool registerExample() {
    static const bool isRegistered = tq_registerProjectionClass<SinusoidalProjection>();
    return isRegistered;
}

constexpr double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

/// Three projections of a user: one of the example, one that nobody could read, one of the library.
struct OwnClassCase : DocumentCase {
    OwnClassCase() {
        EXPECT_TRUE(registerExample());
        TQEllipsoid* const unit = manager.ellipsoidManager().addEllipsoid(
            std::make_unique<TQEllipsoid>(TQString("Unit"), 1.0, 0.0));
        auto sinusoidal = std::make_unique<SinusoidalProjection>();
        sinusoidal->setParams(ParameterTable().with("Nom", TQString("S")).with("lambda0", -90.0).table());
        add(std::move(sinusoidal), unit);
        auto probe = std::make_unique<ProbeProjection>();
        probe->rename(TQString("Probe"));
        add(std::move(probe), ellipsoid);
        load("M");
    }

    void add(std::unique_ptr<TQProjection> projection, TQEllipsoid* on) {
        projection->setEllipsoid(on);
        manager.addLoadedProjection(std::move(projection), !kIsResource, kNoFlags, nullptr);
    }
};

/// The numbers of Snyder's example, page 365: a sphere of radius 1, 15 degrees east of the central meridian
/// in 50 degrees south.
void expectSnydersExample(const TQProjection* projection) {
    ASSERT_NE(projection, nullptr);
    EXPECT_STREQ(projection->className(), "SinusoidalProjection");
    const TQPoint geo{radians(-75.0), radians(-50.0)};
    const TQPoint plane = imageOf(*projection, geo);
    EXPECT_NEAR(plane.x, 0.1682814, 5e-8);
    EXPECT_NEAR(plane.y, -0.8726646, 5e-8);
    expectNear(geo, originalOf(*projection, plane), 1e-15);
}

} // namespace

TEST(OwnProjectionClass, IsMadeOfItsTypeCodeOnceItIsRegistered) {
    ASSERT_TRUE(registerExample());
    EXPECT_TRUE(tq_isProjectionTypeKnown(SinusoidalProjection::typeCode));
    const auto made = tq_newProjectionOfType(SinusoidalProjection::typeCode);
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->className(), "SinusoidalProjection");
}

TEST(OwnProjectionClass, IsRefusedWithACodeThatIsTaken) {
    ASSERT_TRUE(registerExample());
    EXPECT_FALSE(tq_registerProjectionClass<SinusoidalProjection>()) << "it is there";
    const auto make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<ProbeProjection>(); };
    for (const int code : {0, 5, 13, 14, 15, 127, -1, 128, 256 + kUnregistered, kUnregistered + 1}) {
        EXPECT_FALSE(tq_registerProjectionClass(code, make)) << code;
    }
    EXPECT_FALSE(tq_registerProjectionClass(kUnregistered, nullptr));
    EXPECT_FALSE(tq_registerProjectionClass(kUnregistered, [] { return std::unique_ptr<TQProjection>(); }));
    EXPECT_FALSE(tq_isProjectionTypeKnown(kUnregistered));
    EXPECT_EQ(tq_newProjectionOfType(kUnregistered), nullptr);
    EXPECT_EQ(tq_newProjectionOfType(5)->projectionType(), 5);
}

TEST(OwnProjectionClass, ComesBackFromADocument) {
    OwnClassCase source;
    TQWriteMemStream written;
    source.manager.archiveTo(&written);
    EXPECT_THAT(
        source.messages.lines(),
        ElementsAre("TQProjMgr::archiveTo(TQWriteStream *, bool): projection Probe of unknown type 42 is "
                    "not written.\n"));
    EmptyManager reader;
    TQReadMemStream stream(written.getMemory().data(), written.getMemory().size());
    constexpr bool inDocument = true;
    EXPECT_TRUE(reader.manager.unarchiveFrom(&stream, inDocument));
    EXPECT_EQ(stream.bytesLeft(), 0U);
    EXPECT_THAT(namesIn(reader.manager), ElementsAre("M", "S"));
    expectSnydersExample(reader.manager.projWithName(TQString("S"), false));
}

TEST(OwnProjectionClass, ComesBackFromItsFile) {
    OwnClassCase test;
    const TQString path = test.directories.users().file("s.proj");
    test.manager.saveProjection(TQString("S"), path);
    EmptyManager reader;
    EXPECT_TRUE(reader.manager.loadProjection(path, !kIsResource, kNoFlags));
    expectSnydersExample(reader.manager.projWithName(TQString("S"), false));
}

TEST(OwnProjectionClass, IsMadeOfATable) {
    OwnClassCase test;
    const int typeCode = SinusoidalProjection::typeCode;
    expectSnydersExample(test.manager.createProjFromParams(ParameterTable()
                                                               .with("Type", typeCode)
                                                               .with("Ellipsoide", TQString("Unit"))
                                                               .with("lambda0", -90.0)
                                                               .get()));
}

TEST(UnregisteredProjectionClass, IsNotSaved) {
    OwnClassCase test;
    const TQString path = test.directories.userFile("p.proj", "what was there");
    test.manager.saveProjection(TQString("Probe"), path);
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQProjMgr::saveProjection: Unknown projection type: 42\n"));
    EXPECT_EQ(test.directories.users().bytesOf("p.proj"), "what was there");
}

TEST(UnregisteredProjectionClass, IsReportedAmongTheFilesOfADocumentWhichHasTheOthers) {
    OwnClassCase test;
    const TemporaryDirectory directory;
    EXPECT_FALSE(test.manager.archiveNecessaryProj(directory.directory()));
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQProjMgr::saveProjection: Unknown projection type: 42\n"));
    EXPECT_THAT(directory.entries(), UnorderedElementsAre("M.proj", "S.proj"));
}

TEST(UnregisteredProjectionClass, IsReportedWhenAnotherManagerAsksForIt) {
    OwnClassCase source;
    EmptyManager other;
    TQProjection* const probe = source.projection("Probe");
    EXPECT_EQ(other.manager.getProjectionWithNameFromGeorefMgr(probe, &source.manager), nullptr);
    EXPECT_THAT(source.messages.lines(),
                ElementsAre("newProjFromStream(TQReadStream *): projection type 42 is unknown.\n"));
    EXPECT_THAT(namesIn(other.manager), IsEmpty());
}
