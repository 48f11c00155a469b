#pragma once

#include "support/TQMessages.h"

#include <string>
#include <utility>
#include <vector>

/// Collects what the library prints while it lives, and puts the error printer before it back.
class CapturedMessages {
  public:
    CapturedMessages()
        : _before(tq_setErrorPrinter([this](std::string_view text) { _lines.emplace_back(text); })) {}
    ~CapturedMessages() { tq_setErrorPrinter(std::move(_before)); }
    CapturedMessages(const CapturedMessages&) = delete;
    CapturedMessages& operator=(const CapturedMessages&) = delete;

    const std::vector<std::string>& lines() const { return _lines; }

  private:
    std::vector<std::string> _lines;
    TQErrorPrinter _before;
};
