#include "support/TQAlertPanel.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Gives every test no handler and no batch mode, and puts both back.
class TQAlertPanelTest : public testing::Test {
  public:
    TQAlertPanelTest() : _handler(TQSetAlertPanelHandler(nullptr)), _batchMode(TQSetBatchMode(false)) {}
    ~TQAlertPanelTest() override {
        TQSetAlertPanelHandler(_handler);
        TQSetBatchMode(_batchMode);
    }

    TQAlertPanelTest(const TQAlertPanelTest&) = delete;
    TQAlertPanelTest& operator=(const TQAlertPanelTest&) = delete;

  protected:
    static int withDefault() {
        return TQRunAlertPanelWithDefaultInBatchMode(u"Warning", u"Text \u20AC", u"OK", u"Cancel", u"");
    }

    static int withAlternate() {
        return TQRunAlertPanelWithAlternateInBatchMode(u"Warning", u"Text \u20AC", u"OK", u"Cancel", u"");
    }

  private:
    TQAlertPanelHandler _handler;
    bool _batchMode;
};

TEST_F(TQAlertPanelTest, NoHandlerMeansBatchMode) {
    EXPECT_TRUE(TQIsBatchMode());
    EXPECT_EQ(withDefault(), 1);
    EXPECT_EQ(withAlternate(), 0);
}

TEST_F(TQAlertPanelTest, TheHandlersAnswerIsReturned) {
    for (const TQAlertButton button : {TQAlertDefault, TQAlertAlternate, TQAlertOther}) {
        TQSetAlertPanelHandler([=](const TQAlertPanel&) { return button; });
        EXPECT_FALSE(TQIsBatchMode());
        EXPECT_EQ(withDefault(), static_cast<int>(button));
        EXPECT_EQ(withAlternate(), static_cast<int>(button));
    }
}

TEST_F(TQAlertPanelTest, TheHandlerSeesAllTexts) {
    TQAlertPanel shown;
    TQSetAlertPanelHandler([&](const TQAlertPanel& panel) {
        shown = panel;
        return TQAlertDefault;
    });
    withDefault();
    EXPECT_EQ(shown.title, u"Warning");
    EXPECT_EQ(shown.message, u"Text \u20AC");
    EXPECT_EQ(shown.defaultButton, u"OK");
    EXPECT_EQ(shown.alternateButton, u"Cancel");
    EXPECT_EQ(shown.otherButton, u"");
    TQRunAlertPanelWithAlternateInBatchMode(nullptr, nullptr, nullptr, nullptr, u"third");
    EXPECT_EQ(shown.title, u"");
    EXPECT_EQ(shown.message, u"");
    EXPECT_EQ(shown.otherButton, u"third");
}

TEST_F(TQAlertPanelTest, BatchModeAnswersWithoutAsking) {
    int asked = 0;
    TQSetAlertPanelHandler([&](const TQAlertPanel&) {
        ++asked;
        return TQAlertOther;
    });
    EXPECT_FALSE(TQSetBatchMode(true));
    EXPECT_TRUE(TQIsBatchMode());
    EXPECT_EQ(withDefault(), 1);
    EXPECT_EQ(withAlternate(), 0);
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(TQSetBatchMode(false));
    EXPECT_EQ(withDefault(), -1);
    EXPECT_EQ(asked, 1);
}

TEST_F(TQAlertPanelTest, SettingAHandlerAnswersTheOneBefore) {
    EXPECT_FALSE(TQSetAlertPanelHandler([](const TQAlertPanel&) { return TQAlertOther; }));
    const TQAlertPanelHandler before =
        TQSetAlertPanelHandler([](const TQAlertPanel&) { return TQAlertAlternate; });
    EXPECT_EQ(withDefault(), 0);
    TQSetAlertPanelHandler(before);
    EXPECT_EQ(withDefault(), -1);
}

} // namespace
