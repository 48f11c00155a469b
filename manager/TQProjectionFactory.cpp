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

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <iterator>

namespace {

/// A class that files, archives and parameter tables know by its type code.
struct ProjectionClass {
    int typeCode;
    TQProjectionMaker make;
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

const ProjectionClass* classOfType(int typeCode) {
    const auto* const found = std::ranges::find(classes, typeCode, &ProjectionClass::typeCode);
    return found != std::end(classes) ? found : nullptr;
}

constexpr int greatestTypeCode = 127; // archives keep it in a signed byte
constexpr int typeCodeKeptFree = 14;

using Makers = std::array<std::atomic<TQProjectionMaker>, greatestTypeCode + 1>;

/// What makes the projections of the application's classes, by type code. Nothing is destroyed at the end of
/// the process, where static objects may still ask.
Makers& makersOfApplication() {
    static Makers makers{};
    return makers;
}

bool isOfRange(int typeCode) { return typeCode >= 0 && typeCode <= greatestTypeCode; }

/// What makes the projections of a type code; null for a code that no class has.
TQProjectionMaker makerOfType(int typeCode) {
    if (const ProjectionClass* const known = classOfType(typeCode)) {
        return known->make;
    }
    return isOfRange(typeCode) ? makersOfApplication().at(static_cast<std::size_t>(typeCode)).load()
                               : nullptr;
}

void computePolarConstants(const TQProjection& projection) {
    if (const auto* const polar = dynamic_cast<const TQPrPolar*>(&projection)) {
        polar->computeConstants();
    }
}

} // namespace

bool tq_registerProjectionClass(int typeCode, TQProjectionMaker make) {
    if (!isOfRange(typeCode) || typeCode == typeCodeKeptFree || classOfType(typeCode) != nullptr ||
        make == nullptr) {
        return false;
    }
    const std::unique_ptr<TQProjection> sample = make();
    TQProjectionMaker none = nullptr;
    return sample != nullptr && sample->projectionType() == typeCode &&
           makersOfApplication().at(static_cast<std::size_t>(typeCode)).compare_exchange_strong(none, make);
}

bool tq_isProjectionTypeKnown(int typeCode) { return makerOfType(typeCode) != nullptr; }

std::unique_ptr<TQProjection> tq_newProjectionOfType(int typeCode) {
    const TQProjectionMaker make = makerOfType(typeCode);
    return make != nullptr ? make() : nullptr;
}

std::unique_ptr<TQProjection> tq_unarchivedProjectionOfType(int typeCode, TQReadStream& stream) {
    std::unique_ptr<TQProjection> projection = tq_newProjectionOfType(typeCode);
    if (projection != nullptr) {
        projection->initFromStream(&stream);
    }
    const auto* const restricted = dynamic_cast<const TQPrGaussKruger*>(projection.get());
    if (restricted != nullptr && restricted->isGeneral()) {
        return std::make_unique<TQPrMercTransv>(*restricted);
    }
    return projection;
}

void tq_attachEllipsoid(TQProjection& projection, TQEllipsoid* ellipsoid) {
    projection.setEllipsoid(ellipsoid);
    computePolarConstants(projection);
}

void tq_takeParams(TQProjection& projection, const HashTbl<TQProjParam>& params) {
    projection.setParams(params);
    computePolarConstants(projection);
}
