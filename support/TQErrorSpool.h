#pragma once

#include "TQSystemWExport.h"

#include "support/TQString.h"

#include <cstddef>
#include <functional>
#include <vector>

/// A message for the user.
struct TQErrorMessage {
    TQString message; ///< what happened
    TQString title;   ///< what the message is about
    int level = 0;    ///< how grave it is, as the sender and the application agree
};

/// Receives the messages for the user as they come.
using TQErrorSpoolHandler = std::function<void(const TQErrorMessage& message)>;

/// Messages for the user, on their way from the libraries to the application. The application sets a
/// handler, or takes the messages from a queue whenever it likes.
class TQSYSTEMW_EXPORT TQErrorSpool {
  public:
    /// How many messages the queue holds; a further one pushes out the oldest.
    static constexpr std::size_t queueLimit = 1000;

    /// Hands a message to the handler, or queues it when there is none.
    /// @param message what happened
    /// @param title what the message is about
    /// @param level how grave it is
    static void sharedAddMessage(const TQString& message, const TQString& title, int level);

    /// Sets the handler and returns the one before, to be put back. Handlers must not throw. Messages
    /// queued before stay in the queue.
    /// @param handler the handler; empty to queue the messages
    static TQErrorSpoolHandler setHandler(TQErrorSpoolHandler handler);

    /// Empties the queue into the caller's hands, oldest message first.
    static std::vector<TQErrorMessage> takeMessages();
};
