#include "projections/kernels/TQInstructionSet.h"

#include "support/TQPlatform.h"

#include <array>
#include <atomic>
#include <string_view>
#include <utility>

namespace {

constexpr std::array<std::pair<std::string_view, TQInstructionSet>, 3> names{
    {{"avx512", TQInstructionSet::AVX512},
     {"avx2", TQInstructionSet::AVX2},
     {"baseline", TQInstructionSet::Baseline}}};

/// The one that the environment names, if there is it; else the best one that there is.
TQInstructionSet chosenAtStart() {
    const std::string wanted = tq_environmentText("TQ_INSTRUCTION_SET");
    for (const auto& [name, set] : names) {
        if (wanted == name && TQHasInstructionSet(set)) {
            return set;
        }
    }
    for (const auto& [name, set] : names) {
        if (TQHasInstructionSet(set)) {
            return set;
        }
    }
    return TQInstructionSet::Baseline;
}

/// The number of the set in use. Threads that ask for the first time at once come to the same answer.
constexpr int notChosen = -1;
constinit std::atomic<int> chosen = notChosen;

} // namespace

TQInstructionSet TQGetInstructionSet() {
    const int set = chosen.load(std::memory_order_relaxed);
    if (set != notChosen) {
        return static_cast<TQInstructionSet>(set);
    }
    int expected = notChosen;
    chosen.compare_exchange_strong(expected, static_cast<int>(chosenAtStart()), std::memory_order_relaxed);
    return static_cast<TQInstructionSet>(chosen.load(std::memory_order_relaxed));
}

bool TQHasInstructionSet(TQInstructionSet set) {
#ifdef TQ_HAS_KERNELS
    switch (set) {
    case TQInstructionSet::AVX512:
        return tq_processorHasAVX512();
    case TQInstructionSet::AVX2:
        return tq_processorHasAVX2();
    case TQInstructionSet::Baseline:
        break;
    }
#endif
    return set == TQInstructionSet::Baseline;
}

bool TQSetInstructionSet(TQInstructionSet set) {
    if (!TQHasInstructionSet(set)) {
        return false;
    }
    chosen.store(static_cast<int>(set), std::memory_order_relaxed);
    return true;
}
