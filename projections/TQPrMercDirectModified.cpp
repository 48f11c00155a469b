#include "projections/TQPrMercDirectModified.h"

#include "support/TQArchiveBlock.h"
#include "support/TQWriteStream.h"

TQProjectionParameters TQPrMercDirectModified::ownParameters() {
    using P = TQProjectionParameter;
    static constexpr P list[] = {
        {"_latitudeScaleFactor", P::none, &TQPrMercDirectModified::_latitudeScaleFactor, 1e-5, P::tenDecimals,
         5510},
    };
    return TQProjectionParameters(list);
}

TQPrMercDirectModified::TQPrMercDirectModified(const TQPrMercDirectModified& other) : TQPrMercDirect(other) {
    _latitudeScaleFactor = other._latitudeScaleFactor;
    TQPrMercDirect::initConstants();
}

TQPrMercDirectModified::~TQPrMercDirectModified() = default;

void TQPrMercDirectModified::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQPrMercDirectModified", 0);
    TQPrMercDirect::archiveTo(stream);
    ownParameters().archiveTo(stream, *this);
}

void TQPrMercDirectModified::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQPrMercDirectModified", 0) >= 0) {
        TQPrMercDirect::unarchiveFrom(stream);
        ownParameters().unarchiveFrom(stream, *this);
    }
}

void TQPrMercDirectModified::getParams(HashTbl<TQProjParam>& table) const {
    TQPrMercDirect::getParams(table);
    ownParameters().list(*this, table);
}

void TQPrMercDirectModified::setParams(const HashTbl<TQProjParam>& table) {
    TQPrMercDirect::setParams(table);
    ownParameters().take(*this, table);
}

bool TQPrMercDirectModified::hasSameDefinition(const TQProjection& other) const {
    return TQPrMercDirect::hasSameDefinition(other) && ownParameters().areSame(*this, other);
}

int TQPrMercDirectModified::loadFromFile(TQFile& file, bool withHeader) {
    const int code = TQPrMercDirect::loadFromFile(file, withHeader);
    return code != 0 ? code : ownParameters().loadFrom(file, *this);
}

int TQPrMercDirectModified::writeToFile(TQFile& file, bool withHeader) const {
    if (const int code = TQPrMercDirect::writeToFile(file, withHeader)) {
        return code;
    }
    return ownParameters().writeTo(file, *this) ? 0 : writeFailed;
}
