#include "tools/tqproj/map/MapPoints.h"

#include "tests/tools/CommandCase.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LineReader.h"
#include "tools/tqproj/map/MapCanvas.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

namespace {

/// Points from the standard input.
struct PointsCase : CommandCase {
    MapPoints read(std::string_view lines) {
        std::stringbuf source{std::string(lines)};
        InputFile file("-", source);
        return MapPoints::read(file, diagnostics);
    }
};

/// Whether a text can be drawn: drawing libraries refuse all that is no UTF-8.
bool canBeDrawn(const std::string& text) {
    MapCanvas canvas(MapCanvas::Format::SVG, 100.0, 100.0);
    canvas.drawText(text, {10.0, 50.0}, {10.0, {0.0, 0.0, 0.0}});
    return canvas.finish().has_value();
}

TEST(MapPoints, ReadsLinesAsConvertDoes) {
    PointsCase test;
    const MapPoints read = test.read("# longitude,latitude,name\n2.3488,48.8534,Paris,France\r\n\n"
                                     "-0.1257 51.5085 London\n13.4105\t52.5244\n1,2,\n");
    ASSERT_EQ(read.points.size(), 4U);
    EXPECT_EQ(read.outcome, ExitCode::Success);
    EXPECT_DOUBLE_EQ(read.points[0].place.x, 2.3488);
    EXPECT_DOUBLE_EQ(read.points[0].place.y, 48.8534);
    EXPECT_EQ(read.points[0].name, "Paris");
    EXPECT_DOUBLE_EQ(read.points[1].place.x, -0.1257);
    EXPECT_EQ(read.points[1].name, "London");
    EXPECT_EQ(read.points[2].name, "");
    EXPECT_EQ(read.points[3].name, "");
    EXPECT_EQ(test.messages(), "");
}

TEST(MapPoints, NameIsWhatStandsBetweenTwoCommasWithoutBlanksAround) {
    PointsCase test;
    const MapPoints read = test.read("1,2, \tFrankfurt am Main \t, Germany\n1 2 Rio de Janeiro, Brazil\n"
                                     "1,2,Zürich\n1,2, ,x\n");
    ASSERT_EQ(read.points.size(), 4U);
    EXPECT_EQ(read.points[0].name, "Frankfurt am Main");
    EXPECT_EQ(read.points[1].name, "Rio de Janeiro");
    EXPECT_EQ(read.points[2].name, "Zürich");
    EXPECT_EQ(read.points[3].name, "");
}

TEST(MapPoints, LastLineNeedsNoEnd) {
    PointsCase test;
    const MapPoints read = test.read("1,2,A\n3,4,B");
    ASSERT_EQ(read.points.size(), 2U);
    EXPECT_EQ(read.points[1].name, "B");
}

TEST(MapPoints, EmptyInputIsComplete) {
    PointsCase test;
    EXPECT_EQ(test.read("").outcome, ExitCode::Success);
    EXPECT_TRUE(test.read("# nothing\n").points.empty());
}

TEST(MapPoints, BadLinesAreReportedAndTheOthersRead) {
    PointsCase test;
    const MapPoints read = test.read("1,2,A\nx,2,B\n\n3\n,4\n5 nan C\n6,7,D\n");
    ASSERT_EQ(read.points.size(), 2U);
    EXPECT_EQ(read.points[1].name, "D");
    EXPECT_EQ(read.outcome, ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), "<stdin>:2: 'x' is not an angle\n"
                               "<stdin>:4: the second number is missing\n"
                               "<stdin>:5: the first number is missing\n"
                               "<stdin>:6: 'nan' is not a finite number\n");
}

TEST(MapPoints, FilesAreReportedByTheirNames) {
    PointsCase test;
    const std::string path = test.directory.fileWith("places.csv", "1,2,A\n1\n").utf8();
    std::stringbuf nothing;
    InputFile file(path, nothing);
    EXPECT_EQ(MapPoints::read(file, test.diagnostics).outcome, ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), path + ":2: the second number is missing\n");
}

TEST(MapPoints, TooLongLinesAreReportedAndSkipped) {
    PointsCase test;
    const MapPoints read =
        test.read("1,2,A\n3,4," + std::string(LineReader::defaultLineLimit, 'x') + "\n5,6,B\n");
    EXPECT_EQ(read.points.size(), 2U);
    EXPECT_EQ(read.outcome, ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), "<stdin>:2: the line is too long\n");
}

TEST(MapPoints, ControlCharactersOfNamesAreShown) {
    PointsCase test;
    EXPECT_EQ(test.read("1,2,a\x1B[31mb\n").points.at(0).name, "a\\x1B[31mb");
}

TEST(MapPoints, NamesCanBeDrawnWhateverTheirBytes) {
    for (const std::string_view name :
         {"A\xFFZ"sv, "\x80"sv, "caf\xE9"sv, "\xC3"sv, "\xC0\x80"sv, "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv,
          "\"quoted \xA9\""sv, "A\0Z"sv, "\xF0\x9F\x97\xBA"sv, "\xEF\xBB\xBF"sv, "\xEF\xBF\xBD"sv}) {
        PointsCase test;
        const MapPoints read = test.read("1,2," + std::string(name) + "\n");
        ASSERT_EQ(read.points.size(), 1U);
        EXPECT_TRUE(canBeDrawn(read.points[0].name)) << testing::PrintToString(name);
    }
}

// U+FFFE, U+FFFF and U+FDD0 are UTF-8, but drawing libraries may refuse them.
TEST(MapPoints, NamesOfCodesThatAreNoCharactersCanBeDrawn) {
    for (const std::string_view name : {"\xEF\xBF\xBE"sv, "\xEF\xBF\xBF"sv, "\xEF\xB7\x90"sv}) {
        PointsCase test;
        EXPECT_TRUE(canBeDrawn(test.read("1,2," + std::string(name) + "\n").points.at(0).name))
            << testing::PrintToString(name);
    }
}

} // namespace
