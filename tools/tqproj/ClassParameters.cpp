#include "tools/tqproj/ClassParameters.h"

#include "projection/TQProjection.h"
#include "support/HashTbl.h"

#include <algorithm>
#include <array>
#include <utility>

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
