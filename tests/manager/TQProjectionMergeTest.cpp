// What becomes of a projection of a document when the manager has one of its name already.

#include "support/TQWeakPointer.h"
#include "testing/ProjectionTables.h"
#include "tests/manager/DocumentCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kOldMeridian = 1.0;
constexpr double kNewMeridian = 2.0;

enum class OldName { Same, OtherNumber, Other };
enum class OldKind { User, StandsForResource, Resource };

/// The manager has a projection when a document with one named "P" is read.
struct Merge {
    OldName oldName;
    bool isSame;
    bool isUsed;
    OldKind oldKind;

    const char* nameOfOld() const {
        return oldName == OldName::Same ? "P" : oldName == OldName::OtherNumber ? "P_7" : "Q";
    }

    /// Whether the manager has nothing that the document's projection could be.
    bool isNew() const { return oldName == OldName::Other || (oldName == OldName::OtherNumber && !isSame); }
};

std::ostream& operator<<(std::ostream& stream, const Merge& merge) {
    constexpr const char* kinds[] = {"user's", "in the place of a resource", "resource"};
    return stream << "P onto " << merge.nameOfOld() << (merge.isSame ? ", same" : ", different")
                  << (merge.isUsed ? ", used, " : ", unused, ") << kinds[static_cast<int>(merge.oldKind)];
}

std::vector<Merge> allMerges() {
    std::vector<Merge> merges;
    for (const OldName name : {OldName::Same, OldName::OtherNumber, OldName::Other}) {
        for (const OldKind kind : {OldKind::User, OldKind::StandsForResource, OldKind::Resource}) {
            for (int bits = 0; bits < 4; ++bits) {
                merges.push_back({name, (bits & 1) != 0, (bits & 2) != 0, kind});
            }
        }
    }
    return merges;
}

/// Those of a document's stream; bits without a meaning here are among them.
constexpr std::uint32_t kAllFlags[] = {0,       1,          4,           8,           32,     64,
                                       1 | 4,   4 | 8,      4 | 32,      4 | 64,      8 | 32, 8 | 64,
                                       32 | 64, 4 | 8 | 64, 4 | 32 | 64, 8 | 32 | 64, 0x92,   ~0U};

std::string text(const char* key) {
    return TQLocalizer::appLocalizedStringForKey(
               TQString((std::string("projectionDifferentFromResource_") + key).c_str()))
        .utf8();
}

/// A panel about a projection named "P".
std::string panel(const char* difference, const char* decision, const std::string& newName = "") {
    return "Warning|" + text("beg") + "P" + text(difference) + "\n" + text(decision) + newName + "|Ok||";
}

/// What is to happen.
struct Outcome {
    std::vector<std::string> names; ///< of the manager's projections afterwards
    bool isNewKept;                 ///< whether the document's projection is one of them
    bool isOldKept;
    bool isUserDefined; ///< whether the one that is kept for the document's stands for a resource
    Journal told;       ///< in order, panels included
    std::vector<std::string> panels;
};

/// The outcome where both have the same name and different definitions.
Outcome conflictOutcome(const Merge& merge, std::uint32_t flags) {
    const bool isAnnounced = (flags & TQProjMgr::AnnounceReplacements) != 0;
    const bool isSilent = (flags & TQProjMgr::Silent) != 0;
    const bool isResource = merge.oldKind == OldKind::Resource;
    const char* const difference = isResource ? "userDef_extra" : "userDef_non_resource";
    Outcome outcome{};
    if ((flags & TQProjMgr::KeepPresent) != 0) {
        outcome = {{"P"}, false, true, merge.oldKind == OldKind::StandsForResource, {}, {}};
        if (isAnnounced) {
            outcome.panels = {panel("userDef_extra", "userDef_keepOld")};
        }
    } else if (merge.isUsed && (flags & TQProjMgr::ReplaceInObservers) != 0) {
        outcome = {
            {"P"}, true, false, merge.oldKind != OldKind::User, {"u replaced", "u changed", "u changed"}, {}};
    } else if (merge.isUsed) {
        outcome = {{"P", "P_1"}, true, true, false, {"u changed"}, {}};
        if (!isSilent) {
            outcome.panels = {panel(difference, "userDef_renameNewAs", "P_1")};
        }
    } else {
        outcome = {{"P"}, true, false, isResource, {"u changed", "u changed"}, {}};
        if (isAnnounced) {
            outcome.panels = {panel(difference, "userDef_keepNew")};
        }
    }
    if (!outcome.panels.empty()) {
        outcome.told.insert(outcome.told.begin(), "panel");
    }
    return outcome;
}

Outcome outcomeOf(const Merge& merge, std::uint32_t flags) {
    if (merge.isNew()) {
        return {{"P", merge.nameOfOld()}, true, true, false, {"u changed"}, {}};
    }
    if (merge.isSame) {
        return {{merge.nameOfOld()}, false, true, merge.oldKind == OldKind::StandsForResource, {}, {}};
    }
    return conflictOutcome(merge, flags);
}

/// A document is read, and its next object refers to the projection again.
class Merging : public DocumentCase {
  public:
    Merging(const Merge& merge, std::uint32_t flags)
        : _merge(merge), _old(load(merge.nameOfOld(), kOldMeridian, merge.oldKind == OldKind::Resource)),
          _oldLife(_old), _observer(observe("u", &one)) {
        _old->setIsUserDefined(merge.oldKind == OldKind::StandsForResource);
        _observer->used = merge.isUsed ? _old : nullptr;
        panels.answers.assign(2, [this] {
            journal.emplace_back("panel");
            return TQAlertDefault;
        });
        ByteStream stream(documentHead(1)
                              .append(mercatorEntry(1, "P", merge.isSame ? kOldMeridian : kNewMeridian))
                              .integer(1));
        stream.get()->setFlags(flags);
        manager.unarchiveFrom(stream.get());
        std::int32_t id = 0;
        EXPECT_EQ(stream.get()->readObjReference(id), 1);
        _kept = static_cast<TQProjection*>(stream.get()->objForReference(id));
        EXPECT_TRUE(stream.isReadExactly());
    }

    void expect(const Outcome& outcome) {
        ASSERT_NE(_kept, nullptr);
        EXPECT_EQ(namesIn(manager), outcome.names);
        EXPECT_EQ(_kept != _old, outcome.isNewKept);
        EXPECT_EQ(_oldLife.get() != nullptr, outcome.isOldKept);
        EXPECT_EQ(meridianOf(_kept), _merge.isSame || !outcome.isNewKept ? kOldMeridian : kNewMeridian);
        EXPECT_EQ(_kept->isResource(), !outcome.isNewKept && _merge.oldKind == OldKind::Resource);
        EXPECT_EQ(_kept->isUserDefined(), outcome.isUserDefined);
        std::erase(journal, "u asked");
        EXPECT_EQ(journal, outcome.told);
        EXPECT_EQ(panels.shown(), outcome.panels);
        EXPECT_THAT(messages.lines(), IsEmpty());
        expectNames();
        const TQProjection* const user = outcome.isOldKept ? _old : _kept;
        EXPECT_EQ(_observer->used, _merge.isUsed ? user : nullptr);
    }

  private:
    /// While the document is read "P" means what is kept for it, then what has the name.
    void expectNames() {
        EXPECT_EQ(projection("P"), _kept);
        manager.reinitReadXREFTable();
        const bool isOldNameKept = _oldLife.get() != nullptr && _merge.oldName == OldName::Same;
        const bool isOwnName = *_kept->name() == "P";
        EXPECT_EQ(projection("P"), isOwnName ? _kept : isOldNameKept ? _old : nullptr);
        EXPECT_EQ(projection(_kept->name()->utf8()), _kept);
    }

    Merge _merge;
    TQProjection* _old;
    TQWeakPointer<TQProjection> _oldLife;
    JournalUser* _observer;
    TQProjection* _kept = nullptr;
};

class TQProjectionMerge : public testing::TestWithParam<Merge> {};

/// The head of a document and its only projection, a direct Mercator.
StreamBytes documentWith(const std::string& name, double meridian) {
    return documentHead(1).append(mercatorEntry(1, name, meridian));
}

} // namespace

INSTANTIATE_TEST_SUITE_P(All, TQProjectionMerge, testing::ValuesIn(allMerges()));

TEST_P(TQProjectionMerge, IsDecidedByTheRuleForAllFlags) {
    for (const std::uint32_t flags : kAllFlags) {
        SCOPED_TRACE(flags);
        Merging(GetParam(), flags).expect(outcomeOf(GetParam(), flags));
    }
}

TEST(TQProjectionMerge, AnIdenticalOneOfTheSameNameRecordsNoName) {
    DocumentCase test;
    TQProjection* const present = test.load("P", kOldMeridian);
    test.read(documentWith("P", kOldMeridian));
    TQProjection* const other = test.load("Q", kNewMeridian);
    test.manager.modifyProjFromParams(present, ParameterTable().with("Nom", TQString("R")).get());
    test.manager.modifyProjFromParams(other, ParameterTable().with("Nom", TQString("P")).get());
    EXPECT_EQ(test.projection("P"), other) << "no meaning that goes before the name";
}

TEST(TQProjectionMerge, TheSameNameAndDefinitionGoBeforeAnotherNumber) {
    DocumentCase test;
    test.load("P", kOldMeridian);
    TQProjection* const same = test.load("P_1", kOldMeridian);
    test.read(documentWith("P_1", kOldMeridian));
    EXPECT_EQ(test.projection("P_1"), same);
}

TEST(TQProjectionMerge, AnotherNumberWithTheDefinitionGoesBeforeTheNameWithAnother) {
    DocumentCase test;
    TQProjection* const other = test.load("P", kOldMeridian);
    TQProjection* const same = test.load("P_1", kNewMeridian);
    test.read(documentWith("P", kNewMeridian));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
    EXPECT_EQ(test.projection("P"), same) << "for the document";
    test.manager.reinitReadXREFTable();
    EXPECT_EQ(test.projection("P"), other);
    EXPECT_THAT(test.panels.shown(), IsEmpty());
}

TEST(TQProjectionMerge, AnotherTypeIsAnotherDefinition) {
    DocumentCase test;
    test.load("P");
    StreamBytes transverse = StreamBytes().tag("TQPrMercTransv", 0).tag("TQProjection", 1).text("P");
    transverse.text(kEllipsoid).numbers({0.0, 0.0, 0.0, 0.0, 1.0});
    test.read(documentHead(1).append(entry(1, 4, transverse)));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P"));
    EXPECT_STREQ(test.projection("P")->className(), "TQPrMercTransv");
}

TEST(TQProjectionMerge, TheSmallestFreeNumberMakesTheName) {
    DocumentCase test;
    test.load("P_1", 5.0);
    test.load("P_3", 6.0);
    test.observe("u", &test.one)->used = test.load("P", kOldMeridian);
    test.read(documentWith("P", kNewMeridian));
    EXPECT_EQ(meridianOf(test.projection("P_2")), kNewMeridian);
    EXPECT_EQ(test.panels.shown(), std::vector{panel("userDef_non_resource", "userDef_renameNewAs", "P_2")});
}

TEST(TQProjectionMerge, ANumberIsAppendedToANameThatHasOne) {
    DocumentCase test;
    test.observe("u", &test.one)->used = test.load("P_1", kOldMeridian);
    test.read(documentWith("P_1", kNewMeridian), TQProjMgr::Silent);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P_1", "P_1_1"));
}

TEST(TQProjectionMerge, EveryObserverIsSwitchedOverBeforeAnyHearsOfTheChange) {
    DocumentCase test;
    test.observe("1", &test.one);
    test.observe("2", &test.two)->used = test.load("P", kOldMeridian);
    test.journal.clear();
    test.read(documentWith("P", kNewMeridian), TQProjMgr::ReplaceInObservers);
    std::erase_if(test.journal, [](const std::string& line) { return line.ends_with(" asked"); });
    EXPECT_THAT(test.journal,
                ElementsAre("1 replaced", "2 replaced", "1 changed", "2 changed", "1 changed", "2 changed"));
}

TEST(TQProjectionMerge, ObserversAreGivenTheReadProjectionWhileTheOldOneLives) {
    DocumentCase test;
    const TQWeakPointer<TQProjection> old(test.load("P", kOldMeridian));
    JournalUser* const user = test.observe("u", &test.one);
    user->used = old.get();
    bool didOldLive = false;
    user->onReplace = [&] {
        didOldLive = old.get() != nullptr;
        EXPECT_EQ(meridianOf(user->used), kNewMeridian);
    };
    test.read(documentWith("P", kNewMeridian), TQProjMgr::ReplaceInObservers);
    EXPECT_TRUE(didOldLive);
    EXPECT_EQ(old.get(), nullptr);
}

TEST(TQProjectionMerge, EachProjectionOfADocumentMeetsThoseReadBeforeIt) {
    DocumentCase test;
    test.read(documentHead(3)
                  .append(mercatorEntry(1, "P", 1.0))
                  .append(mercatorEntry(2, "P_1", 1.0))
                  .append(mercatorEntry(3, "P_2", 2.0)));
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_2"));
    EXPECT_EQ(test.projection("P_1"), test.projection("P")) << "the same definition";
}

TEST(TQProjectionMerge, TheProjectionsOfADocumentAreNeverResources) {
    DocumentCase test;
    for (const std::uint32_t flags : {0U, 1U}) {
        test.read(documentWith("P" + std::to_string(flags), flags), flags);
        EXPECT_FALSE(test.projection("P" + std::to_string(flags))->isResource()) << flags;
    }
}

TEST(TQProjectionMerge, ProjectionsOfPROJAreComparedByTheirDefinitions) {
    const auto document = [](const char* definition) {
        return documentHead(1).append(
            entry(1, 127, StreamBytes().tag("TQPrProj4", 0).text("P").text(definition)));
    };
    DocumentCase test;
    test.read(document("EPSG:2154"));
    const TQProjection* const first = test.projection("P");
    test.read(document("EPSG:2154"));
    EXPECT_EQ(test.projection("P"), first);
    test.read(document("EPSG:2056"), TQProjMgr::KeepPresent);
    EXPECT_EQ(test.projection("P"), first);
    test.observe("u", &test.one)->used = first;
    test.read(document("EPSG:2056"), TQProjMgr::Silent);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
}

// ---- How long the names of a document mean something

namespace {

/// "P_1" of a document means "P" of the manager, until told otherwise.
struct MeaningCase : DocumentCase {
    TQProjection* meant = load("P", kOldMeridian);

    MeaningCase() { read(documentWith("P_1", kOldMeridian)); }

    bool isMeant() { return projection("P_1") == meant; }
};

} // namespace

TEST(TQProjectionMerge, ANameMeansSomethingUntilTheNamesAreReset) {
    MeaningCase test;
    EXPECT_TRUE(test.isMeant());
    test.manager.reinitReadXREFTable();
    EXPECT_EQ(test.projection("P_1"), nullptr);
}

TEST(TQProjectionMerge, ANameMeansSomethingUntilMissingProjectionsAreLookedFor) {
    MeaningCase test;
    EXPECT_TRUE(test.manager.checkAndResetUnknowProjection(false));
    EXPECT_EQ(test.projection("P_1"), nullptr);
}

TEST(TQProjectionMerge, ANameMeansSomethingUntilTheNextRead) {
    MeaningCase test;
    test.read(documentHead(0));
    EXPECT_EQ(test.projection("P_1"), nullptr);
}

TEST(TQProjectionMerge, AReadThatFailsForgetsTheNamesToo) {
    MeaningCase test;
    ByteStream nothing("");
    test.manager.unarchiveFrom(nothing.get());
    EXPECT_EQ(test.projection("P_1"), nullptr);
}

TEST(TQProjectionMerge, ANameMeansSomethingUntilAProjectionIsCopiedOver) {
    MeaningCase test;
    TQProjMgr other(false);
    EXPECT_EQ(test.manager.getProjectionWithNameFromGeorefMgr(test.meant, &other), test.meant);
    EXPECT_EQ(test.projection("P_1"), nullptr);
}

TEST(TQProjectionMerge, TheMeaningOfANameGoesBeforeAProjectionThatHasIt) {
    MeaningCase test;
    test.manager.createProjFromParams(
        ParameterTable().with("Type", kMercator).with("Nom", TQString("P_1")).get());
    EXPECT_TRUE(test.isMeant());
}

TEST(TQProjectionMerge, TwoProjectionsOfOneNameAreBothKept) {
    DocumentCase test;
    ByteStream stream(documentHead(2)
                          .append(mercatorEntry(1, "P", kOldMeridian))
                          .append(mercatorEntry(2, "P", kNewMeridian)));
    stream.get()->setFlags(TQProjMgr::FromDocument | TQProjMgr::Silent);
    test.manager.unarchiveFrom(stream.get());
    EXPECT_EQ(meridianOf(static_cast<TQProjection*>(stream.get()->objForReference(1))), kOldMeridian);
    EXPECT_EQ(meridianOf(static_cast<TQProjection*>(stream.get()->objForReference(2))), kNewMeridian);
    EXPECT_THAT(namesIn(test.manager), ElementsAre("P", "P_1"));
}

TEST(TQProjectionMerge, AReferenceToWhatAnObserverDestroyedMeansNothing) {
    DocumentCase test;
    int changes = 0;
    test.observe("u", &test.one)->onChange = [&] {
        if (++changes == 2) { // the second one is there
            test.manager.destroy(TQString("P"));
        }
    };
    ByteStream stream(documentHead(2).append(mercatorEntry(1, "P")).append(mercatorEntry(2, "Q")));
    test.manager.unarchiveFrom(stream.get());
    EXPECT_EQ(stream.get()->objForReference(1), nullptr);
    EXPECT_EQ(stream.get()->objForReference(2), test.projection("Q"));
}
