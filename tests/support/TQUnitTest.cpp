#include "support/TQUnit.h"

#include "support/TQLocalizer.h"
#include "support/TQString.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr double pi = std::numbers::pi;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr std::uint32_t metre = 0x01000001;
constexpr std::uint32_t inch = 0x02000001;
constexpr std::uint32_t radian = 0x11000001;
constexpr std::uint32_t degree = 0x12000001;
constexpr std::uint32_t gon = 0x14000001;

struct Label {
    std::uint32_t unit;
    const char* text;
};

const std::vector<Label> lengths{
    {0x01000001, "m"},  {0x0100000A, "dam"},  {0x01000064, "hm"},   {0x010003E8, "km"},
    {0x0100073C, "NM"}, {0x0110000A, "dm"},   {0x01100064, "cm"},   {0x011003E8, "mm"},
    {0x02000001, "in"}, {0x0200000C, "ft"},   {0x02000024, "yd"},   {0x0200F780, "mi"},
    {0x04000001, "pt"}, {0x0400000C, "pica"}, {0x08000001, "ftUS"}, {0x080014A0, "miUS"},
};

const std::vector<Label> angles{
    {0x11000001, "rad"},    {0x111003E8, "mrad"}, {0x12000001, "deg"},  {0x1210003C, "arcmin"},
    {0x12100E10, "arcsec"}, {0x14000001, "gon"},  {0x14100064, "cgon"}, {0x21000001, "dms"},
};

std::vector<Label> allLabels() {
    std::vector<Label> all = lengths;
    all.insert(all.end(), angles.begin(), angles.end());
    return all;
}

const std::vector<std::uint32_t> codesThatAreNoUnit{
    0x00000000, 0x00000001, 0x01000000, 0x01100000, 0x02100000, 0x03000001,
    0x10000001, 0x11000000, 0x11100000, 0x12000000, 0x13000001, 0x21000002,
    0x21100001, 0x31000001, 0x01200001, 0x52000001, 0x81000001, 0xFFFFFFFF,
};

double convert(double value, std::uint32_t source, std::uint32_t destination) {
    return convertDimValue(value, source, destination, false);
}

double turned(double value, std::uint32_t source, std::uint32_t destination) {
    return convertDimValue(value, source, destination, true);
}

/// Relative difference of two numbers that are not 0.
double relativeDifference(double found, double expected) { return std::abs(found / expected - 1.0); }

const std::vector<double> awkwardValues{0.0,   -0.0,    1.0,       -1.0,    0.1,      1.0 / 3.0,
                                        1e300, -1e-300, 4.94e-324, 1.7e308, infinity, -infinity};

} // namespace

TEST(TQUnit, DegreesAndRadiansConvertInTheOrderOfMultiplyingFirst) {
    static_assert(tq_deg2rad(180.0) == pi);
    static_assert(tq_deg2rad(360.0) == 2.0 * pi);
    static_assert(tq_rad2deg(pi) == 180.0);
    for (const double value : {1.0, 7.4395, -46.95240555555556, 89.999999999, 1e-9}) {
        EXPECT_EQ(tq_deg2rad(value), value * pi / 180.0);
        EXPECT_EQ(tq_rad2deg(value), value * 180.0 / pi);
        EXPECT_EQ(convert(value, degree, radian), tq_deg2rad(value));
        EXPECT_EQ(convert(value, radian, degree), tq_rad2deg(value));
        EXPECT_EQ(TQUnitConversion(degree, radian)(value), tq_deg2rad(value));
        EXPECT_EQ(TQUnitConversion(radian, degree)(value), tq_rad2deg(value));
    }
}

TEST(TQUnit, TheNamedCodesAreThoseOfTheTable) {
    EXPECT_EQ(TQUnitMetre, metre);
    EXPECT_EQ(TQUnitKilometre, 0x010003E8U);
    EXPECT_EQ(TQUnitCentimetre, 0x01100064U);
    EXPECT_EQ(TQUnitMillimetre, 0x011003E8U);
    EXPECT_EQ(TQUnitNauticalMile, 0x0100073CU);
    EXPECT_EQ(TQUnitInch, inch);
    EXPECT_EQ(TQUnitFoot, 0x0200000CU);
    EXPECT_EQ(TQUnitYard, 0x02000024U);
    EXPECT_EQ(TQUnitMile, 0x0200F780U);
    EXPECT_EQ(TQUnitPoint, 0x04000001U);
    EXPECT_EQ(TQUnitUSSurveyFoot, 0x08000001U);
    EXPECT_EQ(TQUnitRadian, radian);
    EXPECT_EQ(TQUnitDegree, degree);
    EXPECT_EQ(TQUnitArcMinute, 0x1210003CU);
    EXPECT_EQ(TQUnitArcSecond, 0x12100E10U);
    EXPECT_EQ(TQUnitGon, gon);
    EXPECT_EQ(TQUnitDegreeMinuteSecond, 0x21000001U);
}

TEST(TQUnit, ACodeIsAngularByBit28OrAsDegreesMinutesSeconds) {
    for (const Label& angle : angles) {
        EXPECT_TRUE(tq_unitIsAngular(angle.unit)) << angle.text;
    }
    for (const Label& length : lengths) {
        EXPECT_FALSE(tq_unitIsAngular(length.unit)) << length.text;
    }
    EXPECT_TRUE(tq_unitIsAngular(0x10000000));
    EXPECT_TRUE(tq_unitIsAngular(0x31000001));
    EXPECT_FALSE(tq_unitIsAngular(0x21000002));
    EXPECT_FALSE(tq_unitIsAngular(0x20000000));
    EXPECT_FALSE(tq_unitIsAngular(0));
}

TEST(TQUnit, LengthsHaveTheirDefinedSizeInMetres) {
    EXPECT_EQ(convert(1, TQUnitKilometre, metre), 1000.0);
    EXPECT_EQ(convert(1, TQUnitHectometre, metre), 100.0);
    EXPECT_EQ(convert(1, TQUnitDecametre, metre), 10.0);
    EXPECT_EQ(convert(1, TQUnitDecimetre, metre), 0.1);
    EXPECT_EQ(convert(1, TQUnitCentimetre, metre), 0.01);
    EXPECT_EQ(convert(1, TQUnitMillimetre, metre), 0.001);
    EXPECT_EQ(convert(1, TQUnitNauticalMile, metre), 1852.0);
    EXPECT_EQ(convert(1, inch, metre), 0.0254);
    EXPECT_EQ(convert(1, TQUnitFoot, metre), 0.3048);
    EXPECT_EQ(convert(1, TQUnitYard, metre), 0.9144);
    EXPECT_EQ(convert(1, TQUnitMile, metre), 1609.344);
    EXPECT_EQ(convert(72, TQUnitPoint, metre), 0.0254);
    EXPECT_EQ(convert(6, TQUnitPica, metre), 0.0254);
    EXPECT_EQ(convert(1, TQUnitUSSurveyFoot, metre), 1200.0 / 3937.0);
    EXPECT_EQ(convert(3937, TQUnitUSSurveyMile, metre), 6336000.0);
}

TEST(TQUnit, LengthsConvertAcrossFamilies) {
    EXPECT_EQ(convert(1, TQUnitMile, TQUnitFoot), 5280.0);
    EXPECT_EQ(convert(1, inch, TQUnitPoint), 72.0);
    EXPECT_EQ(convert(72, TQUnitPoint, TQUnitCentimetre), 2.54);
    EXPECT_EQ(convert(0.1, TQUnitCentimetre, TQUnitMillimetre), 1.0);
    EXPECT_EQ(convert(3937, TQUnitUSSurveyFoot, TQUnitKilometre), 1.2);
    EXPECT_EQ(convert(1e6, TQUnitFoot, TQUnitUSSurveyFoot), 999998.0);
}

TEST(TQUnit, AnglesHaveTheirDefinedSize) {
    EXPECT_EQ(convert(200, gon, radian), pi);
    EXPECT_EQ(convert(pi, radian, gon), 200.0);
    EXPECT_EQ(convert(100, gon, degree), 90.0);
    EXPECT_EQ(convert(90, degree, gon), 100.0);
    EXPECT_EQ(convert(1, degree, TQUnitArcMinute), 60.0);
    EXPECT_EQ(convert(1, degree, TQUnitArcSecond), 3600.0);
    EXPECT_EQ(convert(5400, TQUnitArcSecond, degree), 1.5);
    EXPECT_EQ(convert(1000, TQUnitMilliradian, radian), 1.0);
    EXPECT_EQ(convert(20000, TQUnitCentigon, degree), 180.0);
    EXPECT_EQ(convert(648000, TQUnitArcSecond, radian), pi);
}

TEST(TQUnit, DegreesMinutesSecondsAreDecimalDegrees) {
    for (const double value : {7.4395833, -0.1, 1e300}) {
        EXPECT_EQ(convert(value, TQUnitDegreeMinuteSecond, degree), value);
        EXPECT_EQ(convert(value, degree, TQUnitDegreeMinuteSecond), value);
        EXPECT_EQ(convert(value, TQUnitDegreeMinuteSecond, radian), value * pi / 180.0);
    }
}

TEST(TQUnit, FactorsThatAreNotListedMakeUnits) {
    EXPECT_EQ(convert(2, 0x01000007, metre), 14.0);
    EXPECT_EQ(convert(14, 0x01100007, metre), 2.0);
    EXPECT_EQ(convert(16, 0x02100008, inch), 2.0);
    EXPECT_EQ(convert(1, 0x0100000F, 0x01000003), 5.0);
    EXPECT_EQ(convert(3, 0x01000004, 0x01000006), 2.0);
    EXPECT_EQ(convert(1, 0x12000005, degree), 5.0);
    EXPECT_EQ(convert(1, 0x010FFFFF, metre), 1048575.0);
    EXPECT_EQ(convert(1048575, 0x081FFFFF, TQUnitUSSurveyFoot), 1.0);
    EXPECT_LT(relativeDifference(convert(1, 0x080FFFFF, 0x041FFFFF),
                                 (1200.0 / 3937.0) * 1048575.0 * 1048575.0 / (0.0254 / 72.0)),
              1e-15);
}

TEST(TQUnit, AWholeNumberBetweenTwoUnitsIsTheOnlyRounding) {
    for (int i = 1; i <= 1000; ++i) {
        const double value = i * 0.1;
        EXPECT_EQ(convert(value, TQUnitCentimetre, TQUnitMillimetre), value * 10.0);
        EXPECT_EQ(convert(value, TQUnitMillimetre, TQUnitCentimetre), value / 10.0);
        EXPECT_EQ(convert(value, TQUnitYard, TQUnitFoot), value * 3.0);
        EXPECT_EQ(convert(value, TQUnitPoint, TQUnitPica), value / 12.0);
        EXPECT_EQ(convert(value, inch, TQUnitPoint), value * 72.0);
        EXPECT_EQ(convert(value, TQUnitArcMinute, TQUnitArcSecond), value * 60.0);
        EXPECT_EQ(convert(value, 0x02001388, metre), value * 127.0);  // 5000 inches
        EXPECT_EQ(convert(value, 0x0210007F, metre), value / 5000.0); // 1/127 inch
    }
}

TEST(TQUnit, EqualUnitsGiveTheValueBackBitForBit) {
    std::vector<double> values = awkwardValues;
    values.push_back(std::bit_cast<double>(0x7FF8000000000123ULL));
    for (const std::uint32_t unit :
         {metre, TQUnitFoot, radian, gon, TQUnitDegreeMinuteSecond, 0U, 0xFFFFFFFFU}) {
        for (const double value : values) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(convert(value, unit, unit)),
                      std::bit_cast<std::uint64_t>(value));
        }
    }
}

TEST(TQUnit, ConvertingThereAndBackChangesAFewRoundingsAtMost) {
    for (const std::vector<Label>& units : {lengths, angles}) {
        for (const Label& source : units) {
            for (const Label& destination : units) {
                const double value = 123.456789;
                const double there = convert(value, source.unit, destination.unit);
                EXPECT_LT(relativeDifference(convert(there, destination.unit, source.unit), value), 1e-15)
                    << source.text << " to " << destination.text;
            }
        }
    }
}

TEST(TQUnit, AConversionWorkedOutOnceGivesTheSameNumbers) {
    for (const Label& source : allLabels()) {
        for (const Label& destination : allLabels()) {
            const TQUnitConversion conversion(source.unit, destination.unit);
            for (const double value : {1.0, -7.1, 1e-30, infinity}) {
                EXPECT_EQ(conversion(value), convert(value, source.unit, destination.unit))
                    << source.text << " to " << destination.text;
            }
        }
    }
}

TEST(TQUnit, ALengthIsNoAngle) {
    for (const Label& length : lengths) {
        for (const Label& angle : angles) {
            for (const double value : {12.5, -1000.0}) {
                EXPECT_EQ(convert(value, length.unit, angle.unit), value);
                EXPECT_EQ(convert(value, angle.unit, length.unit), value);
                EXPECT_EQ(turned(value, length.unit, angle.unit), value);
                EXPECT_EQ(turned(value, angle.unit, length.unit), value);
            }
        }
    }
}

TEST(TQUnit, ACodeThatIsNoUnitLeavesTheValueAsItIs) {
    for (const std::uint32_t code : codesThatAreNoUnit) {
        for (const std::uint32_t unit : {metre, TQUnitFoot, radian, degree}) {
            for (const bool base360 : {false, true}) {
                EXPECT_EQ(convertDimValue(-1000.5, code, unit, base360), -1000.5) << std::hex << code;
                EXPECT_EQ(convertDimValue(-1000.5, unit, code, base360), -1000.5) << std::hex << code;
            }
        }
        EXPECT_EQ(turned(-1000.5, code, code), -1000.5) << std::hex << code;
    }
}

TEST(TQUnit, NonFiniteValuesStayNonFinite) {
    for (const bool base360 : {false, true}) {
        for (const std::uint32_t destination : {degree, radian, gon}) {
            EXPECT_EQ(convertDimValue(infinity, degree, destination, base360), infinity);
            EXPECT_EQ(convertDimValue(-infinity, degree, destination, base360), -infinity);
            EXPECT_TRUE(std::isnan(convertDimValue(notANumber, degree, destination, base360)));
        }
    }
}

TEST(TQUnit, Base360BringsDegreesIntoOneTurn) {
    struct Case {
        double value;
        double expected;
    };
    for (const Case& each : {Case{0, 0}, Case{180, 180}, Case{360, 360}, Case{-360, 0}, Case{720, 0},
                             Case{361, 1}, Case{-1, 359}, Case{-720.5, 359.5}, Case{-1e-20, 360},
                             Case{1e-20, 1e-20}, Case{std::nextafter(360.0, 0.0), std::nextafter(360.0, 0.0)},
                             Case{std::nextafter(360.0, 400.0), std::nextafter(360.0, 400.0) - 360.0}}) {
        EXPECT_EQ(turned(each.value, degree, degree), each.expected) << each.value;
        EXPECT_EQ(turned(each.value, TQUnitDegreeMinuteSecond, degree), each.expected) << each.value;
    }
}

TEST(TQUnit, Base360TakesTheExactRestOfHugeValues) {
    // 10^22 is a double; 10^100 and 1.7 * 10^308 are not, the integers nearest to them leave these rests.
    EXPECT_EQ(turned(1e22, degree, degree), 280.0);
    EXPECT_EQ(turned(-1e22, degree, degree), 80.0);
    EXPECT_EQ(turned(1e100, degree, degree), 64.0);
    EXPECT_EQ(turned(-1.7e308, degree, degree), 360.0 - 152.0);
    EXPECT_EQ(turned(1e300, degree, degree), 0.0);
}

TEST(TQUnit, Base360NeverGivesANegativeZero) {
    for (const double value : {-0.0, -360.0, -720.0}) {
        EXPECT_FALSE(std::signbit(turned(value, degree, degree))) << value;
        EXPECT_FALSE(std::signbit(turned(value, degree, radian))) << value;
    }
}

TEST(TQUnit, Base360IsOneTurnOfTheDestinationsUnit) {
    EXPECT_EQ(turned(2 * pi, radian, radian), 2 * pi);
    EXPECT_EQ(turned(-pi, radian, radian), pi);
    EXPECT_EQ(turned(400, gon, gon), 400.0);
    EXPECT_EQ(turned(-100, gon, gon), 300.0);
    EXPECT_EQ(turned(21600, TQUnitArcMinute, TQUnitArcMinute), 21600.0);
    EXPECT_EQ(turned(21601, TQUnitArcMinute, TQUnitArcMinute), 1.0);
    EXPECT_EQ(turned(-90, degree, gon), 300.0);
    EXPECT_EQ(turned(-90, degree, radian), 270.0 * pi / 180.0);
}

TEST(TQUnit, OneTurnStaysExactlyOneTurnInEveryUnit) {
    for (const Label& source : angles) {
        const double turnOfSource = convert(360, degree, source.unit);
        for (const Label& destination : angles) {
            EXPECT_EQ(turned(turnOfSource, source.unit, destination.unit),
                      convert(360, degree, destination.unit))
                << source.text << " to " << destination.text;
        }
    }
    EXPECT_EQ(turned(360, degree, radian), 2 * pi);
    EXPECT_EQ(turned(2 * pi, radian, degree), 360.0);
    EXPECT_EQ(turned(360, degree, gon), 400.0);
}

TEST(TQUnit, Base360StaysWithinOneTurnWhereTheConversionRoundsUp) {
    constexpr std::uint32_t seventeenthOfARadian = 0x11100011;
    const double belowOneTurn = std::nextafter(convert(360, degree, seventeenthOfARadian), 0.0);
    ASSERT_GT(convert(belowOneTurn, seventeenthOfARadian, degree), 360.0);
    EXPECT_EQ(turned(belowOneTurn, seventeenthOfARadian, degree), 360.0);
}

TEST(TQUnit, Base360StaysWithinItsItsBoundsAndIsStable) {
    std::vector<double> values = awkwardValues;
    for (int i = -2000; i <= 2000; ++i) {
        values.push_back(i * 0.7);
    }
    for (const Label& source : angles) {
        for (const Label& destination : angles) {
            const double turn = convert(360, degree, destination.unit);
            for (const double value : values) {
                if (std::isinf(value)) {
                    continue;
                }
                const double once = turned(value, source.unit, destination.unit);
                EXPECT_GE(once, 0.0) << value << ' ' << source.text << " to " << destination.text;
                EXPECT_LE(once, turn) << value << ' ' << source.text << " to " << destination.text;
                EXPECT_EQ(turned(once, destination.unit, destination.unit), once);
            }
        }
    }
}

TEST(TQUnit, Base360DoesNotTouchLengths) {
    EXPECT_EQ(turned(-1000, metre, metre), -1000.0);
    EXPECT_EQ(turned(1000, metre, TQUnitKilometre), 1.0);
    EXPECT_TRUE(std::signbit(turned(-0.0, metre, metre)));
}

TEST(TQUnit, EveryListedUnitHasItsLabelAndReadsBack) {
    for (const Label& label : allLabels()) {
        EXPECT_EQ(unitShortRepresentation(label.unit), TQString(label.text));
        EXPECT_EQ(unitFromShortRepresentation(TQString(label.text)), label.unit) << label.text;
    }
}

TEST(TQUnit, UnlistedCodesPrintAsHexadecimalAndReadBack) {
    EXPECT_EQ(unitShortRepresentation(0x0100002A), TQString("0x0100002A"));
    EXPECT_EQ(unitShortRepresentation(0x00000000), TQString("0x00000000"));
    EXPECT_EQ(unitShortRepresentation(0xFFFFFFFF), TQString("0xFFFFFFFF"));
    for (const std::uint32_t unit : {0x0100002AU, 0x00000001U, 0xDEADBEEFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(unitFromShortRepresentation(unitShortRepresentation(unit)), unit) << std::hex << unit;
    }
    EXPECT_EQ(unitFromShortRepresentation(TQString("0xdeadbeef")), 0xDEADBEEFU);
    EXPECT_EQ(unitFromShortRepresentation(TQString("0x01000001")), metre);
}

TEST(TQUnit, TextsThatAreNoLabelGiveZero) {
    for (const char* text :
         {"", " ", "M", "nm", "meter", "m ", " m", "0x", "0x1", "0x0100000", "0x010000001", "0x0100000G",
          "0X01000001", "0x-1000001", "0x+1000001", "01000001", "degr\xDDs"}) {
        EXPECT_EQ(unitFromShortRepresentation(TQString(text)), 0U) << text;
    }
}

TEST(TQUnit, TheLabelForTheUserIsLookedUpByTheShortLabel) {
    const TemporaryDirectory directory;
    const SharedDirectory shared(directory.directory());
    const TQString english = tq_createPath(directory.directory(), "localization", "en");
    writeBytes(tq_createFilePath(english, "units", "strings"),
               "\"cgon\" = \"Centigon\";\n\"0x0100002A\" = \"42 metres\";\n");
    ASSERT_TRUE(TQLocalizer::appShared()->addStringsFromFile("units"));
    EXPECT_EQ(localisedUnitRepresentation(TQUnitCentigon), TQString("Centigon"));
    EXPECT_EQ(localisedUnitRepresentation(0x0100002A), TQString("42 metres"));
}

/// The application's localizer in a language, with the texts that are shipped.
class Language {
  public:
    explicit Language(const char* code) { TQLocalizer::appShared()->setLanguage(code); }
    ~Language() { resetSystemLocalization(); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
};

TEST(TQUnit, EveryListedUnitIsShippedInEnglishAndFrench) {
    for (const char* language : {"en", "fr"}) {
        const TQString directory = tq_createPath(TQGetApplicationSharedDirectory(), "localization", language);
        const std::string texts = readBytes(tq_createFilePath(directory, "units", "strings"));
        for (const Label& label : allLabels()) {
            EXPECT_NE(texts.find("\n\"" + std::string(label.text) + "\" = \""), std::string::npos)
                << label.text << " in " << language;
        }
    }
}

TEST(TQUnit, TheLabelThatParametersKeepForDegreesIsShownInTheUsersLanguage) {
    const TQString kept("degr\335s");
    const TQString inUTF8("degr\xC3\xA9s");
    {
        const Language english("en");
        EXPECT_EQ(tq_displayLabelOfUnit(kept).utf8(), "degrees");
        EXPECT_EQ(tq_displayLabelOfUnit(inUTF8).utf8(), "degrees");
        EXPECT_EQ(tq_displayLabelOfUnit("deg").utf8(), "degrees");
        EXPECT_EQ(localisedUnitRepresentation(TQUnitDegree).utf8(), "degrees");
        EXPECT_EQ(tq_displayLabelOfUnit("m").utf8(), "m");
    }
    const Language french("fr");
    EXPECT_EQ(tq_displayLabelOfUnit(kept).utf8(), "degr\xC3\xA9s");
    EXPECT_EQ(localisedUnitRepresentation(TQUnitDegree).utf8(), "degr\xC3\xA9s");
    EXPECT_EQ(localisedUnitRepresentation(TQUnitFoot).utf8(), "pieds");
}

TEST(TQUnit, ALabelThatNobodyKnowsIsShownAsItIs) {
    for (const char* label : {"", "furlong", "nm", "0xdeadbeef", "\xDD"}) {
        EXPECT_EQ(tq_displayLabelOfUnit(label), TQString(label));
    }
}

TEST(TQUnit, TheLabelForTheUserIsTheShortLabelWhenTheLocalizerDoesNotKnowIt) {
    EXPECT_EQ(localisedUnitRepresentation(0x0100002B), TQString("0x0100002B"));
}
