#include "tools/tqproj/DrawCommand.h"

#include "tests/tools/CommandCase.h"
#include "tests/tools/ProjectionFiles.h"
#include "tests/tools/SvgDrawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

namespace {

struct DrawCase : CommandCase {
    DrawOptions options;

    explicit DrawCase(const std::string& definition = "EPSG:32632") {
        options.projection.text = definition;
        options.extent = GeographicExtent{6.0, 47.0, 12.0, 55.0};
        options.path = "-";
    }

    void toFile(const std::string& name) { options.path = directory.file(name).utf8(); }

    ExitCode run() { return DrawCommand(options, output, diagnostics).run(); }

    SvgDrawing drawing() const { return SvgDrawing(out()); }

    /// Expects that the run fails with a message and leaves no file.
    void expectRefused(const std::string& message) {
        const std::set<std::string> before = directory.entries();
        toFile("map.svg");
        EXPECT_EQ(run(), ExitCode::Failure);
        EXPECT_EQ(messages(), "tqproj: " + message + "\n");
        EXPECT_EQ(out(), "");
        EXPECT_EQ(directory.entries(), before);
    }
};

TEST(DrawCommand, WritesTheKindOfFileThatIsAskedForAndTellsItsName) {
    const std::pair<const char*, const char*> signatures[]{
        {"map.svg", "<?xml "}, {"map.png", "\x89PNG\r\n\x1A\n"}, {"map.pdf", "%PDF-"}};
    for (const auto& [name, signature] : signatures) {
        DrawCase test;
        test.toFile(name);
        EXPECT_EQ(test.run(), ExitCode::Success);
        EXPECT_TRUE(test.directory.bytesOf(name).starts_with(signature)) << name;
        EXPECT_EQ(test.out(), test.options.path + "\n");
        EXPECT_EQ(test.messages(), "");
        EXPECT_EQ(test.directory.entries(), std::set<std::string>{name}) << "nothing else is left";
    }
}

TEST(DrawCommand, DefaultFileIsAnSVG) {
    EXPECT_EQ(DrawOptions{}.path, "map.svg");
    EXPECT_TRUE(DrawCommand::canWrite(DrawOptions{}.path));
}

TEST(DrawCommand, CanWriteFilesOfThreeKindsAndTheStandardOutput) {
    for (const char* path : {"-", "map.svg", "some where/map.png", "map.pdf"}) {
        EXPECT_TRUE(DrawCommand::canWrite(path)) << path;
    }
    for (const char* path : {"", "map", "map.jpg", "--", "svg", "map.svg/"}) {
        EXPECT_FALSE(DrawCommand::canWrite(path)) << path;
    }
}

TEST(DrawCommand, WritesSVGToTheStandardOutput) {
    DrawCase test;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_TRUE(test.out().starts_with("<?xml ")) << test.out().substr(0, 100);
    EXPECT_TRUE(test.out().ends_with("</svg>\n"));
}

TEST(DrawCommand, PutsANewMapInPlaceOfAnOldOne) {
    DrawCase test;
    test.directory.fileWith("map.svg", "old");
    test.toFile("map.svg");
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_TRUE(test.directory.bytesOf("map.svg").starts_with("<?xml "));
}

TEST(DrawCommand, DrawsProjectionFilesAndNames) {
    DrawCase test;
    test.options.projection.text =
        test.directory.fileWith("world.proj", projectionfiles::WorldMercator).utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().texts().at(0).glyphs, std::string("World Mercator").size()) << "the title";
    DrawCase named("Lambert-93");
    EXPECT_EQ(named.run(), ExitCode::Success);
    EXPECT_EQ(named.drawing().texts().at(0).glyphs, std::string("Lambert-93").size());
}

TEST(DrawCommand, DrawsTheCitiesThatComeWithTheLibrary) {
    DrawCase test;
    EXPECT_EQ(test.run(), ExitCode::Success);
    // Hamburg, Frankfurt, Cologne, Stuttgart, Hannover, Munich and Zürich; Geneva lies south of 47 degrees.
    EXPECT_EQ(test.drawing().dots().size(), 7U);
}

TEST(DrawCommand, DrawsThePointsOfAFile) {
    DrawCase test;
    test.options.points = test.directory.fileWith("places.csv", "9,50,In\n20,50,Out\n10,51\n").utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().dots().size(), 2U);
}

TEST(DrawCommand, NamesOfPointsAreDrawn) {
    DrawCase test;
    test.options.points = test.directory.fileWith("places.csv", "9,50\n").utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    const std::size_t without = test.drawing().texts().size();
    DrawCase named;
    named.options.points = named.directory.fileWith("places.csv", "9,50,Somewhere\n").utf8();
    EXPECT_EQ(named.run(), ExitCode::Success);
    const SvgDrawing drawing = named.drawing();
    ASSERT_EQ(drawing.texts().size(), without + 1);
    EXPECT_EQ(drawing.texts().back().glyphs, 9U);
    const SvgDrawing::Box& ink = drawing.texts().back().ink;
    EXPECT_NEAR(ink.left, drawing.dots().at(0).centre.x + 4.0, 2.0) << "beside its dot";
    EXPECT_NEAR(0.5 * (ink.top + ink.bottom), drawing.dots().at(0).centre.y, 2.0);
}

TEST(DrawCommand, NamesDoNotCoverOtherPoints) {
    DrawCase test;
    test.options.points = test.directory.fileWith("places.csv", "9,50,Somewhere\n9.15,50\n").utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    const SvgDrawing drawing = test.drawing();
    ASSERT_EQ(drawing.dots().size(), 2U);
    EXPECT_LT(drawing.texts().back().ink.right, drawing.dots()[0].centre.x) << "on the other side";
}

TEST(DrawCommand, WithoutAnExtentTheMapShowsTheAreaOfUse) {
    DrawCase test("EPSG:2154");
    test.options.extent.reset();
    test.options.points = // the corners of the area in the EPSG dataset, and beside each one outside
        test.directory
            .fileWith("corners.csv", "-9.86 41.15\n10.38 51.56\n-9.96 41.15\n10.38 51.66\n-9.86 41.05\n")
            .utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().dots().size(), 2U);
}

TEST(DrawCommand, BadLinesOfPointsGiveOneAndTheMapIsDrawn) {
    DrawCase test;
    test.options.points = test.directory.fileWith("places.csv", "9,50,A\nx,51,B\n10,52,C\n").utf8();
    test.toFile("map.svg");
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_EQ(test.messages(), test.options.points + ":2: 'x' is not an angle\n");
    EXPECT_EQ(test.out(), test.options.path + "\n");
    EXPECT_EQ(SvgDrawing(test.directory.bytesOf("map.svg")).dots().size(), 2U);
}

TEST(DrawCommand, DrawsPointsWhateverTheirNamesAndPlaces) {
    DrawCase test;
    test.options.points =
        test.directory
            .fileWith("places.csv", "9,50,\xFF\xFE\n9,51,\xED\xA0\x80\n1e300,1e300,x\n9,91,x\n369,52,x\n")
            .utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().dots().size(), 3U) << "369 degrees are 9";
}

// U+FFFF is UTF-8 but no character.
TEST(DrawCommand, DrawsTheMapWhateverTheBytesOfNames) {
    DrawCase test;
    test.options.points = test.directory.fileWith("places.csv", "9,50,a\xEF\xBF\xBFz\n").utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.messages(), "");
    DrawCase titled;
    std::string file = projectionfiles::WorldMercator;
    file.replace(file.find("World Mercator"), 14, "a\xFF\xEF\xBF\xBF\x01z");
    titled.options.projection.text = titled.directory.fileWith("odd.proj", file).utf8();
    EXPECT_EQ(titled.run(), ExitCode::Success);
    EXPECT_EQ(titled.messages(), "");
}

TEST(DrawCommand, TitleFitsOnThePageHoweverLongItIs) {
    std::string file = projectionfiles::WorldMercator;
    file.replace(file.find("World Mercator"), 14, std::string(300, 'W'));
    DrawCase test;
    test.options.projection.text = test.directory.fileWith("long.proj", file).utf8();
    EXPECT_EQ(test.run(), ExitCode::Success);
    const SvgDrawing drawing = test.drawing();
    const SvgDrawing::Text& title = drawing.texts().at(0);
    EXPECT_LT(title.ink.right, drawing.width());
    EXPECT_GT(title.ink.right, 0.8 * drawing.width()) << "as much of it as there is room for";
    EXPECT_GT(title.ink.bottom - title.ink.top, 7.0) << "large enough to be read";
}

TEST(DrawCommand, GraticuleHasItsDistance) {
    constexpr Colour gridColour{0.55, 0.65, 0.75};
    DrawCase test;
    test.options.graticule = 2.0;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().linesOf(gridColour).size(), 8U) << "6, 8, 10, 12 and 48, 50, 52, 54";
}

TEST(DrawCommand, ColumnsAndRowsAreNamed) {
    constexpr Colour nameColour{0.10, 0.35, 0.65};
    DrawCase test;
    test.options.graticule = 2.0;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.drawing().textsOf(nameColour).size(), 8U) << "A, B, C and 1, 2, 3, 4, 5";
}

TEST(DrawCommand, UnknownProjectionIsRefused) {
    DrawCase("No such projection").expectRefused("no projection is called No such projection");
    DrawCase test("missing.proj");
    test.toFile("map.svg");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_TRUE(test.messages().starts_with("tqproj: cannot read a projection from missing.proj: "));
    EXPECT_TRUE(test.directory.entries().empty());
}

TEST(DrawCommand, ExtentWithoutAnImageIsRefused) {
    DrawCase test("+proj=gnom +lat_0=90");
    test.options.extent = GeographicExtent{-180.0, -90.0, 180.0, -10.0};
    test.expectRefused("the projection has no image of the extent");
}

TEST(DrawCommand, LinesAtADistanceInMetresNeedCoordinatesThatAreLengths) {
    DrawCase test("EPSG:4326");
    test.options.metric = 1000.0;
    test.expectRefused("the coordinates of the projection are angles, not metres");
}

std::vector<SvgDrawing::Dot> dotsOf(const char* definition, double west, double east) {
    DrawCase test(definition);
    test.options.extent = GeographicExtent{west, 40.0, east, 55.0};
    EXPECT_EQ(test.run(), ExitCode::Success);
    return test.drawing().dots();
}

TEST(DrawCommand, CitiesHaveTheirPlacesWhateverMeridianLongitudesCountFrom) {
    constexpr double paris = 2.33722916999999; // PROJ's +pm=paris
    const auto fromParis = dotsOf("+proj=merc +pm=paris +ellps=WGS84", -10.0, 20.0);
    const auto fromGreenwich = dotsOf("+proj=merc +ellps=WGS84", paris - 10.0, paris + 20.0);
    ASSERT_EQ(fromParis.size(), fromGreenwich.size());
    EXPECT_GT(fromParis.size(), 10U);
    for (std::size_t index = 0; index < fromParis.size(); ++index) {
        EXPECT_NEAR(fromParis[index].centre.x, fromGreenwich[index].centre.x, 0.02);
        EXPECT_NEAR(fromParis[index].centre.y, fromGreenwich[index].centre.y, 0.02);
    }
}

TEST(DrawCommand, TooManyLinesAreRefused) {
    DrawCase test;
    test.options.graticule = 1e-6;
    test.expectRefused("the grid would have more than 2000 lines");
    DrawCase metric;
    metric.options.metric = 1e-3;
    metric.toFile("map.svg");
    EXPECT_EQ(metric.run(), ExitCode::Failure);
    EXPECT_EQ(metric.messages(), "tqproj: the grid would have more than 2000 lines\n");
    for (const double least : {1e-300, 5e-324}) {
        DrawCase absurd;
        absurd.options.graticule = least;
        EXPECT_EQ(absurd.run(), ExitCode::Failure);
        EXPECT_EQ(std::ranges::count(absurd.messages(), '\n'), 1);
    }
}

TEST(DrawCommand, UnreadablePointsAreRefused) {
    DrawCase test;
    test.options.points = test.directory.file("missing.csv").utf8();
    test.expectRefused("cannot read " + test.options.points + ": No such file or directory");
}

TEST(DrawCommand, DirectoryOfPointsIsRefused) {
    DrawCase test;
    test.options.points = test.directory.directory().utf8();
    test.toFile("map.svg");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_TRUE(test.messages().starts_with("tqproj: cannot read ")) << test.messages();
    EXPECT_TRUE(test.directory.entries().empty());
}

TEST(DrawCommand, UnwritableOutputIsReported) {
    DrawCase test;
    test.toFile("missing directory/map.svg");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(), "tqproj: cannot write " + test.options.path + ": No such file or directory\n");
    EXPECT_EQ(test.out(), "");
    EXPECT_TRUE(test.directory.entries().empty());
}

TEST(DrawCommand, OutputThatIsADirectoryIsReportedAndStays) {
    DrawCase test;
    test.toFile("map.svg");
    std::filesystem::create_directory(test.directory.path() / "map.svg");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.messages(), "tqproj: cannot write " + test.options.path + ": Is a directory\n");
    EXPECT_EQ(test.directory.entries(), std::set<std::string>{"map.svg"});
}

TEST(DrawCommand, OldMapStaysWhenTheNewOneFails) {
    DrawCase test;
    test.directory.fileWith("map.svg", "old");
    test.options.graticule = 1e-6;
    test.toFile("map.svg");
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.directory.bytesOf("map.svg"), "old");
}

} // namespace
