#include "tools/tqproj/PointConverter.h"

#include "tools/tqproj/BlockConverter.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/MessageWatch.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointOperation.h"

#include <utility>

PointConverter::PointConverter(const PointOperation& operation, LibraryMessages& messages,
                               const CoordinateText& input, const CoordinateText& output)
    : _operation(operation), _messages(messages), _input(input), _output(output) {}

bool PointConverter::convert(const PointLine& line, std::string& out) {
    TQPoint point;
    TQPoint result;
    if (!parsePoint(line, point) || !convertPoint(point, result)) {
        return false;
    }
    _output.append(out, line, result);
    return true;
}

std::unique_ptr<BlockConverter> PointConverter::newBlockConverter() const {
    const MessageWatch watch; // what the library says of a copy belongs to no line
    std::unique_ptr<PointOperation> operation = _operation.copy();
    return operation ? std::make_unique<BlockConverter>(std::move(operation), _input, _output) : nullptr;
}

bool PointConverter::parsePoint(const PointLine& line, TQPoint& point) {
    return _input.parse(line, _operation, point) || fail(_input.reason());
}

bool PointConverter::convertPoint(const TQPoint& point, TQPoint& result) {
    const std::string problem = _operation.convert(point, result);
    return problem.empty() || fail(problem);
}

// What the library said about the point tells more than the general reason.
bool PointConverter::fail(std::string_view reason) {
    _reason = _messages.isEmpty() ? std::string(reason) : _messages.takeReason(TQString());
    return false;
}
