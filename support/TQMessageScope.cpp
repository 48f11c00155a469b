#include "support/TQMessageScope.h"

namespace {

/// The innermost scope of the thread.
TQMessageScope*& innermost() {
    static thread_local TQMessageScope* scope = nullptr;
    return scope;
}

} // namespace

TQMessageScope::TQMessageScope(Rule rule) : _rule(rule), _outer(innermost()) { innermost() = this; }

TQMessageScope::~TQMessageScope() { innermost() = _outer; }

bool TQMessageScope::lets(std::string_view message) {
    bool letsOut = true;
    for (TQMessageScope* scope = innermost(); scope != nullptr; scope = scope->_outer) {
        letsOut = letsOut && scope->_rule == Rule::OnceEach && scope->_said.emplace(message).second;
    }
    return letsOut;
}
