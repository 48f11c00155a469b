#pragma once

#include <memory>

/// Points at an object that somebody else owns, and at nothing once the object is gone.
/// @tparam T a class with lifeToken(), which gives TQLife::token()
template <class T>
class TQWeakPointer {
  public:
    /// Points at nothing.
    TQWeakPointer() = default;

    /// Points at an object.
    /// @param object the object, or null
    explicit TQWeakPointer(T* object) : _object(object) {
        if (_object != nullptr) {
            _life = _object->lifeToken();
        }
    }

    /// Whether it was given an object, be it gone or not.
    bool isSet() const { return _object != nullptr; }

    /// Whether it was given this object, be it gone or not.
    /// @param object the object, for comparison only: it need not live any more
    bool wasGiven(const T* object) const { return object != nullptr && _object == object; }

    /// The object; null when there is none, or none any more.
    T* get() const { return _life.expired() ? nullptr : _object; }

  private:
    T* _object = nullptr;
    std::weak_ptr<const void> _life;
};
