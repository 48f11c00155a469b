#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

#include <array>
#include <cmath>

/// Two doubles that are computed together, as a processor's vector unit does: the arithmetic that the
/// formulas are written for besides double. Every operation goes lane by lane.
struct Pack {
    std::array<double, 2> lanes{};

    Pack() = default;
    Pack(double both) : lanes{both, both} {} // a number stands for all lanes, as in the formulas
    Pack(double first, double second) : lanes{first, second} {}
};

/// The truth values of a comparison of packs.
struct PackMask {
    std::array<bool, 2> lanes{};

    PackMask() = default;
    explicit PackMask(bool both) : lanes{both, both} {}
    PackMask(bool first, bool second) : lanes{first, second} {}
};

template <class F>
Pack eachLane(F f, const Pack& a) {
    return {f(a.lanes[0]), f(a.lanes[1])};
}
template <class F>
Pack eachLane(F f, const Pack& a, const Pack& b) {
    return {f(a.lanes[0], b.lanes[0]), f(a.lanes[1], b.lanes[1])};
}
template <class F>
PackMask compareLanes(F f, const Pack& a, const Pack& b) {
    return {f(a.lanes[0], b.lanes[0]), f(a.lanes[1], b.lanes[1])};
}

inline Pack operator-(const Pack& a) { return {-a.lanes[0], -a.lanes[1]}; }

#define PACK_ARITHMETIC(op)                                                                                  \
    inline Pack operator op(const Pack& a, const Pack& b) {                                                  \
        return eachLane([](double x, double y) { return x op y; }, a, b);                                    \
    }
PACK_ARITHMETIC(+)
PACK_ARITHMETIC(-)
PACK_ARITHMETIC(*)
PACK_ARITHMETIC(/)
#undef PACK_ARITHMETIC

#define PACK_COMPARISON(op)                                                                                  \
    inline PackMask operator op(const Pack& a, const Pack& b) {                                              \
        return compareLanes([](double x, double y) { return x op y; }, a, b);                                \
    }
PACK_COMPARISON(<)
PACK_COMPARISON(>)
PACK_COMPARISON(<=)
PACK_COMPARISON(>=)
PACK_COMPARISON(==)
#undef PACK_COMPARISON

inline PackMask operator&&(const PackMask& a, const PackMask& b) {
    return {a.lanes[0] && b.lanes[0], a.lanes[1] && b.lanes[1]};
}
inline PackMask operator||(const PackMask& a, const PackMask& b) {
    return {a.lanes[0] || b.lanes[0], a.lanes[1] || b.lanes[1]};
}
inline PackMask operator!(const PackMask& a) { return {!a.lanes[0], !a.lanes[1]}; }

#define PACK_FUNCTION(name)                                                                                  \
    inline Pack name(const Pack& a) {                                                                        \
        return eachLane([](double x) { return std::name(x); }, a);                                           \
    }
PACK_FUNCTION(abs)
PACK_FUNCTION(asin)
PACK_FUNCTION(atan)
PACK_FUNCTION(cos)
PACK_FUNCTION(exp)
PACK_FUNCTION(log)
PACK_FUNCTION(log1p)
PACK_FUNCTION(sin)
PACK_FUNCTION(sinh)
PACK_FUNCTION(sqrt)
PACK_FUNCTION(tanh)
PACK_FUNCTION(trunc)
#undef PACK_FUNCTION

inline tq::formulas::Direction<Pack> sinCos(const Pack& angle) { return {sin(angle), cos(angle)}; }

#define PACK_FUNCTION_OF_TWO(name)                                                                           \
    inline Pack name(const Pack& a, const Pack& b) {                                                         \
        return eachLane([](double x, double y) { return std::name(x, y); }, a, b);                           \
    }
PACK_FUNCTION_OF_TWO(atan2)
PACK_FUNCTION_OF_TWO(remainder)
#undef PACK_FUNCTION_OF_TWO

inline Pack select(const PackMask& condition, const Pack& whenTrue, const Pack& whenFalse) {
    return {condition.lanes[0] ? whenTrue.lanes[0] : whenFalse.lanes[0],
            condition.lanes[1] ? whenTrue.lanes[1] : whenFalse.lanes[1]};
}
inline bool anyLane(const PackMask& condition) { return condition.lanes[0] || condition.lanes[1]; }
