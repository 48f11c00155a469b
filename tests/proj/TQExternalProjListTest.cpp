#include "proj/TQExternalProjList.h"

#include "proj/TQPrProj4.h"
#include "support/TQFile.h"
#include "support/TQLocalizer.h"
#include "support/TQResPathMgr.h"
#include "testing/CapturedMessages.h"
#include "testing/ProcessState.h"
#include "testing/TemporaryDirectory.h"
#include "tests/proj/LiteralCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using testing::AllOf;
using testing::Contains;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;

namespace {

using Areas = std::vector<std::pair<std::string, std::string>>;
using NamesByDisplayName = std::map<std::string, std::string>;

std::map<std::string, NamesByDisplayName> contentsOf(const TQExternalProjList& list) {
    std::map<std::string, NamesByDisplayName> contents;
    HashState<TQExternalProjList::Family> families;
    const TQString* familyName = nullptr;
    while (const TQExternalProjList::Family* family = list.families().next(families, familyName)) {
        HashState<TQString> systems;
        const TQString* displayName = nullptr;
        while (const TQString* name = family->next(systems, displayName)) {
            contents[familyName->utf8()][displayName->utf8()] = name->utf8();
        }
    }
    return contents;
}

NamesByDisplayName systemsOf(const TQExternalProjList& list, const std::string& family) {
    return contentsOf(list)[family];
}

/// The family of a system, "(none)" when the catalogue does not hold it.
std::string familyOf(const TQExternalProjList& list, const char* name) {
    TQString family("(none)");
    list.getFamilyAndNameForExternalProjName(TQString(name), family);
    return family.utf8();
}

/// A shared directory that holds an areas file and perhaps texts.
class SharedAreas {
  public:
    explicit SharedAreas(const std::string& areas) { _directory.fileWith("TQN_ProjAreas.txt", areas); }
    explicit SharedAreas(const Areas& areas) : SharedAreas(linesOf(areas)) {}

    static std::string linesOf(const Areas& areas) {
        std::string lines;
        for (const auto& [key, family] : areas) {
            lines.append(key).append("\t").append(family).append("\n");
        }
        return lines;
    }

  private:
    TemporaryDirectory _directory;
    SharedDirectory _shared{_directory.directory()};
};

/// PROJ's default context looks for its files in one directory alone while this lives.
class ProjSearchPath {
  public:
    explicit ProjSearchPath(const std::string& directory) {
        proj_cleanup(); // closes the database that is open
        const char* path = directory.c_str();
        proj_context_set_search_paths(nullptr, 1, &path);
        _level = proj_log_level(nullptr, PJ_LOG_NONE);
    }
    ProjSearchPath(const ProjSearchPath&) = delete;
    ProjSearchPath& operator=(const ProjSearchPath&) = delete;
    ~ProjSearchPath() {
        proj_log_level(nullptr, _level);
        proj_context_set_search_paths(nullptr, 0, nullptr);
    }

  private:
    PJ_LOG_LEVEL _level;
};

/// The lines of the areas file that is shipped.
Areas shippedAreas() {
    TQString path;
    if (!TQResPathMgr::appShared()->pathForResource(TQString("TQN_ProjAreas.txt"), path)) {
        ADD_FAILURE() << "there is no areas file";
    }
    Areas areas;
    std::istringstream lines(readBytes(path));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t tab = line.find('\t');
        if (tab != std::string::npos) {
            areas.emplace_back(line.substr(0, tab), line.substr(tab + 1));
        }
    }
    return areas;
}

struct NameParts {
    bool isExternal = false;
    TQString authority{"untouched"};
    TQString code{"untouched"};
    bool isDeprecated = true;
};

NameParts partsOf(const char* name) {
    NameParts parts;
    parts.isExternal = TQExternalProjList::authorityAndCodeForExternalProjName(
        TQString(name), parts.authority, parts.code, &parts.isDeprecated);
    return parts;
}

TQString nameOf(const char* authority, const char* code, bool deprecated) {
    return TQExternalProjList::conventionalNameFromAuthAndStringCode(TQString(authority), TQString(code),
                                                                     deprecated);
}

} // namespace

// ---- Names

TEST(TQExternalProjList, ANameIsExternalWhenItBeginsWithATab) {
    EXPECT_TRUE(TQExternalProjList::isExternalProjectionName(TQString("\tEPSG_2154")));
    EXPECT_TRUE(TQExternalProjList::isExternalProjectionName(TQString("\t")));
    EXPECT_FALSE(TQExternalProjList::isExternalProjectionName(TQString("EPSG_2154")));
    EXPECT_FALSE(TQExternalProjList::isExternalProjectionName(TQString(" \tEPSG_2154")));
    EXPECT_FALSE(TQExternalProjList::isExternalProjectionName(TQString()));
}

TEST(TQExternalProjList, AnEPSGNameGivesItsCode) {
    const NameParts parts = partsOf("\tEPSG_2154");
    EXPECT_TRUE(parts.isExternal);
    EXPECT_EQ(parts.authority, "EPSG");
    EXPECT_EQ(parts.code, "2154");
    EXPECT_FALSE(parts.isDeprecated);
}

TEST(TQExternalProjList, ACarriageReturnMarksADeprecatedName) {
    const NameParts parts = partsOf("\tEPSG_4326\r");
    EXPECT_TRUE(parts.isExternal);
    EXPECT_EQ(parts.authority, "EPSG");
    EXPECT_EQ(parts.code, "4326");
    EXPECT_TRUE(parts.isDeprecated);
}

TEST(TQExternalProjList, ACodeEndsAtTheFirstCarriageReturn) {
    EXPECT_EQ(partsOf("\tEPSG_43\r26").code, "43");
    EXPECT_EQ(partsOf("\tIGNF:LAMB\r93\r").code, "LAMB");
    EXPECT_TRUE(partsOf("\tIGNF:LAMB\r93\r").isDeprecated);
}

TEST(TQExternalProjList, TheNameOfAnotherAuthorityGivesAuthorityAndCode) {
    const NameParts parts = partsOf("\tIGNF:123");
    EXPECT_TRUE(parts.isExternal);
    EXPECT_EQ(parts.authority, "IGNF");
    EXPECT_EQ(parts.code, "123");
    EXPECT_FALSE(parts.isDeprecated);
    EXPECT_EQ(partsOf("\tIGNF:A:B").code, "A:B");
    EXPECT_EQ(partsOf("\tEPSG:2154").authority, "EPSG");
    EXPECT_EQ(partsOf("\tEPSG:2154").code, "2154");
    EXPECT_EQ(partsOf("\tepsg_1:2").authority, "epsg_1") << "only the exact prefix has the other form";
}

TEST(TQExternalProjList, ANameWithoutAuthorityOrColonIsTakenApartByNobody) {
    for (const char* name : {"\tIGNF123", "\t", "\t:123", "EPSG:2154", "EPSG_2154", ""}) {
        const NameParts parts = partsOf(name);
        EXPECT_FALSE(parts.isExternal) << name;
        EXPECT_EQ(parts.authority, "untouched") << name;
        EXPECT_EQ(parts.code, "untouched") << name;
        EXPECT_FALSE(parts.isDeprecated) << name;
    }
}

TEST(TQExternalProjList, TheMarkNeedNotBeAskedFor) {
    TQString authority;
    TQString code;
    EXPECT_TRUE(TQExternalProjList::authorityAndCodeForExternalProjName(TQString("\tEPSG_4326\r"), authority,
                                                                        code, nullptr));
    EXPECT_EQ(code, "4326");
}

TEST(TQExternalProjList, ConventionalNamesHaveAFormForEPSGAndOneForOthers) {
    EXPECT_EQ(nameOf("EPSG", "2154", false), "\tEPSG_2154");
    EXPECT_EQ(nameOf("EPSG", "2154", true), "\tEPSG_2154\r");
    EXPECT_EQ(nameOf("IGNF", "LAMB93", false), "\tIGNF:LAMB93");
    EXPECT_EQ(nameOf("IGNF", "LAMB93", true), "\tIGNF:LAMB93\r");
    EXPECT_EQ(nameOf("epsg", "2154", false), "\tepsg:2154") << "the authority is compared exactly";
    EXPECT_EQ(nameOf("EPGS", "2154", false), "\tEPGS:2154");
}

TEST(TQExternalProjList, ConventionalNamesTakeNumbersToo) {
    const auto nameOfNumber = [](const char* authority, int code, bool deprecated) {
        return TQExternalProjList::conventionalNameFromAuthAndNumericalCode(TQString(authority), code,
                                                                            deprecated);
    };
    EXPECT_EQ(nameOfNumber("EPSG", 2154, false), "\tEPSG_2154");
    EXPECT_EQ(nameOfNumber("EPSG", 27572, true), "\tEPSG_27572\r");
    EXPECT_EQ(nameOfNumber("ESRI", 102100, false), "\tESRI:102100");
    EXPECT_EQ(nameOfNumber("EPGS", -1, true), "\tEPGS:-1\r");
}

// ---- Codes

TEST(TQExternalProjList, AnEPSGNameHasANumber) {
    const auto numberOf = [](const char* name) {
        return TQExternalProjList::numericalIDForEPSGExternalProjName(TQString(name));
    };
    EXPECT_EQ(numberOf("\tEPSG_2154"), 2154);
    EXPECT_EQ(numberOf("\tEPSG_4326\r"), 4326);
    EXPECT_EQ(numberOf("\tEPSG_"), 0);
    EXPECT_EQ(numberOf("\tIGNF:2154"), 0);
    EXPECT_EQ(numberOf("\tEPSG:2154"), 0) << "not the form of the name";
    EXPECT_EQ(numberOf("Lambert-93"), 0);
}

// The geodetic systems of these are those of the EPSG data set.
TEST(TQExternalProjList, TheGeodeticSystemHasACodeToo) {
    const auto geodeticOf = [](const char* name) {
        int geodetic = -1;
        TQExternalProjList::numericalIDForEPSGExternalProjName(TQString(name), &geodetic);
        return geodetic;
    };
    EXPECT_EQ(geodeticOf("\tEPSG_32631"), 4326);   // WGS 84
    EXPECT_EQ(geodeticOf("\tEPSG_27700"), 4277);   // OSGB36
    EXPECT_EQ(geodeticOf("\tEPSG_2154"), 4171);    // RGF93 v1
    EXPECT_EQ(geodeticOf("\tEPSG_27572\r"), 4807); // NTF (Paris)
    EXPECT_EQ(geodeticOf("\tEPSG_4326"), 4326);
    EXPECT_EQ(geodeticOf("\tIGNF:LAMB93"), 0);
    EXPECT_EQ(geodeticOf("Lambert-93"), 0);
}

TEST(TQExternalProjList, AnUnknownCodeHasANumberButNoGeodeticSystem) {
    const CapturedMessages messages;
    int geodetic = -1;
    EXPECT_EQ(TQExternalProjList::numericalIDForEPSGExternalProjName(TQString("\tEPSG_999999"), &geodetic),
              999999);
    EXPECT_EQ(geodetic, 0);
    EXPECT_THAT(messages.lines(), SizeIs(1)) << "PROJ's reason";
}

TEST(TQExternalProjList, TheNumberComesWithTheMark) {
    const auto isDeprecated = [](const char* name) {
        bool deprecated = true;
        TQExternalProjList::numericalIDForEPSGExternalProjName(TQString(name), nullptr, &deprecated);
        return deprecated;
    };
    EXPECT_TRUE(isDeprecated("\tEPSG_27572\r"));
    EXPECT_FALSE(isDeprecated("\tEPSG_27572"));
    EXPECT_FALSE(isDeprecated("Lambert-93\r"));
}

// ---- Projections of external names

TEST(TQExternalProjList, MakesAProjectionOfAnAuthorityAndACode) {
    const auto projection = TQExternalProjList::newExternalProjectionFromAuthAndStringCode(
        TQString("IGNF"), TQString("LAMB93"), false);
    const auto* const defined = dynamic_cast<const TQPrProj4*>(projection.get());
    ASSERT_NE(defined, nullptr);
    EXPECT_EQ(*defined->name(), "\tIGNF:LAMB93");
    EXPECT_EQ(defined->definition(), "IGNF:LAMB93");
    EXPECT_FALSE(defined->isInvalid());
    EXPECT_FALSE(defined->hasDatumShift());
}

TEST(TQExternalProjList, MakesAProjectionOfAnEPSGCode) {
    const auto projection = TQExternalProjList::newExternalEPSGProjectionFromID(2154, false);
    const auto* const defined = dynamic_cast<const TQPrProj4*>(projection.get());
    ASSERT_NE(defined, nullptr);
    EXPECT_EQ(*defined->name(), "\tEPSG_2154");
    EXPECT_EQ(defined->definition(), "EPSG:2154");
    EXPECT_FALSE(defined->isInvalid());
    EXPECT_FALSE(defined->hasDatumShift());
}

TEST(TQExternalProjList, ADeprecatedProjectionTakesPointsOnWGS84) {
    const auto byNumber = TQExternalProjList::newExternalEPSGProjectionFromID(27572, true);
    EXPECT_EQ(*byNumber->name(), "\tEPSG_27572\r");
    EXPECT_TRUE(byNumber->hasDatumShift());
    const auto byText = TQExternalProjList::newExternalProjectionFromAuthAndStringCode(
        TQString("EPSG"), TQString("27572"), true);
    EXPECT_EQ(*byText->name(), "\tEPSG_27572\r");
    EXPECT_TRUE(byText->hasDatumShift());
}

TEST(TQExternalProjList, AProjectionThatCannotBeBuiltIsMadeAllTheSame) {
    const CapturedMessages messages;
    const auto byNumber = TQExternalProjList::newExternalEPSGProjectionFromID(999999, false);
    ASSERT_NE(byNumber, nullptr);
    EXPECT_EQ(*byNumber->name(), "\tEPSG_999999");
    EXPECT_TRUE(byNumber->isInvalid());
    const auto byText = TQExternalProjList::newExternalProjectionFromAuthAndStringCode(TQString("NOBODY"),
                                                                                       TQString("1"), true);
    ASSERT_NE(byText, nullptr);
    EXPECT_EQ(*byText->name(), "\tNOBODY:1\r");
    EXPECT_TRUE(byText->isInvalid());
    EXPECT_THAT(messages.lines(), SizeIs(2));
}

// ---- The catalogue

TEST(TQExternalProjList, IsWhatItsRulesMakeOfTheShippedAreas) {
    const LiteralCatalogue literal(shippedAreas(), {});
    const TQExternalProjList list;
    EXPECT_EQ(contentsOf(list), literal.families);
    ASSERT_GT(literal.names.size(), 9000U);
    for (const auto& [name, entry] : literal.names) {
        TQString family;
        TQString displayName;
        ASSERT_TRUE(list.getFamilyAndNameForExternalProjName(TQString(name.c_str()), family, &displayName));
        ASSERT_EQ(displayName.utf8(), entry.first);
        ASSERT_EQ(family.utf8(), entry.second);
    }
}

// Several keys in one area, keys inside keys, keys that decide alone but are missing, an authority.
TEST(TQExternalProjList, IsWhatItsRulesMakeOfIntricateAreas) {
    const Areas areas{{"Guinea", "G"},
                      {"Papua New Guinea", "PNG"},
                      {"New Guinea", "NG"},
                      {"North America", "NA"},
                      {"Europa", "Old World"},
                      {"onshore", "Land"},
                      {"onshore and offshore", "Land and sea"},
                      {"and", "And"},
                      {"Türkiye", "Türkiye"},
                      {"UTM NORD", "Nord"},
                      {"IGNF", "Géographes"}};
    const SharedAreas shared(areas);
    EXPECT_EQ(contentsOf(TQExternalProjList()), LiteralCatalogue(areas, {}).families);
}

TEST(TQExternalProjList, EveryNameSplitsAndJoinsWithoutLoss) {
    const TQExternalProjList list;
    int count = 0;
    for (const auto& [family, systems] : contentsOf(list)) {
        for (const auto& [displayName, name] : systems) {
            const NameParts parts = partsOf(name.c_str());
            ASSERT_TRUE(parts.isExternal) << name;
            ASSERT_FALSE(parts.isDeprecated) << name;
            ASSERT_EQ(nameOf(parts.authority.charBuffer(), parts.code.charBuffer(), false).utf8(), name);
            ++count;
        }
    }
    EXPECT_GT(count, 9000);
}

TEST(TQExternalProjList, EverySystemIsListedInOneFamilyUnderOneName) {
    std::set<std::string> codesOfProj; // a few of which it lists twice
    for (const ListedSystem& system : systemsListedByProj()) {
        codesOfProj.insert(system.authority + ":" + system.code);
    }
    std::map<std::string, int> timesListed;
    std::map<std::string, int> timesShown;
    for (const auto& [family, systems] : contentsOf(TQExternalProjList())) {
        for (const auto& [displayName, name] : systems) {
            ++timesListed[name];
            ++timesShown[displayName];
        }
    }
    EXPECT_THAT(timesListed, SizeIs(codesOfProj.size()));
    EXPECT_THAT(timesShown, SizeIs(timesListed.size())) << "a display name holds authority and code";
}

TEST(TQExternalProjList, EveryUTMZoneOnWGS84IsInOneFamily) {
    const TQExternalProjList list;
    const NamesByDisplayName zones = systemsOf(list, "WGS 84 UTM");
    EXPECT_THAT(zones, SizeIs(120));
    EXPECT_EQ(zones.at("WGS 84 / UTM zone 31N (EPSG:32631)"), "\tEPSG_32631");
    EXPECT_EQ(zones.at("WGS 84 / UTM zone 60S (EPSG:32760)"), "\tEPSG_32760");
    EXPECT_EQ(familyOf(list, "\tEPSG_32201"), "WGS 72 UTM");
    EXPECT_EQ(familyOf(list, "\tEPSG_32401"), "WGS 72BE UTM");
    EXPECT_NE(familyOf(list, "\tEPSG_25831"), "ETRS89 UTM") << "not a system on WGS";
}

TEST(TQExternalProjList, WithoutTextsTheKeysNameTheFamilies) {
    const TQExternalProjList list;
    EXPECT_EQ(familyOf(list, "\tEPSG_4326"), "\t++ GeoCS ++");
    EXPECT_EQ(familyOf(list, "\tEPSG_4001"), "\t++ GeoCS deprecated ++");
    EXPECT_EQ(familyOf(list, "\tEPSG_27492"), "** Deprecated **");
}

TEST(TQExternalProjList, DeprecatedSystemsSayThatTheyAre) {
    const TQExternalProjList list;
    const NamesByDisplayName deprecated = systemsOf(list, "** Deprecated **");
    EXPECT_THAT(deprecated, Contains(Key("Datum 73 / Modified Portuguese Grid (deprecated) (EPSG:27492)")));
    EXPECT_EQ(familyOf(list, "\tEPSG_27492\r"), "** Deprecated **") << "with the mark or without";
}

TEST(TQExternalProjList, LooksUpFamilyAndDisplayName) {
    const TQExternalProjList list;
    TQString family("untouched");
    TQString displayName("untouched");
    ASSERT_TRUE(list.getFamilyAndNameForExternalProjName(TQString("\tEPSG_32631\r"), family, &displayName));
    EXPECT_EQ(family, "WGS 84 UTM");
    EXPECT_EQ(displayName, "WGS 84 / UTM zone 31N (EPSG:32631)");
    for (const char* unknown : {"\tEPSG_999999", "EPSG_32631", "", "\r\tEPSG_32631"}) {
        TQString untouched("untouched");
        EXPECT_FALSE(list.getFamilyAndNameForExternalProjName(TQString(unknown), untouched, &untouched));
        EXPECT_EQ(untouched, "untouched");
    }
}

TEST(TQExternalProjList, ShowsAProjectionByDisplayNameAndFamily) {
    const TQExternalProjList list;
    TQPrProj4 projection;
    EXPECT_EQ(list.displayNameForExternalProj(&projection), "") << "no name";
    EXPECT_EQ(list.displayNameForExternalProj(nullptr), "");
    projection.rename(TQString("\tEPSG_32631\r"));
    EXPECT_EQ(list.displayNameForExternalProj(&projection),
              "WGS 84 / UTM zone 31N (EPSG:32631) (WGS 84 UTM)");
    projection.rename(TQString("\tEPSG_999999"));
    EXPECT_EQ(list.displayNameForExternalProj(&projection), "\tEPSG_999999");
    projection.rename(TQString("My projection"));
    EXPECT_EQ(list.displayNameForExternalProj(&projection), "My projection");
}

// ---- Areas

TEST(TQExternalProjList, AKeyOfSeveralWordsCountsAsOne) {
    const SharedAreas shared(Areas{{"New Zealand", "Aotearoa"}, {"Zealand", "Denmark"}});
    EXPECT_EQ(familyOf(TQExternalProjList(), "\tEPSG_2193"), "Aotearoa"); // New Zealand - North Island ...
}

// EPSG:2154 is used in "France - onshore and offshore, mainland and Corsica (France métropolitaine ...)".
TEST(TQExternalProjList, AKeyIsAWholeWord) {
    const SharedAreas shared(Areas{{"Franc", "no word"}, {"France", "La France"}, {"Corsic", "no word"}});
    EXPECT_EQ(familyOf(TQExternalProjList(), "\tEPSG_2154"), "La France");
}

TEST(TQExternalProjList, ContinentsAndTheUSADecideBeforeCountries) {
    const SharedAreas shared(Areas{{"Austria", "A"},
                                   {"Denmark", "D"},
                                   {"Georgia", "Sakartvelo"},
                                   {"USA", "United States"},
                                   {"Canada", "C"},
                                   {"North America", "NA"},
                                   {"Europa", "EU"}});
    const TQExternalProjList list;
    EXPECT_EQ(familyOf(list, "\tEPSG_25832"), "EU"); // Europe between 6°E and 12°E: Austria; Denmark ...
    EXPECT_EQ(familyOf(list, "\tEPSG_26966"), "United States"); // United States (USA) - Georgia
    EXPECT_EQ(familyOf(list, "\tESRI:102008"), "NA");           // North America ... United States (USA)
}

TEST(TQExternalProjList, ADecidingWordWithoutFamilyLeavesTheOthersToDecide) {
    const SharedAreas shared(Areas{{"Austria", "A"}});
    EXPECT_EQ(familyOf(TQExternalProjList(), "\tEPSG_25832"), "A");
}

TEST(TQExternalProjList, AnAuthorityCanHaveAFamilyOfItsOwn) {
    const SharedAreas shared(Areas{{"IGNF", "Géographes français"}});
    const TQExternalProjList list;
    EXPECT_EQ(familyOf(list, "\tIGNF:LAMB93"), "Géographes français");
    EXPECT_EQ(familyOf(list, "\tEPSG_2154"), "** EPSG Other **");
}

TEST(TQExternalProjList, WhatHasNoFamilyIsOtherAndThatOfOthersSortsLast) {
    const SharedAreas shared(Areas{{"France", "La France"}});
    const TQExternalProjList list;
    EXPECT_EQ(familyOf(list, "\tEPSG_27700"), "** EPSG Other **");
    EXPECT_EQ(familyOf(list, "\tEPSG_2056"), "** EPSG Other **");
    EXPECT_EQ(familyOf(list, "\tIGNF:LAMB93"), "\r** IGNF Other **");
}

// Without the authority's code two names become the same.
TEST(TQExternalProjList, OfTwoSystemsShownAlikeInAFamilyTheFirstIsListed) {
    TemporaryDirectory directory;
    directory.fileWith("localization/en/same.strings", "\" (deprecated) (%s:%s)\" = \" (old)\";\n");
    const SharedDirectory shared(directory.directory());
    ASSERT_TRUE(TQLocalizer::appShared()->addStringsFromFile(TQString("same")));
    LiteralCatalogue::Texts texts;
    std::map<std::string, std::vector<std::string>> namesOfProj;
    for (const ListedSystem& system : systemsListedByProj()) {
        if (system.isDeprecated && system.isProjected) {
            namesOfProj[system.name + " (old)"].push_back(
                nameOf(system.authority.c_str(), system.code.c_str(), false).utf8());
        }
    }
    const TQExternalProjList list;
    directory.fileWith("localization/en/same.strings",
                       "\" (deprecated) (%s:%s)\" = \" (deprecated) (%s:%s)\";\n");
    resetSystemLocalization();

    const NamesByDisplayName listed = systemsOf(list, "** Deprecated **");
    int skipped = 0;
    for (const auto& [displayName, names] : namesOfProj) {
        ASSERT_EQ(listed.at(displayName), names.front());
        for (std::size_t index = 1; index < names.size(); ++index) {
            EXPECT_EQ(familyOf(list, names[index].c_str()), "(none)");
            ++skipped;
        }
    }
    EXPECT_GT(skipped, 0) << "PROJ lists several deprecated systems of one name";
    EXPECT_THAT(listed, SizeIs(namesOfProj.size()));
}

TEST(TQExternalProjList, WithoutAnAreasFileAllAreOther) {
    TemporaryDirectory directory;
    const SharedDirectory shared(directory.directory());
    const TQExternalProjList list;
    EXPECT_EQ(contentsOf(list), LiteralCatalogue({}, {}).families);
    EXPECT_EQ(familyOf(list, "\tEPSG_2154"), "** EPSG Other **");
    EXPECT_EQ(familyOf(list, "\tEPSG_32631"), "WGS 84 UTM");
}

TEST(TQExternalProjList, AnEmptyAreasFileIsAsGoodAsNone) {
    const SharedAreas shared("");
    EXPECT_EQ(contentsOf(TQExternalProjList()), LiteralCatalogue({}, {}).families);
}

TEST(TQExternalProjList, OddLinesOfTheAreasFileCountForNothing) {
    const SharedAreas shared("\xEF\xBB\xBF# a heading\n\n\t\nno tab\n\tno key\nno family\t\n"
                             "Switzerland\tSuisse\tand more\r\nSwitzerland\tsecond\nUK\tRoyaume-Uni");
    const TQExternalProjList list;
    EXPECT_EQ(familyOf(list, "\tEPSG_2056"), "Suisse");
    EXPECT_EQ(familyOf(list, "\tEPSG_27700"), "Royaume-Uni") << "the last line needs no end";
    EXPECT_THAT(contentsOf(list), AllOf(Not(Contains(Key(""))), Not(Contains(Key("no key")))));
}

TEST(TQExternalProjList, AnAreasFileThatIsADirectoryIsNone) {
    TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() / "TQN_ProjAreas.txt");
    const SharedDirectory shared(directory.directory());
    EXPECT_EQ(familyOf(TQExternalProjList(), "\tEPSG_2154"), "** EPSG Other **");
}

// ---- PROJ's database

TEST(TQExternalProjList, WithoutADatabaseItIsEmptyAndSaysNothing) {
    TemporaryDirectory directory;
    const SharedDirectory shared(directory.directory());
    const ProjSearchPath nowhere(directory.directory().utf8());
    proj_log_level(nullptr, PJ_LOG_ERROR);
    const CapturedMessages messages;
    testing::internal::CaptureStderr();
    const TQExternalProjList list;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(messages.lines(), IsEmpty());
    EXPECT_THAT(contentsOf(list), IsEmpty());
    EXPECT_EQ(familyOf(list, "\tEPSG_2154"), "(none)");
    EXPECT_EQ(proj_log_level(nullptr, PJ_LOG_TELL), PJ_LOG_ERROR) << "as it was before";
}

std::string databaseOfNewContexts() {
    const std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)> context(proj_context_create(),
                                                                               &proj_context_destroy);
    const char* path = proj_context_get_database_path(context.get());
    return path != nullptr ? path : "";
}

TEST(TQExternalProjList, ADatabaseInTheSharedDirectoryIsTheOneThatPROJUses) {
    const std::string usual = databaseOfNewContexts();
    ASSERT_TRUE(std::filesystem::exists(usual));
    TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() / "PROJ");
    std::filesystem::create_symlink(usual, directory.path() / "PROJ" / "proj.db");
    const SharedDirectory shared(directory.directory());
    const TQExternalProjList list;
    EXPECT_EQ(databaseOfNewContexts(), directory.file("PROJ/proj.db").utf8());
    EXPECT_EQ(familyOf(list, "\tEPSG_32631"), "WGS 84 UTM");
    proj_context_set_search_paths(nullptr, 0, nullptr);
}

TEST(TQExternalProjList, ASharedDirectoryWithoutDatabaseLeavesPROJItsOwn) {
    const std::string usual = databaseOfNewContexts();
    TemporaryDirectory directory;
    std::filesystem::create_directory(directory.path() / "PROJ");
    const SharedDirectory shared(directory.directory());
    const TQExternalProjList list;
    EXPECT_EQ(databaseOfNewContexts(), usual);
    EXPECT_FALSE(TQExternalProjList::newExternalEPSGProjectionFromID(2154, false)->isInvalid());
}

TEST(TQExternalProjList, TheBuildTreeHoldsTheDatabaseInItsSharedDirectory) {
    const TQString place = tq_createPath(TQGetApplicationSharedDirectory(), "PROJ", "proj.db");
    EXPECT_TRUE(std::filesystem::exists(tq_filesystemPath(place)));
}

/// Whether PROJ itself leads from the geodetic system of a definition to it.
bool isReachedByProj(const std::string& definition) {
    using Context = std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)>;
    using Object = std::unique_ptr<PJ, decltype(&proj_destroy)>;
    const Context context(proj_context_create(), &proj_context_destroy);
    proj_log_func(context.get(), nullptr, [](void*, int, const char*) {});
    const Object system(proj_create(context.get(), definition.c_str()), &proj_destroy);
    const Object geodetic(proj_crs_get_geodetic_crs(context.get(), system.get()), &proj_destroy);
    const Object operation(
        proj_create_crs_to_crs_from_pj(context.get(), geodetic.get(), system.get(), nullptr, nullptr),
        &proj_destroy);
    const Object normalized(proj_normalize_for_visualization(context.get(), operation.get()), &proj_destroy);
    return normalized != nullptr;
}

// PROJ 9.1 finds no way from EPSG:4296, deprecated, to itself.
TEST(TQExternalProjList, EveryListedEPSGSystemCanBeMadeByItsName) {
    const CapturedMessages messages;
    const TQExternalProjList list;
    int made = 0;
    int unreachable = 0;
    for (const auto& [family, systems] : contentsOf(list)) {
        for (const auto& [displayName, name] : systems) {
            const NameParts parts = partsOf(name.c_str());
            if (parts.authority == "EPSG") {
                const auto projection = TQExternalProjList::newExternalProjectionFromAuthAndStringCode(
                    parts.authority, parts.code, false);
                ASSERT_EQ(projection->name()->utf8(), name);
                const bool isMade = !projection->isInvalid();
                EXPECT_TRUE(isMade || !isReachedByProj("EPSG:" + parts.code.utf8())) << displayName;
                (isMade ? made : unreachable) += 1;
            }
        }
    }
    EXPECT_GT(made, 6000);
    EXPECT_LE(unreachable, 1);
}

// ---- One catalogue for the process

class TQExternalProjListShared : public testing::Test {
  protected:
    ~TQExternalProjListShared() override { TQExternalProjList::deleteAppShared(); }

    const TQString _key{"TQExternalProjList"};
};

TEST_F(TQExternalProjListShared, IsMadeOnceAndRegistered) {
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), nullptr);
    TQExternalProjList* const list = TQExternalProjList::appShared();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->sharedKey(), _key);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), list);
    EXPECT_EQ(TQExternalProjList::appShared(), list);
    EXPECT_EQ(familyOf(*list, "\tEPSG_32631"), "WGS 84 UTM");
}

TEST_F(TQExternalProjListShared, TheOneThatIsRegisteredAlreadyIsTaken) {
    auto registered = std::make_unique<TQExternalProjList>();
    TQExternalProjList* const list = registered.get();
    TQSharedObject::addAppSharedObject(std::move(registered));
    EXPECT_EQ(TQExternalProjList::appShared(), list);
}

TEST_F(TQExternalProjListShared, IsDeletedOnceWhetherCachedOrRegistered) {
    TQExternalProjList::deleteAppShared();
    TQExternalProjList::appShared();
    TQExternalProjList::deleteAppShared();
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), nullptr);
    TQExternalProjList::deleteAppShared();
    TQSharedObject::addAppSharedObject(std::make_unique<TQExternalProjList>());
    TQExternalProjList::deleteAppShared();
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), nullptr);
}

TEST_F(TQExternalProjListShared, RemovedElsewhereItIsMadeAnew) {
    TQExternalProjList::appShared();
    TQSharedObject::removeAppSharedObject(_key).reset();
    TQExternalProjList* const list = TQExternalProjList::appShared();
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), list);
    EXPECT_EQ(familyOf(*list, "\tEPSG_32631"), "WGS 84 UTM");
}

TEST_F(TQExternalProjListShared, ACopyHasTheContentsAndIsNobodysCatalogue) {
    TQExternalProjList* const list = TQExternalProjList::appShared();
    const std::unique_ptr<TQObject> copy = list->copy();
    EXPECT_NE(copy->isMemberOf("TQExternalProjList"), 0);
    EXPECT_NE(copy->isKindOf("TQSharedObject"), 0);
    const auto& catalogue = dynamic_cast<const TQExternalProjList&>(*copy);
    TQExternalProjList::deleteAppShared();
    EXPECT_EQ(familyOf(catalogue, "\tEPSG_32631"), "WGS 84 UTM");
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(_key), nullptr);
}

// ---- Texts in the user's languages

TEST(TQExternalProjList, ItsTextsAreShippedInEnglishAndFrench) {
    for (const char* language : {"en", "fr"}) {
        TQLocalizer localizer;
        localizer.setLanguage(TQString(language));
        ASSERT_TRUE(localizer.addStringsFromFile(TQString("projMessages")));
        for (const char* key :
             {"++ GeoCS ++", "++ GeoCS deprecated ++", "** Deprecated **", "** %s Other **"}) {
            EXPECT_FALSE(localizer.stringForKey(TQString(key)) == key) << key << " in " << language;
        }
    }
    TQLocalizer french;
    french.setLanguage(TQString("fr"));
    french.addStringsFromFile(TQString("projMessages"));
    EXPECT_EQ(french.stringForKey(TQString(" (deprecated) (%s:%s)")), " (périmé) (%s:%s)");
    EXPECT_EQ(french.stringForKey(TQString("++ GeoCS ++")), "Systèmes géographiques");
}

TEST(TQExternalProjList, SpeaksTheUsersLanguage) {
    TemporaryDirectory directory;
    directory.fileWith("localization/en/catalogue.strings", "\"++ GeoCS ++\" = \"Lat/lon\";\n"
                                                            "\"++ GeoCS deprecated ++\" = \"Old lat/lon\";\n"
                                                            "\"** Deprecated **\" = \"Old\";\n"
                                                            "\"** %s Other **\" = \"Rest of %s %n%s\";\n"
                                                            "\" (deprecated) (%s:%s)\" = \" <%s/%s>\";\n");
    const SharedDirectory shared(directory.directory());
    TQLocalizer localizer;
    ASSERT_TRUE(TQLocalizer::appShared()->addStringsFromFile(TQString("catalogue")));
    const TQExternalProjList list;
    directory.fileWith("localization/en/catalogue.strings",
                       "\"++ GeoCS ++\" = \"++ GeoCS ++\";\n"
                       "\"++ GeoCS deprecated ++\" = \"++ GeoCS deprecated ++\";\n"
                       "\"** Deprecated **\" = \"** Deprecated **\";\n"
                       "\"** %s Other **\" = \"** %s Other **\";\n"
                       "\" (deprecated) (%s:%s)\" = \" (deprecated) (%s:%s)\";\n");
    resetSystemLocalization();
    EXPECT_EQ(familyOf(list, "\tEPSG_4326"), "\tLat/lon");
    EXPECT_EQ(familyOf(list, "\tEPSG_2154"), "Rest of EPSG %n%s") << "only its own %s is filled in";
    EXPECT_THAT(systemsOf(list, "Old"), Contains(Key("Datum 73 / Modified Portuguese Grid <EPSG/27492>")));
}
