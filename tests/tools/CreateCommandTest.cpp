#include "tools/tqproj/CreateCommand.h"

#include "manager/TQProjectionFile.h"
#include "projection/TQProjection.h"
#include "support/TQPath.h"
#include "support/TQUnit.h"
#include "tests/tools/CommandCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A projection like Lambert-93 on the ellipsoid of the resources, or what a test makes of it.
struct CreateCase : CommandCase {
    CreateOptions options{.type = "Lambert",
                          .name = "L93 again",
                          .ellipsoid = "WGS 84",
                          .parameters = {"lambda0=3", "latitudeOrigin=46.5", "X0=700000", "Y0=6600000",
                                         "stdPar1=49", "stdPar2=44", "Tangent=false"},
                          .path = directory.file("out.proj").utf8()};

    ExitCode run() { return CreateCommand(options, output, diagnostics).run(); }

    std::unique_ptr<TQProjection> written() const {
        return TQProjectionFile::createProjectionFromPath(tq_stringFromPath(options.path));
    }

    /// What the command says about options that it refuses; it must not write.
    std::string refusal() {
        EXPECT_EQ(run(), ExitCode::Failure);
        EXPECT_TRUE(directory.entries().empty());
        return messages();
    }
};

// Its numbers are those of EPSG:2154; PROJ 9.1 (cs2cs -f %.3f EPSG:4171 EPSG:2154) gives Paris as
// 652469.023 6862035.259, on an ellipsoid that differs by less than a millimetre there.
TEST(CreateCommand, WritesAProjectionFile) {
    CreateCase test;
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    const std::unique_ptr<TQProjection> projection = test.written();
    ASSERT_NE(projection, nullptr);
    EXPECT_EQ(*projection->name(), "L93 again");
    EXPECT_EQ(*projection->ellipsoid()->name(), "WGS 84");
    TQPoint paris;
    EXPECT_EQ(projection->convertGeoPt(TQAnglePoint(2.3522, 48.8566, TQUnitDegree), paris), 0);
    EXPECT_NEAR(paris.x, 652469.023, 0.002);
    EXPECT_NEAR(paris.y, 6862035.259, 0.002);
}

TEST(CreateCommand, FlagsAndWhatDependsOnThemMayComeInAnyOrder) {
    CreateCase test;
    test.options.parameters = {"k0=0.9996", "Tangent=true"};
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    HashTbl<TQProjParam> table;
    test.written()->getParams(table);
    EXPECT_EQ(table.lookup("k0")->doubleValue(), 0.9996);
    CreateCase other;
    other.options.parameters = {"Tangent=true", "stdPar1=49"};
    EXPECT_THAT(
        other.refusal(),
        StartsWith("tqproj: a projection of this type has no parameter stdPar1; there are: lambda0, "));
}

TEST(CreateCommand, AProjectionOfPROJNeedsADefinitionAlone) {
    CreateCase test;
    test.options.type = "proj4 library";
    test.options.ellipsoid.clear();
    test.options.parameters = {"definition=EPSG:2154"};
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    EXPECT_NE(test.written(), nullptr);
}

TEST(CreateCommand, ADefinitionOfSeveralLinesComesOnOne) {
    CreateCase test;
    test.options.type = "Proj4 Library";
    test.options.ellipsoid.clear();
    test.options.parameters = {"definition=+proj=utm\n+zone=32\r\n+type=crs"};
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    EXPECT_THAT(test.directory.bytesOf("out.proj"), HasSubstr("\n+proj=utm +zone=32  +type=crs"));
}

TEST(CreateCommand, UnknownTypesAreRefusedWithThoseThatThereAre) {
    CreateCase test;
    test.options.type = "Mollweide";
    EXPECT_EQ(
        test.refusal(),
        "tqproj: no type is called Mollweide; there are: Bonne, Gauss-Kruger, Lambert, UTM, Transverse "
        "Mercator, Direct Mercator, Oblique Mercator, Modified Direct Mercator, Polar Stereographic, "
        "Gnomonic, "
        "Polar Azimuthal, EquiRectangular, Swiss Oblique Mercator, Cassini Soldner, GCTP Direct Mercator, "
        "Proj4 Library\n");
}

TEST(CreateCommand, UnknownEllipsoidsAreRefusedWithThoseThatThereAre) {
    CreateCase test;
    test.options.ellipsoid = "Moon";
    const std::string refusal = test.refusal();
    EXPECT_THAT(refusal, StartsWith("tqproj: no ellipsoid is called Moon; there are: "));
    EXPECT_THAT(refusal, HasSubstr("WGS 84"));
}

TEST(CreateCommand, UnknownParametersAreRefusedWithThoseThatThereAre) {
    for (const char* unknown : {"latitude=3", "Nom=Other", "Type=5", "Ellipsoide=x"}) {
        CreateCase test;
        test.options.parameters = {unknown};
        const std::string refusal = test.refusal();
        EXPECT_THAT(refusal, StartsWith("tqproj: a projection of this type has no parameter "));
        EXPECT_THAT(refusal, HasSubstr("; there are: lambda0, latitudeOrigin, X0, Y0, Tangent, "));
    }
}

TEST(CreateCommand, BadValuesAreRefused) {
    for (const char* bad :
         {"lambda0=three", "lambda0=", "Tangent=perhaps", "lambda0=nan", "X0=inf", "X0=1e400"}) {
        CreateCase test;
        test.options.parameters = {bad};
        EXPECT_THAT(test.refusal(), HasSubstr(" is no value for ")) << bad;
    }
    for (const char* bad : {"lambda0", "=3", ""}) {
        CreateCase test;
        test.options.parameters = {bad};
        EXPECT_EQ(test.refusal(),
                  std::string("tqproj: '") + bad + "' is no parameter with \"=\" and a value\n");
    }
}

TEST(CreateCommand, AnEllipsoidIsNeededWhereThereIsNoConversionWithoutOne) {
    CreateCase test;
    test.options.ellipsoid.clear();
    EXPECT_THAT(
        test.refusal(),
        StartsWith("tqproj: a projection of this type needs an ellipsoid (--ellipsoid); there are: "));
}

TEST(CreateCommand, AProjectionOfPROJHasADefinitionAndNoOtherEllipsoid) {
    CreateCase test;
    test.options.type = "Proj4 Library";
    test.options.parameters.clear();
    EXPECT_EQ(test.refusal(),
              "tqproj: the ellipsoid of a projection of this type is that of its definition\n");
    CreateCase undefined;
    undefined.options.type = "Proj4 Library";
    undefined.options.ellipsoid.clear();
    for (const std::vector<std::string>& parameters :
         {std::vector<std::string>{}, std::vector<std::string>{"definition="}}) {
        undefined.options.parameters = parameters;
        EXPECT_THAT(undefined.refusal(), HasSubstr("tqproj: a projection of this type needs a definition"));
    }
}

TEST(CreateCommand, ADefinitionThatTheOtherCommandsRefuseIsRefused) {
    for (const char* definition : {"EPSG:4978", "EPSG:5720", "Bessel"}) {
        CreateCase test;
        test.options.type = "proj4 library";
        test.options.ellipsoid.clear();
        test.options.parameters = {std::string("definition=") + definition};
        EXPECT_THAT(test.refusal(), StartsWith("tqproj: the other commands would refuse the definition: "));
    }
}

TEST(CreateCommand, AnEquirectangularWithoutEllipsoidIsReadBackWithoutOne) {
    CreateCase test;
    test.options.type = "EquiRectangular";
    test.options.ellipsoid.clear();
    test.options.parameters = {};
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    EXPECT_EQ(test.written()->ellipsoid(), nullptr);
}

// RSO Borneo: the flags are there only when they are set.
TEST(CreateCommand, FlagsThatAreListedOnlyWhenTheyAreSetCanBeSet) {
    CreateCase test;
    test.options.type = "Oblique Mercator";
    test.options.parameters = {"longitudeCenter=115",      "latitudeCenter=4", "azimuth=53.3158204722222",
                               "bearing=53.1301023611111", "kc=0.99984",       "HotineFlag=true"};
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    HashTbl<TQProjParam> table;
    test.written()->getParams(table);
    EXPECT_NE(table.lookup("HotineFlag"), nullptr);
    EXPECT_EQ(table.lookup("AzimuthAtOriginFlag"), nullptr);
    CreateCase other;
    other.options.parameters = {"HotineFlag=true"};
    EXPECT_THAT(other.refusal(), StartsWith("tqproj: a projection of this type has no parameter HotineFlag"));
}

TEST(CreateCommand, ADashIsTheStandardOutput) {
    CreateCase test;
    test.options.path = "-";
    ASSERT_EQ(test.run(), ExitCode::Success) << test.messages();
    EXPECT_THAT(test.out(), StartsWith("TQFile v1\n2\nTQPrLambert v1\n"));
}

TEST(CreateCommand, WhatTheOtherParametersMakeMeaninglessIsRefused) {
    CreateCase test;
    test.options.parameters = {"k0=1", "Tangent=false"};
    EXPECT_EQ(test.refusal(), "tqproj: with the other parameters k0 has no meaning\n");
    CreateCase twice;
    twice.options.parameters = {"lambda0=1", "lambda0=2"};
    EXPECT_EQ(twice.refusal(), "tqproj: lambda0 is set twice\n");
}

TEST(CreateCommand, NamesThatAFileCannotHoldAreRefused) {
    for (const std::string name : {"\tx", "a\nb", "a\rb", "a\x1B[2J", "a\xC2\x9B", "a\x7F", "a\xE9"}) {
        CreateCase test;
        test.options.name = name;
        EXPECT_THAT(test.refusal(), StartsWith("tqproj: the name ")) << name;
    }
    CreateCase test;
    test.options.name = std::string(4097, 'x');
    EXPECT_THAT(test.refusal(), HasSubstr(" is longer than 4096 characters\n"));
    test.options.name.pop_back();
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.written()->name()->length(), 4096);
}

/// The Swiss grid with the whole coordinates of its centre, EPSG:2056: the six decimals of the format leave
/// out 0.33e-6 degrees of the longitude and 0.44e-6 of the latitude, 25 mm and 49 mm on the ground.
struct SwissCase : CreateCase {
    SwissCase() {
        options.type = "Swiss Oblique Mercator";
        options.ellipsoid = "Bessel 1841";
        options.parameters = {"longitudeCenter=7.439583333333333", "latitudeCenter=46.952405555555556",
                              "kc=1", "falseEasting=2600000", "falseNorthing=1200000"};
    }

    /// Where the centre comes to.
    TQPoint centre() const {
        TQPoint image;
        const TQAnglePoint place(7.439583333333333, 46.952405555555556, TQUnitDegree);
        EXPECT_EQ(written()->convertGeoPt(place, image), 0);
        return image;
    }
};

TEST(CreateCommand, WhatTheFormatRoundsIsToldInMetres) {
    SwissCase test;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.messages(),
                StartsWith("tqproj: the file rounds the parameters: coordinates move by 55."));
    EXPECT_THAT(test.messages(), HasSubstr("(--exact writes all digits)\n"));
    EXPECT_NEAR(std::hypot(test.centre().x - 2600000.0, test.centre().y - 1200000.0), 0.0556, 0.001);
}

TEST(CreateCommand, ExactNumbersAreReadBackAsTheyAre) {
    SwissCase test;
    test.options.isExact = true;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_EQ(test.messages(), "");
    EXPECT_NEAR(test.centre().x, 2600000.0, 1e-8);
    EXPECT_NEAR(test.centre().y, 1200000.0, 1e-8);
    HashTbl<TQProjParam> table;
    test.written()->getParams(table);
    EXPECT_EQ(table.lookup("latitudeCenter")->doubleValue(), 46.952405555555556);
}

// Six decimals leave nothing of the factor, and 1e-7 is within the tolerance of the class.
TEST(CreateCommand, ARoundingThatMakesAnotherProjectionIsRefused) {
    SwissCase test;
    test.options.parameters[2] = "kc=1e-7";
    EXPECT_THAT(test.refusal(), HasSubstr("the file rounds the parameters"));
}

TEST(CreateCommand, ParametersOfNoMapAreRefused) {
    struct Impossible {
        const char* type;
        std::vector<std::string> parameters;
        const char* sentence;
    };
    for (const Impossible& impossible :
         {Impossible{"Direct Mercator", {"k0=0"}, "k0 is no factor above 0"},
          Impossible{"Direct Mercator", {"k0=-1"}, "k0 is no factor above 0"},
          Impossible{"Oblique Mercator", {"latitudeCenter=4"}, "kc is no factor above 0"},
          Impossible{"EquiRectangular", {"factor_phiRef=0"}, "factor_phiRef is no factor above 0"},
          Impossible{"Direct Mercator", {"lambda0=1e300"}, "lambda0 lies beyond 360 degrees"},
          Impossible{"Direct Mercator", {"lambda0=-360.5"}, "lambda0 lies beyond 360 degrees"},
          Impossible{"Oblique Mercator", {"kc=1", "azimuth=400"}, "azimuth lies beyond 360 degrees"},
          Impossible{"Cassini Soldner", {"phi0=5000"}, "phi0 lies beyond 90 degrees, the latitude of a pole"},
          Impossible{"Bonne",
                     {"standardParallel=-91"},
                     "standardParallel lies beyond 90 degrees, the latitude of a pole"},
          Impossible{"EquiRectangular",
                     {"isFactor=false", "factor_phiRef=91"},
                     "factor_phiRef lies beyond 90 degrees, the latitude of a pole"}}) {
        CreateCase test;
        test.options.type = impossible.type;
        test.options.parameters = impossible.parameters;
        EXPECT_EQ(test.refusal(), std::string("tqproj: ") + impossible.sentence + "\n");
    }
    CreateCase farEast;
    farEast.options.type = "Direct Mercator";
    farEast.options.parameters = {"lambda0=350", "phi0=90", "X0=-5e6"};
    EXPECT_EQ(farEast.run(), ExitCode::Success) << farEast.messages();
}

TEST(CreateCommand, ARefusalLeavesTheFileThatWasThere) {
    CreateCase test;
    test.directory.fileWith("out.proj", "before");
    test.options.parameters = {"lambda0=nan"};
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.directory.bytesOf("out.proj"), "before");
    EXPECT_EQ(test.directory.entries().size(), 1U);
}

TEST(CreateCommand, ADefinitionThatNoLineHoldsIsToldOfTheFileThatWasAskedFor) {
    CreateCase test;
    test.options.type = "Proj4 Library";
    test.options.ellipsoid.clear();
    test.options.parameters = {"definition=EPSG:2154" + std::string(5000, ' ')};
    EXPECT_EQ(test.refusal(), "tqproj: no projection file can be made of it: Error Nr -1 while writing "
                              "projection file: " +
                                  test.options.path.string() + "\n");
}

TEST(CreateCommand, AFileThatCannotBeWrittenIsAFailure) {
    CreateCase test;
    test.options.path = test.directory.file("missing/out.proj").utf8();
    EXPECT_EQ(test.refusal(),
              "tqproj: cannot write " + test.options.path.string() + ": No such file or directory\n");
}

} // namespace
