#include "projections/TQPrPolar.h"

#include "projection/TQDomain.h"
#include "support/TQUnit.h"

namespace {

constexpr double northPole = 1.5707963267948966;

} // namespace

const TQProjectionStatement& TQPrPolar::statement() {
    using P = TQProjectionParameter;
    static constexpr int lineMissing = -1;
    static constexpr P parameters[] = {
        {"falseEasting", P::metres, &TQPrPolar::falseEasting, 0.01, P::sixDecimals, lineMissing},
        {"falseNorthing", P::metres, &TQPrPolar::falseNorthing, 0.01, P::sixDecimals, lineMissing},
        {"k0", P::none, &TQPrPolar::k0, 1e-6, P::sixDecimals, lineMissing},
        {"lambda0", P::degrees, &TQPrPolar::lambda0, 1e-6, P::sixDecimals, lineMissing},
        {"isNorth", &TQPrPolar::isNorth, lineMissing},
    };
    static constexpr TQProjectionStatement statement{
        .textBlock = TQProjectionStatement::commonTextBlock(ownName),
        .archiveVersion = 0,
        .parameters = TQProjectionParameters(parameters),
    };
    return statement;
}

TQPrPolar::TQPrPolar(const TQPrPolar& other) : TQStatedProjection(other) { copyStated(other); }

TQPrPolar::~TQPrPolar() = default;

int TQPrPolar::loadFromFile(TQFile& file, bool withHeader) {
    const int code = Stated::loadFromFile(file, withHeader);
    if (code == 0) {
        computeConstants();
    }
    return code;
}

bool TQPrPolar::northPolePosition(TQPoint& position) const {
    if (!isNorth) {
        return false;
    }
    convertGeoPt(TQPoint{0.0, northPole}, position);
    return true;
}

bool TQPrPolar::southPolePosition(TQPoint& position) const {
    if (isNorth) {
        return false;
    }
    convertGeoPt(TQPoint{0.0, -northPole}, position);
    return true;
}

TQPoint TQPrPolar::center() const {
    TQPoint position;
    if (!northPolePosition(position)) {
        southPolePosition(position);
    }
    return position;
}

void TQPrPolar::computeConstants() const {}

tq::formulas::PolarPlane TQPrPolar::plane() const {
    return {tq_deg2rad(lambda0), {falseEasting, falseNorthing}, isNorth};
}

TQDomain TQPrPolar::domainTo(double farthest, const char* beyond) const {
    TQDomain domain{
        .centralMeridian = tq_deg2rad(lambda0), .wrapsLongitudes = true, .beyondLatitudes = beyond};
    if (isNorth) {
        domain.geographic.south = -farthest;
    } else {
        domain.geographic.north = farthest;
    }
    return domain;
}
