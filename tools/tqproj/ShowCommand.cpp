#include "tools/tqproj/ShowCommand.h"

#include "ellipsoid/TQEllipsoid.h"
#include "manager/TQProjParam.h"
#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "support/TQFormat.h"
#include "support/TQUnit.h"
#include "tools/tqproj/Catalogue.h"
#include "tools/tqproj/ClassParameters.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/GeographicDatum.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/ProjectionResolver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace {

struct ShiftLabel {
    std::string_view label;
    std::string_view unit;
};

constexpr std::array<ShiftLabel, 7> shiftLabels{
    {{"dx", "m"}, {"dy", "m"}, {"dz", "m"}, {"rx", "rad"}, {"ry", "rad"}, {"rz", "rad"}, {"scale", "ppm"}}};

// The text itself is the format's, which applications read as it is.
constexpr const char* shiftWarning =
    "the numbers of TOWGS84 lead to the local datum, with rotations in radians; programs that read them as "
    "leading to WGS 84, with arc seconds, miss by hundreds of metres";

std::string textOf(const TQString* name) { return name != nullptr ? name->utf8() : "(none)"; }

std::string textOf(double value) { return tq_format("%.13g", value); }

// Bytes would misalign what follows a name with accents.
std::size_t characterCount(std::string_view utf8) {
    return static_cast<std::size_t>(TQString(utf8, TQEncodingUTF8).length());
}

/// The value of a parameter on one line; WKT means the same then.
std::string valueOf(const TQProjParam& parameter) {
    if (parameter.type() == TQDataDouble) {
        return textOf(parameter.doubleValue());
    }
    std::string value = parameter.newValueRepresentation()->utf8();
    std::ranges::replace_if(
        value, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return value;
}

/// The definition of a projection in a form that is no table; empty when it has none.
std::string definitionOf(const TQProjection& projection, ShowOptions::Form form) {
    if (form != ShowOptions::Form::PROJ) {
        return projection.wktDefinition(form == ShowOptions::Form::WKT2).utf8();
    }
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    return defined != nullptr ? defined->proj4Definition().utf8() : std::string();
}

} // namespace

ShowCommand::ShowCommand(ShowOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode ShowCommand::run() {
    LibraryMessages messages;
    ProjectionResolver resolver(messages);
    const std::unique_ptr<TQProjection> projection = resolver.resolve(_options.projection);
    if (projection == nullptr) {
        _diagnostics.reportProblem(resolver.problem());
        return ExitCode::Failure;
    }
    if (!write(*projection, resolver.path())) {
        _diagnostics.reportProblem(messages.isEmpty() ? "the projection has no such definition"
                                                      : messages.takeReason(TQString()));
        return ExitCode::Failure;
    }
    if (!messages.isEmpty()) {
        _diagnostics.reportProblem(messages.takeReason(TQString()));
    }
    return _output.finish(_diagnostics);
}

/// Writes what was asked for; false when the projection has no such definition.
bool ShowCommand::write(const TQProjection& projection, const std::filesystem::path& path) {
    if (_options.form == ShowOptions::Form::Table) {
        describe(projection, path);
        return true;
    }
    const std::string definition = definitionOf(projection, _options.form);
    if (!definition.empty()) {
        _output.text() += withoutControlsInLines(definition) + "\n";
    }
    if (definition.find(",TOWGS84[") != std::string::npos && projection.ellipsoid() != nullptr) {
        _diagnostics.reportProblem(shiftWarning);
    }
    return !definition.empty();
}

void ShowCommand::describe(const TQProjection& projection, const std::filesystem::path& path) {
    addRow("name", projection.name() != nullptr ? Catalogue::shownName(*projection.name()) : textOf(nullptr));
    addRow("type", projection.typeName().utf8());
    if (!path.empty()) {
        addRow("file", textOf(path));
    }
    describeGeographicSide(projection);
    if (projection.ellipsoid() != nullptr) {
        describeEllipsoid(*projection.ellipsoid());
    }
    describeParameters(projection);
}

void ShowCommand::describeGeographicSide(const TQProjection& projection) {
    addRow("longitude and latitude", datumText(projection));
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    if (defined != nullptr && defined->primeMeridian() != 0.0) {
        addRow("longitude counted from", tq_format("%.12g", defined->primeMeridian()), "degrees");
    }
}

void ShowCommand::describeEllipsoid(const TQEllipsoid& ellipsoid) {
    const double inverseFlattening = ellipsoid.inverseFlattening();
    addHeading("ellipsoid");
    addRow("  name", textOf(ellipsoid.name()));
    addRow("  semi-major axis", textOf(ellipsoid.semiMajorAxis()), "m");
    addRow("  inverse flattening",
           std::isfinite(inverseFlattening) ? tq_format("%.12g", inverseFlattening) : "infinite (a sphere)");
    describeDatumShift(ellipsoid);
}

void ShowCommand::describeDatumShift(const TQEllipsoid& ellipsoid) {
    if (!ellipsoid.hasDatumShift()) {
        addRow("  datum shift", "none");
        return;
    }
    const bool isHelmert = ellipsoid.datumShiftKind() == TQEllipsoid::SevenParameterShift;
    addRow("  datum shift", isHelmert ? "seven parameters (Helmert)" : "three parameters (Molodensky)");
    const TQEllipsoid::DatumShiftParameters parameters = ellipsoid.datumShiftParameters();
    const std::size_t count = isHelmert ? parameters.size() : 3;
    for (std::size_t index = 0; index < count; ++index) {
        const ShiftLabel& shift = shiftLabels[index];
        addRow("    " + std::string(shift.label), textOf(parameters[index]), shift.unit);
    }
    addRow("    reference semi-major axis", textOf(ellipsoid.refSemiMajorAxis()), "m");
    addRow("    reference inverse flattening", tq_format("%.12g", 1.0 / ellipsoid.refFlattening()));
}

void ShowCommand::describeParameters(const TQProjection& projection) {
    addHeading("parameters");
    for (const auto& parameter : classParameters(projection)) {
        const TQString* unit = parameter->unitLabel();
        addRow("  " + textOf(parameter->name()), valueOf(*parameter),
               unit != nullptr ? tq_displayLabelOfUnit(*unit).utf8() : std::string());
    }
}

void ShowCommand::addHeading(std::string_view text) { _output.text().append(text).append("\n"); }

void ShowCommand::addRow(std::string_view label, std::string_view value, std::string_view unit) {
    constexpr std::size_t valueColumn = 34;
    std::string& out = _output.text();
    const std::size_t length = characterCount(label);
    out.append(withoutControls(label))
        .append(length < valueColumn ? valueColumn - length : 1, ' ')
        .append(withoutControls(value));
    if (!unit.empty()) {
        out.append(" ").append(withoutControls(unit));
    }
    out += '\n';
}
