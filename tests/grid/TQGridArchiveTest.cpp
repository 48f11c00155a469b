// The archive block of a grid: version 10 and what older ones lacked, by archives written out by hand.

#include "grid/TQGrid.h"

#include "testing/CapturedMessages.h"
#include "tests/grid/GridCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numbers>
#include <string>
#include <string_view>

using testing::ElementsAre;
using testing::SizeIs;

namespace {

constexpr double kPi = std::numbers::pi;

/// A grid read from an archive, all of which it must have taken.
std::unique_ptr<TQGrid> readGrid(std::string_view bytes) {
    ByteStream stream(bytes);
    auto grid = std::make_unique<TQGrid>(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    return grid;
}

std::unique_ptr<TQGrid> readGrid(const StreamBytes& bytes) { return readGrid(bytes.bytes()); }

/// A whole archive of a version from what all versions begin with.
StreamBytes withTail(int version, StreamBytes head) {
    if (version >= 7) {
        head.byte(5).byte(1); // keepsBorderLines, usesAlphanumbering
        if (version >= 8) {
            head.byte(1); // usesNumberingLimit
        }
        head.append(labelBytes());
    }
    if (version >= 9) {
        head.byte(0); // no drawing definition
    }
    if (version >= 10) {
        head.byte(1); // lockedOnGeoRefProjection
    }
    return head;
}

/// An archive in units of a version's time.
StreamBytes inUnits(int version, std::uint32_t unit, std::uint32_t angleUnit) {
    return withTail(version, gridHead(version, unit, angleUnit));
}

std::string unknownVersion(int version) {
    return tq_format("TQGrid::unarchiveFrom(TQReadStream *): version %d is unknown.\n", version);
}

} // namespace

TEST(TQGridArchive, AGridReadFromVersionTenIsWrittenByteForByteLikeIt) {
    const std::unique_ptr<TQGrid> grid = readGrid(newestGrid());
    EXPECT_EQ(archivedBytes(*grid), newestGrid().bytes());
}

TEST(TQGridArchive, EverythingThatAnApplicationSetsStandsInVersionTen) {
    TQGrid grid;
    fillSample(grid);
    const std::string expected = StreamBytes()
                                     .tag("TQGrid", 10)
                                     .text("Carte")
                                     .integer(0x2A)
                                     .integer(0x12000001)
                                     .numbers({1.5, -2.5})
                                     .append(angleBytes(10.0, 0x12000001))
                                     .append(angleBytes(20.0, 0x12000001))
                                     .append(angleBytes(3.0, 0x12000001))
                                     .numbers({100.0, 200.0, 0.5, 0.25})
                                     .append(angleBytes(1.0, 0x12000001))
                                     .append(angleBytes(0.5, 0x12000001))
                                     .numbers({0.0, 10.0, 10.0, -10.0})
                                     .byte(1) // no projection
                                     .byte(5)
                                     .byte(1)
                                     .byte(1)
                                     .append(labelBytes())
                                     .byte(0)
                                     .byte(1)
                                     .bytes();
    EXPECT_EQ(archivedBytes(grid), expected);
}

TEST(TQGridArchive, ANewGridIsWrittenWithItsDefaultsAndNullName) {
    const std::string expected = StreamBytes()
                                     .tag("TQGrid", 10)
                                     .nullText()
                                     .integer(0)
                                     .integer(0x01100064)
                                     .numbers({0.0, 0.0})
                                     .append(angleBytes(0.0, 0x12000001))
                                     .append(angleBytes(0.0, 0x12000001))
                                     .append(angleBytes(0.0, 0x12000001))
                                     .numbers({0.0, 0.0, 0.0, 0.0})
                                     .append(angleBytes(0.0, 0x12000001))
                                     .append(angleBytes(0.0, 0x12000001))
                                     .numbers({0.0, 10.0, 10.0, -10.0})
                                     .byte(1) // no projection
                                     .byte(0) // keepsBorderLines
                                     .byte(0) // usesAlphanumbering
                                     .byte(0) // usesNumberingLimit
                                     .byte(0) // no drawing definition
                                     .byte(0) // lockedOnGeoRefProjection
                                     .bytes();
    EXPECT_EQ(archivedBytes(TQGrid()), expected);
}

TEST(TQGridArchive, VersionTenHasEverything) {
    const auto grid = readGrid(newestGrid());
    expectSampleHead(*grid);
    expectSampleLabels(*grid);
    EXPECT_EQ(grid->keepsBorderLines(), 5);
    EXPECT_TRUE(grid->usesNumberingLimit());
    EXPECT_EQ(drawingOn(*grid), "(none)");
    EXPECT_TRUE(grid->lockedOnGeoRefProjection());
}

TEST(TQGridArchive, VersionNineHasNoLock) {
    const auto grid = readGrid(
        gridHead(9).byte(5).byte(1).byte(1).append(labelBytes()).byte(1).append(drawingBytes("xyz")));
    expectSampleHead(*grid);
    expectSampleLabels(*grid);
    EXPECT_EQ(grid->keepsBorderLines(), 5);
    EXPECT_TRUE(grid->usesNumberingLimit());
    EXPECT_EQ(drawingOn(*grid), "xyz");
    EXPECT_FALSE(grid->lockedOnGeoRefProjection());
}

TEST(TQGridArchive, VersionEightHasNoDrawingDefinition) {
    const auto grid = readGrid(gridHead(8).byte(5).byte(1).byte(1).append(labelBytes()));
    expectSampleHead(*grid);
    expectSampleLabels(*grid);
    EXPECT_EQ(grid->keepsBorderLines(), 5);
    EXPECT_TRUE(grid->usesNumberingLimit());
    EXPECT_EQ(drawingOn(*grid), "(none)");
    EXPECT_FALSE(grid->lockedOnGeoRefProjection());
}

TEST(TQGridArchive, VersionSevenHasNoNumberingLimit) {
    const auto grid = readGrid(gridHead(7).byte(5).byte(1).append(labelBytes()));
    expectSampleHead(*grid);
    expectSampleLabels(*grid);
    EXPECT_EQ(grid->keepsBorderLines(), 5);
    EXPECT_FALSE(grid->usesNumberingLimit());
}

TEST(TQGridArchive, VersionsBeforeSevenEndWithTheProjection) {
    for (int version = 0; version <= 6; ++version) {
        const auto grid = readGrid(gridHead(version));
        expectSampleHead(*grid);
        expectNoLabels(*grid);
        EXPECT_EQ(grid->keepsBorderLines(), 0);
        EXPECT_FALSE(grid->usesNumberingLimit());
        EXPECT_EQ(drawingOn(*grid), "(none)");
        EXPECT_FALSE(grid->lockedOnGeoRefProjection());
    }
}

TEST(TQGridArchive, GoldenFilesOfAllVersionsAreReadWhole) {
    for (int version = 1; version <= 10; ++version) {
        SCOPED_TRACE(version);
        const auto grid = readGrid(goldenFile("TQGrid-" + std::to_string(version) + ".bin"));
        const bool hasLabels = version >= 7;
        expectSampleHead(*grid);
        if (hasLabels) {
            expectSampleLabels(*grid);
        } else {
            expectNoLabels(*grid);
        }
        EXPECT_EQ(grid->keepsBorderLines(), hasLabels ? 5 : 0);
        EXPECT_EQ(grid->usesNumberingLimit(), version >= 8);
        EXPECT_EQ(drawingOn(*grid), version >= 9 ? "xyz" : "(none)");
        EXPECT_EQ(grid->lockedOnGeoRefProjection(), version >= 10);
        EXPECT_EQ(grid->projMgr(), nullptr);
        EXPECT_FALSE(grid->isExternal());
        EXPECT_FALSE(grid->isMarked());
    }
}

TEST(TQGridArchive, TheGoldenFileOfVersionTenIsWrittenAgainByAnExternalGrid) {
    const std::string bytes = goldenFile("TQGrid-10.bin");
    const auto grid = readGrid(bytes);
    grid->setIsExternal(true);
    EXPECT_EQ(archivedBytes(*grid), bytes);
}

TEST(TQGridArchive, OlderVersionsHaveNoLabelsWithoutAlphanumbering) {
    expectNoLabels(*readGrid(gridHead(7).byte(5).byte(0)));
    const auto grid = readGrid(gridHead(8).byte(5).byte(0).byte(1));
    expectNoLabels(*grid);
    EXPECT_TRUE(grid->usesNumberingLimit());
}

TEST(TQGridArchive, TypographicPointsOfOlderVersionsBecomeCentimetres) {
    const CapturedMessages messages;
    for (int version = 0; version <= 9; ++version) {
        const auto grid = readGrid(inUnits(version, 0x04000001, TQUnitDegree));
        constexpr double centimetres = 2.54 / 72.0;
        EXPECT_EQ(grid->unit(), 0x01100064U);
        EXPECT_DOUBLE_EQ(grid->referencePoint().x, 1.5 * centimetres);
        EXPECT_DOUBLE_EQ(grid->referencePoint().y, -2.5 * centimetres);
        EXPECT_DOUBLE_EQ(grid->spacing().width, 100.0 * centimetres);
        EXPECT_DOUBLE_EQ(grid->spacing().height, 200.0 * centimetres);
        EXPECT_DOUBLE_EQ(grid->borderDist().width, 0.5 * centimetres);
        EXPECT_DOUBLE_EQ(grid->borderDist().height, 0.25 * centimetres);
        EXPECT_DOUBLE_EQ(grid->getRegularGridLimit().x, -4.0 * centimetres);
        EXPECT_DOUBLE_EQ(grid->getRegularGridLimit().y, 8.0 * centimetres);
        EXPECT_DOUBLE_EQ(grid->getRegularGridLimit().width, 16.0 * centimetres);
        EXPECT_DOUBLE_EQ(grid->getRegularGridLimit().height, -32.0 * centimetres);
        EXPECT_EQ(grid->getAngularReferencePoint(), TQAnglePoint(10.0, 20.0, TQUnitDegree));
    }
}

TEST(TQGridArchive, RadiansOfOlderVersionsBecomeDegrees) {
    for (int version = 0; version <= 9; ++version) {
        const auto grid = readGrid(inUnits(version, 0x11000001, 0x11000001));
        constexpr double degrees = 180.0 / kPi;
        EXPECT_EQ(grid->unit(), 0x12000001U);
        EXPECT_DOUBLE_EQ(grid->referencePoint().x, 1.5 * degrees);
        EXPECT_DOUBLE_EQ(grid->spacing().height, 200.0 * degrees);
        EXPECT_DOUBLE_EQ(grid->borderDist().width, 0.5 * degrees);
        EXPECT_EQ(grid->getRegularGridLimit(), TQRect(-4.0, 8.0, 16.0, -32.0)); // has no unit
        EXPECT_EQ(grid->getAngularReferencePoint().unit(), TQUnitDegree);
        EXPECT_DOUBLE_EQ(grid->getAngularReferencePoint().longitude().value(), 10.0 * degrees);
        EXPECT_DOUBLE_EQ(grid->getAngularReferencePoint().latitude().value(), 20.0 * degrees);
        EXPECT_EQ(grid->getAngularReferenceMeridian().unit(), TQUnitDegree);
        EXPECT_DOUBLE_EQ(grid->getAngularReferenceMeridian().value(), 3.0 * degrees);
        EXPECT_EQ(grid->getAngularSpacing().unit(), TQUnitDegree);
        EXPECT_DOUBLE_EQ(grid->getAngularSpacing().width().value(), 1.0 * degrees);
        EXPECT_DOUBLE_EQ(grid->getAngularSpacing().height().value(), 0.5 * degrees);
    }
}

TEST(TQGridArchive, OtherUnitsOfOlderVersionsStay) {
    const CapturedMessages messages;
    const auto metric = readGrid(inUnits(9, TQUnitFoot, TQUnitGon));
    EXPECT_EQ(metric->unit(), TQUnitFoot);
    EXPECT_EQ(metric->spacing(), (TQSize{100.0, 200.0}));
    EXPECT_EQ(metric->getAngularSpacing(), TQAngleSize(1.0, 0.5, TQUnitGon));
    EXPECT_EQ(readGrid(inUnits(9, TQUnitGon, TQUnitGon))->unit(), TQUnitGon);
}

TEST(TQGridArchive, OldUnitsOfVersionTenStay) {
    const CapturedMessages messages;
    const auto points = readGrid(inUnits(10, 0x04000001, 0x11000001));
    EXPECT_EQ(points->unit(), 0x04000001U);
    EXPECT_EQ(points->spacing(), (TQSize{100.0, 200.0}));
    EXPECT_EQ(points->getAngularSpacing(), TQAngleSize(1.0, 0.5, TQUnitRadian));
    EXPECT_EQ(readGrid(inUnits(10, 0x11000001, 0x11000001))->spacing(), (TQSize{100.0, 200.0}));
}

TEST(TQGridArchive, NullNamesAndLabelsStayNull) {
    TQGrid grid;
    grid.setIndexParameters({true, false, {true, 1, std::nullopt}, {false, 2, TQString()}});
    const std::string archive = archivedBytes(grid);
    ByteStream stream(archive);
    const TQGrid read(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(read.name(), nullptr);
    expectNumbering(read.indexParameters().horizontal, true, 1, "(null)");
    expectNumbering(read.indexParameters().vertical, false, 2, "");
    EXPECT_EQ(archivedBytes(read), archive);
}

TEST(TQGridArchive, OnlyAnExternalGridCarriesItsDrawingDefinition) {
    TQGrid grid;
    const std::string withoutDrawing = archivedBytes(grid);
    grid.setVirtualDrawingDefinition(drawingOf("xyz"));
    EXPECT_EQ(archivedBytes(grid), withoutDrawing);
    grid.setIsExternal(true);
    const std::string head = withoutDrawing.substr(0, withoutDrawing.size() - 2);
    EXPECT_EQ(archivedBytes(grid), head + StreamBytes().byte(1).append(drawingBytes("xyz")).byte(0).bytes());
    ByteStream stream(archivedBytes(grid));
    const TQGrid read(stream.get());
    EXPECT_EQ(drawingOn(read), "xyz");
    EXPECT_FALSE(read.isExternal()); // which its manager tells
    grid.deleteVirtualDrawingDefinition();
    EXPECT_EQ(archivedBytes(grid), withoutDrawing);
}

TEST(TQGridArchive, BitsThatAreNoModeAreDropped) {
    StreamBytes bytes = StreamBytes().tag("TQGrid", 10).nullText().integer(-1);
    const std::string rest = archivedBytes(TQGrid()).substr(bytes.bytes().size());
    ByteStream stream(bytes.bytes() + rest);
    const TQGrid grid(stream.get());
    EXPECT_EQ(grid.mode(), 7);
    EXPECT_EQ(grid.referencePointMode(), 0x3F8);
    EXPECT_EQ(archivedBytes(grid), StreamBytes().tag("TQGrid", 10).nullText().integer(0x3FF).bytes() + rest);
}

TEST(TQGridArchive, NumbersThatAreNotFiniteComeBack) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    TQGrid grid;
    grid.setReferencePoint({infinity, -infinity});
    grid.setSpacing({std::numeric_limits<double>::quiet_NaN(), 0.0});
    const std::string archive = archivedBytes(grid);
    ByteStream stream(archive);
    EXPECT_EQ(archivedBytes(TQGrid(stream.get())), archive);
}

TEST(TQGridArchive, UnknownVersionsAreReportedAndNothingRead) {
    const CapturedMessages messages;
    for (const int version : {-1, 11, 32767}) {
        ByteStream stream(StreamBytes().tag("TQGrid", version).integer(42));
        TQGrid grid;
        fillSample(grid);
        const std::string before = archivedBytes(grid);
        grid.unarchiveFrom(stream.get());
        EXPECT_EQ(archivedBytes(grid), before);
        EXPECT_EQ(stream.get()->bytesLeft(), 4U);
        EXPECT_FALSE(stream.get()->failed());
    }
    EXPECT_THAT(messages.lines(), ElementsAre(unknownVersion(-1), unknownVersion(11), unknownVersion(32767)));
}

TEST(TQGridArchive, AReaderOfWhatFollowsIsStoppedByAnUnknownVersion) {
    const CapturedMessages messages;
    ByteStream stream(StreamBytes().tag("TQGrid", 11).append(newestGrid()));
    EXPECT_EQ(TQGrid::newFromStream(stream.get()), nullptr);
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_THAT(messages.lines(), ElementsAre(unknownVersion(11)));
}

TEST(TQGridArchive, ADrawingDefinitionOfAnUnknownVersionEndsTheReading) {
    const CapturedMessages messages;
    ByteStream stream(
        gridHead(10).byte(0).byte(0).byte(0).byte(1).tag("TQVirtualDrawingGrid", 1).counted("xyz").byte(1));
    const TQGrid grid(stream.get());
    EXPECT_TRUE(stream.get()->failed());
    EXPECT_EQ(grid.name(), nullptr);
    EXPECT_THAT(messages.lines(), SizeIs(1));
}

TEST(TQGridArchive, ReadingReplacesEverythingButTheMarks) {
    TQGrid grid;
    fillSample(grid);
    grid.setIsExternal(true);
    grid.setIsMarked(true);
    grid.setVirtualDrawingDefinition(drawingOf("old"));
    ByteStream stream(archivedBytes(TQGrid()));
    grid.unarchiveFrom(stream.get());
    EXPECT_TRUE(grid.isExternal());
    EXPECT_TRUE(grid.isMarked());
    EXPECT_EQ(archivedBytes(grid), archivedBytes(TQGrid()));
}

TEST(TQGridArchive, EveryCutIsNoticedAndLeavesTheGrid) {
    const CapturedMessages messages;
    const std::string empty = archivedBytes(TQGrid());
    for (int version = 0; version <= 10; ++version) {
        expectEveryCutIsNoticed(inUnits(version, TQUnitDegree, TQUnitDegree).bytes(),
                                [&empty](TQReadStream* stream) {
                                    const TQGrid grid(stream);
                                    EXPECT_EQ(archivedBytes(grid), empty);
                                });
    }
    expectEveryCutIsNoticed(
        gridHead(9).byte(5).byte(1).byte(1).append(labelBytes()).byte(1).append(drawingBytes("xyz")).bytes(),
        [](TQReadStream* stream) { EXPECT_EQ(TQGrid::newFromStream(stream), nullptr); });
}

TEST(TQGridArchive, EveryBitFlipIsRefusedOrGivesAGridThatArchives) {
    const CapturedMessages messages;
    const std::string bytes = gridHead(10)
                                  .byte(5)
                                  .byte(1)
                                  .byte(1)
                                  .append(labelBytes())
                                  .byte(1)
                                  .append(drawingBytes("xyz"))
                                  .byte(1)
                                  .bytes();
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string flipped = bytes;
            flipped[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ (1U << bit));
            ByteStream stream(flipped);
            if (const auto grid = TQGrid::newFromStream(stream.get())) {
                ByteStream again(archivedBytes(*grid));
                const TQGrid copy(again.get());
                EXPECT_TRUE(again.isReadExactly());
                EXPECT_EQ(archivedBytes(copy), archivedBytes(*grid));
                copy.indexParameters().indexString_horizontal(std::numeric_limits<int>::max());
                copy.indexParameters().indexString_vertical(std::numeric_limits<int>::min());
            } else {
                EXPECT_TRUE(stream.get()->failed());
            }
        }
    }
}

TEST(TQGridArchive, SizesBeyondTheBytesThatAreLeftTakeNoMemory) {
    const CapturedMessages messages;
    for (const int size : {std::numeric_limits<int>::max(), -1}) {
        ByteStream name(StreamBytes().tag("TQGrid", 10).byte(2).integer(size).byte('x'));
        EXPECT_EQ(TQGrid::newFromStream(name.get()), nullptr);
        ByteStream label(
            gridHead(10).byte(5).byte(1).byte(1).byte(1).byte(7).byte(2).integer(size).byte('x'));
        EXPECT_EQ(TQGrid::newFromStream(label.get()), nullptr);
    }
    ByteStream drawing(gridHead(10)
                           .byte(5)
                           .byte(0)
                           .byte(1)
                           .byte(1)
                           .tag("TQVirtualDrawingGrid", 0)
                           .integer(std::numeric_limits<int>::max())
                           .byte('x'));
    EXPECT_EQ(TQGrid::newFromStream(drawing.get()), nullptr);
}

TEST(TQGridArchive, ADrawingDefinitionWithoutBytesIsOne) {
    const auto grid =
        readGrid(gridHead(9).byte(5).byte(0).byte(1).byte(1).tag("TQVirtualDrawingGrid", 0).integer(-1));
    EXPECT_EQ(drawingOn(*grid), "(null)");
}
