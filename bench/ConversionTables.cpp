#include "bench/ConversionTables.h"

#include "bench/MarkdownTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iterator>
#include <string>

namespace {

/// Contests and the times of their benchmarks.
struct TimedContests {
    MedianReporter& times;
    const std::vector<Contest>& contests;
};

/// The times of one contest, in nanoseconds a point; 0 for what was not measured.
class ContestTimes {
  public:
    ContestTimes(MedianReporter& times, const Contest& contest) : _times(times), _contest(contest) {}

    double operator()(const std::string& contestant) const {
        return _times.median(_contest.benchmarkName(contestant));
    }

  private:
    MedianReporter& _times;
    const Contest& _contest;
};

/// Makes a number of the times of a contest.
using Number = std::function<double(const ContestTimes&)>;

Number timeOf(const std::string& contestant) {
    return [contestant](const ContestTimes& of) { return of(contestant); };
}

Number timeOfBatch(TQInstructionSet set, std::size_t size = contestant::usualBatch) {
    return timeOf(contestant::batch(set, size));
}

/// PROJ's operation, point by point or by the array, whichever is faster.
double fasterBareTime(const ContestTimes& of) {
    return std::min(of(contestant::barePoints), of(contestant::bareArray));
}

Number quotient(const Number& dividend, const Number& divisor) {
    return [=](const ContestTimes& of) { return dividend(of) / divisor(of); };
}

/// A quotient of times, and the contest that they are from.
struct Ratio {
    std::string where;
    double value;
};

/// The quotients of all contests in which both times were measured.
std::vector<Ratio> ratios(const TimedContests& contests, const Number& number) {
    std::vector<Ratio> found;
    for (const Contest& contest : contests.contests) {
        const double ratio = number(ContestTimes(contests.times, contest));
        if (std::isfinite(ratio) && ratio > 0.0) {
            found.push_back({contest.system + ", " + contest.directionName(), ratio});
        }
    }
    return found;
}

std::string geometricMean(const std::vector<Ratio>& ratios) {
    double logarithms = 0.0;
    for (const Ratio& ratio : ratios) {
        logarithms += std::log(ratio.value);
    }
    return ratios.empty() ? "-"
                          : MarkdownTable::cell(std::exp(logarithms / static_cast<double>(ratios.size())), 2);
}

std::string text(const Ratio& ratio) {
    return MarkdownTable::cell(ratio.value, 2) + " (" + ratio.where + ")";
}

std::string least(const std::vector<Ratio>& ratios) {
    return ratios.empty() ? "-" : text(*std::ranges::min_element(ratios, {}, &Ratio::value));
}

std::string greatest(const std::vector<Ratio>& ratios) {
    return ratios.empty() ? "-" : text(*std::ranges::max_element(ratios, {}, &Ratio::value));
}

/// A column of a table: a time, or a quotient of times.
struct Column {
    std::string title;
    Number number;
    int decimals;
};

Column timeColumn(const std::string& contestant) { return {contestant, timeOf(contestant), 1}; }

Column quotientColumn(const std::string& title, const Number& dividend, const Number& divisor) {
    return {title, quotient(dividend, divisor), 2};
}

/// A table with a line for each contest.
void printTable(const std::string& title, const TimedContests& contests, const std::vector<Column>& columns) {
    std::printf("\n### %s\n\n", title.c_str());
    std::vector<std::string> titles{"system", "direction"};
    std::ranges::transform(columns, std::back_inserter(titles), &Column::title);
    const MarkdownTable table(titles);
    for (const Contest& contest : contests.contests) {
        std::vector<std::string> cells{contest.system, contest.directionName()};
        for (const Column& column : columns) {
            cells.push_back(
                MarkdownTable::cell(column.number(ContestTimes(contests.times, contest)), column.decimals));
        }
        table.row(cells);
    }
}

void printPointByPoint(const TimedContests& native) {
    printTable("Point by point, and PROJ's arrays", native,
               {timeColumn(contestant::systemPoints), timeColumn(contestant::systemArray),
                timeColumn(contestant::barePoints), timeColumn(contestant::bareArray),
                timeColumn(contestant::geographicLib), timeColumn(contestant::single),
                quotientColumn("bare : single", timeOf(contestant::barePoints), timeOf(contestant::single))});
}

void printBatches(const TimedContests& native, TQInstructionSet set) {
    std::vector<Column> columns;
    columns.reserve(contestant::batchSizes.size() + 1);
    for (const std::size_t size : contestant::batchSizes) {
        columns.push_back({std::to_string(size), timeOfBatch(set, size), 1});
    }
    columns.push_back(quotientColumn("bare : 1000", fasterBareTime, timeOfBatch(set)));
    printTable(std::string("Batches, ") + nameOf(set), native, columns);
}

void printProjDefined(const TimedContests& projDefined) {
    printTable("PROJ-defined projections", projDefined,
               {timeColumn(contestant::systemArray), timeColumn(contestant::single),
                timeColumn(contestant::projDefinedBatch),
                quotientColumn("batch : array", timeOf(contestant::projDefinedBatch),
                               timeOf(contestant::systemArray))});
}

void printSummary(const TimedContests& native, const TimedContests& projDefined) {
    constexpr std::size_t few = 8;
    const TQInstructionSet best = TQGetInstructionSet();
    const auto batchRatios = [&](TQInstructionSet set) {
        return ratios(native, quotient(fasterBareTime, timeOfBatch(set)));
    };
    const auto singleRatios = [&](const char* proj) {
        return ratios(native, quotient(timeOf(proj), timeOf(contestant::single)));
    };
    std::printf("\n### Summary\n\n");
    const MarkdownTable table({"", "aim", "measured"});
    table.row({"batch of 1000 points against PROJ's bare operation, by point or by array, whichever is "
               "faster: geometric mean, AVX-512",
               "≥ 8", geometricMean(batchRatios(TQInstructionSet::AVX512))});
    table.row({"the same, AVX2", "≥ 4", geometricMean(batchRatios(TQInstructionSet::AVX2))});
    table.row(
        {"the same, worst class and direction, AVX2", "≥ 2", least(batchRatios(TQInstructionSet::AVX2))});
    table.row({"single point against PROJ's bare operation: geometric mean", "≥ 1.2",
               geometricMean(singleRatios(contestant::barePoints))});
    table.row({"single point against PROJ's CRS to CRS: worst", "≥ 1.1",
               least(singleRatios(contestant::systemPoints))});
    table.row({std::string("batch of 8 points against 8 single points: worst, ") + nameOf(best), "≥ 1",
               least(ratios(native, quotient(timeOf(contestant::single), timeOfBatch(best, few))))});
    table.row({"time of a batch of a PROJ-defined projection over that of PROJ's array: worst", "≤ 1.05",
               greatest(ratios(projDefined, quotient(timeOf(contestant::projDefinedBatch),
                                                     timeOf(contestant::systemArray))))});
}

} // namespace

void printConversionTables(MedianReporter& times, const std::vector<Contest>& native,
                           const std::vector<Contest>& projDefined) {
    const TimedContests timedNative{times, native};
    const TimedContests timedProjDefined{times, projDefined};
    printPointByPoint(timedNative);
    for (const TQInstructionSet set : instructionSetsHere()) {
        printBatches(timedNative, set);
    }
    printProjDefined(timedProjDefined);
    printSummary(timedNative, timedProjDefined);
}
