#include "projections/TQPrPolarGnomon.h"

#include "projections/formulas/PolarGnomonic.h"

using tq::formulas::PolarGnomonic;

const TQProjectionStatement& TQPrPolarGnomon::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarGnomon::~TQPrPolarGnomon() = default;

TQString TQPrPolarGnomon::WKTProjectionStuff() const {
    return wktOf("Gnomonic", {{"latitude_of_origin", isNorth ? 90.0 : -90.0},
                              {"central_meridian", lambda0},
                              {"false_easting", falseEasting},
                              {"false_northing", falseNorthing}});
}

int TQPrPolarGnomon::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return PolarGnomonic::isEquator(geo.y) ? -1 : sphereToPlane<PolarGnomonic>(geo, global);
}

int TQPrPolarGnomon::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return planeToSphere<PolarGnomonic>(global, geo);
}
