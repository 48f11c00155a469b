#pragma once

#include "support/TQMessages.h"
#include "support/TQString.h"

#include <string>
#include <string_view>

/// Catches the diagnostic lines that the library prints while this object lives, so that the command can
/// say them at the right place and not more often than is good. Belongs to one thread; whatever the library
/// does in others, or ahead of its place, is to be done within the life of a MessageWatch.
class LibraryMessages {
  public:
    /// Takes the place of the present error printer.
    LibraryMessages();

    /// Puts the error printer back.
    ~LibraryMessages();

    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;

    /// Whether nothing was printed since take().
    bool isEmpty() const { return _text.empty(); }

    /// What was printed since the last call, in one line, several messages separated by "; "; the first
    /// thousand or so bytes of it.
    std::string take();

    /// take(), or what PROJ itself wrote, which tells more; without the name of the function that says it.
    /// @param projLog PROJ's last message, or an empty text
    std::string takeReason(const TQString& projLog);

  private:
    void receive(std::string_view message);
    void add(std::string_view message);

    std::string _text;
    TQErrorPrinter _previous;
};
