#include "ellipsoid/TQEllipsoidSlot.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

/// An ellipsoid that counts how often one of its kind was destroyed.
class CountedEllipsoid : public TQEllipsoid {
  public:
    explicit CountedEllipsoid(int& destroyed) : _destroyed(destroyed) {}
    ~CountedEllipsoid() override { ++_destroyed; }

  private:
    int& _destroyed;
};

} // namespace

TEST(TQEllipsoidSlot, IsEmptyAtFirst) {
    TQEllipsoidSlot slot;
    EXPECT_EQ(slot.release(), nullptr);
}

TEST(TQEllipsoidSlot, DestroysItsEllipsoidWithItself) {
    int destroyed = 0;
    {
        TQEllipsoidSlot slot;
        slot.reset(std::make_unique<CountedEllipsoid>(destroyed));
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(TQEllipsoidSlot, DestroysTheEllipsoidThatAnotherReplaces) {
    int first = 0;
    int second = 0;
    TQEllipsoidSlot slot;
    slot.reset(std::make_unique<CountedEllipsoid>(first));
    slot.reset(std::make_unique<CountedEllipsoid>(second));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    slot.reset(nullptr);
    EXPECT_EQ(second, 1);
}

TEST(TQEllipsoidSlot, GivesItsEllipsoidUpOnce) {
    int destroyed = 0;
    TQEllipsoidSlot slot;
    auto ellipsoid = std::make_unique<CountedEllipsoid>(destroyed);
    const TQEllipsoid* const address = ellipsoid.get();
    slot.reset(std::move(ellipsoid));
    EXPECT_EQ(slot.release().get(), address);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(slot.release(), nullptr);
}

TEST(TQEllipsoidSlot, ForgetsAnEllipsoidThatSomebodyElseDestroyed) {
    int destroyed = 0;
    {
        TQEllipsoidSlot slot;
        auto ellipsoid = std::make_unique<CountedEllipsoid>(destroyed);
        TQEllipsoid* const address = ellipsoid.get();
        slot.reset(std::move(ellipsoid));
        const std::unique_ptr<TQEllipsoid> elsewhere(address);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(TQEllipsoidSlot, HasNothingToGiveUpOnceTheEllipsoidIsDestroyedElsewhere) {
    int destroyed = 0;
    int next = 0;
    TQEllipsoidSlot slot;
    auto ellipsoid = std::make_unique<CountedEllipsoid>(destroyed);
    TQEllipsoid* const address = ellipsoid.get();
    slot.reset(std::move(ellipsoid));
    std::unique_ptr<TQEllipsoid>(address).reset();
    EXPECT_EQ(slot.release(), nullptr);
    slot.reset(std::make_unique<CountedEllipsoid>(next));
    EXPECT_NE(slot.release(), nullptr);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(next, 1);
}
