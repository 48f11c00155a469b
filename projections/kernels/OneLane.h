#pragma once

#include "projections/kernels/SleefFunctions.h"

#include <cmath>

// SLEEF compiles its functions of one number for FMA, too, but declares them only to sources that are
// compiled for FMA themselves. These are not: they call them where the processor has it.
extern "C" {
struct TQSleefPair {
    double x;
    double y;
};
double Sleef_finz_asind1_u10purecfma(double);
double Sleef_finz_atand1_u10purecfma(double);
double Sleef_finz_atan2d1_u10purecfma(double, double);
double Sleef_finz_expd1_u10purecfma(double);
double Sleef_finz_logd1_u10purecfma(double);
double Sleef_finz_log1pd1_u10purecfma(double);
double Sleef_finz_sind1_u10purecfma(double);
double Sleef_finz_sinhd1_u10purecfma(double);
double Sleef_finz_tanhd1_u10purecfma(double);
TQSleefPair Sleef_finz_sincosd1_u10purecfma(double);
}

namespace tq::kernels {

/// One double with the functions that packs have; for processors with FMA only.
struct OneLane {
    using Numbers = double;
    using Truths = bool;

    static Numbers all(double number) { return number; }
    static Truths allTruths(bool truth) { return truth; }

    static Numbers sum(Numbers a, Numbers b) { return a + b; }
    static Numbers difference(Numbers a, Numbers b) { return a - b; }
    static Numbers product(Numbers a, Numbers b) { return a * b; }
    static Numbers quotient(Numbers a, Numbers b) { return a / b; }
    static Numbers negative(Numbers a) { return -a; }

    static Truths less(Numbers a, Numbers b) { return allTruths(a < b); }
    static Truths lessOrEqual(Numbers a, Numbers b) { return allTruths(a <= b); }
    static Truths equal(Numbers a, Numbers b) { return allTruths(a == b); }
    static Truths both(Truths a, Truths b) { return a && b; }
    static Truths either(Truths a, Truths b) { return a || b; }
    static Truths opposite(Truths a) { return !a; }
    static bool any(Truths a) { return a; }
    static Numbers choice(Truths condition, Numbers whenTrue, Numbers whenFalse) {
        return condition ? whenTrue : whenFalse;
    }

    static Numbers absolute(Numbers a) { return std::abs(a); }
    static Numbers squareRoot(Numbers a) { return std::sqrt(a); }
    static Numbers truncated(Numbers a) { return std::trunc(a); }
    static Numbers remainder(Numbers a, double b) { return std::remainder(a, b); }

    TQ_SLEEF_FUNCTIONS(d1, purecfma)
};

} // namespace tq::kernels
