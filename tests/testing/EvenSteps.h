#pragma once

#include <vector>

/// Numbers at equal distances, both ends included.
/// @param first the first number
/// @param last the last number
/// @param count how many, at least 2
inline std::vector<double> evenSteps(double first, double last, int count) {
    std::vector<double> numbers;
    for (int i = 0; i < count; ++i) {
        numbers.push_back(first + (last - first) * i / (count - 1));
    }
    return numbers;
}
