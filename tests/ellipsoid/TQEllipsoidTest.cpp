#include "ellipsoid/TQEllipsoid.h"

#include "support/TQFile.h"
#include "support/TQNuplet.h"
#include "support/TQPoint.h"
#include "testing/CapturedMessages.h"
#include "testing/CommaLocale.h"
#include "testing/EvenSteps.h"
#include "testing/FullDisk.h"
#include "testing/Identity.h"
#include "testing/StreamBytes.h"
#include "testing/TemporaryDirectory.h"
#include "testing/TextLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Parameters = TQEllipsoid::DatumShiftParameters;

constexpr double kPi = std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Bessel 1841 with shifts of the size that national surveys publish.
constexpr double kSemiMajorAxis = 6377397.155;
constexpr double kEccentricitySquared = 0.006674372231802;
constexpr double kRefSemiMajorAxis = 6378137.0;
constexpr double kRefFlattening = 0.003352810664747;
constexpr Parameters kParameters = {-582.0, -105.5, -414.25, 5.04e-06, 1.697e-06, -1.49e-05, -8.3};
constexpr Parameters kTranslation = {-582.0, -105.5, -414.25, 0.0, 0.0, 0.0, 0.0};
constexpr Parameters kNoShift = {};

TQEllipsoid bessel(TQEllipsoid::DatumShiftKind kind = TQEllipsoid::NoDatumShift) {
    TQEllipsoid ellipsoid(TQString("Bessel 1841"), kSemiMajorAxis, kEccentricitySquared);
    if (kind != TQEllipsoid::NoDatumShift) {
        ellipsoid.setDatumShift(kind, kRefSemiMajorAxis, kRefFlattening, kParameters);
    }
    return ellipsoid;
}

const TQEllipsoid::DatumShiftKind kAllKinds[] = {TQEllipsoid::NoDatumShift, TQEllipsoid::ThreeParameterShift,
                                                 TQEllipsoid::SevenParameterShift};

/// A longitude and a latitude in radians.
struct Geo {
    double longitude;
    double latitude;

    bool operator==(const Geo&) const = default;
};

Geo toLocal(const TQEllipsoid& ellipsoid, Geo point) {
    ellipsoid.toLocalDatum(point.longitude, point.latitude);
    return point;
}

Geo toReference(const TQEllipsoid& ellipsoid, Geo point) {
    ellipsoid.toReferenceDatum(point.longitude, point.latitude);
    return point;
}

constexpr Geo kSomewhere = {0.233, 0.8};

/// The ellipsoid is nameless and all of its numbers are 0.
void expectUnset(const TQEllipsoid& ellipsoid) {
    EXPECT_EQ(ellipsoid.name(), nullptr);
    EXPECT_EQ(ellipsoid.semiMajorAxis(), 0.0);
    EXPECT_EQ(ellipsoid.eccentricitySquared(), 0.0);
    EXPECT_EQ(ellipsoid.datumShiftKind(), 0U);
    EXPECT_FALSE(ellipsoid.hasDatumShift());
    EXPECT_EQ(ellipsoid.refSemiMajorAxis(), 0.0);
    EXPECT_EQ(ellipsoid.refFlattening(), 0.0);
    EXPECT_EQ(ellipsoid.datumShiftParameters(), kNoShift);
}

/// The ellipsoid is Bessel's with the shift of bessel() of that kind, whatever it was read from.
void expectBessel(const TQEllipsoid& ellipsoid, TQEllipsoid::DatumShiftKind kind) {
    const bool shifted = kind != TQEllipsoid::NoDatumShift;
    ASSERT_NE(ellipsoid.name(), nullptr);
    EXPECT_EQ(*ellipsoid.name(), "Bessel 1841");
    EXPECT_EQ(ellipsoid.semiMajorAxis(), kSemiMajorAxis);
    EXPECT_EQ(ellipsoid.eccentricitySquared(), kEccentricitySquared);
    EXPECT_EQ(ellipsoid.datumShiftKind(), kind);
    EXPECT_EQ(ellipsoid.hasDatumShift(), shifted);
    EXPECT_EQ(ellipsoid.refSemiMajorAxis(), shifted ? kRefSemiMajorAxis : 0.0);
    EXPECT_EQ(ellipsoid.refFlattening(), shifted ? kRefFlattening : 0.0);
    EXPECT_EQ(ellipsoid.datumShiftParameters(), kind == TQEllipsoid::SevenParameterShift   ? kParameters
                                                : kind == TQEllipsoid::ThreeParameterShift ? kTranslation
                                                                                           : kNoShift);
    // The derived numbers have no accessors; both conversions together use all of them.
    const TQEllipsoid expected = bessel(kind);
    EXPECT_EQ(toLocal(ellipsoid, kSomewhere), toLocal(expected, kSomewhere));
    EXPECT_EQ(toReference(ellipsoid, kSomewhere), toReference(expected, kSomewhere));
}

// ---- archives ------------------------------------------------------------------------------------------

enum class NameForm { Counted, Archived };

StreamBytes besselHead(int version, NameForm form, const std::string& name = "Bessel 1841") {
    StreamBytes bytes;
    bytes.tag("TQEllipsoid", version);
    if (form == NameForm::Counted) {
        bytes.counted(name);
    } else {
        bytes.text(name);
    }
    return bytes.number(kSemiMajorAxis).number(kEccentricitySquared);
}

StreamBytes& appendShift(StreamBytes& bytes, TQEllipsoid::DatumShiftKind kind) {
    if (kind != TQEllipsoid::NoDatumShift) {
        bytes.numbers({kRefSemiMajorAxis, kRefFlattening, -582.0, -105.5, -414.25});
    }
    if (kind == TQEllipsoid::SevenParameterShift) {
        bytes.numbers({5.04e-06, 1.697e-06, -1.49e-05, -8.3});
    }
    return bytes;
}

StreamBytes besselArchive(int version, TQEllipsoid::DatumShiftKind kind) {
    StreamBytes bytes = besselHead(version, version == 4 ? NameForm::Archived : NameForm::Counted);
    if (version == 0) {
        return bytes;
    }
    bytes.byte(static_cast<int>(kind));
    return appendShift(bytes, kind);
}

struct OldArchive {
    int version;
    TQEllipsoid::DatumShiftKind kind;
};

const OldArchive kReadableArchives[] = {
    {0, TQEllipsoid::NoDatumShift},        {2, TQEllipsoid::NoDatumShift},
    {2, TQEllipsoid::ThreeParameterShift}, {3, TQEllipsoid::NoDatumShift},
    {3, TQEllipsoid::ThreeParameterShift}, {3, TQEllipsoid::SevenParameterShift},
    {4, TQEllipsoid::NoDatumShift},        {4, TQEllipsoid::ThreeParameterShift},
    {4, TQEllipsoid::SevenParameterShift},
};

// ---- text blocks ---------------------------------------------------------------------------------------

TextLines besselLines(TQEllipsoid::DatumShiftKind kind) {
    TextLines lines = {
        headerLine("TQEllipsoid v2", 5002, 5007),
        {"Bessel 1841", 5004, 5007},
        {"6377397.155", 5005, 5007},
        {"0.006674372231802", 5006, 5007},
        {std::to_string(static_cast<int>(kind)), 5008, 5008},
    };
    if (kind != TQEllipsoid::NoDatumShift) {
        const bool seven = kind == TQEllipsoid::SevenParameterShift;
        lines.push_back({"6378137", 5008, 5008});
        lines.push_back({"0.003352810664747", 5008, 5008});
        lines.push_back(
            {seven ? "-582 -105.5 -414.25 5.04e-06 1.697e-06 -1.49e-05 -8.3" : "-582 -105.5 -414.25", 5008,
             5008});
    }
    return lines;
}

int loadFrom(TQEllipsoid& ellipsoid, const std::string& text) {
    const TemporaryDirectory directory;
    TQFile file(directory.fileWith("ellipsoid", text));
    return ellipsoid.loadFromFile(file);
}

std::string writtenText(const TQEllipsoid& ellipsoid) {
    const TemporaryDirectory directory;
    TQFile file(directory.file("ellipsoid"));
    EXPECT_EQ(ellipsoid.writeToFile(file), 0);
    EXPECT_EQ(file.close(), 0);
    return directory.bytesOf("ellipsoid");
}

const std::string kBlockHead = "TQEllipsoid v2\nBessel 1841\n6377397.155\n0.006674372231802\n";

} // namespace

// ---- identity, construction, copies ----------------------------------------------------------------------

TEST(TQEllipsoid, AnswersToItsClassAndTheRoot) { expectIdentity(bessel(), {"TQEllipsoid"}); }

TEST(TQEllipsoid, StartsWithoutNameSizeAndShift) {
    const TQEllipsoid ellipsoid;
    expectUnset(ellipsoid);
    EXPECT_EQ(toLocal(ellipsoid, kSomewhere), kSomewhere);
    EXPECT_EQ(toReference(ellipsoid, kSomewhere), kSomewhere);
}

TEST(TQEllipsoid, CopyHasTheFieldsOfItsKindAndANameOfItsOwn) {
    for (const auto kind : kAllKinds) {
        SCOPED_TRACE(kind);
        const TQEllipsoid original = bessel(kind);
        const auto copy = tq_copyOf(original);
        expectBessel(*copy, kind);
        EXPECT_NE(copy->name(), original.name());
        EXPECT_EQ(archivedBytes(*copy), archivedBytes(original));
        EXPECT_TRUE(copy->isEqual(&original));
    }
}

TEST(TQEllipsoid, CopyIsNotChangedWithTheOriginal) {
    auto original = std::make_unique<TQEllipsoid>(bessel(TQEllipsoid::SevenParameterShift));
    const TQEllipsoid copy(*original);
    original->setDatumShift(TQEllipsoid::NoDatumShift, 0.0, 0.0, kNoShift);
    original.reset();
    expectBessel(copy, TQEllipsoid::SevenParameterShift);
}

TEST(TQEllipsoid, CopyOfANamelessOneIsNameless) {
    const TQEllipsoid nameless;
    expectUnset(TQEllipsoid(nameless));
}

TEST(TQEllipsoid, ThreeParameterShiftHasNoRotationsAndNoScale) {
    const TQEllipsoid ellipsoid = bessel(TQEllipsoid::ThreeParameterShift);
    EXPECT_EQ(ellipsoid.datumShiftParameters(), kTranslation);
}

TEST(TQEllipsoid, TakingTheShiftAwayPutsItsFieldsToZero) {
    TQEllipsoid ellipsoid = bessel(TQEllipsoid::SevenParameterShift);
    ellipsoid.setDatumShift(TQEllipsoid::NoDatumShift, kRefSemiMajorAxis, kRefFlattening, kParameters);
    expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
}

// ---- equality --------------------------------------------------------------------------------------------

TEST(TQEllipsoid, IsEqualToNothingButAnEllipsoid) {
    const TQEllipsoid ellipsoid = bessel();
    EXPECT_FALSE(ellipsoid.isEqual(nullptr));
    const TQNuplet other;
    EXPECT_FALSE(ellipsoid.isEqual(&other));
    EXPECT_FALSE(ellipsoid == other);
    EXPECT_TRUE(ellipsoid.isEqual(&ellipsoid));
    EXPECT_TRUE(ellipsoid == bessel());
}

TEST(TQEllipsoid, IsEqualComparesNamesExactly) {
    const TQEllipsoid one(TQString("Bessel"), 6377397.0, 0.0066);
    EXPECT_TRUE(one.isEqual(std::make_unique<TQEllipsoid>(TQString("Bessel"), 6377397.0, 0.0066).get()));
    for (const char* name : {"bessel", "Bessel ", "Besse", "", "Bessel 1841"}) {
        const TQEllipsoid other(TQString(name), 6377397.0, 0.0066);
        EXPECT_FALSE(one.isEqual(&other)) << name;
        EXPECT_FALSE(other.isEqual(&one)) << name;
    }
}

TEST(TQEllipsoid, NamelessOnesAreEqualToEachOtherOnly) {
    const TQEllipsoid nameless;
    const TQEllipsoid alsoNameless;
    const TQEllipsoid named(TQString("A"), 0.0, 0.0);
    EXPECT_TRUE(nameless.isEqual(&alsoNameless));
    EXPECT_FALSE(nameless.isEqual(&named));
    EXPECT_FALSE(named.isEqual(&nameless));
}

namespace {

/// Makes an ellipsoid with one number of choice, everything else being the same.
using WithNumber = std::function<TQEllipsoid(double)>;

WithNumber withSemiMajorAxis() {
    return [](double a) { return TQEllipsoid(TQString("A"), a, 0.0); };
}

WithNumber withEccentricitySquared() {
    return [](double e2) { return TQEllipsoid(TQString("A"), 6378137.0, e2); };
}

WithNumber withRefSemiMajorAxis(TQEllipsoid::DatumShiftKind kind) {
    return [kind](double a) {
        TQEllipsoid ellipsoid(TQString("A"), 6378137.0, 0.0);
        ellipsoid.setDatumShift(kind, a, 0.0, kNoShift);
        return ellipsoid;
    };
}

WithNumber withRefFlattening(TQEllipsoid::DatumShiftKind kind) {
    return [kind](double f) {
        TQEllipsoid ellipsoid(TQString("A"), 6378137.0, 0.0);
        ellipsoid.setDatumShift(kind, 6378137.0, f, kNoShift);
        return ellipsoid;
    };
}

WithNumber withParameter(TQEllipsoid::DatumShiftKind kind, std::size_t index) {
    return [kind, index](double value) {
        TQEllipsoid ellipsoid(TQString("A"), 6378137.0, 0.0);
        Parameters parameters = kNoShift;
        parameters[index] = value;
        ellipsoid.setDatumShift(kind, 6378137.0, 0.0, parameters);
        return ellipsoid;
    };
}

void expectEquality(const WithNumber& make, double one, double other, bool equal) {
    const TQEllipsoid first = make(one);
    const TQEllipsoid second = make(other);
    EXPECT_EQ(first.isEqual(&second), equal) << one << " beside " << other;
    EXPECT_EQ(second.isEqual(&first), equal) << other << " beside " << one;
}

/// A difference of the tolerance itself is none, the next larger one is.
void expectTolerance(const WithNumber& make, double tolerance) {
    expectEquality(make, 0.0, tolerance, true);
    expectEquality(make, 0.0, -tolerance, true);
    expectEquality(make, 0.0, std::nextafter(tolerance, 1e9), false);
    expectEquality(make, 0.0, -std::nextafter(tolerance, 1e9), false);
}

} // namespace

TEST(TQEllipsoid, SemiMajorAxesOneMetreApartAreEqual) {
    expectEquality(withSemiMajorAxis(), 6378137.0, 6378138.0, true);
    expectEquality(withSemiMajorAxis(), 6378137.0, 6378138.0000001, false);
}

TEST(TQEllipsoid, SquaredEccentricitiesAreEqualWithinTheirTolerance) {
    expectTolerance(withEccentricitySquared(), 1e-7);
}

TEST(TQEllipsoid, ReferenceEllipsoidsAreEqualWithinTheirTolerances) {
    for (const auto kind : {TQEllipsoid::ThreeParameterShift, TQEllipsoid::SevenParameterShift}) {
        SCOPED_TRACE(kind);
        expectEquality(withRefSemiMajorAxis(kind), 6378137.0, 6378138.0, true);
        expectEquality(withRefSemiMajorAxis(kind), 6378137.0, 6378138.0000001, false);
        expectTolerance(withRefFlattening(kind), 1e-8);
    }
}

TEST(TQEllipsoid, TranslationsAreEqualWithinOneMetre) {
    for (const auto kind : {TQEllipsoid::ThreeParameterShift, TQEllipsoid::SevenParameterShift}) {
        for (const std::size_t index : {0U, 1U, 2U}) {
            SCOPED_TRACE(index);
            expectTolerance(withParameter(kind, index), 1.0);
        }
    }
}

TEST(TQEllipsoid, RotationsAndScaleAreEqualWithinTheirTolerances) {
    for (const std::size_t index : {3U, 4U, 5U}) {
        SCOPED_TRACE(index);
        expectTolerance(withParameter(TQEllipsoid::SevenParameterShift, index), 1e-12);
    }
    expectTolerance(withParameter(TQEllipsoid::SevenParameterShift, 6), 1e-6);
}

TEST(TQEllipsoid, IdenticalIsTheSameWithoutTolerance) {
    const auto made = [](double axis, double eccentricitySquared, double dx, const char* name = "E") {
        auto ellipsoid = std::make_unique<TQEllipsoid>(TQString(name), axis, eccentricitySquared);
        ellipsoid->setDatumShift(TQEllipsoid::ThreeParameterShift, 6378137.0, 0.0033, {dx, 2.0, 3.0});
        return ellipsoid;
    };
    const auto one = made(6377397.0, 0.0066, 1.0);
    EXPECT_TRUE(one->isIdentical(*one));
    EXPECT_TRUE(one->isIdentical(*made(6377397.0, 0.0066, 1.0)));
    EXPECT_FALSE(one->isIdentical(*made(6377397.001, 0.0066, 1.0)));
    EXPECT_FALSE(one->isIdentical(*made(6377397.0, 0.00660001, 1.0)));
    EXPECT_FALSE(one->isIdentical(*made(6377397.0, 0.0066, 1.001)));
    EXPECT_FALSE(one->isIdentical(*made(6377397.0, 0.0066, 1.0, "F")));
    EXPECT_FALSE(one->isIdentical(TQEllipsoid(TQString("E"), 6377397.0, 0.0066))) << "without shift";
}

TEST(TQEllipsoid, AnEllipsoidWithOtherAxesShiftsAsOneThatWasMadeWithThem) {
    const auto shifted = [](double axis, double eccentricitySquared) {
        auto ellipsoid = std::make_unique<TQEllipsoid>(TQString("E"), axis, eccentricitySquared);
        ellipsoid->setDatumShift(TQEllipsoid::ThreeParameterShift, 6378137.0, 0.0033, {1.0, 2.0, 3.0});
        return ellipsoid;
    };
    const auto changed = shifted(6377397.0, 0.0066);
    changed->setAxes(6400000.0, 0.0199);
    EXPECT_TRUE(changed->isIdentical(*shifted(6400000.0, 0.0199)));
    double longitude = 0.1;
    double latitude = 0.8;
    changed->toReferenceDatum(longitude, latitude);
    double expectedLongitude = 0.1;
    double expectedLatitude = 0.8;
    shifted(6400000.0, 0.0199)->toReferenceDatum(expectedLongitude, expectedLatitude);
    EXPECT_EQ(longitude, expectedLongitude);
    EXPECT_EQ(latitude, expectedLatitude);
}

TEST(TQEllipsoid, KindsOfShiftMustBeTheSameEvenWithEqualNumbers) {
    for (const auto one : kAllKinds) {
        for (const auto other : kAllKinds) {
            TQEllipsoid first(TQString("A"), 6378137.0, 0.0);
            TQEllipsoid second(TQString("A"), 6378137.0, 0.0);
            first.setDatumShift(one, 0.0, 0.0, kNoShift);
            second.setDatumShift(other, 0.0, 0.0, kNoShift);
            EXPECT_EQ(first.isEqual(&second), one == other) << one << " beside " << other;
        }
    }
}

// ---- archives --------------------------------------------------------------------------------------------

TEST(TQEllipsoid, WritesItsArchiveByteForByte) {
    for (const auto kind : kAllKinds) {
        EXPECT_EQ(archivedBytes(bessel(kind)), besselArchive(4, kind).bytes()) << kind;
    }
}

TEST(TQEllipsoid, WritesANullNameAsNull) {
    StreamBytes expected;
    expected.tag("TQEllipsoid", 4).nullText().numbers({0.0, 0.0}).byte(0);
    EXPECT_EQ(archivedBytes(TQEllipsoid()), expected.bytes());
}

TEST(TQEllipsoid, ReadsEveryVersionOfItsArchive) {
    for (const auto& [version, kind] : kReadableArchives) {
        SCOPED_TRACE(testing::Message() << "version " << version << ", kind " << kind);
        const CapturedMessages messages;
        ByteStream stream(besselArchive(version, kind));
        const TQEllipsoid ellipsoid(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_THAT(messages.lines(), IsEmpty());
        expectBessel(ellipsoid, kind);
    }
}

TEST(TQEllipsoid, VersionTwoTakesAnyFlagButZeroForThreeParameters) {
    for (const int flag : {1, 2, 3, 0x7F, 0x80, 0xFF}) {
        SCOPED_TRACE(flag);
        StreamBytes bytes = besselHead(2, NameForm::Counted).byte(flag);
        ByteStream stream(appendShift(bytes, TQEllipsoid::ThreeParameterShift));
        const TQEllipsoid ellipsoid(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        expectBessel(ellipsoid, TQEllipsoid::ThreeParameterShift);
    }
}

TEST(TQEllipsoid, AnUnknownKindInAnArchiveIsNoShift) {
    for (const int version : {3, 4}) {
        for (const int kind : {3, 4, 0x7F, 0x80, 0x81, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "version " << version << ", kind " << kind);
            ByteStream stream(
                besselHead(version, version == 4 ? NameForm::Archived : NameForm::Counted).byte(kind));
            const TQEllipsoid ellipsoid(stream.get());
            EXPECT_TRUE(stream.isReadExactly());
            expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
        }
    }
}

TEST(TQEllipsoid, VersionOneAndUnknownVersionsAreReportedAndSetNothing) {
    for (const int version : {1, 5, 6, 255, 256, 32767, -1, -2, -32768}) {
        SCOPED_TRACE(version);
        const CapturedMessages messages;
        ByteStream stream(besselHead(version, NameForm::Archived).byte(0));
        const TQEllipsoid ellipsoid(stream.get());
        EXPECT_THAT(messages.lines(), ElementsAre("TQEllipsoid::TQEllipsoid(TQReadStream *stream): version " +
                                                  std::to_string(version) + " is unknown.\n"));
        expectUnset(ellipsoid);
    }
}

TEST(TQEllipsoid, StripsCarriageReturnsFromEveryArchivedName) {
    for (const int version : {0, 2, 3, 4}) {
        SCOPED_TRACE(version);
        const NameForm form = version == 4 ? NameForm::Archived : NameForm::Counted;
        StreamBytes bytes = besselHead(version, form, "\rBessel\r 18\r\r41\r");
        if (version != 0) {
            bytes.byte(0);
        }
        ByteStream stream(bytes);
        expectBessel(TQEllipsoid(stream.get()), TQEllipsoid::NoDatumShift);
    }
}

TEST(TQEllipsoid, OldNamesAreCutToTheBufferOfTheirTime) {
    ByteStream stream(besselHead(0, NameForm::Counted, std::string(1500, 'n')));
    const TQEllipsoid ellipsoid(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    ASSERT_NE(ellipsoid.name(), nullptr);
    EXPECT_EQ(ellipsoid.name()->utf8(), std::string(1023, 'n'));
    EXPECT_EQ(ellipsoid.semiMajorAxis(), kSemiMajorAxis);
}

TEST(TQEllipsoid, NullNameInAnArchiveStaysNull) {
    StreamBytes bytes;
    bytes.tag("TQEllipsoid", 4).nullText().numbers({kSemiMajorAxis, kEccentricitySquared}).byte(0);
    ByteStream stream(bytes);
    const TQEllipsoid ellipsoid(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_EQ(ellipsoid.name(), nullptr);
    EXPECT_EQ(ellipsoid.semiMajorAxis(), kSemiMajorAxis);
}

TEST(TQEllipsoid, EveryArchiveMayBeCutOffAnywhere) {
    for (const auto& [version, kind] : kReadableArchives) {
        SCOPED_TRACE(testing::Message() << "version " << version << ", kind " << kind);
        const CapturedMessages messages;
        expectEveryCutIsNoticed(besselArchive(version, kind).bytes(), [](TQReadStream* stream) {
            const TQEllipsoid ellipsoid(stream);
            EXPECT_TRUE(TQEllipsoid(ellipsoid).isEqual(&ellipsoid));
        });
    }
}

TEST(TQEllipsoid, ANameLongerThanTheArchiveFailsTheStream) {
    for (const int version : {0, 2, 3, 4}) {
        SCOPED_TRACE(version);
        StreamBytes bytes;
        bytes.tag("TQEllipsoid", version);
        if (version == 4) {
            bytes.byte(2);
        }
        ByteStream stream(bytes.integer(0x7FFFFFFF).byte('n'));
        const TQEllipsoid ellipsoid(stream.get());
        EXPECT_TRUE(stream.get()->failed());
        EXPECT_EQ(ellipsoid.semiMajorAxis(), 0.0);
        EXPECT_EQ(ellipsoid.datumShiftKind(), 0U);
    }
}

// ---- text blocks: reading --------------------------------------------------------------------------------

TEST(TQEllipsoid, ReadsItsTextOfEveryKind) {
    for (const auto kind : kAllKinds) {
        SCOPED_TRACE(kind);
        TQEllipsoid ellipsoid;
        EXPECT_EQ(loadFrom(ellipsoid, textOf(besselLines(kind))), 0);
        expectBessel(ellipsoid, kind);
    }
}

TEST(TQEllipsoid, VersionOneOfTheTextHasNoShift) {
    TQEllipsoid ellipsoid = bessel(TQEllipsoid::SevenParameterShift);
    EXPECT_EQ(loadFrom(ellipsoid, "TQEllipsoid v1\nBessel 1841\n6377397.155\n0.006674372231802\n1\n"), 0);
    expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
}

TEST(TQEllipsoid, TheHeaderTextItselfIsNotCompared) {
    TQEllipsoid ellipsoid;
    EXPECT_EQ(loadFrom(ellipsoid, "Whatever v1\nBessel 1841\n6377397.155\n0.006674372231802\n"), 0);
    expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
}

TEST(TQEllipsoid, TellsWhichLineIsMissingWhereverTheTextEnds) {
    for (const auto kind : kAllKinds) {
        SCOPED_TRACE(kind);
        expectCodesWhereverTheTextEnds(besselLines(kind), [](TQFile& file) {
            TQEllipsoid ellipsoid;
            return ellipsoid.loadFromFile(file);
        });
    }
    const TextLines versionOne = {headerLine("TQEllipsoid v1", 5002, 0),
                                  {"Bessel 1841", 5004, 0},
                                  {"6377397.155", 5005, 0},
                                  {"0.006674372231802", 5006, 0}};
    expectCodesWhereverTheTextEnds(versionOne, [](TQFile& file) {
        TQEllipsoid ellipsoid;
        return ellipsoid.loadFromFile(file);
    });
}

TEST(TQEllipsoid, CannotReadAFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    TQEllipsoid ellipsoid;
    TQFile missing(directory.file("missing"));
    EXPECT_EQ(ellipsoid.loadFromFile(missing), 5001);
    TQFile itself(directory.file(""));
    EXPECT_EQ(ellipsoid.loadFromFile(itself), 5001);
    TQFile written(directory.file("written"));
    ASSERT_EQ(written.open(TQFile::Write), 0);
    EXPECT_EQ(ellipsoid.loadFromFile(written), 5001);
    expectUnset(ellipsoid);
}

TEST(TQEllipsoid, CannotReadABlockWithoutVersion) {
    for (const char* header : {"TQEllipsoid", "TQEllipsoid v", "TQEllipsoid vX", "TQEllipsoid 2", ""}) {
        TQEllipsoid ellipsoid;
        EXPECT_EQ(loadFrom(ellipsoid, std::string(header) + "\nBessel 1841\n1\n2\n0\n"), 5002) << header;
        expectUnset(ellipsoid);
    }
}

TEST(TQEllipsoid, ReportsAnUnknownVersionOfTheText) {
    for (const char* version : {"0", "3", "4", "-1", "1000"}) {
        SCOPED_TRACE(version);
        const CapturedMessages messages;
        TQEllipsoid ellipsoid;
        EXPECT_EQ(loadFrom(ellipsoid, "TQEllipsoid v" + std::string(version) + "\nBessel 1841\n1\n2\n0\n"),
                  5003);
        EXPECT_THAT(messages.lines(), ElementsAre("TQEllipsoid::loadFromFile: Unknown version\n"));
        expectUnset(ellipsoid);
    }
}

TEST(TQEllipsoid, AnUnknownKindInATextIsNoShift) {
    for (const char* kind : {"3", "-1", "7", "258", "", "none", "99999999999"}) {
        SCOPED_TRACE(kind);
        TQEllipsoid ellipsoid = bessel(TQEllipsoid::SevenParameterShift);
        EXPECT_EQ(loadFrom(ellipsoid, kBlockHead + kind + "\n6378137\n0.0033\n1 2 3\n"), 0);
        expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
    }
}

TEST(TQEllipsoid, TheKindIsReadAsAnInteger) {
    TQEllipsoid ellipsoid;
    EXPECT_EQ(
        loadFrom(ellipsoid, kBlockHead + " 1.9 or so\n6378137\n0.003352810664747\n-582 -105.5 -414.25\n"), 0);
    expectBessel(ellipsoid, TQEllipsoid::ThreeParameterShift);
}

TEST(TQEllipsoid, NumbersThatAreMissingOnALineStayAsTheyWere) {
    TQEllipsoid seven = bessel(TQEllipsoid::SevenParameterShift);
    EXPECT_EQ(loadFrom(seven, kBlockHead + "2\n6378137\n0.003352810664747\n1 2\n"), 0);
    EXPECT_EQ(seven.datumShiftParameters(),
              (Parameters{1.0, 2.0, -414.25, 5.04e-06, 1.697e-06, -1.49e-05, -8.3}));

    TQEllipsoid three = bessel(TQEllipsoid::ThreeParameterShift);
    EXPECT_EQ(loadFrom(three, kBlockHead + "1\n6378137\n0.003352810664747\n\n"), 0);
    expectBessel(three, TQEllipsoid::ThreeParameterShift);

    EXPECT_EQ(loadFrom(three, kBlockHead + "1\n6378137\n0.003352810664747\n1 two 3\n"), 0);
    EXPECT_EQ(three.datumShiftParameters(), (Parameters{1.0, -105.5, -414.25, 0.0, 0.0, 0.0, 0.0}));
}

TEST(TQEllipsoid, ReadingAThreeParameterShiftClearsRotationsAndScale) {
    TQEllipsoid ellipsoid = bessel(TQEllipsoid::SevenParameterShift);
    EXPECT_EQ(loadFrom(ellipsoid, textOf(besselLines(TQEllipsoid::ThreeParameterShift))), 0);
    expectBessel(ellipsoid, TQEllipsoid::ThreeParameterShift);
}

TEST(TQEllipsoid, ReadingASevenParameterShiftClearsTheMolodenskyFactors) {
    TQEllipsoid ellipsoid = bessel(TQEllipsoid::ThreeParameterShift);
    EXPECT_EQ(loadFrom(ellipsoid, textOf(besselLines(TQEllipsoid::SevenParameterShift))), 0);
    expectBessel(ellipsoid, TQEllipsoid::SevenParameterShift);
}

TEST(TQEllipsoid, LinesAreReadToTheirLimit) {
    TQEllipsoid ellipsoid;
    EXPECT_EQ(loadFrom(ellipsoid, "TQEllipsoid v1\n" + std::string(5000, 'n') + "\n6377397.155\n0.0066\n"),
              0);
    ASSERT_NE(ellipsoid.name(), nullptr);
    EXPECT_EQ(ellipsoid.name()->utf8(), std::string(4096, 'n'));
    EXPECT_EQ(ellipsoid.semiMajorAxis(), kSemiMajorAxis);
}

TEST(TQEllipsoid, ReadsABlockInTheMiddleOfAnOpenFile) {
    const TemporaryDirectory directory;
    TQFile file(
        directory.fileWith("file", "before\n" + textOf(besselLines(TQEllipsoid::NoDatumShift)) + "after\n"));
    ASSERT_EQ(file.open(TQFile::Read), 0);
    TQString line;
    ASSERT_EQ(file.readLine(line), 0);
    TQEllipsoid ellipsoid;
    EXPECT_EQ(ellipsoid.loadFromFile(file), 0);
    expectBessel(ellipsoid, TQEllipsoid::NoDatumShift);
    ASSERT_EQ(file.readLine(line), 0);
    EXPECT_EQ(line, "after");
}

// ---- text blocks: writing --------------------------------------------------------------------------------

TEST(TQEllipsoid, WritesItsTextByteForByte) {
    for (const auto kind : kAllKinds) {
        EXPECT_EQ(writtenText(bessel(kind)), textOf(besselLines(kind))) << kind;
    }
}

TEST(TQEllipsoid, WritesThirteenSignificantDigits) {
    TQEllipsoid ellipsoid(TQString("A"), 1.0 / 3.0, 2e-20 / 3.0);
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 1e20, 123456789.0123456,
                            {1.0 / 3.0, 0.0, 0.0, 0.0, 0.0, 0.0, -1.0 / 3.0});
    EXPECT_EQ(writtenText(ellipsoid), "TQEllipsoid v2\nA\n0.3333333333333\n6.666666666667e-21\n2\n1e+20\n"
                                      "123456789.0123\n0.3333333333333 0 0 0 0 0 -0.3333333333333\n");
}

TEST(TQEllipsoid, TellsWhatCouldNotBeWrittenWhereverTheDiskIsFull) {
    if (!FileSizeLimit::isAvailable) {
        GTEST_SKIP() << "the system cannot limit the size of files";
    }
    for (const auto kind : kAllKinds) {
        SCOPED_TRACE(kind);
        const TQEllipsoid ellipsoid = bessel(kind);
        expectCodesWhereverTheDiskIsFull(besselLines(kind),
                                         [&](TQFile& file) { return ellipsoid.writeToFile(file); });
    }
}

TEST(TQEllipsoid, CannotWriteToAFullDevice) {
    const std::optional<TQString> device = fullDevice();
    if (!device) {
        GTEST_SKIP() << "the system has no such device";
    }
    TQFile file(*device);
    EXPECT_EQ(bessel().writeToFile(file), 5007);
}

TEST(TQEllipsoid, CannotWriteAFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    TQFile nowhere(directory.file("missing/ellipsoid"));
    EXPECT_EQ(bessel().writeToFile(nowhere), 5001);
    TQFile itself(directory.file(""));
    EXPECT_EQ(bessel().writeToFile(itself), 5001);
    TQFile read(directory.fileWith("read", "bytes"));
    ASSERT_EQ(read.open(TQFile::Read), 0);
    EXPECT_EQ(bessel().writeToFile(read), 5001);
}

TEST(TQEllipsoid, TextAndArchiveAreTheSameUnderACommaLocale) {
    for (const auto kind : kAllKinds) {
        SCOPED_TRACE(kind);
        const CommaLocale locale;
        EXPECT_EQ(writtenText(bessel(kind)), textOf(besselLines(kind)));
        EXPECT_EQ(archivedBytes(bessel(kind)), besselArchive(4, kind).bytes());
        TQEllipsoid ellipsoid;
        EXPECT_EQ(loadFrom(ellipsoid, textOf(besselLines(kind))), 0);
        expectBessel(ellipsoid, kind);
    }
}

// ---- datum shifts ----------------------------------------------------------------------------------------

TEST(TQEllipsoid, WithoutShiftEveryCoordinateStaysAsItIs) {
    const TQEllipsoid ellipsoid = bessel();
    for (const Geo point : {Geo{0.0, 0.0}, Geo{-0.0, 1.5}, Geo{7.0, -3.0}, Geo{1e300, kInfinity}}) {
        EXPECT_EQ(toLocal(ellipsoid, point), point);
        EXPECT_EQ(toReference(ellipsoid, point), point);
    }
    EXPECT_TRUE(std::isnan(toLocal(ellipsoid, {kNaN, kNaN}).longitude));
    EXPECT_TRUE(std::isnan(toReference(ellipsoid, {kNaN, kNaN}).latitude));
}

namespace {

/// Radius of curvature in the meridian.
double meridianRadius(double a, double e2, double latitude) {
    const double sine = std::sin(latitude);
    return (1.0 - e2) * a / std::pow(1.0 - e2 * sine * sine, 1.5);
}

/// Radius of curvature across the meridian.
double normalRadius(double a, double e2, double latitude) {
    const double sine = std::sin(latitude);
    return a / std::sqrt(1.0 - e2 * sine * sine);
}

/// A sphere of radius 1000 km whose shift refers to a sphere of the same size.
TQEllipsoid sphere(TQEllipsoid::DatumShiftKind kind, const Parameters& parameters) {
    TQEllipsoid ellipsoid(TQString("Sphere"), 1e6, 0.0);
    ellipsoid.setDatumShift(kind, 1e6, 0.0, parameters);
    return ellipsoid;
}

constexpr double kRefEccentricitySquared = (2.0 - kRefFlattening) * kRefFlattening;

} // namespace

// On a sphere the translation divided by the radius is the whole shift.
TEST(TQEllipsoid, ThreeParameterShiftMovesByTheTranslationOverTheRadius) {
    const TQEllipsoid ellipsoid = sphere(TQEllipsoid::ThreeParameterShift, {100.0, 200.0, 300.0});
    const Geo atOrigin = toLocal(ellipsoid, {0.0, 0.0});
    EXPECT_NEAR(atOrigin.longitude, 200e-6, 1e-18);
    EXPECT_NEAR(atOrigin.latitude, 300e-6, 1e-18);
    const Geo inTheEast = toLocal(ellipsoid, {kPi / 2.0, 0.0});
    EXPECT_NEAR(inTheEast.longitude, kPi / 2.0 - 100e-6, 1e-15);
    EXPECT_NEAR(inTheEast.latitude, 300e-6, 1e-18);
    const Geo northern = toLocal(ellipsoid, {0.0, kPi / 4.0});
    EXPECT_NEAR(northern.longitude, 200e-6 * std::numbers::sqrt2, 1e-18);
    EXPECT_NEAR(northern.latitude, kPi / 4.0 + (300e-6 - 100e-6) / std::numbers::sqrt2, 1e-15);
}

TEST(TQEllipsoid, ThreeParameterShiftUsesTheLongitudeFromBeforeForTheLatitude) {
    const TQEllipsoid ellipsoid = sphere(TQEllipsoid::ThreeParameterShift, {0.0, 5e5, 0.0});
    const Geo shifted = toLocal(ellipsoid, {0.5, 0.5});
    EXPECT_NEAR(shifted.longitude, 0.5 + 0.5 * std::cos(0.5) / std::cos(0.5), 1e-15);
    EXPECT_NEAR(shifted.latitude, 0.5 - 0.5 * std::sin(0.5) * std::sin(0.5), 1e-15);
}

TEST(TQEllipsoid, ThreeParameterShiftBackMovesByTheNegativeTranslation) {
    const TQEllipsoid ellipsoid = sphere(TQEllipsoid::ThreeParameterShift, {100.0, 200.0, 300.0});
    const Geo back = toReference(ellipsoid, {0.0, 0.0});
    EXPECT_NEAR(back.longitude, -200e-6, 1e-18);
    EXPECT_NEAR(back.latitude, -300e-6, 1e-18);
}

// Without translation only the term of the two ellipsoids' sizes is left; each way has its own factor, and
// is taken on the ellipsoid that the point comes from.
TEST(TQEllipsoid, ThreeParameterShiftTakesTheSizesOfBothEllipsoidsIntoAccount) {
    TQEllipsoid ellipsoid = bessel();
    ellipsoid.setDatumShift(TQEllipsoid::ThreeParameterShift, kRefSemiMajorAxis, kRefFlattening, kNoShift);
    const double latitude = 0.7;
    const double f = 1.0 - std::sqrt(1.0 - kEccentricitySquared);
    const double towardsLocal =
        (kSemiMajorAxis - kRefSemiMajorAxis) * kRefFlattening + (f - kRefFlattening) * kRefSemiMajorAxis;
    const double towardsReference =
        f * (kRefSemiMajorAxis - kSemiMajorAxis) + kSemiMajorAxis * (kRefFlattening - f);
    EXPECT_NEAR(toLocal(ellipsoid, {1.0, latitude}).latitude,
                latitude + std::sin(2.0 * latitude) * towardsLocal /
                               meridianRadius(kRefSemiMajorAxis, kRefEccentricitySquared, latitude),
                1e-15);
    EXPECT_NEAR(toReference(ellipsoid, {1.0, latitude}).latitude,
                latitude + std::sin(2.0 * latitude) * towardsReference /
                               meridianRadius(kSemiMajorAxis, kEccentricitySquared, latitude),
                1e-15);
    EXPECT_EQ(toLocal(ellipsoid, {1.0, latitude}).longitude, 1.0);
}

TEST(TQEllipsoid, ThreeParameterShiftIsTakenOnTheEllipsoidThatThePointIsOn) {
    const TQEllipsoid ellipsoid = bessel(TQEllipsoid::ThreeParameterShift);
    const double latitude = 0.7;
    EXPECT_NEAR(toLocal(ellipsoid, {0.0, latitude}).longitude,
                -105.5 /
                    (normalRadius(kRefSemiMajorAxis, kRefEccentricitySquared, latitude) * std::cos(latitude)),
                1e-18);
    EXPECT_NEAR(toReference(ellipsoid, {0.0, latitude}).longitude,
                105.5 / (normalRadius(kSemiMajorAxis, kEccentricitySquared, latitude) * std::cos(latitude)),
                1e-18);
}

// On a sphere a small rotation moves a point of the equator by its arc tangent.
TEST(TQEllipsoid, SevenParameterShiftRotatesAroundEachAxisInRadians) {
    constexpr double angle = 1e-3;
    const TQEllipsoid aroundX = sphere(TQEllipsoid::SevenParameterShift, {0.0, 0.0, 0.0, angle});
    const TQEllipsoid aroundY = sphere(TQEllipsoid::SevenParameterShift, {0.0, 0.0, 0.0, 0.0, angle});
    const TQEllipsoid aroundZ = sphere(TQEllipsoid::SevenParameterShift, {0.0, 0.0, 0.0, 0.0, 0.0, angle});
    EXPECT_NEAR(toLocal(aroundX, {kPi / 2.0, 0.0}).latitude, std::atan(angle), 1e-12);
    EXPECT_NEAR(toLocal(aroundY, {0.0, 0.0}).latitude, -std::atan(angle), 1e-12);
    EXPECT_NEAR(toLocal(aroundZ, {0.0, 0.0}).longitude, std::atan(angle), 1e-15);
}

TEST(TQEllipsoid, SevenParameterShiftTranslatesAfterScaling) {
    // Scaled to twice the size, then moved by as much as the radius was: atan(1/2).
    const TQEllipsoid ellipsoid =
        sphere(TQEllipsoid::SevenParameterShift, {0.0, 0.0, 1e6, 0.0, 0.0, 0.0, 1e6});
    EXPECT_NEAR(toLocal(ellipsoid, {0.3, 0.0}).latitude, std::atan(0.5), 1e-12);
    EXPECT_NEAR(toLocal(ellipsoid, {0.3, 0.0}).longitude, 0.3, 1e-15);
    const TQEllipsoid sideways =
        sphere(TQEllipsoid::SevenParameterShift, {0.0, 1e6, 0.0, 0.0, 0.0, 0.0, 1e6});
    EXPECT_NEAR(toLocal(sideways, {0.0, 0.0}).longitude, std::atan(0.5), 1e-15);
}

// The shift from WGS 84 to WGS 72 (EPSG transformation 1238). Heights are dropped on the way: a shift of
// hundreds of metres would come back some centimetres beside the point.
TEST(TQEllipsoid, SevenParameterShiftThereAndBackIsTheSamePoint) {
    TQEllipsoid ellipsoid(TQString("WGS 72"), 6378135.0, 0.006694317778267);
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 1.0 / 298.257223563,
                            {0.0, 0.0, -4.5, 0.0, 0.0, -2.6859e-6, -0.219});
    for (const double latitude : evenSteps(-1.57, 1.57, 41)) {
        for (const double longitude : evenSteps(-3.1, 3.1, 21)) {
            const Geo back = toReference(ellipsoid, toLocal(ellipsoid, {longitude, latitude}));
            const Geo forth = toLocal(ellipsoid, toReference(ellipsoid, {longitude, latitude}));
            for (const Geo& point : {back, forth}) {
                EXPECT_NEAR(point.latitude, latitude, 1e-9);
                EXPECT_NEAR((point.longitude - longitude) * std::cos(latitude), 0.0, 1e-9);
            }
        }
    }
}

TEST(TQEllipsoid, SevenParameterShiftIsUndoneExactlyEvenForLargeRotations) {
    const TQEllipsoid ellipsoid =
        sphere(TQEllipsoid::SevenParameterShift, {0.0, 0.0, 0.0, 0.3, -0.2, 0.5, 1e5});
    const Geo back = toReference(ellipsoid, toLocal(ellipsoid, kSomewhere));
    EXPECT_NEAR(back.longitude, kSomewhere.longitude, 1e-9);
    EXPECT_NEAR(back.latitude, kSomewhere.latitude, 1e-9);
}

TEST(TQEllipsoid, APointOnTheAxisHasLongitudeAndLatitudeZero) {
    // The translation takes the point (a, 0, 0) to the axis, far above the pole.
    const TQEllipsoid toAxis = sphere(TQEllipsoid::SevenParameterShift, {-1e6, 0.0, 6e6});
    EXPECT_EQ(toLocal(toAxis, {0.0, 0.0}), (Geo{0.0, 0.0}));
    const TQEllipsoid fromAxis = sphere(TQEllipsoid::SevenParameterShift, {1e6, 0.0, 6e6});
    EXPECT_EQ(toReference(fromAxis, {0.0, 0.0}), (Geo{0.0, 0.0}));
}

namespace {

/// A point in geocentric coordinates.
struct Geocentric {
    double x;
    double y;
    double z;
};

Geocentric geocentric(const Geo& point, double a, double e2) {
    const double n = normalRadius(a, e2, point.latitude);
    return {n * std::cos(point.latitude) * std::cos(point.longitude),
            n * std::cos(point.latitude) * std::sin(point.longitude),
            (1.0 - e2) * n * std::sin(point.latitude)};
}

/// The iteration that stops at the first change of a thousand-millionth of a radian or less.
Geo geodetic(const Geocentric& point, double a, double e2) {
    const double p = std::sqrt(point.x * point.x + point.y * point.y);
    double latitude = std::atan(point.z / ((1.0 - e2) * p));
    for (double change = 1.0; change > 1e-9;) {
        const double before = latitude;
        latitude = std::atan((point.z + normalRadius(a, e2, before) * e2 * std::sin(before)) / p);
        change = std::abs(latitude - before);
    }
    return {std::atan2(point.y, point.x), latitude};
}

} // namespace

TEST(TQEllipsoid, SevenParameterShiftIsTheFormulaWrittenOut) {
    const TQEllipsoid ellipsoid = bessel(TQEllipsoid::SevenParameterShift);
    const auto& [dx, dy, dz, rx, ry, rz, scalePpm] = kParameters;
    const double scale = 1.0 + scalePpm * 1e-6;
    for (const double latitude : evenSteps(-1.5, 1.5, 301)) {
        const Geo point{3.0 * std::sin(7.0 * latitude), latitude};
        const auto [x, y, z] = geocentric(point, kRefSemiMajorAxis, kRefEccentricitySquared);
        const Geo local = geodetic({(x - y * rz + z * ry) * scale + dx, (x * rz + y - z * rx) * scale + dy,
                                    (y * rx - x * ry + z) * scale + dz},
                                   kSemiMajorAxis, kEccentricitySquared);
        EXPECT_NEAR(toLocal(ellipsoid, point).longitude, local.longitude, 1e-13);
        EXPECT_NEAR(toLocal(ellipsoid, point).latitude, local.latitude, 1e-13);

        const Geocentric back = geocentric(point, kSemiMajorAxis, kEccentricitySquared);
        const double u = back.x - dx;
        const double v = back.y - dy;
        const double w = back.z - dz;
        const double d = scale * (1.0 + rx * rx + ry * ry + rz * rz);
        const Geo reference = geodetic({((1.0 + rx * rx) * u + (rx * ry + rz) * v + (rx * rz - ry) * w) / d,
                                        ((rx * ry - rz) * u + (1.0 + ry * ry) * v + (ry * rz + rx) * w) / d,
                                        ((rx * rz + ry) * u + (ry * rz - rx) * v + (1.0 + rz * rz) * w) / d},
                                       kRefSemiMajorAxis, kRefEccentricitySquared);
        EXPECT_NEAR(toReference(ellipsoid, point).longitude, reference.longitude, 1e-13);
        EXPECT_NEAR(toReference(ellipsoid, point).latitude, reference.latitude, 1e-13);
    }
}

// Whatever a damaged file brings, a conversion comes to an end.
TEST(TQEllipsoid, ConversionsEndForEveryNumber) {
    for (const double strange : {kNaN, kInfinity, -kInfinity, 0.0, 1e300, -1e-300}) {
        for (const auto kind : kAllKinds) {
            TQEllipsoid ellipsoid(TQString("A"), strange, 0.5);
            ellipsoid.setDatumShift(kind, 6378137.0, strange,
                                    {strange, 1.0, 1.0, strange, 0.0, 0.0, strange});
            TQEllipsoid flat(TQString("A"), 6378137.0, strange);
            flat.setDatumShift(kind, strange, 0.003, kNoShift);
            toLocal(ellipsoid, kSomewhere);
            toReference(ellipsoid, kSomewhere);
            toLocal(flat, kSomewhere);
            toReference(flat, kSomewhere);
            EXPECT_TRUE(std::isnan(toLocal(bessel(kind), {kNaN, kNaN}).latitude));
            toLocal(bessel(kind), {strange, strange});
            toReference(bessel(kind), {strange, strange});
        }
    }
}

// Near the centre of curvature of the equator the latitude hardly moves from pass to pass.
TEST(TQEllipsoid, LatitudeIsIteratedOneHundredAndTwoTimesAtMost) {
    constexpr double a = 1e6;
    constexpr double e2 = 0.9;
    constexpr double p = 909000.0;
    constexpr double z = 100.0;
    TQEllipsoid ellipsoid(TQString("A"), a, e2);
    ellipsoid.setDatumShift(TQEllipsoid::SevenParameterShift, a, 0.0, {p - a, 0.0, z});
    const auto iterated = [](int passes) {
        double latitude = std::atan(z / ((1.0 - e2) * p));
        for (int pass = 0; pass < passes; ++pass) {
            latitude = std::atan((z + normalRadius(a, e2, latitude) * e2 * std::sin(latitude)) / p);
        }
        return latitude;
    };
    ASSERT_GT(std::abs(iterated(103) - iterated(102)), 1e-9);
    EXPECT_NEAR(toLocal(ellipsoid, {0.0, 0.0}).latitude, iterated(102), 1e-13);
}

TEST(TQEllipsoid, InverseFlatteningOfASphereIsInfinite) {
    EXPECT_EQ(TQEllipsoid(TQString("Sphere"), 6371000.0, 0.0).inverseFlattening(), kInfinity);
    EXPECT_NEAR(TQEllipsoid(TQString("A"), 6371000.0, 0.0199).inverseFlattening(), 100.0, 1e-10);
}

TEST(TQEllipsoid, IsConsistentWhereverAReReadTextEnds) {
    const std::vector<std::string> lines = {"Other",     "6378388",       "0.00672267", "1",
                                            "6378137.0", "0.00335281066", "1 2 3"};
    for (std::size_t present = 1; present < lines.size(); ++present) {
        SCOPED_TRACE(present);
        std::string text = "TQEllipsoid v2\n";
        for (std::size_t line = 0; line < present; ++line) {
            text += lines[line] + "\n";
        }
        TQEllipsoid reread(TQString("Bessel 1841"), 6377397.155, 0.006674372231802);
        reread.setDatumShift(TQEllipsoid::SevenParameterShift, 6378137.0, 1.0 / 298.257223563,
                             {1, 2, 3, 4, 5, 6, 7});
        EXPECT_NE(loadFrom(reread, text), 0);
        if (!reread.hasDatumShift()) {
            EXPECT_EQ(reread.refSemiMajorAxis(), 0.0);
            EXPECT_EQ(reread.datumShiftParameters(), TQEllipsoid::DatumShiftParameters{});
        }
        // What is derived belongs to what is stored: a fresh ellipsoid of the same numbers converts alike.
        TQEllipsoid fresh(TQString("fresh"), reread.semiMajorAxis(), reread.eccentricitySquared());
        fresh.setDatumShift(static_cast<TQEllipsoid::DatumShiftKind>(reread.datumShiftKind()),
                            reread.refSemiMajorAxis(), reread.refFlattening(), reread.datumShiftParameters());
        TQPoint one{0.1, 0.8};
        TQPoint other = one;
        reread.toLocalDatum(one.x, one.y);
        fresh.toLocalDatum(other.x, other.y);
        if (reread.refSemiMajorAxis() != 0.0 || !reread.hasDatumShift()) {
            EXPECT_EQ(one, other);
        }
    }
}
