#pragma once

#include "projections/kernels/SleefFunctions.h"
#include "support/TQPoint.h"

#include <cmath>
#include <cstddef>
#include <immintrin.h>
#include <sleef.h>

namespace tq::kernels {

/// Four doubles in a register of AVX2.
struct FourLanes {
    using Numbers = __m256d;
    using Truths = __m256d;

    static constexpr std::size_t count = 4;

    /// Loads the coordinates of four points; which point comes into which lane, store() undoes.
    static void load(const TQPoint* points, Numbers& x, Numbers& y) {
        const Numbers first = _mm256_loadu_pd(&points[0].x);
        const Numbers second = _mm256_loadu_pd(&points[2].x);
        x = _mm256_unpacklo_pd(first, second);
        y = _mm256_unpackhi_pd(first, second);
    }
    static void store(TQPoint* points, Numbers x, Numbers y) {
        _mm256_storeu_pd(&points[0].x, _mm256_unpacklo_pd(x, y));
        _mm256_storeu_pd(&points[2].x, _mm256_unpackhi_pd(x, y));
    }

    static Numbers all(double number) { return _mm256_set1_pd(number); }
    static Truths allTruths(bool truth) { return _mm256_castsi256_pd(_mm256_set1_epi64x(truth ? -1 : 0)); }

    static Numbers sum(Numbers a, Numbers b) { return _mm256_add_pd(a, b); }
    static Numbers difference(Numbers a, Numbers b) { return _mm256_sub_pd(a, b); }
    static Numbers product(Numbers a, Numbers b) { return _mm256_mul_pd(a, b); }
    static Numbers quotient(Numbers a, Numbers b) { return _mm256_div_pd(a, b); }
    static Numbers negative(Numbers a) { return _mm256_xor_pd(a, _mm256_set1_pd(-0.0)); }

    static Truths less(Numbers a, Numbers b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
    static Truths lessOrEqual(Numbers a, Numbers b) { return _mm256_cmp_pd(a, b, _CMP_LE_OQ); }
    static Truths equal(Numbers a, Numbers b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
    static Truths both(Truths a, Truths b) { return _mm256_and_pd(a, b); }
    static Truths either(Truths a, Truths b) { return _mm256_or_pd(a, b); }
    static Truths opposite(Truths a) { return _mm256_xor_pd(a, allTruths(true)); }
    static bool any(Truths a) { return _mm256_movemask_pd(a) != 0; }
    static Numbers choice(Truths condition, Numbers whenTrue, Numbers whenFalse) {
        return _mm256_blendv_pd(whenFalse, whenTrue, condition);
    }

    static Numbers absolute(Numbers a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a); }
    static Numbers squareRoot(Numbers a) { return _mm256_sqrt_pd(a); }
    static Numbers truncated(Numbers a) { return _mm256_round_pd(a, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC); }
    static Numbers remainder(Numbers a, double b) {
        double lanes[count];
        _mm256_storeu_pd(lanes, a);
        for (double& lane : lanes) {
            lane = std::remainder(lane, b);
        }
        return _mm256_loadu_pd(lanes);
    }

    TQ_SLEEF_FUNCTIONS(d4, avx2)
};

} // namespace tq::kernels
