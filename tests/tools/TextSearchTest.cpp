#include "tools/tqproj/TextSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextSearch, CapitalsFromAToZCountForNothing) {
    EXPECT_TRUE(isSameText("UTM zone", "utm ZONE"));
    EXPECT_FALSE(isSameText("UTM", "UTM "));
    EXPECT_FALSE(isSameText("É", "é"));
}

TEST(TextSearch, EveryWordMustBeHeld) {
    EXPECT_TRUE(holdsAllWords("Lambert-93 GRS 1980", " grs  LAMB "));
    EXPECT_FALSE(holdsAllWords("Lambert-93", "lambert 94"));
    EXPECT_TRUE(holdsAllWords("Lambert-93", ""));
}

TEST(TextSearch, NearNamesDifferInFewLetters) {
    const std::vector<std::string> names{"Lambert-93", "Lambert-94", "UTM zone 31N", "Bonne"};
    EXPECT_THAT(nearMisses("lambert93", names), ElementsAre("Lambert-93", "Lambert-94"));
    EXPECT_THAT(nearMisses("Lambret-93", names), ElementsAre("Lambert-93"));
    EXPECT_THAT(nearMisses("Bnne", names), ElementsAre("Bonne"));
    EXPECT_THAT(nearMisses("Mollweide", names), IsEmpty());
    EXPECT_THAT(nearMisses("", names), IsEmpty());
}

TEST(TextSearch, NearNamesHoldAllWords) {
    const std::vector<std::string> names{"UTM zone 31N (WGS 84)", "UTM zone 31N", "UTM zone 32N", "31"};
    EXPECT_THAT(nearMisses("zone 31N", names), ElementsAre("UTM zone 31N", "UTM zone 31N (WGS 84)"));
}

TEST(TextSearch, NearNamesBeginWithAnAbbreviation) {
    const std::vector<std::string> names{"NAD83(CSRS)", "NAD27", "Grenada 1953", "ED50", "Old Hawaiian"};
    EXPECT_THAT(nearMisses("NAD", names), ElementsAre("NAD27", "NAD83(CSRS)"));
    EXPECT_THAT(nearMisses("ED", names), ElementsAre("ED50"));
    EXPECT_THAT(nearMisses("O", names), IsEmpty());
}

TEST(TextSearch, ThreeNearNamesAreEnough) {
    EXPECT_THAT(nearMisses("zone", {"zone 4", "zone 3", "zone 12", "zone 1", "zone 2"}),
                ElementsAre("zone 1", "zone 2", "zone 3"));
}

TEST(TextSearch, ALongTextHasNoNearName) {
    EXPECT_THAT(nearMisses(std::string(1000000, 'x'), std::vector<std::string>(300, std::string(100, 'y'))),
                IsEmpty());
}
