#include "projections/TQPrPolar.h"

#include "projections/PolarSample.h"
#include "projections/TQPrPolarAzimuthal.h"
#include "projections/TQPrPolarGnomon.h"
#include "projections/TQPrPolarStereo.h"
#include "testing/CapturedMessages.h"
#include "testing/ConvertedPoints.h"
#include "testing/Identity.h"
#include "testing/ProjectionFiles.h"
#include "testing/VirtualPlace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr TQPoint kUntouched{123.0, 456.0};

/// A polar projection that adds nothing and counts how often it is asked for its constants.
class BarePolar : public TQPrPolar {
    TQ_IDENTITY(BarePolar, TQPrPolar)

  public:
    BarePolar() = default;
    void computeConstants() const override { ++computations; }

    mutable int computations = 0;
};

/// What the three classes of the family share.
template <class Polar>
class TQPrPolarFamily : public testing::Test {
  protected:
    Polar at(bool isNorth) {
        Polar projection;
        projection.setEllipsoid(&_ellipsoid);
        takePolarSample(projection, isNorth);
        return projection;
    }

    TQEllipsoid _ellipsoid = sampleEllipsoid();
};

/// What the two classes of the sphere share, at either pole.
template <class Polar>
class TQPrPolarSphere : public TQPrPolarFamily<Polar> {
  protected:
    /// Checks a projection of each pole.
    template <class Check>
    void atBothPoles(const Check& check) {
        for (const bool isNorth : {true, false}) {
            SCOPED_TRACE(isNorth ? "north" : "south");
            Polar projection = this->at(isNorth);
            check(projection);
        }
    }
};

using SphericalClasses = testing::Types<TQPrPolarGnomon, TQPrPolarAzimuthal>;
TYPED_TEST_SUITE(TQPrPolarSphere, SphericalClasses);

using PolarClasses = testing::Types<TQPrPolarStereo, TQPrPolarGnomon, TQPrPolarAzimuthal>;
TYPED_TEST_SUITE(TQPrPolarFamily, PolarClasses);

} // namespace

// ---- the base alone --------------------------------------------------------------------------------------

// Programs compiled against the library call virtual operations by their place.
#ifndef _WIN32
TEST(TQPrPolar, ComputingConstantsIsTheFirstVirtualOperationBehindThoseOfEveryProjection) {
    EXPECT_EQ(placeOf(&TQPrPolar::computeConstants), placeOf(&TQProjection::wktDefinition) + 1);
}
#endif

TEST(TQPrPolar, ItsSubclassesAnswerToIt) {
    expectIdentity(BarePolar(), {"BarePolar", "TQPrPolar", "TQProjection"});
}

TEST(TQPrPolar, HasNoTypeNameAndATypeCodeThatIsNotUsed) {
    EXPECT_EQ(BarePolar().projectionType(), 0);
    EXPECT_EQ(BarePolar().typeName(), "unknown");
}

TEST(TQPrPolar, ConvertsNothing) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    BarePolar projection;
    projection.setEllipsoid(&ellipsoid);
    TQPoint point = kUntouched;
    EXPECT_EQ(projection.convertGeoPt(TQPoint{0.1, 0.2}, point), 0);
    EXPECT_EQ(projection.convertGlobalPt(TQPoint{0.1, 0.2}, point), 0);
    EXPECT_EQ(point, kUntouched);
    EXPECT_EQ(projection.center(), TQPoint());
}

TEST(TQPrPolar, ComputesConstantsWhenItsTextIsReadAndAtNoOtherTime) {
    TQEllipsoid ellipsoid = sampleEllipsoid();
    BarePolar projection;
    projection.setEllipsoid(&ellipsoid);
    takePolarSample(projection, true);
    EXPECT_EQ(projection.initConstants(), 0);
    EXPECT_EQ(projection.computations, 0);
    const std::string text = writtenProjectionText(projection);
    EXPECT_EQ(text.substr(0, 13), "TQPrPolar v1\n");
    EXPECT_EQ(readProjectionText(projection, text.substr(0, text.size() - 2)), -1);
    EXPECT_EQ(projection.computations, 0);
    EXPECT_EQ(readProjectionText(projection, text), 0);
    EXPECT_EQ(projection.computations, 1);
}

TEST(TQPrPolar, WritesAnArchiveBlockOfItsOwn) {
    EXPECT_EQ(archivedBytes(BarePolar()), StreamBytes()
                                              .tag("TQPrPolar", 0)
                                              .tag("TQProjection", 1)
                                              .nullText()
                                              .text("")
                                              .numbers({0.0, 0.0, 1.0, 0.0})
                                              .byte(1)
                                              .bytes());
}

// ---- the family ------------------------------------------------------------------------------------------

TYPED_TEST(TQPrPolarFamily, StartsAtTheNorthPoleWithoutFalseOrigin) {
    const TypeParam projection;
    EXPECT_EQ(parameterOf(projection, "falseEasting"), "0");
    EXPECT_EQ(parameterOf(projection, "falseNorthing"), "0");
    EXPECT_EQ(parameterOf(projection, "k0"), "1");
    EXPECT_EQ(parameterOf(projection, "lambda0"), "0");
    EXPECT_EQ(parameterOf(projection, "isNorth"), "true");
}

TYPED_TEST(TQPrPolarFamily, MeridiansAreStraightAndParallelsAreArcs) {
    for (const bool isNorth : {true, false}) {
        const TypeParam projection = this->at(isNorth);
        EXPECT_EQ(projection.meridianShape(), 0);
        EXPECT_EQ(projection.parallelShape(), 1);
    }
}

TYPED_TEST(TQPrPolarFamily, ThePoleLiesAtTheFalseOriginAndIsTheCentre) {
    const CapturedMessages messages;
    const TypeParam north = this->at(true);
    const TypeParam south = this->at(false);
    TQPoint position;
    EXPECT_TRUE(north.northPolePosition(position));
    expectNear(kPolarFalseOrigin, position, 2e-9);
    EXPECT_EQ(north.center(), position);
    EXPECT_TRUE(south.southPolePosition(position));
    expectNear(kPolarFalseOrigin, position, 2e-9);
    EXPECT_EQ(south.center(), position);
    expectNear(kPolarFalseOrigin, imageOf(north, {kPolarMeridian * kPi / 180.0, kPi / 2.0}), 2e-9);
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TYPED_TEST(TQPrPolarFamily, ThePoleOfTheOtherHemisphereHasNoPosition) {
    TQPoint position = kUntouched;
    EXPECT_FALSE(this->at(true).southPolePosition(position));
    EXPECT_FALSE(this->at(false).northPolePosition(position));
    EXPECT_EQ(position, kUntouched);
}

TYPED_TEST(TQPrPolarFamily, TheCentreWithoutEllipsoidIsTheOriginOfThePlane) {
    const CapturedMessages messages;
    TypeParam projection = this->at(true);
    projection.setEllipsoid(nullptr);
    EXPECT_EQ(projection.center(), TQPoint());
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TYPED_TEST(TQPrPolarFamily, EveryPointIsValid) {
    for (const double latitude : {-kPi / 2.0, 0.0, kPi / 2.0, 7.0}) {
        EXPECT_TRUE(this->at(true).isGeoPtValid(TQPoint{100.0, latitude}));
    }
}

TYPED_TEST(TQPrPolarFamily, TheCentralMeridianRunsDownFromTheNorthPoleAndUpFromTheSouthPole) {
    const double lambda0 = kPolarMeridian * kPi / 180.0;
    for (const bool isNorth : {true, false}) {
        const TypeParam projection = this->at(isNorth);
        const double hemisphere = isNorth ? 1.0 : -1.0;
        const TQPoint image = imageOf(projection, {lambda0, hemisphere * 1.2});
        EXPECT_NEAR(image.x, kPolarFalseOrigin.x, 1e-8);
        EXPECT_LT(hemisphere * (image.y - kPolarFalseOrigin.y), -1e6);
        const TQPoint east = imageOf(projection, {lambda0 + kPi / 2.0, hemisphere * 1.2});
        EXPECT_NEAR(east.x, kPolarFalseOrigin.x + std::abs(image.y - kPolarFalseOrigin.y), 1e-8);
        EXPECT_NEAR(east.y, kPolarFalseOrigin.y, 1e-8);
    }
}

TYPED_TEST(TQPrPolarFamily, EveryNumberButZeroIsTheNorthInATable) {
    for (const int value : {0, 1, 2, -1}) {
        TypeParam projection;
        ParameterTable parameters;
        projection.setParams(parameters.with("isNorth", value).table());
        EXPECT_EQ(parameterOf(projection, "isNorth"), value != 0 ? "true" : "false") << value;
    }
}

TYPED_TEST(TQPrPolarFamily, EveryNumberButZeroIsTheNorthInAText) {
    for (const char* line : {"0", "1", "2", "-1", "none"}) {
        SCOPED_TRACE(line);
        TypeParam projection;
        const std::string text = polarText(TypeParam::ownName, "-45.25\n1", std::string("-45.25\n") + line);
        EXPECT_EQ(readProjectionText(projection, text), 0);
        EXPECT_EQ(parameterOf(projection, "isNorth"), TQString(line).convertToLong() != 0 ? "true" : "false");
    }
}

TYPED_TEST(TQPrPolarFamily, TheVersionOfTheBlockOfTheClassIsNotLookedAt) {
    const CapturedMessages messages;
    const std::string head = TypeParam::ownName + std::string(" v");
    for (const char* version : {"0", "2", "-1", "1000"}) {
        SCOPED_TRACE(version);
        TypeParam projection;
        EXPECT_EQ(readProjectionText(projection, polarText(TypeParam::ownName, head + "1", head + version)),
                  0);
        EXPECT_EQ(parameterOf(projection, "lambda0"), "-45.25");
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TYPED_TEST(TQPrPolarFamily, LinesBeforeAMissingOneAreTaken) {
    TypeParam projection;
    const std::string text = polarText(TypeParam::ownName, "0.994\n-45.25\n1", "");
    EXPECT_EQ(readProjectionText(projection, text.substr(0, text.find("-300000.5\n") + 10)), -1);
    EXPECT_EQ(parameterOf(projection, "falseEasting"), "2000000");
    EXPECT_EQ(parameterOf(projection, "falseNorthing"), "-300000.5");
    EXPECT_EQ(parameterOf(projection, "k0"), "1");
    EXPECT_EQ(parameterOf(projection, "isNorth"), "true");
}

// Six decimals are 1e-6 of k0, as much as its tolerance.
TYPED_TEST(TQPrPolarFamily, TextKeepsSixDecimals) {
    TypeParam projection;
    ParameterTable parameters;
    projection.setParams(parameters.with("k0", 0.9945678912).with("lambda0", -1e-7).table());
    const std::string text = writtenProjectionText(projection);
    EXPECT_EQ(text.substr(text.size() - 21), "0.994568\n-0.000000\n1\n");
}

// ---- the two of the sphere -------------------------------------------------------------------------------

// A quirk for the south.
TYPED_TEST(TQPrPolarSphere, TheCentreComesBackAsTheNorthPole) {
    constexpr double lambda0 = kPolarMeridian * kPi / 180.0;
    this->atBothPoles([](const TypeParam& projection) {
        const TQPoint northPole{lambda0, kPi / 2.0};
        EXPECT_EQ(originalOf(projection, kPolarFalseOrigin), northPole);
        EXPECT_EQ(originalOf(projection, {kPolarFalseOrigin.x + 5e-9, kPolarFalseOrigin.y}), northPole);
        EXPECT_EQ(originalOf(projection, {kPolarFalseOrigin.x, kPolarFalseOrigin.y + 5e-9}), northPole);
        const TQPoint beside = originalOf(projection, {kPolarFalseOrigin.x + 2e-8, kPolarFalseOrigin.y});
        TQPoint pole;
        const bool isNorth = projection.northPolePosition(pole);
        EXPECT_NEAR(beside.x, lambda0 + kPi / 2.0, 1e-12);
        EXPECT_NEAR(beside.y, isNorth ? kPi / 2.0 : -kPi / 2.0, 1e-12);
    });
}

TYPED_TEST(TQPrPolarSphere, TheScaleFactorTakesNoPart) {
    this->atBothPoles([](TypeParam& projection) {
        const TQPoint image = imageOf(projection, {0.3, 0.4});
        const TQPoint original = originalOf(projection, {0.3, 0.4});
        ParameterTable parameters;
        projection.setParams(parameters.with("k0", 7.0).table());
        EXPECT_EQ(imageOf(projection, {0.3, 0.4}), image);
        EXPECT_EQ(originalOf(projection, {0.3, 0.4}), original);
    });
}

TYPED_TEST(TQPrPolarSphere, EccentricityAndDatumShiftTakeNoPart) {
    this->atBothPoles([](TypeParam& projection) {
        const TQPoint image = imageOf(projection, {0.3, 0.4});
        const TQPoint original = originalOf(projection, image);
        TQEllipsoid shifted(TQString("Shifted"), projection.ellipsoid()->semiMajorAxis(), 0.5);
        shifted.setDatumShift(TQEllipsoid::ThreeParameterShift, 6378137.0, 1.0 / 298.0,
                              {500.0, 600.0, 700.0, 0.0, 0.0, 0.0, 0.0});
        projection.setEllipsoid(&shifted);
        EXPECT_EQ(imageOf(projection, {0.3, 0.4}), image);
        EXPECT_EQ(originalOf(projection, image), original);
    });
}
