// The time of one conversion of one point, class by class and direction by direction, of this library and of
// others on the same random points, in one run: point by point, in batches with each instruction set of the
// machine, and of the projections that PROJ computes. The standard output is docs/performance.md's tables,
// the error output Google Benchmark's report.
//
//   conversion-bench                                  everything
//   conversion-bench --benchmark_filter=UTM           one class
//   conversion-bench --benchmark_repetitions=15       medians of more repetitions

#include "bench/Contests.h"
#include "bench/ConversionTables.h"
#include "bench/GeographicLibPasses.h"
#include "bench/Machine.h"
#include "bench/MedianRun.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// Fast and wrong does not count: every contestant must come to PROJ's points before it is measured.
void check(const std::vector<Contest>& contests) {
    for (const Contest& contest : contests) {
        for (const Contestant& contestant : contest.contestants) {
            const double difference = contest.largestDifference(contestant);
            if (!(difference <= contest.bound)) {
                throw std::runtime_error(contest.benchmarkName(contestant.name) + ": " +
                                         std::to_string(difference) + " m from PROJ's points, " +
                                         std::to_string(contest.bound) + " m expected at most");
            }
        }
    }
}

/// Runs the passes of a contestant again and again; the time is that of one point.
void run(benchmark::State& state, const Contest& contest, const Contestant& contestant) {
    const std::vector<TQPoint> in = contest.given(contestant);
    std::vector<TQPoint> out(in.size());
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(in.size()))) {
        contestant.pass(in, out);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

void add(const std::vector<Contest>& contests) {
    for (const Contest& contest : contests) {
        for (const Contestant& contestant : contest.contestants) {
            benchmark::RegisterBenchmark(contest.benchmarkName(contestant.name).c_str(),
                                         [&](benchmark::State& state) { run(state, contest, contestant); });
        }
    }
}

int measure(int argc, char** argv) {
    const std::vector<Contest> native = nativeContests();
    const std::vector<Contest> projDefined = projDefinedContests();
    check(native);
    check(projDefined);
    add(native);
    add(projDefined);
    MedianReporter reporter;
    if (!runForMedians(argc, argv, reporter)) {
        return 1;
    }
    std::printf("%s; %s; PROJ %s; %s. Nanoseconds of processor time a point, medians.\n",
                processorName().c_str(), TQ_BENCH_COMPILER, proj_info().version, geographicLibName().c_str());
    printConversionTables(reporter, native, projDefined);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return measure(argc, argv);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "conversion-bench: %s\n", fault.what());
        return 1;
    }
}
