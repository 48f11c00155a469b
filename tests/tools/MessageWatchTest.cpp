#include "tools/tqproj/MessageWatch.h"

#include "support/TQMessages.h"
#include "tools/tqproj/LibraryMessages.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(MessageWatch, HearsWhatIsPrintedWhileItLivesAndKeepsItFromTheOthers) {
    LibraryMessages messages;
    {
        const MessageWatch watch;
        EXPECT_FALSE(watch.hasHeard());
        tq_perror("ahead of its place\n");
        EXPECT_TRUE(watch.hasHeard());
    }
    EXPECT_TRUE(messages.isEmpty());
    tq_perror("in its place\n");
    EXPECT_EQ(messages.take(), "in its place");
}

TEST(MessageWatch, HearsItsOwnThreadAlone) {
    LibraryMessages messages;
    const MessageWatch watch;
    bool hasOtherHeard = false;
    std::thread other([&hasOtherHeard] {
        const MessageWatch otherWatch;
        tq_perror("elsewhere\n");
        hasOtherHeard = otherWatch.hasHeard();
    });
    other.join();
    EXPECT_TRUE(hasOtherHeard);
    EXPECT_FALSE(watch.hasHeard());
    EXPECT_TRUE(messages.isEmpty());
}

} // namespace
