#include "tools/tqproj/CreateCommand.h"

#include "manager/TQProjectionFactory.h"
#include "manager/TQProjectionFile.h"
#include "projection/TQProjection.h"
#include "tools/tqproj/ClassParameters.h"
#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/ProjectionLibrary.h"
#include "tools/tqproj/TextSearch.h"

#include <limits>
#include <system_error>
#include <utility>

namespace {

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

} // namespace

CreateCommand::CreateCommand(CreateOptions options, Diagnostics& diagnostics)
    : _options(std::move(options)), _diagnostics(diagnostics) {}

ExitCode CreateCommand::run() { return write() ? ExitCode::Success : ExitCode::Failure; }

bool CreateCommand::write() {
    const std::unique_ptr<TQProjection> projection = newProjection();
    if (projection == nullptr) {
        return false;
    }
    ProjectionLibrary library({});
    _messages.take(); // of other projections
    TQEllipsoid* const ellipsoid = library.ellipsoid(_options.ellipsoid);
    if (ellipsoid == nullptr && !_options.ellipsoid.empty()) {
        return refuse("no ellipsoid is called " + printableText(_options.ellipsoid) +
                      "; there are: " + listed(library.ellipsoidNames()));
    }
    projection->setEllipsoid(ellipsoid);
    if (!setParameters(*projection)) {
        return false;
    }
    projection->rename(TQString(_options.name.c_str()));
    std::error_code error;
    if (!TQProjectionFile::write(*projection, TQString(_options.path.c_str()), error)) {
        const std::string reason = error ? error.message() : _messages.take();
        return refuse("cannot write " + _options.path + (reason.empty() ? "" : ": " + reason));
    }
    return true;
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

bool CreateCommand::readSettings(std::vector<Setting>& settings) {
    for (const std::string& text : _options.parameters) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0) {
            return refuse("'" + printableText(text) + "' is no parameter with \"=\" and a value");
        }
        settings.push_back({text.substr(0, equals), text.substr(equals + 1)});
    }
    return true;
}

/// Some parameters are there only when a flag has been set: each pass sets those that there are.
bool CreateCommand::setParameters(TQProjection& projection) {
    std::vector<Setting> settings;
    if (!readSettings(settings)) {
        return false;
    }
    for (std::size_t before = 0; !settings.empty() && settings.size() != before;) {
        before = settings.size();
        if (!setThoseThatThereAre(projection, settings)) {
            return false;
        }
    }
    return settings.empty() ||
           refuse("a projection of this type has no parameter " + printableText(settings.front().name) +
                  "; there are: " + listed(parameterNames(projection)));
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
        } else if (!parameter->takeValueFromRepresentation(TQString(setting.value.c_str()))) {
            return refuse("'" + printableText(setting.value) + "' is no value for " + setting.name);
        }
    }
    settings = std::move(others);
    projection.setParams(table);
    return _messages.isEmpty() || refuse(_messages.take());
}

bool CreateCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return false;
}
