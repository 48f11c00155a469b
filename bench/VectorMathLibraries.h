#pragma once

#include <cstddef>
#include <span>

/// A mathematical function over arrays, as a library computes it.
struct VectorFunction {
    /// @param x the arguments
    /// @param y the second arguments, where there are
    /// @param results receives as many results
    /// @param count how many; divisible by the numbers that the library takes at once
    using Apply = void (*)(const double* x, const double* y, double* results, std::size_t count);

    const char* name; ///< as in <cmath>
    Apply apply;
};

/// The functions of a library, compiled for an instruction set.
struct VectorLibrary {
    const char* name;
    std::span<const VectorFunction> functions;
};

/// The libraries for AVX2 with FMA, which the processor must have.
std::span<const VectorLibrary> vectorLibrariesAVX2();

/// The libraries for AVX-512 F, which the processor must have.
std::span<const VectorLibrary> vectorLibrariesAVX512();
