#include "tools/tqproj/TransformCommand.h"

#include "proj/TQGeoCSTrans.h"
#include "proj/TQPrProj4.h"
#include "support/TQUnit.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/DefinitionText.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/PointConverter.h"
#include "tools/tqproj/TransformationOperation.h"

#include <utility>

TransformCommand::TransformCommand(TransformOptions options, std::streambuf& standardInput,
                                   OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _standardInput(standardInput), _output(output),
      _diagnostics(diagnostics) {}

ExitCode TransformCommand::run() {
    const std::string source = Catalogue::definitionOf(_options.source);
    const std::string target = Catalogue::definitionOf(_options.target);
    if (const std::string problem = problemOf(source); !problem.empty()) {
        return refuse("--from " + printableText(_options.source) + ": " + problem);
    }
    if (const std::string problem = problemOf(target); !problem.empty()) {
        return refuse("--to " + printableText(_options.target) + ": " + problem);
    }
    TQGeoCSTrans transformation(source.c_str(), target.c_str());
    if (transformation.isInErrorState()) {
        return refuse("cannot transform from " + printableText(_options.source) + " to " +
                      printableText(_options.target) + ": " +
                      _messages.takeReason(transformation.PROJLogMessage()));
    }
    if (!_options.allowsBallpark) {
        if (transformation.isBallpark()) {
            return refuse("PROJ knows no transformation between the datums of " +
                          printableText(_options.source) + " and " + printableText(_options.target) +
                          " (--ballpark takes both for one datum)");
        }
        transformation.refuseBallpark();
    }
    const CoordinateText angles = AngularText(_options.angularUnit, _options.precision, TQUnitDegree);
    const TransformationOperation operation(transformation, _options.direction);
    PointConverter converter(operation, _messages, angles, angles);
    return PointFilter(_options, converter, _messages, _standardInput, _output, _diagnostics).run();
}

/// Why a definition means no system that can be transformed; empty when it means one.
std::string TransformCommand::problemOf(const std::string& definition) {
    if (!looksLikeDefinition(definition)) {
        TQPrProj4 named;
        constexpr bool useWGS84Source = false;
        named.initFromPROJString(definition.c_str(), useWGS84Source);
        _messages.take(); // of what may be no geographic system
        if (std::string problem = problemOfName(named, SystemKind::Geographic); !problem.empty()) {
            return problem;
        }
    }
    const TQGeoCSTrans toItself(definition.c_str(), definition.c_str());
    return toItself.isInErrorState() ? reasonOf(toItself, definition) : std::string();
}

/// Why a system cannot even be transformed to itself.
std::string TransformCommand::reasonOf(const TQGeoCSTrans& toItself, const std::string& definition) {
    const std::string reason = _messages.takeReason(toItself.PROJLogMessage());
    const bool isPROJString = definition.find("proj=") != std::string::npos;
    constexpr int notGeographic = -1;
    if (toItself.projError() != notGeographic) {
        const bool mayBeListed = !isPROJString && Catalogue::isAvailable();
        return reason + (mayBeListed ? " (tqproj catalog lists the systems that there are)" : "");
    }
    return isPROJString && definition.find("type=crs") == std::string::npos
               ? "PROJ takes it for an operation (with +type=crs it is a reference system)"
               : "it is not geographic with two dimensions (tqproj convert takes projected systems)";
}

ExitCode TransformCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return ExitCode::Failure;
}
