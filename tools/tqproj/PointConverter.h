#pragma once

#include "support/TQPoint.h"
#include "tools/tqproj/CoordinateText.h"
#include "tools/tqproj/PointParser.h"
#include "tools/tqproj/PointWriter.h"

#include <memory>
#include <string>
#include <string_view>

class BlockConverter;
class LibraryMessages;
class PointOperation;
struct PointLine;

/// Converts the point of one line, from text to text.
class PointConverter {
  public:
    /// @param operation what is done to the point; must outlive this object, as must messages
    /// @param messages where the library's messages arrive
    /// @param input how the coordinates given are read
    /// @param output how the results are written
    PointConverter(const PointOperation& operation, LibraryMessages& messages, const CoordinateText& input,
                   const CoordinateText& output);

    /// Appends the line with its point converted and everything else as it was.
    /// @param line the line
    /// @param out the text to append to; unchanged on failure
    /// @return whether there is a result; if not, reason() tells why
    bool convert(const PointLine& line, std::string& out);

    /// What converts whole blocks of lines as this object does, in any one thread; null when the operation
    /// cannot be copied.
    std::unique_ptr<BlockConverter> newBlockConverter() const;

    /// Why the last line has no result.
    const std::string& reason() const { return _reason; }

  private:
    bool parsePoint(const PointLine& line, TQPoint& point);
    bool convertPoint(const TQPoint& point, TQPoint& result);
    bool fail(std::string_view reason);

    const PointOperation& _operation;
    LibraryMessages& _messages;
    PointParser _input;
    PointWriter _output;
    std::string _reason;
};
