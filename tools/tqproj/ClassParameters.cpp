#include "tools/tqproj/ClassParameters.h"

#include "projection/TQProjection.h"
#include "projection/TQProjectionParameter.h"
#include "support/HashTbl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

bool isAngle(const TQProjParam& parameter) {
    return parameter.unitLabel() != nullptr && *parameter.unitLabel() != TQProjectionParameter::metres;
}

/// Whether an angle is one of those that go around; the others are latitudes.
bool goesAround(const TQProjParam& parameter) {
    constexpr std::array<std::string_view, 4> beginnings{"lambda", "longitude", "azimuth", "bearing"};
    const std::string name = parameter.name()->utf8();
    return std::ranges::any_of(beginnings, [&](std::string_view text) { return name.starts_with(text); });
}

/// What no map has as a parameter, after its name; empty when it is fit.
std::string impossibility(const TQProjParam& parameter, const TQProjection& projection) {
    constexpr double wholeTurn = 360.0;
    constexpr double pole = 90.0;
    const double value = parameter.doubleValue();
    if (!std::isfinite(value)) {
        return "is not finite";
    }
    if (isFactor(parameter, projection)) {
        return value > 0.0 ? "" : "is no factor above 0";
    }
    if (!isAngle(parameter)) {
        return "";
    }
    if (goesAround(parameter)) {
        return std::abs(value) <= wholeTurn ? "" : "lies beyond 360 degrees";
    }
    return std::abs(value) <= pole ? "" : "lies beyond 90 degrees, the latitude of a pole";
}

} // namespace

bool isClassParameter(std::string_view name) {
    constexpr std::array<std::string_view, 3> general{"Type", "Nom", "Ellipsoide"};
    return std::ranges::find(general, name) == general.end();
}

// With one bucket the table keeps the order in which the projection lists its parameters.
std::vector<std::unique_ptr<TQProjParam>> classParameters(const TQProjection& projection) {
    HashTbl<TQProjParam> table(1);
    projection.getParams(table);
    std::vector<std::unique_ptr<TQProjParam>> parameters;
    HashState<TQProjParam> fromTheStart;
    while (auto parameter = table.unlink(table.next(fromTheStart))) {
        if (parameter->name() != nullptr && isClassParameter(parameter->name()->utf8())) {
            parameters.push_back(std::move(parameter));
        }
    }
    return parameters;
}

bool isFactor(const TQProjParam& parameter, const TQProjection& projection) {
    HashTbl<TQProjParam> table;
    projection.getParams(table);
    const TQProjParam* const flag = table.lookup("isFactor"); // of a factor or a latitude, in one place
    const bool isSaid = flag != nullptr && bool{flag->logicalValue()};
    return parameter.type() == TQDataDouble && (parameter.unitLabel() == nullptr || isSaid);
}

std::vector<std::string> impossibleParameters(const TQProjection& projection) {
    std::vector<std::string> sentences;
    for (const auto& parameter : classParameters(projection)) {
        const std::string problem =
            parameter->type() == TQDataDouble ? impossibility(*parameter, projection) : std::string();
        if (!problem.empty()) {
            sentences.push_back(parameter->name()->utf8() + " " + problem);
        }
    }
    return sentences;
}
