#pragma once

#include <string>

/// How numbers are written: with a fixed number of decimals, or with the fewest digits that read back to the
/// same double. Never in the form of a negative zero.
class NumberFormat {
  public:
    /// The precision that stands for the fewest digits that read back to the same double.
    static constexpr int fullPrecision = -1;

    /// The greatest number of decimals.
    static constexpr int greatestPrecision = 17;

    /// @param precision the number of decimals, 0 to greatestPrecision, or fullPrecision
    explicit NumberFormat(int precision) : _precision(precision) {}

    /// The number of decimals, or fullPrecision.
    int precision() const { return _precision; }

    /// Appends a number.
    /// @param out the text to append to
    /// @param value a finite number
    void append(std::string& out, double value) const;

  private:
    int _precision;
};
