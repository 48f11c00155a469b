#pragma once

#include "TQSystemWExport.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

/// Holds diagnostic lines of this thread back as long as it lives: all of them, or repetitions. Scopes may
/// stand within each other; a line goes out when each of them lets it.
class TQSYSTEMW_EXPORT TQMessageScope {
  public:
    /// What a scope holds back.
    enum class Rule {
        Silence, ///< every line
        OnceEach ///< a line, or lines of one format, that the scope has let out before
    };

    /// Begins a scope, within those that this thread has begun before.
    /// @param rule what it holds back
    explicit TQMessageScope(Rule rule);
    TQMessageScope(const TQMessageScope&) = delete;
    TQMessageScope& operator=(const TQMessageScope&) = delete;
    ~TQMessageScope();

    /// Whether the scopes of this thread let a line out, which they then count as said.
    /// @param message the line, or its format
    static bool lets(std::string_view message);

  private:
    Rule _rule;
    TQMessageScope* _outer;
    std::set<std::string, std::less<>> _said;
};
