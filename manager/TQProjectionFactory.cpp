#include "manager/TQProjectionFactory.h"

#include "projections/TQPrGaussKruger.h"
#include "projections/TQPrMercDirectGCTP.h"
#include "projections/TQPrMercDirectModified.h"
#include "projections/TQPrUtm.h"

namespace {

/// A class that files, archives and parameter tables know by its type code.
struct ProjectionClass {
    int typeCode;
    std::unique_ptr<TQProjection> (*make)();
};

template <class Class>
constexpr ProjectionClass projectionClass() {
    return {Class::typeCode, []() -> std::unique_ptr<TQProjection> { return std::make_unique<Class>(); }};
}

constexpr ProjectionClass classes[] = {
    projectionClass<TQPrGaussKruger>(),        projectionClass<TQPrUtm>(),
    projectionClass<TQPrMercTransv>(),         projectionClass<TQPrMercDirect>(),
    projectionClass<TQPrMercDirectModified>(), projectionClass<TQPrMercDirectGCTP>(),
};

} // namespace

std::unique_ptr<TQProjection> tq_newProjectionOfType(int typeCode) {
    for (const ProjectionClass& known : classes) {
        if (known.typeCode == typeCode) {
            return known.make();
        }
    }
    return nullptr;
}
