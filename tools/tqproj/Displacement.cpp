#include "tools/tqproj/Displacement.h"

#include "support/TQFormat.h"
#include "tools/tqproj/LibraryMessages.h"
#include "tools/tqproj/map/GoodArea.h"
#include "tools/tqproj/map/MapProjection.h"

#include <algorithm>

Displacement Displacement::between(const TQProjection& one, const TQProjection& other) {
    const LibraryMessages unheard; // of places without an image
    const MapProjection first(one);
    const MapProjection second(other);
    const GeographicExtent area = goodAreaOf(first).value_or(GeographicExtent{});
    constexpr int steps = 20;
    Displacement displacement;
    for (int row = 0; row <= steps; ++row) {
        for (int column = 0; column <= steps; ++column) {
            const TQPoint place{area.west + area.width() * column / steps,
                                area.south + area.height() * row / steps};
            const std::optional<TQPoint> image = first.toPlane(place);
            const std::optional<TQPoint> otherImage = second.toPlane(place);
            if (image && otherImage) {
                const double distance = distanceBetween(*image, *otherImage);
                displacement.greatest = std::max(displacement.greatest, distance);
                displacement.inTheMiddle =
                    2 * row == steps && 2 * column == steps ? distance : displacement.inTheMiddle;
            }
        }
    }
    return displacement;
}

std::string distanceText(double metres) {
    struct Unit {
        double metres;
        const char* name;
    };
    constexpr Unit units[] = {{1e3, "km"}, {1.0, "m"}, {1e-3, "mm"}, {1e-6, "µm"}, {1e-9, "nm"}};
    const auto* const unit = std::ranges::find_if(units, [metres](const Unit& candidate) {
        return metres >= candidate.metres || candidate.metres == 1e-9;
    });
    return tq_format("%.3g ", metres / unit->metres) + unit->name;
}
