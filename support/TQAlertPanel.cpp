#include "support/TQAlertPanel.h"

#include "support/TQEverlasting.h"
#include "support/TQHandlerSlot.h"

#include <atomic>
#include <utility>

namespace {

TQHandlerSlot<TQAlertPanelHandler>& handlerSlot() {
    static TQEverlasting<TQHandlerSlot<TQAlertPanelHandler>> slot;
    return *slot;
}

std::atomic<bool>& batchMode() {
    static std::atomic<bool> isBatchMode = false;
    return isBatchMode;
}

/// The handler to ask; empty in batch mode.
TQAlertPanelHandler handlerToAsk() { return batchMode() ? TQAlertPanelHandler() : handlerSlot().current(); }

std::u16string textOf(const char16_t* text) { return text != nullptr ? text : u""; }

int answer(const TQAlertPanel& panel, TQAlertButton answerInBatchMode) {
    const TQAlertPanelHandler handler = handlerToAsk();
    return handler ? handler(panel) : answerInBatchMode;
}

} // namespace

TQAlertPanelHandler TQSetAlertPanelHandler(TQAlertPanelHandler handler) {
    return handlerSlot().exchange(std::move(handler));
}

bool TQSetBatchMode(bool isBatchMode) { return batchMode().exchange(isBatchMode); }

bool TQIsBatchMode() { return !handlerToAsk(); }

int TQRunAlertPanelWithDefaultInBatchMode(const char16_t* title, const char16_t* message,
                                          const char16_t* defaultButton, const char16_t* alternateButton,
                                          const char16_t* otherButton) {
    return answer(
        {textOf(title), textOf(message), textOf(defaultButton), textOf(alternateButton), textOf(otherButton)},
        TQAlertDefault);
}

int TQRunAlertPanelWithAlternateInBatchMode(const char16_t* title, const char16_t* message,
                                            const char16_t* defaultButton, const char16_t* alternateButton,
                                            const char16_t* otherButton) {
    return answer(
        {textOf(title), textOf(message), textOf(defaultButton), textOf(alternateButton), textOf(otherButton)},
        TQAlertAlternate);
}
