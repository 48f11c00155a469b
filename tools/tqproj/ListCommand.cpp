#include "tools/tqproj/ListCommand.h"

#include "support/TQFormat.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/TextSearch.h"

#include <utility>

namespace {

std::string lineOf(const std::string& name, const TQProjection& projection) {
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    const bool hasName = ellipsoid != nullptr && ellipsoid->name() != nullptr;
    return withoutControls(name) + "\t" + projection.typeName().utf8() + "\t" +
           (hasName ? withoutControls(ellipsoid->name()->utf8()) : "");
}

std::string lineOf(const std::string& name, const TQEllipsoid& ellipsoid) {
    const char* const shift = !ellipsoid.hasDatumShift() ? "none"
                              : ellipsoid.datumShiftKind() == TQEllipsoid::SevenParameterShift
                                  ? "seven parameters"
                                  : "three parameters";
    return withoutControls(name) +
           tq_format("\t%.13g\t%.12g\t", ellipsoid.semiMajorAxis(), ellipsoid.inverseFlattening()) + shift;
}

} // namespace

ListCommand::ListCommand(ListOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode ListCommand::run() {
    LibraryMessages messages;
    ProjectionLibrary library(_options.directory);
    if (!library.problem().empty()) {
        _diagnostics.reportProblem(library.problem());
        return ExitCode::Failure;
    }
    if (!messages.isEmpty()) {
        _diagnostics.reportProblem(messages.take());
    }
    ExitCode code = library.reportComplaints(_diagnostics);
    if (_options.listsEllipsoids) {
        for (const std::string& name : library.ellipsoidNames()) {
            add(lineOf(name, *library.ellipsoid(name)));
        }
    } else {
        for (const auto& [name, projection] : library.projections()) {
            add(lineOf(name, *projection));
        }
    }
    code = graver(code, _hasFound ? ExitCode::Success : ExitCode::Incomplete);
    return graver(code, _output.finish(_diagnostics));
}

void ListCommand::add(const std::string& line) {
    if (holdsAllWords(line, _options.search)) {
        _output.text() += line + "\n";
        _hasFound = true;
    }
}
