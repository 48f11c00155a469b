#pragma once

#include "projections/kernels/TQInstructionSet.h"

#include <vector>

/// The instruction sets that this machine has.
inline std::vector<TQInstructionSet> instructionSetsHere() {
    std::vector<TQInstructionSet> sets;
    for (const TQInstructionSet set :
         {TQInstructionSet::Baseline, TQInstructionSet::AVX2, TQInstructionSet::AVX512}) {
        if (TQHasInstructionSet(set)) {
            sets.push_back(set);
        }
    }
    return sets;
}

/// Uses an instruction set while it lives.
class InstructionSetInUse {
  public:
    explicit InstructionSetInUse(TQInstructionSet set) : _before(TQGetInstructionSet()) {
        TQSetInstructionSet(set);
    }
    ~InstructionSetInUse() { TQSetInstructionSet(_before); }
    InstructionSetInUse(const InstructionSetInUse&) = delete;
    InstructionSetInUse& operator=(const InstructionSetInUse&) = delete;

  private:
    TQInstructionSet _before;
};
