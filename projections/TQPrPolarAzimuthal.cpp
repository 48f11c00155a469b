#include "projections/TQPrPolarAzimuthal.h"

#include "projections/kernels/TQKernels.h"

#include <numbers>

const TQProjectionStatement& TQPrPolarAzimuthal::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarAzimuthal::TQPrPolarAzimuthal() = default;

TQPrPolarAzimuthal::~TQPrPolarAzimuthal() = default;

const TQProjection::Runs& TQPrPolarAzimuthal::runs() { return TQKernels<TQPrPolarAzimuthal>::runs(); }

TQString TQPrPolarAzimuthal::WKTProjectionStuff() const {
    return wktOf("Lambert_Azimuthal_Equal_Area", {{"latitude_of_center", isNorth ? 90.0 : -90.0},
                                                  {"longitude_of_center", lambda0},
                                                  {"false_easting", falseEasting},
                                                  {"false_northing", falseNorthing}});
}

/// The formulas with the constants that they take.
tq::kernels::PolarAzimuthalConversion TQPrPolarAzimuthal::conversion() const {
    return {{plane(), ellipsoid()->semiMajorAxis()}};
}

// The centre comes back as the north pole, also in the south, where it is the other pole: a circle.
TQDomain TQPrPolarAzimuthal::domain() const {
    if (hasDatumShift()) {
        return TQDomain::nowhere("on an ellipsoid with a datum shift, which takes no part");
    }
    TQDomain domain = domainTo(std::numbers::pi / 2.0 - 1e-9, "at the other pole, or beyond");
    domain.flattest = 1.0; // a sphere
    return domain;
}

int TQPrPolarAzimuthal::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrPolarAzimuthal>::toPlane(*this, geo, global);
}

int TQPrPolarAzimuthal::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrPolarAzimuthal>::toGeographic(*this, global, geo);
}
