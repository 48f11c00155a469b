#include "support/TQPoint.h"

#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

void TQPoint::archiveTo(TQWriteStream* stream) const {
    stream->write(x);
    stream->write(y);
}

void TQPoint::unarchiveFrom(TQReadStream* stream) {
    stream->read(x);
    stream->read(y);
}
