#include "support/TQErrorSpool.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// Gives every test an empty queue without handler, and puts the handler back.
class TQErrorSpoolTest : public testing::Test {
  public:
    TQErrorSpoolTest() : _before(TQErrorSpool::setHandler(nullptr)) { TQErrorSpool::takeMessages(); }
    ~TQErrorSpoolTest() override { TQErrorSpool::setHandler(_before); }

    TQErrorSpoolTest(const TQErrorSpoolTest&) = delete;
    TQErrorSpoolTest& operator=(const TQErrorSpoolTest&) = delete;

  private:
    TQErrorSpoolHandler _before;
};

TEST_F(TQErrorSpoolTest, MessagesWaitInOrderUntilTheyAreTaken) {
    TQErrorSpool::sharedAddMessage("first", "conversion", 4);
    TQErrorSpool::sharedAddMessage("second", "other", 1);

    const std::vector<TQErrorMessage> messages = TQErrorSpool::takeMessages();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].message.utf8(), "first");
    EXPECT_EQ(messages[0].title.utf8(), "conversion");
    EXPECT_EQ(messages[0].level, 4);
    EXPECT_EQ(messages[1].message.utf8(), "second");
    EXPECT_TRUE(TQErrorSpool::takeMessages().empty());
}

TEST_F(TQErrorSpoolTest, AFullQueueDropsTheOldestMessage) {
    const int added = static_cast<int>(TQErrorSpool::queueLimit) + 3;
    for (int number = 0; number < added; ++number) {
        TQErrorSpool::sharedAddMessage("text", "title", number);
    }

    const std::vector<TQErrorMessage> messages = TQErrorSpool::takeMessages();
    ASSERT_EQ(messages.size(), TQErrorSpool::queueLimit);
    EXPECT_EQ(messages.front().level, 3);
    EXPECT_EQ(messages.back().level, added - 1);
}

TEST_F(TQErrorSpoolTest, AHandlerGetsTheMessagesInsteadOfTheQueue) {
    std::vector<std::string> handled;
    TQErrorSpool::setHandler([&](const TQErrorMessage& message) { handled.push_back(message.title.utf8()); });
    TQErrorSpool::sharedAddMessage("text", "conversion", 4);
    EXPECT_EQ(handled, std::vector<std::string>{"conversion"});
    EXPECT_TRUE(TQErrorSpool::takeMessages().empty());
}

TEST_F(TQErrorSpoolTest, SettingAHandlerAnswersTheOneBefore) {
    int calls = 0;
    EXPECT_FALSE(TQErrorSpool::setHandler([&](const TQErrorMessage&) { ++calls; }));
    const TQErrorSpoolHandler before = TQErrorSpool::setHandler(nullptr);
    TQErrorSpool::sharedAddMessage("text", "title", 0);
    EXPECT_EQ(calls, 0);
    TQErrorSpool::setHandler(before);
    TQErrorSpool::sharedAddMessage("text", "title", 0);
    EXPECT_EQ(calls, 1);
}

} // namespace
