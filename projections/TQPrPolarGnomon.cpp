#include "projections/TQPrPolarGnomon.h"

#include "projections/kernels/TQKernels.h"

const TQProjectionStatement& TQPrPolarGnomon::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarGnomon::TQPrPolarGnomon() = default;

TQPrPolarGnomon::~TQPrPolarGnomon() = default;

const TQProjection::Runs& TQPrPolarGnomon::runs() { return TQKernels<TQPrPolarGnomon>::runs(); }

TQString TQPrPolarGnomon::WKTProjectionStuff() const {
    return wktOf("Gnomonic", {{"latitude_of_origin", isNorth ? 90.0 : -90.0},
                              {"central_meridian", lambda0},
                              {"false_easting", falseEasting},
                              {"false_northing", falseNorthing}});
}

/// The formulas with the constants that they take.
tq::kernels::PolarGnomonicConversion TQPrPolarGnomon::conversion() const {
    return {{plane(), ellipsoid()->semiMajorAxis()}};
}

// The equator has no image to within 1e-8 of the sine of the latitude.
TQDomain TQPrPolarGnomon::domain() const {
    if (hasDatumShift()) {
        return TQDomain::nowhere("on an ellipsoid with a datum shift, which takes no part");
    }
    TQDomain domain = domainTo(-1.1e-8, "on the equator or in the other hemisphere");
    domain.flattest = 1.0; // a sphere
    return domain;
}

int TQPrPolarGnomon::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    using Kernels = TQKernels<TQPrPolarGnomon>;
    const auto answer = Kernels::answer<Kernels::Way::ToPlane>(*this, geo);
    if (!answer || answer->isSpecial) {
        return -1;
    }
    global = answer->point;
    return 0;
}

int TQPrPolarGnomon::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    return TQKernels<TQPrPolarGnomon>::toGeographic(*this, global, geo);
}
