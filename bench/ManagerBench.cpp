// Loading directories of 100, 1,000 and 10,000 projection files into a manager, looking their names up,
// writing the projections into a document and reading it back; looking up 100 and 1,000 external names.
//
//   manager-bench

#include "manager/TQProjMgr.h"
#include "proj/TQExternalProjList.h"
#include "support/TQReadMemStream.h"
#include "support/TQWriteMemStream.h"
#include "testing/TemporaryDirectory.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr bool withoutResources = false;
constexpr int manyFiles = 10000;

std::string nameOf(int number) { return "Projection " + std::to_string(number); }

/// Fills a directory with projection files, each another transverse Mercator.
void fill(const TemporaryDirectory& directory, int count) {
    for (int number = 0; number < count; ++number) {
        std::ofstream(directory.path() / (std::to_string(number) + ".proj"))
            << "TQFile v1\n4\nTQPrMercator v1\nTQProjection v1\n"
            << nameOf(number) << "\nTQEllipsoid v2\nWGS 84\n6378137\n0.006694379990141\n0\n"
            << 0.001 * number << "\n0\n500000\n0\n0.9996\n";
    }
}

void load(TQProjMgr& manager, const TemporaryDirectory& directory) {
    constexpr bool isResource = false;
    manager.loadProjectionFromDirectory(directory.directory(), isResource, TQProjMgr::Silent);
}

/// Fills a manager with the projections of such a directory.
void fill(TQProjMgr& manager, int count) {
    const TemporaryDirectory directory;
    fill(directory, count);
    load(manager, directory);
}

void setRate(benchmark::State& state, std::int64_t itemsOfAnIteration) {
    state.SetItemsProcessed(state.iterations() * itemsOfAnIteration);
}

void setRates(benchmark::State& state, int projections, std::size_t bytes) {
    setRate(state, projections);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void loadFiles(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const TemporaryDirectory directory;
    fill(directory, count);
    for (auto unused : state) {
        static_cast<void>(unused);
        TQProjMgr manager(withoutResources);
        load(manager, directory);
    }
    setRate(state, count);
}

/// Looks up every name of a list once an iteration.
void lookUp(benchmark::State& state, TQProjMgr& manager, const std::vector<TQString>& names) {
    for (auto unused : state) {
        static_cast<void>(unused);
        for (const TQString& name : names) {
            benchmark::DoNotOptimize(manager.projWithName(name, false));
        }
    }
    setRate(state, static_cast<std::int64_t>(names.size()));
}

void lookUpNames(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    TQProjMgr manager(withoutResources);
    fill(manager, count);
    std::vector<TQString> names;
    for (int number = 0; number < count; ++number) {
        names.emplace_back(nameOf(number).c_str());
    }
    lookUp(state, manager, names);
}

/// The external names of the first systems of the catalogue that PROJ can build.
std::vector<TQString> externalNames(TQProjMgr& manager, std::size_t count) {
    std::vector<TQString> names;
    HashState<TQExternalProjList::Family> families;
    while (const auto* const family = TQExternalProjList::appShared()->families().next(families)) {
        HashState<TQString> systems;
        const TQString* name = nullptr;
        while (names.size() < count && (name = family->next(systems)) != nullptr) {
            if (!manager.projWithName(*name, false)->isInvalid()) {
                names.push_back(*name);
            }
        }
    }
    return names;
}

void lookUpExternalNames(benchmark::State& state) {
    TQProjMgr manager(withoutResources);
    lookUp(state, manager, externalNames(manager, static_cast<std::size_t>(state.range(0))));
}

void writeDocument(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    TQProjMgr manager(withoutResources);
    fill(manager, count);
    std::size_t size = 0;
    for (auto unused : state) {
        static_cast<void>(unused);
        TQWriteMemStream stream;
        manager.archiveTo(&stream);
        size = stream.getMemory().size();
    }
    setRates(state, count, size);
}

void readDocument(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    TQProjMgr written(withoutResources);
    fill(written, count);
    TQWriteMemStream document;
    written.archiveTo(&document);
    const std::span<const char> bytes = document.getMemory();
    for (auto unused : state) {
        static_cast<void>(unused);
        TQProjMgr manager(withoutResources);
        TQReadMemStream stream(bytes.data(), bytes.size());
        manager.unarchiveFrom(&stream);
    }
    setRates(state, count, bytes.size());
}

} // namespace

BENCHMARK(loadFiles)->RangeMultiplier(10)->Range(100, manyFiles)->Unit(benchmark::kMillisecond);
BENCHMARK(lookUpNames)->RangeMultiplier(10)->Range(100, manyFiles);
BENCHMARK(lookUpExternalNames)->RangeMultiplier(10)->Range(100, manyFiles / 10);
BENCHMARK(writeDocument)->RangeMultiplier(10)->Range(100, manyFiles)->Unit(benchmark::kMillisecond);
BENCHMARK(readDocument)->RangeMultiplier(10)->Range(100, manyFiles)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
