#pragma once

/// Notes whether the library prints anything on the thread of this object while it lives. The message itself
/// is dropped: who hears of it lets the library do the same again at the place where it is to be said.
class MessageWatch {
  public:
    /// Becomes the watch of the thread, which may have one at a time.
    MessageWatch();

    /// Ends the watch.
    ~MessageWatch();

    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;

    /// Whether there was a message.
    bool hasHeard() const { return _hasHeard; }

    /// Tells the watch of the calling thread that there is a message.
    /// @return whether the thread has a watch
    static bool takeNotice();

  private:
    bool _hasHeard = false;
};
