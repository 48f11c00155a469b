#include "tools/tqproj/PointFilter.h"

#include "support/TQFormat.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/Progress.h"

#include <utility>

PointFilter::PointFilter(const FilterOptions& options, PointConverter& converter, LibraryMessages& messages,
                         std::streambuf& standardInput, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(options), _converter(converter), _blocks(converter, options.jobs), _messages(messages),
      _standardInput(standardInput), _output(output), _diagnostics(diagnostics) {
    if (_options.files.empty()) {
        _options.files.emplace_back("-");
    }
}

ExitCode PointFilter::run() {
    Progress progress(_diagnostics, _options.showsProgress, totalSize(), Progress::Clock::now());
    for (const std::string& argument : _options.files) {
        convertInput(argument, progress);
        if (_output.error()) {
            break;
        }
    }
    return finish();
}

// 0 as soon as the size of one input is not known.
std::uint64_t PointFilter::totalSize() const {
    std::uint64_t total = 0;
    for (const std::string& argument : _options.files) {
        const std::uint64_t size = InputFile::sizeOf(argument);
        if (size == 0) {
            return 0;
        }
        total += size;
    }
    return total;
}

void PointFilter::convertInput(const std::string& argument, Progress& progress) {
    InputFile input(argument, _standardInput);
    if (input.error()) {
        reportUnreadable(input.name(), input.error().message());
    } else {
        convertSource(input.source(), input.name(), progress);
    }
}

void PointFilter::convertSource(std::streambuf& source, const std::string& name, Progress& progress) {
    LineReader reader(source);
    _inputName = name;
    _lineNumber = 0;
    bool mayHaveMore = true;
    while (mayHaveMore && !_output.error()) {
        const std::uint64_t bytesBefore = reader.bytesRead();
        const std::uint64_t linesBefore = _lineNumber;
        mayHaveMore = reader.fill();
        while (addBlock(reader) || convertSingleLine(reader)) {
        }
        finishUnlessMoreHasCome(reader);
        progress.advance(reader.bytesRead() - bytesBefore, _lineNumber - linesBefore, Progress::Clock::now());
    }
    if (reader.error()) {
        reportUnreadable(name, reader.error().message());
    }
}

bool PointFilter::addBlock(LineReader& reader) {
    const std::string_view lines =
        _blocks.isUsable() ? reader.takeLines(BlockQueue::blockSize) : std::string_view();
    if (lines.empty()) {
        return false;
    }
    if (_blocks.isFull()) {
        finishBlock();
    }
    _blocks.add(lines);
    return true;
}

bool PointFilter::convertSingleLine(LineReader& reader) {
    LineReader::Line line;
    if (!reader.takeLine(line)) {
        return false;
    }
    while (!_blocks.isEmpty()) {
        finishBlock();
    }
    convertLine(line);
    return true;
}

// Before the reader waits, so that who types a line sees its result.
void PointFilter::finishUnlessMoreHasCome(LineReader& reader) {
    while (!_blocks.isEmpty() && !reader.hasInput()) {
        finishBlock();
    }
    if (!reader.hasInput()) {
        _output.flush();
    }
}

void PointFilter::finishBlock() {
    const LineBlock& block = _blocks.take();
    const std::uint64_t linesBefore = _lineNumber;
    std::string& out = _output.text();
    out += std::exchange(_missingLineEnd, {});
    std::size_t position = 0;
    for (const LineBlock::OpenLine& open : block.openLines) {
        out.append(block.results, position, open.position - position);
        position = open.position;
        _lineNumber = linesBefore + open.number;
        convertLine(open.line);
    }
    out.append(block.results, position);
    _lineNumber = linesBefore + block.lineCount;
    noteLineEnd(block.lines.ends_with("\r\n") ? "\r\n" : "\n");
    _output.flushIfLarge();
}

void PointFilter::convertLine(const LineReader::Line& line) {
    ++_lineNumber;
    std::string& out = _output.text();
    out += std::exchange(_missingLineEnd, {});
    if (line.isTooLong) {
        writeBadLine(line, tq_format("the line is longer than %zu bytes", LineReader::defaultLineLimit));
    } else if (!PointLine::isPoint(line.text)) {
        out += line.text;
    } else if (!_converter.convert(PointLine(line.text), out)) {
        writeBadLine(line, _converter.reason());
    }
    if (!_messages.isEmpty()) {
        reportLibraryMessages();
    }
    out += line.end;
    noteLineEnd(line.end);
    _output.flushIfLarge();
}

void PointFilter::noteLineEnd(std::string_view end) {
    if (end.ends_with('\n')) {
        _lineEnd = end.size() == 1 ? "\n" : "\r\n";
    } else {
        _missingLineEnd = end.empty() ? _lineEnd : "\n";
    }
}

void PointFilter::writeBadLine(const LineReader::Line& line, std::string_view reason) {
    const PointLine parts(line.text);
    std::string& out = _output.text();
    out.append(parts.lead).append("*");
    out.append(parts.separator.empty() ? std::string_view(" ") : parts.separator).append("*");
    out.append(parts.rest);
    _diagnostics.reportLine(_inputName, _lineNumber, reason);
    _exitCode = graver(_exitCode, ExitCode::Incomplete);
}

// Something that the library says although the point was converted is said once, not at every line.
void PointFilter::reportLibraryMessages() {
    std::string message = _messages.takeReason(TQString());
    if (message == _lastLibraryMessage) {
        return;
    }
    _diagnostics.reportProblem(tq_format("%s, first at line %llu of ", message, _lineNumber) + _inputName);
    _lastLibraryMessage = std::move(message);
}

void PointFilter::reportUnreadable(const std::string& name, const std::string& reason) {
    _diagnostics.reportProblem("cannot read " + name + ": " + reason);
    _exitCode = ExitCode::Failure;
}

ExitCode PointFilter::finish() { return graver(_exitCode, _output.finish(_diagnostics)); }
