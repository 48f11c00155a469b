#include "tools/tqproj/PointConverter.h"

#include "support/TQMessages.h"
#include "support/TQUnit.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

// Plane coordinates are a thousand times the degrees, unless there is a problem.
struct ThousandFold : PointOperation {
    Direction direction = Direction::Forward;
    std::string problem;
    const char* message = "";

    std::string convert(const TQPoint& in, TQPoint& out) const override {
        tq_perror(message);
        out = direction == Direction::Forward ? TQPoint{tq_rad2deg(in.x) * 1000.0, tq_rad2deg(in.y) * 1000.0}
                                              : TQPoint{tq_deg2rad(in.x / 1000.0), tq_deg2rad(in.y / 1000.0)};
        return problem;
    }
};

class PointConverterCase {
  public:
    ThousandFold operation;
    LibraryMessages messages;

    std::string forward(const std::string& line, std::uint32_t unit = TQUnitDegree) {
        operation.direction = Direction::Forward;
        return converted(line, AngularText(unit, 6), NumberFormat(2));
    }

    std::string inverse(const std::string& line, std::uint32_t unit = TQUnitDegree) {
        operation.direction = Direction::Inverse;
        return converted(line, NumberFormat(2), AngularText(unit, 6));
    }

  private:
    std::string converted(const std::string& line, const CoordinateText& input,
                          const CoordinateText& output) {
        PointConverter converter(operation, messages, input, output);
        std::string out = "before|";
        if (converter.convert(PointLine(line), out)) {
            return out;
        }
        EXPECT_EQ(out, "before|");
        return converter.reason();
    }
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

TEST(PointConverter, ProblemOfTheOperationIsReported) {
    PointConverterCase test;
    test.operation.problem = "there is no such place";
    EXPECT_EQ(test.forward("2 48"), "there is no such place");
    EXPECT_EQ(test.inverse("2 48"), "there is no such place");
}

TEST(PointConverter, LibrarysMessageIsTheReason) {
    PointConverterCase test;
    test.operation.problem = "there is no such place";
    test.operation.message = "ThousandFold::convert(): no\n";
    EXPECT_EQ(test.forward("2 48"), "ThousandFold::convert(): no");
    EXPECT_TRUE(test.messages.isEmpty());
}

TEST(PointConverter, LibrarysMessageAboutAPointThatIsConvertedStays) {
    PointConverterCase test;
    test.operation.message = "ThousandFold::convert(): hm\n";
    EXPECT_EQ(test.forward("2 48"), "before|2000.00 48000.00");
    EXPECT_EQ(test.messages.take(), "ThousandFold::convert(): hm");
}

} // namespace
