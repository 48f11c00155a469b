#include "testing/ProjectionClassTest.h"

#include "manager/TQProjectionFactory.h"
#include "projection/TQDummyProjection.h"
#include "support/TQFile.h"
#include "testing/Batches.h"
#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "testing/FullDisk.h"
#include "testing/Identity.h"
#include "testing/InstructionSets.h"
#include "testing/ProjectionFiles.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <optional>

using testing::AnyOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

constexpr bool kWithHeader = true;
constexpr TQPoint kUntouched{123.0, 456.0};

/// What the conversions of a projection make of a few points.
std::vector<TQPoint> conversionsOf(const TQProjection& projection) {
    std::vector<TQPoint> results;
    for (const TQPoint& geo : {TQPoint{0.15, 0.2}, TQPoint{0.2, 0.9}, TQPoint{0.1, -0.4}}) {
        TQPoint global = kUntouched;
        TQPoint back = kUntouched;
        projection.convertGeoPt(geo, global);
        projection.convertGlobalPt({500000.0 + 1e6 * geo.x, 1e6 * geo.y}, back);
        results.push_back(global);
        results.push_back(back);
    }
    return results;
}

/// The archive with another version in one of its tags.
std::string withVersion(const StreamBytes& archive, const std::vector<ArchiveTag>& tags, std::size_t index,
                        int version) {
    StreamBytes bytes;
    std::size_t end = 0;
    for (std::size_t i = 0; i <= index; ++i) {
        const StreamBytes tag = StreamBytes().tag(tags[i].className, tags[i].newestVersion);
        EXPECT_EQ(archive.bytes().substr(end, tag.bytes().size()), tag.bytes());
        bytes.tag(tags[i].className, i == index ? version : tags[i].newestVersion);
        end += tag.bytes().size();
    }
    return bytes.bytes() + archive.bytes().substr(end);
}

std::string unknownVersionLine(const std::string& className, int version) {
    return className + "::unarchiveFrom(TQReadStream *): version " + std::to_string(version) +
           " is unknown.\n";
}

std::string unknownTextVersionLine(const std::string& className) {
    return className + "::loadFromFile: Unknown version\n";
}

} // namespace

std::unique_ptr<TQProjection> ProjectionClassTest::sample() {
    ParameterTable parameters;
    parameters.with("Nom", TQString(kSampleName));
    for (const SampleParameter& parameter : GetParam().parameters) {
        parameters.with(parameter.listed.name, parameter.listed.type, parameter.listed.value);
    }
    std::unique_ptr<TQProjection> projection = fresh();
    projection->setParams(parameters.table());
    projection->setEllipsoid(&_ellipsoid);
    return projection;
}

void ProjectionClassTest::takeInForm(TQProjection& projection, ParameterTable& parameters) {
    for (const SampleParameter& parameter : GetParam().parameters) {
        if (parameter.isForm) {
            parameters.with(parameter.listed.name, parameter.listed.type, parameter.listed.value);
        }
    }
    projection.setParams(parameters.table());
}

int ProjectionClassTest::readingCode(int code) {
    return GetParam().everyReadingFailureIsMinusOne ? -1 : code;
}

TextLines ProjectionClassTest::lines() { return GetParam().headLines + linesWithoutHeader(); }

TextLines ProjectionClassTest::linesWithoutHeader() {
    TextLines baseLines = sampleBaseLines();
    for (TextLine& line : baseLines) {
        line.codeWhenMissing = readingCode(line.codeWhenMissing);
    }
    return GetParam().innerHeadLines + baseLines + GetParam().valueLines;
}

void ProjectionClassTest::expectSample(const TQProjection& projection) {
    const auto expected = sample();
    EXPECT_TRUE(projection.isEqual(expected.get()));
    EXPECT_EQ(archivedBytes(projection), GetParam().archive.bytes());
    EXPECT_EQ(conversionsOf(projection), conversionsOf(*expected));
}

TEST_P(ProjectionClassTest, ConvertsManyPointsAsEachAlone) {
    const CapturedMessages messages;
    const auto projection = sample();
    for (const TQInstructionSet set : instructionSetsHere()) {
        const InstructionSetInUse inUse(set);
        for (std::size_t count = 0; count <= 67; ++count) {
            expectBatchesLikeSinglePoints(*projection, mixedPoints(count, count), TQUnitRadian);
        }
        expectBatchesLikeSinglePoints(*projection, mixedPoints(2000, 1), TQUnitRadian);
        expectBatchesLikeSinglePoints(*projection, mixedPoints(2000, 2), TQUnitDegree);
        expectBatchesLikeSinglePoints(*fresh(), mixedPoints(20, 3), TQUnitRadian);
    }
}

TEST_P(ProjectionClassTest, AnswersToItsClassAndItsAncestors) {
    expectIdentity(*fresh(), GetParam().lineage);
}

TEST_P(ProjectionClassTest, HasItsTypeCodeAndTypeName) {
    EXPECT_EQ(fresh()->projectionType(), GetParam().typeCode);
    EXPECT_EQ(fresh()->typeName(), GetParam().typeName.c_str());
}

TEST_P(ProjectionClassTest, IsMadeFromItsTypeCodeInItsDefaultState) {
    const auto made = tq_newProjectionOfType(GetParam().typeCode);
    if (GetParam().typeCode < 0) {
        EXPECT_EQ(made, nullptr);
        return;
    }
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->className(), GetParam().lineage.front());
    EXPECT_EQ(archivedBytes(*made), archivedBytes(*fresh()));
    EXPECT_EQ(made->name(), nullptr);
    EXPECT_EQ(made->ellipsoid(), nullptr);
    EXPECT_TRUE(made->isResource());
    EXPECT_FALSE(made->isUserDefined());
    EXPECT_EQ(made->registrationState(), 0);
}

// ---- parameters ------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, ListsItsParametersInOrder) {
    std::vector<ListedParameter> expected = {{"Type", "Int", std::to_string(GetParam().typeCode)},
                                             {"Nom", "String", kSampleName},
                                             {"Ellipsoide", "String", kSampleEllipsoidName}};
    for (const SampleParameter& parameter : GetParam().parameters) {
        expected.push_back(parameter.listed);
    }
    EXPECT_EQ(listedParameters(*sample()), expected);
}

TEST_P(ProjectionClassTest, TakesEachParameterAloneAndLeavesTheOthers) {
    for (const SampleParameter& parameter : GetParam().parameters) {
        if (parameter.isForm) {
            continue;
        }
        SCOPED_TRACE(parameter.listed.name);
        const auto projection = sample();
        std::vector<ListedParameter> expected = listedParameters(*projection);
        for (ListedParameter& listed : expected) {
            if (listed.name == parameter.listed.name) {
                listed.value = parameter.otherValue;
            }
        }
        ParameterTable one;
        one.with(parameter.listed.name, parameter.listed.type, parameter.otherValue);
        takeInForm(*projection, one);
        EXPECT_EQ(listedParameters(*projection), expected);
    }
}

TEST_P(ProjectionClassTest, AnEmptyTableChangesNothing) {
    const auto projection = sample();
    ParameterTable empty;
    takeInForm(*projection, empty);
    expectSample(*projection);
}

TEST_P(ProjectionClassTest, TakingParametersComputesTheConstantsThatTheClassComputes) {
    const auto projection = fresh();
    projection->setEllipsoid(&_ellipsoid);
    ParameterTable parameters;
    parameters.with("Nom", TQString(kSampleName));
    for (const SampleParameter& parameter : GetParam().parameters) {
        parameters.with(parameter.listed.name, parameter.listed.type, parameter.listed.value);
    }
    projection->setParams(parameters.table());
    EXPECT_EQ(conversionsOf(*projection) == conversionsOf(*sample()), GetParam().constantsAreCompleted);
    projection->initConstants();
    expectSample(*projection);
}

// ---- sameness --------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, HasTheSameDefinitionJustWithinEachTolerance) {
    for (const SampleParameter& parameter : GetParam().parameters) {
        if (parameter.tolerance < 0.0) {
            continue;
        }
        SCOPED_TRACE(parameter.listed.name);
        const auto with = [&](double value) {
            auto projection = sample();
            ParameterTable one;
            one.with(parameter.listed.name.c_str(), value);
            takeInForm(*projection, one);
            return projection;
        };
        const auto zero = with(0.0);
        for (const double sign : {1.0, -1.0}) {
            const auto inside = with(sign * parameter.tolerance);
            const auto outside = with(sign * std::nextafter(parameter.tolerance, 1e9));
            EXPECT_TRUE(zero->hasSameDefinition(*inside));
            EXPECT_TRUE(inside->hasSameDefinition(*zero));
            EXPECT_NE(zero->hasSameDefinition(*outside), GetParam().parametersAreDefinition);
            EXPECT_NE(outside->hasSameDefinition(*zero), GetParam().parametersAreDefinition);
            EXPECT_TRUE(zero->isEqual(inside.get()));
            EXPECT_FALSE(zero->isEqual(outside.get()));
        }
        EXPECT_NE(zero->hasSameDefinition(*with(std::nan(""))), GetParam().parametersAreDefinition);
        EXPECT_FALSE(zero->isEqual(with(std::nan("")).get()));
    }
}

TEST_P(ProjectionClassTest, HasAnotherDefinitionWithAnyOtherParameter) {
    for (const SampleParameter& parameter : GetParam().parameters) {
        if (parameter.isForm) {
            continue;
        }
        SCOPED_TRACE(parameter.listed.name);
        const auto other = sample();
        ParameterTable one;
        one.with(parameter.listed.name, parameter.listed.type, parameter.otherValue);
        takeInForm(*other, one);
        EXPECT_NE(sample()->hasSameDefinition(*other), GetParam().parametersAreDefinition);
        EXPECT_FALSE(sample()->isEqual(other.get()));
    }
}

TEST_P(ProjectionClassTest, HasAnotherDefinitionOnAnotherEllipsoidOrNone) {
    const auto projection = sample();
    const auto other = sample();
    EXPECT_TRUE(projection->hasSameDefinition(*other));
    TQEllipsoid otherEllipsoid(TQString("Other"), 6400000.0, 0.0199);
    other->setEllipsoid(&otherEllipsoid);
    EXPECT_FALSE(projection->hasSameDefinition(*other));
    other->setEllipsoid(nullptr);
    EXPECT_FALSE(projection->hasSameDefinition(*other));
    EXPECT_FALSE(other->hasSameDefinition(*projection));
}

TEST_P(ProjectionClassTest, HasAnotherDefinitionThanEveryOtherClass) {
    const auto projection = sample();
    for (int code = -1; code < 128; ++code) {
        const auto other = code < 0 ? std::make_unique<TQDummyProjection>() : tq_newProjectionOfType(code);
        if (other == nullptr || code == GetParam().typeCode) {
            continue;
        }
        other->rename(TQString(kSampleName));
        other->setEllipsoid(&_ellipsoid);
        EXPECT_FALSE(projection->hasSameDefinition(*other)) << code;
        EXPECT_FALSE(projection->isEqual(other.get())) << code;
    }
}

TEST_P(ProjectionClassTest, AnotherNameIsTheSameDefinitionButNotEqual) {
    const auto renamed = sample();
    renamed->rename(TQString("Renamed"));
    EXPECT_TRUE(sample()->hasSameDefinition(*renamed));
    EXPECT_FALSE(sample()->isEqual(renamed.get()));
}

// ---- copies ----------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, CopyIsTheSameAndConvertsTheSame) {
    auto original = sample();
    const auto copy = tq_copyOf(*original);
    EXPECT_EQ(copy->ellipsoid(), original->ellipsoid());
    EXPECT_NE(copy->name(), original->name());
    expectSample(*copy);
    original.reset();
    expectSample(*copy);
}

// ---- text ------------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, WritesItsTextByteForByte) {
    EXPECT_EQ(writtenProjectionText(*sample()), textOf(lines()));
}

TEST_P(ProjectionClassTest, WritesItsTextWithoutItsOwnHeaderWhenAsked) {
    EXPECT_EQ(writtenProjectionText(*sample(), false), textOf(linesWithoutHeader()));
}

TEST_P(ProjectionClassTest, ReadsItsText) {
    const auto projection = fresh();
    ASSERT_EQ(readProjectionText(*projection, textOf(lines())), 0);
    ASSERT_NE(projection->ellipsoid(), nullptr);
    EXPECT_TRUE(projection->ellipsoid()->isEqual(&_ellipsoid));
    EXPECT_EQ(conversionsOf(*projection) == conversionsOf(*sample()), GetParam().constantsAreCompleted);
    projection->initConstants();
    expectSample(*projection);
    EXPECT_EQ(writtenProjectionText(*projection), textOf(lines()));
}

TEST_P(ProjectionClassTest, ReadsTextWithoutHeaderByTheVersionTheFileHolds) {
    const TemporaryDirectory directory;
    const TQString path = directory.fileWith("text", textOf(linesWithoutHeader()));
    TQFile file(path);
    file.setBlockVersion(GetParam().newestTextVersion);
    const auto projection = fresh();
    ASSERT_EQ(projection->loadFromFile(file, false), 0);
    EXPECT_EQ(archivedBytes(*projection), GetParam().archive.bytes());

    const CapturedMessages messages;
    const bool isLookedAt = GetParam().innerHeadLines.empty();
    TQFile unknown(path);
    unknown.setBlockVersion(GetParam().newestTextVersion + 1);
    EXPECT_EQ(fresh()->loadFromFile(unknown, false), isLookedAt ? GetParam().codeOfUnknownVersion : 0);
    EXPECT_EQ(messages.lines(), isLookedAt ? std::vector{unknownTextVersionLine(GetParam().textClass)}
                                           : std::vector<std::string>());
}

TEST_P(ProjectionClassTest, TellsWhichLineIsMissingWhereverTheTextEnds) {
    expectCodesWhereverTheTextEnds(lines(),
                                   [](TQFile& file) { return fresh()->loadFromFile(file, kWithHeader); });
}

TEST_P(ProjectionClassTest, TellsWhatCouldNotBeWrittenWhereverTheDiskIsFull) {
    if (!FileSizeLimit::isAvailable) {
        GTEST_SKIP() << "the system cannot limit the size of files";
    }
    const auto projection = sample();
    expectCodesWhereverTheDiskIsFull(
        lines(), [&](TQFile& file) { return projection->writeToFile(file, kWithHeader); });
}

TEST_P(ProjectionClassTest, CannotWriteToAFullDevice) {
    const std::optional<TQString> device = fullDevice();
    if (!device) {
        GTEST_SKIP() << "the system has no such device";
    }
    TQFile file(*device);
    EXPECT_EQ(sample()->writeToFile(file, kWithHeader), lines().front().codeWhenNotWritten);
}

TEST_P(ProjectionClassTest, CannotReadOrWriteAFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    TQFile missing(directory.file("missing"));
    EXPECT_EQ(fresh()->loadFromFile(missing, kWithHeader), GetParam().codeWhenNotOpened);
    TQFile nowhere(directory.file("missing/projection"));
    EXPECT_EQ(sample()->writeToFile(nowhere, kWithHeader), GetParam().codeWhenNotOpened);
    TQFile read(directory.fileWith("read", "bytes"));
    ASSERT_EQ(read.open(TQFile::Read), 0);
    EXPECT_EQ(sample()->writeToFile(read, kWithHeader), GetParam().codeWhenNotOpened);
    TQFile written(directory.file("written"));
    ASSERT_EQ(written.open(TQFile::Write), 0);
    EXPECT_EQ(fresh()->loadFromFile(written, kWithHeader), GetParam().codeWhenNotOpened);
}

TEST_P(ProjectionClassTest, ReportsAnUnknownVersionOfTheTextAndTakesNothing) {
    const auto withTextVersion = [](int version) {
        TextLines lines = ProjectionClassTest::lines();
        std::string& head = lines[GetParam().innerHeadLines.empty() ? 0 : GetParam().headLines.size()].text;
        head.replace(head.rfind('v') + 1, std::string::npos, std::to_string(version));
        return textOf(lines);
    };
    for (const int version : {GetParam().oldestTextVersion - 1, GetParam().newestTextVersion + 1, -1, 1000}) {
        SCOPED_TRACE(version);
        const CapturedMessages messages;
        const auto projection = fresh();
        EXPECT_EQ(readProjectionText(*projection, withTextVersion(version)), GetParam().codeOfUnknownVersion);
        EXPECT_THAT(messages.lines(), ElementsAre(unknownTextVersionLine(GetParam().textClass)));
        EXPECT_EQ(archivedBytes(*projection), archivedBytes(*fresh()));
    }
}

TEST_P(ProjectionClassTest, PassesTheCodesOfUnknownInnerVersionsOn) {
    const CapturedMessages messages;
    std::string unknownProjection = textOf(lines());
    unknownProjection.replace(unknownProjection.find("TQProjection v1"), 15, "TQProjection v2");
    EXPECT_EQ(readProjectionText(*fresh(), unknownProjection), readingCode(5024));
    std::string unknownEllipsoid = textOf(lines());
    unknownEllipsoid.replace(unknownEllipsoid.find("TQEllipsoid v2"), 14, "TQEllipsoid v3");
    EXPECT_EQ(readProjectionText(*fresh(), unknownEllipsoid), readingCode(5003));
    EXPECT_THAT(messages.lines(), ElementsAre("TQProjection::loadFromFile: Unknown version\n",
                                              "TQEllipsoid::loadFromFile: Unknown version\n"));
}

// ---- archives --------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, WritesItsArchiveByteForByte) {
    EXPECT_EQ(archivedBytes(*sample()), GetParam().archive.bytes());
}

TEST_P(ProjectionClassTest, ReadsItsArchive) {
    const CapturedMessages messages;
    ByteStream stream(GetParam().archive);
    const auto projection = fresh();
    EXPECT_EQ(projection->initFromStream(stream.get()), projection.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_EQ(projection->ellipsoid(), nullptr);
    ASSERT_NE(projection->pendingEllipsoidName(), nullptr);
    EXPECT_EQ(*projection->pendingEllipsoidName(), kSampleEllipsoidName);
    projection->setEllipsoid(&_ellipsoid);
    expectSample(*projection);
}

TEST_P(ProjectionClassTest, FromAnArchiveItAndItsCopyConvertOnceTheyHaveTheirEllipsoid) {
    ByteStream stream(GetParam().archive);
    const auto read = fresh();
    read->unarchiveFrom(stream.get());
    const auto copy = tq_copyOf(*read);
    for (TQProjection* projection : {read.get(), copy.get()}) {
        TQPoint point = kUntouched;
        if (!GetParam().convertsWithoutEllipsoid) {
            EXPECT_EQ(projection->convertGeoPt(TQPoint{0.1, 0.8}, point), GetParam().codeWithoutEllipsoid);
            EXPECT_EQ(projection->convertGlobalPt(TQPoint{6e5, 3e5}, point), GetParam().codeWithoutEllipsoid);
            EXPECT_EQ(point, kUntouched);
        }
        ASSERT_NE(projection->pendingEllipsoidName(), nullptr);
        EXPECT_EQ(*projection->pendingEllipsoidName(), kSampleEllipsoidName);
        projection->setEllipsoid(&_ellipsoid);
        EXPECT_EQ(conversionsOf(*projection), conversionsOf(*sample()));
    }
}

TEST_P(ProjectionClassTest, ItsArchiveMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(GetParam().archive.bytes(), [this](TQReadStream* stream) {
        const auto projection = fresh();
        projection->unarchiveFrom(stream);
        projection->setEllipsoid(&_ellipsoid);
        conversionsOf(*projection);
        EXPECT_STREQ(tq_copyOf(*projection)->className(), GetParam().lineage.front());
    });
}

TEST_P(ProjectionClassTest, ReportsEveryUnknownVersionInItsArchive) {
    const auto& tags = GetParam().tags;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        for (const int version : {tags[i].newestVersion + 1, 99, 32767, -1, -32768}) {
            SCOPED_TRACE(tags[i].className + " " + std::to_string(version));
            const CapturedMessages messages;
            ByteStream stream(withVersion(GetParam().archive, tags, i, version));
            const auto projection = fresh();
            projection->unarchiveFrom(stream.get());
            EXPECT_THAT(messages.lines(), ElementsAre(unknownVersionLine(tags[i].className, version)));
            EXPECT_EQ(projection->name(), nullptr);
            if (i == 0) {
                EXPECT_EQ(archivedBytes(*projection), archivedBytes(*fresh()));
            }
        }
    }
}

TEST_P(ProjectionClassTest, AnUnknownVersionLeavesAProjectionAsItWas) {
    const CapturedMessages messages;
    ByteStream stream(
        withVersion(GetParam().archive, GetParam().tags, 0, GetParam().tags[0].newestVersion + 1));
    const auto projection = sample();
    projection->unarchiveFrom(stream.get());
    EXPECT_EQ(projection->ellipsoid(), &_ellipsoid);
    EXPECT_EQ(projection->pendingEllipsoidName(), nullptr);
    expectSample(*projection);
}

// ---- WKT -------------------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, WritesItsWkt) {
    const CapturedMessages messages;
    EXPECT_EQ(sample()->WKTProjectionStuff().utf8(), sampleGeographicWkt() + GetParam().wktItems);
    EXPECT_THAT(messages.lines(), ElementsAreArray(GetParam().wktLines));
}

TEST_P(ProjectionClassTest, WritesItsWholeDefinitionAsWkt) {
    const CapturedMessages messages;
    for (const bool wkt2 : {false, true}) {
        EXPECT_EQ(sample()->wktDefinition(wkt2).utf8(), "PROJCS[\"Sample\"," + sampleGeographicWkt() +
                                                            GetParam().wktItems + ",UNIT[\"Meter\",1.0]]");
    }
}

// ---- surroundings ----------------------------------------------------------------------------------------

TEST_P(ProjectionClassTest, ConvertsWithoutEllipsoidOnlyWhenTheClassNeedsNone) {
    const auto projection = fresh();
    EXPECT_EQ(projection->initConstants(), 0);
    TQPoint global = kUntouched;
    TQPoint geo = kUntouched;
    EXPECT_EQ(projection->convertGeoPt(TQPoint{0.1, 0.2}, global), GetParam().codeWithoutEllipsoid);
    EXPECT_EQ(projection->convertGlobalPt(TQPoint{1.0, 2.0}, geo), GetParam().codeWithoutEllipsoid);
    EXPECT_EQ(global != kUntouched, GetParam().convertsWithoutEllipsoid);
    EXPECT_EQ(geo != kUntouched, GetParam().convertsWithoutEllipsoid);
}

TEST_P(ProjectionClassTest, LivesWithoutEllipsoidAndName) {
    const CapturedMessages messages;
    const auto projection = sample();
    projection->setEllipsoid(nullptr);
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(), GetParam().wktItems);
    EXPECT_EQ(tq_copyOf(*projection)->ellipsoid(), nullptr);
    const auto nameless = fresh();
    EXPECT_EQ(tq_copyOf(*nameless)->name(), nullptr);
    EXPECT_TRUE(nameless->isEqual(fresh().get()));
    EXPECT_FALSE(nameless->isEqual(sample().get()));
    ByteStream stream(archivedBytes(*nameless));
    const auto read = sample();
    read->unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(read->name(), nullptr);
    EXPECT_FALSE(writtenProjectionText(*nameless).empty());
}

TEST_P(ProjectionClassTest, InitConstantsAnswersZero) { EXPECT_EQ(sample()->initConstants(), 0); }

TEST_P(ProjectionClassTest, EveryGlobalPointIsValid) {
    for (const double number : {0.0, 1e300, std::numeric_limits<double>::infinity(), std::nan("")}) {
        EXPECT_TRUE(sample()->isGlobalPtValid({number, -number}));
    }
}

TEST_P(ProjectionClassTest, ConversionsEndForEveryNumber) {
    const CapturedMessages messages;
    const auto projection = sample();
    const double strange[] = {0.0, 1.6, -7.0, 1e9, -1e17, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")};
    for (const double x : strange) {
        for (const double y : strange) {
            TQPoint result;
            EXPECT_THAT(projection->convertGeoPt(TQPoint{x, y}, result), AnyOf(0, -1));
            EXPECT_THAT(projection->convertGlobalPt(TQPoint{x, y}, result), AnyOf(0, -1));
            projection->northAngleAt({x, y});
            TQAnglePoint geo(x, y, 0x11000001);
            projection->parallelTangentAt(geo);
            projection->meridianTangentAt(geo);
            EXPECT_THAT(projection->convertGlobalPt(TQPoint{x, y}, geo, 0x11000001), AnyOf(0, -1));
            EXPECT_TRUE(std::isfinite(geo.longitude().value()) && std::isfinite(geo.latitude().value()));
        }
    }
}

TEST_P(ProjectionClassTest, TextArchiveAndWktAreTheSameUnderACommaLocale) {
    const CapturedMessages messages;
    const CommaLocale locale;
    EXPECT_EQ(writtenProjectionText(*sample()), textOf(lines()));
    EXPECT_EQ(archivedBytes(*sample()), GetParam().archive.bytes());
    EXPECT_EQ(sample()->WKTProjectionStuff().utf8(), sampleGeographicWkt() + GetParam().wktItems);
    const auto read = fresh();
    EXPECT_EQ(readProjectionText(*read, textOf(lines())), 0);
    EXPECT_EQ(archivedBytes(*read), GetParam().archive.bytes());
}
