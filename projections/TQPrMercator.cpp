#include "projections/TQPrMercator.h"

#include "support/TQArchiveBlock.h"
#include "support/TQMessages.h"
#include "support/TQTextBlock.h"
#include "support/TQWriteStream.h"

namespace {

constexpr TQTextBlock textBlock{.className = "TQPrMercator",
                                .oldestVersion = 1,
                                .newestVersion = 1,
                                .openFailed = 5501,
                                .headerUnreadable = 5502,
                                .versionUnknown = 5503,
                                .writeFailed = TQPrMercator::writeFailed};

} // namespace

TQProjectionParameters TQPrMercator::parameters() {
    using P = TQProjectionParameter;
    static constexpr P list[] = {
        {"lambda0", P::degrees, &TQPrMercator::lambda0, 1e-6, P::tenDecimals, 5504},
        {"phi0", P::degrees, &TQPrMercator::phi0, 1e-6, P::tenDecimals, 5505},
        {"X0", P::metres, &TQPrMercator::X0, 1.0, P::tenDecimals, 5506},
        {"Y0", P::metres, &TQPrMercator::Y0, 1.0, P::tenDecimals, 5507},
        {"k0", P::none, &TQPrMercator::k0, 1e-5, P::tenDecimals, 5508},
    };
    return TQProjectionParameters(list);
}

TQPrMercator::TQPrMercator(const TQPrMercator& other)
    : TQProjection(other), lambda0(other.lambda0), phi0(other.phi0), X0(other.X0), Y0(other.Y0),
      k0(other.k0) {}

TQPrMercator::~TQPrMercator() = default;

void TQPrMercator::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrMercator", 0);
    TQProjection::archiveTo(stream);
    parameters().archiveTo(stream, *this);
}

void TQPrMercator::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQPrMercator", 0) < 0) {
        return;
    }
    TQProjection::unarchiveFrom(stream);
    parameters().unarchiveFrom(stream, *this);
}

TQString TQPrMercator::wktWithParameters(const char* projection, double scaleFactor) const {
    TQString text = TQProjection::WKTProjectionStuff();
    text.appendWithFormat(",PROJECTION[\"%s\"]", projection);
    text.appendWithFormat(",PARAMETER[\"latitude_of_origin\",%.13g]", phi0);
    text.appendWithFormat(",PARAMETER[\"central_meridian\",%.13g]", lambda0);
    text.appendWithFormat(",PARAMETER[\"scale_factor\",%.13g]", scaleFactor);
    text.appendWithFormat(",PARAMETER[\"false_easting\",%.13g]", X0);
    text.appendWithFormat(",PARAMETER[\"false_northing\",%.13g]", Y0);
    return text;
}

TQString TQPrMercator::WKTProjectionStuff() const {
    double scaleFactor = k0;
    if (_latitudeScaleFactor != 1.0) {
        tq_perror("TQPrMercator::WKTProjectionStuff(): Direct Modified case is not really suported...\n");
        scaleFactor = k0 / _latitudeScaleFactor;
    }
    return wktWithParameters("Mercator_1SP", scaleFactor);
}

void TQPrMercator::getParams(HashTbl<TQProjParam>& table) const {
    TQProjection::getParams(table);
    parameters().list(*this, table);
}

void TQPrMercator::setParams(const HashTbl<TQProjParam>& table) {
    TQProjection::setParams(table);
    parameters().take(*this, table);
    initConstants();
}

bool TQPrMercator::hasSameDefinition(const TQProjection& other) const {
    return TQProjection::hasSameDefinition(other) && dynamic_cast<const TQPrMercator*>(&other) != nullptr &&
           parameters().areSame(*this, other);
}

int TQPrMercator::loadFromFile(TQFile& file, bool withHeader) {
    int version = 0;
    if (const int code = beginLoading(textBlock, file, withHeader, version)) {
        return code;
    }
    if (const int code = parameters().loadFrom(file, *this)) {
        return code;
    }
    initConstants();
    return 0;
}

int TQPrMercator::writeToFile(TQFile& file, bool withHeader) const {
    if (const int code = beginWriting(textBlock, file, withHeader)) {
        return code;
    }
    return parameters().writeTo(file, *this) ? 0 : textBlock.writeFailed;
}

bool TQPrMercator::isGeoPtValid(const TQPoint& geo) const { return isWithinPoles(geo.y); }
