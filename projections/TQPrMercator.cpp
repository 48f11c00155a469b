#include "projections/TQPrMercator.h"

#include "support/TQMessages.h"

const TQProjectionStatement& TQPrMercator::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"lambda0", P::degrees, &TQPrMercator::lambda0, 1e-6, P::tenDecimals, 5504},
        {"phi0", P::degrees, &TQPrMercator::phi0, 1e-6, P::tenDecimals, 5505},
        {"X0", P::metres, &TQPrMercator::X0, 1.0, P::tenDecimals, 5506},
        {"Y0", P::metres, &TQPrMercator::Y0, 1.0, P::tenDecimals, 5507},
        {"k0", P::none, &TQPrMercator::k0, 1e-5, P::tenDecimals, 5508},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 1,
                      .newestVersion = 1,
                      .openFailed = 5501,
                      .headerUnreadable = 5502,
                      .versionUnknown = 5503,
                      .writeFailed = writeFailed},
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

// The latitude scale factor is no parameter of this class: in a copy it is 1 again.
TQPrMercator::TQPrMercator(const TQPrMercator& other) : TQStatedProjection(other) { copyStated(other); }

TQPrMercator::~TQPrMercator() = default;

TQString TQPrMercator::wktWithParameters(const char* projection, double scaleFactor) const {
    return wktOf(projection, {{"latitude_of_origin", phi0},
                              {"central_meridian", lambda0},
                              {"scale_factor", scaleFactor},
                              {"false_easting", X0},
                              {"false_northing", Y0}});
}

TQString TQPrMercator::WKTProjectionStuff() const {
    double scaleFactor = k0;
    if (_latitudeScaleFactor != 1.0) {
        tq_perror("TQPrMercator::WKTProjectionStuff(): Direct Modified case is not really suported...\n");
        scaleFactor = k0 / _latitudeScaleFactor;
    }
    return wktWithParameters("Mercator_1SP", scaleFactor);
}

bool TQPrMercator::isGeoPtValid(const TQPoint& geo) const { return isWithinPoles(geo.y); }
