#include "manager/TQBasicGeoref.h"

#include "manager/TQXMLReadDocument_withProjMgr.h"
#include "proj/TQExternalProjList.h"
#include "projection/TQDummyProjection.h"
#include "support/TQXMLWriteDocument.h"
#include "testing/CommaLocale.h"
#include "testing/MemoryInUse.h"
#include "testing/StreamBytes.h"
#include "tests/manager/ManagerCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

using namespace std::string_literals;

constexpr const char* kBadUnit = "TQBasicGeoref::unarchiveFrom(..): bad unit!\n";
constexpr const char* kBadProjection = "TQBasicGeoref::unarchiveFrom(..): bad projection!\n";

/// Version 1: projection "A", kilometres, scale 2.5, system "RGF93".
const std::string kVersionOne = "\x0DTQBasicGeoref\x01\x00"s // tag
                                "\x01"s                      // a projection follows
                                "\x02\x01\x00\x00\x00"s
                                "A"s                                // its name
                                "\xE8\x03\x00\x01"s                 // unit
                                "\x00\x00\x00\x00\x00\x00\x04\x40"s // scale
                                "\x02\x05\x00\x00\x00"s
                                "RGF93"s; // system

/// Version 0: EPSG 2154, not deprecated, kilometres.
const std::string kVersionZero = "\x0DTQBasicGeoref\x00\x00"s // tag
                                 "\x01"s                      // a projection follows
                                 "\x6A\x08\x00\x00"s          // its code
                                 "\x00"s                      // not deprecated
                                 "\xE8\x03\x00\x01"s;         // unit

/// Texts in a language while it lives.
class Language {
  public:
    explicit Language(const char* language) {
        TQLocalizer::appShared()->addStringsFromFile(TQString("projMessages"));
        TQLocalizer::appShared()->setLanguage(TQString(language));
    }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language() { resetSystemLocalization(); }
};

/// A manager with the projection "A", and what is printed meanwhile.
struct GeorefCase {
    Language english{"en"};
    TemporaryDirectory directory;
    CapturedMessages messages;
    TQProjMgr manager{false};
    TQBasicGeoref georef;

    GeorefCase() {
        constexpr bool isResource = false;
        constexpr std::uint32_t noFlags = 0;
        manager.loadProjection(directory.fileWith("a.proj", mercatorFile("A")), isResource, noFlags);
    }

    TQProjection* projection(const char* name, bool createIfMissing = false) {
        return manager.projWithName(TQString(name), createIfMissing);
    }

    /// Whether the manager has made a placeholder; in batch mode it then answers that one is missing.
    bool hasPlaceholders() { return !manager.checkAndResetUnknowProjection(false); }

    /// Reads a block.
    bool read(std::string_view bytes) {
        ByteStream stream(bytes);
        return georef.unarchiveFrom(stream.get(), &manager);
    }

    bool read(const StreamBytes& bytes) { return read(bytes.bytes()); }
};

StreamBytes block(int version, bool hasProjection) {
    return StreamBytes().tag("TQBasicGeoref", version).byte(hasProjection ? 1 : 0);
}

StreamBytes& putUnit(StreamBytes& bytes, std::uint32_t unit) {
    return bytes.integer(static_cast<std::int32_t>(unit));
}

/// A block of version 1 without projection or with the projection "A".
std::string newBlock(bool hasProjection, std::uint32_t unit) {
    StreamBytes bytes = block(1, hasProjection);
    if (hasProjection) {
        bytes.text("A");
    }
    return putUnit(bytes, unit).number(1.0).text("").bytes();
}

/// A block of version 0 without projection or with an EPSG code.
std::string oldBlock(std::uint32_t unit) {
    StreamBytes bytes = block(0, false);
    return putUnit(bytes, unit).bytes();
}

std::string oldBlock(int code, int deprecatedMark, std::uint32_t unit) {
    StreamBytes bytes = block(0, true).integer(code).byte(deprecatedMark);
    return putUnit(bytes, unit).bytes();
}

std::string written(const TQBasicGeoref& georef) {
    TQWriteMemStream stream;
    georef.archiveTo(&stream);
    const auto memory = stream.getMemory();
    return {memory.begin(), memory.end()};
}

std::vector<std::string> everyBitFlipOf(const std::string& bytes) {
    std::vector<std::string> flipped;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            flipped.push_back(bytes);
            flipped.back()[index] = static_cast<char>(static_cast<unsigned char>(bytes[index]) ^ (1U << bit));
        }
    }
    return flipped;
}

/// Reads every archive that is one bit away. What is taken must be sound and come back from what it writes.
void expectEveryBitFlipIsRefusedOrSound(GeorefCase& test, const std::string& bytes) {
    for (const std::string& flipped : everyBitFlipOf(bytes)) {
        if (!test.read(flipped)) {
            continue;
        }
        const bool isAngular = (test.georef.unit() & 0x30000000U) != 0;
        EXPECT_NE(isAngular, test.georef.hasProjection());
        EXPECT_NE(test.georef.unit(), 0U);
        EXPECT_LE(test.georef.gcs().length(), static_cast<int>(bytes.size()));
        EXPECT_FALSE(test.georef.displayString().isEmpty());
        const std::string again = written(test.georef);
        EXPECT_TRUE(test.read(again));
        EXPECT_EQ(written(test.georef), again);
    }
}

} // namespace

// ---- The values

TEST(TQBasicGeoref, IsGeographicInDegreesAtFirst) {
    const TQBasicGeoref georef;
    EXPECT_FALSE(georef.hasProjection());
    EXPECT_EQ(georef.projection(), nullptr);
    EXPECT_TRUE(georef.projectionName().isEmpty());
    EXPECT_EQ(georef.unit(), TQUnitDegree);
    EXPECT_EQ(georef.unitScale(), 1.0);
    EXPECT_TRUE(georef.gcs().isEmpty());
}

TEST(TQBasicGeoref, HoldsWhatItIsMadeOf) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("A"), TQUnitFoot, 2.5, TQString("RGF93"));
    EXPECT_TRUE(georef.hasProjection());
    EXPECT_EQ(georef.projection(), test.projection("A"));
    EXPECT_EQ(georef.projectionName(), "A");
    EXPECT_EQ(georef.unit(), TQUnitFoot);
    EXPECT_EQ(georef.unitScale(), 2.5);
    EXPECT_EQ(georef.gcs(), "RGF93");
}

TEST(TQBasicGeoref, TakesOtherValues) {
    GeorefCase test;
    test.georef.setProjection(test.projection("A"));
    test.georef.setUnit(TQUnitMetre);
    test.georef.setUnitScale(3.0);
    test.georef.setGcs(TQString("NTF"));
    EXPECT_EQ(test.georef.projection(), test.projection("A"));
    EXPECT_EQ(test.georef.unit(), TQUnitMetre);
    EXPECT_EQ(test.georef.unitScale(), 3.0);
    EXPECT_EQ(test.georef.gcs(), "NTF");
    test.georef.setProjection(nullptr);
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_TRUE(test.georef.projectionName().isEmpty());
}

TEST(TQBasicGeoref, ACopyHasTheValuesAndMeansTheSameProjection) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("A"), TQUnitFoot, 2.5, TQString("RGF93"));
    test.georef = georef;
    EXPECT_EQ(test.georef.projection(), test.projection("A"));
    EXPECT_EQ(written(test.georef), written(georef));
    test.georef.setGcs(TQString("NTF"));
    EXPECT_EQ(georef.gcs(), "RGF93");
}

TEST(TQBasicGeoref, ADestroyedProjectionLeavesItsName) {
    GeorefCase test;
    test.georef = TQBasicGeoref(test.projection("A"), TQUnitMetre, 1.0, TQString());
    const std::string before = written(test.georef);
    test.manager.destroy(TQString("A"));
    const TQBasicGeoref copy = test.georef;
    EXPECT_EQ(copy.projection(), nullptr);
    EXPECT_TRUE(copy.hasProjection());
    EXPECT_EQ(copy.projectionName(), "A");
    EXPECT_EQ(copy.displayString(), "A(m)");
    EXPECT_EQ(written(copy), before);
}

TEST(TQBasicGeoref, ARenamedProjectionHasItsNewName) {
    TQDummyProjection projection;
    projection.rename(TQString("Old"));
    const TQBasicGeoref georef(&projection, TQUnitMetre, 1.0, TQString());
    projection.rename(TQString("New"));
    EXPECT_EQ(georef.projectionName(), "New");
    EXPECT_NE(written(georef).find("New"), std::string::npos);
}

TEST(TQBasicGeoref, AProjectionWithoutNameIsWrittenWithAnEmptyOne) {
    TQDummyProjection projection;
    const TQBasicGeoref georef(&projection, TQUnitMetre, 1.0, TQString());
    StreamBytes expected = block(1, true).text("");
    EXPECT_EQ(written(georef), putUnit(expected, TQUnitMetre).number(1.0).text("").bytes());
    EXPECT_EQ(georef.displayString(), "(m)");
}

// ---- Archives

TEST(TQBasicGeoref, WritesVersionOne) {
    GeorefCase test;
    test.projection("A")->rename(TQString("A")); // in the encoding of a C string
    EXPECT_EQ(written(TQBasicGeoref(test.projection("A"), 0x010003E8, 2.5, TQString("RGF93"))), kVersionOne);
}

TEST(TQBasicGeoref, WritesNoNameWithoutAProjection) {
    StreamBytes expected = block(1, false);
    EXPECT_EQ(written(TQBasicGeoref(nullptr, TQUnitGon, 1.0, TQString())),
              putUnit(expected, 0x14000001).number(1.0).text("").bytes());
}

TEST(TQBasicGeoref, ReadsVersionOne) {
    GeorefCase test;
    ByteStream stream(kVersionOne);
    ASSERT_TRUE(test.georef.unarchiveFrom(stream.get(), &test.manager));
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(test.georef.projection(), test.projection("A"));
    EXPECT_EQ(test.georef.unit(), TQUnitKilometre);
    EXPECT_EQ(test.georef.unitScale(), 2.5);
    EXPECT_EQ(test.georef.gcs(), "RGF93");
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQBasicGeoref, ReadingReplacesWhatWasThere) {
    GeorefCase test;
    ASSERT_TRUE(test.read(kVersionOne));
    ASSERT_TRUE(test.read(newBlock(false, TQUnitDegree)));
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_EQ(test.georef.unitScale(), 1.0);
    EXPECT_TRUE(test.georef.gcs().isEmpty());
}

TEST(TQBasicGeoref, AProjectionThatIsMissingBecomesAPlaceholderAndKeepsItsName) {
    GeorefCase test;
    test.manager.destroy(TQString("A"));
    ASSERT_TRUE(test.read(kVersionOne));
    ASSERT_NE(test.georef.projection(), nullptr);
    EXPECT_EQ(test.georef.projection(), test.projection("A", true));
    EXPECT_NE(test.georef.projection()->isMemberOf("TQDummyProjection"), 0);
    EXPECT_EQ(test.georef.projectionName(), "A");
    EXPECT_EQ(test.georef.displayString(), "A - GCS:RGF93(km * 2.500000)");
    EXPECT_EQ(written(test.georef), kVersionOne) << "saving loses nothing";
}

TEST(TQBasicGeoref, APlaceholderThatIsSetIsWrittenUnderTheNameThatWasAskedFor) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("Missing", true), TQUnitMetre, 1.0, TQString());
    EXPECT_EQ(georef.projectionName(), "Missing");
    StreamBytes expected = block(1, true).text("Missing");
    EXPECT_EQ(written(georef), putUnit(expected, TQUnitMetre).number(1.0).text("").bytes());
}

TEST(TQBasicGeoref, TheNameOutlivesAPlaceholderAndItsManager) {
    TQBasicGeoref georef;
    {
        TQProjMgr manager(false);
        ByteStream stream(kVersionOne);
        ASSERT_TRUE(georef.unarchiveFrom(stream.get(), &manager));
    }
    EXPECT_EQ(georef.projection(), nullptr);
    EXPECT_EQ(written(georef), kVersionOne);
}

TEST(TQBasicGeoref, VersionOneKeepsAnExternalProjectionThatCannotBeBuilt) {
    GeorefCase test;
    StreamBytes bytes = block(1, true).text("\tEPSG_1");
    putUnit(bytes, TQUnitMetre).number(1.0).text("");
    ASSERT_TRUE(test.read(bytes));
    ASSERT_NE(test.georef.projection(), nullptr);
    EXPECT_TRUE(test.georef.projection()->isInvalid());
    EXPECT_EQ(test.georef.projectionName(), "\tEPSG_1");
    EXPECT_THAT(test.messages.lines(), Not(Contains(kBadProjection)));
}

TEST(TQBasicGeoref, VersionOneReadsAnExternalProjection) {
    GeorefCase test;
    StreamBytes bytes = block(1, true).text("\tEPSG_2154");
    ASSERT_TRUE(test.read(putUnit(bytes, TQUnitMetre).number(1.0).text("")));
    EXPECT_EQ(test.georef.projection(), test.projection("\tEPSG_2154"));
    EXPECT_FALSE(test.georef.projection()->isInvalid());
}

TEST(TQBasicGeoref, AnExternalNameWithoutAuthorityIsNoProjection) {
    GeorefCase test;
    StreamBytes bytes = block(1, true).text("\tnothing");
    EXPECT_FALSE(test.read(putUnit(bytes, TQUnitMetre).number(1.0).text("")));
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_TRUE(test.georef.projectionName().isEmpty());
    EXPECT_THAT(test.messages.lines(), ElementsAre(kBadUnit));
}

TEST(TQBasicGeoref, VersionOneWithoutProjectionInAMetricUnitIsABadUnit) {
    GeorefCase test;
    EXPECT_FALSE(test.read(newBlock(false, TQUnitMetre)));
    EXPECT_THAT(test.messages.lines(), ElementsAre(kBadUnit));
}

TEST(TQBasicGeoref, TheUnitIsAngularWithoutAProjectionOnly) {
    struct Expectation {
        std::uint32_t unit;
        bool isAngular;
    };
    for (const auto& [unit, isAngular] :
         {Expectation{TQUnitMetre, false}, Expectation{TQUnitUSSurveyMile, false}, Expectation{1, false},
          Expectation{0xCFFFFFFF, false}, Expectation{TQUnitRadian, true}, Expectation{TQUnitGon, true},
          Expectation{TQUnitDegreeMinuteSecond, true}, Expectation{0x10000000, true},
          Expectation{0x20000000, true}, Expectation{0x21000002, true}, Expectation{0x30000000, true}}) {
        GeorefCase test;
        EXPECT_EQ(test.read(newBlock(true, unit)), !isAngular) << std::hex << unit;
        EXPECT_EQ(test.read(newBlock(false, unit)), isAngular) << std::hex << unit;
        EXPECT_EQ(test.read(oldBlock(unit)), isAngular) << std::hex << unit;
        EXPECT_EQ(test.read(oldBlock(2154, 0, unit)), !isAngular) << std::hex << unit;
        const int refusals = 2;
        EXPECT_EQ(test.messages.lines(), std::vector<std::string>(refusals, kBadUnit)) << std::hex << unit;
    }
}

TEST(TQBasicGeoref, NoUnitIsABadUnit) {
    GeorefCase test;
    for (const std::string& bytes :
         {newBlock(true, 0), newBlock(false, 0), oldBlock(0), oldBlock(2154, 0, 0)}) {
        EXPECT_FALSE(test.read(bytes));
    }
    EXPECT_THAT(test.messages.lines(), ElementsAre(kBadUnit, kBadUnit, kBadUnit, kBadUnit));
}

TEST(TQBasicGeoref, AnyScaleIsTakenAsItIs) {
    GeorefCase test;
    for (const double scale : {0.0, -1.0, 5e-324, std::numeric_limits<double>::infinity()}) {
        const std::string bytes = written(TQBasicGeoref(nullptr, TQUnitDegree, scale, TQString()));
        ASSERT_TRUE(test.read(bytes));
        EXPECT_EQ(test.georef.unitScale(), scale);
    }
    const double none = std::numeric_limits<double>::quiet_NaN();
    ASSERT_TRUE(test.read(written(TQBasicGeoref(nullptr, TQUnitDegree, none, TQString()))));
    EXPECT_TRUE(std::isnan(test.georef.unitScale()));
}

TEST(TQBasicGeoref, VersionZeroGivesScaleOneAndEmptyGCS) {
    GeorefCase test;
    test.georef.setUnitScale(2.5);
    test.georef.setGcs(TQString("RGF93"));
    ByteStream stream(kVersionZero);
    ASSERT_TRUE(test.georef.unarchiveFrom(stream.get(), &test.manager));
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(test.georef.projection(), test.projection("\tEPSG_2154"));
    EXPECT_EQ(test.georef.unit(), TQUnitKilometre);
    EXPECT_EQ(test.georef.unitScale(), 1.0);
    EXPECT_TRUE(test.georef.gcs().isEmpty());
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(TQBasicGeoref, VersionZeroMarksADeprecatedSystem) {
    GeorefCase test;
    ASSERT_TRUE(test.read(oldBlock(27572, 1, TQUnitMetre)));
    EXPECT_EQ(test.georef.projection(), test.projection("\tEPSG_27572\r"));
    EXPECT_EQ(test.georef.projectionName(), "\tEPSG_27572\r");
}

TEST(TQBasicGeoref, VersionZeroWithoutProjectionIsGeographic) {
    GeorefCase test;
    ASSERT_TRUE(test.read(kVersionZero));
    ByteStream stream(oldBlock(TQUnitGon));
    ASSERT_TRUE(test.georef.unarchiveFrom(stream.get(), &test.manager));
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_EQ(test.georef.unit(), TQUnitGon);
}

TEST(TQBasicGeoref, VersionZeroRefusesAProjectionThatCannotBeBuilt) {
    for (const int code : {1, 0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        GeorefCase test;
        EXPECT_FALSE(test.read(oldBlock(code, 0, TQUnitMetre)));
        EXPECT_FALSE(test.georef.hasProjection());
        EXPECT_EQ(test.georef.projection(), nullptr);
        ASSERT_FALSE(test.messages.lines().empty());
        EXPECT_EQ(test.messages.lines().back(), kBadProjection) << code;
    }
}

TEST(TQBasicGeoref, AnUnknownVersionIsReported) {
    for (const int version : {2, 3, 32767, -1, -32768}) {
        GeorefCase test;
        EXPECT_FALSE(test.read(block(version, false)));
        EXPECT_THAT(test.messages.lines(),
                    ElementsAre("TQBasicGeoref::unarchiveFrom(TQReadStream *): version " +
                                std::to_string(version) + " is unknown.\n"));
    }
}

TEST(TQBasicGeoref, AnotherBlockIsRefused) {
    GeorefCase test;
    EXPECT_FALSE(test.read(StreamBytes().tag("TQBasicGrid", 1).append(block(1, false))));
    EXPECT_THAT(test.messages.lines(),
                ElementsAre("TQBasicGeoref::unarchiveFrom(TQReadStream *): version -1 is unknown.\n"));
}

TEST(TQBasicGeoref, EveryCutArchiveIsRefusedAndMakesNoPlaceholder) {
    for (const std::string& whole :
         {kVersionZero, newBlock(false, TQUnitDegree), oldBlock(TQUnitDegree), kVersionOne}) {
        GeorefCase test;
        expectEveryCutIsNoticed(whole, [&test](TQReadStream* stream) {
            EXPECT_FALSE(test.georef.unarchiveFrom(stream, &test.manager));
        });
        EXPECT_FALSE(test.hasPlaceholders());
    }
}

TEST(TQBasicGeoref, ACodeWithoutItsMarkIsNoProjection) {
    GeorefCase test;
    EXPECT_FALSE(test.read(block(0, true).integer(2154)));
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_THAT(test.messages.lines(), ElementsAre(kBadProjection));
}

TEST(TQBasicGeoref, EveryBitFlipOfVersionOneIsRefusedOrSound) {
    GeorefCase test;
    expectEveryBitFlipIsRefusedOrSound(test, kVersionOne);
}

TEST(TQBasicGeoref, EveryBitFlipOfVersionZeroIsRefusedOrSound) {
    GeorefCase test;
    expectEveryBitFlipIsRefusedOrSound(test, kVersionZero);
}

TEST(TQBasicGeoref, WithoutAStreamNothingIsReadOrWritten) {
    GeorefCase test;
    EXPECT_FALSE(test.georef.unarchiveFrom(nullptr, &test.manager));
    test.georef.archiveTo(nullptr);
    EXPECT_FALSE(test.georef.hasProjection());
}

TEST(TQBasicGeoref, WithoutAManagerThereAreGeographicCoordinatesOnly) {
    GeorefCase test;
    ByteStream geographic(newBlock(false, TQUnitDegree));
    EXPECT_TRUE(test.georef.unarchiveFrom(geographic.get(), nullptr));
    ByteStream versionOne(kVersionOne);
    EXPECT_FALSE(test.georef.unarchiveFrom(versionOne.get(), nullptr));
    ByteStream versionZero(kVersionZero);
    EXPECT_FALSE(test.georef.unarchiveFrom(versionZero.get(), nullptr));
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_THAT(test.messages.lines(), ElementsAre(kBadUnit, kBadProjection));
}

// ---- Projections that were refused

TEST(TQBasicGeoref, AProjectionThatIsRefusedIsDeleted) {
    if (memoryInUse() == 0) {
        GTEST_SKIP() << "nobody tells how much memory is in use";
    }
    GeorefCase test;
    TQXMLReadDocument_withProjMgr document(&test.manager);
    TQString error;
    ASSERT_TRUE(document.readFromText("<L><ProjectionID>1</ProjectionID><Unit>m</Unit></L>", error));
    TQErrorPrinter printer = tq_setErrorPrinter([](std::string_view /*text*/) {});
    constexpr std::size_t size = sizeof(TQProjection);
    EXPECT_TRUE(takesMemory(size, [&] { test.projection("\tEPSG_1"); })) << "the manager keeps what it made";
    EXPECT_FALSE(takesMemory(size, [&] { test.read(oldBlock(1, 0, TQUnitMetre)); }));
    EXPECT_FALSE(
        takesMemory(size, [&] { test.georef.xmlReadFrom(&document, document.rootElement(), error); }));
    tq_setErrorPrinter(std::move(printer));
}

// ---- XML

namespace {

std::string xmlOf(const TQBasicGeoref& georef) {
    TQXMLWriteDocument document(TQString("L"));
    georef.xmlWriteContentTo(&document, document.rootElement());
    return document.toString().utf8();
}

/// The document of some children of the root.
std::string xml(const std::string& children) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<L>\n" + children + "</L>\n";
}

/// Reads the children that stand in a document's root.
struct XmlCase : GeorefCase {
    TQXMLReadDocument_withProjMgr document{&manager};
    TQString error;

    bool readXml(const std::string& children) {
        error.empty();
        EXPECT_TRUE(document.readFromText("<L>" + children + "</L>", error));
        return georef.xmlReadFrom(&document, document.rootElement(), error);
    }

    /// What is said of children that are refused.
    std::string faultIn(const std::string& children) {
        EXPECT_FALSE(readXml(children)) << children;
        EXPECT_FALSE(georef.hasProjection());
        return error.utf8();
    }
};

} // namespace

TEST(TQBasicGeoref, WritesTheChildrenInTheirOrder) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("\tEPSG_2154"), TQUnitKilometre, 2.5, TQString("RGF93"));
    EXPECT_EQ(xmlOf(georef), xml("  <ProjectionID usingDatum=\"false\">2154</ProjectionID>\n"
                                 "  <Unit>km</Unit>\n"
                                 "  <UnitScale>2.5</UnitScale>\n"
                                 "  <GCS>RGF93</GCS>\n"));
}

TEST(TQBasicGeoref, WritesNoProjectionIDOfGeographicCoordinates) {
    EXPECT_EQ(xmlOf(TQBasicGeoref()), xml("  <Unit>deg</Unit>\n"
                                          "  <UnitScale>1</UnitScale>\n"
                                          "  <GCS></GCS>\n"));
}

TEST(TQBasicGeoref, TheMarkOfADeprecatedSystemIsUsingDatum) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("\tEPSG_27572\r"), TQUnitMetre, 1.0, TQString());
    EXPECT_NE(xmlOf(georef).find("<ProjectionID usingDatum=\"true\">27572</ProjectionID>"),
              std::string::npos);
}

TEST(TQBasicGeoref, AProjectionThatIsNotOfEPSGHasProjectionIDZero) {
    GeorefCase test;
    for (TQProjection* projection :
         {test.projection("A"), test.projection("\tIGNF:LAMB93"), test.projection("Missing", true)}) {
        ASSERT_NE(projection, nullptr);
        const TQBasicGeoref georef(projection, TQUnitMetre, 1.0, TQString());
        EXPECT_NE(xmlOf(georef).find("<ProjectionID usingDatum=\"false\">0</ProjectionID>"),
                  std::string::npos);
    }
}

TEST(TQBasicGeoref, ADestroyedProjectionKeepsItsProjectionID) {
    TQBasicGeoref georef;
    {
        GeorefCase test;
        georef = TQBasicGeoref(test.projection("\tEPSG_27572\r"), TQUnitMetre, 1.0, TQString());
    }
    ASSERT_EQ(georef.projection(), nullptr);
    EXPECT_NE(xmlOf(georef).find("<ProjectionID usingDatum=\"true\">27572</ProjectionID>"),
              std::string::npos);
}

TEST(TQBasicGeoref, OtherFaultsTakeThePlaceOfWhatTheErrorHeld) {
    XmlCase test;
    for (const char* children : {"", "<Unit/>", "<Unit>m</Unit>", "<Unit>deg</Unit><GCS/><GCS/>",
                                 "<ProjectionID>1</ProjectionID><Unit>m</Unit>"}) {
        ASSERT_TRUE(test.document.readFromText("<L>"s + children + "</L>", test.error));
        test.error = "Layer 1: ";
        EXPECT_FALSE(test.georef.xmlReadFrom(&test.document, test.document.rootElement(), test.error));
        EXPECT_EQ(test.error.utf8().find("Layer 1"), std::string::npos) << children;
    }
}

TEST(TQBasicGeoref, WritesIntoTheElementThatItIsGiven) {
    TQXMLWriteDocument document(TQString("Document"));
    const TQXMLElement layer = document.createChildAndAppendTo(TQString("Layer"), document.rootElement());
    TQBasicGeoref().xmlWriteContentTo(&document, layer);
    EXPECT_NE(document.toString().utf8().find("  <Layer>\n    <Unit>deg</Unit>\n"), std::string::npos);
}

TEST(TQBasicGeoref, WritingXMLBuildsTheCatalogue) {
    TQExternalProjList::deleteAppShared();
    xmlOf(TQBasicGeoref());
    EXPECT_NE(TQSharedObject::sharedAppObjectForKey(TQString("TQExternalProjList")), nullptr);
}

TEST(TQBasicGeoref, ReadsWhatItWrites) {
    XmlCase test;
    const TQString gcs("NTF (Paris) <grades> & é");
    for (const std::uint32_t unit :
         {TQUnitRadian, TQUnitDegree, TQUnitGon, TQUnitDegreeMinuteSecond, 0x12000007U, 0x3FFFFFFFU}) {
        for (const double scale : {1.0, 2.5, 0.1, 1e-300, 0.0, -std::numeric_limits<double>::infinity()}) {
            const std::string text = xmlOf(TQBasicGeoref(nullptr, unit, scale, gcs));
            ASSERT_TRUE(test.document.readFromText(text, test.error));
            ASSERT_TRUE(test.georef.xmlReadFrom(&test.document, test.document.rootElement(), test.error))
                << text;
            EXPECT_EQ(test.georef.unit(), unit);
            EXPECT_EQ(test.georef.unitScale(), scale);
            EXPECT_EQ(test.georef.gcs(), gcs);
        }
    }
    EXPECT_TRUE(test.error.isEmpty());
}

TEST(TQBasicGeoref, ScaleAndSystemMayBeMissing) {
    XmlCase test;
    test.georef = TQBasicGeoref(test.projection("A"), TQUnitMetre, 2.5, TQString("RGF93"));
    ASSERT_TRUE(test.readXml("<Unit>gon</Unit>"));
    EXPECT_FALSE(test.georef.hasProjection());
    EXPECT_EQ(test.georef.unit(), TQUnitGon);
    EXPECT_EQ(test.georef.unitScale(), 1.0);
    EXPECT_TRUE(test.georef.gcs().isEmpty());
    EXPECT_TRUE(test.error.isEmpty());
}

TEST(TQBasicGeoref, WhatHasAProjectionIDIsRefused) {
    for (const char* attribute : {"", " usingDatum=\"true\"", " usingDatum=\"false\""}) {
        XmlCase test;
        test.georef.setProjection(test.projection("A"));
        EXPECT_EQ(test.faultIn("<ProjectionID"s + attribute + ">2154</ProjectionID><Unit>m</Unit>"),
                  "Invalid projection: EPGS:2154");
    }
}

TEST(TQBasicGeoref, WhatItWritesOfAProjectionIsRefused) {
    XmlCase test;
    const TQBasicGeoref georef(test.projection("\tEPSG_2154"), TQUnitMetre, 1.0, TQString());
    ASSERT_TRUE(test.document.readFromText(xmlOf(georef), test.error));
    EXPECT_FALSE(test.georef.xmlReadFrom(&test.document, test.document.rootElement(), test.error));
}

TEST(TQBasicGeoref, AProjectionIDThatIsThereTwiceOrNoIntegerIsMissing) {
    XmlCase test;
    for (const char* child :
         {"<ProjectionID>1</ProjectionID><ProjectionID>1</ProjectionID>", "<ProjectionID/>",
          "<ProjectionID>EPSG:2154</ProjectionID>", "<ProjectionID>2154.5</ProjectionID>",
          "<ProjectionID>2147483648</ProjectionID>"}) {
        EXPECT_EQ(test.faultIn(child + "<Unit>m</Unit>"s), "Projection id is missing.") << child;
    }
}

TEST(TQBasicGeoref, ThatTheProjectionIDIsMissingIsAppended) {
    XmlCase test;
    ASSERT_TRUE(test.document.readFromText("<L><ProjectionID/></L>", test.error));
    test.error = "Layer 1: ";
    EXPECT_FALSE(test.georef.xmlReadFrom(&test.document, test.document.rootElement(), test.error));
    EXPECT_EQ(test.error, "Layer 1: Projection id is missing.");
}

TEST(TQBasicGeoref, TheUnitIsThereOnce) {
    XmlCase test;
    EXPECT_EQ(test.faultIn(""), "Unit tag has to be present and unique");
    EXPECT_EQ(test.faultIn("<Unit>deg</Unit><Unit>deg</Unit>"), "Unit tag has to be present and unique");
}

TEST(TQBasicGeoref, TheUnitIsNotEmpty) {
    XmlCase test;
    EXPECT_EQ(test.faultIn("<Unit/>"), "a Unit tag should not be empty");
    EXPECT_EQ(test.faultIn("<Unit></Unit>"), "a Unit tag should not be empty");
}

TEST(TQBasicGeoref, TheUnitOfGeographicCoordinatesIsAngular) {
    XmlCase test;
    for (const char* unit : {"m", "furlong", "0x00000000", " "}) {
        EXPECT_EQ(test.faultIn("<Unit>"s + unit + "</Unit>"), "Unit with bad unit") << unit;
    }
}

TEST(TQBasicGeoref, ScaleAndSystemStandThereOnceAtMost) {
    XmlCase test;
    EXPECT_EQ(test.faultIn("<Unit>deg</Unit><UnitScale>1</UnitScale><UnitScale>1</UnitScale>"),
              "UnitScale tag has to be none or unique");
    EXPECT_EQ(test.faultIn("<Unit>deg</Unit><GCS>a</GCS><GCS>a</GCS>"), "GCS tag has to be none or unique");
}

TEST(TQBasicGeoref, AScaleThatIsNoNumberIsRefused) {
    XmlCase test;
    for (const char* scale : {"", "two", "2,5", "2.5 m"}) {
        EXPECT_EQ(test.faultIn("<Unit>deg</Unit><UnitScale>"s + scale + "</UnitScale>"),
                  "UnitScale is not a number");
    }
}

TEST(TQBasicGeoref, TheFirstFaultIsTold) {
    XmlCase test;
    const std::string scales = "<UnitScale>1</UnitScale><UnitScale>1</UnitScale>";
    const std::string systems = "<GCS>a</GCS><GCS>a</GCS>";
    EXPECT_EQ(test.faultIn(systems + scales + "<ProjectionID/>"), "Projection id is missing.");
    EXPECT_EQ(test.faultIn(systems + scales), "Unit tag has to be present and unique");
    EXPECT_EQ(test.faultIn(systems + scales + "<Unit>deg</Unit>"), "UnitScale tag has to be none or unique");
}

TEST(TQBasicGeoref, FaultsAreToldInTheUsersLanguage) {
    XmlCase test;
    const Language french("fr");
    EXPECT_EQ(test.faultIn("<ProjectionID/>"), "L'identifiant de la projection manque.");
    EXPECT_EQ(test.faultIn("<ProjectionID>7</ProjectionID>"), "Projection invalide : EPGS:7");
    EXPECT_EQ(test.faultIn(""), "La balise Unit doit être présente, une seule fois");
    EXPECT_EQ(test.faultIn("<Unit/>"), "La balise Unit ne doit pas être vide");
    EXPECT_EQ(test.faultIn("<Unit>m</Unit>"), "La balise Unit contient une unité qui ne convient pas");
    EXPECT_EQ(test.faultIn("<Unit>deg</Unit><UnitScale/>"), "La balise UnitScale ne contient pas un nombre");
    EXPECT_EQ(test.faultIn("<Unit>deg</Unit><GCS/><GCS/>"),
              "La balise GCS ne peut être présente qu'une fois");
}

TEST(TQBasicGeoref, WithoutADocumentOrAnElementThereIsNothing) {
    XmlCase test;
    TQBasicGeoref().xmlWriteContentTo(nullptr, TQXMLElement());
    EXPECT_FALSE(test.georef.xmlReadFrom(nullptr, TQXMLElement(), test.error));
    EXPECT_TRUE(test.error.isEmpty());
    TQXMLWriteDocument document(TQString("L"));
    TQBasicGeoref(test.projection("A"), TQUnitMetre, 1.0, TQString())
        .xmlWriteContentTo(&document, TQXMLElement());
    EXPECT_EQ(document.toString().utf8(), TQXMLWriteDocument(TQString("L")).toString().utf8());
    EXPECT_FALSE(test.georef.xmlReadFrom(&test.document, TQXMLElement(), test.error));
    EXPECT_EQ(test.error, "Unit tag has to be present and unique");
}

TEST(TQBasicGeoref, ADocumentWithoutManagerHasGeographicCoordinatesOnly) {
    TQXMLReadDocument_withProjMgr document(nullptr);
    TQBasicGeoref georef;
    TQString error;
    ASSERT_TRUE(document.readFromText("<L><Unit>deg</Unit></L>", error));
    EXPECT_TRUE(georef.xmlReadFrom(&document, document.rootElement(), error));
    ASSERT_TRUE(document.readFromText("<L><ProjectionID>1</ProjectionID><Unit>m</Unit></L>", error));
    EXPECT_FALSE(georef.xmlReadFrom(&document, document.rootElement(), error));
}

// ---- For the user

TEST(TQBasicGeoref, GeographicCoordinatesAreShownWithTheirUnit) {
    const Language english("en");
    EXPECT_EQ(TQBasicGeoref().displayString(), "Geographic (deg)");
    EXPECT_EQ(TQBasicGeoref(nullptr, TQUnitGon, 2.5, TQString()).displayString(),
              "Geographic (gon * 2.500000)");
    EXPECT_EQ(TQBasicGeoref(nullptr, TQUnitDegree, 1.0, TQString("RGF93")).displayString(),
              "Geographic  - GCS:RGF93(deg)");
    const Language french("fr");
    EXPECT_EQ(TQBasicGeoref().displayString(), "Géographique (deg)");
}

TEST(TQBasicGeoref, AScaleIsShownUnlessItIsExactlyOne) {
    const Language english("en");
    const double nextToOne = std::nextafter(1.0, 2.0);
    EXPECT_EQ(TQBasicGeoref(nullptr, TQUnitDegree, nextToOne, TQString()).displayString(),
              "Geographic (deg * 1.000000)");
    EXPECT_EQ(TQBasicGeoref(nullptr, 0x12000007, 0.0, TQString()).displayString(),
              "Geographic (0x12000007 * 0.000000)");
}

TEST(TQBasicGeoref, AScaleIsShownWithAPointInEveryLocale) {
    const CommaLocale comma;
    const Language english("en");
    const TQBasicGeoref georef(nullptr, TQUnitDegree, 2.5, TQString());
    EXPECT_EQ(georef.displayString(), "Geographic (deg * 2.500000)");
    EXPECT_NE(xmlOf(georef).find("<UnitScale>2.5</UnitScale>"), std::string::npos);
}

TEST(TQBasicGeoref, NothingStandsBetweenAProjectionAndItsUnit) {
    GeorefCase test;
    const TQBasicGeoref georef(test.projection("A"), TQUnitMetre, 1.0, TQString());
    EXPECT_EQ(georef.displayString(), "A(m)");
    test.georef = TQBasicGeoref(test.projection("A"), TQUnitMetre, 0.5, TQString("RGF93"));
    EXPECT_EQ(test.georef.displayString(), "A - GCS:RGF93(m * 0.500000)");
}

TEST(TQBasicGeoref, ASystemOfTheCatalogueIsShownByItsDisplayName) {
    GeorefCase test;
    TQProjection* const utm = test.projection("\tEPSG_32631");
    ASSERT_FALSE(utm->needsDatumShift());
    EXPECT_EQ(TQBasicGeoref(utm, TQUnitMetre, 1.0, TQString()).displayString(),
              "WGS 84 / UTM zone 31N (EPSG:32631) (WGS 84 UTM)(m)");
}

TEST(TQBasicGeoref, ThatAProjectionNeedsADatumShiftIsShown) {
    GeorefCase test;
    TQProjection* const lambert = test.projection("\tEPSG_2154");
    ASSERT_TRUE(lambert->needsDatumShift());
    const std::string name = TQExternalProjList::appShared()->displayNameForExternalProj(lambert).utf8();
    ASSERT_FALSE(name.empty());
    const TQBasicGeoref georef(lambert, TQUnitMetre, 1.0, TQString("RGF93"));
    EXPECT_EQ(georef.displayString().utf8(), name + ", with datum shift  - GCS:RGF93(m)");
    const Language french("fr");
    EXPECT_EQ(georef.displayString().utf8(), name + ", avec changement de datum  - GCS:RGF93(m)");
}

TEST(TQBasicGeoref, ItsTextsAreShippedInEnglishAndFrench) {
    for (const char* language : {"en", "fr"}) {
        const TQString directory = tq_createPath(
            tq_createPath(TQGetApplicationSharedDirectory(), TQString("localization")), TQString(language));
        const std::string texts = readBytes(tq_createPath(directory, TQString("projMessages.strings")));
        for (const char* key :
             {"Geographic", "usingDatum", "Projection id is missing.", "%s tag has to be present and unique",
              "%s tag has to be none or unique", "a %s tag should not be empty", "%s with bad unit",
              "%s is not a number", "Invalid projection:"}) {
            EXPECT_NE(texts.find("\n\""s + key + "\" = \""), std::string::npos) << key << " in " << language;
        }
    }
}
