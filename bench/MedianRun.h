#pragma once

#include "bench/MedianReporter.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <iostream>
#include <string>
#include <vector>

/// Runs all registered benchmarks in a random order, so that whatever slows the machine for a while falls on
/// all of them, seven times each for the medians. Google Benchmark's own flags, which count more, change
/// that. Its report goes to the error output and leaves the standard output for tables.
/// @param argc the arguments of main()
/// @param argv the arguments of main()
/// @param reporter keeps the times
/// @return whether the arguments were understood
inline bool runForMedians(int argc, char** argv, MedianReporter& reporter) {
    // Google Benchmark keeps pointing at the program's name.
    static std::vector<std::string> texts{argv[0], "--benchmark_repetitions=7", "--benchmark_min_time=0.03",
                                          "--benchmark_enable_random_interleaving=true"};
    texts.insert(texts.end(), argv + 1, argv + argc);
    std::vector<char*> arguments(texts.size());
    std::ranges::transform(texts, arguments.begin(), [](std::string& text) { return text.data(); });
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return false;
    }
    reporter.SetOutputStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return true;
}
