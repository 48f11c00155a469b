#include "grid/TQGrid.h"

#include "testing/CapturedMessages.h"
#include "testing/Identity.h"
#include "tests/grid/GridCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const TQRect kDefaultLimit(0.0, 10.0, 10.0, -10.0);

/// A grid in a unit whose limit is still the default one.
TQGrid gridIn(std::uint32_t unit) {
    TQGrid grid;
    grid.setUnit(unit);
    grid.setRegularGridLimit(kDefaultLimit, unit);
    return grid;
}

} // namespace

TEST(TQGrid, AnswersToItsClass) { expectIdentity(TQGrid(), {"TQGrid"}); }

TEST(TQGrid, ANewOneHasDefaults) {
    const CapturedMessages messages;
    const TQGrid grid;
    EXPECT_EQ(grid.name(), nullptr);
    EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
    EXPECT_FALSE(grid.isExternal());
    EXPECT_FALSE(grid.isMarked());
    EXPECT_EQ(grid.mode(), 0);
    EXPECT_EQ(grid.referencePointMode(), 0);
    EXPECT_EQ(grid.spacing(), TQSize());
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(0.0, 0.0, 0x12000001));
    EXPECT_EQ(grid.projection(), nullptr);
    EXPECT_EQ(grid.projectionName(), nullptr);
    EXPECT_EQ(grid.projMgr(), nullptr);
    EXPECT_EQ(grid.referencePoint(), TQPoint());
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(0.0, 0.0, 0x12000001));
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(0.0, 0x12000001));
    EXPECT_EQ(grid.keepsBorderLines(), 0);
    EXPECT_EQ(grid.borderDist(), TQSize());
    EXPECT_EQ(grid.unit(), 0x01100064U);
    EXPECT_FALSE(grid.usesNumberingLimit());
    expectNoLabels(grid);
    EXPECT_EQ(grid.virtualDrawingDefinition(), nullptr);
    EXPECT_FALSE(grid.lockedOnGeoRefProjection());
}

TEST(TQGrid, KeepsWhatItIsGiven) {
    TQGrid grid;
    fillSample(grid);
    grid.setRegularGridLimit(TQRect(), TQUnitDegree); // ignored, the grid is angular
    grid.setIsMarked(true);
    EXPECT_EQ(textOf(grid.name()), "Carte");
    EXPECT_EQ(grid.referencePoint(), (TQPoint{1.5, -2.5}));
    EXPECT_EQ(grid.spacing(), (TQSize{100.0, 200.0}));
    EXPECT_EQ(grid.borderDist(), (TQSize{0.5, 0.25}));
    EXPECT_EQ(grid.keepsBorderLines(), 5);
    EXPECT_TRUE(grid.usesNumberingLimit());
    EXPECT_TRUE(grid.lockedOnGeoRefProjection());
    EXPECT_TRUE(grid.isMarked());
    EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
    expectSampleLabels(grid);
}

TEST(TQGrid, ItsNameIsItsOwn) {
    TQGrid grid;
    TQString name("A");
    grid.setName(name);
    name.append("B");
    EXPECT_EQ(textOf(grid.name()), "A");
    grid.setName(*grid.name());
    EXPECT_EQ(textOf(grid.name()), "A");
}

// ---- Mode and unit

TEST(TQGrid, ModeAndReferencePointModeShareANumber) {
    TQGrid grid;
    grid.setReferencePointMode(-1);
    EXPECT_EQ(grid.referencePointMode(), 0x3F8);
    EXPECT_EQ(grid.mode(), 0);
    grid.setMode(0x7FFFFFF8 | 5);
    EXPECT_EQ(grid.mode(), 5);
    EXPECT_EQ(grid.referencePointMode(), 0x3F8);
    grid.setReferencePointMode(0x10 | 2);
    EXPECT_EQ(grid.referencePointMode(), 0x10);
    EXPECT_EQ(grid.mode(), 5);
    grid.setMode(-1);
    EXPECT_EQ(grid.mode(), 7);
}

TEST(TQGrid, AnAngularModeBringsDegreesAndAMetricOneKilometres) {
    TQGrid grid;
    grid.setMode(2);
    EXPECT_EQ(grid.unit(), 0x12000001U);
    grid.setMode(1);
    EXPECT_EQ(grid.unit(), 0x010003E8U);
    grid.setMode(2);
    grid.setMode(4);
    EXPECT_EQ(grid.unit(), 0x010003E8U);
}

TEST(TQGrid, AUnitThatSuitsTheModeStays) {
    for (const std::uint32_t angular : {TQUnitGon, TQUnitDegreeMinuteSecond, TQUnitRadian}) {
        TQGrid grid = gridIn(angular);
        grid.setMode(2);
        EXPECT_EQ(grid.unit(), angular);
    }
    for (const int metricMode : {1, 4}) {
        TQGrid grid = gridIn(TQUnitFoot);
        grid.setMode(metricMode);
        EXPECT_EQ(grid.unit(), TQUnitFoot);
    }
}

TEST(TQGrid, OtherModesLeaveTheUnit) {
    for (const int mode : {0, 3, 5, 6, 7}) {
        for (const std::uint32_t unit : {TQUnitFoot, TQUnitGon}) {
            TQGrid grid = gridIn(unit);
            grid.setMode(mode);
            EXPECT_EQ(grid.unit(), unit) << mode;
        }
    }
}

TEST(TQGrid, DegreesMinutesSecondsCountAsAngularAndTheirNeighboursDoNot) {
    TQGrid grid = gridIn(TQUnitDegreeMinuteSecond);
    grid.setMode(1);
    EXPECT_EQ(grid.unit(), TQUnitKilometre);
    TQGrid other = gridIn(0x21000002);
    other.setMode(1);
    EXPECT_EQ(other.unit(), 0x21000002U);
}

// ---- The limit of a regular grid

TEST(TQGrid, TheLimitIsConvertedToTheUnitOfTheGrid) {
    TQGrid grid; // in centimetres
    grid.setRegularGridLimit(TQRect(1.0, 2.0, 3.0, -4.0), TQUnitMetre);
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(100.0, 200.0, 300.0, -400.0));
    EXPECT_EQ(grid.getRegularGridLimit(TQUnitMillimetre), TQRect(1000.0, 2000.0, 3000.0, -4000.0));
    EXPECT_EQ(grid.getRegularGridLimit(TQUnitCentimetre), TQRect(100.0, 200.0, 300.0, -400.0));
    grid.setRegularGridLimit(TQRect(1.0, 2.0, 3.0, -4.0), TQUnitCentimetre);
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(1.0, 2.0, 3.0, -4.0));
}

TEST(TQGrid, TheLimitOfAnAngularGridStays) {
    TQGrid grid;
    grid.setMode(2);
    grid.setRegularGridLimit(TQRect(1.0, 2.0, 3.0, 4.0), TQUnitDegree);
    EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
    EXPECT_EQ(grid.getRegularGridLimit(TQUnitRadian), kDefaultLimit);
    EXPECT_EQ(grid.getRegularGridLimit(TQUnitMetre), kDefaultLimit);
}

TEST(TQGrid, AnotherUnitConvertsTheLimitTheWrongWayRound) {
    TQGrid grid; // in centimetres
    grid.setUnit(TQUnitMetre);
    EXPECT_EQ(grid.unit(), TQUnitMetre);
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(0.0, 1000.0, 1000.0, -1000.0));
    grid.setUnit(TQUnitMetre);
    EXPECT_EQ(grid.getRegularGridLimit(), TQRect(0.0, 1000.0, 1000.0, -1000.0));
}

TEST(TQGrid, AnAngularUnitLeavesTheLimit) {
    TQGrid grid;
    grid.setUnit(TQUnitDegree);
    EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
    grid.setUnit(TQUnitMetre); // still angular while the limit is set
    EXPECT_EQ(grid.getRegularGridLimit(), kDefaultLimit);
}

// ---- The angular grid

TEST(TQGrid, AngularValuesOfAMetricGridAreIllogical) {
    TQGrid grid;
    grid.setMode(2);
    grid.setAngularReferencePoint(TQPoint{1.0, 2.0});
    grid.setAngularReferenceMeridian(TQAngleWithUnit(3.0, TQUnitDegree));
    grid.setAngularSpacing(TQSize{4.0, 5.0});
    grid.setMode(1);
    const CapturedMessages messages;
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(1.0, 2.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(3.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(4.0, 5.0, TQUnitDegree));
    EXPECT_THAT(messages.lines(), ElementsAre("TQGrid::getAngularReferencePoint() : illogical\n",
                                              "TQGrid::getAngularReferenceMeridian() : illogical\n",
                                              "TQGrid::getAngularSpacing() : illogical\n"));
}

TEST(TQGrid, AngularValuesOfAnAngularGridAreNotReported) {
    for (const std::uint32_t unit : {TQUnitDegree, TQUnitDegreeMinuteSecond}) {
        const CapturedMessages messages;
        const TQGrid grid = gridIn(unit);
        grid.getAngularReferencePoint();
        grid.getAngularReferenceMeridian();
        grid.getAngularSpacing();
        EXPECT_THAT(messages.lines(), IsEmpty());
    }
}

TEST(TQGrid, TheAngularReferencePointHasThreeForms) {
    TQGrid grid = gridIn(TQUnitGon);
    grid.setAngularReferencePoint({10.0, -20.0}, {30.0, 30.0}, {36.0, 0.0});
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(10.51, -20.5, TQUnitDegree));
    grid.setAngularReferencePoint(TQAnglePoint(90.0, 45.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(100.0, 50.0, TQUnitGon));
    grid.setAngularReferencePoint(TQPoint{1.0, 2.0});
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(1.0, 2.0, TQUnitGon));
}

TEST(TQGrid, TheAngularSpacingHasTwoForms) {
    TQGrid grid = gridIn(TQUnitGon);
    grid.setAngularSpacing({1.0, 2.0}, {30.0, 0.0}, {0.0, 36.0});
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(1.5, 2.01, TQUnitDegree));
    grid.setAngularSpacing(TQSize{1.0, 2.0});
    EXPECT_EQ(grid.getAngularSpacing(), TQAngleSize(1.0, 2.0, TQUnitGon));
}

TEST(TQGrid, TheReferenceMeridianTakesTheUnitOfTheGridAndLosesItsFlag) {
    TQGrid grid = gridIn(TQUnitGon);
    constexpr bool base360 = true;
    grid.setAngularReferenceMeridian(TQAngleWithUnit(-90.0, TQUnitDegree, base360)); // 270 degrees
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(300.0, TQUnitGon));
    grid.setAngularReferenceMeridian(TQAngleWithUnit(-90.0, TQUnitDegree));
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(-100.0, TQUnitGon));
}

TEST(TQGrid, AMetricGridTakesAnglesUnchanged) {
    const CapturedMessages messages;
    TQGrid grid;
    grid.setAngularReferencePoint(TQAnglePoint(1.0, 2.0, TQUnitRadian));
    grid.setAngularReferenceMeridian(TQAngleWithUnit(3.0, TQUnitRadian));
    EXPECT_EQ(grid.getAngularReferencePoint(), TQAnglePoint(1.0, 2.0, TQUnitCentimetre));
    EXPECT_EQ(grid.getAngularReferenceMeridian(), TQAngleWithUnit(3.0, TQUnitCentimetre));
}

// ---- Labels and drawing

TEST(TQGrid, WithoutAlphanumberingTheLabelsGoAndTheBytesStay) {
    TQGrid grid;
    fillSample(grid);
    grid.setIndexParameters({false, false, {false, 1, TQString("X")}, {true, 2, TQString("Y")}});
    EXPECT_FALSE(grid.usesAlphanumbering());
    EXPECT_FALSE(grid.usesNumberingLimit());
    expectNumbering(grid.indexParameters().horizontal, true, 7, "(null)");
    expectNumbering(grid.indexParameters().vertical, false, 9, "(null)");
    grid.setIndexParameters({true, false, {false, 1, std::nullopt}, {true, 2, TQString("Y")}});
    expectNumbering(grid.indexParameters().horizontal, false, 1, "(null)");
    expectNumbering(grid.indexParameters().vertical, true, 2, "Y");
    grid.setIndexParameters(grid.indexParameters());
    expectNumbering(grid.indexParameters().vertical, true, 2, "Y");
}

TEST(TQGrid, OwnsItsDrawingDefinition) {
    TQGrid grid;
    grid.setVirtualDrawingDefinition(drawingOf("first"));
    EXPECT_EQ(drawingOn(grid), "first");
    grid.setVirtualDrawingDefinition(drawingOf("second"));
    EXPECT_EQ(drawingOn(grid), "second");
    grid.deleteVirtualDrawingDefinition();
    EXPECT_EQ(drawingOn(grid), "(none)");
    grid.setVirtualDrawingDefinition(drawingOf("third"));
    grid.setVirtualDrawingDefinition(nullptr);
    EXPECT_EQ(drawingOn(grid), "(none)");
    grid.setVirtualDrawingDefinition(nullptr);
}

TEST(TQGrid, TheDrawingDefinitionThatItHasStays) {
    TQGrid grid;
    grid.setVirtualDrawingDefinition(drawingOf("bytes"));
    grid.setVirtualDrawingDefinition(std::unique_ptr<TQVirtualDrawingGrid>(grid.virtualDrawingDefinition()));
    EXPECT_EQ(drawingOn(grid), "bytes");
}

// ---- Copies

TEST(TQGrid, ACopyHasEverythingAndSharesNothing) {
    auto grid = std::make_unique<TQGrid>();
    fillSample(*grid);
    grid->setVirtualDrawingDefinition(drawingOf("bytes"));
    grid->setIsExternal(true);
    grid->setIsMarked(true);
    const std::string archive = archivedBytes(*grid);
    const std::unique_ptr<TQGrid> copy = tq_copyOf(*grid);
    EXPECT_NE(copy->name(), grid->name());
    EXPECT_NE(copy->virtualDrawingDefinition(), grid->virtualDrawingDefinition());
    grid->setName(TQString("another"));
    grid.reset();
    EXPECT_EQ(archivedBytes(*copy), archive);
    EXPECT_TRUE(copy->isExternal());
    EXPECT_TRUE(copy->isMarked());
    EXPECT_EQ(drawingOn(*copy), "bytes");
}

TEST(TQGrid, ACopyOfANewOneIsLikeIt) {
    const TQGrid grid;
    EXPECT_EQ(archivedBytes(*tq_copyOf(grid)), archivedBytes(grid));
    EXPECT_FALSE(grid.isEqual(tq_copyOf(grid).get())); // each is itself
    EXPECT_TRUE(grid.isEqual(&grid));
}
