#include "projections/TQPrPolarStereo.h"

#include "projections/kernels/TQKernels.h"
#include "support/TQMessages.h"
#include "support/TQUnit.h"

#include <cmath>

using tq::formulas::Iterated;
using tq::formulas::PolarStereographic;

const TQProjectionStatement& TQPrPolarStereo::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarStereo::TQPrPolarStereo() = default;

TQPrPolarStereo::TQPrPolarStereo(const TQPrPolarStereo& other) : TQStatedProjection(other) {}

TQPrPolarStereo::~TQPrPolarStereo() = default;

const TQProjection::Runs& TQPrPolarStereo::runs() { return TQKernels<TQPrPolarStereo>::runs(); }

void TQPrPolarStereo::unarchiveFrom(TQReadStream* stream) {
    if (unarchiveBlock(stream) >= 0) {
        _stereographic = {};
    }
}

TQString TQPrPolarStereo::WKTProjectionStuff() const {
    return wktOf("Polar_Stereographic", {{"latitude_of_origin", isNorth ? 90.0 : -90.0},
                                         {"central_meridian", lambda0},
                                         {"scale_factor", k0},
                                         {"false_easting", falseEasting},
                                         {"false_northing", falseNorthing}});
}

void TQPrPolarStereo::computeConstants() const {
    if (const TQEllipsoid* on = ellipsoid()) {
        _stereographic.init(on->semiMajorAxis(), on->eccentricitySquared(), k0);
    }
}

/// Computes the constants unless they are there, on a sphere each time; false without an ellipsoid.
bool TQPrPolarStereo::prepareConstants() const {
    if (ellipsoid() == nullptr) {
        return false;
    }
    if (_stereographic._eccentricity <= 0.0) {
        computeConstants();
    }
    return true;
}

/// The formulas with the constants that they take.
tq::kernels::PolarStereographicConversion TQPrPolarStereo::conversion() const {
    return {_stereographic, plane(), ellipsoid()->datum()};
}

// In the south the way back adds the false northing twice, and a datum shift is that of the other hemisphere.
TQDomain TQPrPolarStereo::domain() const {
    if (!isNorth && hasDatumShift()) {
        return TQDomain::nowhere(
            "around the south pole, where a datum shift is that of the other hemisphere");
    }
    TQDomain domain = domainTo(tq_deg2rad(89.0), "within a degree of the other pole");
    domain.scale = _stereographic._scaleRadius;
    if (!isNorth && falseNorthing != 0.0) {
        domain.plane = TQDomain::Rectangle::nothing();
        domain.beyondPlane = "around the south pole with a false northing, which is not taken off";
    }
    return domain;
}

int TQPrPolarStereo::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    return TQKernels<TQPrPolarStereo>::toPlane(*this, geo, global);
}

int TQPrPolarStereo::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    using Kernels = TQKernels<TQPrPolarStereo>;
    const auto answer = Kernels::answer<Kernels::Way::ToGeographic>(*this, global);
    if (!answer) {
        return -1;
    }
    if (answer->isSpecial) {
        Iterated<double> latitude{};
        _stereographic.inverse<double>({global.x, global.y}, plane(), latitude);
        tq_perrorf("TQPrPolarStereo::latitude(): MAX_COUNT reached (delta=%lf>%lf)\n",
                   std::abs(latitude.change), PolarStereographic::tolerance);
    }
    geo = answer->point;
    return 0;
}
