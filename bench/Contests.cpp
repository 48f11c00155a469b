#include "bench/Contests.h"

#include "bench/ConversionCases.h"
#include "bench/GeographicLibPasses.h"
#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"
#include "testing/Differences.h"
#include "testing/RandomNumbers.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <span>
#include <utility>

using sidebyside::Area;
using sidebyside::System;

namespace {

// Divisible by every size of a batch but the largest, and more than a processor learns the branches of.
constexpr std::size_t pointCount = 8000;

/// The instruction set of a pass; afterwards it is what it was.
class InstructionSetInUse {
  public:
    explicit InstructionSetInUse(TQInstructionSet set) { TQSetInstructionSet(set); }
    ~InstructionSetInUse() { TQSetInstructionSet(_before); }
    InstructionSetInUse(const InstructionSetInUse&) = delete;
    InstructionSetInUse& operator=(const InstructionSetInUse&) = delete;

  private:
    TQInstructionSet _before = TQGetInstructionSet();
};

Pass withInstructionSet(TQInstructionSet set, Pass pass) {
    return [set, pass = std::move(pass)](std::span<const TQPoint> in, std::span<TQPoint> out) {
        const InstructionSetInUse inUse(set);
        pass(in, out);
    };
}

using SharedProjection = std::shared_ptr<const TQProjection>;

Pass singly(const SharedProjection& ours, PJ_DIRECTION direction) {
    if (direction == PJ_FWD) {
        return pointByPoint([ours](const TQPoint& geo) {
            TQPoint global;
            ours->convertGeoPt(geo, global);
            return global;
        });
    }
    return pointByPoint([ours](const TQPoint& global) {
        TQPoint geo;
        ours->convertGlobalPt(global, geo);
        return geo;
    });
}

Pass batches(const SharedProjection& ours, PJ_DIRECTION direction, std::size_t size) {
    if (direction == PJ_FWD) {
        return inBatches(size, [ours](std::span<const TQPoint> geo, std::span<TQPoint> global) {
            ours->convertGeoPts(geo, global);
        });
    }
    return inBatches(size, [ours](std::span<const TQPoint> global, std::span<TQPoint> geo) {
        ours->convertGlobalPts(global, geo);
    });
}

using SharedOperation = std::shared_ptr<const ProjOperation>;

Pass singly(const SharedOperation& operation, PJ_DIRECTION direction) {
    if (direction == PJ_FWD) {
        return pointByPoint([operation](const TQPoint& geo) { return operation->forward(geo); });
    }
    return pointByPoint([operation](const TQPoint& global) { return operation->inverse(global); });
}

Pass arrays(const SharedOperation& operation, PJ_DIRECTION direction) {
    return inBatches(contestant::usualBatch,
                     [operation, direction](std::span<const TQPoint> in, std::span<TQPoint> out) {
                         operation->transformArray(direction, in, out);
                     });
}

TQPoint inRadians(const TQPoint& point, AngularUnit unit) {
    return unit == AngularUnit::Radians ? point : TQPoint{tq_deg2rad(point.x), tq_deg2rad(point.y)};
}

/// @param operation PROJ's
/// @param unit what the operation takes and gives geographic points in
std::shared_ptr<const RandomPoints> randomPoints(const Area& area, const ProjOperation& operation,
                                                 AngularUnit unit) {
    RandomNumbers random(20240229);
    const auto points = std::make_shared<RandomPoints>();
    for (std::size_t i = 0; i < pointCount; ++i) {
        const TQPoint radians = area.randomPoint(random);
        const TQPoint degrees{tq_rad2deg(radians.x), tq_rad2deg(radians.y)};
        const TQPoint plane = operation.forward(unit == AngularUnit::Radians ? radians : degrees);
        points->radians.push_back(radians);
        points->degrees.push_back(degrees);
        points->plane.push_back(plane);
        points->wayBack.push_back(inRadians(operation.inverse(plane), unit));
    }
    return points;
}

void addBatches(std::vector<Contestant>& contestants, const SharedProjection& ours, PJ_DIRECTION direction) {
    for (const TQInstructionSet set : instructionSetsHere()) {
        for (const std::size_t size : contestant::batchSizes) {
            contestants.push_back({contestant::batch(set, size), AngularUnit::Radians,
                                   withInstructionSet(set, batches(ours, direction, size)),
                                   std::lcm(size, pointCount) / pointCount});
        }
    }
}

void addGeographicLib(std::vector<Contestant>& contestants, const System& system, PJ_DIRECTION direction) {
    if (const auto passes = geographicLibPasses(system)) {
        contestants.push_back({contestant::geographicLib, AngularUnit::Degrees,
                               direction == PJ_FWD ? passes->forward : passes->inverse});
    }
}

std::vector<Contest> contestsOf(const ConversionCase& conversion) {
    constexpr double forwardBound = 1e-3;
    const System& system = conversion.system;
    const auto bare = std::make_shared<const ProjOperation>(system.proj());
    const auto systems = std::make_shared<const ProjOperation>(betweenSystems(system));
    const auto points = randomPoints(system.usual, *bare, AngularUnit::Radians);
    std::vector<Contest> contests;
    for (const PJ_DIRECTION direction : {PJ_FWD, PJ_INV}) {
        std::vector<Contestant> contestants{
            {contestant::systemPoints, AngularUnit::Degrees, singly(systems, direction)},
            {contestant::systemArray, AngularUnit::Degrees, arrays(systems, direction)},
            {contestant::barePoints, AngularUnit::Radians, singly(bare, direction)},
            {contestant::bareArray, AngularUnit::Radians, arrays(bare, direction)},
            {contestant::single, AngularUnit::Radians, singly(system.projection, direction)}};
        addGeographicLib(contestants, system, direction);
        addBatches(contestants, system.projection, direction);
        contests.push_back({system.name, direction, system.metres(1.0),
                            direction == PJ_FWD ? forwardBound : conversion.inverseBound, points,
                            std::move(contestants)});
    }
    return contests;
}

std::vector<Contest> contestsOf(const ProjDefinedCase& conversion) {
    constexpr double bound = 1e-6;
    constexpr double earthRadius = 6378137.0;
    const auto operation = std::make_shared<const ProjOperation>(
        ProjOperation::betweenSystems(conversion.geographic, conversion.projected));
    const auto points = randomPoints(conversion.area, *operation, AngularUnit::Degrees);
    const auto ours = std::make_shared<TQPrProj4>();
    ours->initFromPROJString(conversion.projected.c_str(), false);
    std::vector<Contest> contests;
    for (const PJ_DIRECTION direction : {PJ_FWD, PJ_INV}) {
        contests.push_back({conversion.name,
                            direction,
                            earthRadius,
                            bound,
                            points,
                            {{contestant::systemArray, AngularUnit::Degrees, arrays(operation, direction)},
                             {contestant::single, AngularUnit::Radians, singly(ours, direction)},
                             {contestant::projDefinedBatch, AngularUnit::Radians,
                              batches(ours, direction, contestant::usualBatch)}}});
    }
    return contests;
}

template <class Case>
std::vector<Contest> contestsOfAll(const std::vector<Case>& cases) {
    std::vector<Contest> all;
    for (const Case& conversion : cases) {
        std::ranges::move(contestsOf(conversion), std::back_inserter(all));
    }
    return all;
}

} // namespace

std::string contestant::batch(TQInstructionSet set, std::size_t size) {
    return std::string(nameOf(set)) + ", " + std::to_string(size);
}

std::vector<TQInstructionSet> instructionSetsHere() {
    std::vector<TQInstructionSet> sets{TQInstructionSet::Baseline, TQInstructionSet::AVX2,
                                       TQInstructionSet::AVX512};
    std::erase_if(sets, [](TQInstructionSet set) { return !TQHasInstructionSet(set); });
    return sets;
}

const char* nameOf(TQInstructionSet set) {
    switch (set) {
    case TQInstructionSet::AVX512:
        return "AVX-512";
    case TQInstructionSet::AVX2:
        return "AVX2";
    case TQInstructionSet::Baseline:
        break;
    }
    return "baseline";
}

const char* Contest::directionName() const { return direction == PJ_FWD ? "forward" : "inverse"; }

std::string Contest::benchmarkName(const std::string& contestantName) const {
    return system + "/" + directionName() + "/" + contestantName;
}

std::vector<TQPoint> Contest::given(const Contestant& who) const {
    const std::vector<TQPoint>& once = direction == PJ_INV                ? points->plane
                                       : who.unit == AngularUnit::Radians ? points->radians
                                                                          : points->degrees;
    std::vector<TQPoint> all;
    all.reserve(once.size() * who.repetitions);
    for (std::size_t i = 0; i < who.repetitions; ++i) {
        all.insert(all.end(), once.begin(), once.end());
    }
    return all;
}

double Contest::largestDifference(const Contestant& who) const {
    const std::vector<TQPoint> in = given(who);
    std::vector<TQPoint> out(in.size());
    who.pass(in, out);
    Differences differences;
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::size_t index = i % pointCount;
        differences.add(direction == PJ_FWD
                            ? planeDistance(out[i], points->plane[index])
                            : radius * groundAngle(inRadians(out[i], who.unit), points->wayBack[index]));
    }
    return differences.max();
}

std::vector<Contest> nativeContests() { return contestsOfAll(nativeCases()); }

std::vector<Contest> projDefinedContests() { return contestsOfAll(projDefinedCases()); }
