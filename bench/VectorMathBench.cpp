// The errors and the times of vector mathematics libraries, on arguments of the ranges that the projections
// use, beside the standard library's functions. The standard output is docs/performance.md's tables, the
// error output Google Benchmark's report.
//
//   vector-math-bench

#include "bench/Machine.h"
#include "bench/MarkdownTable.h"
#include "bench/MedianRun.h"
#include "bench/VectorMathLibraries.h"
#include "projections/kernels/TQInstructionSet.h"
#include "support/TQUnit.h"
#include "testing/RandomNumbers.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr std::size_t argumentCount = 1'000'000;
constexpr std::size_t timedCount = 4096; // the arrays stay in the cache

struct Range {
    double low, high;
};

/// A function, where the projections take it, what it is in more digits than a library has, and as the
/// standard library has it.
struct Function {
    using Exact = long double (*)(long double x, long double y);

    const char* name;
    Range x;
    Range y; ///< of the second argument
    Exact exact;
    VectorFunction::Apply standard;
};

constexpr double pi = std::numbers::pi;
constexpr Range none{0.0, 0.0};
constexpr Range turn{-pi, pi};
constexpr Range isometricLatitudes{-5.0, 5.0}; // to 89.2 degrees
constexpr Range metres{-1e7, 1e7};

/// @tparam function takes two numbers of either type and makes one
template <auto function>
constexpr Function named(const char* name, const Range& x, const Range& y = none) {
    return {name, x, y, function,
            [](const double* first, const double* second, double* results, std::size_t count) {
                for (std::size_t i = 0; i < count; ++i) {
                    results[i] = function(first[i], second[i]);
                }
            }};
}

constexpr std::array functions{
    named<[](auto x, auto) { return std::sin(x); }>("sin", turn),
    named<[](auto x, auto) { return std::cos(x); }>("cos", turn),
    named<[](auto x, auto) { return std::tan(x); }>("tan", {-0.499 * pi, 0.499 * pi}),
    named<[](auto x, auto) { return std::atan(x); }>("atan", {-100.0, 100.0}),
    named<[](auto x, auto y) { return std::atan2(x, y); }>("atan2", metres, metres),
    named<[](auto x, auto) { return std::asin(x); }>("asin", {-1.0, 1.0}),
    named<[](auto x, auto) { return std::asinh(x); }>("asinh", {-100.0, 100.0}),
    named<[](auto x, auto) { return std::log(x); }>("log", {0.001, 100.0}),
    named<[](auto x, auto) { return std::log1p(x); }>("log1p", {-0.5, 1.0}),
    named<[](auto x, auto) { return std::exp(x); }>("exp", isometricLatitudes),
    named<[](auto x, auto) { return std::sinh(x); }>("sinh", isometricLatitudes),
    named<[](auto x, auto) { return std::tanh(x); }>("tanh", isometricLatitudes),
    named<[](auto x, auto y) { return std::pow(x, y); }>("pow", {0.001, 10.0}, {-1.0, 2.0}),
};

constexpr auto standardFunctions = [] {
    std::array<VectorFunction, functions.size()> all{};
    std::ranges::transform(functions, all.begin(), [](const Function& function) {
        return VectorFunction{function.name, function.standard};
    });
    return all;
}();

constexpr VectorLibrary standardLibrary{"std", standardFunctions};

/// The libraries that the processor can run, the standard one first.
std::vector<VectorLibrary> librariesHere() {
    std::vector<VectorLibrary> libraries{standardLibrary};
    if (TQHasInstructionSet(TQInstructionSet::AVX2)) {
        std::ranges::copy(vectorLibrariesAVX2(), std::back_inserter(libraries));
    }
    if (TQHasInstructionSet(TQInstructionSet::AVX512)) {
        std::ranges::copy(vectorLibrariesAVX512(), std::back_inserter(libraries));
    }
    return libraries;
}

VectorFunction::Apply applyOf(const VectorLibrary& library, const std::string& function) {
    return std::ranges::find(library.functions, function, &VectorFunction::name)->apply;
}

/// Random arguments of a function.
struct Arguments {
    std::vector<double> x, y;

    Arguments(const Function& function, std::size_t count) {
        RandomNumbers random(20240229);
        for (std::size_t i = 0; i < count; ++i) {
            x.push_back(random.between(function.x.low, function.x.high));
            y.push_back(random.between(function.y.low, function.y.high));
        }
    }

    std::vector<double> results(VectorFunction::Apply apply) const {
        std::vector<double> made(x.size());
        apply(x.data(), y.data(), made.data(), made.size());
        return made;
    }

    std::vector<long double> exactResults(Function::Exact exact) const {
        std::vector<long double> made(x.size());
        std::ranges::transform(x, y, made.begin(), exact);
        return made;
    }
};

/// The difference in units of the last place.
double error(double result, long double exact) {
    const double size = std::abs(static_cast<double>(exact));
    const double unit = std::nextafter(size, std::numeric_limits<double>::infinity()) - size;
    return static_cast<double>(std::abs(result - exact) / unit);
}

double largestError(const std::vector<double>& results, const std::vector<long double>& exact) {
    double largest = 0.0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        largest = std::max(largest, error(results[i], exact[i]));
    }
    return largest;
}

std::vector<std::string> columns(const std::vector<std::string>& first,
                                 const std::vector<VectorLibrary>& libraries) {
    std::vector<std::string> titles = first;
    std::ranges::transform(libraries, std::back_inserter(titles), &VectorLibrary::name);
    return titles;
}

std::string text(const Function& function) {
    constexpr std::size_t enough = 80;
    char text[enough];
    const int length = std::snprintf(text, sizeof text, "%.4g…%.4g", function.x.low, function.x.high);
    if (function.y.low < function.y.high) {
        std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), "; %.4g…%.4g",
                      function.y.low, function.y.high);
    }
    return text;
}

void printErrors(const std::vector<VectorLibrary>& libraries) {
    std::printf("\n### Largest errors in units of the last place\n\n");
    const MarkdownTable table(columns({"function", "arguments"}, libraries));
    for (const Function& function : functions) {
        const Arguments arguments(function, argumentCount);
        const std::vector<long double> exact = arguments.exactResults(function.exact);
        std::vector<std::string> cells{function.name, text(function)};
        for (const VectorLibrary& library : libraries) {
            const std::vector<double> results = arguments.results(applyOf(library, function.name));
            cells.push_back(MarkdownTable::cell(largestError(results, exact), 2));
        }
        table.row(cells);
    }
}

/// How many of some well-known angles have the same function in a library as in the standard one, bit for
/// bit.
std::string equalAngles(const VectorLibrary& library, const char* function) {
    constexpr std::size_t angleCount = 6;
    std::array<double, 8> angles{0.0, 30.0, 45.0, 60.0, 90.0, 180.0}; // as many as are taken at once
    std::ranges::transform(angles, angles.begin(), tq_deg2rad);
    std::array<double, angles.size()> results{};
    std::array<double, angles.size()> standard{};
    applyOf(library, function)(angles.data(), nullptr, results.data(), results.size());
    applyOf(standardLibrary, function)(angles.data(), angles.data(), standard.data(), standard.size());
    std::size_t equal = 0;
    for (std::size_t i = 0; i < angleCount; ++i) {
        equal +=
            std::bit_cast<std::uint64_t>(results[i]) == std::bit_cast<std::uint64_t>(standard[i]) ? 1 : 0;
    }
    return std::to_string(equal) + " of " + std::to_string(angleCount);
}

void printEqualAngles(const std::vector<VectorLibrary>& libraries) {
    std::printf("\n### 0, 30, 45, 60, 90 and 180 degrees: as the standard library, bit for bit\n\n");
    const MarkdownTable table(columns({"function"}, libraries));
    for (const char* const function : {"sin", "cos"}) {
        std::vector<std::string> cells{function};
        for (const VectorLibrary& library : libraries) {
            cells.push_back(equalAngles(library, function));
        }
        table.row(cells);
    }
}

std::string benchmarkName(const Function& function, const VectorLibrary& library) {
    return std::string(function.name) + "/" + library.name;
}

/// Applies a function to the same arguments again and again; the time is that of one value.
void run(benchmark::State& state, const Function& function, VectorFunction::Apply apply) {
    const Arguments arguments(function, timedCount);
    std::vector<double> results(timedCount);
    while (state.KeepRunningBatch(timedCount)) {
        apply(arguments.x.data(), arguments.y.data(), results.data(), timedCount);
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
}

void add(const std::vector<VectorLibrary>& libraries) {
    for (const Function& function : functions) {
        for (const VectorLibrary& library : libraries) {
            benchmark::RegisterBenchmark(benchmarkName(function, library).c_str(),
                                         [&function, apply = applyOf(library, function.name)](
                                             benchmark::State& state) { run(state, function, apply); });
        }
    }
}

void printTimes(const std::vector<VectorLibrary>& libraries, MedianReporter& times) {
    std::printf("\n### Nanoseconds of processor time a value, medians\n\n");
    const MarkdownTable table(columns({"function"}, libraries));
    for (const Function& function : functions) {
        std::vector<std::string> cells{function.name};
        for (const VectorLibrary& library : libraries) {
            cells.push_back(MarkdownTable::cell(times.median(benchmarkName(function, library)), 2));
        }
        table.row(cells);
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<VectorLibrary> libraries = librariesHere();
    add(libraries);
    MedianReporter times;
    if (!runForMedians(argc, argv, times)) {
        return 1;
    }
    std::printf("%s; %s.\n", processorName().c_str(), TQ_BENCH_COMPILER);
    printErrors(libraries);
    printEqualAngles(libraries);
    printTimes(libraries, times);
    return 0;
}
