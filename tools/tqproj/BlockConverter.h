#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/LineReader.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointParser.h"
#include "tools/tqproj/PointWriter.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

class PointOperation;
struct LineBlock;

/// Converts the points of many lines together, as PointConverter converts those of single ones. It says
/// nothing: a line that has no result, and one of those of which the library may have said something, stays
/// open.
class BlockConverter {
  public:
    /// @param operation what is done to the points
    /// @param input how they are read
    /// @param output how the results are written
    BlockConverter(std::unique_ptr<PointOperation> operation, const PointParser& input,
                   const PointWriter& output);
    ~BlockConverter();

    /// Converts the lines of a block.
    /// @param block the block; receives everything but its lines
    void convert(LineBlock& block);

  private:
    /// How a line goes through.
    struct Passage {
        explicit Passage(const LineReader::Line& whole)
            : line(whole), parts(whole.text), isPoint(PointLine::isPoint(whole.text)) {}

        LineReader::Line line;
        PointLine parts;
        bool isPoint;          // or a comment
        bool hasPoint = false; // in _points
    };

    void takeRun(std::string_view& lines);
    void take(const LineReader::Line& line);
    void dropImages();
    void writeRun(LineBlock& block) const;

    std::unique_ptr<PointOperation> _operation;
    PointParser _input;
    PointWriter _output;
    std::vector<Passage> _run;    // so many lines that they stay in the processor's cache
    std::vector<TQPoint> _points; // of the run, then their images
};
