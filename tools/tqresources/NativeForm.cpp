#include "tools/tqresources/NativeForm.h"

#include "manager/TQProjParam.h"
#include "manager/TQProjectionFactory.h"
#include "projection/TQProjection.h"
#include "support/HashTbl.h"

#include <cmath>
#include <string_view>

namespace {

// Codes of methods and parameters: EPSG Guidance Note 7-2.
enum Method : int {
    LambertOneParallel = 9801,
    LambertTwoParallels = 9802,
    MercatorA = 9804,
    MercatorB = 9805,
    CassiniSoldner = 9806,
    TransverseMercator = 9807,
    PolarStereographicA = 9810,
    HotineB = 9815,
};

enum Parameter : int {
    LatitudeOfOrigin = 8801,
    LongitudeOfOrigin = 8802,
    ScaleAtOrigin = 8805,
    FalseEasting = 8806,
    FalseNorthing = 8807,
    LatitudeOfCentre = 8811,
    LongitudeOfCentre = 8812,
    Azimuth = 8813,
    GridAngle = 8814,
    ScaleAtCentre = 8815,
    EastingAtCentre = 8816,
    NorthingAtCentre = 8817,
    LatitudeOfFalseOrigin = 8821,
    LongitudeOfFalseOrigin = 8822,
    FirstParallel = 8823,
    SecondParallel = 8824,
    EastingAtFalseOrigin = 8826,
    NorthingAtFalseOrigin = 8827,
};

enum TypeCode : int {
    GaussKruger = 1,
    Lambert = 2,
    Utm = 3,
    TransverseMercatorType = 4,
    DirectMercator = 5,
    PolarStereographic = 8,
    SwissObliqueMercator = 12,
    CassiniSoldnerType = 13,
    GctpDirectMercator = 15,
};

/// A system whose longitudes are counted from Greenwich.
class FromGreenwich {
  public:
    explicit FromGreenwich(const EpsgSystem& system) : _system(system) {}

    double operator()(Parameter code) const { return _system.conversion.parameter(code); }
    double longitude(Parameter code) const { return (*this)(code) + _system.primeMeridian; }

  private:
    const EpsgSystem& _system;
};

NativeForm transverseMercator(const FromGreenwich& system) {
    const double lambda0 = system.longitude(LongitudeOfOrigin);
    const double phi0 = system(LatitudeOfOrigin);
    const double x0 = system(FalseEasting);
    const double y0 = system(FalseNorthing);
    const double k0 = system(ScaleAtOrigin);
    constexpr double southernFalseNorthing = 1e7;
    if (phi0 == 0.0 && k0 == 0.9996 && x0 == 500000.0 && (y0 == 0.0 || y0 == southernFalseNorthing)) {
        return {Utm, {{"lambda0", lambda0}, {"hemisphere", y0 == 0.0 ? 1.0 : 0.0}}};
    }
    if (phi0 == 0.0 && k0 == 1.0 && y0 == 0.0) {
        return {GaussKruger, {{"lambda0", lambda0}, {"X0", x0}}};
    }
    return {TransverseMercatorType,
            {{"lambda0", lambda0}, {"phi0", phi0}, {"X0", x0}, {"Y0", y0}, {"k0", k0}}};
}

NativeForm lambertOneParallel(const FromGreenwich& system) {
    return {Lambert,
            {{"lambda0", system.longitude(LongitudeOfOrigin)},
             {"latitudeOrigin", system(LatitudeOfOrigin)},
             {"X0", system(FalseEasting)},
             {"Y0", system(FalseNorthing)},
             {"Tangent", 1.0},
             {"k0", system(ScaleAtOrigin)}}};
}

NativeForm lambertTwoParallels(const FromGreenwich& system) {
    return {Lambert,
            {{"lambda0", system.longitude(LongitudeOfFalseOrigin)},
             {"latitudeOrigin", system(LatitudeOfFalseOrigin)},
             {"X0", system(EastingAtFalseOrigin)},
             {"Y0", system(NorthingAtFalseOrigin)},
             {"Tangent", 0.0},
             {"stdPar1", system(FirstParallel)},
             {"stdPar2", system(SecondParallel)}}};
}

NativeForm mercatorA(const FromGreenwich& system) {
    return {DirectMercator,
            {{"lambda0", system.longitude(LongitudeOfOrigin)},
             {"phi0", system(LatitudeOfOrigin)},
             {"X0", system(FalseEasting)},
             {"Y0", system(FalseNorthing)},
             {"k0", system(ScaleAtOrigin)}}};
}

/// Variant B counts its northings from the equator, as GCTP does.
NativeForm mercatorB(const FromGreenwich& system) {
    return {GctpDirectMercator,
            {{"lambda0", system.longitude(LongitudeOfOrigin)},
             {"phi0", system(FirstParallel)},
             {"X0", system(FalseEasting)},
             {"Y0", system(FalseNorthing)},
             {"k0", 1.0}}};
}

NativeForm cassiniSoldner(const FromGreenwich& system) {
    return {CassiniSoldnerType,
            {{"lambda0", system.longitude(LongitudeOfOrigin)},
             {"phi0", system(LatitudeOfOrigin)},
             {"X0", system(FalseEasting)},
             {"Y0", system(FalseNorthing)}}};
}

NativeForm polarStereographicA(const FromGreenwich& system) {
    return {PolarStereographic,
            {{"falseEasting", system(FalseEasting)},
             {"falseNorthing", system(FalseNorthing)},
             {"k0", system(ScaleAtOrigin)},
             {"lambda0", system.longitude(LongitudeOfOrigin)},
             {"isNorth", system(LatitudeOfOrigin) > 0.0 ? 1.0 : 0.0}}};
}

/// A central line that runs east at the centre is that of the Swiss oblique Mercator. Files of other oblique
/// ones keep too few decimals of their angles, and their way back needs the azimuth at the natural origin.
NativeForm obliqueMercator(const FromGreenwich& system) {
    constexpr double ninety = 90.0;
    if (system(Azimuth) != ninety || system(GridAngle) != ninety) {
        throw NotExpressible("is an oblique Mercator whose central line does not run east");
    }
    return {SwissObliqueMercator,
            {{"longitudeCenter", system.longitude(LongitudeOfCentre)},
             {"latitudeCenter", system(LatitudeOfCentre)},
             {"kc", system(ScaleAtCentre)},
             {"falseEasting", system(EastingAtCentre)},
             {"falseNorthing", system(NorthingAtCentre)}},
            true};
}

} // namespace

double& NativeForm::parameter(const char* name) {
    for (auto& [known, value] : parameters) {
        if (std::string_view(known) == name) {
            return value;
        }
    }
    throw NotExpressible(std::string("has no ") + name);
}

std::unique_ptr<TQProjection> NativeForm::make() const {
    HashTbl<TQProjParam> table(1);
    for (const auto& [name, value] : parameters) {
        const TQString key(name);
        const bool isLogical = key == TQString("hemisphere");
        table.add(isLogical ? std::make_unique<TQProjParam>(key, Logical(value == 1.0), TQString())
                            : std::make_unique<TQProjParam>(key, value, TQString()),
                  key);
    }
    auto projection = tq_newProjectionOfType(typeCode);
    projection->setParams(table);
    return projection;
}

NativeForm nativeFormOf(const EpsgSystem& system) {
    const FromGreenwich parameters(system);
    switch (system.conversion.method) {
    case LambertOneParallel:
        return lambertOneParallel(parameters);
    case LambertTwoParallels:
        return lambertTwoParallels(parameters);
    case MercatorA:
        return mercatorA(parameters);
    case MercatorB:
        return mercatorB(parameters);
    case CassiniSoldner:
        return cassiniSoldner(parameters);
    case TransverseMercator:
        return transverseMercator(parameters);
    case PolarStereographicA:
        return polarStereographicA(parameters);
    case HotineB:
        return obliqueMercator(parameters);
    default:
        throw NotExpressible("has a method that no class expresses, EPSG " +
                             std::to_string(system.conversion.method));
    }
}
