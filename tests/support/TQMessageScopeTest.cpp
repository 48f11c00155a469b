#include "support/TQMessageScope.h"

#include "support/TQMessages.h"
#include "testing/CapturedMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using Rule = TQMessageScope::Rule;

TEST(TQMessageScope, OfSilenceHoldsEveryLineBackWhileItLives) {
    const CapturedMessages messages;
    {
        const TQMessageScope silence(Rule::Silence);
        tq_perror("one");
        tq_perrorf("number %d", 1);
        tq_wperror(u"wide");
    }
    EXPECT_THAT(messages.lines(), IsEmpty());
    tq_perror("one");
    EXPECT_THAT(messages.lines(), ElementsAre("one"));
}

TEST(TQMessageScope, LetsALineAndLinesOfAFormatOutOnce) {
    const CapturedMessages messages;
    for (int scope = 0; scope < 2; ++scope) {
        const TQMessageScope once(Rule::OnceEach);
        for (int number = 0; number < 3; ++number) {
            tq_perror("one");
            tq_perror("other");
            tq_perrorf("number %d", number);
            tq_perrorf("the same");
        }
    }
    EXPECT_THAT(messages.lines(),
                ElementsAre("one", "other", "number 0", "the same", "one", "other", "number 0", "the same"));
}

TEST(TQMessageScope, WithinOneOfSilenceLetsNothingOut) {
    const CapturedMessages messages;
    const TQMessageScope silence(Rule::Silence);
    const TQMessageScope once(Rule::OnceEach);
    tq_perror("one");
    EXPECT_THAT(messages.lines(), IsEmpty());
}

TEST(TQMessageScope, IsThatOfItsThread) {
    const CapturedMessages messages;
    const TQMessageScope silence(Rule::Silence);
    std::thread([] { tq_perror("elsewhere"); }).join();
    EXPECT_THAT(messages.lines(), ElementsAre("elsewhere"));
}
