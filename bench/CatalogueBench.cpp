// The time of building the catalogue of reference systems and letting go of it, beside PROJ alone listing the
// same systems of its database; then the memory that a catalogue holds and the most that the process had.
//
//   catalogue-bench

#include "bench/MedianReporter.h"
#include "proj/TQExternalProjList.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <proj.h>
#include <string>

namespace {

constexpr const char* projName = "PROJ lists its database";
constexpr const char* catalogueName = "TQExternalProjList";
constexpr int repetitions = 9;
constexpr double kibibytesPerMebibyte = 1024.0;
constexpr double bytesPerMebibyte = 1024.0 * kibibytesPerMebibyte;

/// PROJ's list of the systems that the catalogue takes, made and destroyed.
/// @return their number
int listWithPROJ() {
    const std::unique_ptr<PROJ_CRS_LIST_PARAMETERS, decltype(&proj_get_crs_list_parameters_destroy)> wanted(
        proj_get_crs_list_parameters_create(), &proj_get_crs_list_parameters_destroy);
    constexpr std::array types{PJ_TYPE_PROJECTED_CRS, PJ_TYPE_GEOGRAPHIC_2D_CRS};
    wanted->types = types.data();
    wanted->typesCount = types.size();
    wanted->allow_deprecated = 1;
    wanted->celestial_body_name = "Earth";
    int count = 0;
    proj_crs_info_list_destroy(proj_get_crs_info_list_from_database(nullptr, nullptr, wanted.get(), &count));
    return count;
}

int systemsIn(const TQExternalProjList& catalogue) {
    int count = 0;
    HashState<TQExternalProjList::Family> state;
    while (const TQExternalProjList::Family* family = catalogue.families().next(state)) {
        count += family->count();
    }
    return count;
}

/// Registers an action, repeated for a median.
template <class Action>
void add(const char* name, Action action) {
    benchmark::RegisterBenchmark(name,
                                 [action](benchmark::State& state) {
                                     for (auto unused : state) {
                                         static_cast<void>(unused);
                                         action();
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(repetitions);
}

/// What is allocated, in bytes, by the books of the C library.
std::size_t allocatedBytes() {
    const struct mallinfo2 books = mallinfo2();
    return books.uordblks + books.hblkhd;
}

/// The most physical memory that the process had, VmHWM of the kernel, in MiB.
double peak() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    double kibibytes = 0.0;
    status >> kibibytes;
    return kibibytes / kibibytesPerMebibyte;
}

/// Builds a first catalogue, after which PROJ has its database open and its caches filled, and prints what a
/// second one holds and the peaks.
void printMemory() {
    const double atFirst = peak();
    TQExternalProjList();
    const double withCatalogue = peak();
    const std::size_t before = allocatedBytes();
    const TQExternalProjList catalogue;
    const std::size_t held = allocatedBytes() - before;
    std::printf("systems: %d listed by PROJ, %d in the catalogue\n", listWithPROJ(), systemsIn(catalogue));
    std::printf("memory that the catalogue holds (mallinfo2): %.2f MiB\n",
                static_cast<double>(held) / bytesPerMebibyte);
    std::printf("peak of the process (VmHWM): %.1f MiB at first, %.1f MiB after building one catalogue\n",
                atFirst, withCatalogue);
}

void printRatio(MedianReporter& times) {
    const double proj = times.median(projName);
    const double catalogue = times.median(catalogueName);
    if (proj > 0.0 && catalogue > 0.0) {
        std::printf("medians: PROJ %.1f ms, catalogue %.1f ms; catalogue / PROJ %.2f\n", proj, catalogue,
                    catalogue / proj);
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    printMemory();
    add(projName, [] { benchmark::DoNotOptimize(listWithPROJ()); });
    add(catalogueName, [] {
        const TQExternalProjList catalogue;
        benchmark::DoNotOptimize(&catalogue);
    });
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatio(reporter);
    std::printf("peak of the process in the end: %.1f MiB\n", peak());
    return 0;
}
