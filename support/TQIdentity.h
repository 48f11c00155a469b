#pragma once

#include <memory>
#include <string_view>

/// Whether a class name that somebody asks for is the given one; null is no class name.
/// @param asked the name asked for, or null
/// @param own the name of the class that answers
inline bool tq_isClassName(const char* asked, std::string_view own) {
    return asked != nullptr && own == asked;
}

/// Writes the name of a class derived from TQObject and the membership query that runs up to the root.
#define TQ_NAMED_IDENTITY(Class, Base)                                                                       \
  public:                                                                                                    \
    static constexpr const char* ownName = #Class;                                                           \
    const char* className() const override { return ownName; }                                               \
    int isKindOf(const char* name) const override {                                                          \
        return tq_isClassName(name, ownName) || Base::isKindOf(name);                                        \
    }

/// Writes the identity of a class derived from TQObject that is never made itself: TQ_NAMED_IDENTITY, and
/// copies left to the classes that are made.
#define TQ_ABSTRACT_IDENTITY(Class, Base)                                                                    \
    TQ_NAMED_IDENTITY(Class, Base)                                                                           \
    std::unique_ptr<TQObject> copy() const override = 0;

/// Writes the identity of a concrete class derived from TQObject: TQ_NAMED_IDENTITY and a copy made by the
/// copy constructor. Stands first in the class body, as the one before does.
#define TQ_IDENTITY(Class, Base)                                                                             \
    TQ_NAMED_IDENTITY(Class, Base)                                                                           \
    std::unique_ptr<TQObject> copy() const override { return std::make_unique<Class>(*this); }
