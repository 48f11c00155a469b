#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

/// Prints what Google Benchmark prints, and keeps the processor times of all runs for medians and ratios.
class MedianReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& reports) override {
        benchmark::ConsoleReporter::ReportRuns(reports);
        for (const Run& run : reports) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                _times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
            }
        }
    }

    /// The median of a benchmark's runs, in the benchmark's unit; 0 when it did not run.
    /// @param name the benchmark's name
    double median(const std::string& name) {
        std::vector<double>& times = _times[name];
        if (times.empty()) {
            return 0.0;
        }
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

  private:
    std::map<std::string, std::vector<double>> _times;
};
