#pragma once

#include <memory>
#include <utility>

/// Owns at most one object, and lets go of one that somebody else has destroyed: callers may destroy the
/// object or its owner, or both in either order.
/// @tparam T a class with lifeToken(), which gives TQLife::token()
template <class T>
class TQOwningSlot {
  public:
    /// Owns nothing.
    TQOwningSlot() = default;

    /// Owns an object.
    /// @param object the object, or null
    explicit TQOwningSlot(std::unique_ptr<T> object) { reset(std::move(object)); }

    /// Takes over what another slot owns.
    TQOwningSlot(TQOwningSlot&& other) noexcept : TQOwningSlot(other.release()) {}

    /// Takes over what another slot owns; what this one owned is destroyed.
    TQOwningSlot& operator=(TQOwningSlot&& other) noexcept {
        reset(other.release());
        return *this;
    }

    TQOwningSlot(const TQOwningSlot&) = delete;
    TQOwningSlot& operator=(const TQOwningSlot&) = delete;
    ~TQOwningSlot() { reset(nullptr); }

    /// Owns an object in place of the one before, which is destroyed.
    /// @param object the object, or null
    void reset(std::unique_ptr<T> object) {
        const std::unique_ptr<T> before = release();
        _object = std::move(object);
        if (_object) {
            _life = _object->lifeToken();
        }
    }

    /// Whether the slot owns an object.
    /// @param object the object
    bool owns(const T* object) const {
        return object != nullptr && _object.get() == object && !_life.expired();
    }

    /// Whether the slot owns nothing, or nothing that still lives.
    bool isEmpty() const { return _object == nullptr || _life.expired(); }

    /// Gives up the object to the caller; null when there is none or it is gone.
    std::unique_ptr<T> release() {
        if (_object && _life.expired()) {
            static_cast<void>(_object.release()); // destroyed elsewhere, nothing is left to own
        }
        return std::move(_object);
    }

  private:
    std::unique_ptr<T> _object;
    std::weak_ptr<const void> _life;
};
