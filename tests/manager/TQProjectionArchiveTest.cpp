#include "support/TQDirectory.h"
#include "testing/ConvertedPoints.h"
#include "testing/MadeProjection.h"
#include "tests/manager/DocumentCase.h"
#include "tests/manager/EveryProjectionType.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <numbers>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

using namespace std::string_literals;

constexpr bool kUsedOnly = true;
constexpr bool kIsResource = true;
constexpr int kTransverseMercator = 4;
constexpr int kGaussKruger = 1;
constexpr int kProj4 = 127;

std::string written(const TQProjMgr& manager, bool usedOnly) {
    TQWriteMemStream stream;
    manager.archiveTo(&stream, usedOnly);
    const auto memory = stream.getMemory();
    return {memory.begin(), memory.end()};
}

/// A manager with kEllipsoid whose projections are made, so that no text comes from a file.
struct ArchiveCase : DocumentCase {
    TQProjection* add(const std::string& name, double meridian = 0.0, bool isResource = false) {
        auto projection = tq_newProjectionOfType(kMercator);
        projection->setParams(ParameterTable()
                                  .with("Nom", TQString(name.c_str()))
                                  .with("lambda0", meridian)
                                  .with("X0", 0.0)
                                  .table());
        projection->setEllipsoid(ellipsoid);
        manager.addLoadedProjection(std::move(projection), isResource, kNoFlags, nullptr);
        return manager.projWithName(TQString(name.c_str()), false);
    }

    void addPlaceholder(const char* name) {
        auto placeholder = std::make_unique<TQDummyProjection>();
        placeholder->rename(TQString(name));
        manager.addLoadedProjection(std::move(placeholder), false, kNoFlags, nullptr);
    }

    /// The manager's archive with direct Mercators at longitude 0.
    static std::string archiveOf(const std::vector<std::string>& names) {
        StreamBytes bytes = ellipsoidsBlock(kEllipsoid, 6378137.0, 0.006694379990141);
        bytes.tag("TQProjMgr", 0).integer(static_cast<std::int32_t>(names.size()));
        std::uint32_t number = 0;
        for (const std::string& name : names) {
            bytes.append(mercatorEntry(++number, name));
        }
        return bytes.bytes();
    }

    std::vector<std::string> namesInTableOrder() const {
        std::vector<std::string> names;
        HashState<TQProjection> state;
        while (const TQProjection* projection = manager.traverseUserProjs(&state)) {
            names.push_back(projection->name()->utf8());
        }
        return names;
    }
};

} // namespace

// ---- Writing

TEST(TQProjectionArchive, WritesTheEllipsoidsAndTheProjections) {
    ArchiveCase test;
    test.add("P", 7.5);
    const std::string bytes = written(test.manager, !kUsedOnly);
    EXPECT_EQ(bytes, ellipsoidsBlock(kEllipsoid, 6378137.0, 0.006694379990141)
                         .tag("TQProjMgr", 0)
                         .integer(1)
                         .append(introduction(1))
                         .byte(kMercator)
                         .append(mercatorBlock("P", 7.5))
                         .bytes());
    EXPECT_EQ(archivedBytes(test.manager), bytes);
}

TEST(TQProjectionArchive, AnEmptyManagerWritesTwoEmptyBlocks) {
    const EmptyManager test;
    for (const bool usedOnly : {false, true}) {
        EXPECT_EQ(written(test.manager, usedOnly), documentHead(0).bytes());
    }
}

TEST(TQProjectionArchive, ProjectionsAreNumberedInTableOrder) {
    ArchiveCase test;
    for (const char* name : {"C", "A", "D", "B"}) {
        test.add(name);
    }
    EXPECT_EQ(written(test.manager, !kUsedOnly), ArchiveCase::archiveOf(test.namesInTableOrder()));
}

TEST(TQProjectionArchive, NoResourceIsWrittenUnlessOnlyUsedOnesAre) {
    ArchiveCase test;
    test.observe("u", &test.one)->used = test.add("R", 0.0, kIsResource);
    EXPECT_EQ(written(test.manager, !kUsedOnly), ArchiveCase::archiveOf({}));
    EXPECT_EQ(written(test.manager, kUsedOnly), ArchiveCase::archiveOf({"R"}));
}

TEST(TQProjectionArchive, WhatIsUsedCountsOnlyIfAskedFor) {
    ArchiveCase test;
    test.add("Used");
    test.add("Unused");
    test.add("Unused resource", 0.0, kIsResource);
    test.observe("1", &test.one);
    test.observe("2", &test.two)->used = test.projection("Used");
    EXPECT_EQ(written(test.manager, kUsedOnly), ArchiveCase::archiveOf({"Used"}));
    std::vector<std::string> ofUser = test.namesInTableOrder();
    std::erase(ofUser, "Unused resource");
    EXPECT_EQ(written(test.manager, !kUsedOnly), ArchiveCase::archiveOf(ofUser));
}

TEST(TQProjectionArchive, PlaceholdersAreNeitherCountedNorWritten) {
    ArchiveCase test;
    test.addPlaceholder("A");
    test.add("B");
    test.addPlaceholder("C");
    EXPECT_EQ(written(test.manager, !kUsedOnly), ArchiveCase::archiveOf({"B"}));
    test.observe("u", &test.one)->used = test.projection("A");
    EXPECT_EQ(written(test.manager, kUsedOnly), ArchiveCase::archiveOf({}));
}

TEST(TQProjectionArchive, WhatRefersToAProjectionLaterIsItsNumber) {
    ArchiveCase test;
    const TQProjection* const projection = test.add("P");
    TQWriteMemStream stream;
    test.manager.archiveTo(&stream, !kUsedOnly);
    stream.writeObjReference(projection);
    const auto memory = stream.getMemory();
    const std::string bytes(memory.begin(), memory.end());
    EXPECT_EQ(bytes, ArchiveCase::archiveOf({"P"}) + StreamBytes().integer(1).bytes());
}

TEST(TQProjectionArchive, EllipsoidsOfOneNameThatDifferAreReportedOnce) {
    TQEllipsoid registered(TQString("\tOwn"), 6378137.0, 0.0067);
    TQEllipsoid same(TQString("\tOwn"), 6378137.0, 0.0067);
    TQEllipsoid other(TQString("\tOwn"), 6378137.001, 0.0067);
    DocumentCase test;
    for (const auto& [name, ellipsoid] : {std::pair{"A", &registered}, {"B", &same}}) {
        test.manager.addLoadedProjection(variedProjection(kMercator, name, ellipsoid), !kIsResource, kNoFlags,
                                         nullptr);
    }
    written(test.manager, !kUsedOnly);
    EXPECT_THAT(test.messages.lines(), IsEmpty());
    for (const char* name : {"C", "D"}) {
        test.manager.addLoadedProjection(variedProjection(kMercator, name, &other), !kIsResource, kNoFlags,
                                         nullptr);
    }
    written(test.manager, !kUsedOnly);
    ASSERT_EQ(test.messages.lines().size(), 1U);
    EXPECT_THAT(
        test.messages.lines().front(),
        HasSubstr("TQProjMgr::archiveTo(TQWriteStream *, bool): there are several ellipsoids named \tOwn;"));
}

TEST(TQProjectionArchive, NoEllipsoidIsAnEmptyName) {
    EmptyManager test;
    auto projection = tq_newProjectionOfType(kMercator);
    projection->setParams(
        ParameterTable().with("Nom", TQString("P")).with("lambda0", 7.5).with("X0", 0.0).table());
    test.manager.addLoadedProjection(std::move(projection), false, kNoFlags, nullptr);
    const std::string expected = "\x08TQEllMgr\x00\x00"s  // tag
                                 "\x00\x00\x00\x00"s      // no ellipsoids
                                 "\x09TQProjMgr\x00\x00"s // tag
                                 "\x01\x00\x00\x00"s      // one projection
                                 "\x01\x00\x00\x80"s      // number 1, which follows
                                 "\x05"s                  // type code
                                 "\x0ETQPrMercDirect\x00\x00"s
                                 "\x0CTQPrMercator\x00\x00"s
                                 "\x0CTQProjection\x01\x00"s
                                 "\x02\x01\x00\x00\x00P"s             // name
                                 "\x02\x00\x00\x00\x00"s              // name of the ellipsoid
                                 "\x00\x00\x00\x00\x00\x00\x1E\x40"s  // lambda0, 7.5
                                 "\x00\x00\x00\x00\x00\x00\x00\x00"s  // phi0
                                 "\x00\x00\x00\x00\x00\x00\x00\x00"s  // X0
                                 "\x00\x00\x00\x00\x00\x00\x00\x00"s  // Y0
                                 "\x00\x00\x00\x00\x00\x00\xF0\x3F"s; // k0, 1
    EXPECT_EQ(written(test.manager, !kUsedOnly), expected);
}

TEST(TQProjectionArchive, AProjectionOfPROJHasTheTypeCode127) {
    EmptyManager test;
    test.manager.createProjFromParams(ParameterTable()
                                          .with("Type", kProj4)
                                          .with("Nom", TQString("P"))
                                          .with("definition", TQString("EPSG:2154"))
                                          .get());
    const StreamBytes block = StreamBytes().tag("TQPrProj4", 0).text("P").text("EPSG:2154");
    EXPECT_EQ(written(test.manager, !kUsedOnly), documentHead(1).append(entry(1, kProj4, block)).bytes());
}

// ---- Every type

class TQProjectionArchiveType : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(All, TQProjectionArchiveType, testing::ValuesIn(kTypeCodes));

TEST_P(TQProjectionArchiveType, ComesBackFromADocument) {
    ArchiveCase source;
    source.manager.addLoadedProjection(variedProjection(GetParam(), "P", source.ellipsoid), false, kNoFlags,
                                       nullptr);
    const std::string bytes = written(source.manager, !kUsedOnly);
    EmptyManager target;
    ByteStream stream(bytes);
    target.manager.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    const TQProjection* const original = source.projection("P");
    const TQProjection* const copy = target.manager.projWithName(TQString("P"), false);
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->className(), original->className());
    EXPECT_EQ(copy->projectionType(), GetParam());
    EXPECT_EQ(listedParameters(*copy), listedParameters(*original));
    EXPECT_EQ(copy->ellipsoid(), GetParam() == kProj4 ? nullptr
                                                      : target.manager.ellipsoidManager().ellipsoidWithName(
                                                            TQString(kEllipsoid)));
    EXPECT_FALSE(copy->isResource());
    EXPECT_FALSE(copy->isUserDefined());
    EXPECT_EQ(written(target.manager, !kUsedOnly), bytes);
    EXPECT_THAT(source.messages.lines(), IsEmpty());
}

// ---- Reading one projection

namespace {

/// Reads entries one by one.
struct EntryCase : DocumentCase {
    std::unique_ptr<TQProjection> readEntry(const StreamBytes& bytes, std::uint32_t flags = 0) {
        stream.emplace(bytes);
        stream->get()->setFlags(flags);
        return readNext();
    }

    std::unique_ptr<TQProjection> readNext() { return manager.newProjFromStream(stream->get()); }

    std::optional<ByteStream> stream;
};

} // namespace

TEST(TQProjectionArchive, OneProjectionIsReadAndNotRegistered) {
    EntryCase test;
    const auto projection = test.readEntry(mercatorEntry(1, "P", 7.5));
    ASSERT_NE(projection, nullptr);
    EXPECT_STREQ(projection->className(), "TQPrMercDirect");
    EXPECT_EQ(*projection->name(), "P");
    EXPECT_EQ(meridianOf(projection.get()), 7.5);
    EXPECT_EQ(projection->ellipsoid(), test.ellipsoid);
    EXPECT_EQ(test.stream->get()->objForReference(1), projection.get());
    EXPECT_TRUE(test.stream->isReadExactly());
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
    EXPECT_THAT(test.journal, IsEmpty());
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionArchive, OneThatIsReadConverts) {
    EntryCase test;
    const auto projection = test.readEntry(mercatorEntry(1, "P", 7.5));
    const double onTheMeridian = 7.5 * std::numbers::pi / 180.0;
    TQPoint global(1.0, 1.0);
    EXPECT_EQ(projection->convertGeoPt(TQPoint(onTheMeridian, 0.0), global), 0);
    EXPECT_NEAR(global.x, 0.0, 1e-6);
    EXPECT_NEAR(global.y, 0.0, 1e-6);
}

TEST(TQProjectionArchive, TheStreamsFlagSaysWhetherOneIsAResource) {
    EntryCase test;
    for (const std::uint32_t flags : {0U, 1U, 4U, 8U, 64U, 5U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        const auto projection = test.readEntry(mercatorEntry(1, "P"), flags);
        EXPECT_EQ(projection->isResource(), (flags & 1U) == 0) << flags;
        EXPECT_FALSE(projection->isUserDefined());
    }
}

TEST(TQProjectionArchive, AReferenceThatCannotBeReadIsNoProjection) {
    EntryCase test;
    EXPECT_EQ(test.readEntry(StreamBytes()), nullptr);
    EXPECT_EQ(test.readEntry(StreamBytes().byte(1).byte(0)), nullptr);
    EXPECT_EQ(test.readEntry(StreamBytes().integer(1)), nullptr) << "to what was never introduced";
    EXPECT_EQ(test.readEntry(StreamBytes().integer(0)), nullptr) << "to nothing";
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionArchive, AProjectionThatWasReadBeforeIsReported) {
    EntryCase test;
    const auto first = test.readEntry(mercatorEntry(1, "P").integer(1));
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(test.readNext(), nullptr);
    EXPECT_THAT(
        test.messages.lines(),
        ElementsAre(
            "TQProjection *newProjFromStream(TQReadStream *stream): projection already unarchived ?!?\n"));
}

TEST(TQProjectionArchive, AnUnknownTypeCodeIsReported) {
    for (const int code : {14, 16, 100, 126, -1, -2, -113, -128}) {
        EntryCase test;
        EXPECT_EQ(test.readEntry(entry(1, code, mercatorBlock("P"))), nullptr);
        EXPECT_THAT(test.messages.lines(), ElementsAre("newProjFromStream(TQReadStream *): projection type " +
                                                       std::to_string(code) + " is unknown.\n"));
    }
}

TEST(TQProjectionArchive, AnUnregisteredEllipsoidMakesAProjectionUnreadable) {
    EntryCase test;
    EXPECT_EQ(test.readEntry(mercatorEntry(1, "P", 0.0, "Nowhere 1900")), nullptr);
    EXPECT_THAT(
        test.messages.lines(),
        ElementsAre("TQProjMgr::awakeOneProjection(): could not find ellipsoid named Nowhere 1900\n"));
    EXPECT_EQ(test.stream->get()->objForReference(1), nullptr);
}

TEST(TQProjectionArchive, AProjectionOfPROJNeedsNoEllipsoid) {
    EntryCase test;
    const auto projection =
        test.readEntry(entry(1, kProj4, StreamBytes().tag("TQPrProj4", 0).text("L93").text("EPSG:2154")));
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), "L93");
    TQPoint global;
    EXPECT_EQ(projection->convertGeoPt(TQPoint(0.05, 0.8), global), 0);
    EXPECT_EQ(test.stream->get()->objForReference(1), projection.get());
}

TEST(TQProjectionArchive, ACutOffProjectionIsNoticed) {
    EntryCase test;
    expectEveryCutIsNoticed(mercatorEntry(1, "P").bytes(), [&test](TQReadStream* stream) {
        EXPECT_EQ(test.manager.newProjFromStream(stream), nullptr);
    });
}

namespace {

/// A Gauss-Krueger of an old document.
StreamBytes oldGaussKruger(double lambda0, double k0, double X0, double Y0) {
    return StreamBytes()
        .tag("TQPrGaussKruger", 0)
        .tag("TQProjection", 0)
        .counted("Zone")
        .counted(kEllipsoid)
        .numbers({lambda0, k0, X0, Y0})
        .integer(3);
}

} // namespace

TEST(TQProjectionArchive, AnOldGaussKrugerWithOtherParametersIsATransverseMercator) {
    struct Parameters {
        double scale;
        double northing;
    };
    for (const auto& [scale, northing] : {Parameters{0.9996, 0.0}, {1.0, -200000.0}, {0.9996, 1.0}}) {
        EntryCase test;
        const auto projection =
            test.readEntry(entry(1, kGaussKruger, oldGaussKruger(9.0, scale, 3500000.0, northing)), 1);
        ASSERT_NE(projection, nullptr);
        EXPECT_STREQ(projection->className(), "TQPrMercTransv");
        EXPECT_EQ(projection->projectionType(), kTransverseMercator);
        EXPECT_EQ(*projection->name(), "Zone");
        EXPECT_EQ(projection->ellipsoid(), test.ellipsoid);
        EXPECT_EQ(numberOf(projection.get(), "lambda0"), 9.0);
        EXPECT_EQ(numberOf(projection.get(), "phi0"), 0.0);
        EXPECT_EQ(numberOf(projection.get(), "X0"), 3500000.0);
        EXPECT_EQ(numberOf(projection.get(), "Y0"), northing);
        EXPECT_EQ(numberOf(projection.get(), "k0"), scale);
        EXPECT_FALSE(projection->isResource());
        EXPECT_EQ(test.stream->get()->objForReference(1), projection.get());
        EXPECT_TRUE(test.stream->isReadExactly());
    }
}

TEST(TQProjectionArchive, AGaussKrugerOfAnyVersionStaysOne) {
    const auto base = [](int version) {
        return StreamBytes()
            .tag("TQPrGaussKruger", version)
            .tag("TQProjection", 1)
            .text("Zone")
            .text(kEllipsoid);
    };
    for (const StreamBytes& block :
         {oldGaussKruger(9.0, 1.0, 3500000.0, 0.0), base(1).number(9.0), base(2).numbers({9.0, 3500000.0})}) {
        EntryCase test;
        const auto projection = test.readEntry(entry(1, kGaussKruger, block));
        ASSERT_NE(projection, nullptr);
        EXPECT_STREQ(projection->className(), "TQPrGaussKruger");
        EXPECT_EQ(projection->ellipsoid(), test.ellipsoid);
        EXPECT_EQ(meridianOf(projection.get()), 9.0);
    }
}

TEST(TQProjectionArchive, AnOldGaussKrugerThatBecameAnotherConvertsLikeIt) {
    EntryCase test;
    const auto projection =
        test.readEntry(entry(1, kGaussKruger, oldGaussKruger(9.0, 0.9996, 500000.0, 0.0)));
    const MadeProjection utm(kTransverseMercator, {kEllipsoid, 6378137.0, 0.006694379990141},
                             {{"lambda0", 9.0}, {"X0", 500000.0}, {"k0", 0.9996}});
    TQPoint expected;
    TQPoint global;
    const TQPoint geo(0.17, 0.8);
    EXPECT_EQ(utm->convertGeoPt(geo, expected), 0);
    EXPECT_EQ(projection->convertGeoPt(geo, global), 0);
    EXPECT_EQ(global.x, expected.x);
    EXPECT_EQ(global.y, expected.y);
}

// ---- Awakening

namespace {

/// A projection that has read the name of its ellipsoid.
std::unique_ptr<TQProjection> asleep(const std::string& ellipsoid) {
    auto projection = tq_newProjectionOfType(kMercator);
    ByteStream stream(mercatorBlock("P", 0.0, ellipsoid));
    projection->unarchiveFrom(stream.get());
    return projection;
}

} // namespace

TEST(TQProjectionArchive, AProjectionAwakesWithTheEllipsoidOfTheNameThatItRead) {
    DocumentCase test;
    for (const char* name : {"WGS 84", "WGS 84\r", "WGS 84\r\r\r"}) {
        const auto projection = asleep(name);
        EXPECT_NE(projection->pendingEllipsoidName(), nullptr);
        EXPECT_TRUE(test.manager.awakeOneProjection(*projection));
        EXPECT_EQ(projection->ellipsoid(), test.ellipsoid);
        EXPECT_EQ(projection->pendingEllipsoidName(), nullptr);
    }
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionArchive, AnEmptyNameIsNoEllipsoid) {
    DocumentCase test;
    for (const char* name : {"", "\r", "\r\r"}) {
        const auto projection = asleep(name);
        EXPECT_TRUE(test.manager.awakeOneProjection(*projection));
        EXPECT_EQ(projection->ellipsoid(), nullptr);
        EXPECT_EQ(projection->pendingEllipsoidName(), nullptr);
    }
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionArchive, AnUnknownEllipsoidIsReportedWithoutItsReturns) {
    for (const auto& [read, reported] :
         {std::pair{"Nowhere\r\r", "Nowhere"}, {"\rWGS 84", "\rWGS 84"}, {"wgs 84", "wgs 84"}}) {
        DocumentCase test;
        const auto projection = asleep(read);
        EXPECT_FALSE(test.manager.awakeOneProjection(*projection));
        EXPECT_EQ(projection->ellipsoid(), nullptr);
        EXPECT_EQ(projection->pendingEllipsoidName(), nullptr);
        EXPECT_THAT(
            test.messages.lines(),
            ElementsAre(std::string("TQProjMgr::awakeOneProjection(): could not find ellipsoid named ") +
                        reported + "\n"));
    }
}

TEST(TQProjectionArchive, AProjectionThatIsAwakeStaysAsItIs) {
    DocumentCase test;
    TQEllipsoid foreign(TQString("Foreign"), 6378137.0, 0.0067);
    const auto projection = tq_newProjectionOfType(kMercator);
    projection->setEllipsoid(&foreign);
    EXPECT_TRUE(test.manager.awakeOneProjection(*projection));
    EXPECT_EQ(projection->ellipsoid(), &foreign);
}

// ---- Reading a document

TEST(TQProjectionArchive, ADocumentBringsItsEllipsoidsAlong) {
    EmptyManager test;
    ByteStream stream(ellipsoidsBlock("Own 1900", 6400000.0, 0.0199)
                          .tag("TQProjMgr", 0)
                          .integer(2)
                          .append(mercatorEntry(1, "P", 1.0, "Own 1900"))
                          .append(mercatorEntry(2, "Q", 2.0, "Own 1900")));
    test.manager.unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "Q"));
    const TQEllipsoid* const own = test.manager.ellipsoidManager().ellipsoidWithName(TQString("Own 1900"));
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->semiMajorAxis(), 6400000.0);
    for (const char* name : {"P", "Q"}) {
        EXPECT_EQ(test.manager.projWithName(TQString(name), false)->ellipsoid(), own);
    }
}

namespace {

/// A document whose ellipsoid has the name of a registered one and other axes, and the registered
/// projection "P" on that.
struct OtherAxesCase : DocumentCase {
    const TQProjection* present = load("P");

    OtherAxesCase() {
        read(ellipsoidsBlock(kEllipsoid, 6400000.0, 0.0199)
                 .tag("TQProjMgr", 0)
                 .integer(1)
                 .append(mercatorEntry(1, "P")));
    }
};

} // namespace

TEST(TQProjectionArchive, ADocumentGivesItsAxesToTheRegisteredEllipsoid) {
    OtherAxesCase test;
    EXPECT_EQ(test.projection("P"), test.present) << "on the same ellipsoid as the document's";
    EXPECT_EQ(test.present->ellipsoid(), test.ellipsoid);
    EXPECT_EQ(test.ellipsoid->semiMajorAxis(), 6400000.0);
    EXPECT_EQ(test.ellipsoid->eccentricitySquared(), 0.0199);
}

class DocumentAxesType : public testing::TestWithParam<int> {};

// But for those of PROJ, which have no ellipsoid.
INSTANTIATE_TEST_SUITE_P(All, DocumentAxesType,
                         testing::ValuesIn(std::begin(kTypeCodes), std::prev(std::end(kTypeCodes))));

TEST_P(DocumentAxesType, AProjectionOnAnEllipsoidThatADocumentChangesFollowsIt) {
    constexpr double axis = 6400000.0;
    constexpr double eccentricitySquared = 0.0199;
    constexpr TQPoint geo{0.06, 0.8};
    DocumentCase test;
    constexpr bool isResource = true;
    test.manager.addLoadedProjection(variedProjection(GetParam(), "P", test.ellipsoid), isResource, kNoFlags,
                                     nullptr);
    const TQProjection* const present = test.projection("P");
    const TQPoint before = imageOf(*present, geo);
    test.read(ellipsoidsBlock(kEllipsoid, axis, eccentricitySquared).tag("TQProjMgr", 0).integer(0));
    TQEllipsoid ofDocument(TQString(kEllipsoid), axis, eccentricitySquared);
    const auto made = variedProjection(GetParam(), "Q", &ofDocument);
    made->initConstants(); // the modified Mercator computes them before it takes its scale factor of
                           // latitudes
    const TQPoint expected = imageOf(*made, geo);
    EXPECT_NE(expected, before);
    EXPECT_EQ(imageOf(*present, geo), expected);
    EXPECT_EQ(imageOf(*tq_copyOf(*present), geo), expected);
}

TEST(TQProjectionArchive, ProjectionsFollowTheEllipsoidsOfADocumentThatIsCutOff) {
    DocumentCase test;
    const TQProjection* const present = test.load("P");
    ByteStream stream(ellipsoidsBlock(kEllipsoid, 6400000.0, 0.0199));
    EXPECT_FALSE(test.manager.unarchiveFrom(stream.get(), true));
    EXPECT_NEAR(imageOf(*present, {1.0, 0.0}).x, 6400000.0, 1e-6) << "one radian of the equator";
}

TEST(TQProjectionArchive, ObserversHearOfEachProjectionThatADocumentAdds) {
    DocumentCase test;
    test.observe("1", &test.one);
    test.observe("2", &test.two);
    test.read(documentHead(2).append(mercatorEntry(1, "P")).append(mercatorEntry(2, "Q")));
    EXPECT_THAT(test.journal, ElementsAre("1 changed", "2 changed", "1 changed", "2 changed"));
}

TEST(TQProjectionArchive, WhatIsBehindTheBlocksIsLeftToOthers) {
    DocumentCase test;
    ByteStream stream(documentHead(1).append(mercatorEntry(1, "P")).integer(42));
    test.manager.unarchiveFrom(stream.get());
    std::int32_t behind = 0;
    stream.get()->read(behind);
    EXPECT_EQ(behind, 42);
}

TEST(TQProjectionArchive, NothingIsReadBehindEllipsoidsThatCannotBe) {
    DocumentCase test;
    const StreamBytes rest =
        StreamBytes().integer(0).tag("TQProjMgr", 0).integer(1).append(mercatorEntry(1, "P"));
    ByteStream stream(StreamBytes().tag("TQEllMgr", 1).append(rest));
    test.manager.unarchiveFrom(stream.get());
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQEllMgr::unarchiveFrom(TQReadStream *stream): version 1 is unknown.\n"));
}

TEST(TQProjectionArchive, AnUnknownVersionIsReportedAndNotRead) {
    for (const int version : {1, 2, -1}) {
        DocumentCase test;
        ByteStream stream(StreamBytes()
                              .tag("TQEllMgr", 0)
                              .integer(0)
                              .tag("TQProjMgr", version)
                              .integer(1)
                              .append(mercatorEntry(1, "P")));
        test.manager.unarchiveFrom(stream.get());
        EXPECT_THAT(namesIn(test.manager), IsEmpty());
        EXPECT_THAT(test.messages.lines(),
                    ElementsAre("TQProjMgr::unarchiveFrom(TQReadStream *, bool): version " +
                                std::to_string(version) + " is unknown.\n"));
    }
}

TEST(TQProjectionArchive, AnotherBlockIsAnUnknownVersion) {
    DocumentCase test;
    ByteStream stream(StreamBytes().tag("TQEllMgr", 0).integer(0).tag("TQGridMgr", 0).integer(1));
    test.manager.unarchiveFrom(stream.get());
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQProjMgr::unarchiveFrom(TQReadStream *, bool): version -1 is unknown.\n"));
}

TEST(TQProjectionArchive, NoneOrFewerThanNoneAreNone) {
    for (const int count : {0, -1, -2147483647}) {
        DocumentCase test;
        const std::string entryBytes = mercatorEntry(1, "P").bytes();
        ByteStream stream(documentHead(count).append(mercatorEntry(1, "P")));
        test.manager.unarchiveFrom(stream.get());
        EXPECT_THAT(namesIn(test.manager), IsEmpty());
        EXPECT_FALSE(stream.get()->failed());
        EXPECT_EQ(stream.get()->bytesLeft(), entryBytes.size());
    }
}

TEST(TQProjectionArchive, TheFirstEntryThatCannotBeReadEndsTheReading) {
    struct Bad {
        StreamBytes entry;
        const char* message;
    };
    const Bad bad[] = {
        {StreamBytes().integer(0), nullptr},
        {StreamBytes().integer(1),
         "TQProjection *newProjFromStream(TQReadStream *stream): projection already unarchived ?!?\n"},
        {entry(2, 14, mercatorBlock("Q")),
         "newProjFromStream(TQReadStream *): projection type 14 is unknown.\n"},
        {mercatorEntry(2, "Q", 0.0, "E"),
         "TQProjMgr::awakeOneProjection(): could not find ellipsoid named E\n"},
    };
    for (const auto& [badEntry, message] : bad) {
        DocumentCase test;
        ByteStream stream(
            documentHead(3).append(mercatorEntry(1, "P")).append(badEntry).append(mercatorEntry(3, "R")));
        test.manager.unarchiveFrom(stream.get());
        EXPECT_THAT(namesIn(test.manager), ElementsAre("P")) << "what was read stays";
        EXPECT_EQ(test.messages.lines(),
                  message != nullptr ? std::vector<std::string>{message} : std::vector<std::string>{});
    }
}

TEST(TQProjectionArchive, MoreProjectionsAnnouncedThanThereAreEndTheReading) {
    for (const int count : {2, 2147483647}) {
        DocumentCase test;
        ByteStream stream(documentHead(count).append(mercatorEntry(1, "P")));
        test.manager.unarchiveFrom(stream.get());
        EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
    }
}

TEST(TQProjectionArchive, ACutOffDocumentKeepsWhatWasWhole) {
    const std::string first = documentHead(2).append(mercatorEntry(1, "P")).bytes();
    const std::string whole = first + mercatorEntry(2, "Q").bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        DocumentCase test;
        ByteStream stream(std::string_view(whole).substr(0, length));
        test.manager.unarchiveFrom(stream.get());
        EXPECT_EQ(namesIn(test.manager).size(), length < first.size() ? 0U : 1U) << length;
    }
}

TEST(TQProjectionArchive, EveryFormOfReadingMerges) {
    DocumentCase test;
    const StreamBytes document = documentHead(1).append(mercatorEntry(1, "P"));
    ByteStream stream(document);
    TQObject& object = test.manager;
    object.unarchiveFrom(stream.get());
    ByteStream again(document);
    test.manager.unarchiveFrom(again.get(), true);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
}

// ---- Exporting files

namespace {

struct ExportCase : ArchiveCase {
    TemporaryDirectory place;
    std::string directory = "a/b";

    bool exportAll() { return manager.archiveNecessaryProj(place.file(directory)); }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const TQString& name : TQOpenDir(place.file(directory))) {
            names.insert(name.utf8());
        }
        return names;
    }

    /// The projection of a file that was written.
    std::unique_ptr<TQProjection> fileContent(const std::string& name) const {
        return TQProjMgr::createProjectionFromPath(place.file(directory + "/" + name));
    }
};

} // namespace

TEST(TQProjectionArchive, TheUsersProjectionsAndTheResourcesInUseAreExported) {
    ExportCase test;
    test.add("User's");
    test.add("Used resource", 0.0, kIsResource);
    test.add("Unused resource", 0.0, kIsResource);
    test.observe("u", &test.one)->used = test.projection("Used resource");
    EXPECT_TRUE(test.exportAll());
    EXPECT_THAT(test.files(), UnorderedElementsAre("User's.proj", "Used resource.proj"));
    EXPECT_TRUE(test.projection("Used resource")->isResource());
    EXPECT_FALSE(test.projection("User's")->isResource());
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQProjectionArchive, AnExportedFileBringsTheProjectionBack) {
    ExportCase test;
    const TQProjection* const original = test.add("P", 7.5);
    EXPECT_TRUE(test.exportAll());
    const auto copy = test.fileContent("P.proj");
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->isEqual(original));
}

TEST(TQProjectionArchive, NoDirectoryIsMadeForNothing) {
    ExportCase test;
    test.add("R", 0.0, kIsResource);
    EXPECT_TRUE(test.exportAll());
    EXPECT_THAT(test.place.entries(), IsEmpty());
}

TEST(TQProjectionArchive, NamesBecomeFileNames) {
    ExportCase test;
    test.add("a/b: c?");
    EXPECT_TRUE(test.exportAll());
    EXPECT_THAT(test.files(), ElementsAre("a_b_ c_.proj"));
    EXPECT_EQ(*test.fileContent("a_b_ c_.proj")->name(), "a/b: c?");
}

TEST(TQProjectionArchive, NoFileIsWrittenOver) {
    ExportCase test;
    test.place.fileWith("a/b/P.proj", "somebody's");
    test.add("P");
    EXPECT_TRUE(test.exportAll());
    EXPECT_THAT(test.files(), UnorderedElementsAre("P.proj", "P_1.proj"));
    EXPECT_EQ(test.place.bytesOf("a/b/P.proj"), "somebody's");
    EXPECT_EQ(*test.fileContent("P_1.proj")->name(), "P");
}

TEST(TQProjectionArchive, NamesThatMakeTheSameFileNameAllGetFiles) {
    ExportCase test;
    test.add("a/b");
    test.add("a:b");
    EXPECT_TRUE(test.exportAll());
    EXPECT_THAT(test.files(), UnorderedElementsAre("a_b.proj", "a_b_1.proj"));
    EXPECT_NE(*test.fileContent("a_b.proj")->name(), *test.fileContent("a_b_1.proj")->name());
}

TEST(TQProjectionArchive, TwoProjectionsOfOneNameAreBothWritten) {
    ExportCase test;
    for (const double meridian : {1.0, 2.0}) {
        test.manager.createProjFromParams(ParameterTable()
                                              .with("Type", kMercator)
                                              .with("Nom", TQString("P"))
                                              .with("Ellipsoide", TQString(kEllipsoid))
                                              .with("lambda0", meridian)
                                              .get());
    }
    EXPECT_TRUE(test.exportAll());
    std::set<double> meridians;
    for (const char* file : {"P.proj", "P_1.proj"}) {
        meridians.insert(meridianOf(test.fileContent(file).get()));
    }
    EXPECT_THAT(meridians, ElementsAre(1.0, 2.0));
}

TEST(TQProjectionArchive, AnExportThatCannotWriteSaysSo) {
    ExportCase test;
    test.place.fileWith("a", "no directory");
    test.add("P");
    EXPECT_FALSE(test.exportAll());
}

TEST(TQProjectionArchive, AProjectionThatCannotBeWrittenDoesNotKeepOthersFromIt) {
    for (const auto& [bad, good] : {std::pair{"A", "B"}, {"B", "A"}}) { // either comes first in the table
        ExportCase test;
        test.addPlaceholder(bad);
        test.add(good);
        EXPECT_FALSE(test.exportAll());
        EXPECT_NE(test.fileContent(std::string(good) + ".proj"), nullptr);
        EXPECT_THAT(test.messages.lines(),
                    ElementsAre("TQProjMgr::saveProjection: Unknown projection type: -1\n"));
    }
}

// ---- Copying from another manager

namespace {

/// A manager with projections, and one that wants them. Either may go first.
struct CopyCase {
    SharedDirectory present{TQGetApplicationSharedDirectory()}; // which both change; put back at the end
    std::optional<ArchiveCase> source{std::in_place};
    std::optional<EmptyManager> target{std::in_place};

    TQProjection* copy(TQProjection* projection) {
        return target->manager.getProjectionWithNameFromGeorefMgr(projection, &source->manager);
    }
};

void expectConverts(const TQProjection* projection) {
    TQPoint global(1.0, 1.0);
    EXPECT_EQ(projection->convertGeoPt(TQPoint(0.0, 0.0), global), 0);
    EXPECT_NEAR(global.x, 0.0, 1e-6);
}

} // namespace

TEST(TQProjectionCopy, NoProjectionHasNoCopy) {
    CopyCase test;
    EXPECT_EQ(test.copy(nullptr), nullptr);
    EXPECT_THAT(namesIn(test.target->manager), IsEmpty());
}

TEST(TQProjectionCopy, AKnownNameIsTheManagersOwnProjection) {
    CopyCase test;
    TQProjection* const known = test.target->load("P", 2.0);
    test.target->observe("u", &test.target->one);
    EXPECT_EQ(test.copy(test.source->add("P", 1.0)), known) << "whatever its definition";
    EXPECT_EQ(test.target->manager.getProjectionWithNameFromGeorefMgr(known, nullptr), known);
    EXPECT_THAT(namesIn(test.target->manager), ElementsAre("P"));
    EXPECT_THAT(test.target->journal, IsEmpty());
}

TEST(TQProjectionCopy, WithoutSourceNothingIsCopied) {
    CopyCase test;
    EXPECT_EQ(test.target->manager.getProjectionWithNameFromGeorefMgr(test.source->add("P"), nullptr),
              nullptr);
    EXPECT_THAT(namesIn(test.target->manager), IsEmpty());
}

TEST(TQProjectionCopy, AnUnknownOneIsCopiedAndRegisteredAsTheUsers) {
    for (const bool isResource : {false, true}) {
        CopyCase test;
        test.target->observe("u", &test.target->one);
        TQProjection* const original = test.source->add("P", 7.5, isResource);
        TQProjection* const copy = test.copy(original);
        ASSERT_NE(copy, nullptr);
        EXPECT_NE(copy, original);
        EXPECT_TRUE(copy->isEqual(original));
        EXPECT_FALSE(copy->isResource());
        EXPECT_FALSE(copy->isUserDefined());
        EXPECT_EQ(test.target->manager.projWithName(TQString("P"), false), copy);
        EXPECT_EQ(test.target->manager.resourcePath(TQString("P")), nullptr);
        EXPECT_THAT(test.target->journal, ElementsAre("u changed"));
        EXPECT_EQ(test.copy(original), copy) << "once is enough";
    }
}

TEST(TQProjectionCopy, EveryTypeIsCopied) {
    for (const int code : kTypeCodes) {
        CopyCase test;
        test.source->manager.addLoadedProjection(variedProjection(code, "P", test.source->ellipsoid), false,
                                                 kNoFlags, nullptr);
        const TQProjection* const copy = test.copy(test.source->projection("P"));
        ASSERT_NE(copy, nullptr) << code;
        EXPECT_STREQ(copy->className(), test.source->projection("P")->className());
        EXPECT_EQ(listedParameters(*copy), listedParameters(*test.source->projection("P")));
    }
}

TEST(TQProjectionCopy, TheCopyOutlivesTheManagerItCameFrom) {
    CopyCase test;
    const TQProjection* const copy = test.copy(test.source->add("P"));
    EXPECT_NE(copy->ellipsoid(), test.source->ellipsoid);
    EXPECT_EQ(copy->ellipsoid(),
              test.target->manager.ellipsoidManager().ellipsoidWithName(TQString(kEllipsoid)));
    test.source.reset();
    expectConverts(copy);
}

TEST(TQProjectionCopy, TheOriginalOutlivesTheManagerThatHasTheCopy) {
    CopyCase test;
    const TQProjection* const original = test.source->add("P");
    test.copy(test.source->projection("P"));
    test.target.reset();
    expectConverts(original);
    EXPECT_EQ(test.source->manager.ellipsoidManager().ellipsoidWithName(TQString(kEllipsoid)),
              original->ellipsoid());
}

TEST(TQProjectionCopy, ACopySharesTheRegisteredEllipsoidOfItsName) {
    CopyCase test;
    test.target->load("Q");
    const TQEllipsoid* const known =
        test.target->manager.ellipsoidManager().ellipsoidWithName(TQString(kEllipsoid));
    EXPECT_EQ(test.copy(test.source->add("P"))->ellipsoid(), known);
    EXPECT_EQ(test.target->manager.ellipsoidManager().ellipsoids().count(), 1);
}

TEST(TQProjectionCopy, AnEllipsoidOfPROJIsCopiedForTheCopyAlone) {
    CopyCase test;
    TQEllipsoid* const ofPROJ = test.source->manager.ellipsoidManager().addEllipsoid(
        std::make_unique<TQEllipsoid>(TQString("\tE"), 6378137.0, 0.0067));
    TQProjection* const original = test.source->add("P");
    original->setEllipsoid(ofPROJ);
    const TQProjection* const copy = test.copy(original);
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy->ellipsoid(), nullptr);
    EXPECT_NE(copy->ellipsoid(), ofPROJ);
    EXPECT_TRUE(copy->ellipsoid()->isEqual(ofPROJ));
    EXPECT_EQ(test.target->manager.ellipsoidManager().ellipsoids().count(), 0);
    test.source.reset();
    expectConverts(copy);
}

TEST(TQProjectionCopy, AnEllipsoidThatTheOtherManagerHasNotMakesNoCopy) {
    CopyCase test;
    TQEllipsoid foreign(TQString("Foreign"), 6378137.0, 0.0067);
    const auto projection = variedProjection(kMercator, "P", &foreign);
    EXPECT_EQ(test.copy(projection.get()), nullptr);
    EXPECT_THAT(test.source->messages.lines(),
                ElementsAre("TQProjMgr::awakeOneProjection(): could not find ellipsoid named Foreign\n"));
    EXPECT_THAT(namesIn(test.target->manager), IsEmpty());
}

TEST(TQProjectionCopy, APlaceholderHasNoCopy) {
    CopyCase test;
    EXPECT_EQ(test.copy(test.source->manager.projWithName(TQString("missing"), true)), nullptr);
    test.source->addPlaceholder("A");
    EXPECT_EQ(test.copy(test.source->projection("A")), nullptr);
    EXPECT_THAT(namesIn(test.target->manager), IsEmpty());
}

TEST(TQProjectionCopy, AProjectionWithoutEllipsoidIsCopiedWithoutOne) {
    CopyCase test;
    const auto projection = variedProjection(kMercator, "P", nullptr);
    const TQProjection* const copy = test.copy(projection.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->ellipsoid(), nullptr);
}

TEST(TQProjectionCopy, AnExternalOneIsTheManagersOfThatName) {
    CopyCase test;
    const TQString name("\tEPSG_2154");
    TQProjection* const copy = test.copy(test.source->manager.projWithName(name, false));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy, test.target->manager.projWithName(name, false));
    EXPECT_THAT(namesIn(test.target->manager), IsEmpty());
}

// ---- What a document must not lose

TEST(TQProjectionArchive, AProjectionWithoutNameIsRead) {
    EmptyManager source;
    HashTbl<TQProjParam> params(1);
    params.add(std::make_unique<TQProjParam>(TQString("Type"), 127, TQString()), TQString("Type"));
    ASSERT_NE(source.manager.createProjFromParams(&params), nullptr);
    source.load("A");
    source.load("B");
    TQWriteMemStream written;
    source.manager.archiveTo(&written);
    TQReadMemStream stream(written.getMemory().data(), written.getMemory().size());
    TQProjMgr target(false);
    EXPECT_TRUE(target.unarchiveFrom(&stream, false));
    EXPECT_EQ(target.newListOfProjNames()->count(), 3);
}

TEST(TQProjectionArchive, AnEllipsoidThatIsAProjectionsOwnIsWrittenWithIt) {
    EmptyManager source;
    source.manager.loadProjection(source.directories.userFile("a.proj", mercatorFile("A", 1.0, "\tOwn")),
                                  false, kNoFlags);
    ASSERT_EQ(source.manager.newListOfEllipsoidNames()->count(), 0);
    TQWriteMemStream written;
    source.manager.archiveTo(&written);
    EXPECT_EQ(source.manager.newListOfEllipsoidNames()->count(), 0) << "writing changes nothing";
    TQReadMemStream stream(written.getMemory().data(), written.getMemory().size());
    TQProjMgr target(false);
    EXPECT_TRUE(target.unarchiveFrom(&stream, false));
    const TQProjection* const read = target.projWithName(TQString("A"), false);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(*read->ellipsoid()->name(), "\tOwn");
    EXPECT_EQ(read->ellipsoid()->semiMajorAxis(), 6378137.0);
}

TEST(TQProjectionArchive, AProjectionOfAnUnknownVersionEndsTheReading) {
    DocumentCase test;
    ByteStream stream(documentHead(2)
                          .append(introduction(1).byte(kMercator).tag("TQPrMercDirect", 9))
                          .append(mercatorEntry(2, "P")));
    EXPECT_FALSE(test.manager.unarchiveFrom(stream.get(), false));
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
}

TEST(TQProjectionCopy, TheEllipsoidOfASystemOfPROJIsCopiedWithItsProjection) {
    EmptyManager source;
    source.manager.loadProjection(source.directories.userFile("a.proj", mercatorFile("A", 1.0, "\tOwn")),
                                  false, kNoFlags);
    TQProjection* const original = source.manager.projWithName(TQString("A"), false);
    TQProjMgr target(false);
    const TQProjection* const copy = target.getProjectionWithNameFromGeorefMgr(original, &source.manager);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy->ellipsoid(), original->ellipsoid());
    EXPECT_TRUE(copy->ellipsoid()->isEqual(original->ellipsoid()));
}
