#include "manager/TQProjectionFactory.h"

#include "proj/TQPrProj4.h"
#include "projections/TQPrBonne.h"
#include "projections/TQPrCassiniSoldner.h"
#include "projections/TQPrEquiRectangular.h"
#include "projections/TQPrGaussKruger.h"
#include "projections/TQPrLambert.h"
#include "projections/TQPrMercDirectGCTP.h"
#include "projections/TQPrMercDirectModified.h"
#include "projections/TQPrObliqueMercator.h"
#include "projections/TQPrPolarAzimuthal.h"
#include "projections/TQPrPolarGnomon.h"
#include "projections/TQPrPolarStereo.h"
#include "projections/TQPrSwissObliqueMercator.h"
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
    projectionClass<TQPrBonne>(),
    projectionClass<TQPrGaussKruger>(),
    projectionClass<TQPrLambert>(),
    projectionClass<TQPrUtm>(),
    projectionClass<TQPrMercTransv>(),
    projectionClass<TQPrMercDirect>(),
    projectionClass<TQPrObliqueMercator>(),
    projectionClass<TQPrMercDirectModified>(),
    projectionClass<TQPrPolarStereo>(),
    projectionClass<TQPrPolarGnomon>(),
    projectionClass<TQPrPolarAzimuthal>(),
    projectionClass<TQPrEquiRectangular>(),
    projectionClass<TQPrSwissObliqueMercator>(),
    projectionClass<TQPrCassiniSoldner>(),
    projectionClass<TQPrMercDirectGCTP>(),
    projectionClass<TQPrProj4>(),
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
