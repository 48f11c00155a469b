#include "tools/tqproj/map/KnownAreas.h"

#include "manager/TQProjectionFile.h"
#include "proj/TQPrProj4.h"
#include "projections/TQPrMercDirect.h"
#include "testing/CapturedMessages.h"
#include "testing/MadeProjection.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"
#include "tests/tools/Borders.h"
#include "tools/tqproj/ProjectionLibrary.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace {

/// The text of a projection file.
std::string fileOf(const std::string& name) {
    return "TQFile v1\n5\nTQPrMercator v1\nTQProjection v1\n" + name +
           "\nTQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n0\n0\n0\n0\n1\n";
}

/// The projection of a file of that text.
std::unique_ptr<TQProjection> madeOf(const std::string& text) {
    const TemporaryDirectory directory;
    return TQProjectionFile::createProjectionFromPath(directory.fileWith("made.proj", text));
}

/// The projection that comes with the library under a name.
std::unique_ptr<TQProjection> shipped(const char* name) {
    ProjectionLibrary library("");
    std::unique_ptr<TQProjection> projection = tq_copyOf(*library.projection(name));
    projection->setOwnEllipsoid(std::make_unique<TQEllipsoid>(*projection->ellipsoid()));
    return projection;
}

/// A projection of PROJ with a name.
TQPrProj4 defined(const char* definition, const char* name) {
    TQPrProj4 projection;
    projection.rename(TQString(name));
    projection.initFromPROJString(definition, false);
    return projection;
}

/// A shared directory with a file of areas, whose projections are those of fileOf().
class SharedAreas {
  public:
    explicit SharedAreas(const std::string& areas) { _directory.fileWith("resProj/areas.tsv", areas); }

    /// The area of a projection that comes with the directory.
    std::optional<GeographicExtent> of(const std::string& name) const {
        _directory.fileWith("resProj/Projection/made.proj", fileOf(name));
        return KnownAreas().of(*madeOf(fileOf(name)));
    }

  private:
    TemporaryDirectory _directory;
    SharedDirectory _shared{_directory.directory()};
};

// Areas as the registry of the EPSG data set publishes them.
TEST(KnownAreas, KnowsThoseOfTheResources) {
    const KnownAreas areas;
    expectBorders(areas.of(*shipped("Lambert-93")), -9.86, 41.15, 10.38, 51.56);
    expectBorders(areas.of(*shipped("CH1903+ / LV95")), 5.96, 45.82, 10.49, 47.81);
    expectBorders(areas.of(*shipped("Lambert zone II étendu (NTF)")), -4.87, 42.33, 8.23, 51.14);
    expectBorders(areas.of(*shipped("Plate carrée (WGS 84)")), -180.0, -90.0, 180.0, 90.0);
    EXPECT_FALSE(areas.of(*shipped("Bonne of France (Plessis 1817)")).has_value());
    EXPECT_FALSE(areas.of(*madeOf(fileOf("Atlantis"))).has_value());
    EXPECT_FALSE(areas.of(TQPrMercDirect()).has_value()) << "no name";
}

TEST(KnownAreas, AReferenceSystemHasItsAreaOfUse) {
    const KnownAreas areas;
    expectBorders(areas.of(defined("EPSG:2056", "Switzerland")), 5.96, 45.82, 10.49, 47.81);
    expectBorders(areas.of(defined("EPSG:3832", "PDC Mercator")), 98.69, -60.0, -68.0 + 360.0, 66.67);
    expectBorders(areas.of(defined("EPSG:2056", "Lambert-93")), 5.96, 45.82, 10.49, 47.81);
}

// The areas of the data set are counted from Greenwich; Jakarta lies 106.8077 degrees east of it.
TEST(KnownAreas, ASystemOnAnotherMeridianHasLongitudesFromThere) {
    const double jakarta = 106.0 + 48.0 / 60.0 + 27.79 / 3600.0;
    const auto area = KnownAreas().of(defined("EPSG:5330", "Batavia (Jakarta) / NEIEZ"));
    ASSERT_TRUE(area.has_value());
    EXPECT_NEAR(area->west, 95.16 - jakarta, 1e-9);
    EXPECT_NEAR(area->east, 115.77 - jakarta, 1e-9);
    EXPECT_EQ(area->south, -8.91);
    EXPECT_EQ(area->north, 5.97);
    TQPrProj4 onWGS84;
    onWGS84.initFromPROJString("EPSG:5330", true);
    expectBorders(KnownAreas().of(onWGS84), 95.16, -8.91, 115.77, 5.97);
}

TEST(KnownAreas, AnotherDefinitionOfANameThatComesWithTheLibraryIsNotKnown) {
    const CapturedMessages messages;
    const KnownAreas areas;
    EXPECT_FALSE(areas.of(*madeOf(fileOf("Lambert-93"))).has_value());
    EXPECT_FALSE(areas.of(defined("+proj=lcc +lat_1=44 +lat_2=49", "Lambert-93")).has_value());
    MadeProjection elsewhere(shipped("CH1903+ / LV95"));
    elsewhere.set({{"longitudeCenter", 8.0}});
    EXPECT_FALSE(areas.of(*elsewhere).has_value());
}

TEST(KnownAreas, APROJStringHasNoArea) {
    const CapturedMessages messages;
    const KnownAreas areas;
    EXPECT_FALSE(areas.of(defined("+proj=merc", "Mercator")).has_value());
    EXPECT_FALSE(areas.of(defined("EPSG:999999", "Broken")).has_value());
}

TEST(KnownAreas, AnAreaMayPassTheAntimeridian) {
    const SharedAreas areas("Fiji\t176.81\t-20.81\t-178.15\t-12.42\n");
    expectBorders(areas.of("Fiji"), 176.81, -20.81, -178.15 + 360.0, -12.42);
}

TEST(KnownAreas, MalformedLinesDoNotCount) {
    const SharedAreas areas("\n"
                            "no columns\n"
                            "too few\t1\t2\t3\n"
                            "no number\t1\t2\t3\tx\n"
                            "empty\t1\t\t3\t4\n"
                            "commas\t1,2\t3,4\n"
                            "upside down\t1\t4\t3\t2\n"
                            "beyond\t1\t2\t3\t91\n"
                            "good\t1\t2\t3\t4\n"
                            "good\t5\t6\t7\t8\n"
                            "wide\t1\t2\t3\t4\tand more\n"
                            "last\t1\t2\t3\t4");
    for (const char* name :
         {"no columns", "too few", "no number", "empty", "commas", "upside down", "beyond"}) {
        EXPECT_FALSE(areas.of(name).has_value()) << name;
    }
    expectBorders(areas.of("good"), 1.0, 2.0, 3.0, 4.0);
    expectBorders(areas.of("wide"), 1.0, 2.0, 3.0, 4.0);
    expectBorders(areas.of("last"), 1.0, 2.0, 3.0, 4.0);
}

TEST(KnownAreas, WithoutTheFileThereAreThoseOfReferenceSystems) {
    const std::unique_ptr<TQProjection> lambert = shipped("Lambert-93");
    const TemporaryDirectory empty;
    const SharedDirectory shared(empty.directory());
    const KnownAreas areas;
    EXPECT_FALSE(areas.of(*lambert).has_value());
    expectBorders(areas.of(defined("EPSG:2056", "Switzerland")), 5.96, 45.82, 10.49, 47.81);
}

} // namespace
