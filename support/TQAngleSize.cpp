#include "support/TQAngleSize.h"

TQAngleSize::TQAngleSize(double width, double height, std::uint32_t unit)
    : TQAnglePair(TQAngleWithUnit(width, unit), TQAngleWithUnit(height, unit)) {}

TQAngleSize::TQAngleSize(const TQSize& size, std::uint32_t unit)
    : TQAngleSize(size.width, size.height, unit) {}

TQAngleSize::TQAngleSize(const TQAngleWithUnit& width, const TQAngleWithUnit& height)
    : TQAnglePair(width, height) {}

TQAngleSize::TQAngleSize(const TQSize& degrees, const TQSize& minutes, const TQSize& seconds)
    : TQAnglePair(angleFromParts(degrees.width, minutes.width, seconds.width),
                  angleFromParts(degrees.height, minutes.height, seconds.height)) {}

TQAngleSize::TQAngleSize(const TQAngleSize& other, std::uint32_t unit) : TQAnglePair(other) { convert(unit); }

TQSize TQAngleSize::sizeWithAngleUnit(std::uint32_t unit, bool base360Width, bool base360Height) const {
    return {width().valueInUnit(unit, base360Width), height().valueInUnit(unit, base360Height)};
}
