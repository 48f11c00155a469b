#include "tools/tqproj/map/MapLabels.h"

#include "tests/tools/SvgDrawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

namespace {

constexpr double kWidth = 300.0;
constexpr double kHeight = 200.0;
constexpr TextStyle kStyle{10.0, {0.0, 0.0, 0.0}};
constexpr TQPoint kMiddle{150.0, 100.0};

bool everywhere(const TQPoint&) { return true; }
bool nowhere(const TQPoint&) { return false; }

/// Labels of a page, which is read back.
class LabelsCase {
  public:
    MapLabels labels{_canvas, kWidth, kHeight};

    double widthOf(const std::string& text) const { return _canvas.sizeOf(text, kStyle).width; }

    /// The page, which is finished by this.
    SvgDrawing drawing() { return SvgDrawing(_canvas.finish().value()); }

    /// The ink of the only text there is.
    SvgDrawing::Box ink() {
        const SvgDrawing read = drawing();
        EXPECT_EQ(read.texts().size(), 1U);
        return read.texts().at(0).ink;
    }

  private:
    MapCanvas _canvas{MapCanvas::Format::SVG, kWidth, kHeight};
};

TEST(MapLabels, OfTextsAtOnePlaceTheFirstOneStays) {
    LabelsCase test;
    EXPECT_TRUE(test.labels.drawAt("First", kMiddle, kStyle));
    EXPECT_FALSE(test.labels.drawAt("X", kMiddle, kStyle));
    EXPECT_FALSE(test.labels.drawAt("Y", {kMiddle.x + 5.0, kMiddle.y - 3.0}, kStyle));
    EXPECT_TRUE(test.labels.drawAt("Second", {kMiddle.x, kMiddle.y + 20.0}, kStyle));
    const SvgDrawing read = test.drawing();
    ASSERT_EQ(read.texts().size(), 2U);
    EXPECT_EQ(read.texts()[0].glyphs, 5U);
    EXPECT_FALSE(read.texts()[0].ink.overlaps(read.texts()[1].ink));
}

TEST(MapLabels, TextThatWouldLeaveThePageIsRefused) {
    LabelsCase test;
    const double width = test.widthOf("Text");
    for (const TQPoint left : {TQPoint{-1.0, 100.0}, TQPoint{kWidth - width + 1.0, 100.0},
                               TQPoint{100.0, 5.0}, TQPoint{100.0, kHeight + 1.0}, TQPoint{1e9, 1e9}}) {
        EXPECT_FALSE(test.labels.drawAt("Text", left, kStyle)) << left.x << " " << left.y;
    }
    for (const TQPoint left : {TQPoint{2.0, 100.0}, TQPoint{kWidth - width - 2.0, 100.0},
                               TQPoint{100.0, 12.0}, TQPoint{100.0, kHeight - 2.0}}) {
        EXPECT_TRUE(test.labels.drawAt("Text", left, kStyle)) << left.x << " " << left.y;
    }
    EXPECT_EQ(test.drawing().texts().size(), 4U);
}

TEST(MapLabels, PlacesAreKeptFree) {
    LabelsCase test;
    test.labels.keepFree(kMiddle, 5.0);
    EXPECT_FALSE(test.labels.drawAt("Text", {kMiddle.x - 10.0, kMiddle.y + 2.0}, kStyle));
    EXPECT_TRUE(test.labels.drawAt("Text", {kMiddle.x + 10.0, kMiddle.y + 2.0}, kStyle));
}

TEST(MapLabels, TextBeyondALineLiesInItsDirectionAndDoesNotCoverItsEnd) {
    for (int step = 0; step < 16; ++step) {
        LabelsCase test;
        const double angle = step * std::numbers::pi / 8.0;
        const TQPoint direction{std::cos(angle), std::sin(angle)};
        ASSERT_TRUE(test.labels.drawBeyond("H", kMiddle, direction, kStyle, nowhere));
        const SvgDrawing::Box ink = test.ink();
        const TQPoint centre{0.5 * (ink.left + ink.right) - kMiddle.x,
                             0.5 * (ink.top + ink.bottom) - kMiddle.y};
        EXPECT_NEAR(centre.x * direction.y - centre.y * direction.x, 0.0, 0.7) << "on the ray";
        EXPECT_GT(centre.x * direction.x + centre.y * direction.y, 5.0);
        EXPECT_FALSE(ink.left < kMiddle.x && kMiddle.x < ink.right && ink.top < kMiddle.y &&
                     kMiddle.y < ink.bottom);
    }
}

/// The four sides of a point, in the order in which a text is tried there.
enum class Side { Right, Left, Above, Below };

Side sideOf(const SvgDrawing::Box& ink) {
    return ink.left > kMiddle.x     ? Side::Right
           : ink.right < kMiddle.x  ? Side::Left
           : ink.bottom < kMiddle.y ? Side::Above
                                    : Side::Below;
}

TEST(MapLabels, TextBesideAPointIsRightLeftAboveOrBelowWhereThereIsRoom) {
    constexpr TQPoint obstacles[]{{kMiddle.x + 9.0, kMiddle.y},
                                  {kMiddle.x - 9.0, kMiddle.y},
                                  {kMiddle.x, kMiddle.y - 9.0},
                                  {kMiddle.x, kMiddle.y + 9.0}};
    constexpr Side sides[]{Side::Right, Side::Left, Side::Above, Side::Below};
    for (std::size_t count = 0; count < std::size(obstacles); ++count) {
        LabelsCase test;
        for (std::size_t index = 0; index < count; ++index) {
            test.labels.keepFree(obstacles[index], 1.0);
        }
        ASSERT_TRUE(test.labels.drawBeside("H", kMiddle, kStyle, everywhere));
        EXPECT_EQ(sideOf(test.ink()), sides[count]);
    }
}

TEST(MapLabels, TextBesideAPointLiesBetweenTheSidesWhereTheseAreTaken) {
    LabelsCase test;
    for (const double step : {-9.0, 9.0}) {
        test.labels.keepFree({kMiddle.x + step, kMiddle.y}, 1.0);
        test.labels.keepFree({kMiddle.x, kMiddle.y + step}, 1.0);
    }
    ASSERT_TRUE(test.labels.drawBeside("H", kMiddle, kStyle, everywhere));
    const SvgDrawing::Box ink = test.ink();
    EXPECT_GT(ink.left, kMiddle.x);
    EXPECT_LT(ink.bottom, kMiddle.y);
}

TEST(MapLabels, TextBesideAPointWithoutRoomAroundItIsLeftOut) {
    LabelsCase test;
    test.labels.keepFree(kMiddle, 30.0);
    EXPECT_FALSE(test.labels.drawBeside("H", kMiddle, kStyle, everywhere));
    EXPECT_TRUE(test.drawing().texts().empty());
}

TEST(MapLabels, TextBesideAPointIsWithinTheArea) {
    const std::pair<Side, bool (*)(const TQPoint&)> cases[]{
        {Side::Left, [](const TQPoint& page) { return page.x < kMiddle.x; }},
        {Side::Above, [](const TQPoint& page) { return page.y < kMiddle.y; }},
        {Side::Below, [](const TQPoint& page) { return page.y > kMiddle.y; }}};
    for (const auto& [side, isInside] : cases) {
        LabelsCase test;
        ASSERT_TRUE(test.labels.drawBeside("H", kMiddle, kStyle, isInside));
        EXPECT_EQ(sideOf(test.ink()), side);
    }
    LabelsCase test;
    EXPECT_FALSE(test.labels.drawBeside("H", kMiddle, kStyle, nowhere));
}

TEST(MapLabels, TextBeyondALineTurnsAsideToKeepOutOfAnArea) {
    LabelsCase test;
    const auto isAbove = [](const TQPoint& page) { return page.y < kMiddle.y - 7.0; };
    ASSERT_TRUE(test.labels.drawBeyond("H", kMiddle, {0.0, -1.0}, kStyle, isAbove));
    const SvgDrawing::Box ink = test.ink();
    EXPECT_GT(ink.top, kMiddle.y - 6.0);
    EXPECT_TRUE(ink.left > kMiddle.x || ink.right < kMiddle.x);
}

TEST(MapLabels, TextBeyondALineThatIsSurroundedByTheAreaGoesOnWithIt) {
    LabelsCase test;
    ASSERT_TRUE(test.labels.drawBeyond("H", kMiddle, {0.0, -1.0}, kStyle, everywhere));
    EXPECT_EQ(sideOf(test.ink()), Side::Above);
}

TEST(MapLabels, ThePageBehindATextIsWhite) {
    const auto drawnWith = [](bool hasText) {
        MapCanvas canvas(MapCanvas::Format::SVG, kWidth, kHeight);
        MapLabels labels(canvas, kWidth, kHeight);
        if (hasText) {
            labels.drawAt("H", kMiddle, kStyle);
        }
        const std::string svg = canvas.finish().value();
        std::size_t count = 0;
        for (std::size_t at = svg.find("fill:rgb(100%,100%,100%)"); at != std::string::npos;
             at = svg.find("fill:rgb(100%,100%,100%)", at + 1)) {
            ++count;
        }
        return count;
    };
    EXPECT_EQ(drawnWith(true), drawnWith(false) + 1);
}

TEST(MapLabels, TextBesideAPointAtTheBorderStaysOnThePage) {
    LabelsCase test;
    ASSERT_TRUE(test.labels.drawBeside("Harbour", {kWidth - 3.0, 100.0}, kStyle, everywhere));
    EXPECT_LT(test.ink().right, kWidth);
}

TEST(MapLabels, PointWithoutANameTakesNoRoom) {
    LabelsCase test;
    test.labels.drawBeside("", kMiddle, kStyle, everywhere);
    EXPECT_TRUE(test.labels.drawAt("H", {kMiddle.x + 2.0, kMiddle.y + 3.0}, kStyle));
}

} // namespace
