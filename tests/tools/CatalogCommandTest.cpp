#include "tools/tqproj/CatalogCommand.h"

#include "tests/tools/CommandCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using testing::Contains;
using testing::ElementsAre;

using testing::SizeIs;

namespace {

using Fields = std::vector<std::string>;
using Json = nlohmann::json;

struct CatalogCase : CommandCase {
    CatalogOptions options;

    ExitCode run() { return CatalogCommand(options, output, diagnostics).run(); }

    /// The lines of the output, cut at their tabs.
    std::vector<Fields> rows() const {
        std::vector<Fields> rows;
        std::istringstream lines(out());
        for (std::string line; std::getline(lines, line);) {
            Fields& fields = rows.emplace_back();
            std::istringstream columns(line);
            for (std::string field; std::getline(columns, field, '\t');) {
                fields.push_back(field);
            }
        }
        return rows;
    }
};

/// The codes of the systems that a search finds.
std::set<std::string> codesFound(const std::string& text) {
    CatalogCase test;
    test.options.search = text;
    EXPECT_EQ(test.run(), ExitCode::Success) << text;
    std::set<std::string> codes;
    for (const Fields& row : test.rows()) {
        codes.insert(row.front());
    }
    return codes;
}

TEST(CatalogCommand, ListsFamiliesInTheOrderOfPeople) {
    CatalogCase test;
    EXPECT_EQ(test.run(), ExitCode::Success);
    const std::vector<Fields> rows = test.rows();
    ASSERT_GT(rows.size(), 100U);
    EXPECT_EQ(rows[0].front(), "Geographic systems");
    EXPECT_EQ(rows[1].front(), "Geographic systems (deprecated)");
    EXPECT_EQ(rows[2].front(), "Africa");
    EXPECT_EQ(rows.back().front(), "IAU_2015, other") << "what an authority has besides comes last";
    EXPECT_THAT(rows, Contains(ElementsAre("WGS 84 UTM", "120")));
}

TEST(CatalogCommand, EverySystemIsListedOnce) {
    CatalogCase families;
    families.run();
    std::size_t total = 0;
    for (const Fields& row : families.rows()) {
        total += std::stoul(row.at(1));
    }
    CatalogCase all;
    all.options.search = "";
    EXPECT_EQ(all.run(), ExitCode::Success);
    std::set<std::string> codes;
    for (const Fields& row : all.rows()) {
        ASSERT_THAT(row, SizeIs(3));
        codes.insert(row.front());
    }
    EXPECT_GT(total, 9000U);
    EXPECT_THAT(all.rows(), SizeIs(total));
    EXPECT_THAT(codes, SizeIs(total));
}

TEST(CatalogCommand, ListsTheSystemsOfAFamily) {
    CatalogCase test;
    test.options.family = "france";
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.rows(),
                Contains(ElementsAre("EPSG:2154", "RGF93 v1 / Lambert-93 (EPSG:2154)", "France")));
    for (const Fields& row : test.rows()) {
        EXPECT_EQ(row.at(2), "France");
    }
}

// EPSG:2154: "France - onshore and offshore, mainland and Corsica (France métropolitaine including Corsica)."
TEST(CatalogCommand, FindsByNameAreaOrCode) {
    for (const char* text : {"lambert-93", "EPSG:2154", "2154", "corsica lambert", "LAMBERT CORSICA RGF93",
                             "métropolitaine", "  v1   France "}) {
        EXPECT_THAT(codesFound(text), Contains("EPSG:2154")) << text;
    }
    EXPECT_THAT(codesFound("EPSG:2154"), ElementsAre("EPSG:2154"));
    EXPECT_THAT(codesFound("lambert-93 EPSG:2154 france"), ElementsAre("EPSG:2154"));
    EXPECT_THAT(codesFound("EPSG:4326 WGS"), ElementsAre("EPSG:4326"));
}

TEST(CatalogCommand, SearchesInAFamily) {
    CatalogCase test;
    test.options.family = "Switzerland";
    test.options.search = "LV95";
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_THAT(test.rows(), Contains(Contains("EPSG:2056")));
    test.options.search = "2154";
    CatalogCase other;
    other.options = test.options;
    EXPECT_EQ(other.run(), ExitCode::Incomplete);
}

TEST(CatalogCommand, NothingFoundIsSaidByTheExitCode) {
    CatalogCase test;
    test.options.search = "no system is called so";
    EXPECT_EQ(test.run(), ExitCode::Incomplete);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(test.messages(), "");
    CatalogCase json;
    json.options = test.options;
    json.options.isJson = true;
    EXPECT_EQ(json.run(), ExitCode::Incomplete);
    EXPECT_EQ(json.out(), "[]\n");
}

TEST(CatalogCommand, UnknownFamilyIsAFailure) {
    CatalogCase test;
    test.options.family = "Atl\nantis";
    EXPECT_EQ(test.run(), ExitCode::Failure);
    EXPECT_EQ(test.out(), "");
    EXPECT_EQ(test.messages(), "tqproj: no family is called Atl\\x0Aantis (tqproj catalog lists them)\n");
}

TEST(CatalogCommand, WritesSystemsAsJson) {
    CatalogCase test;
    test.options.search = "EPSG:2154";
    test.options.isJson = true;
    EXPECT_EQ(test.run(), ExitCode::Success);
    const Json expected = {
        {{"code", "EPSG:2154"},
         {"name", "RGF93 v1 / Lambert-93 (EPSG:2154)"},
         {"family", "France"},
         {"externalName", "\tEPSG_2154"},
         {"area", "France - onshore and offshore, mainland and Corsica (France métropolitaine "
                  "including Corsica)."},
         {"projected", true},
         {"deprecated", false}}};
    EXPECT_EQ(Json::parse(test.out()), expected);
}

TEST(CatalogCommand, WritesFamiliesAsJson) {
    CatalogCase test;
    test.options.isJson = true;
    EXPECT_EQ(test.run(), ExitCode::Success);
    const Json families = Json::parse(test.out());
    EXPECT_THAT(families, Contains(Json{{"family", "WGS 84 UTM"}, {"systems", 120}}));
    CatalogCase lines;
    lines.run();
    EXPECT_THAT(families, SizeIs(lines.rows().size()));
}

TEST(CatalogCommand, TheWholeCatalogueIsJson) {
    CatalogCase test;
    test.options.search = "";
    test.options.isJson = true;
    EXPECT_EQ(test.run(), ExitCode::Success);
    EXPECT_GT(Json::parse(test.out()).size(), 9000U);
}

// Every projected EPSG system in use shall stand where a person would look for it.
TEST(CatalogCommand, NoProjectedEPSGSystemInUseIsLeftOver) {
    CatalogCase test;
    test.options.search = "EPSG:";
    test.options.isJson = true;
    EXPECT_EQ(test.run(), ExitCode::Success);
    int inUse = 0;
    std::vector<std::string> leftOver;
    for (const Json& system : Json::parse(test.out())) {
        if (system.at("projected") && !system.at("deprecated")) {
            ++inUse;
            if (system.at("family") == "EPSG, other") {
                leftOver.push_back(system.at("name"));
            }
        }
    }
    EXPECT_GT(inUse, 5000);
    EXPECT_THAT(leftOver, SizeIs(testing::Le(inUse / 50)));
}

} // namespace
