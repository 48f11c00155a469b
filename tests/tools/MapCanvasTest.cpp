#include "tools/tqproj/map/MapCanvas.h"

#include "tests/tools/SvgDrawing.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

namespace {

using Format = MapCanvas::Format;

constexpr Format kFormats[]{Format::SVG, Format::PNG, Format::PDF};
constexpr Colour kBlue{0.1, 0.35, 0.65};
constexpr Colour kRed{0.75, 0.15, 0.1};

/// The size of a PNG in pixels, as its first chunk tells.
std::pair<int, int> sizeOfPng(const std::string& bytes) {
    const auto number = [&bytes](std::size_t at) {
        int value = 0;
        for (std::size_t index = at; index < at + 4; ++index) {
            value = value * 256 + static_cast<unsigned char>(bytes.at(index));
        }
        return value;
    };
    return {number(16), number(20)};
}

/// What a drawing operation leaves on a page.
template <class Draw>
std::optional<std::string> drawn(Format format, Draw draw) {
    MapCanvas canvas(format, 200.0, 100.0);
    draw(canvas);
    return canvas.finish();
}

TEST(MapCanvas, ExtensionTellsTheKindOfFile) {
    EXPECT_EQ(MapCanvas::formatOf("map.svg"), Format::SVG);
    EXPECT_EQ(MapCanvas::formatOf("some where/m.a.p.png"), Format::PNG);
    EXPECT_EQ(MapCanvas::formatOf("Zürich.pdf"), Format::PDF);
    for (const char* path : {"", "-", "map", "svg", ".svg", "map.", "map.svg.gz", "map.jpg", "dir.svg/map",
                             "map.svg ", "map.svgz"}) {
        EXPECT_FALSE(MapCanvas::formatOf(path)) << path;
    }
}

TEST(MapCanvas, FilesAreWhatTheyAreCalled) {
    const auto nothing = [](MapCanvas&) {};
    const std::string svg = drawn(Format::SVG, nothing).value();
    EXPECT_TRUE(svg.starts_with("<?xml "));
    EXPECT_NE(svg.find("<svg "), std::string::npos);
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
    const std::string pdf = drawn(Format::PDF, nothing).value();
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_NE(pdf.find("%%EOF"), std::string::npos);
    const std::string png = drawn(Format::PNG, nothing).value();
    EXPECT_TRUE(png.starts_with("\x89PNG\r\n\x1A\n"));
    EXPECT_NE(png.find("IEND"), std::string::npos);
}

TEST(MapCanvas, PageHasItsSize) {
    const auto nothing = [](MapCanvas&) {};
    const SvgDrawing svg(drawn(Format::SVG, nothing).value());
    EXPECT_EQ(svg.width(), 200.0);
    EXPECT_EQ(svg.height(), 100.0);
    const std::string pdf = drawn(Format::PDF, nothing).value();
    EXPECT_NE(pdf.find("/MediaBox [ 0 0 200 100 ]"), std::string::npos);
    EXPECT_EQ(sizeOfPng(drawn(Format::PNG, nothing).value()), std::pair(400, 200))
        << "two pixels for a point";
}

TEST(MapCanvas, DrawsLinesDotsAndTextsWhereTheyAreToBe) {
    const CurvePiece line{{10.0, 20.0}, {{{20.0, 20.0}, {30.0, 40.0}, {40.0, 40.0}}}};
    const SvgDrawing svg(drawn(Format::SVG, [&line](MapCanvas& canvas) {
                             canvas.drawLine(line, {0.5, kBlue});
                             canvas.drawDot({150.0, 75.0}, 2.0, kRed);
                             canvas.drawText("AB", {50.0, 60.0}, {10.0, kBlue});
                         }).value());
    constexpr double resolution = 1.0 / 256.0; // of cairo
    ASSERT_EQ(svg.linesOf(kBlue).size(), 1U);
    EXPECT_EQ(svg.linesOf(kBlue)[0].start, line.start);
    ASSERT_EQ(svg.linesOf(kBlue)[0].arcs.size(), 1U);
    EXPECT_EQ(svg.linesOf(kBlue)[0].arcs[0].firstControl, line.arcs[0].firstControl);
    EXPECT_EQ(svg.linesOf(kBlue)[0].arcs[0].secondControl, line.arcs[0].secondControl);
    EXPECT_EQ(svg.linesOf(kBlue)[0].end(), line.end());
    ASSERT_EQ(svg.dots().size(), 1U);
    EXPECT_LT(distanceOf(svg.dots()[0].centre, {150.0, 75.0}), resolution);
    EXPECT_NEAR(svg.dots()[0].radius, 2.0, resolution);
    ASSERT_EQ(svg.textsOf(kBlue).size(), 1U);
    EXPECT_EQ(svg.texts()[0].glyphs, 2U);
    EXPECT_LT(distanceOf(svg.texts()[0].left, {50.0, 60.0}), resolution);
}

TEST(MapCanvas, EveryKindOfFileGrowsWithWhatIsDrawn) {
    for (const Format format : kFormats) {
        const auto empty = drawn(format, [](MapCanvas&) {});
        const auto full = drawn(format, [](MapCanvas& canvas) {
            canvas.drawText("Some text", {10.0, 50.0}, {12.0, kBlue});
        });
        ASSERT_TRUE(empty && full);
        EXPECT_GT(full->size(), empty->size());
    }
}

TEST(MapCanvas, TextsTakeMoreRoomTheLongerLargerAndBolderTheyAre) {
    const MapCanvas canvas(Format::SVG, 200.0, 100.0);
    const TextStyle style{10.0, kBlue};
    const TextSize size = canvas.sizeOf("Hamburg", style);
    EXPECT_GT(size.width, 20.0);
    EXPECT_LT(size.width, 100.0);
    EXPECT_GT(canvas.sizeOf("Hamburg 2", style).width, size.width);
    EXPECT_EQ(canvas.sizeOf("Hamburg 2", style).height, size.height);
    EXPECT_NEAR(canvas.sizeOf("Hamburg", {20.0, kBlue}).width, 2.0 * size.width, 0.1 * size.width);
    EXPECT_DOUBLE_EQ(canvas.sizeOf("Hamburg", {20.0, kBlue}).height, 2.0 * size.height);
    EXPECT_GT(canvas.sizeOf("Hamburg", {10.0, kBlue, true}).width, size.width);
    EXPECT_EQ(canvas.sizeOf("", style).width, 0.0);
    EXPECT_LT(canvas.sizeOf("é", style).width, canvas.sizeOf("Ã©", style).width) << "UTF-8";
}

TEST(MapCanvas, CapitalLettersAreAsHighAsTold) {
    const TextStyle style{100.0, kBlue};
    MapCanvas canvas(Format::SVG, 1000.0, 200.0);
    const TextSize size = canvas.sizeOf("HXE", style);
    canvas.drawText("HXE", {10.0, 150.0}, style);
    const SvgDrawing svg(canvas.finish().value());
    const SvgDrawing::Box& ink = svg.texts().at(0).ink;
    EXPECT_NEAR(ink.bottom - ink.top, size.height, 5.0);
    EXPECT_LE(ink.right, 10.0 + size.width);
}

TEST(MapCanvas, ExtensionsBeyondThePageAndEmptyThingsAreHarmless) {
    for (const Format format : kFormats) {
        const auto bytes = drawn(format, [](MapCanvas& canvas) {
            canvas.drawLine({{-1e6, -1e6}, {{{0.0, 0.0}, {1e6, 0.0}, {1e6, 1e6}}}}, {0.6, kBlue});
            canvas.drawLine({{10.0, 10.0}, {}}, {0.6, kBlue});
            canvas.drawDot({-500.0, 500.0}, 2.0, kRed);
            canvas.drawDot({50.0, 50.0}, 0.0, kRed);
            canvas.drawText("", {10.0, 10.0}, {8.0, kBlue});
            canvas.drawText("far off", {1e5, 1e5}, {8.0, kBlue});
        });
        EXPECT_TRUE(bytes);
    }
}

TEST(MapCanvas, WhatCannotBeDrawnGivesNothing) {
    for (const Format format : kFormats) {
        EXPECT_FALSE(drawn(format, [](MapCanvas& canvas) {
            canvas.drawText("\xFF", {10.0, 10.0}, {8.0, kBlue});
        })) << "no UTF-8";
        EXPECT_FALSE(drawn(format, [](MapCanvas& canvas) {
            EXPECT_EQ(canvas.sizeOf("\xFF", {8.0, kBlue}).width, 0.0);
        }));
    }
    EXPECT_FALSE(MapCanvas(Format::PNG, 1e6, 1e6).finish()) << "larger than the library's images";
    EXPECT_FALSE(MapCanvas(Format::PNG, -1.0, 100.0).finish());
}

} // namespace
