#include "projections/TQPrUtm.h"

#include "testing/CapturedMessages.h"
#include "testing/ProjectionClassTest.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;

std::string wktItems(const std::string& lambda0, const std::string& y0) {
    return ",PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"latitude_of_origin\",0],PARAMETER[\"central_"
           "meridian\"," +
           lambda0 +
           "],PARAMETER[\"scale_factor\",0.9996],PARAMETER[\"false_easting\",500000],PARAMETER[\"false_"
           "northing\"," +
           y0 + "]";
}

ProjectionClass utm(bool northern) {
    ProjectionClass utm{};
    utm.lineage = {"TQPrUtm", "TQPrMercTransv", "TQPrMercator", "TQProjection"};
    utm.typeCode = 3;
    utm.typeName = "UTM";
    utm.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrUtm>(); };
    utm.parameters = {
        {{"lambda0", "Double", "9", kDegreesLabel}, "-3", 1e-6},
        {{"hemisphere", "Logical", northern ? "true" : "false"}, northern ? "false" : "true"},
    };
    utm.headLines = {headerLine("TQPrUtm v2", 5402, 5406)};
    utm.valueLines = {{"9.0000000000", 5404, 5406}, {northern ? "0" : "1", 5407, 5406}};
    utm.oldestTextVersion = 1;
    utm.newestTextVersion = 2;
    utm.codeWhenNotOpened = 5401;
    utm.codeOfUnknownVersion = 5403;
    utm.textClass = "TQPrUtm";
    utm.archive = StreamBytes()
                      .tag("TQPrUtm", 1)
                      .append(sampleBaseArchive())
                      .numbers({9.0, northern ? 0.0 : 10000000.0});
    utm.tags = {{"TQPrUtm", 0, 1}, {"TQProjection", 0, 1}};
    utm.wktItems = wktItems("9", northern ? "0" : "10000000");
    return utm;
}

StreamBytes versionZero() {
    return StreamBytes().tag("TQPrUtm", 0).append(oldSampleBaseArchive()).number(9.0).integer(77);
}

std::string textWithHemisphere(const std::string& line) {
    return textOf(utm(true).headLines + sampleBaseLines()) + "9\n" + line + "\n";
}

bool isSouthern(const TQPrUtm& projection) {
    return projection.WKTProjectionStuff().utf8().find("\"false_northing\",10000000]") != std::string::npos;
}

double rad(double degrees) { return degrees * kPi / 180.0; }

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrUtmNorthern, ProjectionClassTest, testing::Values(utm(true)));
INSTANTIATE_TEST_SUITE_P(TQPrUtmSouthern, ProjectionClassTest, testing::Values(utm(false)));

TEST(TQPrUtm, StartsInTheNorthOnTheMeridianOfGreenwich) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "3"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "0", kDegreesLabel},
        {"hemisphere", "Logical", "true"},
    };
    EXPECT_EQ(listedParameters(TQPrUtm()), expected);
    EXPECT_EQ(TQPrUtm().WKTProjectionStuff().utf8(), wktItems("0", "0"));
}

TEST(TQPrUtm, TakesNoOtherParameters) {
    TQPrUtm projection;
    ParameterTable parameters;
    parameters.with("phi0", 10.0).with("X0", 1.0).with("Y0", 20.0).with("k0", 0.5);
    projection.setParams(parameters.table());
    EXPECT_EQ(projection.WKTProjectionStuff().utf8(), wktItems("0", "0"));
}

TEST(TQPrUtm, OnlyAHemisphereOfOneInAParameterTableIsTheNorth) {
    for (const int hemisphere : {1, 0, 2, -1, 77}) {
        SCOPED_TRACE(hemisphere);
        TQPrUtm projection;
        ParameterTable parameters;
        projection.setParams(parameters.with("hemisphere", hemisphere).table());
        EXPECT_EQ(isSouthern(projection), hemisphere != 1);
        EXPECT_EQ(parameterOf(projection, "hemisphere"), hemisphere == 1 ? "true" : "false");
    }
    TQPrUtm projection;
    ParameterTable south;
    projection.setParams(south.with("hemisphere", Logical(false)).table());
    EXPECT_TRUE(isSouthern(projection));
    ParameterTable north;
    projection.setParams(north.with("hemisphere", Logical(true)).table());
    EXPECT_FALSE(isSouthern(projection));
}

TEST(TQPrUtm, OnlyAHemisphereLineOfZeroIsTheNorth) {
    for (const char* line : {"0", "1", "2", "-1", "0.9", "none", "10000000"}) {
        SCOPED_TRACE(line);
        TQPrUtm projection;
        EXPECT_EQ(readProjectionText(projection, textWithHemisphere(line)), 0);
        const bool northern = TQString(line).convertToLong() == 0;
        EXPECT_EQ(isSouthern(projection), !northern);
        EXPECT_EQ(parameterOf(projection, "hemisphere"), northern ? "true" : "false");
    }
    TQPrUtm southern;
    EXPECT_EQ(readProjectionText(southern, textWithHemisphere("2")), 0);
    EXPECT_TRUE(isSouthern(southern));
    EXPECT_EQ(readProjectionText(southern, textWithHemisphere("0")), 0);
    EXPECT_FALSE(isSouthern(southern));
}

// The two encodings have opposite senses.
TEST(TQPrUtm, TheSouthIsOneInTheTextAndFalseInTheTable) {
    TQPrUtm projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("hemisphere", Logical(false)).table());
    const std::string text = writtenProjectionText(projection);
    EXPECT_EQ(text.substr(text.size() - 3), "\n1\n");
    EXPECT_EQ(parameterOf(projection, "hemisphere"), "false");
}

TEST(TQPrUtm, AFalseNorthingOtherThanZeroIsTheSouth) {
    ByteStream stream(StreamBytes().tag("TQPrUtm", 1).append(sampleBaseArchive()).numbers({9.0, 0.5}));
    TQPrUtm projection;
    projection.unarchiveFrom(stream.get());
    EXPECT_EQ(parameterOf(projection, "hemisphere"), "false");
    const std::string text = writtenProjectionText(projection);
    EXPECT_EQ(text.substr(text.size() - 3), "\n1\n");
}

TEST(TQPrUtm, ReadsTheArchiveOfVersionZeroAndKeepsTheHemisphere) {
    for (const bool northern : {true, false}) {
        const CapturedMessages messages;
        ByteStream stream(versionZero());
        TQPrUtm projection;
        ParameterTable parameters;
        projection.setParams(parameters.with("hemisphere", Logical(northern)).table());
        projection.unarchiveFrom(stream.get());
        EXPECT_TRUE(stream.isReadExactly());
        EXPECT_THAT(messages.lines(), IsEmpty());
        ASSERT_NE(projection.name(), nullptr);
        EXPECT_EQ(*projection.name(), kSampleName);
        EXPECT_EQ(parameterOf(projection, "lambda0"), "9");
        EXPECT_EQ(isSouthern(projection), !northern);
    }
}

TEST(TQPrUtm, TheArchiveOfVersionZeroMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    expectEveryCutIsNoticed(versionZero().bytes(), [](TQReadStream* stream) {
        TQPrUtm projection;
        projection.unarchiveFrom(stream);
    });
}

TEST(TQPrUtm, ReadsTheTextOfVersionOneAndKeepsTheHemisphere) {
    const TextLines lines =
        TextLines{headerLine("TQPrUtm v1", 5402, 0)} + sampleBaseLines() + TextLines{{"9", 5404, 0}};
    for (const bool northern : {true, false}) {
        TQPrUtm projection;
        ParameterTable parameters;
        projection.setParams(parameters.with("hemisphere", Logical(northern)).table());
        EXPECT_EQ(readProjectionText(projection, textOf(lines) + "5\n"), 0);
        EXPECT_EQ(parameterOf(projection, "lambda0"), "9");
        EXPECT_EQ(isSouthern(projection), !northern);
        TQPoint global;
        EXPECT_EQ(projection.convertGeoPt(TQPoint{rad(9.0), 0.0}, global), 0);
        EXPECT_NEAR(global.x, 500000.0, 1e-8); // the constants are computed
    }
    expectCodesWhereverTheTextEnds(lines, [](TQFile& file) {
        TQPrUtm projection;
        return projection.loadFromFile(file, true);
    });
}

TEST(TQPrUtm, AMissingHemisphereLeavesTheOneBefore) {
    TQPrUtm projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("hemisphere", Logical(false)).table());
    EXPECT_EQ(readProjectionText(projection, textOf(utm(true).headLines + sampleBaseLines()) + "9\n"), 5407);
    EXPECT_EQ(parameterOf(projection, "lambda0"), "9");
    EXPECT_TRUE(isSouthern(projection));
}

TEST(TQPrUtm, IsValidFromEightyDegreesSouthToEightyFourNorth) {
    const TQPrUtm projection;
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{0.0, rad(84.0)}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, rad(84.0000001)}));
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{0.0, rad(-80.0)}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.0, rad(-80.0000001)}));
    constexpr std::uint32_t degrees = 0x12000001;
    EXPECT_TRUE(projection.isGeoPtValid(TQAnglePoint(0.0, 84.0, degrees)));
    EXPECT_FALSE(projection.isGeoPtValid(TQAnglePoint(0.0, 84.0000001, degrees)));
    EXPECT_TRUE(projection.isGeoPtValid(TQAnglePoint(0.0, -80.0, degrees)));
}

TEST(TQPrUtm, AcceptsEveryLongitude) {
    TQPrUtm projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("lambda0", 9.0).table());
    for (const double longitude :
         {-1e300, -4.0, 0.0, 0.10471975511965977, 9.0, 9.10471975511965977, 1e300, HUGE_VAL}) {
        EXPECT_TRUE(projection.isGeoPtValid(TQPoint{longitude, 0.5})) << longitude;
    }
}

TEST(TQPrUtm, WhatIsNoNumberIsInvalid) {
    const TQPrUtm projection;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{nan, 0.5}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.5, nan}));
}

TEST(TQPrUtm, MapsTheCentralMeridianToFiveHundredKilometres) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    TQPrUtm projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("lambda0", 9.0).with("hemisphere", Logical(false)).table());
    projection.setEllipsoid(&ellipsoid);
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{rad(9.0), 0.0}, global), 0);
    EXPECT_EQ(global, (TQPoint{500000.0, 10000000.0}));
}
