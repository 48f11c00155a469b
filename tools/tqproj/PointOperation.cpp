#include "tools/tqproj/PointOperation.h"

#include <limits>

void PointOperation::convertAll(std::span<TQPoint> points) const {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (TQPoint& point : points) {
        TQPoint result;
        point = convert(point, result).empty() ? result : TQPoint{notANumber, notANumber};
    }
}
