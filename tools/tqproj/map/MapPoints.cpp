#include "tools/tqproj/map/MapPoints.h"

#include "support/TQString.h"
#include "support/TQUnit.h"
#include "tools/tqproj/AngularText.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/InputFile.h"
#include "tools/tqproj/LineReader.h"
#include "tools/tqproj/PointLine.h"
#include "tools/tqproj/PointParser.h"

#include <cstdint>
#include <optional>

namespace {

/// The first field of what follows the coordinates.
std::string nameIn(std::string_view rest) {
    constexpr std::string_view blanks = " \t";
    if (rest.starts_with(',')) {
        rest.remove_prefix(1);
    }
    rest = rest.substr(0, rest.find(','));
    const std::size_t first = rest.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    const std::string name(rest.substr(first, rest.find_last_not_of(blanks) - first + 1));
    return withoutControls(TQString(name.c_str()).utf8());
}

} // namespace

MapPoints MapPoints::read(InputFile& file, Diagnostics& diagnostics) {
    MapPoints read;
    PointParser parser(AngularText(TQUnitDegree, std::nullopt));
    LineReader reader(file.source());
    LineReader::Line line;
    std::uint64_t number = 0;
    for (bool mayHaveMore = true; mayHaveMore;) {
        mayHaveMore = reader.fill();
        while (reader.takeLine(line)) {
            ++number;
            const PointLine parts(line.text);
            TQPoint radians;
            if (line.isTooLong || (PointLine::isPoint(line.text) && !parser.parse(parts, radians))) {
                diagnostics.reportLine(file.name(), number,
                                       line.isTooLong ? "the line is too long" : parser.reason());
                read.outcome = ExitCode::Incomplete;
            } else if (PointLine::isPoint(line.text)) {
                read.points.push_back({{tq_rad2deg(radians.x), tq_rad2deg(radians.y)}, nameIn(parts.rest)});
            }
        }
    }
    if (reader.error()) {
        diagnostics.reportProblem("cannot read " + file.name() + ": " + reader.error().message());
        read.outcome = ExitCode::Failure;
    }
    return read;
}
