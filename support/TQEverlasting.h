#pragma once

#include <memory>
#include <utility>

/// Holds an object of static storage duration that is never destroyed: destructors of other static objects
/// may use it until the very end of the process. What it keeps stays in memory when the library is unloaded
/// before. Internal: the header is not installed.
///
///     static TQEverlasting<Registry> registry;
///     return *registry;
template <class T>
class TQEverlasting {
  public:
    /// Makes the object.
    /// @param arguments what its constructor takes
    template <class... A>
    explicit TQEverlasting(A&&... arguments) : _object(std::forward<A>(arguments)...) {}

    /// Leaves the object alone.
    ~TQEverlasting() {} // NOLINT(modernize-use-equals-default): a defaulted one would be deleted

    TQEverlasting(const TQEverlasting&) = delete;
    TQEverlasting& operator=(const TQEverlasting&) = delete;

    /// The object.
    T& operator*() { return _object; }
    T* operator->() { return std::addressof(_object); }

  private:
    union {
        T _object;
    };
};
