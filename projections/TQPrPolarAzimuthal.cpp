#include "projections/TQPrPolarAzimuthal.h"

#include "projections/kernels/TQKernels.h"

const TQProjectionStatement& TQPrPolarAzimuthal::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarAzimuthal::TQPrPolarAzimuthal() { setRuns(TQKernels<TQPrPolarAzimuthal>::runs()); }

TQPrPolarAzimuthal::~TQPrPolarAzimuthal() = default;

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

int TQPrPolarAzimuthal::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrPolarAzimuthal>::toPlane(*this, geo, global);
}

int TQPrPolarAzimuthal::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrPolarAzimuthal>::toGeographic(*this, global, geo);
}
