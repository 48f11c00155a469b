#pragma once

#include "manager/TQProjectionFactory.h"
#include "testing/ProjectionTables.h"

#include <memory>
#include <ostream>

/// The type codes that there are.
inline constexpr int kTypeCodes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 127};

/// A projection of a type whose numbers are not those of its default state.
/// @param ellipsoid its ellipsoid, owned elsewhere; one that PROJ computes has none
inline std::unique_ptr<TQProjection> variedProjection(int typeCode, const char* name,
                                                      TQEllipsoid* ellipsoid) {
    auto projection = tq_newProjectionOfType(typeCode);
    projection->rename(TQString(name));
    projection->setEllipsoid(ellipsoid);
    HashTbl<TQProjParam> present(1);
    projection->getParams(present);
    ParameterTable varied;
    double difference = 0.0;
    HashState<TQProjParam> state;
    while (const TQProjParam* parameter = present.next(state)) {
        if (parameter->type() == TQDataDouble) {
            difference += 0.25; // another one for each, so that none can take the place of another
            varied.with(parameter->name()->charBuffer(), parameter->doubleValue() + difference);
        }
    }
    if (typeCode == 127) {
        varied.with("definition", TQString("EPSG:2154"));
    }
    projection->setParams(varied.table());
    return projection;
}
