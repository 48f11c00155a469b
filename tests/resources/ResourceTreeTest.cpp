#include "resources/ResourceTree.h"

#include "manager/ManagerCase.h"
#include "support/TQDirectory.h"
#include "support/TQPath.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The resource tree as a user gets it: the built shared directory, read by a manager.

using resourcetree::compare;
using resourcetree::Comparison;
using resourcetree::EpsgObject;
using resourcetree::EpsgProjection;
using resourcetree::EpsgTransformation;
using resourcetree::linesOf;
using resourcetree::projectionOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TQProjMgr& manager() {
    static TQProjMgr shared(true);
    return shared;
}

int filesIn(const char* folder, const char* extension) {
    int count = 0;
    for ([[maybe_unused]] const TQString& name :
         TQOpenDir(tq_createPath(TQGetApplicationSharedDirectory(), "resProj", folder), extension)) {
        ++count;
    }
    return count;
}

double parameter(const TQProjection& projection, const char* name) {
    HashTbl<TQProjParam> table;
    projection.getParams(table);
    return table.lookup(name)->doubleValue();
}

/// What the way back of a projection may differ by in metres (docs/accuracy.md): a millimetre, and what two
/// classes are known for.
double inverseAllowance(const TQProjection& projection, const std::vector<TQPoint>& points) {
    constexpr double millimetre = 1e-3;
    const double a = projection.ellipsoid()->semiMajorAxis();
    const double e2 = projection.ellipsoid()->eccentricitySquared();
    if (projection.isKindOf("TQPrPolarStereo") != 0) {
        // The latitude stops when a pass changes it by 1e-6 rad at most.
        const double ratio = e2 / (1.0 - e2);
        return millimetre + 1e-6 * ratio / (1.0 - ratio) * a;
    }
    if (projection.isKindOf("TQPrCassiniSoldner") == 0) {
        return millimetre;
    }
    // A coefficient has the divisor 696 where Snyder's equation 3-26 has 96, and the series in the distance
    // from the central meridian leave out its powers e²·D⁴ and D⁶.
    double distance = 0.0;
    for (const TQPoint& point : points) {
        const double fromMeridian = point.x - tq_deg2rad(parameter(projection, "lambda0"));
        distance = std::fmax(distance, std::abs(fromMeridian * std::cos(point.y)));
    }
    const double e1 = (1.0 - std::sqrt(1.0 - e2)) / (1.0 + std::sqrt(1.0 - e2));
    const double divisor = 151.0 * e1 * e1 * e1 * (1.0 / 96.0 - 1.0 / 696.0);
    return millimetre + a * (divisor + e2 * std::pow(distance, 4) + std::pow(distance, 6));
}

/// What the shift of an ellipsoid may differ by from EPSG's transformation, of which it is the first-order
/// inverse, in metres. Three parameters: the abridged formula leaves out the flattening times what it
/// adds, and its square over the radius. Seven: the products of rotation, scale and translation, and what
/// the latitude's stop at 1e-9 rad leaves.
double shiftAllowance(const TQEllipsoid& ellipsoid) {
    const auto [dx, dy, dz, rx, ry, rz, scalePpm] = ellipsoid.datumShiftParameters();
    const double translation = std::sqrt(dx * dx + dy * dy + dz * dz);
    const double a = ellipsoid.semiMajorAxis();
    const double f = 1.0 / ellipsoid.inverseFlattening();
    if (ellipsoid.datumShiftKind() == TQEllipsoid::ThreeParameterShift) {
        const double axes =
            std::abs(a - ellipsoid.refSemiMajorAxis()) + a * std::abs(f - ellipsoid.refFlattening());
        const double added = translation + axes;
        return f * added + added * added / a;
    }
    const double turn = std::sqrt(rx * rx + ry * ry + rz * rz) + std::abs(scalePpm) * 1e-6;
    return turn * (translation + turn * a) + 1e-4;
}

/// The ellipsoids with a datum shift by the names of their datums.
std::map<std::string, const TQEllipsoid*> shiftedEllipsoids() {
    std::map<std::string, const TQEllipsoid*> shifted;
    HashState<TQEllipsoid> state;
    while (const TQEllipsoid* ellipsoid = manager().ellipsoidManager().ellipsoids().next(state)) {
        const std::string name = ellipsoid->name()->utf8();
        if (ellipsoid->hasDatumShift()) {
            shifted[name.substr(name.find('/') + 1)] = ellipsoid;
        }
    }
    return shifted;
}

/// The borders in the table of areas by the names of projections.
std::map<std::string, std::vector<std::string>> filedAreas() {
    std::istringstream file(
        readBytes(tq_createPath(TQGetApplicationSharedDirectory(), "resProj", "areas.tsv")));
    std::map<std::string, std::vector<std::string>> areas;
    for (std::string text; std::getline(file, text);) {
        std::istringstream columns(text);
        std::string name;
        std::getline(columns, name, '\t');
        EXPECT_FALSE(areas.contains(name)) << name;
        for (std::string border; std::getline(columns, border, '\t');) {
            areas[name].push_back(border);
        }
    }
    return areas;
}

/// The lines of both lists: of the projections that tqresources makes, and of those made by hand that have a
/// code.
std::vector<CodeLine> codedProjections() {
    std::vector<CodeLine> lines = linesOf("projections.tsv");
    std::ranges::copy(linesOf("made-by-hand.tsv"), std::back_inserter(lines));
    return lines;
}

} // namespace

TEST(ResourceTree, AManagerReadsItWithoutAWord) {
    const CapturedMessages messages;
    const CapturedPanels panels;
    const TQProjMgr fresh(true);
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_THAT(panels.shown(), IsEmpty());
}

TEST(ResourceTree, EveryFileGivesAProjectionOfItsOwnNameOnARegisteredEllipsoid) {
    std::set<std::string> names;
    HashState<TQProjection> state;
    while (const TQProjection* projection = manager().traverseUserProjs(&state)) {
        SCOPED_TRACE(projection->name()->utf8());
        EXPECT_TRUE(names.insert(projection->name()->utf8()).second);
        EXPECT_NE(manager().resourcePath(*projection->name()), nullptr);
        const TQEllipsoid* ellipsoid = projection->ellipsoid();
        ASSERT_NE(ellipsoid, nullptr);
        EXPECT_EQ(manager().ellipsoidManager().ellipsoidWithName(ellipsoid->name()), ellipsoid);
    }
    EXPECT_EQ(static_cast<int>(names.size()), filesIn("Projection", "proj"));
    EXPECT_GE(names.size(), 300U);
}

TEST(ResourceTree, EveryEllipsoidAndDatumFileGivesAnEllipsoid) {
    EXPECT_EQ(manager().ellipsoidManager().ellipsoids().count(),
              filesIn("Ellipsoids", "ell") + filesIn("Datum", "dtm"));
    EXPECT_GE(filesIn("Datum", "dtm"), 40);
}

TEST(ResourceTree, AListedProjectionHasTheDatumOfItsLine) {
    for (const CodeLine& line : linesOf("projections.tsv")) {
        SCOPED_TRACE(line.name);
        const TQProjection* projection = projectionOf(manager(), line);
        ASSERT_NE(projection, nullptr);
        const std::string ellipsoid = projection->ellipsoid()->name()->utf8();
        EXPECT_EQ(projection->ellipsoid()->hasDatumShift(), !line.datum.empty());
        EXPECT_EQ(ellipsoid.ends_with("/" + line.datum), !line.datum.empty()) << ellipsoid;
    }
}

TEST(ResourceTree, EllipsoidsHaveTheSizeOfTheDataSet) {
    for (const CodeLine& line : linesOf("ellipsoids.tsv")) {
        SCOPED_TRACE(line.name);
        const EpsgObject reference(line.code, PJ_CATEGORY_ELLIPSOID);
        double a = 0.0;
        double b = 0.0;
        ASSERT_NE(
            proj_ellipsoid_get_parameters(reference.context(), reference.handle(), &a, &b, nullptr, nullptr),
            0);
        const TQEllipsoid* ours = manager().ellipsoidManager().ellipsoidWithName(TQString(line.name.c_str()));
        ASSERT_NE(ours, nullptr);
        EXPECT_STREQ(line.name.c_str(), proj_get_name(reference.handle()));
        // Thirteen digits of the file.
        EXPECT_NEAR(ours->semiMajorAxis(), a, 5e-7);
        EXPECT_NEAR(ours->semiMajorAxis() * std::sqrt(1.0 - ours->eccentricitySquared()), b, 1e-6);
    }
}

TEST(ResourceTree, EveryEllipsoidOfASystemInUseIsThere) {
    std::set<std::string> listed;
    for (const CodeLine& line : linesOf("ellipsoids.tsv")) {
        listed.insert(line.code);
    }
    const EpsgObject any("4326", PJ_CATEGORY_CRS);
    int count = 0;
    PROJ_CRS_INFO** systems = proj_get_crs_info_list_from_database(any.context(), "EPSG", nullptr, &count);
    int geodetic = 0;
    for (int index = 0; index < count; ++index) {
        const PROJ_CRS_INFO& info = *systems[index];
        const bool isGeodetic = info.type == PJ_TYPE_GEOGRAPHIC_2D_CRS ||
                                info.type == PJ_TYPE_GEOGRAPHIC_3D_CRS || info.type == PJ_TYPE_GEOCENTRIC_CRS;
        if (isGeodetic && info.deprecated == 0) {
            PJ* system =
                proj_create_from_database(any.context(), "EPSG", info.code, PJ_CATEGORY_CRS, 0, nullptr);
            PJ* ellipsoid = proj_get_ellipsoid(any.context(), system);
            EXPECT_TRUE(listed.contains(proj_get_id_code(ellipsoid, 0))) << proj_get_name(ellipsoid);
            proj_destroy(ellipsoid);
            proj_destroy(system);
            ++geodetic;
        }
    }
    proj_crs_info_list_destroy(systems);
    EXPECT_GT(geodetic, 500);
}

TEST(ResourceTree, DatumsShiftAsTheTransformationsOfTheDataSet) {
    const std::map<std::string, const TQEllipsoid*> shifted = shiftedEllipsoids();
    for (const CodeLine& line : linesOf("datums.tsv")) {
        SCOPED_TRACE(line.name);
        ASSERT_TRUE(shifted.contains(line.name));
        const TQEllipsoid& ellipsoid = *shifted.at(line.name);
        const EpsgTransformation reference(line.code);
        const double allowed = shiftAllowance(ellipsoid);
        for (const TQPoint& point : reference.points()) {
            TQPoint local = point;
            ellipsoid.toLocalDatum(local.x, local.y);
            EXPECT_LE(ellipsoid.semiMajorAxis() * groundAngle(local, reference.toLocal(point)), allowed);
            TQPoint back = point;
            ellipsoid.toReferenceDatum(back.x, back.y);
            EXPECT_LE(ellipsoid.semiMajorAxis() * groundAngle(back, reference.toWgs84(point)), allowed);
        }
    }
}

// Seven parameters lead to a height above the local ellipsoid, which is dropped, so that the way back starts
// beside the place: by the height times the angle between the verticals, which is what the shift moves the
// place by over the radius. Where a datum is used, heights are tens of metres; at the antipodes a kilometre.
TEST(ResourceTree, ADatumOfSevenParametersLeadsThereAndBackWhereItIsUsed) {
    constexpr double inUse = 0.005;
    constexpr double worldwide = 0.19;
    const auto closure = [](const TQEllipsoid& ellipsoid, const TQPoint& point) {
        TQPoint moved = point;
        ellipsoid.toLocalDatum(moved.x, moved.y);
        ellipsoid.toReferenceDatum(moved.x, moved.y);
        return ellipsoid.semiMajorAxis() * groundAngle(moved, point);
    };
    const std::map<std::string, const TQEllipsoid*> shifted = shiftedEllipsoids();
    for (const CodeLine& line : linesOf("datums.tsv")) {
        const TQEllipsoid& ellipsoid = *shifted.at(line.name);
        if (ellipsoid.datumShiftKind() == TQEllipsoid::SevenParameterShift) {
            SCOPED_TRACE(line.name);
            for (const TQPoint& point : EpsgTransformation(line.code).points()) {
                EXPECT_LE(closure(ellipsoid, point), inUse);
            }
            for (double longitude = -180.0; longitude < 180.0; longitude += 5.0) {
                for (double latitude = -85.0; latitude <= 85.0; latitude += 5.0) {
                    const TQPoint point{tq_deg2rad(longitude), tq_deg2rad(latitude)};
                    ASSERT_LE(closure(ellipsoid, point), worldwide) << longitude << ", " << latitude;
                }
            }
        }
    }
}

TEST(ResourceTree, ProjectionsAgreeWithTheSystemsOfTheDataSet) {
    constexpr double millimetre = 1e-3;
    for (const CodeLine& line : linesOf("projections.tsv")) {
        SCOPED_TRACE("EPSG:" + line.code + ", " + line.name);
        TQProjection* projection = projectionOf(manager(), line);
        ASSERT_NE(projection, nullptr);
        const Comparison comparison = compare(*projection, line);
        EXPECT_LT(comparison.forward.max(), millimetre);
        EXPECT_LT(comparison.inverse.max(),
                  inverseAllowance(*projection, EpsgProjection(line.code).points()));
        if (!line.datum.empty()) {
            // Distances on the plane are those on the ground but for the scale of the projection.
            constexpr double scale = 1.05;
            EXPECT_LT(comparison.shifted.max(),
                      scale * shiftAllowance(*projection->ellipsoid()) + millimetre);
        }
    }
}

TEST(ResourceTree, TheTableOfAreasHasTheAreaOfUseOfEachSystem) {
    const std::map<std::string, std::vector<std::string>> areas = filedAreas();
    EXPECT_EQ(areas.size(), codedProjections().size());
    for (const CodeLine& line : codedProjections()) {
        SCOPED_TRACE("EPSG:" + line.code + ", " + line.name);
        ASSERT_TRUE(areas.contains(line.name));
        const std::vector<std::string>& borders = areas.at(line.name);
        const std::array<double, 4> expected = EpsgObject(line.code, PJ_CATEGORY_CRS).area();
        ASSERT_EQ(borders.size(), expected.size());
        for (std::size_t index = 0; index < expected.size(); ++index) {
            EXPECT_EQ(borders[index], fullText(expected[index]));
        }
    }
}

TEST(ResourceTree, ProjectionsWithoutAnAreaAreThoseThatNoSystemOfTheDataSetIs) {
    const std::map<std::string, std::vector<std::string>> areas = filedAreas();
    std::set<std::string> without;
    HashState<TQProjection> state;
    while (const TQProjection* projection = manager().traverseUserProjs(&state)) {
        if (const std::string name = projection->name()->utf8(); !areas.contains(name)) {
            without.insert(name);
        }
    }
    EXPECT_THAT(without,
                ElementsAre("Bonne of France (Plessis 1817)", "North Pole azimuthal equidistant (sphere)",
                            "North Pole gnomonic (sphere)", "South Pole azimuthal equidistant (sphere)",
                            "South Pole gnomonic (sphere)"));
}

// The sea ice systems, whose scale factor has six decimals, differ most.
TEST(ResourceTree, ProjectionsMadeByHandAreTheSystemsOfTheirCodes) {
    constexpr double metre = 1.0;
    for (const CodeLine& line : linesOf("made-by-hand.tsv")) {
        SCOPED_TRACE("EPSG:" + line.code + ", " + line.name);
        TQProjection* projection = projectionOf(manager(), line);
        ASSERT_NE(projection, nullptr);
        const EpsgProjection reference(line.code);
        for (const TQPoint& geo : reference.points()) {
            TQPoint global;
            projection->convertGeoPt(geo, global);
            const TQPoint expected = reference.forward(geo);
            const double unit = line.code == "30200" ? 0.201166195164 : metre; // Clarke's links
            EXPECT_LT(planeDistance(global, {unit * expected.x, unit * expected.y}), metre);
        }
    }
}
