#pragma once

#include "tools/tqproj/LineReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A part of the input on its way to the output: whole lines, and what became of them.
struct LineBlock {
    /// A line without a result, of which somebody has to say why.
    struct OpenLine {
        std::size_t position;  ///< where in the results it belongs
        std::uint64_t number;  ///< its place among the lines, from 0
        LineReader::Line line; ///< the line, whose text is in the block's
    };

    std::string lines;               ///< the lines, each with its line end
    std::string results;             ///< the lines with their points converted, but for the open ones
    std::vector<OpenLine> openLines; ///< in their order
    std::uint64_t lineCount = 0;     ///< how many lines there are
};
