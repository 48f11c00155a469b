#pragma once

#include "TQProjectionExport.h"

/// The instruction sets that conversions of many points are compiled for.
enum class TQInstructionSet {
    Baseline, ///< point by point, as every processor of the platform can
    AVX2,     ///< four points at once (AVX2 with FMA)
    AVX512    ///< eight points at once (AVX-512 F, DQ, CD, BW and VL)
};

/// The instruction set in use: the best one that the processor and the build have, or the one that the
/// environment variable TQ_INSTRUCTION_SET names ("baseline", "avx2" or "avx512"), if they have it; asked
/// once a process.
TQPROJECTION_EXPORT TQInstructionSet TQGetInstructionSet();

/// Whether the processor and the build have an instruction set.
/// @param set the instruction set
TQPROJECTION_EXPORT bool TQHasInstructionSet(TQInstructionSet set);

/// Chooses the instruction set for the process from now on, for tests and measurements.
/// @param set the instruction set
/// @return whether there is such a one; if not, nothing changes
TQPROJECTION_EXPORT bool TQSetInstructionSet(TQInstructionSet set);
