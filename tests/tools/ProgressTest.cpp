#include "tools/tqproj/Progress.h"

#include "tests/tools/CapturedStream.h"
#include "tools/tqproj/Diagnostics.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

constexpr Progress::Clock::time_point start{};

TEST(Progress, ShortConversionsShowNothing) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    {
        Progress progress(diagnostics, true, 1000, start);
        progress.advance(500, 10, start + 999ms);
    }
    EXPECT_EQ(stream.text(), "");
}

TEST(Progress, ShowsLinesAndShareAfterASecondAndGoesAway) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    {
        Progress progress(diagnostics, true, 1000, start);
        progress.advance(250, 1000000, start + 500ms);
        progress.advance(250, 1500000, start + 1000ms);
        EXPECT_EQ(stream.text(), "\rtqproj: 2.5 million lines, 50 %");
    }
    EXPECT_EQ(stream.text(), "\rtqproj: 2.5 million lines, 50 %\r" + std::string(31, ' ') + "\r");
}

TEST(Progress, IsShownAFewTimesASecond) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    Progress progress(diagnostics, true, 0, start);
    progress.advance(1, 100000, start + 1000ms);
    progress.advance(1, 100000, start + 1199ms);
    EXPECT_EQ(stream.text(), "\rtqproj: 0.1 million lines");
    progress.advance(1, 100000, start + 1200ms);
    EXPECT_EQ(stream.text(), "\rtqproj: 0.1 million lines\rtqproj: 0.3 million lines");
}

TEST(Progress, GrowingFileIsNeverMoreThanDone) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    Progress progress(diagnostics, true, 10, start);
    progress.advance(20, 100000, start + 2s);
    EXPECT_EQ(stream.text(), "\rtqproj: 0.1 million lines, 100 %");
}

TEST(Progress, HiddenOneShowsNothing) {
    const CapturedStream stream;
    Diagnostics diagnostics(stream.stream());
    Progress(diagnostics, false, 10, start).advance(20, 100000, start + 2s);
    EXPECT_EQ(stream.text(), "");
}

} // namespace
