#include "projections/TQPrGaussKruger.h"

#include "testing/CapturedMessages.h"
#include "testing/ProjectionClassTest.h"
#include "testing/ProjectionFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;

std::string wktItems(const std::string& x0, const std::string& y0 = "0", const std::string& k0 = "1") {
    return ",PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"latitude_of_origin\",0],PARAMETER[\"central_"
           "meridian\",9.5],PARAMETER[\"scale_factor\"," +
           k0 + "],PARAMETER[\"false_easting\"," + x0 + "],PARAMETER[\"false_northing\"," + y0 + "]";
}

ProjectionClass gaussKruger() {
    ProjectionClass gaussKruger{};
    gaussKruger.lineage = {"TQPrGaussKruger", "TQPrMercTransv", "TQPrMercator", "TQProjection"};
    gaussKruger.typeCode = 1;
    gaussKruger.typeName = "Gauss-Kruger";
    gaussKruger.make = []() -> std::unique_ptr<TQProjection> { return std::make_unique<TQPrGaussKruger>(); };
    gaussKruger.parameters = {
        {{"lambda0", "Double", "9.5", kDegreesLabel}, "10.5", 1e-6},
        {{"X0", "Double", "3500000.125", "m"}, "500000", 1.0},
    };
    gaussKruger.headLines = {headerLine("TQPrGaussKruger v2", 5202, 5209)};
    gaussKruger.valueLines = {{"9.5000000000", 5204, 5209}, {"3500000.125", 5204, 5209}};
    gaussKruger.oldestTextVersion = 1;
    gaussKruger.newestTextVersion = 2;
    gaussKruger.codeWhenNotOpened = 5201;
    gaussKruger.codeOfUnknownVersion = 5203;
    gaussKruger.textClass = "TQPrGaussKruger";
    gaussKruger.archive =
        StreamBytes().tag("TQPrGaussKruger", 2).append(sampleBaseArchive()).numbers({9.5, 3500000.125});
    gaussKruger.tags = {{"TQPrGaussKruger", 0, 2}, {"TQProjection", 0, 1}};
    gaussKruger.wktItems = wktItems("3500000.125");
    return gaussKruger;
}

/// A projection read from an archive, with all bytes taken and nothing reported.
std::unique_ptr<TQPrGaussKruger> readFrom(const StreamBytes& bytes) {
    const CapturedMessages messages;
    ByteStream stream(bytes);
    auto projection = std::make_unique<TQPrGaussKruger>();
    projection->unarchiveFrom(stream.get());
    EXPECT_TRUE(stream.isReadExactly());
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_NE(projection->name(), nullptr);
    return projection;
}

StreamBytes versionZero() {
    return StreamBytes()
        .tag("TQPrGaussKruger", 0)
        .append(oldSampleBaseArchive())
        .numbers({9.5, 0.9996, 400000.0, -100000.0})
        .integer(77);
}

StreamBytes versionOne() {
    return StreamBytes().tag("TQPrGaussKruger", 1).append(sampleBaseArchive()).number(9.5);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(TQPrGaussKruger, ProjectionClassTest, testing::Values(gaussKruger()));

TEST(TQPrGaussKruger, StartsOnTheEquatorWithoutScaling) {
    const std::vector<ListedParameter> expected = {
        {"Type", "Int", "1"},
        {"Nom", "String", ""},
        {"lambda0", "Double", "0", kDegreesLabel},
        {"X0", "Double", "500000", "m"},
    };
    EXPECT_EQ(listedParameters(TQPrGaussKruger()), expected);
    const std::string wkt = TQPrGaussKruger().WKTProjectionStuff().utf8();
    EXPECT_THAT(wkt, testing::HasSubstr("\"latitude_of_origin\",0]"));
    EXPECT_THAT(wkt, testing::HasSubstr("\"scale_factor\",1]"));
    EXPECT_THAT(wkt, testing::HasSubstr("\"false_northing\",0]"));
}

TEST(TQPrGaussKruger, TakesNoOtherParameters) {
    TQPrGaussKruger projection;
    ParameterTable parameters;
    parameters.with("phi0", 10.0).with("Y0", 20.0).with("k0", 0.5).with("lambda0", 9.5).with("X0", 1.0);
    projection.setParams(parameters.table());
    EXPECT_EQ(projection.WKTProjectionStuff().utf8(), wktItems("1"));
}

TEST(TQPrGaussKruger, ReadsTheArchiveOfVersionZeroAndDropsItsLastNumber) {
    const auto projection = readFrom(versionZero());
    EXPECT_EQ(*projection->name(), kSampleName);
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(), wktItems("400000", "-100000", "0.9996"));
}

TEST(TQPrGaussKruger, ReadsTheArchiveOfVersionOneAndKeepsTheFalseEasting) {
    const auto projection = readFrom(versionOne());
    EXPECT_EQ(*projection->name(), kSampleName);
    EXPECT_EQ(projection->WKTProjectionStuff().utf8(), wktItems("500000"));
}

TEST(TQPrGaussKruger, OldArchivesMayBeCutOffAnywhere) {
    const CapturedMessages messages;
    for (const StreamBytes& bytes : {versionZero(), versionOne()}) {
        expectEveryCutIsNoticed(bytes.bytes(), [](TQReadStream* stream) {
            TQPrGaussKruger projection;
            projection.unarchiveFrom(stream);
        });
    }
}

// All five parameters count, also those that only an old archive can bring.
TEST(TQPrGaussKruger, ParametersThatItDoesNotListCountForTheDefinition) {
    const auto with = [](double k0, double y0) {
        return readFrom(StreamBytes()
                            .tag("TQPrGaussKruger", 0)
                            .append(oldSampleBaseArchive())
                            .numbers({9.5, k0, 500000.0, y0})
                            .integer(0));
    };
    EXPECT_TRUE(with(0.0, 0.0)->hasSameDefinition(*with(1e-5, 1.0)));
    EXPECT_FALSE(with(0.0, 0.0)->hasSameDefinition(*with(1.00001e-5, 0.0)));
    EXPECT_FALSE(with(0.0, 0.0)->hasSameDefinition(*with(0.0, 1.00001)));
}

TEST(TQPrGaussKruger, ReadsTheTextOfVersionOneAndKeepsTheFalseEasting) {
    const std::string text =
        textOf(TextLines{headerLine("TQPrGaussKruger v1", 0, 0)} + sampleBaseLines()) + "9.5\n3500000\n";
    TQPrGaussKruger projection;
    EXPECT_EQ(readProjectionText(projection, text), 0);
    EXPECT_EQ(parameterOf(projection, "lambda0"), "9.5");
    EXPECT_EQ(parameterOf(projection, "X0"), "500000");
    TQPoint global;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{9.5 * kPi / 180.0, 0.0}, global), 0);
    EXPECT_NEAR(global.x, 500000.0, 1e-8); // the constants are computed
}

TEST(TQPrGaussKruger, TellsWhichLineOfTheOldTextIsMissing) {
    const TextLines lines = TextLines{headerLine("TQPrGaussKruger v1", 5202, 0)} + sampleBaseLines() +
                            TextLines{{"9.5", 5204, 0}};
    expectCodesWhereverTheTextEnds(lines, [](TQFile& file) {
        TQPrGaussKruger projection;
        return projection.loadFromFile(file, true);
    });
}

TEST(TQPrGaussKruger, AMissingFalseEastingLeavesTheOneBefore) {
    TextLines lines = gaussKruger().headLines + sampleBaseLines() + gaussKruger().valueLines;
    lines.pop_back();
    TQPrGaussKruger projection;
    EXPECT_EQ(readProjectionText(projection, textOf(lines)), 5204);
    EXPECT_EQ(parameterOf(projection, "lambda0"), "9.5");
    EXPECT_EQ(parameterOf(projection, "X0"), "500000");
}

// The central meridian of the test is 0, so that degrees and radians are the same.
TEST(TQPrGaussKruger, OnlyItsSingularPointsAreInvalid) {
    const TQPrGaussKruger projection;
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{kPi / 2.0, 0.0}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{-kPi / 2.0, 0.0}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{kPi / 2.0 + 1e-5, 0.0})); // 1 - cos = 5e-11
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{kPi / 2.0, 1e-5}));
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{kPi / 2.0 + 2e-5, 0.0})); // 1 - cos = 2e-10
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{kPi / 2.0, 2e-5}));
    for (const double longitude : {-100.0, -3.0, 0.0, 0.05235987755982988, 1.0, 3.14, 1e6}) {
        for (const double latitude : {-4.0, -kPi / 2.0, 0.5, kPi / 2.0}) {
            EXPECT_TRUE(projection.isGeoPtValid(TQPoint{longitude, latitude}))
                << longitude << " " << latitude;
        }
    }
}

TEST(TQPrGaussKruger, TheCentralMeridianInDegreesIsTakenForRadians) {
    TQPrGaussKruger projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("lambda0", 9.0).table());
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{9.0 + kPi / 2.0, 0.0}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{9.0 - kPi / 2.0, 0.0}));
    EXPECT_TRUE(projection.isGeoPtValid(TQPoint{9.0 * kPi / 180.0 + kPi / 2.0, 0.0}));
}

TEST(TQPrGaussKruger, WhatIsNoNumberIsInvalid) {
    const TQPrGaussKruger projection;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{nan, 0.5}));
    EXPECT_FALSE(projection.isGeoPtValid(TQPoint{0.5, nan}));
}
