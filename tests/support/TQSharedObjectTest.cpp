#include "support/TQSharedObject.h"

#include "support/TQMessages.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// An object that tells when it is destroyed, and asks the registry at that moment.
class Witness : public TQSharedObject {
    TQ_IDENTITY(Witness, TQSharedObject)

  public:
    explicit Witness(const TQString& key) : TQSharedObject(key) {}
    Witness(const Witness&) = default;
    Witness& operator=(const Witness&) = delete;

    ~Witness() override {
        ++destroyed;
        successor = sharedAppObjectForKey(sharedKey());
    }

    static inline int destroyed = 0;
    static inline TQSharedObject* successor = nullptr;
};

} // namespace

TEST(TQSharedObject, IsFoundUnderItsKeyUntilRemoved) {
    auto object = std::make_unique<Witness>("key");
    Witness* const address = object.get();
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("key"), nullptr);
    TQSharedObject::addAppSharedObject(std::move(object));
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("key"), address);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("other"), nullptr);
    EXPECT_EQ(TQSharedObject::removeAppSharedObject("other"), nullptr);
    const auto removed = TQSharedObject::removeAppSharedObject(address->sharedKey());
    EXPECT_EQ(removed.get(), address);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("key"), nullptr);
    EXPECT_EQ(TQSharedObject::removeAppSharedObject("key"), nullptr);
}

TEST(TQSharedObject, ReplacingAKeyDestroysTheOldObject) {
    TQSharedObject::addAppSharedObject(std::make_unique<Witness>("replaced"));
    auto second = std::make_unique<Witness>("replaced");
    Witness* const address = second.get();
    const int destroyedBefore = Witness::destroyed;
    TQSharedObject::addAppSharedObject(std::move(second));
    EXPECT_EQ(Witness::destroyed, destroyedBefore + 1);
    EXPECT_EQ(Witness::successor, address);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey("replaced"), address);
    TQSharedObject::removeAppSharedObject("replaced").reset();
    EXPECT_EQ(Witness::destroyed, destroyedBefore + 2);
    EXPECT_EQ(Witness::successor, nullptr);
}

TEST(TQSharedObject, NullIsNotRegistered) {
    TQSharedObject::addAppSharedObject(nullptr);
    EXPECT_EQ(TQSharedObject::sharedAppObjectForKey(""), nullptr);
}

TEST(TQSharedObject, KeysAreTextsWhateverTheirEncoding) {
    TQSharedObject::addAppSharedObject(std::make_unique<TQSharedObject>("degr\xDDs"));
    EXPECT_NE(TQSharedObject::sharedAppObjectForKey("degr\xC3\xA9s"), nullptr);
    EXPECT_NE(TQSharedObject::removeAppSharedObject("degr\xC3\xA9s"), nullptr);
}

TEST(TQSharedObject, IsATQObject) {
    const TQSharedObject object("key");
    EXPECT_STREQ(object.className(), "TQSharedObject");
    EXPECT_NE(object.isKindOf("TQObject"), 0);
    EXPECT_EQ(object.isMemberOf("TQObject"), 0);
    EXPECT_EQ(tq_copyOf(object)->sharedKey(), "key");
}

namespace {

/// Asks the registry for itself and another object while it is destroyed, and says what it found.
class LastWord : public TQSharedObject {
  public:
    using TQSharedObject::TQSharedObject;
    ~LastWord() override {
        const bool isGone = sharedAppObjectForKey(sharedKey()) == nullptr;
        tq_perror(isGone ? "gone" : "still there");
    }
};

/// Registers an object and asks for it when the process ends; made before the registry is, it ends after it.
class LateUser {
  public:
    LateUser() = default;
    LateUser(const LateUser&) = delete;
    LateUser& operator=(const LateUser&) = delete;
    ~LateUser() {
        TQSharedObject::addAppSharedObject(std::make_unique<TQSharedObject>("late"));
        tq_perror(TQSharedObject::sharedAppObjectForKey("late") != nullptr ? "found" : "not found");
    }
};

} // namespace

TEST(TQSharedObjectDeathTest, ObjectsMayCallTheRegistryWhenTheProcessEnds) {
    EXPECT_EXIT(
        {
            for (const char* key : {"first", "second", "third"}) {
                TQSharedObject::addAppSharedObject(std::make_unique<LastWord>(TQString(key)));
            }
            std::exit(0);
        },
        testing::ExitedWithCode(0), "gone\ngone\ngone\n");
}

TEST(TQSharedObjectDeathTest, TheRegistryAndTheErrorPrinterOutliveStaticObjects) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process in which nothing has been used yet
    EXPECT_EXIT(
        {
            static const LateUser user;
            TQSharedObject::addAppSharedObject(std::make_unique<LastWord>("first"));
            const std::string prefix = "the handler of the application: ";
            tq_setErrorPrinter([prefix](std::string_view text) {
                std::fputs((prefix + std::string(text) + "\n").c_str(), stderr);
            });
            std::exit(0);
        },
        testing::ExitedWithCode(0),
        "the handler of the application: gone\nthe handler of the application: found\n");
}
