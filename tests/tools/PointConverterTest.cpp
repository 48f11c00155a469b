#include "tools/tqproj/PointConverter.h"

#include "projection/TQProjection.h"
#include "support/TQMessages.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointLine.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

namespace {

// Plane coordinates are a thousand times the degrees, unless a test wants another answer.
class ThousandFold : public TQProjection {
    TQ_PROJECTION(ThousandFold, TQProjection, 99, "Thousandfold")

  public:
    int convertGeoPt(const TQPoint& geo, TQPoint& global) const override {
        global = {tq_rad2deg(geo.x) * 1000.0, tq_rad2deg(geo.y) * 1000.0};
        return beforeAnswer(global);
    }

    int convertGlobalPt(const TQPoint& global, TQPoint& geo) const override {
        geo = {tq_deg2rad(global.x / 1000.0), tq_deg2rad(global.y / 1000.0)};
        return beforeAnswer(geo);
    }

    bool isGeoPtValid(const TQPoint& geo) const override { return tq_rad2deg(geo.y) <= 84.0; }

    bool isGlobalPtValid(const TQPoint& global) const override { return global.y <= 84000.0; }

    std::function<int(TQPoint&)> beforeAnswer = [](TQPoint&) { return 0; };
};

class PointConverterCase {
  public:
    ThousandFold projection;

    std::string converted(Direction direction, const std::string& line, std::uint32_t unit = TQUnitDegree) {
        PointConverter converter(projection, messages, direction, AngularText(unit, 6), NumberFormat(2));
        std::string out = "before|";
        if (converter.convert(PointLine(line), out)) {
            return out;
        }
        EXPECT_EQ(out, "before|");
        return converter.reason();
    }

    std::string forward(const std::string& line, std::uint32_t unit = TQUnitDegree) {
        return converted(Direction::Forward, line, unit);
    }

    std::string inverse(const std::string& line, std::uint32_t unit = TQUnitDegree) {
        return converted(Direction::Inverse, line, unit);
    }

    LibraryMessages messages;
};

TEST(PointConverter, ForwardKeepsEverythingButTheNumbers) {
    EXPECT_EQ(PointConverterCase().forward(" 2.5 ,\t48.25, Paris  "), "before| 2500.00 ,\t48250.00, Paris  ");
}

TEST(PointConverter, InverseWritesAngles) {
    EXPECT_EQ(PointConverterCase().inverse("2500 48250 Paris"), "before|2.500000 48.250000 Paris");
}

TEST(PointConverter, UnitIsThatOfTheGeographicSide) {
    PointConverterCase test;
    EXPECT_EQ(test.forward("100,50", TQUnitGon), "before|90000.00,45000.00");
    EXPECT_EQ(test.inverse("90000,45000", TQUnitGon), "before|100.000000,50.000000");
    EXPECT_EQ(test.forward("0:30:00W 2:30:00N", TQUnitDegreeMinuteSecond), "before|-500.00 2500.00");
    EXPECT_EQ(test.inverse("-500 2500", TQUnitDegreeMinuteSecond), "before|0:30:00.000000W 2:30:00.000000N");
}

TEST(PointConverter, AnglesAreFirstLongitudeThenLatitude) {
    EXPECT_EQ(PointConverterCase().forward("48:00:00N 2:00:00E", TQUnitDegreeMinuteSecond),
              "'48:00:00N' is not an angle");
}

TEST(PointConverter, MissingNumbersAreReported) {
    PointConverterCase test;
    EXPECT_EQ(test.forward(",48"), "the first number is missing");
    EXPECT_EQ(test.forward("2"), "the second number is missing");
    EXPECT_EQ(test.inverse("2,"), "the second number is missing");
}

TEST(PointConverter, UnreadableNumbersAreReported) {
    PointConverterCase test;
    EXPECT_EQ(test.forward("2;5 48"), "'2;5' is not an angle");
    EXPECT_EQ(test.inverse("2 4x8"), "'4x8' is not a number");
    EXPECT_EQ(test.inverse("2 \x1B[31m"), "'\\x1B[31m' is not a number");
}

TEST(PointConverter, NumbersThatAreNotFiniteAreReported) {
    PointConverterCase test;
    EXPECT_EQ(test.forward("nan 48"), "'nan' is not a finite number");
    EXPECT_EQ(test.forward("2 -inf"), "'-inf' is not a finite number");
    EXPECT_EQ(test.inverse("1e999 48"), "'1e999' is not a finite number");
}

TEST(PointConverter, PointOutsideTheAreaIsReported) {
    PointConverterCase test;
    EXPECT_EQ(test.forward("2 84"), "before|2000.00 84000.00");
    EXPECT_EQ(test.forward("2 84.5"), "the point lies outside the area of the projection");
    EXPECT_EQ(test.inverse("2 84500"), "the point lies outside the area of the projection");
}

TEST(PointConverter, FailedConversionIsReported) {
    PointConverterCase test;
    test.projection.beforeAnswer = [](TQPoint&) { return -1; };
    EXPECT_EQ(test.forward("2 48"), "the projection cannot convert the point");
    EXPECT_EQ(test.inverse("2 48"), "the projection cannot convert the point");
}

TEST(PointConverter, ResultThatIsNotFiniteIsReported) {
    PointConverterCase test;
    test.projection.beforeAnswer = [](TQPoint& result) {
        result.y = std::numeric_limits<double>::quiet_NaN();
        return 0;
    };
    EXPECT_EQ(test.forward("2 48"), "the projection cannot convert the point");
    test.projection.beforeAnswer = [](TQPoint& result) {
        result.x = std::numeric_limits<double>::infinity();
        return 0;
    };
    EXPECT_EQ(test.inverse("2 48"), "the projection cannot convert the point");
}

TEST(PointConverter, LibrarysMessageIsTheReason) {
    PointConverterCase test;
    test.projection.beforeAnswer = [](TQPoint&) {
        tq_perror("ThousandFold::convertGeoPt(): no\n");
        return -1;
    };
    EXPECT_EQ(test.forward("2 48"), "ThousandFold::convertGeoPt(): no");
    EXPECT_TRUE(test.messages.isEmpty());
}

} // namespace
