#include "tools/tqproj/CheckCommand.h"

#include "ellipsoid/TQDatumFile.h"
#include "manager/TQProjectionFile.h"
#include "proj/TQExternalProjList.h"
#include "proj/TQPrProj4.h"
#include "support/TQFile.h"
#include "support/TQPath.h"
#include "tools/tqproj/ClassParameters.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/ReadyProjection.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <set>
#include <utility>

namespace {

constexpr double greatestEccentricitySquared = 0.5; // Saturn, the flattest planet, has 0.19
constexpr double leastFactor = 0.1;
constexpr double greatestFactor = 10.0;

/// Leaves out the files that several paths mean.
void forgetRepeated(std::vector<DefinitionFile>& definitions) {
    std::set<std::filesystem::path> known;
    std::erase_if(definitions, [&known](const DefinitionFile& definition) {
        std::error_code error;
        const std::filesystem::path canonical = std::filesystem::canonical(definition.path, error);
        return !known.insert(error ? definition.path : canonical).second;
    });
}

std::string pathTextOf(const TQFile& file) { return textOf(tq_filesystemPath(file.path())); }

} // namespace

CheckCommand::CheckCommand(CheckOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode CheckCommand::run() {
    std::vector<DefinitionFile> definitions;
    ExitCode code = _library.reportComplaints(_diagnostics);
    for (const std::filesystem::path& path : _options.paths) {
        const std::size_t before = definitions.size();
        if (const std::string problem = addDefinitionFiles(path, definitions); !problem.empty()) {
            _diagnostics.reportProblem(problem);
            code = ExitCode::Failure;
        } else if (definitions.size() == before) {
            _diagnostics.reportProblem(textOf(path) + " holds no .proj, .ell and .dtm files");
            code = graver(code, ExitCode::Incomplete);
        }
    }
    forgetRepeated(definitions);
    std::ranges::stable_sort(definitions, {}, &DefinitionFile::kind);
    for (const DefinitionFile& definition : definitions) {
        check(definition);
        _output.flushIfLarge();
    }
    const ExitCode outcome = _hasProblem ? ExitCode::Incomplete : ExitCode::Success;
    return graver(graver(code, outcome), _output.finish(_diagnostics));
}

void CheckCommand::check(const DefinitionFile& definition) {
    TQFile file(tq_stringFromPath(definition.path));
    switch (definition.kind) {
    case DefinitionFile::Kind::Ellipsoid:
        return checkEllipsoid(file);
    case DefinitionFile::Kind::Datum:
        return checkDatum(file);
    case DefinitionFile::Kind::Projection:
        return checkProjection(file);
    }
}

void CheckCommand::checkEllipsoid(TQFile& file) {
    auto ellipsoid = std::make_unique<TQEllipsoid>();
    const int code = ellipsoid->loadFromFile(file);
    checkLines(file);
    if (code != 0) {
        return reportCode(file, code, file.problem());
    }
    checkEnd(file);
    checkName(file, ellipsoid->name(), _ellipsoidPaths);
    checkAxes(file, *ellipsoid);
    _library.ellipsoids().addEllipsoid(std::move(ellipsoid));
}

void CheckCommand::checkDatum(TQFile& file) {
    std::unique_ptr<TQEllipsoid> shifted;
    std::string problem;
    if (const int code = TQDatumFile::read(file, _library.ellipsoids(), shifted, problem)) {
        return reportCode(file, code, problem);
    }
    checkLines(file);
    checkEnd(file);
    checkName(file, shifted->name(), _ellipsoidPaths);
    checkShift(file, *shifted);
    _library.ellipsoids().addEllipsoid(std::move(shifted));
}

void CheckCommand::checkProjection(TQFile& file) {
    std::unique_ptr<TQProjection> projection;
    const int code = TQProjectionFile::read(file, projection);
    checkLines(file);
    if (code != 0) {
        return reportCode(file, code, file.problem());
    }
    const int lastLine = file.lineNumber();
    checkEnd(file);
    checkName(file, projection->name(), _projectionPaths);
    checkParameters(file, *projection);
    checkReadiness(file, lastLine, *projection);
    if (const TQEllipsoid* const ellipsoid = projection->ellipsoid()) {
        checkAxes(file, *ellipsoid);
        checkSharing(file, *ellipsoid);
    } else if (dynamic_cast<const TQPrProj4*>(projection.get()) == nullptr) {
        warn(file, 0, "the projection has no ellipsoid and converts nothing");
    }
}

/// A reader takes any text for a number, and of a line what it has room for.
void CheckCommand::checkLines(const TQFile& file) {
    if (const int line = file.firstMalformedLine()) {
        warn(file, line,
             "the line holds something else than the numbers that belong there; it is read as far as it can "
             "be");
    }
    if (const int line = file.firstCutLine()) {
        warn(file, line,
             "the line is longer than " + std::to_string(TQFile::defaultMaximumLength) +
                 " characters; the rest of it is not read");
    }
}

/// A reader stops where the definition is complete.
void CheckCommand::checkEnd(TQFile& file) {
    for (TQString line; file.readLine(line) == 0;) {
        if (line.utf8().find_first_not_of(" \t") != std::string::npos) {
            return warn(file, file.lineNumber(),
                        "the definition ends before this line; the rest is not read");
        }
    }
}

void CheckCommand::checkName(const TQFile& file, const TQString* name, PathsByName& paths) {
    if (name == nullptr || name->isEmpty()) {
        return warn(file, 0, "the name is empty");
    }
    if (TQExternalProjList::isExternalProjectionName(*name)) {
        warn(file, 0, "the name begins with a tab: applications look it up among PROJ's systems");
    } else if (withoutControls(name->utf8()) != name->utf8()) {
        warn(file, 0, "the name holds control characters");
    }
    const auto [known, isNew] = paths.try_emplace(name->utf8(), pathTextOf(file));
    if (!isNew) {
        warn(file, 0, "the name \"" + known->first + "\" is that of " + known->second + " too");
    }
}

void CheckCommand::checkParameters(const TQFile& file, const TQProjection& projection) {
    for (const std::string& sentence : impossibleParameters(projection)) {
        warn(file, 0, sentence);
    }
    for (const auto& parameter : classParameters(projection)) {
        const double value = isFactor(*parameter, projection) ? parameter->doubleValue() : 1.0;
        const bool isPossible = value > 0.0 && std::isfinite(value);
        if (isPossible && !(value >= leastFactor && value <= greatestFactor)) {
            warn(file, 0, parameter->name()->utf8() + " is the factor of no map; conversions may take long");
        }
    }
}

void CheckCommand::checkAxes(const TQFile& file, const TQEllipsoid& ellipsoid) {
    const double axis = ellipsoid.semiMajorAxis();
    const double eccentricitySquared = ellipsoid.eccentricitySquared();
    if (!(axis > 0.0) || !std::isfinite(axis)) {
        warn(file, 0, "the semi-major axis is no length above 0");
    }
    if (!(eccentricitySquared >= 0.0 && eccentricitySquared < 1.0)) {
        warn(file, 0, "the squared eccentricity lies outside 0 to 1");
    } else if (eccentricitySquared > greatestEccentricitySquared) {
        warn(file, 0, "the squared eccentricity is that of no planet; conversions take long");
    }
    checkShift(file, ellipsoid);
}

void CheckCommand::checkShift(const TQFile& file, const TQEllipsoid& ellipsoid) {
    const auto isFinite = [](double value) { return std::isfinite(value); };
    const bool isShift = ellipsoid.refSemiMajorAxis() > 0.0 && std::isfinite(ellipsoid.refFlattening()) &&
                         std::ranges::all_of(ellipsoid.datumShiftParameters(), isFinite);
    if (ellipsoid.hasDatumShift() && !isShift) {
        warn(file, 0, "the datum shift is not finite, or has no reference axis above 0");
    }
}

/// A manager gives a projection the ellipsoid that it has under the name of the projection's own.
void CheckCommand::checkSharing(const TQFile& file, const TQEllipsoid& ellipsoid) {
    const TQEllipsoid* const registered = _library.ellipsoids().ellipsoidWithName(ellipsoid.name());
    if (registered != nullptr && !registered->isEqual(&ellipsoid)) {
        warn(file, 0,
             "the ellipsoid \"" + ellipsoid.name()->utf8() +
                 "\" is registered with another definition, which will be used");
    }
}

/// The other commands would refuse the projection.
void CheckCommand::checkReadiness(const TQFile& file, int line, const TQProjection& projection) {
    _messages.take();
    if (const std::string reason = makeReady(projection, _messages); !reason.empty()) {
        warn(file, line, "PROJ makes no projection of it: " + reason);
    }
}

void CheckCommand::reportCode(const TQFile& file, int code, const std::string& meaning) {
    report(file, file.lineNumber(), "code " + std::to_string(code) + ": " + meaning);
}

void CheckCommand::warn(const TQFile& file, int line, const std::string& text) {
    report(file, line, "warning: " + text);
}

void CheckCommand::report(const TQFile& file, int line, const std::string& text) {
    const std::string place = pathTextOf(file) + (line > 0 ? ":" + std::to_string(line) : "");
    _output.text() += withoutControls(place + ": " + text) + "\n";
    _hasProblem = true;
}
