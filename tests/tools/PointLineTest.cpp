#include "tools/tqproj/PointLine.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void expectParts(const PointLine& line, const char* lead, const char* first, const char* separator,
                 const char* second, const char* rest) {
    EXPECT_EQ(line.lead, lead);
    EXPECT_EQ(line.first, first);
    EXPECT_EQ(line.separator, separator);
    EXPECT_EQ(line.second, second);
    EXPECT_EQ(line.rest, rest);
}

TEST(PointLine, BlanksSeparateFields) {
    expectParts(PointLine("2.35 48.85 Paris, France"), "", "2.35", " ", "48.85", " Paris, France");
}

TEST(PointLine, CommasSeparateFields) {
    expectParts(PointLine("2.35,48.85,Paris,France"), "", "2.35", ",", "48.85", ",Paris,France");
}

TEST(PointLine, SeparatorKeepsTabsAndBlanksAroundAComma) {
    expectParts(PointLine("2.35 ,\t48.85 ,Paris"), "", "2.35", " ,\t", "48.85", " ,Paris");
}

TEST(PointLine, LeadKeepsBlanks) { expectParts(PointLine(" \t2 48"), " \t", "2", " ", "48", ""); }

TEST(PointLine, LeadKeepsAByteOrderMark) {
    expectParts(PointLine("\xEF\xBB\xBF 2 48"), "\xEF\xBB\xBF ", "2", " ", "48", "");
}

TEST(PointLine, OneCommaIsOneSeparator) { expectParts(PointLine("2,,48"), "", "2", ",", "", ",48"); }

TEST(PointLine, FirstFieldMayBeEmpty) { expectParts(PointLine(",48"), "", "", ",", "48", ""); }

TEST(PointLine, SecondFieldMayBeMissing) {
    expectParts(PointLine("2"), "", "2", "", "", "");
    expectParts(PointLine("2 "), "", "2", " ", "", "");
    expectParts(PointLine("2,"), "", "2", ",", "", "");
}

TEST(PointLine, PartsMakeUpTheLine) {
    for (const std::string line : {"", " ", ",", "2.35 , 48.85\t\t x,y ", "a b c", "  ,,  ,", "2"}) {
        const PointLine parts(line);
        EXPECT_EQ(std::string(parts.lead) + std::string(parts.first) + std::string(parts.separator) +
                      std::string(parts.second) + std::string(parts.rest),
                  line);
    }
}

TEST(PointLine, BlankLinesAndCommentsHoldNoPoint) {
    for (const char* line : {"", " ", "\t ", "#", "# 2 48", "  # 2 48", "\xEF\xBB\xBF# name"}) {
        EXPECT_FALSE(PointLine::isPoint(line)) << line;
    }
    for (const char* line : {"2 48", "x", ",", " 2", "2 # 48", "\xEF\xBB\xBF 2 48"}) {
        EXPECT_TRUE(PointLine::isPoint(line)) << line;
    }
}

} // namespace
