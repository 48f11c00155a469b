#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"
#include "testing/EvenSteps.h"
#include "tests/tools/CommandCase.h"
#include "tests/tools/DefinedProjection.h"
#include "tests/tools/SvgDrawing.h"
#include "tools/tqproj/DrawCommand.h"
#include "tools/tqproj/map/MapFrame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Whole maps, read back from their SVG. Where things are to be on the page is told by PROJ and by four points
// of known coordinates that are drawn on every map: they tell how the plane lies on the page.

namespace {

constexpr Colour kGridColour{0.55, 0.65, 0.75};
constexpr Colour kBorderColour{0.15, 0.15, 0.15};
constexpr Colour kNameColour{0.10, 0.35, 0.65};

constexpr double kNear = 0.2;           // points: less than half the width of a line
constexpr double kResolution = 0.02;    // points: what cairo's numbers leave, carried over the map
constexpr double kGreatestSize = 720.0; // of the longer side of a map

struct MapCase {
    std::string name;
    std::string definition; ///< as tqproj draw takes it
    std::string base;       ///< the geographic system of the reference; empty for a definition
    std::string reference;  ///< the same projection for PROJ
    GeographicExtent extent;
    GeographicExtent drawn; ///< the extent as the projection cuts it
    double graticule;
    TQPoint centre;      ///< of the four points
    double reach;        ///< how far they are from the centre, in degrees
    bool isWhole = true; ///< whether the extent fits into the map

    ProjOperation proj() const {
        return base.empty() ? DefinedProjection::inDegrees(reference)
                            : ProjOperation::betweenSystems(base, reference);
    }

    std::vector<TQPoint> marks() const {
        return {{centre.x - reach, centre.y - reach},
                {centre.x + reach, centre.y - reach},
                {centre.x - reach, centre.y + reach},
                {centre.x + reach, centre.y + reach}};
    }
};

void PrintTo(const MapCase& map, std::ostream* stream) { *stream << map.name; }

/// The cities that come with the library.
std::vector<TQPoint> cities() {
    std::vector<TQPoint> places;
    std::istringstream lines(
        readBytes(tq_createPath(TQGetApplicationSharedDirectory(), "samples", "cities.csv")));
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with('#')) {
            places.push_back({std::atof(line.c_str()), std::atof(line.c_str() + line.find(',') + 1)});
        }
    }
    return places;
}

bool contains(const GeographicExtent& extent, const TQPoint& place) {
    const double fromWest = place.x - extent.west + (place.x < extent.west ? 360.0 : 0.0);
    return fromWest <= extent.east - extent.west && place.y >= extent.south && place.y <= extent.north;
}

double distanceToSegment(const TQPoint& point, const TQPoint& start, const TQPoint& end) {
    const TQPoint along{end.x - start.x, end.y - start.y};
    const double length = along.x * along.x + along.y * along.y;
    const double part =
        length > 0.0 ? ((point.x - start.x) * along.x + (point.y - start.y) * along.y) / length : 0.0;
    const double within = std::clamp(part, 0.0, 1.0);
    return std::hypot(point.x - start.x - within * along.x, point.y - start.y - within * along.y);
}

/// A line as points one after the other; where they are far apart it is broken.
struct Trail {
    static constexpr double farApart = 30.0; // points

    std::vector<TQPoint> points;
    SvgDrawing::Box box;

    void add(const TQPoint& point) {
        points.push_back(point);
        box.add(point);
    }

    bool passes(const TQPoint& point, double nearness) const {
        std::size_t segment = 0;
        return findPassing(segment, point, nearness);
    }

    /// Whether it passes all points of another line, which goes the same way.
    bool passesAll(const std::vector<TQPoint>& others, double nearness) const {
        std::size_t segment = 0;
        return std::ranges::all_of(others, [this, &segment, nearness](const TQPoint& point) {
            return findPassing(segment, point, nearness);
        });
    }

  private:
    /// Finds the segment that passes a point, from a segment on and all around.
    bool findPassing(std::size_t& segment, const TQPoint& point, double nearness) const {
        const bool isInBox = point.x >= box.left - nearness && point.x <= box.right + nearness &&
                             point.y >= box.top - nearness && point.y <= box.bottom + nearness;
        for (std::size_t tried = 1; isInBox && tried < points.size(); ++tried) {
            const TQPoint& start = points[segment];
            const TQPoint& end = points[segment + 1];
            if (distanceOf(start, end) < farApart && distanceToSegment(point, start, end) <= nearness) {
                return true;
            }
            segment = (segment + 1) % (points.size() - 1);
        }
        return false;
    }
};

Trail trailOf(const std::vector<TQPoint>& points) {
    Trail trail;
    for (const TQPoint& point : points) {
        trail.add(point);
    }
    return trail;
}

/// How the plane lies on the page, from the images of points and the places of their dots.
class PageFit {
  public:
    PageFit(const std::vector<TQPoint>& planes, const std::vector<TQPoint>& pages)
        : _plane(mean(planes)), _page(mean(pages)) {
        double products = 0.0;
        double squares = 0.0;
        for (std::size_t index = 0; index < planes.size(); ++index) {
            const TQPoint plane{planes[index].x - _plane.x, planes[index].y - _plane.y};
            products += plane.x * (pages[index].x - _page.x) - plane.y * (pages[index].y - _page.y);
            squares += plane.x * plane.x + plane.y * plane.y;
        }
        _scale = products / squares;
        for (std::size_t index = 0; index < planes.size(); ++index) {
            EXPECT_LT(distanceOf(toPage(planes[index]), pages[index]), kResolution) << "one scale, no turn";
        }
    }

    TQPoint toPage(const TQPoint& plane) const {
        return {_page.x + _scale * (plane.x - _plane.x), _page.y - _scale * (plane.y - _plane.y)};
    }

    TQPoint toPlane(const TQPoint& page) const {
        return {_plane.x + (page.x - _page.x) / _scale, _plane.y - (page.y - _page.y) / _scale};
    }

    double scale() const { return _scale; }

  private:
    static TQPoint mean(const std::vector<TQPoint>& points) {
        TQPoint sum;
        for (const TQPoint& point : points) {
            sum.x += point.x / static_cast<double>(points.size());
            sum.y += point.y / static_cast<double>(points.size());
        }
        return sum;
    }

    TQPoint _plane;
    TQPoint _page;
    double _scale = 1.0;
};

/// A map drawn by the command beside PROJ.
class DrawnMap {
  public:
    explicit DrawnMap(const MapCase& map, double metric = 0.0)
        : _map(map), _proj(map.proj()), _drawing(svg(metric)), _fit(fit()) {}

    const SvgDrawing& drawing() const { return _drawing; }
    const PageFit& fit() const { return *_fit; }

    /// Where a place is to be on the page; not finite where it has no image.
    TQPoint pageOf(const TQPoint& place) const { return _fit->toPage(_proj.forward(place)); }

    /// Where a meridian is to be.
    Trail meridian(double longitude, int steps) const {
        return trail({longitude, _map.drawn.south}, {longitude, _map.drawn.north}, steps);
    }

    /// Where a parallel is to be.
    Trail parallel(double latitude, int steps) const {
        return trail({_map.drawn.west, latitude}, {_map.drawn.east, latitude}, steps);
    }

    /// Where all lines of the graticule are to be.
    std::vector<Trail> graticule(int steps) const {
        std::vector<Trail> trails;
        for (const double longitude : multiples(_map.drawn.west, _map.drawn.east)) {
            trails.push_back(meridian(longitude, steps));
        }
        for (const double latitude : multiples(_map.drawn.south, _map.drawn.north)) {
            trails.push_back(parallel(latitude, steps));
        }
        return trails;
    }

    /// Where the four sides of the extent are to be.
    std::vector<Trail> sides(int steps) const {
        return {meridian(_map.drawn.west, steps), meridian(_map.drawn.east, steps),
                parallel(_map.drawn.south, steps), parallel(_map.drawn.north, steps)};
    }

    /// The images of the whole extent.
    SvgDrawing::Box imageBox() const {
        SvgDrawing::Box box;
        for (const double longitude : evenSteps(_map.drawn.west, _map.drawn.east, 181)) {
            for (const TQPoint& point : meridian(longitude, 181).points) {
                box.add(point);
            }
        }
        return box;
    }

  private:
    std::optional<PageFit> fit() {
        const std::vector<TQPoint> marks = _map.marks();
        std::vector<TQPoint> planes;
        std::vector<TQPoint> pages;
        EXPECT_GE(_drawing.dots().size(), marks.size());
        for (std::size_t index = 0; index < std::min(marks.size(), _drawing.dots().size()); ++index) {
            planes.push_back(_proj.forward(marks[index]));
            pages.push_back(_drawing.dots()[index].centre);
        }
        return PageFit(planes, pages);
    }

    std::string svg(double metric) const {
        CommandCase run;
        std::string points;
        for (const TQPoint& mark : _map.marks()) {
            points += fullText(mark.x) + "," + fullText(mark.y) + "\n";
        }
        points += readBytes(tq_createPath(TQGetApplicationSharedDirectory(), "samples", "cities.csv"));
        DrawOptions options;
        options.projection.text = _map.definition;
        options.extent = _map.extent;
        options.graticule = metric > 0.0 ? 0.0 : _map.graticule;
        options.metric = metric;
        options.points = run.directory.fileWith("points.csv", points).utf8();
        options.path = "-";
        EXPECT_EQ(DrawCommand(options, run.output, run.diagnostics).run(), ExitCode::Success);
        EXPECT_EQ(run.messages(), "");
        return run.out();
    }

    std::vector<double> multiples(double least, double greatest) const {
        constexpr double forRoundings = 1e-6; // degrees; a seam is passed by less
        std::vector<double> values;
        for (double number = std::ceil((least - forRoundings) / _map.graticule);
             number * _map.graticule <= greatest + forRoundings; ++number) {
            values.push_back(std::clamp(number * _map.graticule, least, greatest));
        }
        return values;
    }

    /// The images between two places; where they end or jump, as near to there as numbers allow.
    Trail trail(const TQPoint& start, const TQPoint& end, int steps) const {
        Trail trail;
        TQPoint before = start;
        for (const double part : evenSteps(0.0, 1.0, steps)) {
            const TQPoint place = between(start, end, part);
            if (isTorn(before, place)) {
                const auto [last, first] = tear(before, place);
                addIfFinite(trail, pageOf(last));
                addIfFinite(trail, pageOf(first));
            }
            addIfFinite(trail, pageOf(place));
            before = place;
        }
        return trail;
    }

    static TQPoint between(const TQPoint& start, const TQPoint& end, double part) {
        return {(1.0 - part) * start.x + part * end.x, (1.0 - part) * start.y + part * end.y};
    }

    /// Whether only one of two places has an image, or both are far apart.
    bool isTorn(const TQPoint& one, const TQPoint& other) const {
        const TQPoint onePage = pageOf(one);
        const TQPoint otherPage = pageOf(other);
        return isFinite(onePage) != isFinite(otherPage) ||
               (isFinite(onePage) && distanceOf(onePage, otherPage) >= Trail::farApart);
    }

    /// The places on both sides of a tear.
    std::pair<TQPoint, TQPoint> tear(TQPoint one, TQPoint other) const {
        for (int halving = 0; halving < 40; ++halving) {
            const TQPoint middle = between(one, other, 0.5);
            (isTorn(one, middle) ? other : one) = middle;
        }
        return {one, other};
    }

    static bool isFinite(const TQPoint& point) { return std::isfinite(point.x) && std::isfinite(point.y); }

    static void addIfFinite(Trail& trail, const TQPoint& point) {
        if (isFinite(point)) {
            trail.add(point);
        }
    }

    const MapCase& _map;
    ProjOperation _proj;
    SvgDrawing _drawing;
    std::optional<PageFit> _fit;
};

const GeographicExtent kWorld{};

std::vector<MapCase> mapCases() {
    const GeographicExtent germany{6.0, 47.0, 12.0, 55.0};
    const GeographicExtent france{-9.86, 41.15, 10.38, 51.56};
    const GeographicExtent arctic{-180.0, 60.0, 180.0, 90.0};
    const GeographicExtent antarctic{-180.0, -90.0, 180.0, -60.0};
    const GeographicExtent alps{5.96, 45.82, 10.49, 47.81};
    const GeographicExtent europe{-10.0, 35.0, 30.0, 60.0};
    const GeographicExtent mercator{-180.0, -80.0, 180.0, 84.0};
    const GeographicExtent cutAtRobinsSeam{-169.0 + 1e-7, -90.0, 191.0 - 1e-7, 90.0};
    const GeographicExtent cutAtBonnesSeam{-178.0 + 1e-7, -90.0, 182.0 - 1e-7, 90.0};
    const GeographicExtent pacific{130.0, -40.0, 250.0, 50.0};
    const std::string omerc = "+proj=omerc +lat_0=45 +lonc=10 +alpha=30 +gamma=0 +k=1 +ellps=WGS84";
    const std::string bonne = "+proj=bonne +lat_1=45 +lon_0=2 +ellps=WGS84";
    const std::string gnomonic = "+proj=gnom +lat_0=45 +R=6371000";
    const std::string stereographic = "+proj=stere +lat_0=52 +lon_0=5 +ellps=WGS84";
    constexpr bool isWhole = false; // not
    return {
        {"Utm", "EPSG:32632", "EPSG:4326", "EPSG:32632", germany, germany, 1.0, {9.0, 51.0}, 2.5},
        {"Lambert93", "Lambert-93", "EPSG:4171", "EPSG:2154", france, france, 2.5, {2.0, 46.5}, 4.0},
        {"ArcticStereographic",
         "EPSG:3995",
         "EPSG:4326",
         "EPSG:3995",
         arctic,
         arctic,
         15.0,
         {20.0, 75.0},
         10.0},
        {"AntarcticStereographic",
         "EPSG:3031",
         "EPSG:4326",
         "EPSG:3031",
         antarctic,
         antarctic,
         15.0,
         {20.0, -75.0},
         10.0},
        {"SwissObliqueMercator", "EPSG:2056", "EPSG:4150", "EPSG:2056", alps, alps, 0.5, {8.2, 46.8}, 0.8},
        {"ObliqueMercator", omerc, "", omerc, europe, europe, 5.0, {10.0, 47.0}, 8.0},
        {"WorldMercator", "EPSG:3395", "EPSG:4326", "EPSG:3395", mercator, mercator, 20.0, {0.0, 0.0}, 60.0},
        {"Bonne", bonne, "", bonne, kWorld, cutAtBonnesSeam, 30.0, {0.0, 10.0}, 50.0},
        {"RobinsonCutElsewhere",
         "+proj=robin +lon_0=11",
         "",
         "+proj=robin +lon_0=11",
         kWorld,
         cutAtRobinsSeam,
         15.0,
         {0.0, 0.0},
         60.0},
        {"InterruptedHomolosine", "+proj=igh", "", "+proj=igh", kWorld, kWorld, 30.0, {10.0, 0.0}, 50.0},
        {"AcrossTheAntimeridian",
         "EPSG:3832",
         "EPSG:4326",
         "EPSG:3832",
         pacific,
         pacific,
         10.0,
         {180.0, 0.0},
         30.0},
        {"UtmOfTheWorld",
         "EPSG:32632",
         "EPSG:4326",
         "EPSG:32632",
         kWorld,
         kWorld,
         15.0,
         {9.0, 0.0},
         30.0,
         isWhole},
        {"GnomonicOfTheWorld", gnomonic, "", gnomonic, kWorld, kWorld, 15.0, {0.0, 45.0}, 20.0, isWhole},
        {"StereographicOfTheWorld",
         stereographic,
         "",
         stereographic,
         kWorld,
         kWorld,
         15.0,
         {5.0, 40.0},
         30.0,
         isWhole},
        {"SwissObliqueMercatorOfTheWorld",
         "EPSG:2056",
         "EPSG:4150",
         "EPSG:2056",
         kWorld,
         kWorld,
         15.0,
         {8.0, 45.0},
         25.0,
         isWhole},
    };
}

class DrawnMapTest : public testing::TestWithParam<MapCase> {
  protected:
    DrawnMap map{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(DrawnMap, DrawnMapTest, testing::ValuesIn(mapCases()),
                         [](const testing::TestParamInfo<MapCase>& test) { return test.param.name; });

constexpr int kPartsOfArc = 16;
constexpr int kFine = 10'001;
constexpr int kCoarse = 151;

/// Expects that each line lies on one of some trails, with all of its points.
void expectOnTrails(const std::vector<CurvePiece>& lines, const std::vector<Trail>& trails) {
    for (const CurvePiece& line : lines) {
        const std::vector<TQPoint> points = pointsOf(line, kPartsOfArc);
        EXPECT_TRUE(std::ranges::any_of(
            trails, [&points](const Trail& trail) { return trail.passesAll(points, kNear); }))
            << "the line from " << line.start.x << " " << line.start.y << " to " << line.end().x << " "
            << line.end().y;
    }
}

TEST_P(DrawnMapTest, EveryLineOfTheGraticuleIsAMeridianOrParallelAtAMultipleOfTheDistance) {
    const std::vector<CurvePiece> lines = map.drawing().linesOf(kGridColour);
    EXPECT_GE(lines.size(), 6U);
    expectOnTrails(lines, map.graticule(kFine));
}

TEST_P(DrawnMapTest, BorderIsThatOfTheExtent) {
    const std::vector<CurvePiece> border = map.drawing().linesOf(kBorderColour);
    EXPECT_TRUE(!border.empty() || !GetParam().isWhole);
    expectOnTrails(border, map.sides(kFine));
}

TEST_P(DrawnMapTest, NothingOfTheGraticuleOrTheBorderIsMissing) {
    SvgDrawing::Box shown;
    std::vector<Trail> drawn;
    for (const SvgDrawing::Line& line : map.drawing().lines()) {
        drawn.push_back(trailOf(pointsOf(line.path, kPartsOfArc)));
        for (const TQPoint& point : drawn.back().points) {
            shown.add(point);
        }
    }
    std::vector<Trail> expected = map.graticule(kCoarse);
    std::ranges::move(map.sides(kCoarse), std::back_inserter(expected));
    constexpr double edge = 2.0; // points
    for (const Trail& trail : expected) {
        for (const TQPoint& point : trail.points) {
            const bool isShown =
                GetParam().isWhole || (point.x > shown.left + edge && point.x < shown.right - edge &&
                                       point.y > shown.top + edge && point.y < shown.bottom - edge);
            EXPECT_TRUE(
                !isShown ||
                std::ranges::any_of(drawn, [&point](const Trail& line) { return line.passes(point, kNear); }))
                << "at " << point.x << " " << point.y;
        }
    }
}

TEST_P(DrawnMapTest, LiesInItsFrameAndFillsIt) {
    SvgDrawing::Box shown;
    for (const SvgDrawing::Line& line : map.drawing().lines()) {
        for (const TQPoint& point : pointsOf(line.path, kPartsOfArc)) {
            shown.add(point);
        }
    }
    constexpr double allowance = 0.6; // half a point and roundings
    constexpr double top = MapFrame::margin + MapFrame::heading;
    EXPECT_GE(shown.left, MapFrame::margin - allowance);
    EXPECT_LE(shown.right, map.drawing().width() - MapFrame::margin + allowance);
    EXPECT_GE(shown.top, top - allowance);
    EXPECT_LE(shown.bottom, top + kGreatestSize + allowance);
    EXPECT_LE(shown.bottom, map.drawing().height() - MapFrame::margin + allowance);
    const double size = std::max(shown.right - shown.left, shown.bottom - shown.top);
    EXPECT_NEAR(size, kGreatestSize, GetParam().isWhole ? 1.5 : 0.1 * kGreatestSize);
}

TEST_P(DrawnMapTest, LinesHaveNoCorners) {
    constexpr double shortest = 0.2; // points: of shorter control arms nothing can be told
    for (const SvgDrawing::Line& line : map.drawing().lines()) {
        const std::vector<CubicArc>& arcs = line.path.arcs;
        for (std::size_t index = 1; index < arcs.size(); ++index) {
            const double before = distanceOf(arcs[index - 1].secondControl, arcs[index - 1].end);
            const double after = distanceOf(arcs[index - 1].end, arcs[index].firstControl);
            if (before > shortest && after > shortest) {
                const double forRoundings = 1.5 / 256.0 * (1.0 / before + 1.0 / after);
                EXPECT_LT(turnBetween(arcs[index - 1], arcs[index]), 1e-3 + forRoundings)
                    << "at " << arcs[index - 1].end.x << " " << arcs[index - 1].end.y;
            }
        }
    }
}

TEST_P(DrawnMapTest, CitiesAreWherePROJPutsThem) {
    std::vector<TQPoint> expected;
    for (const TQPoint& city : cities()) {
        const TQPoint page = map.pageOf(city);
        if (contains(GetParam().drawn, city) && std::isfinite(page.x) && std::isfinite(page.y)) {
            expected.push_back(page);
        }
    }
    const std::vector<SvgDrawing::Dot>& dots = map.drawing().dots();
    const std::size_t marks = GetParam().marks().size();
    ASSERT_GE(dots.size(), marks);
    if (GetParam().isWhole) {
        ASSERT_EQ(dots.size() - marks, expected.size());
    }
    auto next = expected.begin();
    for (std::size_t index = marks; index < dots.size(); ++index) {
        next = std::find_if(next, expected.end(), [&dots, index](const TQPoint& page) {
            return distanceOf(page, dots[index].centre) < 2.0 * kResolution;
        });
        ASSERT_NE(next, expected.end())
            << "no city at " << dots[index].centre.x << " " << dots[index].centre.y;
        ++next;
    }
}

TEST_P(DrawnMapTest, TextsAreOnThePageAndDoNotOverlap) {
    const std::vector<SvgDrawing::Text>& texts = map.drawing().texts();
    EXPECT_GT(texts.size(), 8U);
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const SvgDrawing::Box& ink = texts[index].ink;
        EXPECT_TRUE(ink.left >= 0.0 && ink.top >= 0.0 && ink.right <= map.drawing().width() &&
                    ink.bottom <= map.drawing().height())
            << ink.left << " " << ink.top;
        for (std::size_t other = 0; other < index; ++other) {
            EXPECT_FALSE(ink.overlaps(texts[other].ink)) << "at " << ink.left << " " << ink.top;
        }
    }
}

/// The numbers of the multiples of a distance that lines of the plane lie on, of uprights or of levels.
std::vector<double> multiplesOf(const DrawnMap& map, double distance, bool isUpright) {
    std::vector<double> numbers;
    for (const CurvePiece& line : map.drawing().linesOf(kGridColour)) {
        const double TQPoint::*const constant = isUpright ? &TQPoint::x : &TQPoint::y;
        const std::vector<TQPoint> points = pointsOf(line, kPartsOfArc);
        if (std::abs(points.front().*constant - points.back().*constant) > 0.1) {
            continue; // of the other kind
        }
        const double number = std::round(map.fit().toPlane(points.front()).*constant / distance);
        const double place = map.fit().toPage({number * distance, number * distance}).*constant;
        for (const TQPoint& point : points) {
            EXPECT_NEAR(point.*constant, place, 2.0 * kResolution) << number;
        }
        numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    numbers.erase(std::ranges::unique(numbers).begin(), numbers.end());
    return numbers;
}

/// The numbers of the multiples of a distance in a range.
std::vector<double> multiplesIn(double least, double greatest, double distance) {
    std::vector<double> numbers;
    for (double number = std::ceil(least / distance); number * distance <= greatest; ++number) {
        numbers.push_back(number);
    }
    return numbers;
}

void expectMetricGrid(const MapCase& test, double metres, double unit) {
    const DrawnMap map(test, metres);
    const SvgDrawing::Box box = map.imageBox();
    const TQPoint least = map.fit().toPlane({box.left, box.bottom});
    const TQPoint greatest = map.fit().toPlane({box.right, box.top});
    const double distance = metres / unit;
    EXPECT_EQ(multiplesOf(map, distance, true), multiplesIn(least.x, greatest.x, distance));
    EXPECT_EQ(multiplesOf(map, distance, false), multiplesIn(least.y, greatest.y, distance));
    EXPECT_GE(map.drawing().textsOf(kNameColour).size(), 4U);
}

TEST(DrawnMetricGrid, LinesAreStraightAtMultiplesOfTheDistanceInMetres) {
    const GeographicExtent germany{6.0, 47.0, 12.0, 55.0};
    expectMetricGrid({"", "EPSG:32632", "EPSG:4326", "EPSG:32632", germany, germany, 1.0, {9.0, 51.0}, 2.5},
                     100'000.0, 1.0);
}

TEST(DrawnMetricGrid, DistanceIsInMetresInASystemOfFeetToo) {
    constexpr double surveyFoot = 1200.0 / 3937.0;
    const GeographicExtent newYork{-74.26, 40.47, -71.8, 41.3};
    expectMetricGrid({"", "EPSG:2263", "EPSG:4269", "EPSG:2263", newYork, newYork, 1.0, {-73.0, 40.9}, 0.3},
                     30'000.0, surveyFoot);
}

// As far as the extent reaches, which is no rectangle.
TEST(DrawnMetricGrid, LinesEndAtTheBorderOfTheExtent) {
    const GeographicExtent germany{6.0, 47.0, 12.0, 55.0};
    const MapCase test{"", "EPSG:32632", "EPSG:4326", "EPSG:32632", germany, germany, 1.0, {9.0, 51.0}, 2.5};
    const DrawnMap map(test, 100'000.0);
    const std::vector<Trail> sides = map.sides(kFine);
    for (const CurvePiece& line : map.drawing().linesOf(kGridColour)) {
        for (const TQPoint& end : {line.start, line.end()}) {
            EXPECT_TRUE(std::ranges::any_of(
                sides, [&end](const Trail& side) { return side.passes(end, 2.0 * kResolution); }))
                << end.x << " " << end.y;
        }
    }
}

// Paris, Lyon, Marseille and Toulouse; the library's own projection beside PROJ's definition EPSG:2154.
TEST(DrawnMap, Lambert93HasItsCitiesInTheirPlaces) {
    const MapCase test = mapCases()[1];
    const DrawnMap map(test);
    for (const TQPoint& city : {TQPoint{2.3488, 48.8534}, TQPoint{4.8467, 45.7485}, TQPoint{5.3811, 43.2970},
                                TQPoint{1.4437, 43.6043}}) {
        EXPECT_TRUE(std::ranges::any_of(map.drawing().dots(), [&map, &city](const SvgDrawing::Dot& dot) {
            return distanceOf(dot.centre, map.pageOf(city)) < kResolution;
        })) << city.x;
    }
}

} // namespace
