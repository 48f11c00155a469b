// Compiled once for each instruction set: options of the compiler say which. What stands here is used in this
// source only, so that the linker cannot take another source's copy, of another instruction set, for it.

#include "bench/VectorMathLibraries.h"

#include <array>
#include <sleef.h>
#include <type_traits>
#include <xsimd/xsimd.hpp>

namespace {

using Batch = xsimd::batch<double>;
using Register = Batch::register_type;

} // namespace

#ifdef __AVX512F__
#define TQ_SET "AVX-512"
#define TQ_SLEEF(name) Sleef_finz_##name##d8_u10avx512f
#define TQ_MVEC(name) _ZGVeN8v_##name
#define TQ_MVEC2(name) _ZGVeN8vv_##name
#else
#define TQ_SET "AVX2"
#define TQ_SLEEF(name) Sleef_finz_##name##d4_u10avx2
#define TQ_MVEC(name) _ZGVdN4v_##name
#define TQ_MVEC2(name) _ZGVdN4vv_##name
#endif

// The functions, of one argument or of two, by the names that <cmath> and the libraries have for them.
#define TQ_FUNCTIONS(one, two)                                                                               \
    one(sin) one(cos) one(tan) one(atan) two(atan2) one(asin) one(asinh) one(log) one(log1p) one(exp)        \
        one(sinh) one(tanh) two(pow)

// No header declares the functions of libmvec; compilers call them by these names, those of the vector ABI.
#define TQ_DECLARE(name) Register TQ_MVEC(name)(Register);
#define TQ_DECLARE2(name) Register TQ_MVEC2(name)(Register, Register);
extern "C" {
TQ_FUNCTIONS(TQ_DECLARE, TQ_DECLARE2)
}

namespace {

/// @tparam function takes one batch or two, and makes one
template <auto function>
void apply(const double* x, const double* y, double* results, std::size_t count) {
    for (std::size_t i = 0; i < count; i += Batch::size) {
        Batch result;
        if constexpr (std::is_invocable_v<decltype(function), Batch>) {
            result = function(Batch::load_unaligned(x + i));
        } else {
            result = function(Batch::load_unaligned(x + i), Batch::load_unaligned(y + i));
        }
        result.store_unaligned(results + i);
    }
}

template <auto function>
constexpr VectorFunction named(const char* name) {
    return {name, apply<function>};
}

#define TQ_ONE(name, call) named<[](Batch x) -> Batch { return call(x); }>(#name),
#define TQ_TWO(name, call) named<[](Batch x, Batch y) -> Batch { return call(x, y); }>(#name),

#define TQ_SLEEF_ONE(name) TQ_ONE(name, TQ_SLEEF(name))
#define TQ_SLEEF_TWO(name) TQ_TWO(name, TQ_SLEEF(name))
constexpr std::array sleef{TQ_FUNCTIONS(TQ_SLEEF_ONE, TQ_SLEEF_TWO)};

#define TQ_XSIMD_ONE(name) TQ_ONE(name, xsimd::name)
#define TQ_XSIMD_TWO(name) TQ_TWO(name, xsimd::name)
constexpr std::array xsimdFunctions{TQ_FUNCTIONS(TQ_XSIMD_ONE, TQ_XSIMD_TWO)};

#define TQ_MVEC_ONE(name) TQ_ONE(name, TQ_MVEC(name))
#define TQ_MVEC_TWO(name) TQ_TWO(name, TQ_MVEC2(name))
constexpr std::array libmvec{TQ_FUNCTIONS(TQ_MVEC_ONE, TQ_MVEC_TWO)};

constexpr std::array libraries{VectorLibrary{"SLEEF, " TQ_SET, sleef},
                               VectorLibrary{"xsimd, " TQ_SET, xsimdFunctions},
                               VectorLibrary{"libmvec, " TQ_SET, libmvec}};

} // namespace

#ifdef __AVX512F__
std::span<const VectorLibrary> vectorLibrariesAVX512() { return libraries; }
#else
std::span<const VectorLibrary> vectorLibrariesAVX2() { return libraries; }
#endif
