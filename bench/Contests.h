#pragma once

#include "bench/Pass.h"
#include "projections/kernels/TQInstructionSet.h"
#include "support/TQPoint.h"

#include <array>
#include <cstddef>
#include <memory>
#include <proj.h>
#include <string>
#include <vector>

/// The names of the contestants.
namespace contestant {

inline constexpr const char* systemPoints = "CRS to CRS";
inline constexpr const char* systemArray = "CRS to CRS, array";
inline constexpr const char* barePoints = "bare";
inline constexpr const char* bareArray = "bare, array";
inline constexpr const char* geographicLib = "GeographicLib";
inline constexpr const char* single = "single";
inline constexpr const char* projDefinedBatch = "batch";

/// The points at a time that batches are measured with.
inline constexpr std::array<std::size_t, 5> batchSizes{1, 8, 64, 1000, 1000000};
/// The one that is compared, and that PROJ's arrays have.
inline constexpr std::size_t usualBatch = 1000;

/// The name of the batches of a size.
/// @param set the instruction set that they are computed with
/// @param size the points at a time
std::string batch(TQInstructionSet set, std::size_t size);

} // namespace contestant

/// The instruction sets that are measured: those of the machine, the least first.
std::vector<TQInstructionSet> instructionSetsHere();

/// What an instruction set is called.
/// @param set the instruction set
const char* nameOf(TQInstructionSet set);

/// The same random points in the forms that the contestants take.
struct RandomPoints {
    std::vector<TQPoint> radians;
    std::vector<TQPoint> degrees;
    std::vector<TQPoint> plane;   ///< as PROJ has them
    std::vector<TQPoint> wayBack; ///< what PROJ makes of those, in radians
};

/// What a contestant takes and gives geographic points in.
enum class AngularUnit { Radians, Degrees };

/// A way to convert the points of a contest.
struct Contestant {
    std::string name;
    AngularUnit unit;
    Pass pass;
    std::size_t repetitions = 1; ///< of the points, one after the other, for one pass
};

/// The conversion of one system in one direction, in the ways that are measured beside each other.
struct Contest {
    std::string system;
    PJ_DIRECTION direction;
    double radius; ///< of the Earth in metres: what an angle on the ground comes to
    double bound;  ///< metres: how far a contestant's points may be from PROJ's
    std::shared_ptr<const RandomPoints> points;
    std::vector<Contestant> contestants;

    /// "forward" or "inverse".
    const char* directionName() const;

    /// The name of a benchmark.
    /// @param contestantName the contestant
    std::string benchmarkName(const std::string& contestantName) const;

    /// The points as a contestant takes them for one pass.
    /// @param who the contestant
    std::vector<TQPoint> given(const Contestant& who) const;

    /// The largest difference of a contestant's points from PROJ's in metres; NaN where one of
    /// them is no number.
    /// @param who the contestant
    double largestDifference(const Contestant& who) const;
};

/// The contests of the native classes, forward and inverse of each one after the other.
std::vector<Contest> nativeContests();

/// Those of the projections that PROJ computes: single, usual batch, and PROJ's own array call.
std::vector<Contest> projDefinedContests();
