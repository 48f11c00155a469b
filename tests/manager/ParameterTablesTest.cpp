// Projections that a manager makes from parameter tables, and changes by them.

#include "testing/ConvertedPoints.h"
#include "tests/manager/DocumentCase.h"
#include "tests/manager/EveryProjectionType.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr bool kIsResource = true;
constexpr int kProj4 = 127;

/// The parameters of a projection.
std::unique_ptr<HashTbl<TQProjParam>> paramsOf(const TQProjection& projection) {
    auto table = std::make_unique<HashTbl<TQProjParam>>(1);
    projection.getParams(*table);
    return table;
}

/// A manager with kEllipsoid, and an observer.
struct TableCase : DocumentCase {
    TableCase() { observe("u", &one); }

    TQProjection* create(ParameterTable& params) { return manager.createProjFromParams(params.get()); }

    void modify(TQProjection* projection, ParameterTable& params) {
        manager.modifyProjFromParams(projection, params.get());
    }

    /// Loads a projection of which nobody has heard.
    TQProjection* loaded(const char* name, double meridian = 0.0, bool isResource = false) {
        TQProjection* const projection = load(name, meridian, isResource);
        journal.clear();
        return projection;
    }
};

} // namespace

// ---- Making

class ParameterTableType : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(All, ParameterTableType, testing::ValuesIn(kTypeCodes));

TEST_P(ParameterTableType, AProjectionsOwnTableMakesItAgain) {
    TableCase test;
    const auto original = variedProjection(GetParam(), "P", test.ellipsoid);
    const TQProjection* const made = test.manager.createProjFromParams(paramsOf(*original).get());
    ASSERT_NE(made, nullptr);
    EXPECT_STREQ(made->className(), original->className());
    EXPECT_EQ(made->projectionType(), GetParam());
    EXPECT_EQ(listedParameters(*made), listedParameters(*original));
    EXPECT_EQ(made->ellipsoid(), GetParam() == kProj4 ? nullptr : test.ellipsoid);
    EXPECT_EQ(test.projection("P"), made);
}

TEST_P(ParameterTableType, AResourceStaysOneWithItsOwnParameters) {
    TableCase test;
    test.manager.addLoadedProjection(variedProjection(GetParam(), "P", test.ellipsoid), kIsResource, kNoFlags,
                                     nullptr);
    test.journal.clear();
    TQProjection* const resource = test.projection("P");
    test.manager.modifyProjFromParams(resource, paramsOf(*resource).get());
    EXPECT_TRUE(resource->isResource());
    EXPECT_THAT(test.journal, IsEmpty());
}

TEST_P(ParameterTableType, AModifiedProjectionConvertsAsOneMadeOfTheTable) {
    constexpr TQPoint geo{0.06, 0.8};
    TableCase test;
    auto plain = tq_newProjectionOfType(GetParam());
    plain->rename(TQString("P"));
    plain->setEllipsoid(test.ellipsoid);
    test.manager.addLoadedProjection(std::move(plain), !kIsResource, kNoFlags, nullptr);
    TQProjection* const modified = test.projection("P");
    TQPoint before;
    modified->convertGeoPt(geo, before); // computes what a class computes with its first point
    const auto wanted = variedProjection(GetParam(), "P", test.ellipsoid);
    test.manager.modifyProjFromParams(modified, paramsOf(*wanted).get());
    EXPECT_NE(imageOf(*wanted, geo), before);
    EXPECT_EQ(imageOf(*modified, geo), imageOf(*wanted, geo));
}

TEST(ParameterTables, AModifiedPolarStereographicHasItsNewScale) {
    // At the pole of a sphere of radius 1 the plane is the tangent one, shrunk by k0: 30 degrees from the
    // pole lie 2 tan 15 degrees from the centre.
    constexpr double degrees30 = 0.5235987755982988;
    TableCase test;
    TQEllipsoid* const unit = test.manager.ellipsoidManager().addEllipsoid(
        std::make_unique<TQEllipsoid>(TQString("Unit"), 1.0, 1e-12));
    constexpr int kPolarStereo = 8;
    TQProjection* const polar =
        test.create(ParameterTable().with("Type", kPolarStereo).with("Ellipsoide", *unit->name()));
    ASSERT_NE(polar, nullptr);
    EXPECT_NEAR(imageOf(*polar, {0.0, 2.0 * degrees30}).y, -0.5358983848622454, 1e-9);
    test.modify(polar, ParameterTable().with("k0", 0.5));
    EXPECT_NEAR(imageOf(*polar, {0.0, 2.0 * degrees30}).y, -0.2679491924311227, 1e-9);
}

TEST(ParameterTables, ATableWithoutKnownTypeMakesNothing) {
    TableCase test;
    for (const int code : {14, 16, 126, 128, 255, 300, -1, -2}) {
        EXPECT_EQ(test.create(ParameterTable().with("Type", code).with("Nom", TQString("P"))), nullptr)
            << code;
    }
    EXPECT_EQ(test.create(ParameterTable().with("Nom", TQString("P"))), nullptr);
    HashTbl<TQProjParam> withoutBuckets;
    EXPECT_EQ(test.manager.createProjFromParams(&withoutBuckets), nullptr);
    EXPECT_EQ(test.manager.createProjFromParams(nullptr), nullptr);
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
    EXPECT_THAT(test.journal, IsEmpty());
    EXPECT_THAT(test.messages.lines(), IsEmpty()) << "nothing is reported";
}

TEST(ParameterTables, TheTypeMayBeAnyKindOfValue) {
    TableCase test;
    const TQSharedStringUse shared{TQString("5")};
    const TQProjection* const made[] = {
        test.create(ParameterTable().with("Type", 5.0)),
        test.create(ParameterTable().with("Type", TQString("5"))),
        test.create(ParameterTable().with("Type", shared.string())),
    };
    for (const TQProjection* const projection : made) {
        ASSERT_NE(projection, nullptr);
        EXPECT_EQ(projection->projectionType(), kMercator);
    }
}

TEST(ParameterTables, TheManagerGivesTheEllipsoidOfTheName) {
    TableCase test;
    const TQSharedStringUse shared{TQString(kEllipsoid)};
    const auto ellipsoidOf = [&test](const auto& name) {
        ParameterTable params;
        return test.create(params.with("Type", kMercator).with("Ellipsoide", name))->ellipsoid();
    };
    EXPECT_EQ(ellipsoidOf(TQString(kEllipsoid)), test.ellipsoid);
    EXPECT_EQ(ellipsoidOf(shared.string()), test.ellipsoid);
    EXPECT_EQ(ellipsoidOf(TQString("unknown")), nullptr);
    EXPECT_EQ(ellipsoidOf(TQString()), nullptr);
    EXPECT_EQ(ellipsoidOf(5), nullptr) << "no text";
    EXPECT_EQ(ellipsoidOf(static_cast<TQSharedString*>(nullptr)), nullptr);
    EXPECT_EQ(test.create(ParameterTable().with("Type", kMercator))->ellipsoid(), nullptr);
    EXPECT_THAT(test.messages.lines(), IsEmpty());
}

TEST(ParameterTables, AMadeProjectionConverts) {
    TableCase test;
    const TQProjection* const made = test.create(ParameterTable()
                                                     .with("Type", kMercator)
                                                     .with("Ellipsoide", TQString(kEllipsoid))
                                                     .with("X0", 300.0)
                                                     .with("Y0", 400.0));
    TQPoint global;
    EXPECT_EQ(made->convertGeoPt(TQPoint(0.0, 0.0), global), 0);
    EXPECT_NEAR(global.x, 300.0, 1e-6);
    EXPECT_NEAR(global.y, 400.0, 1e-6);
}

TEST(ParameterTables, AMadeProjectionIsTheUsersAndObserversHearOfIt) {
    TableCase test;
    test.observe("v", &test.two);
    const TQProjection* const made =
        test.create(ParameterTable().with("Type", kMercator).with("Nom", TQString("P")));
    EXPECT_FALSE(made->isResource());
    EXPECT_FALSE(made->isUserDefined());
    EXPECT_EQ(test.projection("P"), made);
    EXPECT_THAT(test.journal, ElementsAre("u changed", "v changed"));
}

TEST(ParameterTables, ANameMayBeTaken) {
    TableCase test;
    TQProjection* const first = test.loaded("P", 1.0, kIsResource);
    const TQProjection* const second =
        test.create(ParameterTable().with("Type", kMercator).with("Nom", TQString("P")));
    EXPECT_NE(second, first);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P"));
    EXPECT_EQ(meridianOf(first), 1.0);
    EXPECT_TRUE(first->isResource());
    EXPECT_THAT(test.panels.shown(), IsEmpty());
    EXPECT_THAT(test.journal, ElementsAre("u changed"));
}

TEST(ParameterTables, WithoutNameAProjectionHasNone) {
    TableCase test;
    EXPECT_EQ(test.create(ParameterTable().with("Type", kMercator))->name(), nullptr);
    EXPECT_EQ(test.manager.newListOfProjNames()->count(), 1);
}

// ---- Changing

TEST(ParameterTables, AResourceThatChangesIsTheUsers) {
    TableCase test;
    TQProjection* const resource = test.loaded("P", 1.0, kIsResource);
    const auto params = paramsOf(*resource);
    params->remove(TQString("lambda0"));
    params->add(std::make_unique<TQProjParam>(TQString("lambda0"), 2.0, TQString()), TQString("lambda0"));
    test.manager.modifyProjFromParams(resource, params.get());
    EXPECT_EQ(test.projection("P"), resource);
    EXPECT_EQ(meridianOf(resource), 2.0);
    EXPECT_EQ(resource->ellipsoid()->name()->utf8(), kEllipsoid);
    EXPECT_FALSE(resource->isResource());
    EXPECT_FALSE(resource->isUserDefined());
    EXPECT_THAT(test.journal, ElementsAre("u changed"));
}

TEST(ParameterTables, AResourceWithItsDefinitionKeepsItsName) {
    TableCase test;
    TQProjection* const resource = test.loaded("P", 1.0, kIsResource);
    const auto params = paramsOf(*resource);
    params->remove(TQString("Nom"));
    params->add(std::make_unique<TQProjParam>(TQString("Nom"), TQString("Q"), TQString()), TQString("Nom"));
    test.manager.modifyProjFromParams(resource, params.get());
    EXPECT_EQ(*resource->name(), "P") << "names do not count";
    EXPECT_TRUE(resource->isResource());
    EXPECT_THAT(test.journal, IsEmpty());
}

TEST(ParameterTables, ATableThatLacksWhatAResourceHasChangesItsDefinition) {
    TableCase test;
    TQProjection* const resource = test.loaded("P", 1.0, kIsResource);
    test.modify(resource, ParameterTable().with("lambda0", 1.0));
    EXPECT_FALSE(resource->isResource()) << "the table names no ellipsoid";
    EXPECT_EQ(resource->ellipsoid(), test.ellipsoid) << "but takes none away";
    EXPECT_EQ(meridianOf(resource), 1.0);
}

TEST(ParameterTables, TheTypeOfATableChangesNoProjection) {
    TableCase test;
    TQProjection* const resource = test.loaded("R", 1.0, kIsResource);
    const auto params = paramsOf(*resource);
    params->remove(TQString("Type"));
    params->add(std::make_unique<TQProjParam>(TQString("Type"), 4, TQString()), TQString("Type"));
    test.manager.modifyProjFromParams(resource, params.get());
    EXPECT_TRUE(resource->isResource());
    TQProjection* const users = test.loaded("U");
    test.modify(users, ParameterTable().with("Type", 4));
    EXPECT_EQ(users->projectionType(), kMercator);
}

TEST(ParameterTables, AUsersProjectionIsTakenUpAgainWithTheSameParameters) {
    TableCase test;
    TQProjection* const projection = test.loaded("P", 1.0);
    projection->setIsUserDefined(true);
    test.manager.modifyProjFromParams(projection, paramsOf(*projection).get());
    EXPECT_EQ(test.projection("P"), projection);
    EXPECT_FALSE(projection->isUserDefined());
    EXPECT_THAT(test.journal, ElementsAre("u changed"));
}

TEST(ParameterTables, AChangedProjectionGetsTheEllipsoidOfTheTable) {
    TableCase test;
    TQEllipsoid* const other = test.manager.ellipsoidManager().addEllipsoid(
        std::make_unique<TQEllipsoid>(TQString("Other"), 6400000.0, 0.01));
    TQProjection* const projection = test.loaded("P");
    test.modify(projection, ParameterTable().with("Ellipsoide", TQString("Other")));
    EXPECT_EQ(projection->ellipsoid(), other);
    test.modify(projection, ParameterTable().with("lambda0", 1.0));
    EXPECT_EQ(projection->ellipsoid(), other) << "none in the table";
    test.modify(projection, ParameterTable().with("Ellipsoide", TQString("unknown")));
    EXPECT_EQ(projection->ellipsoid(), nullptr);
}

TEST(ParameterTables, ARenamedProjectionIsFoundUnderItsNewNameAlone) {
    TableCase test;
    TQProjection* const projection = test.loaded("P");
    test.modify(projection, ParameterTable().with("Nom", TQString("Q")));
    EXPECT_EQ(test.projection("Q"), projection);
    EXPECT_EQ(test.projection("P"), nullptr);
    EXPECT_THAT(test.journal, ElementsAre("u changed"));
}

TEST(ParameterTables, AProjectionThatWasRenamedBesidesTheManagerIsKeptOnce) {
    TableCase test;
    TQProjection* const projection = test.loaded("P");
    projection->rename(TQString("Q"));
    test.modify(projection, ParameterTable().with("lambda0", 2.0));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Q"));
    EXPECT_EQ(test.projection("Q"), projection);
    EXPECT_EQ(test.projection("P"), nullptr);
}

TEST(ParameterTables, OfTwoProjectionsOfANameTheOneThatIsMeantIsChanged) {
    TableCase test;
    TQProjection* const first = test.loaded("P", 1.0);
    TQProjection* const second =
        test.create(ParameterTable().with("Type", kMercator).with("Nom", TQString("P")).with("lambda0", 2.0));
    test.modify(second, ParameterTable().with("Nom", TQString("Q")).with("lambda0", 3.0));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "Q"));
    EXPECT_EQ(test.projection("P"), first);
    EXPECT_EQ(test.projection("Q"), second);
    EXPECT_EQ(meridianOf(first), 1.0);
    EXPECT_EQ(meridianOf(second), 3.0);
}

TEST(ParameterTables, ANewNameMayBeTakenToo) {
    TableCase test;
    TQProjection* const first = test.loaded("P");
    TQProjection* const second = test.loaded("Q");
    test.modify(second, ParameterTable().with("Nom", TQString("P")));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P"));
    test.manager.destroy(TQString("P"));
    EXPECT_NE(test.projection("P"), nullptr) << "one of them";
    EXPECT_NE(first, second);
}

TEST(ParameterTables, AnExternalProjectionBecomesTheUsers) {
    TableCase test;
    const TQString name("\tEPSG_2154");
    TQProjection* const external = test.manager.projWithName(name, false);
    ASSERT_NE(external, nullptr);
    test.modify(external,
                ParameterTable().with("Nom", TQString("Mine")).with("definition", TQString("EPSG:2056")));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("Mine"));
    EXPECT_EQ(test.projection("Mine"), external);
    EXPECT_FALSE(external->isResource());
    EXPECT_NE(test.manager.projWithName(name, false), external) << "made anew";
    EXPECT_THAT(test.journal, ElementsAre("u changed"));
}

TEST(ParameterTables, WhatTheManagerHasNotStaysAsItIs) {
    TableCase test;
    EmptyManager elsewhere;
    TQProjection* const foreign = elsewhere.load("P", 1.0);
    test.modify(foreign, ParameterTable().with("lambda0", 2.0).with("Nom", TQString("Q")));
    test.modify(nullptr, ParameterTable().with("lambda0", 2.0));
    EXPECT_EQ(meridianOf(foreign), 1.0);
    EXPECT_THAT(namesIn(elsewhere.manager), ElementsAre("P"));
    EXPECT_THAT(namesIn(test.manager), IsEmpty());
    EXPECT_THAT(test.journal, IsEmpty());
}

TEST(ParameterTables, WithoutTableAProjectionStaysAsItIs) {
    TableCase test;
    TQProjection* const projection = test.loaded("P", 1.0);
    test.manager.modifyProjFromParams(projection, nullptr);
    EXPECT_EQ(test.projection("P"), projection);
    EXPECT_THAT(test.journal, IsEmpty());
}

TEST(ParameterTables, TablesAreNotChanged) {
    TableCase test;
    ParameterTable params;
    params.with("Type", kMercator).with("Nom", TQString("P")).with("lambda0", 1.0);
    test.modify(test.create(params), params);
    EXPECT_EQ(params.table().count(), 3);
    EXPECT_EQ(params.table().lookup("lambda0")->doubleValue(), 1.0);
}
