#pragma once

#include "ellipsoid/formulas/Arithmetic.h"

#include <type_traits>

namespace tq::formulas {

/// Pass limit of an iteration that has none of its own: far above any real need, which is 20 passes, so that
/// the iteration ends for every input, after 3 ms at the most.
inline constexpr int unlimitedPasses = 10'000;

/// What an iteration came to.
template <class T>
struct Iterated {
    T value;           ///< the last iterate of each lane
    T change;          ///< what the last pass added to the one before
    Mask<T> converged; ///< whether the stop test was met
};

/// Iterates `next = improve(current)` from a start value until `|next - current| <= tolerance`.
///
/// At least one pass is made. A lane whose difference is not a number leaves at once, unconverged. An
/// iteration that alternates between two values cannot change any more and ends; this is looked for
/// only beyond every prescribed pass limit, so that such limits are met to the letter.
/// @param start the first value
/// @param tolerance the largest difference of two iterates that counts as none
/// @param passLimit the number of passes after which the last iterate is taken as it is
/// @param improve the function that improves a value
/// @param passesUnasked passes that are made without asking whether any lane still needs them: faster where a
///        pass is cheap and most values need so many; lanes that are finished stay as they are
template <class T, class Improve>
Iterated<T> iterate(T start, const std::type_identity_t<T>& tolerance, int passLimit, Improve improve,
                    int passesUnasked = 0) {
    using std::abs;
    constexpr int passesBeforeRepeatsCount = 1000;
    T current = start;
    T before = start;
    T change(0.0);
    Mask<T> running(true);
    Mask<T> converged(false);
    for (int pass = 0; pass < passLimit && (pass < passesUnasked || anyLane(running)); ++pass) {
        const T next = improve(current);
        const T step = next - current;
        const T difference = abs(step);
        const Mask<T> repeats = Mask<T>(pass >= passesBeforeRepeatsCount) && next == before;
        converged = converged || (running && difference <= tolerance);
        before = select(running, current, before);
        change = select(running, step, change);
        current = select(running, next, current);
        running = running && difference > tolerance && !repeats;
    }
    return {current, change, converged};
}

} // namespace tq::formulas
