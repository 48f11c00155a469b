#include "proj/TQExternalProjList.h"
#include "proj/TQGeoCSTrans.h"
#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "support/TQErrorSpool.h"
#include "support/TQUnit.h"
#include "testing/CapturedMessages.h"
#include "testing/ProjectionFiles.h"
#include "testing/StreamBytes.h"
#include "testing/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using testing::StartsWith;

// What PROJ opens for definitions of files and documents, and what for those of the user.

namespace {

constexpr const char* kGrid = "ntf_r93.gsb"; // France, IGN's
const TQPoint kParis{tq_deg2rad(2.3522), tq_deg2rad(48.8566)};

/// Where PROJ has its grid; empty when it has none.
std::filesystem::path installedGrid() {
    const std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)> context(proj_context_create(),
                                                                               &proj_context_destroy);
    const std::filesystem::path database = proj_context_get_database_path(context.get());
    const std::filesystem::path grid = database.parent_path() / kGrid;
    return std::filesystem::exists(grid) ? grid : std::filesystem::path();
}

/// A geographic system whose datum is the one of a grid, and that of WGS 84 by it.
std::string shiftedBy(const std::string& grid) { return "+proj=longlat +ellps=clrk80ign +nadgrids=" + grid; }

/// A projection as files hold it.
std::unique_ptr<TQPrProj4> fromFile(const std::string& definition) {
    auto projection = std::make_unique<TQPrProj4>();
    EXPECT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nRead\n" + definition + "\n"), 0);
    return projection;
}

/// A projection as documents hold it.
std::unique_ptr<TQPrProj4> fromArchive(const std::string& definition) {
    auto projection = std::make_unique<TQPrProj4>();
    ByteStream stream(StreamBytes().tag("TQPrProj4", 0).text("Read").text(definition));
    projection->unarchiveFrom(stream.get());
    return projection;
}

/// A projection as the user defines it.
std::unique_ptr<TQPrProj4> typed(const std::string& definition) {
    auto projection = std::make_unique<TQPrProj4>();
    projection->initFromPROJString(definition.c_str(), true);
    return projection;
}

/// The place of Paris on the datum of a definition, from WGS 84; infinite, or as it was, without the grid.
TQPoint shiftedParis(TQPrProj4& projection) {
    const CapturedMessages messages;
    projection.initPROJ(true);
    TQPoint shifted = kParis;
    projection.convertGeoPt(kParis, shifted);
    return {tq_deg2rad(shifted.x), tq_deg2rad(shifted.y)};
}

bool isShifted(TQPrProj4& projection) {
    constexpr double least = 1e-6; // of about 1e-5 in Paris, 50 m
    constexpr double greatest = 1e-4;
    const TQPoint place = shiftedParis(projection);
    const double distance = std::hypot(place.x - kParis.x, place.y - kParis.y);
    return distance > least && distance < greatest;
}

class Confinement : public testing::Test {
  protected:
    void SetUp() override {
        const std::filesystem::path grid = installedGrid();
        if (grid.empty()) {
            GTEST_SKIP() << "PROJ has no grid here";
        }
        std::filesystem::copy_file(grid, directory.path() / "copy.gsb");
    }

    std::string copy() const { return (directory.path() / "copy.gsb").string(); }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(Confinement, PROJsOwnGridsServeEveryDefinition) {
    EXPECT_TRUE(isShifted(*typed(shiftedBy(kGrid))));
    EXPECT_TRUE(isShifted(*fromFile(shiftedBy(kGrid))));
    EXPECT_TRUE(isShifted(*fromArchive(shiftedBy(kGrid))));
    EXPECT_TRUE(isShifted(*fromFile(shiftedBy(installedGrid().string())))) << "by its path";
}

TEST_F(Confinement, OtherFilesServeTheDefinitionsOfTheUserAlone) {
    EXPECT_TRUE(isShifted(*typed(shiftedBy(copy()))));
    EXPECT_FALSE(isShifted(*fromFile(shiftedBy(copy()))));
    EXPECT_FALSE(isShifted(*fromArchive(shiftedBy(copy()))));
}

TEST_F(Confinement, NoPathLeadsOutOfPROJsDirectories) {
    const std::filesystem::path data = installedGrid().parent_path();
    const std::string upwards = std::filesystem::relative(copy(), data).string();
    const std::string fromHere = std::filesystem::relative(copy()).string();
    ASSERT_THAT(upwards, StartsWith(".."));
    for (const std::string& path : {upwards, (data / upwards).string(), fromHere, "./" + fromHere}) {
        EXPECT_FALSE(isShifted(*fromFile(shiftedBy(path)))) << path;
    }
    EXPECT_TRUE(isShifted(*typed(shiftedBy(fromHere))));
}

/// Lets PROJ's contexts search in directories while it lives.
class SearchedDirectories {
  public:
    explicit SearchedDirectories(const std::vector<std::string>& directories) {
        const PJ_INFO before = proj_info();
        for (std::size_t i = 0; i < before.path_count; ++i) {
            _before.emplace_back(before.paths[i]);
        }
        set(directories);
    }
    ~SearchedDirectories() { set(_before); }
    SearchedDirectories(const SearchedDirectories&) = delete;
    SearchedDirectories& operator=(const SearchedDirectories&) = delete;

  private:
    static void set(const std::vector<std::string>& directories) {
        std::vector<const char*> paths;
        for (const std::string& directory : directories) {
            paths.push_back(directory.c_str());
        }
        proj_context_set_search_paths(nullptr, static_cast<int>(paths.size()), paths.data());
    }

    std::vector<std::string> _before;
};

TEST_F(Confinement, EveryDirectoryThatPROJSearchesIsPROJs) {
    const std::string data = installedGrid().parent_path().string();
    const SearchedDirectories searched({data, directory.path().string() + "/"});
    EXPECT_TRUE(isShifted(*typed(shiftedBy("copy.gsb"))));
    EXPECT_TRUE(isShifted(*fromFile(shiftedBy("copy.gsb"))));
    EXPECT_TRUE(isShifted(*fromFile(shiftedBy(kGrid))));
}

TEST_F(Confinement, CopiesAreAsTheirOriginals) {
    const auto read = fromFile(shiftedBy(copy()));
    const auto given = typed(shiftedBy(copy()));
    TQPrProj4 copyOfRead(*read);
    TQPrProj4 copyOfGiven(*given);
    EXPECT_TRUE(copyOfRead.isConfined());
    EXPECT_FALSE(copyOfGiven.isConfined());
    EXPECT_FALSE(isShifted(copyOfRead));
    EXPECT_TRUE(isShifted(copyOfGiven));
}

TEST_F(Confinement, TheUsersWordLiftsItAndReadingPutsItBack) {
    const auto projection = fromFile(shiftedBy(copy()));
    projection->initFromPROJString(shiftedBy(copy()).c_str(), true);
    EXPECT_FALSE(projection->isConfined());
    EXPECT_TRUE(isShifted(*projection));
    ASSERT_EQ(readProjectionText(*projection, "TQPrProj4 v0\nRead\n" + shiftedBy(copy()) + "\n"), 0);
    EXPECT_TRUE(projection->isConfined());
    EXPECT_FALSE(isShifted(*projection));
}

TEST_F(Confinement, AnEditorThatGivesBackTheDefinitionDoesNotLiftIt) {
    const auto projection = fromFile(shiftedBy(copy()));
    const CapturedMessages messages;
    ParameterTable same;
    projection->setParams(same.with("definition", TQString(shiftedBy(copy()).c_str())).table());
    EXPECT_TRUE(projection->isConfined());
    ParameterTable other;
    projection->setParams(
        other.with("definition", TQString((shiftedBy(copy()) + " +no_defs").c_str())).table());
    EXPECT_FALSE(projection->isConfined());
    EXPECT_TRUE(isShifted(*projection));
}

// A file that is there and one that is not must be the same to whoever wrote the definition.
TEST_F(Confinement, NothingIsToldOfOtherFiles) {
    const auto messagesOf = [](const std::string& definition) {
        const CapturedMessages messages;
        const auto projection = fromFile(definition);
        projection->ensureBuilt();
        std::string all = projection->PROJLogMessage().utf8() + projection->PROJErrorMessage().utf8();
        for (const std::string& line : messages.lines()) {
            all += line;
        }
        TQErrorSpool::takeMessages();
        return all;
    };
    const std::string there = directory.fileWith("there", "{\"secret\":1}\n<root> +proj=merc <>\n").utf8();
    const std::string gone = there.substr(0, there.size() - 5) + "where";
    for (const std::string before : {"+init=", "+proj=tinshift +file=", "+proj=defmodel +model=",
                                     "+proj=vgridshift +grids=", "+proj=horner +file="}) {
        std::string answer = messagesOf(before + there + ":root");
        std::string expected = messagesOf(before + gone + ":root");
        for (std::size_t at = 0; (at = expected.find(gone, at)) != std::string::npos;) {
            expected.replace(at, gone.size(), there);
        }
        EXPECT_EQ(answer, expected);
        answer = messagesOf(before + there);
        EXPECT_EQ(answer.find("secret"), std::string::npos) << answer;
    }
}

TEST_F(Confinement, NamesOfTheCatalogueAreNoWayAroundIt) {
    const CapturedMessages messages;
    const auto external = TQExternalProjList::newExternalProjectionFromAuthAndStringCode(
        TQString(("+init=" + directory.fileWith("init", "<root> +proj=merc +type=crs <>\n").utf8()).c_str()),
        TQString("root"), false);
    EXPECT_TRUE(dynamic_cast<const TQPrProj4&>(*external).isConfined());
    EXPECT_TRUE(external->isInvalid());
    const auto common = TQExternalProjList::newExternalEPSGProjectionFromID(2154, false);
    EXPECT_FALSE(dynamic_cast<const TQPrProj4&>(*common).isConfined());
}

TEST_F(Confinement, TransformationsOfDocumentsAreConfinedToo) {
    const CapturedMessages messages;
    const auto definitionIn = [this](const std::string& file) { // one for each: PROJ remembers what it read
        return "+init=" + directory.fileWith(file, "<root> +proj=longlat +ellps=intl <>\n").utf8() +
               ":root +type=crs";
    };
    EXPECT_FALSE(TQGeoCSTrans("EPSG:4326", definitionIn("one").c_str()).isInErrorState());
    ByteStream foreign(StreamBytes().tag("TQGeoCSTrans", 0).text("EPSG:4326").text(definitionIn("two")));
    EXPECT_TRUE(TQGeoCSTrans(foreign.get()).isInErrorState());
    ByteStream common(StreamBytes().tag("TQGeoCSTrans", 0).text("EPSG:4326").text("EPSG:4275"));
    TQPoint paris;
    EXPECT_TRUE(TQGeoCSTrans(common.get()).forwardTransformationDecDeg({2.3522, 48.8566}, paris));
    EXPECT_NEAR(paris.x, 2.352904332, 1e-9) << "as cs2cs of PROJ 9.1.1 has it";
    EXPECT_NEAR(paris.y, 48.856666460, 1e-9);
}
