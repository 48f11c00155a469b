#include "tools/tqproj/ProjectionResolver.h"

#include "proj/TQPrProj4.h"
#include "testing/TemporaryDirectory.h"
#include "tests/tools/ProjectionFiles.h"
#include "tools/tqproj/LibraryMessages.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using Kind = ProjectionArgument::Kind;

// What the resolver says about an argument that means no projection.
std::string problemOf(const std::string& argument,
                      ProjectionArgument::Kind kind = ProjectionArgument::Kind::Any) {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    EXPECT_EQ(resolver.resolve({.text = argument, .kind = kind}), nullptr);
    EXPECT_TRUE(messages.isEmpty());
    return resolver.problem();
}

TEST(ProjectionResolver, FindsAProjectionFile) {
    const TemporaryDirectory directory;
    LibraryMessages messages;
    const std::unique_ptr<TQProjection> projection = ProjectionResolver(messages).resolve(
        {.text = directory.fileWith("world.proj", projectionfiles::WorldMercator).utf8()});
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(projection->name()->utf8(), "World Mercator");
}

TEST(ProjectionResolver, MissingFileHasTheSystemsReason) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("missing.proj").utf8();
    const std::string reason = std::make_error_code(std::errc::no_such_file_or_directory).message();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path + ": " + reason);
}

TEST(ProjectionResolver, OtherFileIsNoProjectionFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("cities.csv", "2,48\n").utf8();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path + ": it is not a projection file");
}

TEST(ProjectionResolver, FaultyProjectionFileHasTheReadersReason) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("unknown.proj", projectionfiles::UnknownType).utf8();
    EXPECT_EQ(problemOf(path),
              "cannot read a projection from " + path + ": line 2: the type code is not known");
    const std::string text = projectionfiles::WorldMercator;
    const std::string cut = directory.fileWith("cut.proj", text.substr(0, text.find("TQEllipsoid"))).utf8();
    EXPECT_EQ(problemOf(cut), "cannot read a projection from " + cut +
                                  ": line 5: the first line of a block is missing or ends in no version");
}

// What a definition makes, as a PROJ string.
std::string projStringOf(const std::string& argument, ProjectionArgument::Kind kind) {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::unique_ptr<TQProjection> projection = resolver.resolve({.text = argument, .kind = kind});
    const auto* const defined = dynamic_cast<const TQPrProj4*>(projection.get());
    return defined != nullptr ? defined->proj4Definition().utf8() : resolver.problem();
}

TEST(ProjectionResolver, TellsADefinitionByItsLook) {
    const std::string expected = projStringOf("EPSG:3857", Kind::Definition);
    EXPECT_EQ(expected.substr(0, 10), "+proj=merc");
    const std::string wkt =
        "PROJCRS[\"M\",BASEGEOGCRS[\"W\",DATUM[\"W\",ELLIPSOID[\"W\",6378137,298.25]]],CONVERSION[\"M\","
        "METHOD[\"Mercator (variant A)\"]],CS[Cartesian,2],AXIS[\"x\",east],AXIS[\"y\",north],UNIT[\"m\",1]]";
    for (const std::string& text : {std::string("EPSG:3857"), std::string("+init=epsg:3857"),
                                    std::string("urn:ogc:def:crs:EPSG::3857")}) {
        EXPECT_EQ(projStringOf(text, Kind::Any), expected) << text;
    }
    EXPECT_EQ(projStringOf(wkt, Kind::Any).substr(0, 10), "+proj=merc");
    EXPECT_EQ(projStringOf("+proj=merc +ellps=bessel", Kind::Any).substr(0, 10), "+proj=merc");
    EXPECT_EQ(projStringOf("WGS 84 / World Mercator", Kind::Definition).substr(0, 10), "+proj=merc")
        << "PROJ's name";
}

TEST(ProjectionResolver, AFileThatLooksLikeADefinitionIsAFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("+proj=merc", projectionfiles::WorldMercator).utf8();
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    ASSERT_NE(resolver.resolve({.text = path}), nullptr);
    EXPECT_STREQ(resolver.resolve({.text = path})->className(), "TQPrMercDirect");
    EXPECT_EQ(resolver.resolve({.text = path, .kind = Kind::Definition}), nullptr);
    EXPECT_EQ(resolver.resolve({.text = "EPSG:3857", .kind = Kind::File}), nullptr);
}

TEST(ProjectionResolver, ADefinitionThatPROJRejectsHasPROJsReasonInOneLine) {
    EXPECT_EQ(problemOf("EPSG:999999"), "cannot make a projection of EPSG:999999: crs not found");
    EXPECT_EQ(problemOf("EPSG:5714"), "cannot make a projection of EPSG:5714: CRS has no geodetic CRS")
        << "vertical";
    const std::string problem = problemOf("+proj=nonsense");
    EXPECT_TRUE(problem.ends_with(": Unknown projection")) << problem;
    EXPECT_EQ(problem.find('\n'), std::string::npos);
}

TEST(ProjectionResolver, FindsASystemByItsNamesInTheCatalogue) {
    const std::string expected = projStringOf("EPSG:2154", Kind::Definition);
    for (const char* name : {"RGF93 v1 / Lambert-93 (EPSG:2154)", "\tEPSG_2154", "\tEPSG:2154"}) {
        EXPECT_EQ(projStringOf(name, Kind::Any), expected) << name;
        EXPECT_EQ(projStringOf(name, Kind::Name), expected) << name;
    }
    EXPECT_EQ(projStringOf("NTF (Paris) / Lambert zone II (EPSG:27572)", Kind::Any),
              projStringOf("EPSG:27572", Kind::Definition));
    EXPECT_EQ(projStringOf("\tIGNF:LAMB93", Kind::Any), projStringOf("IGNF:LAMB93", Kind::Definition));
}

TEST(ProjectionResolver, ADeprecatedSystemHasItsNameInEveryLanguage) {
    const std::string expected = projStringOf("ESRI:102170", Kind::Definition);
    EXPECT_EQ(projStringOf("AGD_1966_VICGRID (deprecated) (ESRI:102170)", Kind::Any), expected);
    EXPECT_EQ(projStringOf("AGD_1966_VICGRID (périmé) (ESRI:102170)", Kind::Any), expected);
    EXPECT_EQ(problemOf("NTF (ESRI:102170)"), "no projection is called NTF (ESRI:102170)");
}

TEST(ProjectionResolver, ADefinitionGetsTheNameOfItsSystem) {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    EXPECT_EQ(*resolver.resolve({.text = "EPSG:2154"})->name(), "RGF93 v1 / Lambert-93");
    EXPECT_EQ(*resolver.resolve({.text = "+proj=merc"})->name(), "+proj=merc") << "it has none";
}

// Three axes; longitude and latitude lead nowhere.
TEST(ProjectionResolver, AGeocentricSystemIsNoProjection) {
    EXPECT_EQ(problemOf("EPSG:4978"), "cannot make a projection of EPSG:4978: it is a geocentric system");
}

TEST(ProjectionResolver, TellsDefinitionsWithBlanksAndWebAddresses) {
    const std::string expected = projStringOf("EPSG:3857", Kind::Definition);
    EXPECT_EQ(projStringOf("http://www.opengis.net/def/crs/EPSG/0/3857", Kind::Any), expected);
    for (const char* text : {"\n{\"type\":1}", " EPSG:1", "GEOGCS [\"", "https://nowhere"}) {
        EXPECT_TRUE(problemOf(text).starts_with("cannot make a projection of ")) << text;
    }
    EXPECT_TRUE(problemOf("C:projection.proj").starts_with("cannot read a projection from ")) << "a drive";
}

TEST(ProjectionResolver, ADirectoryIsNoFile) {
    const TemporaryDirectory directory;
    const std::string reason = std::make_error_code(std::errc::is_a_directory).message();
    const std::string path = directory.directory().utf8();
    EXPECT_EQ(problemOf(path), "cannot read a projection from " + path + ": " + reason);
}

TEST(ProjectionResolver, FindsProjectionsOfTheResourcesByName) {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    for (const char* name : {"Lambert-93", "CH1903+ / LV95", "Lambert zone II étendu (NTF)"}) {
        const std::unique_ptr<TQProjection> projection = resolver.resolve({.text = name});
        ASSERT_NE(projection, nullptr) << resolver.problem();
        EXPECT_EQ(projection->name()->utf8(), name);
        EXPECT_NE(projection->ellipsoid(), nullptr);
        EXPECT_TRUE(resolver.path().extension() == ".proj") << resolver.path();
    }
}

TEST(ProjectionResolver, NearMissesAreNamed) {
    EXPECT_EQ(problemOf("lambert93"), "no projection is called lambert93; near names: Lambert-93");
    EXPECT_TRUE(problemOf("plate").ends_with("; near names: Plate carrée (WGS 84)"));
}

TEST(ProjectionResolver, TheUsersDirectoryComesBeforeTheResources) {
    const TemporaryDirectory directory;
    std::string text = projectionfiles::WorldMercator;
    text.replace(text.find("World Mercator"), std::string("World Mercator").size(), "Lambert-93");
    const std::string path = directory.fileWith("mine.proj", text).utf8();
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::unique_ptr<TQProjection> projection =
        resolver.resolve({.text = "Lambert-93", .directory = directory.directory().utf8()});
    ASSERT_NE(projection, nullptr);
    EXPECT_STREQ(projection->className(), "TQPrMercDirect");
    EXPECT_EQ(resolver.path(), path);
}

// The library would give the first one the registered ellipsoid of the name, and drop the second one for the
// resource, from which it differs by less than the tolerance of the class.
TEST(ProjectionResolver, TheUsersFileKeepsItsNumbersByItsName) {
    const std::pair<const char*, const char*> changes[] = {{"6378137\n", "6378000\n"},
                                                           {"\n0\n0\n0\n0\n1\n", "\n0\n0\n0.5\n0\n1\n"}};
    for (const auto& [number, another] : changes) {
        const TemporaryDirectory directory;
        std::string text = projectionfiles::WorldMercator;
        text.replace(text.find("World Mercator"), std::string("World Mercator").size(),
                     "World Mercator (WGS 84)");
        text.replace(text.find(number), std::string(number).size(), another);
        const std::string path = directory.fileWith("mine.proj", text).utf8();
        LibraryMessages messages;
        ProjectionResolver byPath(messages);
        ProjectionResolver byName(messages);
        const auto ofPath = byPath.resolve({.text = path});
        const auto ofName = byName.resolve({.text = "World Mercator (WGS 84)",
                                            .kind = Kind::Name,
                                            .directory = directory.directory().utf8()});
        ASSERT_NE(ofPath, nullptr) << byPath.problem();
        ASSERT_NE(ofName, nullptr) << byName.problem();
        TQPoint expected;
        TQPoint point;
        EXPECT_EQ(ofPath->convertGeoPt(TQPoint{0.5, 0.7}, expected), 0);
        EXPECT_EQ(ofName->convertGeoPt(TQPoint{0.5, 0.7}, point), 0);
        EXPECT_EQ(point.x, expected.x);
        EXPECT_EQ(point.y, expected.y);
        EXPECT_EQ(byName.path(), path);
    }
}

TEST(ProjectionResolver, FilesOfTheDirectoryThatCannotBeReadAreTold) {
    const TemporaryDirectory directory;
    directory.fileWith("mine.proj", projectionfiles::UnknownType);
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::string path = directory.directory().utf8();
    EXPECT_EQ(resolver.resolve({.text = "Atlantis", .directory = path}), nullptr);
    EXPECT_EQ(resolver.problem(), "no projection is called Atlantis; cannot read a projection from " + path +
                                      "/mine.proj: the type code is not known");
    EXPECT_NE(resolver.resolve({.text = "Lambert-93", .directory = path}), nullptr);
}

// The resources have a projection of that name, which the user's file was to take the place of.
TEST(ProjectionResolver, AFileOfTheNameThatCannotBeReadIsAProblem) {
    const TemporaryDirectory directory;
    directory.fileWith("mine.proj", "TQFile v1\n2\nTQPrLambert v1\nTQProjection v1\nLambert-93\n"
                                    "TQEllipsoid v2\nGRS 1980\n6378137\n");
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::string path = directory.directory().utf8();
    EXPECT_EQ(resolver.resolve({.text = "Lambert-93", .directory = path}), nullptr);
    EXPECT_EQ(resolver.problem(), "cannot read a projection from " + path +
                                      "/mine.proj: the line of the squared eccentricity is missing");
}

TEST(ProjectionResolver, AMissingDirectoryIsAProblem) {
    const TemporaryDirectory directory;
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::string missing = directory.file("missing").utf8();
    EXPECT_EQ(resolver.resolve({.text = "Lambert-93", .directory = missing}), nullptr);
    EXPECT_EQ(resolver.problem(), "cannot read the directory " + missing);
}

TEST(ProjectionResolver, AnExternalNameKeepsItsMark) {
    LibraryMessages messages;
    const std::unique_ptr<TQProjection> projection =
        ProjectionResolver(messages).resolve({.text = "\tEPSG_27572\r", .kind = Kind::Any});
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), "\tEPSG_27572\r");
    EXPECT_TRUE(projection->hasDatumShift());
}

TEST(ProjectionResolver, ANameThatTheCatalogueDoesNotKnowIsAProblem) {
    EXPECT_EQ(problemOf("Atlantis (EPSG:1)"), "no projection is called Atlantis (EPSG:1)");
    EXPECT_EQ(problemOf("Atlantis", Kind::Name), "no projection is called Atlantis");
    EXPECT_EQ(problemOf("\tno colon"), "no projection is called \\x09no colon");
    EXPECT_EQ(problemOf("\tEPSG_999999"), "cannot make a projection of \\x09EPSG_999999: crs not found");
}

TEST(ProjectionResolver, WhatHasASlashOrTheExtensionIsAPath) {
    for (const char* path : {"missing.proj", "./name", "folder/name", "a/ b", "/", "C:\\name"}) {
        EXPECT_TRUE(problemOf(path).starts_with("cannot read a projection from ")) << path;
    }
    for (const char* name :
         {"plain", "no code (at all)", "(EPSG:1)", "empty (:)", "behind (EPSG:1) it", "A / B", "x.projx"}) {
        EXPECT_TRUE(problemOf(name).starts_with("no projection is called " + std::string(name))) << name;
    }
}

TEST(ProjectionResolver, AFileThatLooksLikeANameIsAFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.fileWith("World (EPSG:3857)", projectionfiles::WorldMercator).utf8();
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    ASSERT_NE(resolver.resolve({.text = path}), nullptr);
    EXPECT_EQ(resolver.resolve({.text = path, .kind = Kind::Name}), nullptr);
}

TEST(ProjectionResolver, AFileMayHoldADefinition) {
    const TemporaryDirectory directory;
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::string good =
        directory.fileWith("good.proj", "TQFile v1\n127\nTQPrProj4 v0\nWorld\nEPSG:3857\n").utf8();
    const std::unique_ptr<TQProjection> projection = resolver.resolve({.text = good});
    ASSERT_NE(projection, nullptr);
    EXPECT_FALSE(projection->isInvalid());
    const std::string bad =
        directory.fileWith("bad.proj", "TQFile v1\n127\nTQPrProj4 v0\nNone\nEPSG:999999\n").utf8();
    EXPECT_EQ(problemOf(bad), "cannot read a projection from " + bad + ": crs not found");
}

} // namespace
