#include "support/TQSize.h"

#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

void TQSize::archiveTo(TQWriteStream* stream) const {
    stream->write(width);
    stream->write(height);
}

void TQSize::unarchiveFrom(TQReadStream* stream) {
    stream->read(width);
    stream->read(height);
}
