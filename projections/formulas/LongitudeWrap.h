#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

#include <limits>

namespace tq::formulas {

/// A longitude brought to within half a turn of a central meridian by whole turns.
///
/// The threshold lies a thousand-millionth of a radian above pi: a longitude that is past the
/// antimeridian by less stays on its side. Beyond a thousand turns the rest is taken by the IEEE
/// remainder; what is not finite passes through.
/// @param lambda longitude in radians
/// @param center longitude of the central meridian in radians
template <class T>
T wrappedTowards(T lambda, double center) {
    using std::abs, std::remainder;
    constexpr double threshold = 3.141592654589793;
    constexpr int turnLimit = 1000;
    const auto tooFarEast = [&] { return lambda - center > threshold; };
    const auto tooFarWest = [&] { return center - lambda > threshold; };
    for (int turn = 0; turn < turnLimit && anyLane(tooFarEast()); ++turn) {
        lambda = select(tooFarEast(), lambda - 2.0 * pi, lambda);
    }
    for (int turn = 0; turn < turnLimit && anyLane(tooFarWest()); ++turn) {
        lambda = select(tooFarWest(), lambda + 2.0 * pi, lambda);
    }
    const Mask<T> stillFar = tooFarEast() || tooFarWest();
    if (anyLane(stillFar)) {
        const Mask<T> finite = abs(lambda) <= std::numeric_limits<double>::max();
        lambda = select(stillFar && finite, center + remainder(lambda - center, 2.0 * pi), lambda);
    }
    return lambda;
}

} // namespace tq::formulas
