#include "projection/TQConicalProjection.h"

#include "support/TQArchiveBlock.h"
#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

TQConicalProjection::~TQConicalProjection() = default;

void TQConicalProjection::archiveTo(TQWriteStream* stream) const {
    stream->declareVersion("TQConicalProjection", 0);
    TQProjection::archiveTo(stream);
    _apex.archiveTo(stream);
}

void TQConicalProjection::unarchiveFrom(TQReadStream* stream) {
    if (tq_readKnownVersion(stream, "TQConicalProjection", 0) < 0) {
        return;
    }
    TQProjection::unarchiveFrom(stream);
    _apex.unarchiveFrom(stream);
}
