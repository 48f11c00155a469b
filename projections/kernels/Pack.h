#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

#include <cstddef>

namespace tq::kernels {

/// The truth values of a comparison of packs, one a lane.
template <class Lanes>
struct PackMask {
    typename Lanes::Truths value{};

    PackMask() = default;
    explicit PackMask(bool all) : value(Lanes::allTruths(all)) {}

    static PackMask of(typename Lanes::Truths truths) {
        PackMask mask;
        mask.value = truths;
        return mask;
    }

    friend PackMask operator&&(const PackMask& a, const PackMask& b) {
        return of(Lanes::both(a.value, b.value));
    }
    friend PackMask operator||(const PackMask& a, const PackMask& b) {
        return of(Lanes::either(a.value, b.value));
    }
    friend PackMask operator!(const PackMask& a) { return of(Lanes::opposite(a.value)); }

    friend bool anyLane(const PackMask& condition) { return Lanes::any(condition.value); }
};

/// Numbers that are computed together, one a lane: what the formulas take for a number. Every operation goes
/// lane by lane and gives each lane the same bits, however many lanes there are.
/// @tparam Lanes the operations of so many lanes: OneLane, FourLanes or EightLanes
template <class Lanes>
struct Pack {
    using Numbers = typename Lanes::Numbers;
    using Mask = PackMask<Lanes>;

    Numbers value{};

    Pack() = default;
    Pack(double all) : value(Lanes::all(all)) {} // a number stands for all lanes, as in the formulas

    static Pack of(Numbers numbers) {
        Pack pack;
        pack.value = numbers;
        return pack;
    }

    friend Pack operator+(const Pack& a, const Pack& b) { return of(Lanes::sum(a.value, b.value)); }
    friend Pack operator-(const Pack& a, const Pack& b) { return of(Lanes::difference(a.value, b.value)); }
    friend Pack operator*(const Pack& a, const Pack& b) { return of(Lanes::product(a.value, b.value)); }
    friend Pack operator/(const Pack& a, const Pack& b) { return of(Lanes::quotient(a.value, b.value)); }
    friend Pack operator-(const Pack& a) { return of(Lanes::negative(a.value)); }

    friend Mask operator<(const Pack& a, const Pack& b) { return Mask::of(Lanes::less(a.value, b.value)); }
    friend Mask operator>(const Pack& a, const Pack& b) { return b < a; }
    friend Mask operator<=(const Pack& a, const Pack& b) {
        return Mask::of(Lanes::lessOrEqual(a.value, b.value));
    }
    friend Mask operator>=(const Pack& a, const Pack& b) { return b <= a; }
    friend Mask operator==(const Pack& a, const Pack& b) { return Mask::of(Lanes::equal(a.value, b.value)); }

    friend Pack select(const Mask& condition, const Pack& whenTrue, const Pack& whenFalse) {
        return of(Lanes::choice(condition.value, whenTrue.value, whenFalse.value));
    }

    friend Pack abs(const Pack& a) { return of(Lanes::absolute(a.value)); }
    friend Pack sqrt(const Pack& a) { return of(Lanes::squareRoot(a.value)); }
    friend Pack trunc(const Pack& a) { return of(Lanes::truncated(a.value)); }
    friend Pack remainder(const Pack& a, double b) { return of(Lanes::remainder(a.value, b)); }
    friend Pack asin(const Pack& a) { return of(Lanes::asin(a.value)); }
    friend Pack atan(const Pack& a) { return of(Lanes::atan(a.value)); }
    friend Pack atan2(const Pack& a, const Pack& b) { return of(Lanes::atan2(a.value, b.value)); }
    friend Pack exp(const Pack& a) { return of(Lanes::exp(a.value)); }
    friend Pack log(const Pack& a) { return of(Lanes::log(a.value)); }
    friend Pack log1p(const Pack& a) { return of(Lanes::log1p(a.value)); }
    friend Pack sin(const Pack& a) { return of(Lanes::sin(a.value)); }
    friend Pack sinh(const Pack& a) { return of(Lanes::sinh(a.value)); }
    friend Pack tanh(const Pack& a) { return of(Lanes::tanh(a.value)); }
    friend formulas::Direction<Pack> sinCos(const Pack& angle) {
        const auto both = Lanes::sincos(angle.value);
        return {of(both.x), of(both.y)};
    }
};

} // namespace tq::kernels
