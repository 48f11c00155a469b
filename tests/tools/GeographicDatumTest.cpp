#include "tools/tqproj/GeographicDatum.h"

#include "proj/TQPrProj4.h"
#include "testing/MadeProjection.h"
#include "testing/ProjOperation.h"
#include "tools/tqproj/LibraryMessages.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

constexpr int utm = 3;
constexpr int gnomonic = 9;

/// A projection on the ellipsoid of ED50, with the shift of the EPSG data set's code 1133 from an ellipsoid.
MadeProjection shifted(int typeCode, double refFlattening = 1.0 / 298.257223563,
                       TQEllipsoid::DatumShiftKind kind = TQEllipsoid::ThreeParameterShift) {
    MadeProjection made(typeCode, international1924, {{"lambda0", 3.0}});
    made.ellipsoid().setDatumShift(kind, 6378137.0, refFlattening, {87.0, 98.0, 121.0});
    return made;
}

std::unique_ptr<TQPrProj4> defined(const char* definition, bool useWGS84Source = false) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->initFromPROJString(definition, useWGS84Source);
    return projection;
}

std::string chosen(TQProjection& projection, DatumChoice choice) {
    LibraryMessages messages;
    return chooseDatum(projection, choice, messages);
}

TQPoint imageOf(const TQProjection& projection, double longitude, double latitude) {
    TQPoint image;
    EXPECT_EQ(projection.convertGeoPt({tq_deg2rad(longitude), tq_deg2rad(latitude)}, image), 0);
    return image;
}

TEST(GeographicDatum, OfShiftedProjectionsIsTheReferenceDatum) {
    EXPECT_EQ(datumText(*shifted(utm)), "WGS 84, by a shift of three parameters");
    EXPECT_EQ(datumText(*shifted(utm, 1.0 / 298.257223563, TQEllipsoid::SevenParameterShift)),
              "WGS 84, by a shift of seven parameters");
    EXPECT_EQ(datumText(*shifted(utm, 1.0 / 297.0)),
              "the reference datum of a shift of three parameters, not WGS 84");
}

TEST(GeographicDatum, OfProjectionsWithoutShiftIsNotKnown) {
    EXPECT_EQ(datumText(*MadeProjection(utm, international1924)), "of the ellipsoid itself, no datum known");
    EXPECT_EQ(datumText(*tq_newProjectionOfType(utm)), "of the ellipsoid itself, no datum known");
}

TEST(GeographicDatum, SomeTypesDoNotApplyTheShift) {
    EXPECT_EQ(datumText(*shifted(gnomonic)),
              "of the ellipsoid itself, whose datum shift this type does not apply");
}

TEST(GeographicDatum, OfDefinitionsIsThatOfTheirSystem) {
    EXPECT_EQ(datumText(*defined("EPSG:27700")), "OSGB36, as EPSG:27700 has it");
    EXPECT_EQ(datumText(*defined("+proj=utm +zone=14 +datum=NAD27")),
              "North American Datum 1927, as its definition has it");
    EXPECT_EQ(datumText(*defined("+proj=merc +ellps=bessel")), "of the ellipsoid itself, no datum known");
    EXPECT_EQ(datumText(*defined("EPSG:27700", true)), "WGS 84, by PROJ's transformation");
    EXPECT_EQ(datumText(*defined("+proj=merc +ellps=bessel", true)),
              "WGS 84, without the shift, which PROJ does not know");
}

// PROJ's UTM on the ellipsoid knows no shift.
TEST(GeographicDatum, OwnOneOfAShiftedProjectionIsWithoutTheShift) {
    const MadeProjection made = shifted(utm);
    const TQPoint onWGS84 = imageOf(*made, 2.0, 49.0);
    EXPECT_EQ(chosen(*made, DatumChoice::Own), "");
    const TQPoint image = imageOf(*made, 2.0, 49.0);
    const TQPoint reference =
        ProjOperation("+proj=utm +zone=31 +ellps=intl").forward({tq_deg2rad(2.0), tq_deg2rad(49.0)});
    EXPECT_NEAR(image.x, reference.x, 1e-3);
    EXPECT_NEAR(image.y, reference.y, 1e-3);
    EXPECT_GT(std::abs(image.y - onWGS84.y), 100.0);
    EXPECT_TRUE(made.ellipsoid().hasDatumShift()) << "of others too";
}

TEST(GeographicDatum, ChoiceOfTheUsualOneChangesNothing) {
    const MadeProjection made = shifted(utm);
    const TQPoint before = imageOf(*made, 2.0, 49.0);
    EXPECT_EQ(chosen(*made, DatumChoice::Usual), "");
    EXPECT_EQ(chosen(*made, DatumChoice::WGS84), "");
    EXPECT_TRUE(imageOf(*made, 2.0, 49.0) == before);
}

TEST(GeographicDatum, DefinitionsAreBuiltForTheOneThatIsChosen) {
    const std::unique_ptr<TQPrProj4> grid = defined("EPSG:27700");
    EXPECT_EQ(chosen(*grid, DatumChoice::WGS84), "");
    EXPECT_TRUE(grid->hasDatumShift());
    EXPECT_EQ(chosen(*grid, DatumChoice::Own), "");
    EXPECT_FALSE(grid->hasDatumShift());
}

TEST(GeographicDatum, WGS84IsRefusedWhereNothingLeadsFromIt) {
    EXPECT_EQ(chosen(*MadeProjection(utm, wgs84), DatumChoice::WGS84),
              "longitude and latitude cannot be on WGS 84: the projection has no datum shift");
    EXPECT_EQ(chosen(*shifted(gnomonic), DatumChoice::WGS84),
              "longitude and latitude cannot be on WGS 84: the projection has no datum shift");
    EXPECT_EQ(chosen(*shifted(utm, 1.0 / 297.0), DatumChoice::WGS84),
              "longitude and latitude cannot be on WGS 84: the datum shift leads from another datum");
    EXPECT_EQ(chosen(*defined("+proj=merc +ellps=bessel"), DatumChoice::WGS84),
              "PROJ knows no transformation between WGS 84 and the datum of the projection");
}

} // namespace
