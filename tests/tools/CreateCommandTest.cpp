#include "tools/tqproj/CreateCommand.h"

#include "manager/TQProjectionFile.h"
#include "projection/TQProjection.h"
#include "support/TQUnit.h"
#include "tests/tools/CommandCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

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

    ExitCode run() { return CreateCommand(options, diagnostics).run(); }

    std::unique_ptr<TQProjection> written() const {
        return TQProjectionFile::createProjectionFromPath(TQString(options.path.c_str()));
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
    for (const char* bad : {"lambda0=three", "lambda0=", "Tangent=perhaps"}) {
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

TEST(CreateCommand, AFileThatCannotBeWrittenIsAFailure) {
    CreateCase test;
    test.options.path = test.directory.file("missing/out.proj").utf8();
    EXPECT_EQ(test.refusal(), "tqproj: cannot write " + test.options.path + ": No such file or directory\n");
}

} // namespace
