#include "tools/tqproj/CreateCommand.h"

#include "ellipsoid/TQEllipsoid.h"
#include "manager/TQProjectionFactory.h"
#include "proj/TQPrProj4.h"
#include "projection/TQProjection.h"
#include "support/TQFile.h"
#include "support/TQPath.h"
#include "tools/tqproj/ClassParameters.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/Displacement.h"
#include "tools/tqproj/OutputFile.h"
#include "tools/tqproj/PathText.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/ReadyProjection.h"
#include "tools/tqproj/ScratchDirectory.h"
#include "tools/tqproj/TextSearch.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <utility>

namespace {

/// The least distance, in metres, that is spoken of: a nanometre, the accuracy of the formulas.
constexpr double leastDisplacement = 1e-9;
/// The distance, in metres, from which a rounded definition is another one.
constexpr double greatestRounding = 1.0;

/// Names as a sentence lists them.
std::string listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

std::vector<std::unique_ptr<TQProjection>> projectionsOfAllTypes() {
    std::vector<std::unique_ptr<TQProjection>> projections;
    for (int code = 0; code <= std::numeric_limits<signed char>::max(); ++code) {
        if (std::unique_ptr<TQProjection> projection = tq_newProjectionOfType(code)) {
            projections.push_back(std::move(projection));
        }
    }
    return projections;
}

std::vector<std::string> parameterNames(const TQProjection& projection) {
    std::vector<std::string> names;
    for (const auto& parameter : classParameters(projection)) {
        names.push_back(parameter->name()->utf8());
    }
    return names;
}

/// A text as a line of a file holds it; WKT means the same then.
std::string onOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

/// Whether a projection can convert nothing without an ellipsoid.
bool needsEllipsoid(const TQProjection& projection) {
    TQPoint image;
    return projection.ellipsoid() == nullptr && projection.convertGeoPt(TQPoint(), image) != 0;
}

bool isFiniteIfNumber(const TQProjParam& parameter) {
    return parameter.type() != TQDataDouble || std::isfinite(parameter.doubleValue());
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

CreateCommand::CreateCommand(CreateOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode CreateCommand::run() {
    const std::unique_ptr<TQProjection> projection = newProjection();
    if (projection == nullptr || !isNameFit()) {
        return ExitCode::Failure;
    }
    const ProjectionLibrary library({});
    _messages.take(); // of other projections
    library.reportComplaints(_diagnostics);
    if (!takeEllipsoid(library, *projection) || !setParameters(*projection) || !isPossible(*projection) ||
        !hasDefinition(*projection)) {
        return ExitCode::Failure;
    }
    projection->rename(TQString(_options.name.c_str()));
    const std::optional<std::string> text = verifiedText(*projection);
    if (!text) {
        return ExitCode::Failure;
    }
    return writeOutput(_options.path, *text, _output, _diagnostics);
}

/// A name is a line of the file, and names with a tab in front are those of PROJ's systems.
bool CreateCommand::isNameFit() {
    const std::string& name = _options.name;
    const std::string beginning = "the name " + printableText(name);
    if (name.starts_with('\t')) {
        return refuse(beginning + " begins with a tab, as those of the catalogue alone do");
    }
    if (withoutControls(name) != name) {
        return refuse(beginning + " holds characters that are not printable");
    }
    return TQString(name.c_str()).length() <= TQFile::defaultMaximumLength ||
           refuse(beginning + " is longer than " + std::to_string(TQFile::defaultMaximumLength) +
                  " characters");
}

std::unique_ptr<TQProjection> CreateCommand::newProjection() {
    std::vector<std::string> names;
    for (std::unique_ptr<TQProjection>& projection : projectionsOfAllTypes()) {
        names.push_back(projection->typeName().utf8());
        if (isSameText(names.back(), _options.type)) {
            return std::move(projection);
        }
    }
    refuse("no type is called " + printableText(_options.type) + "; there are: " + listed(names));
    return nullptr;
}

bool CreateCommand::takeEllipsoid(const ProjectionLibrary& library, TQProjection& projection) {
    const std::string known = "; there are: " + listed(library.ellipsoidNames());
    if (dynamic_cast<const TQPrProj4*>(&projection) != nullptr) {
        return _options.ellipsoid.empty() ||
               refuse("the ellipsoid of a projection of this type is that of its definition");
    }
    if (_options.ellipsoid.empty()) {
        return !needsEllipsoid(projection) ||
               refuse("a projection of this type needs an ellipsoid (--ellipsoid)" + known);
    }
    TQEllipsoid* const ellipsoid = library.ellipsoid(_options.ellipsoid);
    projection.setEllipsoid(ellipsoid);
    return ellipsoid != nullptr ||
           refuse("no ellipsoid is called " + printableText(_options.ellipsoid) + known);
}

bool CreateCommand::readSettings(std::vector<Setting>& settings) {
    for (const std::string& text : _options.parameters) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0) {
            return refuse("'" + printableText(text) + "' is no parameter with \"=\" and a value");
        }
        const std::string name = text.substr(0, equals);
        if (std::ranges::find(settings, name, &Setting::name) != settings.end()) {
            return refuse(printableText(name) + " is set twice");
        }
        settings.push_back({name, onOneLine(text.substr(equals + 1))});
    }
    return true;
}

/// Some parameters are there only when a flag has been set: each pass sets those that there are.
bool CreateCommand::setParameters(TQProjection& projection) {
    std::vector<Setting> all;
    if (!readSettings(all)) {
        return false;
    }
    raiseFlags(projection, all);
    std::vector<Setting> settings = all;
    for (std::size_t before = 0; !settings.empty() && settings.size() != before;) {
        before = settings.size();
        if (!setThoseThatThereAre(projection, settings)) {
            return false;
        }
    }
    if (!settings.empty()) {
        return refuse("a projection of this type has no parameter " + printableText(settings.front().name) +
                      "; there are: " + listed(parameterNames(projection)));
    }
    return areTaken(projection, all);
}

/// A flag that a class lists only when it is set is set by being there.
void CreateCommand::raiseFlags(TQProjection& projection, const std::vector<Setting>& settings) {
    HashTbl<TQProjParam> table;
    projection.getParams(table);
    bool anyRaised = false;
    for (const auto& [name, value] : settings) {
        const TQString parameter(name.c_str());
        if (isClassParameter(name) && table.lookup(parameter) == nullptr &&
            (value == "true" || value == "1")) {
            table.add(std::make_unique<TQProjParam>(parameter, Logical(true), TQString()), parameter);
            anyRaised = true;
        }
    }
    if (anyRaised) {
        projection.setParams(table);
    }
}

bool CreateCommand::setThoseThatThereAre(TQProjection& projection, std::vector<Setting>& settings) {
    HashTbl<TQProjParam> table;
    projection.getParams(table);
    std::vector<Setting> others;
    for (const Setting& setting : settings) {
        TQProjParam* const parameter =
            isClassParameter(setting.name) ? table.lookup(setting.name.c_str()) : nullptr;
        if (parameter == nullptr) {
            others.push_back(setting);
        } else if (!parameter->takeValueFromRepresentation(TQString(setting.value.c_str())) ||
                   !isFiniteIfNumber(*parameter)) {
            return refuse("'" + printableText(setting.value) + "' is no value for " + setting.name);
        }
    }
    settings = std::move(others);
    projection.setParams(table);
    return _messages.isEmpty() || refuse(_messages.take());
}

/// Flags decide which of the others a projection keeps, and a class may decide by itself what a value is.
bool CreateCommand::areTaken(const TQProjection& projection, const std::vector<Setting>& settings) {
    HashTbl<TQProjParam> table;
    projection.getParams(table);
    for (const Setting& setting : settings) {
        const TQProjParam* const taken = table.lookup(setting.name.c_str());
        if (taken == nullptr) {
            return refuse("with the other parameters " + setting.name + " has no meaning");
        }
        TQProjParam wanted(*taken);
        wanted.takeValueFromRepresentation(TQString(setting.value.c_str()));
        if (!wanted.isEqual(taken)) {
            return refuse(setting.name + " cannot be " + printableText(setting.value));
        }
    }
    return true;
}

/// Whether there can be a map with the ellipsoid and the parameters.
bool CreateCommand::isPossible(const TQProjection& projection) {
    const TQEllipsoid* const ellipsoid = projection.ellipsoid();
    if (ellipsoid != nullptr && !(ellipsoid->semiMajorAxis() > 0.0)) {
        return refuse("the semi-major axis of the ellipsoid is no length above 0");
    }
    const std::vector<std::string> sentences = impossibleParameters(projection);
    return sentences.empty() || refuse(sentences.front());
}

bool CreateCommand::hasDefinition(const TQProjection& projection) {
    const auto* const defined = dynamic_cast<const TQPrProj4*>(&projection);
    if (defined == nullptr) {
        return true;
    }
    if (defined->definition().isEmpty()) {
        return refuse("a projection of this type needs a definition (--set definition=TEXT)");
    }
    TQPrProj4 asRead; // whose longitudes are on the datum of the definition, which parameters put on WGS 84
    constexpr bool useWGS84Source = false;
    asRead.initFromPROJString(defined->definition().utf8().c_str(), useWGS84Source);
    const std::string problem = makeReady(asRead, _messages);
    return problem.empty() || refuse("the other commands would refuse the definition: " + problem);
}

/// The text of the projection's file; nothing when it would be read as another projection.
std::optional<std::string> CreateCommand::verifiedText(const TQProjection& projection) {
    const ScratchDirectory scratch;
    if (scratch.error()) {
        refuse("there is no temporary directory: " + scratch.error().message());
        return std::nullopt;
    }
    const std::filesystem::path path = scratch.path() / "created.proj";
    const TQString pathText = tq_stringFromPath(path);
    using Numbers = TQProjectionFile::Numbers;
    if (!TQProjectionFile::write(projection, pathText,
                                 _options.isExact ? Numbers::Exact : Numbers::Customary)) {
        refuse("no projection file can be made of it" + reasonWithout(pathText.utf8()));
        return std::nullopt;
    }
    const std::unique_ptr<TQProjection> read = TQProjectionFile::createProjectionFromPath(pathText);
    return isReadBack(projection, read.get()) ? std::optional(bytesOf(path)) : std::nullopt;
}

/// What the library says of a file that nobody knows, as of the one that was asked for.
std::string CreateCommand::reasonWithout(const std::string& scratch) {
    std::string reason = _messages.isEmpty() ? "" : ": " + _messages.takeReason(TQString());
    if (const std::size_t place = reason.find(scratch); place != std::string::npos) {
        reason.replace(place, scratch.size(), textOf(_options.path));
    }
    return reason;
}

bool CreateCommand::isReadBack(const TQProjection& projection, const TQProjection* read) {
    if (read == nullptr || !tq_namesAreEqual(projection.name(), read->name()) ||
        !projection.hasSameDefinition(*read)) {
        return refuse("a projection file cannot hold this definition: it would be read as another one");
    }
    if (projection.ellipsoid() == nullptr) {
        return true; // PROJ's definitions are texts, and plain angles have no parameters
    }
    const Displacement displacement = Displacement::between(projection, *read);
    const std::string rounding = "the file rounds the parameters: coordinates move by " +
                                 distanceText(displacement.inTheMiddle) +
                                 " in the middle of the projection's area, by up to " +
                                 distanceText(displacement.greatest) + " in all of it";
    if (displacement.greatest >= greatestRounding) {
        return refuse(rounding + "; --exact writes all digits");
    }
    if (displacement.greatest >= leastDisplacement) {
        _diagnostics.reportProblem(rounding + " (--exact writes all digits)");
    }
    return true;
}

bool CreateCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return false;
}
