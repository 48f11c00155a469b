// Shown by what a manager makes of a document's projection that has the definition of one of its own: it is
// that one where the base names are the same, and another one where they are not.

#include "testing/ProjectionTables.h"
#include "tests/manager/DocumentCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::ElementsAre;

namespace {

/// Whether a manager finds its projection of a name for a document's of another name.
bool areRelated(const std::string& present, const std::string& ofDocument) {
    DocumentCase test;
    const TQProjection* const old = test.load(present);
    test.read(documentHead(1).append(mercatorEntry(1, ofDocument)));
    return test.projection(ofDocument) == old;
}

struct Names {
    const char* one;
    const char* other;
};

} // namespace

TEST(TQBaseNameIndex, ANumberBehindTheLastUnderscoreDoesNotCount) {
    constexpr Names related[] = {
        {"P", "P_1"},       {"P_1", "P_2"},     {"P_1", "P_12345678901234567890"},
        {"P", "P_007"},     {"P_1_2", "P_1_3"}, {"P__1", "P__2"},
        {"12", "12_3"},     {"12_3", "12_4"},   {"P 1", "P 1_1"},
        {"P_a_1", "P_a_2"},
    };
    for (const auto& [one, other] : related) {
        EXPECT_TRUE(areRelated(one, other)) << one << " " << other;
        EXPECT_TRUE(areRelated(other, one)) << other << " " << one;
    }
}

TEST(TQBaseNameIndex, OtherNamesAreNotRelated) {
    constexpr Names strangers[] = {
        {"P", "Q"},     {"P", "Q_1"},     {"P", "p_1"},  {"P", "P1"},     {"P", "P 1"},
        {"P", "P_1_2"}, {"P_1", "P_1_2"}, {"P__1", "P"}, {"P__1", "P_1"}, {"12", "1_2"},
        {"12", "13"},   {"12_3", "13_3"}, {"P", "P-1"},  {"P", "PP_1"},
    };
    for (const auto& [one, other] : strangers) {
        EXPECT_FALSE(areRelated(one, other)) << one << " " << other;
        EXPECT_FALSE(areRelated(other, one)) << other << " " << one;
    }
}

TEST(TQBaseNameIndex, ANameWithoutBaseNameHasNoRelatives) {
    constexpr const char* withoutBase[] = {"P_", "_1", "P_a", "P_1a", "P_a1", "P_-1", "P_ 1", "P_1 ", "_"};
    for (const char* const name : withoutBase) {
        for (const char* const other : {"P", "P_1", "P_2", "1", "_2", "P_b", "P__1"}) {
            EXPECT_FALSE(areRelated(name, other)) << name << " " << other;
            EXPECT_FALSE(areRelated(other, name)) << other << " " << name;
        }
        EXPECT_TRUE(areRelated(name, name)) << "the same name, whatever it is: " << name;
    }
}

TEST(TQBaseNameIndex, ANumberThatHasBecomeFreeIsTheNextOneAgain) {
    DocumentCase test;
    test.observe("u", &test.one)->used = test.load("P", 0.0);
    int meridian = 0;
    const auto load = [&test, &meridian] {
        test.load("P", ++meridian, false, TQProjMgr::Silent);
        test.manager.reinitReadXREFTable();
    };
    for (int i = 0; i < 4; ++i) {
        load();
    }
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1", "P_2", "P_3", "P_4"));
    test.manager.destroy(TQString("P_3"));
    test.manager.destroy(TQString("P_2"));
    test.manager.destroy(TQString("nobody"));
    load();
    load();
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1", "P_2", "P_3", "P_4"));
    load();
    EXPECT_NE(test.projection("P_5"), nullptr);
    test.projection("P_2")->rename(TQString("elsewhere")); // the manager keeps it under the old name
    test.manager.modifyProjFromParams(test.projection("P_2"), ParameterTable().with("lambda0", 50.0).get());
    load();
    EXPECT_NE(test.projection("P_2"), nullptr);
    EXPECT_EQ(test.projection("P_6"), nullptr);
}

TEST(TQBaseNameIndex, WhatIsGoneIsNotFound) {
    DocumentCase test;
    test.load("P");
    test.manager.destroy(TQString("P"));
    test.read(documentHead(1).append(mercatorEntry(1, "P_1")));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P_1"));
}

TEST(TQBaseNameIndex, ManyThatAreGoneDoNotHideOneThatIsThere) {
    DocumentCase test;
    constexpr int manyTimes = 100;
    const auto comeAndGo = [&test] {
        for (int i = 0; i < manyTimes; ++i) {
            test.load("P");
            test.manager.destroy(TQString("P"));
        }
    };
    comeAndGo();
    TQProjection* const present = test.load("P_3");
    comeAndGo();
    test.read(documentHead(1).append(mercatorEntry(1, "P")));
    EXPECT_EQ(test.projection("P"), present);
}

TEST(TQBaseNameIndex, AnEditedProjectionIsFoundUnderItsNewNameAlone) {
    DocumentCase test;
    TQProjection* const edited = test.load("P");
    test.manager.modifyProjFromParams(edited, ParameterTable().with("Nom", TQString("R_1")).get());
    test.read(documentHead(2).append(mercatorEntry(1, "P_1")).append(mercatorEntry(2, "R")));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P_1", "R_1"));
    EXPECT_EQ(test.projection("R"), edited);
}

TEST(TQBaseNameIndex, OfSeveralRelativesTheOneWithTheDefinitionIsFound) {
    DocumentCase test;
    for (const int number : {1, 2, 3, 4}) {
        test.load("P_" + std::to_string(number), number);
    }
    test.read(documentHead(1).append(mercatorEntry(1, "P", 3.0)));
    EXPECT_EQ(test.projection("P"), test.projection("P_3"));
}

TEST(TQBaseNameIndex, AllWaysIntoAManagerLeadToTheIndex) {
    DocumentCase test;
    ParameterTable params;
    params.with("Type", kMercator).with("Nom", TQString("A")).with("Ellipsoide", TQString(kEllipsoid));
    params.with("lambda0", 0.0).with("X0", 0.0);
    TQProjection* const made = test.manager.createProjFromParams(params.get());
    TQProjection* const loaded = test.load("B");
    test.read(documentHead(1).append(mercatorEntry(1, "C")));
    TQProjection* const read = test.projection("C");
    test.read(documentHead(3)
                  .append(mercatorEntry(1, "A_1"))
                  .append(mercatorEntry(2, "B_1"))
                  .append(mercatorEntry(3, "C_1")));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("A", "B", "C"));
    EXPECT_EQ(test.projection("A_1"), made);
    EXPECT_EQ(test.projection("B_1"), loaded);
    EXPECT_EQ(test.projection("C_1"), read);
}
