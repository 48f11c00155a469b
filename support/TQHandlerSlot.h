#pragma once

#include <mutex>
#include <utility>

/// Holds a handler that the application may exchange while other threads call it. Internal: the header is
/// not installed.
template <class Handler>
class TQHandlerSlot {
  public:
    /// Puts a handler in and returns the one before.
    /// @param handler the handler; may be empty
    Handler exchange(Handler handler) {
        const std::lock_guard lock(_mutex);
        return std::exchange(_handler, std::move(handler));
    }

    /// A copy of the handler, to be called without the lock: a handler may exchange itself.
    Handler current() const {
        const std::lock_guard lock(_mutex);
        return _handler;
    }

  private:
    mutable std::mutex _mutex;
    Handler _handler;
};
