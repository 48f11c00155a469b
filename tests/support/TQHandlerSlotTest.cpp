#include "support/TQHandlerSlot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

namespace {

using Slot = TQHandlerSlot<std::function<int()>>;

TEST(TQHandlerSlot, IsEmptyAtFirst) {
    const Slot slot;
    EXPECT_FALSE(slot.current());
}

TEST(TQHandlerSlot, ExchangeAnswersTheHandlerBefore) {
    Slot slot;
    EXPECT_FALSE(slot.exchange([] { return 1; }));
    EXPECT_EQ(slot.exchange([] { return 2; })(), 1);
    EXPECT_EQ(slot.current()(), 2);
    EXPECT_EQ(slot.exchange(nullptr)(), 2);
    EXPECT_FALSE(slot.current());
}

TEST(TQHandlerSlot, AHandlerMayExchangeItself) {
    Slot slot;
    slot.exchange([&] {
        slot.exchange([] { return 2; });
        return 1;
    });
    EXPECT_EQ(slot.current()(), 1);
    EXPECT_EQ(slot.current()(), 2);
}

TEST(TQHandlerSlot, ThreadsCallWhileAnotherExchanges) {
    constexpr int rounds = 2000;
    Slot slot;
    slot.exchange([] { return 1; });
    std::atomic<int> sum = 0;
    {
        const std::jthread caller([&] {
            for (int round = 0; round < rounds; ++round) {
                sum += slot.current()();
            }
        });
        for (int round = 0; round < rounds; ++round) {
            slot.exchange([] { return 1; });
        }
    }
    EXPECT_EQ(sum, rounds);
}

} // namespace
