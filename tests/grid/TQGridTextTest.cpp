// The text files of grids, versions 1 and 2.

#include "grid/TQGrid.h"

#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "tests/grid/GridCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

using Lines = std::vector<std::string>;

const TQRect kDefaultLimit(0.0, 10.0, 10.0, -10.0);

std::string joined(const Lines& lines, const std::string& end = "\n") {
    std::string text;
    for (const std::string& line : lines) {
        text += line + end;
    }
    return text;
}

int readText(TQGrid& grid, const std::string& text) { return grid.readFromFile(fileHolding(text).get()); }
int readLines(TQGrid& grid, const Lines& lines) { return readText(grid, joined(lines)); }

/// Version 1 in a mode: a square of 72 points from (72, 144).
Lines olderLines(int mode) {
    return {"1",       "Carte",   "4",      "72 144",
            "144 144", "144 216", "72 216", std::to_string(mode) + " 1.5 -2.5 1000 2000 36 72 0",
            "Lambert"};
}

constexpr std::size_t kOlderNumbers = 7; // the line of numbers

/// Version 2: mode 1 in kilometres.
Lines newerLines() {
    return {"2",
            "Carte",
            "3",
            "0 0",
            "72000 0",
            "72000 144000",
            "41 16778216 1 2 3 4 5 6 7 8 9 10 11 12 1 1 0", // 41 = 0x28 + 1, 16778216 = 0x010003E8
            "Lambert",
            "1 7 0 9",
            "11",
            "AZ"};
}

constexpr std::size_t kNewerNumbers = 6; // the line of numbers

void expectOlderLabels(const TQGrid& grid) {
    EXPECT_TRUE(grid.usesAlphanumbering());
    EXPECT_FALSE(grid.usesNumberingLimit());
    expectNumbering(grid.indexParameters().horizontal, false, 0, "A");
    expectNumbering(grid.indexParameters().vertical, true, 0, "1");
}

/// What no text file has a grid keeps: here a new one.
void expectTheRestOfANewGrid(const TQGrid& grid) {
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(0.0, TQUnitDegree));
    EXPECT_EQ(drawingOn(grid), "(none)");
    EXPECT_FALSE(grid.lockedOnGeoRefProjection());
    EXPECT_FALSE(grid.isExternal());
    EXPECT_FALSE(grid.isMarked());
}

/// What a new grid becomes by olderLines() in mode 1.
void expectOlderSample(const TQGrid& grid) {
    const CapturedMessages messages;
    EXPECT_EQ(textOf(grid.name()), "Carte");
    EXPECT_EQ(grid.mode(), 1);
    EXPECT_EQ(grid.referencePointMode(), 0);
    EXPECT_EQ(grid.unit(), 0x01000001U);
    EXPECT_EQ(grid.referencePoint(), (TQPoint{1000.0, 2000.0}));
    EXPECT_EQ(grid.spacing(), (TQSize{36.0, 72.0}));
    EXPECT_EQ(grid.borderDist(), (TQSize{18.0, 36.0}));
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(0.0, 0.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(0.0, 0.0, TQUnitDegree));
    EXPECT_EQ(grid.keepsBorderLines(), 0);
    EXPECT_EQ(textOf(grid.projectionName()), "Lambert");
    EXPECT_EQ(grid.projection(), nullptr);
    expectOlderLabels(grid);
    expectTheRestOfANewGrid(grid);
    const TQRect limit = grid.getRegularGridLimit(TQUnitInch);
    EXPECT_DOUBLE_EQ(limit.x, 1.0);
    EXPECT_DOUBLE_EQ(limit.y, 2.0);
    EXPECT_DOUBLE_EQ(limit.width, 1.0);
    EXPECT_DOUBLE_EQ(limit.height, 1.0);
}

/// What a new grid becomes by newerLines().
void expectNewerSample(const TQGrid& grid) {
    const CapturedMessages messages;
    EXPECT_EQ(textOf(grid.name()), "Carte");
    EXPECT_EQ(grid.mode(), 1);
    EXPECT_EQ(grid.referencePointMode(), 0x28);
    EXPECT_EQ(grid.unit(), 0x010003E8U);
    EXPECT_EQ(grid.referencePoint(), (TQPoint{1.0, 2.0}));
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(3.0, 4.0, TQUnitDegree));
    EXPECT_EQ(grid.spacing(), (TQSize{5.0, 6.0}));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(7.0, 8.0, TQUnitDegree));
    EXPECT_EQ(grid.borderDist(), (TQSize{9.0, 10.0}));
    EXPECT_EQ(grid.keepsBorderLines(), 1);
    EXPECT_EQ(textOf(grid.projectionName()), "Lambert");
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_FALSE(grid.usesNumberingLimit());
    expectSampleLabels(grid);
    expectTheRestOfANewGrid(grid);
    const TQRect limit = grid.getRegularGridLimit();
    EXPECT_EQ(limit.x, 0.0);
    EXPECT_EQ(limit.y, 0.0);
    EXPECT_DOUBLE_EQ(limit.width, 0.0254);
    EXPECT_DOUBLE_EQ(limit.height, 0.0508);
}

std::string unknownVersion(int version) {
    return tq_format("TQGrid::readFromFile() : unknown version: %d\n", version);
}

} // namespace

// ---- Version 1

TEST(TQGridText, VersionOneInModeOneIsInMetres) {
    TQGrid grid;
    grid.setIsMarked(true);
    grid.setKeepsBorderLines(1);
    ASSERT_EQ(readLines(grid, olderLines(1)), 0);
    expectOlderSample(grid);
}

TEST(TQGridText, VersionOneInModeTwoTurnsRadiansIntoDegrees) {
    TQGrid grid;
    ASSERT_EQ(readLines(grid, olderLines(2 + 0x28)), 0);
    constexpr double degrees = 180.0 / std::numbers::pi;
    EXPECT_EQ(grid.mode(), 2);
    EXPECT_EQ(grid.referencePointMode(), 0x28);
    EXPECT_EQ(grid.unit(), 0x12000001U);
    EXPECT_DOUBLE_EQ(grid.referencePoint().x, 1.5 * degrees);
    EXPECT_DOUBLE_EQ(grid.referencePoint().y, -2.5 * degrees);
    EXPECT_DOUBLE_EQ(grid.spacing().width, 36.0 * degrees);
    EXPECT_DOUBLE_EQ(grid.spacing().height, 72.0 * degrees);
    EXPECT_DOUBLE_EQ(grid.borderDist().width, 18.0 * degrees);
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(grid.referencePoint(), TQUnitDegree));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(grid.spacing(), TQUnitDegree));
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(72.0, 144.0, 72.0, 72.0));
    expectOlderLabels(grid);
}

TEST(TQGridText, VersionOneInModeFourTurnsTypographicPointsIntoCentimetres) {
    TQGrid grid;
    ASSERT_EQ(readLines(grid, olderLines(4)), 0);
    EXPECT_EQ(grid.unit(), 0x01100064U);
    EXPECT_DOUBLE_EQ(grid.referencePoint().x, 1.5 * 2.54 / 72.0);
    EXPECT_DOUBLE_EQ(grid.spacing().width, 1.27);
    EXPECT_DOUBLE_EQ(grid.spacing().height, 2.54);
    EXPECT_DOUBLE_EQ(grid.borderDist().height, 1.27);
    EXPECT_DOUBLE_EQ(grid.getRegularGridLimit().x, 2.54);
    EXPECT_DOUBLE_EQ(grid.getRegularGridLimit().y, 5.08);
}

TEST(TQGridText, VersionOneInAnotherModeKeepsTheUnit) {
    for (const int mode : {0, 3, 5, 6, 7}) {
        TQGrid grid;
        ASSERT_EQ(readLines(grid, olderLines(mode)), 0);
        EXPECT_EQ(grid.mode(), mode);
        EXPECT_EQ(grid.unit(), 0x01100064U);
        EXPECT_EQ(grid.referencePoint(), (TQPoint{1.5, -2.5}));
        EXPECT_EQ(grid.spacing(), (TQSize{36.0, 72.0}));
        EXPECT_EQ(grid.borderDist(), (TQSize{18.0, 36.0}));
    }
}

TEST(TQGridText, AFlagSaysThatThereIsNoProjection) {
    Lines older = olderLines(1);
    older[kOlderNumbers] = "1 1 2 3 4 5 6 1";
    older.pop_back();
    TQGrid grid;
    EXPECT_EQ(readLines(grid, older), 0);
    EXPECT_EQ(grid.projectionName(), nullptr);

    Lines newer = newerLines();
    newer[kNewerNumbers] = "1 16778216 1 2 3 4 5 6 7 8 9 10 11 12 1 1 1";
    newer.erase(newer.begin() + kNewerNumbers + 1);
    EXPECT_EQ(readLines(grid, newer), 0);
    EXPECT_EQ(grid.projectionName(), nullptr);
    expectSampleLabels(grid);
}

TEST(TQGridText, FewerThanThreePointsAreTheLimitOfANewGrid) {
    const Lines newer = newerLines();
    for (const Lines& points : {Lines{"0"}, Lines{"2", "1 2", "3 4"}}) {
        for (const char* version : {"1", "2"}) {
            Lines lines = {version, "Carte"};
            lines.insert(lines.end(), points.begin(), points.end());
            if (lines.front() == "1") {
                lines.emplace_back("4 1.5 -2.5 1000 2000 36 72 1");
            } else {
                lines.insert(lines.end(), newer.begin() + kNewerNumbers, newer.end());
            }
            TQGrid grid;
            grid.setRegularGridLimit(TQRect(1.0, 2.0, 3.0, 4.0), TQUnitCentimetre);
            EXPECT_EQ(readLines(grid, lines), 0);
            EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
        }
    }
}

// ---- Version 2

TEST(TQGridText, VersionTwoHasEverythingButTheNumberingLimit) {
    TQGrid grid;
    grid.setIsMarked(true);
    ASSERT_EQ(readLines(grid, newerLines()), 0);
    expectNewerSample(grid);
}

TEST(TQGridText, VersionTwoHasAngularValuesInTheUnitOfAnAngularGrid) {
    Lines lines = newerLines();
    lines[kNewerNumbers] = "2 335544321 1 2 3 4 5 6 7 8 9 10 11 12 0 0 0"; // 335544321 = 0x14000001
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(3.0, 4.0, TQUnitGon));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(7.0, 8.0, TQUnitGon));
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(0.0, 0.0, 72000.0, 144000.0));
    EXPECT_EQ(grid.keepsBorderLines(), 0);
    expectNoLabels(grid);
}

TEST(TQGridText, NoUnitInVersionTwoMeansDegreesMinutesSeconds) {
    Lines lines = newerLines();
    lines[kNewerNumbers] = "2 0 1 2 3 4 5 6 7 8 9 10 11 12 0 1 0";
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    EXPECT_EQ(grid.unit(), 0x21000001U);
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(3.0, 4.0, TQUnitDegreeMinuteSecond));
}

TEST(TQGridText, VersionTwoClearsTheNumberingLimit) {
    TQGrid grid;
    grid.setIndexParameters({true, true, {}, {}});
    ASSERT_EQ(readLines(grid, newerLines()), 0);
    EXPECT_FALSE(grid.usesNumberingLimit());
}

TEST(TQGridText, VersionTwoKeepsANumberForTheBorderLinesModulo256) {
    for (const char* number : {"5", "261", "-251"}) {
        Lines lines = newerLines();
        lines[kNewerNumbers] = std::string("41 16778216 1 2 3 4 5 6 7 8 9 10 11 12 ") + number + " 1 0";
        TQGrid grid;
        ASSERT_EQ(readLines(grid, lines), 0);
        EXPECT_EQ(grid.keepsBorderLines(), 5) << number;
    }
}

TEST(TQGridText, TheBytesOfTheApplicationAreTakenModulo256) {
    Lines lines = newerLines();
    lines[8] = "1 263 0 -247";
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    expectSampleLabels(grid); // 7 and 9
}

TEST(TQGridText, LabelsMayBeEmpty) {
    Lines lines = newerLines();
    lines[9] = "";
    lines[10] = "";
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    expectNumbering(grid.indexParameters().horizontal, true, 7, "");
    expectNumbering(grid.indexParameters().vertical, false, 9, "");
}

// ---- Both

TEST(TQGridText, GoldenFilesOfBothVersionsAreRead) {
    TQGrid older;
    EXPECT_EQ(readText(older, goldenFile("TQGrid-text-1.txt")), 0);
    expectOlderSample(older);
    TQGrid newer;
    EXPECT_EQ(readText(newer, goldenFile("TQGrid-text-2.txt")), 0);
    expectNewerSample(newer);
}

TEST(TQGridText, BitsThatAreNoModeAreDropped) {
    Lines older = olderLines(-1);
    Lines newer = newerLines();
    newer[kNewerNumbers].replace(0, 2, "-1");
    const std::string expected = StreamBytes().tag("TQGrid", 10).text("Carte").integer(0x3FF).bytes();
    for (const Lines& lines : {older, newer}) {
        TQGrid grid;
        ASSERT_EQ(readLines(grid, lines), 0);
        EXPECT_EQ(archivedBytes(grid).substr(0, expected.size()), expected);
    }
}

TEST(TQGridText, LineEndsOfEitherKindAreTakenOff) {
    for (const Lines& lines : {olderLines(4), newerLines()}) {
        TQGrid unix;
        TQGrid windows;
        TQGrid unended;
        const std::string text = joined(lines);
        EXPECT_EQ(readText(unix, text), 0);
        EXPECT_EQ(readText(windows, joined(lines, "\r\n")), 0);
        EXPECT_EQ(readText(unended, text.substr(0, text.size() - 1)), 0);
        EXPECT_EQ(archivedBytes(windows), archivedBytes(unix));
        EXPECT_EQ(archivedBytes(unended), archivedBytes(unix));
    }
}

TEST(TQGridText, GridsMayStandOneBehindTheOther) {
    const TQStreamHandle file =
        fileHolding(joined(newerLines()) + joined(olderLines(4)) + joined(newerLines()));
    TQGrid grid;
    EXPECT_EQ(grid.readFromFile(file.get()), 0);
    EXPECT_EQ(grid.readFromFile(file.get()), 0);
    expectOlderLabels(grid);
    EXPECT_EQ(grid.readFromFile(file.get()), 0);
    expectSampleLabels(grid);
}

TEST(TQGridText, UnknownVersionsAreReportedAndNothingMoreIsRead) {
    const CapturedMessages messages;
    for (const char* version : {"0", "3", "-1", "2147483648", "no number", ""}) {
        TQGrid grid;
        fillSample(grid);
        const TQStreamHandle file = fileHolding(std::string(version) + "\nnext\n");
        EXPECT_EQ(grid.readFromFile(file.get()), 1);
        EXPECT_EQ(std::fgetc(file.get()), 'n');
        EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(0.0, 0x12000001));
        grid.setAngularReferenceMeridian(TQAngleWithUnit(3.0, TQUnitDegree));
        TQGrid untouched;
        fillSample(untouched);
        EXPECT_EQ(archivedBytes(grid), archivedBytes(untouched));
    }
    EXPECT_THAT(messages.lines(),
                ElementsAre(unknownVersion(0), unknownVersion(3), unknownVersion(-1),
                            unknownVersion(2147483647), unknownVersion(0), unknownVersion(0)));
}

TEST(TQGridText, TheReferenceMeridianIsResetInEveryCase) {
    const CapturedMessages messages;
    for (const Lines& lines : {Lines{}, olderLines(1), newerLines()}) {
        TQGrid grid;
        grid.setUnit(TQUnitGon);
        grid.setAngularReferenceMeridian(TQAngleWithUnit(3.0, TQUnitGon));
        readLines(grid, lines);
        EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(0.0, 0x12000001));
    }
    TQGrid grid;
    EXPECT_EQ(grid.readFromFile(nullptr), 1);
}

TEST(TQGridText, EveryMissingLineIsNoticed) {
    const CapturedMessages messages;
    for (const Lines& lines : {olderLines(1), newerLines()}) {
        for (std::size_t count = 0; count < lines.size(); ++count) {
            TQGrid grid;
            EXPECT_EQ(readLines(grid, {lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)}), 1)
                << lines[0] << ", " << count << " lines";
        }
        TQGrid grid;
        EXPECT_EQ(readLines(grid, lines), 0);
    }
}

TEST(TQGridText, EveryMissingNumberIsNoticed) {
    struct Case {
        Lines lines;
        std::size_t line;
    };
    for (const auto& [lines, line] :
         {Case{olderLines(1), 2}, Case{olderLines(1), 3}, Case{olderLines(1), kOlderNumbers},
          Case{newerLines(), kNewerNumbers}, Case{newerLines(), 8}}) {
        const std::string& whole = lines[line];
        for (std::size_t end = whole.rfind(' '); end != std::string::npos && end > 0;
             end = whole.rfind(' ', end - 1)) {
            for (const char* behind : {"", " x"}) {
                Lines cut = lines;
                cut[line] = whole.substr(0, end) + behind;
                TQGrid grid;
                EXPECT_EQ(readLines(grid, cut), 1) << cut[line];
            }
        }
    }
}

TEST(TQGridText, WhatFollowsTheNumbersIsIgnored) {
    for (const Lines& lines : {olderLines(1), newerLines()}) {
        const std::size_t numbers = lines[0] == "1" ? kOlderNumbers : kNewerNumbers;
        TQGrid grid;
        TQGrid other;
        EXPECT_EQ(readLines(grid, lines), 0);
        Lines more = lines;
        more[0] += " and more";
        more[numbers] += " 99 and more";
        EXPECT_EQ(readLines(other, more), 0);
        EXPECT_EQ(archivedBytes(other), archivedBytes(grid));
    }
}

TEST(TQGridText, NumbersThatAreNotFiniteAreTaken) {
    Lines lines = olderLines(2);
    lines[3] = "nan inf";
    lines[kOlderNumbers] = "2 nan inf -inf 1e999 -1e999 nan 0";
    TQGrid grid;
    EXPECT_EQ(readLines(grid, lines), 0);
    EXPECT_TRUE(std::isnan(grid.referencePoint().x));
    EXPECT_TRUE(std::isinf(grid.referencePoint().y));
    EXPECT_TRUE(std::isinf(grid.spacing().width));
    EXPECT_TRUE(std::isnan(grid.getRegularGridLimit().x));
}

TEST(TQGridText, IntegersSaturate) {
    Lines lines = newerLines();
    lines[kNewerNumbers] = "99999999999 99999999999 1 2 3 4 5 6 7 8 9 10 11 12 1 99999999999 0";
    lines[8] = "-99999999999 99999999999 99999999999 -99999999999";
    TQGrid grid;
    EXPECT_EQ(readLines(grid, lines), 0);
    EXPECT_EQ(grid.mode(), 7);
    EXPECT_EQ(grid.referencePointMode(), 0x3F8);
    EXPECT_EQ(grid.unit(), 0x7FFFFFFFU);
    EXPECT_TRUE(grid.indexParameters().horizontal.isNumeric);
    EXPECT_TRUE(grid.indexParameters().vertical.isNumeric);
}

TEST(TQGridText, OfALineTheFirst1024CharactersCount) {
    const std::string megabyte(1 << 20, 'x');
    Lines lines = newerLines();
    for (const std::size_t line : {1, 7, 9, 10}) {
        lines[line] = megabyte;
    }
    lines[kNewerNumbers] += std::string(1 << 20, ' ') + "7";
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    EXPECT_EQ(grid.name()->length(), 1024);
    EXPECT_EQ(grid.projectionName()->length(), 1024);
    EXPECT_EQ(grid.indexParameters().horizontal.startLabel->length(), 1024);
    EXPECT_EQ(grid.indexParameters().vertical.startLabel->length(), 1024);
}

TEST(TQGridText, ALineOfNumbersBeyond1024CharactersLacksThem) {
    Lines lines = olderLines(1);
    lines[kOlderNumbers] = "1 1 2 3 4 5 6" + std::string(1100, ' ') + "0";
    TQGrid grid;
    EXPECT_EQ(readLines(grid, lines), 1);
}

TEST(TQGridText, NamesAreTakenAsUtf8OrInTheDefaultEncoding) {
    Lines lines = olderLines(1);
    lines[1] = "Gr\xC3\xA9ville";
    lines.back() = "degr\xDDs";
    TQGrid grid;
    ASSERT_EQ(readLines(grid, lines), 0);
    EXPECT_EQ(textOf(grid.name()), "Gr\xC3\xA9ville");
    EXPECT_EQ(textOf(grid.projectionName()), "degr\xC3\xA9s");
}

TEST(TQGridText, ALocaleWithADecimalCommaChangesNothing) {
    TQGrid expected;
    EXPECT_EQ(readLines(expected, olderLines(4)), 0);
    const CommaLocale locale;
    TQGrid grid;
    EXPECT_EQ(readLines(grid, olderLines(4)), 0);
    EXPECT_EQ(archivedBytes(grid), archivedBytes(expected));
}

TEST(TQGridText, NoCutAndNoFlippedBitHurts) {
    const CapturedMessages messages;
    for (const Lines& lines : {olderLines(2), newerLines()}) {
        const std::string text = joined(lines);
        for (std::size_t place = 0; place < text.size(); ++place) {
            TQGrid cut;
            readText(cut, text.substr(0, place));
            for (unsigned bit = 0; bit < 8; ++bit) {
                std::string flipped = text;
                flipped[place] = static_cast<char>(static_cast<unsigned char>(text[place]) ^ (1U << bit));
                TQGrid grid;
                const int answer = readText(grid, flipped);
                EXPECT_TRUE(answer == 0 || answer == 1);
                ByteStream archive(archivedBytes(grid));
                EXPECT_NE(TQGrid::newFromStream(archive.get()), nullptr);
            }
        }
    }
}
