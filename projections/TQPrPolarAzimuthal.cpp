#include "projections/TQPrPolarAzimuthal.h"

#include "projections/formulas/PolarAzimuthal.h"

using tq::formulas::PolarAzimuthal;

const TQProjectionStatement& TQPrPolarAzimuthal::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarAzimuthal::~TQPrPolarAzimuthal() = default;

TQString TQPrPolarAzimuthal::WKTProjectionStuff() const {
    return wktOf("Lambert_Azimuthal_Equal_Area", {{"latitude_of_center", isNorth ? 90.0 : -90.0},
                                                  {"longitude_of_center", lambda0},
                                                  {"false_easting", falseEasting},
                                                  {"false_northing", falseNorthing}});
}

int TQPrPolarAzimuthal::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return sphereToPlane<PolarAzimuthal>(geo, global);
}

int TQPrPolarAzimuthal::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return planeToSphere<PolarAzimuthal>(global, geo);
}
