#include "ellipsoid/TQDatumFile.h"

#include "ellipsoid/TQEllMgr.h"
#include "support/TQFile.h"
#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kWGS84Flattening = 1.0 / 298.257223563;
constexpr double kWGS84 = kWGS84Flattening * (2.0 - kWGS84Flattening);

/// Two registered ellipsoids, and the files of a directory.
class DatumFileCase {
  public:
    DatumFileCase() {
        _registered.addEllipsoid(
            std::make_unique<TQEllipsoid>(TQString("Bessel 1841"), 6377397.155, 0.006674372231802));
        _registered.addEllipsoid(std::make_unique<TQEllipsoid>(TQString("WGS 84"), 6378137.0, kWGS84));
    }

    TQDatumFile::Code read(const std::string& bytes, const std::string& name = "MGI.dtm") {
        shifted.reset();
        return readFile(_directory.fileWith(name, bytes));
    }

    TQDatumFile::Code readFile(const TQString& path) {
        problem.clear();
        TQFile file(path);
        const TQDatumFile::Code code = TQDatumFile::read(file, _registered, shifted, problem);
        lastLine = file.lineNumber();
        return code;
    }

    void registerNameless() {
        _registered.addEllipsoid(std::make_unique<TQEllipsoid>(TQString(), 6378137.0, kWGS84));
    }

    TQString missing() const { return _directory.file("missing.dtm"); }

    std::unique_ptr<TQEllipsoid> shifted;
    std::string problem;
    int lastLine = 0;

  private:
    TemporaryDirectory _directory;
    TQEllMgr _registered;
};

} // namespace

TEST(TQDatumFile, ThreeNumbersMakeATranslation) {
    DatumFileCase test;
    ASSERT_EQ(test.read("# 1\nBessel 1841\n-582 105.5 414.25\nWGS 84\n"), TQDatumFile::Read);
    EXPECT_EQ(*test.shifted->name(), "Bessel 1841/MGI");
    EXPECT_EQ(test.shifted->semiMajorAxis(), 6377397.155);
    EXPECT_EQ(test.shifted->eccentricitySquared(), 0.006674372231802);
    EXPECT_EQ(test.shifted->datumShiftKind(), TQEllipsoid::ThreeParameterShift);
    EXPECT_THAT(test.shifted->datumShiftParameters(), ElementsAre(-582.0, 105.5, 414.25, 0.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(test.shifted->refSemiMajorAxis(), 6378137.0);
    EXPECT_NEAR(test.shifted->refFlattening(), kWGS84Flattening, 1e-16);
}

TEST(TQDatumFile, SevenNumbersAreTranslationRotationsAndScale) {
    DatumFileCase test;
    ASSERT_EQ(test.read("#1\r\nBessel 1841\r\n1 2 3 4e-6 5e-6 6e-6 -7.5\r\nWGS 84"), TQDatumFile::Read);
    EXPECT_EQ(test.shifted->datumShiftKind(), TQEllipsoid::SevenParameterShift);
    EXPECT_THAT(test.shifted->datumShiftParameters(), ElementsAre(1.0, 2.0, 3.0, 4e-6, 5e-6, 6e-6, -7.5));
}

TEST(TQDatumFile, OtherCountsOfNumbersAreNotUnderstood) {
    DatumFileCase test;
    for (const char* numbers :
         {"", "1", "1 2", "1 2 3 4", "1 2 3 4 5", "1 2 3 4 5 6", "one two three", "1,2,3"}) {
        EXPECT_EQ(test.read("# 1\nBessel 1841\n" + std::string(numbers) + "\nWGS 84\n"),
                  TQDatumFile::NotUnderstood)
            << numbers;
        EXPECT_EQ(test.shifted, nullptr);
    }
}

TEST(TQDatumFile, WhatFollowsTheNumbersCountsForNothing) {
    DatumFileCase test;
    EXPECT_EQ(test.read("# 1 of many\nBessel 1841\n1 2 3 metres\nWGS 84\nand more\n"), TQDatumFile::Read);
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2 3 4 5 6 7 8\nWGS 84\n"), TQDatumFile::Read);
}

TEST(TQDatumFile, NumbersHaveAPointInEveryLocale) {
    const CommaLocale locale;
    DatumFileCase test;
    ASSERT_EQ(test.read("# 1\nBessel 1841\n1.5 2.5 3.5\nWGS 84\n"), TQDatumFile::Read);
    EXPECT_EQ(test.shifted->datumShiftParameters()[0], 1.5);
}

TEST(TQDatumFile, OnlyVersionOneIsUnderstood) {
    DatumFileCase test;
    for (const char* version : {"# 2", "# 0", "1", "#", "# one", ""}) {
        EXPECT_EQ(test.read(std::string(version) + "\nBessel 1841\n1 2 3\nWGS 84\n"),
                  TQDatumFile::NotUnderstood)
            << version;
    }
}

TEST(TQDatumFile, UnknownEllipsoidsAreNotUnderstood) {
    DatumFileCase test;
    EXPECT_EQ(test.read("# 1\nBessel 1842\n1 2 3\nWGS 84\n"), TQDatumFile::NotUnderstood);
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2 3\nWGS 85\n"), TQDatumFile::NotUnderstood);
    EXPECT_EQ(test.read("# 1\nBessel 1841 \n1 2 3\nWGS 84\n"), TQDatumFile::NotUnderstood) << "blanks count";
}

TEST(TQDatumFile, AFileThatEndsEarlyIsNotUnderstood) {
    DatumFileCase test;
    for (const char* lines : {"", "# 1\n", "# 1\nBessel 1841\n", "# 1\nBessel 1841\n1 2 3\n"}) {
        EXPECT_EQ(test.read(lines), TQDatumFile::NotUnderstood) << lines;
    }
}

TEST(TQDatumFile, AMissingLineNamesNoEllipsoid) {
    DatumFileCase test;
    test.registerNameless();
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2 3\n"), TQDatumFile::NotUnderstood);
    EXPECT_EQ(test.read("# 1\n"), TQDatumFile::NotUnderstood);
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2 3\n\n"), TQDatumFile::Read) << "an empty line names it";
}

TEST(TQDatumFile, AMissingFileIsNotOpened) {
    const CapturedMessages messages;
    DatumFileCase test;
    EXPECT_EQ(test.readFile(test.missing()), TQDatumFile::NotOpened);
    EXPECT_EQ(test.shifted, nullptr);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQDatumFile, TheProblemAndItsLineAreTold) {
    struct {
        const char* lines;
        const char* problem;
        int lastLine;
    } const kCases[] = {
        {"# 2\n", "the first line is not \"# 1\"", 1},
        {"# 1\nAtlantis\n", "the line of the local ellipsoid is missing, or names none that is registered",
         2},
        {"# 1\nBessel 1841\n1 2 3 4 5\nWGS 84\n", "there are neither three nor seven shift parameters", 3},
        {"# 1\nBessel 1841\n1 2 3\nAtlantis\n",
         "the line of the reference ellipsoid is missing, or names none that is registered", 4},
        {"# 1\nBessel 1841\n1 2 3\n",
         "the line of the reference ellipsoid is missing, or names none that is registered", 3},
        {"# 1\nBessel 1841\n1 2 3\nWGS 84\n", "", 4},
    };
    for (const auto& expected : kCases) {
        DatumFileCase test;
        test.read(expected.lines);
        EXPECT_EQ(test.problem, expected.problem);
        EXPECT_EQ(test.lastLine, expected.lastLine) << expected.lines;
    }
    DatumFileCase test;
    test.readFile(test.missing());
    EXPECT_EQ(test.problem, "the file cannot be opened");
}

TEST(TQDatumFile, OfALine254CharactersCount) {
    DatumFileCase test;
    const std::string blanks(251, ' ');
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2" + blanks + "3\nWGS 84\n"), TQDatumFile::NotUnderstood);
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2" + blanks.substr(1) + "3\nWGS 84\n"), TQDatumFile::Read);
    EXPECT_EQ(test.read("# 1\nBessel 1841\n1 2 3" + std::string(1000000, ' ') + "\nWGS 84\n"),
              TQDatumFile::Read);
}

TEST(TQDatumFile, TheDatumIsNamedLikeTheFile) {
    DatumFileCase test;
    ASSERT_EQ(test.read("# 1\nBessel 1841\n1 2 3\nWGS 84\n", "Hermannskogel (Österreich).v2.dtm"),
              TQDatumFile::Read);
    EXPECT_EQ(*test.shifted->name(), "Bessel 1841/Hermannskogel (Österreich).v2");
}
