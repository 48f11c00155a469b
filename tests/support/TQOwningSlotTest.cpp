#include "support/TQOwningSlot.h"

#include "support/TQLife.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

/// An object that counts how often one of its kind was destroyed.
class Counted {
  public:
    explicit Counted(int& destroyed) : _destroyed(destroyed) {}
    Counted(const Counted&) = default;
    Counted& operator=(const Counted&) = delete;
    ~Counted() { ++_destroyed; }

    std::weak_ptr<const void> lifeToken() const { return _life.token(); }

  private:
    int& _destroyed;
    TQLife _life;
};

} // namespace

TEST(TQOwningSlot, IsEmptyAtFirst) {
    TQOwningSlot<Counted> slot;
    EXPECT_EQ(slot.release(), nullptr);
}

TEST(TQOwningSlot, DestroysItsObjectWithItself) {
    int destroyed = 0;
    {
        TQOwningSlot<Counted> slot;
        slot.reset(std::make_unique<Counted>(destroyed));
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(TQOwningSlot, DestroysTheObjectThatAnotherReplaces) {
    int first = 0;
    int second = 0;
    TQOwningSlot<Counted> slot;
    slot.reset(std::make_unique<Counted>(first));
    slot.reset(std::make_unique<Counted>(second));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    slot.reset(nullptr);
    EXPECT_EQ(second, 1);
}

TEST(TQOwningSlot, GivesItsObjectUpOnce) {
    int destroyed = 0;
    TQOwningSlot<Counted> slot;
    auto object = std::make_unique<Counted>(destroyed);
    const Counted* const address = object.get();
    slot.reset(std::move(object));
    EXPECT_EQ(slot.release().get(), address);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(slot.release(), nullptr);
}

TEST(TQOwningSlot, ForgetsAnObjectThatSomebodyElseDestroyed) {
    int destroyed = 0;
    {
        TQOwningSlot<Counted> slot;
        auto object = std::make_unique<Counted>(destroyed);
        Counted* const address = object.get();
        slot.reset(std::move(object));
        const std::unique_ptr<Counted> elsewhere(address);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(TQOwningSlot, HasNothingToGiveUpOnceTheObjectIsDestroyedElsewhere) {
    int destroyed = 0;
    int next = 0;
    TQOwningSlot<Counted> slot;
    auto object = std::make_unique<Counted>(destroyed);
    Counted* const address = object.get();
    slot.reset(std::move(object));
    std::unique_ptr<Counted>(address).reset();
    EXPECT_EQ(slot.release(), nullptr);
    slot.reset(std::make_unique<Counted>(next));
    EXPECT_NE(slot.release(), nullptr);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(next, 1);
}

TEST(TQOwningSlot, MovesWhatItOwns) {
    int first = 0;
    int second = 0;
    TQOwningSlot<Counted> slot(std::make_unique<Counted>(first));
    TQOwningSlot<Counted> other(std::make_unique<Counted>(second));
    other = std::move(slot);
    EXPECT_EQ(second, 1);
    const TQOwningSlot<Counted> third(std::move(other));
    EXPECT_EQ(first, 0);
}

TEST(TQOwningSlot, KnowsWhatItOwnsWhileThatLives) {
    int destroyed = 0;
    TQOwningSlot<Counted> slot;
    EXPECT_FALSE(slot.owns(nullptr));
    auto object = std::make_unique<Counted>(destroyed);
    Counted* const address = object.get();
    EXPECT_FALSE(slot.owns(address));
    slot.reset(std::move(object));
    EXPECT_TRUE(slot.owns(address));
    EXPECT_FALSE(slot.owns(nullptr));
    std::unique_ptr<Counted>(address).reset();
    EXPECT_FALSE(slot.owns(address));
}

TEST(TQLife, ACopyHasALifeOfItsOwn) {
    int destroyed = 0;
    auto original = std::make_unique<Counted>(destroyed);
    const std::weak_ptr<const void> life = original->lifeToken();
    const Counted copy = *original;
    const std::weak_ptr<const void> lifeOfCopy = copy.lifeToken();
    original.reset();
    EXPECT_TRUE(life.expired());
    EXPECT_FALSE(lifeOfCopy.expired());
}
