#pragma once

#include "support/TQMessages.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// Collects what the library prints while it lives, in whatever threads, and puts the error printer before it
/// back.
class CapturedMessages {
  public:
    CapturedMessages() : _before(tq_setErrorPrinter([this](std::string_view text) { add(text); })) {}
    ~CapturedMessages() { tq_setErrorPrinter(std::move(_before)); }
    CapturedMessages(const CapturedMessages&) = delete;
    CapturedMessages& operator=(const CapturedMessages&) = delete;

    /// The lines; to be asked for when no other thread prints any more.
    const std::vector<std::string>& lines() const { return _lines; }

  private:
    void add(std::string_view text) {
        const std::lock_guard lock(_mutex);
        _lines.emplace_back(text);
    }

    std::mutex _mutex;
    std::vector<std::string> _lines;
    TQErrorPrinter _before;
};
