#include "tools/tqproj/BlockConverter.h"

#include "tools/tqproj/LineBlock.h"
#include "tools/tqproj/MessageWatch.h"
#include "tools/tqproj/PointOperation.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr std::size_t longestRun = 256;

} // namespace

BlockConverter::BlockConverter(std::unique_ptr<PointOperation> operation, const PointParser& input,
                               const PointWriter& output)
    : _operation(std::move(operation)), _input(input), _output(output) {
    _run.reserve(longestRun);
    _points.reserve(longestRun);
}

BlockConverter::~BlockConverter() = default;

void BlockConverter::convert(LineBlock& block) {
    block.results.clear();
    block.openLines.clear();
    block.lineCount = 0;
    std::string_view lines = block.lines;
    while (!lines.empty()) {
        const MessageWatch watch;
        takeRun(lines);
        _operation->convertAll(_points);
        if (watch.hasHeard()) {
            dropImages();
        }
        writeRun(block);
    }
}

void BlockConverter::takeRun(std::string_view& lines) {
    _run.clear();
    _points.clear();
    while (!lines.empty() && _run.size() < longestRun) {
        const std::size_t length = lines.find('\n') + 1;
        take(LineReader::lineOf(lines.substr(0, length)));
        lines.remove_prefix(length);
    }
}

void BlockConverter::take(const LineReader::Line& line) {
    Passage& passage = _run.emplace_back(line);
    TQPoint point;
    if (passage.isPoint && _input.parse(passage.parts, *_operation, point) && _operation->accepts(point)) {
        passage.hasPoint = true;
        _points.push_back(point);
    }
}

// What the library says cannot be told to be of this or that point: they all stay without a result then.
void BlockConverter::dropImages() {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    std::ranges::fill(_points, TQPoint{notANumber, notANumber});
}

void BlockConverter::writeRun(LineBlock& block) const {
    auto point = _points.begin();
    for (const Passage& passage : _run) {
        const TQPoint* const image = passage.hasPoint ? &*point++ : nullptr;
        if (image != nullptr && isFinite(*image)) {
            _output.append(block.results, passage.parts, *image);
            block.results += passage.line.end;
        } else if (passage.isPoint) {
            block.openLines.push_back({block.results.size(), block.lineCount, passage.line});
        } else {
            block.results.append(passage.line.text).append(passage.line.end);
        }
        ++block.lineCount;
    }
}
