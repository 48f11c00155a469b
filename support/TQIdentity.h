#pragma once

#include <memory>
#include <string_view>

/// Whether a class name that somebody asks for is the given one; null is no class name.
/// @param asked the name asked for, or null
/// @param own the name of the class that answers
inline bool tq_isClassName(const char* asked, std::string_view own) {
    return asked != nullptr && own == asked;
}

/// Writes the identity of a class derived from TQObject that is never made itself: its name and the
/// membership query that runs up to the root. Stands first in the class body.
#define TQ_ABSTRACT_IDENTITY(Class, Base)                                                                    \
  public:                                                                                                    \
    static constexpr const char* ownName = #Class;                                                           \
    const char* className() const override { return ownName; }                                               \
    int isKindOf(const char* name) const override {                                                          \
        return tq_isClassName(name, ownName) || Base::isKindOf(name);                                        \
    }

/// Writes the identity of a concrete class derived from TQObject: TQ_ABSTRACT_IDENTITY and a copy made
/// by the copy constructor.
#define TQ_IDENTITY(Class, Base)                                                                             \
    TQ_ABSTRACT_IDENTITY(Class, Base)                                                                        \
    std::unique_ptr<TQObject> copy() const override { return std::make_unique<Class>(*this); }
