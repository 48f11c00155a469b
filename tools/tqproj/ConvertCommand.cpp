#include "tools/tqproj/ConvertCommand.h"

#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/PointConverter.h"

#include <utility>

namespace {

constexpr int metrePrecision = 3;
constexpr int degreePrecision = 9;
constexpr int radianPrecision = 11;

/// The decimals of x and y: those of degrees for a system of PROJ's that is geographic, and those of radians
/// for a projection of the library without ellipsoid, which has no metres.
int usualPrecision(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    if (defined == nullptr) {
        return projection.ellipsoid() != nullptr ? metrePrecision : radianPrecision;
    }
    return defined->coordinates() == TQPrProj4::Coordinates::Geographic ? degreePrecision : metrePrecision;
}

} // namespace

ConvertCommand::ConvertCommand(ConvertOptions options, std::streambuf& standardInput, OutputBuffer& output,
                               Diagnostics& diagnostics)
    : _options(std::move(options)), _standardInput(standardInput), _output(output),
      _diagnostics(diagnostics) {}

ExitCode ConvertCommand::run() {
    ProjectionResolver resolver(_messages);
    const std::unique_ptr<TQProjection> projection = resolver.resolve(_options.projection);
    if (projection == nullptr) {
        _diagnostics.reportProblem(resolver.problem());
        return ExitCode::Failure;
    }
    if (const std::string problem = chooseDatum(*projection, _options.datum, _messages); !problem.empty()) {
        _diagnostics.reportProblem(problem);
        return ExitCode::Failure;
    }
    const CoordinateText angles = AngularText(_options.angularUnit, _options.precision);
    const CoordinateText plane = NumberFormat(_options.precision.value_or(usualPrecision(*projection)));
    const bool isForward = _options.direction == Direction::Forward;
    const ProjectionOperation operation(*projection, _options.direction, _options.beyond);
    PointConverter converter(operation, _messages, isForward ? angles : plane, isForward ? plane : angles);
    return PointFilter(_options, converter, _messages, _standardInput, _output, _diagnostics).run();
}
