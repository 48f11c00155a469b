#include "manager/TQProjectionFile.h"

#include "manager/TQProjectionFactory.h"
#include "proj/TQPrProj4.h"
#include "projection/TQDummyProjection.h"
#include "support/TQFile.h"
#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "testing/FullDisk.h"
#include "testing/ProbeProjection.h"
#include "testing/ProjectionTables.h"
#include "testing/SampleProjection.h"
#include "testing/TemporaryDirectory.h"
#include "testing/TextLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kUnknownVersion = "TQProjMgr::createProjectionFromPath: Unknown version\n";
constexpr const char* kUnknownType = "TQProjMgr::createProjectionFromPath: Unknown projection type\n";

std::string unableToRead(const TQString& path) {
    return "TQProjMgr::createProjectionFromPath: unable to read projection file: " + path.utf8();
}

/// What a projection of PROJ's is defined by, which by default is nothing.
constexpr const char* kDefinition = "EPSG:32632";

/// The text of a class in its default state but for the sample's name and ellipsoid, or kDefinition.
struct ClassText {
    int typeCode;
    TextLines lines;
};

TextLines mercatorLines() {
    return TextLines{headerLine("TQPrMercator v1", 5502, 5509)} + sampleBaseLines() +
           TextLines{{"0.0000000000", 5504, 5509},
                     {"0.0000000000", 5505, 5509},
                     {"500000.0000000000", 5506, 5509},
                     {"0.0000000000", 5507, 5509},
                     {"1.0000000000", 5508, 5509}};
}

TextLines polarLines(const std::string& className) {
    return TextLines{headerLine(className + " v1", 5023, 5027), headerLine("TQPrPolar v1", 5023, 5027)} +
           sampleBaseLines() +
           TextLines{{"0.000000", -1, 5027},
                     {"0.000000", -1, 5027},
                     {"1.000000", -1, 5027},
                     {"0.000000", -1, 5027},
                     {"1", -1, 5027}};
}

std::vector<ClassText> classTexts() {
    return {
        {0, TextLines{headerLine("TQPrBonne v1", 5102, 5106)} + sampleBaseLines() +
                TextLines{{"0.0000000000", 5104, 5106}, {"40.0000000000", 5105, 5106}}},
        {1, TextLines{headerLine("TQPrGaussKruger v2", 5202, 5209)} + sampleBaseLines() +
                TextLines{{"0.0000000000", 5204, 5209}, {"500000", 5204, 5209}}},
        {2, TextLines{headerLine("TQPrLambert v1", 5302, 5312)} + sampleBaseLines() +
                TextLines{{"2.3372291670", 5304, 5312},
                          {"46.8000000000", 5305, 5312},
                          {"600000.000000", 5306, 5312},
                          {"2200000.000000", 5307, 5312},
                          {"1", 5308, 5312},
                          {"0.999877420000", 5309, 5312}}},
        {3, TextLines{headerLine("TQPrUtm v2", 5402, 5406)} + sampleBaseLines() +
                TextLines{{"0.0000000000", 5404, 5406}, {"0", 5407, 5406}}},
        {4, mercatorLines()},
        {5, mercatorLines()},
        {6, TextLines{headerLine("TQPrObliqueMercator v1", 5023, 5027)} + sampleBaseLines() +
                TextLines{{"0", -1, 5027}} + TextLines(7, {"0.000000", -1, 5027})},
        {7, mercatorLines() + TextLines{{"1.0000000000", 5510, 5509}}},
        {8, polarLines("TQPrPolarStereo")},
        {9, polarLines("TQPrPolarGnomon")},
        {10, polarLines("TQPrPolarAzimuthal")},
        {11, TextLines{headerLine("TQPrEquiRectangular v1", 5023, 5027)} + sampleBaseLines() +
                 TextLines{{"1.0000000000", -1, 5027}, {"1", -1, 5027}}},
        {12, TextLines{headerLine("TQPrSwissObliqueMercator v1", 5023, 5027)} + sampleBaseLines() +
                 TextLines(5, {"0.000000", -1, 5027})},
        {13, TextLines{headerLine("TQPrCassiniSoldner v0", -1, -1)} + sampleBaseLines() +
                 TextLines{{"0.0000000000", -1, -1},
                           {"0.0000000000", -1, -1},
                           {"500000.0000000000", -1, -1},
                           {"0.0000000000", -1, -1}}},
        {15, mercatorLines()},
        {127, TextLines{headerLine("TQPrProj4 v0", -1, -1), {kSampleName, -1, -1}, {kDefinition, -1, -1}}},
    };
}

std::string headOf(int typeCode) { return "TQFile v1\n" + std::to_string(typeCode) + "\n"; }

std::string fileOf(const ClassText& text) { return headOf(text.typeCode) + textOf(text.lines); }

/// A projection of a class as the texts have it.
std::unique_ptr<TQProjection> projectionOf(int typeCode, TQEllipsoid& ellipsoid) {
    auto projection = tq_newProjectionOfType(typeCode);
    projection->rename(TQString(kSampleName));
    projection->setEllipsoid(&ellipsoid);
    if (auto* const ofPROJ = dynamic_cast<TQPrProj4*>(projection.get())) {
        ofPROJ->initFromPROJString(kDefinition, false);
    }
    return projection;
}

std::unique_ptr<TQProjection> readFrom(const std::string& bytes) {
    const TemporaryDirectory directory;
    return TQProjectionFile::createProjectionFromPath(directory.fileWith("file.proj", bytes));
}

std::string fileWithTypeLine(const std::string& line) {
    return "TQFile v1\n" + line + "\n" + textOf(mercatorLines() + TextLines{{"1.0000000000", 0, 0}});
}

} // namespace

// ---- reading ---------------------------------------------------------------------------------------------

TEST(TQProjectionFile, ReadsAProjectionOfEveryClass) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (const ClassText& text : classTexts()) {
        SCOPED_TRACE(text.typeCode);
        const CapturedMessages messages;
        const auto projection = readFrom(fileOf(text));
        EXPECT_THAT(messages.lines(), IsEmpty());
        ASSERT_NE(projection, nullptr);
        EXPECT_EQ(projection->projectionType(), text.typeCode);
        EXPECT_TRUE(projection->isEqual(projectionOf(text.typeCode, ellipsoid).get()));
        TQPoint global;
        EXPECT_EQ(projection->convertGeoPt(TQPoint{0.1, 0.2}, global), 0);
    }
}

TEST(TQProjectionFile, AProjectionThatIsReadIsAResourceThatNobodyRegistered) {
    const auto projection = readFrom(fileOf(classTexts().front()));
    ASSERT_NE(projection, nullptr);
    EXPECT_TRUE(projection->isResource());
    EXPECT_FALSE(projection->isUserDefined());
    EXPECT_EQ(projection->registrationState(), 0);
}

TEST(TQProjectionFile, AFileThatCannotBeOpenedIsNoProjectionSilently) {
    const TemporaryDirectory directory;
    const CapturedMessages messages;
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(directory.file("missing.proj")), nullptr);
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(directory.file("missing/file.proj")), nullptr);
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(directory.file("")), nullptr); // the directory
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(TQString()), nullptr);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjectionFile, AFileWithoutVersionLineIsNoProjectionSilently) {
    const CapturedMessages messages;
    for (const char* bytes :
         {"", "\n", "5\n", "TQFile\n5\n", "TQFile v\n5\n", "TQFile vX\n5\n", "\x01\x02\x03"}) {
        EXPECT_EQ(readFrom(bytes), nullptr) << bytes;
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjectionFile, AnotherFileVersionIsReported) {
    for (const char* version : {"0", "2", "11", "-1"}) {
        const CapturedMessages messages;
        EXPECT_EQ(readFrom("TQFile v" + std::string(version) + "\n5\n" + textOf(mercatorLines())), nullptr);
        EXPECT_THAT(messages.lines(), ElementsAre(kUnknownVersion)) << version;
    }
}

TEST(TQProjectionFile, AFileWithoutTypeLineIsNoProjectionSilently) {
    const CapturedMessages messages;
    EXPECT_EQ(readFrom("TQFile v1\n"), nullptr);
    EXPECT_EQ(readFrom("TQFile v1"), nullptr);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjectionFile, AnUnknownTypeIsReported) {
    for (const char* line :
         {"14", "-1", "16", "126", "128", "129", "255", "270", "99999999999", "4294967295", "-242"}) {
        const CapturedMessages messages;
        EXPECT_EQ(readFrom(fileWithTypeLine(line)), nullptr) << line;
        EXPECT_THAT(messages.lines(), ElementsAre(kUnknownType)) << line;
    }
}

TEST(TQProjectionFile, TheTypeLineIsTakenModulo256) {
    for (const auto& [line, code] :
         {std::pair{"263", 7}, {"7", 7}, {"-249", 7}, {"65543", 7}, {"261", 5}, {"5", 5}}) {
        const CapturedMessages messages;
        const auto projection = readFrom(fileWithTypeLine(line));
        ASSERT_NE(projection, nullptr) << line;
        EXPECT_EQ(projection->projectionType(), code) << line;
        EXPECT_THAT(messages.lines(), IsEmpty());
    }
}

TEST(TQProjectionFile, TheTypeLineIsReadAsAnInteger) {
    for (const char* line : {" 5", "+5", "5 direct", "5.9", "\t5\r"}) {
        const auto projection = readFrom(fileWithTypeLine(line));
        ASSERT_NE(projection, nullptr) << line;
        EXPECT_EQ(projection->projectionType(), 5) << line;
    }
}

TEST(TQProjectionFile, ATypeLineWithoutNumberIsZero) {
    const ClassText bonne = classTexts().front();
    for (const char* line : {"", "abc", "-", "TQPrMercator"}) {
        const auto projection = readFrom("TQFile v1\n" + std::string(line) + "\n" + textOf(bonne.lines));
        ASSERT_NE(projection, nullptr) << line;
        EXPECT_EQ(projection->projectionType(), 0) << line;
    }
}

TEST(TQProjectionFile, ATextThatCannotBeReadIsReportedWithItsPath) {
    const TemporaryDirectory directory;
    const TQString path = directory.fileWith("100% %s %d.proj", "TQFile v1\n5\nTQPrMercator v1\n");
    const CapturedMessages messages;
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(path), nullptr);
    EXPECT_THAT(messages.lines(), ElementsAre(unableToRead(path)));
}

TEST(TQProjectionFile, AnUnknownVersionInTheTextIsReportedByTheClassAndWithThePath) {
    const TemporaryDirectory directory;
    const TQString path = directory.fileWith("file.proj", "TQFile v1\n5\nTQPrMercator v2\n");
    const CapturedMessages messages;
    EXPECT_EQ(TQProjectionFile::createProjectionFromPath(path), nullptr);
    EXPECT_THAT(messages.lines(),
                ElementsAre("TQPrMercator::loadFromFile: Unknown version\n", unableToRead(path)));
}

TEST(TQProjectionFile, AFileMayEndAfterEachOfItsBytes) {
    const TemporaryDirectory directory;
    for (const ClassText& text : classTexts()) {
        const std::string whole = fileOf(text);
        const std::size_t head = headOf(text.typeCode).size();
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            SCOPED_TRACE(testing::Message() << "type " << text.typeCode << ", " << length << " bytes");
            const TQString path = directory.fileWith("file.proj", whole.substr(0, length));
            const bool complete = length >= head && codeWhenCutOff(text.lines, length - head) == 0;
            const bool typed = length > std::string("TQFile v1\n").size();
            const CapturedMessages messages;
            const auto projection = TQProjectionFile::createProjectionFromPath(path);
            EXPECT_EQ(projection != nullptr, complete);
            if (typed && !complete) {
                EXPECT_THAT(messages.lines(), ElementsAre(unableToRead(path)));
            } else {
                EXPECT_THAT(messages.lines(), IsEmpty());
            }
        }
    }
}

TEST(TQProjectionFile, ReadsFilesOfEitherLineEnd) {
    std::string bytes;
    for (const char byte : fileOf(classTexts().front())) {
        bytes += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
    }
    const auto projection = readFrom(bytes);
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), kSampleName);
}

TEST(TQProjectionFile, ThePathMayHaveAnyCharacters) {
    const TemporaryDirectory directory;
    const TQString path = tq_createPath(tq_stringFromPath(directory.path()), TQString("Zürich – 日本.proj"));
    TQEllipsoid ellipsoid = sampleEllipsoid();
    ASSERT_TRUE(TQProjectionFile::write(*projectionOf(5, ellipsoid), path));
    EXPECT_NE(TQProjectionFile::createProjectionFromPath(path), nullptr);
}

TEST(TQProjectionFile, EveryFileOfTheResourcesIsReadAndWrittenByteForByte) {
    const std::filesystem::path resources =
        tq_filesystemPath(TQGetApplicationSharedDirectory()) / "resProj" / "Projection";
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(resources)) {
        if (entry.path().extension() != ".proj") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename());
        ++count;
        const CapturedMessages messages;
        const auto projection = TQProjectionFile::createProjectionFromPath(tq_stringFromPath(entry.path()));
        EXPECT_THAT(messages.lines(), IsEmpty());
        ASSERT_NE(projection, nullptr);
        const TemporaryDirectory directory;
        ASSERT_TRUE(TQProjectionFile::write(*projection, directory.file("file.proj")));
        std::ostringstream bytes;
        bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        EXPECT_EQ(directory.bytesOf("file.proj"), bytes.str());
    }
    EXPECT_GT(count, 0);
}

// ---- ownership -------------------------------------------------------------------------------------------

TEST(TQProjectionFile, DestroyingTheProjectionFreesItsEllipsoid) {
    auto projection = readFrom(fileOf(classTexts().front()));
    ASSERT_NE(projection, nullptr);
    const std::weak_ptr<const void> life = projection->ellipsoid()->lifeToken();
    projection.reset();
    EXPECT_TRUE(life.expired());
}

TEST(TQProjectionFile, DestroyingTheEllipsoidBeforeTheProjectionIsSafe) {
    auto projection = readFrom(fileOf(classTexts().front()));
    ASSERT_NE(projection, nullptr);
    std::unique_ptr<TQEllipsoid>(projection->ellipsoid()).reset();
    projection.reset();
    EXPECT_EQ(projection, nullptr);
}

// ---- writing ---------------------------------------------------------------------------------------------

TEST(TQProjectionFile, WritesAProjectionOfEveryClassByteForByte) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (const ClassText& text : classTexts()) {
        const TemporaryDirectory directory;
        const CapturedMessages messages;
        EXPECT_TRUE(
            TQProjectionFile::write(*projectionOf(text.typeCode, ellipsoid), directory.file("file.proj")));
        EXPECT_EQ(directory.bytesOf("file.proj"), fileOf(text)) << text.typeCode;
        EXPECT_THAT(messages.lines(), IsEmpty());
    }
}

TEST(TQProjectionFile, WhatIsWrittenIsReadBackEqual) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 0.0033528106647,
                            {-582.0, -105.5, -414.25, 5.04e-06, 1.697e-06, -1.49e-05, -8.3});
    for (const ClassText& text : classTexts()) {
        SCOPED_TRACE(text.typeCode);
        const TemporaryDirectory directory;
        const TQString path = directory.file("file.proj");
        const auto projection = projectionOf(text.typeCode, ellipsoid);
        ParameterTable parameters;
        parameters.with("lambda0", 9.5).with("X0", 123456.75).with("hemisphere", Logical(false));
        parameters.with("longitudeCenter", 7.5).with("latitudeCenter", 46.5).with("azimuth", 30.5);
        parameters.with("bearing", 29.75).with("kc", 0.9998).with("falseEasting", 2600000.25);
        parameters.with("standardParallel", 45.5).with("isNorth", Logical(false));
        projection->setParams(parameters.with("phi0", -30.25).with("k0", 0.9996).table());
        ASSERT_TRUE(TQProjectionFile::write(*projection, path));
        const auto read = TQProjectionFile::createProjectionFromPath(path);
        ASSERT_NE(read, nullptr);
        EXPECT_TRUE(read->isEqual(projection.get()));
        EXPECT_EQ(listedParameters(*read), listedParameters(*projection));
        TQPoint before;
        TQPoint after;
        projection->convertGeoPt(TQPoint{0.1, 0.2}, before);
        read->convertGeoPt(TQPoint{0.1, 0.2}, after);
        EXPECT_EQ(after, before);
    }
}

TEST(TQProjectionFile, AProjectionWithoutTypeIsReportedAndItsFileHoldsTheVersionOnly) {
    for (const bool dummy : {true, false}) {
        const TemporaryDirectory directory;
        const CapturedMessages messages;
        const TQDummyProjection source;
        const TQProjection root(static_cast<const TQProjection&>(source));
        const TQProjection& projection = dummy ? source : root;
        EXPECT_FALSE(TQProjectionFile::write(projection, directory.file("file.proj")));
        EXPECT_THAT(messages.lines(),
                    ElementsAre("TQProjMgr::saveProjection: Unknown projection type: -1\n"));
        EXPECT_EQ(directory.bytesOf("file.proj"), "TQFile v1\n");
    }
}

TEST(TQProjectionFile, AFileThatCannotBeOpenedIsNotWrittenSilently) {
    const TemporaryDirectory directory;
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const CapturedMessages messages;
    EXPECT_FALSE(TQProjectionFile::write(*projectionOf(5, ellipsoid), directory.file("missing/file.proj")));
    EXPECT_FALSE(TQProjectionFile::write(*projectionOf(5, ellipsoid), directory.file("")));
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQProjectionFile, OnAFullDiskTheOldFileStaysAndTheCodeIsReported) {
    if (!FileSizeLimit::isAvailable) {
        GTEST_SKIP() << "the system cannot limit the size of files";
    }
    TQEllipsoid ellipsoid = sampleEllipsoid();
    const TemporaryDirectory directory;
    const TQString path = directory.fileWith("100% %s.proj", "what was there before");
    for (const ClassText& text : classTexts()) {
        const auto projection = projectionOf(text.typeCode, ellipsoid);
        const std::size_t head = headOf(text.typeCode).size();
        for (std::size_t room = 0; room < fileOf(text).size(); ++room) {
            SCOPED_TRACE(testing::Message() << "type " << text.typeCode << ", room for " << room << " bytes");
            const CapturedMessages messages;
            bool written = true;
            {
                const FileSizeLimit limit(room);
                written = TQProjectionFile::write(*projection, path);
            }
            EXPECT_FALSE(written);
            if (room < head) {
                EXPECT_THAT(messages.lines(), IsEmpty());
            } else {
                EXPECT_THAT(messages.lines(),
                            ElementsAre("Error Nr " + std::to_string(codeWhenFull(text.lines, room - head)) +
                                        " while writing projection file: " + path.utf8() + "\n"));
            }
            EXPECT_EQ(directory.bytesOf("100% %s.proj"), "what was there before");
        }
    }
    const std::filesystem::directory_iterator files(directory.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1); // nothing is left beside it
}

// Not every code comes from the disk: a class may be unable to write itself.
TEST(TQProjectionFile, WhenTheClassFailsTheOldFileStaysAndTheCodeIsReported) {
    const TemporaryDirectory directory;
    const TQString path = directory.fileWith("file.proj", "what was there before");
    ProbeProjection projection;
    projection.writer = [](TQFile& file) {
        file.writeLine(TQString("half of the text"));
        return 4711;
    };
    const CapturedMessages messages;
    EXPECT_FALSE(TQProjectionFile::write(projection, path));
    EXPECT_THAT(messages.lines(),
                ElementsAre("Error Nr 4711 while writing projection file: " + path.utf8() + "\n"));
    EXPECT_EQ(directory.bytesOf("file.proj"), "what was there before");
}

TEST(TQProjectionFile, FilesAreTheSameUnderACommaLocale) {
    const CommaLocale locale;
    TQEllipsoid ellipsoid = sampleEllipsoid();
    for (const ClassText& text : classTexts()) {
        const TemporaryDirectory directory;
        EXPECT_TRUE(
            TQProjectionFile::write(*projectionOf(text.typeCode, ellipsoid), directory.file("file.proj")));
        EXPECT_EQ(directory.bytesOf("file.proj"), fileOf(text)) << text.typeCode;
        const auto read = readFrom(fileOf(text));
        ASSERT_NE(read, nullptr);
        EXPECT_TRUE(read->isEqual(projectionOf(text.typeCode, ellipsoid).get()));
    }
}
