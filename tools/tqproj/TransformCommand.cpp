#include "tools/tqproj/TransformCommand.h"

#include "proj/TQGeoCSTrans.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/TransformationOperation.h"

#include <utility>

TransformCommand::TransformCommand(TransformOptions options, std::streambuf& standardInput,
                                   OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _standardInput(standardInput), _output(output),
      _diagnostics(diagnostics) {}

ExitCode TransformCommand::run() {
    TQGeoCSTrans transformation(Catalogue::definitionOf(_options.source).c_str(),
                                Catalogue::definitionOf(_options.target).c_str());
    if (transformation.isInErrorState()) {
        _diagnostics.reportProblem("cannot transform from " + printableText(_options.source) + " to " +
                                   printableText(_options.target) + ": " +
                                   _messages.takeReason(transformation.PROJLogMessage()));
        return ExitCode::Failure;
    }
    const CoordinateText angles = AngularText(_options.angularUnit, _options.precision);
    const TransformationOperation operation(transformation, _options.direction);
    PointConverter converter(operation, _messages, angles, angles);
    return PointFilter(_options, converter, _messages, _standardInput, _output, _diagnostics).run();
}
