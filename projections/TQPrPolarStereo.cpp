#include "projections/TQPrPolarStereo.h"

#include "support/TQMessages.h"

#include <cmath>

using tq::formulas::Iterated;
using tq::formulas::PolarStereographic;

const TQProjectionStatement& TQPrPolarStereo::statement() {
    static constexpr TQProjectionStatement statement{
        .textBlock = textBlockAround(ownName), .archiveVersion = 0, .parameters = {}};
    return statement;
}

TQPrPolarStereo::TQPrPolarStereo(const TQPrPolarStereo& other) : TQStatedProjection(other) {}

TQPrPolarStereo::~TQPrPolarStereo() = default;

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

// The latitude is mirrored for the south before the datum shift, not after it.
int TQPrPolarStereo::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    if (!prepareConstants()) {
        return -1;
    }
    const TQPoint mirrored{geo.x, isNorth ? geo.y : -geo.y};
    return toPlane(mirrored, global,
                   [this](const auto& point) { return _stereographic.forward(point, plane()); });
}

int TQPrPolarStereo::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    if (!prepareConstants()) {
        return -1;
    }
    return toGeographic(global, geo, [this](const auto& point) {
        Iterated<double> latitude{};
        auto [lambda, phi] = _stereographic.inverse(point, plane(), latitude);
        if (!latitude.converged && !std::isnan(latitude.change)) {
            tq_perrorf("TQPrPolarStereo::latitude(): MAX_COUNT reached (delta=%lf>%lf)\n",
                       std::abs(latitude.change), PolarStereographic::tolerance);
        }
        return tq::formulas::Geographic<double>{lambda, isNorth ? phi : -phi};
    });
}
