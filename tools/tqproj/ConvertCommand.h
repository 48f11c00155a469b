#pragma once

#include "support/TQUnit.h"
#include "tools/tqproj/ExitCode.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/LineReader.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/ProjectionResolver.h"

#include <cstdint>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

class Diagnostics;
class OutputBuffer;
class Progress;

/// What `tqproj convert` was asked for.
struct ConvertOptions {
    ProjectionArgument projection;            ///< the projection
    Direction direction = Direction::Forward; ///< Inverse with --inverse
    std::uint32_t angularUnit = TQUnitDegree; ///< the unit of --unit
    std::optional<int> precision;             ///< decimals of the results, or NumberFormat::fullPrecision
    std::vector<std::string> files;           ///< inputs in order; none means the standard input
    bool showsProgress = false;               ///< whether a status line may be shown
};

/// `tqproj convert`: converts the points of all inputs, line by line.
class ConvertCommand {
  public:
    /// @param options what to do
    /// @param standardInput the source of the standard input
    /// @param output where the lines go
    /// @param diagnostics where messages go; all three must outlive this object
    ConvertCommand(ConvertOptions options, std::streambuf& standardInput, OutputBuffer& output,
                   Diagnostics& diagnostics);

    /// Does the whole conversion.
    ExitCode run();

  private:
    ExitCode convertAll(PointConverter& converter);
    std::uint64_t totalSize() const;
    void convertInput(const std::string& argument, PointConverter& converter, Progress& progress);
    void convertSource(std::streambuf& source, const std::string& name, PointConverter& converter,
                       Progress& progress);
    void convertLine(const LineReader::Line& line, PointConverter& converter);
    void writeBadLine(const LineReader::Line& line, std::string_view reason);
    void reportLibraryMessages();
    void reportUnreadable(const std::string& name, const std::string& reason);
    ExitCode finish();

    ConvertOptions _options;
    std::streambuf& _standardInput;
    OutputBuffer& _output;
    Diagnostics& _diagnostics;
    LibraryMessages _messages;
    std::string _lastLibraryMessage;
    std::string _inputName;
    std::uint64_t _lineNumber = 0;
    std::string_view _lineEnd = "\n"; // of the last line that had one
    std::string_view _missingLineEnd; // what the last line lacks, should another input follow
    ExitCode _exitCode = ExitCode::Success;
};
