#pragma once

#include "tools/tqproj/BlockQueue.h"
#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LineReader.h"

#include <cstdint>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

class Diagnostics;
class LibraryMessages;
class OutputBuffer;
class PointConverter;
class Progress;

/// Which lines a PointFilter passes, and how.
struct FilterOptions {
    std::vector<std::string> files; ///< inputs in order; none means the standard input
    bool showsProgress = false;     ///< whether a status line may be shown
    int jobs = 1;                   ///< how many threads may convert, at least 1
};

/// Passes the lines of all inputs through a PointConverter.
///
/// Where its operation can be copied, most lines go through a BlockQueue; those that stay open there, and
/// those that fit into no block, are converted one by one in their place, so that messages come as if all
/// were.
class PointFilter {
  public:
    /// @param options what to read
    /// @param converter converts the points
    /// @param messages where the library's messages about points arrive
    /// @param standardInput the source of the standard input
    /// @param output where the lines go
    /// @param diagnostics where messages go; all but the options must outlive this object
    PointFilter(const FilterOptions& options, PointConverter& converter, LibraryMessages& messages,
                std::streambuf& standardInput, OutputBuffer& output, Diagnostics& diagnostics);

    /// Converts everything.
    ExitCode run();

  private:
    std::uint64_t totalSize() const;
    void convertInput(const std::string& argument, Progress& progress);
    void convertSource(std::streambuf& source, const std::string& name, Progress& progress);
    bool addBlock(LineReader& reader);
    bool convertSingleLine(LineReader& reader);
    void finishUnlessMoreHasCome(LineReader& reader);
    void finishBlock();
    void convertLine(const LineReader::Line& line);
    void noteLineEnd(std::string_view end);
    void writeBadLine(const LineReader::Line& line, std::string_view reason);
    void reportLibraryMessages();
    void reportUnreadable(const std::string& name, const std::string& reason);
    ExitCode finish();

    FilterOptions _options;
    PointConverter& _converter;
    BlockQueue _blocks;
    LibraryMessages& _messages;
    std::streambuf& _standardInput;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    std::string _lastLibraryMessage;
    std::string _inputName;
    std::uint64_t _lineNumber = 0;
    std::string_view _lineEnd = "\n"; // of the last line that had one
    std::string_view _missingLineEnd; // what the last line lacks, should another input follow
    ExitCode _exitCode = ExitCode::Success;
};
