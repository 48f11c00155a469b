#include "examples/SinusoidalProjection.h"

#include "support/TQUnit.h"

#include <cmath>

const TQProjectionStatement& SinusoidalProjection::statement() {
    using P = TQProjectionParameter;
    static constexpr P parameters[] = {
        {"lambda0", P::degrees, &SinusoidalProjection::lambda0, 1e-6, P::tenDecimals, 9004},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = {.className = ownName,
                      .oldestVersion = 1,
                      .newestVersion = 1,
                      .openFailed = 9001,
                      .headerUnreadable = 9002,
                      .versionUnknown = 9003,
                      .writeFailed = 9005},
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

SinusoidalProjection::SinusoidalProjection(const SinusoidalProjection& other) : TQStatedProjection(other) {
    copyStated(other);
}

int SinusoidalProjection::convertGeoPt(const TQPoint& geo, TQPoint& global) const {
    if (ellipsoid() == nullptr) {
        return -1;
    }
    const double radius = ellipsoid()->semiMajorAxis();
    global = {radius * (geo.x - tq_deg2rad(lambda0)) * std::cos(geo.y), radius * geo.y};
    return 0;
}

int SinusoidalProjection::convertGlobalPt(const TQPoint& global, TQPoint& geo) const {
    if (ellipsoid() == nullptr) {
        return -1;
    }
    const double radius = ellipsoid()->semiMajorAxis();
    const double latitude = global.y / radius;
    geo = {tq_deg2rad(lambda0) + global.x / (radius * std::cos(latitude)), latitude};
    return 0;
}
