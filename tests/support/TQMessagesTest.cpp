#include "support/TQMessages.h"
#include "testing/CapturedMessages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

TEST(TQMessages, EveryFormReachesThePrinterAsItIs) {
    const CapturedMessages printed;
    tq_perror("TQClass::method: text\n");
    tq_perror(std::string("standard"));
    tq_perror(TQString("string"));
    tq_wperror(u"wide \u20AC");
    tq_perrorf("%s::%d\n", "TQClass", 7);
    EXPECT_EQ(printed.lines(),
              (Lines{"TQClass::method: text\n", "standard", "string", "wide \xE2\x82\xAC", "TQClass::7\n"}));
}

TEST(TQMessages, ThePrinterAlwaysGetsUtf8) {
    const CapturedMessages printed;
    tq_perror("degr\xDDs");
    tq_perror("degr\xC3\xA9s");
    tq_perror(TQString("degr\xDDs"));
    EXPECT_EQ(printed.lines(), (Lines{"degr\xC3\xA9s", "degr\xC3\xA9s", "degr\xC3\xA9s"}));
}

TEST(TQMessages, NullPrintsNothing) {
    const CapturedMessages printed;
    tq_perror(static_cast<const char*>(nullptr));
    tq_wperror(nullptr);
    EXPECT_TRUE(printed.lines().empty());
}

TEST(TQMessages, SettingAPrinterAnswersTheOneBefore) {
    const CapturedMessages outer;
    {
        const CapturedMessages inner;
        tq_perror("inner");
        EXPECT_EQ(inner.lines(), Lines{"inner"});
    }
    tq_perror("outer");
    EXPECT_EQ(outer.lines(), Lines{"outer"});
}

TEST(TQMessages, APrinterMaySetAnother) {
    const CapturedMessages restoresThePrinter;
    tq_setErrorPrinter([](std::string_view) { tq_setErrorPrinter([](std::string_view) {}); });
    tq_perror("first");
    tq_perror("second");
    EXPECT_TRUE(restoresThePrinter.lines().empty());
}

TEST(TQMessages, TheDefaultPrinterWritesLinesToStandardError) {
    const CapturedMessages restoresThePrinter;
    tq_setErrorPrinter(nullptr);
    testing::internal::CaptureStderr();
    tq_perror("ended\n");
    tq_perror("open");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ended\nopen\n");
}

} // namespace
