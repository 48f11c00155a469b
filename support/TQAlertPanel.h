#pragma once

#include "TQSystemWExport.h"

#include <functional>
#include <string>

/// The buttons of an alert panel, as it answers.
enum TQAlertButton : int {
    TQAlertOther = -1,    ///< the third button
    TQAlertAlternate = 0, ///< the second button
    TQAlertDefault = 1    ///< the button that the return key presses
};

/// What an alert panel shows. Texts are UTF-16; an empty button text means that there is no such button.
struct TQAlertPanel {
    std::u16string title;           ///< the panel's title
    std::u16string message;         ///< the text
    std::u16string defaultButton;   ///< the default button's text
    std::u16string alternateButton; ///< the second button's text
    std::u16string otherButton;     ///< the third button's text
};

/// Shows a panel, waits for the user and answers the button chosen.
using TQAlertPanelHandler = std::function<TQAlertButton(const TQAlertPanel& panel)>;

/// Sets who shows alert panels and returns the handler before, to be put back. Handlers must not throw.
/// @param handler the handler; empty when there is nobody to ask, which is batch mode
TQSYSTEMW_EXPORT TQAlertPanelHandler TQSetAlertPanelHandler(TQAlertPanelHandler handler);

/// Sets whether panels are answered without being shown, although there is a handler; returns the setting
/// before.
/// @param isBatchMode true to answer without asking
TQSYSTEMW_EXPORT bool TQSetBatchMode(bool isBatchMode);

/// Whether panels are answered without being shown: batch mode is set, or there is no handler.
TQSYSTEMW_EXPORT bool TQIsBatchMode();

/// Shows a modal alert and returns the button chosen: 1 default, 0 alternate, -1 other. In batch mode
/// nothing is shown and the answer is 1. Null texts count as empty.
/// @param title the panel's title
/// @param message the text
/// @param defaultButton the default button's text
/// @param alternateButton the second button's text, or empty
/// @param otherButton the third button's text, or empty
TQSYSTEMW_EXPORT int TQRunAlertPanelWithDefaultInBatchMode(const char16_t* title, const char16_t* message,
                                                           const char16_t* defaultButton,
                                                           const char16_t* alternateButton,
                                                           const char16_t* otherButton);

/// As TQRunAlertPanelWithDefaultInBatchMode(), but the answer in batch mode is 0.
/// @param title the panel's title
/// @param message the text
/// @param defaultButton the default button's text
/// @param alternateButton the second button's text, or empty
/// @param otherButton the third button's text, or empty
TQSYSTEMW_EXPORT int TQRunAlertPanelWithAlternateInBatchMode(const char16_t* title, const char16_t* message,
                                                             const char16_t* defaultButton,
                                                             const char16_t* alternateButton,
                                                             const char16_t* otherButton);
