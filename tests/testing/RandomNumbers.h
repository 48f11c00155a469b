#pragma once

#include <cstdint>
#include <random>

/// Random numbers that are the same in every run and with every standard library.
class RandomNumbers {
  public:
    explicit RandomNumbers(std::uint64_t seed) : _engine(seed) {}

    /// A number between two bounds.
    double between(double low, double high) {
        constexpr double twoToMinus53 = 1.0 / 9007199254740992.0;
        return low + (high - low) * (static_cast<double>(_engine() >> 11) * twoToMinus53);
    }

  private:
    std::mt19937_64 _engine;
};
