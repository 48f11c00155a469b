#include "projections/TQPrGaussKruger.h"

#include "support/TQArchiveBlock.h"
#include "support/TQReadStream.h"
#include "support/TQTextBlock.h"
#include "support/TQWriteStream.h"

#include <cmath>

namespace {

constexpr double halfZoneWidth = 0.05235987755982988; // 3 degrees

constexpr TQTextBlock textBlock{.className = "TQPrGaussKruger",
                                .oldestVersion = 1,
                                .newestVersion = 2,
                                .openFailed = 5201,
                                .headerUnreadable = 5202,
                                .versionUnknown = 5203,
                                .writeFailed = 5209};

} // namespace

TQProjectionParameters TQPrGaussKruger::ownParameters() {
    using P = TQProjectionParameter;
    static constexpr P list[] = {
        {"lambda0", P::degrees, &TQPrGaussKruger::lambda0, 1e-6, P::tenDecimals, 5204},
        {"X0", P::metres, &TQPrGaussKruger::X0, 1.0, P::thirteenDigits, 5204},
    };
    return TQProjectionParameters(list);
}

TQPrGaussKruger::~TQPrGaussKruger() = default;

void TQPrGaussKruger::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrGaussKruger", 2);
    TQProjection::archiveTo(stream);
    ownParameters().archiveTo(stream, *this);
}

void TQPrGaussKruger::unarchiveFrom(TQReadStream* stream) {
    const int version = tq_readKnownVersion(stream, "TQPrGaussKruger", 2);
    if (version < 0) {
        return;
    }
    TQProjection::unarchiveFrom(stream);
    switch (version) {
    case 0: {
        std::int32_t dropped = 0;
        stream->read(lambda0);
        stream->read(k0);
        stream->read(X0);
        stream->read(Y0);
        stream->read(dropped);
        break;
    }
    case 1:
        ownParameters().first(1).unarchiveFrom(stream, *this);
        break;
    default:
        ownParameters().unarchiveFrom(stream, *this);
    }
}

void TQPrGaussKruger::getParams(HashTbl<TQProjParam>& table) const {
    TQProjection::getParams(table);
    ownParameters().list(*this, table);
}

void TQPrGaussKruger::setParams(const HashTbl<TQProjParam>& table) {
    TQProjection::setParams(table);
    ownParameters().take(*this, table);
    initConstants();
}

int TQPrGaussKruger::loadFromFile(TQFile& file, bool withHeader) {
    int version = 0;
    if (const int code = beginLoading(textBlock, file, withHeader, version)) {
        return code;
    }
    const auto present = version == 1 ? ownParameters().first(1) : ownParameters();
    if (const int code = present.loadFrom(file, *this)) {
        return code;
    }
    initConstants();
    return 0;
}

int TQPrGaussKruger::writeToFile(TQFile& file, bool withHeader) const {
    if (const int code = beginWriting(textBlock, file, withHeader)) {
        return code;
    }
    return ownParameters().writeTo(file, *this) ? 0 : textBlock.writeFailed;
}

bool TQPrGaussKruger::isGeoPtValid(const TQPoint& geo) const {
    constexpr double singularity = 1e-10;
    const double fromCentralMeridian = geo.x - lambda0;
    if (1.0 - std::abs(std::cos(geo.y) * std::sin(fromCentralMeridian)) < singularity) {
        return false;
    }
    // Holds for every number: only what is not a number is refused.
    return std::abs(std::abs(fromCentralMeridian) - halfZoneWidth) >= 0.0 && !std::isnan(geo.y);
}
