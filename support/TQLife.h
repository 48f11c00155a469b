#pragma once

#include <memory>

/// Tells others whether the object that it is a member of still lives.
class TQLife {
  public:
    TQLife() = default;

    /// The copy of an object is another object with a life of its own.
    TQLife(const TQLife& /*other*/) {}
    TQLife& operator=(const TQLife&) = delete;
    ~TQLife() = default;

    /// A token that expires with the object.
    std::weak_ptr<const void> token() const {
        if (!_life) {
            _life = std::make_shared<const char>();
        }
        return _life;
    }

  private:
    mutable std::shared_ptr<const void> _life; // made for the first token
};
