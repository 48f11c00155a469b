#include "support/TQSharedString.h"

#include "support/TQData.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <utility>

TEST(TQSharedString, EqualTextsShareOneInstance) {
    TQSharedString* const first = TQSharedString::getUnique("shared");
    TQSharedString* const second = TQSharedString::getUnique("shared");
    TQSharedString* const other = TQSharedString::getUnique("other");
    EXPECT_EQ(first, second);
    EXPECT_NE(first, other);
    EXPECT_EQ(first->string(), "shared");
    EXPECT_FALSE(first->unuse());
    EXPECT_TRUE(first->unuse());
    EXPECT_TRUE(other->unuse());
}

TEST(TQSharedString, TheSameTextInTwoEncodingsIsShared) {
    TQSharedString* const inDefault = TQSharedString::getUnique("degr\xDDs");
    TQSharedString* const inUTF8 = TQSharedString::getUnique("degr\xC3\xA9s");
    EXPECT_EQ(inDefault, inUTF8);
    EXPECT_STREQ(inUTF8->string().charBuffer(), "degr\xDDs");
    EXPECT_FALSE(inUTF8->unuse());
    EXPECT_TRUE(inDefault->unuse());
}

TEST(TQSharedString, AnInstanceIsMadeAnewAfterItsLastUse) {
    EXPECT_TRUE(TQSharedString::getUnique("again")->unuse());
    TQSharedString* const anew = TQSharedString::getUnique("again");
    EXPECT_EQ(anew->string(), "again");
    EXPECT_TRUE(anew->unuse());
}

TEST(TQSharedString, EveryUseCounts) {
    TQSharedString* const shared = TQSharedString::getUnique("counted");
    EXPECT_EQ(shared->uses(), 1);
    shared->use();
    shared->use();
    EXPECT_EQ(shared->uses(), 3);
    EXPECT_FALSE(shared->unuse());
    EXPECT_FALSE(shared->unuse());
    EXPECT_TRUE(shared->unuse());
}

TEST(TQSharedString, ThreadsMayShareTexts) {
    constexpr int rounds = 2000;
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([] {
            for (int i = 0; i < rounds; ++i) {
                TQString text;
                text.set(i % 7);
                TQSharedString* const shared = TQSharedString::getUnique(text);
                EXPECT_EQ(shared->string(), text);
                shared->unuse();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    TQSharedString* const shared = TQSharedString::getUnique("3");
    EXPECT_TRUE(shared->unuse());
}

TEST(TQSharedStringUse, HoldsOneUseForItsLifetime) {
    TQSharedString* const shared = TQSharedString::getUnique("held");
    {
        const TQSharedStringUse use(shared);
        EXPECT_EQ(use.string(), shared);
        EXPECT_FALSE(shared->unuse());
        EXPECT_EQ(shared->uses(), 1);
        const std::array<TQSharedStringUse, 2> copies = {use, use};
        EXPECT_EQ(copies[1], use);
        EXPECT_EQ(shared->uses(), 3);
        shared->use();
    }
    EXPECT_TRUE(shared->unuse());
}

TEST(TQSharedStringUse, IsMadeOfATextToo) {
    const TQSharedStringUse use(TQString("made of text"));
    ASSERT_NE(use.string(), nullptr);
    EXPECT_EQ(use.string()->string(), "made of text");
    const TQSharedStringUse same(TQString("made of text"));
    EXPECT_EQ(use, same);
}

TEST(TQSharedStringUse, AssignmentToItselfKeepsTheLastUse) {
    TQSharedStringUse use(TQString("self"));
    const TQSharedStringUse& alias = use;
    use = alias;
    ASSERT_NE(use.string(), nullptr);
    EXPECT_EQ(use.string()->string(), "self");
    TQSharedString* const again = TQSharedString::getUnique("self");
    EXPECT_EQ(again, use.string());
    EXPECT_FALSE(again->unuse());
}

TEST(TQSharedStringUse, AssignmentGivesTheOldUseBack) {
    TQSharedString* const old = TQSharedString::getUnique("old");
    TQSharedStringUse use(old);
    use = TQSharedStringUse(TQString("new"));
    EXPECT_TRUE(old->unuse());
    EXPECT_EQ(use.string()->string(), "new");
}

TEST(TQSharedStringUse, MovingLeavesNoneBehind) {
    TQSharedStringUse use(TQString("moved"));
    TQSharedString* const shared = use.string();
    const TQSharedStringUse target = std::move(use);
    EXPECT_EQ(target.string(), shared);
    EXPECT_EQ(TQSharedStringUse().string(), nullptr);
    EXPECT_EQ(TQSharedStringUse(nullptr).string(), nullptr);
}

namespace {

/// Uses a shared string until the process ends; made before the registry is, it ends after it.
class LateUser {
  public:
    LateUser() = default;
    LateUser(const LateUser&) = delete;
    LateUser& operator=(const LateUser&) = delete;
    ~LateUser() {
        const TQSharedStringUse again(TQString("late"));
        std::fprintf(stderr, "%d uses\n", data->sharedStringValue()->uses());
    }

    std::unique_ptr<TQData> data;
};

} // namespace

TEST(TQSharedStringDeathTest, TheRegistryOutlivesStaticObjects) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process in which nothing has been used yet
    EXPECT_EXIT(
        {
            static LateUser user;
            const TQSharedStringUse first(TQString("late"));
            user.data = std::make_unique<TQData>(TQString("name"), first.string());
            std::exit(0);
        },
        testing::ExitedWithCode(0), "3 uses\n");
}
