#pragma once

#include "projections/kernels/SleefFunctions.h"
#include "support/TQPoint.h"

#include <cmath>
#include <cstddef>
#include <immintrin.h>
#include <sleef.h>

namespace tq::kernels {

/// Eight doubles in a register of AVX-512.
struct EightLanes {
    using Numbers = __m512d;
    using Truths = __mmask8;

    static constexpr std::size_t count = 8;

    /// Loads the coordinates of eight points; which point comes into which lane, store() undoes.
    static void load(const TQPoint* points, Numbers& x, Numbers& y) {
        const Numbers first = _mm512_loadu_pd(&points[0].x);
        const Numbers second = _mm512_loadu_pd(&points[4].x);
        x = _mm512_unpacklo_pd(first, second);
        y = _mm512_unpackhi_pd(first, second);
    }
    static void store(TQPoint* points, Numbers x, Numbers y) {
        _mm512_storeu_pd(&points[0].x, _mm512_unpacklo_pd(x, y));
        _mm512_storeu_pd(&points[4].x, _mm512_unpackhi_pd(x, y));
    }

    static Numbers all(double number) { return _mm512_set1_pd(number); }
    static Truths allTruths(bool truth) { return static_cast<Truths>(truth ? 0xFF : 0); }

    static Numbers sum(Numbers a, Numbers b) { return _mm512_add_pd(a, b); }
    static Numbers difference(Numbers a, Numbers b) { return _mm512_sub_pd(a, b); }
    static Numbers product(Numbers a, Numbers b) { return _mm512_mul_pd(a, b); }
    static Numbers quotient(Numbers a, Numbers b) { return _mm512_div_pd(a, b); }
    static Numbers negative(Numbers a) { return _mm512_xor_pd(a, _mm512_set1_pd(-0.0)); }

    static Truths less(Numbers a, Numbers b) { return _mm512_cmp_pd_mask(a, b, _CMP_LT_OQ); }
    static Truths lessOrEqual(Numbers a, Numbers b) { return _mm512_cmp_pd_mask(a, b, _CMP_LE_OQ); }
    static Truths equal(Numbers a, Numbers b) { return _mm512_cmp_pd_mask(a, b, _CMP_EQ_OQ); }
    static Truths both(Truths a, Truths b) { return static_cast<Truths>(a & b); }
    static Truths either(Truths a, Truths b) { return static_cast<Truths>(a | b); }
    static Truths opposite(Truths a) { return static_cast<Truths>(~a); }
    static bool any(Truths a) { return a != 0; }
    static Numbers choice(Truths condition, Numbers whenTrue, Numbers whenFalse) {
        return _mm512_mask_blend_pd(condition, whenFalse, whenTrue);
    }

    static Numbers absolute(Numbers a) { return _mm512_abs_pd(a); }
    static Numbers squareRoot(Numbers a) { return _mm512_sqrt_pd(a); }
    static Numbers truncated(Numbers a) {
        return _mm512_roundscale_pd(a, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    }
    static Numbers remainder(Numbers a, double b) {
        double lanes[count];
        _mm512_storeu_pd(lanes, a);
        for (double& lane : lanes) {
            lane = std::remainder(lane, b);
        }
        return _mm512_loadu_pd(lanes);
    }

    TQ_SLEEF_FUNCTIONS(d8, avx512f)
};

} // namespace tq::kernels
