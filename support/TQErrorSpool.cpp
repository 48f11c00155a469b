#include "support/TQErrorSpool.h"

#include "support/TQEverlasting.h"
#include "support/TQHandlerSlot.h"

#include <deque>
#include <iterator>
#include <mutex>
#include <utility>

namespace {

class MessageQueue {
  public:
    void add(TQErrorMessage message) {
        const std::lock_guard lock(_mutex);
        if (_messages.size() == TQErrorSpool::queueLimit) {
            _messages.pop_front();
        }
        _messages.push_back(std::move(message));
    }

    std::vector<TQErrorMessage> take() {
        const std::lock_guard lock(_mutex);
        const std::deque<TQErrorMessage> messages = std::exchange(_messages, {});
        return {messages.begin(), messages.end()};
    }

  private:
    std::mutex _mutex;
    std::deque<TQErrorMessage> _messages;
};

MessageQueue& queue() {
    static TQEverlasting<MessageQueue> messages;
    return *messages;
}

TQHandlerSlot<TQErrorSpoolHandler>& handlerSlot() {
    static TQEverlasting<TQHandlerSlot<TQErrorSpoolHandler>> slot;
    return *slot;
}

} // namespace

void TQErrorSpool::sharedAddMessage(const TQString& message, const TQString& title, int level) {
    TQErrorMessage entry{message, title, level};
    if (const TQErrorSpoolHandler handler = handlerSlot().current()) {
        handler(entry);
    } else {
        queue().add(std::move(entry));
    }
}

TQErrorSpoolHandler TQErrorSpool::setHandler(TQErrorSpoolHandler handler) {
    return handlerSlot().exchange(std::move(handler));
}

std::vector<TQErrorMessage> TQErrorSpool::takeMessages() { return queue().take(); }
