#include "support/TQRect.h"

#include "support/TQReadStream.h"
#include "support/TQWriteStream.h"

#include <initializer_list>

TQRect::TQRect(double cornerX, double cornerY, double signedWidth, double signedHeight)
    : x(cornerX), y(cornerY), width(signedWidth), height(signedHeight) {}

TQRect::TQRect(const TQPoint& corner, const TQPoint& opposite)
    : TQRect(corner.x, corner.y, opposite.x - corner.x, opposite.y - corner.y) {}

TQPoint TQRect::origin() const { return {x, y}; }

TQPoint TQRect::opposite() const { return {x + width, y + height}; }

TQSize TQRect::size() const { return {width, height}; }

void TQRect::archiveTo(TQWriteStream* stream) const {
    for (const double number : {x, y, width, height}) {
        stream->write(number);
    }
}

void TQRect::unarchiveFrom(TQReadStream* stream) {
    for (double* number : {&x, &y, &width, &height}) {
        stream->read(*number);
    }
}
