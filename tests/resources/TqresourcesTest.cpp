#include "projections/SideBySide.h"
#include "support/TQSharedDirectory.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <proj.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>

// The program that makes the resource tree, run as a user runs it.

using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

/// The first line of the file that says which version of the EPSG data set the tree was made from.
std::string versionOfTheTree() {
    const std::string text = readBytes(TQString(TQ_RESOURCE_LISTS "/data-set.txt"));
    return text.substr(0, text.find('\n'));
}

std::string versionOfProj() {
    PJ_CONTEXT* context = proj_context_create();
    const char* version = proj_context_get_database_metadata(context, "EPSG.VERSION");
    const std::string text = version != nullptr ? version : "none";
    proj_context_destroy(context);
    return text;
}

bool isMadeByHand(const fs::path& file) {
    const std::string name = tq_stringFromPath(file.stem()).utf8();
    for (const auto& filed : sidebyside::filedSystems()) {
        if (filed.name == name) {
            return true;
        }
    }
    return false;
}

/// Runs the program, its messages into a file, and answers its status, 0 for success.
int run(const std::string& arguments, const TQString& messages) {
    const std::string line =
        std::string("\"") + TQRESOURCES_PROGRAM + "\" " + arguments + " 2> \"" + messages.utf8() + "\"";
    return std::system(line.c_str());
}

std::string quoted(const TemporaryDirectory& directory) { return '"' + directory.directory().utf8() + '"'; }

/// Lists for the version of PROJ's data set, each with a few lines.
class FewLists {
  public:
    FewLists(const std::string& datums, const std::string& projections) {
        _lists.fileWith("data-set.txt", versionOfProj() + "\n");
        _lists.fileWith("ellipsoids.tsv", "7030\tWGS 84\n7004\tBessel 1841\n7019\tGRS 1980\n");
        _lists.fileWith("datums.tsv", datums);
        _lists.fileWith("projections.tsv", projections);
    }

    /// Makes a tree from them and answers the status.
    int make() const { return run(quoted(_tree) + " " + quoted(_lists), _lists.file("messages")); }

    const TemporaryDirectory& lists() const { return _lists; }
    std::string messages() const { return _lists.bytesOf("messages"); }
    bool hasMade(const char* file) const { return fs::exists(_tree.path() / file); }
    std::string areas() const { return _tree.bytesOf("areas.tsv"); }

  private:
    TemporaryDirectory _lists;
    TemporaryDirectory _tree;
};

} // namespace

TEST(Tqresources, MakesTheTreeThatIsInTheRepository) {
    if (versionOfProj() != versionOfTheTree()) {
        GTEST_SKIP() << "the tree was made from version " << versionOfTheTree()
                     << " of the EPSG data set, PROJ has version " << versionOfProj();
    }
    const TemporaryDirectory made;
    const TemporaryDirectory messages;
    ASSERT_EQ(run(quoted(made), messages.file("messages")), 0);
    EXPECT_EQ(messages.bytesOf("messages"), "");
    const fs::path tree = tq_filesystemPath(tq_createPath(TQGetApplicationSharedDirectory(), "resProj"));
    std::set<fs::path> generated;
    for (const auto& entry : fs::recursive_directory_iterator(made.path())) {
        if (entry.is_regular_file()) {
            const fs::path file = entry.path().lexically_relative(made.path());
            generated.insert(file);
            EXPECT_EQ(readBytes(tq_stringFromPath(entry.path())), readBytes(tq_stringFromPath(tree / file)))
                << file;
        }
    }
    EXPECT_GT(generated.size(), 300U);
    for (const auto& entry : fs::recursive_directory_iterator(tree)) {
        const fs::path file = entry.path().lexically_relative(tree);
        EXPECT_TRUE(!entry.is_regular_file() || generated.contains(file) || isMadeByHand(file)) << file;
    }
}

TEST(Tqresources, ReportsEachCodeThatItCannotExpressAndWritesTheOthers) {
    struct Case {
        const char* line;
        const char* reason;
    };
    constexpr Case cases[] = {
        {"28992\tRD New", "has a method that no class expresses, EPSG 9809"}, // oblique stereographic
        {"5042\tUPS South", "does not come back"},                            // a false northing in the south
        {"3413\tSea ice", "has a method that no class expresses, EPSG 9829"},
        {"26940\tAlaska zone 10", "differs from PROJ's by"}, // across the antimeridian
        {"2227\tCalifornia zone 3 in feet", "is not in metres"},
        {"4326\tNot projected", "is no projected system"},
        {"27700\tBritish National Grid", "has an ellipsoid that is not in the list: 7001"},
        {"31467\tUnknown datum\tAtlantis", "is not on the datum Atlantis but on"},
        {"32631\tAnother datum\tDHDN", "is not on the datum DHDN but on"},
        {"999999\tNowhere", "is not in the data set"},
    };
    std::string projections = "32631\tUTM\n31467\tGrid\tDHDN\n";
    for (const Case& refused : cases) {
        projections += std::string(refused.line) + "\n";
    }
    const FewLists few("1777\tDHDN\n", projections);
    EXPECT_NE(few.make(), 0);
    for (const Case& refused : cases) {
        const std::string line(refused.line);
        const std::string code = line.substr(0, line.find('\t'));
        EXPECT_THAT(few.messages(), ContainsRegex("EPSG:" + code + ", [^\n]*: " + refused.reason));
    }
    EXPECT_EQ(std::ranges::count(few.messages(), '\n'), std::ssize(cases));
    EXPECT_TRUE(few.hasMade("Projection/UTM.proj"));
    EXPECT_TRUE(few.hasMade("Projection/Grid.proj"));
    EXPECT_FALSE(few.hasMade("Projection/UPS South.proj"));
    EXPECT_EQ(few.areas(), "UTM\t0\t0\t6\t84\nGrid\t7.5\t47.27\t10.51\t55.09\n");
}

TEST(Tqresources, WritesTheAreasOfProjectionsMadeByHand) {
    const FewLists few("", "32631\tUTM\n");
    few.lists().fileWith("made-by-hand.tsv", "2056\tCH1903+ / LV95\n999999\tNowhere\n"
                                             "29177\tOut of use\n3832\tPDC Mercator\n");
    EXPECT_NE(few.make(), 0);
    EXPECT_EQ(few.messages(), "tqresources: EPSG:999999, Nowhere: is not in the data set\n"
                              "tqresources: EPSG:29177, Out of use: has no area of use\n");
    EXPECT_EQ(few.areas(), "UTM\t0\t0\t6\t84\n"
                           "CH1903+ / LV95\t5.96\t45.82\t10.49\t47.81\n"
                           "PDC Mercator\t98.69\t-60\t-68\t66.67\n");
    EXPECT_FALSE(few.hasMade("Projection/PDC Mercator.proj"));
}

TEST(Tqresources, ADatumIsATransformationToWgs84OfThreeOrSevenParameters) {
    const FewLists few("1777\tDHDN\n5191\tTen parameters\n15948\tTo ETRS89\n1133\tUnlisted ellipsoid\n", "");
    EXPECT_NE(few.make(), 0);
    EXPECT_THAT(few.messages(),
                HasSubstr("EPSG:5191, Ten parameters: has neither three nor seven parameters\n"));
    EXPECT_THAT(few.messages(), HasSubstr("EPSG:15948, To ETRS89: does not lead to WGS 84\n"));
    EXPECT_THAT(few.messages(),
                HasSubstr("EPSG:1133, Unlisted ellipsoid: has an ellipsoid that is not in the list"));
    EXPECT_EQ(std::ranges::count(few.messages(), '\n'), 3);
    EXPECT_TRUE(few.hasMade("Datum/DHDN.dtm"));
    EXPECT_FALSE(few.hasMade("Datum/Ten parameters.dtm"));
}

TEST(Tqresources, RefusesListsOfAnotherVersionOfTheDataSet) {
    const FewLists few("", "");
    few.lists().fileWith("data-set.txt", "v0\n");
    EXPECT_NE(few.make(), 0);
    EXPECT_THAT(few.messages(), HasSubstr("the lists are for version v0"));
    EXPECT_FALSE(few.hasMade("Ellipsoids"));
}

TEST(Tqresources, ADirectoryThatCannotBeMadeIsAFailure) {
    const TemporaryDirectory place;
    const TQString file = place.fileWith("file", "");
    EXPECT_NE(run('"' + file.utf8() + '"', place.file("messages")), 0);
    EXPECT_THAT(place.bytesOf("messages"), HasSubstr("tqresources: "));
}

TEST(Tqresources, AFileThatCannotBeWrittenIsAFailure) {
    const TemporaryDirectory tree;
    fs::create_directory(tree.path() / "areas.tsv");
    const TemporaryDirectory lists;
    lists.fileWith("data-set.txt", versionOfProj() + "\n");
    EXPECT_NE(run(quoted(tree) + " " + quoted(lists), lists.file("messages")), 0);
    EXPECT_THAT(lists.bytesOf("messages"), HasSubstr("areas.tsv cannot be written\n"));
}

TEST(Tqresources, NeedsADirectory) {
    const TemporaryDirectory messages;
    EXPECT_NE(run("", messages.file("messages")), 0);
    EXPECT_EQ(messages.bytesOf("messages"), "usage: tqresources DIRECTORY [LISTS]\n");
}
